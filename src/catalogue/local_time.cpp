#include "catalogue/local_time.h"

#include <chrono>
#include <cstdio>

namespace brizalog {

namespace {

std::string TwoDigits(int n) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02d", n);
    return buffer;
}

}  // namespace

std::string DateTag(const LocalDateTime& t, bool withHour) {
    std::string tag = std::to_string(t.year) + "_" + TwoDigits(t.month) + "_" + TwoDigits(t.day);
    if (withHour) {
        tag += "_" + TwoDigits(t.hour);
    }
    return tag;
}

std::string HoursMinutes(const LocalDateTime& t) {
    return TwoDigits(t.hour) + ":" + TwoDigits(t.minute);
}

std::string LongTime(const LocalDateTime& t) {
    return TwoDigits(t.hour) + ":" + TwoDigits(t.minute) + ":" + TwoDigits(t.second);
}

double SecondsSinceMidnight(const LocalDateTime& t) {
    return t.hour * 3600.0 + t.minute * 60.0 + t.second + t.millisecond / 1000.0;
}

LocalDateTime AddMilliseconds(const LocalDateTime& t, long long milliseconds) {
    using namespace std::chrono;
    const sys_days date =
        year{t.year} / month{static_cast<unsigned>(t.month)} / day{static_cast<unsigned>(t.day)};
    const auto moment = time_point_cast<std::chrono::milliseconds>(date) + hours{t.hour} +
                        minutes{t.minute} + seconds{t.second} +
                        std::chrono::milliseconds{t.millisecond + milliseconds};
    const sys_days newDate = floor<days>(moment);
    const year_month_day ymd{newDate};
    long long rest = (moment - newDate).count();
    LocalDateTime out;
    out.year = static_cast<int>(ymd.year());
    out.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
    out.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
    out.hour = static_cast<int>(rest / 3600000);
    rest %= 3600000;
    out.minute = static_cast<int>(rest / 60000);
    rest %= 60000;
    out.second = static_cast<int>(rest / 1000);
    out.millisecond = static_cast<int>(rest % 1000);
    return out;
}

bool ParseLocalDateTime(const std::string& text, LocalDateTime& t) {
    LocalDateTime parsed;
    int consumed = 0;
    if (std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d%n", &parsed.year, &parsed.month,
                    &parsed.day, &parsed.hour, &parsed.minute, &parsed.second, &consumed) != 6) {
        return false;
    }
    std::string rest = text.substr(static_cast<std::size_t>(consumed));
    if (!rest.empty()) {
        if (rest[0] != '.' || rest.size() < 2 || rest.size() > 4) {
            return false;
        }
        int ms = 0;
        for (std::size_t i = 1; i < 4; ++i) {
            const char c = i < rest.size() ? rest[i] : '0';
            if (c < '0' || c > '9') {
                return false;
            }
            ms = ms * 10 + (c - '0');
        }
        parsed.millisecond = ms;
    }
    using namespace std::chrono;
    const year_month_day ymd{year{parsed.year}, month{static_cast<unsigned>(parsed.month)},
                             day{static_cast<unsigned>(parsed.day)}};
    if (!ymd.ok() || parsed.hour > 23 || parsed.minute > 59 || parsed.second > 59 ||
        parsed.hour < 0 || parsed.minute < 0 || parsed.second < 0) {
        return false;
    }
    t = parsed;
    return true;
}

long DaysFromCivil(int year, int month, int day) {
    // Counted in eras of 400 years, which repeat the calendar exactly.
    const long y = year - (month <= 2 ? 1 : 0);
    const long era = (y >= 0 ? y : y - 399) / 400;
    const long yoe = y - era * 400;
    const long mp = (month + 9) % 12;
    const long doy = (153 * mp + 2) / 5 + day - 1;
    const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

}  // namespace brizalog
