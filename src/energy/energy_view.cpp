#include "energy/energy_view.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

struct ViewRow {
    EnergyView view;
    std::string_view name;
};
constexpr ViewRow kViews[] = {
    {EnergyView::Day, "day"},
    {EnergyView::Week, "week"},
    {EnergyView::Month, "month"},
    {EnergyView::Year, "year"},
};

// The first-run price of the settings, in cents per kWh.
constexpr double kFirstRunCents = 10;

// The ledger adds the averages of each interval as they were; the logs hold them rounded, amps to
// a tenth (about 1.5 W at a battery's volts) and watts to a whole. A small current that sits
// below a rounding step all day leaves that much per hour between the two.
double RoundingWatts(LogFamily family) {
    return family == LogFamily::WD || family == LogFamily::BZ ? 1.5 : 0.5;
}

// The ledger and the logs agree within this much: besides the rounding, the ledger counts the
// first interval of the next day when its rollover ran late, and every tick while logging was
// stopped.
bool LedgerDiffers(double logged, double ledger, double roundingWh) {
    const double tolerance =
        std::max({2.0, roundingWh, 0.02 * std::max(std::abs(logged), std::abs(ledger))});
    return std::abs(logged - ledger) > tolerance;
}

std::string Fixed(double value, int decimals) {
    char text[64];
    const auto result =
        std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
    std::string out(text, result.ptr);
    // A tiny negative amount shows as nothing rather than "-0.0".
    if (out.find_first_not_of("-0.") == std::string::npos && out.front() == '-') {
        out.erase(0, 1);
    }
    return out;
}

std::string Hours(double seconds) {
    return Fixed(seconds / 3600, 1) + " h";
}

void AddMark(std::string& marks, const std::string& mark) {
    if (!marks.empty()) {
        marks += "; ";
    }
    marks += mark;
}

std::string Plural(long n, std::string_view one, std::string_view many) {
    return std::to_string(n) + " " + std::string(n == 1 ? one : many);
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (char c : text) {
        quoted += c;
        if (c == '"') {
            quoted += '"';
        }
    }
    return quoted + "\"";
}

bool ParseYear(std::string_view text, int& year) {
    if (text.size() != 4 ||
        !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return false;
    }
    year = std::stoi(std::string(text));
    return year >= 1970;
}

}  // namespace

std::string_view EnergyViewName(EnergyView view) {
    for (const ViewRow& row : kViews) {
        if (row.view == view) {
            return row.name;
        }
    }
    return {};
}

EnergyTariff TariffOf(const SharedState& state, const std::filesystem::path& folder) {
    EnergyTariff tariff;
    // The choices in memory, or options.cfg itself where nothing has read it into memory yet.
    const bool inMemory = state.options.Has("EnergyPrice") || state.options.Has("EnergyCurrency");
    const Options options = inMemory ? state.options : ReadOptions(folder);
    tariff.currency = options.Text("EnergyCurrency");
    if (!options.Text("EnergyPrice").empty()) {
        tariff.pricePerKWh = options.Number("EnergyPrice");
        return tariff;
    }
    double cents = state.settings.PowerCents[0] > 0 ? state.settings.PowerCents[0] : kFirstRunCents;
    try {
        const std::filesystem::path path = InFolder(folder, "/hardware.cfg");
        std::string stored;
        if (FileExists(path) && ExtractTagValue(ReadWholeFile(path), "<M>", "</M>", stored)) {
            cents = ParseNumber(stored);
        }
    } catch (const Failure&) {
        // A settings file that cannot be read leaves the rate in memory.
    }
    tariff.pricePerKWh = cents / 100;
    return tariff;
}

double CostOf(double wh, const EnergyTariff& tariff) {
    const double cents = wh / 1000 * tariff.pricePerKWh * 100;
    // A hair's nudge away from zero, so that an amount that is a half cent in decimal but a
    // little less in binary (0.005) rounds up as the user reckons it.
    const double nudge = std::copysign(1e-9 * std::max(1.0, std::abs(cents)), cents);
    return std::round(cents + nudge) / 100;
}

std::string FormatWh(double wh) {
    return Fixed(wh, 1);
}

std::string FormatMoney(double cost) {
    return Fixed(cost, 2);
}

EnergyModel::EnergyModel(const SharedState& state, std::filesystem::path folder, CivilDate today)
    : m_state(state),
      m_folder(std::move(folder)),
      m_today(today),
      m_tariff(TariffOf(state, m_folder)),
      m_year(today.year),
      m_month(today.month) {}

void EnergyModel::SetBook(EnergyBook book) {
    m_book = std::move(book);
}

std::string EnergyModel::PeriodText() const {
    char text[16];
    switch (m_view) {
        case EnergyView::Day:
            std::snprintf(text, sizeof text, "%04d-%02d", m_year, m_month);
            return text;
        case EnergyView::Week:
        case EnergyView::Month:
            return std::to_string(m_year);
        case EnergyView::Year:
            break;
    }
    return {};
}

bool EnergyModel::SetView(std::string_view view) {
    for (const ViewRow& row : kViews) {
        if (row.name == view) {
            m_view = row.view;
            return true;
        }
    }
    return false;
}

bool EnergyModel::SetPeriod(std::string_view period) {
    if (m_view == EnergyView::Year) {
        return true;
    }
    int year = 0;
    if (!ParseYear(period.substr(0, 4), year)) {
        return false;
    }
    if (period.size() == 4 && m_view != EnergyView::Day) {
        m_year = year;
        return true;
    }
    if (period.size() != 7 || period[4] != '-' || period[5] < '0' || period[5] > '1' ||
        period[6] < '0' || period[6] > '9') {
        return false;
    }
    const int month = (period[5] - '0') * 10 + (period[6] - '0');
    if (month < 1 || month > 12) {
        return false;
    }
    m_year = year;
    m_month = month;
    return true;
}

void EnergyModel::Previous() {
    if (m_view == EnergyView::Day) {
        m_month = m_month == 1 ? 12 : m_month - 1;
        m_year -= m_month == 12 ? 1 : 0;
    } else if (m_view != EnergyView::Year && m_year > 1970) {
        --m_year;
    }
}

void EnergyModel::Next() {
    if (m_view == EnergyView::Day) {
        m_month = m_month == 12 ? 1 : m_month + 1;
        m_year += m_month == 1 ? 1 : 0;
    } else if (m_view != EnergyView::Year) {
        ++m_year;
    }
}

PeriodEnergy EnergyModel::Sum(std::string label, const CivilDate& first,
                              const CivilDate& last) const {
    PeriodEnergy p;
    p.label = std::move(label);
    p.first = first;
    p.last = last;
    const bool oneDay = first == last;
    const long end = std::min(DayNumber(last), DayNumber(m_today));
    for (long n = DayNumber(first); n <= end; ++n) {
        const CivilDate date = DateOfDayNumber(n);
        ++p.days;
        const auto it = m_book.days.find(date);
        if (it == m_book.days.end()) {
            continue;
        }
        const DayEnergy& day = it->second;
        ++p.loggedDays;
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            p.wh[slot] += day.wh[slot];
        }
        p.damaged += day.damaged;
        if (day.seconds < kWholeDaySeconds && date != m_today) {
            ++p.partialDays;
        }
    }
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        p.total += p.wh[slot];
    }
    p.cost = CostOf(p.total, m_tariff);

    if (oneDay) {
        const auto day = m_book.days.find(first);
        const double roundingWh = day == m_book.days.end() ? 0
                                                           : RoundingWatts(day->second.family) *
                                                                 day->second.seconds / 3600;
        const auto ledger = m_book.ledger.find(first);
        if (ledger != m_book.ledger.end()) {
            p.hasLedger = true;
            p.ledger = ledger->second;
            for (int slot = 1; slot <= kPowerSlots; ++slot) {
                p.ledgerDiffers =
                    p.ledgerDiffers || LedgerDiffers(p.wh[slot], p.ledger[slot], roundingWh);
            }
        }
        if (p.days == 0) {
            // A day still to come: nothing to tell.
        } else if (p.loggedDays == 0) {
            AddMark(p.marks, "no log");
        } else if (first == m_today) {
            AddMark(p.marks, "today so far");
        } else if (p.partialDays > 0) {
            AddMark(p.marks, "logged " + Hours(day->second.seconds) + " of the day");
        }
        if (p.ledgerDiffers) {
            std::string ledgerText;
            for (int slot = 1; slot <= kPowerSlots; ++slot) {
                if (LedgerDiffers(p.wh[slot], p.ledger[slot], roundingWh)) {
                    ledgerText += (ledgerText.empty() ? "" : ", ") + Look(slot).name + " " +
                                  FormatWh(p.ledger[slot]) + " Wh";
                }
            }
            AddMark(p.marks, "Whours.txt has " + ledgerText);
        }
    } else if (p.days > 0) {
        if (p.loggedDays < p.days) {
            AddMark(p.marks,
                    Plural(p.days - p.loggedDays, "day without a log", "days without a log"));
        }
        if (p.partialDays > 0) {
            AddMark(p.marks, Plural(p.partialDays, "day logged in part", "days logged in part"));
        }
    }
    if (p.damaged > 0) {
        AddMark(p.marks, Plural(p.damaged, "damaged record left out", "damaged records left out"));
    }
    return p;
}

std::vector<PeriodEnergy> EnergyModel::Shown() const {
    std::vector<PeriodEnergy> periods;
    char label[32];
    switch (m_view) {
        case EnergyView::Day:
            for (int d = 1; d <= DaysInMonth(m_year, m_month); ++d) {
                const CivilDate date{m_year, m_month, d};
                periods.push_back(Sum(IsoDate(date), date, date));
            }
            break;
        case EnergyView::Week: {
            // Week 1 is the week of 4 January; the year's last week is that of 28 December.
            const long jan4 = DayNumber({m_year, 1, 4});
            const long monday = jan4 - ((jan4 % 7 + 7 + 3) % 7);
            const int weeks = IsoWeekOf({m_year, 12, 28}).week;
            for (int w = 0; w < weeks; ++w) {
                std::snprintf(label, sizeof label, "%04d-W%02d", m_year, w + 1);
                periods.push_back(Sum(label, DateOfDayNumber(monday + 7L * w),
                                      DateOfDayNumber(monday + 7L * w + 6)));
            }
            break;
        }
        case EnergyView::Month:
            for (int m = 1; m <= 12; ++m) {
                std::snprintf(label, sizeof label, "%04d-%02d", m_year, m);
                periods.push_back(Sum(label, {m_year, m, 1}, {m_year, m, DaysInMonth(m_year, m)}));
            }
            break;
        case EnergyView::Year: {
            int from = m_today.year;
            int to = m_today.year;
            if (!m_book.days.empty()) {
                from = std::min(from, m_book.days.begin()->first.year);
                to = std::max(to, m_book.days.rbegin()->first.year);
            }
            for (int y = from; y <= to; ++y) {
                periods.push_back(Sum(std::to_string(y), {y, 1, 1}, {y, 12, 31}));
            }
            break;
        }
    }
    return periods;
}

SlotLook EnergyModel::Look(int slot) const {
    SlotLook look;
    look.slot = slot;
    look.name = m_state.channels.ChannelName[slot + 16];
    look.colour = m_state.channels.LineColour[slot + 16];
    if (look.name.empty()) {
        look.name = "W" + std::to_string(slot);
    }
    return look;
}

std::vector<SlotLook> EnergyModel::SlotsShown(const std::vector<PeriodEnergy>& periods) const {
    std::vector<SlotLook> looks;
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        if (std::any_of(periods.begin(), periods.end(),
                        [slot](const PeriodEnergy& p) { return p.wh[slot] != 0; })) {
            looks.push_back(Look(slot));
        }
    }
    return looks;
}

std::vector<std::pair<std::string, std::string>> EnergyModel::Dump() const {
    std::vector<std::pair<std::string, std::string>> lines;
    lines.emplace_back("view", std::string(EnergyViewName(m_view)));
    lines.emplace_back("period", PeriodText());
    lines.emplace_back("price", FormatMoney(m_tariff.pricePerKWh));
    lines.emplace_back("currency", m_tariff.currency);
    lines.emplace_back("stacked", stacked ? "1" : "0");
    for (const PeriodEnergy& p : Shown()) {
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            const std::string key = std::to_string(slot) + "," + p.label + ")";
            if (p.wh[slot] != 0) {
                lines.emplace_back("Wh(" + key, FormatWh(p.wh[slot]));
            }
            if (p.hasLedger && (p.wh[slot] != 0 || p.ledger[slot] != 0)) {
                lines.emplace_back("Whours(" + key, FormatWh(p.ledger[slot]));
            }
        }
        lines.emplace_back("cost(" + p.label + ")", FormatMoney(p.cost));
        if (!p.marks.empty()) {
            lines.emplace_back("marks(" + p.label + ")", p.marks);
        }
    }
    return lines;
}

std::string EnergyModel::CsvText() const {
    const std::vector<PeriodEnergy> periods = Shown();
    const std::vector<SlotLook> slots = SlotsShown(periods);
    std::string text = "Period";
    for (const SlotLook& look : slots) {
        text += "," + CsvField(look.name + " (Wh)");
    }
    text += ",Total (Wh)," + CsvField("Cost (" + m_tariff.currency + ")") + ",Notes\r\n";
    for (const PeriodEnergy& p : periods) {
        text += p.label;
        for (const SlotLook& look : slots) {
            text += "," + FormatWh(p.wh[look.slot]);
        }
        text +=
            "," + FormatWh(p.total) + "," + FormatMoney(p.cost) + "," + CsvField(p.marks) + "\r\n";
    }
    return text;
}

std::string EnergyModel::CsvLiteral() const {
    switch (m_view) {
        case EnergyView::Day:
            return "/Excel/energy_" + PeriodText() + ".csv";
        case EnergyView::Week:
            return "/Excel/energy_" + PeriodText() + "_weeks.csv";
        case EnergyView::Month:
            return "/Excel/energy_" + PeriodText() + ".csv";
        case EnergyView::Year:
            break;
    }
    return "/Excel/energy_years.csv";
}

std::filesystem::path EnergyModel::ExportCsv() const {
    const std::filesystem::path path = InFolder(m_folder, CsvLiteral());
    WriteWholeFile(path, CsvText());
    return path;
}

std::vector<PowerPoint> HourlyPower(const EnergyBook& book, const CivilDate& from,
                                    const CivilDate& to) {
    std::vector<PowerPoint> points;
    for (auto it = book.days.lower_bound(from); it != book.days.end() && it->first <= to; ++it) {
        const long long base = static_cast<long long>(DayNumber(it->first)) * 1440;
        for (int hour = 0; hour < kHoursPerDay; ++hour) {
            PowerPoint point;
            point.minute = base + hour * 60;
            bool any = false;
            for (int slot = 1; slot <= kPowerSlots; ++slot) {
                point.watts[slot] = it->second.hourly[slot][hour];
                any = any || !std::isnan(point.watts[slot]);
            }
            if (any) {
                points.push_back(point);
            }
        }
    }
    return points;
}

std::vector<PowerPoint> FinePower(const std::filesystem::path& folder,
                                  const std::vector<LoggedDay>& logged,
                                  const ChannelTable& channels, const CivilDate& from,
                                  const CivilDate& to) {
    constexpr int kStep = 5;
    std::vector<PowerPoint> points;
    for (const LoggedDay& day : logged) {
        if (day.date < from || to < day.date) {
            continue;
        }
        const long long base = static_cast<long long>(DayNumber(day.date)) * 1440;
        const auto steps = ReadDayPower(folder, day, channels, kStep);
        for (std::size_t k = 0; k < steps.size(); ++k) {
            PowerPoint point;
            point.minute = base + static_cast<long long>(k) * kStep;
            point.watts = steps[k];
            if (std::any_of(point.watts.begin() + 1, point.watts.end(),
                            [](double w) { return !std::isnan(w); })) {
                points.push_back(point);
            }
        }
    }
    return points;
}

std::vector<PowerPoint> EnergyModel::Power(const CivilDate& from, const CivilDate& to) const {
    if (DayNumber(to) - DayNumber(from) + 1 > kFineSpanDays) {
        return HourlyPower(m_book, from, to);
    }
    return FinePower(m_folder, m_book.logged, m_state.channels, from, to);
}

std::vector<std::size_t> PointsToDraw(const std::vector<double>& xs, const std::vector<double>& ys,
                                      double x0, double x1, int columns) {
    std::vector<std::size_t> kept;
    const std::size_t n = std::min(xs.size(), ys.size());
    columns = std::max(columns, 1);
    const auto first = std::lower_bound(xs.begin(), xs.begin() + static_cast<long>(n), x0);
    const auto last = std::upper_bound(first, xs.begin() + static_cast<long>(n), x1);
    std::size_t from = static_cast<std::size_t>(first - xs.begin());
    std::size_t to = static_cast<std::size_t>(last - xs.begin());  // one past
    from = from > 0 ? from - 1 : 0;
    to = std::min(n, to + 1);
    if (to - from <= 4 * static_cast<std::size_t>(columns) || !(x1 > x0)) {
        for (std::size_t k = from; k < to; ++k) {
            kept.push_back(k);
        }
        return kept;
    }
    const double width = (x1 - x0) / columns;
    std::size_t k = from;
    while (k < to) {
        const double column = std::floor((xs[k] - x0) / width);
        std::size_t low = k;
        std::size_t high = k;
        std::size_t end = k;
        while (end < to && std::floor((xs[end] - x0) / width) == column) {
            if (ys[end] < ys[low]) {
                low = end;
            }
            if (ys[end] > ys[high]) {
                high = end;
            }
            ++end;
        }
        // first, low and high in the order they came, last
        std::size_t picks[] = {k, std::min(low, high), std::max(low, high), end - 1};
        for (std::size_t pick : picks) {
            if (kept.empty() || kept.back() != pick) {
                kept.push_back(pick);
            }
        }
        k = end;
    }
    return kept;
}

}  // namespace brizalog
