#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "acquisition/brizalog.h"
#include "catalogue/virtual_platform.h"
#include "window_driver.h"

namespace brizalog::script {

// Exit statuses of brizalog-script.
inline constexpr int kStatusOk = 0;
inline constexpr int kStatusScriptError = 2;  // a malformed line, or a bad command line
inline constexpr int kStatusFatal = 3;        // a failure that ends the process

// The serial devices of a run: by default one stands at every port number; `ports N ...` leaves
// only those. A port without a device cannot be opened, and the port searches do not find it.
class ScriptPorts : public PortProbe {
public:
    bool commAvailable(int portNumber) override;
    // Only these ports from now on; an empty list leaves none.
    void Only(std::vector<int> ports);
    // A device at every port number again.
    void All();

private:
    bool m_all = true;
    std::vector<int> m_ports;
};

// The port of the main form on the run's devices: opening a port without a device fails as
// `portfail on` makes every opening fail.
class ScriptSerial : public VirtualSerial {
public:
    explicit ScriptSerial(ScriptPorts& ports) : m_ports(ports) {}
    void Open(int portNumber, const std::string& settings) override;

private:
    ScriptPorts& m_ports;
};

// Runs the core headless on a program folder, under a virtual clock, from the lines of a
// script, and prints what the user would see. See README.md, "Scenario runner".
class ScriptRunner {
public:
    ScriptRunner(std::filesystem::path folder, std::ostream& out, std::ostream& errors);
    ~ScriptRunner();

    // Runs every line and returns the exit status.
    int Run(const std::vector<std::string>& lines);

private:
    // Runs lines until the script ends, Exit is clicked or `until` (if given) says stop.
    void RunLines(const std::function<bool()>& until);
    void Execute(std::string_view line);
    void Start(std::string_view arguments);
    void Wait(std::string_view arguments);
    void Serial(std::string_view text);
    void PortFail(std::string_view arguments);
    void Ports(std::string_view arguments);
    void ClickCommand(std::string_view arguments);
    void SetCommand(std::string_view arguments);
    void DumpCommand(std::string_view arguments);
    void WindowCommand(std::string_view verb, std::string_view arguments);
    void DumpForm(const std::vector<std::string_view>& filter);
    void OpenWindowFromForm(std::string_view window, bool modal);
    bool NextLineAddresses(std::string_view window) const;
    WindowDriver* DriverFor(std::string_view window);
    Brizalog& Form();

    std::filesystem::path m_folder;
    Printer m_printer;
    std::ostream& m_errors;
    VirtualClock m_clock;
    VirtualTimers m_timers{m_clock};
    ScriptPorts m_ports;
    ScriptSerial m_serial{m_ports};
    VirtualDialogs m_dialogs;
    Services m_services{m_clock, m_timers, m_serial, m_dialogs};
    std::unique_ptr<Brizalog> m_form;
    std::unique_ptr<RunContext> m_context;
    std::vector<std::unique_ptr<WindowDriver>> m_drivers;

    const std::vector<std::string>* m_lines = nullptr;
    std::size_t m_next = 0;  // index of the next line to run
    bool m_exited = false;
};

// The escapes of the `serial` command: \r, \n, \t, \\ and \xHH. Throws ScriptError for any
// other escape.
std::string Unescape(std::string_view text);

}  // namespace brizalog::script
