#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "energy/energy_days.h"

namespace brizalog {

// Every logged day's energy, with the ledger's totals of Whours.txt beside it. The per-day
// results are kept in an index of the program's own in the logs folder, so that an opening
// reads only the days whose logs changed since the last one.

// Plain text: a heading with the version and a fingerprint of the log tags, one line per day
// (its date, family, counts, the eight totals, the 24 hourly powers of each slot, and the name,
// size and time of each log it was read from), and a closing line with the count of days. A
// day's line that does not read back is read again from its logs; a heading of another version
// or other tags, or a missing closing line, rebuilds the whole index.
inline constexpr std::string_view kEnergyIndexFile = "/logs/energy.index";

struct EnergyBook {
    std::vector<LoggedDay> logged;        // what the logs folder holds, by date
    std::map<CivilDate, DayEnergy> days;  // one per logged day
    std::map<CivilDate, std::array<double, kPowerSlots + 1>> ledger;  // Whours.txt, by day
    std::size_t reread = 0;  // days read from their logs in this opening
};

// Called before each day is read from its logs with the count of days taken so far and the count
// to read; returning false cancels the opening. The days are read on several threads: the calls
// come from any of them, one at a time.
using EnergyProgress = std::function<bool(std::size_t done, std::size_t total)>;

// What identifies the logs a day was read from: the family and each file's name, size and time
// of last change. A log that has grown or been replaced since has another one.
std::string DaySignature(const std::filesystem::path& folder, const LoggedDay& day);

// The index text of `days`, whose signatures are `signatures` (same keys), for the tags of
// `channels`; and back. ParseEnergyIndex gives only the days whose lines read back whole, and
// nothing at all for an index of other tags or one that was cut short.
std::string EnergyIndexText(const std::map<CivilDate, DayEnergy>& days,
                            const std::map<CivilDate, std::string>& signatures,
                            const ChannelTable& channels);
struct IndexedDay {
    DayEnergy energy;
    std::string signature;
};
std::map<CivilDate, IndexedDay> ParseEnergyIndex(std::string_view text,
                                                 const ChannelTable& channels);

// Opens the book of the logs folder: the index where it still holds a day's logs, the logs
// themselves for every other day, then the index written again when anything was read (a
// failure to write it only makes the next opening slower). Nothing is returned when `progress`
// cancels; the days read until then are kept in the index all the same. Safe to run on a
// thread of its own: it touches nothing but the files and its arguments.
std::optional<EnergyBook> OpenEnergyBook(const std::filesystem::path& folder,
                                         const ChannelTable& channels,
                                         const EnergyProgress& progress = {});

}  // namespace brizalog
