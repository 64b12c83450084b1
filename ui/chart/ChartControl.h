#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <string>

#include "core/chart/Chart.h"
#include "core/ports/FileChooser.h"
#include "ui/canvas/TextLayoutCache.h"

class QMenu;

// The chart control: curves over a plot with grid, numbered axes, legend
// and readout. The core's Chart decides and draws everything; the widget
// hands it Qt's events and paints its picture. Mouse: the wheel zooms about
// the pointer, a left drag sweeps a rectangle to zoom into, a drag with the
// middle button (or the left one with Shift or Ctrl held) pans, a double
// click fits. Keys: Home fits, + and - zoom, the arrows pan.

namespace kv::ui {

class CChartControl : public QWidget {
    Q_OBJECT

public:
    static constexpr const char* kWidgetClassName = "Curvana Chart Control";

    explicit CChartControl(QWidget* parent = nullptr);
    ~CChartControl() override;

    // Adds a curve; its identifier finds its name among the curve names.
    void AddCurve(Curve curve);
    void AddCurve(const double* x, const double* y, int count, uint32_t colour,
                  uint32_t identifier);
    void RemoveAllCurves();
    void SetCurveName(uint32_t identifier, const std::string& name);
    void SetUnits(const std::string& xUnit, const std::string& yUnit);
    void SetLogarithmic(ChartAxis axis, bool logarithmic);
    void SetPrefixes(bool prefixes);
    void Fit();

    Chart& GetChart() { return *m_chart; }
    const Chart& GetChart() const { return *m_chart; }

    // Where "Save image..." asks for its file; null: a file dialog.
    void SetFileChooser(IFileChooser* chooser) { m_chooser = chooser; }
    // The chart as it is drawn now, in an image of the control's size.
    QImage RenderImage() const;
    // "Copy image": the picture on the clipboard.
    void CopyImage();
    // "Save image...": PNG or SVG by the chosen name's extension. False when
    // nothing was written (cancelled, or the file could not be written,
    // which a message says).
    bool SaveImage();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void MeasureFont();
    void Changed();

    std::unique_ptr<Chart> m_chart;
    TextLayoutCache m_texts;
    std::unique_ptr<IFileChooser> m_dialogChooser;
    IFileChooser* m_chooser = nullptr;
};

}  // namespace kv::ui
