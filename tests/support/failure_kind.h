#pragma once

#include <gtest/gtest.h>

#include "catalogue/failure.h"

namespace brizalog::testing {

// The kind of the failure that `action` raises; a test failure of its own when it raises none.
template <typename Action>
FailureKind FailureKindOf(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.kind();
    }
    ADD_FAILURE() << "no failure raised";
    return FailureKind::FileAccess;
}

}  // namespace brizalog::testing
