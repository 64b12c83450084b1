#pragma once

#include <QFont>
#include <QImage>
#include <QSize>
#include <QString>
#include <functional>
#include <string>

#include "core/ports/Canvas.h"
#include "core/ports/FileChooser.h"

// A picture the core draws, written to a file: PNG through a QImage, SVG
// through Qt Svg's generator. The drawing function sees an ICanvas of `size`.

namespace kv::ui {

using CanvasDrawing = std::function<void(ICanvas& canvas)>;

// The file types every "Save image..." offers.
inline constexpr const char* kImageFilter = "PNG image (*.png)|*.png|SVG image (*.svg)|*.svg||";

QImage RenderCanvasImage(QSize size, const QFont& font, const CanvasDrawing& draw);
bool SaveCanvasPng(const QString& path, QSize size, const QFont& font, const CanvasDrawing& draw);
bool SaveCanvasSvg(const QString& path, QSize size, const QFont& font, const QString& title,
                   const CanvasDrawing& draw);

struct CanvasImageSave {
    std::string defaultBaseName;  // offered as <name>.png
    QString svgTitle;
    QSize size;
    QFont font;
};

// The controls' "Save image...": asks for a PNG or SVG file, asks before
// replacing one that exists, writes the picture and reports a failed write
// through the message port. True when the picture was written.
bool SaveCanvasImageAs(IFileChooser& chooser, const CanvasImageSave& image,
                       const CanvasDrawing& draw);

}  // namespace kv::ui
