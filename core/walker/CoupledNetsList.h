#pragma once

#include <array>
#include <cstdint>
#include <list>
#include <memory>
#include <string_view>

#include "core/ports/ReportListPane.h"
#include "kvcomctl/ICRWDCoupledNetsList.h"

// The coupled nets of one region and the filler of the walker's Nets pane.

namespace kv {

// One row. The four texts live one after the other, each with its NUL, in
// one block the entry owns; the pointers point into it.
struct NETENTRY {
    const char* netName = "";
    const char* separation = "";
    const char* stackupLayer = "";
    const char* traceWidth = "";
    std::unique_ptr<char[]> block;
    int32_t index = -1;  // position in the list; -1 until added
};

inline constexpr int kNetsColumnCount = 4;
inline constexpr std::array<std::string_view, kNetsColumnCount> kNetsColumnTitles = {
    "Nets In Region", "Separation From Current Net", "Stackup Layer", "Trace Width"};

// Each column is its title's width plus twice `padding`; slack left in
// `clientWidth` goes half to column 0 (with the odd pixel) and half to
// column 2.
std::array<int, kNetsColumnCount> NetsColumnWidths(
    const std::array<int, kNetsColumnCount>& titleWidths, int padding, int clientWidth);

class CCoupledNetsList final : public ICRWDCoupledNetsList {
public:
    CCoupledNetsList() = default;
    CCoupledNetsList(const CCoupledNetsList&) = delete;
    CCoupledNetsList& operator=(const CCoupledNetsList&) = delete;

    int32_t AddRef() override;
    int32_t AddNet(const char* netName, const char* separation, const char* stackupLayer,
                   const char* traceWidth) override;
    void RemoveAll() override;
    int32_t Release() override;
    void CopyFrom(ICRWDCoupledNetsList* other) override;

    // Stores the pane (not owned; null detaches) and, when there is one,
    // builds its columns and fills its rows.
    void AttachPane(IReportListPane* pane);
    IReportListPane* Pane() const { return m_pane; }
    // Both need an attached pane: without one they are programming errors.
    void BuildColumns();
    void FillRows();

    const std::list<NETENTRY>& Entries() const { return m_entries; }
    // The entry with that index, or null.
    const NETENTRY* Find(int32_t index) const;

private:
    ~CCoupledNetsList() = default;  // only the last Release destroys

    std::list<NETENTRY> m_entries;
    IReportListPane* m_pane = nullptr;
    int32_t m_references = 0;
};

}  // namespace kv
