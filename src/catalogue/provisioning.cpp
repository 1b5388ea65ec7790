#include "catalogue/provisioning.h"

#include <string_view>

#include "catalogue/config_files.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"

namespace brizalog {

namespace {

// Writes `text` and one closing CR LF, unless the file exists. Failures are passed over.
void MakeFileIfMissing(const std::filesystem::path& folder, std::string_view literal,
                       const std::string& text, bool addLineEnd) {
    try {
        const std::filesystem::path path = InFolder(folder, literal);
        if (FileExists(path)) {
            return;
        }
        WriteWholeFile(path, addLineEnd ? text + std::string(kCrLf) : text);
    } catch (const Failure&) {
    }
}

}  // namespace

void ProvisionProgramFolder(const std::filesystem::path& folder) {
    for (std::string_view name : {"/logs", "/excel"}) {
        try {
            MakeFolder(InFolder(folder, name));
        } catch (const Failure&) {
        }
    }

    // Each file is one print of the accumulated text, and the print adds the last CR LF.
    auto withoutLastLineEnd = [](std::string text) {
        text.resize(text.size() - kCrLf.size());
        return text;
    };
    std::string accumulator;
    if (!FileExists(InFolder(folder, kChannelsFile))) {
        accumulator += withoutLastLineEnd(DefaultChannelTableText());
        MakeFileIfMissing(folder, kChannelsFile, accumulator, true);
    }
    if (!FileExists(InFolder(folder, kSettingsFile))) {
        accumulator += withoutLastLineEnd(SettingsShapeC());
        MakeFileIfMissing(folder, kSettingsFile, accumulator, true);
    }
    MakeFileIfMissing(folder, kCalibrationFile, DefaultCalibrationText(), false);

    static constexpr std::pair<std::string_view, std::string_view> kHelpFiles[] = {
        {"/help.cfg", "this is the help text file"},
        {"/hardwarehelp.cfg", "this is the hardwarehelp text file"},
        {"/graphinghelp.cfg", "this is the graphinghelp text file"},
        {"/credits.cfg", "this is the credits text file"},
        {"/myinfo.cfg", "this is the myinfo text file"},
    };
    for (const auto& [name, text] : kHelpFiles) {
        MakeFileIfMissing(folder, name, std::string(text), true);
    }
}

std::string AbortMessage(const std::string& folder) {
    std::string text;
    text += "Folders and Files have ALREADY been created in folder  ";
    text += "\r\n";
    text += folder;
    text += "\r\n\r\n";
    text += "USE THE EXIT MENU ON THE NEXT SCREEN TO STOP THE PROGRAM";
    text += "\r\n\r\n";
    text += "THE FILES AND FOLDERS CREATED HAVE TO BE MANUALLY DELETED";
    text += "\r\n";
    text += "                             TO UNINSTALL THE PROGRAM";
    return text;
}

}  // namespace brizalog
