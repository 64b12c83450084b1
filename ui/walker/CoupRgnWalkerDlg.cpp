#include "ui/walker/CoupRgnWalkerDlg.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QSizeGrip>
#include <QSplitter>
#include <QVBoxLayout>
#include <QWindow>

#include "core/ports/MessagePort.h"
#include "core/walker/RegionCaption.h"
#include "ui/shared/ControlIds.h"
#include "ui/shared/HostParentGuard.h"
#include "ui/shared/ModuleState.h"
#include "ui/walker/CrossSectionCtrl.h"
#include "ui/walker/FramelessListView.h"

namespace kv::ui {
namespace {

constexpr const char* kWindowTitle = "Coupling Region Walker";
constexpr QSize kInitialSize{1000, 560};

QString FromHost(const char* text) {
    return text != nullptr ? QString::fromUtf8(text) : QString();
}

// Qt 6.4's size grip asks its window's platform window to start a resize
// without checking that there is one, and crashes on a press while the
// window has none (between its native window being destroyed and made
// again). There is nothing to resize then: such a press is dropped.
class SizeGripGuard final : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonPress) {
            return false;
        }
        const QWindow* window = static_cast<QWidget*>(watched)->window()->windowHandle();
        return window != nullptr && window->handle() == nullptr;
    }
};

}  // namespace

CCoupRgnWalkerDlg::CCoupRgnWalkerDlg() : m_list(new CCoupledNetsList) {
    m_list->AddRef();
    setModal(false);
    setWindowTitle(QString::fromLatin1(kWindowTitle));
    setWindowIcon(ModuleWindowIcon());
    setSizeGripEnabled(true);
    if (auto* grip = findChild<QSizeGrip*>()) {
        grip->installEventFilter(new SizeGripGuard(grip));
    }
    BuildLayout();
    resize(kInitialSize);
    // The Nets pane starts with a little over half the width, room for its
    // four titles at the dialog's first size.
    m_panes->setSizes({kInitialSize.width() * 11 / 20, kInitialSize.width() * 9 / 20});
    HostParentGuard::Install(this);
}

CCoupRgnWalkerDlg::~CCoupRgnWalkerDlg() {
    // A host that kept the list past the dialog must not fill a pane that is
    // gone.
    m_list->AttachPane(nullptr);
    m_list->Release();
}

void CCoupRgnWalkerDlg::BuildLayout() {
    m_caption = new QLabel(this);
    m_caption->setObjectName(ControlObjectName(kIdRegionCaption));
    m_currentNet = new QLabel(this);
    m_currentNet->setObjectName(ControlObjectName(kIdCurrentNet));
    m_currentNet->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // A host's region title and net name may be of any length: the labels show what fits
    // rather than widen the dialog to it.
    for (QLabel* label : {m_caption, m_currentNet}) {
        label->setMinimumWidth(1);
    }
    auto* top = new QHBoxLayout;
    top->addWidget(m_caption, 1);
    top->addWidget(m_currentNet);

    m_nets = new CFramelessListView;
    m_nets->setObjectName(ControlObjectName(kIdNets));
    m_crossSection = new CCrossSectionCtrl;
    m_crossSection->setObjectName(ControlObjectName(kIdCrossSection));
    m_report = new QPlainTextEdit;
    m_report->setObjectName(ControlObjectName(kIdReport));
    m_report->setReadOnly(true);  // still selectable and copyable
    m_report->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_report->setLineWrapMode(QPlainTextEdit::NoWrap);
    QFont fixed = m_report->font();
    fixed.setStyleHint(QFont::Monospace);
    fixed.setFamily(QStringLiteral("monospace"));
    m_report->setFont(fixed);

    auto* right = new QSplitter(Qt::Vertical);
    right->setObjectName(QStringLiteral("drawingSplitter"));
    right->addWidget(m_crossSection);
    right->addWidget(m_report);
    right->setStretchFactor(0, 3);
    right->setStretchFactor(1, 2);
    m_panes = new QSplitter(Qt::Horizontal);
    m_panes->setObjectName(QStringLiteral("paneSplitter"));
    m_panes->addWidget(m_nets);
    m_panes->addWidget(right);
    m_panes->setStretchFactor(0, 1);
    m_panes->setStretchFactor(1, 1);
    m_panes->setChildrenCollapsible(false);

    m_previous = new QPushButton(tr("< &Previous"), this);
    m_previous->setObjectName(ControlObjectName(kIdPrevious));
    m_next = new QPushButton(tr("&Next >"), this);
    m_next->setObjectName(ControlObjectName(kIdNext));
    auto* close = new QPushButton(tr("Close"), this);
    close->setObjectName(ControlObjectName(kIdClose));
    for (QPushButton* button : {m_previous, m_next, close}) {
        button->setAutoDefault(false);
    }
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_previous);
    bottom->addWidget(m_next);
    bottom->addStretch(1);
    bottom->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_panes, 1);
    layout->addLayout(bottom);

    connect(m_previous, &QPushButton::clicked, this,
            [this] { NotifyHost([](ICRWDHost& host) { host.OnRegionStep(-1); }); });
    connect(m_next, &QPushButton::clicked, this,
            [this] { NotifyHost([](ICRWDHost& host) { host.OnRegionStep(+1); }); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(m_nets->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CCoupRgnWalkerDlg::OnRowSelected);
    connect(m_nets->model(), &QAbstractItemModel::modelReset, this,
            [this] { m_crossSection->SetHighlightedNet({}); });
    SetRegion(0, 0, nullptr);
}

bool CCoupRgnWalkerDlg::CreateWindow(QWidget* parent, ICRWDHost* host) {
    if (m_created) {
        return false;  // one window per dialog object
    }
    ModuleStateGuard moduleState;
    // Stays a window of its own over the host's window, not a child in it.
    setParent(parent, windowFlags() | Qt::Dialog);
    m_host = host;
    m_created = true;
    m_widthsSettled = false;
    m_list->AttachPane(m_nets);
    return true;
}

bool CCoupRgnWalkerDlg::DestroyWindow() {
    if (!m_created) {
        ShowMessage("The Coupling Region Walker dialog has no window to destroy.",
                    MessageIcon::Error);
        return false;
    }
    ModuleStateGuard moduleState;
    m_destroying = true;
    // A close the window refuses (a filter on it that keeps it open) leaves
    // the window as it is.
    const bool closed = close();
    m_destroying = false;
    if (!closed) {
        ShowMessage("Unable to destroy the Coupling Region Walker dialog window",
                    MessageIcon::Error);
        return false;
    }
    m_created = false;
    m_host = nullptr;
    return true;
}

void CCoupRgnWalkerDlg::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // The columns were built before the window had its real size: the first
    // time it is up, the pane is attached again, so they share its actual
    // width (building columns drops the rows' cells, so the rows come again).
    if (m_created && !m_widthsSettled) {
        m_widthsSettled = true;
        layout()->activate();
        m_list->AttachPane(m_nets);
    }
}

void CCoupRgnWalkerDlg::NotifyHost(const std::function<void(ICRWDHost&)>& call) {
    if (m_host == nullptr) {
        return;
    }
    ++m_notifyingHost;
    call(*m_host);
    // The host may have given the dialog back to the factory meanwhile: the
    // factory then leaves the deletion to the event loop, so this still
    // exists here, but nothing more is done with it.
    --m_notifyingHost;
}

void CCoupRgnWalkerDlg::reject() {
    close();
}

void CCoupRgnWalkerDlg::closeEvent(QCloseEvent* event) {
    event->accept();
    if (!m_destroying) {
        NotifyHost([](ICRWDHost& host) { host.OnWalkerClosed(); });
    }
}

void CCoupRgnWalkerDlg::SetRegion(int32_t index, int32_t count, const char* title) {
    const RegionState state = DescribeRegion(index, count, title);
    m_caption->setText(QString::fromStdString(state.caption));
    m_previous->setEnabled(state.canGoBack);
    m_next->setEnabled(state.canGoOn);
}

void CCoupRgnWalkerDlg::SetCurrentNet(const char* netName) {
    const QString name = FromHost(netName);
    m_currentNet->setText(name.isEmpty() ? QString() : tr("Current net: %1").arg(name));
    setWindowTitle(name.isEmpty() ? QString::fromLatin1(kWindowTitle)
                                  : QStringLiteral("%1 - %2").arg(kWindowTitle, name));
}

bool CCoupRgnWalkerDlg::SelectNet(int32_t index) {
    const int row = m_nets->RowOfItemData(index);
    if (row < 0) {
        ShowMessage("Unable to select an entry in the Nets pane.", MessageIcon::Warning);
        return false;
    }
    // The host asked for it: the host is not told back.
    m_selectingForHost = true;
    const QModelIndex at = m_nets->model()->index(row, 0);
    m_nets->selectionModel()->setCurrentIndex(
        at, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_nets->scrollTo(at);
    m_selectingForHost = false;
    HighlightEntry(index);
    return true;
}

void CCoupRgnWalkerDlg::OnRowSelected() {
    const QModelIndexList rows = m_nets->selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        m_crossSection->SetHighlightedNet({});
        return;
    }
    const int32_t index = m_nets->ItemDataOfRow(rows.front().row());
    HighlightEntry(index);
    if (!m_selectingForHost) {
        NotifyHost([index](ICRWDHost& host) { host.OnNetSelected(index); });
    }
}

void CCoupRgnWalkerDlg::HighlightEntry(int32_t index) {
    const NETENTRY* entry = m_list->Find(index);
    m_crossSection->SetHighlightedNet(entry != nullptr ? entry->netName : "");
}

// The interface, as the host sees it.

bool CCoupRgnWalkerDlg::CDlgAccess::CreateWindow(QWidget* parent, ICRWDHost* host) {
    return m_dialog.CreateWindow(parent, host);
}

bool CCoupRgnWalkerDlg::CDlgAccess::DestroyWindow() {
    return m_dialog.DestroyWindow();
}

void CCoupRgnWalkerDlg::CDlgAccess::Show(bool show) {
    if (!m_dialog.m_created) {
        return;  // nothing to show before CreateWindow
    }
    if (show) {
        m_dialog.show();
        m_dialog.raise();
    } else {
        m_dialog.hide();
    }
}

void CCoupRgnWalkerDlg::CDlgAccess::SetCurrentNet(const char* netName) {
    m_dialog.SetCurrentNet(netName);
}

void CCoupRgnWalkerDlg::CDlgAccess::SetRegion(int32_t index, int32_t count, const char* title) {
    m_dialog.SetRegion(index, count, title);
}

ICRWDCoupledNetsList* CCoupRgnWalkerDlg::CDlgAccess::GetNetsList() {
    return m_dialog.m_list;
}

void CCoupRgnWalkerDlg::CDlgAccess::RefreshNets() {
    // Before the window exists there is no pane to fill; CreateWindow fills it.
    if (m_dialog.m_list->Pane() != nullptr) {
        m_dialog.m_list->FillRows();
    }
}

bool CCoupRgnWalkerDlg::CDlgAccess::SelectNet(int32_t index) {
    return m_dialog.SelectNet(index);
}

void CCoupRgnWalkerDlg::CDlgAccess::SetReport(const char* text) {
    m_dialog.m_report->setPlainText(FromHost(text));
}

void CCoupRgnWalkerDlg::CDlgAccess::SetCrossSection(const STACKUPARRAY* stackup,
                                                    const CROSSSECTIONTRACE* traces,
                                                    int32_t count) {
    m_dialog.m_crossSection->SetData(CrossSectionData::Copy(stackup, traces, count));
}

}  // namespace kv::ui
