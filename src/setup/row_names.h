#pragma once

#include <string_view>

#include "catalogue/failure.h"

namespace brizalog {

// A control's own name split into its base and the row index: "CheckEnable(9)" → "CheckEnable"
// and 9, "SaveSettings" → "SaveSettings" and -1. False for a malformed index.
inline bool SplitRowName(std::string_view name, std::string_view& base, int& index) {
    index = -1;
    base = name;
    const std::size_t open = name.find('(');
    if (open == std::string_view::npos) {
        return true;
    }
    if (name.back() != ')' || open + 2 > name.size() - 1) {
        return false;
    }
    int value = 0;
    for (char c : name.substr(open + 1, name.size() - open - 2)) {
        if (c < '0' || c > '9' || value > 1000) {
            return false;
        }
        value = value * 10 + (c - '0');
    }
    base = name.substr(0, open);
    index = value;
    return true;
}

// Runs one statement of a handler that passes over every failure and takes the next statement.
template <typename Statement>
void PassingOver(Statement&& statement) {
    try {
        statement();
    } catch (const Failure&) {
    }
}

}  // namespace brizalog
