// A log file as each graph window reads it: the display of the whole day, then the time chart
// with the mouse over it and a zoom, the power curves, the distribution and the readouts.

#include <fstream>

#include "catalogue/config_files.h"
#include "fuzz_support.h"
#include "history/graph_windows.h"

using namespace brizalog;
using namespace brizalog::fuzz;

namespace {

constexpr const char* kClicks[] = {"XAxisRPM",     "XAxisWind", "Distribution", "XAxisTime",
                                   "CheckScaling", "av",        "aa1",          "DisplayButton"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Platform platform;
    static const std::filesystem::path folder = [] {
        std::filesystem::path f = FreshFolder("loader");
        std::filesystem::create_directories(f / "logs");
        return f;
    }();
    static SharedState state = [] {
        SharedState s;
        SetDefaultChannelTable(s.channels);
        s.settings.SystemType = 1;
        s.settings.LogDelay = 30;
        return s;
    }();
    Input in(data, size);
    const GraphLog& member = kGraphLogs[in.Byte() % std::size(kGraphLogs)];
    const std::uint8_t clicks = in.Byte();
    const double x = in.Byte();
    const double y = in.Byte();
    // Only this input's log is in the folder, so that File1 lists what this member reads.
    static const GraphLog* previous = nullptr;
    if (previous != nullptr && std::string_view(previous->file) != member.file) {
        std::filesystem::remove(folder / "logs" / previous->file);
    }
    previous = &member;
    std::ofstream(folder / "logs" / member.file, std::ios::binary | std::ios::trunc) << in.Rest();

    // The windows stay in memory between inputs, as between the readings of one session: each
    // reading fills its arrays afresh up to its own record count.
    static GraphWindows windows(state, folder, platform.clock, platform.dialogs);
    platform.clock.Set({2026, 3, 7, 18, 0, 0, 0});
    GraphWindow& window = windows.Open(member.window);
    window.Click("File1", member.file);
    window.Plot_MouseMove(x, y);
    window.Plot_MouseDown(x / 4, y);
    window.Plot_MouseUp(x, y);
    for (std::size_t i = 0; i < std::size(kClicks); ++i) {
        if ((clicks >> i) & 1) {
            window.Click(kClicks[i]);
            window.Plot_MouseMove(x, y);
        }
    }
    // Whatever the log holds, the chart is drawn in finite numbers: the window's surface turns
    // them into pixels.
    const RecordingPlot& plot = windows.PlotOf(member.window);
    for (const RecordingPlot::Op& op : plot.ops()) {
        for (double v : {op.x1, op.y1, op.x2, op.y2}) {
            if (!std::isfinite(v)) {
                Fault("a chart coordinate of the surface's operation", static_cast<int>(op.kind),
                      v);
            }
        }
    }
    platform.dialogs.messages.clear();
    return 0;
}
