// The bit pattern control as a user meets it: real key and mouse events,
// the real clipboard, its context menu and what it paints.

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

#include "module/ModuleWidgetClasses.h"
#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/shared/WidgetClassRegistry.h"

using kv::ui::CBitPatternCtrl;

namespace {

QString BitsOf(const CBitPatternCtrl& control) {
    QString text;
    for (const uint8_t bit : control.m_bits.Data()) {
        text += bit != 0 ? QLatin1Char('1') : QLatin1Char('0');
    }
    return text;
}

// Some pixel of `image` in rows [y - 1, y + 1] at column x has the colour.
bool NearRowHas(const QImage& image, int x, int y, const QColor& color) {
    for (int row = y - 1; row <= y + 1; ++row) {
        if (image.pixelColor(x, row) == color) {
            return true;
        }
    }
    return false;
}

}  // namespace

class BitPatternCtrlTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_control = std::make_unique<CBitPatternCtrl>();
        QFont font = m_control->font();
        font.setPixelSize(13);
        m_control->setFont(font);
        m_control->resize(600, 120);
        m_control->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_control.get()));
        m_control->activateWindow();
        m_control->setFocus();
        QTRY_VERIFY(m_control->hasFocus());
    }
    void cleanup() { m_control.reset(); }

    void typingAndShiftArrowsEditThroughTheClipboard() {
        QTest::keyClicks(m_control.get(), "1011");
        QCOMPARE(BitsOf(*m_control), QStringLiteral("1011"));
        QTest::keyClick(m_control.get(), Qt::Key_1, Qt::KeypadModifier);  // not the main keyboard
        QCOMPARE(BitsOf(*m_control), QStringLiteral("1011"));
        QTest::keyClick(m_control.get(), Qt::Key_Left, Qt::ShiftModifier);
        QTest::keyClick(m_control.get(), Qt::Key_Left, Qt::ShiftModifier);
        QTest::keyClick(m_control.get(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("11"));
        QTest::keyClick(m_control.get(), Qt::Key_End);
        QTest::keyClick(m_control.get(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(BitsOf(*m_control), QStringLiteral("101111"));
        QCOMPARE(m_control->GetCaretIndex(), 6);
        QTest::keyClick(m_control.get(), Qt::Key_Home, Qt::ShiftModifier);
        QTest::keyClick(m_control.get(), Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(BitsOf(*m_control), QString());
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("101111"));
        QApplication::clipboard()->setText(QStringLiteral("10a"));
        QTest::keyClick(m_control.get(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(BitsOf(*m_control), QString());
    }

    void clickBeyondTheEndAppendsUpToTheCell() {
        const uint8_t bits[] = {1, 0, 1};
        m_control->SetPattern(bits, 3);
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const QPoint target(l.CellX(9) + l.cellWidth / 2, l.lowY + 1);
        QTest::mouseMove(m_control.get(), target);
        QVERIFY(m_control->Editor().HasMarker());
        QCOMPARE(m_control->cursor().shape(), Qt::BitmapCursor);
        QTest::mouseClick(m_control.get(), Qt::LeftButton, {}, target);
        QCOMPARE(BitsOf(*m_control), QStringLiteral("101000000"));
        // Over the digits the cursor is the text beam.
        QTest::mouseMove(m_control.get(), QPoint(l.CellX(1), l.digitRow.top + 2));
        QCOMPARE(m_control->cursor().shape(), Qt::IBeamCursor);
    }

    void draggingTheEndPastTheEdgeScrollsAndGrows() {
        const uint8_t bits[] = {1, 0, 1};
        m_control->SetPattern(bits, 3);
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const QPoint handle(l.CellX(3), l.highY);
        QTest::mouseMove(m_control.get(), handle);
        QTest::mousePress(m_control.get(), Qt::LeftButton, {}, handle);
        QTest::mouseMove(m_control.get(), QPoint(l.CellX(6) + 2, l.highY));
        QCOMPARE(BitsOf(*m_control), QStringLiteral("101111"));
        QTest::mouseMove(m_control.get(), QPoint(m_control->width() - 1, l.highY));
        const int grown = static_cast<int>(BitsOf(*m_control).size());
        QTRY_VERIFY(m_control->HorizontalScrollBar()->value() >= 6);
        QVERIFY(BitsOf(*m_control).size() >= grown + 3);
        QTest::mouseRelease(m_control.get(), Qt::LeftButton, {},
                            QPoint(m_control->width() - 1, l.highY));
        const QString after = BitsOf(*m_control);
        QTest::qWait(60);
        QCOMPARE(BitsOf(*m_control), after);  // the timer stopped with the button
    }

    void contextMenuOffersWhatApplies() {
        const uint8_t bits[] = {1, 1, 0, 0};
        m_control->SetPattern(bits, 4);
        QTest::keyClick(m_control.get(), Qt::Key_End, Qt::ShiftModifier);
        QApplication::clipboard()->setText(QStringLiteral("0101"));
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const QPoint at(l.CellX(2) + 3, l.digitRow.top + 3);

        QStringList offered;
        QTimer::singleShot(0, this, [&offered] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (const QAction* action : menu->actions()) {
                offered << action->text() + (action->isEnabled() ? "+" : "-");
            }
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_control->mapToGlobal(at));
        QApplication::sendEvent(m_control.get(), &event);
        QCOMPARE(offered, (QStringList{"Cu&t\tCtrl+X+", "&Copy\tCtrl+C+", "&Paste\tCtrl-V+",
                                       "&Delete\tDel+"}));
        QTest::qWait(20);
        // The menu does not take the focus away: caret and selection stay.
        QCOMPARE(m_control->GetCaretIndex(), 2);
        QVERIFY(m_control->Editor().HasSelection());

        m_control->SetReadOnly(true);
        offered.clear();
        QTimer::singleShot(0, this, [&offered] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (const QAction* action : menu->actions()) {
                offered << QString(action->isEnabled() ? "+" : "-");
            }
            QTest::keyClick(menu, Qt::Key_C);  // "&Copy"
        });
        QApplication::clipboard()->clear();
        QApplication::sendEvent(m_control.get(), &event);
        QCOMPARE(offered, (QStringList{"-", "+", "-", "-"}));
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("1100"));
    }

    void paintsTheWaveformInItsColours() {
        const uint8_t bits[] = {1, 1, 0, 1, 0, 0};
        m_control->SetPattern(bits, 6);
        QTest::keyClick(m_control.get(), Qt::Key_Right);
        QTest::keyClick(m_control.get(), Qt::Key_Right, Qt::ShiftModifier);
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const QImage image = m_control->grab().toImage();
        const int middleOfBit0 = l.CellX(0) + l.cellWidth / 2;
        QVERIFY(NearRowHas(image, middleOfBit0, l.highY, Qt::black));
        QVERIFY(NearRowHas(image, l.CellX(2) + l.cellWidth / 2, l.lowY, Qt::black));
        // Bit 1 is selected: a band behind the waveform, the digit cell inverted.
        QCOMPARE(image.pixelColor(l.CellX(1) + 3, l.MiddleY() + 5), QColor(144, 192, 192));
        QCOMPARE(image.pixelColor(l.CellX(1) + 1, l.digitRow.top + 1), QColor(Qt::black));
        QCOMPARE(image.pixelColor(l.CellX(3) + 1, l.digitRow.top + 1), QColor(Qt::white));
        // Past the bits only the grid: grey middle and level lines.
        const int empty = l.CellX(20) + 3;
        QCOMPARE(image.pixelColor(empty, l.MiddleY()), QColor(224, 224, 224));
        QCOMPARE(image.pixelColor(empty, l.highY), QColor(192, 192, 192));
        QCOMPARE(image.pixelColor(l.CellX(20), l.MiddleY() + 3), QColor(192, 192, 192));

        m_control->SetPattern(nullptr, 0);
        const QImage start = m_control->grab().toImage();
        QCOMPARE(start.pixelColor(l.left + 1, l.highY + 1), QColor(224, 0, 0));
        QCOMPARE(start.pixelColor(l.left - 2, l.lowY - 2), QColor(224, 0, 0));
    }

    void focusShowsTheCaretAndItsLossDropsTheSelection() {
        QVERIFY(m_control->Editor().IsCaretShown());
        QVERIFY(m_control->CaretDrawn());
        QTest::keyClicks(m_control.get(), "10");
        QTest::keyClick(m_control.get(), Qt::Key_Home, Qt::ShiftModifier);
        QVERIFY(m_control->Editor().HasSelection());
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!m_control->hasFocus());
        QVERIFY(!m_control->Editor().HasSelection());
        QVERIFY(!m_control->CaretDrawn());
    }

    void scrollBarFollowsThePainter() {
        QVERIFY(!m_control->HorizontalScrollBar()->isHidden());
        const int fullHeight = m_control->ClientRect().height();
        m_control->SetPaintMode(1, 0);
        QVERIFY(m_control->HorizontalScrollBar()->isHidden());
        QVERIFY(m_control->ClientRect().height() > fullHeight);
        m_control->SetPaintMode(0, 0);
        QVERIFY(!m_control->HorizontalScrollBar()->isHidden());
    }

    void attachesToItsPlaceholderAndIsRegisteredByClassName() {
        QWidget dialog;
        QFont font = dialog.font();
        font.setPixelSize(20);
        dialog.setFont(font);
        auto* layout = new QVBoxLayout(&dialog);
        auto* placeholder = new QWidget;
        placeholder->setObjectName(QStringLiteral("ctl1000"));
        layout->addWidget(placeholder);
        auto* control = new CBitPatternCtrl;
        QVERIFY(control->AttachToDlgItem(1000, &dialog));
        QCOMPARE(dialog.findChildren<QWidget*>(QStringLiteral("ctl1000")),
                 (QList<QWidget*>{control}));
        QCOMPARE(layout->indexOf(control), 0);
        QCOMPARE(control->Editor().Layout().cellWidth,
                 QFontMetrics(font).horizontalAdvance(QStringLiteral("00")));
        QVERIFY(!control->AttachToDlgItem(1001, &dialog));

        kv::module::RegisterModuleWidgetClasses();
        QWidget parent;
        QWidget* made = kv::ui::WidgetClassRegistry::Instance().Create(
            QStringLiteral("Velmorine Bit Pattern Editor"), &parent);
        QVERIFY(qobject_cast<CBitPatternCtrl*>(made) != nullptr);
        kv::module::UnregisterModuleWidgetClasses();
    }

private:
    std::unique_ptr<CBitPatternCtrl> m_control;
};

QTEST_MAIN(BitPatternCtrlTest)
#include "BitPatternCtrlTest.moc"
