// The text fields of the setup forms as a user types them: the program setup, the four channel
// forms with the small input windows they open for names, tags and colours, and the calibration
// form, each then saved and its file loaded again as the next start would. Input: the form, then
// edits, each a field byte, a length byte and that many bytes of text.

#include <memory>

#include "acquisition/port_discovery.h"
#include "catalogue/config_files.h"
#include "catalogue/files.h"
#include "catalogue/provisioning.h"
#include "fuzz_support.h"
#include "setup/calibration_form.h"
#include "setup/channel_setup.h"
#include "setup/program_setup.h"
#include "setup/small_input.h"

using namespace brizalog;
using namespace brizalog::fuzz;

namespace {

class NoPorts : public PortProbe {
public:
    bool commAvailable(int portNumber) override { return portNumber == 3; }
};

constexpr const char* kChannelForms[] = {"setupHARDWAREchannels", "setupLOGGINGchannels",
                                         "setupGRAPHINGchannels", "setupDISPLAYchannels"};

// A failure that leaves a handler is one the program ends on, in a controlled way; it is not a
// crash of the harness. Anything else (an exception of another kind, a sanitizer's finding) is.
template <typename Handler>
void Run(Handler&& handler) {
    try {
        handler();
    } catch (const Failure&) {
    }
}

struct Rig {
    Platform platform;
    NoPorts ports;
    std::filesystem::path folder = FreshFolder("forms");
    std::string files[3];
    SharedState pristine;
    // What the next small input window is given: the text typed, and which label ends it.
    std::string typed;
    int label = 1;

    Rig() {
        ProvisionProgramFolder(folder);
        for (int i = 0; i < 3; ++i) {
            files[i] = ReadWholeFile(folder / std::string(Names()[i]).substr(1));
        }
        LoadConfigFiles(pristine, folder);
        // The small input windows that the channel forms open, answered from the input.
        platform.dialogs.onOpenWindow = [this](std::string_view name, bool) {
            if (!SmallInput::IsSmallInput(name)) {
                return;
            }
            SmallInput input(name, *current);
            input.Form_Load();
            input.Text1_Change(typed);
            input.Label_Click(label);
        };
    }
    static const std::string_view* Names() {
        static const std::string_view names[] = {kSettingsFile, kChannelsFile, kCalibrationFile};
        return names;
    }
    SharedState& Fresh() {
        // Only a file that the last input changed is written back.
        for (int i = 0; i < 3; ++i) {
            const std::filesystem::path path = folder / std::string(Names()[i]).substr(1);
            std::string now;
            Run([&] { now = ReadWholeFile(path); });
            if (now != files[i]) {
                WriteWholeFile(path, files[i]);
            }
        }
        state = pristine;
        platform.dialogs.messages.clear();
        current = &state;
        return state;
    }
    SharedState state;
    SharedState* current = &state;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Rig rig;
    Input in(data, size);
    SharedState& s = rig.Fresh();
    const int form = in.Byte() % 6;
    struct Edit {
        int field;
        std::string text;
    };
    std::vector<Edit> edits;
    while (!in.empty()) {
        const int field = in.Byte();
        const std::size_t length = in.Byte();
        edits.push_back({field, std::string(in.Bytes(length))});
    }

    if (form == 0) {
        ProgramSetup setup(s, rig.folder, rig.platform.dialogs, rig.ports);
        Run([&] { setup.Form_Load(); });
        ProgramSetupModel& m = setup.model();
        Control* boxes[] = {&m.PortNumber,      &m.BaudSelect, &m.LogDelay, &m.WSUnits,
                            &m.Personalization, &m.Cents[0],   &m.Cents[1], &m.Cents[2]};
        Control* ticks[] = {&m.SaveExcel, &m.LogOn, &m.DisplayMessages};
        for (const Edit& e : edits) {
            if (e.field < 8) {
                boxes[e.field]->text = e.text;
            } else {
                ticks[e.field % 3]->checked = !ticks[e.field % 3]->checked;
            }
        }
        Run([&] { setup.SaveSettingsButton_Click(); });
        Run([&] { setup.Label7_Click(); });
    } else if (form <= 4) {
        ChannelSetup setup(kChannelForms[form - 1], s, rig.folder, rig.platform.dialogs);
        Run([&] { setup.Form_Load(); });
        for (const Edit& e : edits) {
            const int channel = 1 + (e.field >> 3) % 24;
            rig.typed = e.text;
            rig.label = e.text.empty() ? 1 : 1 + static_cast<unsigned char>(e.text[0]) % 18;
            Run([&] {
                switch (e.field & 7) {
                    case 0:
                        setup.dataCHANNEL_Click(channel);
                        break;
                    case 1:
                        setup.XMLcode_Click(channel);
                        break;
                    case 2:
                        setup.SetText("MAXLimit(" + std::to_string(channel) + ")", e.text);
                        break;
                    case 3:
                        setup.CheckEnable_Click(channel);
                        break;
                    case 4:
                        setup.ChannelColour_Click(channel);
                        break;
                    default:
                        setup.SetText("MAXLimit(" + std::to_string(channel) + ")", e.text);
                        setup.SaveSettings_Click();
                        break;
                }
            });
        }
        Run([&] { setup.SaveSettings_Click(); });
    } else {
        CalibrationForm calibration(s, rig.folder, rig.platform.dialogs);
        Run([&] { calibration.Form_Load(); });
        for (const Edit& e : edits) {
            const int channel = 1 + (e.field >> 3) % 16;
            Run([&] {
                switch (e.field & 7) {
                    case 0:
                    case 1:
                    case 2:
                        calibration.SetText("Text1(" + std::to_string(channel) + ")", e.text);
                        break;
                    case 3:
                        calibration.Amps_Click(channel);
                        break;
                    case 4:
                        calibration.Volts_Click(channel);
                        break;
                    case 5:
                        calibration.Pulse_Click(channel);
                        break;
                    case 6:
                        calibration.AUTOZEROBUTTON_Click(channel);
                        break;
                    default:
                        calibration.Timer1_Timer();
                        break;
                }
            });
        }
        Run([&] { calibration.SAVEcalibration_Click(); });
    }

    // Whatever was typed and saved, the next start reads the form's file, or fails in the way
    // its trap contains; the numbers in memory stay finite.
    static SharedState next;
    Run([&] {
        const int file = form == 0 ? 0 : form <= 4 ? 1 : 2;
        const std::string text =
            ReadWholeFile(rig.folder / std::string(Rig::Names()[file]).substr(1));
        if (file == 0) {
            LoadSettings(text, next.settings);
        } else if (file == 1) {
            LoadChannelTable(text, next.channels);
        } else {
            LoadCalibration(text, next.calibration);
        }
    });
    CheckFinite(s);
    return 0;
}
