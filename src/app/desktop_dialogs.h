#pragma once

#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "acquisition/port_discovery.h"
#include "catalogue/services.h"

namespace brizalog {

class Brizalog;

// Message boxes and the windows that the main form opens, on Qt. A modal window or a message
// box runs its own event loop, which goes on delivering serial arrivals and timer ticks: the
// data path never waits for the user.
class DesktopDialogs : public Dialogs {
public:
    explicit DesktopDialogs(PortProbe& probe);
    ~DesktopDialogs() override;

    // The form whose state the windows edit, and the window they stand over.
    void Attach(Brizalog* form, QWidget* parent) {
        m_form = form;
        m_parent = parent;
    }

    void ShowMessage(const std::string& text) override;
    // Opens ProgramSetup, FindComms, frmAbout and the monitors; the windows of the graphs, the
    // channel forms and help are not on the desktop yet, and their names open nothing.
    void OpenWindow(std::string_view name, bool modal) override;

    // The timers that the monitors' own timers run on; by default QTimers of their own. Tests
    // give a virtual schedule.
    void SetMonitorTimers(TimerBackend* timers) { m_monitorTimers = timers; }
    // The monitor window `name` while it is open, else null.
    QWidget* OpenMonitor(std::string_view name) const;

    // Called with each window just before it is shown, so a test can act on it while it is up.
    std::function<void(QWidget*)> onWindowShown;

private:
    int Exec(class QDialog& dialog);
    // Monitors are not modal: each opens beside the main window and stays until it is closed,
    // or until the main window closes, which closes them all.
    void OpenMonitorWindow(std::string_view name);
    void CloseMonitors();

    PortProbe& m_probe;
    Brizalog* m_form = nullptr;
    QPointer<QWidget> m_parent;

    std::unique_ptr<TimerBackend> m_ownTimers;
    TimerBackend* m_monitorTimers = nullptr;
    std::map<std::string, QPointer<QWidget>, std::less<>> m_monitors;
    std::unique_ptr<QObject> m_closeWatch;  // closes the monitors with the main window
};

}  // namespace brizalog
