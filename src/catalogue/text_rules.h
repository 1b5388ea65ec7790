#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brizalog {

// The system reads every tagged text (configuration files, frames, log records) by plain,
// case-sensitive text search for a start tag and an end tag, first occurrence of each. Nothing
// here is an XML parser, whatever the tags look like.

// The substring rule of the system: `length` characters from the 1-based position `start`.
// A start below 1 or a negative length is the run-time failure "Invalid procedure call or
// argument"; a start past the end gives the empty text, a length past the end is cut short.
std::string Mid(std::string_view text, long start, long length);

// 1-based position of the first occurrence of `what` in `text`, 0 if absent.
long InStr(std::string_view text, std::string_view what);

// The read rule of the configuration files. With p and q the positions of `open` and `close`,
// the value is Mid(text, p + len(open), q − p − len(open)). There is no presence test: with both
// tags absent the length is negative and the read fails; with only `open` absent (p = 0) the
// value starts inside the text, at the position equal to the length of `open`.
std::string ReadTagValue(std::string_view text, std::string_view open, std::string_view close);

// The same rule, with the start worked out from one opening tag and the length from another.
// The settings load reads DispMessages so, and keeps it so.
std::string ReadTagValueUneven(std::string_view text, std::string_view openForStart,
                               std::string_view openForLength, std::string_view close);

// The element rule of the decoders: true and the text between the tags when both are present,
// false (value untouched) when either is absent. An end tag before its start tag gives a
// negative length, the run-time failure that the intake's trap catches.
bool ExtractTagValue(std::string_view text, std::string_view startTag, std::string_view endTag,
                     std::string& value);

// The text cut at each CR LF. A text that ends in CR LF gives an empty last line, as files
// written line by line do.
std::vector<std::string> LinesOf(std::string_view text);

// The number rule: blanks skipped, then the longest prefix that reads as a decimal number
// ("." as decimal mark, optional sign and exponent); 0 when there is none. "10 seconds" is 10.
// A number too large for a double is the failure "Overflow".
double ParseNumber(std::string_view text);

// The numeric test of the decoders: optional blanks around an optional sign, digits with an
// optional "." and an optional exponent. " 12.5 " is numeric; "1.2.3" and "" are not.
bool IsNumeric(std::string_view text);

// The general form in which numbers are written without a pattern: at most 15 significant digits,
// no trailing zeros, no exponent within the usual range (13.2666666666667, 2.5, 10, -0.25).
std::string FormatGeneral(double value);

// The shortest text that reads back to the same double (24.3, 0.1, 1e+300).
std::string FormatShortest(double value);

// Rounds to the nearest whole number, halves away from zero; the failure "Overflow" when the
// result does not fit between `low` and `high`. Integer settings are stored so.
long long RoundToInteger(double value, long long low, long long high);

}  // namespace brizalog
