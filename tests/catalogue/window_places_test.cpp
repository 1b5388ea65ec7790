#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "catalogue/window_places.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

using testing::TestFolder;

TEST(WindowPlaces, AreKeptAndReadBackAcrossRuns) {
    TestFolder folder;
    EXPECT_TRUE(ReadWindowPlaces(folder.path()).empty()) << "no file: every window at its default";
    const WindowPlaces places = {{"Brizalog", {10, 20, 700, 500}},
                                 {"setupHARDWAREchannels", {-5, 0, 640, 480}}};
    WriteWindowPlaces(places, folder.path());
    EXPECT_EQ(folder.Read("windows.cfg"),
              "<Brizalog>10,20,700,500</Brizalog>\r\n"
              "<setupHARDWAREchannels>-5,0,640,480</setupHARDWAREchannels>\r\n");
    EXPECT_EQ(ReadWindowPlaces(folder.path()), places);
}

TEST(WindowPlaces, ADamagedLineIsSkippedAndTheOthersStillCount) {
    const struct {
        const char* line;
        bool kept;
    } cases[] = {
        {"<BATTMonitor>1,2,300,200</BATTMonitor>", true},
        {"<BATTMonitor>1,2,300</BATTMonitor>", false},         // three numbers
        {"<BATTMonitor>1,2,300,200,9</BATTMonitor>", false},   // five
        {"<BATTMonitor>1,2,0,200</BATTMonitor>", false},       // no width
        {"<BATTMonitor>1,2,300,-4</BATTMonitor>", false},      // negative height
        {"<BATTMonitor>1,2,300,999999</BATTMonitor>", false},  // absurd height
        {"<BATTMonitor>1,2,3x0,200</BATTMonitor>", false},     // not a number
        {"<BATTMonitor>1,2,300,200</BATTMonitor2>", false},    // other end tag
        {"<BATTMonitor>1,2,300,200", false},                   // torn by a crash
        {"<>1,2,300,200</>", false},                           // no name
        {"<a b>1,2,300,200</a b>", false},                     // not a window's name
        {"\x01\xff<BATTMonitor>1,2,300,200</BATTMonitor>", false},
    };
    for (const auto& c : cases) {
        const std::string text = std::string("<Brizalog>0,0,640,480</Brizalog>\r\n") + c.line +
                                 "\r\n<info>5,5,9,9</info>";
        const WindowPlaces places = ParseWindowPlaces(text);
        EXPECT_EQ(places.count("BATTMonitor"), c.kept ? 1u : 0u) << c.line;
        EXPECT_EQ(places.count("Brizalog"), 1u) << c.line;
        EXPECT_EQ(places.count("info"), 1u) << c.line << " (last line without CR LF)";
    }
}

TEST(WindowPlaces, AFolderOrGarbageUnderTheNameGivesTheDefaults) {
    TestFolder folder;
    std::filesystem::create_directory(folder.path() / "windows.cfg");
    EXPECT_TRUE(ReadWindowPlaces(folder.path()).empty());
    TestFolder other;
    other.Write("windows.cfg", std::string("\0\0\xff<<<>>>", 9));
    EXPECT_TRUE(ReadWindowPlaces(other.path()).empty());
}

TEST(FitPlace, KeepsEveryWindowWhollyOnItsScreen) {
    const WindowPlace laptop{0, 0, 1366, 738};     // a 1,366 × 768 screen less its panel
    const WindowPlace scaled{0, 0, 683, 369};      // the same at 200 %
    const WindowPlace right{1366, 0, 1920, 1050};  // a second screen to the right
    const struct {
        const char* what;
        WindowPlace wanted;
        WindowPlace screen;
        WindowPlace fitted;
    } cases[] = {
        {"fits already", {100, 50, 600, 400}, laptop, {100, 50, 600, 400}},
        {"taller than the screen", {100, 50, 666, 735}, laptop, {100, 0, 666, 700}},
        {"too large at 200 %", {0, 0, 1332, 1470}, scaled, {0, 0, 675, 331}},
        {"left partly off to the right", {1200, 600, 400, 300}, laptop, {958, 400, 400, 300}},
        {"title bar above the screen", {10, -200, 400, 300}, laptop, {10, 0, 400, 300}},
        {"on a screen now gone", {3500, 900, 400, 300}, right, {2878, 712, 400, 300}},
        {"left of a second screen", {100, 100, 400, 300}, right, {1366, 100, 400, 300}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FitPlace(c.wanted, c.screen, 8, 38), c.fitted) << c.what;
    }
}

}  // namespace
}  // namespace brizalog
