// The Energy window's book of a year of 10-second BZ logs (365 files, 3.15 million records):
// its first opening, which reads every log and writes the index, and an opening with the index
// when one new day has to be read. The year is generated once into the build folder's cache.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "catalogue/files.h"
#include "energy/energy_index.h"
#include "support/logged_year.h"

namespace {

using namespace brizalog;

const std::filesystem::path& Year() {
    static const std::filesystem::path folder = testing::CachedLoggedYear(BRIZALOG_BENCH_CACHE);
    return folder;
}

const ChannelTable& Channels() {
    static const ChannelTable table = [] {
        ChannelTable t;
        testing::SetYearChannels(t);
        return t;
    }();
    return table;
}

void BM_FirstOpening(benchmark::State& state) {
    const auto& folder = Year();
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(folder / "logs" / "energy.index");
        state.ResumeTiming();
        auto book = OpenEnergyBook(folder, Channels());
        benchmark::DoNotOptimize(book);
        if (!book || book->reread != 365) {
            state.SkipWithError("the year was not read whole");
        }
    }
}
BENCHMARK(BM_FirstOpening)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

void BM_OpeningWithIndexOneNewDay(benchmark::State& state) {
    const auto& folder = Year();
    OpenEnergyBook(folder, Channels());  // the index as a first opening leaves it
    const std::filesystem::path last = folder / "logs" / "BZ_2025_12_31.txt";
    const std::string text = ReadWholeFile(last);
    for (auto _ : state) {
        state.PauseTiming();
        // The day's log written again: a log that changed since the index was written.
        WriteWholeFile(last, text);
        state.ResumeTiming();
        auto book = OpenEnergyBook(folder, Channels());
        benchmark::DoNotOptimize(book);
        if (!book || book->reread != 1) {
            state.SkipWithError("more or less than the changed day was read");
        }
    }
}
BENCHMARK(BM_OpeningWithIndexOneNewDay)->Unit(benchmark::kMillisecond)->UseRealTime();

// One day's log read alone: what the first opening costs per day.
void BM_OneDay(benchmark::State& state) {
    const auto& folder = Year();
    const std::vector<LoggedDay> days = FindLoggedDays(folder);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ReadDayEnergy(folder, days.back(), Channels()));
    }
}
BENCHMARK(BM_OneDay)->Unit(benchmark::kMillisecond);

}  // namespace
