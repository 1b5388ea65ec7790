// The graph windows at the size limit of their arrays: reading a day of 10,000 BZ records,
// drawing 9,999 of them with all twelve series, and the distribution of power over them.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <string>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/virtual_platform.h"
#include "history/graph_windows.h"

namespace {

using namespace brizalog;

class LimitDay {
public:
    explicit LimitDay(int records)
        : m_folder(std::filesystem::temp_directory_path() /
                   ("brizalog-bench-" + std::to_string(std::random_device{}()))),
          m_windows(m_state, m_folder, m_clock, m_dialogs) {
        SetDefaultChannelTable(m_state.channels);
        for (int n = 1; n <= 24; ++n) {
            m_state.channels.enableGRAPHING[n] = 1;
        }
        m_clock.Set({2026, 3, 7, 23, 0, 0, 0});
        std::filesystem::create_directories(m_folder / "logs");
        std::mt19937 random(7);
        std::uniform_real_distribution<double> amps(-2, 20);
        std::string text;
        for (int i = 0; i < records; ++i) {
            const int minute = 1 + i * 1400 / records;
            text += "<T>" + FormatPattern(minute / 60, "00") + ":" +
                    FormatPattern(minute % 60, "00") + "</T><L>5</L><V1>" +
                    FormatPattern(12 + amps(random) / 10, "##.00") + "</V1>";
            for (int a = 1; a <= 4; ++a) {
                const std::string tag = "A" + std::to_string(a);
                text += "<" + tag + ">" + FormatPattern(amps(random), "##0.0") + "</" + tag + ">";
            }
            text += "<R2>0</R2><R1>" + FormatPattern(amps(random) * 20, "###0") + "</R1><WS>" +
                    FormatPattern(amps(random), "##0") + "</WS>\r\n";
        }
        WriteWholeFile(m_folder / "logs" / "BZ_2026_03_07.txt", text);
    }
    ~LimitDay() { std::filesystem::remove_all(m_folder); }

    GraphWindow& Window() { return m_windows.Window("GraphBZ"); }
    GraphWindow& Open() { return m_windows.Open("GraphBZ"); }
    SharedState& state() { return m_state; }
    RecordingPlot& plot() { return m_windows.PlotOf("GraphBZ"); }

private:
    std::filesystem::path m_folder;
    SharedState m_state;
    VirtualClock m_clock;
    VirtualDialogs m_dialogs;
    GraphWindows m_windows;
};

void LoadLimitDay(benchmark::State& bench) {
    LimitDay day(10000);
    GraphWindow& window = day.Open();
    for (auto _ : bench) {
        window.ReadLog();
        benchmark::DoNotOptimize(window.RecordCount);
    }
}
BENCHMARK(LoadLimitDay)->Unit(benchmark::kMillisecond);

void DrawTwelveSeries(benchmark::State& bench) {
    LimitDay day(9999);
    GraphWindow& window = day.Open();
    for (auto _ : bench) {
        window.TimeChart();
        benchmark::DoNotOptimize(day.plot().ops().size());
    }
    bench.counters["lines"] = static_cast<double>(day.plot().ops().size());
}
BENCHMARK(DrawTwelveSeries)->Unit(benchmark::kMillisecond);

void Distribution(benchmark::State& bench) {
    LimitDay day(9999);
    GraphWindow& window = day.Open();
    day.state().channels.MaxLimit[17] = 3000;
    for (auto _ : bench) {
        window.Distribution_Click();
        benchmark::DoNotOptimize(day.plot().ops().size());
    }
}
BENCHMARK(Distribution)->Unit(benchmark::kMillisecond);

}  // namespace
