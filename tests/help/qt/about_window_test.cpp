// About: the version of the build, and a plain word when no system-information tool is there.

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "help/qt/about_window.h"

namespace brizalog {

class AboutWindowTest : public QObject {
    Q_OBJECT

private slots:
    void systemInfoSaysPlainlyThatNoToolWasFound() {
        QTemporaryDir emptyPath;
        qputenv("PATH", emptyPath.path().toLocal8Bit());
        AboutWindow about;
        QVERIFY(about.findChild<QLabel*>(QStringLiteral("lblVersion"))
                    ->text()
                    .startsWith(QStringLiteral("Version ")));
        QVERIFY(AboutWindow::InstalledTool().isEmpty());

        QString told;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box != nullptr);
            told = box->text();
            box->accept();
        });
        QTest::mouseClick(about.findChild<QPushButton*>(QStringLiteral("cmdSysInfo")),
                          Qt::LeftButton);
        QVERIFY(told.startsWith(QStringLiteral("No system information tool was found")));
    }

    void theFirstKnownToolOnThePathIsTheOneStarted() {
        QTemporaryDir bin;
        const QString tool = bin.filePath(QStringLiteral("hardinfo"));
        QFile file(tool);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nexit 0\n");
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", bin.path().toLocal8Bit());
        QCOMPARE(AboutWindow::InstalledTool(), tool);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::AboutWindowTest)
#include "about_window_test.moc"
