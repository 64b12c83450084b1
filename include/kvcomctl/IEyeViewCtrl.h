#pragma once

#include <cstdint>
#include <type_traits>

// The eye view as the host sees it: the eye of a waveform (a simulated or measured one) folded
// at the stimulus's bit interval and drawn as a density colour map on axes of seconds and
// volts, with the eye mask over it, the points that hit the mask marked, and the measurements
// beside it. It zooms and pans as the chart control does. Operation order is the
// virtual-table order the host binds to. An operation given a bad argument answers false and
// changes nothing.

class QWidget;
class IEyeDiagramData;

// The measurements of one eye. Levels in volts, times in seconds; a value that cannot be
// measured is not a number.
struct EYEMEASURE {
    // Folded samples: the points at which the fold read the waveform, one per grid column
    // (1000 across the shown intervals) in every window.
    int64_t samples;
    // Unit intervals whose centre lies in the folded part of the waveform.
    int32_t unitIntervals;
    // Mean and standard deviation of the levels read within 5 % of the interval about the eye
    // centres, below and at or above the mid level (level0 + level1) / 2.
    double level0, level1, noise0, noise1;
    // (level1 - 3 noise1) - (level0 + 3 noise0); negative for a closed eye.
    double eyeHeight;
    // The interval less 6 times the RMS crossing jitter.
    double eyeWidth;
    // The first eye centre on the waveform's time axis; the others follow one interval apart.
    double eyeCentreTime;
    // The mid-level crossings' deviation from the ideal clock: root mean square, and from the
    // earliest to the latest.
    double crossingJitterRms, crossingJitterPeakToPeak;
    // Folded points inside the mask's opening or beyond its level limits; -1 when the mask
    // could not be tested (a value that is not a number, a scale not above 0, values out of
    // order, an opening without width or height).
    int64_t maskHits;
    // How many percent the opening could grow about its centre before it reaches a point;
    // negative: how many percent it must shrink to clear every point. Not a number without a
    // tested mask.
    double maskMarginPercent;
};

static_assert(std::is_standard_layout_v<EYEMEASURE> && std::is_trivially_copyable_v<EYEMEASURE>);

class IEyeViewCtrl {
public:
    // Places the view in `parent` (not null) and shows it. Once: false when the view has a
    // window already.
    virtual bool Create(QWidget* parent) = 0;  // 0
    // The view's window; null before Create.
    virtual QWidget* GetWindow() = 0;  // 1
    // The waveform, copied: `count` (at least 2) samples of time in seconds and level in
    // volts, all finite, the times never decreasing (two equal times are a step). Works before
    // Create. With the timing set, the eye is folded and measured again and the view fitted.
    virtual bool SetWaveform(const double* time, const double* volts, int32_t count) = 0;  // 2
    // Reads the bit interval (the period, in nanoseconds), the eye count, the skipped bits and
    // the eye mask from `data` once; the view keeps no pointer to it. False for null, a period
    // that is not a positive finite number, an eye count outside 1 to 3 or a negative skip. A
    // mask that cannot be tested is taken but neither drawn nor tested (see maskHits). With a
    // waveform set, the eye is folded and measured again and the view fitted.
    virtual bool SetTiming(IEyeDiagramData* data) = 0;  // 3
    // Fills `measure` with the eye's measurements. False, and `measure` untouched, for null or
    // while there is no eye: no waveform or no timing yet, or none left after the skipped bits.
    virtual bool GetMeasure(EYEMEASURE* measure) = 0;  // 4
    // Shows (the default) or hides the mask and the hits marked on it; the measurements do not
    // change. The view is fitted again, to the eye and the mask shown with it.
    virtual void ShowMask(bool show) = 0;  // 5
    // Writes the picture as it is drawn now, at the window's size, to `path`: PNG for a name
    // ending in ".png", SVG for one ending in ".svg" (either case). False before Create, for
    // another extension, or when the file could not be written (no message is shown).
    virtual bool SaveImage(const char* path) = 0;  // 6

protected:
    ~IEyeViewCtrl() = default;
};
