#pragma once

#include <string>

namespace brizalog {

// A local date and time, as the platform's clock gives it. Local time throughout: the day of a
// log, the "<T>" of a record and the rollover all follow the wall clock of the installation.
struct LocalDateTime {
    int year = 2000;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;

    friend bool operator==(const LocalDateTime&, const LocalDateTime&) = default;
};

// "2026_03_07", or "2026_03_07_14" with the hour: the date tag of log and spreadsheet names.
std::string DateTag(const LocalDateTime& t, bool withHour);
// "14:05": hours on the 24-hour clock and minutes, two digits each.
std::string HoursMinutes(const LocalDateTime& t);
// "14:05:09": the long time format of this platform, 24-hour, two digits each.
std::string LongTime(const LocalDateTime& t);
// Seconds since midnight, with the fraction.
double SecondsSinceMidnight(const LocalDateTime& t);
// Days from 1970-01-01 to the civil date, on the proleptic Gregorian calendar (negative before).
long DaysFromCivil(int year, int month, int day);
// The same wall-clock time moved by `milliseconds` (may be negative), across days and months.
LocalDateTime AddMilliseconds(const LocalDateTime& t, long long milliseconds);
// Parses "YYYY-MM-DD HH:MM:SS[.fff]"; false when the text is not such a time.
bool ParseLocalDateTime(const std::string& text, LocalDateTime& t);

}  // namespace brizalog
