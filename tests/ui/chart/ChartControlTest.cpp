// The chart control as a user meets it: wheel, keys, pointer and context menu
// reach its chart, whose arithmetic and picture are tested without a window
// (tests/core/chart), and the control shows and saves that picture.

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>
#include <QtTest>
#include <cmath>
#include <random>

#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "ui/canvas/QtCanvas.h"
#include "ui/chart/ChartControl.h"

using kv::ChartAxis;
using kv::ui::CChartControl;

namespace {

constexpr uint32_t kRed = kv::MakeColorRef(255, 0, 0);
constexpr uint32_t kBlue = kv::MakeColorRef(0, 0, 255);

kv::Curve NoisySine(int count, double amplitude, uint32_t colour, uint32_t identifier) {
    std::mt19937 random(3);
    std::normal_distribution<double> noise(0.0, amplitude * 0.05);
    std::vector<VEC2> points(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double t = i * 1e-9;
        points[static_cast<size_t>(i)] = {t, amplitude * std::sin(t * 2e6 * M_PI) + noise(random)};
    }
    kv::Curve curve(points.data(), count, colour);
    curve.m_identifier = identifier;
    return curve;
}

void SendWheel(QWidget& widget, QPoint at, int eighths) {
    QWheelEvent event(at, widget.mapToGlobal(at), QPoint(), QPoint(0, eighths), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

// A pointer move as the window system delivers it.
void MoveMouse(QWidget& widget, QPoint at) {
    QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

// The chart's picture on a screen of two device pixels to the pixel.
QImage AtDoubleDensity(CChartControl& control) {
    QImage image(control.size() * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2.0);
    kv::ui::QtCanvas canvas(image, control.font());
    control.GetChart().Paint(canvas);
    return image;
}

int CountColour(const QImage& image, const QRect& area, const QColor& colour) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

QRect ToQRect(const kv::Rect& rect) {
    return QRect(rect.left, rect.top, rect.Width(), rect.Height());
}

}  // namespace

class ChartControlTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_control = std::make_unique<CChartControl>();
        QFont font = m_control->font();
        font.setPixelSize(13);
        m_control->setFont(font);
        m_control->resize(800, 500);
        m_control->SetUnits("s", "V");
        m_control->AddCurve(NoisySine(20000, 1.0, kRed, 1));
        const double x[] = {0.0, 5e-6, 1e-5, 2e-5};
        const double y[] = {0.5, -0.5, 0.5, -0.5};
        m_control->AddCurve(x, y, 4, kBlue, 2);
        m_control->SetCurveName(1, "noisy sine");
        m_control->SetCurveName(2, "zigzag");
        m_control->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_control.get()));
        m_control->Fit();
        m_control->setFocus();
    }
    void cleanup() { m_control.reset(); }

    void wheelZoomsAboutThePointerAndHomeFits() {
        const kv::Chart& chart = m_control->GetChart();
        const kv::Range fitted = chart.Axis(ChartAxis::X).visible;
        const kv::Rect plot = chart.PlotRect();
        const QPoint at(plot.left + plot.Width() / 3, plot.top + plot.Height() / 2);
        const VEC2 under = chart.ToValue({at.x(), at.y()});
        SendWheel(*m_control, at, 120);
        const kv::Range zoomed = chart.Axis(ChartAxis::X).visible;
        QVERIFY(std::fabs((zoomed.hi - zoomed.lo) - 0.8 * (fitted.hi - fitted.lo)) < 1e-15);
        QVERIFY(std::fabs(chart.ToValue({at.x(), at.y()}).x - under.x) < 1e-12);
        QTest::keyClick(m_control.get(), Qt::Key_Home);
        QCOMPARE(chart.Axis(ChartAxis::X).visible, fitted);
        QTest::keyClick(m_control.get(), Qt::Key_Minus);
        QVERIFY(chart.Axis(ChartAxis::X).visible.hi > fitted.hi);
        QTest::mouseDClick(m_control.get(), Qt::LeftButton, {}, at);
        QCOMPARE(chart.Axis(ChartAxis::X).visible, fitted);
        // A middle-button drag pans, and shows no readout meanwhile.
        QTest::mousePress(m_control.get(), Qt::MiddleButton, {}, at);
        QTest::mouseMove(m_control.get(), at + QPoint(50, 0));
        QVERIFY(chart.IsPanning());
        QCOMPARE(chart.Readout(), std::string());
        QTest::mouseRelease(m_control.get(), Qt::MiddleButton, {}, at + QPoint(50, 0));
        QVERIFY(chart.Axis(ChartAxis::X).visible.lo < fitted.lo);
    }

    void readoutNamesTheCurveUnderThePointer() {
        m_control->RemoveAllCurves();
        const double x[] = {0.0, 5e-6, 1e-5, 2e-5};
        const double y[] = {0.5, -0.5, 0.5, -0.5};
        m_control->AddCurve(x, y, 4, kBlue, 2);
        m_control->Fit();
        const kv::Chart& chart = m_control->GetChart();
        const kv::Point onZigzag = chart.ToPixel({1.25e-5, 0.25});
        MoveMouse(*m_control, QPoint(onZigzag.x, onZigzag.y));
        QVERIFY2(chart.Readout().rfind("zigzag ", 0) == 0, chart.Readout().c_str());
    }

    // The window shows the picture the chart paints, as an exported image has
    // it, and the reduced curves paint what every point paints, on a screen
    // of two device pixels to the pixel too. A gap in a measurement: NaN has
    // a place of its own above the plot, which no lowest or highest value
    // stands for.
    void showsTheChartsPictureReducedToItsPixels() {
        std::vector<VEC2> gaps = NoisySine(300000, 0.5, kBlue, 3).m_points;
        for (size_t i = 5000; i < gaps.size(); i += 7919) {
            gaps[i].y = std::nan("");
        }
        m_control->AddCurve(kv::Curve(gaps.data(), static_cast<int>(gaps.size()), kBlue));
        SendWheel(*m_control, QPoint(300, 200), 120);  // some points off the plot
        const QImage shown = m_control->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const kv::Rect plot = m_control->GetChart().PlotRect();
        QVERIFY(CountColour(shown, ToQRect(plot), Qt::red) > plot.Width() / 2);
        QVERIFY(CountColour(shown, ToQRect(plot), Qt::blue) > plot.Width() / 2);
        QCOMPARE(m_control->RenderImage(), shown);
        const QImage doubled = AtDoubleDensity(*m_control);
        m_control->GetChart().SetReduceCurves(false);
        QCOMPARE(m_control->RenderImage(), shown);
        QCOMPARE(AtDoubleDensity(*m_control), doubled);
    }

    // A curve that goes on past the plot's right edge, at many slopes. At
    // two device pixels to the pixel the last line of a polyline, drawn to
    // its very end, may end inside the plot's last column: the reduced curve
    // goes on there as the whole one does.
    void reducedCurveLeavesThePlotAsTheWholeOneDoes() {
        kv::Chart& chart = m_control->GetChart();
        const int past = chart.PlotRect().right;  // the first column past the plot
        const int high = chart.PlotRect().top + 10;
        for (int drop = 20; drop < 300; drop += 7) {
            std::vector<VEC2> points;
            for (const kv::Point pixel : {kv::Point{past - 3, high}, kv::Point{past - 1, high},
                                          kv::Point{past, high + drop}, kv::Point{past, high},
                                          kv::Point{past + 2, high + drop}}) {
                points.push_back(chart.ToValue(pixel));
            }
            m_control->RemoveAllCurves();
            m_control->AddCurve(kv::Curve(points.data(), static_cast<int>(points.size()), kRed));
            chart.SetReduceCurves(true);
            const QImage reduced = AtDoubleDensity(*m_control);
            chart.SetReduceCurves(false);
            QVERIFY2(AtDoubleDensity(*m_control) == reduced, QByteArray::number(drop));
        }
    }

    void contextMenuSwitchesScalesAndSavesImages() {
        QStringList offered;
        QTimer::singleShot(0, this, [&offered] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (QAction* action : menu->actions()) {
                if (!action->isSeparator()) {
                    offered << action->text();
                }
                if (action->text() == QStringLiteral("Logarithmic Y")) {
                    action->trigger();
                }
            }
            menu->close();
        });
        const QPoint at(200, 200);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_control->mapToGlobal(at));
        QApplication::sendEvent(m_control.get(), &event);
        QCOMPARE(offered, (QStringList{"Fit", "Logarithmic X", "Logarithmic Y", "Prefixes",
                                       "Copy image", "Save image..."}));
        const kv::Chart& chart = m_control->GetChart();
        QVERIFY(chart.Axis(ChartAxis::Y).logarithmic);
        QVERIFY(chart.Axis(ChartAxis::Y).visible.lo > 0.0);

        QTemporaryDir folder;
        kv::test::ScriptedFileChooser chooser;
        m_control->SetFileChooser(&chooser);
        kv::test::RecordingMessagePort messages;
        const kv::ScopedMessagePort installed(messages);
        QVERIFY(!m_control->SaveImage());  // cancelled
        QCOMPARE(chooser.queries.at(0).defaultExtension, std::string("png"));
        const auto saveAs = [&](const char* name) {
            chooser.answer = kv::ChosenFile{folder.path().toStdString(), name};
            return m_control->SaveImage();
        };
        QVERIFY(saveAs("chart.png"));
        QCOMPARE(QImage(folder.filePath("chart.png")).size(), m_control->size());
        QVERIFY(saveAs("chart.svg"));
        QFile svg(folder.filePath("chart.svg"));
        QVERIFY(svg.open(QIODevice::ReadOnly) && svg.readAll().contains("<svg"));
        QVERIFY(messages.Requests().empty());
        // An existing picture is replaced only when the user says so; the default is No.
        QVERIFY(!saveAs("chart.png"));
        QCOMPARE(messages.Requests().size(), size_t{1});
        // A folder that is not there: a message says so, nothing is written.
        QVERIFY(!saveAs("missing/chart.png"));
        QCOMPARE(messages.Requests().size(), size_t{2});
        QVERIFY(messages.Requests()[1].text.find("missing") != std::string::npos);
        QVERIFY(!QFile::exists(folder.filePath("missing")));
        m_control->CopyImage();
        QCOMPARE(QApplication::clipboard()->image().size(), m_control->size());
    }

private:
    std::unique_ptr<CChartControl> m_control;
};

QTEST_MAIN(ChartControlTest)
#include "ChartControlTest.moc"
