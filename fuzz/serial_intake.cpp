// Serial intake, both decoders and the calculation of every system type, then a logging tick
// and a midnight rollover, as the headless logger runs them: with its choices on (logging kept
// armed, text without a frame end held to a bound, the 128 meter's failures contained), so that
// any failure that leaves a handler is one the logger would not survive, and a crash here.
// Input: the system type, an options byte (Check1, the calibration, the logging interval), then
// serial events, each a length byte and up to that many bytes; a length of 255 takes a second
// byte for events of up to 4 kB, as a fast line fills the port's queue between two events, and a
// length of 0 changes the system type to the next byte's, as the Configure menu does mid-stream.

#include <memory>

#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/local_time.h"
#include "catalogue/system_types.h"
#include "fuzz_support.h"
#include "logging/ledger.h"
#include "logging/log_records.h"

using namespace brizalog;
using namespace brizalog::fuzz;

namespace {

// Calibrations a user could type: the default, a gain that is large, tiny, negative or zero.
constexpr double kDividers[] = {0.1, 1e300, 1e-300, -0.1, 0, 1e155, 3.5, -1e200};
constexpr double kOffsets[] = {0, -1e308, 512, 1e308};
// Logging intervals: daily logs, and the hourly ones of 5 seconds and less.
constexpr double kDelays[] = {10, 5, 1};

}  // namespace

namespace {

// One form per system type, made once: the layout is applied and the settings written at its
// making only. Each input starts from the same state.
struct Rig {
    Platform platform;
    std::filesystem::path folder = FreshFolder("serial");
    std::unique_ptr<Brizalog> forms[kSystemTypeCount];
    SharedState pristine[kSystemTypeCount];

    Rig() {
        for (int t = 0; t < kSystemTypeCount; ++t) {
            forms[t] = std::make_unique<Brizalog>(folder, platform.services());
            SharedState& s = forms[t]->state();
            s.settings.LogDelay = 10;
            // The headless logger's defaults.
            s.options.SetFlag("KeepLoggingArmed", true);
            s.options.SetFlag("ContainMeterFailures", true);
            s.settings.SaveExcel = 1;
            s.settings.WSUnits = "m/s";
            s.settings.PersonalString = "Mill";
            SetDefaultChannelTable(s.channels);
            forms[t]->setsystem_Click(t);
            pristine[t] = s;
        }
        platform.serial.Open(3, "4800,N,8,1");
        SinkFiles();
    }

    // Every file that a tick, the rollover or a trapped report writes on the two days of the
    // run is a link to /dev/null: the records are built and written in full at every input,
    // through the same calls as onto a disk, and the folder does not grow. A file that cannot
    // be written would cost a thrown failure per record instead.
    void SinkFiles() {
        namespace fs = std::filesystem;
        fs::create_directories(folder / "logs");
        fs::create_directories(folder / "Excel");
        std::vector<std::string> literals = {std::string(kWhoursFile), "/errorlog.txt"};
        for (const LocalDateTime day :
             {LocalDateTime{2026, 3, 7, 14, 5, 0, 0}, LocalDateTime{2026, 3, 8, 0, 0, 5, 0}}) {
            for (const bool hourly : {false, true}) {
                const std::string dateTag = DateTag(day, hourly);
                literals.push_back(SpreadsheetLiteral(dateTag));
                for (int t = 0; t < kSystemTypeCount; ++t) {
                    for (const LogFile& file : LogFilesOf(t)) {
                        literals.push_back(LogFileLiteral(file.prefix, dateTag));
                    }
                }
            }
        }
        for (const std::string& literal : literals) {
            std::error_code error;
            fs::create_symlink("/dev/null", folder / literal.substr(1), error);
        }
    }

    // What the last input left in the receive buffer is cut away, and the state made new.
    Brizalog& Fresh(int systemType, std::uint8_t options) {
        Brizalog& form = *forms[systemType];
        static constexpr const char* kCuts[] = {"]", "]", "]", "</msg>", "<msg>",
                                                "]", "]", "]", "]"};
        platform.serial.Queue(kCuts[systemType]);
        try {
            form.MSComm1_OnComm();
        } catch (const Failure&) {
        }
        SharedState& s = form.state();
        s = pristine[systemType];
        for (int i = 1; i <= 16; ++i) {
            s.calibration.ADCDivider[i] = kDividers[(options >> 1) % std::size(kDividers)];
            s.calibration.ADCOffset[i] = kOffsets[(options >> 4) % std::size(kOffsets)];
        }
        s.settings.LogDelay = kDelays[(options >> 6) % std::size(kDelays)];
        MainFormModel& m = form.model();
        m.caption = "Waiting for Data";
        m.LogOK.colour = kGreen;
        m.delay.enabled = true;
        m.delay.text = "10";
        form.SetText("Check1", (options & 1) != 0 ? "1" : "0");
        form.stopMENU_Click();
        form.startMENU_Click();
        return form;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Rig rig;
    Platform& platform = rig.platform;
    Input in(data, size);
    const int systemType = in.Byte() % kSystemTypeCount;
    Brizalog& form = rig.Fresh(systemType, in.Byte());
    SharedState& s = form.state();
    platform.clock.Set({2026, 3, 7, 14, 5, 0, 0});

    // Every handler of the logger is run as its event loop runs it: a failure that leaves one
    // would end the logger.
    const auto survive = [&](const char* handler) {
        std::fprintf(stderr, "fault: a failure left %s in system %d\n", handler,
                     static_cast<int>(s.settings.SystemType));
        std::abort();
    };
    while (!in.empty()) {
        std::size_t length = in.Byte();
        if (length == 0) {
            // The Configure menu mid-stream: the buffer keeps its text.
            try {
                form.setsystem_Click(in.Byte() % kSystemTypeCount);
            } catch (const Failure&) {
                survive("setsystem");
            }
            continue;
        }
        if (length == 255) {
            length += static_cast<std::size_t>(in.Byte()) * 16;
        }
        platform.serial.Queue(std::string(in.Bytes(length)));
        try {
            form.MSComm1_OnComm();
        } catch (const Failure&) {
            survive("the serial intake");
        }
        CheckFinite(s);
    }

    try {
        form.Timer1_Timer();
    } catch (const Failure&) {
        survive("the logging tick");
    }
    CheckFinite(s);
    platform.clock.Set({2026, 3, 8, 0, 0, 5, 0});
    try {
        form.Timer3_Timer();
    } catch (const Failure&) {
        // Its timer contains it: the rollover alone ends.
    }
    CheckFinite(s);
    if (s.settings.SystemType != systemType) {
        form.setsystem_Click(systemType);
    }
    return 0;
}
