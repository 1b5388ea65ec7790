#include <gtest/gtest.h>

#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

using Lines = std::vector<std::string>;

class ChartTest : public HistoryTest {
protected:
    // Only the given boxes of GraphBZ stay checked.
    void ShowOnly(GraphWindow& bz, std::initializer_list<std::string_view> boxes) {
        for (const SeriesRow& row : bz.member().series) {
            bool wanted = false;
            for (std::string_view box : boxes) {
                wanted = wanted || box == row.box;
            }
            bz.SetText(row.box, wanted ? "1" : "0");
        }
    }
    static Lines ZeroLines(const Lines& lines) {
        Lines found;
        for (const std::string& line : lines) {
            if (line.ends_with(" -256")) {
                found.push_back(line);
            }
        }
        return found;
    }
    static Lines Matching(const Lines& lines, std::string_view prefix) {
        Lines found;
        for (const std::string& line : lines) {
            if (line.rfind(prefix, 0) == 0) {
                found.push_back(line);
            }
        }
        return found;
    }
};

TEST_F(ChartTest, TwoRecordsSetTheLabelsAndDrawNothing) {
    WriteLog("BZ_2026_03_07.txt", {BzRecord("08:15", 12, 1), BzRecord("17:30", 12, 1)});
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_EQ(Text(bz, "stime"), "08:15");
    EXPECT_EQ(Text(bz, "ftime"), "17:30");
    EXPECT_EQ(Text(bz, "Time2m"), "30");
    EXPECT_EQ(windows.PlotOf("GraphBZ").ScaleWidth(), -1);
    EXPECT_TRUE(Matching(Draw("GraphBZ"), "line").empty());
}

TEST_F(ChartTest, DrawsEachRecordsSegmentsInTableOrderWithMargins) {
    WriteLog("BZ_2026_03_07.txt", {BzRecord("10:00", 12, 1), BzRecord("10:01", 13, 2),
                                   BzRecord("10:02", 14, 3), BzRecord("10:03", 15, 4)});
    GraphWindow& bz = windows.Open("GraphBZ");
    ShowOnly(bz, {"CheckVolts", "CheckAmps"});
    // The surface keeps the last height of the previous run (wind: 52.5) until the width is
    // set. Volts: limit 60, height 63, margin 1.5; amps: limit 20, height 21, margin 0.5.
    const Lines drawn = Draw("GraphBZ");
    EXPECT_EQ(Lines(drawn.begin(), drawn.begin() + 5),
              (Lines{"scale 1 52.5", "scale 1 21", "scale 1 1050", "scale 1 63",
                     "line 0 49.5 1 48.5 16711935"}));
    EXPECT_EQ(Matching(drawn, "line"),
              (Lines{"line 0 49.5 1 48.5 16711935", "line 0 19.5 1 18.5 16711680",
                     "line 1 48.5 2 47.5 16711935", "line 1 18.5 2 17.5 16711680"}));
    // Energy of the two inner records only: 13 × 2 and 14 × 3 watts for 30 s each.
    EXPECT_EQ(Text(bz, "wh1"), "1 Wh");
    EXPECT_EQ(Text(bz, "wh2"), "0 Wh");
}

TEST_F(ChartTest, ZeroLinesAppearOnlyWhenTheUnscaledRangeCrossesZero) {
    WriteLog("BZ_2026_03_07.txt", {BzRecord("10:00", 12, -1), BzRecord("10:01", 12, -3),
                                   BzRecord("10:02", 12, 2), BzRecord("10:03", 12, 1)});
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_TRUE(ZeroLines(Draw("GraphBZ")).empty());
    bz.Click("CheckScaling");
    EXPECT_EQ(Text(bz, "CheckScaling"), "Unscaled");
    // Inner amps -3 and 2, watts -36 and 24: each zero line lies at y = range top, in record
    // numbers from 1 to 4, a margin above value 0.
    EXPECT_EQ(ZeroLines(Draw("GraphBZ")), (Lines{"line 1 2 4 2 -256", "line 1 24 4 24 -256"}));
}

TEST_F(ChartTest, GraphDemoNeedsMoreThanFiveRecords) {
    std::vector<std::string> records;
    for (int i = 0; i < 6; ++i) {
        records.push_back("<T>10:0" + std::to_string(i) + "</T><L>30</L><V>12.00</V>");
    }
    WriteLog("WD_2026_03_07.txt", records);
    GraphWindow& demo = windows.Open("GraphDEMO");
    EXPECT_EQ(TakeMessages(), std::vector<std::string>{"Not enough data to plot"});
    EXPECT_EQ(Text(demo, "stime"), "Start");
    // Its load put PersonalString into GraphBZ's caption and brought that window in, hidden.
    EXPECT_EQ(demo.caption, "GraphDEMO");
    EXPECT_EQ(windows.Window("GraphBZ").caption, "Brizalog of the hill");
    EXPECT_TRUE(windows.Window("GraphBZ").loaded);
    EXPECT_FALSE(windows.Window("GraphBZ").visible);
}

TEST_F(ChartTest, ExtremeLabelsAlternateAcrossLabelsWithTheirFixedTexts) {
    WriteLog("BZ_2026_03_07.txt",
             {BzRecord("10:00", 12, 1, 0, 0, 30, 9), BzRecord("10:01", 13, 2, 0, 0, 30, 2),
              BzRecord("10:02", 14, 3, 0, 0, 30, 4), BzRecord("10:03", 15, 4, 0, 0, 30, 9)});
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Click("vv");
    EXPECT_EQ(Text(bz, "vv"), "MIN 13.00 V");
    bz.Click("av");
    EXPECT_EQ(Text(bz, "av"), "MAX 3.0 A");
    bz.Click("a2v");  // its minimum starts at 0 and is never reset: always the fixed text
    EXPECT_EQ(Text(bz, "a2v"), " Min = 0 A");
    bz.Click("sv");
    EXPECT_EQ(Text(bz, "sv"), "MAX 0.0");
    bz.Click("rv");
    EXPECT_EQ(Text(bz, "rv"), " Min = 0 rpm");
    EXPECT_EQ(bz.ExtremeMax(2), 4);
}

TEST_F(ChartTest, DerivedSeriesOfQuixbyScaleToTheirOwnValues) {
    WriteLog("CC_2026_03_07.txt", {"<T>10:00</T><L>6</L><W1>100</W1><W3>10</W3>",
                                   "<T>10:01</T><L>6</L><W1>300</W1><W3>20</W3>",
                                   "<T>10:02</T><L>6</L><W1>500</W1><W3>40</W3>",
                                   "<T>10:03</T><L>6</L><W1>700</W1><W3>80</W3>"});
    GraphWindow& qx = windows.Open("GraphCC_QX");
    EXPECT_EQ(qx.RangeTop(8), 460);  // W7 = W1 − W3 over the two inner records
    EXPECT_EQ(qx.RangeBottom(8), 280);
    EXPECT_EQ(qx.RangeTop(2), 1000);  // W1 keeps its channel's limit
    EXPECT_EQ(Text(qx, "wH7"), "1 Wh");
}

// The wind curve runs up to the wind's range top of the last time chart that was drawn: after
// an unscaled chart of a logged wind of a billion, that is the failure Overflow, said in a
// message, not a curve of a billion steps.
TEST_F(ChartTest, AWindCurveBeyondTheLongestCountSaysOverflow) {
    std::vector<std::string> records;
    for (int k = 0; k < 8; ++k) {
        records.push_back("<T>08:0" + std::to_string(k) + "</T><L>30</L><V>13.27</V><I>4.4</I>" +
                          "<R>312</R><S>" + (k == 3 ? "1e9" : "8") + "</S>  0.000Wh");
    }
    WriteLog("WD_2026_03_07.txt", records);
    GraphWindow& demo = windows.Open("GraphDEMO");
    demo.SetText("CheckScaling", "0");
    // A narrower range: too few records for a chart, so the unscaled range stays.
    demo.SetText("Time1h", "08");
    demo.SetText("Time2h", "08");
    demo.SetText("Time2m", "04");
    demo.Click("DisplayButton");
    ASSERT_EQ(demo.RecordCount, 3);
    TakeMessages();
    demo.Click("XAxisWind");
    EXPECT_EQ(TakeMessages(), (std::vector<std::string>{"Not enough data to plot", "Overflow"}));
    EXPECT_LT(windows.PlotOf("GraphDEMO").ops().size(), 1000u);
    EXPECT_TRUE(demo.loaded);
}

}  // namespace
}  // namespace brizalog::testing
