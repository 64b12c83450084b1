#include "core/via/ViaSpiceWriter.h"

#include <array>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "core/shared/Misc_String.h"
#include "core/shared/NumberText.h"
#include "core/via/LayerRole.h"
#include "core/via/ViaViewStyle.h"
#include "core/via/ViaVizData.h"

namespace kv {
namespace {

// The closing rule is one star longer than the opening one; readers of these files have
// always seen it so.
constexpr std::string_view kOpeningRule = "*****************************************\n";
constexpr std::string_view kClosingRule = "******************************************\n";
constexpr std::string_view kBanner = "* via model by Velmorine Via Visualizer *\n";
constexpr const char* kGeneratedFormat = "*    generated %Y-%m-%d %H:%M:%S     *";
// Capacity of the number part of a formatted length.
constexpr std::size_t kLengthFieldCapacity = 12;
// Element values are written as "%g".
constexpr int kSpiceDigits = 6;

// The first via of a pair is the right one. Only the port list puts a "*" line before the
// first label.
constexpr std::string_view kViaLabels[] = {"Right Via", "Left Via"};

std::string ViaLabelLine(std::size_t viaIndex) {
    return "*  " + std::string(viaIndex < std::size(kViaLabels) ? kViaLabels[viaIndex] : "") + '\n';
}

// printf's "%<width>s": right-aligned, never cut.
std::string Right(std::string_view text, std::size_t width) {
    std::string padded;
    if (text.size() < width) {
        padded.assign(width - text.size(), ' ');
    }
    padded += text;
    return padded;
}

// printf's "%03d".
std::string Number3(std::size_t index) {
    std::string digits = std::to_string(index);
    return digits.size() < 3 ? std::string(3 - digits.size(), '0') + digits : digits;
}

// A length with its unit, written as the subcircuit's comments have always had it and unlike
// the views' LengthText: no blank before the unit, the number cut at kLengthFieldCapacity
// characters and, in the stackup table, a number whose first decimal is 0 without its decimals
// ("1.05" reads "1").
std::string SpiceLengthText(double metres, bool metric, bool cutAtPoint) {
    std::array<char, kLengthFieldCapacity + 1> number{};
    std::array<char, kUnitTextCapacity + 1> unit{};
    FormatLength(metres, number.data(), kLengthFieldCapacity, metric, unit.data());
    std::string text(number.data());
    const std::size_t point = text.find('.');
    if (cutAtPoint && point != std::string::npos && point + 1 < text.size() &&
        text[point + 1] == '0') {
        text.resize(point);
    }
    return text + unit.data();
}

// The views' short shape names, but "NONE" for no shape and "UNDF" for every code the table
// has no name for, the custom outline among them.
std::string PadShapeText(int32_t shape) {
    if (shape == PAD_SHAPE_NONE) {
        return "NONE";
    }
    std::string name = via_view::ShapeText(shape);
    return name.empty() || shape == PAD_SHAPE_CUSTOM ? "UNDF" : name;
}

// The pad of the first via on layer `index`; a layer beyond its pad array, or a count a host
// gave without an array, has none.
PADDATA FirstViaPad(const SpiceExportInput& input, int32_t index) {
    if (input.vias.empty() || input.vias.front().padstack == nullptr) {
        return PADDATA{};
    }
    const PADSTACK& padstack = *input.vias.front().padstack;
    return padstack.pads != nullptr && index < padstack.padCount ? padstack.pads[index] : PADDATA{};
}

void WriteBanner(const std::tm& generated, std::string& text) {
    std::array<char, 64> stamp{};
    const std::size_t length =
        std::strftime(stamp.data(), stamp.size(), kGeneratedFormat, &generated);
    text += '\n';
    text += kOpeningRule;
    text += kBanner;
    text.append(stamp.data(), length);
    text += '\n';
    text += kClosingRule;
    text += '\n';
}

void WriteStackup(const SpiceExportInput& input, std::string& text) {
    text += "* STACKUP\n";
    text += "* NN   type   Thickness  Pad      Size   Name  \n";
    for (int32_t i = 0; i < input.stackup->count; ++i) {
        const STACKUPLAYER& layer = input.stackup->layers[i];
        std::string shape;
        std::string size;
        if (layer.kind != STACKUP_DIELECTRIC) {
            const PADDATA pad = FirstViaPad(input, i);
            shape = PadShapeText(pad.shape);
            if (pad.shape != PAD_SHAPE_NONE) {
                size = SpiceLengthText(pad.pad_x, input.metric, true);
            }
        }
        text += '*' + Right(std::to_string(i + 1), 3) + "  " +
                Right(LayerTypeWord(layer.kind, layer.usage), 5) + "  " +
                Right(SpiceLengthText(layer.thickness, input.metric, true), 8) + "   " +
                Right(shape, 4) + "  " + Right(size, 8) + "  " +
                std::string(FieldText(layer.name)) + "  \n";
    }
}

void WritePorts(const SpiceExportInput& input, std::size_t viaIndex,
                const std::vector<CViaVizSpiceLayer>& nodes, std::string& text) {
    if (input.pair) {
        text += (viaIndex == 0 ? "*\n" : "") + ViaLabelLine(viaIndex);
    }
    const PADSTACK& padstack = *input.vias[viaIndex].padstack;
    text += "* Padstack: \"" + std::string(FieldText(padstack.name)) +
            "\"   Drill=" + SpiceLengthText(padstack.drill, input.metric, false) + '\n';
    text += "* layers to connect (ports)\n";
    for (const CViaVizSpiceLayer& node : nodes) {
        if (node.port != nullptr) {
            text += "*** connection to layer \"" +
                    std::string(FieldText(input.stackup->layers[node.layer].name)) + "\"\n";
            text += "+ " + Right(node.name, 8) + '\n';
        }
    }
}

// Walks the node table downward, merging consecutive series parts into one L or one T line
// until something has to be connected in between: a shunt capacitance, a port, a change of
// kind or of line impedance, or the last layer of the via's span. Every line is numbered with
// the index of the node at which it is written, so an L, a T and a C ending at one node share
// their number.
class ElementWalk {
public:
    ElementWalk(std::string suffix, int32_t lastLayer, std::string& text)
        : m_suffix(std::move(suffix)), m_lastLayer(lastLayer), m_text(text) {}

    void Visit(std::size_t k, const CViaVizSpiceLayer& node) {
        if (EndsRun(node)) {
            const bool wroteSeries = m_start != nullptr && FlushRun(k, *m_start, node);
            if (node.C != 0.0) {
                m_text += 'C' + Number3(k) + m_suffix + ' ' + Right(node.name, 8) + "     " +
                          Right("0", 8) + "        " + FormatSignificant(node.C, kSpiceDigits) +
                          '\n';
            } else if (node.port != nullptr && !wroteSeries) {
                if (m_start == nullptr) {
                    // A port that nothing reaches yet still needs an element to be a node.
                    m_text += 'C' + Number3(k) + m_suffix + ' ' + Right(node.name, 8) + "   " +
                              Right("0", 8) + "      " + FormatSignificant(0.0, kSpiceDigits) +
                              '\n';
                } else {
                    m_text += 'V' + Number3(k) + m_suffix + ' ' + Right(m_start->name, 8) + "   " +
                              Right(node.name, 8) + '\n';
                }
            }
            m_start = &node;
        }
        if (node.L != 0.0) {
            m_pendingL += node.L;
            StartRunAt(node);
        }
        if (node.Z0 != 0.0 || node.TD != 0.0) {
            m_pendingZ0 = node.Z0;  // a line keeps the impedance of its last piece
            m_pendingTD += node.TD;
            StartRunAt(node);
        }
    }

private:
    void StartRunAt(const CViaVizSpiceLayer& node) {
        if (m_start == nullptr) {
            m_start = &node;
        }
    }

    bool EndsRun(const CViaVizSpiceLayer& node) const {
        const bool pendingLine = m_pendingZ0 != 0.0 || m_pendingTD != 0.0;
        return (m_pendingL != 0.0 && (node.Z0 != 0.0 || node.TD != 0.0)) ||
               (pendingLine && node.L != 0.0) ||
               (m_pendingZ0 != 0.0 && node.Z0 != 0.0 && node.Z0 != m_pendingZ0) || node.C != 0.0 ||
               node.port != nullptr || node.layer == m_lastLayer;
    }

    bool FlushRun(std::size_t k, const CViaVizSpiceLayer& start, const CViaVizSpiceLayer& end) {
        bool wrote = false;
        if (m_pendingL != 0.0) {
            m_text += 'L' + Number3(k) + m_suffix + ' ' + Right(start.name, 8) + "     " +
                      Right(end.name, 8) + "        " +
                      FormatSignificant(m_pendingL, kSpiceDigits) + '\n';
            m_pendingL = 0.0;
            wrote = true;
        }
        if (m_pendingZ0 != 0.0 || m_pendingTD != 0.0) {
            m_text += 'T' + Number3(k) + m_suffix + ' ' + Right(start.name, 8) + " 0 " +
                      Right(end.name, 8) +
                      " 0    Z0=" + FormatSignificant(m_pendingZ0, kSpiceDigits) +
                      " TD=" + FormatSignificant(m_pendingTD, kSpiceDigits) + '\n';
            m_pendingZ0 = 0.0;
            m_pendingTD = 0.0;
            wrote = true;
        }
        return wrote;
    }

    std::string m_suffix;
    int32_t m_lastLayer;
    std::string& m_text;
    const CViaVizSpiceLayer* m_start = nullptr;  // where the pending run begins
    double m_pendingL = 0.0;
    double m_pendingZ0 = 0.0;
    double m_pendingTD = 0.0;
};

void WriteElements(const SpiceExportInput& input, std::size_t viaIndex,
                   const std::vector<CViaVizSpiceLayer>& nodes, std::string& text) {
    std::string suffix;
    if (input.pair) {
        suffix = '_' + std::to_string(viaIndex + 1);
        text += ViaLabelLine(viaIndex);
    }
    ElementWalk walk(suffix, input.vias[viaIndex].padstack->lastLayer, text);
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        walk.Visit(k, nodes[k]);
    }
    text += '\n';
}

}  // namespace

std::string SpiceModelText(const SpiceExportInput& input) {
    if (input.stackup == nullptr ||
        (input.stackup->count > 0 && input.stackup->layers == nullptr)) {
        throw std::invalid_argument("SPICE export without a stackup");
    }
    for (const SpiceViaInput& via : input.vias) {
        if (via.padstack == nullptr) {
            throw std::invalid_argument("SPICE export of a via without a padstack");
        }
    }
    std::vector<std::vector<CViaVizSpiceLayer>> tables;
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        tables.push_back(BuildSpiceNodes(input.vias[v], input.stackup->count, static_cast<int>(v)));
    }
    std::string text;
    WriteBanner(input.generated, text);
    WriteStackup(input, text);
    text += "\n.SUBCKT " + input.subcircuitName + "\n*\n";
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        WritePorts(input, v, tables[v], text);
    }
    text += '\n';
    for (std::size_t v = 0; v < input.vias.size(); ++v) {
        WriteElements(input, v, tables[v], text);
    }
    text += ".ENDS\n";
    return text;
}

}  // namespace kv
