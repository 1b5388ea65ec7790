#include "app/desktop_dialogs.h"

#include <QMessageBox>

#include "acquisition/brizalog.h"
#include "acquisition/qt/find_comms_window.h"
#include "help/qt/about_window.h"
#include "setup/qt/program_setup_window.h"
#include "ui/qt_text.h"

namespace brizalog {

int DesktopDialogs::Exec(QDialog& dialog) {
    if (onWindowShown) {
        onWindowShown(&dialog);
    }
    return dialog.exec();
}

void DesktopDialogs::ShowMessage(const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Brizalog"), MessageText(text),
                    QMessageBox::Ok, m_parent);
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
    }
}

}  // namespace brizalog
