// Every window opens wholly on a small screen, at 200 %, and where the user last left it.

#include <QApplication>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "support/window_desk.h"
#include "ui/qt_text.h"
#include "ui/window_fit.h"

namespace brizalog {

using testing::WindowDesk;

namespace {

// The window lies within the usable area of its screen, and its layout has at least the room
// it needs: whatever is more than the window scrolls, nothing is squeezed out of reach.
QString Misfit(QWidget* window) {
    const QRect area = window->screen()->availableGeometry();
    if (!area.contains(window->frameGeometry())) {
        return QStringLiteral("%1 at %2,%3 %4x%5 leaves the screen %6x%7")
            .arg(window->objectName())
            .arg(window->x())
            .arg(window->y())
            .arg(window->width())
            .arg(window->height())
            .arg(area.width())
            .arg(area.height());
    }
    const QSize least = window->minimumSizeHint();
    if (least.width() > window->width() || least.height() > window->height()) {
        return QStringLiteral("%1 needs %2x%3 and has %4x%5")
            .arg(window->objectName())
            .arg(least.width())
            .arg(least.height())
            .arg(window->width())
            .arg(window->height());
    }
    return {};
}

}  // namespace

class WindowFitTest : public QObject {
    Q_OBJECT

private slots:
    void everyWindowFitsAScreenAt200Percent() {
        const struct {
            int system;
            const char* click;
        } openings[] = {
            {8, "SetupHardware"},   {8, "logging(8)"},      {8, "logTOfile(8)"},
            {3, "logging(3)"},      {8, "CALIBRATIONmenu"}, {3, "CALIBRATIONmenu"},
            {4, "CALIBRATIONmenu"}, {8, "about"},           {8, "Helpmenu"},
            {8, "batteryMonitor"},  {8, "VUmeters"},        {8, "plotwindmill1"},
            {8, "maxMINS"},         {8, "rawCOMMdatamenu"},
        };
        for (const auto& opening : openings) {
            WindowDesk desk;
            desk.AllChannelsOn();
            desk.StartOnDesktop();
            desk.Click("setsystem(" + std::to_string(opening.system) + ")");
            desk.window->show();
            QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
            QVERIFY2(Misfit(desk.window.get()).isEmpty(), qPrintable(Misfit(desk.window.get())));
            QStringList misfits;
            QStringList seen;
            desk.OnEachWindow([&](QWidget* window) {
                QString told;
                if (testing::AnswerMessage(window, told)) {
                    return;
                }
                seen << window->objectName();
                if (const QString misfit = Misfit(window); !misfit.isEmpty()) {
                    misfits << misfit;
                }
                if (auto* menu = window->findChild<QMenuBar*>()) {
                    // Every entry of a window's menu bar is in view, not behind a "»".
                    for (QAction* action : menu->actions()) {
                        if (action->isVisible() &&
                            menu->actionGeometry(action).right() > menu->width()) {
                            misfits << window->objectName() + QStringLiteral(": ") +
                                           action->text() + QStringLiteral(" hidden");
                        }
                    }
                }
                window->close();
            });
            desk.Click(opening.click);
            QCoreApplication::processEvents();
            QVERIFY2(!seen.isEmpty(), opening.click);
            QVERIFY2(misfits.isEmpty(), qPrintable(misfits.join(QStringLiteral("; "))));
        }
    }

    // A channel's name longer than its place is cut, on the panel and in the forms alike, and
    // the whole name is in the tooltip.
    void aLongNameIsCutWithTheWholeNameInItsTooltip() {
        WindowDesk desk;
        desk.AllChannelsOn();
        ChannelTable table;
        LoadChannelTable(ReadWholeFile(desk.folder / "channels.cfg"), table);
        const std::string name = "Heat pump in the far barn behind the orchard, south wall";
        table.ChannelName[19] = name;
        WriteChannelTable(table, desk.folder);
        desk.StartOnDesktop();
        desk.Click("setsystem(3)");
        auto* group = qobject_cast<QGroupBox*>(desk.window->controlWidget("Frame5(1)"));
        QVERIFY(group->title().endsWith(QChar(0x2026)));
        QCOMPARE(group->toolTip(), ToQt(name));
        QString shown;
        QString tip;
        desk.OnEachWindow([&](QWidget* window) {
            auto* label = testing::Child<QLabel>(window, "dataCHANNEL(19)");
            shown = label->text();
            tip = label->toolTip();
            window->close();
        });
        desk.Click("logging(3)");
        QVERIFY(shown.endsWith(QChar(0x2026)));
        QVERIFY(tip.startsWith(ToQt(name)));
    }

    void aWindowOpensWhereItWasLastClosedAndADamagedFileIsForgiven() {
        QTemporaryDir folder;
        SetWindowPlacesFolder(folder.path().toStdString());
        auto open = [] {
            auto* window = new QWidget;
            window->setObjectName(QStringLiteral("BarGraphs"));
            window->resize(120, 90);
            FitToScreen(window);
            window->show();
            return std::unique_ptr<QWidget>(window);
        };
        {
            auto first = open();
            QCOMPARE(first->size(), QSize(120, 90));
            first->setGeometry(20, 30, 150, 100);
            first->close();
        }
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("windows.cfg"))));
        QCOMPARE(open()->geometry(), QRect(20, 30, 150, 100));

        QFile damaged(folder.filePath(QStringLiteral("windows.cfg")));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("<BarGraphs>20,30,150</BarGraphs>\r\n");
        damaged.close();
        SetWindowPlacesFolder(folder.path().toStdString());
        const auto again = open();
        QCOMPARE(again->size(), QSize(120, 90));
        QVERIFY(again->geometry() != QRect(20, 30, 150, 100));
        SetWindowPlacesFolder({});
    }
};

}  // namespace brizalog

// A laptop's 1,366 × 768 screen with window frames, at 200 %: 683 × 384 for the windows.
int main(int argc, char* argv[]) {
    QTemporaryDir dir;
    QFile config(dir.filePath(QStringLiteral("screen.json")));
    if (!config.open(QIODevice::WriteOnly)) {
        return 2;
    }
    config.write(R"({"windowFrameMargins": true, "screens": [{"name": "laptop", "x": 0, "y": 0,
        "width": 1366, "height": 768, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    config.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toLocal8Bit());
    // 200 % unless the run asks for another scale (QT_SCALE_FACTOR=1 QT_FONT_DPI=150: large
    // fonts at 100 %).
    if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        qputenv("QT_SCALE_FACTOR", "2");
    }
    QApplication app(argc, argv);
    brizalog::WindowFitTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "window_fit_test.moc"
