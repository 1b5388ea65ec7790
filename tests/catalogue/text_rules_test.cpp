#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "catalogue/failure.h"
#include "catalogue/patterns.h"
#include "catalogue/text_rules.h"
#include "support/failure_kind.h"

namespace brizalog {
namespace {

using testing::FailureKindOf;

TEST(TagReading, TagsAreWholeStringsWithTheirBrackets) {
    const std::string text = "<M1>20</M1>\r\n<M>10</M>\r\n<C12>twelve</C12>\r\n<C1>one</C1>\r\n";
    EXPECT_EQ(ReadTagValue(text, "<M>", "</M>"), "10");
    EXPECT_EQ(ReadTagValue(text, "<M1>", "</M1>"), "20");
    EXPECT_EQ(ReadTagValue(text, "<C1>", "</C1>"), "one");
    EXPECT_EQ(ReadTagValue(text, "<C12>", "</C12>"), "twelve");
    EXPECT_EQ(ReadTagValue("<ADCOffset(12)>5</ADCOffset(12)><ADCOffset(1)>7</ADCOffset(1)>",
                           "<ADCOffset(1)>", "</ADCOffset(1)>"),
              "7");
}

TEST(TagReading, TheSearchFindsTheFirstWholeOccurrenceAnywhere) {
    struct Case {
        const char* text;
        const char* what;
        long position;  // 1-based, 0 when absent
    };
    const Case cases[] = {
        {"<A1>4.4</A1>", "<A1>", 1},
        {"<A1>4.4</A1>", "</A1>", 8},
        {"<A11>1</A11><A1>2</A1>", "<A1>", 13},  // "<A1" inside "<A11>" is no "<A1>"
        {"<<A1>", "<A1>", 2},
        {"x</A1", "</A1>", 0},  // cut short at the end
        {"AAAA<AA>", "<AA>", 5},
        {"<></>", "</>", 3},  // a tag of brackets alone
        {"<V1>13.27</V1>", "V1", 2},
        {"ab", "abc", 0},
        {"", "<L>", 0},
        {"<L>", "", 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(InStr(c.text, c.what), c.position) << c.text << " / " << c.what;
    }
}

TEST(TagReading, FirstOccurrenceCountsAndBlanksStay) {
    EXPECT_EQ(ReadTagValue("<P> a b </P><P>2</P>", "<P>", "</P>"), " a b ");
    EXPECT_EQ(ReadTagValue("<W></W>", "<W>", "</W>"), "");
    // A value holding its own closing tag ends at the first one.
    EXPECT_EQ(ReadTagValue("<P>x</P>y</P>", "<P>", "</P>"), "x");
    // Case matters: a lower-case tag is another tag.
    EXPECT_EQ(ReadTagValue("<port>1</port><Port>2</Port>", "<Port>", "</Port>"), "2");
}

TEST(TagReading, AnAbsentOpeningTagReadsFromInsideTheText) {
    // p = 0: the value starts at the position equal to the opening tag's length (6 for
    // "<Port>") and runs up to the closing tag.
    EXPECT_EQ(ReadTagValue("abcde12345</Port>", "<Port>", "</Port>"), "12345");
    EXPECT_EQ(ParseNumber(ReadTagValue("Program Config File\r\n</Port>", "<Port>", "</Port>")), 0);
}

TEST(TagReading, MissingTagsAreTheInvalidArgumentFailure) {
    EXPECT_EQ(FailureKindOf([] { ReadTagValue("nothing here", "<Port>", "</Port>"); }),
              FailureKind::InvalidArgument);
    EXPECT_EQ(FailureKindOf([] { ReadTagValue("<Port>3", "<Port>", "</Port>"); }),
              FailureKind::InvalidArgument);
    EXPECT_EQ(FailureKindOf([] { Mid("abc", 0, 1); }), FailureKind::InvalidArgument);
    try {
        ReadTagValue("", "<Port>", "</Port>");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "Invalid procedure call or argument");
    }
}

TEST(TagReading, DispMessagesRunsOnPastItsClosingTag) {
    const std::string text = "<DispMessages>1</DispMessages>\r\n<PersonalString>x</PersonalString>";
    const std::string value =
        ReadTagValueUneven(text, "<DispMessages>", "<dispMessages>", "</DispMessages>");
    // The length is the position of "</DispMessages>" (16) less 14: two characters.
    EXPECT_EQ(value, "1<");
    EXPECT_EQ(ParseNumber(value), 1);
    // With only the small-d tag, the start falls near the top of the text.
    const std::string lower = "Program Config File\r\n<dispMessages>1</DispMessages>";
    EXPECT_EQ(ReadTagValueUneven(lower, "<DispMessages>", "<dispMessages>", "</DispMessages>"),
              "g");
}

TEST(TagReading, ExtractTagValueLeavesTheOldValueWhenATagIsMissing) {
    std::string value = "old";
    EXPECT_FALSE(ExtractTagValue("[<V>12</V", "<V>", "</V>", value));
    EXPECT_FALSE(ExtractTagValue("[V>12</V>]", "<V>", "</V>", value));
    EXPECT_EQ(value, "old");
    EXPECT_TRUE(ExtractTagValue("[<A1>4.4</A1><A12>9</A12>]", "<A1>", "</A1>", value));
    EXPECT_EQ(value, "4.4");
    // An end tag before its start tag is a negative length: the failure the intake traps.
    EXPECT_EQ(FailureKindOf([] {
                  std::string v;
                  ExtractTagValue("</V><V>1", "<V>", "</V>", v);
              }),
              FailureKind::InvalidArgument);
}

TEST(NumberRule, LongestNumericPrefixAfterBlanks) {
    EXPECT_EQ(ParseNumber("10 seconds"), 10);
    EXPECT_EQ(ParseNumber(" 12.5 "), 12.5);
    EXPECT_EQ(ParseNumber("1.2.3"), 1.2);
    EXPECT_EQ(ParseNumber("-0.25</X>"), -0.25);
    EXPECT_EQ(ParseNumber("+7"), 7);
    EXPECT_EQ(ParseNumber(".5"), 0.5);
    EXPECT_EQ(ParseNumber("2e3W"), 2000);
    EXPECT_EQ(ParseNumber("2eW"), 2);
    EXPECT_EQ(ParseNumber("00123"), 123);
    EXPECT_EQ(ParseNumber(""), 0);
    EXPECT_EQ(ParseNumber("seconds 10"), 0);
    EXPECT_EQ(ParseNumber("1,5"), 1);  // "." is the only decimal mark
    EXPECT_EQ(ParseNumber("1e-400"), 0);
}

TEST(NumberRule, ANumberTooLargeForADoubleIsAnOverflow) {
    // from_chars leaves its result alone on a range error, so this once read silently as 0.
    EXPECT_EQ(FailureKindOf([] { ParseNumber("1e400"); }), FailureKind::Overflow);
    EXPECT_EQ(FailureKindOf([] { ParseNumber("-1e400"); }), FailureKind::Overflow);
    EXPECT_EQ(FailureKindOf([] { ParseNumber(std::string(400, '9')); }), FailureKind::Overflow);
    // An exponent at the very end of the whole numbers, as a damaged settings file held it.
    EXPECT_EQ(FailureKindOf([] { ParseNumber("63872737724965E9223372036854775807"); }),
              FailureKind::Overflow);
    EXPECT_EQ(ParseNumber("0.001e-9223372036854775808"), 0);
}

TEST(NumberRule, TheDecodersNumericTest) {
    EXPECT_TRUE(IsNumeric(" 12.5 "));
    EXPECT_TRUE(IsNumeric("-3"));
    EXPECT_TRUE(IsNumeric("0"));
    EXPECT_FALSE(IsNumeric("1.2.3"));
    EXPECT_FALSE(IsNumeric(""));
    EXPECT_FALSE(IsNumeric("   "));
    EXPECT_FALSE(IsNumeric("."));
    EXPECT_FALSE(IsNumeric("10 seconds"));
    EXPECT_FALSE(IsNumeric("1 2"));
}

TEST(GeneralForm, FifteenSignificantDigitsWithoutTrailingZeros) {
    EXPECT_EQ(FormatGeneral(199.0 / 15.0), "13.2666666666667");
    EXPECT_EQ(FormatGeneral(2.5), "2.5");
    EXPECT_EQ(FormatGeneral(10), "10");
    EXPECT_EQ(FormatGeneral(4800), "4800");
    EXPECT_EQ(FormatGeneral(0), "0");
    EXPECT_EQ(FormatGeneral(-0.25), "-0.25");
    EXPECT_EQ(FormatGeneral(0.1 + 0.2), "0.3");
    EXPECT_EQ(FormatGeneral(16711680), "16711680");
}

TEST(GeneralForm, NumbersKeepTheirPointInACommaLocale) {
    // The desktop program runs under the user's locale; a German one must not turn the point of
    // files and panels into a comma.
    const char* locales[] = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"};
    const char* found = nullptr;
    for (const char* name : locales) {
        if (std::setlocale(LC_NUMERIC, name) != nullptr) {
            found = name;
            break;
        }
    }
    if (found == nullptr) {
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    const std::string general = FormatGeneral(2.5);
    const std::string pattern = FormatPattern(13.267, "#0.00 V");
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(general, "2.5");
    EXPECT_EQ(pattern, "13.27 V");
}

}  // namespace
}  // namespace brizalog
