#include "displays/monitor_window.h"

#include "catalogue/failure.h"
#include "displays/bar_meters.h"
#include "displays/battery_monitor.h"
#include "displays/daily_maximums.h"
#include "displays/log_preview.h"
#include "displays/performance_plot.h"
#include "displays/raw_data_viewers.h"

namespace brizalog {

MonitorWindow::MonitorWindow(std::string name, std::string caption, int timerIntervalMs)
    : caption(std::move(caption)),
      Timer1("Timer1", timerIntervalMs, false),
      m_name(std::move(name)) {
    // A display never ends the program: a tick that fails (a number no pattern can show) ends
    // that tick only, and the next one tries again.
    Timer1.SetHandler([this] {
        ++m_changes;
        try {
            Timer1_Timer();
        } catch (const Failure&) {
        }
    });
}

MonitorWindow::~MonitorWindow() {
    Timer1.Detach();
}

bool MonitorWindow::Click(std::string_view control) {
    const Control* item = controls.Find(control);
    if (item == nullptr) {
        return false;
    }
    if (item->visible && !m_closeRequested) {
        ++m_changes;
        ClickControl(control);
    }
    return true;
}

void MonitorWindow::Close() {
    ++m_changes;
    Timer1.Disable();
    m_closeRequested = true;
}

std::vector<std::pair<std::string, std::string>> MonitorWindow::Dump() const {
    std::vector<std::pair<std::string, std::string>> items;
    items.emplace_back("caption", caption);
    items.emplace_back("Timer1.enabled", Timer1.Enabled() ? "1" : "0");
    items.emplace_back("Timer1.interval", std::to_string(Timer1.Interval()));
    DumpState(items);
    for (const auto& [name, control] : controls.items()) {
        items.emplace_back(name, control->text);
        if (control->checked) {
            items.emplace_back(name + ".checked", "1");
        }
        if (!control->visible) {
            items.emplace_back(name + ".visible", "0");
        }
        if (!control->enabled) {
            items.emplace_back(name + ".enabled", "0");
        }
        if (control->colour != kDefaultColour) {
            items.emplace_back(name + ".colour", std::to_string(control->colour));
        }
        if (control->foreColour != kDefaultColour) {
            items.emplace_back(name + ".forecolour", std::to_string(control->foreColour));
        }
        if (control->top != 0) {
            items.emplace_back(name + ".top", std::to_string(control->top));
        }
    }
    return items;
}

namespace {

// Every monitor by its name, in the order of the menus, with how it is made.
struct MonitorKind {
    std::string_view name;
    std::unique_ptr<MonitorWindow> (*make)(const MonitorContext& context);
};

// A monitor that needs nothing but the shared state.
template <typename Monitor>
std::unique_ptr<MonitorWindow> OnTheState(const MonitorContext& context) {
    return std::make_unique<Monitor>(context.state);
}

const MonitorKind kMonitors[] = {
    {"plotDiagnostics",
     [](const MonitorContext& c) -> std::unique_ptr<MonitorWindow> {
         return std::make_unique<PerformancePlot>(c.state, *c.surface, c.plotMode);
     }},
    {"BarGraphs",
     [](const MonitorContext& c) -> std::unique_ptr<MonitorWindow> {
         return std::make_unique<BarMeters>(c.state, c.dialogs, *c.surface);
     }},
    {"BATTMonitor",
     [](const MonitorContext& c) -> std::unique_ptr<MonitorWindow> {
         return std::make_unique<BatteryMonitor>(c.state, BatteryMonitor::kFirst);
     }},
    {"BATTMonitor2",
     [](const MonitorContext& c) -> std::unique_ptr<MonitorWindow> {
         return std::make_unique<BatteryMonitor>(c.state, BatteryMonitor::kSecond);
     }},
    {"dailyMaximums", &OnTheState<DailyMaximums>},
    {"rawCOMMS", &OnTheState<RawCommsViewer>},
    {"dataTOlog", &OnTheState<LogPreview>},
    {"displayRAWdata", &OnTheState<RawDataViewer>},
};

}  // namespace

bool IsMonitorWindow(std::string_view name) {
    for (const MonitorKind& kind : kMonitors) {
        if (kind.name == name) {
            return true;
        }
    }
    return false;
}

std::unique_ptr<MonitorWindow> MakeMonitorWindow(std::string_view name,
                                                 const MonitorContext& context) {
    for (const MonitorKind& kind : kMonitors) {
        if (kind.name == name) {
            return kind.make(context);
        }
    }
    return nullptr;
}

}  // namespace brizalog
