#include "logging/file_health.h"

#include <system_error>

#include "catalogue/files.h"
#include "catalogue/options.h"

namespace brizalog {

void FileHealth::Write(std::string_view source, std::string_view what,
                       const std::filesystem::path& path, bool remakeFolder,
                       const std::function<void()>& write) {
    // Each file on its own: of the three logs of system 8, one that cannot be written says so
    // once while the other two go on.
    const std::string key = std::string(source) + '\n' + path.string();
    const bool failing = m_failing.count(key) != 0;
    try {
        try {
            write();
        } catch (const Failure& failure) {
            if (!remakeFolder || failure.kind() != FailureKind::PathNotFound) {
                throw;
            }
            std::error_code error;
            std::filesystem::create_directories(path.parent_path(), error);
            if (error) {
                throw FileFailure(FailureKind::PathNotFound, path, error.message());
            }
            TellNotice(source, "made the missing folder " + path.parent_path().string() + " again");
            write();
        }
    } catch (const Failure& failure) {
        if (!failing) {
            const auto* file = dynamic_cast<const FileFailure*>(&failure);
            const std::string reason = file != nullptr ? file->reason() : failure.what();
            TellNotice(source,
                       std::string(what) + " " + path.string() + " cannot be written: " + reason);
            m_failing.insert(key);
        }
        throw;
    }
    if (failing) {
        m_failing.erase(key);
        TellNotice(source, std::string(what) + " " + path.string() + " is written again");
    }
}

}  // namespace brizalog
