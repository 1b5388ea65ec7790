#include <gtest/gtest.h>

#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

class CursorTest : public HistoryTest {
protected:
    void SetUp() override {
        std::vector<std::string> records;
        for (int i = 0; i < 10; ++i) {
            records.push_back(
                BzRecord("10:0" + std::to_string(i), 12 + i * 0.25, i * 0.55, 100, 7));
        }
        WriteLog("BZ_2026_03_07.txt", records);
    }
};

TEST_F(CursorTest, MovingShowsTheRecordUnderTheMouse) {
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Plot_MouseMove(2.6, 0);
    // vt rounds X + ViewStart (4th record); the others take the whole part of X (3rd record).
    EXPECT_EQ(Text(bz, "vt"), "10:03");
    EXPECT_EQ(Text(bz, "vv"), "12.5 V");
    EXPECT_EQ(Text(bz, "av"), "1.1 A");
    EXPECT_EQ(Text(bz, "wv"), "14 W");
    EXPECT_EQ(Text(bz, "rv"), "100 RPM");
    EXPECT_EQ(Text(bz, "sv"), "7 mph");
    bz.Plot_MouseMove(20000, 0);  // beyond the arrays: the move ends silently
    EXPECT_EQ(Text(bz, "vt"), "10:03");
}

TEST_F(CursorTest, ADragToTheRightZoomsByReadingTheLogAgain) {
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Plot_MouseMove(2, 0);
    bz.Plot_MouseDown(2, 0);
    bz.Plot_MouseMove(6, 0);
    EXPECT_EQ(Draw("GraphBZ").back(), "line 2 0 6 0 255");  // the rubber band
    bz.Plot_MouseUp(6, 0);
    // The chart of the selection sets the boxes from records 2 and 6 (10:01 and 10:05), the read
    // keeps what lies strictly between, and its chart sets them to the new view.
    EXPECT_EQ(Text(bz, "Time1m"), "02");
    EXPECT_EQ(Text(bz, "Time2m"), "04");
    EXPECT_EQ(bz.RecordCount, 3);
    EXPECT_EQ(bz.ViewStart, 1);
    EXPECT_EQ(bz.ViewEnd, 3);
    EXPECT_EQ(bz.ZoomLock, 0);
}

TEST_F(CursorTest, ADragToTheLeftOnlyMovesTheViewStart) {
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Plot_MouseDown(5.5, 0);
    bz.Plot_MouseUp(3, 0);
    EXPECT_EQ(bz.RecordCount, 10);
    EXPECT_EQ(bz.ViewStart, 5.5);
    EXPECT_EQ(bz.DragActive, 0);
    // No move came first, so the start boxes took the empty vt. The rows start from the
    // position rounded to a whole number, halves to even: record 6.
    bz.Click("CSV");
    EXPECT_EQ(folder.Read("excel/BZ_2026_03_07__1009.csv").substr(0, 38),
              "TIME,VOLTS,AMPS,WATTS,RPM,SPEED\r\n10:05");
}

}  // namespace
}  // namespace brizalog::testing
