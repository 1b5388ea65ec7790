#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/local_time.h"

namespace brizalog {

// An instant as the desktop sees it: seconds on a clock that only moves forward (for rates and
// silences, whatever the wall clock does) and the wall clock's time (for what the user reads).
struct Moment {
    double seconds = 0;
    LocalDateTime wall;
};

// What the main window's status bar says, and when the live readings are stale. The window title
// keeps the form's own status text; this is the desktop's addition beside it: which device the
// port points at, whether logging writes and to which file, when the last frame came and how
// many come per second, a device that has gone, and the program's one-line notices. Its texts
// are UTF-8 (they hold "→" and "—"), unlike the form's own texts.
class StatusLine {
public:
    // Frames per second are counted over this many seconds.
    static constexpr double kRateWindow = 10;
    // Readings are stale after this many logging intervals without a frame, and never sooner
    // than kShortestSilence seconds: a board that sends every 2 s is not stale after 3 s.
    static constexpr int kStaleIntervals = 3;
    static constexpr double kShortestSilence = 10;

    explicit StatusLine(const Moment& start) : m_start(start) {}

    // Port number N and the device it resolves to ("" when none does).
    void SetPort(int portNumber, std::string device);
    void DeviceLost(const Moment& at);
    void DeviceBack();
    // `count` frames have been cut and calculated at `at`.
    void Frames(long count, const Moment& at);
    // Whether logging writes, and the names of the day's files it writes ("BZ_2026_03_07.txt").
    void SetLogging(bool active, std::vector<std::string> files);
    // The latest notice of `source`; an empty text withdraws it.
    void SetNotice(std::string_view source, const std::string& text);

    // "COM3 → /dev/ttyUSB0", "COM3 → simulator" (a pseudo-terminal, as the board simulator
    // makes), "COM3 → no device".
    std::string PortText() const;
    // "logging to BZ_2026_03_07.txt" (with "+ 2 more" in system 8), or "not logging".
    std::string LoggingText() const;
    // "last frame 14:05:09", or "no frame yet".
    std::string LastFrameText() const;
    // "4.0 frames/s": the frames of the last kRateWindow seconds, over that window (or over the
    // time since start when that is shorter).
    std::string RateText(double now) const;
    // "device unplugged — waiting since 14:05:09", or empty while the device is there.
    std::string UnpluggedText() const;
    // Every source's latest notice, "log: cannot write …", in the order of their sources' names.
    std::vector<std::string> Notices() const;

    // "no data since 14:05:09" once no frame has come for kStaleIntervals logging intervals of
    // `logDelay` seconds (and kShortestSilence at least), counted from the last frame or, before
    // the first, from the start; nothing while readings are fresh.
    std::optional<std::string> StaleNote(double now, int logDelay) const;

private:
    void Forget(double now) const;

    Moment m_start;
    int m_portNumber = 0;
    std::string m_device;
    std::optional<Moment> m_lost;
    std::optional<Moment> m_lastFrame;
    // Frames counted per tenth of a second, oldest first, within the rate window.
    mutable std::deque<std::pair<long long, long>> m_counts;
    bool m_logging = false;
    std::vector<std::string> m_files;
    std::map<std::string, std::string, std::less<>> m_notices;
};

}  // namespace brizalog
