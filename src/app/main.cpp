// The desktop program: the main form Brizalog on Qt, with its serial port, timers and windows.

#include <QApplication>
#include <QMessageBox>
#include <filesystem>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "acquisition/qt/platform.h"
#include "app/desktop_dialogs.h"
#include "app/program_folder.h"
#include "app/publishing.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/options.h"
#include "catalogue/qt/splash_window.h"
#include "catalogue/version.h"
#include "ui/event_gate.h"
#include "ui/keyboard.h"
#include "ui/theme.h"
#include "ui/window_fit.h"

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Brizalog"));
    // `brizalog --dark` (or BRIZALOG_THEME=dark): Fusion with a dark palette, whatever the
    // desktop's own theme; otherwise the platform's palette, which may be dark too.
    if (brizalog::DarkThemeAsked(argc, argv)) {
        brizalog::ApplyDarkTheme(app);
    }
    brizalog::InstallKeyboardConventions();

    const std::filesystem::path folder = brizalog::ProgramFolder();

    // Settings files are replaced whole and made durable, so a power cut never tears one.
    brizalog::UsePlatformFiles();
    // Each window opens where it was last closed (windows.cfg), within the screen it opens on.
    brizalog::SetWindowPlacesFolder(folder);
    brizalog::DesktopClock clock;
    brizalog::DesktopTimers timers;
    brizalog::DesktopSerialLink serial(folder);
    brizalog::DevicePortProbe probe(folder);
    brizalog::DesktopDialogs dialogs(probe);
    dialogs.SetTimers(&timers);

    // The splash comes first and makes whatever is missing; the start waits for its click. No
    // timer runs and no port is open before it has gone, so the form is made afterwards.
    int abortFlag = 0;
    {
        brizalog::SplashWindow splash(folder, dialogs);
        splash.exec();
        abortFlag = splash.AbortFlag();
    }

    brizalog::Brizalog form(folder, {clock, timers, serial, dialogs});
    form.state().settings.AbortFlag = abortFlag;
    brizalog::MainWindow window(form);
    // A failure that ends the program from the serial event says where the choice to skip a
    // meter message cut badly is.
    serial.SetReceiveHandler([&form, &window] {
        brizalog::RunHandlerAtScreenPace([&form, &window] {
            try {
                window.ReceiveSerial();
            } catch (const brizalog::Failure& failure) {
                throw brizalog::Failure(failure.kind(), form.EndingMessage(failure.what()));
            }
        });
    });
    QObject::connect(&serial, &brizalog::DesktopSerialLink::deviceLost, &window,
                     &brizalog::MainWindow::DeviceLost);
    QObject::connect(&serial, &brizalog::DesktopSerialLink::deviceBack, &window,
                     &brizalog::MainWindow::DeviceBack);
    // The program's one-line notices (a log it cannot write, a broker it cannot reach) stand in
    // the status bar, each source's latest.
    brizalog::SetNoticeTeller([&window](std::string_view source, const std::string& text) {
        window.ShowNotice(source, text);
    });
    struct ForgetTeller {
        ~ForgetTeller() { brizalog::SetNoticeTeller(nullptr); }
    } forgetTeller;
    dialogs.Attach(&form, &window);
    bool started = false;
    brizalog::RunHandler([&] {
        form.Form_Load();
        started = true;
    });
    if (!started || brizalog::ApplicationEnding() || form.ExitRequested()) {
        return 1;
    }
    brizalog::Publishing publishing(form);
    window.show();
    return QApplication::exec();
}
