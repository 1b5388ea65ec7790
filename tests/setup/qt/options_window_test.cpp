// The Options window on the desktop: it opens over the main window, frames go on arriving while
// it is up, Enter saves and Escape leaves the file alone,
// and the choices reach the running program when it closes.

#include <QCheckBox>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QTest>

#include "catalogue/files.h"
#include "setup/qt/options_window.h"
#include "support/window_desk.h"

namespace brizalog {

using testing::Child;

class OptionsWindowTest : public QObject {
    Q_OBJECT

private slots:
    // Space ticks the focused box, typing fills the port, Enter is OK.
    void enterSavesWhatWasTypedAndTheProgramTakesIt() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(4)");
        long framesWhileOpen = 0;
        QString told;
        desk.OnEachWindow([&](QWidget* window) {
            if (testing::AnswerMessage(window, told)) {
                return;
            }
            auto* options = qobject_cast<OptionsWindow*>(window);
            QVERIFY(options != nullptr);
            // It fits the screen; what does not fit scrolls.
            const QRect screen = options->screen()->availableGeometry();
            QVERIFY(options->width() <= screen.width() && options->height() <= screen.height());
            QVERIFY(options->findChild<QScrollArea*>() != nullptr);

            auto* contain = Child<QCheckBox>(options, "ContainMeterFailures");
            QVERIFY(!contain->isChecked());
            contain->setFocus();
            QTest::keyClick(contain, Qt::Key_Space);
            auto* port = Child<QLineEdit>(options, "MqttPort");
            QTest::keyClicks(port, QStringLiteral("18x84"));  // a number box takes no letter
            QCOMPARE(port->text(), QStringLiteral("1884"));
            auto* password = Child<QLineEdit>(options, "MqttPassword");
            QCOMPARE(password->echoMode(), QLineEdit::Password);

            const long before = desk.form->state().GoodDataCount;
            desk.Receive("<msg><sensor>0</sensor><tmpr>20.5</tmpr></msg>");
            framesWhileOpen = desk.form->state().GoodDataCount - before;
            QTest::keyClick(port, Qt::Key_Return);
        });
        desk.Click("optionsMENU");
        QCOMPARE(framesWhileOpen, 1L);
        QVERIFY(told.isEmpty());
        QCOMPARE(QString::fromStdString(ReadWholeFile(desk.folder / "options.cfg")),
                 QStringLiteral("<ContainMeterFailures>1</ContainMeterFailures>\r\n"
                                "<MqttPort>1884</MqttPort>\r\n"));
        QVERIFY(desk.form->state().options.Flag("ContainMeterFailures"));
    }

    void escapeLeavesTheFileAsItWas() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.OnEachWindow([&](QWidget* window) {
            auto* options = qobject_cast<OptionsWindow*>(window);
            QVERIFY(options != nullptr);
            QTest::keyClick(Child<QCheckBox>(options, "ContainMeterFailures"), Qt::Key_Space);
            QTest::keyClick(options, Qt::Key_Escape);
        });
        desk.Click("optionsMENU");
        QVERIFY(!std::filesystem::exists(desk.folder / "options.cfg"));
        QVERIFY(!desk.form->state().options.Flag("ContainMeterFailures"));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::OptionsWindowTest)
#include "options_window_test.moc"
