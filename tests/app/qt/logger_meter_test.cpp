// brizalog-logger behind a CC128 on a real pseudo-terminal, as a USB adapter hands the meter's
// text over: in pieces of 32 to 128 bytes, on a line that loses a byte in a hundred. The
// messages cut badly are skipped with a line each on standard error; --strict ends the logger on
// the first one, as the desktop program does by default.

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include "catalogue/config_files.h"
#include "support/board_simulator.h"
#include "support/live_desk.h"

using brizalog::testing::BoardSimulator;
using brizalog::testing::LogLines;

namespace brizalog {

namespace {

constexpr int kPort = 3;
const QString kFailure = QStringLiteral("Invalid procedure call or argument");
const QString kSkipped = QStringLiteral("a message cut badly was skipped at ");

}  // namespace

class LoggerMeterTest : public QObject {
    Q_OBJECT

private slots:
    void cutsOfAChunkedMeterLine_data() {
        QTest::addColumn<bool>("strict");
        QTest::newRow("by default") << false;
        QTest::newRow("--strict") << true;
    }

    void cutsOfAChunkedMeterLine() {
        QFETCH(bool, strict);
        QTemporaryDir dir;
        const QString path = dir.path();
        Settings settings = testing::ProvisionLoggingFolder(path.toStdString(), kPort, "House");
        settings.SystemType = 4;
        settings.BaudRate = 57600;
        WriteSettingsFile(settings, path.toStdString());

        // Four meter cycles a second, so that a few minutes of a real meter pass in seconds.
        BoardSimulator meter(path.toStdString(), kPort, 4, 4);
        meter.AddArguments({QStringLiteral("--sensors"), QStringLiteral("0,1,9"),
                            QStringLiteral("--chunks"), QStringLiteral("32-128"),
                            QStringLiteral("--drop"), QStringLiteral("0.01")});
        QVERIFY(meter.Start());
        QProcess logger;
        QString errors;
        connect(&logger, &QProcess::readyReadStandardError,
                [&] { errors += QString::fromLocal8Bit(logger.readAllStandardError()); });
        logger.start(QStringLiteral(BRIZALOG_BINARY_DIR "/brizalog-logger"),
                     strict ? QStringList{QStringLiteral("--strict"), path} : QStringList{path});
        QVERIFY(logger.waitForStarted(5000));

        const QString logs = QStringLiteral("CC_*.txt");
        if (strict) {
            QVERIFY(logger.waitForFinished(45000));
            errors += QString::fromLocal8Bit(logger.readAllStandardError());
            QCOMPARE(logger.exitCode(), 1);
            QVERIFY2(errors.contains(kFailure), qPrintable(errors));
            QVERIFY2(!errors.contains(kSkipped), qPrintable(errors));
            return;
        }
        QTRY_VERIFY2_WITH_TIMEOUT(errors.count(kSkipped) >= 2, qPrintable(errors), 45000);
        const qsizetype before = LogLines(path, logs).size();
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path, logs).size() >= before + 3, 10000);
        QCOMPARE(logger.state(), QProcess::Running);
        QVERIFY2(!errors.contains(kFailure + QStringLiteral("\n")), qPrintable(errors));
        // Each skipped message is one line of its own, led by the date and time.
        QVERIFY2(QRegularExpression(
                     QStringLiteral("(^|\n)\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  meter: ") +
                     kSkipped)
                     .match(errors)
                     .hasMatch(),
                 qPrintable(errors));
        logger.terminate();
        QVERIFY(logger.waitForFinished(5000));
        QCOMPARE(logger.exitCode(), 0);
    }
};

}  // namespace brizalog

QTEST_GUILESS_MAIN(brizalog::LoggerMeterTest)
#include "logger_meter_test.moc"
