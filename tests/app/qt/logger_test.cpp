// brizalog-logger on a real pseudo-terminal: the board simulator sends, the logger logs without
// any window until SIGTERM or SIGINT, which save the settings as Exit does.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <fstream>
#include <sstream>

#include "acquisition/qt/platform.h"
#include "catalogue/config_files.h"
#include "catalogue/files.h"
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

// One whole record of system 1, and nothing else, on the line.
bool IsOneRecord(const QString& line) {
    static const QRegularExpression record(
        QStringLiteral("^<T>\\d\\d:\\d\\d</T><L>1</L><V1>[\\d.]+</V1>(<A\\d>[\\d.-]+</A\\d>){4}"
                       "<R2>\\d+</R2><R1>\\d+</R1><WS>\\d+</WS>$"));
    return record.match(line).hasMatch();
}

// The resident memory of a process in kB, from /proc.
long ResidentKb(qint64 pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return -1;
}

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

    // A small disk under logs/ filled while logging, then freed: the refusal and the recovery
    // are in the journal with the file's path, and every line of the log is one whole record.
    void aFullDiskIsToldAndLeavesNoLineWithTwoRecords() {
        QTemporaryDir dir;
        const QString path = dir.path();
        LoggingSettings(path);
        const QString logs = path + QStringLiteral("/logs");
        if (::geteuid() != 0 ||
            ::mount("tmpfs", logs.toLocal8Bit().constData(), "tmpfs", 0, "size=256k") != 0) {
            QSKIP("mounting a small file system needs the superuser");
        }
        const auto unmount =
            qScopeGuard([&] { ::umount2(logs.toLocal8Bit().constData(), MNT_DETACH); });
        // This hour's log ends 50 bytes before a page's end, so the first record after the disk
        // is full finds room for a part of itself only.
        const QString hour = QDateTime::currentDateTime().toString(QStringLiteral("yyyy_MM_dd_HH"));
        const QString log = logs + QStringLiteral("/BZ_") + hour + QStringLiteral(".txt");
        std::string earlier;
        const std::string head = "<T>00:00</T><L>1</L><V1>12.";
        const std::string tail =
            "</V1><A1>0.0</A1><A2>0.0</A2><A3>0.0</A3><A4>0.0</A4><R2>0</R2><R1>0</R1>"
            "<WS>0</WS>\r\n";
        const std::size_t size = 4096 - 50;
        while (earlier.size() + 2 * (head.size() + tail.size() + 2) < size) {
            earlier += head + "00" + tail;
        }
        earlier +=
            head + std::string(size - earlier.size() - head.size() - tail.size(), '0') + tail;
        QFile seed(log);
        QVERIFY(seed.open(QIODevice::WriteOnly));
        seed.write(earlier.data(), static_cast<qint64>(earlier.size()));
        seed.close();

        BoardSimulator board(path.toStdString(), kPort, kSystem, 10);
        QVERIFY(board.Start());
        Logger logger(path);
        QTRY_VERIFY_WITH_TIMEOUT(logger.Says(QStringLiteral("logging from")), 10000);
        QFile filler(logs + QStringLiteral("/filler"));
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray page(4096, 'x');
        while (filler.write(page) == page.size()) {
        }
        filler.close();
        const QString refused = QStringLiteral("log: the log ") + logs + QStringLiteral("/BZ_");
        QTRY_VERIFY2_WITH_TIMEOUT(
            logger.Says(refused) && logger.Says(QStringLiteral(" cannot be written: ")),
            qPrintable(logger.errors), 10000);
        QTest::qWait(2000);  // refused ticks, which say nothing more
        QVERIFY(QFile::remove(filler.fileName()));
        QTRY_VERIFY2_WITH_TIMEOUT(logger.Says(QStringLiteral(".txt is written again")),
                                  qPrintable(logger.errors), 10000);
        const qsizetype before = LogLines(path).size();
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= before + 2, 10000);
        logger.process.terminate();
        QVERIFY(logger.process.waitForFinished(5000));

        QCOMPARE(logger.errors.count(QStringLiteral("cannot be written")), 1);
        for (const QString& line : LogLines(path)) {
            QVERIFY2(IsOneRecord(line), qPrintable(line));
        }
    }

    // Two programs on one folder replace hardware.cfg as fast as they can, with texts of very
    // different lengths, while a third reads it: every read finds one whole text, and no new
    // file stays behind.
    void twoWritersOnOneFolderNeverLeaveATornSettingsFile() {
        QTemporaryDir dir;
        const std::filesystem::path folder = dir.path().toStdString();
        const std::filesystem::path file = folder / "hardware.cfg";
        const std::string texts[] = {"<Port>3</Port>\r\n",
                                     "<Port>4</Port>" + std::string(20000, 'x') + "\r\n"};
        UsePlatformFiles();
        WriteWholeFile(file, texts[0]);
        pid_t writers[2];
        for (int w = 0; w < 2; ++w) {
            writers[w] = ::fork();
            QVERIFY(writers[w] != -1);
            if (writers[w] == 0) {
                try {
                    for (int i = 0; i < 300; ++i) {
                        WriteWholeFile(file, texts[w]);
                    }
                } catch (const Failure&) {
                    ::_exit(1);
                }
                ::_exit(0);
            }
        }
        int reads = 0;
        int running = 2;
        int status[2] = {-1, -1};
        while (running > 0) {
            std::ifstream in(file, std::ios::binary);
            std::ostringstream text;
            text << in.rdbuf();
            QVERIFY2(text.str() == texts[0] || text.str() == texts[1],
                     qPrintable(QString::number(text.str().size())));
            ++reads;
            for (int w = 0; w < 2; ++w) {
                int ended = 0;
                if (status[w] == -1 && ::waitpid(writers[w], &ended, WNOHANG) == writers[w]) {
                    status[w] = ended;
                    --running;
                }
            }
        }
        SetPlatformFiles({});
        for (int w = 0; w < 2; ++w) {
            QVERIFY(WIFEXITED(status[w]) && WEXITSTATUS(status[w]) == 0);
        }
        QVERIFY(reads > 10);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"hardware.cfg"});
    }

    // A meter on the wrong line speed: 10 MB of noise that never closes a message leaves the
    // logger small, and it says so once.
    void noiseWithoutAMessageEndKeepsTheLoggerSmall() {
        QTemporaryDir dir;
        const QString path = dir.path();
        Settings settings = LoggingSettings(path);
        settings.SystemType = 3;
        WriteSettingsFile(settings, path.toStdString());
        const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        QVERIFY(master >= 0);
        const auto closeMaster = qScopeGuard([&] { ::close(master); });
        QVERIFY(::grantpt(master) == 0 && ::unlockpt(master) == 0);
        QVERIFY(QDir(path).mkpath(QStringLiteral("ports")));
        QVERIFY(QFile::link(QString::fromLocal8Bit(::ptsname(master)),
                            path + QStringLiteral("/ports/COM3")));
        Logger logger(path);
        QTRY_VERIFY_WITH_TIMEOUT(logger.Says(QStringLiteral("logging from")), 10000);

        const std::string noise(64 * 1024, '~');
        for (int sent = 0; sent < 160; ++sent) {
            std::size_t done = 0;
            while (done < noise.size()) {
                pollfd ready{master, POLLOUT, 0};
                QVERIFY(::poll(&ready, 1, 5000) == 1);
                const ssize_t n = ::write(master, noise.data() + done, noise.size() - done);
                QVERIFY(n > 0);
                done += static_cast<std::size_t>(n);
            }
        }
        QTRY_VERIFY_WITH_TIMEOUT(logger.Says(QStringLiteral("were dropped")), 10000);
        const long kb = ResidentKb(logger.process.processId());
        QVERIFY2(kb > 0 && kb < 30 * 1024, qPrintable(QString::number(kb) + " kB"));
        QCOMPARE(logger.errors.count(QStringLiteral("were dropped")), 1);
    }

    // --set changes one value of a stopped logger's files, or refuses and leaves them alone.
    void setChangesOneSettingOrOptionAndRefusesWhatCouldNotStart() {
        QTemporaryDir dir;
        const QString path = dir.path();
        LoggingSettings(path);
        const QByteArray before = ReadFile(path + QStringLiteral("/hardware.cfg"));
        const struct {
            const char* assignment;
            int status;
            const char* file;
            const char* holds;
        } cases[] = {
            {"LogDelay=30", 0, "hardware.cfg", "<LogDelay>30</LogDelay>"},
            {"KeepLoggingArmed=0", 0, "options.cfg", "<KeepLoggingArmed>0</KeepLoggingArmed>"},
            {"LogOn=yes", 2, "hardware.cfg", "<LogOn>1</LogOn>"},
            {"SystemType=99999", 1, "hardware.cfg", "<SystemType>1</SystemType>"},
            {"NoSuchTag=1", 2, "hardware.cfg", "<LogDelay>30</LogDelay>"},
            {"LogDelay", 2, "hardware.cfg", "<LogDelay>30</LogDelay>"},
        };
        for (const auto& c : cases) {
            QProcess set;
            set.start(Program(), {QStringLiteral("--set"), QLatin1String(c.assignment), path});
            QVERIFY(set.waitForFinished(10000));
            QCOMPARE(set.exitCode(), c.status);
            QVERIFY2(ReadFile(path + QLatin1Char('/') + QLatin1String(c.file)).contains(c.holds),
                     c.assignment);
        }
        QCOMPARE(ReadFile(path + QStringLiteral("/hardware.cfg")).size(), before.size() + 1);
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
