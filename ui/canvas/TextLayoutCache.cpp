#include "ui/canvas/TextLayoutCache.h"

#include <QFontMetrics>
#include <QPaintDevice>
#include <QTextLayout>
#include <QTextOption>

namespace kv::ui {

const TextLayout& TextLayoutCache::Layout(std::string_view text, const QFont& font,
                                          QPaintDevice& device) {
    if (font != m_font || device.logicalDpiX() != m_dpiX || device.logicalDpiY() != m_dpiY ||
        m_layouts.size() >= kMaximumTexts) {
        m_layouts.clear();
        m_font = font;
        m_dpiX = device.logicalDpiX();
        m_dpiY = device.logicalDpiY();
    }
    if (const auto found = m_layouts.find(text); found != m_layouts.end()) {
        return found->second;
    }
    const QString string = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const QFontMetrics metrics(font, &device);
    TextLayout layout;
    layout.extent = {metrics.horizontalAdvance(string), metrics.height()};
    layout.ascent = metrics.ascent();
    QTextLayout shaped(string, font, &device);
    // As the painter lays a line out when it draws text at a point.
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    shaped.setTextOption(option);
    shaped.beginLayout();
    const QTextLine line = shaped.createLine();
    shaped.endLayout();
    if (line.isValid()) {
        layout.runs = shaped.glyphRuns();
        // From the layout's top left corner to the baseline's start.
        for (QGlyphRun& run : layout.runs) {
            QList<QPointF> positions = run.positions();
            for (QPointF& position : positions) {
                position.ry() -= line.ascent();
            }
            run.setPositions(positions);
        }
    }
    return m_layouts.emplace(std::string(text), std::move(layout)).first->second;
}

}  // namespace kv::ui
