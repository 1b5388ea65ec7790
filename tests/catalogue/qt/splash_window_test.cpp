// The splash: it makes the missing files, shows the build's version and waits for a click, a
// key, or the abort button, which explains and then lets the start go on too.

#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "catalogue/provisioning.h"
#include "catalogue/qt/splash_window.h"
#include "catalogue/virtual_platform.h"

namespace brizalog {

class SplashWindowTest : public QObject {
    Q_OBJECT

private slots:
    void itMakesTheMissingFilesAndShowsTheVersion() {
        QTemporaryDir dir;
        VirtualDialogs dialogs;
        SplashWindow splash(dir.path().toStdString(), dialogs);
        QVERIFY(QFile::exists(dir.filePath(QStringLiteral("hardware.cfg"))));
        QVERIFY(QDir(dir.filePath(QStringLiteral("logs"))).exists());
        const QString version = splash.findChild<QLabel*>(QStringLiteral("lblVersion"))->text();
        QCOMPARE(version, QStringLiteral("Version %1.%2.%3")
                              .arg(BRIZALOG_VERSION_MAJOR)
                              .arg(BRIZALOG_VERSION_MINOR)
                              .arg(BRIZALOG_VERSION_PATCH));
        QCOMPARE(splash.findChild<QLabel*>(QStringLiteral("Label6"))->text(),
                 QStringLiteral("Click to RUN"));
    }

    void aClickOrAKeyLetsTheStartGoOn() {
        QTemporaryDir dir;
        VirtualDialogs dialogs;
        {
            SplashWindow splash(dir.path().toStdString(), dialogs);
            splash.show();
            QTest::mouseClick(splash.findChild<QLabel*>(QStringLiteral("lblProductName")),
                              Qt::LeftButton);
            QCOMPARE(splash.result(), int(QDialog::Accepted));
            QVERIFY(!splash.isVisible());
        }
        {
            SplashWindow splash(dir.path().toStdString(), dialogs);
            splash.show();
            QTest::keyClick(&splash, Qt::Key_Escape);
            QCOMPARE(splash.result(), int(QDialog::Accepted));
        }
        QVERIFY(dialogs.messages.empty());
    }

    void abortExplainsAndDoesNotStopTheStart() {
        QTemporaryDir dir;
        VirtualDialogs dialogs;
        SplashWindow splash(dir.path().toStdString(), dialogs);
        splash.show();
        QTest::mouseClick(splash.findChild<QPushButton*>(QStringLiteral("ABORTBUTTON")),
                          Qt::LeftButton);
        QCOMPARE(dialogs.messages,
                 std::vector<std::string>{AbortMessage(dir.path().toStdString())});
        QCOMPARE(splash.AbortFlag(), 1);
        QCOMPARE(splash.result(), int(QDialog::Accepted));
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::SplashWindowTest)
#include "splash_window_test.moc"
