#include "displays/performance_plot.h"

#include <algorithm>
#include <cmath>

#include "catalogue/plot.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr int kYellow = 65535;
constexpr int kGridWidth = 2;
constexpr int kDotWidth = 5;
// Dots and the curve stand this far above the power they mark, so that the dot of a stopped
// windmill is still seen on the bottom line.
constexpr double kOffset = 5;

}  // namespace

PerformancePlot::PerformancePlot(const SharedState& state, Plot& GraphDisplay, int mode)
    : MonitorWindow("plotDiagnostics", "Live Windmill performance", 500),
      m_state(state),
      m_plot(GraphDisplay),
      m_handedMode(mode) {
    cleardisplayMENU.text = "CLEAR display";
    exitplot.text = "EXIT";
    controls.Add("Label3", Label3);
    controls.Add("Label4", Label4);
    controls.Add("cleardisplayMENU", cleardisplayMENU);
    controls.Add("exitplot", exitplot);
}

void PerformancePlot::Form_Load() {
    m_mode = m_handedMode;
    Timer1.Enable();
    DrawBackground();
}

void PerformancePlot::DrawBackground() {
    const auto& limit = m_state.channels.MaxLimit;
    double x = 0;
    double y = 0;
    if (m_mode == 1 || m_mode == 2) {
        x = limit[12 + m_mode];
        y = limit[16 + m_mode];
    } else if (m_mode == 3) {
        x = std::max(limit[13], limit[14]);
        y = std::max(limit[17], limit[18]);
    }
    Label4.text = FormatGeneral(x);
    Label3.text = FormatGeneral(y);
    // A limit of 0 has no scale and no curve; the setup forms refuse one, but a channel table
    // edited by hand may hold it. The surface keeps its scale, and the dots are drawn on it.
    if (x <= 0 || y <= 0) {
        return;
    }
    m_plot.SetScaleWidth(x);
    m_plot.SetScaleHeight(y);

    m_plot.SetDrawWidth(kGridWidth);
    for (int i = 0; i <= 4; ++i) {
        const double across = x * i / 4;
        m_plot.Line(across, 0, across, y, kYellow);
    }
    for (int i = 0; i <= 5; ++i) {
        const double down = y * i / 5;
        m_plot.Line(0, down, x, down, kYellow);
    }

    // The expected cube-law curve, as a chain of short steps at the dots' offset.
    const double k = std::pow(y, 0.33) / x * 1.1;
    for (int i = 1; i <= static_cast<int>(x); ++i) {
        const double power = std::pow(k * i, 3);
        m_plot.Line(i, (y - kOffset) - power, i + 1, (y - kOffset) - power - 1, kGreen);
    }
}

void PerformancePlot::Timer1_Timer() {
    m_plot.SetDrawWidth(kDotWidth);
    const SharedState& s = m_state;
    if (m_mode == 1 || m_mode == 3) {
        DrawDot(1, s.PlotRPM1, s.PlotWatts1);
    }
    if (m_mode == 2 || m_mode == 3) {
        DrawDot(2, s.PlotRPM2, s.PlotWatts2);
    }
}

// Each windmill's dot stands on its own limit, also in mode 3 where the scale is the larger of
// the two: a smaller windmill's dots then sit higher than its power would put them.
void PerformancePlot::DrawDot(int w, double rpm, double watts) {
    const double m = m_state.channels.MaxLimit[16 + w];
    m_plot.Line(rpm, (m - kOffset) - watts, rpm + 1, (m - kOffset) - watts - 1,
                m_state.channels.LineColour[16 + w]);
}

void PerformancePlot::cleardisplayMENU_Click() {
    m_plot.Clear();
    DrawBackground();
}

void PerformancePlot::ClickControl(std::string_view control) {
    if (control == "cleardisplayMENU") {
        cleardisplayMENU_Click();
    } else if (control == "exitplot") {
        Close();
    }
}

void PerformancePlot::DumpState(std::vector<std::pair<std::string, std::string>>& items) const {
    items.emplace_back("mode", std::to_string(m_mode));
    items.emplace_back("GraphDisplay.scalewidth", FormatShortest(m_plot.ScaleWidth()));
    items.emplace_back("GraphDisplay.scaleheight", FormatShortest(m_plot.ScaleHeight()));
    items.emplace_back("GraphDisplay.drawwidth", std::to_string(m_plot.DrawWidth()));
}

}  // namespace brizalog
