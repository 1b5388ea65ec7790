#include <gtest/gtest.h>

#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

using Names = std::vector<std::string>;

class SelectionTest : public HistoryTest {
protected:
    void SetUp() override {
        for (const char* name : {"BZ_2026_03_06.txt", "ML_2026_03_06.txt", "RE_2026_03_06_14.txt",
                                 "BZWattHours.txt", "CC_2026_03_06.txt"}) {
            folder.Write(std::string("logs/") + name, "");
        }
    }
};

TEST_F(SelectionTest, EachMemberListsItsOwnLogsWhateverTheirCase) {
    EXPECT_EQ(windows.Open("GraphML").File1Items(), Names{"ML_2026_03_06.txt"});
    EXPECT_EQ(windows.Open("GraphBZ").File1Items(),
              (Names{"BZ_2026_03_06.txt", "BZWattHours.txt"}));
    EXPECT_EQ(windows.Open("GraphDEMO").File1Items().size(), 5u);  // every .txt of the folder
}

TEST_F(SelectionTest, BoxesTakeStateColourAndCaptionFromTheChannelTable) {
    state.channels.ChannelName[13] = "TURBINE";
    state.channels.enableGRAPHING[14] = 1;
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_EQ(Text(bz, "CheckRPM"), "TURBINE");
    EXPECT_TRUE(bz.Find("CheckRPM2")->checked);
    EXPECT_EQ(bz.Find("CheckVolts")->foreColour, 16711935);
    EXPECT_EQ(bz.caption, "Brizalog of the hill");
    EXPECT_EQ(Text(bz, "FileName"), "BZ_2026_03_07.txt");
    // A box clicked with nothing loaded changes its flag and draws nothing.
    bz.Click("CheckAmps");
    EXPECT_EQ(bz.ShowFlag(1), 0);
    EXPECT_TRUE(Draw("GraphBZ").empty());
    // The curve charts hide the first boxes: the user cannot change them there.
    bz.Click("XAxisRPM");
    bz.SetText("CheckVolts", "0");
    EXPECT_TRUE(bz.Find("CheckVolts")->checked);
    EXPECT_EQ(bz.ShowFlag(0), 1);
}

TEST_F(SelectionTest, GraphCCStaysUnsetOnSystemZeroAndGraphREKeepsToTheLogs) {
    state.settings.SystemType = 0;
    GraphWindow& cc = windows.Open("GraphCC");
    EXPECT_TRUE(cc.File1Items().empty());
    EXPECT_EQ(Text(cc, "CheckW1"), "W1");
    EXPECT_EQ(Text(cc, "FileName"), "FileName");
    // GraphRE's list cannot leave the logs folder.
    GraphWindow& re = windows.Open("GraphRE");
    re.Click("Dir1", "/excel");
    EXPECT_EQ(re.file1Folder, "/logs");
    EXPECT_EQ(re.File1Items(), Names{"RE_2026_03_06_14.txt"});
}

}  // namespace
}  // namespace brizalog::testing
