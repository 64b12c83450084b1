// The initialisation-file document: text read and written back unchanged
// keeps every byte, and an edit changes the one entry it names and nothing
// else, in the text and in what a second reading of that text finds.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "core/settings/IniDocument.h"
#include "core/shared/AsciiText.h"

namespace {

using kv::EqualNoCase;
using kv::IniDocument;
using kv::IniEntry;
using kv::TrimSpace;
using kv::fuzz::Escaped;
using kv::fuzz::Expect;

// Lines with their line ends, as they stand in the text.
std::vector<std::string_view> RawLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::size_t length = end == std::string_view::npos ? text.size() : end + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

// A last line without a line end may gain one when something follows it.
bool SameLine(std::string_view before, std::string_view after) {
    if (before == after) {
        return true;
    }
    if (!before.empty() && before.back() == '\n') {
        return false;
    }
    return after.substr(0, before.size()) == before &&
           (after.substr(before.size()) == "\n" || after.substr(before.size()) == "\r\n");
}

// The names of the header lines, in order, each once.
std::vector<std::string> SectionNames(const std::vector<std::string_view>& lines) {
    std::vector<std::string> names;
    for (std::string_view line : lines) {
        if (line.empty() || line.front() != '[') {
            continue;
        }
        const std::string_view trimmed = TrimSpace(line);
        const std::size_t close = trimmed.find(']');
        if (close == std::string_view::npos) {
            continue;
        }
        const std::string name(TrimSpace(trimmed.substr(1, close - 1)));
        if (std::none_of(names.begin(), names.end(),
                         [&](const std::string& known) { return EqualNoCase(known, name); })) {
            names.push_back(name);
        }
    }
    return names;
}

// A key that the document writes back as an entry of the same name.
bool IsPlainKey(std::string_view key) {
    return !key.empty() && key.front() != '[' && key.front() != ';' &&
           key.find_first_of("=\r\n") == std::string_view::npos && TrimSpace(key) == key;
}

// An indented line that is neither blank nor a comment continues the entry
// before it.
bool IsContinuation(std::string_view line) {
    const std::string_view trimmed = TrimSpace(line);
    return !line.empty() && (line.front() == ' ' || line.front() == '\t') && !trimmed.empty() &&
           trimmed.front() != ';';
}

// Whether the lines [begin, end) lie within one entry whose key is `key`
// (none: whether there are no such lines). The entry starts at the line
// before its continuation lines.
bool WithinOneEntry(const std::vector<std::string_view>& lines, std::size_t begin, std::size_t end,
                    std::string_view key) {
    if (begin == end) {
        return true;
    }
    std::size_t first = begin;
    while (first > 0 && IsContinuation(lines[first])) {
        const std::string_view previous = TrimSpace(lines[first - 1]);
        const bool header =
            lines[first - 1].front() == '[' && previous.find(']') != std::string_view::npos;
        if (previous.empty() || previous.front() == ';' || header) {
            break;  // an indented line after no entry starts one
        }
        --first;
    }
    const std::string_view line = lines[first];
    return !key.empty() && EqualNoCase(TrimSpace(line.substr(0, line.find('='))), key) &&
           std::all_of(lines.begin() + static_cast<std::ptrdiff_t>(first) + 1,
                       lines.begin() + static_cast<std::ptrdiff_t>(end), IsContinuation);
}

struct Edit {
    std::string section;
    std::string key;
    std::string value;
};

void CheckEdit(std::string_view text, const std::vector<std::string>& names, const Edit& edit) {
    const IniDocument before(text);
    IniDocument after(text);
    after.Set(edit.section, edit.key, edit.value);
    const std::string written = after.Text();
    const std::string where = " after setting [" + Escaped(edit.section) + "] " +
                              Escaped(edit.key) + " in \"" + Escaped(text) + "\"";

    // What the edited section must hold: the last entry of the key replaced,
    // or the entry added at the end.
    std::string expectedValue;
    for (std::string_view rest = edit.value; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        if (!expectedValue.empty()) {
            expectedValue += "\r\n";
        }
        expectedValue += TrimSpace(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    std::vector<IniEntry> expected =
        before.Section(edit.section).value_or(kv::IniSection{}).Entries();
    const auto last = std::find_if(expected.rbegin(), expected.rend(),
                                   [&](const IniEntry& e) { return EqualNoCase(e.key, edit.key); });
    const bool replaces = last != expected.rend();
    if (replaces) {
        *last = {edit.key, expectedValue};
    } else {
        expected.push_back({edit.key, expectedValue});
    }

    const IniDocument reread(written);
    for (const IniDocument* document : {static_cast<const IniDocument*>(&after), &reread}) {
        const char* which = document == &after ? " (edited)" : " (read again)";
        Expect(document->Get(edit.section, edit.key) == expectedValue,
               std::string("the value does not read back") + which + where);
        Expect(document->Section(edit.section) == kv::IniSection(expected),
               std::string("the edited section changed elsewhere") + which + where);
        for (const std::string& name : names) {
            if (!EqualNoCase(name, edit.section)) {
                Expect(document->Section(name) == before.Section(name),
                       "section [" + Escaped(name) + "] changed" + which + where);
            }
        }
    }

    // Every line but those of the replaced entry stays as it was.
    const auto oldLines = RawLines(text);
    const auto newLines = RawLines(written);
    std::size_t prefix = 0;
    while (prefix < oldLines.size() && prefix < newLines.size() &&
           SameLine(oldLines[prefix], newLines[prefix])) {
        ++prefix;
    }
    std::size_t suffix = 0;
    while (
        suffix < oldLines.size() - prefix && suffix < newLines.size() - prefix &&
        SameLine(oldLines[oldLines.size() - 1 - suffix], newLines[newLines.size() - 1 - suffix])) {
        ++suffix;
    }
    Expect(
        WithinOneEntry(oldLines, prefix, oldLines.size() - suffix,
                       replaces ? edit.key : std::string_view{}),
        "lines outside the edited entry changed" + where + ", giving \"" + Escaped(written) + "\"");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text = kv::fuzz::AsText(data, size);
    const IniDocument document(text);
    const std::string written = document.Text();
    Expect(
        SameLine(text, written) || written == text,
        "reading and writing changed \"" + Escaped(text) + "\" into \"" + Escaped(written) + "\"");

    const auto lines = RawLines(text);
    const std::vector<std::string> names = SectionNames(lines);
    std::vector<Edit> edits;
    const std::string section = names.empty() ? "FUZZ" : names.front();
    if (const auto entries = document.Section(section); entries && !entries->Entries().empty()) {
        const std::string& key = entries->Entries().front().key;
        if (IsPlainKey(key)) {
            edits.push_back({section, key, "replaced"});
        }
    }
    edits.push_back({section, "FUZZADDED", "first line\nsecond line"});
    edits.push_back({"FUZZ NEW SECTION", "KEY", "value"});
    for (const Edit& edit : edits) {
        CheckEdit(text, names, edit);
    }
    return 0;
}
