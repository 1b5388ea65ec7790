#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>
#include <filesystem>
#include <string>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "acquisition/qt/platform.h"
#include "app/desktop_dialogs.h"
#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "ui/event_gate.h"

namespace brizalog::testing {

// Provisions `folder` as an installation of system 1 named `name` that reads port `port` and
// logs every second from its start; gives the settings written.
inline Settings ProvisionLoggingFolder(const std::filesystem::path& folder, int port,
                                       std::string name) {
    ProvisionProgramFolder(folder);
    Settings settings;
    settings.PortNumber = port;
    settings.BaudRate = 4800;
    settings.LogDelay = 1;
    settings.LogOn = 1;
    settings.WSUnits = "m/s";
    settings.PersonalString = std::move(name);
    settings.SystemType = 1;
    WriteSettingsFile(settings, folder);
    return settings;
}

// The records of the daily logs of `folder` whose names match `pattern`, without blank lines.
inline QStringList LogLines(const QString& folder,
                            const QString& pattern = QStringLiteral("BZ_*.txt")) {
    QStringList lines;
    const QDir logs(folder + QStringLiteral("/logs"));
    for (const QString& name : logs.entryList({pattern}, QDir::Files)) {
        QFile file(logs.filePath(name));
        if (file.open(QIODevice::ReadOnly)) {
            for (const QByteArray& line : file.readAll().split('\n')) {
                if (!line.trimmed().isEmpty()) {
                    lines << QString::fromLatin1(line.trimmed());
                }
            }
        }
    }
    return lines;
}

// The desktop program on the real platform: the clock and timers of the machine, and the serial
// link of the program folder, where the board simulator's pseudo-terminal stands. Each frame
// that arrives runs the serial event through the event gate and is counted in `frames`.
struct LiveDesk {
    explicit LiveDesk(const std::filesystem::path& folder)
        : serial(folder),
          probe(folder),
          dialogs(probe),
          form(folder, {clock, timers, serial, dialogs}),
          window(form) {
        serial.SetReceiveHandler([this] {
            ++frames;
            RunHandler([this] { form.MSComm1_OnComm(); });
        });
        dialogs.Attach(&form, &window);
    }

    // The program starts as from its icon.
    void Start() {
        RunHandler([this] { form.Form_Load(); });
        window.show();
    }

    DesktopClock clock;
    DesktopTimers timers;
    DesktopSerialLink serial;
    DevicePortProbe probe;
    DesktopDialogs dialogs;
    Brizalog form;
    MainWindow window;
    int frames = 0;
};

}  // namespace brizalog::testing
