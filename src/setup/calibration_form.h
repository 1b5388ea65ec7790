#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/control.h"
#include "catalogue/indexed_array.h"
#include "catalogue/services.h"
#include "catalogue/state.h"

namespace brizalog {

// The rows that the calibration form offers in a system type: none for the meters (3, 4).
const std::vector<int>& CalibrationRowsOffered(int systemType);

// One row i of the calibration form, shown as the sum the calculation makes:
// RAW − ZERO × SET = DISPLAY. Rows 1 to 11 have Volts, Amps and ZeroReset; rows 12 to 16 have
// Amps and Pulse only.
struct CalibrationRow {
    Control Channel;         // the row's frame; caption ChannelName[i]
    Control Label1;          // live raw reading, "000"
    Control AUTOZEROBUTTON;  // caption shows the zero; a click takes it
    Control Text1;           // the factor, free text
    Control Label2;          // live computed value, "##0.00"
    Control Amps;            // the type options: checked = chosen
    Control Volts;
    Control Pulse;
    Control ZeroReset;  // "Reset"
};

struct CalibrationModel {
    CalibrationModel() = default;
    CalibrationModel(const CalibrationModel&) = delete;
    CalibrationModel& operator=(const CalibrationModel&) = delete;

    std::string caption = " Current Channels Calibration";
    IndexedArray<CalibrationRow, 0, 16> rows;  // 1..16; element 0 is not used
    Control SAVEcalibration;                   // menu entry "SAVE"
    Control CalibrationExit;                   // menu entry "EXIT"
    // Systems 3 and 4: the window is shrunk to its title, with no row to show.
    bool shrunk = false;
    ControlRegistry controls;
};

// The window `CALIBRATION`: the user sets the zero and the factor of the 16 measured channels
// against live readings. It works on the shared ADCOffset and ChannelSelection at once, so the
// running calculation already uses a new zero; the factor takes effect only through the file. When
// it has closed, by SAVE or EXIT, the main form loads the files again, which throws away an unsaved
// zero but not the type letters the clicks left in memory.
class CalibrationForm {
public:
    CalibrationForm(SharedState& state, std::filesystem::path folder, Dialogs& dialogs);
    CalibrationForm(const CalibrationForm&) = delete;
    CalibrationForm& operator=(const CalibrationForm&) = delete;

    static constexpr std::string_view kWindow = "CALIBRATION";

    // Reads SystemType from hardware.cfg, then the calibration file under the policy of going on
    // past every failure (a missing file leaves the rows showing memory), and lays out the rows.
    void Form_Load();
    // Every 1000 ms while the window is open: the raw readings and the computed values.
    void Timer1_Timer();
    void AUTOZEROBUTTON_Click(int i);
    void ZeroReset_Click(int i);
    void Amps_Click(int i);
    void Volts_Click(int i);
    void Pulse_Click(int i);
    void SAVEcalibration_Click();
    void CalibrationExit_Click() { Close(); }
    // Closing by the title bar is the EXIT.
    void TitleBarClose() { Close(); }

    // A click by the control's own name ("AUTOZEROBUTTON(1)", "SAVEcalibration"). A control the
    // user cannot reach does nothing and gives true; false when there is no such control.
    bool Click(std::string_view name);
    // Typing into a factor box Text1(i); false when there is no such box.
    bool SetText(std::string_view name, std::string_view text);

    FormTimer& timer1() { return m_timer1; }
    const FormTimer& timer1() const { return m_timer1; }
    bool CloseRequested() const { return m_closeRequested; }
    CalibrationModel& model() { return m_model; }
    const CalibrationModel& model() const { return m_model; }

    // Rows 1 to 11 are voltage and current inputs; 12 to 16 speed and pulse inputs.
    static bool HasVoltsAndReset(int i) { return i >= 1 && i <= 11; }

private:
    void Close();
    void ChooseType(int i, Control CalibrationRow::*chosen);

    SharedState& m_state;
    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    CalibrationModel m_model;
    FormTimer m_timer1{"Timer1", 1000, true};
    bool m_closeRequested = false;
};

}  // namespace brizalog
