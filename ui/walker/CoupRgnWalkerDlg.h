#pragma once

#include <QDialog>
#include <cstdint>
#include <functional>

#include "core/walker/CoupledNetsList.h"
#include "kvcomctl/ICouplingRgnWalkerDlg.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QSplitter;

// The coupling region walker: a modeless dialog the host drives region by
// region. Three panes the user can resize (the coupled nets, the board
// cross-section, the text report), a region row with Previous and Next, and
// Close. What the user asks for goes to the host's ICRWDHost; the host
// answers by setting the next region's data.
//
// The host holds the dialog by its interface, a member object: the factory
// maps that pointer back to the dialog.

namespace kv::ui {

class CCrossSectionCtrl;
class CFramelessListView;

class CCoupRgnWalkerDlg : public QDialog {
    Q_OBJECT
public:
    // Control ids, kept as objectName "ctl<id>".
    static constexpr int kIdClose = 2;
    static constexpr int kIdNets = 1201;
    static constexpr int kIdCrossSection = 1202;
    static constexpr int kIdReport = 1203;
    static constexpr int kIdRegionCaption = 1204;
    static constexpr int kIdPrevious = 1205;
    static constexpr int kIdNext = 1206;
    static constexpr int kIdCurrentNet = 1207;

    class CDlgAccess final : public ICouplingRgnWalkerDlg {
    public:
        explicit CDlgAccess(CCoupRgnWalkerDlg& dialog) : m_dialog(dialog) {}
        bool CreateWindow(QWidget* parent, ICRWDHost* host) override;
        bool DestroyWindow() override;
        void Show(bool show) override;
        void SetCurrentNet(const char* netName) override;
        void SetRegion(int32_t index, int32_t count, const char* title) override;
        ICRWDCoupledNetsList* GetNetsList() override;
        void RefreshNets() override;
        bool SelectNet(int32_t index) override;
        void SetReport(const char* text) override;
        void SetCrossSection(const STACKUPARRAY* stackup, const CROSSSECTIONTRACE* traces,
                             int32_t count) override;

    private:
        CCoupRgnWalkerDlg& m_dialog;
    };

    CCoupRgnWalkerDlg();
    ~CCoupRgnWalkerDlg() override;

    ICouplingRgnWalkerDlg* Access() { return &m_access; }
    bool HasWindow() const { return m_created; }
    // Whether a call to the host is under way: the host may give the dialog
    // back to the factory from inside it, and then it must not be deleted
    // under the caller's feet.
    bool IsNotifyingHost() const { return m_notifyingHost > 0; }
    CFramelessListView& NetsPane() { return *m_nets; }
    CCrossSectionCtrl& CrossSectionPane() { return *m_crossSection; }

public slots:
    // Escape closes like the Close button.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void BuildLayout();
    bool CreateWindow(QWidget* parent, ICRWDHost* host);
    bool DestroyWindow();
    void SetRegion(int32_t index, int32_t count, const char* title);
    void SetCurrentNet(const char* netName);
    bool SelectNet(int32_t index);
    void OnRowSelected();
    void NotifyHost(const std::function<void(ICRWDHost&)>& call);
    void HighlightEntry(int32_t index);

    CDlgAccess m_access{*this};
    CCoupledNetsList* m_list;  // holds one reference
    ICRWDHost* m_host = nullptr;
    bool m_created = false;
    bool m_destroying = false;
    bool m_selectingForHost = false;
    bool m_widthsSettled = false;
    int m_notifyingHost = 0;

    QLabel* m_caption = nullptr;
    QLabel* m_currentNet = nullptr;
    CFramelessListView* m_nets = nullptr;
    CCrossSectionCtrl* m_crossSection = nullptr;
    QPlainTextEdit* m_report = nullptr;
    QPushButton* m_previous = nullptr;
    QPushButton* m_next = nullptr;
    QSplitter* m_panes = nullptr;
};

}  // namespace kv::ui
