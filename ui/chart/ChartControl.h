#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <string>

#include "core/chart/Chart.h"
#include "core/ports/FileChooser.h"
#include "kvcomctl/IChartCtrl.h"
#include "ui/canvas/TextLayoutCache.h"

class QMenu;

// The chart control: curves over a plot with grid, numbered axes, legend
// and readout. The core's Chart decides and draws everything; the widget
// hands it Qt's events and paints its picture. Mouse: the wheel zooms about
// the pointer, a left drag sweeps a rectangle to zoom into, a drag with the
// middle button (or the left one with Shift or Ctrl held) pans, a double
// click fits. Keys: Home fits, + and - zoom, the arrows pan. Hosts reach it
// through IChartCtrl.

namespace kv::ui {

class CChartControl : public QWidget, public IChartCtrl {
    Q_OBJECT

public:
    static constexpr const char* kWidgetClassName = "Curvana Chart Control";

    explicit CChartControl(QWidget* parent = nullptr);
    ~CChartControl() override;

    // The host's operations (IChartCtrl.h says what each does).
    bool Create(QWidget* parent) override;
    QWidget* GetWindow() override;
    bool AddCurve(const double* x, const double* y, int32_t count, uint32_t colour,
                  uint32_t identifier) override;
    void SetCurveName(uint32_t identifier, const char* name) override;
    void RemoveAllCurves() override;
    void SetUnits(const char* xUnit, const char* yUnit) override;
    void SetLogarithmic(bool xAxis, bool yAxis) override;
    void Fit() override;
    bool SaveImage(const char* path) override;

    // Adds a curve; its identifier finds its name among the curve names.
    void AddCurve(Curve curve);
    void SetCurveName(uint32_t identifier, const std::string& name);
    void SetUnits(const std::string& xUnit, const std::string& yUnit);
    void SetLogarithmic(ChartAxis axis, bool logarithmic);
    void SetPrefixes(bool prefixes);

    Chart& GetChart() { return *m_chart; }
    const Chart& GetChart() const { return *m_chart; }

    // Where "Save image..." asks for its file; null: a file dialog.
    void SetFileChooser(IFileChooser* chooser) { m_chooser = chooser; }
    // The picture as it is drawn now, in an image of the control's size.
    QImage RenderImage();
    // "Copy image": the picture on the clipboard.
    void CopyImage();
    // "Save image...": PNG or SVG by the chosen name's extension. False when
    // nothing was written (cancelled, or the file could not be written,
    // which a message says).
    bool SaveImage();

    QSize sizeHint() const override;

protected:
    // A view built on the chart (the eye view): `chart` (not owned) lives as
    // long as the control, and what the view draws besides it comes through
    // the two hooks below.
    CChartControl(Chart& chart, QWidget* parent, std::string imageName, QString imageTitle);

    // The whole picture in client coordinates: the chart alone here.
    virtual void PaintPicture(ICanvas& canvas) const;
    // Gives the picture the control's client area: the chart's here.
    virtual void LayOutPicture(const Rect& client);
    // Lays the picture out anew for the control's size and font.
    void LayOut();
    // A control not yet shown gets no resize events: before its picture is written, the
    // layout follows the size the picture has.
    void LayOutForSize();

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
    CChartControl(std::unique_ptr<Chart> chart, QWidget* parent);
    void MeasureFont();
    void Changed();

    std::unique_ptr<Chart> m_ownChart;  // null when the chart is a view's
    Chart* m_chart;
    TextLayoutCache m_texts;
    std::unique_ptr<IFileChooser> m_dialogChooser;
    IFileChooser* m_chooser = nullptr;
    std::string m_imageName;  // "Save image..." offers <name>.png
    QString m_imageTitle;     // the SVG document's title
    bool m_created = false;
    QSize m_laidOutSize;  // the size LayOut last laid the picture out for
};

}  // namespace kv::ui
