#include "acquisition/qt/platform.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSerialPortInfo>
#include <algorithm>
#include <cerrno>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"
#include "ui/event_gate.h"
#include "ui/qt_text.h"

namespace brizalog {

// ---- Clock and timers -------------------------------------------------------------------------

LocalDateTime DesktopClock::Now() const {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return {date.year(),   date.month(),  date.day(), time.hour(),
            time.minute(), time.second(), time.msec()};
}

QTimer& DesktopTimers::TimerOf(FormTimer& timer) {
    auto& slot = m_timers[&timer];
    if (!slot) {
        slot = std::make_unique<QTimer>();
        slot->setTimerType(Qt::PreciseTimer);
        // A tick never interrupts itself: while its handler waits behind a message box, the
        // timer's further ticks are let go, as the tick that is still running stands for them.
        auto running = std::make_shared<bool>(false);
        connect(slot.get(), &QTimer::timeout, this, [&timer, running] {
            if (*running) {
                return;
            }
            *running = true;
            RunHandlerAtScreenPace([&timer] { timer.Fire(); });
            *running = false;
        });
    }
    return *slot;
}

void DesktopTimers::Restart(FormTimer& timer) {
    QTimer& qtimer = TimerOf(timer);
    if (timer.Interval() <= 0) {
        qtimer.stop();
        return;
    }
    qtimer.start(timer.Interval());
}

void DesktopTimers::Stop(FormTimer& timer) {
    TimerOf(timer).stop();
}

namespace {

std::error_code LastError() {
    return {errno, std::generic_category()};
}

// A file system or a kind of file that has nothing to make durable (a pipe, a device) is not
// a failure to make it so.
bool NothingToSync(int error) {
    return error == EINVAL || error == EROFS;
}

std::error_code SyncDescriptor(int descriptor) {
    if (::fsync(descriptor) != 0 && !NothingToSync(errno)) {
        return LastError();
    }
    return {};
}

std::error_code AppendOnce(const std::filesystem::path& path, std::string_view text, bool durable) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return LastError();
    }
    struct stat before {};
    const bool sized = ::fstat(descriptor, &before) == 0 && S_ISREG(before.st_mode);
    std::error_code error;
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0) {
        error = LastError();
    } else if (static_cast<std::size_t>(written) != text.size()) {
        // The disk took part of the text: that part goes again, so that the file ends where
        // it ended and the next line does not follow a torn one.
        error = std::make_error_code(std::errc::no_space_on_device);
        if (sized) {
            [[maybe_unused]] const int taken = ::ftruncate(descriptor, before.st_size);
        }
    } else if (durable) {
        error = SyncDescriptor(descriptor);
    }
    if (::close(descriptor) != 0 && !error) {
        error = LastError();
    }
    return error;
}

int LockFolder(const std::filesystem::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return -1;
    }
    while (::flock(descriptor, LOCK_EX) != 0) {
        if (errno != EINTR) {
            ::close(descriptor);
            return -1;
        }
    }
    return descriptor;
}

void UnlockFolder(int held) {
    ::flock(held, LOCK_UN);
    ::close(held);
}

}  // namespace

std::error_code SyncFileToDisk(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return LastError();
    }
    const std::error_code error = SyncDescriptor(descriptor);
    ::close(descriptor);
    return error;
}

void UsePlatformFiles() {
    SetPlatformFiles({SyncFileToDisk, AppendOnce, LockFolder, UnlockFolder});
}

// ---- Ports ------------------------------------------------------------------------------------

QStringList SystemSerialDevices() {
    static const QString kFamilies[] = {QStringLiteral("ttyUSB"), QStringLiteral("ttyACM"),
                                        QStringLiteral("ttyS")};
    struct Device {
        int family;
        int number;
        QString path;
    };
    std::vector<Device> devices;
    const QRegularExpression name(QStringLiteral("^(ttyUSB|ttyACM|ttyS)(\\d+)$"));
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        const QRegularExpressionMatch match = name.match(info.portName());
        if (!match.hasMatch()) {
            continue;
        }
        const int family = static_cast<int>(
            std::find(std::begin(kFamilies), std::end(kFamilies), match.captured(1)) -
            std::begin(kFamilies));
        devices.push_back({family, match.captured(2).toInt(), info.systemLocation()});
    }
    std::sort(devices.begin(), devices.end(), [](const Device& a, const Device& b) {
        return a.family != b.family ? a.family < b.family : a.number < b.number;
    });
    QStringList paths;
    for (const Device& device : devices) {
        paths << device.path;
    }
    return paths;
}

QString ResolvePort(const std::filesystem::path& folder, int portNumber) {
    if (portNumber < 1) {
        return {};
    }
    const QString link = QDir(QString::fromStdString(folder.string()))
                             .filePath(QStringLiteral("ports/COM") + QString::number(portNumber));
    if (QFileInfo::exists(link)) {
        return link;
    }
    const QStringList devices = SystemSerialDevices();
    return portNumber <= devices.size() ? devices.at(portNumber - 1) : QString();
}

bool DevicePortProbe::commAvailable(int portNumber) {
    const QString path = ResolvePort(m_folder, portNumber);
    if (path.isEmpty()) {
        return false;
    }
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISCHR(info.st_mode);
}

int BaudRateOf(const std::string& settings) {
    const double speed = ParseNumber(settings);
    return speed >= 1 && speed <= 4000000 ? static_cast<int>(speed) : 0;
}

DesktopSerialLink::DesktopSerialLink(std::filesystem::path folder, QObject* parent)
    : QObject(parent), m_folder(std::move(folder)) {
    connect(&m_port, &QSerialPort::readyRead, this, [this] {
        if (m_receive) {
            m_receive();
        }
    });
    connect(&m_port, &QSerialPort::errorOccurred, this, &DesktopSerialLink::OnError);
    m_reconnect.setInterval(kReconnectInterval);
    connect(&m_reconnect, &QTimer::timeout, this, &DesktopSerialLink::Reconnect);
}

bool DesktopSerialLink::OpenDevice() {
    const QString path = ResolvePort(m_folder, m_portNumber);
    if (path.isEmpty()) {
        m_port.setPortName(QString());
        return false;
    }
    // The link is followed to its device, so the port is named as the device it is.
    const QString device = QFileInfo(path).canonicalFilePath();
    m_port.setPortName(device.isEmpty() ? path : device);
    m_port.setBaudRate(m_baudRate);
    m_port.setDataBits(QSerialPort::Data8);
    m_port.setParity(QSerialPort::NoParity);
    m_port.setStopBits(QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    m_port.setReadBufferSize(0);
    return m_port.open(QIODevice::ReadOnly);
}

void DesktopSerialLink::Open(int portNumber, const std::string& settings) {
    if (m_port.isOpen()) {
        m_port.close();
    }
    m_reconnect.stop();
    m_portNumber = portNumber;
    m_baudRate = BaudRateOf(settings);
    if (m_baudRate == 0 || !OpenDevice()) {
        const std::string why = m_port.portName().isEmpty() || m_baudRate == 0
                                    ? Failure::DefaultMessage(FailureKind::PortFailure)
                                    : FromQt(m_port.errorString());
        m_wanted = false;
        throw Failure(FailureKind::PortFailure, why);
    }
    m_wanted = true;
}

void DesktopSerialLink::Close() {
    m_wanted = false;
    m_reconnect.stop();
    if (m_port.isOpen()) {
        m_port.close();
    }
}

std::string DesktopSerialLink::ReadAll() {
    if (!m_port.isOpen()) {
        return {};
    }
    const QByteArray data = m_port.readAll();
    return std::string(data.constData(), static_cast<std::size_t>(data.size()));
}

// Text arrives at the port when the event loop reads the device into the port's buffer, and
// the intake runs on that same loop: between its read and this call nothing can have arrived.
// Only the port's own buffer is emptied. The line's queue in the system is left alone: what waits
// there has not arrived yet and is the next serial event, not text to throw away, so a board that
// sends fast loses no frame in the moment between the read and the clear.
void DesktopSerialLink::ClearReceiveCount() {
    if (m_port.isOpen() && m_port.bytesAvailable() > 0) {
        m_port.skip(m_port.bytesAvailable());
    }
}

void DesktopSerialLink::OnError(QSerialPort::SerialPortError error) {
    // A device that went away shows as a resource error, or as a read that finds the line
    // hung up. Either way the port is let go and looked for again.
    if (error != QSerialPort::ResourceError && error != QSerialPort::ReadError) {
        return;
    }
    if (!m_port.isOpen()) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_port.isOpen()) {
                return;
            }
            m_port.close();
            if (m_wanted) {
                m_lastSignature.clear();
                m_reconnect.start();
                emit deviceLost();
            }
        },
        Qt::QueuedConnection);
}

// What a device coming back changes, found by two cheap status reads: the port's own link in
// the program folder (whether it leads to something) and the device folder, which gains an
// entry when a serial device appears. Only a change is worth the search of the machine's ports
// and an open.
QString DesktopSerialLink::DeviceSignature() const {
    struct stat devices {};
    ::stat("/dev", &devices);
    struct stat target {};
    const QString link = QDir(QString::fromStdString(m_folder.string()))
                             .filePath(QStringLiteral("ports/COM") + QString::number(m_portNumber));
    const bool linked = ::stat(QFile::encodeName(link).constData(), &target) == 0;
    return QStringLiteral("%1.%2/%3/%4")
        .arg(devices.st_mtim.tv_sec)
        .arg(devices.st_mtim.tv_nsec)
        .arg(linked ? static_cast<qulonglong>(target.st_rdev) + 1 : 0)
        .arg(linked ? static_cast<qulonglong>(target.st_ino) : 0);
}

void DesktopSerialLink::Reconnect() {
    if (!m_wanted) {
        m_reconnect.stop();
        return;
    }
    // A device that is there but would not open (busy, no permission) is tried again now and
    // then all the same.
    const QString signature = DeviceSignature();
    if (signature == m_lastSignature && ++m_unchangedLooks < kFullLookEvery) {
        return;
    }
    m_lastSignature = signature;
    m_unchangedLooks = 0;
    if (OpenDevice()) {
        m_reconnect.stop();
        emit deviceBack();
    }
}

}  // namespace brizalog
