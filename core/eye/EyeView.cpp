#include "core/eye/EyeView.h"

#include <algorithm>
#include <cmath>

#include "core/eye/EyeMaskTest.h"
#include "core/shared/Misc_String.h"
#include "core/shared/NumberText.h"

namespace kv {
namespace {

// The panel's width in digits of the label font, and the most of the client area it takes.
constexpr int kPanelDigits = 26;
constexpr int kPanelShareDivisor = 3;

constexpr const char* kNotMeasured = "-";

// A measured value as the library's engineering formatters write it ("1.00 V", "3.300 ns").
std::string Engineering(UnitFormatter format, double value) {
    if (!std::isfinite(value)) {
        return kNotMeasured;
    }
    return UnitText(format, value);
}

}  // namespace

EyeView::EyeView() {
    m_chart.SetUnit(ChartAxis::X, "s");
    m_chart.SetUnit(ChartAxis::Y, "V");
    m_chart.SetLayer(this);
}

bool EyeView::SetWaveform(std::span<const double> time, std::span<const double> volts) {
    if (FindTraceError({time, volts})) {
        return false;
    }
    m_time.assign(time.begin(), time.end());
    m_volts.assign(volts.begin(), volts.end());
    Analyse();
    return true;
}

bool EyeView::SetTiming(const EyeTiming& timing, const std::optional<EYEMASK>& mask) {
    if (!(std::isfinite(timing.interval) && timing.interval > 0.0) || timing.eyes < 1 ||
        timing.eyes > 3 || timing.skipIntervals < 0) {
        return false;
    }
    m_timing = timing;
    m_mask = mask;
    m_outline.reset();
    if (mask && EyeMaskTest::Place(*mask, timing.interval, timing.eyes, 1)) {
        m_outline = PlaceMaskOnEye(*mask, timing.interval);
    }
    Analyse();
    return true;
}

void EyeView::ShowMask(bool show) {
    m_showMask = show;
    m_chart.Fit();
}

void EyeView::Analyse() {
    m_eye.reset();
    m_palette.reset();
    ++m_eyeNumber;
    if (m_time.empty()) {
        m_status = kNoWaveformStatus;
    } else if (!m_timing) {
        m_status = kNoTimingStatus;
    } else {
        EyeRequest request;
        request.timing = *m_timing;
        request.mask = m_mask;
        EyeResult result = AnalyseEye({m_time, m_volts}, request);
        m_status = result.refusal;
        if (m_status.empty()) {
            m_palette.emplace(*std::max_element(result.density.begin(), result.density.end()));
            m_eye = std::move(result);
        }
    }
    m_chart.Fit();
}

std::optional<EyeMeasure> EyeView::Measure() const {
    if (!m_eye) {
        return std::nullopt;
    }
    return m_eye->measure;
}

void EyeView::SetClientRect(const Rect& client) {
    m_client = client;
    const int width =
        std::min(kPanelDigits * m_chart.DigitWidth(), client.Width() / kPanelShareDivisor);
    m_panel = {client.right - width, client.top, client.right, client.bottom};
    m_chart.SetClientRect({client.left, client.top, m_panel.left, client.bottom});
}

std::optional<std::pair<VEC2, VEC2>> EyeView::Extent() const {
    if (!m_eye) {
        return std::nullopt;
    }
    const EyeGrid& grid = m_eye->grid;
    VEC2 low{0.0, grid.vMin};
    VEC2 high{m_timing->interval * m_timing->eyes, grid.vMax};
    if (MaskDrawn()) {
        // The limits keep a twentieth of their distance clear of the plot's edges, as the grid
        // keeps the trace, so that the frame does not hide them.
        const double top = m_outline->topLimit.front().y;
        const double base = m_outline->baseLimit.front().y;
        const double pad = (top - base) / 20.0;
        low.y = std::min(low.y, base - pad);
        high.y = std::max(high.y, top + pad);
    }
    return std::pair{low, high};
}

std::vector<std::pair<std::string, std::string>> EyeView::PanelLines() const {
    std::vector<std::pair<std::string, std::string>> lines;
    if (!m_eye) {
        return lines;
    }
    const EyeMeasure& m = m_eye->measure;
    lines.emplace_back("Samples", std::to_string(m.samples));
    lines.emplace_back("Unit intervals", std::to_string(m.unitIntervals));
    lines.emplace_back("Level 1", Engineering(FormatVoltage, m.level1));
    lines.emplace_back("Level 0", Engineering(FormatVoltage, m.level0));
    lines.emplace_back("Noise 1", Engineering(FormatVoltage, m.noise1));
    lines.emplace_back("Noise 0", Engineering(FormatVoltage, m.noise0));
    lines.emplace_back("Eye height", Engineering(FormatVoltage, m.eyeHeight));
    lines.emplace_back("Eye width", Engineering(FormatTime, m.eyeWidth));
    lines.emplace_back("Eye centre", Engineering(FormatTime, m.eyeCentreTime));
    lines.emplace_back("Jitter RMS", Engineering(FormatTime, m.crossingJitterRms));
    lines.emplace_back("Jitter p-p", Engineering(FormatTime, m.crossingJitterPeakToPeak));
    lines.emplace_back("Mask hits", m.maskHits < 0 ? "not tested" : std::to_string(m.maskHits));
    lines.emplace_back("Mask margin", std::isfinite(m.maskMarginPercent)
                                          ? FormatSignificant(m.maskMarginPercent, 3) + " %"
                                          : kNotMeasured);
    return lines;
}

}  // namespace kv
