#include "ui/progress/ProgressDlg.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <algorithm>

#include "core/ports/Clock.h"
#include "core/progress/DelayedShow.h"
#include "core/progress/ProgressDialogTemplate.h"
#include "ui/progress/QuitRequestCatcher.h"
#include "ui/shared/ControlIds.h"
#include "ui/shared/HostParentGuard.h"

namespace kv::ui {
namespace {

QRect ToQRect(const DialogRect& rect) {
    return QRect(rect.x, rect.y, rect.width, rect.height);
}

}  // namespace

CProgressDlg::CProgressDlg(const IClock* clock)
    : m_clock(clock != nullptr ? clock : &DefaultClock()), m_delayTimer(new QTimer(this)) {
    // Only a title bar and a close button, which EnableCancel can take away.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowCloseButtonHint);
    setModal(false);
    BuildFromTemplate();
    m_report.SetOwner(this);
    m_delayTimer->setObjectName(QStringLiteral("delayTimer"));
    connect(m_delayTimer, &QTimer::timeout, this, &CProgressDlg::OnDelayTick);
    ui::HostParentGuard::Install(this);
}

CProgressDlg::~CProgressDlg() {
    // A dialog given back to the factory while still up must not leave the
    // host's windows disabled.
    Destroy();
}

void CProgressDlg::BuildFromTemplate() {
    const QFontMetrics metrics(font());
    const DialogBaseUnits base =
        BaseUnitsFromFont(metrics.horizontalAdvance(QString::fromLatin1(
                              kBaseUnitSample.data(), static_cast<int>(kBaseUnitSample.size()))),
                          metrics.height());
    setFixedSize(ToQRect(DialogUnitsToPixels(progress::kDialogSize, base)).size());
    for (const progress::TemplateControl& control : progress::kControls) {
        QWidget* widget = nullptr;
        switch (control.kind) {
            case progress::ControlKind::Text:
                widget = new QLabel(this);
                break;
            case progress::ControlKind::BarPlaceholder:
                widget = new QWidget(this);
                break;
            case progress::ControlKind::PushButton:
                m_cancelButton = new QPushButton(CancelButtonText(), this);
                connect(m_cancelButton, &QPushButton::clicked, this, &CProgressDlg::OnCancel);
                widget = m_cancelButton;
                break;
        }
        widget->setObjectName(ui::ControlObjectName(control.id));
        widget->setGeometry(ToQRect(DialogUnitsToPixels(control.place, base)));
    }
}

bool CProgressDlg::CreateAt(QWidget* owner, uint32_t delayMs, int x, int y) {
    m_x = x;
    m_y = y;
    return Create(owner, delayMs);
}

bool CProgressDlg::Create(QWidget* owner, uint32_t delayMs) {
    m_delayMs = delayMs;
    m_report.SetCancelled(false);
    OwnerWindowLock lock(owner);
    // A dialog that is already up, or an owner inside this very dialog,
    // cannot be created over; the lock enables again what it disabled.
    if (m_created || (owner != nullptr && (owner == this || isAncestorOf(owner)))) {
        return false;
    }
    setParent(owner, windowFlags());
    // An owned window keeps taking input while its owner is disabled.
    setEnabled(true);
    m_owner = owner;
    m_ownerLock = std::move(lock);
    m_created = true;
    InitDialog();
    PlaceOver(owner);

    switch (PlanDelayedShow(delayMs, m_clock->TicksPerSecond() != 0)) {
        case DelayedShowStart::WaitForTick:
            m_startTicks = m_clock->Ticks();
            m_delayTimer->start(static_cast<int>(DelayTimerPeriodMs(delayMs)));
            break;
        case DelayedShowStart::WaitForHost:
            m_startTicks = m_clock->Ticks();
            break;
        case DelayedShowStart::ShowNow:
            setEnabled(true);
            show();
            break;
    }
    return true;
}

void CProgressDlg::InitDialog() {
    m_report.Attach(this, progress::kIdFirstText, progress::kIdSecondText, progress::kIdBar);
    if (!m_cancelText.empty()) {
        m_cancelButton->setText(QString::fromStdString(m_cancelText));
    }
    if (!m_cancelEnabled) {
        EnableCancel(false, true);
    }
}

void CProgressDlg::PlaceOver(QWidget* owner) {
    if (progress::UsesStoredPosition(m_x, m_y)) {
        // A window's edges are held in int: beyond the largest widget size there would be no
        // room left for its right and bottom ones.
        move(std::min(m_x, QWIDGETSIZE_MAX), std::min(m_y, QWIDGETSIZE_MAX));
        return;
    }
    QRect area;
    if (owner != nullptr) {
        area = owner->window()->frameGeometry();
    } else if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        area = screen->availableGeometry();
    }
    QRect frame(QPoint(0, 0), frameGeometry().size());
    frame.moveCenter(area.center());
    move(frame.topLeft());
}

void CProgressDlg::OnDelayTick() {
    m_delayTimer->stop();
    const uint32_t elapsed =
        ElapsedMilliseconds(m_startTicks, m_clock->Ticks(), m_clock->TicksPerSecond());
    if (ShowsAtFirstTick(elapsed, m_report.GetPercent(), m_delayMs)) {
        setEnabled(true);
        show();
    }
}

void CProgressDlg::PumpMessages() {
    if (QCoreApplication::instance() == nullptr) {
        return;
    }
    bool quitRequested = false;
    {
        const QuitRequestCatcher catcher;
        QCoreApplication::processEvents();
        quitRequested = catcher.QuitRequested();
    }
    if (quitRequested) {
        if (m_cancelEnabled) {
            OnCancel();
        }
        QuitRequestCatcher::PassOn();
    }
}

void CProgressDlg::EnableCancel(bool enable, bool force) {
    if (enable == m_cancelEnabled && !force) {
        return;
    }
    m_cancelEnabled = enable;
    m_cancelButton->setVisible(enable);
    SetCloseAllowed(enable);
    repaint();
}

void CProgressDlg::SetCloseAllowed(bool allowed) {
    if (windowFlags().testFlag(Qt::WindowCloseButtonHint) == allowed) {
        return;
    }
    // Changing the flags of a window on screen hides it; bring it back.
    const bool wasVisible = isVisible();
    setWindowFlag(Qt::WindowCloseButtonHint, allowed);
    if (wasVisible) {
        show();
    }
}

void CProgressDlg::Destroy() {
    if (!m_created) {
        return;
    }
    m_delayTimer->stop();
    const bool wasActive = isActiveWindow();
    hide();
    m_ownerLock.ReleaseTopLevel();
    if (wasActive && m_ownerLock.TopLevel() != nullptr) {
        m_ownerLock.TopLevel()->activateWindow();
    }
    setParent(nullptr, windowFlags());
    m_owner = nullptr;
    m_created = false;
    m_ownerLock.ReleaseRoot();
    m_ownerLock = OwnerWindowLock();
}

IProgressReportInterface* CProgressDlg::GetReport() {
    return &m_report;
}

IProgressBarInterface* CProgressDlg::GetProgressBar() {
    return m_report.GetProgressBar();
}

void CProgressDlg::SetCancelCallback(ProgressCancelCallback callback, int32_t value) {
    m_cancelCallback = callback;
    m_cancelValue = value;
}

void CProgressDlg::SetCancelText(const char* text) {
    m_cancelText = text != nullptr ? text : "";
    const QString shown = CancelButtonText();
    if (m_cancelButton->text() != shown) {
        m_cancelButton->setText(shown);
    }
}

QString CProgressDlg::CancelButtonText() const {
    return m_cancelText.empty() ? QString::fromLatin1(progress::kDefaultCancelText)
                                : QString::fromStdString(m_cancelText);
}

QWidget* CProgressDlg::GetHwnd() const {
    return const_cast<CProgressDlg*>(this);
}

void CProgressDlg::SetTitle(const char* text) {
    setWindowTitle(text != nullptr ? QString::fromUtf8(text) : QString());
}

void CProgressDlg::Show(int showCommand) {
    setVisible(showCommand != 0);
}

void CProgressDlg::Enable(bool enable) {
    setEnabled(enable);
}

void CProgressDlg::reject() {
    OnCancel();
}

void CProgressDlg::accept() {}

void CProgressDlg::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (m_cancelEnabled) {
        OnCancel();
    }
}

bool CProgressDlg::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && m_cancelEnabled) {
        m_cancelButton->setFocus(Qt::ActiveWindowFocusReason);
    }
    return QDialog::event(event);
}

void CProgressDlg::OnCancel() {
    m_report.SetCancelled(true);
    if (m_cancelCallback != nullptr) {
        m_cancelCallback(m_cancelValue);
    }
}

}  // namespace kv::ui
