// Replacing and appending writes on every kind of target: links, read-only
// files, folders, FIFOs, devices, and a write that fails half-way.

#include "core/shared/FileIo.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/support/TestSupport.h"

namespace {

namespace fs = std::filesystem;

TEST(FileIoReplace, WritesThroughLinksToTheFileTheyName) {
    const TestFolder folder;
    fs::create_directory(folder.Path() / "real");
    const fs::path file = folder.Path() / "real" / "model.cir";
    WriteText(file.string(), "old");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    // A relative link, and a link to that link.
    fs::create_symlink("real/model.cir", folder.Path() / "link.cir");
    fs::create_symlink(folder.Path() / "link.cir", folder.Path() / "chain.cir");

    ASSERT_TRUE(kv::ReplaceFileAtomically(folder.Path() / "chain.cir", "new").ok);
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(folder.Path() / "chain.cir")));
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(folder.Path() / "link.cir")));
    EXPECT_EQ(ReadText(file.string()), "new");
    EXPECT_EQ(fs::status(file).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    // Nothing is left beside the file or the links.
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path() / "real"), {}), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 3);

    // A link to a file not there yet creates that file.
    fs::create_symlink("real/fresh.cir", folder.Path() / "dangling.cir");
    ASSERT_TRUE(kv::ReplaceFileAtomically(folder.Path() / "dangling.cir", "made").ok);
    EXPECT_EQ(ReadText((folder.Path() / "real" / "fresh.cir").string()), "made");
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(folder.Path() / "dangling.cir")));
}

TEST(FileIoReplace, RefusesWhatMayNotBeWrittenWithTheReason) {
    const TestFolder folder;
    const fs::path locked = folder.Path() / "locked.ini";
    WriteText(locked.string(), "keep");
    fs::permissions(locked, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    // Refused even when the tests run as the superuser, whom the bits do not stop.
    kv::FileResult result = kv::ReplaceFileAtomically(locked, "lost");
    EXPECT_FALSE(result.ok);
    EXPECT_NE(result.reason.find("read-only"), std::string::npos) << result.reason;
    fs::create_symlink(locked, folder.Path() / "via-link.ini");
    EXPECT_FALSE(kv::ReplaceFileAtomically(folder.Path() / "via-link.ini", "lost").ok);
    EXPECT_EQ(ReadText(locked.string()), "keep");

    result = kv::ReplaceFileAtomically(folder.Path(), "x");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.reason, "Is a directory");

    fs::create_symlink("loop-b", folder.Path() / "loop-a");
    fs::create_symlink("loop-a", folder.Path() / "loop-b");
    result = kv::ReplaceFileAtomically(folder.Path() / "loop-a", "x");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.reason, "Too many levels of symbolic links");

    result = kv::ReplaceFileAtomically(folder.Path() / "no" / "such.ini", "x");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.reason, "No such file or directory");
}

TEST(FileIoReplace, WritesFifosAndDevicesInPlace) {
    const TestFolder folder;
    const fs::path fifo = folder.Path() / "pipe";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] { received = ReadText(fifo.string()); });
    EXPECT_TRUE(kv::ReplaceFileAtomically(fifo, "through the pipe").ok);
    reader.join();
    EXPECT_EQ(received, "through the pipe");
    EXPECT_TRUE(fs::is_fifo(fifo));

    // A device is reached through a link of the test's own: should the device ever be replaced
    // again, the link is what goes, not the system's device file.
    const fs::path device = folder.Path() / "null";
    fs::create_symlink("/dev/null", device);
    EXPECT_TRUE(kv::ReplaceFileAtomically(device, "gone").ok);
    EXPECT_TRUE(fs::is_character_file(device));
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(device)));
}

TEST(FileIoReplace, WhatAFileIsDecidesNotItsFolder) {
    // A regular file in the memory file system under /dev is replaced like any other: saving it
    // twice leaves one copy of the text, in a new file, and nothing beside it.
    const fs::path shm = "/dev/shm";
    if (!fs::is_directory(shm)) {
        GTEST_SKIP() << "no /dev/shm";
    }
    const TestFolder names;  // a unique name for the file under /dev/shm
    const fs::path scratch = shm / (names.Path().filename().string() + ".bit");
    struct Remove {
        fs::path path;
        ~Remove() {
            std::error_code ignored;
            fs::remove(path, ignored);
        }
    } removeScratch{scratch};
    ASSERT_TRUE(kv::ReplaceFileAtomically(scratch, "0110").ok);
    struct stat first {};
    ASSERT_EQ(stat(scratch.c_str(), &first), 0);
    ASSERT_TRUE(kv::ReplaceFileAtomically(scratch, "0110").ok);
    EXPECT_EQ(ReadText(scratch.string()), "0110");
    struct stat second {};
    ASSERT_EQ(stat(scratch.c_str(), &second), 0);
    EXPECT_NE(first.st_ino, second.st_ino);
    for (const auto& entry : fs::directory_iterator(shm)) {
        EXPECT_EQ(entry.path().string().rfind(scratch.string() + ".tmp", 0), std::string::npos)
            << entry.path();
    }

    // A regular file this process holds open is written in place through the stream's name,
    // the old text cut off first, whichever name (or link to one) reaches it.
    const TestFolder folder;
    const fs::path held = folder.Path() / "held.bit";
    WriteText(held.string(), "previous text");
    const int descriptor = open(held.c_str(), O_WRONLY);
    ASSERT_GE(descriptor, 0);
    const std::string fd = std::to_string(descriptor);
    fs::create_symlink("/proc/self/fd/" + fd, folder.Path() / "link.bit");
    for (const fs::path& name :
         {fs::path("/dev/fd/" + fd), fs::path("/proc/self/fd/" + fd), folder.Path() / "link.bit"}) {
        EXPECT_TRUE(kv::ReplaceFileAtomically(name, "1001").ok) << name;
        EXPECT_EQ(ReadText(held.string()), "1001") << name;
    }
    struct stat opened {};
    struct stat named {};
    EXPECT_EQ(fstat(descriptor, &opened), 0);
    EXPECT_EQ(stat(held.c_str(), &named), 0);
    EXPECT_EQ(opened.st_ino, named.st_ino);
    close(descriptor);
}

TEST(FileIoRead, NamesAFolderAsSuch) {
    const TestFolder folder;
    std::string reason;
    EXPECT_FALSE(kv::ReadWholeFile(folder.Path(), 100, &reason));
    EXPECT_EQ(reason, "Is a directory");
}

// Lets the process write files up to `bytes` long only, as a full disk would:
// a write past it stops part-way, then fails.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit limited = m_old;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_old{};
    void (*m_oldHandler)(int) = nullptr;
};

TEST(FileIoAppend, AFailedAppendLeavesNoTornRecord) {
    const TestFolder folder;
    const fs::path dump = folder.Path() / "ViaVizData.dmp";
    WriteText(dump.string(), "first record\n");
    const std::string record(5000, 'r');
    kv::FileResult result;
    {
        const FileSizeLimit limit(1000);
        result = kv::AppendToFile(dump, record);
    }
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.reason, "File too large");
    EXPECT_EQ(ReadText(dump.string()), "first record\n");

    const fs::path fresh = folder.Path() / "fresh.dmp";
    {
        const FileSizeLimit limit(1000);
        EXPECT_FALSE(kv::AppendToFile(fresh, record).ok);
    }
    EXPECT_FALSE(fs::exists(fresh));

    ASSERT_TRUE(kv::AppendToFile(dump, "second\n").ok);
    EXPECT_EQ(ReadText(dump.string()), "first record\nsecond\n");
}

}  // namespace
