#include "catalogue/version.h"

namespace brizalog {

std::string ProductTitle() {
    return "Brizalog";
}

std::string VersionText() {
    return "Version " + std::to_string(BRIZALOG_VERSION_MAJOR) + "." +
           std::to_string(BRIZALOG_VERSION_MINOR) + "." + std::to_string(BRIZALOG_VERSION_PATCH);
}

}  // namespace brizalog
