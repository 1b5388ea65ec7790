#pragma once

#include <QObject>
#include <QSerialPort>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <system_error>

#include "acquisition/port_discovery.h"
#include "catalogue/services.h"

namespace brizalog {

// ---- Clock and timers -------------------------------------------------------------------------

class DesktopClock : public Clock {
public:
    LocalDateTime Now() const override;
};

// The countdowns of form timers on QTimer, on the window thread. Each tick runs the timer's
// handler through RunHandler, so it renders the windows like any other event, and it keeps
// ticking behind modal windows and message boxes, whose event loops deliver it.
class DesktopTimers : public QObject, public TimerBackend {
    Q_OBJECT

public:
    void Restart(FormTimer& timer) override;
    void Stop(FormTimer& timer) override;

private:
    QTimer& TimerOf(FormTimer& timer);
    std::map<FormTimer*, std::unique_ptr<QTimer>> m_timers;
};

// Makes a file or a folder durable on disk (fsync), for the whole-file replacement of the
// configuration files.
std::error_code SyncFileToDisk(const std::filesystem::path& path);
// Gives the core's file services the machine's: durable writes, a record appended with one
// write, and the folder lock that keeps two programs on one folder from replacing a settings
// file at once. Called once at start by every program.
void UsePlatformFiles();

// ---- Ports ------------------------------------------------------------------------------------

// The device of port number N: `<program folder>/ports/COMN` when that path exists (a link the
// user points at a device, or the one the board simulator makes), otherwise the N-th of the
// machine's serial devices in the order of SystemSerialDevices. Empty when there is none.
QString ResolvePort(const std::filesystem::path& folder, int portNumber);

// The serial devices of the machine that are really there, in a stable order: every
// /dev/ttyUSB*, then every /dev/ttyACM*, then every /dev/ttyS*, each family by its number.
QStringList SystemSerialDevices();

// A port exists when its device path resolves to a character device. Nothing is opened, so
// probing has no effect on the port or the device behind it.
class DevicePortProbe : public PortProbe {
public:
    explicit DevicePortProbe(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    bool commAvailable(int portNumber) override;

private:
    std::filesystem::path m_folder;
};

// MSComm1 on QSerialPort, on the window thread. Every arrival of text runs the receive handler
// (the main form's MSComm1_OnComm, which reads everything queued).
//
// A device that disappears (unplugged, or a simulator stopped) is not an error to the user: the
// program goes on as in a silence of the device, and the same port is opened again by itself,
// with the same settings, as soon as the device is back. No message is shown for either.
class DesktopSerialLink : public QObject, public SerialLink {
    Q_OBJECT

public:
    explicit DesktopSerialLink(std::filesystem::path folder, QObject* parent = nullptr);

    void SetReceiveHandler(std::function<void()> handler) { m_receive = std::move(handler); }

    void Open(int portNumber, const std::string& settings) override;
    void Close() override;
    // The port stays open to the form while its device is away and being waited for.
    bool IsOpen() const override { return m_wanted; }
    std::string ReadAll() override;
    void ClearReceiveCount() override;

    // True while the device is there and the port really open.
    bool DevicePresent() const { return m_port.isOpen(); }
    // How often a lost device is looked for, in milliseconds.
    static constexpr int kReconnectInterval = 1000;

signals:
    void deviceLost();
    void deviceBack();

private:
    bool OpenDevice();
    void OnError(QSerialPort::SerialPortError error);
    void Reconnect();
    QString DeviceSignature() const;

    std::filesystem::path m_folder;
    QSerialPort m_port;
    QTimer m_reconnect;
    std::function<void()> m_receive;
    int m_portNumber = 0;
    int m_baudRate = 4800;
    bool m_wanted = false;
    QString m_lastSignature;  // of the last attempt to reopen a lost device
    int m_unchangedLooks = 0;
    static constexpr int kFullLookEvery = 30;
};

// Parses line settings such as "4800,N,8,1" into the line speed; the rest is always no
// parity, 8 data bits and 1 stop bit.
int BaudRateOf(const std::string& settings);

}  // namespace brizalog
