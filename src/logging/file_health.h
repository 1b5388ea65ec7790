#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace brizalog {

// The files that logging writes, as a person looking after the box sees them: each file of each
// kind ("log", "excel", "whours") is told once when it cannot be written, with its path and the
// system's reason, and once when it is written again. Between the two nothing more is said, so a
// disk that stays full for an hour makes two lines, not one per tick.
class FileHealth {
public:
    // Runs `write`, which appends to `path`. A file failure is told (the first of a run of them)
    // and raised again for the caller's trap. With `remakeFolder`, a folder that has gone is
    // made again and the write tried once more before it counts as failed.
    void Write(std::string_view source, std::string_view what, const std::filesystem::path& path,
               bool remakeFolder, const std::function<void()>& write);

private:
    std::set<std::string> m_failing;  // source and path of each file whose last write failed
};

}  // namespace brizalog
