// brizalog-logger on a real pseudo-terminal: the board simulator sends, the logger logs without
// any window until SIGTERM or SIGINT, which save the settings as Exit does.

#include <signal.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "support/board_simulator.h"
#include "support/live_desk.h"

using brizalog::testing::BoardSimulator;
using brizalog::testing::LogLines;

namespace brizalog {

namespace {

constexpr int kPort = 3;
constexpr int kSystem = 1;

QString Program() {
    return QStringLiteral(BRIZALOG_BINARY_DIR "/brizalog-logger");
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A program folder of system 1 that logs every second from its start on port 3.
Settings LoggingSettings(const QString& path) {
    return testing::ProvisionLoggingFolder(path.toStdString(), kPort, "Shed");
}

// The logger's standard error, gathered as it comes.
struct Logger {
    QProcess process;
    QString errors;

    explicit Logger(const QString& folder) {
        QObject::connect(&process, &QProcess::readyReadStandardError, [this] {
            errors += QString::fromLocal8Bit(process.readAllStandardError());
        });
        process.start(Program(), {folder});
    }
    ~Logger() {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(5000);
        }
    }
    bool Says(const QString& text) {
        process.waitForReadyRead(0);
        return errors.contains(text);
    }
};

const QString kPortMessage = QStringLiteral(
    "There is a possible Port Number problem. Check available PORTS  RUN SETUP HARDWARE MENU");

}  // namespace

class LoggerTest : public QObject {
    Q_OBJECT

private slots:
    void logsTheBoardAcrossAnUnpluggingAndSavesTheSettingsOnSigterm() {
        QTemporaryDir dir;
        const QString path = dir.path();
        const Settings settings = LoggingSettings(path);
        // Text that only a save of the settings removes.
        QFile settingsFile(path + QStringLiteral("/hardware.cfg"));
        QVERIFY(settingsFile.open(QIODevice::Append));
        settingsFile.write("left here until the settings are saved\r\n");
        settingsFile.close();

        BoardSimulator board(path.toStdString(), kPort, kSystem, 10);
        QVERIFY(board.Start());
        Logger logger(path);
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= 3, 15000);

        board.Stop();
        QTRY_VERIFY_WITH_TIMEOUT(logger.Says(QStringLiteral("has gone")), 5000);
        BoardSimulator again(path.toStdString(), kPort, kSystem, 10);
        QVERIFY(again.Start());
        QTRY_VERIFY_WITH_TIMEOUT(logger.Says(QStringLiteral("is back")), 5000);
        const qsizetype before = LogLines(path).size();
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= before + 2, 10000);

        logger.process.terminate();
        QVERIFY(logger.process.waitForFinished(5000));
        QCOMPARE(logger.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(logger.process.exitCode(), 0);

        for (const QString& line : LogLines(path)) {
            QVERIFY2(QRegularExpression(QStringLiteral("^<T>\\d\\d:\\d\\d</T><L>1</L><V1>"))
                             .match(line)
                             .hasMatch() &&
                         line.contains(QStringLiteral("<WS>")),
                     qPrintable(line));
        }
        QCOMPARE(ReadFile(path + QStringLiteral("/hardware.cfg")),
                 QByteArray::fromStdString(SettingsShapeA(settings)));
        QVERIFY2(!logger.errors.contains(kPortMessage), qPrintable(logger.errors));
    }

    void aSecondProgramOnTheSamePortSaysThePortMessageAndEnds() {
        QTemporaryDir dir;
        const QString path = dir.path();
        LoggingSettings(path);
        BoardSimulator board(path.toStdString(), kPort, kSystem, 10);
        QVERIFY(board.Start());
        Logger first(path);
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= 1, 15000);

        Logger second(path);
        QVERIFY(second.process.waitForFinished(10000));
        QCOMPARE(second.process.exitCode(), 1);
        second.errors += QString::fromLocal8Bit(second.process.readAllStandardError());
        QVERIFY2(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  ") +
                                    QRegularExpression::escape(kPortMessage) + QStringLiteral("\n"))
                     .match(second.errors)
                     .hasMatch(),
                 qPrintable(second.errors));

        // The first one goes on logging, and Ctrl-C ends it as SIGTERM does.
        const qsizetype before = LogLines(path).size();
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= before + 2, 10000);
        ::kill(static_cast<pid_t>(first.process.processId()), SIGINT);
        QVERIFY(first.process.waitForFinished(5000));
        QCOMPARE(first.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(first.process.exitCode(), 0);
    }

    void aNewFolderIsMadeAndProvisionedWithoutASplash() {
        QTemporaryDir dir;
        const QString path = dir.path() + QStringLiteral("/shed/logger");
        Logger logger(path);
        // With no device at the first-run port it ends with the port message; a machine with
        // enough serial ports of its own may have one there, and then it runs until stopped.
        if (!logger.process.waitForFinished(3000)) {
            logger.process.terminate();
            QVERIFY(logger.process.waitForFinished(5000));
        }
        for (const char* made : {"logs", "excel", "channels.cfg", "hardware.cfg",
                                 "calibrations.cfg", "help.cfg", "myinfo.cfg"}) {
            QVERIFY2(QFileInfo::exists(path + QLatin1Char('/') + QLatin1String(made)), made);
        }
    }

    void aSettingsFileWithoutSettingsEndsTheLoggerWithTheFailure() {
        QTemporaryDir dir;
        const QString path = dir.path();
        ProvisionProgramFolder(path.toStdString());
        QFile settingsFile(path + QStringLiteral("/hardware.cfg"));
        QVERIFY(settingsFile.open(QIODevice::WriteOnly | QIODevice::Truncate));
        settingsFile.write("no settings here\r\n");
        settingsFile.close();

        Logger logger(path);
        QVERIFY(logger.process.waitForFinished(10000));
        QCOMPARE(logger.process.exitCode(), 1);
        logger.errors += QString::fromLocal8Bit(logger.process.readAllStandardError());
        QVERIFY2(
            QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  \\S"))
                .match(logger.errors)
                .hasMatch(),
            qPrintable(logger.errors));
        QVERIFY(!logger.errors.contains(kPortMessage));
        QCOMPARE(ReadFile(path + QStringLiteral("/hardware.cfg")),
                 QByteArray("no settings here\r\n"));
    }
};

}  // namespace brizalog

QTEST_GUILESS_MAIN(brizalog::LoggerTest)
#include "logger_test.moc"
