#pragma once

#include <array>
#include <compare>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/state.h"
#include "logging/ledger.h"
#include "logging/log_records.h"

namespace brizalog {

// The energy of each logged day, read back from the daily logs by the ledger's own replay: each
// record's watts times its interval, slot by slot. Nothing here writes a log or Whours.txt.

inline constexpr int kPowerSlots = 8;  // slot k is channel k + 16
inline constexpr int kHoursPerDay = 24;

// A date of the local calendar.
struct CivilDate {
    int year = 2000;
    int month = 1;
    int day = 1;

    auto operator<=>(const CivilDate&) const = default;
};

// Days since 1970-01-01 (negative before), and back.
long DayNumber(const CivilDate& date);
CivilDate DateOfDayNumber(long dayNumber);
int DaysInMonth(int year, int month);
// The ISO 8601 week: weeks start on Monday, and week 1 holds the year's first Thursday. The
// year is the week's own, which differs from the date's around New Year.
struct IsoWeek {
    int year = 0;
    int week = 0;
};
IsoWeek IsoWeekOf(const CivilDate& date);

// "2026-03-07"
std::string IsoDate(const CivilDate& date);
// Reads "2026_03_07" (a log's date tag, as Whours.txt and the log names hold it).
std::optional<CivilDate> ParseDateTag(std::string_view tag);

// One log file of the logs folder: "BZ_2026_03_07.txt", or "BZ_2026_03_07_14.txt" when the
// interval was 5 seconds or less and the logger began a file each hour.
struct LogName {
    std::string name;
    LogFamily family = LogFamily::BZ;
    CivilDate date;
    int hour = -1;  // -1 for a daily file
};
std::optional<LogName> ParseLogName(std::string_view name);
std::string_view FamilyPrefix(LogFamily family);

// The logs of one day, as the logs folder holds them: per family, its files in hour order.
struct LoggedDay {
    CivilDate date;
    std::map<LogFamily, std::vector<LogName>> files;
};
// Every day that has a log of any family, in date order. A missing folder gives none.
std::vector<LoggedDay> FindLoggedDays(const std::filesystem::path& folder);

// The family whose records carry a day's energy when several were logged (system 8 writes BZ,
// RE and ML each tick): RE holds all eight slots' watts, then BZ, CC and WD. ML holds no power.
LogFamily EnergyFamilyOf(const LoggedDay& day);

// The ledger's rule for the records of `family`.
ReplayRule ReplayRuleOfFamily(LogFamily family);

// What one day's logs give.
struct DayEnergy {
    CivilDate date;
    LogFamily family = LogFamily::BZ;
    long records = 0;    // lines that are whole records
    long damaged = 0;    // lines cut short or unreadable: counted here, never in the energy
    double seconds = 0;  // the intervals of the whole records: how much of the day was logged
    std::array<double, kPowerSlots + 1> wh{};  // watt-hours of slots 1..8; element 0 unused
    // The average power of each slot in each hour of the day, NaN where no record fell.
    std::array<std::array<double, kHoursPerDay>, kPowerSlots + 1> hourly{};
};

// A day of `family` from the text of its files in hour order. Each record adds its watts times
// its interval, by the ledger's own replay of a line: "<L>" gives the interval, a slot whose tag
// is missing repeats its last power. Every record of the day counts, its first one too, which
// the start-up replay leaves out: which day's Whours.txt total that record went into depends on
// whether the rollover ran before the first tick of the day, and counting each record once, in
// the day it was logged, makes the days add up to their months. A line that is not a whole
// record (no readable time, no "<L>", cut before its last field, an unreadable value) adds
// nothing and is counted as damaged: a torn record is never guessed into energy. The tags are
// those of `channels` now, as every reader of the logs takes them.
DayEnergy ReadDayEnergy(const CivilDate& date, LogFamily family,
                        const std::vector<std::string>& texts, const ChannelTable& channels);
// The same from the files of the logs folder. A file that cannot be read counts as missing.
DayEnergy ReadDayEnergy(const std::filesystem::path& folder, const LoggedDay& day,
                        const ChannelTable& channels);

// Average power per slot over `minutes`-minute steps of one day (5 or 60), NaN where no record
// fell: the points of a power chart over a few days. Reads the day's logs again.
std::vector<std::array<double, kPowerSlots + 1>> ReadDayPower(const std::filesystem::path& folder,
                                                              const LoggedDay& day,
                                                              const ChannelTable& channels,
                                                              int minutes);

// Whours.txt: the ledger's total of each slot for each day that ended with a rollover. A record
// is dated with the new day and holds the day before's totals; two records of one night (the
// rollover can run twice in its ten seconds) add up. Lines that are not such records are skipped.
std::map<CivilDate, std::array<double, kPowerSlots + 1>> ReadWhoursTotals(std::string_view text);
std::map<CivilDate, std::array<double, kPowerSlots + 1>> ReadWhoursFile(
    const std::filesystem::path& folder);

}  // namespace brizalog
