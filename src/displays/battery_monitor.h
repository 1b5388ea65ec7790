#pragma once

#include "displays/monitor_window.h"

namespace brizalog {

// The battery monitors `BATTMonitor` and `BATTMonitor2` ("Battery Monitor & Indicator"): one
// system voltage as a large figure on a tile whose colour tells the state of charge. The bank's
// nominal voltage is judged from the reading, so one set of thresholds serves 12, 24 and 48 V
// banks, with a table of its own for 240 V.
class BatteryMonitor : public MonitorWindow {
public:
    // Which window: the channel it reads. Both show the extremes of channel 9.
    struct Variant {
        const char* window;
        int channel;
    };
    static constexpr Variant kFirst{"BATTMonitor", 9};
    static constexpr Variant kSecond{"BATTMonitor2", 10};

    BatteryMonitor(SharedState& state, Variant variant);

    void Form_Load() override;
    // The refresh. The reading of a 24 or 48 V bank is divided in place, in the shared
    // ChannelValue: the display and the calculation see the scaled value until the next frame,
    // and a tick without a new frame classifies the scaled value again. The bank's figure and
    // the tile are set by the scaled value; the caption shows the reading as it came.
    void Timer1_Timer() override;
    // The MAX and MIN toggle: the first click shows the minimum, until the next refresh.
    void voltage_Click();

    Control voltage;        // the tile: the reading, on the state colour
    Control SystemVoltage;  // the nominal voltage of the bank: 12, 24, 48 or 240
    Control Label1;         // the caption over the tile; a click closes the window

    // The toggle starts empty; a click sets it to 1 or 0.
    bool toggleSet = false;
    int toggle = 0;

protected:
    void ClickControl(std::string_view control) override;
    void DumpState(std::vector<std::pair<std::string, std::string>>& items) const override;

private:
    SharedState& m_state;
    int m_channel;
};

}  // namespace brizalog
