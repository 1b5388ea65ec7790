#include <gtest/gtest.h>

#include "catalogue/patterns.h"

namespace brizalog {
namespace {

// Patterns round the value's 15 significant digits, half away from zero, whichever way those
// digits are worked out: in extended precision (the usual magnitudes), from the shortest text
// that reads back (very large and very small ones), or by a rounding conversion (a shortest
// text standing on a half of the 15th digit).
TEST(PatternRounding, FifteenDigitsWhateverTheMagnitude) {
    EXPECT_EQ(FormatPattern(2.675, "#0.00"), "2.68");  // 2.67499999999999982236431605997495...
    EXPECT_EQ(FormatPattern(24.3 * 1.0, "#0.00 V"), "24.30 V");
    EXPECT_EQ(FormatPattern(243 * 0.1, "0.00000000000000000"), "24.30000000000000000");
    EXPECT_EQ(FormatPattern(0.999999999999999944, "0.000"), "1.000");
    EXPECT_EQ(FormatPattern(99999.99999999999, "###0"), "100000");
    EXPECT_EQ(FormatPattern(1e15, "###0"), "1000000000000000");
    EXPECT_EQ(FormatPattern(123456789012345678.0, "###0"), "123456789012346000");
    EXPECT_EQ(FormatPattern(1.5e-7, "0.0000000"), "0.0000002");
    EXPECT_EQ(FormatPattern(-1.25e-7, "0.0000000"), "-0.0000001");
    EXPECT_EQ(FormatPattern(1.0000000000000005, "0.00000000000000"), "1.00000000000000");
    EXPECT_EQ(FormatPattern(1.2345678901234565, "0.00000000000000"), "1.23456789012346");
    EXPECT_EQ(FormatPattern(1.7976931348623157e308, "0").size(), 309u);
}

}  // namespace
}  // namespace brizalog
