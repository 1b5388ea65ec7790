// A failure that the system lets end the process: its message is shown, the application leaves
// its event loops with status 1, and no further event reaches the core.

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "catalogue/failure.h"
#include "ui/event_gate.h"

namespace brizalog {

class FailureExitTest : public QObject {
    Q_OBJECT

private slots:
    void anUntrappedFailureIsShownAndEndsTheApplication() {
        QString shown;
        int status = -1;
        QTimer::singleShot(0, [&] {
            QTimer::singleShot(0, [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                QVERIFY(box != nullptr);
                shown = box->text();
                box->accept();
            });
            RunHandler([] { throw Failure(FailureKind::SubscriptOutOfRange); });
        });
        status = QApplication::exec();
        QCOMPARE(status, 1);
        QCOMPARE(shown,
                 QString::fromStdString(Failure::DefaultMessage(FailureKind::SubscriptOutOfRange)));
        QVERIFY(ApplicationEnding());

        bool ran = false;
        RunHandler([&] { ran = true; });
        QVERIFY(!ran);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::FailureExitTest)
#include "failure_exit_test.moc"
