#include "core/settings/IniDocument.h"

#include <algorithm>

#include "core/shared/AsciiText.h"
#include "core/shared/TextLines.h"

namespace kv {
namespace {

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

// The key and the value of an entry's text (continuation lines joined), as
// every reader splits it.
std::string_view KeyOf(std::string_view text) {
    return TrimSpace(text.substr(0, text.find('=')));
}

IniEntry SplitEntry(std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::string_view value =
        equals == std::string_view::npos ? std::string_view{} : text.substr(equals + 1);
    return {std::string(KeyOf(text)), std::string(TrimSpace(value))};
}

// The entry a look-up of `key` finds: of several with that key the last.
template <typename Entries, typename KeyFn>
auto FindLast(const Entries& entries, std::string_view key, KeyFn keyOf) {
    const auto found = std::find_if(entries.rbegin(), entries.rend(), [&](const auto& entry) {
        return EqualNoCase(keyOf(entry), key);
    });
    return found == entries.rend() ? entries.end() : std::prev(found.base());
}

}  // namespace

std::optional<std::string_view> IniSection::Find(std::string_view key) const {
    const auto found = FindLast(
        m_entries, key, [](const IniEntry& entry) -> std::string_view { return entry.key; });
    return found == m_entries.end() ? std::nullopt : std::optional<std::string_view>(found->value);
}

bool LooksLikeIniText(std::string_view text) {
    const bool binary = std::any_of(text.begin(), text.end(), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 32 && c != '\t' && c != '\n' && c != '\r' && c != '\f';
    });
    if (binary) {
        return false;
    }
    const IniDocument document(text);
    return std::any_of(
        document.m_lines.begin(), document.m_lines.end(),
        [](const IniDocument::Line& line) { return HeaderName(line.content).has_value(); });
}

IniDocument::IniDocument(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t feed = text.find('\n', start);
        if (feed == std::string_view::npos) {
            m_lines.push_back({std::string(text.substr(start)), {}});
            break;
        }
        // Only the one CR right before the LF belongs to the line end: any
        // other CR is content and stays.
        const bool crlf = feed > start && text[feed - 1] == '\r';
        const std::size_t contentEnd = crlf ? feed - 1 : feed;
        m_lines.push_back({std::string(text.substr(start, contentEnd - start)),
                           std::string(text.substr(contentEnd, feed + 1 - contentEnd))});
        start = feed + 1;
    }
    for (const Line& line : m_lines) {
        if (!line.end.empty()) {
            m_lineEnd = line.end;  // the file's own convention, from its first line
            break;
        }
    }
}

std::optional<IniDocument::SectionSpan> IniDocument::FindSection(std::string_view section) const {
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const auto name = HeaderName(m_lines[i].content);
        if (!name || !EqualNoCase(*name, section)) {
            continue;
        }
        std::size_t end = i + 1;
        while (end < m_lines.size() && !HeaderName(m_lines[end].content)) {
            ++end;
        }
        return SectionSpan{i, end};
    }
    return std::nullopt;
}

std::vector<IniDocument::EntrySpan> IniDocument::EntriesOf(const SectionSpan& span) const {
    std::vector<EntrySpan> entries;
    for (std::size_t i = span.headerLine + 1; i < span.endLine; ++i) {
        const std::string_view line = m_lines[i].content;
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

std::string IniDocument::JoinedEntry(const EntrySpan& entry) const {
    std::string text = std::string(TrimSpace(m_lines[entry.firstLine].content));
    for (std::size_t k = 1; k < entry.lineCount; ++k) {
        text += "\r\n";
        text += TrimSpace(m_lines[entry.firstLine + k].content);
    }
    return text;
}

std::string IniDocument::KeyOfEntry(const EntrySpan& entry) const {
    // Only an entry whose first line holds no '=' can have a key that runs on
    // into its continuation lines.
    const std::string_view first = m_lines[entry.firstLine].content;
    if (entry.lineCount == 1 || first.find('=') != std::string_view::npos) {
        return std::string(KeyOf(first));
    }
    return std::string(KeyOf(JoinedEntry(entry)));
}

std::optional<IniSection> IniDocument::Section(std::string_view section) const {
    const auto span = FindSection(section);
    if (!span) {
        return std::nullopt;
    }
    std::vector<IniEntry> entries;
    for (const EntrySpan& entry : EntriesOf(*span)) {
        entries.push_back(SplitEntry(JoinedEntry(entry)));
    }
    return IniSection(std::move(entries));
}

std::optional<std::string> IniDocument::Get(std::string_view section, std::string_view key) const {
    // Entry by entry from the last, without splitting the whole section: a
    // store read key by key would split it once for every key.
    const auto span = FindSection(section);
    if (!span) {
        return std::nullopt;
    }
    const std::vector<EntrySpan> entries = EntriesOf(*span);
    const auto found =
        FindLast(entries, key, [this](const EntrySpan& entry) { return KeyOfEntry(entry); });
    if (found == entries.end()) {
        return std::nullopt;
    }
    return SplitEntry(JoinedEntry(*found)).value;
}

std::vector<IniDocument::Line> IniDocument::EntryLines(std::string_view key,
                                                       std::string_view value) const {
    const std::vector<std::string_view> parts = SplitLines(value);
    std::string first(key);
    first += '=';
    if (!parts.empty()) {
        first += parts.front();
    }
    std::vector<Line> lines{{std::move(first), m_lineEnd}};
    for (std::size_t k = 1; k < parts.size(); ++k) {
        if (!TrimSpace(parts[k]).empty()) {  // a blank line would end the value
            lines.push_back({'\t' + std::string(parts[k]), m_lineEnd});
        }
    }
    return lines;
}

void IniDocument::EndLastLine() {
    if (!m_lines.empty() && m_lines.back().end.empty()) {
        m_lines.back().end = m_lineEnd;
    }
}

void IniDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
    const Entry entry{key, std::string(value)};
    SetEntries(section, std::span<const Entry>(&entry, 1));
}

void IniDocument::SetEntries(std::string_view section, std::span<const Entry> entries) {
    const auto span = FindSection(section);
    if (!span) {
        EndLastLine();
        if (!m_lines.empty() && !TrimSpace(m_lines.back().content).empty()) {
            m_lines.push_back({{}, m_lineEnd});
        }
        std::string header(1, '[');
        header += section;
        header += ']';
        m_lines.push_back({std::move(header), m_lineEnd});
        for (const Entry& entry : entries) {
            for (Line& line : EntryLines(entry.first, entry.second)) {
                m_lines.push_back(std::move(line));
            }
        }
        return;
    }
    // Which entry of the file each key replaces: the last of its name.
    const std::vector<EntrySpan> existing = EntriesOf(*span);
    // The keys as a reader sees them: of the whole entry, continuation lines included.
    std::vector<std::string> existingKeys;
    existingKeys.reserve(existing.size());
    for (const EntrySpan& entry : existing) {
        existingKeys.push_back(KeyOfEntry(entry));
    }
    std::vector<std::size_t> replacedBy(existing.size(), entries.size());
    std::vector<bool> placed(entries.size(), false);
    for (std::size_t k = 0; k < entries.size(); ++k) {
        const auto found = FindLast(
            existingKeys, entries[k].first,
            [](const std::string& existingKey) -> std::string_view { return existingKey; });
        if (found != existingKeys.end()) {
            replacedBy[static_cast<std::size_t>(found - existingKeys.begin())] = k;
            placed[k] = true;
        }
    }
    // After the section's last entry, so blank lines before the next section stay.
    const std::size_t addAt = existing.empty()
                                  ? span->headerLine + 1
                                  : existing.back().firstLine + existing.back().lineCount;
    if (addAt == m_lines.size() && std::find(placed.begin(), placed.end(), false) != placed.end()) {
        EndLastLine();
    }
    std::vector<Line> lines;
    lines.reserve(m_lines.size() + entries.size());
    std::size_t next = 0;  // the next existing entry
    for (std::size_t i = 0; i <= m_lines.size(); ++i) {
        if (i == addAt) {
            for (std::size_t k = 0; k < entries.size(); ++k) {
                if (!placed[k]) {
                    for (Line& line : EntryLines(entries[k].first, entries[k].second)) {
                        lines.push_back(std::move(line));
                    }
                }
            }
        }
        if (i == m_lines.size()) {
            break;
        }
        if (next < existing.size() && existing[next].firstLine == i) {
            const EntrySpan entry = existing[next];
            const std::size_t k = replacedBy[next++];
            if (k < entries.size()) {
                for (Line& line : EntryLines(entries[k].first, entries[k].second)) {
                    lines.push_back(std::move(line));
                }
                i += entry.lineCount - 1;
                continue;
            }
        }
        lines.push_back(std::move(m_lines[i]));
    }
    m_lines = std::move(lines);
}

std::string IniDocument::Text() const {
    std::size_t size = 0;
    for (const Line& line : m_lines) {
        size += line.content.size() + line.end.size();
    }
    std::string text;
    text.reserve(size);
    for (const Line& line : m_lines) {
        text += line.content;
        text += line.end;
    }
    return text;
}

}  // namespace kv
