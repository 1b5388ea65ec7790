#include <gtest/gtest.h>

#include "acquisition/form_fixture.h"
#include "support/failure_kind.h"

namespace brizalog::testing {
namespace {

TEST(Scaling, RawBelowOffsetIsZeroAndANegativeDividerStillMultiplies) {
    StartedForm f(1);
    auto& calibration = f.state().calibration;
    calibration.ADCOffset[1] = 100;
    calibration.ADCOffset[2] = 100;
    calibration.ADCDivider[2] = -0.5;
    f.Receive("[<A1>50</A1><A2>300</A2>]");
    EXPECT_EQ(f.state().ChannelValue[1], 0);
    EXPECT_EQ(f.state().ChannelValue[2], -100);
}

TEST(Extremes, DeadVoltageIsNeverAMinimumAndTemperaturesNeedAPositiveReading) {
    StartedForm f(1);
    f.Receive("[<V1>0</V1><W1>-5</W1>]");
    EXPECT_EQ(f.state().DailyExtreme[24], 1000.0);
    EXPECT_EQ(f.state().DailyExtreme[27], 0);
    EXPECT_EQ(f.state().DailyExtreme[28], 100.0);
    f.Receive("[<V1>130</V1><W1>21.5</W1><W5>150</W5>]");
    EXPECT_DOUBLE_EQ(f.state().DailyExtreme[24], 13.0);
    EXPECT_DOUBLE_EQ(f.state().DailyExtreme[8], 13.0);
    EXPECT_EQ(f.state().DailyExtreme[27], 21.5);
    EXPECT_EQ(f.state().DailyExtreme[28], 21.5);
    EXPECT_EQ(f.state().DailyExtreme[29], 150);
    EXPECT_EQ(f.state().DailyExtreme[30], 100.0);  // 150 is no minimum below the seed
}

TEST(Sums, ARepeatedFrameCountsAgain) {
    StartedForm f(5);
    f.Receive("[<A1>20</A1><V1>120</V1>]");
    f.Receive("[]");
    EXPECT_EQ(f.state().GoodDataCount, 2);
    EXPECT_DOUBLE_EQ(f.state().SumValue[1], 4.0);
    EXPECT_DOUBLE_EQ(f.state().SumWatts[1], 2 * 24.0);
    EXPECT_EQ(f.model().goodDATAcounter.text, "2");
}

TEST(Power, EachSystemTypeFillsItsOwnSlots) {
    {
        StartedForm f(7);
        f.Receive("[<A1>10</A1><A5>10</A5><V1>240</V1>]");
        EXPECT_DOUBLE_EQ(f.state().ChannelWatts[1], 24.0);
        EXPECT_DOUBLE_EQ(f.state().ChannelWatts[5], 240.0);
        EXPECT_DOUBLE_EQ(f.state().DailyExtreme[20], 240.0);
    }
    {
        // Check1 ticked: turbine 2's amps times the second voltage, read at each frame.
        StartedForm f(8);
        ASSERT_TRUE(f.form.SetText("Check1", "1"));
        EXPECT_EQ(f.model().Check1.text, "Alt Volts2");
        f.Receive("[<A2>10</A2><V1>120</V1><V2>480</V2><A6>20</A6>]");
        EXPECT_DOUBLE_EQ(f.state().ChannelWatts[2], 48.0);
        EXPECT_DOUBLE_EQ(f.state().ChannelWatts[6], 480.0);
    }
    {
        StartedForm f(3);
        f.Receive(
            "<msg><tmpr>21.4</tmpr><ch1><watts>00412</watts></ch1>"
            "<ch2><watts>00077</watts></ch2><ch3><watts>00000</watts></ch3></msg>");
        EXPECT_EQ(f.state().ChannelWatts[1], 0);
        EXPECT_EQ(f.state().ChannelWatts[2], 412);
        EXPECT_EQ(f.state().ChannelWatts[3], 77);
        EXPECT_EQ(f.model().caption, "412W 77W 0W Personal Program NAME");
    }
}

TEST(StatusText, BatterySystemsLeaveOutThePersonalName) {
    FormFixture f(0);
    f.SetSetting("PersonalString", "My Mill");
    f.Start();
    f.Receive("[<V>243.1</V><I>52</I>]");
    EXPECT_EQ(f.model().caption, "24.31V 5.2A 126W My Mill");
    ASSERT_TRUE(f.form.Click("setsystem(6)"));
    f.Receive("[<V1>131.5</V1>]");
    EXPECT_EQ(f.model().caption, "Battery = 13.15V ");
}

TEST(StatusText, Meter128ShowsSixSlotsWithTwoBlanksBeforeTheName) {
    FormFixture f(4);
    f.SetSetting("PersonalString", "Home");
    f.Start();
    f.Receive("<msg><sensor>9</sensor><tmpr>20</tmpr><ch1><watts>1</watts></ch1></msg>");
    f.Receive("<sensor>0</sensor><ch3><watts>8</watts></ch3></msg>");
    EXPECT_EQ(f.state().RawValue[24], 8);
    EXPECT_EQ(f.model().caption, "1W 0W 0W 0W 0W 8W  Home");
}

TEST(Overflow, AHugeReadingIsAFailureNotAnInfinity) {
    {
        StartedForm f(1);
        f.state().calibration.ADCDivider[1] = 10;
        f.Receive("[<A1>1e308</A1>]");
        EXPECT_EQ(f.state().ChannelValue[1], 0);  // trapped before the store
        EXPECT_EQ(f.state().GoodDataCount, 1);    // partly updated until the next frame
    }
    {
        StartedForm f(4);
        f.Receive("<msg><sensor>9</sensor><ch1><watts>1.7e308</watts></ch1></msg>");
        // The sum of watts overflows.
        EXPECT_EQ(FailureKindOf([&] {
                      f.Receive("<msg><sensor>9</sensor><ch1><watts>1.7e308</watts></ch1></msg>");
                  }),
                  FailureKind::Overflow);
    }
}

}  // namespace
}  // namespace brizalog::testing
