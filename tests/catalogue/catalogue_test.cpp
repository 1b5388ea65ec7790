#include <gtest/gtest.h>

#include <string>

#include "catalogue/channels.h"
#include "catalogue/failure.h"
#include "catalogue/state.h"
#include "catalogue/system_types.h"

namespace brizalog {
namespace {

TEST(SystemTypes, MenuTextsDifferWhereTheMenusDo) {
    EXPECT_EQ(MenuText(SystemMenu::setsystem, 6), "RE house, 8 DC  loads");
    EXPECT_EQ(MenuText(SystemMenu::display, 6), "RE house & 8 DC loads");
    EXPECT_EQ(MenuText(SystemMenu::logging, 1), "2 Windmills");
    EXPECT_EQ(MenuText(SystemMenu::logTOfile, 1), "2 Windmill");
    EXPECT_EQ(MenuText(SystemMenu::graphing, 1), "2 Windmill");
    EXPECT_EQ(MenuText(SystemMenu::setsystem, 3), "CurrentCost Classic");
    EXPECT_EQ(MenuText(SystemMenu::graphing, 4), "CurrentCost 6ch");
    EXPECT_EQ(MenuText(SystemMenu::logging, 9), "");
    EXPECT_EQ(MenuText(SystemMenu::logging, -1), "");
}

TEST(SystemTypes, PrefixesAndDecoders) {
    const char* prefixes[] = {"WD_", "BZ_", "BZ_", "CC_", "CC_", "RE_", "RE_", "RE_", "RE_"};
    for (int t = 0; t < kSystemTypeCount; ++t) {
        EXPECT_EQ(LogPrefix(t), prefixes[t]) << t;
    }
    EXPECT_EQ(LogPrefix(-1), "");
    EXPECT_EQ(DecoderOf(0), DecoderKind::LoggerFixedTags);
    EXPECT_EQ(DecoderOf(3), DecoderKind::MeterClassic);
    EXPECT_EQ(DecoderOf(4), DecoderKind::Meter128);
    EXPECT_EQ(DecoderOf(8), DecoderKind::LoggerTableTags);
    EXPECT_EQ(DecoderOf(-2), DecoderKind::None);
    EXPECT_EQ(PowerRuleOf(7), PowerRule::DcAndMains);
}

TEST(Channels, ExtremesAndPowerSlotsByNumber) {
    EXPECT_EQ(MaximumIndex(1), 0);
    EXPECT_EQ(MaximumIndex(17), 16);
    EXPECT_EQ(MaximumIndex(24), 23);
    EXPECT_EQ(MinimumIndex(9), 24);
    EXPECT_EQ(MinimumIndex(11), 26);
    EXPECT_EQ(MinimumIndex(12), -1);
    EXPECT_EQ(ChannelValueIndex(16), 16);
    EXPECT_EQ(ChannelValueIndex(17), 0);
    EXPECT_EQ(PowerSlotToChannel(2), 18);
    EXPECT_EQ(ChannelToPowerSlot(24), 8);
}

TEST(SharedArrays, HoldExactlyTheirIndexRanges) {
    SharedState state;
    state.RawValue[30] = 1;
    state.DailyExtreme[0] = 1;
    state.ChannelWatts[10] = 1;
    state.calibration.ChannelSelection[16] = "A";
    EXPECT_THROW(state.RawValue[31], Failure);
    EXPECT_THROW(state.ChannelValue[25], Failure);
    EXPECT_THROW(state.SumValue[21], Failure);
    EXPECT_THROW(state.WattHours[11], Failure);
    EXPECT_THROW(state.channels.ChannelName[-1], Failure);
    EXPECT_THROW(state.calibration.ChannelSelection[17], Failure);
    try {
        state.AvgWatts[11] = 0;
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::SubscriptOutOfRange);
        EXPECT_STREQ(failure.what(), "Subscript out of range");
    }
}

}  // namespace
}  // namespace brizalog
