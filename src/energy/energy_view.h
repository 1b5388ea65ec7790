#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/state.h"
#include "energy/energy_index.h"

namespace brizalog {

// The logic of the Energy window: which periods it shows, their sums, marks and cost, the power
// over a range of days, and its CSV export. The window and the scenario runner both show this.

// What one bar stands for: a day of a month, an ISO week or a month of a year, or a year.
enum class EnergyView { Day, Week, Month, Year };
std::string_view EnergyViewName(EnergyView view);  // "day", "week", "month", "year"

// The price of energy: per kWh, in the currency the user names.
struct EnergyTariff {
    double pricePerKWh = 0.10;
    std::string currency = "$";
};
// The options' EnergyPrice and EnergyCurrency (those in memory, else options.cfg's); an empty price
// is the first power rate of the settings, which is in cents: the "<M>" that hardware.cfg holds
// when the setup form last saved it, else the rate in memory, else the first-run 10 cents.
EnergyTariff TariffOf(const SharedState& state, const std::filesystem::path& folder);
// The cost of `wh` watt-hours, rounded to the cent, halves away from zero.
double CostOf(double wh, const EnergyTariff& tariff);
std::string FormatWh(double wh);       // one decimal: "1834.2"
std::string FormatMoney(double cost);  // two decimals: "0.55"

// One bar of the chart and one row of the table.
struct PeriodEnergy {
    std::string label;  // "2026-03-07", "2026-W10", "2026-03" or "2026"
    CivilDate first;
    CivilDate last;
    std::array<double, kPowerSlots + 1> wh{};  // slots 1..8
    double total = 0;
    double cost = 0;
    int days = 0;            // days of the period up to today
    int loggedDays = 0;      // of which have a log
    int partialDays = 0;     // logged for less than kWholeDaySeconds
    long damaged = 0;        // damaged records
    bool hasLedger = false;  // day view: Whours.txt has the day
    std::array<double, kPowerSlots + 1> ledger{};
    bool ledgerDiffers = false;
    std::string marks;  // what the user should know about the figures, empty when nothing
};

// A day counts as whole when its records cover this much: a day that lost its clock hour to
// daylight saving time has 23 hours, and a short outage is no reason to doubt a day.
inline constexpr double kWholeDaySeconds = 22.5 * 3600;

// One slot as the user named and coloured it (channel slot + 16).
struct SlotLook {
    int slot = 0;
    std::string name;
    std::int32_t colour = 0;  // blue × 65536 + green × 256 + red
};

// A point of the power chart: minutes since 1970-01-01 00:00 of the local calendar, and the
// average power of each slot over its step (NaN where no record fell).
struct PowerPoint {
    long long minute = 0;
    std::array<double, kPowerSlots + 1> watts{};
};

class EnergyModel {
public:
    EnergyModel(const SharedState& state, std::filesystem::path folder, CivilDate today);

    void SetBook(EnergyBook book);
    const EnergyBook& book() const { return m_book; }
    const EnergyTariff& tariff() const { return m_tariff; }
    void SetTariff(EnergyTariff tariff) { m_tariff = std::move(tariff); }
    CivilDate today() const { return m_today; }

    EnergyView view() const { return m_view; }
    // The chosen month (day view) or year (week and month views).
    int periodYear() const { return m_year; }
    int periodMonth() const { return m_month; }
    std::string PeriodText() const;  // "2026-03", "2026", or "" in the year view
    bool stacked = true;             // slots stacked in one bar, else side by side

    // "day", "week", "month" or "year"; false for another word.
    bool SetView(std::string_view view);
    // "2026-03" for the day view, "2026" for the week and month views (a month's year is taken
    // too); ignored in the year view. False for a text that is no such period.
    bool SetPeriod(std::string_view period);
    void Previous();
    void Next();

    // The periods shown, in order, each summed from its days.
    std::vector<PeriodEnergy> Shown() const;
    // The slots that hold energy in what is shown, as the channel table names them.
    std::vector<SlotLook> SlotsShown(const std::vector<PeriodEnergy>& periods) const;
    SlotLook Look(int slot) const;

    // "Wh(K,PERIOD)=VALUE" for each period shown and each slot with energy, then
    // "cost(PERIOD)=VALUE"; "marks(PERIOD)=TEXT" where the figures have something to tell.
    std::vector<std::pair<std::string, std::string>> Dump() const;

    // The table shown, as CSV, and its file in the spreadsheet folder ("/Excel/energy_2026-03.csv",
    // "/Excel/energy_years.csv"). ExportCsv writes it and returns its path; file failures are the
    // caller's.
    std::string CsvText() const;
    std::string CsvLiteral() const;
    std::filesystem::path ExportCsv() const;

    // The power of the days `from` to `to`: 5-minute steps, read from the logs, up to
    // kFineSpanDays; 1-hour steps from the book beyond.
    static constexpr int kFineSpanDays = 8;
    std::vector<PowerPoint> Power(const CivilDate& from, const CivilDate& to) const;

private:
    PeriodEnergy Sum(std::string label, const CivilDate& first, const CivilDate& last) const;

    const SharedState& m_state;
    std::filesystem::path m_folder;
    CivilDate m_today;
    EnergyBook m_book;
    EnergyTariff m_tariff;
    EnergyView m_view = EnergyView::Day;
    int m_year = 2000;
    int m_month = 1;
};

// The points of the days `from` to `to` in 5-minute steps, read from their logs. Touches nothing
// but the files and its arguments, so a thread of its own may run it.
std::vector<PowerPoint> FinePower(const std::filesystem::path& folder,
                                  const std::vector<LoggedDay>& logged,
                                  const ChannelTable& channels, const CivilDate& from,
                                  const CivilDate& to);

// The points of the days `from` to `to` of `book` at hourly steps: a year's chart without
// reading a log.
std::vector<PowerPoint> HourlyPower(const EnergyBook& book, const CivilDate& from,
                                    const CivilDate& to);

// The indexes of the points of a line, in order, that a chart `columns` wide between `x0` and
// `x1` needs: in each column the first, the lowest, the highest and the last point, so that the
// drawn line has every peak and trough of the whole; the points beside the range are kept too, so
// the line runs to the edges. Lines with no more than four points a column come back whole.
// `xs` rise.
std::vector<std::size_t> PointsToDraw(const std::vector<double>& xs, const std::vector<double>& ys,
                                      double x0, double x1, int columns);

}  // namespace brizalog
