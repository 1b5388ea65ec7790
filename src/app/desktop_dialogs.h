#pragma once

#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

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

    // The countdowns of the own timers of the windows opened here (the monitors', CALIBRATION's);
    // by default QTimers of the dialogs' own. Tests give a virtual schedule.
    void SetTimers(TimerBackend* timers) { m_timers = timers; }

    void ShowMessage(const std::string& text) override;
    // Opens ProgramSetup, FindComms, frmAbout, the monitors, the six graph windows, the channel
    // forms, their small input windows, CALIBRATION and the help viewer info.
    void OpenWindow(std::string_view name, bool modal) override;

    // The monitor window `name` while it is open, else null.
    QWidget* OpenMonitor(std::string_view name) const;

    // Called with each window just before it is shown, so a test can act on it while it is up.
    std::function<void(QWidget*)> onWindowShown;

private:
    // A row of the table of windows: which names it opens, and how.
    struct Opener {
        std::function<bool(std::string_view name)> names;
        void (DesktopDialogs::*open)(std::string_view name);
    };
    static const std::vector<Opener>& Openers();

    int Exec(class QDialog& dialog);
    void OpenProgramSetup(std::string_view name);
    void OpenFindComms(std::string_view name);
    void OpenAbout(std::string_view name);
    void OpenGraphWindow(std::string_view name);
    void OpenChannelSetup(std::string_view name);
    void OpenSmallInput(std::string_view name);
    void OpenCalibration(std::string_view name);
    void OpenHelp(std::string_view name);
    void OpenManual(std::string_view name);
    void OpenOptions(std::string_view name);
    // Monitors are not modal: each opens beside the main window and stays until it is closed,
    // or until the main window closes, which closes them all.
    void OpenMonitorWindow(std::string_view name);
    // The Energy window is not modal either, and closes with the main window as the monitors do.
    void OpenEnergy(std::string_view name);
    void CloseMonitors();
    // True when the window `name` was open and is now in front; else prepares its opening.
    bool BroughtToFront(std::string_view name);
    // The modal window on top, or the main window when none is up.
    QWidget* Foremost() const;
    // The timers given by SetTimers, or QTimers of the dialogs' own.
    TimerBackend& WindowTimers();

    PortProbe& m_probe;
    Brizalog* m_form = nullptr;
    QPointer<QWidget> m_parent;

    std::unique_ptr<TimerBackend> m_ownTimers;
    TimerBackend* m_timers = nullptr;
    std::map<std::string, QPointer<QWidget>, std::less<>> m_monitors;
    QPointer<QWidget> m_manual;             // the manual, while it is open
    std::unique_ptr<QObject> m_closeWatch;  // closes the monitors with the main window
};

}  // namespace brizalog
