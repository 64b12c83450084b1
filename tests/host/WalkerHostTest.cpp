// The coupling region walker as a host gets it: loaded with dlopen, created
// through the factory and given back to it, also from inside its own close
// notification. What the dialog does with clicks is the widget test's.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <string>
#include <vector>

#include "kvcomctl/kvcomctl.h"
#include "tests/host/QtHost.h"

namespace {

using kv::test::g_factory;

// Answers the next message box as a user would and keeps its text.
class BoxAnswerer {
public:
    BoxAnswerer() {
        QTimer::singleShot(0, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                texts.push_back(box->text().toStdString());
                box->accept();
            }
        });
    }
    std::vector<std::string> texts;
};

// The walker's window, found as the host's window's new dialog child.
QDialog* CreateUnder(ICouplingRgnWalkerDlg* walker, QWidget& owner, ICRWDHost* host) {
    const auto before = owner.findChildren<QDialog*>(Qt::FindDirectChildrenOnly);
    EXPECT_TRUE(walker->CreateWindow(&owner, host));
    for (QDialog* dialog : owner.findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) {
        if (!before.contains(dialog)) {
            return dialog;
        }
    }
    return nullptr;
}

QString Caption(QDialog* dialog) {
    return dialog->findChild<QLabel*>("ctl1204")->text();
}

TEST(HostWalker, TwoWalkersEachFoundByItsOwnPointerAndDeletedOnce) {
    QWidget owner;
    ICouplingRgnWalkerDlg* first = g_factory->CreateCoupRgnWalkerDlg();
    ICouplingRgnWalkerDlg* second = g_factory->CreateCoupRgnWalkerDlg();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ASSERT_NE(first, second);
    QPointer<QDialog> firstDialog = CreateUnder(first, owner, nullptr);
    QPointer<QDialog> secondDialog = CreateUnder(second, owner, nullptr);
    ASSERT_TRUE(firstDialog && secondDialog);
    first->SetRegion(0, 2, "A");
    second->SetRegion(1, 2, "B");
    EXPECT_EQ(Caption(firstDialog), "Region 1 of 2: A");
    EXPECT_EQ(Caption(secondDialog), "Region 2 of 2: B");

    g_factory->Destroy(first);
    EXPECT_TRUE(firstDialog.isNull());
    EXPECT_FALSE(secondDialog.isNull());
    g_factory->Destroy(first);  // already destroyed: ignored, the other stays
    EXPECT_FALSE(secondDialog.isNull());
    second->SetRegion(0, 2, "C");
    EXPECT_EQ(Caption(secondDialog), "Region 1 of 2: C");
    // Giving a walker back takes its window first, and says so when the host already did.
    EXPECT_TRUE(second->DestroyWindow());
    BoxAnswerer answerer;
    g_factory->Destroy(second);
    EXPECT_TRUE(secondDialog.isNull());
    EXPECT_EQ(answerer.texts, std::vector<std::string>{
                                  "The Coupling Region Walker dialog has no window to destroy."});
}

// The usual host: the walker goes as soon as the user closes it.
struct DestroyOnClose final : ICRWDHost {
    ICouplingRgnWalkerDlg* walker = nullptr;
    void OnRegionStep(int32_t) override {}
    void OnNetSelected(int32_t) override {}
    void OnWalkerClosed() override { g_factory->Destroy(walker); }
};

TEST(HostWalker, DestroyedFromItsOwnCloseNotification) {
    DestroyOnClose host;
    host.walker = g_factory->CreateCoupRgnWalkerDlg();
    QWidget owner;
    QPointer<QDialog> dialog = CreateUnder(host.walker, owner, &host);
    host.walker->Show(true);
    QTest::mouseClick(dialog->findChild<QPushButton*>("ctl2"), Qt::LeftButton);
    // Not deleted under the click that is still being handled, but once the
    // event loop has it back.
    EXPECT_FALSE(dialog.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(dialog.isNull());
    g_factory->Destroy(host.walker);  // already gone: ignored
}

}  // namespace
