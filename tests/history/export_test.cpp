#include <gtest/gtest.h>

#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

using Messages = std::vector<std::string>;

class ExportTest : public HistoryTest {};

TEST_F(ExportTest, CsvCarriesTheViewWithTheMembersPatterns) {
    WriteLog("BZ_2026_03_07.txt", {BzRecord("08:15", 0.5, 4.4, 0, 8), BzRecord("09:00", 13.27, 0)});
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Click("CSV");
    EXPECT_EQ(TakeMessages(), Messages{"Done"});
    // A zero through "####" prints nothing: that field is empty.
    EXPECT_EQ(folder.Read("excel/BZ_2026_03_07_0815_0900.csv"),
              "TIME,VOLTS,AMPS,WATTS,RPM,SPEED\r\n"
              "08:15,.50,4.40,2.20,,8.0\r\n"
              "09:00,13.27,.00,.00,,.0\r\n");
    EXPECT_EQ(folder.Read("excel/BZ_2026_03_07.txt"), "\r\n");
    bz.Click("CSV");
    EXPECT_EQ(folder.Read("excel/BZ_2026_03_07.txt"), "\r\n\r\n");

    // GraphML: no marks in the Excel folder; the interval leads its columns. One record draws
    // no chart, so the time boxes keep the whole day.
    WriteLog("ML_2026_03_07.txt", {"<T>14:05</T><L>30</L><V1>13.27</V1><P1>12</P1><P2>0</P2>"});
    GraphWindow& ml = windows.Open("GraphML");
    ml.Click("CSV");
    EXPECT_EQ(folder.Read("excel/ML_2026_03_07_0000_2359.csv"),
              "TIME,Interval,volts1,volts2,volts3,pulse2,pulse3\r\n"
              "14:05,30,13.27,.00,.00,12,0\r\n");
    EXPECT_FALSE(folder.Exists("excel/ML_2026_03_07.txt"));
}

TEST_F(ExportTest, UnhandledExportFailuresShowTheirMessageAndKeepTheWindow) {
    WriteLog("BZ_2026_03_07.txt", {BzRecord("08:15", 12, 1)});
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.SetText("FileName", "BZ_2026_03_07");
    bz.Click("CSV");
    bz.SetText("FileName", "BZ_2026_03_07.txt");
    std::filesystem::remove_all(folder.path() / "excel");
    bz.Click("CSV");
    EXPECT_EQ(TakeMessages(), (Messages{"Invalid procedure call or argument", "Path not found"}));
    EXPECT_TRUE(bz.loaded);
}

TEST_F(ExportTest, CollationAddsTheLogOnDisplayOnceUnderTheMembersNames) {
    WriteLog("BZ_2026_03_06.txt", {BzRecord("08:15", 12, 1), BzRecord("09:15", 12, 1)});
    WriteLog("BZ_2026_03_05.txt", {BzRecord("08:15", 12, 1), BzRecord("09:15", 12, 1)});
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Click("Collate");
    bz.Click("File1", "BZ_2026_03_06.txt");  // makes the file; today's log gets no line yet
    bz.Click("File1", "BZ_2026_03_05.txt");
    bz.Click("File1", "BZ_2026_03_06.txt");
    bz.Click("File1", "BZ_2026_03_05.txt");
    EXPECT_EQ(folder.Read("logs/BZWattHours.txt"),
              "daily watthours for these dates\r\n\r\n"
              "BZ_2026_03_06.txt  ,  00000\r\n"
              "BZ_2026_03_05.txt  ,  00000\r\n");
    EXPECT_EQ(TakeMessages(), Messages{});

    // GraphCC creates "CCWattWours.txt" but reads "CCWattHours.txt": the second visit finds no
    // file to read, says so, and that click reads no log.
    WriteLog("CC_2026_03_06.txt", {"<T>10:00</T><W1>5</W1>", "<T>10:01</T><W1>5</W1>"});
    GraphWindow& cc = windows.Open("GraphCC");
    cc.Click("Collate");
    cc.Click("File1", "CC_2026_03_06.txt");
    EXPECT_EQ(folder.Read("logs/CCWattWours.txt"),
              "daily Current Cost watthours for these dates\r\n\r\n");
    cc.Click("File1", "CC_2026_03_07.txt");
    EXPECT_EQ(TakeMessages(), Messages{"File not found"});
    EXPECT_EQ(Text(cc, "FileName"), "CC_2026_03_06.txt");
}

TEST_F(ExportTest, PrintRedrawsOrReportsTheMissingPrinter) {
    WriteLog("RE_2026_03_07.txt", {"<T>10:00</T><W1>5</W1>", "<T>10:01</T><W1>5</W1>"});
    GraphWindow& re = windows.Open("GraphRE");
    const std::size_t before = Draw("GraphRE").size();
    re.Click("PrintButton");
    EXPECT_EQ(TakeMessages(), Messages{"The form could not be printed"});
    const std::vector<std::string> drawn = Draw("GraphRE");
    ASSERT_EQ(drawn.size(), before + 2);
    EXPECT_EQ(drawn[before], "background 16777215");
    EXPECT_EQ(drawn[before + 1], "background 4210752");
}

}  // namespace
}  // namespace brizalog::testing
