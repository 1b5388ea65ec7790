// The three configuration loaders on a damaged or hand-edited file (hardware.cfg, channels.cfg
// or calibrations.cfg), then the loaded values at work in a started program: the system type
// chosen by its menu, a frame of the system's kind, a logging tick and the save of Exit.

#include "catalogue/config_files.h"
#include "acquisition/brizalog.h"
#include "fuzz_support.h"

using namespace brizalog;
using namespace brizalog::fuzz;

namespace {

constexpr const char* kFrames[] = {
    "[<V>243</V><I>52</I><S>64</S><R>212</R>]",
    "[<A1>512</A1><A2>498</A2><V1>640</V1><V2>300</V2><WS>143</WS><R1>212</R1><R2>188</R2>]",
    "<msg><sensor>9</sensor><tmpr>21.4</tmpr><ch1><watts>00412</watts></ch1></msg>",
    "<msg><sensor>0</sensor><tmpr>19.0</tmpr><ch2><watts>00077</watts></ch2></msg>",
};

struct Rig {
    Platform platform;
    std::filesystem::path folder = FreshFolder("config");
    Brizalog form{folder, platform.services()};
    SharedState pristine;

    Rig() {
        platform.clock.Set({2026, 3, 7, 14, 5, 0, 0});
        form.Form_Load();  // a first start: the files as provisioning makes them
        form.state().settings.SaveExcel = 1;
        pristine = form.state();
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Rig rig;
    Input in(data, size);
    const int which = in.Byte() % 3;
    const char* frame = kFrames[in.Byte() % std::size(kFrames)];
    SharedState& s = rig.form.state();
    s = rig.pristine;
    try {
        switch (which) {
            case 0:
                LoadSettings(in.Rest(), s.settings);
                break;
            case 1:
                LoadChannelTable(in.Rest(), s.channels);
                break;
            default:
                LoadCalibration(in.Rest(), s.calibration);
                break;
        }
    } catch (const Failure&) {
        return 0;  // a damaged file ends the start in a controlled way
    }
    if (s.settings.SystemType > 8) {
        s.settings.SystemType = 0;  // as the start-up does
    }
    try {
        rig.form.setsystem_Click(s.settings.SystemType);
        rig.platform.serial.Open(3, "4800,N,8,1");
        rig.platform.serial.Queue(frame);
        rig.form.MSComm1_OnComm();
    } catch (const Failure&) {
        return 0;  // the 128 meter's intake ends the program
    }
    CheckFinite(s);
    rig.form.Timer1_Timer();
    CheckFinite(s);
    rig.form.exitMENU_Click();
    return 0;
}
