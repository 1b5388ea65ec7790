#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "acquisition/main_form_model.h"
#include "catalogue/services.h"
#include "catalogue/state.h"

namespace brizalog {

// The main form `Brizalog`: the application. It owns the shared state, the serial port, the
// three timers and the panel model, and its handlers are the only way events reach the system.
// Every handler runs to its end on the one user-interface thread before the next begins.
//
// A run-time failure that the system lets end the process (steps 1 to 10 of the start-up, the
// intake of system 4) leaves a handler as a Failure; the caller ends the process with its message.
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
    // False when the form has no such clickable item.
    bool Click(std::string_view name);

    // ---- Serial link (acquisition/) ----
    // Opens MSComm1 with PortNumber and BaudRate + ",N,8,1"; a failure is raised to the caller.
    void OpenPort();
    // The serial event: everything queued at the port is appended to ReceiveBuffer.
    void MSComm1_OnComm();

    // ---- Timers ----
    void Timer1_Timer();  // logging tick (logging/)
    void Timer2_Timer();  // end of the indicator flash (acquisition/)
    void Timer3_Timer();  // watt-hour rollover (logging/)

    // ---- Fault reports (acquisition/) ----
    void ReportTrappedError(const std::string& errorText);
    void ReportPortProblem();

    // ---- State, for the window layer, the runner and the tests ----
    SharedState& state() { return m_state; }
    const SharedState& state() const { return m_state; }
    MainFormModel& model() { return m_model; }
    const MainFormModel& model() const { return m_model; }
    const std::filesystem::path& programFolder() const { return m_folder; }
    FormTimer& timer1() { return m_timer1; }
    FormTimer& timer2() { return m_timer2; }
    FormTimer& timer3() { return m_timer3; }
    const std::string& ReceiveBuffer() const { return m_receiveBuffer; }
    const std::string& LoggerFrame() const { return m_loggerFrame; }
    int ErrorLogEnabled = 0;  // nothing in the system sets it

private:
    // acquisition/
    void LoadConfigFiles();  // the files, then the delay box, Label1 and Timer1's period
    void CalculateChannels();
    void DecodeLoggerFrame();
    void DecodeMeterFrame();

    // displays/
    void setsystem(int index);
    void RefreshPanel();

    // logging/
    void StartLogging();
    void StopLogging();
    void ReplayTodaysLog();

    std::filesystem::path m_folder;
    Services m_services;
    SharedState m_state;
    MainFormModel m_model;
    FormTimer m_timer1{"Timer1", 1000, true};
    FormTimer m_timer2{"Timer2", 250, false};
    FormTimer m_timer3{"Timer3", 5000, true};

    std::string m_receiveBuffer;
    std::string m_loggerFrame;
    std::string m_meterFrame;
    bool m_exitRequested = false;
    int m_temperatureToggle1 = 0;  // Label3(0) in system 3: Max, then Min, then Max
    int m_temperatureToggle2 = 0;  // Label3(4) in system 4
    int m_intervalAssumed = 0;     // the replay counted a line without "<L>" as 10 seconds
};

}  // namespace brizalog
