#pragma once

#include <functional>
#include <string>
#include <vector>

#include "catalogue/services.h"

namespace brizalog {

// A platform without a window system: a clock that moves only when told, a schedule of timer
// countdowns on that clock, a serial port fed by hand, and message boxes that answer themselves.
// The scenario runner and the tests run the core on it; nothing here sleeps on a real clock.

class VirtualClock : public Clock {
public:
    LocalDateTime Now() const override { return m_now; }
    void Set(const LocalDateTime& now) { m_now = now; }

private:
    LocalDateTime m_now;
};

class VirtualTimers : public TimerBackend {
public:
    explicit VirtualTimers(VirtualClock& clock) : m_clock(clock) {}

    void Restart(FormTimer& timer) override;
    void Stop(FormTimer& timer) override;

    // Moves the clock forward by `milliseconds`, firing every countdown that runs out on the way
    // in time order. Countdowns that run out at the same instant fire in the order in which their
    // timers were first seen (the main form attaches Timer1, Timer2, Timer3 in that order).
    void Advance(long long milliseconds);

private:
    struct Entry {
        FormTimer* timer;
        bool running;
        long long due;  // milliseconds on the schedule's own time line
    };
    Entry& EntryOf(FormTimer& timer);

    VirtualClock& m_clock;
    std::vector<Entry> m_entries;
    long long m_now = 0;
};

class VirtualSerial : public SerialLink {
public:
    void Open(int portNumber, const std::string& settings) override;
    void Close() override { m_open = false; }
    bool IsOpen() const override { return m_open; }
    std::string ReadAll() override;
    void ClearReceiveCount() override {}

    // Text waiting at the port for the next serial event.
    void Queue(const std::string& text) { m_queued += text; }
    // From now on, opening fails (true) or succeeds (false).
    void SetOpenFails(bool fails) { m_openFails = fails; }
    int portNumber() const { return m_port; }
    const std::string& settings() const { return m_settings; }

private:
    std::string m_queued;
    std::string m_settings;
    int m_port = 0;
    bool m_open = false;
    bool m_openFails = false;
};

// Message boxes are answered OK at once; each one and each opened window is told to a listener.
class VirtualDialogs : public Dialogs {
public:
    std::function<void(const std::string&)> onMessage;
    std::function<void(std::string_view, bool)> onOpenWindow;

    void ShowMessage(const std::string& text) override {
        messages.push_back(text);
        if (onMessage) {
            onMessage(text);
        }
    }
    void OpenWindow(std::string_view name, bool modal) override {
        if (onOpenWindow) {
            onOpenWindow(name, modal);
        }
    }

    std::vector<std::string> messages;
};

}  // namespace brizalog
