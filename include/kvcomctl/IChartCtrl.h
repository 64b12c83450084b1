#pragma once

#include <cstdint>

// The chart control as the host sees it: curves over a plot with a grid, numbered axes whose
// labels carry SI prefixes and the units, a legend and a readout; the user zooms and pans it
// with the mouse and the keyboard. Operation order is the virtual-table order the host binds to.
// Texts are UTF-8; window handles are widgets. An operation given a bad argument (a null
// pointer, a value that is not a finite number, too few points) answers false where it answers
// at all, and changes nothing.

class QWidget;

class IChartCtrl {
public:
    // Places the control in `parent` (not null) and shows it. Once: false when the control has
    // a window already.
    virtual bool Create(QWidget* parent) = 0;  // 0
    // The control's window; null before Create.
    virtual QWidget* GetWindow() = 0;  // 1
    // Adds a curve through `count` points (at least 2; x and y finite numbers, x in any order),
    // copied; `colour` is 0x00BBGGRR, `identifier` finds the curve's name. Works before Create.
    // Does not fit the view: call Fit once the curves are in.
    virtual bool AddCurve(const double* x, const double* y, int32_t count, uint32_t colour,
                          uint32_t identifier) = 0;  // 2
    // The name the legend and the readout give the curves of `identifier`; a null name changes
    // nothing.
    virtual void SetCurveName(uint32_t identifier, const char* name) = 0;  // 3
    // Removes every curve; the names stay for curves added later.
    virtual void RemoveAllCurves() = 0;  // 4
    // Units after the labels and readout values ("s", "V", "Hz", "" for none); a null one
    // changes neither.
    virtual void SetUnits(const char* xUnit, const char* yUnit) = 0;  // 5
    // Logarithmic (true) or linear axes; an axis that changes scale is fitted again.
    virtual void SetLogarithmic(bool xAxis, bool yAxis) = 0;  // 6
    // Fits both axes to the curves, ending them on the grid lines around the data.
    virtual void Fit() = 0;  // 7
    // Writes the picture as it is drawn now, at the window's size, to `path`: PNG for a name
    // ending in ".png", SVG for one ending in ".svg" (either case). False before Create, for
    // another extension, or when the file could not be written (no message is shown).
    virtual bool SaveImage(const char* path) = 0;  // 8

protected:
    ~IChartCtrl() = default;
};
