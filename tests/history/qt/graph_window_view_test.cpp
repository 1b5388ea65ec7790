// The graph windows on the desktop: opened from their menu entries over a logged day, they draw
// it, read values under the mouse, zoom by a drag, export, save a picture and print.

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTest>
#include <QWheelEvent>
#include <set>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "acquisition/qt/platform.h"
#include "app/desktop_dialogs.h"
#include "catalogue/config_files.h"
#include "catalogue/options.h"
#include "history/qt/chart_frame.h"
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

std::vector<std::string> TimeLabels(GraphWindowView& view) {
    std::vector<std::string> labels;
    for (const ScaleTick& tick : view.chartFrame().scales().horizontal.ticks) {
        labels.push_back(tick.label);
    }
    return labels;
}

void Wheel(PlotCanvas& plot, double fraction, int notches) {
    const QPointF at(plot.width() * fraction, plot.height() / 2.0);
    QWheelEvent wheel(at, plot.mapToGlobal(at), {}, QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&plot, &wheel);
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
        // The time stands at the top of the crosshair.
        QCOMPARE(desk.view->chartFrame().crosshairLabel(), QString::fromStdString(at));
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
        QVERIFY(saved.width() > desk.view->canvas().image().width());
        QVERIFY(saved.height() > desk.view->canvas().image().height());
        QCOMPARE(desk.view->ChartImagePath().filename().string(), name + ".png");
        QCOMPARE(desk.dialogs.messages,
                 (std::vector<std::string>{"Done", "Chart image saved as " + name + ".png"}));

        // Under the chart, the legend: each shown series' colour on its own swatch, which the
        // chart above cannot supply since the legend lies below everything drawn.
        const int chartBottom = saved.height() * 3 / 4;
        const QImage legend =
            saved.copy(0, chartBottom, saved.width(), saved.height() - chartBottom);
        const std::set<QRgb> legendColours = Colours(legend);
        const GraphWindow& graph = desk.view->engine();
        for (int s = 0; s < static_cast<int>(graph.member().series.size()); ++s) {
            QVERIFY2(legendColours.count(ToRgb(graph.SeriesColour(s))) == 1,
                     graph.member().series[static_cast<std::size_t>(s)].box.data());
        }

        desk.dialogs.messages.clear();
        Click(desk.view.get(), "SaveChartPdf");
        QFile pdf(QString::fromStdString(desk.view->ChartPdfPath().string()));
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QVERIFY(pdf.read(5) == "%PDF-");
        QCOMPARE(desk.dialogs.messages,
                 std::vector<std::string>{"Chart saved as PDF in " +
                                          desk.view->ChartPdfPath().string()});
    }

    void theScalesFollowTheViewAndTheWheelZoomsWhereWholeDayComesBackFrom() {
        testing::HistoryDesk desk("GraphBZ");
        desk.Open();
        desk.ClickDay();
        GraphWindowView& view = *desk.view;
        QCOMPARE(TimeLabels(view), (std::vector<std::string>{"00:00", "03:00", "06:00", "09:00",
                                                             "12:00", "15:00", "18:00", "21:00"}));
        QVERIFY(!view.chartFrame().scales().vertical.empty());
        const int wholeDay = view.engine().RecordCount;

        // Two notches at three quarters of the day: a quarter of it, around six in the evening.
        Wheel(view.canvas(), 0.75, 2);
        const int start = Minutes(desk.Text("Time1h"), desk.Text("Time1m"));
        const int finish = Minutes(desk.Text("Time2h"), desk.Text("Time2m"));
        QVERIFY2(std::abs(finish - start - 360) < 10 && start < 1080 && finish > 1080,
                 qPrintable(QStringLiteral("%1 to %2").arg(start).arg(finish)));
        QVERIFY(std::abs(view.engine().RecordCount - wholeDay / 4) < wholeDay / 40);
        QCOMPARE(TimeLabels(view).front().substr(3), std::string("00"));

        // Typed hours read as a zoom too; the labels stay inside the hour.
        for (const auto& [box, text] :
             {std::pair{"Time1h", "12"}, {"Time1m", "00"}, {"Time2h", "13"}, {"Time2m", "00"}}) {
            view.engine().SetText(box, text);
        }
        Click(&view, "DisplayButton");
        QVERIFY(TimeLabels(view).size() >= 4);
        for (const std::string& label : TimeLabels(view)) {
            QVERIFY2(label.starts_with("12:") || label == "13:00", label.c_str());
        }
        // The keys on the chart: right pans by a tenth, Backspace goes back zoom by zoom.
        view.canvas().setFocus();
        QTest::keyClick(&view.canvas(), Qt::Key_Right);
        QCOMPARE(desk.Text("Time1m"), std::string("07"));
        QTest::keyClick(&view.canvas(), Qt::Key_Backspace);
        QCOMPARE(desk.Text("Time1h") + desk.Text("Time1m"), std::string("1201"));
        QTest::keyClick(&view.canvas(), Qt::Key_Backspace);
        QCOMPARE(Minutes(desk.Text("Time1h"), desk.Text("Time1m")), start);
        Click(&view, "WholeDay");
        QCOMPARE(view.engine().RecordCount, wholeDay);
        QCOMPARE(view.zoomDepth(), std::size_t{0});
        Click(&view, "WholeDay");  // nothing further back
        QCOMPARE(view.engine().RecordCount, wholeDay);
        QVERIFY(desk.dialogs.messages.empty());

        // The curves have no time to zoom: the wheel leaves them alone.
        Click(&view, "XAxisRPM");
        Wheel(view.canvas(), 0.5, 1);
        QCOMPARE(desk.Text("Label7"), std::string("Power vs RPM"));
        QCOMPARE(view.chartFrame().scales().vertical.title, std::string("Power (W)"));
    }

    void withoutScalesTheChartIsExactlyAsDrawnAndTheChoiceIsKept() {
        testing::HistoryDesk desk("GraphBZ");
        desk.Open();
        desk.ClickDay();
        GraphWindowView& view = *desk.view;
        PlotCanvas& plot = view.canvas();
        testing::Mouse(plot, QEvent::MouseMove, 0.5);
        QVERIFY(plot.grab().toImage() != plot.image());  // grid and crosshair over the picture

        Click(&view, "Scales");
        QCOMPARE(plot.geometry(), view.chartFrame().rect());
        testing::Mouse(plot, QEvent::MouseMove, 0.4);
        QCOMPARE(plot.grab().toImage().convertToFormat(QImage::Format_RGB32),
                 plot.image().convertToFormat(QImage::Format_RGB32));
        QCOMPARE(view.chartFrame().grab().toImage().pixel(0, 0), plot.image().pixel(0, 0));
        QCOMPARE(ReadOptions(desk.folder).Text("ChartScales"), std::string("0"));

        testing::HistoryDesk again("GraphBZ");
        again.state.options = ReadOptions(desk.folder);
        again.view = std::make_unique<GraphWindowView>(*FindGraphMember("GraphBZ"), again.state,
                                                       desk.folder, again.clock, again.dialogs);
        QVERIFY(!again.view->chartFrame().scalesShown());
    }

    void theChartTakesTheWindowAndNothingIsOutOfReach() {
        testing::HistoryDesk desk("GraphBZ");
        // The first-run blue of channel 17 cannot be read on the dark panel: its name gets a chip.
        desk.state.channels.LineColour[17] = 16711680;
        desk.Open();
        desk.ClickDay();
        GraphWindowView& view = *desk.view;
        auto* watts = view.findChild<QCheckBox*>(QStringLiteral("CheckWatts"));
        QVERIFY(watts->styleSheet().contains(QStringLiteral("background-color")));
        QVERIFY(!view.findChild<QCheckBox*>(QStringLiteral("CheckVolts"))
                     ->styleSheet()
                     .contains(QStringLiteral("background-color")));

        for (const QSize size : {QSize(1280, 720), QSize(1600, 860)}) {
            view.resize(size);
            QApplication::processEvents();
            QVERIFY2(view.canvas().width() >= size.width() * 7 / 10,
                     qPrintable(
                         QStringLiteral("%1 of %2").arg(view.canvas().width()).arg(size.width())));
        }
        // Folding the days away gives their room to the chart.
        const int before = view.canvas().width();
        Click(&view, "FoldDays");
        QApplication::processEvents();
        QCOMPARE(view.splitter().sizes().front(), 0);
        QVERIFY(view.canvas().width() > before);

        // Far smaller than its contents, the window scrolls to every control.
        view.resize(500, 160);
        QApplication::processEvents();
        auto* scroll = view.findChild<QScrollArea*>(QStringLiteral("windowScroll"));
        QVERIFY(scroll->horizontalScrollBar()->maximum() > 0);
        QVERIFY(scroll->verticalScrollBar()->maximum() > 0);
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
