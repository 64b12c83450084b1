#pragma once

#include <QPointer>
#include <memory>
#include <string>

#include "kvcomctl/IProgress.h"

class QLabel;
class QLayout;

namespace kv::ui {

class CProgressBarCtrl;

// Drives two text lines and a bar that live in a dialog: a host's own dialog
// (Attach by control ids) or the library's progress dialog, which then also
// owns the message pump the report runs on every update.
class CProgressReport final : public IProgressReportInterface {
public:
    CProgressReport();
    ~CProgressReport() override;
    CProgressReport(const CProgressReport&) = delete;
    CProgressReport& operator=(const CProgressReport&) = delete;

    void SetFirstText(const char* text) override;
    void SetSecondText(const char* text) override;
    void SetPercent(int32_t percent) override;
    void SetAll(const char* first, const char* second, int32_t percent) override;
    bool IsCancelled() override;
    int32_t GetPercent() const override;
    IProgressBarInterface* GetProgressBar() override;
    void SetCancelled(bool cancelled) override;
    void Attach(QWidget* dialog, int firstTextId, int secondTextId, int barId) override;
    void PumpMessages() override;

    // The progress dialog whose pump runs on updates; null for none.
    void SetOwner(IProgressDialogInterface* owner) { m_owner = owner; }

private:
    struct Line {
        std::string text;
        QPointer<QLabel> control;
    };
    void UpdateLine(Line& line, const char* text, bool withinSetAll);
    void ReleaseControls();
    bool AnyControlExists() const;

    Line m_first;
    Line m_second;
    int32_t m_percent = 0;
    bool m_cancelled = false;
    // The bar outlives any dialog it is shown in: a host keeps the pointer
    // GetProgressBar returned.
    std::unique_ptr<CProgressBarCtrl> m_bar;
    QPointer<QWidget> m_barPlaceholder;
    QPointer<QLayout> m_barLayout;
    IProgressDialogInterface* m_owner = nullptr;
};

}  // namespace kv::ui
