// What a frame costs on the desktop: the serial event of the main form and the window showing
// the model again, in system 8 with every channel on the panel. Runs offscreen.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"

namespace {

using namespace brizalog;

constexpr const char* kFrame =
    "[<A1>215</A1><A2>148</A2><A3>62</A3><A4>100</A4><A5>25</A5><A6>0</A6><A7>35</A7><A8>8</A8>"
    "<V1>132</V1><V2>263</V2><V3>127</V3><WS>78</WS><R1>2496</R1><R2>2106</R2><P1>30</P1>"
    "<P2>10</P2>]";

struct Desk {
    Desk() : timers(clock) {
        folder = dir.path().toStdString();
        ProvisionProgramFolder(folder);
        ChannelTable table;
        SetDefaultChannelTable(table);
        for (int n = 1; n <= 24; ++n) {
            table.enableDISPLAY[n] = 1;
            table.HARDWAREenabled[n] = 1;
        }
        WriteChannelTable(table, folder);
        form = std::make_unique<Brizalog>(folder, Services{clock, timers, serial, dialogs});
        window = std::make_unique<MainWindow>(*form);
        form->Form_Load();
        form->Click("setsystem(8)");
        window->show();
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

void BM_FrameThroughTheWindow(benchmark::State& state) {
    Desk desk;
    for (auto _ : state) {
        desk.serial.Queue(kFrame);
        desk.form->MSComm1_OnComm();
        desk.window->Render();
    }
}
BENCHMARK(BM_FrameThroughTheWindow);

void BM_RenderWithNothingChanged(benchmark::State& state) {
    Desk desk;
    desk.serial.Queue(kFrame);
    desk.form->MSComm1_OnComm();
    desk.window->Render();
    for (auto _ : state) {
        desk.window->Render();
    }
}
BENCHMARK(BM_RenderWithNothingChanged);

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
