#include "displays/log_preview.h"

#include "catalogue/patterns.h"

namespace brizalog {

namespace {

constexpr int kBlack = 0;
constexpr std::string_view kPattern = "#0.00";

}  // namespace

const char* const LogPreview::kGroupCaptions[kGroups] = {"Volts", "Amps",  "RPM",
                                                         "WIND",  "WATTS", "Whours"};

LogPreview::LogPreview(SharedState& state)
    : MonitorWindow("dataTOlog", "data that would be logged", 1000), m_state(state) {
    Label1.text = "Data OK counter";
    EXITdataTOlog.text = "exit";
    controls.AddArray("accumulatedDATA", accumulatedDATA);
    controls.AddArray("Label3", Label3);
    controls.Add("dataOKOK", dataOKOK);
    controls.Add("Label1", Label1);
    controls.Add("EXITdataTOlog", EXITdataTOlog);
}

void LogPreview::Form_Load() {
    Timer1.SetInterval(500);
    Timer1.Enable();
    Label1.foreColour = kGreen;
}

void LogPreview::Timer1_Timer() {
    // The marker changes twice a second, so a user sees that the window is alive.
    Label1.foreColour = Label1.foreColour == kGreen ? kBlack : kGreen;
    const SharedState& s = m_state;
    dataOKOK.text = std::to_string(s.GoodDataCount);
    const double sums[kGroups] = {s.SumValue[9],  s.SumValue[1], s.SumValue[13],
                                  s.SumValue[12], s.SumWatts[1], s.WattHours[1]};
    const double averages[kGroups - 1] = {s.AvgValue[9], s.AvgValue[1], s.AvgValue[13],
                                          s.AvgValue[12], s.AvgWatts[1]};
    for (int i = 0; i < kGroups; ++i) {
        accumulatedDATA[i].text = FormatPattern(sums[i], kPattern);
    }
    for (int i = 0; i < kGroups - 1; ++i) {
        Label3[i].text = FormatPattern(averages[i], kPattern);
    }
}

void LogPreview::ClickControl(std::string_view control) {
    if (control == "EXITdataTOlog") {
        Close();
    }
}

}  // namespace brizalog
