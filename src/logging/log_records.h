#pragma once

#include <span>
#include <string>
#include <string_view>

#include "catalogue/state.h"

namespace brizalog {

// The daily logs and the spreadsheet copy: pure text, no file access. The logging tick writes
// what these build; the history windows and the start-up replay read it back by its tags.

// The five record families of the daily logs.
enum class LogFamily { WD, BZ, CC, RE, ML };

// One file that a logging tick writes: its name prefix, its family and the pattern of the
// system voltage. The WD family and the BZ family of systems 1 and 2 print volts with "##.00",
// so a voltage under 1 has no digit before the point; every other record uses "##0.00".
struct LogFile {
    std::string_view prefix;
    LogFamily family;
    std::string_view voltsPattern;
};

// The files of one tick in system `systemType`, in the order they are written: one file, or
// BZ, RE and ML in system 8. None for a system type outside 0..8.
std::span<const LogFile> LogFilesOf(int systemType);

// "/logs/BZ_2026_03_07.txt": the log of `prefix` for the date tag of the tick.
std::string LogFileLiteral(std::string_view prefix, const std::string& dateTag);

// One record, ended by CR LF. `time` is "14:05"; `<L>` is the stored LogDelay written as a plain
// number, never the timer's own period. Values come from AvgValue and AvgWatts (WattHours[1]
// too in the WD family); the tags of BZ, RE and ML from XMLsoftware. The enableLOGGING flags
// play no part: the layout of a record is fixed by its family.
std::string LogRecord(const LogFile& file, const std::string& time, const SharedState& state);

// "/Excel/2026_03_07.xls". Provisioning makes the folder as "/excel"; InFolder makes the two
// agree on a case-sensitive file system.
std::string SpreadsheetLiteral(const std::string& dateTag);

// The first line of a spreadsheet copy, written when its file does not exist yet; `wsUnits`
// is the caption of the wind column. Ends with two CR LF.
std::string SpreadsheetHeader(const std::string& wsUnits);

// One row: volts, amps, power, rpm and wind of the first windmill from SumValue and SumWatts,
// which hold the interval's averages at this point of the tick, in the general number form,
// then `longTime` ("14:05:09"). The two unclosed "<td>" before the time and the table that is
// never closed are how spreadsheet programs have always been given this file. Ends with two
// CR LF, so a blank line stands between rows.
std::string SpreadsheetRow(const SharedState& state, const std::string& longTime);

}  // namespace brizalog
