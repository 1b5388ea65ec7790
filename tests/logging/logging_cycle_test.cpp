#include <gtest/gtest.h>

#include "logging/logging_rig.h"

namespace brizalog::testing {
namespace {

constexpr const char* kBzToday = "logs/BZ_2026_03_07.txt";

TEST(LoggingTick, AveragesTheIntervalLogsItAndAddsItsEnergy) {
    LoggingRig rig(1, 30);
    rig.form.model().delay.text = "20";  // typed, not saved: sets the pace, not the record
    rig.form.startMENU_Click();
    rig.s.GoodDataCount = 4;
    rig.Frames(4, 9, 13.266);
    rig.Frames(2, 1, 8.74);  // two frames of 8.74 A and two of nothing
    rig.Frames(4, 13, 311.6);
    rig.FramesWatts(4, 1, 120);
    rig.s.WattHours[1] = 1;
    rig.form.Timer1_Timer();

    EXPECT_EQ(rig.form.timer1().Interval(), 20000);
    EXPECT_EQ(rig.Read(kBzToday),
              "<T>14:05</T><L>30</L><V1>13.27</V1><A1>4.4</A1><A2>0.0</A2>"
              "<A3>0.0</A3><A4>0.0</A4><R2>0</R2><R1>312</R1><WS>0</WS>\r\n");
    EXPECT_DOUBLE_EQ(rig.s.AvgValue[1], 4.37);
    EXPECT_DOUBLE_EQ(rig.s.WattHours[1], 1 + 120 * 30 / 3600.0);  // LogDelay, not the box
    EXPECT_EQ(rig.s.LastLogTime, "14:05");
    EXPECT_EQ(rig.form.model().goodDATAcounter.text, "4");
    EXPECT_EQ(rig.s.SumValue[9], 0);
    EXPECT_EQ(rig.s.SumWatts[1], 0);
    EXPECT_EQ(rig.s.GoodDataCount, 0);
    EXPECT_TRUE(rig.form.model().LogOK.visible);
    EXPECT_TRUE(rig.form.timer2().Enabled());
    EXPECT_FALSE(rig.form.timer3().Enabled());
}

TEST(LoggingTick, FirstTickWithoutAnyFrameStopsLogging) {
    LoggingRig rig(1, 30);
    rig.form.model().caption = "Waiting for Data";
    rig.form.startMENU_Click();
    rig.form.Timer1_Timer();

    EXPECT_EQ(rig.dialogs.messages, std::vector<std::string>{"NO DATA AVAILABLE YET"});
    EXPECT_EQ(rig.s.LoggingActive, 0);
    EXPECT_TRUE(rig.form.model().startMENU.enabled);
    EXPECT_FALSE(rig.folder.Exists(kBzToday));

    // Stopped, the tick goes on averaging and counting energy, and writes nothing.
    rig.s.GoodDataCount = 2;
    rig.FramesWatts(2, 1, 360);
    rig.form.Timer1_Timer();
    EXPECT_DOUBLE_EQ(rig.s.WattHours[1], 3);
    EXPECT_EQ(rig.dialogs.messages.size(), 1u);
    EXPECT_FALSE(rig.folder.Exists(kBzToday));
}

TEST(LoggingTick, AFileThatCannotBeWrittenIsPassedOver) {
    LoggingRig rig(8, 30);
    rig.form.startMENU_Click();
    std::filesystem::create_directories(rig.folder.path() / kBzToday);  // a folder in its way
    rig.s.GoodDataCount = 1;
    rig.FramesWatts(1, 5, 3600);
    rig.form.Timer1_Timer();
    EXPECT_TRUE(rig.folder.Exists("logs/RE_2026_03_07.txt"));
    EXPECT_TRUE(rig.folder.Exists("logs/ML_2026_03_07.txt"));
    EXPECT_DOUBLE_EQ(rig.s.WattHours[5], 30);

    // A logs folder that has vanished: nothing is written, nothing is said, the tick goes on.
    std::filesystem::remove_all(rig.folder.path() / "logs");
    rig.s.GoodDataCount = 1;
    rig.FramesWatts(1, 5, 3600);
    rig.form.Timer1_Timer();
    EXPECT_DOUBLE_EQ(rig.s.WattHours[5], 60);
    EXPECT_EQ(rig.s.GoodDataCount, 0);
    EXPECT_TRUE(rig.dialogs.messages.empty());
    EXPECT_FALSE(rig.folder.Exists("logs"));
}

TEST(StartAndStop, TheDelayBoxIsCheckedAndBroughtIntoRange) {
    const std::pair<const char*, const char*> clamps[] = {
        {"700", "600"}, {"600.5", "600"}, {"0", "1"}, {"0.5", "1"}, {"2.5", "2.5"}};
    for (const auto& [typed, shown] : clamps) {
        LoggingRig rig;
        rig.form.model().delay.text = typed;
        rig.form.startMENU_Click();
        EXPECT_EQ(rig.form.model().delay.text, shown);
        EXPECT_EQ(rig.form.timer1().Interval(), static_cast<int>(std::stod(shown) * 1000));
        EXPECT_EQ(rig.s.LoggingActive, 1);
        EXPECT_FALSE(rig.form.model().delay.enabled);
        EXPECT_FALSE(rig.form.model().setup.enabled);
        EXPECT_FALSE(rig.form.model().startMENU.enabled);
        EXPECT_TRUE(rig.form.model().stopMENU.enabled);
    }

    LoggingRig rig;
    rig.form.model().delay.text = "ten";
    rig.form.startMENU_Click();
    EXPECT_EQ(
        rig.dialogs.messages,
        std::vector<std::string>{"Invalid delay period, needs to be a number between 1 and 600"});
    EXPECT_EQ(rig.s.LoggingActive, 0);
    EXPECT_EQ(rig.form.timer1().Interval(), 1000);
    EXPECT_TRUE(rig.form.model().delay.enabled);

    rig.form.model().delay.text = "30";
    rig.form.startMENU_Click();
    rig.s.WattHours[1] = 5;
    rig.form.stopMENU_Click();
    EXPECT_EQ(rig.s.LoggingActive, 0);
    EXPECT_TRUE(rig.form.model().delay.enabled);
    EXPECT_TRUE(rig.form.model().setup.enabled);
    EXPECT_FALSE(rig.form.model().stopMENU.enabled);
    EXPECT_EQ(rig.s.WattHours[1], 5);
}

TEST(StartAndStop, AShortDelayBoxRaisesTheCautionOnEveryTick) {
    const std::pair<const char*, bool> boxes[] = {{"9.9", true}, {"10", false}, {"ten", true}};
    for (const auto& [box, caution] : boxes) {
        LoggingRig rig;
        rig.form.model().ErrorString.text = "error message string";
        rig.form.model().delay.text = box;
        rig.form.Timer1_Timer();
        EXPECT_EQ(rig.form.model().ErrorString.text,
                  caution ? "Caution Logging interval 2 short, Data Overflow may occur"
                          : "error message string")
            << box;
    }
}

}  // namespace
}  // namespace brizalog::testing
