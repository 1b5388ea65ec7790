#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "catalogue/local_time.h"
#include "catalogue/state.h"

namespace brizalog {

// The watt-hour ledger: WattHours[1..8] is the energy of each power slot since midnight. It
// grows on every logging tick with good data, is written to Whours.txt and cleared in the
// first ten seconds of a day, and is rebuilt at start-up from today's log.

inline constexpr std::string_view kWhoursFile = "/logs/Whours.txt";

// The rollover runs only while the time of day is below this many seconds.
inline constexpr double kRolloverWindowSeconds = 10.0;

// One line of Whours.txt, ended by CR LF. The date tag is the new day's, the totals those of
// the day that has just ended. The separators are uneven (", Wh2, " but " ,Wh3, ") and the
// totals have no digit before the point when under 1 (".0", ".5"); users' own tools read the
// file as it has always been.
std::string RolloverRecord(const std::string& dateTag, const std::string& time,
                           const SharedState& state);

// The replay's file literal: "\logs\", the prefix of the system type ("RE_" also in system 8,
// whose BZ and ML logs are not read), the date without the hour, ".txt".
std::string ReplayLiteral(int systemType, const std::string& dateTag);

// How a replayed line turns into energy.
enum class ReplayRule {
    None,
    FixedTags,       // WD records: "<I>" and "<V>", slot 1 only
    AmpsTimesVolts,  // slots 1..8, the amps of channels 1..8 × the volts of channel 9
    DcAndMains,      // slots 1..4 amps × volts, slots 5..8 amps × 240
    Metered,         // "<W1>".."<W6>" into slots 2..4 and 6..8
    LoggedWatts,     // the watts of channels 17..24 into slots 1..8, as RE records hold them
};

// The rule of the start-up replay in system `systemType`. LoggedWatts is never one of them: the
// replay of systems 5 to 8 looks for amps in their RE logs and finds none.
ReplayRule ReplayRuleOf(int systemType);

// One record of a log into the ledger: the interval from "<L>" (10 seconds when absent), the
// volts of channel 9, then the slots of `rule`. A slot whose tag is missing keeps its last
// power in ChannelWatts, which counts again for this line. Returns true when the interval was
// assumed. A value that cannot be read is a Failure for the caller.
bool ReplayLogLine(std::string_view line, ReplayRule rule, SharedState& state);

// Adds a day's log text to WattHours and DailyExtreme, and leaves ChannelValue and ChannelWatts
// with the values of the last lines walked. The lines walked are those from the second to the
// last complete one: the first record of the day is never replayed. A line without "<L>"
// counts as 10 seconds. Returns true if any line took that fallback. A value that cannot be
// read (an end tag before its start tag, an overflow) is a Failure for the caller.
bool ReplayLogText(std::string_view text, int systemType, SharedState& state);

// True when the stored interval lets the start-up replay today's log: above 9 seconds. At 5 and
// below the logs are hourly and have no daily name to find; from 6 to 9 they are daily and
// still not replayed.
bool ReplayRuns(double logDelay);

// The replay of the start-up: today's log of the system type, by the date of `now`, into the
// ledger. Nothing happens when the interval is too short (ReplayRuns) or the file is not there.
// Returns true if a line took the 10-second fallback.
bool ReplayTodaysLogFile(const std::filesystem::path& folder, const LocalDateTime& now,
                         SharedState& state);

}  // namespace brizalog
