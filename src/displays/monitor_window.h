#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/control.h"
#include "catalogue/services.h"
#include "catalogue/state.h"

namespace brizalog {

class Plot;

// A monitor window: a small non-modal window that reads the shared state of the running main
// form on a timer of its own. Any number may be open beside the main window; none of them
// stops acquisition or logging. Each holds nothing but its captions and its own few states.
//
// The timer is disabled until the opening (Form_Load) starts it. Closing a monitor stops its
// timer; the window layer then unloads it, and the next opening starts afresh.
class MonitorWindow {
public:
    MonitorWindow(std::string name, std::string caption, int timerIntervalMs);
    virtual ~MonitorWindow();
    MonitorWindow(const MonitorWindow&) = delete;
    MonitorWindow& operator=(const MonitorWindow&) = delete;

    // The window's own name ("BATTMonitor", "rawCOMMS").
    const std::string& name() const { return m_name; }
    // Hands Timer1 to the platform's timers; done once, before the opening.
    void AttachTimer(TimerBackend& timers) { Timer1.Attach(&timers); }

    // The opening: starts Timer1 and does whatever else the window does when it loads.
    virtual void Form_Load() = 0;
    virtual void Timer1_Timer() = 0;
    // A click on a control or menu entry by its own name. False when the window has no such
    // item; a hidden item cannot be clicked and does nothing.
    bool Click(std::string_view control);

    // True once the window has closed itself (an exit entry, a click on the battery caption,
    // the bar meters' message). Its timer is stopped by then.
    bool CloseRequested() const { return m_closeRequested; }
    // Closing by the window's frame: the timer stops with it.
    void Close();

    // A count that moves whenever the model may have changed: at each tick and each click. The
    // window layer renders the model again only when it has moved, not at every frame.
    unsigned long Changes() const { return m_changes; }

    // The drawing surface of the window, or null for a window without one.
    virtual Plot* surface() { return nullptr; }

    // The window's state, one NAME=VALUE item each: the title, the timer, the window's own
    // states, then each control's text with only what differs from a plain control.
    std::vector<std::pair<std::string, std::string>> Dump() const;

    std::string caption;  // the window's title
    FormTimer Timer1;
    ControlRegistry controls;

protected:
    // The handler of a click on `control`, an item of `controls` that the user can reach.
    virtual void ClickControl(std::string_view control) = 0;
    // Items of the window's own state, printed after the timer.
    virtual void DumpState(std::vector<std::pair<std::string, std::string>>& /*items*/) const {}

private:
    std::string m_name;
    bool m_closeRequested = false;
    unsigned long m_changes = 0;
};

// What a monitor reads and reports through: the shared state of the main form, and its message
// boxes (the bar meters' only report).
struct MonitorContext {
    SharedState& state;
    Dialogs& dialogs;
    // The mode handed over by the plot entries (Brizalog::PlotMode) at the opening.
    int plotMode = 0;
    // The drawing surface of BarGraphs and plotDiagnostics; it must outlive the window.
    Plot* surface = nullptr;
};

// True for the names of the eight monitor windows.
bool IsMonitorWindow(std::string_view name);
// A new, unopened monitor window `name`; null for a name that is no monitor. BarGraphs and
// plotDiagnostics draw on `context.surface`, which must then be given.
std::unique_ptr<MonitorWindow> MakeMonitorWindow(std::string_view name,
                                                 const MonitorContext& context);

}  // namespace brizalog
