// The bar as a host sees it: what it paints at several positions and when
// it repaints.

#include <QEvent>
#include <QImage>
#include <QtTest>

#include "core/shared/ColorRef.h"
#include "ui/progress/ProgressBarCtrl.h"

namespace {

constexpr uint32_t kFill = kv::MakeColorRef(0, 0, 200);
constexpr uint32_t kEmpty = kv::MakeColorRef(255, 255, 255);
const QColor kFillColor(0, 0, 200);
const QColor kEmptyColor(255, 255, 255);

class PaintCounter final : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++paints;
        }
        return false;
    }
};

int Distance(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
           std::abs(a.blue() - b.blue());
}

// Text pixels in `color` inside columns [from, to): pixels nearer to `color`
// than to `background` (the label is anti-aliased).
int CountInLabelRows(const QImage& image, int from, int to, const QColor& color,
                     const QColor& background) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = from; x < to; ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += Distance(pixel, color) < Distance(pixel, background) ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

class ProgressBarTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_bar = std::make_unique<kv::ui::CProgressBarCtrl>();
        QFont font = m_bar->font();
        font.setPixelSize(14);
        m_bar->setFont(font);
        m_bar->resize(200, 24);
        m_bar->SetFillColor(kFill);
        m_bar->SetEmptyColor(kEmpty);
    }
    void cleanup() { m_bar.reset(); }

    void donePartFollowsTheClampedPosition_data() {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("doneWidth");
        QTest::newRow("0") << 0 << 0;
        QTest::newRow("37") << 37 << 74;
        QTest::newRow("100") << 100 << 200;
        QTest::newRow("150") << 150 << 200;
        QTest::newRow("negative") << -20 << 0;
    }
    void donePartFollowsTheClampedPosition() {
        QFETCH(int, position);
        QFETCH(int, doneWidth);
        m_bar->SetPos(position, true);
        QCOMPARE(m_bar->GetPos(), position);  // stored unclamped
        const QImage image = m_bar->grab().toImage();
        // The top row holds no text: it shows the split alone.
        for (int x = 0; x < 200; ++x) {
            QCOMPARE(image.pixelColor(x, 0), x < doneWidth ? kFillColor : kEmptyColor);
        }
    }

    void labelIsReadableAndInvertedWhereTheBarPassedIt() {
        // Half way: the split runs through the middle of the label.
        m_bar->SetPos(50, true);
        QImage image = m_bar->grab().toImage();
        // Text over the done part, in the empty colour; over the rest, in the fill colour.
        QVERIFY(CountInLabelRows(image, 60, 100, kEmptyColor, kFillColor) > 5);
        QVERIFY(CountInLabelRows(image, 100, 140, kFillColor, kEmptyColor) > 5);
        // Nothing done: the text in the fill colour; all done: in the empty colour.
        m_bar->SetPos(0, true);
        image = m_bar->grab().toImage();
        QVERIFY(CountInLabelRows(image, 60, 140, kFillColor, kEmptyColor) > 5);
        m_bar->SetPos(150, true);
        image = m_bar->grab().toImage();
        QVERIFY(CountInLabelRows(image, 60, 140, kEmptyColor, kFillColor) > 5);
    }

    void labelWithoutPercentSignIsNarrower() {
        m_bar->SetPos(100, true);
        const auto textPixels = [this] {
            return CountInLabelRows(m_bar->grab().toImage(), 0, 200, kEmptyColor, kFillColor);
        };
        const int withSign = textPixels();
        m_bar->SetNoPercentSign(true);
        QVERIFY(textPixels() > 0);
        QVERIFY(textPixels() < withSign);
    }

    void repaintsAtOnceOnlyForChangesOrForce() {
        m_bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_bar.get()));
        m_bar->SetPos(40, true);
        PaintCounter counter;
        m_bar->installEventFilter(&counter);

        m_bar->SetPos(40, false);
        QCOMPARE(counter.paints, 0);
        m_bar->SetPos(40, true);
        QCOMPARE(counter.paints, 1);  // painted before SetPos returned
        m_bar->SetPos(41, false);
        QCOMPARE(counter.paints, 2);
        m_bar->SetNoPercentSign(true);  // waits for the next repaint
        QCOMPARE(counter.paints, 2);
        m_bar->SetFillColor(kFill);
        m_bar->SetEmptyColor(kEmpty);
        QCOMPARE(counter.paints, 4);
        m_bar->removeEventFilter(&counter);
    }

    void handleIsTheWidgetItself() { QCOMPARE(m_bar->GetHwnd(), m_bar.get()); }

private:
    std::unique_ptr<kv::ui::CProgressBarCtrl> m_bar;
};

QTEST_MAIN(ProgressBarTest)
#include "ProgressBarTest.moc"
