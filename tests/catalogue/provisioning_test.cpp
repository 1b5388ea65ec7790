#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

using testing::FirstRunFile;
using testing::TestFolder;
namespace fs = std::filesystem;

const char* const kHelpFiles[][2] = {
    {"help.cfg", "this is the help text file\r\n"},
    {"hardwarehelp.cfg", "this is the hardwarehelp text file\r\n"},
    {"graphinghelp.cfg", "this is the graphinghelp text file\r\n"},
    {"credits.cfg", "this is the credits text file\r\n"},
    {"myinfo.cfg", "this is the myinfo text file\r\n"},
};

TEST(Provisioning, AnEmptyFolderGetsBothFoldersAndAllEightFiles) {
    TestFolder folder;
    ProvisionProgramFolder(folder.path());
    EXPECT_TRUE(fs::is_directory(folder.path() / "logs"));
    EXPECT_TRUE(fs::is_directory(folder.path() / "excel"));
    EXPECT_TRUE(fs::is_empty(folder.path() / "logs"));
    EXPECT_EQ(folder.Read("channels.cfg"), FirstRunFile("channels.cfg"));
    EXPECT_EQ(folder.Read("calibrations.cfg"), FirstRunFile("calibrations.cfg"));
    for (const auto& [name, text] : kHelpFiles) {
        EXPECT_EQ(folder.Read(name), text) << name;
    }
    // The channel table and the settings share one accumulator: the first hardware.cfg is the
    // table (without the CR LF its own print added) followed by shape C.
    const std::string channels = FirstRunFile("channels.cfg");
    EXPECT_EQ(folder.Read("hardware.cfg"),
              channels.substr(0, channels.size() - 2) + FirstRunFile("hardware.cfg"));
    int entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder.path())) {
        ++entries;
    }
    EXPECT_EQ(entries, 10);
}

TEST(Provisioning, AMissingSettingsFileAloneIsShapeC) {
    TestFolder folder;
    ProvisionProgramFolder(folder.path());
    fs::remove(folder.path() / "hardware.cfg");
    ProvisionProgramFolder(folder.path());
    EXPECT_EQ(folder.Read("hardware.cfg"), FirstRunFile("hardware.cfg"));
}

TEST(Provisioning, NeverTouchesAnExistingFileOrFolder) {
    TestFolder folder;
    const std::pair<const char*, const char*> own[] = {{"channels.cfg", "<C1>mine</C1>"},
                                                       {"hardware.cfg", "my settings"},
                                                       {"calibrations.cfg", ""},
                                                       {"help.cfg", "How to read the panel\r\n"},
                                                       {"hardwarehelp.cfg", "wiring"},
                                                       {"graphinghelp.cfg", "graphs"},
                                                       {"credits.cfg", "us"},
                                                       {"myinfo.cfg", "me"},
                                                       {"logs/WD_2026_03_07.txt", "<T>14:05"}};
    for (const auto& [name, text] : own) {
        folder.Write(name, text);
    }
    const auto stamp = fs::last_write_time(folder.path() / "help.cfg");
    ProvisionProgramFolder(folder.path());
    for (const auto& [name, text] : own) {
        EXPECT_EQ(folder.Read(name), text) << name;
    }
    EXPECT_EQ(fs::last_write_time(folder.path() / "help.cfg"), stamp);
    EXPECT_TRUE(fs::is_directory(folder.path() / "excel"));
}

TEST(Provisioning, OnlyTheDeletedCalibrationComesBack) {
    TestFolder folder;
    ProvisionProgramFolder(folder.path());
    folder.Write("channels.cfg", "edited");
    fs::remove(folder.path() / "calibrations.cfg");
    ProvisionProgramFolder(folder.path());
    EXPECT_EQ(folder.Read("calibrations.cfg"), FirstRunFile("calibrations.cfg"));
    EXPECT_EQ(folder.Read("channels.cfg"), "edited");
}

TEST(Provisioning, AFolderInAnotherCaseIsTheSameFolder) {
    TestFolder folder;
    fs::create_directory(folder.path() / "Excel");
    ProvisionProgramFolder(folder.path());
    EXPECT_FALSE(fs::exists(folder.path() / "excel"));
}

TEST(Provisioning, TheAbortMessageSaysTheProgramGoesOn) {
    EXPECT_EQ(AbortMessage("/home/wind/brizalog"),
              "Folders and Files have ALREADY been created in folder  \r\n"
              "/home/wind/brizalog\r\n"
              "\r\n"
              "USE THE EXIT MENU ON THE NEXT SCREEN TO STOP THE PROGRAM\r\n"
              "\r\n"
              "THE FILES AND FOLDERS CREATED HAVE TO BE MANUALLY DELETED\r\n"
              "                             TO UNINSTALL THE PROGRAM");
}

TEST(ProgramFolderPaths, ResolveEitherSeparatorAndAnyCase) {
    TestFolder folder;
    folder.Write("excel/x.csv", "1");
    folder.Write("logs/BZ_2026_03_07.txt", "2");
    EXPECT_EQ(InFolder(folder.path(), "/Excel/x.csv"), folder.path() / "excel" / "x.csv");
    EXPECT_EQ(InFolder(folder.path(), "\\LOGS\\bz_2026_03_07.TXT"),
              folder.path() / "logs" / "BZ_2026_03_07.txt");
    // A name that exists nowhere keeps the spelling it was given, under the resolved folder.
    EXPECT_EQ(InFolder(folder.path(), "/Excel/New.csv"), folder.path() / "excel" / "New.csv");
    EXPECT_EQ(InFolder(folder.path(), "/Whours.txt"), folder.path() / "Whours.txt");
}

TEST(ProgramFolderPaths, ListFilesMatchesPatternsWithoutCase) {
    TestFolder folder;
    for (const char* name :
         {"BZ_2026_03_08.txt", "bz_2026_03_07.TXT", "RE_2026_03_07.txt", "BZWattHours.txt"}) {
        folder.Write(std::string("logs/") + name, "");
    }
    EXPECT_EQ(ListFiles(folder.path() / "logs", "BZ_*.txt"),
              (std::vector<std::string>{"bz_2026_03_07.TXT", "BZ_2026_03_08.txt"}));
    EXPECT_EQ(ListFiles(folder.path() / "logs", "??_2026_03_07.*").size(), 2u);
    EXPECT_TRUE(ListFiles(folder.path() / "nothing", "*").empty());
}

}  // namespace
}  // namespace brizalog
