#include "core/walker/CoupledNetsList.h"

#include <cstring>
#include <new>

#include "core/shared/Assert.h"

namespace kv {
namespace {

// The walker dialog's source module, named by the assertion report.
constexpr const char* kWalkerModule = ".\\CoupRgnWalkerDlg";

std::string_view TextOrEmpty(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

// Copies the four texts into one block and points the entry into it.
void FillEntry(NETENTRY& entry, const std::array<std::string_view, 4>& texts) {
    std::size_t total = 0;
    for (const std::string_view text : texts) {
        total += text.size() + 1;
    }
    entry.block = std::make_unique<char[]>(total);
    std::array<const char*, 4> starts{};
    char* cursor = entry.block.get();
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!texts[i].empty()) {  // a null text has no data to copy from
            std::memcpy(cursor, texts[i].data(), texts[i].size());
        }
        cursor[texts[i].size()] = '\0';
        starts[i] = cursor;
        cursor += texts[i].size() + 1;
    }
    entry.netName = starts[0];
    entry.separation = starts[1];
    entry.stackupLayer = starts[2];
    entry.traceWidth = starts[3];
}

}  // namespace

std::array<int, kNetsColumnCount> NetsColumnWidths(
    const std::array<int, kNetsColumnCount>& titleWidths, int padding, int clientWidth) {
    std::array<int, kNetsColumnCount> widths{};
    int sum = 0;
    for (int i = 0; i < kNetsColumnCount; ++i) {
        widths[i] = titleWidths[i] + 2 * padding;
        sum += widths[i];
    }
    if (clientWidth > sum) {
        const int slack = clientWidth - sum;
        widths[0] += (slack + 1) / 2;
        widths[2] += slack / 2;
    }
    return widths;
}

int32_t CCoupledNetsList::AddRef() {
    return ++m_references;
}

int32_t CCoupledNetsList::Release() {
    const int32_t left = --m_references;
    if (left == 0) {
        delete this;
    }
    return left;
}

int32_t CCoupledNetsList::AddNet(const char* netName, const char* separation,
                                 const char* stackupLayer, const char* traceWidth) {
    try {
        NETENTRY entry;
        FillEntry(entry, {TextOrEmpty(netName), TextOrEmpty(separation), TextOrEmpty(stackupLayer),
                          TextOrEmpty(traceWidth)});
        entry.index = static_cast<int32_t>(m_entries.size());
        m_entries.push_back(std::move(entry));
        return m_entries.back().index;
    } catch (const std::bad_alloc&) {
        // The partial entry went with the stack frame; the list is as it was.
        return -1;
    }
}

void CCoupledNetsList::RemoveAll() {
    m_entries.clear();
}

void CCoupledNetsList::CopyFrom(ICRWDCoupledNetsList* other) {
    RemoveAll();
    // Only lists of this module can be read; with itself as the source the
    // list is already empty here.
    if (const auto* source = dynamic_cast<const CCoupledNetsList*>(other); source != nullptr) {
        for (const NETENTRY& entry : source->m_entries) {
            AddNet(entry.netName, entry.separation, entry.stackupLayer, entry.traceWidth);
        }
    }
    if (m_pane != nullptr) {
        FillRows();
    }
}

void CCoupledNetsList::AttachPane(IReportListPane* pane) {
    m_pane = pane;
    if (m_pane != nullptr) {
        BuildColumns();
        FillRows();
    }
}

void CCoupledNetsList::BuildColumns() {
    KV_ASSERT_IN(kWalkerModule, m_pane != nullptr);
    for (int column = m_pane->ColumnCount() - 1; column >= 0; --column) {
        m_pane->DeleteColumn(column);
    }
    std::array<int, kNetsColumnCount> titleWidths{};
    for (int i = 0; i < kNetsColumnCount; ++i) {
        m_pane->InsertColumn(i, kNetsColumnTitles[i]);
        titleWidths[i] = m_pane->TextWidth(kNetsColumnTitles[i]);
    }
    const int padding = m_pane->ColumnWidth(0);
    const auto widths = NetsColumnWidths(titleWidths, padding, m_pane->ClientWidth());
    for (int i = 0; i < kNetsColumnCount; ++i) {
        m_pane->SetColumnWidth(i, widths[i]);
    }
}

void CCoupledNetsList::FillRows() {
    KV_ASSERT_IN(kWalkerModule, m_pane != nullptr);
    m_pane->BeginUpdate();
    m_pane->DeleteAllRows();
    int position = 0;
    for (const NETENTRY& entry : m_entries) {
        const int row = m_pane->InsertRow(position++, entry.netName, entry.index);
        const std::array<const char*, 3> cells = {entry.separation, entry.stackupLayer,
                                                  entry.traceWidth};
        for (int column = 1; column < kNetsColumnCount; ++column) {
            if (*cells[column - 1] != '\0') {
                m_pane->SetCell(row, column, cells[column - 1]);
            }
        }
    }
    m_pane->EndUpdate();
}

const NETENTRY* CCoupledNetsList::Find(int32_t index) const {
    for (const NETENTRY& entry : m_entries) {
        if (entry.index == index) {
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace kv
