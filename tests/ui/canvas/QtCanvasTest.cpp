// The Qt canvas against the painter it stands for: the pixels it sets
// itself and the texts it keeps shaped must be those QPainter draws.

#include <QPainter>
#include <QtTest>
#include <random>

#include "core/shared/ColorRef.h"
#include "ui/canvas/QtCanvas.h"
#include "ui/canvas/TextLayoutCache.h"

using kv::Point;
using kv::Rect;
using kv::ui::QtCanvas;

namespace {

constexpr uint32_t kGreen = kv::MakeColorRef(0, 140, 20);
constexpr QRgb kGreenRgb = 0xff008c14;

QImage Blank(QImage::Format format) {
    QImage image(64, 48, format);
    image.fill(Qt::white);
    return image;
}

}  // namespace

class QtCanvasTest : public QObject {
    Q_OBJECT

private slots:
    // Straight one-pixel lines and fills, in and out of the clip and the
    // image, with the window origin moved, on both 32-bit formats.
    void ownPixelsAreThePaintersPixels() {
        std::mt19937 random(5);
        std::uniform_int_distribution<int> coordinate(-20, 80);
        for (const QImage::Format format :
             {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied}) {
            for (int round = 0; round < 200; ++round) {
                const Point origin{round % 3 == 0 ? 0 : coordinate(random) / 4,
                                   round % 3 == 0 ? 0 : coordinate(random) / 4};
                const bool clipped = round % 2 == 1;
                const Rect clip{5, 3, 50, 40};
                QImage expected = Blank(format);
                QImage drawn = Blank(format);
                QPainter painter(&expected);
                QPen pen(QColor(kGreenRgb), 0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
                pen.setCosmetic(true);
                painter.setPen(pen);
                painter.translate(-origin.x, -origin.y);
                if (clipped) {
                    painter.setClipRect(QRect(clip.left + origin.x, clip.top + origin.y,
                                              clip.Width(), clip.Height()));
                }
                QtCanvas canvas(drawn, QFont());
                canvas.SetWindowOrigin(origin);
                if (clipped) {
                    canvas.SetClipRect(clip);
                }
                canvas.SelectPen(kGreen, 0);
                // Vertical, horizontal, a point, slanted; fills narrow and wide.
                for (int shape = 0; shape < 8; ++shape) {
                    const Point a{coordinate(random), coordinate(random)};
                    Point b{coordinate(random), coordinate(random)};
                    if (shape % 4 == 0 || shape % 4 == 2) {
                        b.x = a.x;
                    }
                    if (shape % 4 == 1 || shape % 4 == 2) {
                        b.y = a.y;
                    }
                    painter.drawLine(a.x, a.y, b.x, b.y);
                    canvas.MoveTo(a);
                    canvas.LineTo(b);
                    const Rect fill{b.x, b.y, b.x + 1 + shape * 7 % 24, b.y + 1 + shape % 3};
                    painter.fillRect(QRect(fill.left, fill.top, fill.Width(), fill.Height()),
                                     QColor(kGreenRgb));
                    if (shape % 2 == 0) {
                        canvas.FillRect(fill, kGreen);
                    } else {
                        canvas.FillRects(std::span(&fill, 1), kGreen);
                    }
                }
                painter.end();
                canvas.Painter().end();
                QCOMPARE(drawn, expected);
            }
        }
    }

    // Texts drawn and measured from the kept layouts, the first time and
    // again, in two fonts: what drawing and measuring the text gives.
    void keptTextsDrawAndMeasureAsThePainterDoes() {
        kv::ui::TextLayoutCache texts;
        QFont bold;
        bold.setPixelSize(15);
        bold.setBold(true);
        for (const QFont& font : {QFont(), bold, QFont()}) {
            for (int pass = 0; pass < 2; ++pass) {
                for (const char* text : {" -1.25uV ", " 500ms ", "AV Wa fi", "\xce\xa9 ohm", ""}) {
                    QImage expected = Blank(QImage::Format_RGB32);
                    QImage drawn = Blank(QImage::Format_RGB32);
                    QPainter painter(&expected);
                    painter.setFont(font);
                    painter.setPen(Qt::black);
                    const QString string = QString::fromUtf8(text);
                    painter.drawText(QPoint(3, 7 + painter.fontMetrics().ascent()), string);
                    const QFontMetrics metrics = painter.fontMetrics();
                    painter.end();
                    QtCanvas canvas(drawn, font, &texts);
                    canvas.SetTextColor(0);
                    canvas.TextOut({3, 7}, text);
                    QCOMPARE(canvas.TextExtent(text),
                             (kv::Extent{metrics.horizontalAdvance(string), metrics.height()}));
                    canvas.Painter().end();
                    QCOMPARE(drawn, expected);
                }
            }
        }
    }
};

QTEST_MAIN(QtCanvasTest)
#include "QtCanvasTest.moc"
