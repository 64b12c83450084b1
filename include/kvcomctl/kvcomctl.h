#pragma once

// Everything a host needs to use the library: the factory and every
// component interface with the records they exchange.

#include "kvcomctl/EyeMask.h"
#include "kvcomctl/ICRWDCoupledNetsList.h"
#include "kvcomctl/IChartCtrl.h"
#include "kvcomctl/ICouplingRgnWalkerDlg.h"
#include "kvcomctl/IEyeDiagramData.h"
#include "kvcomctl/IEyeDiagramDialog.h"
#include "kvcomctl/IEyeDiagramStimAdaptor.h"
#include "kvcomctl/IEyeViewCtrl.h"
#include "kvcomctl/IKVComCtlFactory.h"
#include "kvcomctl/IPadstackEditorCtrl.h"
#include "kvcomctl/IProgress.h"
#include "kvcomctl/IViaVizCtrl.h"
#include "kvcomctl/IViaVizData.h"
#include "kvcomctl/Vec2.h"
#include "kvcomctl/ViaRecords.h"
