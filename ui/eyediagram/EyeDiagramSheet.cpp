#include "ui/eyediagram/EyeDiagramSheet.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <memory>

#include "core/eyediagram/StimulusTransfer.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "ui/eyediagram/EyeDiagramMaskPage.h"
#include "ui/eyediagram/EyeDiagramStimulusPage.h"
#include "ui/eyediagram/VelStimulusPage.h"
#include "ui/shared/ControlIds.h"
#include "ui/shared/ModuleState.h"

namespace kv::ui {
namespace {

const QString kSheetCaption = QStringLiteral("Configure Eye Diagram");
const QString kEditStimulusText = QStringLiteral("Edit Stimulus");

// Page flag 1, 2 and 4 name the pages 0, 1 and 2; any other flag opens the
// first page.
struct PageFlag {
    int flag;
    int index;
};
constexpr PageFlag kPageFlags[] = {{1, 0}, {2, 1}, {4, 2}};

}  // namespace

CEyeDiagramSheet::CEyeDiagramSheet()
    : m_tabs(new QTabWidget(this)),
      m_buttons(new QDialogButtonBox(
          QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this)) {
    setWindowTitle(kSheetCaption);
    setWindowIcon(ModuleWindowIcon());
    setModal(true);
    m_tabs->setObjectName(QStringLiteral("pages"));
    m_buttons->button(QDialogButtonBox::Ok)
        ->setObjectName(ControlObjectName(kvcomctl_ids::kSheetOk));
    m_buttons->button(QDialogButtonBox::Cancel)
        ->setObjectName(ControlObjectName(kvcomctl_ids::kSheetCancel));
    m_buttons->button(QDialogButtonBox::Help)
        ->setObjectName(ControlObjectName(kvcomctl_ids::kSheetHelp));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &CEyeDiagramSheet::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &CEyeDiagramSheet::reject);
    connect(m_buttons, &QDialogButtonBox::helpRequested, this, &CEyeDiagramSheet::OnHelp);
    connect(m_tabs, &QTabWidget::currentChanged, this, &CEyeDiagramSheet::OnTabChanged);
}

CEyeDiagramSheet::~CEyeDiagramSheet() = default;

IEyeDiagramHelpHandler* CEyeDiagramSheet::SetHelpHandler(IEyeDiagramHelpHandler* handler) {
    m_pHelpHandler = handler;
    return handler;
}

IEyeDiagramEditHook* CEyeDiagramSheet::SetEditHook(IEyeDiagramEditHook* hook) {
    m_pEditHook = hook;
    return hook;
}

IEyeDiagramEditHook* CEyeDiagramSheet::GetEditHook() const {
    return m_pEditHook;
}

bool CEyeDiagramSheet::EditWithPageFlag(IEyeDiagramData* data, QWidget* parent, int pageFlag,
                                        int flags, int pageArgA, int pageArgB) {
    m_pageFlagUnknown = 0;
    int index = 0;
    bool known = false;
    for (const PageFlag& entry : kPageFlags) {
        if (entry.flag == pageFlag) {
            index = entry.index;
            known = true;
        }
    }
    if (!known) {
        m_pageFlagUnknown = 1;
    }
    IEyeDiagramDialog& dialog = *this;
    return dialog.Edit(data, parent, index, flags, pageArgA, pageArgB);
}

bool CEyeDiagramSheet::Edit(IEyeDiagramData* data, QWidget* parent, int startPage, int flags,
                            int pageArgA, int pageArgB) {
    ModuleStateGuard moduleState;
    if (data == nullptr) {
        return false;
    }
    m_pCallerData = data;
    CopyStimulusValues(*data, m_working);
    if (m_pEditHook != nullptr) {
        m_pEditHook->OnEdit(data);
    }
    // Over the host's window for this run only: between runs the sheet has no
    // parent, so a host that deletes its window never deletes the sheet.
    setParent(parent, windowFlags() | Qt::Dialog);
    setWindowTitle(kSheetCaption);
    int result = Rejected;
    if ((flags & kShowStimulusEditOnly) != 0) {
        setWindowTitle(kEditStimulusText);
        const auto page = std::make_unique<CVelStimulusPage>(m_working, pageArgB);
        result = RunPages({page.get()}, startPage);
    } else {
        if ((flags & kEditStimulusTitle) != 0) {
            setWindowTitle(kEditStimulusText);
        }
        auto stimulusPage =
            std::make_unique<CEyeDiagramStimulusPage>(m_working, pageArgA, pageArgB);
        auto maskPage = std::make_unique<CEyeDiagramMaskPage>(m_working);
        std::vector<CSheetPage*> pages;
        if ((flags & (kAddStimulusPage | kEditStimulusTitle)) != 0) {
            pages.push_back(stimulusPage.get());
        }
        if ((flags & kAddMaskPage) != 0) {
            pages.push_back(maskPage.get());
        }
        result = RunPages(pages, startPage);
        maskPage.reset();
        stimulusPage.reset();
    }
    setParent(nullptr, windowFlags() | Qt::Dialog);
    if (result != Accepted) {
        return false;
    }
    CopyStimulusValues(m_working, *data);
    return true;
}

int CEyeDiagramSheet::RunPages(std::vector<CSheetPage*> pages, int startPage) {
    if (pages.empty()) {
        return Rejected;  // a sheet without a page has nothing to show
    }
    m_switchingBack = true;
    for (CSheetPage* page : pages) {
        m_tabs->addTab(page, page->Title());
    }
    const int count = static_cast<int>(pages.size());
    m_activeIndex = startPage >= 0 && startPage < count ? startPage : 0;
    m_tabs->setCurrentIndex(m_activeIndex);
    m_switchingBack = false;
    adjustSize();
    const int result = exec();
    m_switchingBack = true;
    while (m_tabs->count() > 0) {
        QWidget* page = m_tabs->widget(0);
        m_tabs->removeTab(0);
        page->setParent(nullptr);
    }
    m_switchingBack = false;
    m_activeIndex = -1;
    return result;
}

int CEyeDiagramSheet::GetLastPageFlag() const {
    switch (m_lastPage) {
        case 1:
            return 2;
        case 2:
            return 4;
        default:
            return 1;
    }
}

int CEyeDiagramSheet::GetLastPageIndex() const {
    return m_lastPage;
}

CSheetPage* CEyeDiagramSheet::ActivePage() const {
    return qobject_cast<CSheetPage*>(m_tabs->currentWidget());
}

void CEyeDiagramSheet::accept() {
    if (CSheetPage* active = ActivePage(); active != nullptr && !active->OnKillActive()) {
        return;
    }
    for (int i = 0; i < m_tabs->count(); ++i) {
        auto* page = qobject_cast<CSheetPage*>(m_tabs->widget(i));
        if (page != nullptr && !page->OnApply()) {
            m_switchingBack = true;
            m_tabs->setCurrentIndex(i);
            m_activeIndex = i;
            m_switchingBack = false;
            return;
        }
    }
    QDialog::accept();
}

void CEyeDiagramSheet::reject() {
    for (int i = 0; i < m_tabs->count(); ++i) {
        auto* page = qobject_cast<CSheetPage*>(m_tabs->widget(i));
        if (page != nullptr && !page->OnQueryCancel()) {
            return;
        }
    }
    QDialog::reject();
}

void CEyeDiagramSheet::done(int result) {
    // The window goes whichever way the run ends: the host may reopen the
    // sheet on the page that was active.
    m_lastPage = m_tabs->currentIndex();
    QDialog::done(result);
}

void CEyeDiagramSheet::OnHelp() {
    if (m_pHelpHandler != nullptr) {
        m_pHelpHandler->OnHelp(this, m_tabs->currentIndex(), 0);
    }
}

void CEyeDiagramSheet::OnTabChanged(int index) {
    if (m_switchingBack) {
        return;
    }
    auto* previous = qobject_cast<CSheetPage*>(m_tabs->widget(m_activeIndex));
    if (previous != nullptr && m_activeIndex != index && !previous->OnKillActive()) {
        m_switchingBack = true;
        m_tabs->setCurrentIndex(m_activeIndex);
        m_switchingBack = false;
        return;
    }
    m_activeIndex = index;
}

}  // namespace kv::ui
