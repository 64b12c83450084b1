#include <gtest/gtest.h>

#include <filesystem>

#include "core/settings/IniDocument.h"
#include "core/settings/ProfileStore.h"
#include "tests/support/TestSupport.h"

namespace {

TEST(IniDocument, PrivateProfileEditsKeepEverythingElse) {
    kv::IniDocument doc(
        "; comment\r\n[Other]\r\nA=1\r\n\r\n[Main]\r\nkey=old\r\nX = "
        "2\r\nKEY=last\r\n\r\n[Tail]\r\nB=3\r\n");
    EXPECT_EQ(doc.Get("main", "Key"), "last");  // the last of equal keys
    EXPECT_EQ(doc.Get("MAIN", "x"), "2");
    EXPECT_FALSE(doc.Get("Main", "missing"));
    EXPECT_FALSE(doc.Get("Nowhere", "A"));
    doc.Set("MAIN", "key", "new");
    doc.Set("Main", "Added", "v");
    doc.Set("Fresh", "C", "4");
    // The file's CR LF line ends are kept, and new lines take them too.
    EXPECT_EQ(doc.Text(),
              "; comment\r\n[Other]\r\nA=1\r\n\r\n[Main]\r\nkey=old\r\nX = 2\r\nkey=new\r\n"
              "Added=v\r\n\r\n[Tail]\r\nB=3\r\n\r\n[Fresh]\r\nC=4\r\n");
    EXPECT_EQ(
        doc.Section("main")->Entries(),
        (std::vector<kv::IniEntry>{{"key", "old"}, {"X", "2"}, {"key", "new"}, {"Added", "v"}}));

    // Multi-line values continue on indented lines and come back joined.
    doc.Set("Main", "Multi", "L1\r\nL2\r\n[L3\r\n");
    EXPECT_EQ(doc.Get("Main", "multi"), "L1\r\nL2\r\n[L3");
    EXPECT_EQ(kv::IniDocument(doc.Text()).Get("Main", "multi"), "L1\r\nL2\r\n[L3");
    doc.Set("Main", "Multi", "one");
    EXPECT_EQ(doc.Get("Main", "Multi"), "one");
    EXPECT_EQ(doc.Text().find("L2"), std::string::npos);
}

TEST(IniDocument, UntouchedLinesKeepEveryByte) {
    // A CR that is not part of the line end is content; a last line without
    // a line end gets one only when something follows it.
    const std::string kept = "a\r\r\n[S]\r\n  x = 1\r\n";
    kv::IniDocument doc(kept + "y=2");
    doc.Set("S", "y", "3");
    EXPECT_EQ(doc.Text(), kept + "y=3\r\n");
    kv::IniDocument unix("[S]\nx=1");
    unix.Set("S", "z", "2");
    EXPECT_EQ(unix.Text(), "[S]\nx=1\nz=2\n");
    const std::pair<std::string_view, std::string> entries[] = {{"x", "5"}, {"new", "6"}};
    unix.SetEntries("s", entries);
    EXPECT_EQ(unix.Text(), "[S]\nx=5\nz=2\nnew=6\n");
    // A writer replaces the entry a reader finds under the key: an entry
    // whose "=" stands only on its continuation line is not "k".
    kv::IniDocument continued("[A]\nk=1\nk\n\tx=2\n");
    continued.Set("A", "k", "v");
    EXPECT_EQ(continued.Text(), "[A]\nk=v\nk\n\tx=2\n");
    EXPECT_EQ(continued.Get("A", "k"), "v");
    EXPECT_TRUE(kv::LooksLikeIniText("; c\n[S]\n"));
    EXPECT_FALSE(kv::LooksLikeIniText("just words\n"));
    EXPECT_FALSE(kv::LooksLikeIniText(std::string("[S]\nx=\0", 7)));
}

TEST(ProfileStore, KeyedStoreUnderTheConfigurationFolder) {
    TestFolder folder;
    const ScopedEnvironment xdg("XDG_CONFIG_HOME", folder.File("xdg").c_str());
    EXPECT_EQ(kv::ConfigDirectory(), folder.File("xdg"));
    const kv::AppProfile profile = kv::AppProfile::Keyed("Velmorine");
    EXPECT_EQ(kv::ProfileFilePath(profile), folder.File("xdg") + "/Velmorine/KVComCtl.ini");
    {
        auto store = kv::OpenProfileStore(profile);
        EXPECT_EQ(kv::GetProfileInt(*store, "S", "n", 42), 42);
        EXPECT_TRUE(kv::WriteProfileInt(*store, "S", "n", -17));
        EXPECT_TRUE(kv::WriteProfileString(*store, "S", "t", "12abc"));
        EXPECT_TRUE(kv::WriteProfileString(*store, "S", "w", "abc"));
    }
    auto again = kv::OpenProfileStore(profile);
    EXPECT_EQ(kv::GetProfileInt(*again, "s", "N", 0), -17);
    EXPECT_EQ(kv::GetProfileInt(*again, "S", "t", 0), 12);
    EXPECT_EQ(kv::GetProfileInt(*again, "S", "w", 5), 0);
    EXPECT_EQ(kv::GetProfileString(*again, "S", "none", "dflt"), "dflt");
    // A key may not leave the configuration folder.
    EXPECT_EQ(kv::ProfileFilePath(kv::AppProfile::Keyed("../escape")), "");
    EXPECT_FALSE(
        kv::OpenProfileStore(kv::AppProfile::Keyed("../escape"))->WriteString("S", "k", "v"));
    // Before start-up sets a key the store is still in the configuration
    // folder, never the working folder; a file profile is the file itself.
    EXPECT_EQ(kv::ProfileFilePath({}), folder.File("xdg") + "/KVComCtl.ini");
    EXPECT_EQ(kv::ProfileFilePath(kv::AppProfile::File("rel.ini")), "rel.ini");
    const ScopedEnvironment noXdg("XDG_CONFIG_HOME", nullptr);
    const ScopedEnvironment home("HOME", folder.Path().c_str());
    EXPECT_EQ(kv::ProfileFilePath({}), folder.File(".config") + "/KVComCtl.ini");
}

}  // namespace
