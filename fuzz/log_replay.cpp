// The start-up's replay of today's log, in every system type, then the records and the rollover
// line that carry the rebuilt totals.

#include "catalogue/config_files.h"
#include "catalogue/system_types.h"
#include "fuzz_support.h"
#include "logging/ledger.h"
#include "logging/log_records.h"

using namespace brizalog;
using namespace brizalog::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SharedState pristine = [] {
        SharedState s;
        SetDefaultChannelTable(s.channels);
        s.settings.LogDelay = 30;
        return s;
    }();
    Input in(data, size);
    SharedState s = pristine;
    s.settings.SystemType = static_cast<std::int16_t>(in.Byte() % kSystemTypeCount);
    try {
        ReplayLogText(in.Rest(), s.settings.SystemType, s);
    } catch (const Failure&) {
        return 0;  // a bad value of the log: the start-up's trap shows the port message
    }
    CheckFinite(s);
    for (const LogFile& file : LogFilesOf(s.settings.SystemType)) {
        LogRecord(file, "14:05", s);
    }
    RolloverRecord("2026_03_08", "00:00", s);
    return 0;
}
