#include <gtest/gtest.h>

#include <algorithm>

#include "acquisition/form_fixture.h"
#include "support/failure_kind.h"

namespace brizalog::testing {
namespace {

TEST(LoggerIntake, TextWithoutClosingBracketIsNeverCut) {
    StartedForm f(0);
    for (int i = 0; i < 1000; ++i) {
        f.Receive("<V>243</V>");
    }
    EXPECT_EQ(f.form.ReceiveBuffer().size(), 10000u);
    EXPECT_EQ(f.state().GoodDataCount, 0);
    EXPECT_FALSE(f.model().DataOK.visible);
    EXPECT_EQ(f.model().Label2.text, "raw data string");
}

TEST(LoggerIntake, EverythingReceivedWithTheBracketIsOneFrame) {
    StartedForm f(0);
    f.Receive("[<V>243</V>");
    f.Receive("<I>52</I>]<V>100</V><I>1");
    EXPECT_EQ(f.form.LoggerFrame(), "[<V>243</V><I>52</I>]<V>100</V><I>1");
    EXPECT_EQ(f.state().LastFrame, f.form.LoggerFrame());
    EXPECT_EQ(f.model().Label2.text, f.form.LoggerFrame());
    EXPECT_EQ(f.form.ReceiveBuffer(), "[");
    // Two frames in one read: the first occurrence of each tag wins.
    EXPECT_EQ(f.state().RawValue[9], 243);
    EXPECT_EQ(f.state().RawValue[1], 52);
    EXPECT_TRUE(f.model().DataOK.visible);
    EXPECT_TRUE(f.form.timer2().Enabled());
    EXPECT_TRUE(f.form.timer3().Enabled());
    EXPECT_EQ(f.state().GoodDataCount, 1);
}

TEST(LoggerIntake, BracketLeftFromAMeterSystemCutsAtTheNextEvent) {
    StartedForm f(3);
    f.Receive("[<V1>300</V1>]");
    EXPECT_EQ(f.state().GoodDataCount, 0);
    ASSERT_TRUE(f.form.Click("setsystem(1)"));
    f.Receive("");
    EXPECT_EQ(f.state().GoodDataCount, 1);
    EXPECT_EQ(f.state().RawValue[9], 300);
}

TEST(LoggerIntake, EndTagBeforeStartTagStopsTheFrameSilently) {
    StartedForm f(1);
    f.Receive("[<A1>5</A1></V1>7<V1>]");
    EXPECT_EQ(f.state().RawValue[1], 5);  // handled before the failure
    EXPECT_EQ(f.state().RawValue[9], 0);
    EXPECT_EQ(f.state().GoodDataCount, 0);  // CalculateChannels skipped
    EXPECT_EQ(f.form.ReceiveBuffer(), "[");
    f.Receive("[<V1>640</V1>]");
    EXPECT_EQ(f.state().GoodDataCount, 1);
}

TEST(MeterIntake, ClassicCutsOnClosingMsgAcrossReads) {
    StartedForm f(3);
    f.Receive("<msg><tmpr>21.4</tmpr><ch1><watts>00412</watts></ch1></ms");
    EXPECT_EQ(f.state().GoodDataCount, 0);
    f.Receive("g>");
    EXPECT_EQ(f.state().GoodDataCount, 1);
    EXPECT_EQ(f.form.ReceiveBuffer(), "");
    EXPECT_EQ(f.state().RawValue[17], 21.4);
    EXPECT_EQ(f.state().RawValue[18], 412);
    EXPECT_EQ(f.state().ChannelWatts[2], 412);
    EXPECT_EQ(f.model().Label2.text, "raw data string");  // meter frames are not shown there
}

TEST(MeterIntake, ClassicTrapsAnEndTagBeforeItsStartTag) {
    StartedForm f(3);
    EXPECT_NO_THROW(f.Receive("</tmpr><msg><tmpr>21</msg>"));
    EXPECT_EQ(f.state().GoodDataCount, 0);
}

TEST(MeterIntake, Meter128CutsOnOpeningMsgSoASplitMessageCountsTwice) {
    StartedForm f(4);
    f.Receive("<msg><sensor>9</sensor><tmpr>20.5</tmpr>");
    f.Receive("<ch1><watts>00100</watts></ch1></msg>");
    EXPECT_EQ(f.state().GoodDataCount, 2);
    EXPECT_EQ(f.state().RawValue[17], 20.5);
    EXPECT_EQ(f.state().RawValue[18], 0);  // the second piece names no sensor
}

TEST(MeterIntake, Meter128FailureIsNotContained) {
    StartedForm f(4);
    f.Receive("<msg><sensor>9</sensor><tmpr>20.5");
    // The failure leaves the intake.
    EXPECT_EQ(FailureKindOf([&] { f.Receive("</tmpr></msg><msg><sensor>9</sensor><tmpr>21"); }),
              FailureKind::InvalidArgument);
}

TEST(Indicators, Timer2EndsTheFlashOfBothIndicators) {
    StartedForm f(0);
    f.Receive("[<V>1.2.3</V>]");
    EXPECT_EQ(f.model().LogOK.colour, kRed);
    EXPECT_TRUE(f.model().LogOK.visible);
    f.timers.Advance(250);
    EXPECT_FALSE(f.model().LogOK.visible);
    EXPECT_FALSE(f.model().DataOK.visible);
    EXPECT_FALSE(f.form.timer2().Enabled());
    EXPECT_EQ(f.model().LogOK.colour, kRed);  // red for good
}

}  // namespace
}  // namespace brizalog::testing

namespace brizalog::testing {
namespace {

// Records the order of the countdowns that a backend is told about.
class OrderOfTimers : public TimerBackend {
public:
    void Restart(FormTimer& timer) override { See(timer); }
    void Stop(FormTimer& timer) override { See(timer); }
    std::vector<std::string> seen;

private:
    void See(FormTimer& timer) {
        if (std::find(seen.begin(), seen.end(), timer.name()) == seen.end()) {
            seen.push_back(timer.name());
        }
    }
};

TEST(Indicators, TheFormShowsItsTimersToThePlatformInTheirOrder) {
    TestFolder folder;
    VirtualClock clock;
    OrderOfTimers timers;
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Brizalog form(folder.path(), Services{clock, timers, serial, dialogs});
    EXPECT_EQ(timers.seen, (std::vector<std::string>{"Timer1", "Timer2", "Timer3"}));
}

}  // namespace
}  // namespace brizalog::testing
