// The main window shows the main form's model and forwards the user's events to it.

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <filesystem>

#include "support/virtual_desk.h"
#include "ui/control_view.h"
#include "ui/keyboard.h"
#include "ui/qt_text.h"
#include "ui/stale_shade.h"

using brizalog::testing::SampleFrame;
using brizalog::testing::VirtualDesk;

namespace brizalog {

namespace {

// What the user reads on an entry: its words, without the mark of its Alt letter.
QString MenuCaption(const std::string& text) {
    return ToQt(text);
}

QString Text(VirtualDesk& desk, const std::string& name) {
    return qobject_cast<QLabel*>(desk.window->controlWidget(name))->text();
}

// Counts the requests for a new layout that reach a widget with a layout: each is a layout of
// all that the widget holds.
struct LayoutRequests : QObject {
    int count = 0;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::LayoutRequest && watched->isWidgetType() &&
            static_cast<QWidget*>(watched)->layout() != nullptr) {
            ++count;
        }
        return false;
    }
};

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void menusFollowTheModelAfterEachHandler() {
        VirtualDesk desk;
        desk.Start();
        desk.window->show();
        const MainFormModel& m = desk.form->model();
        for (const auto& entry : m.menuTree) {
            QAction* action = desk.window->menuAction(entry.name);
            QVERIFY2(action != nullptr, entry.name.c_str());
            QCOMPARE(ShownCaption(action->text()), MenuCaption(m.controls.Find(entry.name)->text));
        }
        QVERIFY(desk.window->menuAction("setsystem(0)")->isChecked());

        desk.window->menuAction("setsystem(5)")->trigger();
        QVERIFY(desk.window->menuAction("setsystem(5)")->isChecked());
        QVERIFY(!desk.window->menuAction("setsystem(0)")->isChecked());
        QVERIFY(desk.window->menuAction("logging(5)")->isEnabled());
        QVERIFY(!desk.window->menuAction("logging(0)")->isEnabled());
        QCOMPARE(qobject_cast<QLabel*>(desk.window->controlWidget("Label11"))->text(),
                 QStringLiteral("4Ch House A + Batt V"));
        QVERIFY(!desk.window->menuAction("plotwindmill1")->isEnabled());

        desk.window->menuAction("startMENU")->trigger();
        QVERIFY(!desk.window->menuAction("startMENU")->isEnabled());
        QVERIFY(desk.window->menuAction("stopMENU")->isEnabled());
        QVERIFY(!desk.window->menuAction("setup")->isEnabled());
        QVERIFY(qobject_cast<QLineEdit*>(desk.window->controlWidget("delay"))->isReadOnly());
        desk.window->menuAction("stopMENU")->trigger();
        QVERIFY(desk.window->menuAction("startMENU")->isEnabled());
        QVERIFY(!qobject_cast<QLineEdit*>(desk.window->controlWidget("delay"))->isReadOnly());
    }

    void aClickOnACellShowsItsReadoutUntilTheNextFrame() {
        VirtualDesk desk;
        QVERIFY(desk.ShowSystem(2));
        desk.Receive(SampleFrame(2));
        QCOMPARE(Text(desk, "Amps(2)"), QStringLiteral("6.20 A"));

        // A click on any amps cell writes the first channel's maximum into all four.
        QTest::mouseClick(desk.window->controlWidget("Amps(2)"), Qt::LeftButton);
        for (const char* cell : {"Amps(0)", "Amps(1)", "Amps(2)", "Amps(3)"}) {
            QCOMPARE(Text(desk, cell), QStringLiteral("21.5"));
        }
        desk.Receive(SampleFrame(2));
        QCOMPARE(Text(desk, "Amps(2)"), QStringLiteral("6.20 A"));
        QCOMPARE(desk.window->windowTitle(), QStringLiteral("Battery = 13.20V "));
    }

    void theDelayBoxAndCheck1ReachTheForm() {
        VirtualDesk desk;
        desk.Start();
        desk.Click("setsystem(1)");
        desk.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
        auto* delay = qobject_cast<QLineEdit*>(desk.window->controlWidget("delay"));
        delay->selectAll();
        QTest::keyClicks(delay, "30");
        QCOMPARE(desk.form->model().delay.text, std::string("30"));

        auto* check1 = qobject_cast<QCheckBox*>(desk.window->controlWidget("Check1"));
        QTest::mouseClick(check1, Qt::LeftButton, {}, QPoint(6, check1->height() / 2));
        QVERIFY(desk.form->model().Check1.checked);
        QCOMPARE(check1->text(), QStringLiteral("Alt Volts2"));
    }

    // Every group and cell is shown exactly when the model shows it, and the groups stand in
    // the order of their positions.
    void thePanelOfEachSystemType() {
        for (int type = 0; type <= 8; ++type) {
            VirtualDesk desk;
            QVERIFY(desk.ShowSystem(type));
            const MainFormModel& m = desk.form->model();
            std::vector<std::pair<int, int>> tops;  // model top, window y
            for (const auto& [name, control] : m.controls.items()) {
                QWidget* widget = desk.window->controlWidget(name);
                if (widget == nullptr || name == "DataOK" || name == "LogOK") {
                    continue;  // menu entries, and the flashing indicators
                }
                const bool inShownGroup = [&] {
                    for (std::string_view group = MainFormModel::GroupOf(name); !group.empty();
                         group = MainFormModel::GroupOf(group)) {
                        if (!m.controls.Find(group)->visible) {
                            return false;
                        }
                    }
                    return true;
                }();
                QCOMPARE(widget->isVisible(), control->visible && inShownGroup);
                if (name.rfind("Frame1", 0) == 0 || name.rfind("Frame4", 0) == 0 ||
                    name == "Frame2") {
                    if (control->visible) {
                        tops.emplace_back(control->top, widget->y());
                    }
                }
            }
            std::sort(tops.begin(), tops.end());
            for (std::size_t i = 1; i < tops.size(); ++i) {
                QVERIFY2(tops[i - 1].second < tops[i].second, qPrintable(QString::number(type)));
            }
        }
    }

    void theWindowFollowsThePanelHeightOfTheLayout() {
        VirtualDesk desk;
        desk.AllChannelsOn();
        desk.Start();
        desk.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
        desk.window->menuAction("setsystem(8)")->trigger();
        const int tall = desk.window->height();
        desk.window->menuAction("setsystem(0)")->trigger();
        const int low = desk.window->height();
        QVERIFY2(low < tall / 2, qPrintable(QStringLiteral("%1 then %2").arg(tall).arg(low)));
        QVERIFY(!desk.window->controlWidget("Frame2")->isVisible());
    }

    // The frame indicator lights at every frame and goes dark at Timer2's tick: at ten frames a
    // second that must repaint its square alone, never lay the window out again.
    void theFlashingIndicatorNeverLaysTheWindowOut() {
        VirtualDesk desk;
        QVERIFY(desk.ShowSystem(1));
        auto* lamp = static_cast<Lamp*>(desk.window->controlWidget("DataOK"));
        LayoutRequests requests;
        // The first frames widen the readings' places; from then on nothing moves.
        for (int i = 0; i < 6; ++i) {
            if (i == 3) {
                qApp->installEventFilter(&requests);
            }
            desk.Receive(SampleFrame(1));
            QVERIFY(lamp->lit());
            QCOMPARE(lamp->colour(), ToQColor(desk.form->model().DataOK.colour));
            QCoreApplication::processEvents();
            desk.timers.Advance(1000);
            desk.window->Render();
            QVERIFY(!lamp->lit());
            QCoreApplication::processEvents();
        }
        qApp->removeEventFilter(&requests);
        QVERIFY(lamp->isVisible());
        QCOMPARE(requests.count, 0);
    }

    // The status bar: the device behind the port, the day's log, the frames and their rate, a
    // device that has gone, and the program's notices, each source's latest.
    void theStatusBarTellsWhatTheLoggerIsDoing() {
        VirtualDesk desk;
        std::filesystem::create_directory(desk.folder / "ports");
        std::filesystem::create_symlink("/dev/null", desk.folder / "ports" / "COM3");
        QVERIFY(desk.ShowSystem(8));
        desk.Click("startMENU");
        auto text = [&](const char* name) {
            desk.window->UpdateStatus();
            return desk.window->findChild<QLabel*>(QString::fromLatin1(name))->text();
        };
        QCOMPARE(text("statusPort"), QStringLiteral("COM3 \u2192 /dev/null"));
        QCOMPARE(text("statusLogging"), QStringLiteral("logging to BZ_2026_03_07.txt + 2 more"));
        QCOMPARE(text("statusFrame"), QStringLiteral("no frame yet"));
        desk.clock.Set({2026, 3, 7, 14, 5, 9, 0});
        desk.Receive(SampleFrame(8) + SampleFrame(8));
        QCOMPARE(text("statusFrame"), QStringLiteral("last frame 14:05:09"));
        QVERIFY(text("statusRate") != QStringLiteral("0.0 frames/s"));
        desk.Click("stopMENU");
        QCOMPARE(text("statusLogging"), QStringLiteral("not logging"));

        desk.window->DeviceLost();
        QCOMPARE(text("statusUnplugged"),
                 QStringLiteral("device unplugged \u2014 waiting since 14:05:09"));
        desk.window->DeviceBack();
        QVERIFY(!desk.window->findChild<QLabel*>(QStringLiteral("statusUnplugged"))->isVisible());
        desk.window->ShowNotice("mqtt", "broker unreachable");
        desk.window->ShowNotice("log", "cannot write the day's log");
        QCOMPARE(text("statusNotice"), QStringLiteral("log: cannot write the day's log \u00b7 "
                                                      "mqtt: broker unreachable"));
        desk.window->ShowNotice("log", "");
        QCOMPARE(text("statusNotice"), QStringLiteral("mqtt: broker unreachable"));
    }

    // Three logging intervals without a frame (10 s at least) dim the panel under a note; the
    // next frame lifts it at once. The cells keep the texts and colours the rules gave them.
    void readingsWithoutFramesLookStaleUntilTheNextFrame() {
        VirtualDesk desk;
        QVERIFY(desk.ShowSystem(8));
        desk.window->SetSecondsSource([&desk] { return SecondsSinceMidnight(desk.clock.Now()); });
        auto* shade = desk.window->findChild<QWidget*>(QStringLiteral("staleShade"));
        QVERIFY(shade != nullptr);
        desk.Receive(SampleFrame(8));
        const QString volts = Text(desk, "Volts(0)");
        const QString style = desk.window->controlWidget("Volts(0)")->styleSheet();
        const int logDelay = static_cast<int>(desk.form->state().settings.LogDelay);
        desk.clock.Set(AddMilliseconds(desk.clock.Now(), 3 * logDelay * 1000 - 500));
        desk.window->UpdateStatus();
        QVERIFY(!shade->isVisible());
        desk.clock.Set(AddMilliseconds(desk.clock.Now(), 1000));
        desk.window->UpdateStatus();
        QVERIFY(shade->isVisible());
        QCOMPARE(StaleNote(), QStringLiteral("no data since 14:05:00"));
        QCOMPARE(Text(desk, "Volts(0)"), volts);
        QCOMPARE(desk.window->controlWidget("Volts(0)")->styleSheet(), style);
        desk.Receive(SampleFrame(8));
        QVERIFY(!shade->isVisible());
        QVERIFY(StaleNote().isEmpty());
    }

    void exitWritesTheSettingsAndClosesTheWindow() {
        VirtualDesk desk;
        desk.Start();
        desk.window->show();
        QFile::remove(QString::fromStdString((desk.folder / "hardware.cfg").string()));
        desk.window->menuAction("exitMENU")->trigger();
        QVERIFY(!desk.window->isVisible());
        QVERIFY(QFile::exists(QString::fromStdString((desk.folder / "hardware.cfg").string())));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::MainWindowTest)
#include "main_window_test.moc"
