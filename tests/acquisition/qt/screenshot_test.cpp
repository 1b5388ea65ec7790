// Pictures of the main window in every system type, with live values, into the build folder:
// screenshots/brizalog_system_T.png (and _200 for a run with QT_SCALE_FACTOR=2).

#include <QDir>
#include <QTest>

#include "support/virtual_desk.h"

namespace brizalog {

class ScreenshotTest : public QObject {
    Q_OBJECT

private slots:
    void everySystemTypeWithLiveValues() {
        const QString folder = QStringLiteral(BRIZALOG_BINARY_DIR "/screenshots");
        QDir().mkpath(folder);
        const QString scale = qEnvironmentVariable("QT_SCALE_FACTOR");
        const QString suffix =
            scale.isEmpty() || scale == QStringLiteral("1")
                ? QString()
                : QStringLiteral("_") + QString::number(qRound(scale.toDouble() * 100));
        for (int type = 0; type <= 8; ++type) {
            testing::VirtualDesk desk;
            desk.AllChannelsOn();
            desk.Start();
            desk.Click("setsystem(" + std::to_string(type) + ")");
            desk.window->show();
            QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
            for (int i = 0; i < 3; ++i) {
                desk.Receive(testing::SampleFrame(type, 9));
                if (type == 4) {
                    desk.Receive(testing::SampleFrame(type, 0));
                }
            }
            desk.window->resize(desk.window->sizeHint());
            QTest::qWait(50);
            QVERIFY(desk.window->windowTitle() != QStringLiteral("Waiting for Data"));
            const QString file =
                folder + QStringLiteral("/brizalog_system_%1%2.png").arg(type).arg(suffix);
            QVERIFY(desk.window->grab().save(file));
        }
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::ScreenshotTest)
#include "screenshot_test.moc"
