#include "energy/energy_days.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/local_time.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr double kNoPower = std::numeric_limits<double>::quiet_NaN();

bool Digits(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int Number(std::string_view digits) {
    int n = 0;
    for (char c : digits) {
        n = n * 10 + (c - '0');
    }
    return n;
}

bool ValidDate(const CivilDate& d) {
    return d.year >= 1970 && d.year <= 9999 && d.month >= 1 && d.month <= 12 && d.day >= 1 &&
           d.day <= DaysInMonth(d.year, d.month);
}

struct FamilyPrefixRow {
    LogFamily family;
    std::string_view prefix;
    ReplayRule rule;
};

// The families in the order in which they carry a day's energy when several were logged.
constexpr FamilyPrefixRow kFamilies[] = {
    {LogFamily::RE, "RE", ReplayRule::LoggedWatts},
    {LogFamily::BZ, "BZ", ReplayRule::AmpsTimesVolts},
    {LogFamily::CC, "CC", ReplayRule::Metered},
    {LogFamily::WD, "WD", ReplayRule::FixedTags},
    {LogFamily::ML, "ML", ReplayRule::None},
};

// The closing text of the last field a record of `family` holds: a line without it was cut
// short on its way to the disk.
std::string LastFieldClose(LogFamily family, const ChannelTable& channels) {
    switch (family) {
        case LogFamily::WD:
            return "</S>";
        case LogFamily::BZ:
            return "</" + channels.XMLsoftware[12] + ">";
        case LogFamily::CC:
            return "</C2>";
        case LogFamily::RE:
            return "</" + channels.XMLsoftware[24] + ">";
        case LogFamily::ML:
            return "</" + channels.XMLsoftware[16] + ">";
    }
    return {};
}

// Minutes since midnight of a record's "<T>14:05</T>", or -1 when it has no such time.
int RecordMinute(std::string_view line) {
    std::string time;
    if (!ExtractTagValue(line, "<T>", "</T>", time) || time.size() != 5 || time[2] != ':' ||
        !Digits(std::string_view(time).substr(0, 2)) || !Digits(std::string_view(time).substr(3))) {
        return -1;
    }
    const int hour = Number(std::string_view(time).substr(0, 2));
    const int minute = Number(std::string_view(time).substr(3));
    return hour < 24 && minute < 60 ? hour * 60 + minute : -1;
}

// What the walk of a day tells about each whole record.
struct WalkedRecord {
    int minute;       // since midnight
    double interval;  // seconds
    const IndexedArray<double, 0, 10>& watts;
};

// Walks the records of a day's texts through the ledger's replay, into `scratch`. Returns the
// count of damaged lines.
long WalkDay(LogFamily family, const std::vector<std::string>& texts, const ChannelTable& channels,
             SharedState& scratch, const std::function<void(const WalkedRecord&)>& onRecord) {
    scratch.channels = channels;
    const ReplayRule rule = ReplayRuleOfFamily(family);
    const std::string lastField = LastFieldClose(family, channels);
    long damaged = 0;
    for (const std::string& text : texts) {
        const std::vector<std::string> lines = LinesOf(text);
        for (std::size_t k = 0; k < lines.size(); ++k) {
            const std::string& line = lines[k];
            if (line.empty()) {
                continue;
            }
            // The last element has no CR LF behind it: a record on its way to the disk when the
            // power went, which the replay never walks either.
            const bool cut = k + 1 == lines.size();
            int minute = -1;
            double interval = 0;
            std::string intervalText;
            try {
                minute = RecordMinute(line);
                if (ExtractTagValue(line, "<L>", "</L>", intervalText)) {
                    interval = ParseNumber(intervalText);
                }
            } catch (const Failure&) {
                minute = -1;
            }
            if (cut || minute < 0 || intervalText.empty() || !(interval > 0) ||
                InStr(line, lastField) == 0) {
                ++damaged;
                continue;
            }
            const auto before = scratch.WattHours;
            try {
                ReplayLogLine(line, rule, scratch);
            } catch (const Failure&) {
                scratch.WattHours = before;
                ++damaged;
                continue;
            }
            onRecord({minute, interval, scratch.ChannelWatts});
        }
    }
    return damaged;
}

std::vector<std::string> ReadTexts(const std::filesystem::path& folder,
                                   const std::vector<LogName>& files) {
    std::vector<std::string> texts;
    for (const LogName& file : files) {
        try {
            texts.push_back(ReadWholeFile(InFolder(folder, "/logs/" + file.name)));
        } catch (const Failure&) {
            // A file that went or cannot be read is a missing part of the day.
        }
    }
    return texts;
}

const std::vector<LogName>& FilesOf(const LoggedDay& day, LogFamily family) {
    static const std::vector<LogName> kNone;
    const auto it = day.files.find(family);
    return it == day.files.end() ? kNone : it->second;
}

}  // namespace

long DayNumber(const CivilDate& date) {
    return DaysFromCivil(date.year, date.month, date.day);
}

CivilDate DateOfDayNumber(long dayNumber) {
    const long z = dayNumber + 719468;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const long doe = z - era * 146097;
    const long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long mp = (5 * doy + 2) / 153;
    const int day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return {static_cast<int>(yoe + era * 400 + (month <= 2 ? 1 : 0)), month, day};
}

int DaysInMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) {
        return 0;
    }
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

IsoWeek IsoWeekOf(const CivilDate& date) {
    const long n = DayNumber(date);
    const long weekday = ((n % 7) + 7 + 3) % 7;  // 0 = Monday; 1970-01-01 was a Thursday
    const CivilDate thursday = DateOfDayNumber(n - weekday + 3);
    const long firstOfYear = DayNumber({thursday.year, 1, 1});
    return {thursday.year, static_cast<int>((DayNumber(thursday) - firstOfYear) / 7 + 1)};
}

std::string IsoDate(const CivilDate& date) {
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.year, date.month, date.day);
    return text;
}

std::optional<CivilDate> ParseDateTag(std::string_view tag) {
    if (tag.size() != 10 || tag[4] != '_' || tag[7] != '_' || !Digits(tag.substr(0, 4)) ||
        !Digits(tag.substr(5, 2)) || !Digits(tag.substr(8, 2))) {
        return std::nullopt;
    }
    const CivilDate date{Number(tag.substr(0, 4)), Number(tag.substr(5, 2)),
                         Number(tag.substr(8, 2))};
    return ValidDate(date) ? std::optional<CivilDate>(date) : std::nullopt;
}

std::string_view FamilyPrefix(LogFamily family) {
    for (const FamilyPrefixRow& row : kFamilies) {
        if (row.family == family) {
            return row.prefix;
        }
    }
    return {};
}

ReplayRule ReplayRuleOfFamily(LogFamily family) {
    for (const FamilyPrefixRow& row : kFamilies) {
        if (row.family == family) {
            return row.rule;
        }
    }
    return ReplayRule::None;
}

std::optional<LogName> ParseLogName(std::string_view name) {
    // "BZ_2026_03_07.txt" or "BZ_2026_03_07_14.txt"
    if ((name.size() != 17 && name.size() != 20) || name.substr(name.size() - 4) != ".txt" ||
        name[2] != '_') {
        return std::nullopt;
    }
    LogName log;
    const auto row =
        std::find_if(std::begin(kFamilies), std::end(kFamilies),
                     [&](const FamilyPrefixRow& r) { return name.substr(0, 2) == r.prefix; });
    if (row == std::end(kFamilies)) {
        return std::nullopt;
    }
    const std::optional<CivilDate> date = ParseDateTag(name.substr(3, 10));
    if (!date) {
        return std::nullopt;
    }
    if (name.size() == 20) {
        const std::string_view hour = name.substr(14, 2);
        if (name[13] != '_' || !Digits(hour) || Number(hour) > 23) {
            return std::nullopt;
        }
        log.hour = Number(hour);
    }
    log.name = std::string(name);
    log.family = row->family;
    log.date = *date;
    return log;
}

std::vector<LoggedDay> FindLoggedDays(const std::filesystem::path& folder) {
    std::map<CivilDate, LoggedDay> days;
    for (const std::string& name : ListFiles(InFolder(folder, "/logs"), "*.txt")) {
        std::optional<LogName> log = ParseLogName(name);
        if (!log) {
            continue;
        }
        LoggedDay& day = days[log->date];
        day.date = log->date;
        day.files[log->family].push_back(std::move(*log));
    }
    std::vector<LoggedDay> result;
    result.reserve(days.size());
    for (auto& [date, day] : days) {
        for (auto& [family, files] : day.files) {
            std::sort(files.begin(), files.end(),
                      [](const LogName& a, const LogName& b) { return a.hour < b.hour; });
        }
        result.push_back(std::move(day));
    }
    return result;
}

LogFamily EnergyFamilyOf(const LoggedDay& day) {
    for (const FamilyPrefixRow& row : kFamilies) {
        if (day.files.count(row.family) != 0) {
            return row.family;
        }
    }
    return LogFamily::ML;
}

DayEnergy ReadDayEnergy(const CivilDate& date, LogFamily family,
                        const std::vector<std::string>& texts, const ChannelTable& channels) {
    DayEnergy day;
    day.date = date;
    day.family = family;
    std::array<double, kHoursPerDay> hourSeconds{};
    std::array<std::array<double, kHoursPerDay>, kPowerSlots + 1> hourEnergy{};
    auto scratch = std::make_unique<SharedState>();
    day.damaged = WalkDay(family, texts, channels, *scratch, [&](const WalkedRecord& record) {
        ++day.records;
        day.seconds += record.interval;
        const int hour = record.minute / 60;
        hourSeconds[hour] += record.interval;
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            hourEnergy[slot][hour] += record.watts[slot] * record.interval;
        }
    });
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        day.wh[slot] = scratch->WattHours[slot];
        for (int hour = 0; hour < kHoursPerDay; ++hour) {
            day.hourly[slot][hour] =
                hourSeconds[hour] > 0 ? hourEnergy[slot][hour] / hourSeconds[hour] : kNoPower;
        }
    }
    return day;
}

DayEnergy ReadDayEnergy(const std::filesystem::path& folder, const LoggedDay& day,
                        const ChannelTable& channels) {
    const LogFamily family = EnergyFamilyOf(day);
    return ReadDayEnergy(day.date, family, ReadTexts(folder, FilesOf(day, family)), channels);
}

std::vector<std::array<double, kPowerSlots + 1>> ReadDayPower(const std::filesystem::path& folder,
                                                              const LoggedDay& day,
                                                              const ChannelTable& channels,
                                                              int minutes) {
    minutes = std::clamp(minutes, 1, 24 * 60);
    const std::size_t steps = static_cast<std::size_t>((24 * 60 + minutes - 1) / minutes);
    std::vector<double> seconds(steps, 0.0);
    std::vector<std::array<double, kPowerSlots + 1>> energy(steps);
    const LogFamily family = EnergyFamilyOf(day);
    auto scratch = std::make_unique<SharedState>();
    WalkDay(family, ReadTexts(folder, FilesOf(day, family)), channels, *scratch,
            [&](const WalkedRecord& record) {
                const std::size_t step = static_cast<std::size_t>(record.minute / minutes);
                seconds[step] += record.interval;
                for (int slot = 1; slot <= kPowerSlots; ++slot) {
                    energy[step][slot] += record.watts[slot] * record.interval;
                }
            });
    for (std::size_t step = 0; step < steps; ++step) {
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            energy[step][slot] = seconds[step] > 0 ? energy[step][slot] / seconds[step] : kNoPower;
        }
    }
    return energy;
}

std::map<CivilDate, std::array<double, kPowerSlots + 1>> ReadWhoursTotals(std::string_view text) {
    std::map<CivilDate, std::array<double, kPowerSlots + 1>> totals;
    for (const std::string& line : LinesOf(text)) {
        // "2026_03_08,00:00, Wh1, 1834.2, Wh2, .0 ,Wh3, .0 ,... ,Wh8, .0 Wh"
        const std::optional<CivilDate> written = ParseDateTag(std::string_view(line).substr(0, 10));
        if (!written || line.size() < 11 || line[10] != ',') {
            continue;
        }
        std::array<double, kPowerSlots + 1> record{};
        std::size_t at = 11;
        bool whole = true;
        for (int slot = 1; slot <= kPowerSlots && whole; ++slot) {
            const std::string label = "Wh" + std::to_string(slot) + ",";
            const std::size_t found = line.find(label, at);
            if (found == std::string::npos) {
                whole = false;
                break;
            }
            at = found + label.size();
            try {
                record[slot] = ParseNumber(std::string_view(line).substr(at));
            } catch (const Failure&) {
                whole = false;
            }
        }
        if (!whole) {
            continue;
        }
        auto& day = totals[DateOfDayNumber(DayNumber(*written) - 1)];
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            day[slot] += record[slot];
        }
    }
    return totals;
}

std::map<CivilDate, std::array<double, kPowerSlots + 1>> ReadWhoursFile(
    const std::filesystem::path& folder) {
    try {
        const std::filesystem::path path = InFolder(folder, "/logs/Whours.txt");
        if (FileExists(path)) {
            return ReadWhoursTotals(ReadWholeFile(path));
        }
    } catch (const Failure&) {
        // An unreadable Whours.txt only takes the cross-check away.
    }
    return {};
}

}  // namespace brizalog
