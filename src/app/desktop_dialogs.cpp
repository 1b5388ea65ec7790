#include "app/desktop_dialogs.h"

#include <QApplication>
#include <QMessageBox>

#include "acquisition/brizalog.h"
#include "acquisition/qt/find_comms_window.h"
#include "help/qt/about_window.h"
#include "help/qt/help_window.h"
#include "setup/qt/calibration_window.h"
#include "setup/qt/channel_setup_window.h"
#include "setup/qt/program_setup_window.h"
#include "setup/qt/small_input_window.h"
#include "ui/qt_text.h"

namespace brizalog {

namespace {

// Where no timers were given, a window's timers never count down.
class NoTimers : public TimerBackend {
public:
    void Restart(FormTimer&) override {}
    void Stop(FormTimer&) override {}
};

}  // namespace

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

void DesktopDialogs::OpenWindow(std::string_view name, bool /*modal*/) {
    if (m_form == nullptr) {
        return;
    }
    if (name == "ProgramSetup") {
        ProgramSetupWindow window(m_form->state(), m_form->programFolder(), *this, m_probe,
                                  m_parent);
        window.Load();
        Exec(window);
    } else if (name == "FindComms") {
        FindCommsWindow window(m_form->state().settings, m_probe, m_parent);
        Exec(window);
    } else if (name == "frmAbout") {
        AboutWindow window(m_parent);
        Exec(window);
    } else {
        OpenSetupWindow(name);
    }
}

// The channel forms, the small input windows they open over themselves, CALIBRATION and help.
// A small input window stands over the window that is active when it opens: its channel form.
void DesktopDialogs::OpenSetupWindow(std::string_view name) {
    SharedState& state = m_form->state();
    QWidget* over = Foremost();
    if (ChannelSetup::IsChannelSetup(name)) {
        ChannelSetupWindow window(name, state, m_form->programFolder(), *this, over);
        window.Load();
        Exec(window);
    } else if (SmallInput::IsSmallInput(name)) {
        SmallInputWindow window(name, state, over);
        window.Load();
        Exec(window);
    } else if (name == CalibrationForm::kWindow) {
        NoTimers none;
        CalibrationWindow window(state, m_form->programFolder(), *this,
                                 m_timers != nullptr ? *m_timers : none, over);
        window.Load();
        Exec(window);
    } else if (name == HelpViewer::kWindow) {
        HelpWindow window(m_form->programFolder(), *this, over);
        window.Load();
        Exec(window);
    }
}

}  // namespace brizalog
