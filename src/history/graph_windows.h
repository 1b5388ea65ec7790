#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/plot.h"
#include "history/graph_window.h"

namespace brizalog {

// The six graph windows of one program, each with its recording surface, made when first
// named. Opening a window runs its load unless it is in memory already; a window unloaded by its
// Exit button starts afresh at the next opening.
class GraphWindows {
public:
    GraphWindows(SharedState& state, std::filesystem::path folder, Clock& clock, Dialogs& dialogs)
        : m_state(state), m_folder(std::move(folder)), m_clock(clock), m_dialogs(dialogs) {}

    static bool IsGraphWindow(std::string_view name) { return FindGraphMember(name) != nullptr; }
    // The window `name` (a member of the family), made unloaded when it does not exist.
    GraphWindow& Window(std::string_view name);
    RecordingPlot& PlotOf(std::string_view name);
    // The window `name` when it has been made, else nullptr.
    const GraphWindow* Find(std::string_view name) const {
        const auto it = m_entries.find(name);
        return it == m_entries.end() ? nullptr : it->second.window.get();
    }
    // Shows the window, running its load first when it is not in memory.
    GraphWindow& Open(std::string_view name);
    // The printer of the windows made from now on.
    void SetPrinter(WindowPrinter* printer) { m_printer = printer; }

private:
    struct Entry {
        std::unique_ptr<RecordingPlot> plot;
        std::unique_ptr<GraphWindow> window;
    };
    Entry& EntryOf(std::string_view name);

    SharedState& m_state;
    std::filesystem::path m_folder;
    Clock& m_clock;
    Dialogs& m_dialogs;
    WindowPrinter* m_printer = nullptr;
    std::map<std::string, Entry, std::less<>> m_entries;
};

}  // namespace brizalog
