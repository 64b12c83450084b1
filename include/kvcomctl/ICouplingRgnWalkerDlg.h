#pragma once

#include <cstdint>
#include <type_traits>

#include "kvcomctl/ICRWDCoupledNetsList.h"
#include "kvcomctl/ViaRecords.h"

class QWidget;

// The coupling region walker: a modeless dialog the host drives region by
// region. It lists the nets coupled to the current net in the current region
// beside a drawing of the board cross-section and a text report, and tells
// the host through ICRWDHost what the user asks for. The factory creates it
// (CreateCoupRgnWalkerDlg) and destroys it (Destroy); the host never deletes
// it.

// One trace in the cross-section at the current region.
struct CROSSSECTIONTRACE {
    int32_t layer;  // stackup index
    double x;       // centre, metres from the victim's centre
    double width;   // metres
    int32_t role;   // 0 current net, 1 coupled net, 2 other
    char net[64];
};

static_assert(std::is_standard_layout_v<CROSSSECTIONTRACE> &&
              std::is_trivially_copyable_v<CROSSSECTIONTRACE>);

// CROSSSECTIONTRACE::role
inline constexpr int32_t CROSSSECTION_ROLE_CURRENT = 0;
inline constexpr int32_t CROSSSECTION_ROLE_COUPLED = 1;
inline constexpr int32_t CROSSSECTION_ROLE_OTHER = 2;

// The host's side: told what the user asks for.
class ICRWDHost {
public:
    virtual void OnRegionStep(int32_t step) = 0;    // -1 Previous, +1 Next
    virtual void OnNetSelected(int32_t index) = 0;  // a row's entry index
    virtual void OnWalkerClosed() = 0;

protected:
    ~ICRWDHost() = default;
};

class ICouplingRgnWalkerDlg {
public:
    virtual bool CreateWindow(QWidget* parent, ICRWDHost* host) = 0;              // 0
    virtual bool DestroyWindow() = 0;                                             // 1
    virtual void Show(bool show) = 0;                                             // 2
    virtual void SetCurrentNet(const char* netName) = 0;                          // 3
    virtual void SetRegion(int32_t index, int32_t count, const char* title) = 0;  // 4
    virtual ICRWDCoupledNetsList* GetNetsList() = 0;                              // 5
    virtual void RefreshNets() = 0;                                               // 6
    virtual bool SelectNet(int32_t index) = 0;                                    // 7
    virtual void SetReport(const char* text) = 0;                                 // 8
    virtual void SetCrossSection(const STACKUPARRAY* stackup, const CROSSSECTIONTRACE* traces,
                                 int32_t count) = 0;  // 9

protected:
    ~ICouplingRgnWalkerDlg() = default;
};
