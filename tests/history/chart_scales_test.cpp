#include <gtest/gtest.h>

#include <cstdio>

#include "history/chart_scales.h"
#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

std::vector<std::string> Labels(const ChartScale& scale) {
    std::vector<std::string> labels;
    for (const ScaleTick& tick : scale.ticks) {
        labels.push_back(tick.label);
    }
    return labels;
}

std::string Clock(int minute) {
    char text[8];
    std::snprintf(text, sizeof text, "%02d:%02d", minute / 60, minute % 60);
    return text;
}

TEST(RoundTicks, FourToSixRoundValuesInsideAnyRange) {
    const std::pair<double, double> kRanges[] = {
        {0, 32},   {0, 1000}, {0, 25},  {0, 600},  {-3.5, 40}, {0, 4000}, {0, 1},
        {0, 12.1}, {0, 61},   {0, 151}, {0, 301},  {-20, 20},  {0, 0.3},  {11, 14.9},
        {0, 99},   {0, 3000}, {0, 50},  {-1e6, 0}, {0, 7},     {0, 121},
    };
    for (const auto& [low, high] : kRanges) {
        const std::vector<double> ticks = RoundTicks(low, high);
        ASSERT_GE(ticks.size(), 4u) << low << " to " << high;
        ASSERT_LE(ticks.size(), 6u) << low << " to " << high;
        const double step = ticks[1] - ticks[0];
        const double mantissa = step / std::pow(10.0, std::floor(std::log10(step)));
        EXPECT_TRUE(std::abs(mantissa - 1) < 1e-9 || std::abs(mantissa - 2) < 1e-9 ||
                    std::abs(mantissa - 2.5) < 1e-9 || std::abs(mantissa - 5) < 1e-9)
            << step;
        EXPECT_GE(ticks.front(), low - 1e-9);
        EXPECT_LE(ticks.back(), high + 1e-9);
    }
    EXPECT_EQ(RoundTicks(0, 32), (std::vector<double>{0, 10, 20, 30}));
    EXPECT_EQ(RoundTicks(0, 3, true), (std::vector<double>{0, 1, 2, 3}));
    // Ends between round values: seven half volts rather than three whole ones.
    EXPECT_EQ(RoundTicks(11.2, 14.9).size(), 7u);
    EXPECT_TRUE(RoundTicks(5, 5).empty());
    EXPECT_TRUE(RoundTicks(0, INFINITY).empty());
    EXPECT_EQ(TickText(2.5, 2.5), "2.5");
    EXPECT_EQ(TickText(-0.0, 0.25), "0.00");
    EXPECT_EQ(TickText(200, 100), "200");
}

TEST(TimeLabels, StepsNarrowAsTheViewDoes) {
    const std::pair<double, int> kSpans[] = {
        {1437, 180}, {720, 120}, {240, 60}, {58, 10}, {14, 2}, {5, 1},
    };
    for (const auto& [span, step] : kSpans) {
        EXPECT_EQ(TimeTickMinutes(span), step) << span;
    }
    EXPECT_EQ(LogDateText("BZ_2026_11_21.txt"), "21 November 2026");
    EXPECT_EQ(LogDateText("CC_2026_03_07_14.txt"), "7 March 2026");
    EXPECT_EQ(LogDateText("BZWattHours.txt"), "");
    EXPECT_EQ(LogDateText("BZ_2026_13_01.txt"), "");
}

class ScalesTest : public HistoryTest {
protected:
    void SetUp() override {
        state.channels.MaxLimit[9] = 32;
        std::vector<std::string> records;
        for (int minute = 1; minute < 1439; ++minute) {
            records.push_back(BzRecord(Clock(minute), 24 + minute % 7, 3, 200, 6, 60));
        }
        WriteLog("BZ_2026_03_07.txt", records);
    }
    ChartScales Scales(GraphWindow& window, int picked = 0) {
        Plot& plot = windows.PlotOf(window.member().name);
        return ScalesOf(window, picked, plot.ScaleWidth(), plot.ScaleHeight(), "mph");
    }
};

TEST_F(ScalesTest, TheTimeScaleFollowsTheViewAndTheValueScaleThePickedSeries) {
    GraphWindow& bz = windows.Open("GraphBZ");
    ChartScales day = Scales(bz);
    ASSERT_EQ(day.kind, ChartKind::Time);
    EXPECT_EQ(Labels(day.horizontal),
              (std::vector<std::string>{"00:00", "03:00", "06:00", "09:00", "12:00", "15:00",
                                        "18:00", "21:00"}));
    EXPECT_EQ(day.horizontal.title, "7 March 2026");
    EXPECT_NEAR(day.horizontal.ticks[4].at, 0.5, 0.01);
    // Volts of channel 9, Scaled: 0 to 32 in a height of 33.6 with a margin of 0.8.
    EXPECT_EQ(Labels(day.vertical), (std::vector<std::string>{"0", "10", "20", "30"}));
    EXPECT_NEAR(day.vertical.ticks[0].at, 32.8 / 33.6, 1e-9);
    EXPECT_EQ(day.vertical.colour, bz.SeriesColour(0));
    EXPECT_TRUE(day.vertical.title.ends_with("(V)"));
    EXPECT_NEAR(day.vertical.ValueAt(day.vertical.ticks[1].at), 10, 1e-9);

    bz.Find("Time1h")->text = "12";
    bz.Find("Time2h")->text = "13";
    bz.Find("Time2m")->text = "00";
    bz.DisplayButton_Click();
    const ChartScales hour = Scales(bz);
    ASSERT_GE(hour.horizontal.ticks.size(), 4u);
    for (const ScaleTick& tick : hour.horizontal.ticks) {
        EXPECT_TRUE(tick.label.starts_with("12:") || tick.label == "13:00") << tick.label;
    }
    // Unscaled widens the range to the values of the view.
    bz.Click("CheckScaling");
    const ChartScales unscaled = Scales(bz);
    EXPECT_EQ(unscaled.vertical.ticks.back().label, "30");

    // A plain click moves ViewStart without drawing: the scale stays with the picture.
    const auto before = Scales(bz).horizontal.ticks.front().at;
    bz.Plot_MouseDown(20, 0);
    bz.Plot_MouseUp(20, 0);
    EXPECT_EQ(Scales(bz).horizontal.ticks.front().at, before);
}

TEST_F(ScalesTest, CurvesAndBandsCarryTheirOwnQuantities) {
    state.channels.MaxLimit[17] = 1000;
    state.channels.MaxLimit[13] = 500;
    GraphWindow& bz = windows.Open("GraphBZ");
    bz.Click("XAxisRPM");
    const ChartScales rpm = Scales(bz);
    ASSERT_EQ(rpm.kind, ChartKind::PowerVsRpm);
    EXPECT_EQ(Labels(rpm.vertical).back(), "1000");
    EXPECT_NEAR(rpm.vertical.ticks.back().at, 0, 1e-9);  // P on the top edge
    EXPECT_NEAR(rpm.vertical.ticks.front().at, 1, 1e-9);
    EXPECT_EQ(Labels(rpm.horizontal).back(), "500");
    EXPECT_NEAR(rpm.horizontal.ticks.back().at, 1 / 1.05, 1e-9);

    bz.Click("Distribution");
    const ChartScales bands = Scales(bz);
    ASSERT_EQ(bands.kind, ChartKind::Distribution);
    EXPECT_EQ(bands.vertical.title, "Records");
    EXPECT_EQ(Labels(bands.horizontal).back(), "1000");
    // The bar of the band from 0 W stands at x = 1 of 105 bands' width.
    EXPECT_NEAR(bands.horizontal.ticks.front().at, 1 / 105.0, 1e-9);
    EXPECT_EQ(bands.vertical.ticks.back().label, "600");
}

TEST_F(ScalesTest, TheRangeOfTheRecordsReadsTheSameRecordsAgain) {
    GraphWindow& bz = windows.Open("GraphBZ");
    EXPECT_EQ(RangeOfRecords(bz), kWholeDay);
    const MinuteRange afternoon{780, 840};
    EXPECT_EQ(RecordsInside(bz, afternoon), 59);
    EXPECT_NEAR(MinuteAt(bz, 719), 720, 1e-9);  // record 720 at 12:00 lies at x = 719
}

TEST(Zoom, TheWheelKeepsTheTimeUnderTheMouseAndStaysInTheDay) {
    EXPECT_EQ(Zoomed(kWholeDay, 720, 0.5), (MinuteRange{360, 1080}));
    EXPECT_EQ(Zoomed(kWholeDay, 0, 0.5), (MinuteRange{0, 720}));
    EXPECT_EQ(Zoomed({600, 660}, 630, 2), (MinuteRange{570, 690}));
    EXPECT_EQ(Zoomed({1400, 1439}, 1430, 4), (MinuteRange{1283, 1439}));
    EXPECT_EQ(Zoomed({600, 603}, 601, 0.5), std::nullopt);  // as narrow as it goes
    EXPECT_EQ(Zoomed(kWholeDay, 700, 2), std::nullopt);
    EXPECT_EQ(Panned({600, 660}, 0.1), (MinuteRange{606, 666}));
    EXPECT_EQ(Panned({600, 605}, -0.1), (MinuteRange{599, 604}));
    EXPECT_EQ(Panned({1400, 1439}, 0.1), std::nullopt);
    EXPECT_EQ(Panned({5, 65}, -0.5), (MinuteRange{0, 60}));

    ZoomHistory history;
    EXPECT_EQ(history.Back(), std::nullopt);
    history.Push(kWholeDay);
    history.Push({360, 1080});
    history.Push({360, 1080});
    EXPECT_EQ(history.Back(), (MinuteRange{360, 1080}));
    EXPECT_EQ(history.Back(), kWholeDay);
    for (int i = 0; i < 100; ++i) {
        history.Push({i, 1000});
    }
    EXPECT_EQ(history.size(), ZoomHistory::kDepth);
}

TEST(Contrast, NamesTooDarkForTheChartGetAChip) {
    constexpr std::int32_t kBlue = 16711680;
    EXPECT_NEAR(ContrastRatio(kBlue, kPlotScreenColour), 1.2, 0.05);
    EXPECT_TRUE(NeedsChip(kBlue, kPlotScreenColour));
    EXPECT_FALSE(NeedsChip(65535, kPlotScreenColour));  // yellow
    EXPECT_FALSE(NeedsChip(255, kPlotScreenColour) && NeedsChip(65280, kPlotScreenColour));
    EXPECT_NEAR(ContrastRatio(0, 16777215), 21, 1e-9);
}

}  // namespace
}  // namespace brizalog::testing
