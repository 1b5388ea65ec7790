// The manual on the desktop: it opens from the Help menu after the specified entries, finds text
// with Ctrl+F, follows links between its sections, and fits its screenshots to the text column.

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

#include "acquisition/brizalog.h"
#include "acquisition/qt/main_window.h"
#include "catalogue/virtual_platform.h"
#include "help/qt/manual_window.h"
#include "ui/keyboard.h"

namespace brizalog {

namespace {

// A guide long enough to scroll, with a link to its last section and a wide screenshot.
void WriteGuide(const QString& folder) {
    QDir().mkpath(folder + QStringLiteral("/docs"));
    QImage wide(2000, 500, QImage::Format_RGB32);
    wide.fill(Qt::darkCyan);
    QVERIFY(wide.save(folder + QStringLiteral("/docs/wide.png")));
    QString text = QStringLiteral(
        "# Brizalog\n\nSee [the logs](#logs-and-watt-hours).\n\n"
        "## Install\n\n![A screenshot](docs/wide.png)\n\n");
    for (int i = 0; i < 200; ++i) {
        text += QStringLiteral("Line %1 of the install notes.\n\n").arg(i);
    }
    text += QStringLiteral(
        "## Scenario runner\n\nscripted windmills\n\n"
        "## Logs and watt-hours\n\nWhours.txt keeps the totals.\n");
    QFile file(folder + QStringLiteral("/README.md"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

}  // namespace

class ManualWindowTest : public QObject {
    Q_OBJECT

private slots:
    void findBarFindsWrapsAndTellsWhatIsNowhere() {
        QTemporaryDir dir;
        WriteGuide(dir.path());
        ManualWindow window({dir.path().toStdString()});
        window.Load();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QLineEdit* box = window.findBox();
        QVERIFY(!box->isVisible());

        QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(box->isVisible());
        QVERIFY(box->hasFocus());
        QTest::keyClicks(box, QStringLiteral("Whours"));
        QCOMPARE(window.browser()->textCursor().selectedText(), QStringLiteral("Whours"));
        // Past the only match, the search comes round to it again.
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(window.browser()->textCursor().selectedText(), QStringLiteral("Whours"));
        auto* status = window.findChild<QLabel*>(QStringLiteral("findStatus"));
        QVERIFY(status->text().isEmpty());

        // The developers' sections are not in the guide; looking for what is nowhere leaves the
        // page where the reader was.
        QVERIFY(window.ShowSection("install"));
        const int reading = window.browser()->verticalScrollBar()->value();
        QVERIFY(reading > 0);
        box->setText(QStringLiteral("scripted"));
        QCOMPARE(status->text(), QStringLiteral("Not found"));
        QCOMPARE(window.browser()->verticalScrollBar()->value(), reading);

        // Escape hides the bar first, and only then closes the window.
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!box->isVisible());
        QVERIFY(window.isVisible());
        QTest::keyClick(window.browser(), Qt::Key_Escape);
        QVERIFY(!window.isVisible());
    }

    void linksAndContentsLeadToTheirSection() {
        QTemporaryDir dir;
        WriteGuide(dir.path());
        ManualWindow window({dir.path().toStdString()});
        window.Load();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* contents = window.findChild<QListWidget*>(QStringLiteral("contents"));
        QCOMPARE(contents->count(), 2);
        QCOMPARE(contents->item(1)->text(), QStringLiteral("Logs and watt-hours"));

        QScrollBar* scroll = window.browser()->verticalScrollBar();
        QCOMPARE(scroll->value(), 0);
        emit window.browser()->anchorClicked(QUrl(QStringLiteral("#logs-and-watt-hours")));
        QVERIFY(scroll->value() > 0);
        QCOMPARE(window.browser()->textCursor().block().text(),
                 QStringLiteral("Logs and watt-hours"));
        QVERIFY(!window.ShowSection("scenario-runner"));
    }

    void screenshotsShrinkToTheColumnAndGrowBackNoFurtherThanThemselves() {
        QTemporaryDir dir;
        WriteGuide(dir.path());
        ManualWindow window({dir.path().toStdString()});
        window.Load();
        window.resize(600, 500);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // The width at which the text shows the screenshot.
        const auto imageWidth = [&window] {
            const QImage shown =
                window.browser()
                    ->document()
                    ->resource(QTextDocument::ImageResource, QUrl(QStringLiteral("docs/wide.png")))
                    .value<QImage>();
            return shown.width() / shown.devicePixelRatio();
        };
        QScrollBar* sideways = window.browser()->horizontalScrollBar();
        QTRY_VERIFY(imageWidth() > 0);
        QVERIFY(imageWidth() <= window.browser()->viewport()->width());
        QCOMPARE(sideways->maximum(), 0);
        window.resize(1300, 700);
        QTRY_VERIFY(imageWidth() > 600);
        QVERIFY(imageWidth() < 2000);
        QCOMPARE(sideways->maximum(), 0);
    }

    void aGuideThatIsNowhereSaysWhereItWasLookedFor() {
        QTemporaryDir dir;
        const QString missing = dir.filePath(QStringLiteral("nothing here"));
        ManualWindow window({missing.toStdString()});
        window.Load();
        QVERIFY(window.browser()->toPlainText().contains(missing));
        QVERIFY(!window.findChild<QListWidget*>(QStringLiteral("contents"))->isVisibleTo(&window));
    }

    void theHelpMenuEndsWithTheManual() {
        QTemporaryDir dir;
        VirtualClock clock;
        VirtualTimers timers(clock);
        VirtualSerial serial;
        VirtualDialogs dialogs;
        std::vector<std::string> opened;
        dialogs.onOpenWindow = [&opened](std::string_view name, bool) {
            opened.emplace_back(name);
        };
        Services services{clock, timers, serial, dialogs};
        Brizalog form(dir.path().toStdString(), services);
        MainWindow main(form);
        QAction* manual = main.menuAction("BrizalogManual");
        QVERIFY(manual != nullptr);
        QCOMPARE(ShownCaption(manual->text()), QStringLiteral("Brizalog manual"));
        auto* help = main.findChild<QMenu*>(QStringLiteral("Help"));
        QVERIFY(help != nullptr);
        QCOMPARE(help->actions().back(), manual);
        QCOMPARE(help->actions().front(), main.menuAction("Helpmenu"));
        manual->trigger();
        QCOMPARE(opened, std::vector<std::string>{"BrizalogManual"});
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::ManualWindowTest)
#include "manual_window_test.moc"
