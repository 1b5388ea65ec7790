// Pictures of the main window in every system type, with live values, into the build folder:
// screenshots/brizalog_system_T.png (and _200 for a run with QT_SCALE_FACTOR=2).

#include <QTest>

#include "support/screenshots.h"
#include "support/virtual_desk.h"

namespace brizalog {

class ScreenshotTest : public QObject {
    Q_OBJECT

private slots:
    void everySystemTypeWithLiveValues() {
        for (int type = 0; type <= 8; ++type) {
            testing::VirtualDesk desk;
            QVERIFY(desk.ShowSystem(type));
            for (int i = 0; i < 3; ++i) {
                desk.Receive(testing::SampleFrame(type, 9));
                if (type == 4) {
                    desk.Receive(testing::SampleFrame(type, 0));
                }
            }
            desk.window->resize(desk.window->sizeHint());
            QTest::qWait(50);
            QVERIFY(desk.window->windowTitle() != QStringLiteral("Waiting for Data"));
            QVERIFY(desk.window->grab().save(
                testing::ScreenshotFile(QStringLiteral("brizalog_system_%1").arg(type))));
        }
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::ScreenshotTest)
#include "screenshot_test.moc"
