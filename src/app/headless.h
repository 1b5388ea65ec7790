#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <string>

#include "catalogue/services.h"

namespace brizalog {

// The program without windows: each message box is one line on standard error, led by the local
// date and time, and the OK is taken at once. The message's own lines are joined by two blanks,
// so that a journal keeps each message on one line. No window ever opens.
class StandardErrorDialogs : public Dialogs {
public:
    void ShowMessage(const std::string& text) override;
    void OpenWindow(std::string_view /*name*/, bool /*modal*/) override {}
    // How many messages were told since the start.
    int Count() const { return m_count; }

private:
    int m_count = 0;
};

// One line on standard error: the local date and time, two blanks, `text` with its line ends
// made into two blanks.
void TellOnStandardError(const std::string& text);

// SIGTERM and SIGINT as a request to stop, delivered on the event loop. The signal handler only
// writes one byte into a pipe; the loop reads it and runs `stop` like any other event.
class StopSignals : public QObject {
    Q_OBJECT

public:
    explicit StopSignals(std::function<void(int signal)> stop, QObject* parent = nullptr);
    ~StopSignals() override;

private:
    void Drain();

    std::function<void(int)> m_stop;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

}  // namespace brizalog
