#include "displays/system_layouts.h"

#include <array>
#include <string>

namespace brizalog {

namespace {

constexpr std::string_view kWindmill1AndBattery =
    "Windmill 1 System measurements and Battery Voltage";
constexpr std::string_view kBatteryVoltage = "Battery System Voltage";
constexpr std::string_view kDcPower = "DC power measurement Channels";
constexpr std::string_view kDcBatteryPower = "DC battery power measurement Channels";
constexpr std::string_view kMainsPower = "240VAC inverter power measurement Channels";

constexpr std::string_view kDcCaptions[] = {"DC power 1", "DC power 2", "DC power 3", "DC power 4",
                                            "DC power 5", "DC power 6", "DC power 7", "DC power 8"};
constexpr std::string_view kMainsCaptions[] = {"240VAC power 1", "240VAC power 2", "240VAC power 3",
                                               "240VAC power 4"};
constexpr std::string_view kAmps[] = {"Amps(0)", "Amps(1)", "Amps(2)", "Amps(3)"};
constexpr std::string_view kWatts[] = {"Watts(0)", "Watts(1)", "Watts(2)", "Watts(3)"};
constexpr std::string_view kWhours[] = {"Whours(0)", "Whours(1)", "Whours(2)", "Whours(3)"};

// Watts(k) and Whours(k) by rule W with channels a and b.
void RuleW(std::vector<CellRule>& cells, int k, int a, int b, CellShow rule = CellShow::RuleW) {
    cells.push_back({kWatts[k], rule, a, b});
    cells.push_back({kWhours[k], rule, a, b});
}

std::array<SystemLayout, 9> MakeLayouts() {
    std::array<SystemLayout, 9> layouts;

    SystemLayout& t0 = layouts[0];
    t0 = {"Brizalog", true, false, true, true, 2200, {}, {}, {}};
    t0.groups = {{"Frame1(0)", 600, "Windmill measurements and Battery volts"}};
    t0.cells = {{"Volts(0)", CellShow::ByChannel, 9},
                {"Amps(0)", CellShow::ByChannel, 1},
                {"Wind(0)", CellShow::ByChannel, 12},
                {"RPM(0)", CellShow::ByChannel, 13}};
    RuleW(t0.cells, 0, 1, 17, CellShow::RuleWWithB);

    SystemLayout& t1 = layouts[1];
    t1 = {"2 Windmills", true, true, true, true, 2800, {}, {}, {}};
    t1.groups = {{"Frame1(0)", 600, kWindmill1AndBattery}, {"Frame1(1)", 1200, {}}};
    // Amps(1) tests channel 1 and is shown in either outcome.
    t1.cells = {{"Amps(0)", CellShow::ByChannel, 1},
                {"Amps(1)", CellShow::Always},
                {"Volts(0)", CellShow::ByChannel, 9}};
    RuleW(t1.cells, 0, 1, 17);
    RuleW(t1.cells, 1, 2, 18);
    t1.cells.push_back({"Wind(0)", CellShow::ByChannel, 12});
    t1.cells.push_back({"RPM(0)", CellShow::ByChannel, 13});
    t1.cells.push_back({"RPM(1)", CellShow::ByChannel, 14});

    SystemLayout& t2 = layouts[2];
    t2 = {"2 Windmills + Aux", true, true, true, true, 3400, {}, {}, {}};
    t2.groups = {
        {"Frame1(0)", 600, kWindmill1AndBattery}, {"Frame1(1)", 1200, {}}, {"Frame1(2)", 1800, {}}};
    for (int k = 0; k < 4; ++k) {
        t2.cells.push_back({kAmps[k], CellShow::ByChannel, k + 1});
    }
    t2.cells.push_back({"Volts(0)", CellShow::ByChannel, 9});
    for (int k = 0; k < 4; ++k) {
        RuleW(t2.cells, k, k + 1, k + 17);
    }
    t2.cells.push_back({"Wind(0)", CellShow::ByChannel, 12});
    t2.cells.push_back({"RPM(0)", CellShow::ByChannel, 13});
    t2.cells.push_back({"RPM(1)", CellShow::ByChannel, 14});

    SystemLayout& t3 = layouts[3];
    t3 = {"3 Ch Current Cost", false, false, false, false, 3400, {}, {}, {}};
    t3.groups = {{"Frame4(0)", 600, "Current Cost Meter System UP TO 3 Channels"}};
    t3.channelCells = {{0, ChannelCellKind::Temperature, 0, {}},
                       {1, ChannelCellKind::MeterChannel, 19, {}},
                       {2, ChannelCellKind::MeterChannel, 20, {}},
                       {3, ChannelCellKind::MeterChannel, 21, {}}};

    // Frame5(4) is set up as the second temperature but stays hidden, so its toggle cannot be
    // reached by a click.
    SystemLayout& t4 = layouts[4];
    t4 = {"6 Ch Current Cost", false, false, false, false, 5100, {}, {}, {}};
    t4.groups = {{"Frame4(0)", 600, "Current Cost Meter System 1 Channels"},
                 {"Frame4(1)", 2400, "Current Cost Meter System 2 Channels"}};
    t4.channelCells = t3.channelCells;
    t4.channelCells.push_back({4, ChannelCellKind::Temperature, 0, {}, false});
    for (int k = 5; k <= 7; ++k) {
        t4.channelCells.push_back({k, ChannelCellKind::MeterChannel, k + 17, {}});
    }

    const std::vector<CellRule> batteryCells = {{"Volts(0)", CellShow::ByChannel, 9},
                                                {"Amps(0)", CellShow::Hidden},
                                                {"Watts(0)", CellShow::Hidden},
                                                {"Whours(0)", CellShow::Hidden},
                                                {"RPM(0)", CellShow::Hidden}};
    SystemLayout& t5 = layouts[5];
    t5 = {"4Ch House A + Batt V", false, false, false, true, 3900, {}, batteryCells, {}};
    t5.groups = {{"Frame1(0)", 600, kBatteryVoltage}, {"Frame4(0)", 1200, kDcPower}};
    for (int k = 0; k < 4; ++k) {
        t5.channelCells.push_back({k, ChannelCellKind::RuleL, k + 1, kDcCaptions[k]});
    }

    SystemLayout& t6 = layouts[6];
    t6 = {"8Ch House A + Batt V", false, false, false, true, 5300, {}, batteryCells, {}};
    t6.groups = {{"Frame1(0)", 600, kBatteryVoltage},
                 {"Frame4(0)", 1200, kDcPower},
                 {"Frame4(1)", 2800, kDcPower}};
    for (int k = 0; k < 8; ++k) {
        t6.channelCells.push_back({k, ChannelCellKind::RuleL, k + 1, kDcCaptions[k]});
    }

    SystemLayout& t7 = layouts[7];
    t7 = {"BATV,4xDCA,4x240VACA", false, false, false, true, 5300, {}, batteryCells, {}};
    t7.groups = {{"Frame1(0)", 600, kBatteryVoltage},
                 {"Frame4(0)", 1200, kDcBatteryPower},
                 {"Frame4(1)", 2800, kMainsPower}};
    for (int k = 0; k < 8; ++k) {
        t7.channelCells.push_back(
            {k, ChannelCellKind::RuleL, k + 1, k < 4 ? kDcCaptions[k] : kMainsCaptions[k - 4]});
    }

    // The caption "Windmill 2 measurements" goes to Frame1(2), which stays hidden; the visible
    // second windmill keeps "Windmill 2". Amps(1) tests channel 1, not channel 2.
    SystemLayout& t8 = layouts[8];
    t8 = {"2 MILLS, 240VACA + MISC", true, true, true, true, 6800, {}, {}, {}};
    t8.groups = {{"Frame1(0)", 600, "Windmill 1 measurements"},
                 {"Frame1(1)", 1200, {}},
                 {"Frame4(0)", 1800, kDcBatteryPower},
                 {"Frame4(1)", 3500, kMainsPower},
                 {"Frame2", 5100, "Misc measurements"},
                 {"Frame1(2)", 0, "Windmill 2 measurements", false}};
    t8.cells = {{"Amps(0)", CellShow::ByChannel, 1},
                {"Amps(1)", CellShow::ByChannel, 1},
                {"Volts(0)", CellShow::ByChannel, 9}};
    RuleW(t8.cells, 0, 1, 17);
    RuleW(t8.cells, 1, 2, 18);
    t8.cells.insert(t8.cells.end(), {{"Wind(0)", CellShow::ByChannel, 12},
                                     {"RPM(0)", CellShow::ByChannel, 13},
                                     {"RPM(1)", CellShow::ByChannel, 14},
                                     {"Label6", CellShow::ByChannel, 10},
                                     {"Label7", CellShow::ByChannel, 11},
                                     {"Label8", CellShow::Hidden},
                                     {"Label9", CellShow::ByChannel, 15},
                                     {"Label12", CellShow::ByChannel, 16}});
    t8.channelCells = {{2, ChannelCellKind::RuleL, 3, kDcCaptions[0]},
                       {3, ChannelCellKind::RuleL, 4, kDcCaptions[1]}};
    for (int k = 4; k < 8; ++k) {
        t8.channelCells.push_back({k, ChannelCellKind::RuleL, k + 1, kMainsCaptions[k - 4]});
    }
    return layouts;
}

}  // namespace

const SystemLayout& LayoutOf(int systemType) {
    static const std::array<SystemLayout, 9> kLayouts = MakeLayouts();
    return kLayouts[static_cast<std::size_t>(systemType)];
}

}  // namespace brizalog
