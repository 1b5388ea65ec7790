#pragma once

#include <filesystem>

namespace brizalog {

// The folder of the per-user program folder of an installed copy, under the home folder.
inline constexpr const char* kHomeProgramFolder = "Brizalog";

// Where a program that lives in `programDir` keeps its files: `programDir` itself when the
// program may write there (a build folder, a copy unpacked in the user's home), otherwise
// `home`/Brizalog. A folder the program was installed into (`installedDir`, the bin folder of
// the install) and any folder under /usr count as not writable, even for root: an installed
// copy never fills a system folder with logs. The home folder is made when missing; what goes
// into it is made by the splash, as in any new folder.
std::filesystem::path ChooseProgramFolder(const std::filesystem::path& programDir,
                                          const std::filesystem::path& home,
                                          const std::filesystem::path& installedDir);

// The program folder of the running program: ChooseProgramFolder with the folder of the
// executable, the user's home and the bin folder of this build's install.
std::filesystem::path ProgramFolder();

}  // namespace brizalog
