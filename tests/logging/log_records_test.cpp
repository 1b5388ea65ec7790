#include <gtest/gtest.h>

#include "catalogue/config_files.h"
#include "logging/log_records.h"

namespace brizalog {
namespace {

// A battery of 13.27 V at five past two, with the first-run tags and LogDelay 30.
class Afternoon : public ::testing::Test {
protected:
    void SetUp() override {
        SetDefaultChannelTable(s.channels);
        s.settings.LogDelay = 30;
        s.AvgValue[9] = 13.266;
    }
    std::string Record(int systemType, std::size_t file = 0) {
        return LogRecord(LogFilesOf(systemType)[file], "14:05", s);
    }
    SharedState s;
};

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

}  // namespace
}  // namespace brizalog
