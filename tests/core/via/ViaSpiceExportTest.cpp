// The "Export to Spice" flow with a scripted file dialog and message port, on real files.

#include <gtest/gtest.h>

#include <filesystem>

#include "core/ports/MessagePort.h"
#include "core/via/ViaSpiceExport.h"
#include "core/via/ViaVizData.h"
#include "tests/support/RecordingMessagePort.h"
#include "tests/support/ScriptedFileChooser.h"
#include "tests/support/TestSupport.h"

namespace {

namespace fs = std::filesystem;
using kv::SpiceExportOutcome;

class ViaSpiceExport : public ::testing::Test {
protected:
    void SetUp() override {
        m_layer = STACKUPLAYER{"TOP", STACKUP_CONDUCTOR, 0, 3.556e-5};
        m_stackup = {1, &m_layer};
        m_padstack = PADSTACK{};
        kv::SetRecordName(m_padstack.name, "VIA0.3");
        m_input.stackup = &m_stackup;
        m_input.subcircuitName = "SUB";
        m_input.vias.push_back({&m_padstack, {}, {}});
        m_chooser.answer = kv::ChosenFile{m_folder, "via.cir"};
    }

    SpiceExportOutcome Export() { return kv::ExportViaToSpice(&m_input, {}, m_chooser); }

    TestFolder m_temporary;
    const fs::path& m_folder = m_temporary.Path();
    STACKUPLAYER m_layer{};
    STACKUPARRAY m_stackup{};
    PADSTACK m_padstack{};
    kv::SpiceExportInput m_input;
    kv::test::ScriptedFileChooser m_chooser;
    kv::test::RecordingMessagePort m_messages;
    kv::ScopedMessagePort m_scope{m_messages};
};

TEST_F(ViaSpiceExport, DialogIsAskedWithTheDefaultNameExtensionAndFilter) {
    ASSERT_EQ(Export(), SpiceExportOutcome::Written);
    ASSERT_EQ(m_chooser.queries.size(), 1u);
    const kv::FileQuery& query = m_chooser.queries[0];
    EXPECT_EQ(query.defaultFileName, "VIA0.3.cir");
    EXPECT_EQ(query.defaultExtension, "cir");
    EXPECT_EQ(query.filter, "SPICE files (*.cir;*.inc)|*.cir; *.inc||");
    EXPECT_TRUE(query.hideReadOnly);
    EXPECT_EQ(kv::DefaultSpiceFileName(m_input, {"", "model/a"}), "model_a.cir");
    EXPECT_EQ(kv::DefaultSpiceFileName(m_input, {"chosen.inc", "model"}), "chosen.inc");

    const std::string text = ReadText(m_folder / "via.cir");
    EXPECT_EQ(text.rfind("\n.SUBCKT SUB\n"), text.find("\n.SUBCKT SUB\n"));
    EXPECT_TRUE(text.ends_with(".ENDS\n"));
    EXPECT_TRUE(m_messages.Requests().empty());
}

TEST_F(ViaSpiceExport, CancelAndNoDataWriteNothing) {
    m_chooser.answer.reset();
    EXPECT_EQ(Export(), SpiceExportOutcome::Cancelled);
    EXPECT_EQ(kv::ExportViaToSpice(nullptr, {}, m_chooser), SpiceExportOutcome::NoData);
    EXPECT_EQ(m_chooser.queries.size(), 1u);
    EXPECT_TRUE(fs::is_empty(m_folder));
}

TEST_F(ViaSpiceExport, ExistingFileIsReplacedOnlyAfterYes) {
    const fs::path path = m_folder / "via.cir";
    WriteText(path, "old");
    EXPECT_EQ(Export(), SpiceExportOutcome::Refused);  // the box's default answer is No
    EXPECT_EQ(ReadText(path), "old");
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    const kv::MessageRequest& question = m_messages.Requests()[0];
    EXPECT_EQ(question.text,
              "File \"" + path.string() + "\" exists.\nDo you want to overwrite it?");
    EXPECT_EQ(question.caption, "Warning");
    EXPECT_EQ(question.icon, kv::MessageIcon::Warning);
    EXPECT_EQ(question.buttons, kv::MessageButtons::YesNo);
    EXPECT_EQ(question.defaultAnswer, kv::MessageAnswer::No);

    m_messages.QueueAnswer(kv::MessageAnswer::Yes);
    EXPECT_EQ(Export(), SpiceExportOutcome::Written);
    EXPECT_TRUE(ReadText(path).ends_with(".ENDS\n"));
}

TEST_F(ViaSpiceExport, UnwritableFolderIsReportedAndLeavesNothing) {
    m_chooser.answer = kv::ChosenFile{m_folder / "missing", "via.cir"};
    EXPECT_EQ(Export(), SpiceExportOutcome::CannotOpen);
    ASSERT_EQ(m_messages.Requests().size(), 1u);
    EXPECT_EQ(m_messages.Requests()[0].text,
              "Cannot open file \"" + (m_folder / "missing" / "via.cir").string() + "\"");
    EXPECT_EQ(m_messages.Requests()[0].caption, "Export to Spice");
    EXPECT_EQ(m_messages.Requests()[0].icon, kv::MessageIcon::Error);
    EXPECT_TRUE(fs::is_empty(m_folder));
}

}  // namespace
