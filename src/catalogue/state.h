#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "catalogue/indexed_array.h"
#include "catalogue/options.h"

namespace brizalog {

// The settings of hardware.cfg as they stand in memory.
struct Settings {
    double PortNumber = 0;
    double BaudRate = 0;
    double SaveExcel = 0;
    double LogDelay = 0;  // seconds
    double LogOn = 0;
    std::string WSUnits;
    std::uint8_t DispMessages = 0;  // stored and written back; nothing else reads it
    std::string PersonalString;
    std::string LastFile;  // always written, never read, never assigned
    std::int16_t SystemType = 0;
    std::array<double, 3> PowerCents{};  // stored only; no calculation uses them
    int AbortFlag = 0;                   // set by the splash's abort; nothing reads it
};

// The channel table of channels.cfg, indexes 0..24, element 0 left alone.
struct ChannelTable {
    IndexedArray<std::uint8_t, 0, 24> enableLOGGING;  // loaded and saved, consulted by nothing
    IndexedArray<std::uint8_t, 0, 24> enableDISPLAY;
    IndexedArray<std::uint8_t, 0, 24> enableGRAPHING;
    IndexedArray<std::uint8_t, 0, 24> HARDWAREenabled;
    IndexedArray<std::string, 0, 24> ChannelName;
    IndexedArray<std::int32_t, 0, 24> LineColour;  // blue × 65536 + green × 256 + red
    IndexedArray<std::int16_t, 0, 24> MaxLimit;
    IndexedArray<std::string, 0, 24> XMLsoftware;  // tag of the channel in the daily logs
    IndexedArray<std::string, 0, 24> XMLhardware;  // tag of the channel in logger frames
};

// The calibration of calibrations.cfg: channels 1..16; 0 and 17..20 stay 0.
struct Calibration {
    IndexedArray<double, 0, 20> ADCOffset;
    IndexedArray<double, 0, 20> ADCDivider;             // a multiplier, despite its name
    IndexedArray<std::string, 0, 16> ChannelSelection;  // "A", "V" or "P"
};

// Every piece of process-wide state of the system: the shared arrays with their exact index
// ranges (element 0 present and left alone), the settings, the channel table and the calibration.
// One instance lives as long as the main form; every handler reads and writes it on the one
// user-interface thread, so it needs no lock.
struct SharedState {
    IndexedArray<double, 0, 30> RawValue;      // last raw reading, by channel or meter slot
    IndexedArray<double, 0, 24> ChannelValue;  // scaled reading of channels 1..16
    IndexedArray<double, 0, 10> ChannelWatts;  // power of slots 1..8
    IndexedArray<double, 0, 20> SumValue;      // interval sums of ChannelValue[1..16]
    IndexedArray<double, 0, 20> AvgValue;      // last interval's averages
    IndexedArray<double, 0, 10> SumWatts;      // interval sums of ChannelWatts[1..8]
    IndexedArray<double, 0, 10> AvgWatts;      // last interval's average power
    IndexedArray<double, 0, 10> WattHours;     // energy of slots 1..8 since midnight
    IndexedArray<double, 0, 30> DailyExtreme;  // maxima at channel − 1, minima 24..26, 27..30
    long GoodDataCount = 0;                    // frames calculated in the current logging interval
    int LoggingActive = 0;                     // 1 while logging has been started
    std::string LastFrame;                     // the most recent complete frame of either kind

    // The last frame's values for the live performance plot and the bar meters.
    double PlotWatts1 = 0;
    double PlotWatts2 = 0;
    double PlotRPM1 = 0;
    double PlotRPM2 = 0;

    std::string ErrorContext;  // names the stage that ran last
    std::string LastLogTime;   // time of the last written record, "hh:mm"

    // What the small input windows hand back.
    std::string EditText;
    long EditColour = 0;

    Settings settings;
    ChannelTable channels;
    Calibration calibration;
    // Brizalog's own choices (options.cfg), read at start-up and after the Options window.
    Options options;
};

}  // namespace brizalog
