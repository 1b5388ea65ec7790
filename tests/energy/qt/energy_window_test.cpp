// The Energy window over generated logs: it reads behind a progress bar while the window's
// thread goes on, cancels, keeps its tariff in options.cfg without touching a log or a configuration file, and
// leaves pictures of a year in the build folder's screenshots/ (energy_*.png).

#include <QApplication>
#include <QBarSet>
#include <QChartView>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedBarSeries>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <map>

#include "catalogue/files.h"
#include "energy/qt/energy_window.h"
#include "support/logged_year.h"
#include "support/screenshots.h"

namespace brizalog {

namespace {

constexpr CivilDate kToday{2026, 11, 23};

// Every file of the folder and its bytes, but the window's own: its index, options.cfg and the
// spreadsheet folder.
std::map<std::string, std::string> LogsAndSettings(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().lexically_relative(folder).generic_string();
        if (entry.is_regular_file() && name != "logs/energy.index" && name != "options.cfg" &&
            name.rfind("excel/", 0) != 0) {
            files[name] = ReadWholeFile(entry.path());
        }
    }
    return files;
}

struct EnergyDesk {
    explicit EnergyDesk(int days, double logDelay = 300) {
        folder = dir.path().toStdString();
        std::filesystem::create_directories(folder / "excel");
        testing::WriteLoggedYear(folder, DateOfDayNumber(DayNumber(kToday) - days + 1), days,
                                 logDelay, {days - 40, days - 39});
        testing::SetYearChannels(state.channels);
        window = std::make_unique<EnergyWindow>(state, folder, kToday);
        window->resize(1180, 640);
    }
    // Reads the folder and waits until the window shows it.
    bool Read() {
        QSignalSpy shown(window.get(), &EnergyWindow::bookShown);
        window->Load();
        return shown.wait(60000);
    }

    QTemporaryDir dir;
    std::filesystem::path folder;
    SharedState state;
    std::unique_ptr<EnergyWindow> window;
};

}  // namespace

class EnergyWindowTest : public QObject {
    Q_OBJECT

private slots:
    void readsBehindAProgressBarWhileTheWindowsThreadGoesOn() {
        EnergyDesk desk(60, 10);
        desk.window->show();
        // A timer of the window's thread, as the logging tick is: the reading never holds it up.
        QElapsedTimer clock;
        qint64 last = 0;
        qint64 longest = 0;
        QTimer tick;
        connect(&tick, &QTimer::timeout, [&] {
            longest = std::max(longest, clock.elapsed() - last);
            last = clock.elapsed();
        });
        tick.start(10);
        clock.start();
        QSignalSpy shown(desk.window.get(), &EnergyWindow::bookShown);
        desk.window->Load();
        QVERIFY(desk.window->Busy());
        QVERIFY(desk.window->findChild<QProgressBar*>(QStringLiteral("Progress"))->isVisible());
        QVERIFY(shown.wait(60000));
        QVERIFY2(longest < 250, qPrintable(QString::number(longest) + " ms without a tick"));
        QVERIFY(!desk.window->Busy());

        // The month of today: a row per day and the total, bars in the channels' own colours.
        auto* table = desk.window->findChild<QTableWidget*>(QStringLiteral("Table"));
        QCOMPARE(table->rowCount(), 30 + 1);
        QCOMPARE(table->item(30, 0)->text(), QStringLiteral("Total"));
        auto* chart = desk.window->barView()->chart();
        QCOMPARE(chart->series().size(), 1);
        auto* bars = qobject_cast<QStackedBarSeries*>(chart->series().front());
        QVERIFY(bars != nullptr);
        QStringList names;
        for (QBarSet* set : bars->barSets()) {
            names << set->label();
        }
        QCOMPARE(names, (QStringList{"Mill 1", "Mill 2", "Solar", "Load"}));
        QCOMPARE(bars->barSets().front()->color(), ChannelColour(2263842));
        QCOMPARE(bars->barSets().front()->count(), 30);
        // Days to come have no bar and no figures.
        QCOMPARE(bars->barSets().front()->at(29), 0.0);
        QVERIFY(table->item(29, 1)->text().isEmpty());
        QVERIFY(!table->item(22, 1)->text().isEmpty());

        // A second opening reads only what changed: nothing.
        QVERIFY(desk.Read());
        QCOMPARE(desk.window->findChild<QLabel*>(QStringLiteral("Status"))->text(),
                 QStringLiteral("58 logged days, 0 read from their logs"));
    }

    void cancellingStopsTheReadingAndSaysSo() {
        EnergyDesk desk(60, 10);
        QSignalSpy shown(desk.window.get(), &EnergyWindow::bookShown);
        desk.window->Load();
        desk.window->findChild<QPushButton*>(QStringLiteral("Cancel"))->click();
        QVERIFY(shown.wait(60000));
        QVERIFY(desk.window->findChild<QLabel*>(QStringLiteral("Status"))
                    ->text()
                    .startsWith(QStringLiteral("Cancelled")));
        QVERIFY(desk.window->model().book().days.empty());
    }

    void theTariffGoesToOptionsAndNoLogNorSettingIsWritten() {
        EnergyDesk desk(20);
        WriteWholeFile(desk.folder / "options.cfg", "<MqttHost>broker.lan</MqttHost>\r\n");
        WriteWholeFile(desk.folder / "hardware.cfg", "<M>12</M>\r\n");
        const auto before = LogsAndSettings(desk.folder);
        desk.window = std::make_unique<EnergyWindow>(desk.state, desk.folder, kToday);
        QVERIFY(desk.Read());
        auto* price = desk.window->findChild<QDoubleSpinBox*>(QStringLiteral("Price"));
        QCOMPARE(price->value(), 0.12);  // the stored first power rate, 12 cents
        price->setValue(0.3);
        emit price->editingFinished();
        const std::string options = ReadWholeFile(desk.folder / "options.cfg");
        QVERIFY(options.find("<EnergyPrice>0.3</EnergyPrice>") != std::string::npos);
        QVERIFY(options.find("<MqttHost>broker.lan</MqttHost>") != std::string::npos);
        QCOMPARE(desk.state.options.Text("EnergyPrice"), std::string("0.3"));

        // 22 November at the new price, its kWh shown to a tenth.
        auto* table = desk.window->findChild<QTableWidget*>(QStringLiteral("Table"));
        const double kwh = table->item(21, 1)->text().toDouble();
        QVERIFY(kwh > 1);
        QVERIFY(std::abs(table->item(21, 2)->text().toDouble() - kwh * 0.3) < 0.02);

        desk.window->ExportCsv();
        QVERIFY(desk.window->SaveChartImage());
        QVERIFY(std::filesystem::exists(desk.folder / "excel" / "energy_2026-11.csv"));
        QVERIFY(std::filesystem::exists(desk.window->ChartImagePath()));
        QVERIFY(LogsAndSettings(desk.folder) == before);
    }

    // Pictures of a year at 5-minute logs, with a fortnight in March not logged.
    void picturesOfAYear() {
        EnergyDesk desk(365);
        desk.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
        QVERIFY(desk.Read());
        EnergyModel& model = desk.window->model();
        const auto shoot = [&](const char* name) {
            QTest::qWait(50);
            QVERIFY(desk.window->grab().save(testing::ScreenshotFile(QString::fromLatin1(name))));
        };
        model.SetView("month");
        model.SetPeriod("2026");
        desk.window->findChild<QComboBox*>(QStringLiteral("View"))->activated(2);
        shoot("energy_months");
        model.SetView("day");
        model.SetPeriod("2026-10");
        desk.window->findChild<QComboBox*>(QStringLiteral("View"))->activated(0);
        model.SetPeriod("2026-10");
        desk.window->findChild<QPushButton*>(QStringLiteral("Next"))->click();
        desk.window->findChild<QPushButton*>(QStringLiteral("Previous"))->click();
        shoot("energy_days");
        QSignalSpy power(desk.window.get(), &EnergyWindow::powerShown);
        desk.window->tabs()->setCurrentIndex(1);
        desk.window->ShowPower(DateOfDayNumber(DayNumber(kToday) - 6), 7);
        QVERIFY(power.wait(30000) || power.count() > 0);
        shoot("energy_power_week");
        desk.window->findChild<QComboBox*>(QStringLiteral("Span"))->setCurrentIndex(2);
        desk.window->ShowPower(DateOfDayNumber(DayNumber(kToday) - 365), 366);
        shoot("energy_power_year");

        // Under a dark palette the charts take a dark theme.
        QApplication::setStyle(QStringLiteral("Fusion"));
        QPalette dark;
        dark.setColor(QPalette::Window, QColor(45, 45, 48));
        dark.setColor(QPalette::WindowText, QColor(230, 230, 230));
        dark.setColor(QPalette::Base, QColor(30, 30, 32));
        dark.setColor(QPalette::AlternateBase, QColor(45, 45, 48));
        dark.setColor(QPalette::Text, QColor(230, 230, 230));
        dark.setColor(QPalette::Button, QColor(55, 55, 58));
        dark.setColor(QPalette::ButtonText, QColor(230, 230, 230));
        dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
        QApplication::setPalette(dark);
        desk.window->tabs()->setCurrentIndex(0);
        QTest::qWait(50);
        shoot("energy_dark");
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::EnergyWindowTest)
#include "energy_window_test.moc"
