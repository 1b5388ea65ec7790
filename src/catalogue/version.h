#pragma once

#include <string>

namespace brizalog {

// The program's own version record: the product title and the version numbers of the build.
std::string ProductTitle();
// "Version " and major.minor.revision, each a plain integer: "Version 1.0.0".
std::string VersionText();

}  // namespace brizalog
