#include "app/program_folder.h"

#include <pwd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <cstdlib>
#include <system_error>

#ifndef BRIZALOG_INSTALL_BINDIR
#define BRIZALOG_INSTALL_BINDIR "/usr/bin"
#endif

namespace brizalog {

namespace {

// True when `inner` is `outer` or lies below it; both are made absolute and normal first.
bool IsWithin(const std::filesystem::path& inner, const std::filesystem::path& outer) {
    std::error_code ignored;
    const std::filesystem::path a = std::filesystem::weakly_canonical(inner, ignored);
    const std::filesystem::path b = std::filesystem::weakly_canonical(outer, ignored);
    auto ai = a.begin();
    for (auto bi = b.begin(); bi != b.end(); ++bi, ++ai) {
        if (bi->empty()) {
            continue;  // the empty last element of a path that ends in a separator
        }
        if (ai == a.end() || *ai != *bi) {
            return false;
        }
    }
    return true;
}

std::filesystem::path HomeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return home;
    }
    if (const passwd* user = ::getpwuid(::geteuid()); user != nullptr && user->pw_dir != nullptr) {
        return user->pw_dir;
    }
    return std::filesystem::current_path();
}

}  // namespace

std::filesystem::path ChooseProgramFolder(const std::filesystem::path& programDir,
                                          const std::filesystem::path& home,
                                          const std::filesystem::path& installedDir) {
    const bool installed = (!installedDir.empty() && IsWithin(programDir, installedDir)) ||
                           IsWithin(programDir, "/usr");
    if (!installed && ::access(programDir.c_str(), W_OK) == 0) {
        return programDir;
    }
    const std::filesystem::path folder = home / kHomeProgramFolder;
    // A folder that cannot be made is left to the start-up, whose first read then fails.
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

std::filesystem::path ProgramFolder() {
    return ChooseProgramFolder(QCoreApplication::applicationDirPath().toStdString(), HomeFolder(),
                               BRIZALOG_INSTALL_BINDIR);
}

}  // namespace brizalog
