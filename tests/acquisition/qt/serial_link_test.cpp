// The serial port of the desktop program on a real pseudo-terminal of the board simulator.

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "acquisition/qt/platform.h"
#include "support/board_simulator.h"

using brizalog::testing::BoardSimulator;

namespace brizalog {

class SerialLinkTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        m_folder = m_dir->path().toStdString();
        m_received.clear();
    }

    void portNumbersResolveToTheLinkOfTheProgramFolderFirst() {
        QDir(m_dir->path()).mkpath(QStringLiteral("ports"));
        QFile::link(QStringLiteral("/dev/null"), m_dir->path() + QStringLiteral("/ports/COM7"));
        QCOMPARE(ResolvePort(m_folder, 7), m_dir->path() + QStringLiteral("/ports/COM7"));
        DevicePortProbe probe(m_folder);
        QVERIFY(probe.commAvailable(7));
        // Without a link the machine's own devices stand in, in their documented order.
        const QStringList devices = SystemSerialDevices();
        QCOMPARE(ResolvePort(m_folder, 1), devices.isEmpty() ? QString() : devices.first());
        QCOMPARE(ResolvePort(m_folder, 0), QString());
    }

    void framesArriveAndAnUnpluggedDeviceIsFoundAgainWithoutAWord() {
        BoardSimulator board(m_folder, 3, 1, 20);
        QVERIFY(board.Start());
        DesktopSerialLink link(m_folder);
        link.SetReceiveHandler([&] { m_received += link.ReadAll(); });
        link.Open(3, "4800,N,8,1");
        QVERIFY(link.IsOpen());
        QTRY_VERIFY_WITH_TIMEOUT(m_received.find("]") != std::string::npos, 5000);
        QVERIFY(m_received.find("<V1>") != std::string::npos);

        QSignalSpy lost(&link, &DesktopSerialLink::deviceLost);
        QSignalSpy back(&link, &DesktopSerialLink::deviceBack);
        board.Stop();
        QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, 5000);
        QVERIFY(link.IsOpen());  // to the form the port is still open: the device is silent
        QVERIFY(!link.DevicePresent());

        m_received.clear();
        BoardSimulator again(m_folder, 3, 0, 20);
        QVERIFY(again.Start());
        QTRY_COMPARE_WITH_TIMEOUT(back.count(), 1, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(m_received.find("<R>") != std::string::npos, 5000);

        // Closed by the form, the port is not looked for again.
        link.Close();
        QVERIFY(!link.IsOpen());
        QVERIFY(!link.DevicePresent());
    }

    // A board that sends fast: its next frame reaches the line while the intake is between its
    // read and its clear. That frame has not arrived at the port yet; it is the next event.
    void aFrameOnTheLineDuringTheClearIsTheNextEventNotLost() {
        const int master = posix_openpt(O_RDWR | O_NOCTTY);
        QVERIFY(master >= 0);
        QVERIFY(grantpt(master) == 0 && unlockpt(master) == 0);
        const QString slaveName = QString::fromLocal8Bit(ptsname(master));
        QDir(m_dir->path()).mkpath(QStringLiteral("ports"));
        QVERIFY(QFile::link(slaveName, m_dir->path() + QStringLiteral("/ports/COM5")));
        // A second descriptor of the line, only to see what waits in its queue.
        const int watcher = ::open(QFile::encodeName(slaveName).constData(), O_RDONLY | O_NOCTTY);
        QVERIFY(watcher >= 0);

        DesktopSerialLink link(m_folder);
        std::vector<std::string> reads;
        link.SetReceiveHandler([&] {
            reads.push_back(link.ReadAll());
            if (reads.size() == 1) {
                QCOMPARE(::write(master, "[B]", 3), 3);
                int waiting = 0;
                for (int i = 0; i < 1000 && waiting < 3; ++i) {
                    ::ioctl(watcher, FIONREAD, &waiting);
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
                QCOMPARE(waiting, 3);
            }
            link.ClearReceiveCount();
        });
        link.Open(5, "4800,N,8,1");
        QCOMPARE(::write(master, "[A]", 3), 3);
        QTRY_COMPARE_WITH_TIMEOUT(reads.size(), std::size_t{2}, 5000);
        QCOMPARE(reads.at(0), std::string("[A]"));
        QCOMPARE(reads.at(1), std::string("[B]"));
        link.Close();
        ::close(watcher);
        ::close(master);
    }

    void aPortThatIsNotThereFailsToOpen() {
        DesktopSerialLink link(m_folder);
        bool failed = false;
        try {
            link.Open(200, "4800,N,8,1");
        } catch (const Failure&) {
            failed = true;
        }
        QVERIFY(failed);
        QVERIFY(!link.IsOpen());
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::filesystem::path m_folder;
    std::string m_received;
};

}  // namespace brizalog

QTEST_MAIN(brizalog::SerialLinkTest)
#include "serial_link_test.moc"
