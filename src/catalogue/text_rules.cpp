#include "catalogue/text_rules.h"

#include <charconv>
#include <cmath>

#include "catalogue/failure.h"

namespace brizalog {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Length of the longest prefix of `text` that reads as a decimal number, 0 if none.
std::size_t NumericPrefixLength(std::string_view text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        ++i;
    }
    std::size_t digits = 0;
    while (i < text.size() && IsDigit(text[i])) {
        ++i;
        ++digits;
    }
    if (i < text.size() && text[i] == '.') {
        std::size_t j = i + 1;
        std::size_t fraction = 0;
        while (j < text.size() && IsDigit(text[j])) {
            ++j;
            ++fraction;
        }
        if (digits + fraction > 0) {
            i = j;
            digits += fraction;
        }
    }
    if (digits == 0) {
        return 0;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) {
            ++j;
        }
        std::size_t exponentDigits = 0;
        while (j < text.size() && IsDigit(text[j])) {
            ++j;
            ++exponentDigits;
        }
        if (exponentDigits > 0) {
            i = j;
        }
    }
    return i;
}

// The power of ten just above the first significant digit of a numeric prefix: 3 for "123.4",
// 0 for "0.5", -2 for "0.005e0", 401 for "1e400". Only its sign matters to the caller.
long long LeadingDigitExponent(std::string_view number) {
    std::size_t i = 0;
    if (i < number.size() && (number[i] == '+' || number[i] == '-')) {
        ++i;
    }
    long long magnitude = 0;
    bool significant = false;
    for (; i < number.size() && IsDigit(number[i]); ++i) {
        significant = significant || number[i] != '0';
        magnitude += significant ? 1 : 0;
    }
    if (i < number.size() && number[i] == '.') {
        for (++i; i < number.size() && IsDigit(number[i]); ++i) {
            if (significant) {
                continue;
            }
            significant = number[i] != '0';
            magnitude -= significant ? 0 : 1;
        }
    }
    if (i < number.size() && (number[i] == 'e' || number[i] == 'E')) {
        std::string_view exponent = number.substr(i + 1);
        if (!exponent.empty() && exponent.front() == '+') {
            exponent.remove_prefix(1);
        }
        // An exponent far beyond any double's is held at a bound just as far, so that adding
        // the digits' own magnitude to it cannot overflow the count.
        constexpr long long kFar = 1LL << 40;
        long long power = 0;
        const auto result =
            std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
        if (result.ec == std::errc::result_out_of_range || power > kFar || power < -kFar) {
            power = exponent.front() == '-' ? -kFar : kFar;
        }
        magnitude += power;
    }
    return magnitude;
}

}  // namespace

std::string Mid(std::string_view text, long start, long length) {
    if (start < 1 || length < 0) {
        throw Failure(FailureKind::InvalidArgument);
    }
    const auto from = static_cast<std::size_t>(start - 1);
    if (from >= text.size()) {
        return {};
    }
    return std::string(text.substr(from, static_cast<std::size_t>(length)));
}

long InStr(std::string_view text, std::string_view what) {
    if (what.size() < 2 || text.size() < what.size()) {
        const std::size_t at = text.find(what);
        return at == std::string_view::npos ? 0 : static_cast<long>(at) + 1;
    }
    // Every tag of a record begins with "<", so a search that stops at each "<" to compare the
    // rest spends its time there: the second character is tested first, in place.
    const char first = what[0];
    const char second = what[1];
    const char* const begin = text.data();
    const char* const last = begin + (text.size() - what.size());
    // Tags are short: the rest is compared in place as well.
    const std::size_t size = what.size();
    for (const char* p = begin; p <= last; ++p) {
        if (p[0] != first || p[1] != second) {
            continue;
        }
        std::size_t k = 2;
        while (k < size && p[k] == what[k]) {
            ++k;
        }
        if (k == size) {
            return static_cast<long>(p - begin) + 1;
        }
    }
    return 0;
}

std::string ReadTagValue(std::string_view text, std::string_view open, std::string_view close) {
    return ReadTagValueUneven(text, open, open, close);
}

std::string ReadTagValueUneven(std::string_view text, std::string_view openForStart,
                               std::string_view openForLength, std::string_view close) {
    const long pStart = InStr(text, openForStart);
    const long pLength = InStr(text, openForLength);
    const long q = InStr(text, close);
    const long start = pStart + static_cast<long>(openForStart.size());
    const long length = q - pLength - static_cast<long>(openForLength.size());
    return Mid(text, start, length);
}

bool ExtractTagValue(std::string_view text, std::string_view startTag, std::string_view endTag,
                     std::string& value) {
    const long s = InStr(text, startTag);
    const long e = InStr(text, endTag);
    if (s == 0 || e == 0) {
        return false;
    }
    const long tagLength = static_cast<long>(startTag.size());
    value = Mid(text, s + tagLength, e - s - tagLength);
    return true;
}

double ParseNumber(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i])) {
        ++i;
    }
    text.remove_prefix(i);
    const std::size_t length = NumericPrefixLength(text);
    if (length == 0) {
        return 0;
    }
    std::string_view number = text.substr(0, length);
    if (number.front() == '+') {
        number.remove_prefix(1);
    }
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // from_chars reports a number too small for a double the same way and leaves `value`
        // alone in both cases: a tiny number is simply 0, a huge one ("1e400") is the overflow.
        if (LeadingDigitExponent(number) > 0) {
            throw Failure(FailureKind::Overflow);
        }
        return 0;
    }
    return value;
}

bool IsNumeric(std::string_view text) {
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && IsBlank(text[begin])) {
        ++begin;
    }
    while (end > begin && IsBlank(text[end - 1])) {
        --end;
    }
    text = text.substr(begin, end - begin);
    return !text.empty() && NumericPrefixLength(text) == text.size();
}

std::string FormatGeneral(double value) {
    if (value == 0) {
        return "0";
    }
    // to_chars, unlike printf, writes "." whatever locale the window system has set.
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    std::string text(buffer, result.ptr);
    for (char& c : text) {
        c = c == 'e' ? 'E' : c;
    }
    return text;
}

std::string FormatShortest(double value) {
    if (value == 0) {
        return "0";
    }
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

long long RoundToInteger(double value, long long low, long long high) {
    if (!std::isfinite(value)) {
        throw Failure(FailureKind::Overflow);
    }
    const double rounded = std::round(value);
    if (rounded < static_cast<double>(low) || rounded > static_cast<double>(high)) {
        throw Failure(FailureKind::Overflow);
    }
    return static_cast<long long>(rounded);
}

std::vector<std::string> LinesOf(std::string_view text) {
    constexpr std::string_view kLineEnd = "\r\n";
    std::vector<std::string> lines;
    std::size_t from = 0;
    for (;;) {
        const std::size_t at = text.find(kLineEnd, from);
        if (at == std::string_view::npos) {
            lines.emplace_back(text.substr(from));
            return lines;
        }
        lines.emplace_back(text.substr(from, at - from));
        from = at + kLineEnd.size();
    }
}

}  // namespace brizalog
