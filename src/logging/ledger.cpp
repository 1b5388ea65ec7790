#include "logging/ledger.h"

#include <array>
#include <vector>

#include "acquisition/brizalog.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/system_types.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

// A log line without "<L>", written before the interval was logged, counts as this many seconds.
constexpr double kAssumedInterval = 10.0;

// Replays below this stored interval are skipped: such logs are hourly, or close to it.
constexpr double kLowestReplayedDelay = 9.0;

// The rule of each system type, 0 to 8.
constexpr std::array<ReplayRule, kSystemTypeCount> kReplayRules{{
    ReplayRule::FixedTags,
    ReplayRule::AmpsTimesVolts,
    ReplayRule::AmpsTimesVolts,
    ReplayRule::Metered,
    ReplayRule::Metered,
    ReplayRule::AmpsTimesVolts,
    ReplayRule::AmpsTimesVolts,
    ReplayRule::DcAndMains,
    ReplayRule::DcAndMains,
}};

// True and the number when both "<tag>" and "</tag>" are in the line.
bool ReadField(std::string_view line, std::string_view open, std::string_view close,
               double& number) {
    std::string value;
    if (!ExtractTagValue(line, open, close, value)) {
        return false;
    }
    number = ParseNumber(value);
    return true;
}

bool ReadChannel(std::string_view line, const SharedState& state, int channel, double& number) {
    const std::string& tag = state.channels.XMLsoftware[channel];
    return ReadField(line, "<" + tag + ">", "</" + tag + ">", number);
}

void Raise(double& extreme, double value) {
    if (value > extreme) {
        extreme = value;
    }
}

// A replayed value that overflows, in power or in energy, is a bad value of the log: it fails
// the replay, and with it the start-up's trapped block.
void AddEnergy(SharedState& state, int slot, double interval) {
    state.WattHours[slot] =
        Finite(state.WattHours[slot] + interval * state.ChannelWatts[slot] / 3600);
}

// Slot i of a battery-based system: the logged amps of channel i times `volts`. The maxima go
// to DailyExtreme[i − 1] and [i + 14], which are not the indexes of the live calculation; the
// daily maximums window has always shown the replayed values there.
void ReplayAmps(std::string_view line, SharedState& state, int i, double interval, bool mains) {
    double amps = 0;
    if (ReadChannel(line, state, i, amps)) {
        state.ChannelValue[i] = amps;
        Raise(state.DailyExtreme[i - 1], amps);
        state.ChannelWatts[i] = Finite(amps * (mains ? kMainsVolts : state.ChannelValue[9]));
        Raise(state.DailyExtreme[i + 14], state.ChannelWatts[i]);
    }
    // A missing tag leaves the slot's last power, which counts again for this line.
    AddEnergy(state, i, interval);
}

void ReplayMeter(std::string_view line, SharedState& state, int field, int slot, int extreme,
                 double interval) {
    const std::string n = std::to_string(field);
    double watts = 0;
    if (ReadField(line, "<W" + n + ">", "</W" + n + ">", watts)) {
        state.ChannelWatts[slot] = watts;
        Raise(state.DailyExtreme[extreme], watts);
    }
    AddEnergy(state, slot, interval);
}

void ReplayLine(std::string_view line, ReplayRule rule, double interval, SharedState& state) {
    double number = 0;
    if (ReadChannel(line, state, 9, number)) {
        state.ChannelValue[9] = number;
    }
    switch (rule) {
        case ReplayRule::None:
            break;
        case ReplayRule::FixedTags:
            if (ReadField(line, "<I>", "</I>", number)) {
                state.ChannelValue[1] = number;
            }
            if (ReadField(line, "<V>", "</V>", number)) {
                state.ChannelValue[9] = number;
            }
            state.ChannelWatts[1] = Finite(state.ChannelValue[9] * state.ChannelValue[1]);
            AddEnergy(state, 1, interval);
            break;
        case ReplayRule::AmpsTimesVolts:
        case ReplayRule::DcAndMains:
            for (int i = 1; i <= 8; ++i) {
                ReplayAmps(line, state, i, interval, rule == ReplayRule::DcAndMains && i >= 5);
            }
            break;
        case ReplayRule::Metered:
            for (int i = 1; i <= 3; ++i) {
                ReplayMeter(line, state, i, i + 1, i + 16, interval);
            }
            for (int i = 4; i <= 6; ++i) {
                ReplayMeter(line, state, i, i + 2, i + 18, interval);
            }
            break;
        case ReplayRule::LoggedWatts:
            for (int i = 1; i <= 8; ++i) {
                if (ReadChannel(line, state, i + 16, number)) {
                    state.ChannelWatts[i] = number;
                }
                AddEnergy(state, i, interval);
            }
            break;
    }
}

}  // namespace

std::string RolloverRecord(const std::string& dateTag, const std::string& time,
                           const SharedState& state) {
    static constexpr std::array<std::string_view, 8> kSeparators{
        ", Wh1, ", ", Wh2, ", " ,Wh3, ", " ,Wh4, ", " ,Wh5, ", " ,Wh6, ", " ,Wh7, ", " ,Wh8, ",
    };
    std::string record = dateTag + "," + time;
    for (int slot = 1; slot <= 8; ++slot) {
        record += kSeparators[static_cast<std::size_t>(slot - 1)];
        record += FormatPattern(state.WattHours[slot], "#####.0");
    }
    record += " Wh";
    record += kCrLf;
    return record;
}

std::string ReplayLiteral(int systemType, const std::string& dateTag) {
    std::string literal = "\\logs\\";
    literal += LogPrefix(systemType);
    literal += dateTag;
    literal += ".txt";
    return literal;
}

ReplayRule ReplayRuleOf(int systemType) {
    return IsKnownSystemType(systemType) ? kReplayRules[static_cast<std::size_t>(systemType)]
                                         : ReplayRule::None;
}

bool ReplayLogLine(std::string_view line, ReplayRule rule, SharedState& state) {
    double interval = 0;
    const bool assumed = !ReadField(line, "<L>", "</L>", interval);
    if (assumed) {
        interval = kAssumedInterval;
    }
    ReplayLine(line, rule, interval, state);
    return assumed;
}

bool ReplayLogText(std::string_view text, int systemType, SharedState& state) {
    const ReplayRule rule = ReplayRuleOf(systemType);
    const std::vector<std::string> lines = LinesOf(text);
    bool intervalAssumed = false;
    // Line 0, the day's first record, is left out, and so is the empty text behind the last
    // CR LF (or a last line that was cut short before its CR LF).
    for (std::size_t k = 1; k + 1 < lines.size(); ++k) {
        intervalAssumed = ReplayLogLine(lines[k], rule, state) || intervalAssumed;
    }
    return intervalAssumed;
}

bool ReplayRuns(double logDelay) {
    return logDelay > kLowestReplayedDelay;
}

bool ReplayTodaysLogFile(const std::filesystem::path& folder, const LocalDateTime& now,
                         SharedState& state) {
    if (!ReplayRuns(state.settings.LogDelay)) {
        return false;
    }
    const int systemType = state.settings.SystemType;
    const std::filesystem::path path =
        InFolder(folder, ReplayLiteral(systemType, DateTag(now, false)));
    if (!FileExists(path)) {
        return false;
    }
    return ReplayLogText(ReadWholeFile(path), systemType, state);
}

// The rollover has no trap: a Whours.txt that cannot be written leaves this handler as a
// Failure, before the totals are cleared, and whoever runs the timer ends the program with its
// message, as with any failure that nothing traps.
void Brizalog::Timer3_Timer() {
    const LocalDateTime now = m_services.clock.Now();
    const std::string dateTag = DateTag(now, false);
    if (SecondsSinceMidnight(now) >= kRolloverWindowSeconds) {
        return;
    }
    const std::filesystem::path path = InFolder(m_folder, kWhoursFile);
    const std::string record = RolloverRecord(dateTag, HoursMinutes(now), m_state);
    const bool unattended = KeepLoggingArmed();
    m_fileHealth.Write("whours", "the watt-hour record", path, unattended,
                       [&] { AppendLine(path, record, unattended); });
    // Only the sums of slots 1..8 of SumValue go, not SumWatts nor GoodDataCount: the first
    // averages of the new day run low for channels 1 to 8. Nothing guards a second run inside
    // the window; it writes what has been added since the first.
    for (int i = 1; i <= 8; ++i) {
        m_state.SumValue[i] = 0;
        m_state.WattHours[i] = 0;
    }
}

// A failure here (an unreadable file, a value that overflows) goes to the start-up's trap.
void Brizalog::ReplayTodaysLog() {
    if (!ReplayRuns(m_state.settings.LogDelay)) {
        // The flag is only raised by a replay, which this branch never follows, so the notice
        // does not reach the user in practice.
        if (m_intervalAssumed == 1) {
            m_services.dialogs.ShowMessage(
                "10 second logging interval was used to\r\ncalculate Whours");
        }
        return;
    }
    if (ReplayTodaysLogFile(m_folder, m_services.clock.Now(), m_state)) {
        m_intervalAssumed = 1;
    }
}

}  // namespace brizalog
