#pragma once

#include <string>
#include <vector>

#include "displays/monitor_window.h"

namespace brizalog {

// The raw data viewers: the last complete frame (LastFrame) as it came from the serial port, for
// checking wiring and tags. Neither changes anything. Each has a pause entry that stops and
// starts its timer, its caption turning to "Resume" and back to "Pause".
class RawViewer : public MonitorWindow {
public:
    RawViewer(std::string name, int timerIntervalMs, std::string pauseEntry, std::string exitEntry);

    void Form_Load() override;
    void Pause_Click();

    Control pauseEntry;
    Control exitEntry;

protected:
    void ClickControl(std::string_view control) override;

private:
    std::string m_pauseName;
    std::string m_exitName;
};

// `rawCOMMS`: the frame cut into rows of 50 characters in the list ListView1, at most 30 rows.
class RawCommsViewer : public RawViewer {
public:
    static constexpr std::size_t kRowLength = 50;
    static constexpr int kMaxRows = 30;

    explicit RawCommsViewer(const SharedState& state);

    // Clears the list and adds its two columns, then starts the timer.
    void Form_Load() override;
    void Timer1_Timer() override;

    // ListView1 in report view: a first column with no heading, then "RAW DATA", 8000 wide.
    std::vector<std::string> columns;
    // The rows' second column, each a piece of the frame followed by CR LF.
    std::vector<std::string> rows;

protected:
    void DumpState(std::vector<std::pair<std::string, std::string>>& items) const override;

private:
    const SharedState& m_state;
};

// `displayRAWdata`: the frame whole in one text box.
class RawDataViewer : public RawViewer {
public:
    explicit RawDataViewer(const SharedState& state);

    void Timer1_Timer() override;

    Control Text1;

private:
    const SharedState& m_state;
};

}  // namespace brizalog
