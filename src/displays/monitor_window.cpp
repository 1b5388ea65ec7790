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
        ClickControl(control);
    }
    return true;
}

void MonitorWindow::Close() {
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

const std::vector<std::string_view>& MonitorWindowNames() {
    static const std::vector<std::string_view> kNames = {
        "plotDiagnostics", "BarGraphs", "BATTMonitor", "BATTMonitor2",
        "dailyMaximums",   "rawCOMMS",  "dataTOlog",   "displayRAWdata"};
    return kNames;
}

bool IsMonitorWindow(std::string_view name) {
    for (std::string_view monitor : MonitorWindowNames()) {
        if (monitor == name) {
            return true;
        }
    }
    return false;
}

std::unique_ptr<MonitorWindow> MakeMonitorWindow(std::string_view name,
                                                 const MonitorContext& context) {
    SharedState& state = context.state;
    if (name == "plotDiagnostics") {
        return std::make_unique<PerformancePlot>(state, *context.surface, context.plotMode);
    }
    if (name == "BarGraphs") {
        return std::make_unique<BarMeters>(state, context.dialogs, *context.surface);
    }
    if (name == "BATTMonitor") {
        return std::make_unique<BatteryMonitor>(state, BatteryMonitor::kFirst);
    }
    if (name == "BATTMonitor2") {
        return std::make_unique<BatteryMonitor>(state, BatteryMonitor::kSecond);
    }
    if (name == "dailyMaximums") {
        return std::make_unique<DailyMaximums>(state);
    }
    if (name == "rawCOMMS") {
        return std::make_unique<RawCommsViewer>(state);
    }
    if (name == "dataTOlog") {
        return std::make_unique<LogPreview>(state);
    }
    if (name == "displayRAWdata") {
        return std::make_unique<RawDataViewer>(state);
    }
    return nullptr;
}

}  // namespace brizalog
