#include <gtest/gtest.h>

#include <unistd.h>
#include <cstdlib>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "core/ports/MessagePort.h"
#include "core/settings/ProfileStore.h"
#include "core/shared/AppProfile.h"
#include "core/stimulus/EyeMask.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/JitterSeed.h"
#include "core/stimulus/SequenceType.h"
#include "core/stimulus/StimulusData.h"
#include "core/stimulus/StimulusPersistence.h"
#include "core/stimulus/Uuencode.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/TestSupport.h"

namespace {

using kv::CStimulusData;

// Every test runs with its own configuration folder and a recording port.
class Persistence : public ::testing::Test {
protected:
    void SetUp() override { kv::ResetJitterSeedState(); }

    std::string Ini(const std::string& body) {
        const std::string path = m_folder.File("stim.ini");
        WriteText(path, body);
        return path;
    }

    TestFolder m_folder;
    ScopedEnvironment m_config{"XDG_CONFIG_HOME", m_folder.File("config").c_str()};
    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_port{m_messages};
};

kv::BitVector SomeBits(std::size_t count, unsigned salt) {
    kv::BitVector bits(count);
    for (std::size_t i = 0; i < count; ++i) {
        bits[i] = ((i * 2654435761u + salt) >> 7) & 1u;
    }
    return bits;
}

TEST_F(Persistence, FileRoundTripKeepsEveryKeyInOrder) {
    CStimulusData data;
    data.SetCycleCount(12);
    data.SetSkipBits(3);
    data.SetPeriod(0.1 + 0.2);  // 0.30000000000000004 has more digits than are kept
    data.SetDutyCycle(47.5);
    data.SetAddJitter(2, true);
    data.SetJitterAsTime(1, true);
    data.SetJitterRepeatable(false);
    data.SetSineMag(1e-12);
    data.SetSeqType(kv::seq::kCustom);
    data.SetBitVector(SomeBits(100, 1));
    kv::SetMaskName(*data.GetMask(), "PCIe");
    data.GetMask()->OffsetVolt = -2.25;

    const std::string path = m_folder.File("round.ini");
    ASSERT_TRUE(data.Save(path.c_str(), true));
    const std::string text = ReadText(path);
    EXPECT_NE(text.find("[EYEDIAGRAM]\nCYCLECOUNT=12\nSKIPBITS=3\nEYECOUNT=1\nPERIOD=0.3\n"),
              std::string::npos);
    EXPECT_NE(text.find("SINEMAG=1e-12\n"), std::string::npos);
    EXPECT_LT(text.find("OFFSETVOLT=-2.25"), text.find("BITSEQUENCE="));

    CStimulusData loaded;
    loaded.m_description = "mine";
    EXPECT_TRUE(loaded.Load(path.c_str(), true));
    EXPECT_TRUE(m_messages.Requests().empty());
    EXPECT_EQ(loaded.GetPeriod(), 0.3);  // fifteen digits: the last bits are gone
    EXPECT_EQ(loaded.m_description, "mine");
    EXPECT_EQ(kv::PersistedEntries(loaded), kv::PersistedEntries(data));
}

TEST_F(Persistence, ChoosesTheStoreByLocationAndLeavesTheModuleProfile) {
    kv::ModuleProfile().registryKey = "Velmorine";
    CStimulusData data;
    data.SetCycleCount(9);
    ASSERT_TRUE(data.Save(nullptr, false));
    data.SetCycleCount(11);
    ASSERT_TRUE(data.Save("OtherHost", false));
    EXPECT_EQ(kv::ModuleProfile().registryKey, "Velmorine");
    EXPECT_EQ(kv::ModuleProfile().profileName, "KVComCtl");
    EXPECT_TRUE(std::filesystem::exists(m_folder.File("config/Velmorine/KVComCtl.ini")));
    EXPECT_TRUE(std::filesystem::exists(m_folder.File("config/OtherHost/KVComCtl.ini")));

    CStimulusData fromModule;
    fromModule.Load(nullptr, false);
    EXPECT_EQ(fromModule.GetCycleCount(), 9);
    CStimulusData fromKey;
    fromKey.Load("OtherHost", false);
    EXPECT_EQ(fromKey.GetCycleCount(), 11);
    EXPECT_EQ(kv::ModuleProfile().registryKey, "Velmorine");
    kv::ModuleProfile().registryKey.clear();
}

TEST_F(Persistence, FileRulesAgainstSettingsStoreRules) {
    // Lower-case key, last duplicate wins, value blanks trimmed, ADDSINE=2
    // leaves the default in a file.
    const std::string path = Ini(
        "[eyediagram]\ncyclecount=8\nPERIOD = 1.5e0 \nPERIOD=  2.5xyz\nADDSINE=2\nADDUNIFORM=1\n"
        "MASKNAME=Custom\n");
    CStimulusData fromFile;
    fromFile.Load(path.c_str(), true);
    EXPECT_EQ(fromFile.GetCycleCount(), 8);
    EXPECT_EQ(fromFile.GetPeriod(), 2.5);
    EXPECT_FALSE(fromFile.GetAddJitter(2));
    EXPECT_TRUE(fromFile.GetAddJitter(1));
    EXPECT_EQ(kv::MaskName(fromFile.Mask()), "Custom");

    // The same values in the settings store: 2 reads true, a real that is
    // no number reads 0.
    const std::string keyed = m_folder.File("config/Keyed/KVComCtl.ini");
    std::filesystem::create_directories(m_folder.File("config/Keyed"));
    WriteText(keyed, "[EYEDIAGRAM]\nADDSINE=2\nPERIOD=abc\nDUTYCYCLE=40\n");
    CStimulusData fromStore;
    fromStore.Load("Keyed", false);
    EXPECT_TRUE(fromStore.GetAddJitter(2));
    // PERIOD 0 is still valid: only the duty cycle and counts are checked.
    EXPECT_EQ(fromStore.GetPeriod(), 0.0);
    EXPECT_EQ(fromStore.GetDutyCycle(), 40.0);

    // Reals do not depend on the process locale.
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr) {
        CStimulusData german;
        german.Load(path.c_str(), true);
        EXPECT_EQ(german.GetPeriod(), 2.5);
        EXPECT_EQ(kv::PersistedEntries(german)[3].second, "2.5");
        std::setlocale(LC_NUMERIC, "C");
    }
}

TEST_F(Persistence, InvalidDataRevertsButTheMaskIsKept) {
    const std::string path = Ini("[EYEDIAGRAM]\nCYCLECOUNT=0\nPERIOD=7\nPTOPMAX=9.5\n");
    CStimulusData data;
    data.SetPeriod(1.0);
    data.Load(path.c_str(), true);
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text,
              "Invalid eye diagram data.\nReverting to default values.");
    EXPECT_EQ(m_messages.Requests()[0].icon, kv::MessageIcon::Information);
    EXPECT_EQ(data.GetCycleCount(), 4);
    EXPECT_EQ(data.GetPeriod(), 3.3);
    EXPECT_EQ(data.Mask().PTopMax, 9.5);

    // Toggling gets its two bits, whatever the object had.
    CStimulusData toggling;
    toggling.Load(Ini("[EYEDIAGRAM]\nSEQTYPE=2\nINITSTATE=1\n").c_str(), true);
    EXPECT_EQ(toggling.Bits(), (kv::BitVector{0, 1}));
}

// Sections that load, or revert with the message, and the sequence kind and
// bit count the object then holds.
TEST_F(Persistence, StoredLengthsAndSequencesLoadOrRevert) {
    struct Case {
        const char* section;
        bool reverts;
        int seqType;
        int bitCount;
        int cycleCount = 4;
    };
    const Case cases[] = {
        // PRBS of degree 7 takes 127 bits only; 8B/10B ten bits a cycle.
        {"SEQTYPE=0\nPOLYDEGREE=7\nSEQUENCELENGTH=127\n", false, 0, 127},
        {"SEQTYPE=0\nPOLYDEGREE=7\nSEQUENCELENGTH=100\n", true, 7, 31},
        {"SEQTYPE=1\nCYCLECOUNT=6\n", false, 1, 60, 6},
        // Refused without generating first.
        {"SEQTYPE=1\nCYCLECOUNT=2000000000\n", true, 7, 31},
        // A sequence text shorter than its length, and uuencoded text with
        // characters outside the encoding or short lines.
        {"SEQTYPE=4\nSEQUENCELENGTH=10\nBITSEQUENCE=0101\n", true, 7, 31},
        {"SEQTYPE=4\nSEQUENCELENGTH=3000\nBITSEQUENCE=Mabc\n", true, 7, 31},
        {"SEQTYPE=4\nSEQUENCELENGTH=3000\nBITSEQUENCE=M!!!\n", true, 7, 31},
        // A length out of range keeps the bits the object had.
        {"SEQTYPE=4\nSEQUENCELENGTH=40000\nBITSEQUENCE=1\n", false, 4, 31},
        // Bits stored beside kind 6 are taken.
        {"SEQTYPE=6\nSEQUENCELENGTH=3\nBITSEQUENCE=101\n", false, 6, 3},
        // A truncated file loads what it can.
        {"CYCLECOUNT=7\nPERI", false, 7, 31, 7},
    };
    for (const Case& c : cases) {
        m_messages.Clear();
        CStimulusData data;
        data.Load(Ini(std::string("[EYEDIAGRAM]\n") + c.section).c_str(), true);
        EXPECT_EQ(m_messages.Requests().size(), c.reverts ? 1u : 0u) << c.section;
        EXPECT_EQ(data.GetSeqType(), c.seqType) << c.section;
        EXPECT_EQ(data.GetBitCount(), c.bitCount) << c.section;
        EXPECT_EQ(data.GetCycleCount(), c.cycleCount) << c.section;
    }
}

TEST_F(Persistence, EveryKindSurvivesASaveAndALoad) {
    struct Case {
        int seqType;
        int initState;
        kv::BitVector expected;  // empty: the bits saved
    };
    const Case cases[] = {
        {kv::seq::kUsbCompliance, 0, kv::UsbCompliancePattern()},
        {kv::seq::kEdge, 0, {1}},      // "Rising"
        {kv::seq::kEdge, 1, {0}},      // "Falling"
        {kv::seq::kPulse, 1, {0, 1}},  // "High"
        {kv::seq::kPulse, 0, {1, 0}},  // "Low"
        {5, 0, {}},
        {6, 1, {}},
        {kv::seq::kCustom, 0, {}},
    };
    for (const Case& c : cases) {
        CStimulusData data;
        data.SetSeqType(c.seqType);
        data.SetInitState(c.initState);
        data.SetBitVector(SomeBits(3000, static_cast<unsigned>(c.seqType)));
        kv::RegenerateBits(data);
        const std::string path = m_folder.File("kind.ini");
        ASSERT_TRUE(data.Save(path.c_str(), true));
        m_messages.Clear();
        CStimulusData loaded;
        loaded.Load(path.c_str(), true);
        EXPECT_TRUE(m_messages.Requests().empty()) << c.seqType;
        EXPECT_EQ(loaded.GetSeqType(), c.seqType);
        EXPECT_EQ(loaded.Bits(), c.expected.empty() ? data.Bits() : c.expected) << c.seqType;
        EXPECT_EQ(kv::PersistedEntries(loaded), kv::PersistedEntries(data));
        EXPECT_FALSE(kv::FindRoundTripLoss(data));
    }
}

TEST_F(Persistence, RoundTripCheckNamesWhatWouldBeLost) {
    CStimulusData duty;
    duty.SetDutyCycle(99.99999999999999);  // valid, but stored as "100"
    ASSERT_TRUE(duty.IsValid(duty.GetBitCount()));
    const auto dutyLoss = kv::FindRoundTripLoss(duty);
    ASSERT_TRUE(dutyLoss);
    EXPECT_NE(dutyLoss->find("duty cycle"), std::string::npos) << *dutyLoss;

    CStimulusData empty;
    empty.SetSeqType(kv::seq::kCustom);
    empty.SetBits(nullptr, 0);
    const auto emptyLoss = kv::FindRoundTripLoss(empty);
    ASSERT_TRUE(emptyLoss);
    EXPECT_NE(emptyLoss->find("stored length 0"), std::string::npos) << *emptyLoss;

    // A file whose custom length cannot be read says so and keeps the bits.
    CStimulusData read;
    const auto result =
        kv::ReadStimulusFile(read, Ini("[EYEDIAGRAM]\nSEQTYPE=4\nSEQUENCELENGTH=-1\n"));
    EXPECT_EQ(result.unreadSequenceLength, -1);
    EXPECT_FALSE(result.invalidReason);
    EXPECT_EQ(read.GetBitCount(), 31);
}

TEST_F(Persistence, SaveRewritesTheSectionOnceAndKeepsOtherBytes) {
    const std::string other = "; kept\r\n[HOST]\r\na\r\r\nb = 2 \r\n\r\n";
    const std::string path = Ini(other + "[EYEDIAGRAM]\r\nCYCLECOUNT=3\r\nPERIOD=2\r\n");
    CStimulusData data;
    data.SetCycleCount(9);
    ASSERT_TRUE(data.Save(path.c_str(), true));
    const std::string text = ReadText(path);
    EXPECT_EQ(text.substr(0, other.size()), other);
    EXPECT_NE(text.find("[EYEDIAGRAM]\r\nCYCLECOUNT=9\r\nPERIOD=3.3\r\nSKIPBITS=0\r\n"),
              std::string::npos);
    EXPECT_EQ(text.find("\n[", other.size() + 1), std::string::npos);  // one section
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'),
              std::count(text.begin(), text.end(), '\r') - 1);  // CR LF throughout, a\r kept

    // A store that cannot be read is not rewritten, and the reason says so.
    const auto folder = m_folder.File("folder.ini");
    std::filesystem::create_directories(folder);
    const kv::FileResult saved = kv::SaveStimulusData(data, folder.c_str(), true);
    EXPECT_FALSE(saved.ok);
    EXPECT_EQ(saved.reason.rfind("cannot read " + folder + ": ", 0), 0u) << saved.reason;
}

TEST_F(Persistence, CustomSequencesAsTextUuencodedAndCapped) {
    for (std::size_t count : {2047u, 2048u, 40000u}) {
        CStimulusData data;
        data.SetSeqType(kv::seq::kCustom);
        data.SetBitVector(SomeBits(count, static_cast<unsigned>(count)));
        const std::string path = m_folder.File("custom" + std::to_string(count) + ".ini");
        ASSERT_TRUE(data.Save(path.c_str(), true));
        const std::string text = ReadText(path);
        const std::size_t stored = std::min<std::size_t>(count, 32000);
        EXPECT_NE(text.find("SEQUENCELENGTH=" + std::to_string(stored) + "\n"), std::string::npos);
        if (count == 2047) {
            EXPECT_NE(text.find("BITSEQUENCE=" + std::string(1, '0' + data.Bits()[0])),
                      std::string::npos);
            EXPECT_EQ(kv::EncodeBitSequence(data.Bits()).size(), 2047u);
        }
        if (count == 2048) {
            // 258 bytes: five full lines and one of 33 bytes ('A').
            EXPECT_NE(text.find("BITSEQUENCE=M"), std::string::npos);
            EXPECT_NE(text.find("\n\tA"), std::string::npos);
        }
        CStimulusData loaded;
        loaded.Load(path.c_str(), true);
        EXPECT_TRUE(m_messages.Requests().empty());
        EXPECT_EQ(loaded.Bits(),
                  kv::BitVector(data.Bits().begin(),
                                data.Bits().begin() + static_cast<std::ptrdiff_t>(stored)));
    }
}

TEST_F(Persistence, UuencodedValueDecodesWithGnuUudecode) {
    if (std::system("command -v uudecode >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "uudecode (sharutils) is not installed";
    }
    for (std::size_t count : {2048u, 32000u}) {
        CStimulusData data;
        data.SetSeqType(kv::seq::kCustom);
        data.SetBitVector(SomeBits(count, 7));
        const std::string path = m_folder.File("uu.ini");
        ASSERT_TRUE(data.Save(path.c_str(), true));
        // The value as a plain INI reader returns it, wrapped as a file.
        auto store = kv::OpenProfileStore(kv::AppProfile::File(path));
        const std::string value = kv::GetProfileString(*store, "EYEDIAGRAM", "BITSEQUENCE", "");
        const std::string encoded = m_folder.File("bits.uu");
        const std::string decoded = m_folder.File("bits.bin");
        WriteText(encoded, "begin 644 " + decoded + "\n" + value + "\n`\nend\n");
        ASSERT_EQ(std::system(("uudecode -o " + decoded + " " + encoded).c_str()), 0);
        const std::string bytes = ReadText(decoded);
        const auto packed = kv::PackBits(data.Bits());
        ASSERT_EQ(bytes.size(), count / 8 + 2);
        EXPECT_TRUE(std::equal(packed.begin(), packed.end(), bytes.begin(),
                               [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); }));
    }
}

TEST_F(Persistence, PlainIniReaderSeesTheSameKeysAndValues) {
    if (std::system("command -v python3 >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "python3 is not installed";
    }
    CStimulusData data;
    data.SetSeqType(kv::seq::kCustom);
    data.SetBitVector(SomeBits(5000, 3));
    data.SetPeriod(1.0 / 3);
    const std::string path = m_folder.File("plain.ini");
    ASSERT_TRUE(data.Save(path.c_str(), true));
    const std::string script = m_folder.File("read.py");
    WriteText(script,
              "import configparser, sys\n"
              "p = configparser.RawConfigParser(interpolation=None)\n"
              "p.optionxform = str\n"
              "p.read(sys.argv[1])\n"
              "for k, v in p.items('EYEDIAGRAM'):\n"
              "    print(k + '=' + v.replace('\\n', '|'))\n");
    std::string expected;
    for (const auto& [key, value] : kv::PersistedEntries(data)) {
        std::string flat;
        std::string_view rest = value;
        while (!rest.empty() && (rest.back() == '\n' || rest.back() == '\r')) {
            rest.remove_suffix(1);
        }
        for (std::size_t i = 0; i < rest.size(); ++i) {
            if (rest.substr(i, 2) == "\r\n") {
                flat += '|';
                ++i;
            } else {
                flat += rest[i];
            }
        }
        expected += std::string(key) + "=" + flat + "\n";
    }
    EXPECT_EQ(RunShell("python3 " + script + " " + path).out, expected);
}

TEST_F(Persistence, OlderAndDamagedFilesLoadWhatTheyHold) {
    // Older files never stored the bits of kinds 5 and 6: such a section loads
    // without a message and the object keeps the bits it had, from a file and
    // from a settings store alike; bits stored beside such a kind are taken.
    const kv::BitVector had = SomeBits(40, 3);
    const std::string olderSection =
        "[EYEDIAGRAM]\nCYCLECOUNT=6\nSEQTYPE=5\nINITSTATE=1\nSEQUENCELENGTH=40\n";
    std::filesystem::create_directories(m_folder.File("config/Older"));
    WriteText(m_folder.File("config/Older/KVComCtl.ini"), olderSection);
    for (const auto& [location, fromFile] :
         {std::pair{Ini(olderSection), true}, std::pair{std::string("Older"), false}}) {
        m_messages.Clear();
        CStimulusData older;
        older.SetBitVector(had);
        older.Load(location.c_str(), fromFile);
        EXPECT_TRUE(m_messages.Requests().empty()) << location;
        EXPECT_EQ(older.GetSeqType(), 5) << location;
        EXPECT_EQ(older.GetCycleCount(), 6) << location;
        EXPECT_EQ(older.Bits(), had) << location;
    }

    // Older files hold a long custom sequence's encoded lines one below the
    // other, so its key reads as the first line only: those bits load, the
    // rest are clear, and every other value stays as stored.
    const kv::BitVector custom = SomeBits(3000, 4);
    const std::string encoded = kv::EncodeBitSequence(custom);
    m_messages.Clear();
    CStimulusData cut;
    cut.Load(Ini("[EYEDIAGRAM]\r\nCYCLECOUNT=6\r\nSEQTYPE=4\r\nSEQUENCELENGTH=3000\r\n"
                 "BITSEQUENCE=" +
                 encoded)
                 .c_str(),
             true);
    EXPECT_TRUE(m_messages.Requests().empty());
    EXPECT_EQ(cut.GetCycleCount(), 6);
    kv::BitVector firstLine(custom.begin(), custom.begin() + 45 * 8);
    firstLine.resize(3000, 0);
    EXPECT_EQ(cut.Bits(), firstLine);

    // Binary files load what they can and never crash.
    std::string binary("[EYEDIAGRAM]\nCYCLECOUNT=5\n");
    for (int i = 0; i < 4096; ++i) {
        binary += static_cast<char>(i * 37 % 256);
    }
    CStimulusData fromBinary;
    fromBinary.Load(Ini(binary).c_str(), true);
    EXPECT_EQ(fromBinary.GetCycleCount(), 5);

    // A huge file is not taken for settings, and Save refuses to rewrite it.
    const std::string huge = m_folder.File("huge.ini");
    WriteText(huge, "[EYEDIAGRAM]\nCYCLECOUNT=6\n");
    std::filesystem::resize_file(huge, 64u << 20);
    CStimulusData fromHuge;
    fromHuge.Load(huge.c_str(), true);
    EXPECT_EQ(fromHuge.GetCycleCount(), 4);
    EXPECT_FALSE(fromHuge.Save(huge.c_str(), true));
    EXPECT_EQ(std::filesystem::file_size(huge), 64u << 20);
}

// Makes a folder read-only for the life of the guard. Folder permissions do
// not stop root (as on CI), so it falls back to the immutable attribute,
// which does.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(std::string folder) : m_folder(std::move(folder)) {
        std::filesystem::permissions(
            m_folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
        if (::access(m_folder.c_str(), W_OK) == 0) {
            m_immutable = std::system(("chattr +i '" + m_folder + "' 2>/dev/null").c_str()) == 0;
        }
    }
    ~ReadOnlyFolder() {
        if (m_immutable) {
            [[maybe_unused]] int ignored = std::system(("chattr -i '" + m_folder + "'").c_str());
        }
        std::filesystem::permissions(m_folder, std::filesystem::perms::owner_all);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

    bool IsReadOnly() const { return m_immutable || ::access(m_folder.c_str(), W_OK) != 0; }

private:
    std::string m_folder;
    bool m_immutable = false;
};

TEST_F(Persistence, SaveIntoMissingOrReadOnlyFolderFailsAndKeepsTheFile) {
    CStimulusData data;
    EXPECT_FALSE(data.Save(m_folder.File("missing/stim.ini").c_str(), true));
    EXPECT_FALSE(std::filesystem::exists(m_folder.File("missing")));

    const std::string folder = m_folder.File("locked");
    std::filesystem::create_directories(folder);
    const std::string path = folder + "/stim.ini";
    WriteText(path, "[EYEDIAGRAM]\nCYCLECOUNT=3\n");
    ReadOnlyFolder locked(folder);
    if (!locked.IsReadOnly()) {
        GTEST_SKIP() << "this account can write into any folder here";
    }
    data.SetCycleCount(20);
    EXPECT_FALSE(data.Save(path.c_str(), true));
    EXPECT_EQ(ReadText(path), "[EYEDIAGRAM]\nCYCLECOUNT=3\n");
}

TEST_F(Persistence, JitterSeedComesFromTheApplicationStore) {
    kv::ModuleProfile().registryKey = "Velmorine";
    EXPECT_EQ(kv::NextJitterSeed(true, kv::ModuleProfile()), 9796543);
    const int none = kv::NextJitterSeed(false, kv::ModuleProfile());
    EXPECT_EQ(none, -1);
    const int timeSeed = kv::CurrentJitterSeed();
    EXPECT_EQ(timeSeed % 2, 1);
    auto store = kv::OpenProfileStore(kv::ModuleProfile());
    EXPECT_EQ(kv::GetProfileInt(*store, "STIMULUSDATA", "jitterSeed", 0), timeSeed);
    kv::NextJitterSeed(false, kv::ModuleProfile());
    EXPECT_EQ(kv::CurrentJitterSeed(), timeSeed);  // made once, then kept
    // Repeatable again: the stored seed.
    EXPECT_EQ(kv::NextJitterSeed(true, kv::ModuleProfile()), timeSeed);
    kv::SetJitterSeed(-5);
    EXPECT_EQ(kv::CurrentJitterSeed(), 9796543);

    // Loading 8B/10B data from a file still reads the seed from the
    // application's store, not from the file.
    CStimulusData data;
    data.Load(Ini("[EYEDIAGRAM]\nSEQTYPE=1\n[STIMULUSDATA]\njitterSeed=5\n").c_str(), true);
    EXPECT_EQ(kv::CurrentJitterSeed(), timeSeed);
    kv::ModuleProfile().registryKey.clear();
}

}  // namespace
