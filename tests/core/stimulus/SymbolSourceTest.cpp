#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
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

bool SameRandomState(const kv::Ran1State& a, const kv::Ran1State& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(Random, PositiveSeedRestartsAndBatchesFollowTheSameSequence) {
    int32_t word = -12345;
    std::vector<double> first;
    for (int i = 0; i < 100; ++i) {
        const double u = kv::Ran1(word);
        EXPECT_GT(u, 0.0);
        EXPECT_LE(u, 0.99999988);
        first.push_back(u);
    }
    const kv::Ran1State after = kv::SaveRan1State();

    // A negative word restarts: the same numbers again, this time in a batch.
    word = -12345;
    std::vector<int32_t> raw(100);
    kv::Ran1Raw(word, raw);
    for (std::size_t i = 0; i < raw.size(); ++i) {
        EXPECT_EQ(kv::RawToUniform(raw[i]), first[i]) << i;
    }
    EXPECT_TRUE(SameRandomState(after, kv::SaveRan1State()));

    // Zero restarts from 1; a positive word continues the shared table, so
    // its numbers depend on what others drew before.
    int32_t zero = 0;
    int32_t one = -1;
    const double fromZero = kv::Ran1(zero);
    EXPECT_EQ(kv::Ran1(one), fromZero);
    int32_t continuing = 777;
    const double a = kv::Ran1(continuing);
    int32_t restarted = -777;
    EXPECT_NE(kv::Ran1(restarted), a);
}

TEST(SymbolSource, RegisterAgreesWithTheBlockFillAndStepsPastFiles) {
    for (int degree : {3, 5, 7, 16}) {
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

TEST(SymbolSource, BlockReadsMatchSingleReadsAndLeaveTheSameState) {
    for (int protocol : {0, 1}) {
        for (std::size_t chunk : {1u, 7u, 10u, 13u, 4000u}) {
            SymbolSourceConfig config =
                protocol == 1 ? kv::Code8b10bConfig(424242) : SymbolSourceConfig{};
            config.seed = 424242;
            SymbolSource single(config);
            int status = 0;
            const auto expected = ReadStepwise(single, 20000, status);
            const kv::Ran1State stateAfterSingle = kv::SaveRan1State();

            SymbolSource blocks(config);
            std::vector<int8_t> all;
            std::vector<int8_t> buffer(chunk);
            while (all.size() < 20000) {
                const std::size_t want = std::min(chunk, 20000 - all.size());
                ASSERT_EQ(blocks.ReadSymbols(std::span(buffer.data(), want), status), want);
                all.insert(all.end(), buffer.begin(),
                           buffer.begin() + static_cast<std::ptrdiff_t>(want));
            }
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), all.begin()))
                << "protocol " << protocol << " chunk " << chunk;
            EXPECT_TRUE(SameRandomState(stateAfterSingle, kv::SaveRan1State()));
            EXPECT_EQ(single.RunningDisparity(), blocks.RunningDisparity());
        }
    }
}

// The texts of the checker's codes are seen where the checker meets a broken stream
// (CheckStream's tests); a code without a text is no error.
TEST(SymbolSource, UnknownProtocolAndCodesWithoutAText) {
    SymbolSourceConfig config;
    config.protocol = 5;
    SymbolSource source(config);
    int symbol = 0;
    EXPECT_EQ(source.NextSymbol(symbol), 0);
    EXPECT_EQ(source.Error(), "Unknown protocol type");
    EXPECT_EQ(source.SetError(9), 1);
    EXPECT_FALSE(source.Error());
    EXPECT_EQ(kv::Code8b10bConfig(0).seed, 91847437);
    EXPECT_EQ(kv::Code8b10bConfig(-3).seed, 91847437);
    EXPECT_EQ(kv::Code8b10bConfig(17).seed, 17);
}

}  // namespace
