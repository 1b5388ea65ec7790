// From the board to the chart: the simulator's frames are logged by the desktop program, and
// GraphBZ, opened from its menu entry while logging goes on, draws them.

#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "catalogue/files.h"
#include "history/qt/graph_window_view.h"
#include "support/board_simulator.h"
#include "support/history_desk.h"
#include "support/live_desk.h"
#include "ui/plot_canvas.h"

namespace brizalog {

class HistoryEndToEndTest : public QObject {
    Q_OBJECT

private slots:
    void aLoggedStretchOpensInGraphBZWhileLoggingGoesOn() {
        QTemporaryDir dir;
        const std::filesystem::path folder = dir.path().toStdString();
        testing::ProvisionLoggingFolder(folder, 4, "From the board");

        testing::BoardSimulator board(folder, 4, 1, 10);
        QVERIFY(board.Start());
        testing::LiveDesk desk(folder);
        QStringList messages;
        int recordsShown = 0;
        qsizetype logLinesWhileOpen = 0;
        const auto logLength = [&] {
            const std::vector<std::string> logs = ListFiles(InFolder(folder, "/logs"), "BZ*.txt");
            return logs.empty()
                       ? qsizetype{0}
                       : qsizetype(ReadWholeFile(InFolder(folder, "/logs/" + logs[0])).size());
        };
        bool voltsDrawn = false;
        testing::OnGraphWindow(desk.dialogs, messages, [&](GraphWindowView& view) {
            // Short intervals log by the hour: the list leads to the file.
            auto* files = view.findChild<QListWidget*>(QStringLiteral("File1"));
            files->setCurrentRow(files->count() - 1);
            recordsShown = view.engine().RecordCount;
            const QImage chart = view.canvas().image();
            const QRgb volts = qRgb(255, 0, 255);  // SYSTEM VOLTS, magenta by default
            for (int y = 0; y < chart.height() && !voltsDrawn; ++y) {
                for (int x = 0; x < chart.width() && !voltsDrawn; ++x) {
                    voltsDrawn = chart.pixel(x, y) == volts;
                }
            }
            const qsizetype before = logLength();
            QTimer::singleShot(2500, &view, [&, before, shown = &view] {
                logLinesWhileOpen = logLength() - before;
                shown->reject();
            });
        });

        desk.Start();
        QTRY_VERIFY_WITH_TIMEOUT(logLength() > 0, 10000);
        QTest::qWait(5000);
        RunHandler([&] { desk.form.Click("PlotGraphBZ"); });
        QVERIFY2(recordsShown >= 3, qPrintable(QString::number(recordsShown)));
        QVERIFY(voltsDrawn);
        QVERIFY2(logLinesWhileOpen > 0, "logging stopped behind GraphBZ");
        QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QStringLiteral(" | "))));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::HistoryEndToEndTest)
#include "history_end_to_end_test.moc"
