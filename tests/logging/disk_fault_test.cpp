#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <filesystem>

#include "logging/logging_rig.h"

namespace brizalog::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLog = "logs/BZ_2026_03_07.txt";
constexpr const char* kSheet = "excel/2026_03_07.xls";

// One interval of one frame: 10 A at 13 V on the first windmill.
void Interval(LoggingRig& rig, int minute) {
    rig.At(2026, 3, 7, 14, minute, 0);
    rig.s.GoodDataCount = 1;
    rig.Frames(1, 9, 13);
    rig.Frames(1, 1, 10);
    rig.FramesWatts(1, 1, 130);
    rig.form.Timer1_Timer();
}

std::string Record(int minute) {
    return "<T>14:0" + std::to_string(minute) +
           "</T><L>30</L><V1>13.00</V1><A1>10.0</A1><A2>0.0</A2><A3>0.0</A3><A4>0.0</A4>"
           "<R2>0</R2><R1>0</R1><WS>0</WS>\r\n";
}

// Whatever the disk does, the tick says nothing, keeps its sums and energy going, and writes
// again as soon as it can; what was written before stays as it was.
void ExpectQuietAndCounting(const LoggingRig& rig, double intervals) {
    EXPECT_TRUE(rig.dialogs.messages.empty());
    EXPECT_EQ(rig.s.LoggingActive, 1);
    EXPECT_DOUBLE_EQ(rig.s.WattHours[1], intervals * 130 * 30 / 3600);
}

TEST(DiskFaults, ALogsFolderRemovedWhileLoggingIsWrittenAgainOnceItIsBack) {
    LoggingRig rig;
    rig.form.startMENU_Click();
    Interval(rig, 1);
    fs::remove_all(rig.folder.path() / "logs");
    Interval(rig, 2);
    ExpectQuietAndCounting(rig, 2);
    fs::create_directory(rig.folder.path() / "logs");
    Interval(rig, 3);
    ExpectQuietAndCounting(rig, 3);
    EXPECT_EQ(rig.Read(kLog), Record(3));
}

TEST(DiskFaults, AFullDiskLosesOnlyTheRecordsItRefusedAndNeverTheEarlierOnes) {
    LoggingRig rig;
    rig.s.settings.SaveExcel = 1;
    rig.form.startMENU_Click();
    Interval(rig, 1);
    const std::string sheet = rig.Read(kSheet);
    // The log becomes a link to a device that is always full.
    fs::rename(rig.folder.path() / kLog, rig.folder.path() / "logs/kept.txt");
    fs::create_symlink("/dev/full", rig.folder.path() / kLog);
    Interval(rig, 2);
    ExpectQuietAndCounting(rig, 2);
    EXPECT_TRUE(fs::is_character_file(rig.folder.path() / kLog));  // the device is left alone
    EXPECT_GT(rig.Read(kSheet).size(), sheet.size());              // the spreadsheet goes on

    // Space again: the next record follows the earlier ones, undamaged.
    fs::remove(rig.folder.path() / kLog);
    fs::rename(rig.folder.path() / "logs/kept.txt", rig.folder.path() / kLog);
    Interval(rig, 3);
    ExpectQuietAndCounting(rig, 3);
    EXPECT_EQ(rig.Read(kLog), Record(1) + Record(3));
}

TEST(DiskFaults, AFullDiskUnderTheSpreadsheetKeepsTheLogGoing) {
    LoggingRig rig;
    rig.s.settings.SaveExcel = 1;
    rig.form.startMENU_Click();
    fs::create_symlink("/dev/full", rig.folder.path() / kSheet);
    Interval(rig, 1);
    Interval(rig, 2);
    ExpectQuietAndCounting(rig, 2);
    EXPECT_TRUE(fs::is_character_file(rig.folder.path() / kSheet));
    EXPECT_EQ(rig.Read(kLog), Record(1) + Record(2));
}

TEST(DiskFaults, AMissingSpreadsheetFolderIsPassedOverWithoutAWord) {
    LoggingRig rig;
    rig.s.settings.SaveExcel = 1;
    rig.form.startMENU_Click();
    fs::remove_all(rig.folder.path() / "excel");
    Interval(rig, 1);
    ExpectQuietAndCounting(rig, 1);
    EXPECT_FALSE(rig.folder.Exists("excel"));
    EXPECT_EQ(rig.Read(kLog), Record(1));

    fs::create_directory(rig.folder.path() / "excel");
    Interval(rig, 2);
    EXPECT_TRUE(rig.folder.Exists(kSheet));
}

// Read-only to everyone, the superuser included: an immutable folder or file where the file
// system has the flag, else one without write permission. False when neither can be had.
bool SetReadOnly(const fs::path& path, bool readOnly) {
    if (geteuid() != 0) {
        fs::permissions(path, fs::perms::owner_write,
                        readOnly ? fs::perm_options::remove : fs::perm_options::add);
        return true;
    }
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    int flags = 0;
    bool done = ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0;
    flags = readOnly ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    done = done && ioctl(descriptor, FS_IOC_SETFLAGS, &flags) == 0;
    close(descriptor);
    return done;
}

TEST(DiskFaults, AReadOnlyLogsFolderKeepsWhatItHasAndTakesRecordsAgainOnceWritable) {
    LoggingRig rig;
    rig.s.settings.SaveExcel = 1;
    rig.form.startMENU_Click();
    Interval(rig, 1);
    const fs::path logs = rig.folder.path() / "logs";
    if (!SetReadOnly(rig.folder.path() / kLog, true) || !SetReadOnly(logs, true)) {
        SetReadOnly(rig.folder.path() / kLog, false);
        GTEST_SKIP() << "this file system cannot make a folder read-only to the superuser";
    }
    Interval(rig, 2);
    rig.At(2026, 3, 8, 0, 0, 5);  // a new day's file cannot be made either
    rig.s.GoodDataCount = 1;
    rig.form.Timer1_Timer();
    SetReadOnly(logs, false);
    SetReadOnly(rig.folder.path() / kLog, false);
    ExpectQuietAndCounting(rig, 2);
    EXPECT_FALSE(rig.folder.Exists("logs/BZ_2026_03_08.txt"));
    EXPECT_EQ(rig.Read(kLog), Record(1));
    EXPECT_TRUE(rig.folder.Exists("excel/2026_03_08.xls"));  // the spreadsheet goes on

    Interval(rig, 3);
    EXPECT_EQ(rig.Read(kLog), Record(1) + Record(3));
}

}  // namespace
}  // namespace brizalog::testing
