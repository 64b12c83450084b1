#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/chart/Chart.h"
#include "core/eye/EyeAnalysis.h"
#include "core/eye/EyeColourMap.h"
#include "core/eyediagram/MaskOutline.h"
#include "core/shared/ColorRef.h"
#include "kvcomctl/EyeMask.h"

// The eye view without its window: the waveform and the stimulus timing it is folded with,
// the eye (density and measurements), and its picture. The picture is a chart (seconds and
// volts, with prefixes; it zooms and pans as the chart does) whose plot shows the density as
// a colour map, the mask's opening and level limits over it with the hits marked, and beside
// the chart a panel of the measurements. The widget hands the chart its events and paints
// what this draws.

namespace kv {

namespace eye_view_colors {
inline constexpr uint32_t kMaskOpening = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kMaskLimit = MakeColorRef(96, 96, 96);
inline constexpr uint32_t kPanelText = MakeColorRef(0, 0, 0);
inline constexpr uint32_t kStatusText = MakeColorRef(96, 96, 96);
}  // namespace eye_view_colors

// What the panel says before there is an eye.
inline constexpr const char* kNoWaveformStatus = "No waveform to fold";
inline constexpr const char* kNoTimingStatus = "No bit interval to fold at";

class EyeView final : public IChartLayer {
public:
    EyeView();
    // The chart keeps a pointer to its layer, this view.
    EyeView(const EyeView&) = delete;
    EyeView& operator=(const EyeView&) = delete;

    Chart& GetChart() { return m_chart; }
    const Chart& GetChart() const { return m_chart; }

    // A copy of the waveform; false, and nothing changed, for one FindTraceError refuses.
    // With the timing known, the eye is folded and measured again and the view fitted.
    bool SetWaveform(std::span<const double> time, std::span<const double> volts);
    // The timing the eye is folded at and the mask it is tested against; false, and nothing
    // changed, for an interval that is not a positive finite number, eyes outside 1 to 3 or a
    // negative skip. A mask EyeMaskTest cannot place (or none) is neither tested nor drawn.
    // With a waveform, the eye is folded and measured again and the view fitted.
    bool SetTiming(const EyeTiming& timing, const std::optional<EYEMASK>& mask);
    // Shows or hides the mask and its hits and fits the view again.
    void ShowMask(bool show);

    // The eye's measurements; none while there is no eye.
    std::optional<EyeMeasure> Measure() const;
    // Why there is no eye (kNoWaveformStatus, kNoTimingStatus or the analysis' refusal);
    // empty while there is one.
    const std::string& Status() const { return m_status; }

    // The control's client area: the chart on the left, the panel on the right, as wide as
    // 26 digits of the chart's label font but at most a third of the area.
    void SetClientRect(const Rect& client);
    const Rect& PanelRect() const { return m_panel; }

    // The panel's lines, label and value: the count of samples and unit intervals, the
    // levels, noise, height, width, centre and jitter as the engineering formatters write
    // them, the mask's hits and margin; "-" for a value that could not be measured.
    std::vector<std::pair<std::string, std::string>> PanelLines() const;

    // The whole picture in client coordinates.
    void Paint(ICanvas& canvas) const;

    // How many times the plot's colour image has been built: once for every new density or
    // view (range, plot size, mask shown or not), never for a repaint of the same.
    int64_t ColourMapBuilds() const { return m_builds; }

    // The grid and, while shown and testable, the mask's level limits; none without an eye.
    std::optional<std::pair<VEC2, VEC2>> Extent() const override;
    void PaintPlot(ICanvas& canvas, const Chart& chart) const override;

private:
    void Analyse();
    void PaintMask(ICanvas& canvas, const Chart& chart) const;
    void PaintPanel(ICanvas& canvas) const;
    bool MaskDrawn() const { return m_showMask && m_outline.has_value(); }

    // Everything the colour image depends on.
    struct ImageKey {
        uint64_t eye = 0;  // which density
        Range x;
        Range y;
        bool logX = false;
        bool logY = false;
        Rect plot;
        bool hits = false;
        friend bool operator==(const ImageKey&, const ImageKey&) = default;
    };

    Chart m_chart;
    Rect m_client;
    Rect m_panel;

    std::vector<double> m_time;
    std::vector<double> m_volts;
    std::optional<EyeTiming> m_timing;
    std::optional<EYEMASK> m_mask;
    std::optional<MaskOutline> m_outline;  // placed on the eye, when EyeMaskTest can place it
    bool m_showMask = true;

    std::optional<EyeResult> m_eye;
    std::optional<DensityPalette> m_palette;
    uint64_t m_eyeNumber = 0;  // counts the densities folded
    std::string m_status = kNoWaveformStatus;

    // The colour image of the last view painted, and what it was built for.
    mutable std::optional<ImageKey> m_imageKey;
    mutable std::vector<uint32_t> m_image;
    mutable DensityScratch m_scratch;
    mutable int64_t m_builds = 0;
};

}  // namespace kv
