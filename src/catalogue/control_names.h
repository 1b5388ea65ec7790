#pragma once

#include <string_view>

namespace brizalog {

// A control's own name split into its base and its index: "Amps(2)" → "Amps" and 2,
// "startMENU" → "startMENU" and -1. False for a malformed index.
inline bool SplitIndexedName(std::string_view name, std::string_view& base, int& index) {
    index = -1;
    base = name;
    const std::size_t open = name.find('(');
    if (open == std::string_view::npos) {
        return true;
    }
    if (name.back() != ')' || open + 2 > name.size() - 1) {
        return false;
    }
    const std::string_view digits = name.substr(open + 1, name.size() - open - 2);
    int value = 0;
    for (char c : digits) {
        if (c < '0' || c > '9' || value > 1000) {
            return false;
        }
        value = value * 10 + (c - '0');
    }
    base = name.substr(0, open);
    index = value;
    return true;
}

}  // namespace brizalog
