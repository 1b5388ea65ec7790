#include "monitor_driver.h"

#include <map>

#include "catalogue/plot.h"
#include "displays/monitor_window.h"
#include "dump_lines.h"

namespace brizalog::script {

namespace {

// Drives the monitors through their handlers. Each open monitor's timer runs on the run's
// virtual schedule, so `wait` fires it in time order with the main form's. A monitor that is
// already open is only shown again by a second opening, as a window that is loaded; one that
// has closed starts afresh, with a clean surface.
class MonitorDriver : public WindowDriver {
public:
    bool Handles(std::string_view window) const override { return IsMonitorWindow(window); }

    void Open(std::string_view window, bool /*modal*/, RunContext& run) override {
        Entry& entry = m_entries[std::string(window)];
        if (entry.window && !entry.window->CloseRequested()) {
            return;
        }
        entry.window.reset();
        entry.plot = std::make_unique<RecordingPlot>();
        MonitorContext context{run.form.state(), run.services.dialogs, run.form.PlotMode,
                               entry.plot.get()};
        entry.window = MakeMonitorWindow(window, context);
        entry.window->AttachTimer(run.timers);
        entry.window->Form_Load();
    }

    bool IsOpen(std::string_view window) const override {
        const auto it = m_entries.find(std::string(window));
        return it != m_entries.end() && it->second.window && !it->second.window->CloseRequested();
    }

    void Click(std::string_view window, std::string_view control, std::string_view item,
               RunContext&) override {
        if (!item.empty()) {
            throw ScriptError("a click in " + std::string(window) + " takes no item");
        }
        if (!Opened(window).Click(control)) {
            throw ScriptError("window " + std::string(window) + " has no control " +
                              std::string(control));
        }
    }

    // The state of a closed window is what it showed last.
    void Dump(std::string_view window, RunContext& run) override { DumpNamed(window, {}, run); }

    void DumpNamed(std::string_view window, const std::vector<std::string_view>& names,
                   RunContext& run) override {
        PrintSelected(window, Made(window).Dump(), names, run);
    }

    void Draw(std::string_view window, RunContext& run) override {
        if (Made(window).surface() == nullptr) {
            throw ScriptError("window " + std::string(window) + " has no drawing surface");
        }
        for (const std::string& line : m_entries.find(std::string(window))->second.plot->Lines()) {
            run.printer.Line(line);
        }
    }

private:
    struct Entry {
        std::unique_ptr<RecordingPlot> plot;
        std::unique_ptr<MonitorWindow> window;  // goes before the surface it draws on
    };

    MonitorWindow& Made(std::string_view window) {
        const auto it = m_entries.find(std::string(window));
        if (it == m_entries.end() || !it->second.window) {
            throw ScriptError("window " + std::string(window) + " has not been opened");
        }
        return *it->second.window;
    }
    // A window must be open for the user to reach its controls.
    MonitorWindow& Opened(std::string_view window) {
        MonitorWindow& monitor = Made(window);
        if (monitor.CloseRequested()) {
            throw ScriptError("window " + std::string(window) + " is not open");
        }
        return monitor;
    }

    std::map<std::string, Entry> m_entries;
};

}  // namespace

std::unique_ptr<WindowDriver> MakeMonitorDriver() {
    return std::make_unique<MonitorDriver>();
}

}  // namespace brizalog::script
