#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/control.h"
#include "catalogue/indexed_array.h"
#include "catalogue/services.h"
#include "catalogue/state.h"

namespace brizalog {

// The rows that the channel forms offer in a system type (empty for a type outside 0..8).
const std::vector<int>& ChannelRowsOffered(int systemType);
// The choices of the MAXLimit box of channel `channel` (1..24).
const std::vector<std::string>& MaxLimitChoices(int channel);

// One row of a channel form, for channel i. Not every form has every control: see
// ChannelSetup::HasLimitsAndColours and HasTagColumn.
struct ChannelRow {
    Control Frame;          // the row itself: withdrawn rows are not visible
    Control CheckEnable;    // checked = 1; not enabled = locked
    Control dataCHANNEL;    // the channel's name, in its colour (foreColour)
    Control MAXLimit;       // a list with free text: the full-scale limit
    Control ChannelColour;  // "Set line Colour"
    Control XMLcode;        // the channel's frame tag (hardware form) or log tag (logging form)
};

struct ChannelSetupModel {
    ChannelSetupModel() = default;
    ChannelSetupModel(const ChannelSetupModel&) = delete;
    ChannelSetupModel& operator=(const ChannelSetupModel&) = delete;

    std::string caption;
    IndexedArray<ChannelRow, 0, 24> rows;  // channels 1..24; element 0 is not used
    Control SaveSettings;
    Control Label1;  // the abort
    ControlRegistry controls;
};

// The four channel forms `setupHARDWAREchannels`, `setupLOGGINGchannels`,
// `setupGRAPHINGchannels` and `setupDISPLAYchannels`: one skeleton, and a table of what sets each
// member apart. A row action changes the memory table at once, before any save; the save writes
// channels.cfg and closes, the abort closes without writing. The main form then applies the
// layout from memory and only afterwards loads the files again.
class ChannelSetup {
public:
    enum class Opening { Hardware, Flags, Logging };
    struct Member;

    ChannelSetup(std::string_view window, SharedState& state, std::filesystem::path folder,
                 Dialogs& dialogs);
    ChannelSetup(const ChannelSetup&) = delete;
    ChannelSetup& operator=(const ChannelSetup&) = delete;

    static bool IsChannelSetup(std::string_view window);

    // The opening of the member. Any failure after the rows are laid out is passed over and the
    // next step taken; a missing channels.cfg is told and the form stays open as it stands.
    void Form_Load();
    // The box of row i has just been changed by the user (the model holds its new value).
    void CheckEnable_Click(int i);
    // Hardware form: the name through TextInput.
    void dataCHANNEL_Click(int i);
    // Hardware form: the colour through ColourCHART.
    void ChannelColour_Click(int i);
    // Hardware and logging forms: the tag through XMLcodeINPUT.
    void XMLcode_Click(int i);
    // The hardware form refuses a limit that reads as 0 on any row, offered or not.
    void SaveSettings_Click();
    void Label1_Click() { m_closeRequested = true; }
    // Closing by the title bar is the abort.
    void TitleBarClose() { Label1_Click(); }

    // A click by the control's own name ("CheckEnable(9)", "SaveSettings"): a check box turns
    // over first. A control the user cannot reach (a withdrawn row, an inactive control) does
    // nothing and gives true; false when the form has no such control.
    bool Click(std::string_view name);
    // Typing into a MAXLimit box; false when the form has no such box.
    bool SetText(std::string_view name, std::string_view text);

    // The hardware form's own controls: MAXLimit, ChannelColour, an editable name.
    bool HasLimitsAndColours() const;
    // The hardware and logging forms show the tag in XMLcode.
    bool HasTagColumn() const;
    bool CloseRequested() const { return m_closeRequested; }
    ChannelSetupModel& model() { return m_model; }
    const ChannelSetupModel& model() const { return m_model; }

private:
    void OpenHardware();
    void OpenFlags();
    void OpenLogging();
    void OfferRows();
    // channels.cfg whole, or empty after telling that it is missing.
    bool ReadTable(std::string& text);
    // Reads the nine tags of every channel into memory, each under the passing-over policy,
    // with the name and colour going to dataCHANNEL and back.
    void ReadAllChannels(const std::string& text);
    void SetRowActive(int i, bool active);

    const Member& m_member;
    SharedState& m_state;
    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    ChannelSetupModel m_model;
    bool m_closeRequested = false;
};

// The message of a hardware save refused for a limit of zero.
std::string ZeroLimitMessage();
// The message of a hardware save refused for a limit that the channel table cannot hold (outside
// -32768..32767 once rounded): it names the channel by number and by the name its row shows.
std::string LimitRangeMessage(int channel, std::string_view name);

}  // namespace brizalog
