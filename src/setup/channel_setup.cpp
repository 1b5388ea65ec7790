#include "setup/channel_setup.h"

#include <cstdint>
#include <limits>

#include "catalogue/channels.h"
#include "catalogue/config_files.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"
#include "setup/form_rows.h"

namespace brizalog {

namespace {

using FlagColumn = IndexedArray<std::uint8_t, 0, 24> ChannelTable::*;
using TagColumn = IndexedArray<std::string, 0, 24> ChannelTable::*;

const std::vector<int> kRowsOffered[9] = {
    {1, 9, 12, 13, 17},
    {1, 2, 9, 12, 13, 14, 17, 18},
    {1, 2, 3, 4, 9, 12, 13, 14, 17, 18, 19, 20},
    {19, 20, 21},
    {19, 20, 21, 22, 23, 24},
    {1, 2, 3, 4, 9, 17, 18, 19, 20},
    {1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 18, 19, 20, 21, 22, 23, 24},
    {1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 18, 19, 20, 21, 22, 23, 24},
    {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24},
};

struct LimitChoices {
    int first;
    int last;
    std::vector<std::string> choices;
};

const LimitChoices kLimitChoices[] = {
    {1, 8, {"5", "10", "15", "20", "30", "50", "80", "100"}},
    {9, 11, {"15", "30", "60", "120", "240"}},
    {12, 12, {"10", "20", "30", "40", "50", "60", "70", "80", "90", "100"}},
    {13, 14, {"150", "200", "250", "300", "400", "500", "600", "800", "1000", "1500"}},
    {15,
     16,
     {"10", "20", "30", "40", "50", "60", "70", "80", "90", "100", "120", "140", "160", "180",
      "200"}},
    {17, 24, {"100", "200", "300", "500", "750", "1000", "1500", "2000", "3000", "5000"}},
};

std::string Tag(std::string_view text, std::string_view stem, int n) {
    const std::string number = std::to_string(n);
    return ReadTagValue(text, "<" + std::string(stem) + number + ">",
                        "</" + std::string(stem) + number + ">");
}

std::uint8_t FlagTag(std::string_view text, std::string_view stem, int n) {
    return static_cast<std::uint8_t>(RoundToInteger(ParseNumber(Tag(text, stem, n)), 0, 255));
}

std::int16_t Limit(double value) {
    return static_cast<std::int16_t>(RoundToInteger(value, std::numeric_limits<std::int16_t>::min(),
                                                    std::numeric_limits<std::int16_t>::max()));
}

}  // namespace

// What sets each member of the family apart.
struct ChannelSetup::Member {
    std::string_view window;
    std::string_view title;
    std::string_view rowFrame;
    FlagColumn shownFlag;     // the flag CheckEnable shows, and edits where it can be changed
    bool checkEditable;       // false: the box only shows the flag
    bool checkNeedsHardware;  // the box is usable only where HARDWAREenabled is 1
    bool limitsAndColours;    // MAXLimit, ChannelColour and the name are edited here
    TagColumn editedTag;      // what XMLcode shows and edits; null: the form has no XMLcode
    Opening opening;          // the order of the steps of the opening
};

namespace {

const ChannelSetup::Member kMembers[] = {
    {"setupHARDWAREchannels",
     "Setup Channels [Channel Name,  Maximum Reading,  Graphing line colour]  & if ENABLED",
     "Frame1", &ChannelTable::HARDWAREenabled, true, false, true, &ChannelTable::XMLhardware,
     ChannelSetup::Opening::Hardware},
    {"setupLOGGINGchannels", "Setup the logging channels associated XML data identifiers",
     "Frame10", &ChannelTable::HARDWAREenabled, false, false, false, &ChannelTable::XMLsoftware,
     ChannelSetup::Opening::Logging},
    {"setupGRAPHINGchannels", "Setup Channels for GRAPHING", "Frame11",
     &ChannelTable::enableGRAPHING, true, false, false, nullptr, ChannelSetup::Opening::Flags},
    {"setupDISPLAYchannels", "Setup DATA Channels to display", "Frame12",
     &ChannelTable::enableDISPLAY, true, true, false, nullptr, ChannelSetup::Opening::Flags},
};

}  // namespace

const std::vector<int>& ChannelRowsOffered(int systemType) {
    static const std::vector<int> kNone;
    return systemType >= 0 && systemType < 9 ? kRowsOffered[systemType] : kNone;
}

const std::vector<std::string>& MaxLimitChoices(int channel) {
    static const std::vector<std::string> kNone;
    for (const LimitChoices& group : kLimitChoices) {
        if (channel >= group.first && channel <= group.last) {
            return group.choices;
        }
    }
    return kNone;
}

std::string ZeroLimitMessage() {
    return "there is an error with a maximum limit of zero\r\ncorrect the problem and try again";
}

std::string LimitRangeMessage(int channel, std::string_view name) {
    return "the maximum limit of channel " + std::to_string(channel) + " (" + std::string(name) +
           ") is outside the range " + std::to_string(std::numeric_limits<std::int16_t>::min()) +
           " to " + std::to_string(std::numeric_limits<std::int16_t>::max()) +
           "\r\ncorrect the problem and try again";
}

namespace {

const ChannelSetup::Member& MemberOf(std::string_view window) {
    for (const ChannelSetup::Member& member : kMembers) {
        if (member.window == window) {
            return member;
        }
    }
    return kMembers[0];
}

}  // namespace

bool ChannelSetup::IsChannelSetup(std::string_view window) {
    for (const Member& member : kMembers) {
        if (member.window == window) {
            return true;
        }
    }
    return false;
}

ChannelSetup::ChannelSetup(std::string_view window, SharedState& state,
                           std::filesystem::path folder, Dialogs& dialogs)
    : m_member(MemberOf(window)), m_state(state), m_folder(std::move(folder)), m_dialogs(dialogs) {
    m_model.caption = std::string(m_member.title);
    m_model.SaveSettings.text = "Save Channel Settings";
    m_model.Label1.text = "** ABORT **  NO changes Saved";
    for (int i = 1; i <= kChannelCount; ++i) {
        // The design values of a row, which stand until the file is read.
        const ChannelDefaults& d = kChannelDefaults[static_cast<std::size_t>(i)];
        ChannelRow& row = m_model.rows[i];
        row.dataCHANNEL.text = std::string(d.name);
        row.dataCHANNEL.foreColour = d.colour;
        row.XMLcode.text = std::string(d.tag);
        row.ChannelColour.text = "Set line Colour";
    }
    const std::string frame(m_member.rowFrame);
    for (int i = 1; i <= kChannelCount; ++i) {
        const std::string index = "(" + std::to_string(i) + ")";
        ChannelRow& row = m_model.rows[i];
        m_model.controls.Add(frame + index, row.Frame);
        m_model.controls.Add("CheckEnable" + index, row.CheckEnable);
        m_model.controls.Add("dataCHANNEL" + index, row.dataCHANNEL);
        if (m_member.limitsAndColours) {
            m_model.controls.Add("MAXLimit" + index, row.MAXLimit);
            m_model.controls.Add("ChannelColour" + index, row.ChannelColour);
        }
        if (HasTagColumn()) {
            m_model.controls.Add("XMLcode" + index, row.XMLcode);
        }
    }
    m_model.controls.Add("SaveSettings", m_model.SaveSettings);
    m_model.controls.Add("Label1", m_model.Label1);
}

bool ChannelSetup::HasLimitsAndColours() const {
    return m_member.limitsAndColours;
}

bool ChannelSetup::HasTagColumn() const {
    return m_member.editedTag != nullptr;
}

void ChannelSetup::Form_Load() {
    static constexpr void (ChannelSetup::*kOpenings[])() = {
        &ChannelSetup::OpenHardware, &ChannelSetup::OpenFlags, &ChannelSetup::OpenLogging};
    (this->*kOpenings[static_cast<int>(m_member.opening)])();
}

void ChannelSetup::OfferRows() {
    for (int i = 1; i <= kChannelCount; ++i) {
        m_model.rows[i].Frame.visible = false;
    }
    for (int i : ChannelRowsOffered(m_state.settings.SystemType)) {
        m_model.rows[i].Frame.visible = true;
    }
}

bool ChannelSetup::ReadTable(std::string& text) {
    const std::filesystem::path file = InFolder(m_folder, kChannelsFile);
    if (!FileExists(file)) {
        m_dialogs.ShowMessage("channel configuration file is missing");
        return false;
    }
    try {
        text = ReadWholeFile(file);
    } catch (const Failure&) {
        text.clear();
    }
    return true;
}

void ChannelSetup::ReadAllChannels(const std::string& text) {
    // Only the hardware form shows the limits, and repairs a limit of 0 from what its box shows.
    const bool limits = m_member.limitsAndColours;
    ChannelTable& t = m_state.channels;
    for (int n = 1; n <= kChannelCount; ++n) {
        ChannelRow& row = m_model.rows[n];
        PassingOver([&] { t.enableLOGGING[n] = FlagTag(text, "enableLOGGING", n); });
        PassingOver([&] { t.enableDISPLAY[n] = FlagTag(text, "enableDISPLAY", n); });
        PassingOver([&] { t.enableGRAPHING[n] = FlagTag(text, "enableGRAPHING", n); });
        PassingOver([&] { t.HARDWAREenabled[n] = FlagTag(text, "HARDWAREenabled", n); });
        PassingOver([&] { row.dataCHANNEL.text = Tag(text, "C", n); });
        PassingOver([&] {
            row.dataCHANNEL.foreColour = static_cast<int>(RoundToInteger(
                ParseNumber(Tag(text, "L", n)), std::numeric_limits<std::int32_t>::min(),
                std::numeric_limits<std::int32_t>::max()));
        });
        PassingOver([&] {
            t.MaxLimit[n] = Limit(ParseNumber(Tag(text, "M", n)));
            if (limits && t.MaxLimit[n] != 0) {
                row.MAXLimit.text = std::to_string(t.MaxLimit[n]);
            } else if (limits) {
                t.MaxLimit[n] = Limit(ParseNumber(row.MAXLimit.text));
            }
        });
        PassingOver([&] { t.XMLsoftware[n] = Tag(text, "XMLsoftware", n); });
        PassingOver([&] { t.XMLhardware[n] = Tag(text, "XMLhardware", n); });
        t.LineColour[n] = row.dataCHANNEL.foreColour;
        t.ChannelName[n] = row.dataCHANNEL.text;
    }
}

void ChannelSetup::SetRowActive(int i, bool active) {
    ChannelRow& row = m_model.rows[i];
    row.dataCHANNEL.enabled = active;
    row.MAXLimit.enabled = active;
    row.XMLcode.enabled = active;
    row.ChannelColour.enabled = active;
}

void ChannelSetup::OpenHardware() {
    ChannelTable& t = m_state.channels;
    for (int i = 1; i <= kChannelCount; ++i) {
        m_model.rows[i].MAXLimit.text = std::to_string(t.MaxLimit[i]);
    }
    OfferRows();
    for (int i = 1; i <= kChannelCount; ++i) {
        m_model.rows[i].CheckEnable.checked = m_model.rows[i].Frame.visible;
        if (IsPowerChannel(i)) {
            m_model.rows[i].XMLcode.enabled = false;
        }
    }

    std::string text;
    if (!ReadTable(text)) {
        return;
    }
    ReadAllChannels(text);
    for (int n = 1; n <= kChannelCount; ++n) {
        ChannelRow& row = m_model.rows[n];
        if (!t.XMLhardware[n].empty()) {
            row.XMLcode.text = t.XMLhardware[n];
        } else {
            t.XMLhardware[n] = row.XMLcode.text;
        }
        // The hardware flag has the last word over the offered rows and enableLOGGING, and
        // makes the tag of an enabled power row active again.
        row.CheckEnable.checked = t.HARDWAREenabled[n] == 1;
        SetRowActive(n, t.HARDWAREenabled[n] == 1);
    }
}

void ChannelSetup::OpenFlags() {
    OfferRows();
    ChannelTable& t = m_state.channels;
    if (m_member.checkNeedsHardware) {
        for (int i = 1; i <= kChannelCount; ++i) {
            m_model.rows[i].CheckEnable.enabled = t.HARDWAREenabled[i] == 1;
        }
    }
    std::string text;
    if (ReadTable(text)) {
        ReadAllChannels(text);
    }
    for (int n = 1; n <= kChannelCount; ++n) {
        m_model.rows[n].CheckEnable.checked = (t.*m_member.shownFlag)[n] == 1;
    }
}

void ChannelSetup::OpenLogging() {
    std::string text;
    if (!ReadTable(text)) {
        return;
    }
    ReadAllChannels(text);
    ChannelTable& t = m_state.channels;
    for (int n = 1; n <= kChannelCount; ++n) {
        ChannelRow& row = m_model.rows[n];
        if (!t.XMLsoftware[n].empty()) {
            row.XMLcode.text = t.XMLsoftware[n];
        } else {
            t.XMLsoftware[n] = row.XMLcode.text;
        }
        row.CheckEnable.checked = t.enableLOGGING[n] == 1;
    }
    OfferRows();
    // The boxes show whether the channel is there at all, and cannot be changed here.
    for (int i = 1; i <= kChannelCount; ++i) {
        m_model.rows[i].CheckEnable.checked = t.HARDWAREenabled[i] == 1;
        m_model.rows[i].CheckEnable.enabled = false;
    }
}

void ChannelSetup::CheckEnable_Click(int i) {
    if (!IsChannel(i) || !m_member.checkEditable) {
        return;
    }
    const bool on = m_model.rows[i].CheckEnable.checked;
    (m_state.channels.*m_member.shownFlag)[i] = on ? 1 : 0;
    if (m_member.limitsAndColours) {
        SetRowActive(i, on);
    }
}

void ChannelSetup::dataCHANNEL_Click(int i) {
    if (!IsChannel(i) || !m_member.limitsAndColours) {
        return;
    }
    Control& label = m_model.rows[i].dataCHANNEL;
    m_state.EditText = label.text;
    m_dialogs.OpenWindow("TextInput", true);
    label.text = m_state.EditText;
    m_state.channels.ChannelName[i] = m_state.EditText;
}

void ChannelSetup::ChannelColour_Click(int i) {
    if (!IsChannel(i) || !m_member.limitsAndColours) {
        return;
    }
    Control& label = m_model.rows[i].dataCHANNEL;
    m_state.EditColour = label.foreColour;
    m_dialogs.OpenWindow("ColourCHART", true);
    label.foreColour = static_cast<int>(m_state.EditColour);
    m_state.channels.LineColour[i] = static_cast<std::int32_t>(m_state.EditColour);
}

void ChannelSetup::XMLcode_Click(int i) {
    if (!IsChannel(i) || !HasTagColumn()) {
        return;
    }
    Control& label = m_model.rows[i].XMLcode;
    m_state.EditText = label.text;
    m_dialogs.OpenWindow("XMLcodeINPUT", true);
    label.text = m_state.EditText;
    (m_state.channels.*m_member.editedTag)[i] = m_state.EditText;
}

void ChannelSetup::SaveSettings_Click() {
    ChannelTable written = m_state.channels;
    if (m_member.limitsAndColours) {
        for (int i = 1; i <= kChannelCount; ++i) {
            if (ParseNumber(m_model.rows[i].MAXLimit.text) == 0) {
                m_dialogs.ShowMessage(ZeroLimitMessage());
                return;
            }
        }
        // The file takes each row's colour and limit as the row shows them. A limit beyond the
        // range of the file's numbers is named with its row, so the user can tell which box to
        // correct; nothing is written, and the form stays open with the box as typed.
        for (int i = 1; i <= kChannelCount; ++i) {
            const ChannelRow& row = m_model.rows[i];
            written.LineColour[i] = row.dataCHANNEL.foreColour;
            try {
                written.MaxLimit[i] = Limit(ParseNumber(row.MAXLimit.text));
            } catch (const Failure&) {
                m_dialogs.ShowMessage(LimitRangeMessage(i, row.dataCHANNEL.text));
                return;
            }
        }
    }
    try {
        WriteChannelTable(written, m_folder);
    } catch (const Failure&) {
        // A file that cannot be written keeps the form open, so nothing looks saved that isn't.
        return;
    }
    m_closeRequested = true;
}

bool ChannelSetup::Click(std::string_view name) {
    const auto offered = [this](int i) { return IsChannel(i) && m_model.rows[i].Frame.visible; };
    return ClickByName(m_model.controls, name, offered,
                       [this](Control& control, std::string_view base, int i) {
                           if (base == "SaveSettings") {
                               SaveSettings_Click();
                           } else if (base == "Label1") {
                               Label1_Click();
                           } else if (base == "CheckEnable") {
                               control.checked = !control.checked;
                               CheckEnable_Click(i);
                           } else if (base == "dataCHANNEL") {
                               dataCHANNEL_Click(i);
                           } else if (base == "ChannelColour") {
                               ChannelColour_Click(i);
                           } else if (base == "XMLcode") {
                               XMLcode_Click(i);
                           }
                       });
}

bool ChannelSetup::SetText(std::string_view name, std::string_view text) {
    std::string_view base;
    int i = -1;
    if (!m_member.limitsAndColours || !SplitIndexedName(name, base, i) || base != "MAXLimit" ||
        !IsChannel(i)) {
        return false;
    }
    Control& box = m_model.rows[i].MAXLimit;
    if (box.enabled && m_model.rows[i].Frame.visible) {
        box.text = std::string(text);
    }
    return true;
}

}  // namespace brizalog
