#pragma once

// What the harnesses share: a program folder of their own, a platform whose timers never run by
// themselves (the harness calls the handlers), and the checks that turn a silent fault into a
// crash the fuzzer reports.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "catalogue/failure.h"
#include "catalogue/services.h"
#include "catalogue/state.h"
#include "catalogue/virtual_platform.h"

namespace brizalog::fuzz {

// The countdowns are the harness's: a timer ticks when the harness calls its handler.
class StillTimers : public TimerBackend {
public:
    void Restart(FormTimer&) override {}
    void Stop(FormTimer&) override {}
};

struct Platform {
    VirtualClock clock;
    StillTimers timers;
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Services services() { return Services{clock, timers, serial, dialogs}; }
};

// A fresh folder, one per harness process.
inline std::filesystem::path FreshFolder(std::string_view harness) {
    namespace fs = std::filesystem;
    static unsigned serial = 0;
    // Memory, where the machine has a folder of it: the harnesses write files at every input.
    std::error_code error;
    const fs::path base =
        fs::is_directory("/dev/shm", error) ? fs::path("/dev/shm") : fs::temp_directory_path();
    fs::path folder = base / ("brizalog-fuzz-" + std::string(harness) + "-" +
                              std::to_string(reinterpret_cast<std::uintptr_t>(&serial)) + "-" +
                              std::to_string(++serial));
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

[[noreturn]] inline void Fault(const char* what, int index, double value) {
    std::fprintf(stderr, "fault: %s[%d] = %g\n", what, index, value);
    std::abort();
}

template <typename Array>
void CheckFiniteArray(const char* name, const Array& array) {
    for (int i = Array::kLow; i <= Array::kHigh; ++i) {
        if (!std::isfinite(array[i])) {
            Fault(name, i, array[i]);
        }
    }
}

// No infinity and no undefined value may stand in the shared arrays after a handler: a later
// step would turn it into a stopped log, a frozen cell or a wild conversion.
inline void CheckFinite(const SharedState& s) {
    CheckFiniteArray("RawValue", s.RawValue);
    CheckFiniteArray("ChannelValue", s.ChannelValue);
    CheckFiniteArray("ChannelWatts", s.ChannelWatts);
    CheckFiniteArray("SumValue", s.SumValue);
    CheckFiniteArray("AvgValue", s.AvgValue);
    CheckFiniteArray("SumWatts", s.SumWatts);
    CheckFiniteArray("AvgWatts", s.AvgWatts);
    CheckFiniteArray("WattHours", s.WattHours);
    CheckFiniteArray("DailyExtreme", s.DailyExtreme);
    const double plots[] = {s.PlotWatts1, s.PlotWatts2, s.PlotRPM1, s.PlotRPM2};
    for (int i = 0; i < 4; ++i) {
        if (!std::isfinite(plots[i])) {
            Fault("PlotWatts1, PlotWatts2, PlotRPM1, PlotRPM2", i, plots[i]);
        }
    }
}

// Reads the input front to back; past its end every read gives 0 and the empty text.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    bool empty() const { return m_at >= m_size; }
    std::uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    std::string_view Bytes(std::size_t count) {
        count = std::min(count, m_size - std::min(m_at, m_size));
        const std::string_view text(reinterpret_cast<const char*>(m_data) + m_at, count);
        m_at += count;
        return text;
    }
    std::string_view Rest() { return Bytes(m_size); }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

// Each graph window with the name of a log of its own family, for the harnesses that load a day.
struct GraphLog {
    const char* window;
    const char* file;
};
inline constexpr GraphLog kGraphLogs[] = {
    {"GraphBZ", "BZ_2026_03_07.txt"}, {"GraphDEMO", "WD_2026_03_07.txt"},
    {"GraphRE", "RE_2026_03_07.txt"}, {"GraphML", "ML_2026_03_07.txt"},
    {"GraphCC", "CC_2026_03_07.txt"}, {"GraphCC_QX", "CC_2026_03_07.txt"},
};

}  // namespace brizalog::fuzz
