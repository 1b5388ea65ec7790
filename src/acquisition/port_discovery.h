#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/control.h"
#include "catalogue/state.h"

namespace brizalog {

// Tells whether serial port `portNumber` exists on this machine, without any lasting effect on
// the port: nothing is configured, no line is raised or dropped. The platform supplies it.
class PortProbe {
public:
    virtual ~PortProbe() = default;
    virtual bool commAvailable(int portNumber) = 0;
};

// The window `FindComms`: finds which of the ports 1 to 16 exist and lets the user pick one.
// It probes the ports by name and never uses the serial link of the main form. The choice goes
// into PortNumber at once; "Save" and "Exit" both only close the window.
struct FindCommsModel {
    FindCommsModel();
    FindCommsModel(const FindCommsModel&) = delete;
    FindCommsModel& operator=(const FindCommsModel&) = delete;

    std::string caption = "Find COMM ports";
    Control FindPORTS;       // "find ports": starts the scan
    Control ExitFindCOMM;    // "Exit"; "Please wait until ports are found" during a scan
    Control cbocomm;         // the list of ports found
    Control SelectedPort;    // the chosen port
    Control AvailablePORTS;  // every port found, each behind a CR LF
    std::vector<std::string> cbocommItems;  // the list's entries

    ControlRegistry controls;
};

class FindComms {
public:
    FindComms(Settings& settings, PortProbe& probe);

    void FindPORTS_Click();
    // Choosing entry `index` of cbocomm.
    void cbocomm_Click(int index);
    void ExitFindCOMM_Click() { m_closeRequested = true; }
    // The close box of the title bar closes the window as "Exit" does; the last choice stands.
    void TitleBarClose() { ExitFindCOMM_Click(); }
    bool CloseRequested() const { return m_closeRequested; }

    // A click on "FindPORTS" or "ExitFindCOMM" by its name; a disabled button does nothing and
    // gives true. False for any other name: an entry of cbocomm is chosen by cbocomm_Click.
    bool Click(std::string_view name);

    FindCommsModel& model() { return m_model; }
    const FindCommsModel& model() const { return m_model; }

    static constexpr int kHighestPort = 16;
    static constexpr std::string_view kWindow = "FindComms";

private:
    Settings& m_settings;
    PortProbe& m_probe;
    FindCommsModel m_model;
    bool m_closeRequested = false;
};

}  // namespace brizalog
