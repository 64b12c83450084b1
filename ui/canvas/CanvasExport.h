#pragma once

#include <QFont>
#include <QSize>
#include <QString>
#include <functional>

#include "core/ports/Canvas.h"

// A picture the core draws, written to a file: PNG through a QImage, SVG
// through Qt Svg's generator. The drawing function sees an ICanvas of `size`.

namespace kv::ui {

using CanvasDrawing = std::function<void(ICanvas& canvas)>;

bool SaveCanvasPng(const QString& path, QSize size, const QFont& font, const CanvasDrawing& draw);
bool SaveCanvasSvg(const QString& path, QSize size, const QFont& font, const QString& title,
                   const CanvasDrawing& draw);

}  // namespace kv::ui
