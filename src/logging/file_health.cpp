#include "logging/file_health.h"

#include <system_error>

#include "catalogue/files.h"
#include "catalogue/options.h"

namespace brizalog {

void FileHealth::Write(std::string_view source, std::string_view what,
                       const std::filesystem::path& path, bool remakeFolder,
                       const std::function<void()>& write) {
    auto found = m_failing.find(source);
    if (found == m_failing.end()) {
        found = m_failing.emplace(std::string(source), false).first;
    }
    bool& failing = found->second;
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
            failing = true;
        }
        throw;
    }
    if (failing) {
        failing = false;
        TellNotice(source, std::string(what) + " " + path.string() + " is written again");
    }
}

bool FileHealth::Failing(std::string_view source) const {
    const auto found = m_failing.find(source);
    return found != m_failing.end() && found->second;
}

}  // namespace brizalog
