#include "history/graph_windows.h"

#include "catalogue/failure.h"

namespace brizalog {

GraphWindows::Entry& GraphWindows::EntryOf(std::string_view name) {
    const GraphMember* member = FindGraphMember(name);
    if (member == nullptr) {
        throw Failure(FailureKind::InvalidArgument, "no graph window " + std::string(name));
    }
    auto it = m_entries.find(name);
    if (it == m_entries.end()) {
        it = m_entries.emplace(std::string(name), Entry{}).first;
        it->second.plot = std::make_unique<RecordingPlot>();
    }
    Entry& entry = it->second;
    if (!entry.window || (!entry.window->loaded && entry.window->unloadedByExit)) {
        entry.plot->Clear();
        entry.window = std::make_unique<GraphWindow>(*member, m_state, m_folder, m_clock, m_dialogs,
                                                     *entry.plot);
        entry.window->SetWindowLookup(
            [this](std::string_view other) -> GraphWindow& { return Window(other); });
        entry.window->SetPrinter(m_printer);
    }
    return entry;
}

GraphWindow& GraphWindows::Window(std::string_view name) {
    return *EntryOf(name).window;
}

RecordingPlot& GraphWindows::PlotOf(std::string_view name) {
    return *EntryOf(name).plot;
}

GraphWindow& GraphWindows::Open(std::string_view name) {
    GraphWindow& window = Window(name);
    if (!window.loaded) {
        window.Form_Load();
    }
    window.visible = true;
    return window;
}

}  // namespace brizalog
