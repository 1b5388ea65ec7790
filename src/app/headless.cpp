#include "app/headless.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDateTime>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace brizalog {

namespace {

// The pipe of StopSignals: [0] read by the event loop, [1] written by the handler.
int g_signalPipe[2] = {-1, -1};

extern "C" void OnStopSignal(int signal) {
    const int saved = errno;
    const unsigned char byte = static_cast<unsigned char>(signal);
    // A full pipe already holds a request to stop; the byte is not needed.
    [[maybe_unused]] const ssize_t written = ::write(g_signalPipe[1], &byte, 1);
    errno = saved;
}

}  // namespace

void TellOnStandardError(const std::string& text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            // CR LF, a lone CR or a lone LF, and a run of them (an empty line between two),
            // become one separator.
            while (i + 1 < text.size() && (text[i + 1] == '\r' || text[i + 1] == '\n')) {
                ++i;
            }
            line += "  ";
        } else {
            line += text[i];
        }
    }
    const QByteArray now =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toLatin1();
    std::fprintf(stderr, "%s  %s\n", now.constData(), line.c_str());
    std::fflush(stderr);
}

void StandardErrorDialogs::ShowMessage(const std::string& text) {
    ++m_count;
    TellOnStandardError(text);
}

StopSignals::StopSignals(std::function<void(int)> stop, QObject* parent)
    : QObject(parent), m_stop(std::move(stop)) {
    if (::pipe2(g_signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(g_signalPipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &StopSignals::Drain);
    struct sigaction action {};
    action.sa_handler = OnStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
}

StopSignals::~StopSignals() {
    ::signal(SIGTERM, SIG_DFL);
    ::signal(SIGINT, SIG_DFL);
    m_notifier.reset();
    for (int& end : g_signalPipe) {
        if (end >= 0) {
            ::close(end);
            end = -1;
        }
    }
}

void StopSignals::Drain() {
    unsigned char byte = 0;
    int last = 0;
    while (::read(g_signalPipe[0], &byte, 1) == 1) {
        last = byte;
    }
    if (last != 0 && m_stop) {
        m_stop(last);
    }
}

}  // namespace brizalog
