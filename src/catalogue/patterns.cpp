#include "catalogue/patterns.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "catalogue/failure.h"

namespace brizalog {

namespace {

bool IsDigitPlaceholder(char c) {
    return c == '#' || c == '0';
}

struct PatternParts {
    std::string_view prefix;
    std::string_view integerPart;   // the "#" and "0" before the point
    std::string_view fractionPart;  // the "#" and "0" after the point
    bool hasPoint = false;
    std::string_view suffix;
};

PatternParts Split(std::string_view pattern) {
    PatternParts parts;
    std::size_t begin = 0;
    while (begin < pattern.size() && !IsDigitPlaceholder(pattern[begin]) && pattern[begin] != '.') {
        ++begin;
    }
    std::size_t end = begin;
    while (end < pattern.size() && (IsDigitPlaceholder(pattern[end]) || pattern[end] == '.')) {
        if (pattern[end] == '.' && parts.hasPoint) {
            break;
        }
        if (pattern[end] == '.') {
            parts.hasPoint = true;
        }
        ++end;
    }
    parts.prefix = pattern.substr(0, begin);
    parts.suffix = pattern.substr(end);
    const std::string_view number = pattern.substr(begin, end - begin);
    const std::size_t point = number.find('.');
    parts.integerPart = number.substr(0, point);
    if (point != std::string_view::npos) {
        parts.fractionPart = number.substr(point + 1);
    }
    return parts;
}

std::size_t CountZeros(std::string_view placeholders) {
    std::size_t zeros = 0;
    for (char c : placeholders) {
        zeros += c == '0' ? 1 : 0;
    }
    return zeros;
}

// Reads "d.ddde±XX" or "de±XX" into its mantissa digits (at most 17) and exponent.
std::size_t ReadScientific(const char* text, const char* end, char (&digits)[17], int& exponent) {
    std::size_t count = 0;
    const char* p = text;
    for (; p < end && *p != 'e'; ++p) {
        if (*p != '.' && count < 17) {
            digits[count++] = *p;
        }
    }
    ++p;  // 'e'
    const bool negative = *p == '-';
    exponent = 0;
    for (++p; p < end; ++p) {
        exponent = exponent * 10 + (*p - '0');
    }
    if (negative) {
        exponent = -exponent;
    }
    return count;
}

// The usual case, without any text conversion: for a magnitude from 10^-6 to 10^15 the value
// times a power of ten in 64-bit extended precision lies within 10^-4 of the exact product, so
// its rounding to a whole number of 15 digits is exact unless the product is that close to a
// half. False for the rest, and where the platform has no extended precision.
bool FastScaled(double magnitude, std::uint64_t& significant, int& exponent) {
    if constexpr (std::numeric_limits<long double>::digits < 64) {
        return false;
    }
    if (!(magnitude >= 1e-6 && magnitude < 1e15)) {
        return false;
    }
    static constexpr double kPowers[] = {1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1e-1, 1e0,
                                         1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14};
    // Exact: 10^20 fits the 64-bit mantissa.
    static constexpr long double kScales[] = {1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,
                                              1e7L,  1e8L,  1e9L,  1e10L, 1e11L, 1e12L, 1e13L,
                                              1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L, 1e20L};
    // The power of ten of the first digit, from the power of two (log10 2 is about 1233/4096).
    const auto binaryExponent =
        static_cast<int>((std::bit_cast<std::uint64_t>(magnitude) >> 52) & 0x7ff) - 1023;
    int e = (binaryExponent * 1233) >> 12;
    e = std::clamp(e, -6, 14);
    while (e < 14 && magnitude >= kPowers[e + 7]) {
        ++e;
    }
    while (e > -6 && magnitude < kPowers[e + 6]) {
        --e;
    }
    const long double scale = kScales[14 - e];
    const long double scaled = static_cast<long double>(magnitude) * scale;
    if (scaled < 1e14L || scaled >= 1e15L) {
        return false;  // a power of ten below 1 was not exact at the boundary
    }
    auto number = static_cast<std::uint64_t>(scaled);
    const long double fraction = scaled - static_cast<long double>(number);
    if (fraction > 0.4999L && fraction < 0.5001L) {
        return false;
    }
    number += fraction > 0.5L ? 1 : 0;
    if (number == 1000000000000000ULL) {
        number = 100000000000000ULL;
        ++e;
    }
    significant = number;
    exponent = e;
    return true;
}

bool FastSignificant(double magnitude, char (&digits)[15], int& exponent) {
    std::uint64_t number = 0;
    if (!FastScaled(magnitude, number, exponent)) {
        return false;
    }
    // Two digits at a time, in two 32-bit halves of 7 and 8 digits.
    static constexpr char kPairs[] =
        "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
        "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
        "8081828384858687888990919293949596979899";
    auto high = static_cast<std::uint32_t>(number / 100000000);
    auto low = static_cast<std::uint32_t>(number % 100000000);
    for (int i = 13; i >= 7; i -= 2) {
        const std::uint32_t pair = (low % 100) * 2;
        low /= 100;
        digits[i] = kPairs[pair];
        digits[i + 1] = kPairs[pair + 1];
    }
    for (int i = 5; i >= 1; i -= 2) {
        const std::uint32_t pair = (high % 100) * 2;
        high /= 100;
        digits[i] = kPairs[pair];
        digits[i + 1] = kPairs[pair + 1];
    }
    digits[0] = static_cast<char>('0' + high);
    return true;
}

// The magnitude rounded to 15 significant digits, half away from zero, and the power of ten of
// the first one. to_chars, unlike printf, writes "." whatever locale the window system has set.
//
// Rounding to a given precision is slow, so the shortest text that reads back (S, at most 17
// digits) is rounded instead. That gives the same digits unless S stands exactly on a halfway
// point of the 15th digit: a halfway point between the value and S would itself read back and
// be shorter than a 17-digit S, or closer than a 16-digit one. Only that case takes the slow way.
void Significant(double magnitude, char (&digits)[15], int& exponent) {
    if (FastSignificant(magnitude, digits, exponent)) {
        return;
    }
    char buffer[40];
    char shortest[17];
    auto result =
        std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific);
    const std::size_t count = ReadScientific(buffer, result.ptr, shortest, exponent);
    if (count <= 15) {
        std::copy(shortest, shortest + count, digits);
        std::fill(digits + count, digits + 15, '0');
        return;
    }
    if (count == 16 && shortest[15] == '5') {
        result = std::to_chars(buffer, buffer + sizeof buffer, magnitude,
                               std::chars_format::scientific, 14);
        char precise[17];
        ReadScientific(buffer, result.ptr, precise, exponent);
        std::copy(precise, precise + 15, digits);
        return;
    }
    std::copy(shortest, shortest + 15, digits);
    if (shortest[15] < '5') {
        return;
    }
    int i = 14;
    while (i >= 0 && digits[i] == '9') {
        digits[i--] = '0';
    }
    if (i >= 0) {
        ++digits[i];
    } else {
        digits[0] = '1';
        ++exponent;
    }
}

constexpr std::uint64_t kPowersOfTen[] = {1ULL,
                                          10ULL,
                                          100ULL,
                                          1000ULL,
                                          10000ULL,
                                          100000ULL,
                                          1000000ULL,
                                          10000000ULL,
                                          100000000ULL,
                                          1000000000ULL,
                                          10000000000ULL,
                                          100000000000ULL,
                                          1000000000000ULL,
                                          10000000000000ULL,
                                          100000000000000ULL,
                                          1000000000000000ULL};

// Drops the last D digits, rounding half up; by a constant, so that it is a multiplication.
template <int D>
std::uint64_t DropDigits(std::uint64_t number) {
    constexpr std::uint64_t unit = kPowersOfTen[D];
    return number / unit + (number % unit >= unit / 2 ? 1 : 0);
}
constexpr std::uint64_t (*kDropDigits[])(std::uint64_t) = {
    DropDigits<0>,  DropDigits<1>,  DropDigits<2>,  DropDigits<3>, DropDigits<4>,  DropDigits<5>,
    DropDigits<6>,  DropDigits<7>,  DropDigits<8>,  DropDigits<9>, DropDigits<10>, DropDigits<11>,
    DropDigits<12>, DropDigits<13>, DropDigits<14>, DropDigits<15>};

// The usual case in whole numbers: the 15 significant digits as an integer, rounded half up at
// the pattern's last place, then split at the point. False where the digits are not at hand
// that way or the pattern asks for more places than a 64-bit integer holds.
bool FormatFast(double value, const PatternParts& parts, std::size_t maxFraction,
                std::size_t minFraction, std::size_t minInteger, std::string& text) {
    if (maxFraction > 15 || minInteger > 12) {
        return false;  // more places than the buffer below holds
    }
    std::uint64_t scaled = 0;  // the value times 10^maxFraction, rounded
    if (value != 0) {
        std::uint64_t significant = 0;
        int exponent = 0;
        if (!FastScaled(std::fabs(value), significant, exponent)) {
            return false;
        }
        const int drop = 14 - exponent - static_cast<int>(maxFraction);
        if (drop < -4) {
            return false;
        }
        if (drop < 0) {
            scaled = significant * kPowersOfTen[-drop];
        } else if (drop == 0) {
            scaled = significant;
        } else if (drop <= 15) {
            scaled = kDropDigits[drop](significant);
        }
    }
    char buffer[48];  // fraction digits at the end, integer digits in front of them
    char* const end = buffer + sizeof buffer;
    char* p = end;
    std::uint64_t integer = scaled;
    for (std::size_t i = 0; i < maxFraction; ++i) {
        *--p = static_cast<char>('0' + integer % 10);
        integer /= 10;
    }
    const char* fraction = p;
    std::size_t fractionCount = maxFraction;
    while (fractionCount > minFraction && fraction[fractionCount - 1] == '0') {
        --fractionCount;
    }
    std::size_t integerCount = 0;
    while (integer != 0 || integerCount < minInteger) {
        *--p = static_cast<char>('0' + integer % 10);
        integer /= 10;
        ++integerCount;
    }
    text.clear();
    if (value < 0 && scaled != 0) {
        text.push_back('-');
    }
    text.append(parts.prefix);
    text.append(p, integerCount);
    if (parts.hasPoint) {
        text.push_back('.');
        text.append(fraction, fractionCount);
    }
    text.append(parts.suffix);
    return true;
}

}  // namespace

// The panel formats some thirty cells for every frame, so this works in fixed buffers: the
// value's 15 significant digits, rounded at the pattern's last place, then the placeholders.
std::string FormatPattern(double value, std::string_view pattern) {
    if (!std::isfinite(value)) {
        throw Failure(FailureKind::Overflow);
    }
    const PatternParts parts = Split(pattern);
    const std::size_t maxFraction = parts.fractionPart.size();
    const std::size_t minFraction = CountZeros(parts.fractionPart);
    const std::size_t minInteger = CountZeros(parts.integerPart);
    std::string text;
    if (FormatFast(value, parts, maxFraction, minFraction, minInteger, text)) {
        return text;
    }

    // The 15 significant digits of the magnitude, and the power of ten of the first one.
    char significant[15];
    int exponent = 0;
    if (value != 0) {
        Significant(std::fabs(value), significant, exponent);
    }
    std::size_t integerCount = 0;
    std::size_t fractionCount = 0;
    if (value != 0) {
        if (exponent >= 0) {
            integerCount = static_cast<std::size_t>(exponent) + 1;
            fractionCount = integerCount < 15 ? 15 - integerCount : 0;
        } else {
            fractionCount = static_cast<std::size_t>(-exponent - 1) + 15;
        }
    }

    // digits[1 .. 1 + integerCount) are the integer digits and the fraction digits follow them;
    // digits[0] is room for a carry.
    char stackDigits[400];
    std::string heapDigits;
    char* digits = stackDigits;
    const std::size_t needed = 1 + integerCount + std::max(fractionCount, maxFraction);
    if (needed > sizeof stackDigits) {
        heapDigits.resize(needed);
        digits = heapDigits.data();
    }
    if (value != 0) {
        char* out = digits + 1;
        if (exponent >= 0) {
            for (std::size_t i = 0; i < integerCount; ++i) {
                *out++ = i < 15 ? significant[i] : '0';
            }
            // From 15 integer digits on there is no fraction, and no digit past the 15th.
            if (fractionCount > 0) {
                std::copy(significant + integerCount, significant + 15, out);
            }
        } else {
            const std::size_t leading = fractionCount - 15;
            std::fill(out, out + leading, '0');
            std::copy(significant, significant + 15, out + leading);
        }
    }

    std::size_t length = integerCount + std::min(fractionCount, maxFraction);
    std::size_t first = 1;
    if (fractionCount > maxFraction && digits[1 + length] >= '5') {
        // Half away from zero: add one at the last place kept.
        std::size_t i = 1 + length;
        while (i > 1 && digits[i - 1] == '9') {
            digits[--i] = '0';
        }
        if (i > 1) {
            ++digits[i - 1];
        } else {
            digits[0] = '1';
            first = 0;
            ++integerCount;
        }
    }
    fractionCount = std::min(fractionCount, maxFraction);
    char* fraction = digits + first + integerCount;
    std::fill(fraction + fractionCount, fraction + maxFraction, '0');
    fractionCount = maxFraction;
    while (fractionCount > minFraction && fraction[fractionCount - 1] == '0') {
        --fractionCount;
    }
    const char* integer = digits + first;
    while (integerCount > 0 && *integer == '0') {
        ++integer;
        --integerCount;
    }
    const bool isZero = integerCount == 0 && std::all_of(fraction, fraction + fractionCount,
                                                         [](char c) { return c == '0'; });

    text.reserve(1 + parts.prefix.size() + std::max(integerCount, minInteger) + 1 + fractionCount +
                 parts.suffix.size());
    if (value < 0 && !isZero) {
        text.push_back('-');
    }
    text.append(parts.prefix);
    if (integerCount < minInteger) {
        text.append(minInteger - integerCount, '0');
    }
    text.append(integer, integerCount);
    if (parts.hasPoint) {
        text.push_back('.');
        text.append(fraction, fractionCount);
    }
    text.append(parts.suffix);
    return text;
}

}  // namespace brizalog
