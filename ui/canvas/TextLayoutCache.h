#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QList>
#include <map>
#include <string>
#include <string_view>

#include "core/ports/Canvas.h"

class QPaintDevice;

// The shaped glyphs and the extent of each text a canvas draws, kept from
// one paint to the next: labels mostly repeat, and shaping them again is
// what drawing text costs. Drawing the kept glyphs sets the same pixels as
// drawing the text.

namespace kv::ui {

struct TextLayout {
    QList<QGlyphRun> runs;  // positions relative to the baseline's start
    Extent extent;
    int ascent = 0;  // from the top of the text to its baseline
};

class TextLayoutCache {
public:
    // The layout of a single-line `text` in the painter's font on its
    // device, shaped on first use. Another font or resolution starts the
    // cache afresh.
    const TextLayout& Layout(std::string_view text, const QFont& font, QPaintDevice& device);

private:
    // Texts seen beyond this many (a readout that follows the pointer, a
    // long zoom) start the cache afresh rather than letting it grow.
    static constexpr size_t kMaximumTexts = 512;

    QFont m_font;
    int m_dpiX = 0;
    int m_dpiY = 0;
    std::map<std::string, TextLayout, std::less<>> m_layouts;
};

}  // namespace kv::ui
