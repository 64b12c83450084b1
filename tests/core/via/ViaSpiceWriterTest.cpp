// The subcircuit text of small hand-made vias: one behaviour of the node walk per case.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "core/via/ViaSpiceWriter.h"

namespace {

using kv::CViaVizElement;
using kv::SpiceExportInput;

// A stackup of `count` layers alternating conductor and dielectric, each 1.4 mils thick, and
// a padstack spanning all of them with no pads.
struct Board {
    explicit Board(int count) : layers(count), pads(count) {
        for (int i = 0; i < count; ++i) {
            layers[i] = STACKUPLAYER{};
            std::snprintf(layers[i].name, sizeof layers[i].name, "LAYER%d", i + 1);
            layers[i].kind = i % 2 == 0 ? STACKUP_CONDUCTOR : STACKUP_DIELECTRIC;
            layers[i].thickness = 3.556e-5;
        }
        stackup = {count, layers.data()};
        padstack = PADSTACK{};
        std::snprintf(padstack.name, sizeof padstack.name, "PS");
        padstack.drill = 2.54e-4;
        padstack.lastLayer = count - 1;
        padstack.padCount = count;
        padstack.pads = pads.data();
    }

    SpiceExportInput Input(std::vector<CViaVizElement> elements, std::vector<int32_t> ports) {
        SpiceExportInput input;
        input.stackup = &stackup;
        input.subcircuitName = "SUB";
        input.vias.push_back({&padstack, std::move(elements), {}});
        for (int32_t layer : ports) {
            input.vias.back().ports.push_back({layer});
        }
        return input;
    }

    std::vector<STACKUPLAYER> layers;
    std::vector<PADDATA> pads;
    STACKUPARRAY stackup{};
    PADSTACK padstack{};
};

CViaVizElement Line(int from, int to, double z0, double delay) {
    return {kv::kViaElementLine, 0, 0, from, to, z0, 0.0, 0.0, delay};
}
CViaVizElement Inductance(int from, int to, double henries) {
    return {kv::kViaElementInductance, 0, 0, from, to, henries, 0.0, 0.0, 0.0};
}
CViaVizElement Capacitance(int layer, double farads) {
    return {0, kv::kViaEndCapacitance, 0, layer, layer, 0.0, farads, 0.0, 0.0};
}

// The element block: everything after the blank line that ends the port list.
std::string Elements(const std::string& text) {
    const std::size_t ports = text.find("* layers to connect (ports)\n");
    const std::size_t start = text.find("\n\n", ports) + 2;
    return text.substr(start);
}

TEST(ViaSpiceWriter, ViaWithoutElementsOrPortsWritesTheFrameOnly) {
    Board board(2);
    SpiceExportInput input = board.Input({}, {});
    input.generated.tm_year = 124;
    input.generated.tm_mon = 0;
    input.generated.tm_mday = 2;
    input.generated.tm_hour = 3;
    input.generated.tm_min = 4;
    input.generated.tm_sec = 5;
    EXPECT_EQ(kv::SpiceModelText(input),
              "\n"
              "*****************************************\n"
              "* via model by Velmorine Via Visualizer *\n"
              "*    generated 2024-01-02 03:04:05     *\n"
              "******************************************\n"
              "\n"
              "* STACKUP\n"
              "* NN   type   Thickness  Pad      Size   Name  \n"
              "*  1  METAL   1.4mils   NONE            LAYER1  \n"
              "*  2   DIEL   1.4mils                   LAYER2  \n"
              "\n"
              ".SUBCKT SUB\n"
              "*\n"
              "* Padstack: \"PS\"   Drill=10.0mils\n"
              "* layers to connect (ports)\n"
              "\n"
              "\n"
              ".ENDS\n");
}

TEST(ViaSpiceWriter, EqualImpedancesMergeIntoOneLineAndAnotherImpedanceStartsANewOne) {
    Board board(7);
    const std::string text = kv::SpiceModelText(
        board.Input({Line(0, 2, 50, 1e-12), Line(2, 4, 50, 2e-12), Line(4, 6, 40, 3e-12)}, {}));
    EXPECT_EQ(Elements(text),
              "T008 L1_1        0 L5_1        0    Z0=50 TD=3e-12\n"
              "T012 L5_1        0 L7_1        0    Z0=40 TD=3e-12\n"
              "\n"
              ".ENDS\n");
}

TEST(ViaSpiceWriter, PortThatNothingReachesGetsAZeroCapacitorAndALaterPortAZeroVoltSource) {
    Board board(5);
    // Port on layer 1 ahead of every element; port on layer 5 reached with nothing pending.
    const std::string text = kv::SpiceModelText(board.Input({Capacitance(2, 1e-13)}, {0, 4}));
    EXPECT_EQ(Elements(text),
              "C000 L1_1                 0      0\n"
              "C004 L3_1                   0        1e-13\n"
              "V008 L3_1          L5_1       \n"
              "\n"
              ".ENDS\n");
}

TEST(ViaSpiceWriter, PendingInductanceIsCutAtTheLastLayerOfTheSpan) {
    Board board(5);
    board.padstack.lastLayer = 2;
    // 0.1 nH from layer 1 down to layer 3, then 0.2 nH inside layer 3 and 0.3 nH below it.
    const std::string text = kv::SpiceModelText(board.Input(
        {Inductance(0, 2, 1e-10), Inductance(2, 2, 2e-10), Inductance(2, 4, 3e-10)}, {}));
    EXPECT_EQ(Elements(text),
              "L004 L1_1            L3_1-up            1e-10\n"
              "L005 L3_1-up         L3_1-down          2e-10\n"
              "\n"
              ".ENDS\n");
}

TEST(ViaSpiceWriter, StackupLengthsLoseDecimalsStartingWithZeroButTheDrillKeepsThem) {
    Board board(3);
    board.layers[0].thickness = 0.02667;  // 1.05 in
    board.layers[1].thickness = 0.0381;   // 1.50 in
    board.pads[0] = {PAD_TYPE_PAD, PAD_SHAPE_RECTANGLE, 5.08e-4, 5.08e-4, 0, 0, 0, 0, 0, 0, 0};
    board.pads[2] = {PAD_TYPE_PAD, PAD_SHAPE_UNSET, 6.35e-4, 6.35e-4, 0, 0, 0, 0, 0, 0, 0};
    const std::string text = kv::SpiceModelText(board.Input({}, {}));
    EXPECT_NE(text.find("*  1  METAL       1in   RECT    20mils  LAYER1  \n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("*  2   DIEL    1.50in                   LAYER2  \n"), std::string::npos);
    EXPECT_NE(text.find("*  3  METAL   1.4mils   UNDF    25mils  LAYER3  \n"), std::string::npos);
    EXPECT_NE(text.find("Drill=10.0mils\n"), std::string::npos);

    SpiceExportInput metric = board.Input({}, {});
    metric.metric = true;
    EXPECT_NE(kv::SpiceModelText(metric).find("*  1  METAL   2.667cm   RECT   0.508mm"),
              std::string::npos);
}

TEST(ViaSpiceWriter, PairLabelsTheViasAndSuffixesTheirElementsAndNodes) {
    Board board(3);
    SpiceExportInput input = board.Input({Capacitance(0, 1e-13)}, {0});
    input.vias.push_back(input.vias.front());
    input.pair = true;
    const std::string text = kv::SpiceModelText(input);
    EXPECT_NE(text.find("*\n*\n*  Right Via\n* Padstack: \"PS\""), std::string::npos) << text;
    EXPECT_NE(text.find("+ L1_1       \n*  Left Via\n* Padstack:"), std::string::npos);
    EXPECT_NE(text.find("+ L1_2       \n\n*  Right Via\nC000_1 L1_1 "), std::string::npos);
    EXPECT_NE(text.find("\n\n*  Left Via\nC000_2 L1_2 "), std::string::npos);
}

// A host's pad count that points nowhere reads as no pads; a layer outside the stackup is
// refused before anything is written.
TEST(ViaSpiceWriter, HostRecordsThatDisagreeAreReadSafely) {
    Board board(3);
    const std::string withEmptyPads = kv::SpiceModelText(board.Input({}, {}));
    board.padstack.pads = nullptr;
    EXPECT_EQ(kv::SpiceModelText(board.Input({}, {})), withEmptyPads);
    EXPECT_THROW(kv::SpiceModelText(board.Input({Line(0, 3, 50, 1e-12)}, {})), std::out_of_range);
    EXPECT_THROW(kv::SpiceModelText(board.Input({}, {-1})), std::out_of_range);
}

}  // namespace
