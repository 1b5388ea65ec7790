// The channel forms on the desktop: a channel is renamed through TextInput and recoloured through
// ColourCHART, two modal levels deep, while frames and the logging tick go on behind them.

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "catalogue/files.h"
#include "setup/qt/channel_setup_window.h"
#include "setup/qt/small_input_window.h"
#include "support/window_desk.h"

namespace brizalog {

using testing::Child;

class ChannelSetupWindowTest : public QObject {
    Q_OBJECT

private slots:
    void aChannelIsRenamedAndRecolouredWhileFramesGoOn() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(1)");
        const long framesBefore = desk.form->state().GoodDataCount;

        QStringList seen;
        bool rowsRight = false;
        long framesInsideNameWindow = 0;
        QString nameShown;
        desk.OnEachWindow([&](QWidget* window) {
            seen << window->objectName();
            if (window->objectName() == QStringLiteral("TextInput")) {
                auto* text = Child<QLineEdit>(window, QStringLiteral("Text1"));
                QCOMPARE(text->text(), QStringLiteral("SYSTEM VOLTS"));
                desk.Receive(testing::SampleFrame(1));
                framesInsideNameWindow = desk.form->state().GoodDataCount;
                text->selectAll();
                QTest::keyClicks(text, QStringLiteral("House bank"));
                QTest::keyClick(text, Qt::Key_Return);
                return;
            }
            if (window->objectName() == QStringLiteral("ColourCHART")) {
                testing::KeepPicture(window, "colour_chart.png");
                QTest::mouseClick(Child<QPushButton>(window, QStringLiteral("Label9")),
                                  Qt::LeftButton);
                return;
            }
            auto* form = qobject_cast<ChannelSetupWindow*>(window);
            QVERIFY(form != nullptr);
            rowsRight =
                Child<QCheckBox>(form, QStringLiteral("CheckEnable(9)"))->isVisibleTo(form) &&
                !Child<QCheckBox>(form, QStringLiteral("CheckEnable(3)"))->isVisibleTo(form) &&
                !Child<QComboBox>(form, QStringLiteral("MAXLimit(2)"))->isEnabled();
            QTest::mouseClick(Child<QLabel>(form, QStringLiteral("dataCHANNEL(9)")),
                              Qt::LeftButton);
            nameShown = Child<QLabel>(form, QStringLiteral("dataCHANNEL(9)"))->text();
            QTest::mouseClick(Child<QPushButton>(form, QStringLiteral("ChannelColour(9)")),
                              Qt::LeftButton);
            desk.timers.Advance(10000);
            testing::KeepPicture(form, "setup_hardware_channels.png");
            QTest::mouseClick(Child<QPushButton>(form, QStringLiteral("SaveSettings")),
                              Qt::LeftButton);
        });
        desk.Click("logging(1)");

        QCOMPARE(seen, (QStringList{QStringLiteral("setupHARDWAREchannels"),
                                    QStringLiteral("TextInput"), QStringLiteral("ColourCHART")}));
        QVERIFY(rowsRight);
        QCOMPARE(framesInsideNameWindow, framesBefore + 1);
        QCOMPARE(nameShown, QStringLiteral("House bank"));
        // The tick inside the form logged the interval and cleared its count.
        QCOMPARE(desk.form->state().GoodDataCount, 0L);
        QCOMPARE(desk.form->state().channels.ChannelName[9], std::string("House bank"));
        QCOMPARE(desk.form->state().channels.LineColour[9], 65280);
        QVERIFY(ReadWholeFile(desk.folder / "channels.cfg").find("<C9>House bank</C9>") !=
                std::string::npos);
    }

    void eachMenuGroupOpensItsFormWithItsRows() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(3)");
        QStringList titles;
        bool meterRowsOnly = true;
        desk.OnEachWindow([&](QWidget* window) {
            titles << window->windowTitle();
            for (int i = 1; i <= 24; ++i) {
                const bool shown =
                    window->findChild<QCheckBox*>(QStringLiteral("CheckEnable(%1)").arg(i))
                        ->isVisibleTo(window);
                meterRowsOnly = meterRowsOnly && shown == (i >= 19 && i <= 21);
            }
            QTest::keyClick(window, Qt::Key_Escape);
        });
        for (const char* entry : {"logging(3)", "logTOfile(3)", "graphing(3)", "display(3)"}) {
            desk.Click(entry);
        }
        QCOMPARE(titles,
                 (QStringList{
                     QStringLiteral("Setup Channels [Channel Name,  Maximum Reading,  "
                                    "Graphing line colour]  & if ENABLED"),
                     QStringLiteral("Setup the logging channels associated XML data identifiers"),
                     QStringLiteral("Setup Channels for GRAPHING"),
                     QStringLiteral("Setup DATA Channels to display")}));
        QVERIFY(meterRowsOnly);
    }

    void escapeAbortsAndTheDisplayFlagsComeBackFromTheFile() {
        testing::WindowDesk desk;
        desk.StartOnDesktop();
        const std::string before = ReadWholeFile(desk.folder / "channels.cfg");
        desk.OnEachWindow([&](QWidget* window) {
            auto* box = Child<QCheckBox>(window, QStringLiteral("CheckEnable(9)"));
            QVERIFY(box->isChecked());
            QTest::mouseClick(box, Qt::LeftButton);
            QCOMPARE(desk.form->state().channels.enableDISPLAY[9], std::uint8_t{0});
            testing::KeepPicture(window, "setup_display_channels.png");
            QTest::keyClick(window, Qt::Key_Escape);
        });
        desk.Click("display(0)");
        QCOMPARE(ReadWholeFile(desk.folder / "channels.cfg"), before);
        QCOMPARE(desk.form->state().channels.enableDISPLAY[9], std::uint8_t{1});
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::ChannelSetupWindowTest)
#include "channel_setup_window_test.moc"
