#pragma once

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "app/desktop_dialogs.h"
#include "support/virtual_desk.h"

namespace brizalog::testing {

// The main window and its windows on the desktop's own opener, over the virtual platform: a test
// acts on each window from onWindowShown while it is up, modal levels included. The windows'
// timers count down on the virtual schedule.
struct WindowDesk : VirtualDesk {
    class NoPorts : public PortProbe {
    public:
        bool commAvailable(int) override { return false; }
    };

    WindowDesk() : desktop(noPorts) {}
    // The ports of `probe` are the ones found.
    explicit WindowDesk(PortProbe& probe) : desktop(probe) {}

    void StartOnDesktop() {
        form = std::make_unique<Brizalog>(folder, Services{clock, timers, serial, desktop});
        window = std::make_unique<MainWindow>(*form);
        desktop.Attach(form.get(), window.get());
        desktop.SetTimers(&timers);
        form->Form_Load();
        window->Render();
    }

    // `act` runs on each window that the desktop opens, once the window's modal loop runs.
    void OnEachWindow(std::function<void(QWidget*)> act) {
        desktop.onWindowShown = [act = std::move(act)](QWidget* window) {
            QTimer::singleShot(0, window, [act, window] { act(window); });
        };
    }

    NoPorts noPorts;
    DesktopDialogs desktop;
};

template <typename T>
T* Child(QWidget* window, const QString& name) {
    T* child = window->findChild<T*>(name);
    if (child == nullptr) {
        qFatal("no control %s", qPrintable(name));
    }
    return child;
}
template <typename T>
T* Child(QWidget* window, const char* name) {
    return Child<T>(window, QString::fromLatin1(name));
}

// When `window` is a message box: keeps its text in `told`, answers OK and gives true.
inline bool AnswerMessage(QWidget* window, QString& told) {
    auto* box = qobject_cast<QMessageBox*>(window);
    if (box == nullptr) {
        return false;
    }
    told = box->text();
    box->accept();
    return true;
}

// With BRIZALOG_SHOTS set to a folder, the window's picture is kept there under `name`: the
// screenshots of the README are taken so.
inline void KeepPicture(QWidget* window, const char* name) {
    const QByteArray folder = qgetenv("BRIZALOG_SHOTS");
    if (folder.isEmpty()) {
        return;
    }
    QApplication::processEvents();
    window->grab().save(QDir(QString::fromLocal8Bit(folder)).filePath(QString::fromLatin1(name)));
}

}  // namespace brizalog::testing
