#include "ui/canvas/CanvasExport.h"

#include <QImage>
#include <QSaveFile>
#include <QSvgGenerator>

#include "ui/canvas/QtCanvas.h"

namespace kv::ui {

bool SaveCanvasPng(const QString& path, QSize size, const QFont& font, const CanvasDrawing& draw) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QtCanvas canvas(image, font);
        draw(canvas);
    }
    // A half-written picture never replaces a good one.
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
}

bool SaveCanvasSvg(const QString& path, QSize size, const QFont& font, const QString& title,
                   const CanvasDrawing& draw) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setTitle(title);
    {
        QtCanvas canvas(generator, font);
        draw(canvas);
    }
    return file.commit();
}

}  // namespace kv::ui
