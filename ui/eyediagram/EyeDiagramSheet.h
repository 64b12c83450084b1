#pragma once

#include <QDialog>
#include <vector>

#include "core/stimulus/StimulusData.h"
#include "kvcomctl/IEyeDiagramDialog.h"

class QDialogButtonBox;
class QTabWidget;

namespace kv::ui {

class CSheetPage;

// The modal sheet in which a user edits a private copy of a host's stimulus.
// The copy is filled through the caller's getters and written back through
// its setters only when the sheet closes with OK; every Edit builds its pages
// afresh and leaves no window behind.
class CEyeDiagramSheet : public QDialog, public IEyeDiagramDialog {
    Q_OBJECT
public:
    static constexpr int kShowStimulusEditOnly = 0x80;
    static constexpr int kEditStimulusTitle = 0x10;
    static constexpr int kAddStimulusPage = 0x01;
    static constexpr int kAddMaskPage = 0x02;

    CEyeDiagramSheet();
    ~CEyeDiagramSheet() override;

    IEyeDiagramHelpHandler* SetHelpHandler(IEyeDiagramHelpHandler* handler) override;
    IEyeDiagramEditHook* SetEditHook(IEyeDiagramEditHook* hook) override;
    IEyeDiagramEditHook* GetEditHook() const override;
    bool EditWithPageFlag(IEyeDiagramData* data, QWidget* parent, int pageFlag, int flags,
                          int pageArgA, int pageArgB) override;
    bool Edit(IEyeDiagramData* data, QWidget* parent, int startPage, int flags, int pageArgA,
              int pageArgB) override;
    int GetLastPageFlag() const override;
    int GetLastPageIndex() const override;

    // 1 when the last EditWithPageFlag was given a flag other than 1, 2 or 4.
    int PageFlagUnknown() const { return m_pageFlagUnknown; }

public slots:
    void accept() override;
    void reject() override;
    void done(int result) override;

private:
    int RunPages(std::vector<CSheetPage*> pages, int startPage);
    void OnHelp();
    void OnTabChanged(int index);
    CSheetPage* ActivePage() const;

    IEyeDiagramHelpHandler* m_pHelpHandler = nullptr;
    IEyeDiagramEditHook* m_pEditHook = nullptr;
    IEyeDiagramData* m_pCallerData = nullptr;
    CStimulusData m_working;
    int m_pageFlagUnknown = 0;
    int m_lastPage = 1;

    QTabWidget* m_tabs;
    QDialogButtonBox* m_buttons;
    int m_activeIndex = -1;
    bool m_switchingBack = false;
};

}  // namespace kv::ui
