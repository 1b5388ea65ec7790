// "setup Hardware" on the desktop: the port is closed while ProgramSetup is up, the user finds
// the ports, chooses one, saves, and the port opens again with the new settings.

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <set>

#include "acquisition/qt/find_comms_window.h"
#include "setup/qt/program_setup_window.h"
#include "support/window_desk.h"

namespace brizalog {

namespace {

class PortsTwoAndFive : public PortProbe {
public:
    bool commAvailable(int portNumber) override { return portNumber == 2 || portNumber == 5; }
};

}  // namespace

using testing::Child;

class HardwareSetupWindowTest : public QObject {
    Q_OBJECT

private slots:
    void theChosenPortAndIntervalAreSavedAndThePortReopened() {
        PortsTwoAndFive probe;
        testing::WindowDesk desk(probe);
        desk.StartOnDesktop();
        QVERIFY(desk.serial.IsOpen());
        QCOMPARE(desk.serial.portNumber(), 3);

        bool portClosedDuringSetup = false;
        QStringList portChoices;
        QString portAfterSearch;
        desk.OnEachWindow([&](QWidget* window) {
            if (auto* search = qobject_cast<FindCommsWindow*>(window)) {
                QTest::mouseClick(Child<QPushButton>(search, "FindPORTS"), Qt::LeftButton);
                QCOMPARE(Child<QPushButton>(search, "ExitFindCOMM")->text(),
                         QStringLiteral("Save"));
                QCOMPARE(Child<QLineEdit>(search, "SelectedPort")->text(), QStringLiteral("2"));
                QTest::mouseClick(Child<QPushButton>(search, "ExitFindCOMM"), Qt::LeftButton);
                return;
            }
            auto* setup = qobject_cast<ProgramSetupWindow*>(window);
            QVERIFY(setup != nullptr);
            portClosedDuringSetup = !desk.serial.IsOpen();
            QCOMPARE(setup->windowTitle(), QStringLiteral("Personal Program NAME"));
            auto* port = Child<QComboBox>(setup, "PortNumber");
            for (int i = 0; i < port->count(); ++i) {
                portChoices << port->itemText(i);
            }
            QTest::mouseClick(Child<QWidget>(setup, "Label7"), Qt::LeftButton);
            portAfterSearch = port->currentText();
            auto* delay = Child<QComboBox>(setup, "LogDelay");
            delay->setCurrentText(QStringLiteral("30"));
            QTest::mouseClick(Child<QPushButton>(setup, "SaveSettingsButton"), Qt::LeftButton);
        });
        desk.form->Click("SetupHardware");

        QVERIFY(portClosedDuringSetup);
        QCOMPARE(portChoices, (QStringList{QStringLiteral("2"), QStringLiteral("5")}));
        QCOMPARE(portAfterSearch, QStringLiteral("2"));
        QVERIFY(desk.serial.IsOpen());
        QCOMPARE(desk.serial.portNumber(), 2);
        QCOMPARE(desk.form->state().settings.LogDelay, 30.0);
        QCOMPARE(desk.form->timer1().Interval(), 30000);
        QVERIFY(QString::fromStdString(ReadWholeFile(desk.folder / "hardware.cfg"))
                    .contains(QStringLiteral("<LogDelay>30</LogDelay>")));
    }

    void abortSavesNothing() {
        testing::VirtualDesk desk;
        PortsTwoAndFive probe;
        SharedState state;
        ProgramSetupWindow window(state, desk.folder, desk.dialogs, probe);
        window.Load();
        const std::string before = ReadWholeFile(desk.folder / "hardware.cfg");
        window.show();
        Child<QComboBox>(&window, "LogDelay")->setCurrentText(QStringLiteral("60"));
        QTest::mouseClick(Child<QPushButton>(&window, "Exit_no_save"), Qt::LeftButton);
        QVERIFY(!window.isVisible());
        QCOMPARE(ReadWholeFile(desk.folder / "hardware.cfg"), before);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::HardwareSetupWindowTest)
#include "hardware_setup_window_test.moc"
