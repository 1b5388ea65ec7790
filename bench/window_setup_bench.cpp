// What a frame costs while a setup window stands over the main window: the serial event, the main
// window and the open window showing their models again, in system 8 with every row offered.
// Runs offscreen.

#include <benchmark/benchmark.h>

#include "panel_desk.h"
#include "setup/qt/calibration_window.h"
#include "setup/qt/channel_setup_window.h"

namespace {

void BM_FrameBehindTheHardwareChannelForm(benchmark::State& state) {
    PanelDesk desk;
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
    PanelDesk desk;
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
