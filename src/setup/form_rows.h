#pragma once

#include <string_view>

#include "catalogue/control.h"
#include "catalogue/control_names.h"
#include "catalogue/failure.h"

namespace brizalog {

// Runs one statement of a handler that passes over every failure and takes the next statement.
template <typename Statement>
void PassingOver(Statement&& statement) {
    try {
        statement();
    } catch (const Failure&) {
    }
}

// What a click by a control's own name ("CheckEnable(9)", "SaveSettings") reaches in a form of
// rows. `control` is null when the form has no such control; `reachable` is false when the user
// cannot act on it: hidden, inactive, or in a row the form does not offer.
struct ClickTarget {
    Control* control = nullptr;
    std::string_view base;
    int row = -1;
    bool reachable = false;
};

// `rowOffered(i)` tells whether row i is shown; it is asked only for indexed names.
template <typename RowOffered>
ClickTarget FindClickTarget(const ControlRegistry& controls, std::string_view name,
                            RowOffered&& rowOffered) {
    ClickTarget target;
    target.control = controls.Find(name);
    if (target.control == nullptr || !SplitIndexedName(name, target.base, target.row)) {
        target.control = nullptr;
        return target;
    }
    target.reachable = target.control->enabled && target.control->visible &&
                       (target.row < 0 || rowOffered(target.row));
    return target;
}

}  // namespace brizalog
