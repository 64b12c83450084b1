#include "ui/progress/ProgressReport.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/progress/ProgressTextUpdate.h"
#include "ui/progress/ProgressBarCtrl.h"
#include "ui/shared/ControlIds.h"

namespace kv::ui {

CProgressReport::CProgressReport() : m_bar(std::make_unique<CProgressBarCtrl>()) {}

CProgressReport::~CProgressReport() {
    ReleaseControls();
}

void CProgressReport::SetFirstText(const char* text) {
    UpdateLine(m_first, text, false);
}

void CProgressReport::SetSecondText(const char* text) {
    UpdateLine(m_second, text, false);
}

void CProgressReport::SetPercent(int32_t percent) {
    if (percent < 0) {
        return;
    }
    m_percent = percent;
    m_bar->SetPos(percent, false);
    PumpMessages();
}

void CProgressReport::SetAll(const char* first, const char* second, int32_t percent) {
    UpdateLine(m_first, first, true);
    UpdateLine(m_second, second, true);
    if (percent >= 0) {
        m_percent = percent;
        m_bar->SetPos(percent, false);
    }
    // One pump for all three parts: a host calls this in its inner loop.
    if (AnyControlExists()) {
        PumpMessages();
    }
}

bool CProgressReport::IsCancelled() {
    PumpMessages();
    return m_cancelled;
}

int32_t CProgressReport::GetPercent() const {
    return m_bar->GetPos();
}

IProgressBarInterface* CProgressReport::GetProgressBar() {
    return m_bar.get();
}

void CProgressReport::SetCancelled(bool cancelled) {
    m_cancelled = cancelled;
}

void CProgressReport::Attach(QWidget* dialog, int firstTextId, int secondTextId, int barId) {
    ReleaseControls();
    if (dialog == nullptr) {
        return;
    }
    const auto takeLine = [dialog](Line& line, int id) {
        line.control = ui::FindControl<QLabel>(dialog, id);
        if (line.control != nullptr) {
            line.control->setText(QString::fromStdString(line.text));
        }
    };
    takeLine(m_first, firstTextId);
    takeLine(m_second, secondTextId);

    QWidget* placeholder = ui::FindControl<QWidget>(dialog, barId);
    if (placeholder == nullptr) {
        return;
    }
    // The bar fills the placeholder and follows its size; the placeholder
    // itself stays the dialog's, where its layout put it.
    m_barPlaceholder = placeholder;
    if (placeholder->layout() == nullptr) {
        auto* layout = new QVBoxLayout(placeholder);
        layout->setContentsMargins(0, 0, 0, 0);
        m_barLayout = layout;
    }
    m_bar->setParent(placeholder);
    placeholder->layout()->addWidget(m_bar.get());
    m_bar->show();
    m_bar->SetPos(m_percent, true);
}

void CProgressReport::PumpMessages() {
    if (m_owner != nullptr) {
        m_owner->PumpMessages();
    }
}

void CProgressReport::UpdateLine(Line& line, const char* text, bool withinSetAll) {
    if (text == nullptr) {
        return;
    }
    const TextUpdatePlan plan =
        PlanTextUpdate(line.control != nullptr, line.text, text,
                       withinSetAll ? TextUpdateMode::WithinSetAll : TextUpdateMode::Single);
    if (plan.storeText) {
        line.text = text;
    }
    if (plan.setControl) {
        line.control->setText(QString::fromUtf8(text));
    }
    if (plan.repaintNow) {
        line.control->repaint();
    }
    if (plan.pumpMessages) {
        PumpMessages();
    }
}

void CProgressReport::ReleaseControls() {
    m_first.control = nullptr;
    m_second.control = nullptr;
    if (m_barPlaceholder != nullptr) {
        m_bar->hide();
        m_bar->setParent(nullptr);
        delete m_barLayout.data();
    }
    m_barPlaceholder = nullptr;
    m_barLayout = nullptr;
}

bool CProgressReport::AnyControlExists() const {
    return m_first.control != nullptr || m_second.control != nullptr || m_barPlaceholder != nullptr;
}

}  // namespace kv::ui
