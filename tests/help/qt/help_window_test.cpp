// The help viewer on the desktop: a topic's lines in the second column, a topic without its
// ".txt" told in a message box.

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "catalogue/files.h"
#include "help/qt/help_window.h"
#include "support/window_desk.h"

namespace brizalog {

using testing::Child;

class HelpWindowTest : public QObject {
    Q_OBJECT

private slots:
    void theGeneralTopicShowsAndAMissingTopicIsTold() {
        testing::WindowDesk desk;
        WriteWholeFile(desk.folder / "help.txt", "");
        WriteWholeFile(desk.folder / "help.cfg",
                       "General help\r\nBrizalog logs a small wind and solar installation.\r\n"
                       "Choose your system under Configure, then name your channels under "
                       "Setup.\r\nStart begins the daily log; Stop ends it.");
        desk.StartOnDesktop();

        QStringList rows;
        QString heading;
        QString told;
        desk.OnEachWindow([&](QWidget* window) {
            if (testing::AnswerMessage(window, told)) {
                return;
            }
            auto* list = Child<QTreeWidget>(window, QStringLiteral("ListView1"));
            heading = list->headerItem()->text(1);
            for (int r = 0; r < list->topLevelItemCount(); ++r) {
                rows << list->topLevelItem(r)->text(1);
            }
            testing::KeepPicture(window, "help.png");
            QTest::mouseClick(Child<QPushButton>(window, QStringLiteral("hardware")),
                              Qt::LeftButton);
            QCOMPARE(list->topLevelItemCount(), 0);
            QTest::keyClick(window, Qt::Key_Escape);
        });
        desk.Click("Helpmenu");

        QCOMPARE(heading, QStringLiteral("general HELP"));
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.first(),
                 QStringLiteral("Brizalog logs a small wind and solar installation."));
        QCOMPARE(told, QStringLiteral("hardware setup help file seems to be missing"));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::HelpWindowTest)
#include "help_window_test.moc"
