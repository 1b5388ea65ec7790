// brizalog-longrun FOLDER SECONDS: the core of Brizalog on the Qt serial port and timers, without
// windows, on the program folder FOLDER for SECONDS, as a logger left to run. It then reports
// what reached the port and what the core made of it, its memory and its processor time.
// scripts/long-run.sh runs it against the board simulator.

#include <sys/resource.h>

#include <QCoreApplication>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "acquisition/brizalog.h"
#include "acquisition/qt/platform.h"
#include "catalogue/files.h"
#include "ui/event_gate.h"

namespace {

using namespace brizalog;

// The port as the form sees it, counting what passes.
class CountingLink : public SerialLink {
public:
    explicit CountingLink(DesktopSerialLink& link) : m_link(link) {}
    void Open(int portNumber, const std::string& settings) override {
        m_link.Open(portNumber, settings);
    }
    void Close() override { m_link.Close(); }
    bool IsOpen() const override { return m_link.IsOpen(); }
    std::string ReadAll() override {
        std::string text = m_link.ReadAll();
        bytes += static_cast<long long>(text.size());
        for (char c : text) {
            closingBrackets += c == ']' ? 1 : 0;
        }
        return text;
    }
    void ClearReceiveCount() override { m_link.ClearReceiveCount(); }

    long long bytes = 0;
    long long closingBrackets = 0;  // one per logger frame

private:
    DesktopSerialLink& m_link;
};

class QuietDialogs : public Dialogs {
public:
    void ShowMessage(const std::string& text) override {
        std::cerr << "message: " << text << std::endl;
    }
    void OpenWindow(std::string_view, bool) override {}
};

long ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return 0;
}

double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::cerr << "usage: brizalog-longrun FOLDER SECONDS\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const int seconds = std::stoi(argv[2]);
    UsePlatformFiles();
    SetFailureTeller([](const std::string& message) { std::cerr << "fatal: " << message << "\n"; });

    DesktopClock clock;
    DesktopTimers timers;
    DesktopSerialLink port(folder);
    CountingLink serial(port);
    QuietDialogs dialogs;
    Brizalog form(folder, {clock, timers, serial, dialogs});
    long long decoded = 0;
    port.SetReceiveHandler([&] {
        RunHandler([&] {
            const long before = form.state().GoodDataCount;
            form.MSComm1_OnComm();
            const long after = form.state().GoodDataCount;
            decoded += after >= before ? after - before : after;
        });
    });
    RunHandler([&] { form.Form_Load(); });

    long minuteRss = 0;
    long peakRss = 0;
    int elapsed = 0;
    QTimer second;
    QObject::connect(&second, &QTimer::timeout, [&] {
        ++elapsed;
        const long rss = ResidentKilobytes();
        peakRss = std::max(peakRss, rss);
        if (elapsed == 60) {
            minuteRss = rss;
        }
        if (elapsed >= seconds) {
            QCoreApplication::quit();
        }
    });
    second.start(1000);
    const double cpuAtStart = ProcessorSeconds();
    QCoreApplication::exec();
    // Frames still on their way are read before counting.
    QCoreApplication::processEvents();

    const double cpu = ProcessorSeconds() - cpuAtStart;
    std::cout << "seconds " << elapsed << "\n"
              << "bytes received " << serial.bytes << "\n"
              << "frames received " << serial.closingBrackets << "\n"
              << "frames decoded " << decoded << "\n"
              << "rss after one minute kB " << minuteRss << "\n"
              << "rss peak kB " << peakRss << "\n"
              << "rss final kB " << ResidentKilobytes() << "\n"
              << "cpu seconds " << cpu << "\n"
              << "cpu percent of a core " << 100.0 * cpu / std::max(elapsed, 1) << "\n";
    return 0;
}
