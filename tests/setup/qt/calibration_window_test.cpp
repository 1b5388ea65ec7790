// CALIBRATION on the desktop: its readouts follow live frames at each tick of its own timer, and a
// zero taken there is used at once and thrown away by EXIT.

#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "setup/qt/calibration_window.h"
#include "support/window_desk.h"
#include "ui/event_gate.h"

namespace brizalog {

using testing::Child;

class CalibrationWindowTest : public QObject {
    Q_OBJECT

private slots:
    void readoutsFollowFramesAndExitDropsTheZero() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(8)");
        desk.Receive(testing::SampleFrame(8));

        QString rawAfterTick;
        QString displayAfterTick;
        double zeroWhileOpen = -1;
        desk.OnEachWindow([&](QWidget* window) {
            QCOMPARE(window->windowTitle(), QStringLiteral(" Current Channels Calibration"));
            desk.Receive(testing::SampleFrame(8));
            desk.timers.Advance(1000);
            RunHandler([] {});
            rawAfterTick = Child<QLabel>(window, QStringLiteral("Label1(1)"))->text();
            displayAfterTick = Child<QLabel>(window, QStringLiteral("Label2(1)"))->text();
            auto* zero = Child<QPushButton>(window, QStringLiteral("AUTOZEROBUTTON(1)"));
            QVERIFY(!zero->isEnabled());
            QTest::mouseClick(Child<QRadioButton>(window, QStringLiteral("Amps(1)")),
                              Qt::LeftButton);
            QVERIFY(zero->isEnabled());
            QTest::mouseClick(zero, Qt::LeftButton);
            zeroWhileOpen = desk.form->state().calibration.ADCOffset[1];
            desk.timers.Advance(1000);
            RunHandler([] {});
            testing::KeepPicture(window, "calibration.png");
            QTest::keyClick(window, Qt::Key_Escape);
        });
        desk.Click("CALIBRATIONmenu");

        QCOMPARE(rawAfterTick, QStringLiteral("215"));
        QCOMPARE(displayAfterTick, QStringLiteral("21.50"));
        QCOMPARE(zeroWhileOpen, 215.0);
        QCOMPARE(desk.form->state().calibration.ADCOffset[1], 0.0);
    }

    // A withdrawn row takes its factor box along: system 0 offers rows 1, 9, 12 and 13 only.
    void aRowNotOfferedShowsNothingOfItself() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(0)");
        QStringList shownFactors;
        desk.desktop.onWindowShown = [&](QWidget* window) {
            QTimer::singleShot(0, window, [&, window] {
                for (int i = 1; i <= 16; ++i) {
                    const QString name = QStringLiteral("Text1(%1)").arg(i);
                    if (Child<QLineEdit>(window, name)->isVisibleTo(window)) {
                        shownFactors << name;
                    }
                }
                QTest::keyClick(window, Qt::Key_Escape);
            });
        };
        desk.Click("CALIBRATIONmenu");
        QCOMPARE(shownFactors, QStringList({"Text1(1)", "Text1(9)", "Text1(12)", "Text1(13)"}));
    }

    void aMeterNeedsNoCalibration() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(3)");
        QString told;
        bool saveOffered = true;
        desk.OnEachWindow([&](QWidget* window) {
            if (testing::AnswerMessage(window, told)) {
                return;
            }
            for (QAction* action : window->findChildren<QAction*>()) {
                if (action->objectName() == QStringLiteral("SAVEcalibration")) {
                    saveOffered = action->isEnabled();
                }
            }
            QTest::keyClick(window, Qt::Key_Escape);
        });
        desk.Click("CALIBRATIONmenu");
        QCOMPARE(told, QStringLiteral(
                           "no calibration required for Current Cost.  press EXIT on next screen"));
        QVERIFY(!saveOffered);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::CalibrationWindowTest)
#include "calibration_window_test.moc"
