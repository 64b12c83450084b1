#include "ViaExample.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <algorithm>
#include <cstring>
#include <vector>

#include "kvcomctl/IViaVizCtrl.h"

namespace {

// A layer given by index or by name; -1 when it names none.
int32_t LayerOf(const QJsonValue& value, const QStringList& names) {
    if (value.isDouble()) {
        return value.toInt(-1);
    }
    return static_cast<int32_t>(names.indexOf(value.toString()));
}

void CopyName(char (&name)[VIA_NAME_CAPACITY + 1], const QString& text) {
    const QByteArray bytes = text.toUtf8();
    const auto kept = std::min<qsizetype>(bytes.size(), VIA_NAME_CAPACITY);
    std::memcpy(name, bytes.constData(), static_cast<std::size_t>(kept));
    name[kept] = '\0';
}

int32_t Code(const QJsonValue& value, const QStringList& words, int32_t fallback) {
    const qsizetype at = value.isString() ? words.indexOf(value.toString()) : -1;
    return at < 0 ? fallback : static_cast<int32_t>(at);
}

void FillStackup(IViaVizData& data, const QJsonArray& stackup) {
    // The data object frees the arrays it holds with delete[].
    auto* layers = new STACKUPLAYER[static_cast<std::size_t>(stackup.size())]{};
    for (qsizetype i = 0; i < stackup.size(); ++i) {
        const QJsonObject layer = stackup[i].toObject();
        CopyName(layers[i].name, layer[QStringLiteral("name")].toString());
        layers[i].kind = layer[QStringLiteral("kind")].toString() == QStringLiteral("dielectric")
                             ? STACKUP_DIELECTRIC
                             : STACKUP_CONDUCTOR;
        layers[i].usage =
            layer[QStringLiteral("usage")].toString() == QStringLiteral("plane") ? 1 : 0;
        layers[i].thickness = layer[QStringLiteral("thickness")].toDouble();
    }
    STACKUPARRAY* target = data.GetStackup();
    delete[] target->layers;
    target->layers = layers;
    target->count = static_cast<int32_t>(stackup.size());
}

PADDATA PadOf(const QJsonObject& pad) {
    static const QStringList kTypes = {QStringLiteral("none"), QStringLiteral("pad"),
                                       QStringLiteral("anti-pad")};
    static const QStringList kShapes = {QStringLiteral("none"),  QStringLiteral("unset"),
                                        QStringLiteral("round"), QStringLiteral("rectangle"),
                                        QStringLiteral("oval"),  QStringLiteral("oblong"),
                                        QStringLiteral("custom")};
    PADDATA record{};
    record.padType = Code(pad[QStringLiteral("type")], kTypes, PAD_TYPE_NONE);
    record.shape = Code(pad[QStringLiteral("shape")], kShapes, PAD_SHAPE_NONE);
    record.pad_x = pad[QStringLiteral("width")].toDouble();
    record.pad_y = pad[QStringLiteral("height")].toDouble(record.pad_x);
    record.angle = pad[QStringLiteral("angle")].toDouble();
    record.antipad_x = pad[QStringLiteral("antipad_width")].toDouble();
    record.antipad_y = pad[QStringLiteral("antipad_height")].toDouble(record.antipad_x);
    record.antipadAngle = pad[QStringLiteral("antipad_angle")].toDouble();
    record.clearance = pad[QStringLiteral("clearance")].toDouble();
    return record;
}

void FillPadstack(IViaVizData& data, const QJsonObject& padstack, const QStringList& names) {
    PADSTACK* target = data.GetPadstack();
    CopyName(target->name, padstack[QStringLiteral("name")].toString());
    target->drill = padstack[QStringLiteral("drill")].toDouble();
    target->drillExtra = padstack[QStringLiteral("drill_extra")].toDouble();
    target->plating = padstack[QStringLiteral("plating")].toDouble();
    target->firstLayer = LayerOf(padstack[QStringLiteral("first_layer")], names);
    target->lastLayer = LayerOf(padstack[QStringLiteral("last_layer")], names);
    const QJsonArray pads = padstack[QStringLiteral("pads")].toArray();
    auto* records = new PADDATA[static_cast<std::size_t>(pads.size())]{};
    for (qsizetype i = 0; i < pads.size(); ++i) {
        records[i] = PadOf(pads[i].toObject());
    }
    delete[] target->pads;
    target->pads = records;
    target->padCount = static_cast<int32_t>(pads.size());
}

std::vector<VIAELEMENT> ElementsOf(const QJsonArray& elements, const QStringList& names) {
    std::vector<VIAELEMENT> records;
    for (const QJsonValue& value : elements) {
        const QJsonObject element = value.toObject();
        const QString kind = element[QStringLiteral("kind")].toString();
        VIAELEMENT record{};
        record.kind = kind == QStringLiteral("inductance") ? 1
                      : kind == QStringLiteral("line")     ? 4
                                                           : 0;
        record.startLayer = LayerOf(element[QStringLiteral("from")], names);
        record.endLayer = LayerOf(element[QStringLiteral("to")], names);
        record.value = element[QStringLiteral("value")].toDouble();
        record.delay = element[QStringLiteral("delay")].toDouble();
        if (element.contains(QStringLiteral("start_capacitance"))) {
            record.startEndType = 2;
            record.startCapacitance = element[QStringLiteral("start_capacitance")].toDouble();
        }
        if (element.contains(QStringLiteral("end_capacitance"))) {
            record.endEndType = 2;
            record.endCapacitance = element[QStringLiteral("end_capacitance")].toDouble();
        }
        records.push_back(record);
    }
    return records;
}

}  // namespace

bool FillViaControl(IViaVizCtrl& control, const QString& jsonPath, QString* error) {
    QFile file(jsonPath);
    QJsonParseError parse{};
    const QJsonDocument document = file.open(QIODevice::ReadOnly)
                                       ? QJsonDocument::fromJson(file.readAll(), &parse)
                                       : QJsonDocument();
    const QJsonObject root = document.object();
    const QJsonArray stackup = root[QStringLiteral("stackup")].toArray();
    const QJsonArray vias = root[QStringLiteral("vias")].toArray();
    const bool pair = root[QStringLiteral("pair")].toBool();
    if (stackup.isEmpty() || vias.size() != (pair ? 2 : 1)) {
        if (error != nullptr) {
            *error = QStringLiteral("%1: not a via example (%2)")
                         .arg(jsonPath, file.isOpen() ? parse.errorString() : file.errorString());
        }
        return false;
    }
    QStringList names;
    for (const QJsonValue& layer : stackup) {
        names << layer.toObject()[QStringLiteral("name")].toString();
    }
    control.SetPair(pair);
    for (int32_t v = 0; v < static_cast<int32_t>(vias.size()); ++v) {
        const QJsonObject via = vias[v].toObject();
        IViaVizData* data = control.GetViaData(v);
        FillStackup(*data, stackup);
        FillPadstack(*data, via[QStringLiteral("padstack")].toObject(), names);
        const std::vector<VIAELEMENT> elements =
            ElementsOf(via[QStringLiteral("elements")].toArray(), names);
        control.SetElements(v, elements.data(), static_cast<int32_t>(elements.size()));
        std::vector<int32_t> ports;
        for (const QJsonValue& port : via[QStringLiteral("ports")].toArray()) {
            ports.push_back(LayerOf(port, names));
        }
        control.SetPorts(v, ports.data(), static_cast<int32_t>(ports.size()));
    }
    const QByteArray subcircuit = root[QStringLiteral("subcircuit")].toString().toUtf8();
    control.SetNames(subcircuit.constData(), nullptr, nullptr);
    control.Refresh();
    return true;
}
