#pragma once

#include <span>

#include "core/eyediagram/MaskOutline.h"
#include "kvcomctl/IEyeDiagramStimAdaptor.h"

class QWidget;

// The charts of the eye-diagram pages: each fills the area its page keeps
// for it, in seconds and volts, and is redrawn from what the core computes.

namespace kv::ui {

class CChartControl;

// A chart filling `area` (through a layout), with units "s" and "V" and
// named curves.
CChartControl* MakeWaveformChart(QWidget* area);
CChartControl* MakeMaskChart(QWidget* area);

// Replace the chart's curves and fit the view to them.
void ShowWaveform(CChartControl& chart, std::span<const STIMPOINT> points);
void ShowMaskOutline(CChartControl& chart, const MaskOutline& outline);

}  // namespace kv::ui
