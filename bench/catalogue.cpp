// The catalogue's hot paths: every panel cell and log field goes through a number pattern on each
// frame or tick, and every setup window's close reloads the three configuration files.

#include <benchmark/benchmark.h>

#include <string>

#include "catalogue/config_files.h"
#include "catalogue/patterns.h"
#include "catalogue/text_rules.h"

namespace {

void FormatPanelCell(benchmark::State& state) {
    double value = 13.2666;
    for (auto _ : state) {
        benchmark::DoNotOptimize(brizalog::FormatPattern(value, "#0.00 V"));
        value += 0.001;
    }
}
BENCHMARK(FormatPanelCell);

void ReadNumberOfAFrameElement(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(brizalog::ParseNumber(" 512.25"));
    }
}
BENCHMARK(ReadNumberOfAFrameElement);

void LoadDefaultChannelTable(benchmark::State& state) {
    const std::string text = brizalog::DefaultChannelTableText();
    brizalog::ChannelTable table;
    for (auto _ : state) {
        brizalog::LoadChannelTable(text, table);
        benchmark::DoNotOptimize(table.MaxLimit[24]);
    }
}
BENCHMARK(LoadDefaultChannelTable);

void LoadSettingsShapeC(benchmark::State& state) {
    const std::string text = brizalog::SettingsShapeC();
    brizalog::Settings settings;
    for (auto _ : state) {
        brizalog::LoadSettings(text, settings);
        benchmark::DoNotOptimize(settings.LogDelay);
    }
}
BENCHMARK(LoadSettingsShapeC);

}  // namespace
