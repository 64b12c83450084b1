#pragma once

#include <QDialog>
#include <QPointer>
#include <cstdint>
#include <string>

#include "kvcomctl/IProgress.h"
#include "ui/progress/OwnerWindowLock.h"
#include "ui/progress/ProgressReport.h"

class QLabel;
class QPushButton;
class QTimer;

namespace kv {
class IClock;
}

namespace kv::ui {

// A modeless progress dialog over a host window: two text lines, a bar and a
// Cancel button. While it is up the host's window takes no input; the host's
// long job feeds it through the embedded report, whose every update pumps
// events here. Created with a delay it appears only if the job turns out to
// be slow.
class CProgressDlg : public QDialog, public IProgressDialogInterface {
    Q_OBJECT
public:
    explicit CProgressDlg(const IClock* clock = nullptr);
    ~CProgressDlg() override;

    bool CreateAt(QWidget* owner, uint32_t delayMs, int x, int y) override;
    bool Create(QWidget* owner, uint32_t delayMs) override;
    void PumpMessages() override;
    void EnableCancel(bool enable, bool force) override;
    void Destroy() override;
    IProgressReportInterface* GetReport() override;
    IProgressBarInterface* GetProgressBar() override;
    void SetCancelCallback(ProgressCancelCallback callback, int32_t value) override;
    void SetCancelText(const char* text) override;
    QWidget* GetHwnd() const override;
    void SetTitle(const char* text) override;
    void Show(int showCommand) override;
    void Enable(bool enable) override;

public slots:
    // The dialog stays up on Escape and Enter: the host ends it with Destroy.
    void reject() override;
    void accept() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void BuildFromTemplate();
    void InitDialog();
    void PlaceOver(QWidget* owner);
    void OnDelayTick();
    void OnCancel();
    void SetCloseAllowed(bool allowed);
    QString CancelButtonText() const;

    CProgressReport m_report;
    const IClock* m_clock;
    QPushButton* m_cancelButton = nullptr;
    QPointer<QWidget> m_owner;
    OwnerWindowLock m_ownerLock;
    bool m_created = false;
    int m_x = -1;
    int m_y = -1;
    uint32_t m_delayMs = 0;
    uint64_t m_startTicks = 0;
    QTimer* m_delayTimer;  // child of the dialog, found as "delayTimer"
    bool m_cancelEnabled = true;
    std::string m_cancelText;
    ProgressCancelCallback m_cancelCallback = nullptr;
    int32_t m_cancelValue = 0;
};

}  // namespace kv::ui
