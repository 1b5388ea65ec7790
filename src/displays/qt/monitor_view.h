#pragma once

#include <QWidget>
#include <memory>
#include <string>

#include "catalogue/services.h"
#include "displays/monitor_window.h"

class QAction;
class QMenuBar;

namespace brizalog {

class ClickableLabel;

// The desktop window of a monitor: a thin view over the core's MonitorWindow. It hands the
// monitor's timer to the platform's timers, renders the model after every handler (of any
// window: a frame, a tick, a click), forwards clicks by the controls' own names, and closes
// when the monitor asks. Closing it, by its frame or by Escape, stops the monitor's timer.
// It is never modal: acquisition, logging and the other windows go on beside it.
class MonitorView : public QWidget {
    Q_OBJECT

public:
    ~MonitorView() override;

    MonitorWindow& monitor() { return *m_monitor; }
    // Runs the monitor's opening and shows the model.
    void Load();
    // Shows the model when it has changed since it was last shown.
    void Render();

protected:
    explicit MonitorView(TimerBackend& timers);
    // Hands over the core monitor; its surface, if any, must be a child of this view.
    void SetMonitor(std::unique_ptr<MonitorWindow> monitor);
    // Shows the model's controls; called by Render.
    virtual void RenderModel() = 0;

    // A click on the control `name` of the monitor, through the event gate.
    void Forward(const std::string& name);
    // A label that forwards its clicks to the control `name`.
    ClickableLabel* ClickLabel(const std::string& name);
    // A menu entry of the window's menu bar that forwards to the control `name`.
    QAction* MenuEntry(QMenuBar* bar, const std::string& name);

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    TimerBackend& m_timers;
    std::unique_ptr<MonitorWindow> m_monitor;
    std::vector<std::pair<const Control*, QAction*>> m_entries;
    unsigned long m_shownChanges = 0;
    bool m_shown = false;
};

// A new monitor view for the window `name` (a monitor window), unopened; Load() opens
// it. Its monitor reads the shared state and reports through `dialogs`; plotDiagnostics takes
// the mode handed over by the plot entries.
MonitorView* MakeMonitorView(std::string_view name, SharedState& state, Dialogs& dialogs,
                             int plotMode, TimerBackend& timers);

}  // namespace brizalog
