#include <gtest/gtest.h>

#include <algorithm>
#include "core/eyediagram/StimulusEditPageModel.h"
#include "core/eyediagram/StimulusLibrary.h"
#include "core/stimulus/SequenceType.h"
#include "kvcomctl/EyeDiagramControlIds.h"
#include "tests/support/ScriptedFileChooser.h"
#include "tests/support/TestSupport.h"
#include "tests/support/TypedIntoModel.h"

namespace {

namespace id = kvcomctl_ids::stimulus_edit;
using kv::StimulusEditPageModel;
using Said = std::vector<std::string>;

constexpr int kOscillator = 1, kEdge = 2, kPulse = 3, kPrbs = 4, k8b10b = 5, kUsb = 6, kCustom = 7;

std::string BitsOf(const kv::BitVector& bits) {
    std::string text;
    for (const uint8_t bit : bits) {
        text += bit != 0 ? '1' : '0';
    }
    return text;
}

class StimulusEditPageModelTest : public ::testing::Test {
protected:
    // Each message the page gives carries its caption.
    Said Typed(int controlId, const std::string& text) {
        Said said = kv::test::TypedInto(m_model, m_messages, controlId, text);
        for (const kv::MessageRequest& request : m_messages.Requests()) {
            EXPECT_EQ(request.caption, "Edit Stimulus");
        }
        return said;
    }

    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_scope{m_messages};
    kv::CStimulusData m_data;
    StimulusEditPageModel m_model{m_data};
};

TEST_F(StimulusEditPageModelTest, EachKindShowsItsControlsLabelsAndPattern) {
    // A new stimulus (kind 7) opens as PRBS, read-only.
    EXPECT_EQ(m_model.Position(), kPrbs);
    EXPECT_TRUE(m_model.PatternReadOnly());
    EXPECT_FALSE(m_model.IsModified());

    // Edge hides the whole stimulus group and the jitter group, and asks for
    // a direction.
    m_model.ChoosePosition(kEdge);
    EXPECT_EQ(m_data.m_seqType, kv::seq::kEdge);
    for (const int hidden : {id::kStimulusGroup, id::kPeriod, id::kJitterGroup, id::kJitter}) {
        EXPECT_FALSE(m_model.IsShown(hidden)) << hidden;
    }
    EXPECT_EQ(m_model.Label(id::kLevelLabel), "&Direction:");
    EXPECT_EQ(m_model.ItemText(id::kLevel, 0), "Falling");
    EXPECT_EQ(m_model.PaintMode(), 2);
    m_model.SetLevelIndex(1);
    EXPECT_EQ(m_model.ItemText(id::kLevel, 1), "Rising");
    EXPECT_EQ(BitsOf(m_model.Bits()), "1");
    EXPECT_TRUE(m_model.IsModified());

    // The oscillator keeps the level index, and names its period and frequency.
    m_model.ChoosePosition(kOscillator);
    EXPECT_EQ(m_model.LevelIndex(), 1);
    EXPECT_EQ(m_model.ItemText(id::kLevel, 1), "Low");
    EXPECT_EQ(BitsOf(m_model.Bits()), "10");
    EXPECT_EQ(m_model.Label(id::kPeriodLabel), "&Period:");
    EXPECT_EQ(m_model.Label(id::kRepetitionsLabel), "&Frequency:");
    EXPECT_EQ(m_model.ItemText(id::kJitterUnit, 0), "% of period");
    EXPECT_TRUE(m_model.IsShown(id::kDuty) && m_model.IsShown(id::kHighTime));
    m_model.ChoosePosition(kUsb);
    EXPECT_EQ(m_model.Bits().size(), 330u);
    EXPECT_EQ(m_model.Label(id::kPeriodLabel), "&Bit interval:");
    EXPECT_EQ(m_model.Label(id::kRepetitionsLabel), "Sequence &repetitions:");
    EXPECT_EQ(m_model.ItemText(id::kJitterUnit, 0), "% of interval");
    EXPECT_FALSE(m_model.IsShown(id::kLevel));

    // Only <Custom> is editable, with Load... and Save..., and starts empty.
    for (int position = 1; position <= 7; ++position) {
        m_model.ChoosePosition(position);
        EXPECT_EQ(m_model.PatternReadOnly(), position != kCustom) << position;
        EXPECT_EQ(m_model.IsShown(id::kLoad), position == kCustom) << position;
        EXPECT_EQ(m_model.IsShown(id::kSaveBits), position == kCustom) << position;
    }
    EXPECT_TRUE(m_model.Bits().empty());

    // Repetitions drive the Pulse painter; the distribution names the amount.
    m_model.ChoosePosition(kPulse);
    EXPECT_EQ(Typed(id::kRepetitions, "7"), Said{});
    EXPECT_EQ(m_model.PaintMode(), 3);
    EXPECT_EQ(m_model.PaintRepetitions(), 7);
    m_model.SetDistributionIndex(1);
    EXPECT_EQ(m_model.Label(id::kJitterLabel), "Amount (p-p):");
    EXPECT_EQ(m_data.m_jitterType, 1);
    m_model.SetDistributionIndex(2);
    EXPECT_EQ(m_model.Label(id::kJitterLabel), "Amount:");
}

TEST_F(StimulusEditPageModelTest, BitOrderReversesPrbsAlone) {
    m_model.ChoosePosition(k8b10b);
    const std::string code = BitsOf(m_model.Bits());
    EXPECT_EQ(code.size(), 40u);
    m_model.ChoosePosition(kPrbs);
    std::string prbs = BitsOf(m_model.Bits());
    m_model.SetBitOrderIndex(1);
    std::reverse(prbs.begin(), prbs.end());
    EXPECT_EQ(BitsOf(m_model.Bits()), prbs);
    m_model.ChoosePosition(k8b10b);
    EXPECT_EQ(BitsOf(m_model.Bits()), code);
}

TEST_F(StimulusEditPageModelTest, FieldsKeepThePagesRangesInTheirUnits) {
    const Said interval{"Invalid bit interval value\nValid range is 0.001 - 1000 ns"};
    EXPECT_EQ(Typed(id::kPeriod, "0"), interval);
    EXPECT_EQ(Typed(id::kPeriod, "1000.5"), interval);
    EXPECT_EQ(Typed(id::kPeriod, "abc"), interval);
    EXPECT_EQ(m_model.CommitAll(), id::kPeriod);  // leaving says it again
    EXPECT_EQ(Typed(id::kPeriod, "3.3"), Said{});
    EXPECT_FALSE(m_model.IsModified());  // as shown: nothing changed
    EXPECT_EQ(Typed(id::kRepetitions, "2049"),
              Said{"Invalid number of simulation cycles\nValid range is 1 - 2048"});
    EXPECT_EQ(m_model.Spin(id::kRepetitions, 2048), true);
    EXPECT_EQ(m_data.m_cycleCount, 2048);
    const Said jitter{
        "Invalid maximum jitter value\nJitter value must be greater or equal to zero and\nless "
        "than the bit interval"};
    EXPECT_EQ(Typed(id::kJitter, "100"), jitter);  // percent of the interval
    EXPECT_EQ(Typed(id::kJitter, "-1"), jitter);
    m_model.SetJitterUnitIndex(1);
    EXPECT_EQ(Typed(id::kJitter, "3.2"), Said{});
    EXPECT_EQ(m_data.m_maxJitter, 3.2);
    m_model.SetJitterUnitIndex(0);
    EXPECT_EQ(m_model.Text(id::kJitter), "96.970");

    m_model.ChoosePosition(kOscillator);
    EXPECT_EQ(Typed(id::kPeriod, "0.0001"),
              Said{"Invalid period value\nValid range is 0.001 - 1000 ns"});
    EXPECT_EQ(Typed(id::kPeriod, "10"), Said{});
    const Said duty{"Invalid duty cycle value\nValid range is 1 - 99"};
    EXPECT_EQ(Typed(id::kDuty, "99.5"), duty);
    EXPECT_EQ(Typed(id::kHighTime, "9.95"), duty);
    EXPECT_EQ(Typed(id::kFrequency, "0"),
              Said{"Invalid period value\nValid range is 0.001 - 1000 ns"});
    EXPECT_EQ(Typed(id::kHighTime, "2.5"), Said{});
    EXPECT_EQ(m_model.Text(id::kDuty), "25.000");
    EXPECT_EQ(m_model.SpinValue(id::kDutySpin), 25);
    EXPECT_EQ(m_model.Text(id::kLowTime), "7.500");
    EXPECT_EQ(Typed(id::kLowTime, "6"), Said{});
    EXPECT_EQ(m_data.m_dutyCycle, 40.0);
    EXPECT_EQ(Typed(id::kFrequency, "200"), Said{});
    EXPECT_EQ(m_model.Text(id::kPeriod), "5.000");
    // Hidden fields are not checked: Edge shows no period.
    m_model.ChoosePosition(kEdge);
    m_model.Type(id::kPeriod, "0");
    EXPECT_EQ(m_model.CommitAll(), std::nullopt);
}

// What a .bit file may hold and the messages are BitFileTest's; here the
// page's caption, its file name field and the bits it shows.
TEST_F(StimulusEditPageModelTest, BitFilesLoadAndSaveUnderThePagesCaption) {
    const TestFolder folder;
    WriteText(folder.File("good.bit"), "1, 0; 1\r\n");
    WriteText(folder.File("bad.bit"), "1021");
    kv::test::ScriptedFileChooser chooser;
    const auto choose = [&](const std::string& name) {
        chooser.answer = kv::ChosenFile{folder.Path(), name};
        m_messages.Clear();
    };
    m_model.ChoosePosition(kCustom);
    choose("good.bit");
    EXPECT_TRUE(m_model.LoadBits(chooser));
    EXPECT_EQ(BitsOf(m_model.Bits()), "101");
    EXPECT_EQ(m_model.FileName(), folder.File("good.bit"));
    EXPECT_TRUE(m_model.IsModified());
    for (const char* refused : {"bad.bit", "missing/saved.bit"}) {
        choose(refused);
        const bool loading = refused[0] == 'b';
        EXPECT_FALSE(loading ? m_model.LoadBits(chooser) : (m_model.SaveBits(chooser), false));
        ASSERT_EQ(m_messages.Requests().size(), 1u);
        EXPECT_EQ(m_messages.Requests()[0].caption, "Edit Stimulus");
        EXPECT_EQ(m_messages.Requests()[0].icon,
                  loading ? kv::MessageIcon::Warning : kv::MessageIcon::Error);
        EXPECT_EQ(BitsOf(m_model.Bits()), "101");
        EXPECT_EQ(m_model.FileName(), folder.File("good.bit"));
    }
    chooser.answer.reset();  // the user cancels the dialog
    EXPECT_FALSE(m_model.LoadBits(chooser));
    choose("saved.bit");
    m_model.SetBits({0, 1});  // as the user draws
    m_model.SaveBits(chooser);
    EXPECT_EQ(ReadText(folder.File("saved.bit")), "01");
    EXPECT_EQ(m_model.FileName(), folder.File("saved.bit"));
    ASSERT_EQ(chooser.queries.size(), 5u);
    EXPECT_EQ(chooser.queries[0].filter, "Bit sequence file (*.bit)|*.bit|All Files (*.*) | *.*|");
    EXPECT_EQ(chooser.queries[0].defaultExtension, "bit");
    m_model.ChoosePosition(kPrbs);  // a new kind empties the file name
    EXPECT_EQ(m_model.FileName(), "");
}

TEST_F(StimulusEditPageModelTest, ApplyAndCancelAskOnlyAfterAChange) {
    EXPECT_TRUE(m_model.QueryCancel());
    EXPECT_TRUE(m_model.Apply());
    EXPECT_TRUE(m_messages.Requests().empty());

    m_model.SetBits({0, 1, 1, 0});  // as the user draws
    m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
    EXPECT_FALSE(m_model.QueryCancel());
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text, "All changes will be lost.");
    EXPECT_EQ(m_messages.Requests()[0].buttons, kv::MessageButtons::OkCancel);
    EXPECT_EQ(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);
    EXPECT_EQ(m_messages.Requests()[0].caption, "Edit Stimulus");
    EXPECT_TRUE(m_model.QueryCancel());  // answered OK

    m_messages.Clear();
    m_messages.QueueAnswer(kv::MessageAnswer::Cancel);
    EXPECT_FALSE(m_model.Apply());
    EXPECT_EQ(m_data.GetBitCount(), 31);  // nothing handed over yet
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text, "Do you want to save the changes?");
    EXPECT_EQ(m_messages.Requests()[0].buttons, kv::MessageButtons::YesNoCancel);
    EXPECT_EQ(m_messages.Requests()[0].icon, kv::MessageIcon::Warning);
    m_messages.QueueAnswer(kv::MessageAnswer::No);
    EXPECT_TRUE(m_model.Apply());
    EXPECT_EQ(BitsOf(m_data.m_bits), "0110");
}

TEST_F(StimulusEditPageModelTest, NamedStimuliAreSavedOpenedAndRemoved) {
    EXPECT_TRUE(m_model.IsShown(id::kNameList));
    EXPECT_FALSE(m_model.IsShown(id::kNameEdit));
    EXPECT_EQ(Typed(id::kPeriod, "2.5"), Said{});
    m_model.StartNewName();
    EXPECT_TRUE(m_model.IsShown(id::kNameEdit) && !m_model.IsShown(id::kNameList));
    m_model.Type(id::kNameEdit, " clock ");
    EXPECT_TRUE(m_model.SaveNamed());
    EXPECT_EQ(m_model.Names(), std::vector<std::string>{"clock"});
    EXPECT_EQ(m_model.SelectedName(), "clock");
    EXPECT_FALSE(m_model.NamingNew());

    // Yes saves under the name; the named stimulus opens again as saved.
    EXPECT_EQ(Typed(id::kPeriod, "2"), Said{});
    m_messages.QueueAnswer(kv::MessageAnswer::Yes);
    EXPECT_TRUE(m_model.Apply());
    EXPECT_EQ(Typed(id::kPeriod, "7"), Said{});
    m_model.OpenNamed("clock");
    EXPECT_EQ(m_model.Text(id::kPeriod), "2.000");
    EXPECT_TRUE(m_model.IsModified());
    m_model.RemoveNamed();
    EXPECT_TRUE(m_model.Names().empty());
    EXPECT_TRUE(kv::stimulus_library::Names().empty());
    m_messages.Clear();
    m_model.OpenNamed("clock");  // gone: told, and nothing changes
    EXPECT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_model.Text(id::kPeriod), "2.000");
}

TEST(StimulusEditPageModel, OpensOnUsableValuesAndOpensStimulusFiles) {
    kv::test::RecordingMessagePort messages;
    const kv::ScopedMessagePort scope(messages);
    kv::CStimulusData data;
    data.m_period = -1;
    StimulusEditPageModel model(data);
    EXPECT_TRUE(model.CheckOnOpen());
    ASSERT_EQ(messages.Requests().size(), 1u);
    EXPECT_EQ(messages.Requests()[0].text,
              "Invalid eye diagram data.\nReverting to default values.");
    EXPECT_EQ(messages.Requests()[0].caption, "Edit Stimulus");
    EXPECT_EQ(model.Text(id::kPeriod), "3.300");

    const TestFolder folder;
    WriteText(folder.File("edge.ini"), "[EYEDIAGRAM]\nSEQTYPE=8\nPERIOD=2\n");
    kv::test::ScriptedFileChooser chooser;
    chooser.answer = kv::ChosenFile{folder.Path(), "edge.ini"};
    model.OpenFile(chooser);
    EXPECT_EQ(model.Position(), kEdge);
    EXPECT_EQ(model.Text(id::kPeriod), "2.000");
    EXPECT_TRUE(model.IsModified());
    EXPECT_EQ(chooser.queries.at(0).defaultExtension, "ini");
}

}  // namespace
