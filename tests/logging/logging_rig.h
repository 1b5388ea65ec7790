#pragma once

#include <string>

#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/virtual_platform.h"
#include "support/test_folder.h"

namespace brizalog::testing {

// The main form on the virtual platform, in a fresh program folder with its logs and excel
// folders, the first-run channel table, and the title of a form that has had frames.
struct LoggingRig {
    TestFolder folder;
    VirtualClock clock;
    VirtualTimers timers{clock};
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Brizalog form{folder.path(), Services{clock, timers, serial, dialogs}};
    SharedState& s = form.state();

    explicit LoggingRig(int systemType = 1, double logDelay = 30) {
        std::filesystem::create_directories(folder.path() / "logs");
        std::filesystem::create_directories(folder.path() / "excel");
        SetDefaultChannelTable(s.channels);
        s.settings.SystemType = static_cast<std::int16_t>(systemType);
        s.settings.LogDelay = logDelay;
        s.settings.WSUnits = "km/h";
        form.model().caption = "Battery = 13.27V ";
        form.model().delay.text = std::to_string(static_cast<int>(logDelay));
        At(2026, 3, 7, 14, 5, 0);
    }
    void At(int year, int month, int day, int hour, int minute, int second, int ms = 0) {
        clock.Set({year, month, day, hour, minute, second, ms});
    }
    // What the calculation leaves after `frames` identical frames.
    void Frames(long frames, int channel, double value) {
        s.SumValue[channel] += value * static_cast<double>(frames);
    }
    void FramesWatts(long frames, int slot, double watts) {
        s.SumWatts[slot] += watts * static_cast<double>(frames);
    }
    std::string Read(const std::string& relative) const { return folder.Read(relative); }
};

}  // namespace brizalog::testing
