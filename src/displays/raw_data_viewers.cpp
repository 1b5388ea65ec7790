#include "displays/raw_data_viewers.h"

#include "catalogue/files.h"

namespace brizalog {

RawViewer::RawViewer(std::string name, int timerIntervalMs, std::string pauseEntry,
                     std::string exitEntry)
    : MonitorWindow(std::move(name), "", timerIntervalMs),
      m_pauseName(std::move(pauseEntry)),
      m_exitName(std::move(exitEntry)) {
    this->pauseEntry.text = "Pause";
    this->exitEntry.text = "Exit";
    controls.Add(m_pauseName, this->pauseEntry);
    controls.Add(m_exitName, this->exitEntry);
}

void RawViewer::Form_Load() {
    Timer1.Enable();
}

// While paused the display keeps the last frame it showed.
void RawViewer::Pause_Click() {
    if (Timer1.Enabled()) {
        Timer1.Disable();
        pauseEntry.text = "Resume";
    } else {
        Timer1.Enable();
        pauseEntry.text = "Pause";
    }
}

void RawViewer::ClickControl(std::string_view control) {
    if (control == m_pauseName) {
        Pause_Click();
    } else if (control == m_exitName) {
        Close();
    }
}

RawCommsViewer::RawCommsViewer(const SharedState& state)
    : RawViewer("rawCOMMS", 2000, "pause", "exit"), m_state(state) {
    caption = "RAW COMMS data";
}

void RawCommsViewer::Form_Load() {
    rows.clear();
    columns = {"", "RAW DATA"};
    RawViewer::Form_Load();
}

void RawCommsViewer::Timer1_Timer() {
    std::string_view rest = m_state.LastFrame;
    rows.clear();
    int count = 1;
    while (count <= kMaxRows && rest.size() > kRowLength) {
        rows.push_back(std::string(rest.substr(0, kRowLength)).append(kCrLf));
        rest.remove_prefix(kRowLength);
        ++count;
    }
    // Past the thirtieth row, what is left is not shown.
    if (count > kMaxRows) {
        return;
    }
    rows.push_back(std::string(rest).append(kCrLf));
}

void RawCommsViewer::DumpState(std::vector<std::pair<std::string, std::string>>& items) const {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        items.emplace_back("ListView1.row(" + std::to_string(i + 1) + ")", rows[i]);
    }
}

RawDataViewer::RawDataViewer(const SharedState& state)
    : RawViewer("displayRAWdata", 1000, "pauseMenu", "exitmenu"), m_state(state) {
    caption = "RAW data";
    controls.Add("Text1", Text1);
}

void RawDataViewer::Timer1_Timer() {
    Text1.text = m_state.LastFrame;
}

}  // namespace brizalog
