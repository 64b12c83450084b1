#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/ports/MessagePort.h"
#include "core/stimulus/BitFile.h"
#include "core/stimulus/FixedPatterns.h"
#include "core/stimulus/Jitter.h"
#include "core/stimulus/Uuencode.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/TestSupport.h"

namespace {

class BitFile : public ::testing::Test {
protected:
    TestFolder m_folder;
    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_port{m_messages};
};

TEST_F(BitFile, WritesDigitsOnlyAndReadsThemBackThroughSeparators) {
    const std::string path = m_folder.File("a.bit");
    ASSERT_TRUE(kv::WriteBitFile(path, {1, 0, 0, 1}));
    EXPECT_EQ(ReadText(path), "1001");
    WriteText(path, "1 0,;\t\r\n0 1\n");
    EXPECT_EQ(kv::ReadBitFile(path), (kv::BitVector{1, 0, 0, 1}));
    EXPECT_TRUE(m_messages.Requests().empty());
    WriteText(path, " ,;\n");
    EXPECT_EQ(kv::ReadBitFile(path), kv::BitVector{});
}

TEST_F(BitFile, OtherCharactersAndMissingFilesAreReported) {
    const std::string path = m_folder.File("bad.bit");
    WriteText(path, "0102");
    EXPECT_FALSE(kv::ReadBitFile(path));
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text,
              "Unable to load sequence\nFile " + path + " is not valid sequence file");
    EXPECT_EQ(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);

    m_messages.Clear();
    const std::string missing = m_folder.File("none.bit");
    EXPECT_FALSE(kv::ReadBitFile(missing));
    EXPECT_EQ(
        m_messages.Requests().at(0).text,
        "Unable to load file " + missing + " due to following reason:\nNo such file or directory");

    m_messages.Clear();
    const std::string unwritable = m_folder.File("no/such/folder.bit");
    EXPECT_FALSE(kv::WriteBitFile(unwritable, {1}));
    EXPECT_EQ(m_messages.Requests().at(0).text,
              "Unable to save file " + unwritable +
                  " due to following reason:\n No such file or directory");
}

TEST_F(BitFile, LongFilesAreCutAt32768EvenForATrailingLineEnd) {
    const std::string path = m_folder.File("long.bit");
    WriteText(path, std::string(32768, '1'));
    EXPECT_EQ(kv::ReadBitFile(path)->size(), 32768u);
    EXPECT_TRUE(m_messages.Requests().empty());

    WriteText(path, std::string(32768, '1') + "\n");
    EXPECT_EQ(kv::ReadBitFile(path)->size(), 32768u);
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text,
              "Sequence too long\nSequence length will be truncated to 32768");

    m_messages.Clear();
    std::string million(1000000, '0');
    million[500000] = 'x';  // beyond the cut: never looked at
    WriteText(path, million);
    EXPECT_EQ(kv::ReadBitFile(path)->size(), 32768u);
    EXPECT_EQ(m_messages.Requests().size(), 1u);
}

TEST(Uuencode, LinesLengthsAndPadding) {
    const std::vector<uint8_t> bytes(46, 0xff);
    const std::string text = kv::Uuencode(bytes);
    // A full line "M" + 60 characters, then one byte padded with spaces.
    EXPECT_EQ(text.substr(0, 1), "M");
    EXPECT_EQ(text.substr(61, 2), "\r\n");
    EXPECT_EQ(text.substr(63), "!_R`@\r\n");
    kv::UuencodeOptions options;
    options.beginName = "file";
    options.endLines = true;
    const std::string framed = kv::Uuencode(std::vector<uint8_t>{0, 0, 0}, options);
    EXPECT_EQ(framed, "begin 666 file\r\n#````\r\n`\r\nend\r\n");

    std::vector<uint8_t> decoded(46);
    EXPECT_EQ(kv::Uudecode(text, decoded), 46u);
    EXPECT_EQ(decoded, bytes);
    EXPECT_FALSE(kv::Uudecode("M!!\r\n", decoded));    // short line
    EXPECT_FALSE(kv::Uudecode("#abcd\r\n", decoded));  // outside the range
    EXPECT_EQ(kv::PackBits(kv::BitVector{1, 0, 0, 0, 0, 0, 0, 0, 1}),
              (std::vector<uint8_t>{1, 1, 0}));
}

TEST(FixedSequences, UsbPatternAndToggling) {
    const kv::BitVector usb = kv::UsbCompliancePattern();
    ASSERT_EQ(usb.size(), 330u);
    EXPECT_EQ(usb[4], 1);
    EXPECT_EQ(usb[329], 0);
    EXPECT_EQ(usb[325], 1);
    EXPECT_EQ(kv::TogglingBits(0), (kv::BitVector{1, 0}));
    EXPECT_EQ(kv::TogglingBits(1), (kv::BitVector{0, 1}));
}

// The bound and the conversions as a page meets them are the stimulus
// page's; here what no page reaches.
TEST(Jitter, SwitchedOffAnyMagnitudeIsAllowedButNoPeriodIsAProgrammingError) {
    kv::CJitter jitter;
    jitter.m_asTime = 1;
    jitter.m_magnitude = 2.0;
    EXPECT_TRUE(kv::IsJitterMagnitudeAllowed(jitter, 3.3));
    jitter.m_enabled = true;
    EXPECT_FALSE(kv::IsJitterMagnitudeAllowed(jitter, 3.3));
    EXPECT_DEATH(kv::MagnitudeInPercent(jitter, 0.0), "Jitter");
}

}  // namespace
