// The monitor windows on the desktop: each opens from its menu entry without blocking, shows the
// frames as they arrive while logging goes on, and closes with its timer or with the main window.

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>
#include <QTreeWidget>

#include "displays/qt/monitor_view.h"
#include "support/window_desk.h"
#include "ui/event_gate.h"
#include "ui/keyboard.h"
#include "ui/plot_canvas.h"

namespace brizalog {

namespace {

// The entries of the monitors and the windows they open, in system 8, where all are enabled.
const struct {
    const char* entry;
    const char* window;
} kEntries[] = {
    {"batteryMonitor", "BATTMonitor"},    {"batteryMonitor2", "BATTMonitor2"},
    {"maxMINS", "dailyMaximums"},         {"rawCOMMdatamenu", "rawCOMMS"},
    {"previewLOGdata", "dataTOlog"},      {"rawFRAMEtext", "displayRAWdata"},
    {"plotwindmill1", "plotDiagnostics"}, {"VUmeters", "BarGraphs"},
};

// The main window on the virtual platform, its monitors opened by the desktop's own opener and
// ticking on the same virtual schedule as the main form.
struct MonitorDesk : testing::WindowDesk {
    MonitorDesk() {
        StartOnDesktop();
        window->show();
    }
    void Trigger(const char* entry) { window->menuAction(entry)->trigger(); }
    // Frames every half second for `seconds`, each event through the event gate as on the desk.
    void Run(int seconds) {
        for (int i = 0; i < seconds * 2; ++i) {
            RunHandler([this] {
                serial.Queue(testing::SampleFrame(8));
                form->MSComm1_OnComm();
            });
            RunHandler([this] { timers.Advance(500); });
        }
    }
    MonitorView* View(const char* name) {
        return qobject_cast<MonitorView*>(desktop.OpenMonitor(name));
    }
    int LogLines() {
        int lines = 0;
        const QDir logs(QString::fromStdString((folder / "logs").string()));
        for (const QString& name : logs.entryList({QStringLiteral("BZ_*.txt")})) {
            QFile file(logs.filePath(name));
            file.open(QIODevice::ReadOnly);
            lines += static_cast<int>(file.readAll().count('\n'));
        }
        return lines;
    }
};

}  // namespace

class MonitorWindowsTest : public QObject {
    Q_OBJECT

private slots:
    void everyMonitorOpensFromItsEntryAndFollowsTheFrames() {
        MonitorDesk d;
        d.Trigger("setsystem(8)");
        d.Trigger("startMENU");
        for (const auto& e : kEntries) {
            d.Trigger(e.entry);
            QVERIFY2(d.View(e.window) != nullptr, e.window);
            QVERIFY(QApplication::activeModalWidget() == nullptr);
        }
        // A second click only brings the open window forward.
        MonitorView* battery = d.View("BATTMonitor");
        d.Trigger("batteryMonitor");
        QCOMPARE(d.View("BATTMonitor"), battery);

        d.Run(20);
        // Logging went on as without the monitors: one record each 10 s of the default interval.
        QCOMPARE(d.LogLines(), 2);
        QCOMPARE(d.form->state().GoodDataCount, 0);

        QCOMPARE(battery->findChild<QLabel*>(QStringLiteral("voltage"))->text(),
                 QStringLiteral("13.20 V"));
        QCOMPARE(battery->windowTitle(), QStringLiteral("Battery Monitor & Indicator"));
        QCOMPARE(d.View("BATTMonitor2")->findChild<QLabel*>(QStringLiteral("voltage"))->text(),
                 QStringLiteral("26.30 V"));
        auto* rows = d.View("rawCOMMS")->findChild<QTreeWidget*>(QStringLiteral("ListView1"));
        QCOMPARE(rows->topLevelItemCount(), 4);
        QVERIFY(rows->topLevelItem(0)->text(1).contains(QStringLiteral("<A1>215</A1>")));
        QVERIFY(d.View("displayRAWdata")
                    ->findChild<QPlainTextEdit*>(QStringLiteral("Text1"))
                    ->toPlainText()
                    .endsWith(QStringLiteral("<P2>10</P2>]")));
        auto* volts = d.View("dailyMaximums")->findChild<QLabel*>(QStringLiteral("value(8)"));
        QCOMPARE(volts->text(), QStringLiteral("13.20 V"));
        QVERIFY(volts->isVisibleTo(volts->parentWidget()));
        QCOMPARE(d.View("dataTOlog")->findChild<QLabel*>(QStringLiteral("Label3(0)"))->text(),
                 QStringLiteral("13.20"));

        QCOMPARE(d.View("BarGraphs")->findChild<QLabel*>(QStringLiteral("Label4"))->text(),
                 QStringLiteral("250"));
        // The plot keeps the grid (11 lines), the curve (500 steps) and a dot for each of the 40
        // ticks; "CLEAR display" leaves the background alone.
        MonitorView* plot = d.View("plotDiagnostics");
        auto* canvas = plot->findChild<PlotCanvas*>(QStringLiteral("GraphDisplay"));
        QCOMPARE(canvas->keptLines(), std::size_t{551});
        plot->findChild<QAction*>(QStringLiteral("cleardisplayMENU"))->trigger();
        QCOMPARE(canvas->keptLines(), std::size_t{511});

        // The pause entry stops the list's timer and says so.
        QAction* pause = d.View("rawCOMMS")->findChild<QAction*>(QStringLiteral("pause"));
        pause->trigger();
        QCOMPARE(ShownCaption(pause->text()), QStringLiteral("Resume"));
        QVERIFY(!d.View("rawCOMMS")->monitor().Timer1.Enabled());
    }

    void closingAMonitorStopsItsTimerAndExitClosesThemAll() {
        MonitorDesk d;
        d.Trigger("setsystem(8)");
        for (const auto& e : kEntries) {
            d.Trigger(e.entry);
        }
        MonitorView* list = d.View("rawCOMMS");
        const FormTimer* timer = &list->monitor().Timer1;
        QVERIFY(timer->Enabled());
        list->close();
        QVERIFY(!timer->Enabled());
        QVERIFY(d.View("rawCOMMS") == nullptr);
        // A click on the battery caption closes that window.
        QTest::mouseClick(d.View("BATTMonitor")->findChild<QLabel*>(QStringLiteral("Label1")),
                          Qt::LeftButton);
        QVERIFY(d.View("BATTMonitor") == nullptr);

        d.Trigger("exitMENU");
        for (const auto& e : kEntries) {
            QVERIFY2(d.View(e.window) == nullptr, e.window);
        }
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::MonitorWindowsTest)
#include "monitor_windows_test.moc"
