#include "core/eye/WaveformFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "core/shared/AsciiText.h"
#include "core/shared/FileIo.h"
#include "core/shared/NumberText.h"

namespace kv {
namespace {

// Thrown inside the reader with what is wrong; the file name is put before it
// where the reading is given up.
class ReadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::string Quoted(std::string_view text) {
    constexpr std::size_t kShown = 40;
    std::string quoted(1, '"');
    quoted.append(text.substr(0, kShown)).append(text.size() > kShown ? "...\"" : "\"");
    return quoted;
}

std::string AtLine(std::size_t line) {
    return "line " + std::to_string(line) + ": ";
}

// "out" finds "v(out)" too: the simulator names node voltages that way.
bool NameMatches(std::string_view candidate, std::string_view wanted) {
    return EqualNoCase(candidate, wanted) ||
           (candidate.size() == wanted.size() + 3 && EqualNoCase(candidate.substr(0, 2), "v(") &&
            candidate.back() == ')' && EqualNoCase(candidate.substr(2, wanted.size()), wanted));
}

std::string NameList(const std::vector<std::string>& names, std::size_t from) {
    std::string list;
    for (std::size_t i = from; i < names.size(); ++i) {
        list += (list.empty() ? "" : ", ") + names[i];
    }
    return list;
}

// The value column: the one named `vector`, else the first after the scale.
std::size_t ChooseColumn(const std::vector<std::string>& names, std::size_t columns,
                         std::string_view vector) {
    if (columns < 2) {
        throw ReadError("has no value column beside the time");
    }
    if (vector.empty()) {
        return 1;
    }
    if (names.empty()) {
        throw ReadError("names no columns, so it has no vector " + Quoted(vector));
    }
    for (std::size_t i = 1; i < names.size(); ++i) {
        if (NameMatches(names[i], vector)) {
            return i;
        }
    }
    throw ReadError("has no vector " + Quoted(vector) + "; it has " + NameList(names, 1));
}

// Appends one sample, keeping the time from going back.
void AddSample(Waveform& wave, double time, double value, const std::string& where) {
    if (!wave.time.empty() && time < wave.time.back()) {
        throw ReadError(where + "the time " + FormatSignificant(time, 9) + " s comes after " +
                        FormatSignificant(wave.time.back(), 9) + " s");
    }
    wave.time.push_back(time);
    wave.value.push_back(value);
}

void RequireTwoSamples(const Waveform& wave) {
    if (wave.time.size() < 2) {
        throw ReadError("holds " + std::to_string(wave.time.size()) +
                        " samples; a waveform needs at least 2");
    }
}

// ---- tables: CSV and the simulator's wrdata text

class TableLine {
public:
    TableLine(std::string_view text, char separator) {
        if (separator == ' ') {
            std::size_t at = 0;
            while (true) {
                while (at < text.size() && IsAsciiSpace(text[at])) {
                    ++at;
                }
                if (at == text.size()) {
                    break;
                }
                const std::size_t end = std::min(text.find_first_of(" \t\r\f\v", at), text.size());
                m_cells.push_back(text.substr(at, end - at));
                at = end;
            }
            return;
        }
        std::size_t start = 0;
        while (true) {
            const std::size_t end = text.find(separator, start);
            m_cells.push_back(TrimSpace(text.substr(start, end - start)));
            if (end == std::string_view::npos) {
                break;
            }
            start = end + 1;
        }
    }
    const std::vector<std::string_view>& Cells() const { return m_cells; }

private:
    std::vector<std::string_view> m_cells;
};

bool IsContent(std::string_view line) {
    const std::string_view text = TrimSpace(line);
    return !text.empty() && text.front() != '#';
}

// One separator for the whole file, chosen by its first line: a ";" table may
// then hold decimal commas, which are refused as no number rather than split.
char SeparatorOf(std::string_view firstLine) {
    if (firstLine.find(';') != std::string_view::npos) {
        return ';';
    }
    return firstLine.find(',') != std::string_view::npos ? ',' : ' ';
}

double CellNumber(std::string_view cell, std::size_t line, std::size_t column) {
    const auto number = ParseFiniteNumber(cell);
    if (!number) {
        throw ReadError(AtLine(line) + "column " + std::to_string(column + 1) + " holds " +
                        Quoted(cell) + ", which is no finite number");
    }
    return *number;
}

Waveform ReadTable(std::string_view bytes, std::string_view vector) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < bytes.size()) {
        const std::size_t end = std::min(bytes.find('\n', start), bytes.size());
        lines.push_back(bytes.substr(start, end - start));
        start = end + 1;
    }
    const auto first = std::find_if(lines.begin(), lines.end(), IsContent);
    if (first == lines.end()) {
        throw ReadError("holds no samples");
    }
    const char separator = SeparatorOf(*first);
    const TableLine head(*first, separator);
    const std::size_t columns = head.Cells().size();
    std::vector<std::string> names;
    auto row = first;
    if (!ParseFiniteNumber(head.Cells().front())) {
        names.assign(head.Cells().begin(), head.Cells().end());
        ++row;
    }
    Waveform wave;
    const std::size_t column = ChooseColumn(names, columns, vector);
    wave.name = names.empty() ? std::string() : names[column];
    for (; row != lines.end(); ++row) {
        if (!IsContent(*row)) {
            continue;
        }
        const std::size_t line = static_cast<std::size_t>(row - lines.begin()) + 1;
        const TableLine cells(*row, separator);
        if (cells.Cells().size() != columns) {
            throw ReadError(AtLine(line) + "has " + std::to_string(cells.Cells().size()) +
                            " columns where the first line has " + std::to_string(columns));
        }
        AddSample(wave, CellNumber(cells.Cells()[0], line, 0),
                  CellNumber(cells.Cells()[column], line, column), AtLine(line));
    }
    RequireTwoSamples(wave);
    return wave;
}

// ---- the simulator's raw files

// Walks the bytes of a raw file line by line and, in its text values, blank-
// separated word by word, counting lines for the messages.
class RawCursor {
public:
    explicit RawCursor(std::string_view bytes) : m_bytes(bytes) {}

    bool AtEnd() const { return m_at >= m_bytes.size(); }
    // True when nothing but blanks is left.
    bool OnlyBlanksLeft() {
        std::size_t line = 0;
        const std::size_t at = m_at;
        const std::size_t lines = m_line;
        const bool blank = NextWord(line).empty();
        m_at = at;
        m_line = lines;
        return blank;
    }
    std::size_t Line() const { return m_line; }
    std::size_t Offset() const { return m_at; }
    std::size_t Remaining() const { return m_bytes.size() - m_at; }

    std::string_view NextLine() {
        const std::size_t end = std::min(m_bytes.find('\n', m_at), m_bytes.size());
        std::string_view line = m_bytes.substr(m_at, end - m_at);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        m_at = std::min(end + 1, m_bytes.size());
        ++m_line;
        return line;
    }

    // The next blank-separated word; empty at the end. `line` is its line.
    std::string_view NextWord(std::size_t& line) {
        while (m_at < m_bytes.size() && IsAsciiSpace(m_bytes[m_at])) {
            m_line += m_bytes[m_at] == '\n' ? 1 : 0;
            ++m_at;
        }
        const std::size_t start = m_at;
        while (m_at < m_bytes.size() && !IsAsciiSpace(m_bytes[m_at])) {
            ++m_at;
        }
        line = m_line;
        return m_bytes.substr(start, m_at - start);
    }

    std::string_view Take(std::size_t count) {
        const std::string_view taken = m_bytes.substr(m_at, count);
        m_at += taken.size();
        return taken;
    }

private:
    std::string_view m_bytes;
    std::size_t m_at = 0;
    std::size_t m_line = 1;  // of the next byte
};

struct RawHeader {
    std::string plot;
    bool complex = false;
    bool binary = false;
    std::size_t points = 0;
    std::vector<std::string> names;
    std::vector<std::string> kinds;
};

std::size_t HeaderCount(std::string_view text, std::size_t line, std::string_view key) {
    const auto count = ParseWholeInteger(TrimSpace(text));
    if (!count || *count < 0) {
        throw ReadError(AtLine(line) + std::string(key) + " " + Quoted(TrimSpace(text)) +
                        " is no count");
    }
    return static_cast<std::size_t>(*count);
}

void ReadVariable(RawHeader& header, std::string_view text, std::size_t line) {
    const TableLine words(text, ' ');
    if (words.Cells().size() < 3) {
        throw ReadError(AtLine(line) + "a variable needs an index, a name and a kind");
    }
    header.names.emplace_back(words.Cells()[1]);
    header.kinds.emplace_back(words.Cells()[2]);
}

// The header up to and including its "Values:" or "Binary:" line.
RawHeader ReadRawHeader(RawCursor& cursor) {
    RawHeader header;
    std::size_t variables = 0;
    bool sawVariables = false;
    while (!cursor.AtEnd()) {
        const std::size_t line = cursor.Line();
        const std::string_view text = cursor.NextLine();
        const std::size_t colon = text.find(':');
        if (TrimSpace(text).empty()) {
            continue;
        }
        if (colon == std::string_view::npos) {
            throw ReadError(AtLine(line) + Quoted(text) + " is no header line");
        }
        const std::string_view key = TrimSpace(text.substr(0, colon));
        const std::string_view value = text.substr(colon + 1);
        if (EqualNoCase(key, "Plotname")) {
            header.plot = std::string(TrimSpace(value));
        } else if (EqualNoCase(key, "Flags")) {
            header.complex = TrimSpace(value).find("complex") != std::string_view::npos;
        } else if (EqualNoCase(key, "No. Variables")) {
            variables = HeaderCount(value, line, key);
        } else if (EqualNoCase(key, "No. Points")) {
            header.points = HeaderCount(value, line, key);
        } else if (EqualNoCase(key, "Variables")) {
            sawVariables = true;
            if (!TrimSpace(value).empty()) {
                ReadVariable(header, value, line);
            }
            while (header.names.size() < variables && !cursor.AtEnd()) {
                const std::size_t at = cursor.Line();
                ReadVariable(header, cursor.NextLine(), at);
            }
        } else if (EqualNoCase(key, "Values") || EqualNoCase(key, "Binary")) {
            header.binary = EqualNoCase(key, "Binary");
            if (!sawVariables || variables == 0 || header.names.size() != variables) {
                throw ReadError(AtLine(line) + "the values begin before their " +
                                std::to_string(variables) + " variables are named");
            }
            return header;
        }
    }
    throw ReadError("ends in the header of plot " + Quoted(header.plot) + ", before its values");
}

double LittleEndianDouble(std::string_view bytes) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes.data(), sizeof bits);
    if constexpr (std::endian::native == std::endian::big) {
        bits = __builtin_bswap64(bits);
    }
    return std::bit_cast<double>(bits);
}

// Reads (or, when `wave` is null, steps over) the values of one plot.
void ReadRawValues(RawCursor& cursor, const RawHeader& header, std::size_t column, Waveform* wave) {
    const std::size_t variables = header.names.size();
    const std::size_t numbers = header.complex ? 2 : 1;
    if (header.binary) {
        const std::size_t pointBytes = variables * numbers * sizeof(double);
        const std::size_t start = cursor.Offset();
        const std::size_t present = cursor.Remaining() / pointBytes;
        if (present < header.points) {
            throw ReadError("offset " + std::to_string(start + present * pointBytes) +
                            ": the binary values end after " + std::to_string(present) + " of " +
                            std::to_string(header.points) + " points");
        }
        const std::string_view data = cursor.Take(header.points * pointBytes);
        for (std::size_t point = 0; wave != nullptr && point < header.points; ++point) {
            const std::size_t at = point * pointBytes;
            const double time = LittleEndianDouble(data.substr(at));
            const double value = LittleEndianDouble(data.substr(at + column * sizeof(double)));
            const std::string where = "offset " + std::to_string(start + at) + ": ";
            if (!std::isfinite(time) || !std::isfinite(value)) {
                throw ReadError(where + "point " + std::to_string(point) +
                                " holds a value that is not finite");
            }
            AddSample(*wave, time, value, where);
        }
        return;
    }
    for (std::size_t point = 0; point < header.points; ++point) {
        std::size_t line = 0;
        const std::string_view index = cursor.NextWord(line);
        if (index.empty()) {
            throw ReadError("the values end after " + std::to_string(point) + " of " +
                            std::to_string(header.points) + " points");
        }
        if (ParseWholeInteger(index) != static_cast<long long>(point)) {
            throw ReadError(AtLine(line) + "point " + std::to_string(point) + " is numbered " +
                            Quoted(index));
        }
        double time = 0.0;
        double value = 0.0;
        for (std::size_t variable = 0; variable < variables; ++variable) {
            const std::string_view word = cursor.NextWord(line);
            // A complex value is "real,imaginary"; the real part is what is plotted.
            const auto number = ParseFiniteNumber(word.substr(0, word.find(',')));
            if (!number) {
                throw ReadError(AtLine(line) + "the value " + Quoted(word) + " of " +
                                header.names[variable] + " is no finite number");
            }
            time = variable == 0 ? *number : time;
            value = variable == column ? *number : value;
        }
        if (wave != nullptr) {
            AddSample(*wave, time, value, AtLine(line));
        }
    }
}

Waveform ReadRaw(std::string_view bytes, std::string_view vector) {
    RawCursor cursor(bytes);
    std::vector<std::string> plots;
    while (!cursor.OnlyBlanksLeft()) {
        const RawHeader header = ReadRawHeader(cursor);
        const bool transient = EqualNoCase(header.kinds.front(), "time") && !header.complex;
        if (!transient) {
            plots.push_back(header.plot);
            ReadRawValues(cursor, header, 0, nullptr);
            continue;
        }
        Waveform wave;
        const std::size_t column = ChooseColumn(header.names, header.names.size(), vector);
        wave.name = header.names[column];
        wave.time.reserve(std::min(header.points, bytes.size() / 8));
        wave.value.reserve(wave.time.capacity());
        ReadRawValues(cursor, header, column, &wave);
        RequireTwoSamples(wave);
        return wave;
    }
    std::string have;
    for (const std::string& plot : plots) {
        have += (have.empty() ? "" : ", ") + Quoted(plot);
    }
    throw ReadError("holds no real plot over time (it holds " + (have.empty() ? "none" : have) +
                    ")");
}

bool IsRawFile(std::string_view bytes) {
    const std::size_t start =
        std::find_if_not(bytes.begin(), bytes.end(), IsAsciiSpace) - bytes.begin();
    return EqualNoCase(bytes.substr(start, 6), "Title:");
}

}  // namespace

WaveformRead ReadWaveformBytes(std::string_view bytes, std::string_view vector,
                               std::string_view fileName) {
    WaveformRead read;
    try {
        read.waveform = IsRawFile(bytes) ? ReadRaw(bytes, vector) : ReadTable(bytes, vector);
    } catch (const ReadError& error) {
        read.error = std::string(fileName) + ": " + error.what();
    }
    return read;
}

WaveformRead ReadWaveformFile(const std::filesystem::path& path, std::string_view vector) {
    std::string reason;
    const auto bytes = ReadWholeFile(path, kMaxWaveformFileBytes, &reason);
    if (!bytes) {
        return {std::nullopt, path.string() + ": cannot be read: " + reason};
    }
    return ReadWaveformBytes(*bytes, vector, path.string());
}

}  // namespace kv
