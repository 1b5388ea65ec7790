#include "app/desktop_dialogs.h"

#include <QMessageBox>

#include "acquisition/brizalog.h"
#include "acquisition/qt/find_comms_window.h"
#include "help/qt/about_window.h"
#include "history/qt/graph_window_view.h"
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
    } else if (const GraphMember* member = FindGraphMember(name)) {
        // GraphBZ, GraphDEMO, GraphRE, GraphML, GraphCC and GraphCC_QX: each opening is a fresh
        // window, which loads and shows today's log when there is one.
        GraphWindowView window(*member, m_form->state(), m_form->programFolder(), m_form->clock(),
                               *this, m_parent);
        window.Load();
        Exec(window);
    }
}

}  // namespace brizalog
