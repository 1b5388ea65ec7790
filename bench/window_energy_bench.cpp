// The Energy window over a year of 10-second BZ logs (the cache of energy_bench): the power chart
// of the whole year at hourly points, built and painted; and the logging tick of the main form
// on the window's thread, alone and while the window reads the year behind its progress bar.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QChartView>
#include <QEventLoop>
#include <QTabWidget>
#include <QTimer>
#include <filesystem>

#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/virtual_platform.h"
#include "energy/qt/energy_window.h"
#include "support/logged_year.h"

namespace {

using namespace brizalog;

const std::filesystem::path& Year() {
    static const std::filesystem::path folder = testing::CachedLoggedYear(BRIZALOG_BENCH_CACHE);
    return folder;
}

// Waits until the window has shown what it read.
void WaitForBook(EnergyWindow& window) {
    QEventLoop loop;
    QObject::connect(&window, &EnergyWindow::bookShown, &loop, &QEventLoop::quit);
    if (window.Busy()) {
        loop.exec();
    }
}

void BM_YearPowerChart(benchmark::State& state) {
    SharedState shared;
    testing::SetYearChannels(shared.channels);
    EnergyWindow window(shared, Year(), {2025, 12, 31});
    window.resize(1180, 640);
    window.tabs()->setCurrentIndex(1);
    window.Load();
    WaitForBook(window);
    for (auto _ : state) {
        window.ShowPower({2025, 1, 1}, 365);
        // Painted into an image as the screen would be, at the window's size.
        const QPixmap picture = window.powerView()->grab();
        benchmark::DoNotOptimize(picture.cacheKey());
    }
    state.counters["points"] = static_cast<double>(
        HourlyPower(window.model().book(), {2025, 1, 1}, {2025, 12, 31}).size());
}
BENCHMARK(BM_YearPowerChart)->Unit(benchmark::kMillisecond);

// The logging tick of system 1 at 10 seconds, with the interval's events of the window's thread
// (the progress of the reading) handled after it. Arg 1: the window reads the year meanwhile,
// from scratch, and starts again whenever it is done.
void BM_LoggingTick(benchmark::State& state) {
    const std::filesystem::path folder =
        std::filesystem::path(BRIZALOG_BENCH_CACHE) / "energy-tick";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "logs");
    VirtualClock clock;
    VirtualTimers timers(clock);
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Brizalog form(folder, Services{clock, timers, serial, dialogs});
    SharedState& s = form.state();
    SetDefaultChannelTable(s.channels);
    s.settings.SystemType = 1;
    s.settings.LogDelay = 10;
    s.LoggingActive = 1;
    form.model().caption = "Battery = 24.60V ";
    clock.Set({2026, 3, 7, 8, 0, 0, 0});

    SharedState shared;
    testing::SetYearChannels(shared.channels);
    std::unique_ptr<EnergyWindow> window;
    const auto read = [&] {
        std::filesystem::remove(Year() / "logs" / "energy.index");
        window->Load();
    };
    if (state.range(0) == 1) {
        window = std::make_unique<EnergyWindow>(shared, Year(), CivilDate{2025, 12, 31});
        read();
    }
    for (auto _ : state) {
        if (window && !window->Busy()) {
            state.PauseTiming();
            read();
            state.ResumeTiming();
        }
        for (int i = 1; i <= 16; ++i) {
            s.SumValue[i] = 10 + i;
        }
        for (int j = 1; j <= 8; ++j) {
            s.SumWatts[j] = 100 * j;
        }
        s.GoodDataCount = 10;
        clock.Set(AddMilliseconds(clock.Now(), 10000));
        form.Timer1_Timer();
        QCoreApplication::processEvents();
    }
    window.reset();
    std::filesystem::remove_all(folder);
}
BENCHMARK(BM_LoggingTick)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
