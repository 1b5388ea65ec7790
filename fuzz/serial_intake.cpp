// Serial intake, both decoders and the calculation of every system type, then a logging tick
// and a midnight rollover. Input: the system type, an options byte (Check1, the calibration),
// then serial events, each a length byte and up to that many bytes.

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
            const std::string dateTag = DateTag(day, false);
            literals.push_back(SpreadsheetLiteral(dateTag));
            for (int t = 0; t < kSystemTypeCount; ++t) {
                for (const LogFile& file : LogFilesOf(t)) {
                    literals.push_back(LogFileLiteral(file.prefix, dateTag));
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

    while (!in.empty()) {
        const std::size_t length = in.Byte();
        platform.serial.Queue(std::string(in.Bytes(length)));
        try {
            form.MSComm1_OnComm();
        } catch (const Failure&) {
            // Only the intake of the 128 meter has no trap; there the failure ends the program,
            // which the platform does in a controlled way.
            if (DecoderOf(systemType) != DecoderKind::Meter128) {
                std::abort();
            }
            return 0;
        }
        CheckFinite(s);
    }

    form.Timer1_Timer();
    CheckFinite(s);
    platform.clock.Set({2026, 3, 8, 0, 0, 5, 0});
    try {
        form.Timer3_Timer();
    } catch (const Failure&) {
    }
    CheckFinite(s);
    return 0;
}
