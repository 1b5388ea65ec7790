#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "catalogue/failure.h"

namespace brizalog {

// File services of the core. Every file is opened, read or written whole and closed within one
// call: no file stays open between events. Failures are the run-time failures of the system
// (FileNotFound, PathNotFound, FileAccess), for the caller to trap where the system traps them.

// The path of a literal such as "/logs/Whours.txt" or "\logs\BZ_2026_03_07.txt" in the program
// folder. Both separators name the same folder. A component that does not exist under its exact
// name resolves to an existing entry that differs only in case, so "/Excel/" and "/excel" name
// one folder on a case-sensitive file system too.
std::filesystem::path InFolder(const std::filesystem::path& folder, std::string_view literal);

// A file failure that knows its file and the system's reason ("No space left on device"). Its
// message is the system's own for its kind; the path and the reason are for the notices.
class FileFailure : public Failure {
public:
    FileFailure(FailureKind kind, std::filesystem::path path, std::string reason)
        : Failure(kind), m_path(std::move(path)), m_reason(std::move(reason)) {}
    const std::filesystem::path& path() const { return m_path; }
    const std::string& reason() const { return m_reason; }

private:
    std::filesystem::path m_path;
    std::string m_reason;
};

bool FileExists(const std::filesystem::path& path);
// The whole text of a regular file. Anything else under the name (a folder, a device, a pipe)
// is the failure FileAccess, as is a file too large to hold in memory: never an exception that
// no handler traps.
std::string ReadWholeFile(const std::filesystem::path& path);
// Replaces the file with `text`, whole: the text goes to a new file of a name of its own beside
// it, which is checked to hold all of the text, made durable and then renamed over the old one,
// so that a power cut at any instant leaves either the old file or the new one, never a torn or
// empty one. Two programs on one folder replace one file after the other: the replacement holds
// the folder's lock, and a new file that a killed writer left behind is removed under it. A file
// that is no regular file (a device, a link to one) is written in place. The new file takes the
// old one's permissions, or `mode` when one is given (a file that holds a password is made
// readable by its owner only before it is renamed into place).
void WriteWholeFile(const std::filesystem::path& path, std::string_view text,
                    std::filesystem::perms mode = std::filesystem::perms::unknown);
// A name for the new file that WriteWholeFile renames over `path`, unique to this call.
std::filesystem::path ReplacementPath(const std::filesystem::path& path);
// True for a name that ReplacementPath gives for `path`.
bool IsReplacementOf(const std::filesystem::path& candidate, const std::filesystem::path& path);

// What the platform does for the files that the standard library cannot. Each call returns the
// system's error, or none. Without them a replacement is still whole at every instant for the
// other programs of the machine, but not through a power cut, and two programs on one folder are
// not kept apart.
struct PlatformFiles {
    // Makes a file, or a folder, durable on disk.
    std::error_code (*sync)(const std::filesystem::path& path) = nullptr;
    // Adds `text` to the end of the file (made when missing) with one write on a file opened for
    // appending; `durable` asks for it to be on disk before the call returns. A write that the
    // disk takes only in part is taken back, so no piece of it stays in the file.
    std::error_code (*append)(const std::filesystem::path& path, std::string_view text,
                              bool durable) = nullptr;
    // Holds an advisory lock on `folder`, shared by every program of the machine, until
    // `unlock` is given what `lock` returned; a negative number when no lock could be had.
    int (*lock)(const std::filesystem::path& folder) = nullptr;
    void (*unlock)(int held) = nullptr;
};
void SetPlatformFiles(const PlatformFiles& files);
using DiskSync = std::error_code (*)(const std::filesystem::path& path);
// Sets only the sync of the platform's files.
void SetDiskSync(DiskSync sync);

// Opens the file for append (making it when missing), writes `text`, closes it.
void AppendToFile(const std::filesystem::path& path, std::string_view text);
// Appends one line of a file of lines (a record of a log, a row of the spreadsheet copy, a
// rollover record), ended by CR LF in `line`, with one write, and makes it durable. With
// `mendTornEnd`, when the file does not end with CR LF, as after a power cut in the middle of a
// line, the line starts on a new line: the torn piece stays the damaged line that it is, and the
// new line is whole. Without it the line follows the torn piece, as a plain append does.
void AppendLine(const std::filesystem::path& path, std::string_view line, bool mendTornEnd);
// Makes one folder; a folder that exists already, or one that cannot be made, is a failure.
void MakeFolder(const std::filesystem::path& path);
// Names of the files in `folder` whose names match `pattern` ("*" and "?" wildcards), compared
// without regard to case, sorted without regard to case. A missing folder gives no names.
std::vector<std::string> ListFiles(const std::filesystem::path& folder, std::string_view pattern);
// True when `name` matches the wildcard `pattern` ("*" any run, "?" any one), case ignored.
bool MatchesPattern(std::string_view name, std::string_view pattern);

inline constexpr std::string_view kCrLf = "\r\n";

}  // namespace brizalog
