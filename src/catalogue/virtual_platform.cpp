#include "catalogue/virtual_platform.h"

#include <limits>

#include "catalogue/failure.h"

namespace brizalog {

VirtualTimers::Entry& VirtualTimers::EntryOf(FormTimer& timer) {
    for (Entry& entry : m_entries) {
        if (entry.timer == &timer) {
            return entry;
        }
    }
    m_entries.push_back({&timer, false, 0});
    return m_entries.back();
}

void VirtualTimers::Restart(FormTimer& timer) {
    Entry& entry = EntryOf(timer);
    entry.running = timer.Interval() > 0;
    entry.due = m_now + timer.Interval();
}

void VirtualTimers::Stop(FormTimer& timer) {
    EntryOf(timer).running = false;
}

void VirtualTimers::Advance(long long milliseconds) {
    const long long end = m_now + milliseconds;
    for (;;) {
        // The earliest countdown that runs out by `end`; ties go to the first timer seen.
        Entry* next = nullptr;
        for (Entry& entry : m_entries) {
            if (entry.running && entry.due <= end && (next == nullptr || entry.due < next->due)) {
                next = &entry;
            }
        }
        if (next == nullptr) {
            break;
        }
        m_clock.Set(AddMilliseconds(m_clock.Now(), next->due - m_now));
        m_now = next->due;
        // A periodic timer counts down again from now; its handler may change that.
        next->due = m_now + next->timer->Interval();
        next->running = next->timer->Interval() > 0;
        FormTimer* timer = next->timer;  // the handler may add entries
        timer->Fire();
    }
    m_clock.Set(AddMilliseconds(m_clock.Now(), end - m_now));
    m_now = end;
}

void VirtualSerial::Open(int portNumber, const std::string& settings) {
    m_port = portNumber;
    m_settings = settings;
    if (m_openFails) {
        m_open = false;
        throw Failure(FailureKind::PortFailure);
    }
    m_open = true;
}

std::string VirtualSerial::ReadAll() {
    std::string text;
    text.swap(m_queued);
    return text;
}

}  // namespace brizalog
