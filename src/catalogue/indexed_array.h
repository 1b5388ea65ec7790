#pragma once

#include <array>
#include <cstddef>

#include "catalogue/failure.h"

namespace brizalog {

// A fixed array with the index range Lo..Hi of the system's own arrays. An index outside the
// range is the trapped run-time failure "Subscript out of range", never a stray access.
template <typename T, int Lo, int Hi>
class IndexedArray {
public:
    static constexpr int kLow = Lo;
    static constexpr int kHigh = Hi;

    T& operator[](int i) {
        Check(i);
        return m_items[static_cast<std::size_t>(i - Lo)];
    }
    const T& operator[](int i) const {
        Check(i);
        return m_items[static_cast<std::size_t>(i - Lo)];
    }
    void Fill(const T& value) { m_items.fill(value); }

private:
    static void Check(int i) {
        if (i < Lo || i > Hi) {
            throw Failure(FailureKind::SubscriptOutOfRange);
        }
    }
    std::array<T, Hi - Lo + 1> m_items{};
};

}  // namespace brizalog
