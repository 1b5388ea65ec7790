#include "history_driver.h"

#include <algorithm>
#include <optional>

#include "catalogue/text_rules.h"
#include "dump_lines.h"
#include "history/graph_windows.h"

namespace brizalog::script {

namespace {

// Drives the graph windows through their handlers. The windows come into being at the first
// opening, on the run's program folder, shared state, clock and message boxes; each draws on a
// recording surface that `draw` prints.
class HistoryDriver : public WindowDriver {
public:
    bool Handles(std::string_view window) const override {
        return GraphWindows::IsGraphWindow(window);
    }

    void Open(std::string_view window, bool /*modal*/, RunContext& run) override {
        Windows(run).Open(window);
    }

    bool IsOpen(std::string_view window) const override {
        const GraphWindow* graph = m_windows ? m_windows->Find(window) : nullptr;
        return graph != nullptr && graph->loaded && graph->visible;
    }

    void Click(std::string_view window, std::string_view control, std::string_view item,
               RunContext& run) override {
        GraphWindow& graph = Opened(window, run);
        if (control == "File1") {
            // Only what the list shows can be clicked.
            const std::vector<std::string> items = graph.File1Items();
            if (std::find(items.begin(), items.end(), item) == items.end()) {
                throw ScriptError(std::string(window) + ".File1 lists no \"" + std::string(item) +
                                  "\"");
            }
        }
        if (!graph.Click(control, item)) {
            throw ScriptError("window " + std::string(window) + " has no control " +
                              std::string(control));
        }
    }

    void Set(std::string_view window, std::string_view control, std::string_view text,
             RunContext& run) override {
        GraphWindow& graph = Opened(window, run);
        if (!graph.SetText(control, text)) {
            throw ScriptError("window " + std::string(window) + " has no control " +
                              std::string(control));
        }
    }

    void Mouse(std::string_view window, std::string_view control, std::string_view action, double x,
               double y, RunContext& run) override {
        if (control != "Plot") {
            throw ScriptError("window " + std::string(window) + " has no surface " +
                              std::string(control));
        }
        GraphWindow& graph = Opened(window, run);
        if (action == "down") {
            graph.Plot_MouseDown(x, y);
        } else if (action == "move") {
            graph.Plot_MouseMove(x, y);
        } else {
            graph.Plot_MouseUp(x, y);
        }
    }

    void Dump(std::string_view window, RunContext& run) override { DumpNamed(window, {}, run); }

    void DumpNamed(std::string_view window, const std::vector<std::string_view>& names,
                   RunContext& run) override {
        PrintSelected(window, Windows(run).Window(window).Dump(), names, run);
    }

    void Draw(std::string_view window, RunContext& run) override {
        for (const std::string& line : Windows(run).PlotOf(window).Lines()) {
            run.printer.Line(line);
        }
    }

private:
    GraphWindows& Windows(RunContext& run) {
        if (!m_windows) {
            m_windows.emplace(run.form.state(), run.programFolder, run.clock, run.services.dialogs);
        }
        return *m_windows;
    }
    // A window must be open for the user to reach its controls.
    GraphWindow& Opened(std::string_view window, RunContext& run) {
        GraphWindow& graph = Windows(run).Window(window);
        if (!graph.loaded || !graph.visible) {
            throw ScriptError("window " + std::string(window) + " is not open");
        }
        return graph;
    }

    std::optional<GraphWindows> m_windows;
};

}  // namespace

std::unique_ptr<WindowDriver> MakeHistoryDriver() {
    return std::make_unique<HistoryDriver>();
}

}  // namespace brizalog::script
