// The CSV export and the daily energy collation of each graph window, from a view of a loaded
// log: the log, the time boxes the user typed and the collation box come from the input, then
// the export and a second visit that collates. Input: the member, a flags byte, four time boxes
// (a length byte and that many bytes each), then the log.

#include <fstream>

#include "catalogue/config_files.h"
#include "fuzz_support.h"
#include "history/graph_windows.h"

using namespace brizalog;
using namespace brizalog::fuzz;

namespace {

constexpr const char* kTimeBoxes[] = {"Time1h", "Time1m", "Time2h", "Time2m"};

// Any text written in a number's place that is no finite number.
bool HoldsNoNumber(const std::string& text) {
    for (const char* word : {"inf", "nan", "INF", "NAN"}) {
        if (text.find(word) != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace fs = std::filesystem;
    static Platform platform;
    static const fs::path folder = FreshFolder("export");
    static SharedState state = [] {
        SharedState s;
        SetDefaultChannelTable(s.channels);
        s.settings.SystemType = 1;
        s.settings.LogDelay = 30;
        return s;
    }();
    // Each input starts from empty logs and Excel folders, so the folder does not grow.
    fs::remove_all(folder / "logs");
    fs::remove_all(folder / "Excel");
    fs::create_directories(folder / "logs");
    fs::create_directories(folder / "Excel");

    Input in(data, size);
    const GraphLog& member = kGraphLogs[in.Byte() % std::size(kGraphLogs)];
    const std::uint8_t flags = in.Byte();
    std::string times[4];
    for (std::string& time : times) {
        time = std::string(in.Bytes(in.Byte() % 8));
    }
    std::ofstream(folder / "logs" / member.file, std::ios::binary | std::ios::trunc) << in.Rest();

    static GraphWindows windows(state, folder, platform.clock, platform.dialogs);
    platform.clock.Set({2026, 3, 7, 18, 0, 0, 0});
    GraphWindow& window = windows.Open(member.window);
    if ((flags & 1) != 0) {
        window.Click("Collate");
    }
    window.Click("File1", member.file);
    if ((flags & 2) != 0) {
        for (int i = 0; i < 4; ++i) {
            window.SetText(kTimeBoxes[i], times[i]);
        }
        window.Click("DisplayButton");
    }
    window.Click("CSV");
    // A second visit of the day collates it, once.
    window.Click("File1", member.file);
    window.Click("File1", member.file);
    if ((flags & 1) != 0) {
        window.Click("Collate");
    }

    for (const fs::path sub : {fs::path("Excel"), fs::path("logs")}) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder / sub)) {
            if (entry.path().extension() == ".csv" ||
                entry.path().filename().string().find("Watt") != std::string::npos) {
                std::ifstream file(entry.path(), std::ios::binary);
                const std::string text((std::istreambuf_iterator<char>(file)),
                                       std::istreambuf_iterator<char>());
                if (HoldsNoNumber(text)) {
                    std::fprintf(stderr, "fault: %s holds no number\n", entry.path().c_str());
                    std::abort();
                }
            }
        }
    }
    platform.dialogs.messages.clear();
    return 0;
}
