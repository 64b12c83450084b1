#include "core/via/PadstackDump.h"

#include <ostream>
#include <sstream>
#include <string>
#include <system_error>

#include "core/shared/BoundedCopy.h"
#include "core/shared/FileIo.h"
#include "core/shared/NumberText.h"
#include "core/via/ViaVizData.h"

namespace kv {
namespace {

constexpr int kDrillDecimals = 7;
constexpr int kPadDecimals = 5;

// Codes outside the known ranges print as an empty field.
std::string_view PadTypeText(int32_t code) {
    switch (code) {
        case PAD_TYPE_NONE:
            return "none";
        case PAD_TYPE_PAD:
            return "pad";
        case PAD_TYPE_ANTIPAD:
            return "anti-pad";
        default:
            return "";
    }
}

std::string_view PadShapeText(int32_t code) {
    switch (code) {
        case PAD_SHAPE_NONE:
        case PAD_SHAPE_UNSET:
            return "none";
        case PAD_SHAPE_ROUND:
            return "round";
        case PAD_SHAPE_RECTANGLE:
            return "rectangle";
        case PAD_SHAPE_OVAL:
            return "oval";
        case PAD_SHAPE_OBLONG:
            return "oblong";
        case PAD_SHAPE_CUSTOM:
            return "custom";
        default:
            return "";
    }
}

}  // namespace

std::filesystem::path DefaultPadstackDumpFolder() {
    std::error_code error;
    std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    return error ? std::filesystem::path("/tmp") : folder;
}

// Integers go through std::to_string so that a locale imbued in `out` cannot group digits.
void WritePadstackDump(const STACKUPARRAY& stackup, const PADSTACK& padstack, std::ostream& out) {
    out << "Padstack = " << FieldText(padstack.name)
        << ", num_pad = " << std::to_string(padstack.padCount)
        << ", layer_span = " << std::to_string(padstack.firstLayer) << " -"
        << std::to_string(padstack.lastLayer) << '\n';
    out << "drill = " << FormatFixed(padstack.drill, kDrillDecimals)
        << ", plating = " << FormatFixed(padstack.plating, kDrillDecimals) << " \n";
    for (int32_t i = 0; stackup.layers != nullptr && i < stackup.count; ++i) {
        const STACKUPLAYER& layer = stackup.layers[i];
        if (layer.kind == STACKUP_DIELECTRIC) {
            out << '^' << std::to_string(i) << "    layer=" << FieldText(layer.name)
                << ", padType=dielectric\n";
            continue;
        }
        const PADDATA pad =
            padstack.pads != nullptr && i < padstack.padCount ? padstack.pads[i] : PADDATA{};
        out << '^' << std::to_string(i) << "   layer=" << FieldText(layer.name)
            << ", padType=" << PadTypeText(pad.padType) << ", padShape=" << PadShapeText(pad.shape)
            << ", pad_x=" << FormatFixed(pad.pad_x, kPadDecimals)
            << ", pad_y=" << FormatFixed(pad.pad_y, kPadDecimals)
            << "  , clearance=" << FormatFixed(pad.clearance, kPadDecimals) << '\n';
    }
}

bool AppendPadstackDump(const STACKUPARRAY& stackup, const PADSTACK& padstack,
                        const std::filesystem::path& folder) {
    std::ostringstream listing;
    WritePadstackDump(stackup, padstack, listing);
    return AppendToFile(folder / kPadstackDumpFileName, listing.str()).ok;
}

}  // namespace kv
