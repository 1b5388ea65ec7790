#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brizalog {

// File services of the core. Every file is opened, read or written whole and closed within one
// call: no file stays open between events. Failures are the run-time failures of the system
// (FileNotFound, PathNotFound, FileAccess), for the caller to trap where the system traps them.

// The path of a literal such as "/logs/Whours.txt" or "\logs\BZ_2026_03_07.txt" in the program
// folder. Both separators name the same folder. A component that does not exist under its exact
// name resolves to an existing entry that differs only in case, so "/Excel/" and "/excel" name
// one folder on a case-sensitive file system too.
std::filesystem::path InFolder(const std::filesystem::path& folder, std::string_view literal);

bool FileExists(const std::filesystem::path& path);
std::string ReadWholeFile(const std::filesystem::path& path);
// Replaces the file with `text`, whole: the text goes to a new file beside it, which is made
// durable and then renamed over the old one, so that a power cut at any instant leaves either
// the old file or the new one, never a torn one. A file that is no regular file (a device, a
// link to one) is written in place. The new file takes the old one's permissions, or `mode` when
// one is given (a file that holds a password is made readable by its owner only before it is
// renamed into place).
void WriteWholeFile(const std::filesystem::path& path, std::string_view text,
                    std::filesystem::perms mode = std::filesystem::perms::unknown);
// The name of the new file that WriteWholeFile renames over `path`.
std::filesystem::path ReplacementPath(const std::filesystem::path& path);

// Makes a file, or a folder, durable on disk. The standard library cannot ask for that, so the
// platform sets it; without one, a replacement is still whole at every instant for the other
// programs of the machine, but not through a power cut.
using DiskSync = void (*)(const std::filesystem::path& path);
void SetDiskSync(DiskSync sync);
// Opens the file for append (making it when missing), writes `text`, closes it.
void AppendToFile(const std::filesystem::path& path, std::string_view text);
// Makes one folder; a folder that exists already, or one that cannot be made, is a failure.
void MakeFolder(const std::filesystem::path& path);
// Names of the files in `folder` whose names match `pattern` ("*" and "?" wildcards), compared
// without regard to case, sorted without regard to case. A missing folder gives no names.
std::vector<std::string> ListFiles(const std::filesystem::path& folder, std::string_view pattern);
// True when `name` matches the wildcard `pattern` ("*" any run, "?" any one), case ignored.
bool MatchesPattern(std::string_view name, std::string_view pattern);

inline constexpr std::string_view kCrLf = "\r\n";

}  // namespace brizalog
