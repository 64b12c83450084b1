#include "core/settings/IniDocument.h"

#include "core/shared/TextLines.h"

#include <algorithm>

namespace kv {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The section name of a header line "[name]", or none.
std::optional<std::string_view> HeaderName(std::string_view line) {
    // Only at the start of a line: an indented '[' continues a value.
    if (line.empty() || line.front() != '[') {
        return std::nullopt;
    }
    const std::string_view trimmed = TrimSpace(line);
    const std::size_t close = trimmed.find(']');
    if (close == std::string_view::npos) {
        return std::nullopt;
    }
    return TrimSpace(trimmed.substr(1, close - 1));
}

bool IsComment(std::string_view line) {
    const std::string_view trimmed = TrimSpace(line);
    return !trimmed.empty() && trimmed.front() == ';';
}

bool IsContinuation(std::string_view line) {
    return !line.empty() && (line.front() == ' ' || line.front() == '\t') &&
           !TrimSpace(line).empty();
}

std::string_view KeyOf(std::string_view entry) {
    return TrimSpace(entry.substr(0, entry.find('=')));
}

}  // namespace

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string_view TrimSpace(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

IniDocument::IniDocument(std::string_view text) {
    for (std::string_view line : SplitLines(text)) {
        m_lines.emplace_back(line);
    }
}

std::optional<IniDocument::SectionSpan> IniDocument::FindSection(std::string_view section) const {
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const auto name = HeaderName(m_lines[i]);
        if (!name || !EqualNoCase(*name, section)) {
            continue;
        }
        std::size_t end = i + 1;
        while (end < m_lines.size() && !HeaderName(m_lines[end])) {
            ++end;
        }
        return SectionSpan{i, end};
    }
    return std::nullopt;
}

std::vector<IniDocument::Entry> IniDocument::EntriesOf(const SectionSpan& span) const {
    std::vector<Entry> entries;
    for (std::size_t i = span.headerLine + 1; i < span.endLine; ++i) {
        const std::string_view line = m_lines[i];
        if (TrimSpace(line).empty() || IsComment(line)) {
            continue;
        }
        if (IsContinuation(line) && !entries.empty() &&
            entries.back().firstLine + entries.back().lineCount == i) {
            ++entries.back().lineCount;
            continue;
        }
        entries.push_back({i, 1});
    }
    return entries;
}

std::string IniDocument::JoinedEntry(const Entry& entry) const {
    std::string text = std::string(TrimSpace(m_lines[entry.firstLine]));
    for (std::size_t k = 1; k < entry.lineCount; ++k) {
        text += "\r\n";
        text += TrimSpace(m_lines[entry.firstLine + k]);
    }
    return text;
}

std::optional<std::vector<std::string>> IniDocument::Section(std::string_view section) const {
    const auto span = FindSection(section);
    if (!span) {
        return std::nullopt;
    }
    std::vector<std::string> result;
    for (const Entry& entry : EntriesOf(*span)) {
        result.push_back(JoinedEntry(entry));
    }
    return result;
}

std::optional<std::string> IniDocument::Get(std::string_view section, std::string_view key) const {
    const auto span = FindSection(section);
    if (!span) {
        return std::nullopt;
    }
    const std::vector<Entry> entries = EntriesOf(*span);
    for (auto it = entries.rbegin(); it != entries.rend(); ++it) {
        const std::string text = JoinedEntry(*it);
        if (EqualNoCase(KeyOf(text), key)) {
            const std::size_t equals = text.find('=');
            return equals == std::string::npos
                       ? std::string()
                       : std::string(TrimSpace(std::string_view(text).substr(equals + 1)));
        }
    }
    return std::nullopt;
}

std::vector<std::string> IniDocument::EntryLines(std::string_view key, std::string_view value) {
    std::vector<std::string> lines;
    std::string first(key);
    first += '=';
    std::size_t start = 0;
    bool isFirst = true;
    while (start <= value.size()) {
        std::size_t end = value.find('\n', start);
        if (end == std::string_view::npos) {
            end = value.size();
        }
        std::string_view part = value.substr(start, end - start);
        if (!part.empty() && part.back() == '\r') {
            part.remove_suffix(1);
        }
        if (isFirst) {
            lines.push_back(first + std::string(part));
            isFirst = false;
        } else if (!TrimSpace(part).empty()) {
            std::string line(1, '\t');  // blank parts would end the value
            line += part;
            lines.push_back(std::move(line));
        }
        start = end + 1;
    }
    return lines;
}

void IniDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
    std::vector<std::string> lines = EntryLines(key, value);
    auto span = FindSection(section);
    if (!span) {
        if (!m_lines.empty() && !TrimSpace(m_lines.back()).empty()) {
            m_lines.emplace_back();
        }
        std::string header(1, '[');
        header += section;
        header += ']';
        m_lines.push_back(std::move(header));
        m_lines.insert(m_lines.end(), lines.begin(), lines.end());
        return;
    }
    const std::vector<Entry> entries = EntriesOf(*span);
    for (auto it = entries.rbegin(); it != entries.rend(); ++it) {
        if (EqualNoCase(KeyOf(m_lines[it->firstLine]), key)) {
            const auto first = m_lines.begin() + static_cast<std::ptrdiff_t>(it->firstLine);
            m_lines.erase(first, first + static_cast<std::ptrdiff_t>(it->lineCount));
            m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(it->firstLine),
                           lines.begin(), lines.end());
            return;
        }
    }
    // After the section's last entry, so blank lines before the next section stay.
    const std::size_t at = entries.empty() ? span->headerLine + 1
                                           : entries.back().firstLine + entries.back().lineCount;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), lines.begin(), lines.end());
}

std::string IniDocument::Text() const {
    std::string text;
    for (const std::string& line : m_lines) {
        text += line;
        text += '\n';
    }
    return text;
}

}  // namespace kv
