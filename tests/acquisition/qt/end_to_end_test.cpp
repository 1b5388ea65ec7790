// The whole desktop program on a real pseudo-terminal: the board simulator sends, QSerialPort
// receives, the main form decodes and logs, and the daily log fills with the family's records.

#include <QDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "support/board_simulator.h"
#include "support/live_desk.h"

using brizalog::testing::BoardSimulator;
using brizalog::testing::LogLines;

namespace brizalog {

class EndToEndTest : public QObject {
    Q_OBJECT

private slots:
    void theDailyLogFillsBehindModalWindowsAndAcrossAnUnplugging() {
        QTemporaryDir dir;
        const QString path = dir.path();
        const std::filesystem::path folder = path.toStdString();
        testing::ProvisionLoggingFolder(folder, 3, "End to end");

        BoardSimulator board(folder, 3, 1, 10);
        QVERIFY(board.Start());

        testing::LiveDesk desk(folder);
        QStringList messages;
        std::function<void(QWidget*)> onShown = [&](QWidget* shown) {
            if (auto* box = qobject_cast<QMessageBox*>(shown)) {
                messages << box->text();
                QTimer::singleShot(0, box, &QMessageBox::accept);
            }
        };
        desk.dialogs.onWindowShown = onShown;

        desk.Start();
        QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QStringLiteral(" | "))));
        QCOMPARE(desk.form.state().LoggingActive, 1);

        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= 3, 10000);
        for (const QString& line : LogLines(path)) {
            QVERIFY2(line.startsWith(QStringLiteral("<T>")) &&
                         line.contains(QStringLiteral("</T><L>1</L><V1>")) &&
                         line.contains(QStringLiteral("<WS>")),
                     qPrintable(line));
        }
        for (const char* other : {"WD_*", "CC_*", "RE_*", "ML_*"}) {
            QVERIFY(LogLines(path, QString::fromLatin1(other)).isEmpty());
        }
        QVERIFY(desk.window.windowTitle().startsWith(QStringLiteral("Battery = 1")));

        // A modal window is up for three seconds: frames and logging ticks go on behind it.
        int framesDuring = 0;
        qsizetype linesDuring = 0;
        desk.dialogs.onWindowShown = [&](QWidget* shown) {
            const int framesBefore = desk.frames;
            const qsizetype linesBefore = LogLines(path).size();
            QTimer::singleShot(3000, shown, [&, shown, framesBefore, linesBefore] {
                framesDuring = desk.frames - framesBefore;
                linesDuring = LogLines(path).size() - linesBefore;
                qobject_cast<QDialog*>(shown)->accept();
            });
        };
        RunHandler([&] { desk.form.Click("about"); });
        QVERIFY2(framesDuring >= 10, "frames stopped behind the About window");
        QVERIFY2(linesDuring >= 2, "logging stopped behind the About window");
        desk.dialogs.onWindowShown = onShown;

        // The device is unplugged and plugged in again: readings come back by themselves.
        board.Stop();
        QTest::qWait(1500);
        const int framesAway = desk.frames;
        BoardSimulator again(folder, 3, 1, 10);
        QVERIFY(again.Start());
        QTRY_VERIFY_WITH_TIMEOUT(desk.frames > framesAway + 5, 10000);
        QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QStringLiteral(" | "))));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::EndToEndTest)
#include "end_to_end_test.moc"
