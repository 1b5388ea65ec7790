#include <gtest/gtest.h>

#include <cmath>

#include "logging/ledger.h"
#include "logging/logging_rig.h"
#include "support/failure_kind.h"

namespace brizalog::testing {
namespace {

// An interval's energy that overflows is skipped for its own slot: the other slots, the record
// and the next intervals go on, and no infinity reaches the day's total.
TEST(OverflowContainment, AnOverflowingEnergySkipsOnlyItsSlot) {
    LoggingRig rig(7, 30);
    rig.form.startMENU_Click();
    rig.s.GoodDataCount = 1;
    rig.FramesWatts(1, 1, 1e308);
    rig.FramesWatts(1, 2, 360);
    rig.s.WattHours[1] = 5;
    rig.form.Timer1_Timer();

    EXPECT_EQ(rig.s.WattHours[1], 5);
    EXPECT_DOUBLE_EQ(rig.s.WattHours[2], 3);
    EXPECT_NE(rig.Read("logs/RE_2026_03_07.txt").find("<W2>360</W2>"), std::string::npos);

    rig.s.GoodDataCount = 1;
    rig.FramesWatts(1, 1, 120);
    rig.form.Timer1_Timer();
    EXPECT_DOUBLE_EQ(rig.s.WattHours[1], 6);
}

TEST(OverflowContainment, ATotalThatWouldPassTheLargestNumberStaysWhereItWas) {
    LoggingRig rig(1, 600);
    rig.s.WattHours[3] = 1.7e308;
    rig.s.GoodDataCount = 1;
    rig.FramesWatts(1, 3, 1e306);
    rig.form.Timer1_Timer();
    EXPECT_EQ(rig.s.WattHours[3], 1.7e308);
}

// A delay too large to be a number is refused with the delay message, never a failure that
// would end the program; a large one that is a number is brought to 600 as usual.
TEST(OverflowContainment, ADelayBeyondAnyNumberIsRefusedAtStart) {
    LoggingRig rig;
    rig.form.model().delay.text = "1e400";
    rig.form.startMENU_Click();
    EXPECT_EQ(
        rig.dialogs.messages,
        std::vector<std::string>{"Invalid delay period, needs to be a number between 1 and 600"});
    EXPECT_EQ(rig.s.LoggingActive, 0);

    rig.form.model().delay.text = "1e300";
    rig.form.startMENU_Click();
    EXPECT_EQ(rig.form.model().delay.text, "600");
    EXPECT_EQ(rig.s.LoggingActive, 1);
}

// In the replay an overflow is a bad value of the log, as a negative substring is: it fails the
// replay, which the start-up traps.
TEST(OverflowContainment, AReplayedLineWhosePowerOrEnergyOverflowsFailsTheReplay) {
    const char* const logs[][2] = {
        {"0", "<L>30</L><V>1</V>\r\n<L>30</L><V>1e300</V><I>1e300</I>\r\n\r\n"},
        {"1", "<L>30</L>\r\n<L>30</L><V1>1e300</V1><A1>1e300</A1>\r\n\r\n"},
        {"3", "<L>30</L>\r\n<L>1e306</L><W1>1000</W1>\r\n\r\n"},
        {"7", "<L>30</L>\r\n<L>30</L><A5>1e307</A5>\r\n\r\n"},
    };
    for (const auto& [type, log] : logs) {
        SharedState s;
        SetDefaultChannelTable(s.channels);
        EXPECT_EQ(FailureKindOf([&] { ReplayLogText(log, std::stoi(type), s); }),
                  FailureKind::Overflow)
            << "system " << type;
        for (int j = 1; j <= 8; ++j) {
            EXPECT_TRUE(std::isfinite(s.WattHours[j])) << "system " << type;
        }
    }
}

}  // namespace
}  // namespace brizalog::testing
