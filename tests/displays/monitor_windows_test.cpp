#include <gtest/gtest.h>

#include <limits>

#include "catalogue/config_files.h"
#include "catalogue/plot.h"
#include "catalogue/virtual_platform.h"
#include "displays/bar_meters.h"
#include "displays/battery_monitor.h"
#include "displays/daily_maximums.h"
#include "displays/performance_plot.h"
#include "displays/raw_data_viewers.h"

namespace brizalog {
namespace {

// A monitor over a shared state of its own, its timer on a virtual schedule.
class MonitorTest : public ::testing::Test {
protected:
    MonitorTest() { SetDefaultChannelTable(state.channels); }

    template <typename Window>
    Window& Open(std::unique_ptr<Window> made) {
        made->AttachTimer(timers);
        made->Form_Load();
        Window& window = *made;
        m_window = std::move(made);
        return window;
    }
    void Wait(long long ms) { timers.Advance(ms); }

    SharedState state;
    VirtualClock clock;
    VirtualTimers timers{clock};
    VirtualDialogs dialogs;
    RecordingPlot plot;

private:
    std::unique_ptr<MonitorWindow> m_window;
};

TEST_F(MonitorTest, BatteryReadingOnAThresholdKeepsTheTileOfTheLastTick) {
    auto& monitor = Open(std::make_unique<BatteryMonitor>(state, BatteryMonitor::kFirst));
    state.ChannelValue[9] = 13.2;
    Wait(2000);
    EXPECT_EQ(monitor.voltage.colour, kGreen);
    state.ChannelValue[9] = 12.2;
    Wait(2000);
    EXPECT_EQ(monitor.voltage.text, "12.20 V");
    EXPECT_EQ(monitor.voltage.colour, kGreen);
    state.ChannelValue[9] = 24.4;  // 12.2 after halving
    Wait(2000);
    EXPECT_EQ(monitor.voltage.colour, kGreen);
    EXPECT_EQ(monitor.SystemVoltage.text, "24");
    state.ChannelValue[9] = 12.1;
    Wait(2000);
    EXPECT_EQ(monitor.voltage.colour, kRed);
    EXPECT_EQ(monitor.Label1.foreColour, 16711680);
}

TEST_F(MonitorTest, BatteryMainsTableRunsFromRedToRed) {
    auto& monitor = Open(std::make_unique<BatteryMonitor>(state, BatteryMonitor::kSecond));
    const struct {
        double volts;
        int tile;
    } kCases[] = {{219, kRed}, {222, 8454016}, {230, kGreen}, {248, 8454016}, {255, kRed}};
    for (const auto& c : kCases) {
        state.ChannelValue[10] = c.volts;
        Wait(2000);
        EXPECT_EQ(monitor.voltage.colour, c.tile) << c.volts;
        EXPECT_EQ(monitor.SystemVoltage.text, "240");
        EXPECT_EQ(state.ChannelValue[10], c.volts);  // mains readings are never divided
    }
}

TEST_F(MonitorTest, AReadingNoPatternCanShowEndsThatTickOnly) {
    auto& monitor = Open(std::make_unique<BatteryMonitor>(state, BatteryMonitor::kFirst));
    state.ChannelValue[9] = std::numeric_limits<double>::infinity();
    EXPECT_NO_THROW(Wait(2000));
    state.ChannelValue[9] = 13.0;
    Wait(2000);
    EXPECT_EQ(monitor.voltage.text, "13.00 V");
    EXPECT_TRUE(monitor.Timer1.Enabled());
}

TEST_F(MonitorTest, DailyMaximumsRowsFollowTheChannelTable) {
    state.settings.SystemType = 8;
    state.settings.WSUnits = "km/h";
    state.channels.HARDWAREenabled[10] = 1;
    state.channels.ChannelName[10] = "House bank";
    state.DailyExtreme[11] = 42.25;
    state.DailyExtreme[25] = 24.5;
    state.DailyExtreme[1] = 3.25;
    auto& window = Open(std::make_unique<DailyMaximums>(state));
    Wait(1000);
    EXPECT_EQ(window.value[11].text, "42.3 km/h");
    EXPECT_TRUE(window.value[11].visible);
    EXPECT_EQ(window.Channel[25].text, "MIN House bank");
    EXPECT_EQ(window.value[25].text, "24.50 V");
    EXPECT_TRUE(window.Channel[25].visible);
    // Channel 11 is not present: its minimum row stays hidden though its value is written.
    EXPECT_FALSE(window.Channel[26].visible);
    EXPECT_EQ(window.value[26].text, "0.00 V");
    // Channel 2 likewise, and the temperature rows are not system 8's.
    EXPECT_FALSE(window.value[1].visible);
    EXPECT_EQ(window.value[1].text, "3.3 A");
    EXPECT_FALSE(window.Channel[27].visible);
}

TEST_F(MonitorTest, BarsRestAtTheirBaseWithoutLimitsWhileTheFiguresRun) {
    state.channels.MaxLimit[13] = 0;
    auto& bars = Open(std::make_unique<BarMeters>(state, dialogs, plot));
    state.PlotWatts1 = 800;
    state.ChannelValue[13] = 350;
    Wait(500);
    EXPECT_EQ(bars.powerTop(), BarMeters::kBase);
    EXPECT_EQ(bars.rpmTop(), BarMeters::kBase);
    EXPECT_EQ(bars.Label2.text, "800");
    EXPECT_EQ(bars.Label4.text, "350");
    EXPECT_EQ(bars.maxP.text, "");
    EXPECT_EQ(bars.caption, "RPM vs Power");
}

TEST_F(MonitorTest, BarTopRoundsDownAndStopsAtTheTopOfTheScale) {
    auto& bars = Open(std::make_unique<BarMeters>(state, dialogs, plot));
    state.PlotWatts1 = 1;  // 2880 / 1000 twips a watt: 3000 - 2.88 rounds down to 2997
    state.ChannelValue[13] = 499.9;
    Wait(500);
    EXPECT_EQ(bars.powerTop(), 2997);
    EXPECT_EQ(bars.rpmTop(), BarMeters::kScaleTop);
    state.ChannelValue[13] = 501;
    Wait(500);
    EXPECT_EQ(bars.rpmTop(), BarMeters::kScaleTop);
    EXPECT_TRUE(dialogs.messages.empty());
}

// Counts the lines drawn in `colour` since the surface was last cleared.
int LinesIn(const RecordingPlot& plot, int colour) {
    int count = 0;
    for (const auto& op : plot.ops()) {
        count += op.kind == RecordingPlot::OpKind::Line && op.colour == colour;
    }
    return count;
}

TEST_F(MonitorTest, ClearDisplayRemovesTheDotsAndKeepsTheMode) {
    state.channels.MaxLimit[13] = 40;
    state.channels.MaxLimit[14] = 40;
    state.channels.MaxLimit[17] = 300;
    state.channels.MaxLimit[18] = 200;
    state.channels.LineColour[17] = 111;
    state.channels.LineColour[18] = 222;
    auto& window = Open(std::make_unique<PerformancePlot>(state, plot, 3));
    // Equal speed limits: the scale is that value.
    EXPECT_EQ(plot.ScaleWidth(), 40);
    EXPECT_EQ(plot.ScaleHeight(), 300);
    EXPECT_EQ(LinesIn(plot, kGreen), 40);
    Wait(1500);
    EXPECT_EQ(LinesIn(plot, 111), 3);
    EXPECT_EQ(LinesIn(plot, 222), 3);
    // The background is never drawn again by a tick.
    EXPECT_EQ(LinesIn(plot, 65535), 11);

    window.Click("cleardisplayMENU");
    EXPECT_EQ(LinesIn(plot, 111), 0);
    EXPECT_EQ(LinesIn(plot, kGreen), 40);
    Wait(500);
    EXPECT_EQ(window.mode(), 3);
    EXPECT_EQ(LinesIn(plot, 111), 1);
    EXPECT_EQ(LinesIn(plot, 222), 1);
}

TEST_F(MonitorTest, APlotLimitOfZeroDrawsNoCurveAndStillTheDots) {
    state.channels.MaxLimit[14] = 0;
    auto& window = Open(std::make_unique<PerformancePlot>(state, plot, 2));
    EXPECT_EQ(window.Label4.text, "0");
    EXPECT_EQ(LinesIn(plot, kGreen), 0);
    Wait(500);
    EXPECT_EQ(plot.ops().size(), 2u);  // the width, then the dot
}

TEST_F(MonitorTest, RawRowsStopAtThirtyOfFifty) {
    auto& viewer = Open(std::make_unique<RawCommsViewer>(state));
    state.LastFrame = std::string(1500, 'a');
    Wait(2000);
    ASSERT_EQ(viewer.rows.size(), 30u);
    EXPECT_EQ(viewer.rows.back(), std::string(50, 'a') + "\r\n");
    state.LastFrame = std::string(1501, 'b');
    Wait(2000);
    ASSERT_EQ(viewer.rows.size(), 30u);
    EXPECT_EQ(viewer.rows.back(), std::string(50, 'b') + "\r\n");
    EXPECT_EQ(viewer.columns, (std::vector<std::string>{"", "RAW DATA"}));
}

}  // namespace
}  // namespace brizalog
