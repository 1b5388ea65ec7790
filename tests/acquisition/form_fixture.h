#pragma once

#include <string>

#include "acquisition/brizalog.h"
#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"
#include "support/test_folder.h"

namespace brizalog::testing {

// The main form on the virtual platform, in a fresh program folder made as a first run makes
// it, with the system type written into hardware.cfg before the start.
class FormFixture {
public:
    explicit FormFixture(int systemType = 0) {
        clock.Set({2026, 3, 7, 14, 0, 0, 0});
        ProvisionProgramFolder(folder.path());
        SetSetting("SystemType", std::to_string(systemType));
    }

    // Replaces the value of one tag of hardware.cfg.
    void SetSetting(const std::string& tag, const std::string& value) const {
        std::string text = folder.Read("hardware.cfg");
        const std::string open = "<" + tag + ">";
        const std::size_t from = text.find(open) + open.size();
        text.replace(from, text.find("</" + tag + ">") - from, value);
        folder.Write("hardware.cfg", text);
    }

    void Start() { form.Form_Load(); }

    // One serial event that finds `text` queued at the port.
    void Receive(const std::string& text) {
        serial.Queue(text);
        form.MSComm1_OnComm();
    }

    SharedState& state() { return form.state(); }
    MainFormModel& model() { return form.model(); }

    TestFolder folder;
    VirtualClock clock;
    VirtualTimers timers{clock};
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Services services{clock, timers, serial, dialogs};
    Brizalog form{folder.path(), services};
};

// The main form of a fixture, started.
struct StartedForm : FormFixture {
    explicit StartedForm(int systemType = 0) : FormFixture(systemType) { Start(); }
};

}  // namespace brizalog::testing
