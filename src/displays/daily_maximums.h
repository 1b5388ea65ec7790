#pragma once

#include "displays/monitor_window.h"

namespace brizalog {

// `dailyMaximums` ("All channels Recent HIGHS and Voltage channels LOWS"): one row per kept
// extreme, row i always showing DailyExtreme[i], named and coloured as its channel. Rows 0 to
// 23 are the maximums of channels 1 to 24, rows 24 to 26 the minimums of channels 9 to 11, rows
// 27 to 30 the temperature extremes of the meters.
class DailyMaximums : public MonitorWindow {
public:
    static constexpr int kRows = 31;

    explicit DailyMaximums(SharedState& state);

    // Hides every row, then shows those of the system type whose channel is present.
    void Form_Load() override;
    // Writes all 31 values with their row's pattern, shown or not.
    void Timer1_Timer() override;
    // Starts the record afresh: every extreme 0, the minimums 1000 for the next reading to pull
    // down. Nothing else resets it, not even the change of day.
    void ResetAllMaxMins_Click();

    Control Channel[kRows];  // captions
    Control value[kRows];
    Control ResetAllMaxMins;

protected:
    void ClickControl(std::string_view control) override;

private:
    SharedState& m_state;
};

}  // namespace brizalog
