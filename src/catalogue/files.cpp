#include "catalogue/files.h"

#include <algorithm>
#include <cctype>
#include <fstream>
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

void FailForPath(const fs::path& path) {
    std::error_code error;
    if (!fs::is_directory(path.parent_path(), error)) {
        throw Failure(FailureKind::PathNotFound);
    }
    throw Failure(FailureKind::FileAccess);
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
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::error_code error;
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
        text.resize(static_cast<std::size_t>(size));
        in.read(text.data(), size);
    }
    if (!in && !in.eof()) {
        throw Failure(FailureKind::FileAccess);
    }
    return text;
}

namespace {

// One open, one write, one close: the file is never left open behind the call.
void WriteFile(const fs::path& path, std::string_view text, std::ios::openmode mode) {
    std::ofstream out(path, std::ios::binary | mode);
    if (!out) {
        FailForPath(path);
    }
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        throw Failure(FailureKind::FileAccess);
    }
}

}  // namespace

namespace {

DiskSync g_diskSync = nullptr;

void SyncToDisk(const fs::path& path) {
    if (g_diskSync != nullptr) {
        g_diskSync(path);
    }
}

}  // namespace

void SetDiskSync(DiskSync sync) {
    g_diskSync = sync;
}

fs::path ReplacementPath(const fs::path& path) {
    fs::path replacement = path;
    replacement += ".new";
    return replacement;
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
    const fs::path replacement = ReplacementPath(target);
    WriteFile(replacement, text, std::ios::trunc);
    if (mode != fs::perms::unknown) {
        fs::permissions(replacement, mode, error);
    } else if (fs::exists(status)) {
        fs::permissions(replacement, status.permissions(), error);
    }
    SyncToDisk(replacement);
    fs::rename(replacement, target, error);
    if (error) {
        fs::remove(replacement, error);
        throw Failure(FailureKind::FileAccess);
    }
    // The rename itself lasts only once the folder that holds the name is on disk.
    SyncToDisk(target.parent_path());
}

void AppendToFile(const fs::path& path, std::string_view text) {
    WriteFile(path, text, std::ios::app);
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
