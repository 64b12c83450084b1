// The via data object as the host fills it, and the padstack dump of its records.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "core/via/PadstackDump.h"
#include "core/via/ViaVizData.h"
#include "tests/support/TestSupport.h"

namespace {

namespace fs = std::filesystem;

TEST(ViaVizData, FreshObjectAnswersZerosAndOwnsWhatTheHostPutsIn) {
    kv::CViaVizData data;
    IViaVizData& host = data;
    EXPECT_EQ(host.GetFirstValue(), 0.0);
    EXPECT_EQ(host.GetSecondValue(), 0.0);
    EXPECT_EQ(host.GetThirdValue(), 0.0);
    EXPECT_FALSE(host.GetFlag());
    EXPECT_EQ(host.GetViaReference(), nullptr);
    EXPECT_EQ(host.GetNetReference(), nullptr);
    EXPECT_EQ(host.GetViaCount(), 0);
    EXPECT_EQ(host.GetStackup()->count, 0);
    EXPECT_EQ(host.GetPadstack()->padCount, 0);

    // The host places arrays of its own; the object frees them (the sanitizer build checks).
    host.GetStackup()->layers = new STACKUPLAYER[2]{};
    host.GetStackup()->count = 2;
    host.GetPadstack()->pads = new PADDATA[2]{};
    host.GetPadstack()->padCount = 2;
    data.SetFlags(false, true);
    data.SetValues(1.5, 2.5);
    EXPECT_TRUE(host.GetFlag());
    EXPECT_EQ(host.GetSecondValue(), 2.5);
}

TEST(ViaVizData, RecordNamesAreCutToTheirCapacityAndSaySo) {
    PADSTACK padstack{};
    EXPECT_TRUE(kv::SetRecordName(padstack.name, "VIA10"));
    EXPECT_STREQ(padstack.name, "VIA10");
    EXPECT_FALSE(kv::SetRecordName(padstack.name, std::string(VIA_NAME_CAPACITY + 1, 'x')));
    EXPECT_EQ(std::string(padstack.name), std::string(VIA_NAME_CAPACITY, 'x'));
}

struct DumpBoard {
    STACKUPLAYER layers[3] = {{"TOP", STACKUP_CONDUCTOR, 0, 3.5e-5},
                              {"DIEL1", STACKUP_DIELECTRIC, 0, 1e-4},
                              {"BOT", STACKUP_CONDUCTOR, 1, 3.5e-5}};
    PADDATA pads[3] = {{PAD_TYPE_PAD, PAD_SHAPE_UNSET, 5.08e-4, 6e-4, 0, 0, 0, 0, 0, 0, 1.2345e-4},
                       {},
                       {7, 9, 1e-3, 2e-3, 0, 0, 0, 0, 0, 0, 0}};
    STACKUPARRAY stackup{3, layers};
    PADSTACK padstack{"PS1", 2.54e-4, 0, 2.5e-5, 0, 2, 3, pads};
};

TEST(PadstackDump, ListsEveryLayerWithItsPadAndLeavesUnknownCodesEmpty) {
    DumpBoard board;
    std::ostringstream out;
    kv::WritePadstackDump(board.stackup, board.padstack, out);
    EXPECT_EQ(out.str(),
              "Padstack = PS1, num_pad = 3, layer_span = 0 -2\n"
              "drill = 0.0002540, plating = 0.0000250 \n"
              "^0   layer=TOP, padType=pad, padShape=none, pad_x=0.00051, pad_y=0.00060  , "
              "clearance=0.00012\n"
              "^1    layer=DIEL1, padType=dielectric\n"
              "^2   layer=BOT, padType=, padShape=, pad_x=0.00100, pad_y=0.00200  , "
              "clearance=0.00000\n");
}

TEST(PadstackDump, AppendsToTheDumpFileOfTheGivenFolder) {
    DumpBoard board;
    board.stackup.count = 0;
    const TestFolder temporary;
    const fs::path& folder = temporary.Path();
    ASSERT_TRUE(kv::AppendPadstackDump(board.stackup, board.padstack, folder));
    ASSERT_TRUE(kv::AppendPadstackDump(board.stackup, board.padstack, folder));
    const std::string header =
        "Padstack = PS1, num_pad = 3, layer_span = 0 -2\ndrill = 0.0002540, plating = 0.0000250 \n";
    EXPECT_EQ(ReadText(folder / "ViaVizData.dmp"), header + header);
    EXPECT_FALSE(kv::AppendPadstackDump(board.stackup, board.padstack, folder / "missing"));
    EXPECT_EQ(kv::DefaultPadstackDumpFolder(), fs::temp_directory_path());
}

}  // namespace
