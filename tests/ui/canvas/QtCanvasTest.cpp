// The Qt canvas against the painter it stands for: the pixels it sets
// itself and the texts it keeps shaped must be those QPainter draws.

#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QtTest>
#include <random>

#include "core/shared/ColorRef.h"
#include "ui/canvas/QtCanvas.h"
#include "ui/canvas/TextLayoutCache.h"

using kv::LineSegment;
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

// A control that fills itself and draws lines reaching far beyond its
// edges, through the canvas or through a plain painter.
class Scribble : public QWidget {
public:
    Scribble(QWidget* parent, bool canvas) : QWidget(parent), m_canvas(canvas) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
    QColor fill = Qt::yellow;

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const QRgb fillRgb = fill.rgb();
        const uint32_t fillRef = kv::MakeColorRef(qRed(fillRgb), qGreen(fillRgb), qBlue(fillRgb));
        const Point lines[][2] = {{{-500, 7}, {900, 7}}, {{12, -300}, {12, 800}}, {{3, 3}, {3, 3}}};
        if (m_canvas) {
            QtCanvas canvas(*this, font());
            canvas.FillRect({0, 0, width(), height()}, fillRef);
            canvas.FillRect({-40, 20, 8, 200}, kGreen);
            canvas.SelectPen(kGreen, 0);
            for (const auto& line : lines) {
                canvas.MoveTo(line[0]);
                canvas.LineTo(line[1]);
            }
            return;
        }
        QPainter painter(this);
        QPen pen(QColor(kGreenRgb), 0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        pen.setCosmetic(true);
        painter.setPen(pen);
        painter.fillRect(rect(), fill);
        painter.fillRect(QRect(-40, 20, 48, 180), QColor(kGreenRgb));
        for (const auto& line : lines) {
            painter.drawLine(line[0].x, line[0].y, line[1].x, line[1].y);
        }
    }

private:
    bool m_canvas;
};

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
                    if (shape % 2 == 0) {
                        canvas.MoveTo(a);
                        canvas.LineTo(b);
                    } else {
                        const LineSegment line{a, b};
                        canvas.Lines(std::span(&line, 1));
                    }
                    const Rect fill{b.x, b.y, b.x + 1 + shape * 7 % 24, b.y + 1 + shape % 3};
                    painter.fillRect(QRect(fill.left, fill.top, fill.Width(), fill.Height()),
                                     QColor(kGreenRgb));
                    canvas.FillRect(fill, kGreen);
                }
                painter.end();
                canvas.Painter().end();
                QCOMPARE(drawn, expected);
            }
        }
    }

    // Painting a control straight into its window's back buffer: the
    // canvas' own pixels stay inside the control and inside the part of it
    // being repainted, as the painter's do.
    void ownPixelsStayInTheRepaintedPartOfTheControl() {
        QImage shown[2];
        for (const bool canvas : {false, true}) {
            QWidget window;
            window.resize(100, 80);
            window.setAutoFillBackground(true);
            window.setPalette(QPalette(Qt::white));
            Scribble control(&window, canvas);
            control.setGeometry(30, 20, 40, 30);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            control.fill = Qt::cyan;
            control.repaint(QRect(5, 4, 12, 9));
            shown[canvas ? 1 : 0] = window.screen()->grabWindow(window.winId()).toImage();
        }
        QVERIFY(!shown[0].isNull());
        QCOMPARE(shown[1], shown[0]);
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
