#pragma once

#include "apps/viadescription/ViaDescription.h"

namespace kv::via_json {

// Hands `description` to a via visualizer control through its interface alone, as a host does:
// the pair flag, the stackup and each via's padstack in place into the via's IViaVizData, the
// elements and ports through SetElements and SetPorts, the subcircuit name, then Refresh. False
// when the control hands out no data for a via of the description.
bool FillViaControl(IViaVizCtrl& control, const ViaDescription& description);

}  // namespace kv::via_json
