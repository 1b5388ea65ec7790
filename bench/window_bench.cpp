// What a frame costs on the desktop: the serial event of the main form and the window showing
// the model again, in system 8 with every channel on the panel. Runs offscreen.

#include <benchmark/benchmark.h>

#include "panel_desk.h"

namespace {

void BM_FrameThroughTheWindow(benchmark::State& state) {
    PanelDesk desk;
    for (auto _ : state) {
        desk.Frame();
    }
}
BENCHMARK(BM_FrameThroughTheWindow);

void BM_RenderWithNothingChanged(benchmark::State& state) {
    PanelDesk desk;
    desk.Frame();
    for (auto _ : state) {
        desk.window->Render();
    }
}
BENCHMARK(BM_RenderWithNothingChanged);

}  // namespace
