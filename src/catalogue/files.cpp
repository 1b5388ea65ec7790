#include "catalogue/files.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <fstream>
#include <mutex>
#include <new>
#include <random>
#include <system_error>

#include "catalogue/failure.h"

namespace brizalog {

namespace fs = std::filesystem;

namespace {

char Lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](char x, char y) { return Lower(x) == Lower(y); });
}

fs::path ResolveComponent(const fs::path& parent, const std::string& name) {
    std::error_code error;
    fs::path exact = parent / name;
    if (fs::exists(exact, error)) {
        return exact;
    }
    for (fs::directory_iterator it(parent, error), end; !error && it != end; it.increment(error)) {
        if (EqualIgnoringCase(it->path().filename().string(), name)) {
            return it->path();
        }
    }
    return exact;
}

[[noreturn]] void FailForPath(const fs::path& path, std::string reason = {}) {
    std::error_code error;
    if (!fs::is_directory(path.parent_path(), error)) {
        throw FileFailure(FailureKind::PathNotFound, path,
                          reason.empty() ? "the folder is missing" : reason);
    }
    throw FileFailure(FailureKind::FileAccess, path, reason.empty() ? "cannot write" : reason);
}

}  // namespace

fs::path InFolder(const fs::path& folder, std::string_view literal) {
    fs::path path = folder;
    std::string component;
    auto flush = [&] {
        if (!component.empty()) {
            path = ResolveComponent(path, component);
            component.clear();
        }
    };
    for (char c : literal) {
        if (c == '/' || c == '\\') {
            flush();
        } else {
            component.push_back(c);
        }
    }
    flush();
    return path;
}

bool FileExists(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::string ReadWholeFile(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        // A folder opens as a stream on some systems and tells an absurd size; a device or a
        // pipe may never end.
        throw FileFailure(FailureKind::FileAccess, path, "not a regular file");
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (!fs::is_directory(path.parent_path(), error)) {
            throw Failure(FailureKind::PathNotFound);
        }
        throw Failure(fs::exists(path, error) ? FailureKind::FileAccess
                                              : FailureKind::FileNotFound);
    }
    std::string text;
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0, std::ios::beg);
    if (size > 0) {
        try {
            text.resize(static_cast<std::size_t>(size));
        } catch (const std::bad_alloc&) {
            throw FileFailure(FailureKind::FileAccess, path, "too large to read");
        } catch (const std::length_error&) {
            throw FileFailure(FailureKind::FileAccess, path, "too large to read");
        }
        in.read(text.data(), size);
    }
    if (!in && !in.eof()) {
        throw Failure(FailureKind::FileAccess);
    }
    return text;
}

namespace {

// The reason the last failed call of the C library gave, "" when it gave none.
std::string LastReason() {
    const int code = errno;
    return code != 0 ? std::generic_category().message(code) : std::string();
}

// One open, one write, one close: the file is never left open behind the call.
void WriteFile(const fs::path& path, std::string_view text, std::ios::openmode mode) {
    errno = 0;
    std::ofstream out(path, std::ios::binary | mode);
    if (!out) {
        FailForPath(path, LastReason());
    }
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        throw FileFailure(FailureKind::FileAccess, path, LastReason());
    }
}

}  // namespace

namespace {

PlatformFiles g_platform;

std::string ReasonOf(const std::error_code& error) {
    return error.message();
}

// Holds the folder's lock for the life of the object: the platform's, shared with the other
// programs of the machine, and this program's own, so that two windows of one program take
// turns too.
class FolderLock {
public:
    explicit FolderLock(const fs::path& folder) : m_own(OwnLock()) {
        if (g_platform.lock != nullptr) {
            m_held = g_platform.lock(folder);
        }
    }
    ~FolderLock() {
        if (m_held >= 0 && g_platform.unlock != nullptr) {
            g_platform.unlock(m_held);
        }
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    static std::mutex& OwnLock() {
        static std::mutex mutex;
        return mutex;
    }
    std::lock_guard<std::mutex> m_own;
    int m_held = -1;
};

void SyncOrFail(const fs::path& path, const fs::path& file) {
    if (g_platform.sync == nullptr) {
        return;
    }
    if (const std::error_code error = g_platform.sync(path)) {
        throw FileFailure(FailureKind::FileAccess, file, ReasonOf(error));
    }
}

// The new files that writers killed before their rename left beside `target`. Only called under
// the folder's lock, when no other writer is between its write and its rename.
void RemoveLeftovers(const fs::path& target) {
    std::error_code error;
    for (fs::directory_iterator it(target.parent_path(), error), end; !error && it != end;
         it.increment(error)) {
        if (IsReplacementOf(it->path(), target)) {
            std::error_code ignored;
            fs::remove(it->path(), ignored);
        }
    }
}

constexpr std::string_view kReplacementMark = ".new";

}  // namespace

void SetPlatformFiles(const PlatformFiles& files) {
    g_platform = files;
}

void SetDiskSync(DiskSync sync) {
    g_platform.sync = sync;
}

fs::path ReplacementPath(const fs::path& path) {
    // A name no other call of any program uses at the same time: a number drawn once per
    // process, and a count within it.
    static const std::uint64_t kProcessMark = [] {
        std::random_device device;
        return (static_cast<std::uint64_t>(device()) << 32) ^ device();
    }();
    static std::atomic<std::uint64_t> count{0};
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string suffix;
    for (std::uint64_t value : {kProcessMark, count.fetch_add(1)}) {
        suffix += '-';
        for (int shift = 60; shift >= 0; shift -= 4) {
            suffix += kDigits[(value >> shift) & 0xF];
        }
    }
    fs::path replacement = path;
    replacement += std::string(kReplacementMark) + suffix;
    return replacement;
}

bool IsReplacementOf(const fs::path& candidate, const fs::path& path) {
    const std::string name = candidate.filename().string();
    const std::string base = path.filename().string() + std::string(kReplacementMark);
    // "NAME.new", the one name of older versions, and "NAME.new-…".
    return name.compare(0, base.size(), base) == 0 &&
           (name.size() == base.size() || name[base.size()] == '-');
}

void WriteWholeFile(const fs::path& path, std::string_view text, fs::perms mode) {
    std::error_code error;
    // A link to a settings file stays a link: its target is what gets replaced.
    fs::path target = path;
    if (fs::is_symlink(path, error)) {
        target = fs::canonical(path, error);
        if (error) {
            target = path;
        }
    }
    const fs::file_status status = fs::status(target, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        WriteFile(target, text, std::ios::trunc);
        return;
    }
    const FolderLock lock(target.parent_path());
    RemoveLeftovers(target);
    const fs::path replacement = ReplacementPath(target);
    const auto discard = [&] {
        std::error_code ignored;
        fs::remove(replacement, ignored);
    };
    try {
        WriteFile(replacement, text, std::ios::trunc);
        // A disk that took less than the whole text must never see it take the old file's place.
        const std::uintmax_t written = fs::file_size(replacement, error);
        if (error || written != text.size()) {
            throw FileFailure(FailureKind::FileAccess, target,
                              error ? ReasonOf(error) : "the disk took only part of the text");
        }
        if (mode != fs::perms::unknown) {
            fs::permissions(replacement, mode, error);
        } else if (fs::exists(status)) {
            fs::permissions(replacement, status.permissions(), error);
        }
        SyncOrFail(replacement, target);
    } catch (const FileFailure& failure) {
        discard();
        throw FileFailure(failure.kind(), target, failure.reason());
    } catch (...) {
        discard();
        throw;
    }
    fs::rename(replacement, target, error);
    if (error) {
        discard();
        throw FileFailure(FailureKind::FileAccess, target, ReasonOf(error));
    }
    // The rename itself lasts only once the folder that holds the name is on disk.
    SyncOrFail(target.parent_path(), target);
}

void AppendToFile(const fs::path& path, std::string_view text) {
    if (g_platform.append == nullptr) {
        WriteFile(path, text, std::ios::app);
        return;
    }
    if (const std::error_code error = g_platform.append(path, text, false)) {
        FailForPath(path, ReasonOf(error));
    }
}

namespace {

// True when the file has text and its last two characters are not CR LF.
bool EndsMidLine(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::is_regular_file(status)) {
        return false;
    }
    const std::uintmax_t size = fs::file_size(path, error);
    if (error || size == 0) {
        return false;
    }
    if (size < kCrLf.size()) {
        return true;
    }
    std::ifstream in(path, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(size - kCrLf.size()));
    char tail[2] = {};
    in.read(tail, 2);
    return in && std::string_view(tail, 2) != kCrLf;
}

}  // namespace

void AppendLine(const fs::path& path, std::string_view line, bool mendTornEnd) {
    std::string text;
    if (mendTornEnd && EndsMidLine(path)) {
        text.reserve(kCrLf.size() + line.size());
        text.append(kCrLf).append(line);
        line = text;
    }
    if (g_platform.append == nullptr) {
        WriteFile(path, line, std::ios::app);
        SyncOrFail(path, path);
        return;
    }
    if (const std::error_code error = g_platform.append(path, line, true)) {
        FailForPath(path, ReasonOf(error));
    }
}

void MakeFolder(const fs::path& path) {
    std::error_code error;
    if (!fs::create_directory(path, error)) {
        throw Failure(error ? FailureKind::PathNotFound : FailureKind::FileAccess);
    }
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    // Iterative wildcard match with one back-track point for the last "*".
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t star = std::string_view::npos;
    std::size_t resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || Lower(pattern[p]) == Lower(name[n]))) {
            ++n;
            ++p;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

std::vector<std::string> ListFiles(const fs::path& folder, std::string_view pattern) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        std::error_code typeError;
        if (!it->is_regular_file(typeError)) {
            continue;
        }
        std::string name = it->path().filename().string();
        if (MatchesPattern(name, pattern)) {
            names.push_back(std::move(name));
        }
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                            [](char x, char y) { return Lower(x) < Lower(y); });
    });
    return names;
}

}  // namespace brizalog
