#include "ui/progress/ProgressBarCtrl.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>

#include "core/progress/ProgressBarGeometry.h"
#include "ui/shared/ControlIds.h"
#include "ui/shared/HostParentGuard.h"

namespace kv::ui {
namespace {

// Dark blue done part on white: the usual look of a busy bar, and the two
// colours stay readable as each other's text colour.
constexpr uint32_t kDefaultFillColor = MakeColorRef(0, 0, 128);
constexpr uint32_t kDefaultEmptyColor = MakeColorRef(255, 255, 255);

LabelFontMetrics LabelMetricsOf(const QFont& font) {
    const QFontMetrics metrics(font);
    // Qt has no internal leading; it is what the ascent and descent hold
    // beyond the font's em size.
    const int emHeight = QFontInfo(font).pixelSize();
    const int internalLeading = std::max(0, metrics.ascent() + metrics.descent() - emHeight);
    return {metrics.ascent(), internalLeading};
}

QRect ToQRect(const BarRect& rect) {
    return QRect(QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1));
}

}  // namespace

CProgressBarCtrl::CProgressBarCtrl(QWidget* parent)
    : QWidget(parent), m_fillColor(kDefaultFillColor), m_emptyColor(kDefaultEmptyColor) {
    // Every pixel is painted, so Qt need not erase the background first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    ui::HostParentGuard::Install(this);
}

CProgressBarCtrl::~CProgressBarCtrl() = default;

int32_t CProgressBarCtrl::GetPos() const {
    return m_position;
}

void CProgressBarCtrl::SetFillColor(uint32_t rgb) {
    m_fillColor = rgb;
    RepaintNow();
}

void CProgressBarCtrl::SetPos(int32_t value, bool force) {
    if (!SetPosRepaints(m_position, value, force)) {
        return;
    }
    m_position = value;
    RepaintNow();
}

void CProgressBarCtrl::SetEmptyColor(uint32_t rgb) {
    m_emptyColor = rgb;
    RepaintNow();
}

void CProgressBarCtrl::SetNoPercentSign(bool noPercentSign) {
    m_noPercentSign = noPercentSign;
}

QWidget* CProgressBarCtrl::GetHwnd() const {
    return const_cast<CProgressBarCtrl*>(this);
}

QSize CProgressBarCtrl::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(QStringLiteral("100%")) * 4, metrics.height() + 6};
}

void CProgressBarCtrl::RepaintNow() {
    // repaint() paints before returning when the bar is on screen, and is
    // a no-op otherwise.
    repaint();
}

void CProgressBarCtrl::paintEvent(QPaintEvent* /*event*/) {
    const QRect client = rect();
    const BarLayout layout =
        LayoutProgressBar({client.left(), client.top(), client.right() + 1, client.bottom() + 1},
                          m_position, m_noPercentSign, LabelMetricsOf(font()));
    const QString label = QString::fromStdString(layout.label);
    const QFontMetrics metrics(font());
    const QPoint origin(layout.labelCentreX - metrics.horizontalAdvance(label) / 2,
                        layout.labelBaseline);
    const QColor fill = ui::ColorFromColorRef(m_fillColor);
    const QColor empty = ui::ColorFromColorRef(m_emptyColor);

    QPainter painter(this);
    painter.setFont(font());
    // The label twice, each time over its own part only: readable on both
    // sides of the split.
    const auto paintPart = [&](const BarRect& part, const QColor& background, const QColor& text) {
        const QRect area = ToQRect(part);
        if (area.isEmpty()) {
            return;
        }
        painter.setClipRect(area);
        painter.fillRect(area, background);
        painter.setPen(text);
        painter.drawText(origin, label);
    };
    paintPart(layout.done, fill, empty);
    paintPart(layout.remaining, empty, fill);
}

}  // namespace kv::ui
