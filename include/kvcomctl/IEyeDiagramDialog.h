#pragma once

// The eye-diagram configuration sheet as the host sees it. Operation order is
// the virtual-table order the host binds to.

class QWidget;
class IEyeDiagramData;

// Told when the user presses Help in the sheet.
class IEyeDiagramHelpHandler {
public:
    virtual void OnHelp(QWidget* sheet, int activePageIndex, int reserved) = 0;

protected:
    ~IEyeDiagramHelpHandler() = default;
};

// Given the caller's data before the sheet opens.
class IEyeDiagramEditHook {
public:
    virtual void OnEdit(IEyeDiagramData* data) = 0;

protected:
    ~IEyeDiagramEditHook() = default;
};

class IEyeDiagramDialog {
public:
    virtual IEyeDiagramHelpHandler* SetHelpHandler(IEyeDiagramHelpHandler* handler) = 0;  // 0
    virtual IEyeDiagramEditHook* SetEditHook(IEyeDiagramEditHook* hook) = 0;              // 1
    virtual IEyeDiagramEditHook* GetEditHook() const = 0;                                 // 2
    // Page flag 1, 2 or 4 selects the start page 0, 1 or 2.
    virtual bool EditWithPageFlag(IEyeDiagramData* data, QWidget* parent, int pageFlag, int flags,
                                  int pageArgA, int pageArgB) = 0;  // 3
    virtual bool Edit(IEyeDiagramData* data, QWidget* parent, int startPage, int flags,
                      int pageArgA, int pageArgB) = 0;  // 4
    virtual int GetLastPageFlag() const = 0;            // 5
    virtual int GetLastPageIndex() const = 0;           // 6

protected:
    ~IEyeDiagramDialog() = default;
};
