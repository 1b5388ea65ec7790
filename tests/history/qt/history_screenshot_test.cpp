// Pictures of the six graph windows on a logged day, with the mouse resting on the chart, into
// the build folder: screenshots/history_MEMBER.png, the member's name after "Graph" (and _200 for
// QT_SCALE_FACTOR=2).

#include <QAbstractButton>
#include <QDir>
#include <QMouseEvent>
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
            const QPointF at(plot.width() * 0.6, plot.height() / 2.0);
            QMouseEvent move(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton,
                             Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(&plot, &move);
            QTest::qWait(50);
            const QString file =
                folder + QStringLiteral("/history_%1%2.png")
                             .arg(QString::fromLatin1(member.name.data(), member.name.size())
                                      .mid(5)
                                      .toLower())
                             .arg(suffix);
            QVERIFY(desk.view->grab().save(file));
            if (member.name == "GraphBZ") {
                // The windmill's power against its speed, and the hours spent in each band.
                for (const char* chart : {"XAxisRPM", "Distribution"}) {
                    desk.view->findChild<QAbstractButton*>(QString::fromLatin1(chart))->click();
                    QVERIFY(desk.view->grab().save(folder +
                                                   QStringLiteral("/history_bz_%1%2.png")
                                                       .arg(QString::fromLatin1(chart).toLower())
                                                       .arg(suffix)));
                }
            }
        }
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::HistoryScreenshotTest)
#include "history_screenshot_test.moc"
