#include "ui/walker/CrossSectionCtrl.h"

#include "ui/canvas/BufferedPaint.h"
#include "ui/canvas/QtCanvas.h"

namespace kv::ui {

CCrossSectionCtrl::CCrossSectionCtrl(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CCrossSectionCtrl::SetData(CrossSectionData data) {
    m_data = std::move(data);
    update();
}

void CCrossSectionCtrl::SetHighlightedNet(std::string net) {
    if (net != m_highlightedNet) {
        m_highlightedNet = std::move(net);
        update();
    }
}

QSize CCrossSectionCtrl::sizeHint() const {
    return {420, 220};
}

QSize CCrossSectionCtrl::minimumSizeHint() const {
    return {120, 60};
}

void CCrossSectionCtrl::paintEvent(QPaintEvent* /*event*/) {
    PaintBuffered(*this, size(), [this](QtCanvas& canvas) {
        const CrossSectionLayout layout =
            ComputeCrossSectionLayout(m_data, {0, 0, width(), height()}, m_highlightedNet, canvas);
        PaintCrossSection(canvas, layout);
    });
}

}  // namespace kv::ui
