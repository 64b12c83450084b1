#include "apps/viadescription/ViaDescription.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace kv::via_json {
namespace {

using nlohmann::json;

// The codes of VIAELEMENT's kind and end types.
constexpr int32_t kElementInductance = 1;
constexpr int32_t kElementLine = 4;
constexpr int32_t kEndCapacitance = 2;

// A key as a message may show it: control characters (a NUL above all, which
// would end the message early) written as \u00XX, as JSON writes them.
std::string PrintableKey(std::string_view key) {
    std::string text;
    for (const char c : key) {
        if (static_cast<unsigned char>(c) < 0x20) {
            constexpr char kHex[] = "0123456789abcdef";
            text += "\\u00";
            text += kHex[(c >> 4) & 0xf];
            text += kHex[c & 0xf];
        } else {
            text += c;
        }
    }
    return text;
}

// A JSON value together with the path that names it in messages.
struct Field {
    const json& value;
    std::string path;

    [[noreturn]] void Fail(const std::string& problem) const {
        throw DescriptionError(path + ": " + problem);
    }

    Field Member(const std::string& key) const {
        const auto found = value.find(key);
        if (found == value.end()) {
            throw DescriptionError(Join(key) + ": missing");
        }
        return {*found, Join(key)};
    }
    std::optional<Field> OptionalMember(const std::string& key) const {
        const auto found = value.find(key);
        if (found == value.end()) {
            return std::nullopt;
        }
        return Field{*found, Join(key)};
    }
    Field Element(std::size_t index) const {
        return {value[index], path + "[" + std::to_string(index) + "]"};
    }

    void ExpectObject(std::initializer_list<const char*> keys) const {
        if (!value.is_object()) {
            Fail("must be an object");
        }
        for (const auto& [key, member] : value.items()) {
            bool known = false;
            for (const char* allowed : keys) {
                known = known || key == allowed;
            }
            if (!known) {
                throw DescriptionError(Join(key) + ": unknown field");
            }
        }
    }
    const json& ExpectArray() const {
        if (!value.is_array()) {
            Fail("must be an array");
        }
        return value;
    }
    std::string String() const {
        if (!value.is_string()) {
            Fail("must be a string");
        }
        return value.get<std::string>();
    }
    double Number() const {
        if (!value.is_number()) {
            Fail("must be a number");
        }
        const double number = value.get<double>();
        if (!std::isfinite(number)) {
            Fail("must be finite");
        }
        return number;
    }
    double NonNegative() const {
        const double number = Number();
        if (number < 0.0) {
            Fail("must not be negative");
        }
        return number;
    }
    bool Boolean() const {
        if (!value.is_boolean()) {
            Fail("must be true or false");
        }
        return value.get<bool>();
    }
    // One of `names`; returns the code paired with it.
    int32_t Choice(std::initializer_list<std::pair<const char*, int32_t>> names) const {
        const std::string text = String();
        std::string allowed;
        for (const auto& [name, code] : names) {
            if (text == name) {
                return code;
            }
            allowed += allowed.empty() ? "" : ", ";
            allowed += '"' + std::string(name) + '"';
        }
        Fail("\"" + text + "\" is not one of " + allowed);
    }

private:
    std::string Join(const std::string& key) const {
        return path.empty() ? PrintableKey(key) : path + "." + PrintableKey(key);
    }
};

double OptionalNonNegative(const Field& parent, const char* key) {
    const auto member = parent.OptionalMember(key);
    return member ? member->NonNegative() : 0.0;
}

double OptionalNumber(const Field& parent, const char* key) {
    const auto member = parent.OptionalMember(key);
    return member ? member->Number() : 0.0;
}

// A NUL would cut the name short where it is stored, and a line break would end the comment
// line of the SPICE file that shows the name and let the rest of it be read as a netlist line.
void RefuseControlCharacters(const Field& field, const std::string& text) {
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x20 || code == 0x7f) {
            field.Fail(code == 0 ? "must not contain a NUL character (\\u0000)"
                                 : "must not contain control characters (line breaks, tabs)");
        }
    }
}

void ReadName(const Field& field, char (&name)[VIA_NAME_CAPACITY + 1]) {
    const std::string text = field.String();
    if (text.empty()) {
        field.Fail("must not be empty");
    }
    RefuseControlCharacters(field, text);
    if (text.size() > VIA_NAME_CAPACITY) {
        field.Fail("longer than " + std::to_string(VIA_NAME_CAPACITY) + " bytes");
    }
    std::memcpy(name, text.data(), text.size());
    name[text.size()] = '\0';
}

std::vector<STACKUPLAYER> ReadStackup(const Field& field) {
    const json& layers = field.ExpectArray();
    if (layers.empty()) {
        field.Fail("needs at least one layer");
    }
    std::vector<STACKUPLAYER> stackup(layers.size());
    // Layers are found by name (ports, elements), so a name must say which layer it is.
    std::map<std::string, std::size_t> named;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const Field layer = field.Element(i);
        layer.ExpectObject({"name", "kind", "usage", "thickness"});
        STACKUPLAYER& record = stackup[i];
        const Field name = layer.Member("name");
        ReadName(name, record.name);
        if (const auto [at, added] = named.emplace(record.name, i); !added) {
            name.Fail("\"" + std::string(record.name) + "\" is already the name of stackup[" +
                      std::to_string(at->second) + "]");
        }
        record.kind = layer.Member("kind").Choice(
            {{"conductor", STACKUP_CONDUCTOR}, {"dielectric", STACKUP_DIELECTRIC}});
        const auto usage = layer.OptionalMember("usage");
        if (usage && record.kind == STACKUP_DIELECTRIC) {
            usage->Fail("only a conductor layer has a usage");
        }
        record.usage = usage ? usage->Choice({{"signal", 0}, {"plane", STACKUP_USAGE_PLANE}}) : 0;
        record.thickness = layer.Member("thickness").NonNegative();
    }
    return stackup;
}

// A layer is given by its index or by its name.
int32_t ReadLayer(const Field& field, const std::vector<STACKUPLAYER>& stackup) {
    if (field.value.is_string()) {
        const std::string name = field.String();
        for (std::size_t i = 0; i < stackup.size(); ++i) {
            if (name == stackup[i].name) {
                return static_cast<int32_t>(i);
            }
        }
        field.Fail("no stackup layer is named \"" + name + "\"");
    }
    if (!field.value.is_number_integer()) {
        field.Fail("must be a layer index or a layer name");
    }
    // A count beyond the signed range is as far outside the stackup as any.
    const long long index = field.value.is_number_unsigned() &&
                                    field.value.get<std::uint64_t>() > std::uint64_t{INT64_MAX}
                                ? INT64_MAX
                                : field.value.get<long long>();
    if (index < 0 || index >= static_cast<long long>(stackup.size())) {
        field.Fail("layer index " + std::to_string(index) + " is outside the stackup (0 to " +
                   std::to_string(stackup.size() - 1) + ")");
    }
    return static_cast<int32_t>(index);
}

PADDATA ReadPad(const Field& pad) {
    pad.ExpectObject({"type", "shape", "width", "height", "angle", "antipad_width",
                      "antipad_height", "antipad_angle", "clearance"});
    PADDATA record{};
    record.padType = pad.Member("type").Choice(
        {{"none", PAD_TYPE_NONE}, {"pad", PAD_TYPE_PAD}, {"anti-pad", PAD_TYPE_ANTIPAD}});
    const auto shape = pad.OptionalMember("shape");
    record.shape = shape ? shape->Choice({{"none", PAD_SHAPE_NONE},
                                          {"round", PAD_SHAPE_ROUND},
                                          {"rectangle", PAD_SHAPE_RECTANGLE},
                                          {"oval", PAD_SHAPE_OVAL},
                                          {"oblong", PAD_SHAPE_OBLONG},
                                          {"custom", PAD_SHAPE_CUSTOM}})
                         : PAD_SHAPE_NONE;
    record.pad_x = OptionalNonNegative(pad, "width");
    // An unset height means a pad as high as it is wide, as round pads are.
    record.pad_y = pad.OptionalMember("height") ? OptionalNonNegative(pad, "height") : record.pad_x;
    record.angle = OptionalNumber(pad, "angle");
    record.antipad_x = OptionalNonNegative(pad, "antipad_width");
    record.antipad_y = pad.OptionalMember("antipad_height")
                           ? OptionalNonNegative(pad, "antipad_height")
                           : record.antipad_x;
    record.antipadAngle = OptionalNumber(pad, "antipad_angle");
    record.clearance = OptionalNonNegative(pad, "clearance");
    return record;
}

void ReadPadstack(const Field& field, const std::vector<STACKUPLAYER>& stackup,
                  ViaDescriptionVia& via) {
    field.ExpectObject(
        {"name", "drill", "drill_extra", "plating", "first_layer", "last_layer", "pads"});
    PADSTACK& padstack = via.padstack;
    ReadName(field.Member("name"), padstack.name);
    padstack.drill = field.Member("drill").NonNegative();
    padstack.drillExtra = OptionalNumber(field, "drill_extra");
    padstack.plating = OptionalNonNegative(field, "plating");
    padstack.firstLayer = ReadLayer(field.Member("first_layer"), stackup);
    padstack.lastLayer = ReadLayer(field.Member("last_layer"), stackup);
    if (padstack.firstLayer > padstack.lastLayer) {
        field.Member("last_layer").Fail("lies above first_layer");
    }
    const Field pads = field.Member("pads");
    if (pads.ExpectArray().size() != stackup.size()) {
        pads.Fail("needs one pad per stackup layer (" + std::to_string(stackup.size()) + "), has " +
                  std::to_string(pads.value.size()));
    }
    for (std::size_t i = 0; i < pads.value.size(); ++i) {
        via.pads.push_back(ReadPad(pads.Element(i)));
    }
}

VIAELEMENT ReadElement(const Field& field, const std::vector<STACKUPLAYER>& stackup) {
    field.ExpectObject(
        {"kind", "from", "to", "value", "delay", "start_capacitance", "end_capacitance"});
    VIAELEMENT element{};
    element.kind = field.Member("kind").Choice(
        {{"capacitance", 0}, {"inductance", kElementInductance}, {"line", kElementLine}});
    element.startLayer = ReadLayer(field.Member("from"), stackup);
    element.endLayer = ReadLayer(field.Member("to"), stackup);
    if (element.startLayer > element.endLayer) {
        field.Member("to").Fail("lies above \"from\": elements run downward");
    }
    if (element.kind == 0) {
        if (field.OptionalMember("value")) {
            field.Member("value").Fail("a capacitance element carries only end capacitances");
        }
    } else {
        element.value = field.Member("value").NonNegative();
    }
    const auto delay = field.OptionalMember("delay");
    if (delay && element.kind != kElementLine) {
        delay->Fail("only a line has a delay");
    }
    element.delay = delay ? delay->NonNegative() : 0.0;
    if (const auto start = field.OptionalMember("start_capacitance")) {
        element.startEndType = kEndCapacitance;
        element.startCapacitance = start->NonNegative();
    }
    if (const auto end = field.OptionalMember("end_capacitance")) {
        element.endEndType = kEndCapacitance;
        element.endCapacitance = end->NonNegative();
    }
    return element;
}

ViaDescriptionVia ReadVia(const Field& field, const std::vector<STACKUPLAYER>& stackup) {
    field.ExpectObject({"padstack", "elements", "ports"});
    ViaDescriptionVia via;
    ReadPadstack(field.Member("padstack"), stackup, via);
    const PADSTACK& padstack = via.padstack;
    if (const auto elements = field.OptionalMember("elements")) {
        for (std::size_t i = 0; i < elements->ExpectArray().size(); ++i) {
            via.elements.push_back(ReadElement(elements->Element(i), stackup));
        }
    }
    if (const auto ports = field.OptionalMember("ports")) {
        std::set<int32_t> seen;
        for (std::size_t i = 0; i < ports->ExpectArray().size(); ++i) {
            const Field port = ports->Element(i);
            const int32_t layer = ReadLayer(port, stackup);
            if (stackup[layer].kind == STACKUP_DIELECTRIC) {
                port.Fail("layer \"" + std::string(stackup[layer].name) + "\" is a dielectric");
            }
            if (layer < padstack.firstLayer || layer > padstack.lastLayer) {
                port.Fail("layer \"" + std::string(stackup[layer].name) +
                          "\" lies outside the padstack's layer span");
            }
            if (!seen.insert(layer).second) {
                port.Fail("layer \"" + std::string(stackup[layer].name) + "\" is listed twice");
            }
            via.ports.push_back(layer);
        }
    }
    return via;
}

// Follows a parse event by event to tell in which field the parser stopped, so that a syntax
// error or a number out of range is reported at its field like every other problem.
class FieldLocator : public nlohmann::json_sax<json> {
public:
    bool null() override { return Value(); }
    bool boolean(bool) override { return Value(); }
    bool number_integer(number_integer_t) override { return Value(); }
    bool number_unsigned(number_unsigned_t) override { return Value(); }
    bool number_float(number_float_t, const string_t&) override { return Value(); }
    bool string(string_t&) override { return Value(); }
    bool binary(binary_t&) override { return Value(); }
    bool start_object(std::size_t) override { return Open(false); }
    bool key(string_t& name) override {
        m_open.back().key = name;
        return true;
    }
    bool end_object() override { return Close(); }
    bool start_array(std::size_t) override { return Open(true); }
    bool end_array() override { return Close(); }
    bool parse_error(std::size_t position, const std::string&, const json::exception&) override {
        m_position = position;
        m_field = CurrentField();
        return false;
    }

    std::size_t Position() const { return m_position; }
    const std::string& FieldName() const { return m_field; }

private:
    struct Container {
        bool array = false;
        std::size_t values = 0;  // of an array, started so far
        std::string key;         // of an object, the last one read
    };

    bool Value() {
        if (!m_open.empty() && m_open.back().array) {
            ++m_open.back().values;
        }
        return true;
    }
    bool Open(bool array) {
        Value();
        m_open.push_back({array, 0, {}});
        return true;
    }
    bool Close() {
        m_open.pop_back();
        return true;
    }
    // The innermost array is reading its next element; an outer one the element it started.
    std::string CurrentField() const {
        std::string field;
        for (std::size_t i = 0; i < m_open.size(); ++i) {
            const Container& open = m_open[i];
            if (open.array) {
                const bool innermost = i + 1 == m_open.size();
                field += '[';
                field += std::to_string(innermost ? open.values : open.values - 1);
                field += ']';
            } else if (!open.key.empty()) {
                if (!field.empty()) {
                    field += '.';
                }
                field += PrintableKey(open.key);
            }
        }
        return field;
    }

    std::vector<Container> m_open;
    std::size_t m_position = 0;
    std::string m_field;
};

// The parser's message without its internal tag ("[json.exception.parse_error.101] ") and
// without its own position, which the caller gives as line and column.
std::string PlainParserMessage(const json::exception& error) {
    std::string message = error.what();
    if (!message.empty() && message.front() == '[') {
        if (const std::size_t end = message.find("] "); end != std::string::npos) {
            message.erase(0, end + 2);
        }
    }
    if (message.rfind("parse error", 0) == 0) {
        if (const std::size_t colon = message.find(": "); colon != std::string::npos) {
            message.erase(0, colon + 2);
        }
    }
    return message;
}

[[noreturn]] void FailAtSyntax(const std::string& jsonText, const json::exception& error) {
    FieldLocator locator;
    json::sax_parse(jsonText, &locator);
    // The position counts the characters read, the one that stopped the parser included.
    const std::size_t position = std::min(locator.Position(), jsonText.size());
    std::size_t line = 1;
    std::size_t column = 0;
    for (std::size_t i = 0; i < position; ++i) {
        column = jsonText[i] == '\n' ? 0 : column + 1;
        line += jsonText[i] == '\n' ? 1 : 0;
    }
    column = std::max<std::size_t>(column, 1);
    const std::string where = locator.FieldName().empty() ? "" : locator.FieldName() + ": ";
    throw DescriptionError(where + "not valid JSON at line " + std::to_string(line) + ", column " +
                           std::to_string(column) + ": " + PlainParserMessage(error));
}

// The whole file. It is read with the standard library alone, as everything here, so that a
// host reads descriptions without the library's core.
std::string ReadDescriptionText(const std::filesystem::path& path) {
    // Far more than any board's description; a bigger file is no description.
    constexpr std::size_t kMaxDescriptionBytes = 64u << 20;
    const auto failure = [&path](int error) {
        return DescriptionError("cannot read \"" + path.string() + "\": " +
                                (error != 0 ? std::strerror(error) : "input/output error"));
    };
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw failure(errno);
    }
    std::string text;
    char buffer[65536];
    while (file) {
        file.read(buffer, sizeof buffer);
        text.append(buffer, static_cast<std::size_t>(file.gcount()));
        if (text.size() > kMaxDescriptionBytes) {
            throw failure(EFBIG);
        }
    }
    if (file.bad()) {
        throw failure(errno);
    }
    return text;
}

}  // namespace

ViaDescription ParseViaDescription(const std::string& jsonText) {
    json document;
    try {
        document = json::parse(jsonText);
    } catch (const json::exception& error) {
        FailAtSyntax(jsonText, error);
    }
    const Field root{document, ""};
    root.ExpectObject({"subcircuit", "pair", "stackup", "vias"});
    ViaDescription description;
    const Field subcircuit = root.Member("subcircuit");
    description.subcircuit = subcircuit.String();
    if (description.subcircuit.empty() ||
        description.subcircuit.find_first_of(" \t\r\n") != std::string::npos) {
        subcircuit.Fail("must be one word, as SPICE reads a subcircuit name");
    }
    RefuseControlCharacters(subcircuit, description.subcircuit);
    const auto pair = root.OptionalMember("pair");
    description.pair = pair && pair->Boolean();
    description.stackup = ReadStackup(root.Member("stackup"));
    const Field vias = root.Member("vias");
    const std::size_t expected = description.pair ? 2 : 1;
    if (vias.ExpectArray().size() != expected) {
        vias.Fail(description.pair ? "a pair needs exactly two vias"
                                   : "needs exactly one via (set \"pair\" for two)");
    }
    for (std::size_t i = 0; i < expected; ++i) {
        description.vias.push_back(ReadVia(vias.Element(i), description.stackup));
    }
    return description;
}

ViaDescription ReadViaDescription(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw DescriptionError("\"" + path.string() + "\" is a folder, not a via description");
    }
    const std::string text = ReadDescriptionText(path);
    try {
        return ParseViaDescription(text);
    } catch (const DescriptionError& error) {
        throw DescriptionError(path.string() + ": " + error.what());
    }
}

}  // namespace kv::via_json
