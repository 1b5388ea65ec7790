#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "acquisition/port_discovery.h"
#include "catalogue/control.h"
#include "catalogue/services.h"
#include "catalogue/state.h"

namespace brizalog {

// The window `ProgramSetup` ("Basic Logger Setup"): edits hardware.cfg. A list with free text is
// a Control whose `text` is what the box shows, with its choices beside it.
struct ProgramSetupModel {
    ProgramSetupModel();
    ProgramSetupModel(const ProgramSetupModel&) = delete;
    ProgramSetupModel& operator=(const ProgramSetupModel&) = delete;

    std::string caption = "Basic Logger Setup";  // becomes PersonalString at the opening

    Control PortNumber;  // "Manual assigned COMM #"
    Control BaudSelect;  // "Baud Rate Select"
    Control LogDelay;    // "Default Logging Interval", "Seconds ( 1 - 600 )"
    std::vector<std::string> PortNumberItems;
    std::vector<std::string> BaudSelectItems;
    std::vector<std::string> LogDelayItems;

    Control WSUnits;          // "Display Wind Speed units"
    Control Personalization;  // "OWN name"
    Control SaveExcel;        // "Save to Excel File?"
    Control LogOn;            // "Start Logger Automatically?"
    Control DisplayMessages;  // "Record Error messages"

    Control Cents[3];  // frame "Power costs cents/kWh": tags M, J, Z
    std::vector<std::string> CentsItems[3];

    Control SaveSettingsButton;
    Control Exit_no_save;
    Control Label7;  // "Find ALL PORTS"

    ControlRegistry controls;
};

// The logic of `ProgramSetup`. The form is modal; the menu entry that opens it closes the port
// first and opens it again afterwards, so the ports can be probed while it is open.
class ProgramSetup {
public:
    // `probe` answers for the ports 1 to 8 offered in the port list; `dialogs` shows the
    // messages and opens FindComms.
    ProgramSetup(SharedState& state, std::filesystem::path folder, Dialogs& dialogs,
                 PortProbe& probe);

    // Reads hardware.cfg into the shared settings and fills the fields. A missing file is told,
    // and the fields keep their design values. A file that cannot be read as settings ends the
    // opening where it stands, silently: the form reports nothing but its two messages.
    void Form_Load();
    // The save. A logging interval below 10 is warned about and saved; 0 (or a text that reads
    // as no number) is refused without a word and the form stays open.
    void SaveSettingsButton_Click();
    void Exit_no_save_Click() { m_closeRequested = true; }
    // "Find ALL PORTS": the port search, then the port field shows PortNumber as it now stands.
    void Label7_Click();
    // The close box of the title bar leaves without saving, as the abort does.
    void TitleBarClose() { Exit_no_save_Click(); }

    // A click by the control's own name ("SaveSettingsButton", "Label7"): a check box turns
    // over. A disabled or hidden control does nothing and gives true; false when the form has
    // no such control.
    bool Click(std::string_view name);
    // Typing into a box or the free text of a list ("LogDelay", "Cents(1)"), which is also how
    // a choice of its list is made; false when the form has no such box.
    bool SetText(std::string_view name, std::string_view text);

    bool CloseRequested() const { return m_closeRequested; }
    ProgramSetupModel& model() { return m_model; }
    const ProgramSetupModel& model() const { return m_model; }

    static constexpr int kProbedPorts = 8;
    static constexpr std::string_view kWindow = "ProgramSetup";

private:
    SharedState& m_state;
    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    PortProbe& m_probe;
    ProgramSetupModel m_model;
    bool m_closeRequested = false;
};

// The warning of a save with a logging interval under 10 seconds, one line each.
std::string ShortIntervalWarning();

}  // namespace brizalog
