#include "displays/bar_meters.h"

#include <algorithm>
#include <cmath>

#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/plot.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr int kBackground = 4210752;  // dark grey
constexpr int kTrack = 6316128;       // the empty part of a scale
constexpr int kPowerColour = 65280;   // green
constexpr int kRPMColour = 16744448;  // light blue

// The top of a bar for `reading` above its base: the whole-number part rounds down, and the bar
// stops at the top of its scale however large the reading.
int BarTop(double scale, double reading) {
    const double top = std::floor(BarMeters::kBase - scale * reading);
    if (!(top > BarMeters::kScaleTop)) {
        return BarMeters::kScaleTop;
    }
    // Only a negative limit moves a bar below its base; it then leaves the surface.
    return static_cast<int>(std::min(top, double(BarMeters::kSurfaceHeight)));
}

}  // namespace

BarMeters::BarMeters(SharedState& state, Dialogs& dialogs, Plot& surface)
    : MonitorWindow("BarGraphs", "Watts vs RPM", 500),
      m_state(state),
      m_dialogs(dialogs),
      m_plot(surface) {
    exitmenu.text = "exit";
    PowerBar.top = kBase;
    RPMBar.top = kBase;
    controls.Add("PowerBar", PowerBar);
    controls.Add("RPMBar", RPMBar);
    controls.Add("maxP", maxP);
    controls.Add("MaxR", MaxR);
    controls.Add("Plabel", Plabel);
    controls.Add("Rlabel", Rlabel);
    controls.Add("Label2", Label2);
    controls.Add("Label4", Label4);
    controls.Add("exitmenu", exitmenu);
}

void BarMeters::Form_Load() {
    caption = "RPM vs Power";
    const auto& limit = m_state.channels.MaxLimit;
    if (limit[13] != 0) {
        m_rpmScale = double(kSpan) / limit[13];
        if (limit[17] != 0) {
            m_powerScale = double(kSpan) / limit[17];
            maxP.text = std::to_string(limit[17]);
            MaxR.text = std::to_string(limit[13]);
            Plabel.text = "Watts";
            Rlabel.text = "RPM";
        }
    }
    m_plot.SetBackColour(kBackground);
    m_plot.SetScaleWidth(kSurfaceWidth);
    m_plot.SetScaleHeight(kSurfaceHeight);
    DrawBars();
    Timer1.Enable();
}

void BarMeters::Timer1_Timer() {
    const double watts = m_state.PlotWatts1;
    const double rpm = m_state.ChannelValue[13];
    if (rpm > -1 && watts > -1) {
        PowerBar.top = BarTop(m_powerScale, watts);
        RPMBar.top = BarTop(m_rpmScale, rpm);
        Label2.text = FormatPattern(watts, "###0");
        Label4.text = FormatPattern(rpm, "##0");
        DrawBars();
        return;
    }
    // The window closes with its one report. Its timer stops first, so that no second report
    // piles up behind the first while it waits for OK.
    Close();
    std::string message = "Run setup to set graphing limits";
    message.append(kCrLf).append("power = ").append(FormatGeneral(watts));
    message.append(kCrLf).append("RPM = ").append(FormatGeneral(rpm));
    m_dialogs.ShowMessage(message);
}

// The bars are drawn again only when one of them has moved: a still windmill costs nothing.
void BarMeters::DrawBars() {
    if (PowerBar.top == m_drawnPowerTop && RPMBar.top == m_drawnRPMTop) {
        return;
    }
    m_drawnPowerTop = PowerBar.top;
    m_drawnRPMTop = RPMBar.top;
    m_plot.Clear();
    m_plot.SetDrawWidth(kBarPixels);
    m_plot.Line(kPowerX, kScaleTop, kPowerX, kSurfaceHeight, kTrack);
    m_plot.Line(kRPMX, kScaleTop, kRPMX, kSurfaceHeight, kTrack);
    m_plot.Line(kPowerX, PowerBar.top, kPowerX, kSurfaceHeight, kPowerColour);
    m_plot.Line(kRPMX, RPMBar.top, kRPMX, kSurfaceHeight, kRPMColour);
}

void BarMeters::ClickControl(std::string_view control) {
    if (control == "exitmenu") {
        Close();
    }
}

}  // namespace brizalog
