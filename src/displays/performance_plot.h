#pragma once

#include "displays/monitor_window.h"

namespace brizalog {

class Plot;

// `plotDiagnostics` ("Live Windmill performance"): live power against shaft speed as dots over a
// cube-law reference curve, for windmill 1, windmill 2 or both (the mode, handed over by the
// plot entries at the opening). Dots are never stored: what is drawn stays on the surface
// GraphDisplay until "CLEAR display". Drawing is incremental, one dot per windmill and tick.
class PerformancePlot : public MonitorWindow {
public:
    PerformancePlot(const SharedState& state, Plot& GraphDisplay, int mode);

    // Copies the mode, starts the timer and draws the background.
    void Form_Load() override;
    // The dots of the mode, with the last frame's speeds and powers.
    void Timer1_Timer() override;
    // Clears the surface and draws the background again; the mode stays.
    void cleardisplayMENU_Click();

    int mode() const { return m_mode; }
    Plot* surface() override { return &m_plot; }

    Control Label3;  // beside "MAX Power": the vertical limit
    Control Label4;  // beside "MAX RPM": the horizontal limit
    Control cleardisplayMENU;
    Control exitplot;

protected:
    void ClickControl(std::string_view control) override;
    void DumpState(std::vector<std::pair<std::string, std::string>>& items) const override;

private:
    // The grid and the reference curve on a surface scaled 0..X across and 0..Y down.
    void DrawBackground();
    // One dot of windmill `w` (1 or 2) at speed `rpm` and power `watts`.
    void DrawDot(int w, double rpm, double watts);

    const SharedState& m_state;
    Plot& m_plot;
    int m_handedMode;
    int m_mode = 0;
};

}  // namespace brizalog
