#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The text of an initialisation file as lines, with the look-ups and edits
// of the private-profile calls: section and key names compared without
// regard to case, values written in place, every other line kept byte for
// byte with its own line end (LF, CR LF or anything before them). Lines the
// document writes take the line end the file already uses.
//
// A value may span lines: each line after the first is written indented by a
// tab, and an indented line that follows an entry continues its value (the
// lines are joined with CR LF, the form the multi-line values of this module
// have). Plain INI readers read such values the same way.

namespace kv {

// One entry as a reader finds it: the text before its first '=' is the key,
// the text after it the value, both without white space at either end (an
// entry without '=' is a key with an empty value). Continuation lines are
// joined to the entry first, so either may span lines.
struct IniEntry {
    std::string key;
    std::string value;

    bool operator==(const IniEntry&) const = default;
};

// The entries of one section, in the order of the file.
class IniSection {
public:
    IniSection() = default;
    explicit IniSection(std::vector<IniEntry> entries) : m_entries(std::move(entries)) {}

    const std::vector<IniEntry>& Entries() const { return m_entries; }

    // The value of the last entry whose key is `key` without regard to case
    // (of several equal keys the last wins), or none.
    std::optional<std::string_view> Find(std::string_view key) const;

    bool operator==(const IniSection&) const = default;

private:
    std::vector<IniEntry> m_entries;
};

class IniDocument {
public:
    using Entry = std::pair<std::string_view, std::string>;

    IniDocument() = default;
    explicit IniDocument(std::string_view text);

    // The entries of the section, or none when the section is absent.
    std::optional<IniSection> Section(std::string_view section) const;

    // The value of the last entry of `key` in the section, or none.
    std::optional<std::string> Get(std::string_view section, std::string_view key) const;

    // Replaces the last entry of `key` in place, or adds it at the end of the
    // section, or adds the section at the end of the text.
    void Set(std::string_view section, std::string_view key, std::string_view value);
    // The same for several keys at once, in one pass over the text; keys that
    // are added follow the section's last entry in the order given.
    void SetEntries(std::string_view section, std::span<const Entry> entries);

    std::string Text() const;

private:
    friend bool LooksLikeIniText(std::string_view text);

    struct Line {
        std::string content;  // without the line end
        std::string end;      // "\n", "\r\n", or empty for a last line without one
    };
    struct EntrySpan {
        std::size_t firstLine;
        std::size_t lineCount;  // the entry line and its continuation lines
    };
    struct SectionSpan {
        std::size_t headerLine;
        std::size_t endLine;  // one past its last line
    };
    std::optional<SectionSpan> FindSection(std::string_view section) const;
    std::vector<EntrySpan> EntriesOf(const SectionSpan& span) const;
    std::string JoinedEntry(const EntrySpan& entry) const;
    std::string KeyOfEntry(const EntrySpan& entry) const;
    std::vector<Line> EntryLines(std::string_view key, std::string_view value) const;
    void EndLastLine();

    std::vector<Line> m_lines;
    std::string m_lineEnd = "\n";  // for the lines the document writes
};

// Whether a text can be an initialisation file: it has a "[section]" line
// and no byte that no text holds (NUL and the other control characters
// but tab, line feed, carriage return and form feed).
bool LooksLikeIniText(std::string_view text);

}  // namespace kv
