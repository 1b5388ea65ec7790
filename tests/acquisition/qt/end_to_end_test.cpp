// The whole desktop program on a real pseudo-terminal: the board simulator sends, QSerialPort
// receives, the main form decodes and logs, and the daily log fills with the family's records.

#include <QDialog>
#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "acquisition/qt/platform.h"
#include "app/desktop_dialogs.h"
#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "support/board_simulator.h"
#include "ui/event_gate.h"

using brizalog::testing::BoardSimulator;

namespace brizalog {

namespace {

QStringList LogLines(const QString& folder, const QString& pattern) {
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

}  // namespace

class EndToEndTest : public QObject {
    Q_OBJECT

private slots:
    void theDailyLogFillsBehindModalWindowsAndAcrossAnUnplugging() {
        QTemporaryDir dir;
        const QString path = dir.path();
        const std::filesystem::path folder = path.toStdString();
        ProvisionProgramFolder(folder);
        Settings settings;
        settings.PortNumber = 3;
        settings.BaudRate = 4800;
        settings.LogDelay = 1;
        settings.LogOn = 1;
        settings.WSUnits = "m/s";
        settings.PersonalString = "End to end";
        settings.SystemType = 1;
        WriteSettingsFile(settings, folder);

        BoardSimulator board(folder, 3, 1, 10);
        QVERIFY(board.Start());

        DesktopClock clock;
        DesktopTimers timers;
        DesktopSerialLink serial(folder);
        DevicePortProbe probe(folder);
        DesktopDialogs dialogs(probe);
        Brizalog form(folder, {clock, timers, serial, dialogs});
        int frames = 0;
        serial.SetReceiveHandler([&] {
            ++frames;
            RunHandler([&] { form.MSComm1_OnComm(); });
        });
        MainWindow window(form);
        dialogs.Attach(&form, &window);
        QStringList messages;
        std::function<void(QWidget*)> onShown = [&](QWidget* shown) {
            if (auto* box = qobject_cast<QMessageBox*>(shown)) {
                messages << box->text();
                QTimer::singleShot(0, box, &QMessageBox::accept);
            }
        };
        dialogs.onWindowShown = onShown;

        RunHandler([&] { form.Form_Load(); });
        window.show();
        QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QStringLiteral(" | "))));
        QCOMPARE(form.state().LoggingActive, 1);

        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path, QStringLiteral("BZ_*.txt")).size() >= 3, 10000);
        for (const QString& line : LogLines(path, QStringLiteral("BZ_*.txt"))) {
            QVERIFY2(line.startsWith(QStringLiteral("<T>")) &&
                         line.contains(QStringLiteral("</T><L>1</L><V1>")) &&
                         line.contains(QStringLiteral("<WS>")),
                     qPrintable(line));
        }
        for (const char* other : {"WD_*", "CC_*", "RE_*", "ML_*"}) {
            QVERIFY(LogLines(path, QString::fromLatin1(other)).isEmpty());
        }
        QVERIFY(window.windowTitle().startsWith(QStringLiteral("Battery = 1")));

        // A modal window is up for three seconds: frames and logging ticks go on behind it.
        int framesDuring = 0;
        qsizetype linesDuring = 0;
        dialogs.onWindowShown = [&](QWidget* shown) {
            const int framesBefore = frames;
            const qsizetype linesBefore = LogLines(path, QStringLiteral("BZ_*.txt")).size();
            QTimer::singleShot(3000, shown, [&, shown, framesBefore, linesBefore] {
                framesDuring = frames - framesBefore;
                linesDuring = LogLines(path, QStringLiteral("BZ_*.txt")).size() - linesBefore;
                qobject_cast<QDialog*>(shown)->accept();
            });
        };
        RunHandler([&] { form.Click("about"); });
        QVERIFY2(framesDuring >= 10, "frames stopped behind the About window");
        QVERIFY2(linesDuring >= 2, "logging stopped behind the About window");
        dialogs.onWindowShown = onShown;

        // The device is unplugged and plugged in again: readings come back by themselves.
        board.Stop();
        QTest::qWait(1500);
        const int framesAway = frames;
        BoardSimulator again(folder, 3, 1, 10);
        QVERIFY(again.Start());
        QTRY_VERIFY_WITH_TIMEOUT(frames > framesAway + 5, 10000);
        QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QStringLiteral(" | "))));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::EndToEndTest)
#include "end_to_end_test.moc"
