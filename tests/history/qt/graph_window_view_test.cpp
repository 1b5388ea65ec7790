// The graph windows on the desktop: opened from their menu entries over a logged day, they draw
// it, read values under the mouse, zoom by a drag, export, save a picture and print.

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <set>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "acquisition/qt/platform.h"
#include "app/desktop_dialogs.h"
#include "catalogue/config_files.h"
#include "support/history_desk.h"
#include "ui/event_gate.h"

namespace brizalog {

namespace {

QRgb ToRgb(std::int32_t colour) {
    return qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

std::set<QRgb> Colours(const QImage& image) {
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        colours.insert(row, row + image.width());
    }
    return colours;
}

// The colour of the chart's top edge at `fraction` of its width.
QRgb TopEdge(PlotCanvas& plot, double fraction) {
    const QImage& image = plot.image();
    return image.pixel(static_cast<int>(image.width() * fraction), 0);
}

void Click(QWidget* view, const char* name) {
    auto* button = view->findChild<QAbstractButton*>(QString::fromLatin1(name));
    QVERIFY2(button != nullptr, name);
    button->click();
}

int Minutes(const std::string& hours, const std::string& minutes) {
    return std::stoi(hours) * 60 + std::stoi(minutes);
}

// Opens the day from the list; true when it is drawn and every series that is shown, not flat
// and not drawn over by a later series of the same values leaves its colour on the chart.
bool DrawsTheDay(GraphWindowView& view, const testing::HistoryDesk& desk) {
    auto* files = view.findChild<QListWidget*>(QStringLiteral("File1"));
    const auto day = files->findItems(QString::fromStdString(desk.dayFile), Qt::MatchExactly);
    if (day.size() != 1) {
        return false;
    }
    files->setCurrentItem(day.first());
    const GraphWindow& graph = view.engine();
    if (graph.Find("FileName")->text != desk.dayFile || graph.RecordCount < 1000) {
        return false;
    }
    const std::set<QRgb> colours = Colours(view.canvas().image());
    const auto count = static_cast<int>(graph.member().series.size());
    const auto sameAsLater = [&](int s) {
        for (int t = s + 1; t < count; ++t) {
            bool same = graph.ShowFlag(t) == 1;
            for (int i = 1; same && i <= graph.RecordCount; ++i) {
                same = graph.Series(s)[i] == graph.Series(t)[i];
            }
            if (same) {
                return true;
            }
        }
        return false;
    };
    for (int s = 0; s < count; ++s) {
        const SeriesRow& row = graph.member().series[static_cast<std::size_t>(s)];
        if (graph.ShowFlag(s) != 1 || row.fixedColour >= 0 || row.channel == 0 ||
            graph.RangeTop(s) <= 0 || sameAsLater(s)) {
            continue;
        }
        if (colours.count(ToRgb(desk.state.channels.LineColour[row.channel])) == 0) {
            qWarning("%s: no colour of %s", graph.member().name.data(), row.box.data());
            return false;
        }
    }
    return true;
}

}  // namespace

class GraphWindowViewTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        // No printer can be found: every print attempt meets the missing printer.
        qputenv("CUPS_SERVER", "/nonexistent/cups.sock");
    }

    void everyWindowOpensFromItsEntryAndDrawsTheDayInItsSeriesColours() {
        const std::pair<const char*, const char*> kEntries[] = {
            {"PlotGraphBZ", "GraphBZ"}, {"graphingDEMO", "GraphDEMO"},
            {"PlotGraphRE", "GraphRE"}, {"PlotGraphML", "GraphML"},
            {"PlotGraphCC", "GraphCC"}, {"graphingCC_QX", "GraphCC_QX"},
        };
        for (const auto& [entry, name] : kEntries) {
            testing::HistoryDesk desk(name);
            WriteChannelTable(desk.state.channels, desk.folder);
            WriteSettingsFile(desk.state.settings, desk.folder);
            VirtualTimers timers(desk.clock);
            VirtualSerial serial;
            DevicePortProbe probe(desk.folder);
            DesktopDialogs dialogs(probe);
            Brizalog form(desk.folder, {desk.clock, timers, serial, dialogs});
            MainWindow main(form);
            dialogs.Attach(&form, &main);
            QStringList messages;
            bool drawn = false;
            testing::OnGraphWindow(dialogs, messages, [&](GraphWindowView& view) {
                drawn = DrawsTheDay(view, desk);
                view.reject();
            });
            RunHandler([&] { form.Form_Load(); });
            messages.clear();  // the start's own word about the port of the virtual board
            RunHandler([&] { form.Click(entry); });
            QVERIFY2(drawn, name);
            QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QStringLiteral(" | "))));
        }
    }

    void theMouseReadsTheRecordUnderItAndADragZoomsToTheDraggedHours() {
        testing::HistoryDesk desk("GraphBZ");
        desk.Open();
        QVERIFY(QTest::qWaitForWindowExposed(desk.view.get()));
        desk.ClickDay();
        const int wholeDay = desk.view->engine().RecordCount;
        PlotCanvas& plot = desk.view->canvas();

        // A quarter across a day logged from 00:01 to 23:58 is about six in the morning.
        testing::Mouse(plot, QEvent::MouseMove, 0.25);
        const std::string at = desk.Text("vt");
        QVERIFY2(std::abs(Minutes(at.substr(0, 2), at.substr(3, 2)) - 360) <= 5, at.c_str());
        QCOMPARE(plot.toolTip(), QString::fromStdString(at));
        QVERIFY(desk.Text("vv").ends_with(" V"));
        QVERIFY(std::stod(desk.Text("vv")) > 20);
        QVERIFY(desk.Text("sv").ends_with(" m/s"));

        // A click on a readout shows the lowest volts of the view, a second one the highest.
        auto* volts = desk.view->findChild<QLabel*>(QStringLiteral("vv"));
        QTest::mouseClick(volts, Qt::LeftButton);
        QVERIFY2(desk.Text("vv").starts_with("MIN "), desk.Text("vv").c_str());
        QTest::mouseClick(volts, Qt::LeftButton);
        QVERIFY2(desk.Text("vv").starts_with("MAX "), desk.Text("vv").c_str());

        // Drag from six to noon: the band runs along the top, the release reads those hours.
        testing::Mouse(plot, QEvent::MouseButtonPress, 0.25, Qt::LeftButton);
        testing::Mouse(plot, QEvent::MouseMove, 0.4, Qt::LeftButton);
        QCOMPARE(TopEdge(plot, 0.3), qRgb(255, 0, 0));
        testing::Mouse(plot, QEvent::MouseMove, 0.5, Qt::LeftButton);
        testing::Mouse(plot, QEvent::MouseButtonRelease, 0.5, Qt::LeftButton);
        const int start = Minutes(desk.Text("Time1h"), desk.Text("Time1m"));
        const int finish = Minutes(desk.Text("Time2h"), desk.Text("Time2m"));
        QVERIFY2(std::abs(start - 360) <= 10 && std::abs(finish - 720) <= 10,
                 qPrintable(QStringLiteral("%1 to %2").arg(start).arg(finish)));
        const int zoomed = desk.view->engine().RecordCount;
        QVERIFY2(std::abs(zoomed - wholeDay / 4) < wholeDay / 40,
                 qPrintable(QString::number(zoomed)));
        QCOMPARE(desk.view->engine().ViewEnd, static_cast<double>(zoomed));
        // Drawn afresh over the zoomed hours: the band is gone.
        QVERIFY(TopEdge(plot, 0.3) != qRgb(255, 0, 0));
        QVERIFY(desk.dialogs.messages.empty());

        // The file again shows the whole day.
        auto* files = desk.view->findChild<QListWidget*>(QStringLiteral("File1"));
        QTest::mouseClick(files->viewport(), Qt::LeftButton, {},
                          files->visualItemRect(files->item(0)).center());
        QCOMPARE(desk.view->engine().RecordCount, wholeDay);
    }

    void theViewExportsItsRecordsAndItsPicture() {
        testing::HistoryDesk desk("GraphBZ");
        desk.Open();
        desk.ClickDay();
        Click(desk.view.get(), "CSV");
        const std::string name = desk.view->engine().CsvName();
        QCOMPARE(name, std::string("BZ_2026_11_21_0001_2357"));
        const QString csv =
            QString::fromStdString(InFolder(desk.folder, "/Excel/" + name + ".csv").string());
        QFile file(csv);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = file.readAll().split('\n');
        QCOMPARE(lines.first(), QByteArray("TIME,VOLTS,AMPS,WATTS,RPM,SPEED\r"));
        QCOMPARE(lines.size(), desk.view->engine().RecordCount + 2);

        Click(desk.view.get(), "SaveChartImage");
        const QImage saved(QString::fromStdString(desk.view->ChartImagePath().string()));
        QCOMPARE(saved.size(), desk.view->canvas().image().size());
        QCOMPARE(desk.view->ChartImagePath().filename().string(), name + ".png");
        QCOMPARE(desk.dialogs.messages,
                 (std::vector<std::string>{"Done", "Chart image saved as " + name + ".png"}));
    }

    void printingWithoutAPrinterSaysSoOnceAndTheDarkChartReturns() {
        testing::HistoryDesk desk("GraphRE");
        desk.Open();
        desk.ClickDay();
        Click(desk.view.get(), "PrintButton");
        QCOMPARE(desk.dialogs.messages, std::vector<std::string>{"The form could not be printed"});
        QCOMPARE(desk.view->canvas().image().pixel(5, 5), qRgb(64, 64, 64));

        // The windmill window flashes its chart white and prints nothing, without a word.
        testing::HistoryDesk windmills("GraphBZ");
        windmills.Open();
        windmills.ClickDay();
        Click(windmills.view.get(), "XAxisRPM");
        Click(windmills.view.get(), "PrintButton");
        QVERIFY(windmills.dialogs.messages.empty());
        QCOMPARE(windmills.view->canvas().image().pixel(5, 5), qRgb(64, 64, 64));
        QCOMPARE(windmills.Text("Label7"), std::string("Power vs RPM"));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::GraphWindowViewTest)
#include "graph_window_view_test.moc"
