// What a frame costs on the desktop: the serial event of the main form and the window showing
// the model again, in system 8 with every channel on the panel. Runs offscreen.

#include <benchmark/benchmark.h>

#include "support/virtual_desk.h"

namespace {

using brizalog::testing::SampleFrame;

// System 8 with every channel on the panel, started and laid out.
struct Desk : brizalog::testing::VirtualDesk {
    Desk() {
        ShowSystem(8);
        window->Render();
    }
};

const std::string kFrame = SampleFrame(8);

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
