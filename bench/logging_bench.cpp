// The cost of one logging tick of system 8, which appends to three logs, at the start of a day
// and after 8,000 ticks of the same day. A tick opens, appends to and closes each file, so its
// cost must not grow with the length of the files.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <string>

#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/virtual_platform.h"
#include "logging/log_records.h"

namespace {

using namespace brizalog;
namespace fs = std::filesystem;

struct TickRig {
    fs::path folder;
    VirtualClock clock;
    VirtualTimers timers{clock};
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Brizalog form;

    TickRig()
        : folder(fs::temp_directory_path() /
                 ("brizalog-bench-" + std::to_string(std::random_device{}()))),
          form(folder, Services{clock, timers, serial, dialogs}) {
        fs::create_directories(folder / "logs");
        SharedState& s = form.state();
        SetDefaultChannelTable(s.channels);
        s.settings.SystemType = 8;
        s.settings.LogDelay = 10;
        s.LoggingActive = 1;
        form.model().caption = "Battery = 13.27V ";
        form.model().delay.text = "10";
        clock.Set({2026, 3, 7, 14, 5, 0, 0});
    }
    ~TickRig() {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    // One interval's worth of frames, as the calculation leaves them.
    void Frames() {
        SharedState& s = form.state();
        s.GoodDataCount = 20;
        for (int i = 1; i <= 16; ++i) {
            s.SumValue[i] = 20 * (i + 0.37);
        }
        for (int j = 1; j <= 8; ++j) {
            s.SumWatts[j] = 20 * (j * 51.3);
        }
    }
    // The three logs of today as they stand after `ticks` ticks.
    void Prefill(int ticks) {
        for (const LogFile& file : LogFilesOf(8)) {
            const fs::path path = InFolder(folder, LogFileLiteral(file.prefix, "2026_03_07"));
            std::string text;
            const std::string line = LogRecord(file, "14:05", form.state());
            for (int k = 0; k < ticks; ++k) {
                text += line;
            }
            WriteWholeFile(path, text);
        }
    }
    // Back to the length after the prefill; before the day's first tick there is no file.
    void CutBack(const std::uintmax_t (&sizes)[3]) {
        int k = 0;
        for (const LogFile& file : LogFilesOf(8)) {
            const fs::path path = InFolder(folder, LogFileLiteral(file.prefix, "2026_03_07"));
            const std::uintmax_t size = sizes[k++];
            size == 0 ? static_cast<void>(fs::remove(path)) : fs::resize_file(path, size);
        }
    }
};

// Tick number `state.range(0)` + 1 of the day (the first tick also makes the three files): the
// files are set back to the same length before each measured tick, so every iteration measures the
// same tick.
void BM_SystemEightTick(benchmark::State& state) {
    TickRig rig;
    const int earlier = static_cast<int>(state.range(0));
    rig.Prefill(earlier);
    std::uintmax_t sizes[3];
    int k = 0;
    for (const LogFile& file : LogFilesOf(8)) {
        sizes[k++] = fs::file_size(InFolder(rig.folder, LogFileLiteral(file.prefix, "2026_03_07")));
    }
    for (auto _ : state) {
        state.PauseTiming();
        rig.CutBack(sizes);
        rig.Frames();
        state.ResumeTiming();
        rig.form.Timer1_Timer();
    }
    state.SetLabel("tick " + std::to_string(earlier + 1) + ", RE log of " +
                   std::to_string(sizes[1]) + " bytes before it");
}
BENCHMARK(BM_SystemEightTick)->Arg(0)->Arg(1)->Arg(7999)->Unit(benchmark::kMicrosecond);

}  // namespace
