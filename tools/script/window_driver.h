#pragma once

#include <filesystem>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "acquisition/brizalog.h"
#include "acquisition/port_discovery.h"
#include "catalogue/services.h"
#include "catalogue/virtual_platform.h"

namespace brizalog::script {

// The scenario runner drives the main form itself; every other window is driven through a
// WindowDriver. A driver handles one or more windows by name ("GraphBZ", "CALIBRATION") and
// answers the runner's window commands:
//
//   open WINDOW                          Open(WINDOW, false)
//   click WINDOW.NAME [ITEM]             Click(WINDOW, "NAME", "ITEM")
//   set WINDOW.NAME TEXT                 Set(WINDOW, "NAME", "TEXT")
//   mouse WINDOW.NAME down|move|up X Y   Mouse(WINDOW, "NAME", "down", X, Y)
//   dump WINDOW [NAME ...]               DumpNamed(WINDOW, {NAME ...})
//   draw WINDOW                          Draw(WINDOW)
//
// NAME may carry an index in brackets ("Option1(2)"); ITEM is the rest of the line, possibly
// empty. When a menu of the main form opens a window (Dialogs::OpenWindow), the runner calls
// Open(WINDOW, modal) of the driver that handles it, and ignores windows that no driver
// handles. A modal window makes the main form's handler wait: the runner goes on reading script
// lines until IsOpen(WINDOW) turns false (or the script ends), and only then does the handler
// go on, as it would behind a real modal window. Serial events and timers run meanwhile.

// A mistake in a script line: the runner stops with the line's number and exit status 2.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// CR, LF and backslash as \r, \n and \\, so that every printed item stays on one line.
std::string EscapeText(std::string_view text);

// Everything the runner prints goes through here.
class Printer {
public:
    explicit Printer(std::ostream& out) : m_out(out) {}
    // One line: `text` escaped, then a line end.
    void Line(std::string_view text);
    // "NAME=VALUE", the value escaped.
    void Value(std::string_view name, std::string_view value);
    // "NAME=NUMBER" in the shortest text that reads back to the same double (FormatShortest).
    void Number(std::string_view name, double value);
    // "NAME=1" or "NAME=0".
    void Flag(std::string_view name, bool value);
    // A message box that came up and was answered OK: "message: TEXT".
    void Message(std::string_view text);
    void Flush() { m_out.flush(); }

private:
    std::ostream& m_out;
};

// What a window driver reaches of the run. Valid from `start` to the end of the run.
struct RunContext {
    Brizalog& form;  // the main form: shared state, model and timers
    const std::filesystem::path& programFolder;
    VirtualClock& clock;
    VirtualTimers& timers;  // attach a window's own FormTimers here, and `wait` fires them too
    Services& services;     // the platform services the main form runs on (clock, dialogs, ...)
    Printer& printer;
    PortProbe& ports;  // the ports that exist, as the `ports` command set them
};

class WindowDriver {
public:
    virtual ~WindowDriver() = default;

    // True when this driver handles the window `window`.
    virtual bool Handles(std::string_view window) const = 0;
    // Opens the window: its load runs here.
    virtual void Open(std::string_view window, bool modal, RunContext& run) = 0;
    // True while the window is open; a modal opening waits until it turns false.
    virtual bool IsOpen(std::string_view window) const = 0;
    // True for a window that a menu opens modally and that is left at once through its close
    // box unless the next line of the script is a command of that window. So `click
    // SetupHardware` on a line of its own is setup Hardware opened and left without a change.
    virtual bool LeftUnlessAddressed(std::string_view /*window*/) const { return false; }

    // The commands below throw ScriptError for a control, item or value the window does not
    // have (the defaults do so for every command).
    virtual void Click(std::string_view window, std::string_view control, std::string_view item,
                       RunContext& run);
    virtual void Set(std::string_view window, std::string_view control, std::string_view text,
                     RunContext& run);
    virtual void Mouse(std::string_view window, std::string_view control, std::string_view action,
                       double x, double y, RunContext& run);
    // Prints the window's state, one NAME=VALUE line per item (see Printer).
    virtual void Dump(std::string_view window, RunContext& run);
    // Only the items that the words name, as `dump NAME ...` of the main form selects them. The
    // default takes no words.
    virtual void DumpNamed(std::string_view window, const std::vector<std::string_view>& names,
                           RunContext& run);
    // Prints what the window has drawn on its drawing surfaces.
    virtual void Draw(std::string_view window, RunContext& run);
};

// Every window driver of the runner. Defined in window_drivers.cpp, a file of its own, so that
// drivers are added there without touching the runner.
std::vector<std::unique_ptr<WindowDriver>> MakeWindowDrivers();

}  // namespace brizalog::script
