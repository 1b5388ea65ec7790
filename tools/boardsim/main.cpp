// brizalog-boardsim: a logger board or a Current Cost meter on a pseudo-terminal.
//
//   brizalog-boardsim --folder DIR [--port N] [--system T] [--rate FRAMES_PER_S]
//                     [--provision | --provision-only] [--count]
//
// Makes a pseudo-terminal, links it as DIR/ports/COMN (N is 3 unless told), and sends frames of
// system type T until it is stopped (SIGINT or SIGTERM), when it removes its link again. Without
// --system it follows the SystemType of DIR/hardware.cfg, so a layout chosen in Brizalog's menu
// gets its own frames within seconds. --provision first makes whatever folder and file of DIR is
// missing, as the splash of Brizalog does at each start; --provision-only does that alone.

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <termios.h>
#include <unistd.h>

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
#include <string>
#include <thread>

#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "catalogue/text_rules.h"
#include "installation.h"

namespace fs = std::filesystem;
using brizalog::boardsim::ComposeFrame;
using brizalog::boardsim::Installation;

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
};

[[noreturn]] void Usage(const std::string& problem) {
    std::cerr << "brizalog-boardsim: " << problem << "\n"
              << "usage: brizalog-boardsim --folder DIR [--port N] [--system T] "
                 "[--rate FRAMES_PER_S] [--provision | --provision-only] [--count]\n";
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
    if (options.folder.empty()) {
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

double HourOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_hour + local.tm_min / 60.0 + local.tm_sec / 3600.0;
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = ParseOptions(argc, argv);
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
    termios raw{};
    tcgetattr(slave, &raw);
    cfmakeraw(&raw);
    cfsetispeed(&raw, B4800);
    cfsetospeed(&raw, B4800);
    tcsetattr(slave, TCSANOW, &raw);
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
              << options.rate << " frames/s, system "
              << (options.systemType ? std::to_string(*options.systemType)
                                     : std::string("of hardware.cfg"))
              << std::endl;

    // The system's default slack of 50 µs on every sleep would cost a twentieth of the rate at
    // 1,000 frames a second.
    prctl(PR_SET_TIMERSLACK, 1000UL);

    Installation plant;
    const auto period = std::chrono::duration<double>(1.0 / options.rate);
    auto next = std::chrono::steady_clock::now();
    auto nextConfigRead = next;
    int systemType = options.systemType.value_or(ConfiguredSystemType(options.folder, 0));
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
        plant.Advance(period.count(), HourOfDay());
        // The 128 meter speaks for its two sensors in turn.
        const int sensor = frameNumber % 2 == 0 ? 9 : 0;
        const std::string frame = ComposeFrame(plant, systemType, sensor);
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
        // One write per frame; a full terminal drops the frame, as a board would.
        const ssize_t written = write(master, frame.data(), frame.size());
        if (written < 0 && errno != EAGAIN) {
            break;
        }
        if (written == static_cast<ssize_t>(frame.size())) {
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
