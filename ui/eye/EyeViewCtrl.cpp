#include "ui/eye/EyeViewCtrl.h"

#include <span>

#include "kvcomctl/IEyeDiagramData.h"

namespace kv::ui {

CEyeViewCtrl::CEyeViewCtrl(QWidget* parent) : CEyeViewCtrl(std::make_unique<EyeView>(), parent) {}

// The chart is the eye view's: it is made before the control that hands it events.
CEyeViewCtrl::CEyeViewCtrl(std::unique_ptr<EyeView> eye, QWidget* parent)
    : CChartControl(eye->GetChart(), parent, "eye", QStringLiteral("Eye diagram")),
      m_eye(std::move(eye)) {
    LayOut();
}

CEyeViewCtrl::~CEyeViewCtrl() = default;

bool CEyeViewCtrl::Create(QWidget* parent) {
    return CChartControl::Create(parent);
}

QWidget* CEyeViewCtrl::GetWindow() {
    return CChartControl::GetWindow();
}

bool CEyeViewCtrl::SetWaveform(const double* time, const double* volts, int32_t count) {
    if (time == nullptr || volts == nullptr || count < 2) {
        return false;
    }
    const auto samples = static_cast<std::size_t>(count);
    if (!m_eye->SetWaveform(std::span(time, samples), std::span(volts, samples))) {
        return false;
    }
    update();
    return true;
}

bool CEyeViewCtrl::SetTiming(IEyeDiagramData* data) {
    if (data == nullptr) {
        return false;
    }
    std::optional<EYEMASK> mask;
    if (const EYEMASK* given = data->GetMask()) {
        mask = *given;
    }
    if (!m_eye->SetTiming(EyeTimingOf(*data), mask)) {
        return false;
    }
    update();
    return true;
}

bool CEyeViewCtrl::GetMeasure(EYEMEASURE* measure) {
    const std::optional<EyeMeasure> found = m_eye->Measure();
    if (measure == nullptr || !found) {
        return false;
    }
    *measure = {found->samples,
                found->unitIntervals,
                found->level0,
                found->level1,
                found->noise0,
                found->noise1,
                found->eyeHeight,
                found->eyeWidth,
                found->eyeCentreTime,
                found->crossingJitterRms,
                found->crossingJitterPeakToPeak,
                found->maskHits,
                found->maskMarginPercent};
    return true;
}

void CEyeViewCtrl::ShowMask(bool show) {
    m_eye->ShowMask(show);
    update();
}

bool CEyeViewCtrl::SaveImage(const char* path) {
    return CChartControl::SaveImage(path);
}

void CEyeViewCtrl::PaintPicture(ICanvas& canvas) const {
    m_eye->Paint(canvas);
}

void CEyeViewCtrl::LayOutPicture(const Rect& client) {
    m_eye->SetClientRect(client);
}

}  // namespace kv::ui
