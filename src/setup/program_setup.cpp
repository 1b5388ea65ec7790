#include "setup/program_setup.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "catalogue/config_files.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr const char* kBaudRates[] = {"300",   "600",   "1200",  "2400",  "4800",
                                      "9600",  "14400", "19200", "28800", "33600",
                                      "38400", "57600", "76800", "115200"};
constexpr const char* kLogDelays[] = {"1", "2", "5", "10", "20", "30", "60", "120", "300", "600"};

std::string Tag(std::string_view text, const std::string& name) {
    return ReadTagValue(text, "<" + name + ">", "</" + name + ">");
}

double NumberTag(std::string_view text, const std::string& name) {
    return ParseNumber(Tag(text, name));
}

}  // namespace

std::string ShortIntervalWarning() {
    std::string text = "Keep total logging time short, under an hour";
    text += kCrLf;
    text += "Good for graphing transients";
    text += kCrLf;
    text += "and for short duration logging";
    return text;
}

ProgramSetupModel::ProgramSetupModel() {
    BaudSelect.text = "4800";
    WSUnits.text = "m/s";
    SaveSettingsButton.text = "Save ANY  <|||>  ALL SETUP changes";
    Exit_no_save.text = "ABORT  NO changes saved";
    Label7.text = "Find ALL PORTS";
    SaveExcel.text = "Save to Excel File?";
    LogOn.text = "Start Logger Automatically?";
    DisplayMessages.text = "Record Error messages";

    controls.Add("PortNumber", PortNumber);
    controls.Add("BaudSelect", BaudSelect);
    controls.Add("LogDelay", LogDelay);
    controls.Add("WSUnits", WSUnits);
    controls.Add("Personalization", Personalization);
    controls.Add("SaveExcel", SaveExcel);
    controls.Add("LogOn", LogOn);
    controls.Add("DisplayMessages", DisplayMessages);
    controls.AddArray("Cents", Cents);
    controls.Add("SaveSettingsButton", SaveSettingsButton);
    controls.Add("Exit_no_save", Exit_no_save);
    controls.Add("Label7", Label7);
}

ProgramSetup::ProgramSetup(SharedState& state, std::filesystem::path folder, Dialogs& dialogs,
                           PortProbe& probe)
    : m_state(state), m_folder(std::move(folder)), m_dialogs(dialogs), m_probe(probe) {}

void ProgramSetup::Form_Load() {
    const std::filesystem::path file = InFolder(m_folder, kSettingsFile);
    if (!FileExists(file)) {
        m_dialogs.ShowMessage("hardware configuration file is missing");
        return;
    }
    Settings& s = m_state.settings;
    try {
        // The form's own read: DispMessages is not among its tags, so its box opens unticked
        // whatever the file says, and a save then writes 0.
        const std::string text = ReadWholeFile(file);
        s.PortNumber = NumberTag(text, "Port");
        s.BaudRate = NumberTag(text, "BaudRate");
        s.SaveExcel = NumberTag(text, "SaveExcel");
        s.LogDelay = NumberTag(text, "LogDelay");
        s.LogOn = NumberTag(text, "LogOn");
        s.WSUnits = Tag(text, "WSUnits");
        s.PersonalString = Tag(text, "PersonalString");
        s.SystemType = static_cast<std::int16_t>(
            RoundToInteger(NumberTag(text, "SystemType"), std::numeric_limits<std::int16_t>::min(),
                           std::numeric_limits<std::int16_t>::max()));
    } catch (const Failure&) {
        return;
    }

    m_model.Personalization.text = s.PersonalString;
    m_model.PortNumber.text = FormatGeneral(s.PortNumber);
    m_model.caption = s.PersonalString;
    m_model.WSUnits.text = s.WSUnits;
    m_model.SaveExcel.checked = s.SaveExcel == 1;
    m_model.LogOn.checked = s.LogOn == 1;

    // Only the ports that exist are offered; the box still takes any number typed in.
    m_model.PortNumberItems.clear();
    for (int port = 1; port <= kProbedPorts; ++port) {
        if (m_probe.commAvailable(port)) {
            m_model.PortNumberItems.push_back(std::to_string(port));
        }
    }

    m_model.BaudSelect.text = FormatGeneral(s.BaudRate);
    m_model.BaudSelectItems.assign(std::begin(kBaudRates), std::end(kBaudRates));
    m_model.LogDelay.text = FormatGeneral(s.LogDelay);
    m_model.LogDelayItems.assign(std::begin(kLogDelays), std::end(kLogDelays));

    // The stored costs are not read back: the boxes always open at 10.
    for (int i = 0; i < 3; ++i) {
        m_model.Cents[i].text = "10";
        m_model.CentsItems[i].clear();
        for (int cents = 10; cents <= 25; ++cents) {
            m_model.CentsItems[i].push_back(std::to_string(cents));
        }
        for (int cents = 44; cents <= 55; ++cents) {
            m_model.CentsItems[i].push_back(std::to_string(cents));
        }
    }
}

void ProgramSetup::SaveSettingsButton_Click() {
    const double logDelay = ParseNumber(m_model.LogDelay.text);
    if (logDelay < 10) {
        m_dialogs.ShowMessage(ShortIntervalWarning());
    }
    // Only 0 is refused, and without a word; the range of the caption is not enforced.
    if (logDelay == 0) {
        return;
    }

    Settings& s = m_state.settings;
    s.PortNumber = ParseNumber(m_model.PortNumber.text);
    s.BaudRate = ParseNumber(m_model.BaudSelect.text);
    s.SaveExcel = m_model.SaveExcel.checked ? 1 : 0;
    s.WSUnits = m_model.WSUnits.text;
    for (int i = 0; i < 3; ++i) {
        s.PowerCents[static_cast<std::size_t>(i)] = ParseNumber(m_model.Cents[i].text);
    }

    // LogDelay, LogOn, DispMessages and PersonalString go from the fields straight into the
    // file; memory catches up when the main form loads the files after the form has closed.
    SetupFormFields fields;
    fields.logDelay = logDelay;
    fields.logOn = m_model.LogOn.checked ? 1 : 0;
    fields.dispMessages = m_model.DisplayMessages.checked ? 1 : 0;
    fields.baudRate = m_model.BaudSelect.text;
    fields.personalString = m_model.Personalization.text;
    for (int i = 0; i < 3; ++i) {
        fields.cents[i] = m_model.Cents[i].text;
    }
    try {
        WriteWholeFile(InFolder(m_folder, kSettingsFile), SettingsShapeB(s, fields));
    } catch (const Failure&) {
        // A file that cannot be written keeps the form open, so nothing looks saved that isn't.
        return;
    }
    m_closeRequested = true;
}

void ProgramSetup::Label7_Click() {
    m_dialogs.OpenWindow(FindComms::kWindow, true);
    m_model.PortNumber.text = FormatGeneral(m_state.settings.PortNumber);
}

bool ProgramSetup::Click(std::string_view name) {
    Control* control = m_model.controls.Find(name);
    if (control == nullptr) {
        return false;
    }
    if (!control->enabled || !control->visible) {
        return true;
    }
    if (name == "SaveSettingsButton") {
        SaveSettingsButton_Click();
    } else if (name == "Exit_no_save") {
        Exit_no_save_Click();
    } else if (name == "Label7") {
        Label7_Click();
    } else if (control == &m_model.SaveExcel || control == &m_model.LogOn ||
               control == &m_model.DisplayMessages) {
        control->checked = !control->checked;
    }
    return true;
}

bool ProgramSetup::SetText(std::string_view name, std::string_view text) {
    ProgramSetupModel& m = m_model;
    Control* const typeable[] = {&m.PortNumber,      &m.BaudSelect, &m.LogDelay, &m.WSUnits,
                                 &m.Personalization, &m.Cents[0],   &m.Cents[1], &m.Cents[2]};
    Control* control = m.controls.Find(name);
    if (control == nullptr ||
        std::find(std::begin(typeable), std::end(typeable), control) == std::end(typeable)) {
        return false;
    }
    if (control->enabled && control->visible) {
        control->text = std::string(text);
    }
    return true;
}

}  // namespace brizalog
