#include "acquisition/status_line.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace brizalog {

void StatusLine::SetPort(int portNumber, std::string device) {
    m_portNumber = portNumber;
    m_device = std::move(device);
}

void StatusLine::DeviceLost(const Moment& at) {
    if (!m_lost) {
        m_lost = at;
    }
}

void StatusLine::DeviceBack() {
    m_lost.reset();
}

void StatusLine::Frames(long count, const Moment& at) {
    if (count <= 0) {
        return;
    }
    m_lastFrame = at;
    const auto tenth = static_cast<long long>(std::floor(at.seconds * 10));
    if (!m_counts.empty() && m_counts.back().first == tenth) {
        m_counts.back().second += count;
    } else {
        m_counts.emplace_back(tenth, count);
    }
    Forget(at.seconds);
}

void StatusLine::Forget(double now) const {
    const auto oldest = static_cast<long long>(std::floor((now - kRateWindow) * 10));
    while (!m_counts.empty() && m_counts.front().first < oldest) {
        m_counts.pop_front();
    }
}

void StatusLine::SetLogging(bool active, std::vector<std::string> files) {
    m_logging = active;
    m_files = std::move(files);
}

void StatusLine::SetNotice(std::string_view source, const std::string& text) {
    if (text.empty()) {
        if (const auto it = m_notices.find(source); it != m_notices.end()) {
            m_notices.erase(it);
        }
        return;
    }
    m_notices[std::string(source)] = text;
}

std::string StatusLine::PortText() const {
    std::string device = m_device;
    if (device.empty()) {
        device = "no device";
    } else if (device.rfind("/dev/pts/", 0) == 0) {
        device = "simulator";
    }
    return "COM" + std::to_string(m_portNumber) + " \u2192 " + device;
}

std::string StatusLine::LoggingText() const {
    if (!m_logging || m_files.empty()) {
        return "not logging";
    }
    std::string text = "logging to " + m_files.front();
    if (m_files.size() > 1) {
        text += " + " + std::to_string(m_files.size() - 1) + " more";
    }
    return text;
}

std::string StatusLine::LastFrameText() const {
    return m_lastFrame ? "last frame " + LongTime(m_lastFrame->wall) : "no frame yet";
}

std::string StatusLine::RateText(double now) const {
    Forget(now);
    long frames = 0;
    for (const auto& [tenth, count] : m_counts) {
        frames += count;
    }
    const double window = std::clamp(now - m_start.seconds, 1.0, kRateWindow);
    char text[32];
    std::snprintf(text, sizeof text, "%.1f frames/s", static_cast<double>(frames) / window);
    return text;
}

std::string StatusLine::UnpluggedText() const {
    return m_lost ? "device unplugged \u2014 waiting since " + LongTime(m_lost->wall) : "";
}

std::vector<std::string> StatusLine::Notices() const {
    std::vector<std::string> notices;
    for (const auto& [source, text] : m_notices) {
        notices.push_back(source + ": " + text);
    }
    return notices;
}

std::optional<std::string> StatusLine::StaleNote(double now, int logDelay) const {
    const Moment& since = m_lastFrame ? *m_lastFrame : m_start;
    const double silence = std::max(kShortestSilence, double(kStaleIntervals) * logDelay);
    if (now - since.seconds < silence) {
        return std::nullopt;
    }
    return "no data since " + LongTime(since.wall);
}

}  // namespace brizalog
