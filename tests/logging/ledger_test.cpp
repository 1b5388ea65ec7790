#include <gtest/gtest.h>

#include "catalogue/failure.h"
#include "logging/ledger.h"
#include "logging/logging_rig.h"

namespace brizalog::testing {
namespace {

constexpr const char* kWhours = "logs/Whours.txt";

TEST(Rollover, WritesTheDayJustEndedAndClearsOnlyTheTotalsAndFirstSums) {
    LoggingRig rig;
    rig.At(2026, 3, 8, 0, 0, 3);
    rig.s.WattHours[1] = 1834.24;
    rig.s.WattHours[4] = 12.5;
    for (int i = 1; i <= 16; ++i) {
        rig.s.SumValue[i] = i;
    }
    rig.s.SumWatts[1] = 50;
    rig.s.GoodDataCount = 7;
    rig.form.Timer3_Timer();
    rig.s.WattHours[2] = 0.46;
    rig.At(2026, 3, 8, 0, 0, 8);
    rig.form.Timer3_Timer();  // nothing guards a second run inside the window
    rig.At(2026, 3, 8, 0, 0, 10);
    rig.form.Timer3_Timer();

    EXPECT_EQ(rig.Read(kWhours),
              "2026_03_08,00:00, Wh1, 1834.2, Wh2, .0 ,Wh3, .0 ,Wh4, 12.5 ,Wh5, .0 ,Wh6, .0 "
              ",Wh7, .0 ,Wh8, .0 Wh\r\n"
              "2026_03_08,00:00, Wh1, .0, Wh2, .5 ,Wh3, .0 ,Wh4, .0 ,Wh5, .0 ,Wh6, .0 "
              ",Wh7, .0 ,Wh8, .0 Wh\r\n");
    EXPECT_EQ(rig.s.WattHours[1], 0);
    EXPECT_EQ(rig.s.SumValue[8], 0);
    EXPECT_EQ(rig.s.SumValue[9], 9);
    EXPECT_EQ(rig.s.SumWatts[1], 50);
    EXPECT_EQ(rig.s.GoodDataCount, 7);
}

TEST(Replay, EachSystemTypeReadsItsOwnTags) {
    SharedState s;
    SetDefaultChannelTable(s.channels);
    const std::string wd = "first\r\n<T>1</T><L>36</L><V>12.5</V><I>2</I>  9.000Wh\r\n";
    EXPECT_FALSE(ReplayLogText(wd, 0, s));
    EXPECT_DOUBLE_EQ(s.WattHours[1], 0.25);

    const std::string cc =
        "first\r\n<L>36</L><W1>100</W1><W3>300</W3><W4>400</W4>"
        "<W6>600</W6><C1>0.0</C1><C20.0</C2>\r\n";
    ReplayLogText(cc, 4, s);
    EXPECT_DOUBLE_EQ(s.WattHours[2], 1);
    EXPECT_DOUBLE_EQ(s.WattHours[4], 3);
    EXPECT_DOUBLE_EQ(s.WattHours[6], 4);
    EXPECT_DOUBLE_EQ(s.WattHours[8], 6);
    EXPECT_EQ(s.DailyExtreme[17], 100);
    EXPECT_EQ(s.DailyExtreme[22], 400);
    EXPECT_EQ(s.DailyExtreme[24], 600);

    SharedState mains;
    SetDefaultChannelTable(mains.channels);
    const std::string house = "first\r\n<L>36</L><V1>12</V1><A4>1</A4><A5>1</A5>\r\n";
    ReplayLogText(house, 7, mains);
    EXPECT_DOUBLE_EQ(mains.WattHours[4], 0.12);
    EXPECT_DOUBLE_EQ(mains.WattHours[5], 2.4);
}

TEST(Replay, StartUpReadsTodaysLogOnlyAtIntervalsAboveNine) {
    for (double delay : {9.0, 10.0}) {
        LoggingRig rig(8, delay);
        // System 8 reads its RE log alone, and only today's.
        rig.folder.Write("logs/RE_2026_03_07.txt", "first\r\n<L>36</L><A5>1</A5>\r\n");
        rig.folder.Write("logs/BZ_2026_03_07.txt", "first\r\n<L>36</L><A1>1</A1>\r\n");
        rig.folder.Write("logs/RE_2026_03_06.txt", "first\r\n<L>36</L><A6>1</A6>\r\n");
        ReplayTodaysLogFile(rig.folder.path(), rig.clock.Now(), rig.s);
        EXPECT_DOUBLE_EQ(rig.s.WattHours[5], delay > 9 ? 2.4 : 0) << delay;
        EXPECT_EQ(rig.s.WattHours[1], 0);
        EXPECT_EQ(rig.s.WattHours[6], 0);
    }
    EXPECT_EQ(ReplayLiteral(0, "2026_03_07"), "\\logs\\WD_2026_03_07.txt");
}

TEST(Replay, AnEndTagBeforeItsStartIsAFailureForTheStartUp) {
    SharedState s;
    SetDefaultChannelTable(s.channels);
    EXPECT_THROW(ReplayLogText("first\r\n</L>30<L>\r\n", 1, s), Failure);
}

}  // namespace
}  // namespace brizalog::testing
