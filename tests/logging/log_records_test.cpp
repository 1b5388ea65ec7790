#include <gtest/gtest.h>

#include "catalogue/config_files.h"
#include "logging/ledger.h"
#include "logging/log_records.h"

namespace brizalog {
namespace {

// The readings of an afternoon at five past two, with the first-run tags and LogDelay 30.
class Afternoon : public ::testing::Test {
protected:
    void SetUp() override {
        SetDefaultChannelTable(s.channels);
        s.settings.LogDelay = 30;
        s.AvgValue[9] = 13.266;
        s.AvgValue[10] = 26.4;
        s.AvgValue[1] = 4.37;
        s.AvgValue[3] = 12.14;
        s.AvgValue[4] = 0.3;
        s.AvgValue[13] = 311.6;
        s.AvgValue[12] = 8.2;
        s.AvgValue[15] = 12;
        s.AvgWatts[1] = 58;
        s.AvgWatts[3] = 161.2;
        s.AvgWatts[4] = 4;
        s.WattHours[1] = 1.234;
    }
    std::string Record(int systemType, std::size_t file = 0) {
        return LogRecord(LogFilesOf(systemType)[file], "14:05", s);
    }
    SharedState s;
};

TEST_F(Afternoon, EveryFamilyWritesItsWorkedExample) {
    EXPECT_EQ(Record(0),
              "<T>14:05</T><L>30</L><V>13.27</V><I>4.4</I><R>312</R><S>8</S>  "
              "1.234Wh\r\n");
    EXPECT_EQ(Record(1),
              "<T>14:05</T><L>30</L><V1>13.27</V1><A1>4.4</A1><A2>0.0</A2><A3>12.1"
              "</A3><A4>0.3</A4><R2>0</R2><R1>312</R1><WS>8</WS>\r\n");
    EXPECT_EQ(Record(5),
              "<T>14:05</T><L>30</L><V1>13.27</V1><W1>58</W1><W2>0</W2><W3>161</W3>"
              "<W4>4</W4><W5>0</W5><W6>0</W6><W7>0</W7><W8>0</W8>\r\n");
    EXPECT_EQ(Record(8, 2),
              "<T>14:05</T><L>30</L><V1>13.27</V1><V2>26.40</V2><V3>0.00</V3>"
              "<P1>12</P1><P2>0</P2>\r\n");
    s.AvgWatts[2] = 512;
    s.AvgWatts[3] = 0;
    s.AvgWatts[4] = 97;
    s.AvgWatts[7] = 1250;
    EXPECT_EQ(Record(3),
              "<T>14:05</T><L>30</L><W1>512</W1><W2>0</W2><W3>97</W3><W4>0</W4>"
              "<W5>1250</W5><W6>0</W6><C1>0.0</C1><C20.0</C2>\r\n");
}

TEST_F(Afternoon, SystemTypesPickTheirFilesAndVoltagePatterns) {
    const std::pair<int, std::string> prefixes[] = {{0, "WD"}, {2, "BZ"}, {4, "CC"},
                                                    {6, "RE"}, {7, "RE"}, {8, "BZ RE ML"}};
    for (const auto& [type, expected] : prefixes) {
        std::string names;
        for (const LogFile& file : LogFilesOf(type)) {
            names += (names.empty() ? "" : " ") + std::string(file.prefix);
        }
        EXPECT_EQ(names, expected) << "system " << type;
    }
    EXPECT_TRUE(LogFilesOf(9).empty());
    EXPECT_TRUE(LogFilesOf(-1).empty());

    // Under one volt, WD and the BZ of systems 1 and 2 lose the digit before the point.
    s.AvgValue[9] = 0;
    EXPECT_NE(Record(0).find("<V>.00</V>"), std::string::npos);
    EXPECT_NE(Record(1).find("<V1>.00</V1>"), std::string::npos);
    EXPECT_NE(Record(8, 0).find("<V1>0.00</V1>"), std::string::npos);
    EXPECT_NE(Record(6).find("<V1>0.00</V1>"), std::string::npos);
}

TEST_F(Afternoon, RecordsFollowTheUsersTagsAndTheStoredInterval) {
    s.channels.XMLsoftware[9] = "BATT";
    s.settings.LogDelay = 2.5;
    EXPECT_EQ(Record(1).substr(0, 43), "<T>14:05</T><L>2.5</L><BATT>13.27</BATT><A1");
    EXPECT_EQ(LogFileLiteral("BZ", "2026_03_07_14"), "/logs/BZ_2026_03_07_14.txt");
}

TEST_F(Afternoon, SpreadsheetRowsCarryFullNumbersAndUnclosedCells) {
    EXPECT_EQ(SpreadsheetLiteral("2026_03_07"), "/Excel/2026_03_07.xls");
    EXPECT_EQ(SpreadsheetHeader("mph"),
              "<html><body><table><tr><td><b>Volts</b></td><td><b>Amps</b></td><td><b>Power"
              "</b></td><td><b>RPM</b></td><td><b>mph</b></td><td><b></b></td><td><b>Time</b>"
              "</td></tr>\r\n\r\n");
    s.SumValue[9] = 39.8 / 3;
    s.SumValue[1] = 4.5;
    s.SumWatts[1] = 59.7;
    s.SumValue[13] = 312;
    EXPECT_EQ(SpreadsheetRow(s, "14:05:09"),
              "<tr><td>13.2666666666667</td><td>4.5</td><td>59.7</td><td>312</td><td>0</td><td>"
              "<td><td>14:05:09</td></tr>\r\n\r\n");
}

TEST_F(Afternoon, RolloverRecordKeepsItsUnevenSeparators) {
    s.WattHours[1] = 1834.24;
    s.WattHours[4] = 12.5;
    EXPECT_EQ(RolloverRecord("2026_03_08", "00:00", s),
              "2026_03_08,00:00, Wh1, 1834.2, Wh2, .0 ,Wh3, .0 ,Wh4, 12.5 ,Wh5, .0 ,Wh6, .0 "
              ",Wh7, .0 ,Wh8, .0 Wh\r\n");
}

}  // namespace
}  // namespace brizalog
