#include "setup/calibration_form.h"

#include <cstdint>
#include <limits>

#include "catalogue/channels.h"
#include "catalogue/config_files.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/text_rules.h"
#include "setup/form_rows.h"

namespace brizalog {

namespace {

const std::vector<int> kRowsOffered[9] = {
    {1, 9, 12, 13},
    {1, 2, 9, 12, 13, 14},
    {1, 2, 3, 4, 9, 12, 13, 14},
    {},
    {},
    {1, 2, 3, 4, 9},
    {1, 2, 3, 4, 5, 6, 7, 8, 9},
    {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
    {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16},
};

constexpr const char* kMeterMessage =
    "no calibration required for Current Cost.  press EXIT on next screen";

std::string Tag(std::string_view text, std::string_view stem, int i) {
    const std::string index = "(" + std::to_string(i) + ")";
    return ReadTagValue(text, "<" + std::string(stem) + index + ">",
                        "</" + std::string(stem) + index + ">");
}

// The strict conversion of the opening: a text that is not a number fails.
double StrictNumber(const std::string& text) {
    if (!IsNumeric(text)) {
        throw Failure(FailureKind::TypeMismatch);
    }
    return ParseNumber(text);
}

}  // namespace

const std::vector<int>& CalibrationRowsOffered(int systemType) {
    static const std::vector<int> kNone;
    return systemType >= 0 && systemType < 9 ? kRowsOffered[systemType] : kNone;
}

CalibrationForm::CalibrationForm(SharedState& state, std::filesystem::path folder, Dialogs& dialogs)
    : m_state(state), m_folder(std::move(folder)), m_dialogs(dialogs) {
    m_timer1.SetHandler([this] { Timer1_Timer(); });
    m_model.SAVEcalibration.text = "SAVE";
    m_model.CalibrationExit.text = "EXIT";
    for (int i = 1; i <= kMeasuredChannels; ++i) {
        const std::string index = "(" + std::to_string(i) + ")";
        CalibrationRow& row = m_model.rows[i];
        row.AUTOZEROBUTTON.text = "Zero";
        row.Amps.text = "Amps";
        row.Volts.text = "Volts";
        row.Pulse.text = "Pulse";
        row.ZeroReset.text = "Reset";
        m_model.controls.Add("Channel" + index, row.Channel);
        m_model.controls.Add("Label1" + index, row.Label1);
        m_model.controls.Add("AUTOZEROBUTTON" + index, row.AUTOZEROBUTTON);
        m_model.controls.Add("Text1" + index, row.Text1);
        m_model.controls.Add("Label2" + index, row.Label2);
        m_model.controls.Add("Amps" + index, row.Amps);
        if (HasVoltsAndReset(i)) {
            m_model.controls.Add("Volts" + index, row.Volts);
            m_model.controls.Add("ZeroReset" + index, row.ZeroReset);
        } else {
            m_model.controls.Add("Pulse" + index, row.Pulse);
        }
    }
    m_model.controls.Add("SAVEcalibration", m_model.SAVEcalibration);
    m_model.controls.Add("CalibrationExit", m_model.CalibrationExit);
}

void CalibrationForm::Form_Load() {
    Settings& settings = m_state.settings;
    try {
        const std::string hardware = ReadWholeFile(InFolder(m_folder, kSettingsFile));
        settings.SystemType = static_cast<std::int16_t>(RoundToInteger(
            ParseNumber(ReadTagValue(hardware, "<SystemType>", "</SystemType>")),
            std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()));
    } catch (const Failure&) {
        // The form then lays out the rows of the system type in memory.
    }

    std::string text;
    PassingOver([&] { text = ReadWholeFile(InFolder(m_folder, kCalibrationFile)); });
    Calibration& c = m_state.calibration;
    for (int i = 1; i <= kMeasuredChannels; ++i) {
        CalibrationRow& row = m_model.rows[i];
        PassingOver([&] { c.ADCOffset[i] = StrictNumber(Tag(text, "ADCOffset", i)); });
        PassingOver([&] { row.AUTOZEROBUTTON.text = FormatPattern(c.ADCOffset[i], "0000"); });
        PassingOver([&] { c.ADCDivider[i] = ParseNumber(Tag(text, "ADCDivider", i)); });
        PassingOver([&] { row.Text1.text = FormatPattern(c.ADCDivider[i], "0.00000"); });
        PassingOver([&] { c.ChannelSelection[i] = Tag(text, "ChannelSelection", i); });
        // An option the row does not have is passed over: a row from 12 to 16 with "V" opens
        // with no option set.
        const std::string& letter = c.ChannelSelection[i];
        if (letter == "A") {
            row.Amps.checked = true;
            row.Pulse.checked = false;
            row.Volts.checked = false;
            row.AUTOZEROBUTTON.enabled = true;
        } else if (letter == "P" || letter == "V") {
            row.Amps.checked = false;
            row.Pulse.checked = letter == "P" && !HasVoltsAndReset(i);
            row.Volts.checked = letter == "V" && HasVoltsAndReset(i);
            row.AUTOZEROBUTTON.enabled = false;
        }
        row.Channel.text = m_state.channels.ChannelName[i];
    }

    for (int i = 1; i <= kMeasuredChannels; ++i) {
        m_model.rows[i].Channel.visible = false;
    }
    for (int i : CalibrationRowsOffered(settings.SystemType)) {
        m_model.rows[i].Channel.visible = true;
    }
    if (settings.SystemType == 3 || settings.SystemType == 4) {
        m_model.shrunk = true;
        m_model.SAVEcalibration.enabled = false;
        m_dialogs.ShowMessage(kMeterMessage);
    }
}

void CalibrationForm::Timer1_Timer() {
    const Calibration& c = m_state.calibration;
    for (int i = 1; i <= kMeasuredChannels; ++i) {
        CalibrationRow& row = m_model.rows[i];
        PassingOver([&] { row.Label1.text = FormatPattern(m_state.RawValue[i], "000"); });
        // The factor comes from the box as it stands, not from ADCDivider: a change shows at
        // the next tick, and a box with no number leaves the last value standing.
        PassingOver([&] {
            row.Label2.text = FormatPattern(
                (m_state.RawValue[i] - c.ADCOffset[i]) * StrictNumber(row.Text1.text), "##0.00");
        });
    }
}

void CalibrationForm::AUTOZEROBUTTON_Click(int i) {
    if (!IsMeasuredChannel(i)) {
        return;
    }
    m_model.caption = "calibration edit form  & INDEX = " + std::to_string(i);
    // The most recent reading, as it stands: no average, no test that data is arriving.
    m_state.calibration.ADCOffset[i] = m_state.RawValue[i];
    // "####" shows a zero of 0 as an empty caption, unlike the "0000" of the opening.
    m_model.rows[i].AUTOZEROBUTTON.text = FormatPattern(m_state.calibration.ADCOffset[i], "####");
}

void CalibrationForm::ZeroReset_Click(int i) {
    // Only the caption: ADCOffset keeps its value, and a save writes the old zero.
    if (IsMeasuredChannel(i)) {
        m_model.rows[i].AUTOZEROBUTTON.text = "0";
    }
}

void CalibrationForm::ChooseType(int i, Control CalibrationRow::*chosen) {
    CalibrationRow& row = m_model.rows[i];
    for (Control CalibrationRow::*option :
         {&CalibrationRow::Amps, &CalibrationRow::Volts, &CalibrationRow::Pulse}) {
        (row.*option).checked = option == chosen;
    }
}

void CalibrationForm::Amps_Click(int i) {
    if (!IsMeasuredChannel(i)) {
        return;
    }
    ChooseType(i, &CalibrationRow::Amps);
    m_state.calibration.ChannelSelection[i] = "A";
    m_model.rows[i].AUTOZEROBUTTON.enabled = true;
}

void CalibrationForm::Volts_Click(int i) {
    if (!HasVoltsAndReset(i)) {
        return;
    }
    // A voltage row has its zero button after this click, though not after the opening.
    ChooseType(i, &CalibrationRow::Volts);
    m_state.calibration.ChannelSelection[i] = "V";
    m_model.rows[i].AUTOZEROBUTTON.enabled = true;
}

void CalibrationForm::Pulse_Click(int i) {
    if (!IsMeasuredChannel(i) || HasVoltsAndReset(i)) {
        return;
    }
    ChooseType(i, &CalibrationRow::Pulse);
    m_state.calibration.ChannelSelection[i] = "P";
    m_state.calibration.ADCOffset[i] = 0;
    m_model.rows[i].AUTOZEROBUTTON.text = "0";
    m_model.rows[i].AUTOZEROBUTTON.enabled = false;
}

void CalibrationForm::SAVEcalibration_Click() {
    std::string factors[17];
    for (int i = 1; i <= kMeasuredChannels; ++i) {
        factors[i] = m_model.rows[i].Text1.text;
    }
    try {
        WriteWholeFile(InFolder(m_folder, kCalibrationFile),
                       CalibrationText(m_state.calibration, factors));
    } catch (const Failure&) {
        // A file that cannot be written keeps the window open, so nothing looks saved that
        // isn't.
        return;
    }
    Close();
}

void CalibrationForm::Close() {
    m_timer1.Disable();
    m_closeRequested = true;
}

bool CalibrationForm::Click(std::string_view name) {
    struct Action {
        std::string_view name;
        void (CalibrationForm::*click)(int);
    };
    static constexpr Action kRowActions[] = {
        {"AUTOZEROBUTTON", &CalibrationForm::AUTOZEROBUTTON_Click},
        {"ZeroReset", &CalibrationForm::ZeroReset_Click},
        {"Amps", &CalibrationForm::Amps_Click},
        {"Volts", &CalibrationForm::Volts_Click},
        {"Pulse", &CalibrationForm::Pulse_Click},
    };
    const auto offered = [this](int i) {
        return IsMeasuredChannel(i) && m_model.rows[i].Channel.visible;
    };
    return ClickByName(m_model.controls, name, offered,
                       [this](Control&, std::string_view base, int i) {
                           if (base == "SAVEcalibration") {
                               SAVEcalibration_Click();
                           } else if (base == "CalibrationExit") {
                               CalibrationExit_Click();
                           }
                           for (const Action& action : kRowActions) {
                               if (base == action.name) {
                                   (this->*action.click)(i);
                               }
                           }
                       });
}

bool CalibrationForm::SetText(std::string_view name, std::string_view text) {
    std::string_view base;
    int i = -1;
    if (!SplitIndexedName(name, base, i) || base != "Text1" || !IsMeasuredChannel(i)) {
        return false;
    }
    if (m_model.rows[i].Channel.visible) {
        m_model.rows[i].Text1.text = std::string(text);
    }
    return true;
}

}  // namespace brizalog
