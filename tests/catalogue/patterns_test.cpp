#include <gtest/gtest.h>

#include "catalogue/patterns.h"

namespace brizalog {
namespace {

struct PatternCase {
    const char* pattern;
    double value;
    const char* expected;
};

TEST(NumberPatterns, PrintTheLogFormatTable) {
    const PatternCase cases[] = {
        {"##.00", 0, ".00"},     {"##.00", 0.5, ".50"},     {"##.00", 1234.56, "1234.56"},
        {"##0.00", 0, "0.00"},   {"##0.00", 0.5, "0.50"},   {"##0.00", 1234.56, "1234.56"},
        {"##0.0", 0, "0.0"},     {"##0.0", 0.5, "0.5"},     {"##0.0", 1234.56, "1234.6"},
        {"##0.000", 0, "0.000"}, {"##0.000", 0.5, "0.500"}, {"##0.000", 1234.56, "1234.560"},
        {"#0.0", 0, "0.0"},      {"#0.0", 0.5, "0.5"},      {"#0.0", 1234.56, "1234.6"},
        {"###0", 0, "0"},        {"###0", 0.5, "1"},        {"###0", 1234.56, "1235"},
        {"##0", 0, "0"},         {"##0", 1234.56, "1235"},
    };
    for (const PatternCase& c : cases) {
        EXPECT_EQ(FormatPattern(c.value, c.pattern), c.expected)
            << c.pattern << " with " << c.value;
    }
}

TEST(NumberPatterns, CarryUnitsAndNeverCutDigits) {
    EXPECT_EQ(FormatPattern(1834.4, "####0 Wh"), "1834 Wh");
    EXPECT_EQ(FormatPattern(312, "##0rpm"), "312rpm");
    EXPECT_EQ(FormatPattern(7, "##00 RPM"), "07 RPM");
    EXPECT_EQ(FormatPattern(0.5, "#####.0"), ".5");
    EXPECT_EQ(FormatPattern(0, "#####.0"), ".0");
    EXPECT_EQ(FormatPattern(1834.24, "#####.0"), "1834.2");
}

// Past 15 integer digits every further digit is a 0, and no digit past the 15th is read: a
// logged reading of 2.2e20 amps once read beyond the digits it had.
TEST(NumberPatterns, ValuesOfMoreThanFifteenDigitsPadWithZeros) {
    EXPECT_EQ(FormatPattern(2.2e20, "##0.0"), "220000000000000000000.0");
    EXPECT_EQ(FormatPattern(-123456789012345678.0, "###0 W"), "-123456789012346000 W");
}

TEST(NumberPatterns, PrintThePanelCellTable) {
    const PatternCase cases[] = {
        {"#0.00 V", 13.2666, "13.27 V"},
        {"#0.00 A", 4.372, "4.37 A"},
        {"#0.0 A", 4.37, "4.4 A"},
        {"###0 W", 58.2, "58 W"},
        {"####0 Wh", 1834, "1834 Wh"},
        {"##0 rpm", 312, "312 rpm"},
        {"##0rpm", 312.4, "312rpm"},
        {"#0.0 C", 21.49, "21.5 C"},
        {"#0.0", 7.6, "7.6"},
        {"##0", 12, "12"},
        {"#0.00 V", 0, "0.00 V"},
        {"###0 W", 0, "0 W"},
        {"#0.0 C", -3.25, "-3.3 C"},
        {"###0 W", 12345, "12345 W"},
    };
    for (const PatternCase& c : cases) {
        EXPECT_EQ(FormatPattern(c.value, c.pattern), c.expected)
            << c.pattern << " with " << c.value;
    }
}

TEST(NumberPatterns, ReadoutAndCalibrationPatterns) {
    EXPECT_EQ(FormatPattern(7, "#00"), "07");
    EXPECT_EQ(FormatPattern(312, "#00"), "312");
    EXPECT_EQ(FormatPattern(37, "000"), "037");
    EXPECT_EQ(FormatPattern(12, "0000"), "0012");
    EXPECT_EQ(FormatPattern(0, "####"), "");
    EXPECT_EQ(FormatPattern(512, "####"), "512");
    EXPECT_EQ(FormatPattern(12.5, "##0.00"), "12.50");
    EXPECT_EQ(FormatPattern(0.1, "0.00000"), "0.10000");
    EXPECT_EQ(FormatPattern(1e20, "###0"), "100000000000000000000");
    EXPECT_EQ(FormatPattern(1e-9, "##0.000"), "0.000");
}

TEST(NumberPatterns, PadRoundAndSign) {
    EXPECT_EQ(FormatPattern(123, "00000"), "00123");
    EXPECT_EQ(FormatPattern(-123, "00000"), "-00123");
    EXPECT_EQ(FormatPattern(0.25, "0.00000"), "0.25000");
    EXPECT_EQ(FormatPattern(2.5, "###0"), "3");
    EXPECT_EQ(FormatPattern(-2.5, "###0"), "-3");
    EXPECT_EQ(FormatPattern(0.125, "#0.00"), "0.13");
    EXPECT_EQ(FormatPattern(9.96, "#0.0"), "10.0");
    EXPECT_EQ(FormatPattern(-0.01, "#0.0"), "0.0");
    EXPECT_EQ(FormatPattern(2.675, "#0.00"), "2.68");
}

}  // namespace
}  // namespace brizalog
