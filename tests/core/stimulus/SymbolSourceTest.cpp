#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <span>
#include <vector>

#include "core/stimulus/Random.h"
#include "core/stimulus/RegisterFill.h"
#include "core/stimulus/SymbolSource.h"
#include "tests/support/TestSupport.h"

namespace {

using kv::SymbolSource;
using kv::SymbolSourceConfig;

std::vector<int> ReadStepwise(SymbolSource& source, std::size_t count, int& status) {
    std::vector<int> symbols;
    status = 1;
    while (symbols.size() < count) {
        int symbol = 0;
        status = source.NextSymbol(symbol);
        if (status < 1) {
            break;
        }
        symbols.push_back(symbol);
    }
    return symbols;
}

TEST(SymbolSource, RegisterAgreesWithTheBlockFillAndStepsPastFiles) {
    for (int degree : {3, 7, 16}) {
        SymbolSource source(kv::PseudoRandomConfig(degree));
        std::vector<uint8_t> expected(300);
        kv::FillRegisterOutput(degree, expected, false);
        int status = 0;
        const auto symbols = ReadStepwise(source, 300, status);
        ASSERT_EQ(symbols.size(), 300u);
        for (std::size_t i = 0; i < symbols.size(); ++i) {
            EXPECT_EQ(symbols[i], expected[i] ? 1 : -1) << degree << " at " << i;
        }
    }
    // A path that cannot be opened is the first thing checked.
    SymbolSourceConfig config = kv::PseudoRandomConfig(5);
    config.path = "/nonexistent/sequence.txt";
    SymbolSource broken(config);
    int symbol = 0;
    EXPECT_EQ(broken.NextSymbol(symbol), 0);
    EXPECT_EQ(broken.Error(), "Cannot read from given PRBS file");
}

TEST(SymbolSource, PatternPlaysItsRepetitionsThenEnds) {
    const uint8_t pattern[] = {1, 0, 0, 7};
    SymbolSourceConfig config;
    config.pattern = pattern;
    config.patternLength = 4;
    config.repetitions = 2;
    SymbolSource source(config);
    int status = 0;
    EXPECT_EQ(ReadStepwise(source, 100, status), (std::vector<int>{1, -1, -1, 1, 1, -1, -1, 1}));
    EXPECT_EQ(status, -1);

    SymbolSource blocks(config);
    std::vector<int8_t> out(100);
    EXPECT_EQ(blocks.ReadSymbols(out, status), 8u);
    EXPECT_EQ(status, -1);
    EXPECT_EQ(out[3], 1);
}

TEST(SymbolSource, FileSkipsSeparatorsRepeatsAndRejectsOtherCharacters) {
    TestFolder folder;
    const std::string path = folder.File("seq.txt");
    WriteText(path, "1 0,\t+1\n0");
    SymbolSourceConfig config;
    config.path = path;
    config.repetitions = 2;
    SymbolSource source(config);
    int status = 0;
    EXPECT_EQ(ReadStepwise(source, 100, status), (std::vector<int>{1, -1, 1, -1, 1, -1, 1, -1}));
    EXPECT_EQ(status, -1);
    EXPECT_FALSE(source.Error());

    WriteText(path, "110;1");
    SymbolSource bad(config);
    EXPECT_EQ(ReadStepwise(bad, 100, status).size(), 3u);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bad.Error(), "Cannot read from given PRBS file");

    // The file goes away after the source opened it: the open pass still
    // reads, the second pass cannot reopen it.
    WriteText(path, "10");
    SymbolSource vanishing(config);
    std::filesystem::remove(path);
    EXPECT_EQ(ReadStepwise(vanishing, 100, status).size(), 2u);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(vanishing.Error(), "Cannot read from given PRBS file");

    // An empty file with endless repetitions ends instead of spinning.
    WriteText(path, "");
    config.repetitions = 0;
    SymbolSource empty(config);
    EXPECT_EQ(ReadStepwise(empty, 10, status).size(), 0u);
    EXPECT_EQ(status, -1);
}

// Random bits and code groups, read in pieces of growing sizes, against
// single reads from the same seeds, the generator's edge seeds among them.
TEST(SymbolSource, BlockReadsMatchSingleReadsAndLeaveTheSameState) {
    constexpr std::size_t kSymbols = 1'000'000;
    constexpr int32_t kModulus = 2147483647;
    for (const int32_t protocol : {0, 1}) {
        for (const int32_t seed : {1, 12345, kv::kFixed8b10bSeed, kModulus - 1, kModulus}) {
            SymbolSourceConfig config;
            config.seed = seed;
            config.protocol = protocol;
            SymbolSource single(config);
            std::vector<int8_t> expected(kSymbols);
            for (int8_t& s : expected) {
                int symbol = 0;
                ASSERT_EQ(single.NextSymbol(symbol), 1);
                s = static_cast<int8_t>(symbol);
            }
            const kv::Ran1State afterSingle = kv::SaveRan1State();
            SymbolSource blocks(config);
            std::vector<int8_t> got(kSymbols);
            int status = 0;
            std::size_t done = 0;
            for (std::size_t piece = 1; done < kSymbols; piece = piece * 2 + 3) {
                const std::size_t count = std::min(piece, kSymbols - done);
                ASSERT_EQ(blocks.ReadSymbols(std::span(got.data() + done, count), status), count);
                done += count;
            }
            EXPECT_TRUE(got == expected) << "protocol " << protocol << " seed " << seed;
            const kv::Ran1State afterBlocks = kv::SaveRan1State();
            EXPECT_EQ(std::memcmp(&afterSingle, &afterBlocks, sizeof afterBlocks), 0);
            EXPECT_EQ(blocks.RunningDisparity(), single.RunningDisparity());
        }
    }
}

TEST(SymbolSource, UnknownProtocolAndTheFixedSeed) {
    SymbolSourceConfig config;
    config.protocol = 5;
    SymbolSource source(config);
    int symbol = 0;
    EXPECT_EQ(source.NextSymbol(symbol), 0);
    EXPECT_EQ(source.Error(), "Unknown protocol type");
    EXPECT_EQ(kv::Code8b10bConfig(0).seed, 91847437);
    EXPECT_EQ(kv::Code8b10bConfig(17).seed, 17);
}

}  // namespace
