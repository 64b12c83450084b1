// The bit pattern control as a user meets it: real key and mouse events, the
// real clipboard, its context menu and what it paints reach and show its
// editor, whose rules are tested without a window (tests/core/bitpattern).

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

#include "ui/bitpattern/BitPatternCtrl.h"
#include "ui/canvas/QtCanvas.h"

using namespace Qt::StringLiterals;

using kv::ui::CBitPatternCtrl;

namespace {

QString BitsOf(const CBitPatternCtrl& control) {
    QString text;
    for (const uint8_t bit : control.m_bits.Data()) {
        text += bit != 0 ? QLatin1Char('1') : QLatin1Char('0');
    }
    return text;
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

    void keysEditThroughTheClipboard() {
        QTest::keyClicks(m_control.get(), "1011");
        QCOMPARE(BitsOf(*m_control), u"1011"_s);
        QTest::keyClick(m_control.get(), Qt::Key_1, Qt::KeypadModifier);  // not the main keyboard
        QCOMPARE(BitsOf(*m_control), u"1011"_s);
        QTest::keyClick(m_control.get(), Qt::Key_Left, Qt::ShiftModifier);
        QTest::keyClick(m_control.get(), Qt::Key_Left, Qt::ShiftModifier);
        QTest::keyClick(m_control.get(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"11"_s);
        QTest::keyClick(m_control.get(), Qt::Key_End);
        QTest::keyClick(m_control.get(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(BitsOf(*m_control), u"101111"_s);
        QTest::keyClick(m_control.get(), Qt::Key_Home, Qt::ShiftModifier);
        QTest::keyClick(m_control.get(), Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(BitsOf(*m_control), QString());
        QCOMPARE(QApplication::clipboard()->text(), u"101111"_s);
    }

    void mouseCursorsAndTheAutoScrollTimerReachTheEditor() {
        const uint8_t bits[] = {1, 0, 1};
        m_control->SetPattern(bits, 3);
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const QPoint beyond(l.CellX(9) + l.cellWidth / 2, l.lowY + 1);
        QTest::mouseMove(m_control.get(), beyond);
        QCOMPARE(m_control->cursor().shape(), Qt::BitmapCursor);
        QTest::mouseClick(m_control.get(), Qt::LeftButton, {}, beyond);
        QCOMPARE(BitsOf(*m_control), u"101000000"_s);
        QTest::mouseMove(m_control.get(), QPoint(l.CellX(1), l.digitRow.top + 2));
        QCOMPARE(m_control->cursor().shape(), Qt::IBeamCursor);

        // The end (low) dragged past the edge grows the pattern on the timer until the button is
        // up.
        const QPoint handle(l.CellX(9), l.lowY);
        const QPoint edge(m_control->width() - 1, l.lowY);
        QTest::mouseMove(m_control.get(), handle);
        QTest::mousePress(m_control.get(), Qt::LeftButton, {}, handle);
        QTest::mouseMove(m_control.get(), edge);
        const qsizetype grown = BitsOf(*m_control).size();
        QTRY_VERIFY(BitsOf(*m_control).size() >= grown + 3);
        QVERIFY(m_control->HorizontalScrollBar()->value() > 0);
        QTest::mouseRelease(m_control.get(), Qt::LeftButton, {}, edge);
        const QString after = BitsOf(*m_control);
        QTest::qWait(60);
        QCOMPARE(BitsOf(*m_control), after);
    }

    void contextMenuOffersWhatAppliesAndRunsTheChoice() {
        const uint8_t bits[] = {1, 1, 0, 0};
        m_control->SetPattern(bits, 4);
        QTest::keyClick(m_control.get(), Qt::Key_End, Qt::ShiftModifier);
        QApplication::clipboard()->setText(u"0101"_s);
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const QPoint at(l.CellX(2) + 3, l.digitRow.top + 3);
        QStringList offered;
        bool keptSelection = false;
        QTimer::singleShot(0, this, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (const QAction* action : menu->actions()) {
                offered << action->text() + (action->isEnabled() ? "+" : "-");
            }
            // The open menu does not take the focus away: caret and selection stay.
            keptSelection = m_control->Editor().HasSelection();
            QTest::keyClick(menu, Qt::Key_T);  // "Cu&t"
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_control->mapToGlobal(at));
        QApplication::sendEvent(m_control.get(), &event);
        QCOMPARE(offered, (QStringList{"Cu&t\tCtrl+X+", "&Copy\tCtrl+C+", "&Paste\tCtrl-V+",
                                       "&Delete\tDel+"}));
        QVERIFY(keptSelection);
        QCOMPARE(QApplication::clipboard()->text(), u"1100"_s);
        QCOMPARE(BitsOf(*m_control), QString());
        QVERIFY(m_control->Editor().IsCaretShown());
    }

    // The control shows the editor's picture, with the caret inverted over it.
    void paintsTheEditorsPictureAndTheCaret() {
        const uint8_t bits[] = {1, 1, 0, 1, 0, 0};
        m_control->SetPattern(bits, 6);
        QTest::keyClick(m_control.get(), Qt::Key_Right);
        QTest::keyClick(m_control.get(), Qt::Key_Right, Qt::ShiftModifier);
        QVERIFY(m_control->CaretDrawn());
        const QRect client = m_control->ClientRect();
        QImage expected(client.size(), QImage::Format_RGB32);
        {
            kv::ui::QtCanvas canvas(expected, m_control->font());
            m_control->Editor().Paint(canvas);
        }
        const QImage shown =
            m_control->grab(client).toImage().convertToFormat(QImage::Format_RGB32);
        // The caret stands at the left edge of its bit's cell.
        const kv::BitPatternLayout& l = m_control->Editor().Layout();
        const int caretColumn = l.CellX(m_control->GetCaretIndex());
        int inverted = 0;
        for (int y = 0; y < client.height(); ++y) {
            for (int x = 0; x < client.width(); ++x) {
                if (shown.pixel(x, y) != expected.pixel(x, y)) {
                    QCOMPARE(x, caretColumn);
                    QCOMPARE(shown.pixel(x, y) & 0xffffff, ~expected.pixel(x, y) & 0xffffff);
                    ++inverted;
                }
            }
        }
        QVERIFY(inverted > 0);
        // The colours users know the control by: selection band, grid, start square.
        QCOMPARE(shown.pixelColor(l.CellX(1) + 3, l.MiddleY() + 5), QColor(144, 192, 192));
        QCOMPARE(shown.pixelColor(l.CellX(20) + 3, l.MiddleY()), QColor(224, 224, 224));
        QCOMPARE(shown.pixelColor(l.CellX(20) + 3, l.highY), QColor(192, 192, 192));
        m_control->SetPattern(nullptr, 0);
        QCOMPARE(m_control->grab().toImage().pixelColor(l.left + 1, l.highY + 1),
                 QColor(224, 0, 0));
    }

    void focusLossDropsTheSelectionAndTheCaret() {
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

    void attachesToItsPlaceholder() {
        QWidget dialog;
        QFont font = dialog.font();
        font.setPixelSize(20);
        dialog.setFont(font);
        auto* layout = new QVBoxLayout(&dialog);
        auto* placeholder = new QWidget;
        placeholder->setObjectName(u"ctl1000"_s);
        layout->addWidget(placeholder);
        auto* control = new CBitPatternCtrl;
        QVERIFY(control->AttachToDlgItem(1000, &dialog));
        QCOMPARE(dialog.findChildren<QWidget*>(u"ctl1000"_s), (QList<QWidget*>{control}));
        QCOMPARE(layout->indexOf(control), 0);
        QCOMPARE(control->Editor().Layout().cellWidth,
                 QFontMetrics(font).horizontalAdvance(u"00"_s));
        QVERIFY(!control->AttachToDlgItem(1001, &dialog));
    }

private:
    std::unique_ptr<CBitPatternCtrl> m_control;
};

QTEST_MAIN(BitPatternCtrlTest)
#include "BitPatternCtrlTest.moc"
