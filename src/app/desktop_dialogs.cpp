#include "app/desktop_dialogs.h"

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>

#include "acquisition/brizalog.h"
#include "acquisition/qt/find_comms_window.h"
#include "acquisition/qt/platform.h"
#include "displays/monitor_window.h"
#include "displays/qt/monitor_view.h"
#include "energy/qt/energy_window.h"
#include "help/qt/about_window.h"
#include "help/qt/help_window.h"
#include "help/qt/manual_window.h"
#include "history/qt/graph_window_view.h"
#include "setup/qt/calibration_window.h"
#include "setup/qt/channel_setup_window.h"
#include "setup/qt/options_window.h"
#include "setup/qt/program_setup_window.h"
#include "setup/qt/small_input_window.h"
#include "ui/qt_text.h"

namespace brizalog {

namespace {

// Runs `closing` when the watched window is about to close.
class CloseWatch : public QObject {
public:
    explicit CloseWatch(std::function<void()> closing) : m_closing(std::move(closing)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Close) {
            m_closing();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_closing;
};

}  // namespace

DesktopDialogs::DesktopDialogs(PortProbe& probe) : m_probe(probe) {}

// The monitors go before the timers that they are attached to.
DesktopDialogs::~DesktopDialogs() {
    for (auto& [name, window] : m_monitors) {
        delete window.data();
    }
}

QWidget* DesktopDialogs::Foremost() const {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : m_parent.data();
}

int DesktopDialogs::Exec(QDialog& dialog) {
    if (onWindowShown) {
        onWindowShown(&dialog);
    }
    return dialog.exec();
}

void DesktopDialogs::ShowMessage(const std::string& text) {
    // Over the window that asked: a channel form's message stands over the form, not behind it.
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Brizalog"), MessageText(text),
                    QMessageBox::Ok, Foremost());
    Exec(box);
}

// Every window the main form opens, by its name: a row names one window, or a family of windows
// that one opener serves. Adding a window is one row.
const std::vector<DesktopDialogs::Opener>& DesktopDialogs::Openers() {
    const auto named = [](std::string_view window) {
        return [window](std::string_view name) { return name == window; };
    };
    static const std::vector<Opener> openers = {
        {named("ProgramSetup"), &DesktopDialogs::OpenProgramSetup},
        {named("FindComms"), &DesktopDialogs::OpenFindComms},
        {named("frmAbout"), &DesktopDialogs::OpenAbout},
        // GraphBZ, GraphDEMO, GraphRE, GraphML, GraphCC and GraphCC_QX.
        {[](std::string_view name) { return FindGraphMember(name) != nullptr; },
         &DesktopDialogs::OpenGraphWindow},
        {IsMonitorWindow, &DesktopDialogs::OpenMonitorWindow},
        {ChannelSetup::IsChannelSetup, &DesktopDialogs::OpenChannelSetup},
        {SmallInput::IsSmallInput, &DesktopDialogs::OpenSmallInput},
        {named(CalibrationForm::kWindow), &DesktopDialogs::OpenCalibration},
        {named(HelpViewer::kWindow), &DesktopDialogs::OpenHelp},
        {named(ManualViewer::kWindow), &DesktopDialogs::OpenManual},
        {named(OptionsForm::kWindow), &DesktopDialogs::OpenOptions},
        {named("Energy"), &DesktopDialogs::OpenEnergy},
    };
    return openers;
}

void DesktopDialogs::OpenWindow(std::string_view name, bool /*modal*/) {
    if (m_form == nullptr) {
        return;
    }
    for (const Opener& opener : Openers()) {
        if (opener.names(name)) {
            (this->*opener.open)(name);
            return;
        }
    }
}

void DesktopDialogs::OpenProgramSetup(std::string_view /*name*/) {
    ProgramSetupWindow window(m_form->state(), m_form->programFolder(), *this, m_probe, m_parent);
    window.Load();
    Exec(window);
}

void DesktopDialogs::OpenFindComms(std::string_view /*name*/) {
    FindCommsWindow window(m_form->state().settings, m_probe, m_parent);
    Exec(window);
}

void DesktopDialogs::OpenAbout(std::string_view /*name*/) {
    AboutWindow window(m_parent);
    Exec(window);
}

// Each opening is a fresh window, which loads and shows today's log when there is one.
void DesktopDialogs::OpenGraphWindow(std::string_view name) {
    GraphWindowView window(*FindGraphMember(name), m_form->state(), m_form->programFolder(),
                           m_form->clock(), *this, m_parent);
    window.Load();
    Exec(window);
}

TimerBackend& DesktopDialogs::WindowTimers() {
    if (m_timers == nullptr) {
        m_ownTimers = std::make_unique<DesktopTimers>();
        m_timers = m_ownTimers.get();
    }
    return *m_timers;
}

// ---- Monitors ----------------------------------------------------------------------------

// A monitor that is open already is only brought to the front, as the user asked to see it; its
// opening does not run again (a plot keeps the mode it opened with).
void DesktopDialogs::OpenMonitorWindow(std::string_view name) {
    if (BroughtToFront(name)) {
        return;
    }
    MonitorView* view =
        MakeMonitorView(name, m_form->state(), *this, m_form->PlotMode, WindowTimers());
    if (view == nullptr) {
        return;
    }
    m_monitors[std::string(name)] = view;
    view->Load();
    if (onWindowShown) {
        onWindowShown(view);
    }
    view->show();
}

void DesktopDialogs::OpenEnergy(std::string_view name) {
    if (BroughtToFront(name)) {
        return;
    }
    const LocalDateTime now = m_form->clock().Now();
    auto* window = new EnergyWindow(m_form->state(), m_form->programFolder(),
                                    {now.year, now.month, now.day}, m_parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    m_monitors[std::string(name)] = window;
    if (onWindowShown) {
        onWindowShown(window);
    }
    window->show();
    window->Load();
}

// A window that stands beside the main window (a monitor, Energy) and is open already is only
// brought to the front. Otherwise the main window's close is watched, so that closing it closes
// every such window.
bool DesktopDialogs::BroughtToFront(std::string_view name) {
    if (QWidget* open = OpenMonitor(name)) {
        open->raise();
        open->activateWindow();
        return true;
    }
    if (!m_closeWatch && m_parent) {
        m_closeWatch = std::make_unique<CloseWatch>([this] { CloseMonitors(); });
        m_parent->installEventFilter(m_closeWatch.get());
    }
    return false;
}

QWidget* DesktopDialogs::OpenMonitor(std::string_view name) const {
    const auto it = m_monitors.find(name);
    if (it == m_monitors.end() || it->second.isNull() || !it->second->isVisible()) {
        return nullptr;
    }
    return it->second.data();
}

void DesktopDialogs::CloseMonitors() {
    for (auto& [name, window] : m_monitors) {
        if (!window.isNull()) {
            window->close();
        }
    }
}

// The channel forms, the small input windows they open over themselves, CALIBRATION and help
// stand over the window that is active when they open: a small input window over its channel form.
void DesktopDialogs::OpenChannelSetup(std::string_view name) {
    ChannelSetupWindow window(name, m_form->state(), m_form->programFolder(), *this, Foremost());
    window.Load();
    Exec(window);
}

void DesktopDialogs::OpenSmallInput(std::string_view name) {
    SmallInputWindow window(name, m_form->state(), Foremost());
    window.Load();
    Exec(window);
}

void DesktopDialogs::OpenCalibration(std::string_view /*name*/) {
    CalibrationWindow window(m_form->state(), m_form->programFolder(), *this, WindowTimers(),
                             Foremost());
    window.Load();
    Exec(window);
}

void DesktopDialogs::OpenHelp(std::string_view /*name*/) {
    HelpWindow window(m_form->programFolder(), *this, Foremost());
    window.Load();
    Exec(window);
}

// The manual stands beside the main window rather than over it: one window, brought to the front
// when asked for again. It is found beside the program in a build, else where it was installed.
void DesktopDialogs::OpenManual(std::string_view /*name*/) {
    if (m_manual) {
        m_manual->raise();
        m_manual->activateWindow();
        return;
    }
#ifdef BRIZALOG_INSTALL_DOCDIR
    const std::filesystem::path installed = BRIZALOG_INSTALL_DOCDIR;
#else
    const std::filesystem::path installed;
#endif
    const std::filesystem::path programDir = QCoreApplication::applicationDirPath().toStdString();
    auto* window = new ManualWindow(ManualFolders(programDir, installed), m_parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->Load();
    m_manual = window;
    if (onWindowShown) {
        onWindowShown(window);
    }
    window->show();
}

// Brizalog's own choices; the main form reads them again when the window has closed.
void DesktopDialogs::OpenOptions(std::string_view /*name*/) {
    OptionsWindow window(m_form->programFolder(), *this, Foremost());
    window.Load();
    Exec(window);
}

}  // namespace brizalog
