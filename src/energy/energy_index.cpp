#include "energy/energy_index.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr std::string_view kHeading = "Brizalog energy index 1";
constexpr int kFieldsBeforeHours = 5 + kPowerSlots;  // date, family, counts, totals

// A fingerprint of the log tags: the index was read under these, and other tags read the same
// logs differently.
std::string TagsFingerprint(const ChannelTable& channels) {
    std::uint64_t hash = 1469598103934665603ULL;
    for (int n = 1; n <= 24; ++n) {
        for (char c : channels.XMLsoftware[n] + '\n') {
            hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
        }
    }
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
}

// Numbers go through to_chars and from_chars: the desktop program runs under the user's locale,
// whose decimal mark may be a comma.
void AppendNumber(std::string& out, double value) {
    if (std::isnan(value)) {
        out += '-';
        return;
    }
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value);
    out.append(text, result.ptr);
}

bool ReadNumber(std::string_view field, double& value) {
    if (field == "-") {
        value = std::nan("");
        return true;
    }
    const auto result = std::from_chars(field.data(), field.data() + field.size(), value);
    return result.ec == std::errc() && result.ptr == field.data() + field.size() &&
           std::isfinite(value);
}

std::vector<std::string_view> Fields(std::string_view line) {
    std::vector<std::string_view> fields;
    std::size_t at = 0;
    while (at <= line.size()) {
        const std::size_t space = line.find(' ', at);
        const std::size_t end = space == std::string_view::npos ? line.size() : space;
        fields.push_back(line.substr(at, end - at));
        at = end + 1;
    }
    return fields;
}

std::optional<LogFamily> FamilyOfPrefix(std::string_view prefix) {
    for (LogFamily family :
         {LogFamily::WD, LogFamily::BZ, LogFamily::CC, LogFamily::RE, LogFamily::ML}) {
        if (FamilyPrefix(family) == prefix) {
            return family;
        }
    }
    return std::nullopt;
}

std::optional<IndexedDay> ParseDayLine(std::string_view line) {
    const std::vector<std::string_view> fields = Fields(line);
    const std::size_t expected = 1 + kFieldsBeforeHours + kPowerSlots * kHoursPerDay + 1;
    if (fields.size() != expected || fields[0] != "day") {
        return std::nullopt;
    }
    IndexedDay day;
    DayEnergy& e = day.energy;
    const std::string tag(fields[1]);
    const std::optional<CivilDate> date =
        tag.size() == 10
            ? ParseDateTag(tag.substr(0, 4) + "_" + tag.substr(5, 2) + "_" + tag.substr(8, 2))
            : std::nullopt;
    const std::optional<LogFamily> family = FamilyOfPrefix(fields[2]);
    double records = 0;
    double damaged = 0;
    if (!date || !family || !ReadNumber(fields[3], records) || !ReadNumber(fields[4], damaged) ||
        !ReadNumber(fields[5], e.seconds)) {
        return std::nullopt;
    }
    e.date = *date;
    e.family = *family;
    e.records = static_cast<long>(records);
    e.damaged = static_cast<long>(damaged);
    std::size_t f = 6;
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        if (!ReadNumber(fields[f++], e.wh[slot])) {
            return std::nullopt;
        }
    }
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        for (int hour = 0; hour < kHoursPerDay; ++hour) {
            if (!ReadNumber(fields[f++], e.hourly[slot][hour])) {
                return std::nullopt;
            }
        }
    }
    day.signature = std::string(fields[f]);
    return day;
}

}  // namespace

std::string DaySignature(const std::filesystem::path& folder, const LoggedDay& day) {
    const LogFamily family = EnergyFamilyOf(day);
    std::string signature(FamilyPrefix(family));
    const auto it = day.files.find(family);
    if (it == day.files.end()) {
        return signature;
    }
    for (const LogName& file : it->second) {
        std::error_code error;
        const std::filesystem::path path = InFolder(folder, "/logs/" + file.name);
        const auto size = std::filesystem::file_size(path, error);
        const auto time = std::filesystem::last_write_time(path, error);
        signature += ';' + file.name + ':' + std::to_string(error ? 0 : size) + ':' +
                     std::to_string(error ? 0 : time.time_since_epoch().count());
    }
    return signature;
}

std::string EnergyIndexText(const std::map<CivilDate, DayEnergy>& days,
                            const std::map<CivilDate, std::string>& signatures,
                            const ChannelTable& channels) {
    std::string text(kHeading);
    text += ' ' + TagsFingerprint(channels) + '\n';
    for (const auto& [date, e] : days) {
        const auto signature = signatures.find(date);
        if (signature == signatures.end()) {
            continue;
        }
        text += "day " + IsoDate(date) + ' ' + std::string(FamilyPrefix(e.family)) + ' ' +
                std::to_string(e.records) + ' ' + std::to_string(e.damaged) + ' ';
        AppendNumber(text, e.seconds);
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            text += ' ';
            AppendNumber(text, e.wh[slot]);
        }
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            for (int hour = 0; hour < kHoursPerDay; ++hour) {
                text += ' ';
                // The chart needs no more than a tenth of a watt.
                const double watts = e.hourly[slot][hour];
                AppendNumber(text, std::isnan(watts) ? watts : std::round(watts * 10) / 10);
            }
        }
        text += ' ' + signature->second + '\n';
    }
    text += "end " + std::to_string(days.size()) + '\n';
    return text;
}

std::map<CivilDate, IndexedDay> ParseEnergyIndex(std::string_view text,
                                                 const ChannelTable& channels) {
    std::map<CivilDate, IndexedDay> days;
    std::vector<std::string_view> lines;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = text.find('\n', at);
        if (end == std::string_view::npos) {
            break;  // the last line was cut short: no closing line
        }
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    const std::string heading = std::string(kHeading) + ' ' + TagsFingerprint(channels);
    if (lines.size() < 2 || lines.front() != heading || lines.back().substr(0, 4) != "end ") {
        return {};
    }
    for (std::size_t k = 1; k + 1 < lines.size(); ++k) {
        if (std::optional<IndexedDay> day = ParseDayLine(lines[k])) {
            days[day->energy.date] = std::move(*day);
        }
    }
    return days;
}

std::optional<EnergyBook> OpenEnergyBook(const std::filesystem::path& folder,
                                         const ChannelTable& channels,
                                         const EnergyProgress& progress) {
    EnergyBook book;
    book.logged = FindLoggedDays(folder);
    const std::filesystem::path indexPath = InFolder(folder, kEnergyIndexFile);
    std::map<CivilDate, IndexedDay> indexed;
    try {
        if (FileExists(indexPath)) {
            indexed = ParseEnergyIndex(ReadWholeFile(indexPath), channels);
        }
    } catch (const Failure&) {
        // An unreadable index is rebuilt.
    }

    std::map<CivilDate, std::string> signatures;
    std::vector<const LoggedDay*> toRead;
    for (const LoggedDay& day : book.logged) {
        std::string signature = DaySignature(folder, day);
        const auto it = indexed.find(day.date);
        if (it != indexed.end() && it->second.signature == signature) {
            book.days[day.date] = it->second.energy;
            signatures[day.date] = std::move(signature);
        } else {
            toRead.push_back(&day);
        }
    }

    // The days are read on as many threads as the machine has cores: each takes the next day
    // still to read, asking `progress` first, one at a time.
    std::mutex mutex;
    std::size_t taken = 0;
    bool cancelled = false;
    const auto readDays = [&] {
        for (;;) {
            const LoggedDay* day = nullptr;
            {
                std::lock_guard<std::mutex> lock(mutex);
                if (cancelled || taken == toRead.size()) {
                    return;
                }
                if (progress && !progress(taken, toRead.size())) {
                    cancelled = true;
                    return;
                }
                day = toRead[taken++];
            }
            // The signature is taken before the read: a log that grows meanwhile is read again
            // next time rather than kept under its older size.
            std::string signature = DaySignature(folder, *day);
            DayEnergy energy;
            try {
                energy = ReadDayEnergy(folder, *day, channels);
            } catch (const std::exception&) {
                // A day that cannot be read at all (a file system that fails under it, memory
                // gone) is kept as a day of no records, never as a reason to stop the others.
                energy = DayEnergy{};
                energy.date = day->date;
                energy.family = EnergyFamilyOf(*day);
                signature.clear();  // and read again next time
            }
            std::lock_guard<std::mutex> lock(mutex);
            book.days[day->date] = std::move(energy);
            if (!signature.empty()) {
                signatures[day->date] = std::move(signature);
            }
            ++book.reread;
        }
    };
    const std::size_t workers =
        std::min<std::size_t>(std::max(1u, std::thread::hardware_concurrency()),
                              std::max<std::size_t>(1, toRead.size() / 4));
    std::vector<std::thread> threads;
    for (std::size_t w = 1; w < workers; ++w) {
        threads.emplace_back(readDays);
    }
    readDays();
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (progress && !cancelled) {
        progress(toRead.size(), toRead.size());
    }

    if (book.reread > 0 || indexed.size() != book.days.size()) {
        try {
            WriteWholeFile(indexPath, EnergyIndexText(book.days, signatures, channels));
        } catch (const Failure&) {
            // A logs folder that cannot take the index is read whole at each opening.
        }
    }
    if (cancelled) {
        return std::nullopt;
    }
    book.ledger = ReadWhoursFile(folder);
    return book;
}

}  // namespace brizalog
