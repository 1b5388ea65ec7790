// What a frame costs while a setup window stands over the main window: the serial event, the main
// window and the open window showing their models again, in system 8 with every row offered.
// Runs offscreen.

#include <benchmark/benchmark.h>

#include "setup/qt/calibration_window.h"
#include "setup/qt/channel_setup_window.h"
#include "support/virtual_desk.h"

namespace {

using brizalog::testing::SampleFrame;

struct Desk : brizalog::testing::VirtualDesk {
    Desk() {
        ShowSystem(8);
        window->Render();
    }
    void Frame() {
        serial.Queue(kFrame);
        form->MSComm1_OnComm();
        window->Render();
    }
    const std::string kFrame = SampleFrame(8);
};

void BM_FrameBehindTheHardwareChannelForm(benchmark::State& state) {
    Desk desk;
    brizalog::ChannelSetupWindow setup("setupHARDWAREchannels", desk.form->state(), desk.folder,
                                       desk.dialogs);
    setup.Load();
    setup.show();
    for (auto _ : state) {
        desk.Frame();
        setup.Render();
    }
}
BENCHMARK(BM_FrameBehindTheHardwareChannelForm);

void BM_CalibrationTickWithAFrame(benchmark::State& state) {
    Desk desk;
    brizalog::CalibrationWindow calibration(desk.form->state(), desk.folder, desk.dialogs,
                                            desk.timers);
    calibration.Load();
    calibration.show();
    for (auto _ : state) {
        desk.Frame();
        calibration.form().Timer1_Timer();
        calibration.Render();
    }
}
BENCHMARK(BM_CalibrationTickWithAFrame);

}  // namespace
