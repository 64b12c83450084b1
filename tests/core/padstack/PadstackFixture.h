#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/padstack/PadstackEditModel.h"
#include "core/padstack/PadstackMessages.h"
#include "core/padstack/PadstackUnits.h"
#include "core/via/ViaVizData.h"
#include "tests/support/RecordingMessagePort.h"

namespace kv::test {

inline double Mils(double mils) {
    return mils / kMilsPerMetre;
}

inline STACKUPLAYER Layer(const char* name, int32_t kind) {
    STACKUPLAYER layer{};
    SetRecordName(layer.name, name);
    layer.kind = kind;
    layer.thickness = Mils(1.4);
    return layer;
}

inline PADDATA Pad(TableShape pad, double width, double height, TableShape antiPad,
                   double antiWidth, double antiHeight, double angle = 0.0,
                   double clearance = 0.0) {
    PadstackRow row;
    row.padShape = pad;
    row.antiPadShape = antiPad;
    row.padWidth = Mils(width);
    row.padHeight = Mils(height);
    row.padAngle = angle;
    row.antiPadWidth = Mils(antiWidth);
    row.antiPadHeight = Mils(antiHeight);
    row.antiPadAngle = angle;
    row.clearance = Mils(clearance);
    return PadRecordFromRow(row);
}

// A four-conductor board and a via through all of it: drill 10 mil, plating 1 mil (actual
// drill 12 mil), pads at most 50 mil. Grid rows: 1 "<default>", 2 TOP (round in round),
// 3 GND (anti-pad only), 4 SIG (rectangle with a clearance), 5 BOTTOM (oblong in oval).
struct PadstackBoard {
    PadstackBoard() {
        data.SetStackupLayers(std::vector<STACKUPLAYER>{
            Layer("TOP", STACKUP_CONDUCTOR), Layer("D1", STACKUP_DIELECTRIC),
            Layer("GND", STACKUP_CONDUCTOR), Layer("D2", STACKUP_DIELECTRIC),
            Layer("SIG", STACKUP_CONDUCTOR), Layer("D3", STACKUP_DIELECTRIC),
            Layer("BOTTOM", STACKUP_CONDUCTOR)});
        std::vector<PADDATA> pads(7, PADDATA{});
        pads[0] = Pad(TableShape::Round, 20, 20, TableShape::Round, 30, 30);
        pads[2] = Pad(TableShape::None, 0, 0, TableShape::Round, 30, 30);
        pads[4] = Pad(TableShape::Rectangular, 20, 16, TableShape::Clearance, 0, 0, 0, 5);
        pads[6] = Pad(TableShape::Oblong, 20, 16, TableShape::Oval, 30, 26);
        data.SetPads(pads);
        PADSTACK& padstack = *data.GetPadstack();
        SetRecordName(padstack.name, "VIA10");
        padstack.drill = Mils(10);
        padstack.plating = Mils(1);
        padstack.firstLayer = 0;
        padstack.lastLayer = 6;
        defaultPad = Pad(TableShape::Round, 20, 20, TableShape::Round, 30, 30);
    }

    // Loads the board into `model` with the maximum pad size set.
    void LoadInto(PadstackEditModel& model) {
        model.SetMaxPadSize(Mils(50));
        ASSERT_TRUE(model.Load(*data.GetStackup(), *data.GetPadstack(), defaultPad));
    }

    CViaVizData data;
    PADDATA defaultPad{};
};

class PadstackTest : public ::testing::Test {
protected:
    void SetUp() override { board.LoadInto(model); }

    // The one message shown since the last call, as "caption|text"; "" when none.
    std::string TakeMessage() {
        std::string shown;
        for (const MessageRequest& request : port.Requests()) {
            shown += (shown.empty() ? "" : " + ") + request.caption + '|' + request.text;
        }
        port.Clear();
        return shown;
    }

    RecordingMessagePort port;
    ScopedMessagePort installed{port};
    PadstackBoard board;
    PadstackEditModel model;
};

inline std::string Titled(std::string_view text) {
    return std::string(kPadstackEditorTitle) + '|' + std::string(text);
}
inline std::string Plain(std::string_view text) {
    return std::string(kMessageCaption) + '|' + std::string(text);
}

}  // namespace kv::test
