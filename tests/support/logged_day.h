#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/local_time.h"
#include "catalogue/state.h"
#include "logging/log_records.h"

namespace brizalog::testing {

// A day as an installation logs it: two windmills in a gusty afternoon breeze, the sun from
// seven to half past five, a house whose kitchen wakes at meal times. The records are written
// by the logging tick's own record builder, so every window reads what the logger writes.

struct ChannelLook {
    int channel;
    const char* name;
    std::int32_t colour;  // blue × 65536 + green × 256 + red
    int limit;
};

// Names, colours and limits of an installation that graphs every series of `member`.
inline void SetChannelsFor(std::string_view member, ChannelTable& table) {
    SetDefaultChannelTable(table);
    static constexpr ChannelLook kWindAndSun[] = {
        {1, "Mill 1 A", 33023, 40},       {2, "Mill 2 A", 16744576, 40},
        {3, "Solar A", 65535, 40},        {4, "Load A", 16744703, 40},
        {9, "Battery V", 16777215, 32},   {12, "Wind m/s", 16776960, 25},
        {13, "Mill 1 RPM", 8454016, 600}, {14, "Mill 2 RPM", 12632256, 600},
        {17, "Mill 1 W", 255, 1000},      {18, "Mill 2 W", 16711935, 1000},
        {19, "Solar W", 65280, 1000},     {20, "Load W", 8421631, 1000},
    };
    static constexpr ChannelLook kHouse[] = {
        {9, "Battery V", 16777215, 32},      {10, "Bank 2 V", 4235519, 32},
        {11, "Bank 3 V", 16744576, 32},      {15, "Gas pulses", 65535, 100},
        {16, "Water pulses", 16776960, 100}, {17, "Solar W", 65535, 3000},
        {18, "Wind W", 16776960, 3000},      {19, "House total", 255, 4000},
        {20, "Heat pump", 33023, 4000},      {21, "Kitchen", 16744703, 4000},
        {22, "Workshop", 65280, 4000},       {23, "Office", 16744576, 4000},
        {24, "Garage", 16711935, 4000},
    };
    const bool windAndSun = member == "GraphBZ" || member == "GraphDEMO";
    const std::span<const ChannelLook> looks = windAndSun
                                                   ? std::span<const ChannelLook>(kWindAndSun)
                                                   : std::span<const ChannelLook>(kHouse);
    for (const ChannelLook& look : looks) {
        table.ChannelName[look.channel] = look.name;
        table.LineColour[look.channel] = look.colour;
        table.MaxLimit[look.channel] = static_cast<std::int16_t>(look.limit);
        table.enableGRAPHING[look.channel] = 1;
    }
    if (member == "GraphCC_QX") {
        for (int n = 3; n <= 8; ++n) {
            table.LineColour[n] = kHouse[(n + 3) % 13].colour;
        }
    }
}

// The file of the logging tick whose name begins with `prefix` ("BZ_"), in the first system
// type that writes one.
inline LogFile LogFileWithPrefix(std::string_view prefix) {
    if (prefix.ends_with('_')) {
        prefix.remove_suffix(1);
    }
    for (int type = 0; type <= 8; ++type) {
        for (const LogFile& file : LogFilesOf(type)) {
            if (file.prefix == prefix) {
                return file;
            }
        }
    }
    return LogFilesOf(1)[0];
}

// The text of a log of `records` records spread from 00:01 to 23:58, as `file` is written with
// the averages of `state` at each tick. `state.settings.LogDelay` is the interval written.
inline std::string LoggedDayText(const LogFile& file, int records, SharedState& state,
                                 unsigned seed = 7) {
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0, 1);
    double gust = 0;
    double heatPump = 0;
    std::string text;
    for (int r = 0; r < records; ++r) {
        const int minute = 1 + static_cast<int>(static_cast<long long>(r) * 1438 / records);
        const double hour = minute / 60.0;
        gust = 0.97 * gust + 0.35 * noise(random);
        const double breeze = 5.0 + 3.5 * std::sin((hour - 9) / 24 * 2 * M_PI) + gust;
        const double wind = std::max(0.0, breeze + 0.4 * noise(random));
        const double sun = hour > 7 && hour < 17.5
                               ? std::pow(std::sin((hour - 7) / 10.5 * M_PI), 1.5) *
                                     (0.85 + 0.15 * std::abs(std::sin(hour * 7)))
                               : 0;
        const double rpm1 = wind < 2.5 ? 0 : std::min(560.0, (wind - 2.5) * 48);
        const double rpm2 = wind < 3 ? 0 : std::min(540.0, (wind - 3) * 45);
        const double mill1 = 1000 * std::pow(rpm1 / 520, 3) * (0.9 + 0.05 * noise(random));
        const double mill2 = 800 * std::pow(rpm2 / 520, 3) * (0.9 + 0.05 * noise(random));
        const double meals = std::exp(-std::pow((hour - 7.5) / 0.5, 2)) +
                             std::exp(-std::pow((hour - 12.5) / 0.6, 2)) +
                             1.4 * std::exp(-std::pow((hour - 18.5) / 0.8, 2));
        const double load = 60 + 180 * meals + 25 * std::abs(noise(random));
        const double volts =
            24.6 + 1.2 * sun + 0.002 * (mill1 + mill2) - 0.004 * load + 0.05 * noise(random);
        heatPump = (r / 40) % 3 == 0 ? 1800 : (hour > 6 && hour < 22 ? 30 : 0);

        auto& v = state.AvgValue;
        auto& w = state.AvgWatts;
        v[1] = std::max(0.0, mill1 / volts);
        v[2] = std::max(0.0, mill2 / volts);
        v[3] = 32 * sun * (0.9 + 0.05 * noise(random));
        v[4] = load / volts;
        v[9] = volts;
        v[10] = volts - 0.3 + 0.05 * noise(random);
        v[11] = volts + 0.2 + 0.05 * noise(random);
        v[12] = wind;
        v[13] = rpm1;
        v[14] = rpm2;
        v[15] = std::max(0.0, 10 + 30 * meals + 4 * noise(random));
        v[16] = std::max(0.0, 5 + 40 * meals * std::abs(noise(random)));
        const double kitchen = 1600 * meals * std::abs(noise(random));
        const double workshop = hour > 8 && hour < 17 ? 300 + 200 * std::abs(noise(random)) : 0;
        const double office = hour > 8.5 && hour < 17.5 ? 120 + 20 * noise(random) : 15;
        const double garage = 40 + 600 * std::exp(-std::pow((hour - 17.8) / 0.3, 2));
        const double house = 250 + heatPump + kitchen + workshop + office + garage;
        // The meter family writes W1 to W6 from slots 2, 3, 4, 6, 7 and 8; the RE family all
        // eight in order.
        const double cc[] = {0, 0, house, heatPump, kitchen, 0, workshop, office, garage};
        const double re[] = {0,       2400 * sun, mill1 + mill2, house, heatPump,
                             kitchen, workshop,   office,        garage};
        for (int n = 1; n <= 8; ++n) {
            w[n] = file.family == LogFamily::CC ? cc[n] : re[n];
        }
        state.WattHours[1] += (mill1 + mill2) / 3600 * state.settings.LogDelay;
        const LocalDateTime at{2026, 11, 21, minute / 60, minute % 60, 0, 0};
        text += LogRecord(file, HoursMinutes(at), state);
    }
    return text;
}

// Writes that day of `prefix` into the logs folder of `folder` under the name of 21 November
// 2026, and returns the name.
inline std::string WriteLoggedDay(const std::filesystem::path& folder, std::string_view prefix,
                                  int records, SharedState& state) {
    const std::string name = std::string(prefix) + "2026_11_21.txt";
    WriteWholeFile(InFolder(folder, "/logs/" + name),
                   LoggedDayText(LogFileWithPrefix(prefix), records, state));
    return name;
}

}  // namespace brizalog::testing
