#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "catalogue/state.h"

namespace brizalog {

// The three configuration files of the program folder. Each is read whole into one string and
// searched for tags (ReadTagValue); none is ever read line by line. Lines end in CR LF.

inline constexpr std::string_view kSettingsFile = "/hardware.cfg";
inline constexpr std::string_view kChannelsFile = "/channels.cfg";
inline constexpr std::string_view kCalibrationFile = "/calibrations.cfg";

// Loads of one file's text into memory. No presence test: a setting whose tags are both absent
// fails the load (InvalidArgument); a value outside its type (SystemType, DispMessages, M, L, a
// flag) is the failure Overflow.
void LoadSettings(std::string_view text, Settings& settings);
void LoadChannelTable(std::string_view text, ChannelTable& table);
// Reads ADCOffset[1..16], then ADCDivider[1..16]; ChannelSelection is not read here.
void LoadCalibration(std::string_view text, Calibration& calibration);

// hardware.cfg, channels.cfg and calibrations.cfg, in that order, into `state`. Counts on
// provisioning having made the files: a missing file is the failure FileNotFound.
void LoadConfigFiles(SharedState& state, const std::filesystem::path& folder);

// hardware.cfg as WriteSettingsFile writes it from memory (shape A).
std::string SettingsShapeA(const Settings& settings);
// hardware.cfg as the save of the setup form writes it (shape B). The form's fields go straight
// into the file; the rest comes from memory.
// Port, SaveExcel, WSUnits, LastFile and SystemType come from memory.
struct SetupFormFields {
    double logDelay = 0;         // the number in the LogDelay box
    int logOn = 0;               // the LogOn box
    int dispMessages = 0;        // the DisplayMessages box
    std::string baudRate;        // text of the BaudSelect box
    std::string personalString;  // text of the Personalization box
    std::string cents[3];        // texts of the three Cents boxes: M, J, Z
};
std::string SettingsShapeB(const Settings& settings, const SetupFormFields& fields);
// hardware.cfg as provisioning writes it on a first run (shape C).
std::string SettingsShapeC();
// Replaces hardware.cfg with shape A.
void WriteSettingsFile(const Settings& settings, const std::filesystem::path& folder);

// channels.cfg as the save of the channel setup forms writes it: 24 blocks of ten lines.
std::string ChannelTableText(const ChannelTable& table);
// The first-run table: the same 24 blocks of the default values and two more empty lines.
std::string DefaultChannelTableText();
// Replaces channels.cfg with ChannelTableText.
void WriteChannelTable(const ChannelTable& table, const std::filesystem::path& folder);
// Fills `table` with the first-run values.
void SetDefaultChannelTable(ChannelTable& table);

// calibrations.cfg of a first run: factor "0.10", offset "0", letter "V" for channels 1..16.
std::string DefaultCalibrationText();
// calibrations.cfg as the calibration form saves it: the factor box texts through "0.00000" (a
// box that holds no number as it stands), ADCOffset through "00000", the letters held in memory.
// `factorTexts[i]` is row i's factor box.
std::string CalibrationText(const Calibration& calibration, const std::string (&factorTexts)[17]);

}  // namespace brizalog
