// The spreadsheet copy written for real, as the logging tick writes it: a file of the day that
// may already hold anything (a torn row of a power cut, another program's text), the wind
// caption, the readings, the interval and the time of the tick from the input. Every tick adds
// exactly its row at the end, the header only to a new file; and with the unattended logger's
// choice, the row starts on a line of its own. Input: flags, the interval, the hour, minute and
// second, the caption (a length byte and its bytes), five readings of eight bytes, then the
// file's earlier text.

#include <cstring>
#include <fstream>

#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/local_time.h"
#include "fuzz_support.h"
#include "logging/log_records.h"

using namespace brizalog;
using namespace brizalog::fuzz;

namespace {

constexpr double kDelays[] = {10, 5, 1, 600, 30, 2.5, 6, 9};

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

[[noreturn]] void Wrong(const char* what) {
    std::fprintf(stderr, "fault: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace fs = std::filesystem;
    static Platform platform;
    static const fs::path folder = [] {
        fs::path f = FreshFolder("spreadsheet");
        fs::create_directories(f / "logs");
        fs::create_directories(f / "Excel");
        return f;
    }();
    static Brizalog form(folder, platform.services());
    static const SharedState pristine = [] {
        SharedState s = form.state();
        SetDefaultChannelTable(s.channels);
        s.settings.SystemType = 1;
        return s;
    }();

    Input in(data, size);
    const std::uint8_t flags = in.Byte();
    SharedState& s = form.state();
    s = pristine;
    s.settings.SaveExcel = 1;
    s.settings.LogDelay = kDelays[in.Byte() % std::size(kDelays)];
    s.options.SetFlag("KeepLoggingArmed", (flags & 1) != 0);
    const LocalDateTime now{2026, 3, 7, in.Byte() % 24, in.Byte() % 60, in.Byte() % 60, 0};
    platform.clock.Set(now);
    s.settings.WSUnits = std::string(in.Bytes(in.Byte() % 32));
    for (int channel : {9, 1, 13, 12}) {
        double value = 0;
        const std::string_view bytes = in.Bytes(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        s.SumValue[channel] = std::isfinite(value) ? value : 0;
    }
    double watts = 0;
    const std::string_view bytes = in.Bytes(sizeof watts);
    std::memcpy(&watts, bytes.data(), bytes.size());
    s.SumWatts[1] = std::isfinite(watts) ? watts : 0;
    s.GoodDataCount = 1;

    const bool hourly = !(s.settings.LogDelay > 5);
    const fs::path path = InFolder(folder, SpreadsheetLiteral(DateTag(now, hourly)));
    fs::remove(path);
    const bool existed = (flags & 2) != 0;
    const std::string earlier(in.Rest());
    if (existed) {
        std::ofstream(path, std::ios::binary) << earlier;
    }

    MainFormModel& m = form.model();
    m.caption = "Battery = 13.27V ";
    m.delay.enabled = true;
    m.delay.text = "10";
    form.startMENU_Click();
    form.Timer1_Timer();

    // The row of the tick, from the averages as the tick left them in AvgValue and AvgWatts.
    SharedState averaged = s;
    for (int i = 1; i <= 16; ++i) {
        averaged.SumValue[i] = s.AvgValue[i];
    }
    averaged.SumWatts[1] = s.AvgWatts[1];
    const std::string row = SpreadsheetRow(averaged, LongTime(now));
    const std::string text = ReadAll(path);
    std::string expected = existed ? earlier : SpreadsheetHeader(s.settings.WSUnits);
    const bool mended = (flags & 1) != 0 && !expected.empty() &&
                        (expected.size() < 2 || expected.compare(expected.size() - 2, 2, "\r\n"));
    expected += (mended ? "\r\n" : "") + row;
    if (text != expected) {
        Wrong("the spreadsheet copy is not its earlier text and one row");
    }
    fs::remove(path);
    fs::remove(InFolder(folder, LogFileLiteral("BZ", DateTag(now, hourly))));
    platform.dialogs.messages.clear();
    return 0;
}
