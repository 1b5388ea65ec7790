#pragma once

#include <QtWidgets/qtestsupport_widgets.h>
#include <QTemporaryDir>
#include <memory>
#include <string>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"

namespace brizalog::testing {

// The main window over the main form on the virtual platform: frames are queued by hand, the
// clock moves only when told, and message boxes answer themselves. For tests of what the window
// shows, without a serial device.
struct VirtualDesk {
    VirtualDesk() : timers(clock) {
        clock.Set({2026, 3, 7, 14, 5, 0, 0});
        folder = dir.path().toStdString();
        ProvisionProgramFolder(folder);
    }

    // Every channel present and displayed, with names for the meter channels.
    void AllChannelsOn() {
        ChannelTable table;
        SetDefaultChannelTable(table);
        const char* names[] = {"House total", "Heat pump", "Kitchen",
                               "Workshop",    "Office",    "Garage"};
        for (int n = 1; n <= 24; ++n) {
            table.enableDISPLAY[n] = 1;
            table.HARDWAREenabled[n] = 1;
            if (n >= 19) {
                table.ChannelName[n] = names[n - 19];
            }
        }
        WriteChannelTable(table, folder);
    }

    // Every channel on, the program started in system `type` and the window shown; false when
    // the window never came on the screen.
    bool ShowSystem(int type) {
        AllChannelsOn();
        Start();
        Click("setsystem(" + std::to_string(type) + ")");
        window->show();
        return QTest::qWaitForWindowExposed(window.get());
    }

    void Start() {
        form = std::make_unique<Brizalog>(folder, Services{clock, timers, serial, dialogs});
        window = std::make_unique<MainWindow>(*form);
        form->Form_Load();
        window->Render();
    }

    // Text arrives at the port and the serial event runs.
    void Receive(const std::string& text) {
        serial.Queue(text);
        window->ReceiveSerial();
        window->Render();
    }

    void Click(const std::string& name) {
        form->Click(name);
        window->Render();
    }

    QTemporaryDir dir;
    std::filesystem::path folder;
    VirtualClock clock;
    VirtualTimers timers;
    VirtualSerial serial;
    VirtualDialogs dialogs;
    std::unique_ptr<Brizalog> form;
    std::unique_ptr<MainWindow> window;
};

// A frame of each system type with believable raw values (default calibration: 0.1 per count).
inline std::string SampleFrame(int systemType, int sensor = 9) {
    switch (systemType) {
        case 0:
            return "[<V>132</V><I>215</I><S>78</S><R>2496</R>]";
        case 3:
            return "<msg><src><name>CC02</name></src><tmpr>21.4</tmpr><ch1><watts>00412</watts>"
                   "</ch1><ch2><watts>01250</watts></ch2><ch3><watts>00077</watts></ch3></msg>";
        case 4:
            return sensor == 9
                       ? "<msg><sensor>9</sensor><tmpr>21.4</tmpr><ch1><watts>00412</watts></ch1>"
                         "<ch2><watts>01250</watts></ch2><ch3><watts>00077</watts></ch3></msg>"
                       : "<msg><sensor>0</sensor><tmpr>19.8</tmpr><ch1><watts>00230</watts></ch1>"
                         "<ch2><watts>00018</watts></ch2><ch3><watts>00960</watts></ch3></msg>";
        default:
            return "[<A1>215</A1><A2>148</A2><A3>62</A3><A4>100</A4><A5>25</A5><A6>0</A6>"
                   "<A7>35</A7><A8>8</A8><V1>132</V1><V2>263</V2><V3>127</V3><WS>78</WS>"
                   "<R1>2496</R1><R2>2106</R2><P1>30</P1><P2>10</P2>]";
    }
}

}  // namespace brizalog::testing
