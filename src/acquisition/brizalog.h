#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "acquisition/frame_tag_index.h"
#include "acquisition/main_form_model.h"
#include "catalogue/services.h"
#include "catalogue/state.h"
#include "logging/file_health.h"

namespace brizalog {

// Told when a logging tick or a calculated frame has run to its end, and when the Options window
// has closed, so that something beside the system (publishing to a broker) can read the state
// it left. An observer never throws and never waits: it runs on the user-interface thread inside
// the handler.
class FormObserver {
public:
    virtual ~FormObserver() = default;
    virtual void AfterTick() = 0;
    virtual void AfterFrame() = 0;
    // After the Options window has closed and its choices are in the state.
    virtual void AfterOptions() {}
};

// The main form `Brizalog`: the application. It owns the shared state, the serial port, the
// three timers and the panel model, and its handlers are the only way events reach the system.
// Every handler runs to its end on the one user-interface thread before the next begins.
//
// A run-time failure that the system lets end the process (steps 1 to 10 of the start-up, the
// intake of system 4) leaves a handler as a Failure; the caller ends the process with its
// message. The rollover's failure (a Whours.txt that cannot be written) ends the rollover only.
//
// The handlers are defined beside the rules they carry out: start-up, menus, intake, decoders and
// calculation in acquisition/, the layouts and the panel in displays/, the logging tick, Start,
// Stop and the watt-hour ledger in logging/.
class Brizalog {
public:
    Brizalog(std::filesystem::path programFolder, Services services);
    Brizalog(const Brizalog&) = delete;
    Brizalog& operator=(const Brizalog&) = delete;
    ~Brizalog();

    // ---- Start-up and commands (acquisition/) ----
    void Form_Load();
    void startMENU_Click();
    void stopMENU_Click();
    void exitMENU_Click();
    // True once Exit has closed the main form; the platform then ends the application.
    bool ExitRequested() const { return m_exitRequested; }

    // A click on a menu entry or a control by its own name, with the index in brackets for
    // control arrays and menu groups ("startMENU", "setsystem(8)", "Amps(2)", "Label3(0)").
    // False when the form has no such item. A click on an entry that the user cannot reach (a
    // disabled menu entry or one under a disabled menu, a hidden cell or one in a hidden group)
    // does nothing and returns true.
    bool Click(std::string_view name);
    // The user types `text` into the text box `delay`, or sets the check box `Check1` to "0" or
    // "1". False when the form has no such box or the value is not one a check box takes. Typing
    // into a box that is not editable changes nothing.
    bool SetText(std::string_view name, std::string_view text);

    // ---- Serial link (acquisition/) ----
    // Opens MSComm1 with PortNumber and BaudRate + ",N,8,1"; a failure is raised to the caller.
    void OpenPort();
    // The serial event: everything queued at the port is appended to ReceiveBuffer.
    void MSComm1_OnComm();

    // Reads options.cfg into state().options, then lays the program's own overrides over it
    // (the headless logger's choices). Runs at the start, before anything reads an option, and
    // after the Options window has closed.
    void LoadOptions();
    // What LoadOptions lays over the file's choices; none by default.
    void SetOptionsOverride(std::function<void(Options&)> override) {
        m_optionsOverride = std::move(override);
    }
    // What the desktop program says when a failure of the serial event ends it: the platform's
    // message, and, when the failure may be a CC128 message cut badly that the user could have
    // chosen to skip, where that choice is.
    std::string EndingMessage(const std::string& platformText) const;
    // How many meter messages cut badly were skipped since the start (ContainMeterFailures).
    long MeterFailuresContained() const { return m_meterFailuresContained; }

    // ---- Timers ----
    void Timer1_Timer();  // logging tick (logging/)
    void Timer2_Timer();  // end of the indicator flash (acquisition/)
    void Timer3_Timer();  // watt-hour rollover (logging/); raises, its timer contains it

    // ---- Fault reports (acquisition/) ----
    void ReportTrappedError(const std::string& errorText);
    void ReportPortProblem();

    // ---- Menu and panel handlers (acquisition/, displays/) ----
    void setsystem_Click(int index);
    void SetupHardware_Click();
    // The four channel-setup groups: `window` is the one they open ("setupHARDWAREchannels",
    // "setupLOGGINGchannels", "setupGRAPHINGchannels", "setupDISPLAYchannels").
    void ChannelSetup_Click(std::string_view window, int index);
    void Check1_Click();
    void Volts_Click(int index);
    void Amps_Click(int index);
    void Watts_Click(int index);
    void Wind_Click(int index);
    void RPM_Click(int index);
    void Label3_Click(int index);
    void Label5_Click(int index);
    void Label6_Click();
    void Label7_Click();
    void Label9_Click();
    void Label12_Click();

    // ---- State, for the window layer, the runner and the tests ----
    SharedState& state() { return m_state; }
    const SharedState& state() const { return m_state; }
    MainFormModel& model() { return m_model; }
    const MainFormModel& model() const { return m_model; }
    const std::filesystem::path& programFolder() const { return m_folder; }
    Clock& clock() { return m_services.clock; }
    FormTimer& timer1() { return m_timer1; }
    FormTimer& timer2() { return m_timer2; }
    FormTimer& timer3() { return m_timer3; }
    const std::string& ReceiveBuffer() const { return m_receiveBuffer; }
    const std::string& LoggerFrame() const { return m_loggerFrame; }
    const std::string& MeterFrame() const { return m_meterFrame; }
    // One observer at most; null for none. It must outlive the form or be taken back first.
    void SetObserver(FormObserver* observer) { m_observer = observer; }
    int ErrorLogEnabled = 0;  // nothing in the system sets it
    // The mode handed to plotDiagnostics at its opening: 1 windmill 1, 2 windmill 2, 3 both;
    // 0 when no opening is under way.
    int PlotMode = 0;
    // Set while batteryMonitor opens its window, so that a second one is not started meanwhile.
    int BatteryMonitorOpening = 0;

private:
    // acquisition/
    void LoadConfigFiles();  // the files, then the delay box, Label1 and Timer1's period
    void SerialIntake(std::string_view received);
    void CalculateChannels();
    void DecodeLoggerFrame();
    void DecodeMeterFrame();
    // A failure of the 128 branch that the user chose to contain: LogOK turns red and a notice
    // tells the time.
    void ContainMeterFailure(const class Failure& failure);
    // One element of a frame into RawValue[index]: its start tag is tag `startTag` of `tags`,
    // its end tag the next one. A value that is not a number keeps the old reading and turns
    // LogOK red.
    void DecodeElement(std::string_view frame, const FrameTagIndex& tags, std::size_t startTag,
                       int index);
    void OpenWindow(std::string_view name, bool modal);
    bool ClickMenu(std::string_view name, int index);
    bool ClickPanel(std::string_view name, int index);
    bool Reachable(std::string_view name) const;

    // displays/
    void setsystem(int index);
    void RefreshPanel();
    void BuildPanelRows();

    // logging/
    void StartLogging();
    void StopLogging();
    // The choice that keeps an unattended logger logging: a first tick without data leaves
    // logging armed, a logs folder that has gone is made again, and text without a frame end is
    // held to a bound. On by default in the headless logger, off on the desktop.
    bool KeepLoggingArmed() const;
    void ReplayTodaysLog();

    std::filesystem::path m_folder;
    Services m_services;
    SharedState m_state;
    MainFormModel m_model;
    FormTimer m_timer1{"Timer1", 1000, true};
    FormTimer m_timer2{"Timer2", 250, false};
    FormTimer m_timer3{"Timer3", 5000, true};

    // Finds a marker in ReceiveBuffer, which only grows between cuts, looking at each received
    // byte once: a device that never sends the marker costs nothing per event beyond its text.
    class MarkerSearch {
    public:
        explicit MarkerSearch(std::string_view marker) : m_marker(marker) {}
        bool FoundIn(std::string_view buffer);
        void Reset() { m_scanned = 0; }

    private:
        std::string_view m_marker;
        std::size_t m_scanned = 0;  // the buffer's first m_scanned bytes hold no whole marker
    };
    void ResetReceiveBuffer(std::string_view text);
    void BoundReceiveBuffer();

    std::string m_receiveBuffer;
    MarkerSearch m_frameEnd{"]"};
    MarkerSearch m_meterStart{"<msg>"};
    MarkerSearch m_meterEnd{"</msg>"};
    std::string m_loggerFrame;
    std::string m_meterFrame;
    // Scratch of the decoders, kept so that a frame costs no allocation.
    FrameTagIndex m_fixedTags;   // system 0
    FrameTagIndex m_tableTags;   // the channel table's, start and end tag of channel n at 2n - 2
    FrameTagIndex m_meterTags;   // the Current Cost meters'
    std::string m_tagNames[25];  // the XMLhardware names that m_tableTags was built from
    bool m_tableTagsSet = false;
    std::string m_elementValue;

    // The cell texts of the panel refresh, per system type: which control, which value, which
    // pattern and which display flags gate it. Built once; the flags are read at each refresh.
    struct PanelRow {
        Control* cell;
        const double* value;
        std::string_view pattern;
        int gate1;               // channel whose display flag must be 1, 0 for none
        int gate2;               // a second such channel, 0 for none
        bool windUnits = false;  // WSUnits follows the number
    };
    std::vector<PanelRow> m_panelRows[9];
    bool m_exitRequested = false;
    std::function<void(Options&)> m_optionsOverride;
    long m_meterFailuresContained = 0;
    FormObserver* m_observer = nullptr;
    int m_temperatureToggle1 = 0;  // Label3(0) in system 3: Max, then Min, then Max
    int m_temperatureToggle2 = 0;  // Label3(4) in system 4
    int m_intervalAssumed = 0;     // the replay counted a line without "<L>" as 10 seconds
    FileHealth m_fileHealth;       // which of the logging files could not be written last
    bool m_noDataTold = false;     // "NO DATA AVAILABLE YET" was told while logging stayed armed
    bool m_dropTold = false;       // text without a frame end was dropped since the last frame
};

}  // namespace brizalog
