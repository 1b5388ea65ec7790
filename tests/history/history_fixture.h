#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "catalogue/config_files.h"
#include "catalogue/state.h"
#include "catalogue/virtual_platform.h"
#include "history/graph_windows.h"
#include "support/test_folder.h"

namespace brizalog::testing {

// A program folder with a logs and an excel folder, the first-run channel table, the clock at
// 7 March 2026 15:00, and the six graph windows on recording surfaces.
class HistoryTest : public ::testing::Test {
protected:
    HistoryTest() : windows(state, folder.path(), clock, dialogs) {
        SetDefaultChannelTable(state.channels);
        state.settings.PersonalString = "Brizalog of the hill";
        state.settings.WSUnits = "mph";
        state.settings.SystemType = 1;
        clock.Set({2026, 3, 7, 15, 0, 0, 0});
        folder.Write("logs/.keep", "");
        folder.Write("excel/.keep", "");
    }

    // Writes a log of these records, each ended by CR LF as the logging tick writes them.
    void WriteLog(const std::string& name, const std::vector<std::string>& records) const {
        std::string text;
        for (const std::string& record : records) {
            text += record + "\r\n";
        }
        folder.Write("logs/" + name, text);
    }
    // A record of the BZ family with the default tags.
    static std::string BzRecord(const std::string& time, double volts, double amps1, double rpm = 0,
                                double wind = 0, int interval = 30, double amps2 = 0);

    std::vector<std::string> Draw(std::string_view window) {
        return windows.PlotOf(window).Lines();
    }
    std::string Text(GraphWindow& window, std::string_view control) {
        return window.Find(control)->text;
    }
    std::vector<std::string> TakeMessages() {
        std::vector<std::string> taken;
        taken.swap(dialogs.messages);
        return taken;
    }

    TestFolder folder;
    SharedState state;
    VirtualClock clock;
    VirtualDialogs dialogs;
    GraphWindows windows;
};

}  // namespace brizalog::testing
