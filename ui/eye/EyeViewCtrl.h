#pragma once

#include <memory>

#include "core/eye/EyeView.h"
#include "kvcomctl/IEyeViewCtrl.h"
#include "ui/chart/ChartControl.h"

// The eye view control: the chart control whose picture is the core's EyeView (the density,
// the mask with its hits and the measurements beside the plot). It zooms, pans and saves as
// the chart control does; the core decides what it shows.

namespace kv::ui {

class CEyeViewCtrl : public CChartControl, public IEyeViewCtrl {
    Q_OBJECT

public:
    explicit CEyeViewCtrl(QWidget* parent = nullptr);
    ~CEyeViewCtrl() override;

    // The host's operations (IEyeViewCtrl.h says what each does).
    bool Create(QWidget* parent) override;
    QWidget* GetWindow() override;
    bool SetWaveform(const double* time, const double* volts, int32_t count) override;
    bool SetTiming(IEyeDiagramData* data) override;
    bool GetMeasure(EYEMEASURE* measure) override;
    void ShowMask(bool show) override;
    bool SaveImage(const char* path) override;
    using CChartControl::SaveImage;

    const EyeView& Model() const { return *m_eye; }

protected:
    void PaintPicture(ICanvas& canvas) const override;
    void LayOutPicture(const Rect& client) override;

private:
    CEyeViewCtrl(std::unique_ptr<EyeView> eye, QWidget* parent);

    std::unique_ptr<EyeView> m_eye;
};

}  // namespace kv::ui
