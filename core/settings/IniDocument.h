#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The text of an initialisation file as lines, with the look-ups and edits
// of the private-profile calls: section and key names compared without
// regard to case, values written in place, every other line kept as it was.
//
// A value may span lines: each line after the first is written indented by a
// tab, and an indented line that follows an entry continues its value (the
// lines are joined with CR LF, the form the multi-line values of this module
// have). Plain INI readers read such values the same way.

namespace kv {

class IniDocument {
public:
    IniDocument() = default;
    explicit IniDocument(std::string_view text);

    // Every entry of the section as "key=value" (the key and value as they
    // stand in the file, continuation lines joined), or none when the
    // section is absent.
    std::optional<std::vector<std::string>> Section(std::string_view section) const;

    // The value of the last entry of `key` in the section, white space
    // trimmed at both ends, or none.
    std::optional<std::string> Get(std::string_view section, std::string_view key) const;

    // Replaces the last entry of `key` in place, or adds it at the end of the
    // section, or adds the section at the end of the text.
    void Set(std::string_view section, std::string_view key, std::string_view value);

    std::string Text() const;

private:
    struct Entry {
        std::size_t firstLine;
        std::size_t lineCount;  // the entry line and its continuation lines
    };
    struct SectionSpan {
        std::size_t headerLine;
        std::size_t endLine;  // one past its last line
    };
    std::optional<SectionSpan> FindSection(std::string_view section) const;
    std::vector<Entry> EntriesOf(const SectionSpan& span) const;
    std::string JoinedEntry(const Entry& entry) const;
    static std::vector<std::string> EntryLines(std::string_view key, std::string_view value);

    std::vector<std::string> m_lines;
};

// Case-insensitive comparison of ASCII names.
bool EqualNoCase(std::string_view a, std::string_view b);
std::string_view TrimSpace(std::string_view text);

}  // namespace kv
