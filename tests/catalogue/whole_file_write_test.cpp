#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "support/failure_kind.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

using testing::FailureKindOf;
using testing::TestFolder;
namespace fs = std::filesystem;

// The new files that writers left beside `path`.
std::vector<fs::path> Leftovers(const fs::path& path) {
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(path.parent_path())) {
        if (IsReplacementOf(entry.path(), path)) {
            found.push_back(entry.path());
        }
    }
    return found;
}

constexpr const char* kOldSettings = "Program Config File\r\n\r\n<Port>7</Port>\r\n";

// A writer killed at the instant its new text is complete but not yet in place, as a power cut
// would stop it: the last thing it does is ask for the disk.
void KilledBeforeRename(const fs::path& path, const std::string& text) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        SetDiskSync([](const fs::path&) -> std::error_code {
            raise(SIGKILL);
            return {};
        });
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
    const std::vector<fs::path> left = Leftovers(path);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(folder.Read(left[0].filename().string()), std::string(4000, 'x'));

    // The next save replaces the old file and clears the leftover away.
    WriteWholeFile(path, "<Port>8</Port>");
    EXPECT_EQ(folder.Read("hardware.cfg"), "<Port>8</Port>");
    EXPECT_TRUE(Leftovers(path).empty());
}

// A disk that cannot make the new text durable, or that took only part of it, never lets the
// new file take the old one's place, and no new file stays behind.
TEST(WholeFileWrite, ANewFileThatIsNotWholeAndDurableNeverReplacesTheOldOne) {
    TestFolder folder;
    folder.Write("hardware.cfg", kOldSettings);
    const fs::path path = folder.path() / "hardware.cfg";
    SetDiskSync([](const fs::path& synced) -> std::error_code {
        // Only the new file fails; the folder's sync is not reached.
        return fs::is_regular_file(synced) ? std::make_error_code(std::errc::io_error)
                                           : std::error_code();
    });
    try {
        WriteWholeFile(path, "<Port>9</Port>");
        ADD_FAILURE() << "no failure raised";
    } catch (const FileFailure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::FileAccess);
        EXPECT_EQ(failure.path(), path);
        EXPECT_EQ(failure.reason(), std::make_error_code(std::errc::io_error).message());
    }
    SetDiskSync(nullptr);
    EXPECT_EQ(folder.Read("hardware.cfg"), kOldSettings);
    EXPECT_TRUE(Leftovers(path).empty());
}

// Whole-file reads of anything but a regular file are the failure the callers trap; a folder
// used to pass for a file of an absurd size and end the program.
TEST(WholeFileWrite, ReadingWhatIsNoRegularFileIsAFileFailure) {
    TestFolder folder;
    fs::create_directories(folder.path() / "info.cfg");
    fs::create_symlink(folder.path() / "info.cfg", folder.path() / "link.cfg");
    for (const fs::path& path :
         {folder.path() / "info.cfg", folder.path() / "link.cfg", fs::path("/dev/zero")}) {
        EXPECT_EQ(FailureKindOf([&] { ReadWholeFile(path); }), FailureKind::FileAccess) << path;
    }
    EXPECT_EQ(FailureKindOf([&] { ReadWholeFile(folder.path() / "none.cfg"); }),
              FailureKind::FileNotFound);
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
        SetDiskSync([](const fs::path&) -> std::error_code {
            raise(SIGKILL);
            return {};
        });
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
