#include "core/eye/EyeView.h"

#include <algorithm>
#include <cmath>

#include "core/chart/AxisText.h"
#include "core/eye/EyeMaskTest.h"
#include "core/shared/NumberText.h"

namespace kv {
namespace {

// The panel's width in digits of the label font, and the most of the client area it takes.
constexpr int kPanelDigits = 26;
constexpr int kPanelShareDivisor = 3;

constexpr const char* kNotMeasured = "-";

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
        for (const std::vector<VEC2>* limit : {&m_outline->topLimit, &m_outline->baseLimit}) {
            for (const VEC2& point : *limit) {
                low.y = std::min(low.y, point.y);
                high.y = std::max(high.y, point.y);
            }
        }
    }
    return std::pair{low, high};
}

std::vector<std::pair<std::string, std::string>> EyeView::PanelLines() const {
    std::vector<std::pair<std::string, std::string>> lines;
    if (!m_eye) {
        return lines;
    }
    const EyeMeasure& m = m_eye->measure;
    const bool prefixes = m_chart.Prefixes();
    const auto quantity = [&](const char* label, double value, const char* unit) {
        lines.emplace_back(
            label, std::isfinite(value) ? ReadoutValueText(value, prefixes, unit) : kNotMeasured);
    };
    lines.emplace_back("Samples", std::to_string(m.samples));
    lines.emplace_back("Unit intervals", std::to_string(m.unitIntervals));
    quantity("Level 1", m.level1, "V");
    quantity("Level 0", m.level0, "V");
    quantity("Noise 1", m.noise1, "V");
    quantity("Noise 0", m.noise0, "V");
    quantity("Eye height", m.eyeHeight, "V");
    quantity("Eye width", m.eyeWidth, "s");
    quantity("Eye centre", m.eyeCentreTime, "s");
    quantity("Jitter RMS", m.crossingJitterRms, "s");
    quantity("Jitter p-p", m.crossingJitterPeakToPeak, "s");
    lines.emplace_back("Mask hits", m.maskHits < 0 ? "not tested" : std::to_string(m.maskHits));
    lines.emplace_back("Mask margin", std::isfinite(m.maskMarginPercent)
                                          ? FormatSignificant(m.maskMarginPercent, 3) + " %"
                                          : kNotMeasured);
    return lines;
}

}  // namespace kv
