#include "acquisition/brizalog.h"

#include <cmath>
#include <limits>

#include "catalogue/config_files.h"
#include "catalogue/control_names.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/options.h"
#include "catalogue/provisioning.h"
#include "catalogue/system_types.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr std::string_view kWaitingForData = "Waiting for Data";
constexpr std::string_view kPortMessage =
    "There is a possible Port Number problem. Check available PORTS\r\n\r\n"
    "RUN SETUP HARDWARE MENU";

// The period of Timer1 for a logging interval in seconds, in whole milliseconds.
int TimerInterval(double seconds) {
    const double ms = std::round(seconds * 1000.0);
    if (!std::isfinite(ms) || ms > std::numeric_limits<int>::max()) {
        throw Failure(FailureKind::Overflow);
    }
    if (ms < 0) {
        throw Failure(FailureKind::InvalidArgument, "Invalid property value");
    }
    return static_cast<int>(ms);
}

}  // namespace

Brizalog::Brizalog(std::filesystem::path programFolder, Services services)
    : m_folder(std::move(programFolder)), m_services(services) {
    // The windows made before the start-up already see the user's choices.
    LoadOptions();
    m_timer1.SetHandler([this] {
        Timer1_Timer();
        if (m_observer != nullptr) {
            m_observer->AfterTick();
        }
    });
    m_timer2.SetHandler([this] { Timer2_Timer(); });
    // The rollover has no trap of its own: a Whours.txt that cannot be written ends it before the
    // day's totals are cleared. That failure ends the rollover only, never the program: the
    // logger goes on, and WattHours runs on into the new day as after a midnight without frames.
    m_timer3.SetHandler([this] {
        try {
            Timer3_Timer();
        } catch (const Failure&) {
        }
    });
    // The platform sees the timers in the order Timer1, Timer2, Timer3, and runs ticks that fall
    // due at the same instant in that order. Timer2 is disabled at design, so it is made known
    // by stopping it.
    m_timer1.Attach(&m_services.timers);
    m_services.timers.Stop(m_timer2);
    m_timer2.Attach(&m_services.timers);
    m_timer3.Attach(&m_services.timers);
    BuildPanelRows();
}

Brizalog::~Brizalog() {
    m_timer1.Detach();
    m_timer2.Detach();
    m_timer3.Detach();
}

// Start-up. Steps 1 to 10 have no trap: a failure there leaves as a Failure and ends the
// program. The trap over steps 12 to 19 turns any failure (a port that will not open, a file
// that cannot be read, a bad line in today's log) into the port message, and the form stays up
// with whatever steps were left undone.
void Brizalog::Form_Load() {
    // The splash makes any missing folder and file; the desktop program waits for its click.
    ProvisionProgramFolder(m_folder);
    LoadOptions();
    m_timer1.Enable();
    LoadConfigFiles();
    m_model.caption = kWaitingForData;
    m_timer3.Disable();
    m_model.LogOK.visible = false;
    m_model.DataOK.visible = false;

    auto& extreme = m_state.DailyExtreme;
    extreme[24] = 1000.0;
    extreme[25] = 1000.0;
    extreme[26] = 1000.0;
    extreme[27] = 0;
    extreme[28] = 100.0;
    extreme[29] = 0;
    extreme[30] = 100.0;
    for (int i = 1; i <= 16; ++i) {
        m_state.SumValue[i] = 0;
    }
    for (int i = 1; i <= 8; ++i) {
        m_state.SumWatts[i] = 0;
        m_state.WattHours[i] = 0;
    }

    auto& settings = m_state.settings;
    if (settings.SystemType > 8) {
        settings.SystemType = 0;
    }
    m_model.Label15.text = "Systemtype " + std::to_string(settings.SystemType);
    if (IsKnownSystemType(settings.SystemType)) {
        m_model.setsystem[settings.SystemType].checked = true;
    }
    setsystem_Click(settings.SystemType);

    try {
        LoadConfigFiles();
        OpenPort();
        if (settings.SystemType > 8) {
            settings.SystemType = 0;
        }
        if (settings.LogDelay > 9) {
            ReplayTodaysLog();
        }
        if (settings.LogOn == 1) {
            Control& delay = m_model.delay;
            if (IsNumeric(delay.text)) {
                const double seconds = ParseNumber(delay.text);
                if (seconds > 600) {
                    delay.text = "600";
                } else if (seconds < 1) {
                    delay.text = "1";
                }
                m_timer1.SetInterval(TimerInterval(ParseNumber(delay.text)));
                delay.enabled = false;
                m_state.LoggingActive = 1;
                startMENU_Click();
            }
        } else {
            stopMENU_Click();
        }
        LoadConfigFiles();
    } catch (const Failure&) {
        m_services.dialogs.ShowMessage(std::string(kPortMessage));
    }
}

void Brizalog::LoadOptions() {
    m_state.options = ReadOptions(m_folder);
    if (m_optionsOverride) {
        m_optionsOverride(m_state.options);
    }
}

void Brizalog::LoadConfigFiles() {
    brizalog::LoadConfigFiles(m_state, m_folder);
    const Settings& settings = m_state.settings;
    m_model.delay.enabled = true;
    m_model.delay.text = FormatGeneral(settings.LogDelay);
    m_model.Label1.text = "Port Number  " + FormatGeneral(settings.PortNumber);
    m_timer1.SetInterval(TimerInterval(settings.LogDelay));
}

// MSComm1 takes port numbers 1 to 255; anything else fails as a port that cannot be opened.
void Brizalog::OpenPort() {
    const double port = std::round(m_state.settings.PortNumber);
    if (!(port >= 1 && port <= 255)) {
        throw Failure(FailureKind::PortFailure);
    }
    m_services.serial.Open(static_cast<int>(port),
                           FormatGeneral(m_state.settings.BaudRate) + ",N,8,1");
}

// Exit saves the settings and closes the form. The port stays as it is and logging is not
// stopped: the process ends with the form.
void Brizalog::exitMENU_Click() {
    WriteSettingsFile(m_state.settings, m_folder);
    m_exitRequested = true;
}

// The port is closed while the user changes its settings, then opened with the new ones. A
// port that still fails stays closed without a word: no data arrive until the next attempt.
void Brizalog::SetupHardware_Click() {
    if (m_services.serial.IsOpen()) {
        m_services.serial.Close();
    }
    OpenWindow("ProgramSetup", true);
    try {
        OpenPort();
        LoadConfigFiles();
    } catch (const Failure&) {
    }
}

void Brizalog::ChannelSetup_Click(std::string_view window, int index) {
    auto& settings = m_state.settings;
    settings.SystemType = static_cast<std::int16_t>(index);
    m_model.Label15.text = "Systemtype " + std::to_string(settings.SystemType);
    OpenWindow(window, true);
    m_model.Label15.text = "Systemtype " + std::to_string(settings.SystemType);
    setsystem(settings.SystemType);
    LoadConfigFiles();
}

void Brizalog::setsystem_Click(int index) {
    setsystem(index);
}

void Brizalog::Check1_Click() {
    m_model.Check1.text = m_model.Check1.checked ? "Alt Volts2" : "System V1";
}

void Brizalog::Timer2_Timer() {
    m_model.LogOK.visible = false;
    m_model.DataOK.visible = false;
    m_timer2.Disable();
}

void Brizalog::ReportTrappedError(const std::string& errorText) {
    const LocalDateTime now = m_services.clock.Now();
    if (ErrorLogEnabled == 1) {
        std::string line = DateTag(now, false);
        line.append("  ").append(LongTime(now)).append("  ").append(m_state.ErrorContext);
        line.append("  ").append(errorText).append(" <IM> ").append(m_loggerFrame).append(kCrLf);
        AppendToFile(InFolder(m_folder, "/errorlog.txt"), line);
    }
    m_model.ErrorString.text = "  Last Error trapped  " + LongTime(now) + "  ---  " +
                               m_state.ErrorContext + "  " + errorText;
    m_model.ErrorString.foreColour = kRed;
    m_model.LogOK.colour = kRed;
    m_timer2.Enable();
}

void Brizalog::ReportPortProblem() {
    m_model.Label2.text = "     possible COMMS problem";
    m_services.dialogs.ShowMessage(std::string(kPortMessage));
}

void Brizalog::OpenWindow(std::string_view name, bool modal) {
    m_services.dialogs.OpenWindow(name, modal);
}

// ---- Clicks --------------------------------------------------------------------------------

bool Brizalog::Click(std::string_view name) {
    for (const AddedMenuEntry& entry : kAddedMenuEntries) {
        if (name == entry.name) {
            if (!Reachable(entry.parent)) {
                return true;
            }
            OpenWindow(entry.window, entry.editsOptions);
            // Brizalog's own choices reach the running program when their window closes.
            if (entry.editsOptions) {
                LoadOptions();
                if (m_observer != nullptr) {
                    m_observer->AfterOptions();
                }
            }
            return true;
        }
    }
    std::string_view base;
    int index = -1;
    if (!SplitIndexedName(name, base, index)) {
        return false;
    }
    const std::string fullName =
        index < 0 ? std::string(base) : std::string(base) + "(" + std::to_string(index) + ")";
    if (m_model.controls.Find(fullName) == nullptr) {
        return false;
    }
    if (!Reachable(fullName)) {
        return true;
    }
    if (ClickMenu(base, index)) {
        return true;
    }
    ClickPanel(base, index);
    return true;
}

// A menu entry is reachable when it and every menu above it are enabled and visible; a panel
// control when it and the groups that hold it are visible.
bool Brizalog::Reachable(std::string_view name) const {
    for (const auto& entry : m_model.menuTree) {
        if (entry.name != name) {
            continue;
        }
        const Control* control = m_model.controls.Find(name);
        if (!control->enabled || !control->visible) {
            return false;
        }
        return entry.parent.empty() || Reachable(entry.parent);
    }
    const Control* control = m_model.controls.Find(name);
    if (control == nullptr || !control->visible) {
        return false;
    }
    const std::string_view parent = MainFormModel::GroupOf(name);
    return parent.empty() || Reachable(parent);
}

bool Brizalog::ClickMenu(std::string_view name, int index) {
    // Entries that open a window, and the window they open.
    struct WindowEntry {
        std::string_view entry;
        std::string_view window;
        bool modal;
    };
    static constexpr WindowEntry kWindows[] = {
        {"rawdatamenu", "rawCOMMS", false},
        {"VUmeters", "BarGraphs", false},
        {"batteryMonitor2", "BATTMonitor2", false},
        {"maxMINS", "dailyMaximums", false},
        {"rawCOMMdatamenu", "rawCOMMS", false},
        {"previewLOGdata", "dataTOlog", false},
        {"rawFRAMEtext", "displayRAWdata", false},
        {"graphingDEMO", "GraphDEMO", true},
        {"Helpmenu", "info", true},
        {"about", "frmAbout", true},
    };
    // The history entries other than the demonstration do nothing in system 0.
    static constexpr WindowEntry kHistory[] = {
        {"PlotGraphBZ", "GraphBZ", true},      {"PlotGraphCC", "GraphCC", true},
        {"graphingCC_QX", "GraphCC_QX", true}, {"PlotGraphRE", "GraphRE", true},
        {"PlotGraphML", "GraphML", true},
    };
    static constexpr std::string_view kPlots[] = {"plotwindmill1", "plotwindmill2",
                                                  "plot2windmills"};
    struct GroupEntry {
        std::string_view group;
        std::string_view window;
    };
    static constexpr GroupEntry kChannelSetups[] = {
        {"logging", "setupHARDWAREchannels"},
        {"logTOfile", "setupLOGGINGchannels"},
        {"graphing", "setupGRAPHINGchannels"},
        {"display", "setupDISPLAYchannels"},
    };

    if (name == "setsystem") {
        setsystem_Click(index);
        return true;
    }
    for (const auto& setupGroup : kChannelSetups) {
        if (name == setupGroup.group) {
            ChannelSetup_Click(setupGroup.window, index);
            return true;
        }
    }
    if (name == "SetupHardware") {
        SetupHardware_Click();
        return true;
    }
    if (name == "CALIBRATIONmenu") {
        OpenWindow("CALIBRATION", true);
        LoadConfigFiles();
        return true;
    }
    if (name == "startMENU") {
        startMENU_Click();
        return true;
    }
    if (name == "stopMENU") {
        stopMENU_Click();
        return true;
    }
    if (name == "exitMENU") {
        exitMENU_Click();
        return true;
    }
    for (int mode = 1; mode <= 3; ++mode) {
        if (name == kPlots[mode - 1]) {
            if (PlotMode < 1) {
                PlotMode = mode;
                OpenWindow("plotDiagnostics", false);
                PlotMode = 0;
            }
            return true;
        }
    }
    if (name == "batteryMonitor") {
        if (BatteryMonitorOpening == 0) {
            BatteryMonitorOpening = 1;
            OpenWindow("BATTMonitor", false);
            BatteryMonitorOpening = 0;
        }
        return true;
    }
    for (const auto& entry : kWindows) {
        if (name == entry.entry) {
            OpenWindow(entry.window, entry.modal);
            return true;
        }
    }
    for (const auto& entry : kHistory) {
        if (name == entry.entry) {
            if (m_state.settings.SystemType != 0) {
                OpenWindow(entry.window, entry.modal);
            }
            return true;
        }
    }
    // Menus that only open their entries, and the two help entries bound to nothing.
    for (const auto& entry : m_model.menuTree) {
        if (entry.name == name) {
            return true;
        }
    }
    return false;
}

bool Brizalog::SetText(std::string_view name, std::string_view text) {
    if (name == "delay") {
        if (m_model.delay.enabled) {
            m_model.delay.text = std::string(text);
        }
        return true;
    }
    if (name == "Check1") {
        if (text != "0" && text != "1") {
            return false;
        }
        const bool ticked = text == "1";
        if (ticked != m_model.Check1.checked) {
            m_model.Check1.checked = ticked;
            Check1_Click();
        }
        return true;
    }
    return false;
}

}  // namespace brizalog
