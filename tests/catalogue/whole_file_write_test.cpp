#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "support/failure_kind.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

using testing::FailureKindOf;
using testing::TestFolder;
namespace fs = std::filesystem;

constexpr const char* kOldSettings = "Program Config File\r\n\r\n<Port>7</Port>\r\n";

// A writer killed at the instant its new text is complete but not yet in place, as a power cut
// would stop it: the last thing it does is ask for the disk.
void KilledBeforeRename(const fs::path& path, const std::string& text) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        SetDiskSync([](const fs::path&) { raise(SIGKILL); });
        WriteWholeFile(path, text);
        _exit(0);  // not reached: the writer is killed first
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
}

TEST(WholeFileWrite, AWriterKilledBeforeTheRenameLeavesTheOldFileWhole) {
    TestFolder folder;
    folder.Write("hardware.cfg", kOldSettings);
    const fs::path path = folder.path() / "hardware.cfg";

    KilledBeforeRename(path, std::string(4000, 'x'));

    EXPECT_EQ(folder.Read("hardware.cfg"), kOldSettings);
    // The new text was complete beside it: the kill fell between the write and the rename.
    EXPECT_EQ(folder.Read("hardware.cfg.new"), std::string(4000, 'x'));

    // The next save replaces both the leftover and the old file.
    WriteWholeFile(path, "<Port>8</Port>");
    EXPECT_EQ(folder.Read("hardware.cfg"), "<Port>8</Port>");
    EXPECT_FALSE(folder.Exists("hardware.cfg.new"));
}

TEST(WholeFileWrite, EveryConfigurationWriterGoesThroughTheReplacement) {
    TestFolder folder;
    Settings settings;
    settings.PortNumber = 5;
    WriteSettingsFile(settings, folder.path());
    const std::string saved = folder.Read("hardware.cfg");
    ASSERT_NE(saved.find("<Port>5</Port>"), std::string::npos);

    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        SetDiskSync([](const fs::path&) { raise(SIGKILL); });
        settings.PortNumber = 6;
        WriteSettingsFile(settings, folder.path());
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(folder.Read("hardware.cfg"), saved);
}

TEST(WholeFileWrite, TheReplacementKeepsLinksAndPermissions) {
    TestFolder folder;
    folder.Write("real/hardware.cfg", kOldSettings);
    fs::permissions(folder.path() / "real/hardware.cfg",
                    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_symlink(folder.path() / "real/hardware.cfg", folder.path() / "hardware.cfg");

    WriteWholeFile(folder.path() / "hardware.cfg", "new");

    EXPECT_TRUE(fs::is_symlink(folder.path() / "hardware.cfg"));
    EXPECT_EQ(folder.Read("real/hardware.cfg"), "new");
    EXPECT_EQ(fs::status(folder.path() / "real/hardware.cfg").permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST(WholeFileWrite, AFolderThatIsGoneIsTheFailurePathNotFound) {
    TestFolder folder;
    EXPECT_EQ(
        FailureKindOf([&] { WriteWholeFile(folder.path() / "missing" / "hardware.cfg", "text"); }),
        FailureKind::PathNotFound);
}

}  // namespace
}  // namespace brizalog
