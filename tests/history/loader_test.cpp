#include <gtest/gtest.h>

#include <cmath>

#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

using Messages = std::vector<std::string>;

class LoaderTest : public HistoryTest {};

TEST_F(LoaderTest, ReadsEveryFamilyAsTheLoggingTickWritesIt) {
    WriteLog("BZ_2026_03_07.txt",
             {"<T>14:05</T><L>30</L><V1>13.27</V1><A1>4.4</A1><A2>0.0</A2><A3>12.1</A3>"
              "<A4>0.3</A4><R2>0</R2><R1>312</R1><WS>8</WS>",
              BzRecord("14:06", 12.5, 2, 100, 3)});
    GraphWindow& bz = windows.Open("GraphBZ");
    ASSERT_EQ(bz.RecordCount, 2);
    EXPECT_DOUBLE_EQ(bz.Series(0)[1], 13.27);
    EXPECT_DOUBLE_EQ(bz.Series(3)[1], 12.1);
    EXPECT_DOUBLE_EQ(bz.Series(5)[1], 13.27 * 4.4);  // watts are volts times amps
    EXPECT_DOUBLE_EQ(bz.Series(7)[1], 13.27 * 12.1);
    // Both RPM series read channel 13's tag; <R2> of the log is never read.
    EXPECT_EQ(bz.Series(9)[1], 312);
    EXPECT_EQ(bz.Series(10)[1], 312);
    EXPECT_EQ(bz.Series(11)[1], 8);
    EXPECT_EQ(bz.LogInterval[2], 30);
    EXPECT_DOUBLE_EQ(bz.LogTime[2], (14 * 60 + 6) / 1440.0);

    WriteLog("RE_2026_03_07.txt",
             {"<T>14:05</T><L>30</L><V1>13.27</V1><W1>58</W1><W2>0</W2><W3>161</W3><W4>4</W4>"
              "<W5>0</W5><W6>0</W6><W7>0</W7><W8>9</W8>",
              "<T>14:06</T><V1>13.27</V1>"});
    GraphWindow& re = windows.Open("GraphRE");
    ASSERT_EQ(re.RecordCount, 2);
    EXPECT_EQ(re.Series(0)[1], 58);
    EXPECT_EQ(re.Series(7)[1], 9);
    EXPECT_DOUBLE_EQ(re.Series(8)[1], 13.27);
    EXPECT_EQ(re.LogInterval[2], 10);  // an absent <L> is 10 in GraphRE

    WriteLog("ML_2026_03_07.txt",
             {"<T>14:05</T><L>30</L><V1>13.27</V1><V2>26.40</V2><V3>0.00</V3><P1>12</P1>"
              "<P2>7</P2>",
              "<T>14:06</T><L>30</L>"});
    GraphWindow& ml = windows.Open("GraphML");
    ASSERT_EQ(ml.RecordCount, 2);
    EXPECT_DOUBLE_EQ(ml.Series(1)[1], 26.40);
    EXPECT_EQ(ml.Series(3)[1], 12);
    EXPECT_EQ(ml.Series(4)[1], 7);
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(LoaderTest, KeepsOnlyOddLengthTimesStrictlyInsideTheRange) {
    WriteLog("BZ_2026_03_07.txt",
             {BzRecord("00:00", 12, 1), BzRecord("9:05", 12, 1), BzRecord("14:05:10", 12, 1),
              BzRecord("08:15", 12, 1), BzRecord("10:00", 12, 1), BzRecord("17:30", 12, 1),
              BzRecord("23:59", 12, 1), "<L>30</L><V1>12.00</V1>", "<T>25:00</T>"});
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_EQ(bz.RecordCount, 3);  // 08:15, 10:00, 17:30
    bz.SetText("Time1h", "08");
    bz.SetText("Time1m", "15");
    bz.SetText("Time2h", "17");
    bz.SetText("Time2m", "30");
    bz.Click("DisplayButton");
    EXPECT_EQ(bz.RecordCount, 1);  // the limits themselves are left out
    bz.SetText("Time2h", "1x");
    bz.Click("DisplayButton");
    EXPECT_EQ(TakeMessages(), Messages{"Type mismatch"});
    EXPECT_TRUE(bz.loaded);
}

TEST_F(LoaderTest, AbsentFieldsFollowEachMembersScratchSharing) {
    // GraphBZ: volts and the interval share one scratch value.
    WriteLog("BZ_2026_03_07.txt",
             {"<T>10:00</T><L>30</L><A1>2.0</A1>", "<T>10:01</T><A1>2.0</A1>"});
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_EQ(bz.Series(0)[1], 30);
    EXPECT_EQ(bz.Series(5)[1], 60);
    EXPECT_EQ(bz.LogInterval[2], 0);
    // GraphDEMO: one scratch for all; an absent <L> repeats the wind speed before it.
    WriteLog("WD_2026_03_07.txt", {"<T>10:00</T><V>12.00</V><I>2.0</I><R>300</R><S>7</S>"});
    GraphWindow& demo = windows.Open("GraphDEMO");
    EXPECT_EQ(demo.LogInterval[1], 7);
    EXPECT_EQ(demo.Series(2)[1], 24);
    // GraphCC: <C2 lacks its bracket in every log, so the second temperature repeats the first;
    // GraphCC_QX derives six more series.
    WriteLog("CC_2026_03_07.txt",
             {"<T>14:05</T><L>30</L><W1>512</W1><W2>600</W2><W3>97</W3><W4>0</W4><W5>1250</W5>"
              "<W6>0</W6><C1>21.5</C1><C20.0</C2>"});
    GraphWindow& qx = windows.Open("GraphCC_QX");
    EXPECT_EQ(qx.Series(1)[1], 21.5);
    const double derived[] = {512 - 97, 512 - 0, 97 + 1250, 600 - 0, 0, 600 - 512};
    for (int k = 0; k < 6; ++k) {
        EXPECT_EQ(qx.Series(8 + k)[1], derived[k]) << "W" << 7 + k;
    }
}

TEST_F(LoaderTest, MissingAndEmptyLogsGiveEachMembersMessage) {
    folder.Write("logs/BZ_2026_03_06.txt", "");
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_TRUE(TakeMessages().empty());  // no log today: silent at load
    bz.Click("File1", "BZ_2026_03_06.txt");
    EXPECT_EQ(bz.LogRecords.size(), 1u);
    bz.Click("File1", "BZ_2026_03_05.txt");
    EXPECT_EQ(TakeMessages(), (Messages{"No data for that date", "unknown file error"}));

    GraphWindow& demo = windows.Open("GraphDEMO");
    demo.Click("File1", "WD_2026_03_05.txt");
    EXPECT_TRUE(TakeMessages().empty());

    WriteLog("RE_2026_03_06.txt", {BzRecord("00:00", 12, 1)});
    GraphWindow& re = windows.Open("GraphRE");
    re.Click("File1", "RE_2026_03_05.txt");  // missing: no read, same closing test
    re.Click("File1", "RE_2026_03_06.txt");
    EXPECT_EQ(TakeMessages(), (Messages{"No data for today", "No data for this date"}));

    // GraphCC writes an empty line to the log before reading it, making a missing one.
    GraphWindow& cc = windows.Open("GraphCC");
    EXPECT_FALSE(folder.Exists("logs/CC_2026_03_07.txt"));
    cc.Click("DisplayButton");
    EXPECT_EQ(folder.Read("logs/CC_2026_03_07.txt"), "\r\n");
    cc.Click("DisplayButton");
    EXPECT_EQ(folder.Read("logs/CC_2026_03_07.txt"), "\r\n\r\n");
    EXPECT_EQ(TakeMessages(), (Messages{"No data for that date", "No data for that date"}));
}

TEST_F(LoaderTest, StopsAtTheTenThousandthRecordKeepingWhatItRead) {
    std::vector<std::string> records;
    for (int i = 0; i < 10001; ++i) {
        records.push_back(BzRecord("12:00", 12, i % 7));
    }
    WriteLog("BZ_2026_03_07.txt", records);
    GraphWindow& bz = windows.Window("GraphBZ");
    bz.LogTime[10000] = 0.25;
    windows.Open("GraphBZ");
    EXPECT_EQ(TakeMessages(), Messages{"Over 10,000 records, too many to display."});
    EXPECT_EQ(bz.RecordCount, 10000);
    EXPECT_EQ(bz.LogTime[10000], 0.25);
    EXPECT_EQ(bz.Series(1)[9999], 9998 % 7);
    EXPECT_EQ(bz.ViewEnd, 0);

    records.resize(9999);
    WriteLog("BZ_2026_03_07.txt", records);
    bz.Click("DisplayButton");
    EXPECT_TRUE(TakeMessages().empty());
    EXPECT_EQ(bz.ViewEnd, 9999);

    std::vector<std::string> re(10000, "<T>12:00</T><W1>5</W1>");
    WriteLog("RE_2026_03_07.txt", re);
    windows.Open("GraphRE");
    const Messages messages = TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].back(), ' ');
    EXPECT_NE(messages[0].find("Please use a smaller time range."), std::string::npos);
}

TEST_F(LoaderTest, AnOversizedIntegerValueShowsOverflowAndLeavesTheWindowOpen) {
    WriteLog("RE_2026_03_07.txt", {"<T>12:00</T><W4>32767.4</W4>", "<T>12:01</T><W4>32768</W4>"});
    GraphWindow& re = windows.Open("GraphRE");
    EXPECT_EQ(TakeMessages(), Messages{"Overflow"});
    EXPECT_TRUE(re.loaded);
    EXPECT_EQ(re.Series(3)[1], 32767);
}

// Digits beyond what a whole number holds are read by the number rule, never summed past it.
TEST_F(LoaderTest, AFieldOfManyDigitsReadsAsTheNumberItIs) {
    WriteLog("BZ_2026_03_07.txt",
             {"<T>12:00</T><V1>9788888888888888888.5</V1><A1>12345678901234567</A1>"});
    GraphWindow& bz = windows.Open("GraphBZ");
    ASSERT_EQ(bz.RecordCount, 1);
    EXPECT_DOUBLE_EQ(bz.Series(0)[1], 9788888888888888888.5);
    EXPECT_DOUBLE_EQ(bz.Series(1)[1], 12345678901234567.0);
}

// Watts of volts times amps beyond the largest number: the chart stops at the record with the
// message "Overflow" rather than drawing lines the screen cannot place, and the window stays.
TEST_F(LoaderTest, AChartWhoseValuesOverflowSaysSoAndDrawsOnlyFiniteLines) {
    WriteLog("BZ_2026_03_07.txt", {BzRecord("08:00", 13.27, 4.4, 312, 8),
                                   "<T>08:01</T><L>30</L><V1>1e300</V1><A1>1e300</A1>",
                                   BzRecord("08:02", 13.27, 4.4, 312, 8)});
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_EQ(TakeMessages(), Messages{"Overflow"});
    EXPECT_TRUE(bz.loaded);
    for (const RecordingPlot::Op& op : windows.PlotOf("GraphBZ").ops()) {
        for (double v : {op.x1, op.y1, op.x2, op.y2}) {
            EXPECT_TRUE(std::isfinite(v));
        }
    }
}

}  // namespace
}  // namespace brizalog::testing
