// brizalog-logger [FOLDER]: the main form without windows, for a box that logs day and night.
// The same start-up, frames, logging, ledger, rollover and replay as the desktop program, on the
// same serial port and timers, so the files it writes are those the desktop program would write.

#include <QCoreApplication>
#include <QStringList>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "acquisition/brizalog.h"
#include "acquisition/qt/platform.h"
#include "app/headless.h"
#include "app/program_folder.h"
#include "app/publishing.h"
#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/options.h"
#include "catalogue/text_rules.h"
#include "ui/event_gate.h"

namespace {

constexpr const char* kUsage =
    "Usage: brizalog-logger [--strict] [FOLDER]\n"
    "       brizalog-logger --set NAME=VALUE [FOLDER]\n"
    "Logs the frames of the serial port of FOLDER's settings into FOLDER/logs, without windows,\n"
    "until SIGTERM or SIGINT (Ctrl-C), which save the settings and end it as Exit does.\n"
    "FOLDER is the program folder, made and provisioned when missing; by default the folder of\n"
    "the program when it may write there, otherwise ~/Brizalog.\n"
    "A CC128 meter message cut badly by the serial line is skipped with a line on standard\n"
    "error; --strict ends the logger on it instead, as the desktop program does by default.\n"
    "--set changes one setting of hardware.cfg (LogOn=1, LogDelay=30, Port=4, ...) or one\n"
    "option of options.cfg (KeepLoggingArmed=0, ...) and ends. Stop a running logger first:\n"
    "it saves hardware.cfg from memory when it stops.\n";

// The choices that keep a logger without a screen logging, whatever options.cfg says for the
// desktop: a meter message cut badly is skipped (one line on standard error each) unless
// --strict asks for the desktop's default, which ends the program.
void ApplyLoggerOptions(brizalog::Options& options, bool strict) {
    options.SetFlag("ContainMeterFailures", !strict);
}

// A box in a shed logs for months with nobody looking: it keeps logging armed until the device
// speaks, makes its logs folder again and holds unended text to a bound, unless options.cfg
// says otherwise.
void ApplyLoggerDefaults(brizalog::Options& options) {
    if (!options.Has("KeepLoggingArmed")) {
        options.SetFlag("KeepLoggingArmed", true);
    }
}

// The program's own health (a file it cannot write, and when it can again) in the journal.
void TellNoticesOnStandardError() {
    brizalog::SetNoticeTeller([](std::string_view source, const std::string& text) {
        if (!text.empty()) {
            brizalog::TellOnStandardError(std::string(source) + ": " + text);
        }
    });
}

// `--set NAME=VALUE`: one setting of hardware.cfg, found by its tag as every reader finds it,
// or one option of options.cfg. A number stays a number, and the new settings must still load,
// so a value the program could not start with is refused and the file is left as it was.
int SetOne(const std::filesystem::path& folder, const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    const std::string name = assignment.substr(0, equals);
    if (equals == std::string::npos || name.empty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const std::string value = assignment.substr(equals + 1);
    try {
        if (brizalog::FindOptionRow(name) != nullptr) {
            brizalog::Options options = brizalog::ReadOptions(folder);
            options.Set(name, value);
            brizalog::WriteOptions(options, folder);
            return 0;
        }
        const std::filesystem::path file = brizalog::InFolder(folder, brizalog::kSettingsFile);
        std::string text = brizalog::ReadWholeFile(file);
        const std::string open = "<" + name + ">";
        const std::size_t start = text.find(open);
        const std::size_t end = text.find("</" + name + ">");
        if (start == std::string::npos || end == std::string::npos || end < start) {
            std::fprintf(stderr, "no setting %s in %s\n", name.c_str(), file.c_str());
            return 2;
        }
        const std::size_t from = start + open.size();
        if (brizalog::IsNumeric(text.substr(from, end - from)) && !brizalog::IsNumeric(value)) {
            std::fprintf(stderr, "%s takes a number\n", name.c_str());
            return 2;
        }
        text.replace(from, end - from, value);
        brizalog::Settings check;
        brizalog::LoadSettings(text, check);
        brizalog::WriteWholeFile(file, text);
    } catch (const brizalog::FileFailure& failure) {
        std::fprintf(stderr, "%s: %s\n", failure.path().c_str(), failure.reason().c_str());
        return 1;
    } catch (const brizalog::Failure& failure) {
        std::fprintf(stderr, "%s=%s: %s\n", name.c_str(), value.c_str(), failure.what());
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brizalog-logger"));
    // A failure that ends the desktop program is told in a message box; here on standard error.
    brizalog::SetFailureTeller(brizalog::TellOnStandardError);
    TellNoticesOnStandardError();

    QStringList args = QCoreApplication::arguments().mid(1);
    const bool strict = args.removeAll(QStringLiteral("--strict")) > 0;
    if (args.size() == 1 && (args[0] == QStringLiteral("--help") || args[0] == "-h")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (!args.isEmpty() && args[0] == QStringLiteral("--set") && args.size() >= 2 &&
        args.size() <= 3) {
        const std::filesystem::path folder = args.size() == 3
                                                 ? std::filesystem::absolute(args[2].toStdString())
                                                 : brizalog::ProgramFolder();
        brizalog::UsePlatformFiles();
        return SetOne(folder, args[1].toStdString());
    }
    if (args.size() > 1 || (args.size() == 1 && args[0].startsWith(QLatin1Char('-')))) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    std::filesystem::path folder = brizalog::ProgramFolder();
    if (!args.isEmpty()) {
        folder = std::filesystem::absolute(args[0].toStdString());
        std::error_code ignored;
        std::filesystem::create_directories(folder, ignored);
    }

    // Settings files are replaced whole and made durable, so a power cut never tears one.
    brizalog::UsePlatformFiles();
    brizalog::DesktopClock clock;
    brizalog::DesktopTimers timers;
    brizalog::DesktopSerialLink serial(folder);
    brizalog::StandardErrorDialogs dialogs;

    // There is no splash to click: the start-up makes whatever is missing in the folder before
    // anything reads it, as the splash does, and the abort flag stays 0 as after a plain click.
    brizalog::Brizalog form(folder, {clock, timers, serial, dialogs});
    form.SetOptionsOverride([strict](brizalog::Options& options) {
        ApplyLoggerOptions(options, strict);
        ApplyLoggerDefaults(options);
    });
    serial.SetReceiveHandler([&form] { brizalog::RunHandler([&form] { form.MSComm1_OnComm(); }); });

    // The desktop shows nothing when the device goes and comes back; a box without a screen
    // says so in its journal, once each way.
    const auto portName = [&form] {
        return "port " + brizalog::FormatGeneral(form.state().settings.PortNumber);
    };
    QObject::connect(&serial, &brizalog::DesktopSerialLink::deviceLost, [&] {
        brizalog::TellOnStandardError("the device of " + portName() +
                                      " has gone; looking for it every second");
    });
    QObject::connect(&serial, &brizalog::DesktopSerialLink::deviceBack, [&] {
        brizalog::TellOnStandardError("the device of " + portName() + " is back");
    });

    // SIGTERM and SIGINT are Exit: the settings are saved and the program ends.
    brizalog::StopSignals stop([&form](int) {
        brizalog::RunHandler([&form] { form.exitMENU_Click(); });
        if (form.ExitRequested()) {
            QCoreApplication::quit();
        }
    });

    bool started = false;
    brizalog::RunHandler([&] {
        form.Form_Load();
        started = true;
    });
    if (!started || brizalog::ApplicationEnding()) {
        return 1;
    }
    // A message at start-up is the port message: the start was cut short, with no port or no
    // logging. The desktop program waits for "setup Hardware"; a logger has no such menu, so it
    // ends and leaves the retry to whoever started it (the user unit restarts it).
    if (dialogs.Count() > 0) {
        return 1;
    }
    brizalog::Publishing publishing(form);
    // What the journal of a box without a screen needs first: which folder, which port, and
    // whether records are written.
    const auto& settings = form.state().settings;
    brizalog::TellOnStandardError(form.state().LoggingActive == 1
                                      ? "logging from " + portName() + " into " + folder.string() +
                                            " every " + brizalog::FormatGeneral(settings.LogDelay) +
                                            " s"
                                      : "reading " + portName() + " for " + folder.string() +
                                            "; logging is stopped (LogOn is not 1)");
    return QCoreApplication::exec();
}
