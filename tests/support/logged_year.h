#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/local_time.h"
#include "catalogue/state.h"
#include "energy/energy_days.h"
#include "logging/ledger.h"
#include "logging/log_records.h"

namespace brizalog::testing {

// A year of a hilltop installation as system 1 logs it at 10 seconds: two windmills that make
// most in the windy winter, solar panels that make most in summer, and a DC load with meal-time
// peaks. Each day is one BZ log written by the logging tick's own record builder, and Whours.txt
// gets the ledger's rollover record of each day but the last. Days in `gaps` (day numbers from
// the first) have no log, as when the computer was off.

// Small, fast and the same on every machine.
class YearNoise {
public:
    explicit YearNoise(std::uint32_t seed) : m_state(seed * 2654435761u + 1) {}
    double Next() {  // about normal, mean 0, deviation 1
        double sum = 0;
        for (int k = 0; k < 4; ++k) {
            m_state = m_state * 1664525u + 1013904223u;
            sum += (m_state >> 8) / 16777216.0;
        }
        return (sum - 2) * 1.73;
    }

private:
    std::uint32_t m_state;
};

inline void SetYearChannels(ChannelTable& table) {
    SetDefaultChannelTable(table);
    const struct {
        int channel;
        const char* name;
        std::int32_t colour;
    } looks[] = {
        {1, "Mill 1 A", 33023},  {2, "Mill 2 A", 16744576}, {3, "Solar A", 65535},
        {4, "Load A", 16744703}, {17, "Mill 1", 2263842},   {18, "Mill 2", 16737843},
        {19, "Solar", 2600155},  {20, "Load", 8421631},
    };
    for (const auto& look : looks) {
        table.ChannelName[look.channel] = look.name;
        table.LineColour[look.channel] = look.colour;
    }
}

inline void WriteLoggedYear(const std::filesystem::path& folder, CivilDate first, int days,
                            double logDelay = 10, std::initializer_list<int> gaps = {}) {
    std::filesystem::create_directories(folder / "logs");
    SharedState state;
    SetYearChannels(state.channels);
    state.settings.LogDelay = logDelay;
    const LogFile file = LogFilesOf(1)[0];
    const int records = static_cast<int>(86400 / logDelay);
    std::string whours;
    YearNoise noise(7);
    double gust = 0;
    for (int d = 0; d < days; ++d) {
        const CivilDate date = DateOfDayNumber(DayNumber(first) + d);
        const double season = std::cos((DayNumber(date) - DayNumber({date.year, 1, 10})) / 365.25 *
                                       2 * M_PI);  // 1 in winter, -1 in summer
        const double dayWind = 4.5 + 2.2 * season + 1.8 * noise.Next();
        const double cloud = std::clamp(0.55 + 0.3 * noise.Next(), 0.05, 1.0);
        const double sunrise = 7.2 + 1.6 * season;
        const double sunset = 17.3 - 2.4 * season;
        std::string text;
        text.reserve(static_cast<std::size_t>(records) * 110);
        state.WattHours.Fill(0);
        for (int r = 0; r < records; ++r) {
            const double seconds = r * logDelay;
            const double hour = seconds / 3600;
            gust = 0.995 * gust + 0.08 * noise.Next();
            const double wind =
                std::max(0.0, dayWind + 1.2 * std::sin((hour - 15) / 24 * 2 * M_PI) + gust);
            const double sun = hour > sunrise && hour < sunset
                                   ? std::sin((hour - sunrise) / (sunset - sunrise) * M_PI) * cloud
                                   : 0;
            const double rpm1 = wind < 2.5 ? 0 : std::min(560.0, (wind - 2.5) * 48);
            const double rpm2 = wind < 3 ? 0 : std::min(540.0, (wind - 3) * 45);
            const double mill1 = 1000 * std::pow(rpm1 / 520, 3);
            const double mill2 = 800 * std::pow(rpm2 / 520, 3);
            const double meals = std::exp(-std::pow((hour - 7.5) / 0.5, 2)) +
                                 std::exp(-std::pow((hour - 12.5) / 0.6, 2)) +
                                 1.4 * std::exp(-std::pow((hour - 18.5) / 0.8, 2));
            const double load = 60 + 180 * meals + 10 * std::abs(noise.Next());
            const double volts = 24.6 + 1.2 * sun + 0.002 * (mill1 + mill2) - 0.004 * load;
            auto& v = state.AvgValue;
            v[1] = mill1 / volts;
            v[2] = mill2 / volts;
            v[3] = 32 * sun;
            v[4] = load / volts;
            v[9] = volts;
            v[12] = wind;
            v[13] = rpm1;
            v[14] = rpm2;
            for (int i = 1; i <= 4; ++i) {
                state.WattHours[i] += v[i] * volts * logDelay / 3600;
            }
            const LocalDateTime at{date.year, date.month, date.day, static_cast<int>(hour),
                                   static_cast<int>(seconds / 60) % 60};
            text += LogRecord(file, HoursMinutes(at), state);
        }
        if (std::find(gaps.begin(), gaps.end(), d) == gaps.end()) {
            char name[32];
            std::snprintf(name, sizeof name, "/logs/BZ_%04d_%02d_%02d.txt", date.year, date.month,
                          date.day);
            WriteWholeFile(InFolder(folder, name), text);
        }
        if (d + 1 < days) {
            const CivilDate next = DateOfDayNumber(DayNumber(date) + 1);
            whours += RolloverRecord(DateTag({next.year, next.month, next.day, 0, 0, 0}, false),
                                     "00:00", state);
        }
    }
    WriteWholeFile(InFolder(folder, "/logs/Whours.txt"), whours);
}

// The year 2025 of 10-second logs (365 files, 3.15 million records) in `cache`, written by its
// first user and kept for the next: the benchmarks' folder.
inline std::filesystem::path CachedLoggedYear(const std::filesystem::path& cache) {
    const std::filesystem::path path = cache / "energy-year";
    if (!std::filesystem::exists(path / "logs" / "BZ_2025_12_31.txt")) {
        std::filesystem::remove_all(path);
        WriteLoggedYear(path, {2025, 1, 1}, 365);
    }
    return path;
}

}  // namespace brizalog::testing
