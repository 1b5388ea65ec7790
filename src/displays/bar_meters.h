#pragma once

#include "displays/monitor_window.h"

namespace brizalog {

class Plot;

// `BarGraphs` ("RPM vs Power"): the power and the speed of windmill 1 as two vertical bars, each
// a shape of the scale's height that moves up inside its scale, with their figures beside them.
// Positions are tops in twips from the top of the surface, y downward.
class BarMeters : public MonitorWindow {
public:
    // The geometry of both scales: the bar is as tall as its scale, and the scale's top stands
    // kScaleTop below the surface's top. The span, the bar's height less the top of the scale,
    // is the travel of a bar from its base (at rest, a short stub shows) to the top.
    static constexpr int kScaleTop = 120;
    static constexpr int kBarHeight = 3000;
    static constexpr int kSpan = kBarHeight - kScaleTop;
    static constexpr int kBase = kScaleTop + kSpan;
    static constexpr int kSurfaceHeight = kScaleTop + kBarHeight;  // the scales' bottom
    static constexpr int kSurfaceWidth = 1000;
    static constexpr int kPowerX = 250;  // the middle of each bar
    static constexpr int kRPMX = 750;
    static constexpr int kBarPixels = 48;  // the bars' width

    BarMeters(SharedState& state, Dialogs& dialogs, Plot& surface);

    // Sets the title, takes the scales from the limits of channels 13 and 17 and writes the
    // captions. A limit of 0 leaves its scale unset, which pins the bars at their bases.
    void Form_Load() override;
    // Moves the bars. A negative speed or power (below -1) is told once, and the window closes.
    void Timer1_Timer() override;

    // The top of each bar: its base minus scale × reading, no higher than the top of the scale.
    int powerTop() const { return PowerBar.top; }
    int rpmTop() const { return RPMBar.top; }
    Plot* surface() override { return &m_plot; }

    Control PowerBar;  // `.top` is the bar's position
    Control RPMBar;
    Control maxP;  // the power limit
    Control MaxR;  // the speed limit
    Control Plabel;
    Control Rlabel;
    Control Label2;  // the power
    Control Label4;  // the speed
    Control exitmenu;

protected:
    void ClickControl(std::string_view control) override;

private:
    void DrawBars();

    SharedState& m_state;
    Dialogs& m_dialogs;
    Plot& m_plot;
    double m_rpmScale = 0;
    double m_powerScale = 0;
    int m_drawnPowerTop = -1;
    int m_drawnRPMTop = -1;
};

}  // namespace brizalog
