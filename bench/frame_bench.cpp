// The whole road of one frame, and intake of a stream that never ends a frame.
//
//   build/bench/bench_frame_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "acquisition/brizalog.h"
#include "catalogue/channels.h"
#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"

namespace {

using namespace brizalog;

// A started main form of the given system type in a program folder of its own.
class StartedForm {
public:
    explicit StartedForm(int systemType) {
        std::random_device seed;
        m_folder = std::filesystem::temp_directory_path() /
                   ("brizalog-bench-" + std::to_string(std::mt19937_64(seed())()));
        std::filesystem::create_directories(m_folder);
        ProvisionProgramFolder(m_folder);
        const auto settings = InFolder(m_folder, "/hardware.cfg");
        std::string text = ReadWholeFile(settings);
        const std::string tag = "<SystemType>0</SystemType>";
        text.replace(text.find(tag), tag.size(),
                     "<SystemType>" + std::to_string(systemType) + "</SystemType>");
        WriteWholeFile(settings, text);
        m_clock.Set({2026, 3, 7, 14, 0, 0, 0});
        m_form = std::make_unique<Brizalog>(m_folder, m_services);
        m_form->Form_Load();
    }
    ~StartedForm() {
        m_form.reset();
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    void Receive(const std::string& text) {
        m_serial.Queue(text);
        m_form->MSComm1_OnComm();
    }
    Brizalog& form() { return *m_form; }

private:
    std::filesystem::path m_folder;
    VirtualClock m_clock;
    VirtualTimers m_timers{m_clock};
    VirtualSerial m_serial;
    VirtualDialogs m_dialogs;
    Services m_services{m_clock, m_timers, m_serial, m_dialogs};
    std::unique_ptr<Brizalog> m_form;
};

// A system 8 frame carrying all 24 tags of the default table, with board-like raw values.
std::string FullFrame() {
    std::string frame = "[";
    for (int n = 1; n <= kChannelCount; ++n) {
        const std::string tag(kChannelDefaults[n].tag);
        frame += "<" + tag + ">" + std::to_string(100 + n * 17) + "</" + tag + ">";
    }
    return frame + "]";
}

// Intake, decoding, CalculateChannels and RefreshPanel of one frame; with the argument 1 every
// channel is displayed, so that the panel writes all of its cells.
void SystemEightFrame(benchmark::State& state) {
    StartedForm started(8);
    if (state.range(0) == 1) {
        auto& channels = started.form().state().channels;
        for (int n = 1; n <= kChannelCount; ++n) {
            channels.enableDISPLAY[n] = 1;
            channels.HARDWAREenabled[n] = 1;
        }
    }
    const std::string frame = FullFrame();
    for (auto _ : state) {
        started.Receive(frame);
    }
    benchmark::DoNotOptimize(started.form().state().ChannelWatts[8]);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SystemEightFrame)->ArgName("allDisplayed")->Arg(0)->Arg(1);

// 1 MiB of text without "]", delivered one byte per serial event.
void MegabyteWithoutClosingBracket(benchmark::State& state) {
    const std::string text(1 << 20, 'x');
    for (auto _ : state) {
        state.PauseTiming();
        auto started = std::make_unique<StartedForm>(1);
        const std::string byte(1, 'x');
        state.ResumeTiming();
        for (std::size_t i = 0; i < text.size(); ++i) {
            started->Receive(byte);
        }
        benchmark::DoNotOptimize(started->form().ReceiveBuffer().size());
        state.PauseTiming();
        started.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(MegabyteWithoutClosingBracket)->Unit(benchmark::kMillisecond);

}  // namespace
