#pragma once

#include "displays/monitor_window.h"

namespace brizalog {

// `dataTOlog` ("data that would be logged"): the logging cycle at work. For the first windmill's
// channels it shows the running sums of the current interval beside the averages of the last
// finished one, with the count of frames so far. Its sources are the same in every system type,
// so in a meter layout its cells show zeros or unrelated channels.
class LogPreview : public MonitorWindow {
public:
    explicit LogPreview(SharedState& state);

    // Sets the timer to 500 ms (from its design 1000) and starts it; the marker starts green.
    void Form_Load() override;
    // Flashes the marker, then writes the counter, the sums and the averages.
    void Timer1_Timer() override;

    // Captions of the six groups: Volts, Amps, RPM, WIND, WATTS, Whours.
    static constexpr int kGroups = 6;
    static const char* const kGroupCaptions[kGroups];

    Control accumulatedDATA[kGroups];  // the sums, then the day's watt-hours
    Control Label3[kGroups - 1];       // the last interval's averages
    Control dataOKOK;                  // GoodDataCount
    Control Label1;                    // "Data OK counter", flashing green and black
    Control EXITdataTOlog;

protected:
    void ClickControl(std::string_view control) override;

private:
    SharedState& m_state;
};

}  // namespace brizalog
