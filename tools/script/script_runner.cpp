#include "script_runner.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "catalogue/failure.h"
#include "catalogue/local_time.h"

namespace brizalog::script {

namespace {

std::string_view Trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text;
}

// The first word of `text` and the rest after the one blank that follows it.
std::string_view FirstWord(std::string_view text, std::string_view& rest) {
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos) {
        rest = {};
        return text;
    }
    rest = text.substr(blank + 1);
    return text.substr(0, blank);
}

std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    while (true) {
        text = Trim(text);
        if (text.empty()) {
            return words;
        }
        std::string_view rest;
        words.push_back(FirstWord(text, rest));
        text = rest;
    }
}

double ParseDecimal(std::string_view text, std::string_view what) {
    const std::string copy(Trim(text));
    if (copy.empty()) {
        throw ScriptError("missing " + std::string(what));
    }
    char* end = nullptr;
    const double value = std::strtod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size() || !std::isfinite(value)) {
        throw ScriptError("not a number: \"" + copy + "\"");
    }
    return value;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

}  // namespace

std::string Unescape(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            plain.push_back(text[i]);
            continue;
        }
        if (i + 1 >= text.size()) {
            throw ScriptError("a lone backslash ends the text");
        }
        const char c = text[++i];
        switch (c) {
            case 'r':
                plain.push_back('\r');
                break;
            case 'n':
                plain.push_back('\n');
                break;
            case 't':
                plain.push_back('\t');
                break;
            case '\\':
                plain.push_back('\\');
                break;
            case 'x': {
                const int high = i + 1 < text.size() ? HexDigit(text[i + 1]) : -1;
                const int low = i + 2 < text.size() ? HexDigit(text[i + 2]) : -1;
                if (high < 0 || low < 0) {
                    throw ScriptError("\\x needs two hexadecimal digits");
                }
                plain.push_back(static_cast<char>(high * 16 + low));
                i += 2;
                break;
            }
            default:
                throw ScriptError(std::string("unknown escape \\") + c);
        }
    }
    return plain;
}

bool ScriptPorts::commAvailable(int portNumber) {
    return m_all || std::find(m_ports.begin(), m_ports.end(), portNumber) != m_ports.end();
}

void ScriptPorts::Only(std::vector<int> ports) {
    m_all = false;
    m_ports = std::move(ports);
}

void ScriptPorts::All() {
    m_all = true;
    m_ports.clear();
}

void ScriptSerial::Open(int portNumber, const std::string& settings) {
    if (!m_ports.commAvailable(portNumber)) {
        Close();
        throw Failure(FailureKind::PortFailure);
    }
    VirtualSerial::Open(portNumber, settings);
}

ScriptRunner::ScriptRunner(std::filesystem::path folder, std::ostream& out, std::ostream& errors)
    : m_folder(std::move(folder)), m_printer(out), m_errors(errors) {
    m_dialogs.onMessage = [this](const std::string& text) { m_printer.Message(text); };
    m_dialogs.onOpenWindow = [this](std::string_view window, bool modal) {
        OpenWindowFromForm(window, modal);
    };
    m_drivers = MakeWindowDrivers();
}

ScriptRunner::~ScriptRunner() {
    // Windows may hold timers of the schedule and references to the form: they go first.
    m_drivers.clear();
    m_context.reset();
    m_form.reset();
}

int ScriptRunner::Run(const std::vector<std::string>& lines) {
    m_lines = &lines;
    m_next = 0;
    try {
        RunLines(nullptr);
    } catch (const ScriptError& error) {
        m_printer.Flush();
        m_errors << "error: line " << m_next << ": " << error.what() << '\n';
        return kStatusScriptError;
    } catch (const std::exception& failure) {
        // A failure that nothing traps ends the process with its message.
        m_printer.Line("fatal: " + std::string(failure.what()));
        m_printer.Flush();
        return kStatusFatal;
    }
    m_printer.Flush();
    return kStatusOk;
}

void ScriptRunner::RunLines(const std::function<bool()>& until) {
    while (!m_exited && m_next < m_lines->size() && !(until && until())) {
        // Blanks at the end belong to the text of `serial` and `set`; a CR is the line end of a
        // script written on Windows.
        std::string_view line = (*m_lines)[m_next];
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) {
            line.remove_prefix(1);
        }
        ++m_next;
        if (line.empty() || line.front() == '#') {
            continue;
        }
        Execute(line);
    }
}

void ScriptRunner::Execute(std::string_view line) {
    std::string_view arguments;
    const std::string_view verb = FirstWord(line, arguments);
    if (verb == "portfail") {
        PortFail(arguments);
        return;
    }
    if (verb == "ports") {
        Ports(arguments);
        return;
    }
    if (verb == "start") {
        Start(arguments);
        return;
    }
    const bool known = verb == "wait" || verb == "serial" || verb == "click" || verb == "set" ||
                       verb == "dump" || verb == "open" || verb == "mouse" || verb == "draw";
    if (!known) {
        throw ScriptError("unknown command \"" + std::string(verb) + "\"");
    }
    if (!m_form) {
        throw ScriptError("\"" + std::string(verb) + "\" before \"start\"");
    }
    if (verb == "wait") {
        Wait(arguments);
    } else if (verb == "serial") {
        Serial(arguments);
    } else if (verb == "click") {
        ClickCommand(arguments);
    } else if (verb == "set") {
        SetCommand(arguments);
    } else if (verb == "dump") {
        DumpCommand(arguments);
    } else {
        WindowCommand(verb, arguments);
    }
}

void ScriptRunner::Start(std::string_view arguments) {
    if (m_form) {
        throw ScriptError("\"start\" comes once");
    }
    LocalDateTime now;
    if (!ParseLocalDateTime(std::string(Trim(arguments)), now)) {
        throw ScriptError("start needs a time as YYYY-MM-DD HH:MM:SS[.fff]");
    }
    m_clock.Set(now);
    std::error_code ignored;
    std::filesystem::create_directories(m_folder, ignored);
    m_form = std::make_unique<Brizalog>(m_folder, m_services);
    m_context = std::make_unique<RunContext>(
        RunContext{*m_form, m_folder, m_clock, m_timers, m_services, m_printer, m_ports});
    m_form->Form_Load();
}

void ScriptRunner::Wait(std::string_view arguments) {
    const double seconds = ParseDecimal(arguments, "number of seconds");
    if (seconds < 0) {
        throw ScriptError("wait needs a number of seconds of 0 or more");
    }
    m_timers.Advance(std::llround(seconds * 1000.0));
}

// With no port open, nothing arrives: the text is lost with the device's own sending.
void ScriptRunner::Serial(std::string_view text) {
    const std::string received = Unescape(text);
    if (!m_serial.IsOpen()) {
        return;
    }
    m_serial.Queue(received);
    m_form->MSComm1_OnComm();
}

void ScriptRunner::PortFail(std::string_view arguments) {
    const std::string_view value = Trim(arguments);
    if (value != "on" && value != "off") {
        throw ScriptError("portfail takes on or off");
    }
    m_serial.SetOpenFails(value == "on");
}

// "ports all", "ports none" or "ports N [N ...]" with port numbers from 1 to 255.
void ScriptRunner::Ports(std::string_view arguments) {
    const std::vector<std::string_view> words = Words(arguments);
    if (words.size() == 1 && words[0] == "all") {
        m_ports.All();
        return;
    }
    if (words.size() == 1 && words[0] == "none") {
        m_ports.Only({});
        return;
    }
    if (words.empty()) {
        throw ScriptError("ports takes all, none or port numbers");
    }
    std::vector<int> ports;
    for (std::string_view word : words) {
        const double port = ParseDecimal(word, "port number");
        if (port < 1 || port > 255 || port != std::floor(port)) {
            throw ScriptError("not a port number from 1 to 255: \"" + std::string(word) + "\"");
        }
        ports.push_back(static_cast<int>(port));
    }
    m_ports.Only(std::move(ports));
}

void ScriptRunner::ClickCommand(std::string_view arguments) {
    std::string_view item;
    const std::string_view target = FirstWord(Trim(arguments), item);
    if (target.empty()) {
        throw ScriptError("click needs a name");
    }
    if (target.find('.') != std::string_view::npos) {
        WindowCommand("click", arguments);
        return;
    }
    if (!Trim(item).empty()) {
        throw ScriptError("click of the main form takes one name");
    }
    if (!Form().Click(target)) {
        throw ScriptError("the main form has no \"" + std::string(target) + "\"");
    }
    if (Form().ExitRequested()) {
        m_exited = true;
    }
}

void ScriptRunner::SetCommand(std::string_view arguments) {
    std::string_view text;
    const std::string_view target = FirstWord(Trim(arguments), text);
    if (target.empty()) {
        throw ScriptError("set needs a name and a text");
    }
    if (target.find('.') != std::string_view::npos) {
        WindowCommand("set", arguments);
        return;
    }
    if (!Form().SetText(target, text)) {
        throw ScriptError("the main form has no box \"" + std::string(target) + "\" that takes \"" +
                          std::string(text) + "\"");
    }
}

void ScriptRunner::DumpCommand(std::string_view arguments) {
    const std::vector<std::string_view> words = Words(arguments);
    if (!words.empty() && DriverFor(words[0]) != nullptr) {
        WindowCommand("dump", arguments);
        return;
    }
    DumpForm(words);
}

// "click W.NAME [ITEM]", "set W.NAME TEXT", "mouse W.NAME ACTION X Y", "open W", "dump W",
// "draw W".
void ScriptRunner::WindowCommand(std::string_view verb, std::string_view arguments) {
    std::string_view rest;
    const std::string_view target = FirstWord(Trim(arguments), rest);
    const std::size_t dot = target.find('.');
    const std::string_view window = target.substr(0, dot);
    const std::string_view control =
        dot == std::string_view::npos ? std::string_view{} : target.substr(dot + 1);
    const bool needsControl = verb == "click" || verb == "set" || verb == "mouse";
    if (window.empty() || (needsControl && control.empty()) ||
        (!needsControl && dot != std::string_view::npos)) {
        throw ScriptError(std::string(verb) +
                          (needsControl ? " needs WINDOW.NAME" : " needs a window name"));
    }
    WindowDriver* driver = DriverFor(window);
    if (driver == nullptr) {
        throw ScriptError("no window \"" + std::string(window) + "\"");
    }
    RunContext& run = *m_context;
    if (verb == "open") {
        driver->Open(window, false, run);
    } else if (verb == "click") {
        driver->Click(window, control, Trim(rest), run);
    } else if (verb == "set") {
        driver->Set(window, control, rest, run);
    } else if (verb == "mouse") {
        const std::vector<std::string_view> words = Words(rest);
        if (words.size() != 3 || (words[0] != "down" && words[0] != "move" && words[0] != "up")) {
            throw ScriptError("mouse needs WINDOW.NAME down|move|up X Y");
        }
        driver->Mouse(window, control, words[0], ParseDecimal(words[1], "X"),
                      ParseDecimal(words[2], "Y"), run);
    } else if (verb == "dump") {
        driver->DumpNamed(window, Words(rest), run);
    } else {
        if (!Trim(rest).empty()) {
            throw ScriptError("draw takes one window name");
        }
        driver->Draw(window, run);
    }
    if (Form().ExitRequested()) {
        m_exited = true;
    }
}

// A window opened by a menu of the main form. A modal one holds the menu's handler until it
// closes, while the script goes on: its commands, serial events and timers run meanwhile.
void ScriptRunner::OpenWindowFromForm(std::string_view window, bool modal) {
    WindowDriver* driver = DriverFor(window);
    if (driver == nullptr) {
        return;
    }
    driver->Open(window, modal, *m_context);
    if (modal && driver->LeftUnlessAddressed(window) && !NextLineAddresses(window)) {
        driver->Click(window, "close", "", *m_context);
        return;
    }
    if (modal) {
        const std::string name(window);
        RunLines([driver, name] { return !driver->IsOpen(name); });
    }
}

// True when the next command of the script (blank lines and comments skipped) is one of window
// `window`: "click WINDOW.NAME", "set WINDOW.NAME ...", "mouse WINDOW.NAME ...", "dump WINDOW
// ..." or "draw WINDOW".
bool ScriptRunner::NextLineAddresses(std::string_view window) const {
    for (std::size_t i = m_next; i < m_lines->size(); ++i) {
        const std::string_view line = Trim((*m_lines)[i]);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::string_view arguments;
        const std::string_view verb = FirstWord(line, arguments);
        std::string_view rest;
        const std::string_view target = FirstWord(Trim(arguments), rest);
        if (verb == "click" || verb == "set" || verb == "mouse") {
            return target.size() > window.size() && target.substr(0, window.size()) == window &&
                   target[window.size()] == '.';
        }
        return (verb == "dump" || verb == "draw") && target == window;
    }
    return false;
}

WindowDriver* ScriptRunner::DriverFor(std::string_view window) {
    for (const auto& driver : m_drivers) {
        if (driver->Handles(window)) {
            return driver.get();
        }
    }
    return nullptr;
}

Brizalog& ScriptRunner::Form() {
    return *m_form;
}

}  // namespace brizalog::script
