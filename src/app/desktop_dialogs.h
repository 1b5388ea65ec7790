#pragma once

#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <functional>
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
    explicit DesktopDialogs(PortProbe& probe) : m_probe(probe) {}

    // The form whose state the windows edit, and the window they stand over.
    void Attach(Brizalog* form, QWidget* parent) {
        m_form = form;
        m_parent = parent;
    }

    void ShowMessage(const std::string& text) override;
    // Opens ProgramSetup, FindComms, frmAbout and the six graph windows; the windows of the
    // monitors, the channel forms and help are not on the desktop yet, and their names open
    // nothing.
    void OpenWindow(std::string_view name, bool modal) override;

    // Called with each window just before it is shown, so a test can act on it while it is up.
    std::function<void(QWidget*)> onWindowShown;

private:
    int Exec(class QDialog& dialog);

    PortProbe& m_probe;
    Brizalog* m_form = nullptr;
    QPointer<QWidget> m_parent;
};

}  // namespace brizalog
