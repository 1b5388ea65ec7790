#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "catalogue/local_time.h"

namespace brizalog {

// Platform services that the core calls through these small interfaces. The desktop program
// maps them to Qt; tests and the scenario runner to a virtual clock and schedule.

class Clock {
public:
    virtual ~Clock() = default;
    // The local date and time now.
    virtual LocalDateTime Now() const = 0;
};

class FormTimer;

// Runs the countdowns of form timers. Restart starts a fresh countdown of the timer's interval
// (an interval of 0 runs none); Stop ends it.
class TimerBackend {
public:
    virtual ~TimerBackend() = default;
    virtual void Restart(FormTimer& timer) = 0;
    virtual void Stop(FormTimer& timer) = 0;
};

// A timer of a form. Its state lives here and its countdown on the platform: enabling a disabled
// timer starts a fresh countdown, enabling an enabled one changes nothing, and setting the
// interval of an enabled timer restarts its countdown. An interval of 0 never ticks.
class FormTimer {
public:
    FormTimer(std::string name, int intervalMs, bool enabled)
        : m_name(std::move(name)), m_interval(intervalMs), m_enabled(enabled) {}
    FormTimer(const FormTimer&) = delete;
    FormTimer& operator=(const FormTimer&) = delete;

    const std::string& name() const { return m_name; }
    bool Enabled() const { return m_enabled; }
    int Interval() const { return m_interval; }

    void Enable() { SetEnabled(true); }
    void Disable() { SetEnabled(false); }
    void SetEnabled(bool on) {
        if (on == m_enabled) {
            return;
        }
        m_enabled = on;
        if (m_backend != nullptr) {
            on ? m_backend->Restart(*this) : m_backend->Stop(*this);
        }
    }
    void SetInterval(int intervalMs) {
        m_interval = intervalMs;
        if (m_enabled && m_backend != nullptr) {
            m_backend->Restart(*this);
        }
    }

    // The handler that runs at each tick.
    void SetHandler(std::function<void()> handler) { m_handler = std::move(handler); }
    // Called by the backend when the countdown has run out.
    void Fire() {
        if (m_enabled && m_handler) {
            m_handler();
        }
    }
    // Hands the timer to a backend, which starts its countdown if the timer is enabled.
    void Attach(TimerBackend* backend) {
        m_backend = backend;
        if (m_backend != nullptr && m_enabled) {
            m_backend->Restart(*this);
        }
    }
    void Detach() {
        if (m_backend != nullptr) {
            m_backend->Stop(*this);
        }
        m_backend = nullptr;
    }

private:
    std::string m_name;
    int m_interval;
    bool m_enabled;
    std::function<void()> m_handler;
    TimerBackend* m_backend = nullptr;
};

// The serial port of the main form (MSComm1). It never transmits. Received text is delivered as
// calls of the form's serial handler on the user-interface thread, which then reads it here.
class SerialLink {
public:
    virtual ~SerialLink() = default;
    // Opens port `portNumber` with line settings such as "4800,N,8,1". A port that cannot be
    // opened is the failure PortFailure, with the platform's message.
    virtual void Open(int portNumber, const std::string& settings) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    // Everything queued at the port.
    virtual std::string ReadAll() = 0;
    // Sets the receive count to 0, discarding whatever arrived since the last read.
    virtual void ClearReceiveCount() = 0;
};

// Message boxes and other windows.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Shows a message with an OK button and returns when it is answered. Serial events and
    // timers go on while it is up.
    virtual void ShowMessage(const std::string& text) = 0;
    // Opens the window `name` (for instance "ProgramSetup", "GraphBZ"), modally or not. A modal
    // window returns when it has closed; serial events and timers go on behind it.
    virtual void OpenWindow(std::string_view name, bool modal) = 0;
};

// The platform services a form is built with.
struct Services {
    Clock& clock;
    TimerBackend& timers;
    SerialLink& serial;
    Dialogs& dialogs;
};

}  // namespace brizalog
