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

// A click by a control's own name ("CheckEnable(9)", "SaveSettings") in a form of rows: runs
// `act(control, base, row)` when the user can reach the control. A hidden or inactive control, or
// one in a row that `rowOffered(row)` says is not shown, takes no click. False when the form has
// no such control.
template <typename RowOffered, typename Act>
bool ClickByName(const ControlRegistry& controls, std::string_view name, RowOffered&& rowOffered,
                 Act&& act) {
    Control* control = controls.Find(name);
    std::string_view base;
    int row = -1;
    if (control == nullptr || !SplitIndexedName(name, base, row)) {
        return false;
    }
    if (control->enabled && control->visible && (row < 0 || rowOffered(row))) {
        act(*control, base, row);
    }
    return true;
}

}  // namespace brizalog
