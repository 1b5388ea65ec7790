#include "catalogue/config_files.h"

#include <cstdint>
#include <limits>

#include "catalogue/channels.h"
#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

std::string Tagged(std::string_view tag, std::string_view value) {
    std::string line;
    line.reserve(tag.size() * 2 + value.size() + 5);
    line.append("<").append(tag).append(">").append(value).append("</").append(tag).append(">");
    return line;
}

void Line(std::string& text, std::string_view line) {
    text.append(line).append(kCrLf);
}

double NumberTag(std::string_view text, const std::string& tag) {
    return ParseNumber(ReadTagValue(text, "<" + tag + ">", "</" + tag + ">"));
}

std::string TextTag(std::string_view text, const std::string& tag) {
    return ReadTagValue(text, "<" + tag + ">", "</" + tag + ">");
}

// Lines 1 to 13 of shapes A and B.
std::string SettingsHead(std::string_view port, std::string_view saveExcel,
                         std::string_view logDelay, std::string_view logOn,
                         std::string_view wsUnits, std::string_view baudRate,
                         std::string_view dispMessages, std::string_view personalString,
                         std::string_view lastFile, std::string_view systemType) {
    std::string text;
    Line(text, "Program Config File");
    Line(text, "");
    Line(text, Tagged("Port", port));
    Line(text, Tagged("SaveExcel", saveExcel));
    Line(text, Tagged("LogDelay", logDelay));
    Line(text, Tagged("LogOn", logOn));
    Line(text, Tagged("WSUnits", wsUnits));
    Line(text, Tagged("BaudRate", baudRate));
    Line(text, Tagged("DispMessages", dispMessages));
    Line(text, Tagged("PersonalString", personalString));
    Line(text, Tagged("LastFile", lastFile));
    Line(text, "");
    Line(text, Tagged("SystemType", systemType));
    return text;
}

std::string ChannelBlocks(const ChannelTable& table) {
    std::string text;
    text.reserve(24 * 260);
    for (int n = 1; n <= kChannelCount; ++n) {
        const std::string number = std::to_string(n);
        Line(text, Tagged("enableLOGGING" + number, std::to_string(table.enableLOGGING[n])));
        Line(text, Tagged("enableDISPLAY" + number, std::to_string(table.enableDISPLAY[n])));
        Line(text, Tagged("enableGRAPHING" + number, std::to_string(table.enableGRAPHING[n])));
        Line(text, Tagged("HARDWAREenabled" + number, std::to_string(table.HARDWAREenabled[n])));
        Line(text, Tagged("C" + number, table.ChannelName[n]));
        Line(text, Tagged("L" + number, std::to_string(table.LineColour[n])));
        Line(text, Tagged("M" + number, std::to_string(table.MaxLimit[n])));
        Line(text, Tagged("XMLsoftware" + number, table.XMLsoftware[n]));
        Line(text, Tagged("XMLhardware" + number, table.XMLhardware[n]));
        Line(text, "");
    }
    return text;
}

std::string CalibrationBlocks(const std::string (&factors)[17], const std::string (&offsets)[17],
                              const std::string (&letters)[17]) {
    std::string text;
    Line(text, "Calibration Settings");
    Line(text, "");
    for (int i = 1; i <= 16; ++i) {
        const std::string index = "(" + std::to_string(i) + ")";
        Line(text, Tagged("ADCDivider" + index, factors[i]));
        Line(text, Tagged("ADCOffset" + index, offsets[i]));
        Line(text, Tagged("ChannelSelection" + index, letters[i]));
        Line(text, "");
    }
    return text;
}

}  // namespace

void LoadSettings(std::string_view text, Settings& settings) {
    settings.PortNumber = NumberTag(text, "Port");
    settings.BaudRate = NumberTag(text, "BaudRate");
    settings.SaveExcel = NumberTag(text, "SaveExcel");
    settings.LogDelay = NumberTag(text, "LogDelay");
    settings.LogOn = NumberTag(text, "LogOn");
    settings.WSUnits = TextTag(text, "WSUnits");
    // The start of DispMessages is found with a capital D and its length with a small one, which
    // a file as written does not hold: the value runs on past its closing tag, and the number
    // rule stops at the "<" behind the digits. Kept as it has always read.
    settings.DispMessages = static_cast<std::uint8_t>(
        RoundToInteger(ParseNumber(ReadTagValueUneven(text, "<DispMessages>", "<dispMessages>",
                                                      "</DispMessages>")),
                       0, 255));
    settings.PersonalString = TextTag(text, "PersonalString");
    settings.SystemType = static_cast<std::int16_t>(
        RoundToInteger(NumberTag(text, "SystemType"), std::numeric_limits<std::int16_t>::min(),
                       std::numeric_limits<std::int16_t>::max()));
}

void LoadChannelTable(std::string_view text, ChannelTable& table) {
    auto flag = [&](const std::string& tag) {
        return static_cast<std::uint8_t>(RoundToInteger(NumberTag(text, tag), 0, 255));
    };
    for (int n = 1; n <= kChannelCount; ++n) {
        const std::string number = std::to_string(n);
        table.enableLOGGING[n] = flag("enableLOGGING" + number);
        table.enableDISPLAY[n] = flag("enableDISPLAY" + number);
        table.enableGRAPHING[n] = flag("enableGRAPHING" + number);
        table.HARDWAREenabled[n] = flag("HARDWAREenabled" + number);
        table.ChannelName[n] = TextTag(text, "C" + number);
        table.LineColour[n] = static_cast<std::int32_t>(
            RoundToInteger(NumberTag(text, "L" + number), std::numeric_limits<std::int32_t>::min(),
                           std::numeric_limits<std::int32_t>::max()));
        table.MaxLimit[n] = static_cast<std::int16_t>(
            RoundToInteger(NumberTag(text, "M" + number), std::numeric_limits<std::int16_t>::min(),
                           std::numeric_limits<std::int16_t>::max()));
        table.XMLsoftware[n] = TextTag(text, "XMLsoftware" + number);
        table.XMLhardware[n] = TextTag(text, "XMLhardware" + number);
    }
}

void LoadCalibration(std::string_view text, Calibration& calibration) {
    for (int i = 1; i <= 16; ++i) {
        calibration.ADCOffset[i] = NumberTag(text, "ADCOffset(" + std::to_string(i) + ")");
    }
    for (int i = 1; i <= 16; ++i) {
        calibration.ADCDivider[i] = NumberTag(text, "ADCDivider(" + std::to_string(i) + ")");
    }
}

void LoadConfigFiles(SharedState& state, const std::filesystem::path& folder) {
    LoadSettings(ReadWholeFile(InFolder(folder, kSettingsFile)), state.settings);
    LoadChannelTable(ReadWholeFile(InFolder(folder, kChannelsFile)), state.channels);
    LoadCalibration(ReadWholeFile(InFolder(folder, kCalibrationFile)), state.calibration);
}

std::string SettingsShapeA(const Settings& s) {
    std::string text = SettingsHead(FormatGeneral(s.PortNumber), FormatGeneral(s.SaveExcel),
                                    FormatGeneral(s.LogDelay), FormatGeneral(s.LogOn), s.WSUnits,
                                    FormatGeneral(s.BaudRate), std::to_string(s.DispMessages),
                                    s.PersonalString, s.LastFile, std::to_string(s.SystemType));
    Line(text, "");
    return text;
}

std::string SettingsShapeB(const Settings& s, const SetupFormFields& f) {
    std::string text = SettingsHead(FormatGeneral(s.PortNumber), FormatGeneral(s.SaveExcel),
                                    FormatGeneral(f.logDelay), std::to_string(f.logOn), s.WSUnits,
                                    f.baudRate, std::to_string(f.dispMessages), f.personalString,
                                    s.LastFile, std::to_string(s.SystemType));
    Line(text, "");
    Line(text, Tagged("M", f.cents[0]));
    Line(text, Tagged("J", f.cents[1]));
    Line(text, Tagged("Z", f.cents[2]));
    Line(text, "");
    return text;
}

std::string SettingsShapeC() {
    std::string text =
        SettingsHead("3", "0", "10", "0", "m/s", "4800", "0", "Personal Program NAME", "", "0");
    Line(text, Tagged("M", "10"));
    Line(text, Tagged("J", "10"));
    Line(text, Tagged("Z", "10"));
    Line(text, "");
    Line(text, "");
    Line(text, "");
    return text;
}

void WriteSettingsFile(const Settings& settings, const std::filesystem::path& folder) {
    WriteWholeFile(InFolder(folder, kSettingsFile), SettingsShapeA(settings));
}

std::string ChannelTableText(const ChannelTable& table) {
    return ChannelBlocks(table);
}

void SetDefaultChannelTable(ChannelTable& table) {
    for (int n = 1; n <= kChannelCount; ++n) {
        const ChannelDefaults& d = kChannelDefaults[static_cast<std::size_t>(n)];
        table.enableLOGGING[n] = static_cast<std::uint8_t>(d.enableLOGGING);
        table.enableDISPLAY[n] = static_cast<std::uint8_t>(d.enableDISPLAY);
        table.enableGRAPHING[n] = static_cast<std::uint8_t>(d.enableGRAPHING);
        table.HARDWAREenabled[n] = static_cast<std::uint8_t>(d.HARDWAREenabled);
        table.ChannelName[n] = std::string(d.name);
        table.LineColour[n] = d.colour;
        table.MaxLimit[n] = static_cast<std::int16_t>(d.maxLimit);
        table.XMLsoftware[n] = std::string(d.tag);
        table.XMLhardware[n] = std::string(d.tag);
    }
}

std::string DefaultChannelTableText() {
    ChannelTable table;
    SetDefaultChannelTable(table);
    std::string text = ChannelBlocks(table);
    Line(text, "");
    Line(text, "");
    return text;
}

void WriteChannelTable(const ChannelTable& table, const std::filesystem::path& folder) {
    WriteWholeFile(InFolder(folder, kChannelsFile), ChannelTableText(table));
}

std::string DefaultCalibrationText() {
    std::string factors[17];
    std::string offsets[17];
    std::string letters[17];
    for (int i = 1; i <= 16; ++i) {
        factors[i] = "0.10";
        offsets[i] = "0";
        letters[i] = "V";
    }
    return CalibrationBlocks(factors, offsets, letters);
}

std::string CalibrationText(const Calibration& calibration, const std::string (&factorTexts)[17]) {
    std::string factors[17];
    std::string offsets[17];
    std::string letters[17];
    for (int i = 1; i <= 16; ++i) {
        // A box that holds no number is written as it stands, as a pattern gives such a text
        // back; the next load reads it as 0.
        factors[i] = IsNumeric(factorTexts[i])
                         ? FormatPattern(ParseNumber(factorTexts[i]), "0.00000")
                         : factorTexts[i];
        offsets[i] = FormatPattern(calibration.ADCOffset[i], "00000");
        letters[i] = calibration.ChannelSelection[i];
    }
    return CalibrationBlocks(factors, offsets, letters);
}

}  // namespace brizalog
