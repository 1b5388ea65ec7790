// Pictures of the six graph windows on a logged day, with the mouse resting on the chart, into
// the build folder: screenshots/history_MEMBER.png, the member's name after "Graph" (and _200 for
// QT_SCALE_FACTOR=2), and the picture GraphBZ saves of its chart.

#include <QAbstractButton>
#include <QApplication>
#include <QPalette>
#include <QTest>

#include "support/history_desk.h"
#include "support/screenshots.h"

namespace brizalog {

class HistoryScreenshotTest : public QObject {
    Q_OBJECT

private slots:
    void everyMemberOnALoggedDay() {
        for (const GraphMember& member : GraphMembers()) {
            testing::HistoryDesk desk(member.name);
            desk.Open();
            QVERIFY(QTest::qWaitForWindowExposed(desk.view.get()));
            desk.ClickDay();
            testing::Mouse(desk.view->canvas(), QEvent::MouseMove, 0.6);
            QTest::qWait(50);
            const QString name =
                QString::fromLatin1(member.name.data(), member.name.size()).mid(5).toLower();
            QVERIFY(
                desk.view->grab().save(testing::ScreenshotFile(QStringLiteral("history_") + name)));
            if (member.name == "GraphBZ") {
                // The picture "Save chart image" writes: title, scales and legend.
                QVERIFY(desk.view->ChartPage().save(
                    testing::ScreenshotFile(QStringLiteral("history_bz_saved"))));
                // The windmill's power against its speed, and the hours spent in each band.
                for (const char* chart : {"XAxisRPM", "Distribution"}) {
                    desk.view->findChild<QAbstractButton*>(QString::fromLatin1(chart))->click();
                    QVERIFY(desk.view->grab().save(testing::ScreenshotFile(
                        QStringLiteral("history_bz_") + QString::fromLatin1(chart).toLower())));
                }
            }
        }
    }

    void graphBzOnADarkDesktop() {
        // A dark desktop palette: the scales' labels and the series' names stay readable.
        const QPalette light = QApplication::palette();
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2b));
        dark.setColor(QPalette::WindowText, QColor(0xe0, 0xe0, 0xe0));
        dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
        dark.setColor(QPalette::Text, QColor(0xe0, 0xe0, 0xe0));
        dark.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3a));
        dark.setColor(QPalette::ButtonText, QColor(0xe0, 0xe0, 0xe0));
        QApplication::setPalette(dark);
        testing::HistoryDesk desk("GraphBZ");
        desk.Open();
        QVERIFY(QTest::qWaitForWindowExposed(desk.view.get()));
        desk.ClickDay();
        testing::Mouse(desk.view->canvas(), QEvent::MouseMove, 0.6);
        QTest::qWait(50);
        QVERIFY(desk.view->grab().save(testing::ScreenshotFile(QStringLiteral("history_bz_dark"))));
        QApplication::setPalette(light);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::HistoryScreenshotTest)
#include "history_screenshot_test.moc"
