#include "core/chart/AxisText.h"

#include <initializer_list>
#include <string>

#include "core/chart/SiPrefix.h"
#include "core/shared/NumberText.h"

// The numbers go through the locale-free printer: a host that switches to a
// decimal comma still gets the same labels. Each text is the printf format
// named in the header with its number printed that way.

namespace kv {
namespace {

// Joins the pieces of a text in one buffer.
std::string Join(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const std::string_view piece : pieces) {
        text.append(piece);
    }
    return text;
}

bool InPrintableBand(double factor) {
    return factor >= 1e-12 && factor <= 1e12;
}

}  // namespace

std::string LabelText(double value, int prefixRow, std::string_view unit) {
    const SiPrefix& prefix = SiPrefixes().at(static_cast<size_t>(prefixRow));
    if (InPrintableBand(prefix.factor)) {
        // " %.4g%s%s "
        std::string text =
            Join({" ", PrintNumber(value / prefix.factor, NumberStyle::Significant, 4), prefix.text,
                  unit, " "});
        if (text.find('e') == std::string::npos) {
            return text;
        }
    }
    // " %.2e%s "
    return Join({" ", PrintNumber(value, NumberStyle::Scientific, 2), unit, " "});
}

std::string ReadoutValueText(double value, bool prefixes, std::string_view unit) {
    const SiPrefix& prefix = SiPrefixes()[static_cast<size_t>(ChoosePrefixRow(value, prefixes))];
    if (InPrintableBand(prefix.factor)) {
        // "%.5g%s%s"
        return Join(
            {PrintNumber(value / prefix.factor, NumberStyle::Significant, 5), prefix.text, unit});
    }
    // "%.3e%s"
    return Join({PrintNumber(value, NumberStyle::Scientific, 3), unit});
}

std::string ReadoutText(const ReadoutRequest& request) {
    return Join({request.curveName, "   ",
                 ReadoutValueText(request.x, request.prefixes, request.xUnit), " ,",
                 ReadoutValueText(request.y, request.prefixes, request.yUnit)});
}

}  // namespace kv
