#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "catalogue/files.h"
#include "energy/energy_index.h"
#include "energy/energy_view.h"
#include "logging/logging_rig.h"

namespace brizalog::testing {
namespace {

// ---- Days logged by the program itself, against its own ledger -------------------------------

// What the calculation leaves in the sums for one frame at minute `m` of the day, as each system
// type's families log it: amps and volts (WD, BZ), or the meter's and the house's watts.
void OneFrame(LoggingRig& rig, int m) {
    auto& s = rig.s;
    const double hour = m / 60.0;
    const double sun = hour > 7 && hour < 18 ? std::sin((hour - 7) / 11 * M_PI) : 0;
    const double volts = 24.2 + 1.5 * sun + 0.3 * std::sin(m * 0.37);
    const double amps[] = {0, 6 + 4 * std::sin(m * 0.013), 2 + std::cos(m * 0.021), 30 * sun,
                           4 + 2 * std::sin(m * 0.11)};
    s.SumValue[9] = volts;
    for (int i = 1; i <= 4; ++i) {
        s.SumValue[i] = amps[i];
        s.SumWatts[i] = amps[i] * volts;
    }
    for (int slot = 5; slot <= 8; ++slot) {
        s.SumWatts[slot] = 100 * slot + 80 * std::sin(m * 0.05 * slot);
    }
    s.GoodDataCount = 1;
}

// A day of one tick a minute, at half past each minute, between the rollovers of its own
// midnight and the next.
void LogOneDay(LoggingRig& rig) {
    rig.At(2026, 3, 7, 0, 0, 5);
    rig.form.Timer3_Timer();
    for (int m = 0; m < 24 * 60; ++m) {
        rig.At(2026, 3, 7, m / 60, m % 60, 30);
        OneFrame(rig, m);
        rig.form.Timer1_Timer();
    }
    rig.At(2026, 3, 8, 0, 0, 5);
    rig.form.Timer3_Timer();
}

TEST(DayEnergy, EachFamilyAgreesWithTheLedgerToTheWattHour) {
    struct Case {
        int systemType;
        LogFamily family;        // the family whose records carry the energy
        std::vector<int> slots;  // slots that hold energy
    };
    const Case cases[] = {
        {0, LogFamily::WD, {1}},
        {1, LogFamily::BZ, {1, 2, 3, 4}},
        {3, LogFamily::CC, {2, 3, 4, 6, 7, 8}},
        {5, LogFamily::RE, {1, 2, 3, 4, 5, 6, 7, 8}},
        {8, LogFamily::RE, {1, 2, 3, 4, 5, 6, 7, 8}},  // BZ, RE and ML logged: RE counts
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("system type " + std::to_string(c.systemType));
        LoggingRig rig(c.systemType, 60);
        rig.s.LoggingActive = 1;
        LogOneDay(rig);
        const std::optional<EnergyBook> book = OpenEnergyBook(rig.folder.path(), rig.s.channels);
        ASSERT_TRUE(book);
        const CivilDate day{2026, 3, 7};
        ASSERT_EQ(book->days.count(day), 1u);
        ASSERT_EQ(book->ledger.count(day), 1u);
        const DayEnergy& e = book->days.at(day);
        EXPECT_EQ(e.family, c.family);
        EXPECT_EQ(e.records, 1440);
        EXPECT_EQ(e.damaged, 0);
        EXPECT_DOUBLE_EQ(e.seconds, 86400);
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            const bool carried = std::find(c.slots.begin(), c.slots.end(), slot) != c.slots.end();
            if (carried) {
                EXPECT_GT(e.wh[slot], 1000) << "slot " << slot;
                EXPECT_NEAR(e.wh[slot], book->ledger.at(day)[slot], 1.0) << "slot " << slot;
            } else {
                EXPECT_EQ(e.wh[slot], 0) << "slot " << slot;
            }
        }
    }
}

TEST(DayEnergy, EachRecordCountsAsTheStartUpReplayCountsIt) {
    // The start-up replay leaves the day's first record out; with a first record of no power
    // the two agree exactly, slot by slot, in every family the replay reads.
    for (int systemType : {0, 1, 3}) {
        SCOPED_TRACE("system type " + std::to_string(systemType));
        LoggingRig rig(systemType, 60);
        rig.s.LoggingActive = 1;
        rig.At(2026, 3, 7, 0, 0, 30);
        rig.s.GoodDataCount = 1;  // a frame of nothing
        rig.form.Timer1_Timer();
        for (int m = 1; m < 300; ++m) {
            rig.At(2026, 3, 7, m / 60, m % 60, 30);
            OneFrame(rig, m);
            rig.form.Timer1_Timer();
        }
        const std::string prefix(FamilyPrefix(systemType == 0   ? LogFamily::WD
                                              : systemType == 1 ? LogFamily::BZ
                                                                : LogFamily::CC));
        const std::string text = rig.Read("logs/" + prefix + "_2026_03_07.txt");
        SharedState replayed;
        replayed.channels = rig.s.channels;
        ReplayLogText(text, systemType, replayed);
        const DayEnergy e = ReadDayEnergy({2026, 3, 7},
                                          systemType == 0   ? LogFamily::WD
                                          : systemType == 1 ? LogFamily::BZ
                                                            : LogFamily::CC,
                                          {text}, rig.s.channels);
        for (int slot = 1; slot <= kPowerSlots; ++slot) {
            EXPECT_NEAR(e.wh[slot], replayed.WattHours[slot], 1e-9) << "slot " << slot;
        }
    }
}

// ---- A month as owners' folders hold it ----------------------------------------------------

// A BZ record with the first-run tags: `amps` on the first channel at 24 volts.
std::string BzRecord(const std::string& time, double interval, double amps) {
    char text[200];
    std::snprintf(text, sizeof text,
                  "<T>%s</T><L>%g</L><V1>24.00</V1><A1>%.1f</A1><A2>0.0</A2><A3>0.0</A3>"
                  "<A4>0.0</A4><R2>0</R2><R1>0</R1><WS>0</WS>\r\n",
                  time.c_str(), interval, amps);
    return text;
}

std::string Hhmm(int hour, int minute) {
    char text[8];
    std::snprintf(text, sizeof text, "%02d:%02d", hour, minute);
    return text;
}

// Hourly records of 10 A (240 W) for each hour in `hours`.
std::string HourlyDay(std::initializer_list<int> hours) {
    std::string text;
    for (int h : hours) {
        text += BzRecord(Hhmm(h, 0), 3600, 10);
    }
    return text;
}

std::string WholeDay() {
    std::string text;
    for (int h = 0; h < 24; ++h) {
        text += BzRecord(Hhmm(h, 0), 3600, 10);
    }
    return text;
}

struct MonthFolder {
    TestFolder folder;
    SharedState state;

    MonthFolder() {
        std::filesystem::create_directories(folder.path() / "logs");
        std::filesystem::create_directories(folder.path() / "Excel");
        SetDefaultChannelTable(state.channels);
        state.channels.ChannelName[17] = "Mill";
        Write("BZ_2026_03_01.txt", WholeDay());
        // 2 March: no log.
        // 3 March at a 5-second interval: one file per hour, 720 records of 5 A (120 W) each.
        for (int h = 0; h < 24; ++h) {
            std::string hour;
            for (int r = 0; r < 720; ++r) {
                hour += BzRecord(Hhmm(h, r / 12), 5, 5);
            }
            char name[32];
            std::snprintf(name, sizeof name, "BZ_2026_03_03_%02d.txt", h);
            Write(name, hour);
        }
        // 4 March: a record cut short by a power cut, one with a torn time, one unreadable.
        std::string damaged = WholeDay();
        damaged.insert(0, "<T>3:1</T><L>3600</L><V1>24.00</V1><A1>99.0</A1><WS>0</WS>\r\n");
        damaged += "<T>23:59</T><L>3600</L><V1>24.00</V1><A1>99.0</A1><A2></A2>\r\n";
        damaged += "<T>23:59</T><L>3600</L><V1>24.00</V1><A1>1e999</A1><WS>0</WS>\r\n";
        damaged += "<T>23:59</T><L>3600</L><V1>24.0";
        Write("BZ_2026_03_04.txt", damaged);
        // 5 March: logged from noon only.
        Write("BZ_2026_03_05.txt", HourlyDay({12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23}));
        // 29 March, clocks go forward: no 02:00 hour, still a whole day.
        Write("BZ_2026_03_29.txt", HourlyDay({0,  1,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                              13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23}));
        // 25 October, clocks go back: 01:00 twice.
        Write("BZ_2026_10_25.txt", HourlyDay({0,  1,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,
                                              12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23}));
        // The ledger wrote its record of 1 March, and one of 4 March that disagrees.
        Write("Whours.txt",
              "2026_03_02,00:00, Wh1, 5760.4, Wh2, .0 ,Wh3, .0 ,Wh4, .0 ,Wh5, .0 ,Wh6, .0 ,Wh7, "
              ".0 ,Wh8, .0 Wh\r\n"
              "2026_03_05,00:00, Wh1, 6100.0, Wh2, .0 ,Wh3, .0 ,Wh4, .0 ,Wh5, .0 ,Wh6, .0 ,Wh7, "
              ".0 ,Wh8, .0 Wh\r\n");
    }
    void Write(const std::string& name, const std::string& text) {
        WriteWholeFile(InFolder(folder.path(), "/logs/" + name), text);
    }
    EnergyModel Model(CivilDate today = {2026, 12, 1}) {
        EnergyModel model(state, folder.path(), today);
        model.SetBook(*OpenEnergyBook(folder.path(), state.channels));
        return model;
    }
};

std::map<std::string, std::string> DumpOf(const EnergyModel& model) {
    std::map<std::string, std::string> lines;
    for (const auto& [name, value] : model.Dump()) {
        lines[name] = value;
    }
    return lines;
}

TEST(EnergyMonth, DaysAreSummedAndMarkedNeverGuessed) {
    MonthFolder month;
    EnergyModel model = month.Model();
    ASSERT_TRUE(model.SetView("day"));
    ASSERT_TRUE(model.SetPeriod("2026-03"));
    auto dump = DumpOf(model);

    struct Expect {
        std::string day;
        std::string wh;  // "" when the day holds no energy
        std::string marks;
    };
    const Expect expected[] = {
        {"2026-03-01", "5760.0", ""},
        {"2026-03-02", "", "no log"},
        {"2026-03-03", "2880.0", ""},  // 24 hourly files
        {"2026-03-04", "5760.0", "Whours.txt has Mill 6100.0 Wh; 4 damaged records left out"},
        {"2026-03-05", "2880.0", "logged 12.0 h of the day"},
        {"2026-03-29", "5520.0", ""},
    };
    for (const Expect& e : expected) {
        SCOPED_TRACE(e.day);
        const std::string key = "Wh(1," + e.day + ")";
        EXPECT_EQ(dump.count(key) ? dump[key] : "", e.wh);
        const std::string marks = "marks(" + e.day + ")";
        EXPECT_EQ(dump.count(marks) ? dump[marks] : "", e.marks);
    }
    EXPECT_EQ(dump["Whours(1,2026-03-01)"], "5760.4");
    EXPECT_EQ(dump["cost(2026-03-01)"], "0.58");  // 5.76 kWh at the first-run 10 cents
    EXPECT_EQ(dump["cost(2026-03-02)"], "0.00");

    ASSERT_TRUE(model.SetView("month"));
    ASSERT_TRUE(model.SetPeriod("2026"));
    dump = DumpOf(model);
    EXPECT_EQ(dump["Wh(1,2026-03)"], "22800.0");
    EXPECT_EQ(dump["marks(2026-03)"],
              "26 days without a log; 1 day logged in part; 4 damaged records left out");
    EXPECT_EQ(dump["Wh(1,2026-10)"], "6000.0");  // the 25-hour day
    EXPECT_EQ(dump.count("Wh(1,2026-04)"), 0u);

    ASSERT_TRUE(model.SetView("year"));
    EXPECT_EQ(DumpOf(model)["Wh(1,2026)"], "28800.0");
    ASSERT_TRUE(model.SetView("week"));
    ASSERT_TRUE(model.SetPeriod("2026"));
    dump = DumpOf(model);
    EXPECT_EQ(dump["Wh(1,2026-W09)"], "5760.0");   // 23 February to 1 March
    EXPECT_EQ(dump["Wh(1,2026-W10)"], "11520.0");  // 2 to 8 March
}

TEST(EnergyMonth, TheCsvIsTheTableShownAndGoesToTheSpreadsheetFolder) {
    MonthFolder month;
    EnergyModel model = month.Model();
    model.SetView("year");
    const std::filesystem::path path = model.ExportCsv();
    EXPECT_EQ(path.filename(), "energy_years.csv");
    EXPECT_EQ(ReadWholeFile(path),
              "Period,Mill (Wh),Total (Wh),Cost ($),Notes\r\n"
              "2026,28800.0,28800.0,2.88,329 days without a log; 1 day logged in part; 4 "
              "damaged records left out\r\n");
}

TEST(EnergyMonth, PowerIsAveragedInFiveMinutesOverAWeekAndHoursOverAYear) {
    MonthFolder month;
    const EnergyModel model = month.Model();
    const std::vector<PowerPoint> fine = model.Power({2026, 3, 3}, {2026, 3, 3});
    ASSERT_EQ(fine.size(), 288u);
    EXPECT_EQ(fine[1].minute - fine[0].minute, 5);
    EXPECT_DOUBLE_EQ(fine[7].watts[1], 120);
    const std::vector<PowerPoint> coarse = model.Power({2026, 1, 1}, {2026, 12, 31});
    EXPECT_EQ(coarse.size(), 24u + 24 + 24 + 12 + 23 + 24);  // a 25-hour day has 24 hours
    EXPECT_EQ(coarse.front().minute, DayNumber({2026, 3, 1}) * 1440LL);
    EXPECT_DOUBLE_EQ(coarse.front().watts[1], 240);
}

TEST(PowerChart, ThinnedLinesKeepEveryPeakAndTrough) {
    // A year of hours on a chart 100 columns wide: a spike and a dip inside columns are kept.
    std::vector<double> xs;
    std::vector<double> ys;
    for (int h = 0; h < 8760; ++h) {
        xs.push_back(h);
        ys.push_back(h == 4321 ? 5000 : h == 777 ? -40 : 100 + (h % 24));
    }
    const std::vector<std::size_t> kept = PointsToDraw(xs, ys, 0, 8760, 100);
    EXPECT_LE(kept.size(), 400u);
    EXPECT_TRUE(std::is_sorted(kept.begin(), kept.end()));
    for (std::size_t must :
         {std::size_t{0}, std::size_t{777}, std::size_t{4321}, std::size_t{8759}}) {
        EXPECT_NE(std::find(kept.begin(), kept.end(), must), kept.end()) << must;
    }
    // Zoomed to a day, the hours come back whole, with one point beyond each edge.
    const std::vector<std::size_t> day = PointsToDraw(xs, ys, 48, 71, 100);
    ASSERT_EQ(day.size(), 26u);
    EXPECT_EQ(day.front(), 47u);
    EXPECT_EQ(day.back(), 72u);
}

// ---- The index ------------------------------------------------------------------------------

TEST(EnergyIndex, OnlyChangedDaysAreReadAgain) {
    MonthFolder month;
    const auto path = month.folder.path();
    const auto& channels = month.state.channels;
    const std::size_t days = FindLoggedDays(path).size();

    EXPECT_EQ(OpenEnergyBook(path, channels)->reread, days);
    EXPECT_TRUE(FileExists(InFolder(path, "/logs/energy.index")));
    EXPECT_EQ(OpenEnergyBook(path, channels)->reread, 0u);

    // A log that has grown since: that day alone, with its new record.
    AppendToFile(InFolder(path, "/logs/BZ_2026_03_05.txt"), BzRecord("11:00", 3600, 20));
    std::optional<EnergyBook> book = OpenEnergyBook(path, channels);
    EXPECT_EQ(book->reread, 1u);
    EXPECT_DOUBLE_EQ(book->days.at({2026, 3, 5}).wh[1], 2880 + 480);

    // The index read back gives what the logs gave.
    const DayEnergy fresh = ReadDayEnergy(path, FindLoggedDays(path)[0], channels);
    EXPECT_EQ(OpenEnergyBook(path, channels)->days.at({2026, 3, 1}).wh, fresh.wh);

    // A torn day line, a torn index, other tags: read again, never trusted.
    std::string index = ReadWholeFile(InFolder(path, "/logs/energy.index"));
    const std::size_t line = index.find("day 2026-03-01 BZ ");
    index.replace(index.find(' ', line + 30), 1, "x");
    WriteWholeFile(InFolder(path, "/logs/energy.index"), index);
    EXPECT_EQ(OpenEnergyBook(path, channels)->reread, 1u);
    index = ReadWholeFile(InFolder(path, "/logs/energy.index"));
    WriteWholeFile(InFolder(path, "/logs/energy.index"), index.substr(0, index.size() - 4));
    EXPECT_EQ(OpenEnergyBook(path, channels)->reread, days);
    SharedState renamed;
    renamed.channels = channels;
    renamed.channels.XMLsoftware[1] = "AMPS";
    book = OpenEnergyBook(path, renamed.channels);
    EXPECT_EQ(book->reread, days);
    EXPECT_EQ(book->days.at({2026, 3, 1}).wh[1], 0);  // old logs keep the old tag
}

TEST(EnergyIndex, CancellingKeepsWhatWasReadAndReturnsNothing) {
    MonthFolder month;
    const auto path = month.folder.path();
    const auto stopAtThree = [](std::size_t done, std::size_t) { return done < 3; };
    EXPECT_FALSE(OpenEnergyBook(path, month.state.channels, stopAtThree));
    EXPECT_EQ(OpenEnergyBook(path, month.state.channels)->reread, FindLoggedDays(path).size() - 3);
}

// ---- Cost, the ledger's file, the calendar --------------------------------------------------

TEST(EnergyCost, RoundsToTheCentHalvesAwayFromZero) {
    struct Case {
        double wh;
        double price;
        const char* cost;
    };
    const Case cases[] = {
        {5, 1, "0.01"},    {4.999, 1, "0.00"}, {1234.5, 0.3, "0.37"}, {16.66666, 0.3, "0.00"},
        {50, 0.3, "0.02"}, {-5, 1, "-0.01"},   {1005, 1, "1.01"},     {123456.7, 0.25, "30.86"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FormatMoney(CostOf(c.wh, {c.price, "$"})), c.cost) << c.wh << " at " << c.price;
    }
}

TEST(EnergyCost, TheTariffIsTheOptionElseTheStoredFirstPowerRate) {
    TestFolder folder;
    SharedState state;
    EXPECT_DOUBLE_EQ(TariffOf(state, folder.path()).pricePerKWh, 0.10);  // first-run 10 cents
    WriteWholeFile(folder.path() / "hardware.cfg", "<SystemType>1</SystemType>\r\n<M>27.5</M>\r\n");
    EXPECT_DOUBLE_EQ(TariffOf(state, folder.path()).pricePerKWh, 0.275);
    state.options.Set("EnergyPrice", "0.31");
    state.options.Set("EnergyCurrency", "€");
    const EnergyTariff tariff = TariffOf(state, folder.path());
    EXPECT_DOUBLE_EQ(tariff.pricePerKWh, 0.31);
    EXPECT_EQ(tariff.currency, "€");
}

TEST(WhoursFile, RecordsBelongToTheDayBeforeAndOneNightsRecordsAddUp) {
    const auto totals = ReadWhoursTotals(
        "2026_03_08,00:00, Wh1, 1834.2, Wh2, .0 ,Wh3, .0 ,Wh4, 12.5 ,Wh5, .0 ,Wh6, .0 ,Wh7, .0 "
        ",Wh8, .0 Wh\r\n"
        "2026_03_08,00:00, Wh1, .5, Wh2, .0 ,Wh3, .0 ,Wh4, .0 ,Wh5, .0 ,Wh6, .0 ,Wh7, .0 ,Wh8, "
        ".0 Wh\r\n"
        "2026_03_09,00:00, Wh1, 1.0, Wh2, .0 ,Wh3\r\n"  // cut short: skipped
        "garbage\r\n");
    ASSERT_EQ(totals.size(), 1u);
    EXPECT_NEAR(totals.at({2026, 3, 7})[1], 1834.7, 1e-9);
    EXPECT_DOUBLE_EQ(totals.at({2026, 3, 7})[4], 12.5);
}

TEST(Calendar, IsoWeeksAndDayNumbers) {
    struct Case {
        CivilDate date;
        int year;
        int week;
    };
    const Case cases[] = {
        {{2026, 1, 1}, 2026, 1},  {{2027, 1, 1}, 2026, 53}, {{2024, 12, 30}, 2025, 1},
        {{2026, 3, 8}, 2026, 10}, {{2021, 1, 3}, 2020, 53}, {{2026, 12, 28}, 2026, 53},
    };
    for (const Case& c : cases) {
        const IsoWeek week = IsoWeekOf(c.date);
        EXPECT_EQ(week.year, c.year) << IsoDate(c.date);
        EXPECT_EQ(week.week, c.week) << IsoDate(c.date);
    }
    for (long n = DayNumber({1999, 12, 25}); n < DayNumber({2001, 3, 5}); ++n) {
        ASSERT_EQ(DayNumber(DateOfDayNumber(n)), n);
    }
    EXPECT_EQ(DateOfDayNumber(DayNumber({2024, 2, 28}) + 1), (CivilDate{2024, 2, 29}));
    EXPECT_FALSE(ParseLogName("BZ_2026_02_30.txt"));
    EXPECT_FALSE(ParseLogName("BZWattHours.txt"));
    EXPECT_EQ(ParseLogName("RE_2026_03_07_14.txt")->hour, 14);
}

}  // namespace
}  // namespace brizalog::testing
