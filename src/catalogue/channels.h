#pragma once

#include <array>
#include <string_view>

namespace brizalog {

// Channel numbers are 1..24: 1..8 currents, 9..11 voltages, 12 wind speed, 13 and 14 turbine
// speeds, 15 and 16 pulse inputs, 17..24 power. Power slot n is channel n + 16.
inline constexpr int kChannelCount = 24;
inline constexpr int kMeasuredChannels = 16;
inline constexpr int kPowerSlots = 8;

// What a new installation starts with, channel by channel (index 0 unused).
struct ChannelDefaults {
    int enableLOGGING;
    int enableDISPLAY;
    int enableGRAPHING;
    int HARDWAREenabled;
    std::string_view name;
    int colour;
    int maxLimit;
    std::string_view tag;  // both XMLsoftware and XMLhardware
};

extern const std::array<ChannelDefaults, kChannelCount + 1> kChannelDefaults;

constexpr bool IsChannel(int n) {
    return n >= 1 && n <= kChannelCount;
}
constexpr bool IsMeasuredChannel(int n) {
    return n >= 1 && n <= kMeasuredChannels;
}
constexpr bool IsPowerChannel(int n) {
    return n > kMeasuredChannels && n <= kChannelCount;
}

// ChannelValue index of a measured channel (1..16): the channel number itself; 0 for a power
// channel, which has no ChannelValue.
constexpr int ChannelValueIndex(int channel) {
    return IsMeasuredChannel(channel) ? channel : 0;
}
// DailyExtreme index of a channel's maximum: always channel − 1, so channel 17's is 16.
constexpr int MaximumIndex(int channel) {
    return channel - 1;
}
// DailyExtreme index of a voltage channel's minimum (9, 10, 11 → 24, 25, 26); −1 for the others.
constexpr int MinimumIndex(int channel) {
    return channel >= 9 && channel <= 11 ? channel + 15 : -1;
}
constexpr int PowerSlotToChannel(int slot) {
    return slot + kMeasuredChannels;
}
constexpr int ChannelToPowerSlot(int channel) {
    return channel - kMeasuredChannels;
}

}  // namespace brizalog
