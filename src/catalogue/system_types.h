#pragma once

#include <array>
#include <string_view>

namespace brizalog {

// The nine installation layouts. Everything that depends on the system type and fits in a table
// is in kSystemTypes; the rest is looked up through the functions below.
inline constexpr int kSystemTypeCount = 9;

enum class DecoderKind {
    None,             // a SystemType outside 0..8: nothing is decoded
    LoggerFixedTags,  // system 0: "<V>", "<I>", "<S>", "<R>"
    LoggerTableTags,  // systems 1, 2, 5..8: the hardware tags of the channel table
    MeterClassic,     // system 3: one Current Cost sensor
    Meter128,         // system 4: Current Cost sensors 9 and 0
};

// How ChannelWatts[n] comes about in each system type.
enum class PowerRule {
    None,
    AmpsTimesV1WithAltVolts2,  // 0, 1, 2: amps × V1; slot 2 uses V2 when Check1 is ticked
    Metered3,                  // 3: slots 2..4 from RawValue[n + 16]
    Metered6,                  // 4: slots 2..4 and 6..8 from RawValue[n + 16]
    AmpsTimesV1,               // 5, 6: amps × V1
    DcAndMains,                // 7: slots 1..4 amps × V1, slots 5..8 amps × 240
    DcAltVolts2AndMains,       // 8: slots 1..4 as system 0, slots 5..8 amps × 240
};

// The five menus that are control arrays indexed by SystemType.
enum class SystemMenu { setsystem, logging, logTOfile, graphing, display };

struct SystemTypeInfo {
    std::string_view setsystemText;
    std::string_view loggingText;    // the same text stands in `display`
    std::string_view logTOfileText;  // the same text stands in `graphing`
    std::string_view logPrefix;      // of the start-up replay; system 8 logs to three files
    DecoderKind decoder;
    PowerRule power;
};

// Menu texts are the system's own, letter for letter: the doubled blank of
// "RE house, 8 DC  loads" and the singular "2 Windmill" are meant.
inline constexpr std::array<SystemTypeInfo, kSystemTypeCount> kSystemTypes{{
    {"DEMO-1 Windmill only", "DEMO-1 Windmill only", "DEMO-1 Windmill only", "WD_",
     DecoderKind::LoggerFixedTags, PowerRule::AmpsTimesV1WithAltVolts2},
    {"2 Windmills", "2 Windmills", "2 Windmill", "BZ_", DecoderKind::LoggerTableTags,
     PowerRule::AmpsTimesV1WithAltVolts2},
    {"2 Windmills & solar & loads", "2 Windmills & solar & loads", "2 Windmills & solar & loads",
     "BZ_", DecoderKind::LoggerTableTags, PowerRule::AmpsTimesV1WithAltVolts2},
    {"CurrentCost Classic", "CurrentCost 3ch", "CurrentCost 3ch", "CC_", DecoderKind::MeterClassic,
     PowerRule::Metered3},
    {"CurrentCost 128", "CurrentCost 6ch", "CurrentCost 6ch", "CC_", DecoderKind::Meter128,
     PowerRule::Metered6},
    {"RE house & 4 DC loads", "RE house & 4 DC loads", "RE house & 4 DC loads", "RE_",
     DecoderKind::LoggerTableTags, PowerRule::AmpsTimesV1},
    {"RE house, 8 DC  loads", "RE house & 8 DC loads", "RE house & 8 DC loads", "RE_",
     DecoderKind::LoggerTableTags, PowerRule::AmpsTimesV1},
    {"RE house, 4 DC, 4 AC loads", "RE house, 4 DC, 4 AC loads", "RE house, 4 DC, 4 AC loads",
     "RE_", DecoderKind::LoggerTableTags, PowerRule::DcAndMains},
    {"ALL Channels", "ALL Channels", "ALL Channels", "RE_", DecoderKind::LoggerTableTags,
     PowerRule::DcAltVolts2AndMains},
}};

// True for 0..8; negative values and values above 8 select no branch anywhere.
constexpr bool IsKnownSystemType(int systemType) {
    return systemType >= 0 && systemType < kSystemTypeCount;
}

// Log prefix of the start-up replay ("WD_", "BZ_", "CC_", "RE_"); empty for an unknown type.
std::string_view LogPrefix(int systemType);
DecoderKind DecoderOf(int systemType);
PowerRule PowerRuleOf(int systemType);
// Text of entry `systemType` of one of the five menus; empty for an unknown type.
std::string_view MenuText(SystemMenu menu, int systemType);

// The assumed mains voltage of the AC load channels, in volts; no setting changes it.
inline constexpr double kMainsVolts = 240.0;

}  // namespace brizalog
