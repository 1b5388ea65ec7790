// Pictures of the six graph windows on a logged day, with the mouse resting on the chart, into
// the build folder: screenshots/history_MEMBER.png (and _200 for QT_SCALE_FACTOR=2).

#include <QDir>
#include <QTest>

#include "support/history_desk.h"

namespace brizalog {

class HistoryScreenshotTest : public QObject {
    Q_OBJECT

private slots:
    void everyMemberOnALoggedDay() {
        const QString folder = QStringLiteral(BRIZALOG_BINARY_DIR "/screenshots");
        QDir().mkpath(folder);
        const QString scale = qEnvironmentVariable("QT_SCALE_FACTOR");
        const QString suffix =
            scale.isEmpty() || scale == QStringLiteral("1")
                ? QString()
                : QStringLiteral("_") + QString::number(qRound(scale.toDouble() * 100));
        for (const GraphMember& member : GraphMembers()) {
            testing::HistoryDesk desk(member.name);
            desk.Open();
            QVERIFY(QTest::qWaitForWindowExposed(desk.view.get()));
            desk.ClickDay();
            PlotCanvas& plot = desk.view->canvas();
            // Two moves: the pointer may already rest where the last window had it.
            QTest::mouseMove(&plot, QPoint(plot.width() / 2, plot.height() / 2));
            QTest::mouseMove(&plot, QPoint(plot.width() * 3 / 5, plot.height() / 2));
            QTest::qWait(50);
            const QString file =
                folder +
                QStringLiteral("/history_%1%2.png")
                    .arg(QString::fromLatin1(member.name.data(), member.name.size()).toLower())
                    .arg(suffix);
            QVERIFY(desk.view->grab().save(file));
        }
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::HistoryScreenshotTest)
#include "history_screenshot_test.moc"
