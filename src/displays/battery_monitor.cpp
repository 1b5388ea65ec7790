#include "displays/battery_monitor.h"

#include "catalogue/patterns.h"

namespace brizalog {

namespace {

constexpr int kOrange = 33023;
constexpr int kYellow = 65535;
constexpr int kPaleGreen = 8454016;
constexpr int kBlue = 16711680;

// The banks by their reading: up to `below` (not included) the bank is `figure` volts, and the
// reading is divided by `divisor` before it is judged. A reading of 260 V or more is no bank.
struct Bank {
    double below;
    int figure;
    double divisor;
    bool mains;  // judged by the 240 V table
};
constexpr Bank kBanks[] = {
    {15, 12, 1, false},
    {30, 24, 2, false},
    {60, 48, 4, false},
    {260, 240, 1, true},
};

// One row of a colour table: when the reading is above (or below) the threshold, the tile takes
// `tile`; a red tile gets blue text so that the caption stays readable. A reading equal to the
// threshold meets neither test. Rows are walked top to bottom and the last that holds wins.
struct Shade {
    bool above;
    double threshold;
    int tile;
};
constexpr Shade kLowVoltage[] = {
    {false, 12.2, kRed},  {true, 12.2, kOrange}, {true, 12.5, kYellow}, {true, 12.8, kPaleGreen},
    {true, 13.1, kGreen}, {true, 14.0, kYellow}, {true, 14.5, kRed},
};
constexpr Shade kMains[] = {
    {false, 220, kRed},      {true, 220, kPaleGreen}, {true, 225, kGreen},
    {true, 245, kPaleGreen}, {true, 250, kRed},
};

}  // namespace

BatteryMonitor::BatteryMonitor(SharedState& state, Variant variant)
    : MonitorWindow(variant.window, "Battery Monitor & Indicator", 2000),
      m_state(state),
      m_channel(variant.channel) {
    Label1.text = "Battery Volts";
    controls.Add("voltage", voltage);
    controls.Add("SystemVoltage", SystemVoltage);
    controls.Add("Label1", Label1);
}

void BatteryMonitor::Form_Load() {
    Timer1.Enable();
}

void BatteryMonitor::Timer1_Timer() {
    double& reading = m_state.ChannelValue[m_channel];
    voltage.text = FormatPattern(reading, "##0.00 V");
    Label1.foreColour = kRed;

    const Bank* bank = nullptr;
    for (const Bank& candidate : kBanks) {
        if (reading < candidate.below) {
            bank = &candidate;
            break;
        }
    }
    if (bank == nullptr) {
        return;
    }
    SystemVoltage.text = std::to_string(bank->figure);
    if (bank->divisor != 1) {
        reading /= bank->divisor;
    }
    const double v = reading;
    auto walk = [&](const auto& table) {
        for (const Shade& shade : table) {
            if (shade.above ? v > shade.threshold : v < shade.threshold) {
                voltage.colour = shade.tile;
                if (shade.tile == kRed) {
                    Label1.foreColour = kBlue;
                }
            }
        }
    };
    bank->mains ? walk(kMains) : walk(kLowVoltage);
}

void BatteryMonitor::voltage_Click() {
    const auto& extreme = m_state.DailyExtreme;
    if (toggleSet && toggle == 1) {
        toggle = 0;
        voltage.text = "MAX " + FormatPattern(extreme[8], "##0.0V");
    } else {
        toggle = 1;
        voltage.text = "MIN " + FormatPattern(extreme[24], "##0.0V");
    }
    toggleSet = true;
}

void BatteryMonitor::ClickControl(std::string_view control) {
    if (control == "voltage") {
        voltage_Click();
    } else if (control == "Label1") {
        Close();
    }
}

void BatteryMonitor::DumpState(std::vector<std::pair<std::string, std::string>>& items) const {
    items.emplace_back("toggle", toggleSet ? std::to_string(toggle) : "Empty");
}

}  // namespace brizalog
