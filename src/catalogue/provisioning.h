#pragma once

#include <filesystem>
#include <string>

namespace brizalog {

// Makes whatever folder and file of the program folder is missing, at every start: "/logs",
// "/excel", then channels.cfg, hardware.cfg, calibrations.cfg and the five help placeholders, in
// that order. Each item is tested and made alone; an existing file is never touched; any failure
// is passed over and the next item made. The channel table and the settings are built in one
// accumulator that is not emptied between them, so when both are missing, hardware.cfg holds the
// whole channel table before its settings: harmless, since every tag is searched for wherever it
// stands, and the first settings write of the start replaces the file.
void ProvisionProgramFolder(const std::filesystem::path& folder);

// The message of the splash's abort button; `folder` is the program folder.
std::string AbortMessage(const std::string& folder);

}  // namespace brizalog
