// The engineering-value reader and the name orders. The reader takes any
// text and either gives a finite number or refuses with 0; every formatter
// takes what it gives. The name orders must be strict weak orderings, since
// the walker sorts nets with them: checked on three names cut from the input
// at line feeds, in every order.

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "core/shared/Misc_String.h"

namespace {

using kv::fuzz::Escaped;
using kv::fuzz::Expect;

void CheckParser(const std::string& text, uint8_t flags) {
    double value = 123.0;
    const bool ok = kv::ParseEngineeringValue(text.c_str(), value, (flags & 1) != 0,
                                              (flags & 2) != 0, (flags & 4) != 0);
    Expect(ok ? std::isfinite(value) : value == 0.0, "ParseEngineeringValue(\"" + Escaped(text) +
                                                         "\") gave " + std::to_string(value) +
                                                         (ok ? " as a number" : " with a refusal"));
    // Every formatter copes with whatever the reader produces: a text that
    // fits its buffer, never an empty one.
    using Formatter = bool (*)(double, char*, std::size_t, char*);
    constexpr std::array<Formatter, 6> formatters{kv::FormatCapacitance, kv::FormatInductance,
                                                  kv::FormatResistance,  kv::FormatFrequency,
                                                  kv::FormatTime,        kv::FormatVoltage};
    std::array<char, 64> buffer{};
    const auto expectText = [&](std::string_view which) {
        Expect(buffer[0] != '\0',
               "an empty " + std::string(which) + " text for " + std::to_string(value));
    };
    for (const Formatter format : formatters) {
        format(value, buffer.data(), buffer.size(), nullptr);
        expectText("unit");
    }
    for (const bool metric : {false, true}) {
        kv::FormatLength(value, buffer.data(), buffer.size(), metric, nullptr);
        expectText("length");
    }
    Expect(!kv::FormatCompactExponentText(value).empty(), "an empty compact exponent");
}

using Order = int (*)(const char*, const char*);

int Sign(int value) {
    return (value > 0) - (value < 0);
}

void CheckOrder(const char* name, Order compare, const std::array<std::string, 3>& names) {
    const auto show = [&](std::size_t i) { return "\"" + Escaped(names[i]) + "\""; };
    int table[3][3];
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            table[i][j] = Sign(compare(names[i].c_str(), names[j].c_str()));
        }
    }
    for (std::size_t i = 0; i < 3; ++i) {
        Expect(table[i][i] == 0, std::string(name) + ": " + show(i) + " is not equal to itself");
        for (std::size_t j = 0; j < 3; ++j) {
            Expect(table[i][j] == -table[j][i], std::string(name) + ": " + show(i) + " and " +
                                                    show(j) + " compare unlike both ways");
            for (std::size_t k = 0; k < 3; ++k) {
                // Not after, not after: not after (equivalence and order are transitive).
                if (table[i][j] <= 0 && table[j][k] <= 0) {
                    Expect(table[i][k] <= 0 &&
                               (table[i][j] == 0 && table[j][k] == 0) == (table[i][k] == 0),
                           std::string(name) + ": not transitive on " + show(i) + ", " + show(j) +
                               ", " + show(k));
                }
            }
        }
    }
}

int NamesCaseSensitive(const char* a, const char* b) {
    return kv::CompareNames(a, b, true);
}
int NamesIgnoringCase(const char* a, const char* b) {
    return kv::CompareNames(a, b, false);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string text(kv::fuzz::AsText(data + 1, size - 1));
    CheckParser(text, data[0]);

    std::array<std::string, 3> names;
    std::size_t start = 0;
    for (std::string& name : names) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        name = text.substr(std::min(start, text.size()), end - std::min(start, text.size()));
        name = name.c_str();  // the functions read up to the first NUL
        start = end + 1;
    }
    CheckOrder("CompareNames (case-sensitive)", NamesCaseSensitive, names);
    CheckOrder("CompareNames", NamesIgnoringCase, names);
    CheckOrder("CompareIdentifiers", kv::CompareIdentifiers, names);
    return 0;
}
