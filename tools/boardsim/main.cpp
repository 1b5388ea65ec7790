// brizalog-boardsim: a logger board or a Current Cost meter on a pseudo-terminal.
//
//   brizalog-boardsim --folder DIR [--port N] [--system T] [--rate FRAMES_PER_S]
//                     [--meter classic|cc128] [--sensors 0,1,9] [--fahrenheit]
//                     [--chunks MIN-MAX] [--drop P] [--seed S]
//                     [--provision | --provision-only] [--count]
//   brizalog-boardsim --script SECONDS [--start "YYYY-MM-DD HH:MM:SS"] [--system T] ...
//
// Makes a pseudo-terminal, links it as DIR/ports/COMN (N is 3 unless told), and sends frames of
// system type T until it is stopped (SIGINT or SIGTERM), when it removes its link again. Without
// --system it follows the SystemType of DIR/hardware.cfg, so a layout chosen in Brizalog's menu
// gets its own frames within seconds. --provision first makes whatever folder and file of DIR is
// missing, as the splash of Brizalog does at each start; --provision-only does that alone.
//
// In types 3 and 4 it is a Current Cost meter: every 6 seconds (or --rate cycles a second) the
// house's message and the appliance sensors' right behind it, with the CC128's history bursts at
// odd hours, at the meter's line speed. --chunks hands the text over in pieces, as a USB adapter
// does, and --drop loses bytes, as a poor line does. --script writes the same stream, from the
// time of --start on, as `serial` and `wait` lines of the scenario runner instead.

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <deque>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "catalogue/text_rules.h"
#include "installation.h"
#include "meter.h"

namespace fs = std::filesystem;
using brizalog::boardsim::ComposeFrame;
using brizalog::boardsim::Installation;
using brizalog::boardsim::Meter;
using brizalog::boardsim::MeterModel;
using brizalog::boardsim::MeterSetup;
using brizalog::boardsim::MeterTime;
using brizalog::boardsim::SerialLine;

namespace {

volatile std::sig_atomic_t g_stop = 0;

void OnStopSignal(int) {
    g_stop = 1;
}

// The sizes of the frames written last, newest at the back: how many frames a number of bytes
// still waiting in the terminal holds. A frame counts as soon as a byte of it waits, since a
// frame cut short is a frame lost.
class RecentFrames {
public:
    void Written(std::size_t size) {
        m_sizes.push_back(size);
        if (m_sizes.size() > kKept) {
            m_sizes.pop_front();
        }
    }
    long FramesIn(int waitingBytes) const {
        long frames = 0;
        long bytes = 0;
        for (auto size = m_sizes.rbegin(); size != m_sizes.rend() && bytes < waitingBytes; ++size) {
            bytes += static_cast<long>(*size);
            ++frames;
        }
        return frames;
    }

private:
    static constexpr std::size_t kKept = 100000;
    std::deque<std::size_t> m_sizes;
};

struct Options {
    fs::path folder;
    int port = 3;
    std::optional<int> systemType;
    double rate = 1.0;
    bool provision = false;
    bool provisionOnly = false;
    bool count = false;  // report the frames sent when stopped
    bool rateGiven = false;
    std::optional<MeterModel> meter;  // by default the Classic in type 3, the CC128 in type 4
    std::optional<std::vector<int>> sensors;
    bool fahrenheit = false;
    int minChunk = 0;  // 0: each frame or meter cycle in one write
    int maxChunk = 0;
    double drop = 0;
    unsigned seed = 20260307;
    double scriptSeconds = 0;  // above 0: write a runner script instead of a terminal
    std::string start = "2026-03-07 13:00:00";
};

// "0,1,9": sensors 0 to 9, each once.
std::vector<int> ParseSensors(const std::string& text) {
    std::vector<int> sensors;
    std::size_t at = 0;
    while (at <= text.size()) {
        const std::size_t comma = std::min(text.find(',', at), text.size());
        const int sensor = std::stoi(text.substr(at, comma - at));
        if (sensor < 0 || sensor > 9 ||
            std::find(sensors.begin(), sensors.end(), sensor) != sensors.end()) {
            throw std::invalid_argument("sensor");
        }
        sensors.push_back(sensor);
        at = comma + 1;
    }
    return sensors;
}

[[noreturn]] void Usage(const std::string& problem) {
    std::cerr << "brizalog-boardsim: " << problem << "\n"
              << "usage: brizalog-boardsim --folder DIR [--port N] [--system T] "
                 "[--rate FRAMES_PER_S] [--meter classic|cc128] [--sensors 0,1,9] [--fahrenheit] "
                 "[--chunks MIN-MAX] [--drop P] [--seed S] [--provision | --provision-only] "
                 "[--count]\n"
              << "       brizalog-boardsim --script SECONDS [--start \"YYYY-MM-DD HH:MM:SS\"] "
                 "[--system T] [the meter and line options]\n";
    std::exit(2);
}

Options ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= argc) {
                Usage(arg + " needs a value");
            }
            return argv[++i];
        };
        try {
            if (arg == "--folder") {
                options.folder = value();
            } else if (arg == "--port") {
                options.port = std::stoi(value());
            } else if (arg == "--system") {
                options.systemType = std::stoi(value());
            } else if (arg == "--rate") {
                options.rate = std::stod(value());
                options.rateGiven = true;
            } else if (arg == "--meter") {
                const std::string model = value();
                if (model != "classic" && model != "cc128") {
                    Usage("--meter is classic or cc128");
                }
                options.meter = model == "classic" ? MeterModel::Classic : MeterModel::CC128;
            } else if (arg == "--sensors") {
                options.sensors = ParseSensors(value());
            } else if (arg == "--fahrenheit") {
                options.fahrenheit = true;
            } else if (arg == "--chunks") {
                const std::string range = value();
                const std::size_t dash = range.find('-');
                options.minChunk = std::stoi(range.substr(0, dash));
                options.maxChunk = dash == std::string::npos ? options.minChunk
                                                             : std::stoi(range.substr(dash + 1));
                if (options.minChunk < 1 || options.maxChunk < options.minChunk) {
                    Usage("--chunks needs MIN-MAX with 1 <= MIN <= MAX");
                }
            } else if (arg == "--drop") {
                options.drop = std::stod(value());
                if (!(options.drop >= 0 && options.drop < 1)) {
                    Usage("--drop is a probability from 0 to below 1");
                }
            } else if (arg == "--seed") {
                options.seed = static_cast<unsigned>(std::stoul(value()));
            } else if (arg == "--script") {
                options.scriptSeconds = std::stod(value());
            } else if (arg == "--start") {
                options.start = value();
            } else if (arg == "--provision") {
                options.provision = true;
            } else if (arg == "--count") {
                options.count = true;
            } else if (arg == "--provision-only") {
                options.provision = true;
                options.provisionOnly = true;
            } else {
                Usage("unknown option " + arg);
            }
        } catch (const std::logic_error&) {
            Usage("bad value for " + arg);
        }
    }
    if (options.folder.empty() && options.scriptSeconds <= 0) {
        Usage("--folder is required");
    }
    if (options.port < 1 || options.port > 255) {
        Usage("--port must be 1 to 255");
    }
    if (options.systemType && (*options.systemType < 0 || *options.systemType > 8)) {
        Usage("--system must be 0 to 8");
    }
    if (!(options.rate > 0 && options.rate <= 1000)) {
        Usage("--rate must be above 0 and at most 1000 frames per second");
    }
    return options;
}

// The system type that hardware.cfg holds now; `fallback` when it cannot be read.
int ConfiguredSystemType(const fs::path& folder, int fallback) {
    try {
        const std::string text =
            brizalog::ReadWholeFile(brizalog::InFolder(folder, brizalog::kSettingsFile));
        const double value =
            brizalog::ParseNumber(brizalog::ReadTagValue(text, "<SystemType>", "</SystemType>"));
        return value >= 0 && value <= 8 ? static_cast<int>(value) : fallback;
    } catch (const std::exception&) {
        return fallback;
    }
}

std::tm LocalNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
}

double HourOfDay() {
    const std::tm local = LocalNow();
    return local.tm_hour + local.tm_min / 60.0 + local.tm_sec / 3600.0;
}

bool IsMeter(int systemType) {
    return systemType == 3 || systemType == 4;
}

MeterSetup MeterFor(const Options& options, int systemType) {
    MeterSetup setup;
    setup.model = options.meter.value_or(systemType == 3 ? MeterModel::Classic : MeterModel::CC128);
    // Type 4 tells sensors 9 and 0 apart: both speak unless told otherwise.
    setup.sensors =
        options.sensors.value_or(systemType == 4 ? std::vector<int>{0, 9} : std::vector<int>{0});
    setup.fahrenheit = options.fahrenheit;
    return setup;
}

// Seconds between two meter cycles: the meter's own 6, unless --rate asks for a faster stream.
double MeterPeriod(const Options& options) {
    return options.rateGiven ? 1.0 / options.rate : 6.0;
}

// A piece as the runner's `serial` reads it back: CR, LF, tab, backslash and other control
// characters escaped.
std::string ScriptText(const std::string& piece) {
    std::string text;
    for (const char c : piece) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r') {
            text += "\\r";
        } else if (c == '\n') {
            text += "\\n";
        } else if (c == '\\') {
            text += "\\\\";
        } else if (byte < 0x20 || byte == 0x7F) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", byte);
            text += hex;
        } else {
            text += c;
        }
    }
    return text;
}

// The stream of --script: what the meter (or board) sends from --start on, as runner lines.
// Every burst is sent at its instant; the runner's clock moves on between bursts.
int WriteScript(const Options& options) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (std::sscanf(options.start.c_str(), "%d-%d-%d %d:%d:%d", &year, &month, &day, &hour, &minute,
                    &second) != 6) {
        Usage("--start needs YYYY-MM-DD HH:MM:SS");
    }
    const int systemType = options.systemType.value_or(4);
    const bool meter = IsMeter(systemType);
    const double period = meter ? MeterPeriod(options) : 1.0 / options.rate;
    Installation plant(options.seed);
    Meter speaker(MeterFor(options, systemType), options.seed);
    SerialLine line(options.minChunk > 0 ? options.minChunk : 1 << 30,
                    options.maxChunk > 0 ? options.maxChunk : 1 << 30, options.drop, options.seed);
    long frameNumber = 0;
    for (double t = 0; t < options.scriptSeconds; t += period) {
        const long clock = hour * 3600L + minute * 60L + second + std::lround(t);
        const MeterTime time{89 + static_cast<int>(clock / 86400),
                             static_cast<int>(clock / 3600 % 24), static_cast<int>(clock / 60 % 60),
                             static_cast<int>(clock % 60)};
        plant.Advance(period, time.hour + time.minute / 60.0);
        const std::string burst =
            meter ? speaker.Cycle(plant, time)
                  : ComposeFrame(plant, systemType, frameNumber % 2 == 0 ? 9 : 0);
        ++frameNumber;
        if (t > 0) {
            std::cout << "wait " << period << "\n";
        }
        for (const std::string& piece : line.Deliver(burst)) {
            std::cout << "serial " << ScriptText(piece) << "\n";
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = ParseOptions(argc, argv);
    if (options.scriptSeconds > 0) {
        return WriteScript(options);
    }
    std::error_code error;
    fs::create_directories(options.folder, error);
    if (options.provision) {
        brizalog::ProvisionProgramFolder(options.folder);
        if (options.provisionOnly) {
            return 0;
        }
    }

    // The master side stays with us; the slave side is what Brizalog opens through the link.
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
        std::cerr << "brizalog-boardsim: no pseudo-terminal: " << std::strerror(errno) << "\n";
        return 1;
    }
    const std::string slaveName = ptsname(master);
    // Holding the slave open keeps the terminal alive between Brizalog's openings, so a port
    // closed for the hardware setup and opened again finds the same device.
    const int slave = open(slaveName.c_str(), O_RDWR | O_NOCTTY);
    if (slave < 0) {
        std::cerr << "brizalog-boardsim: cannot open " << slaveName << "\n";
        return 1;
    }
    // The line speed of the device: a pseudo-terminal does not slow down for it, so the meter
    // paces its own pieces (below).
    const auto setSpeed = [slave](int systemType, const Options& options) {
        termios raw{};
        tcgetattr(slave, &raw);
        cfmakeraw(&raw);
        const int baud = IsMeter(systemType)
                             ? brizalog::boardsim::LineSpeed(MeterFor(options, systemType).model)
                             : 4800;
        const speed_t speed = baud == 57600 ? B57600 : baud == 9600 ? B9600 : B4800;
        cfsetispeed(&raw, speed);
        cfsetospeed(&raw, speed);
        tcsetattr(slave, TCSANOW, &raw);
    };
    fcntl(master, F_SETFL, fcntl(master, F_GETFL) | O_NONBLOCK);

    // Link it as DIR/ports/COMN, replacing a link left by an earlier simulator, never a link
    // that the user has pointed at a real device.
    const fs::path ports = options.folder / "ports";
    fs::create_directories(ports, error);
    const fs::path link = ports / ("COM" + std::to_string(options.port));
    if (fs::is_symlink(fs::symlink_status(link, error))) {
        const fs::path target = fs::read_symlink(link, error);
        if (target.string().rfind("/dev/pts/", 0) != 0) {
            std::cerr << "brizalog-boardsim: " << link.string() << " points at " << target.string()
                      << ", a real device; it is left as it is\n";
            return 1;
        }
    } else if (fs::exists(link, error)) {
        std::cerr << "brizalog-boardsim: " << link.string() << " exists and is not a link\n";
        return 1;
    }
    const fs::path staging = ports / (".COM" + std::to_string(options.port) + ".boardsim");
    fs::remove(staging, error);
    fs::create_symlink(slaveName, staging, error);
    if (!error) {
        fs::rename(staging, link, error);
    }
    if (error) {
        std::cerr << "brizalog-boardsim: cannot link " << link.string() << ": " << error.message()
                  << "\n";
        return 1;
    }

    struct sigaction stop {};
    stop.sa_handler = OnStopSignal;
    sigaction(SIGINT, &stop, nullptr);
    sigaction(SIGTERM, &stop, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    std::cout << "brizalog-boardsim: " << link.string() << " -> " << slaveName << ", "
              << (IsMeter(options.systemType.value_or(-1)) ? MeterPeriod(options)
                                                           : 1.0 / options.rate)
              << " s between frames or meter cycles, system "
              << (options.systemType ? std::to_string(*options.systemType)
                                     : std::string("of hardware.cfg"))
              << std::endl;

    // The system's default slack of 50 µs on every sleep would cost a twentieth of the rate at
    // 1,000 frames a second.
    prctl(PR_SET_TIMERSLACK, 1000UL);

    Installation plant;
    auto next = std::chrono::steady_clock::now();
    auto nextConfigRead = next;
    int systemType = options.systemType.value_or(ConfiguredSystemType(options.folder, 0));
    int meterType = -1;  // the type the meter below was made for
    std::optional<Meter> meter;
    SerialLine line(options.minChunk > 0 ? options.minChunk : 1 << 30,
                    options.maxChunk > 0 ? options.maxChunk : 1 << 30, options.drop, options.seed);
    long frameNumber = 0;
    long sent = 0;           // frames written whole
    long dropped = 0;        // frames a full terminal refused
    long droppedUnread = 0;  // of those, before anybody had read the terminal
    bool readerSeen = false;
    long flushed = 0;  // bytes dropped unread
    long flushedFrames = 0;
    RecentFrames recent;
    int lastQueued = 0;
    auto lastDrain = next;
    while (!g_stop) {
        const auto now = std::chrono::steady_clock::now();
        if (!options.systemType && now >= nextConfigRead) {
            systemType = ConfiguredSystemType(options.folder, systemType);
            nextConfigRead = now + std::chrono::seconds(2);
        }
        if (systemType != meterType) {
            meterType = systemType;
            setSpeed(systemType, options);
            meter.emplace(MeterFor(options, systemType), options.seed);
        }
        const bool isMeter = IsMeter(systemType);
        const double seconds = isMeter ? MeterPeriod(options) : 1.0 / options.rate;
        const auto period = std::chrono::duration<double>(seconds);
        plant.Advance(seconds, HourOfDay());
        std::string frame;
        if (isMeter) {
            const std::tm local = LocalNow();
            frame = meter->Cycle(plant,
                                 {89 + local.tm_yday, local.tm_hour, local.tm_min, local.tm_sec});
        } else {
            frame = ComposeFrame(plant, systemType, frameNumber % 2 == 0 ? 9 : 0);
        }
        ++frameNumber;

        // Nobody reading for a second: drop what has piled up, so that a port opened later
        // starts with fresh frames rather than old ones. A reader that is only a little behind
        // keeps every frame.
        int queued = 0;
        if (ioctl(slave, FIONREAD, &queued) == 0) {
            if (queued < lastQueued) {
                readerSeen = true;
            }
            if (queued < lastQueued || queued == 0) {
                lastDrain = now;
            }
            lastQueued = queued;
            if (queued > 4 * static_cast<int>(frame.size()) &&
                now - lastDrain > std::chrono::seconds(1)) {
                tcflush(slave, TCIFLUSH);
                flushed += queued;
                flushedFrames += recent.FramesIn(queued);
                lastQueued = 0;
            }
        }
        // One write per frame, or per piece of the adapter, each after the line time of the one
        // before; a full terminal drops the rest of the frame, as a board would.
        const std::vector<std::string> pieces = options.minChunk > 0 || options.drop > 0
                                                    ? line.Deliver(frame)
                                                    : std::vector<std::string>{frame};
        const double bytesPerSecond =
            (isMeter ? brizalog::boardsim::LineSpeed(meter->model()) : 4800) / 10.0;
        bool whole = true;
        bool broken = false;
        for (std::size_t i = 0; i < pieces.size() && !g_stop; ++i) {
            if (i > 0) {
                std::this_thread::sleep_for(
                    std::chrono::duration<double>(pieces[i - 1].size() / bytesPerSecond));
            }
            const ssize_t written = write(master, pieces[i].data(), pieces[i].size());
            if (written < 0 && errno != EAGAIN) {
                broken = true;
                break;
            }
            if (written != static_cast<ssize_t>(pieces[i].size())) {
                whole = false;
                break;
            }
        }
        if (broken) {
            break;
        }
        if (whole) {
            ++sent;
            recent.Written(frame.size());
        } else {
            ++dropped;
            droppedUnread += readerSeen ? 0 : 1;
        }
        // Brizalog never transmits; whatever comes back is discarded.
        char discard[256];
        while (read(master, discard, sizeof discard) > 0) {
        }

        // Frames are due on a fixed grid. A simulator held up for a moment sends what it owes at
        // once, so the rate holds over a run; one held up for longer starts the grid afresh
        // rather than sending a burst.
        next += std::chrono::duration_cast<std::chrono::steady_clock::duration>(period);
        const auto after = std::chrono::steady_clock::now();
        if (after - next > std::chrono::milliseconds(100)) {
            next = after;
        }
        while (!g_stop && std::chrono::steady_clock::now() < next) {
            std::this_thread::sleep_until(
                std::min(next, std::chrono::steady_clock::now() + std::chrono::milliseconds(50)));
        }
    }

    // What nobody read before the stop: frames still waiting in the terminal.
    int unread = 0;
    ioctl(slave, FIONREAD, &unread);
    // Remove the link only while it is still ours.
    if (fs::read_symlink(link, error) == fs::path(slaveName)) {
        fs::remove(link, error);
    }
    close(slave);
    close(master);
    if (options.count) {
        std::cout << "brizalog-boardsim: frames sent " << sent << ", dropped by a full terminal "
                  << dropped << " (before the first read " << droppedUnread
                  << "), bytes flushed unread " << flushed << " (frames " << flushedFrames
                  << "), frames unread at the stop " << recent.FramesIn(unread) << std::endl;
    }
    std::cout << "brizalog-boardsim: stopped" << std::endl;
    return 0;
}
