#pragma once

#include <QWidget>
#include <cstdint>

#include "kvcomctl/IProgress.h"

namespace kv::ui {

// A percentage bar: the done part in the fill colour, the rest in the empty
// colour, and the number drawn over both, inverted where the bar has passed
// it. Changes repaint synchronously, so the bar moves even while the host's
// thread is busy computing and no events are handled.
class CProgressBarCtrl : public QWidget, public IProgressBarInterface {
    Q_OBJECT
public:
    explicit CProgressBarCtrl(QWidget* parent = nullptr);
    ~CProgressBarCtrl() override;

    int32_t GetPos() const override;
    void SetFillColor(uint32_t rgb) override;
    void SetPos(int32_t value, bool force) override;
    void SetEmptyColor(uint32_t rgb) override;
    void SetNoPercentSign(bool noPercentSign) override;
    QWidget* GetHwnd() const override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // Paints now, without erasing first: every pixel is painted anyway.
    void RepaintNow();

    int32_t m_position = 0;
    uint32_t m_fillColor;
    uint32_t m_emptyColor;
    bool m_noPercentSign = false;
};

}  // namespace kv::ui
