#include "ui/canvas/CanvasExport.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QSvgGenerator>

#include "ui/canvas/QtCanvas.h"

namespace kv::ui {

QImage RenderCanvasImage(QSize size, const QFont& font, const CanvasDrawing& draw) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QtCanvas canvas(image, font);
        draw(canvas);
    }
    return image;
}

bool SaveCanvasPng(const QString& path, QSize size, const QFont& font, const CanvasDrawing& draw) {
    const QImage image = RenderCanvasImage(size, font, draw);
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

bool SaveCanvasImageAs(IFileChooser& chooser, const CanvasImageSave& image,
                       const CanvasDrawing& draw) {
    FileQuery query;
    query.title = "Save image";
    query.defaultFileName = image.defaultBaseName + ".png";
    query.defaultExtension = "png";
    query.filter = kImageFilter;
    const std::optional<ChosenFile> chosen = chooser.ChooseSaveFile(query);
    if (!chosen) {
        return false;
    }
    const std::string path = chosen->Path().string();
    const QString qtPath = QString::fromStdString(path);
    // The file dialog leaves the overwrite question to the command, as the
    // SPICE export asks it.
    if (QFileInfo::exists(qtPath)) {
        if (!ConfirmOverwrite(path)) {
            return false;
        }
    }
    const bool svg = qtPath.endsWith(QStringLiteral(".svg"), Qt::CaseInsensitive);
    const bool written = svg ? SaveCanvasSvg(qtPath, image.size, image.font, image.svgTitle, draw)
                             : SaveCanvasPng(qtPath, image.size, image.font, draw);
    if (!written) {
        ReportCannotOpen(path, "Save image");
    }
    return written;
}

}  // namespace kv::ui
