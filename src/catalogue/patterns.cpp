#include "catalogue/patterns.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

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

// The absolute value as decimal integer digits and fraction digits, from its 15 significant
// digits, with as many fraction digits as the text needs.
void Decimal(double magnitude, std::string& integerDigits, std::string& fractionDigits) {
    // to_chars, unlike printf, writes "." whatever locale the window system has set.
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer - 1, magnitude,
                                      std::chars_format::scientific, 14);
    *result.ptr = '\0';
    // buffer: d.dddddddddddddde±XX
    std::string digits;
    const char* p = buffer;
    for (; *p != 'e'; ++p) {
        if (*p != '.') {
            digits.push_back(*p);
        }
    }
    const int exponent = std::atoi(p + 1);
    if (exponent >= 0) {
        const auto integerCount = static_cast<std::size_t>(exponent) + 1;
        if (digits.size() < integerCount) {
            digits.append(integerCount - digits.size(), '0');
        }
        integerDigits = digits.substr(0, integerCount);
        fractionDigits = digits.substr(integerCount);
    } else {
        integerDigits.clear();
        fractionDigits = std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    }
}

// Adds one unit at the last digit of integer and fraction digits together.
void CarryOne(std::string& integerDigits, std::string& fractionDigits) {
    for (auto it = fractionDigits.rbegin(); it != fractionDigits.rend(); ++it) {
        if (*it != '9') {
            ++*it;
            return;
        }
        *it = '0';
    }
    for (auto it = integerDigits.rbegin(); it != integerDigits.rend(); ++it) {
        if (*it != '9') {
            ++*it;
            return;
        }
        *it = '0';
    }
    integerDigits.insert(integerDigits.begin(), '1');
}

}  // namespace

std::string FormatPattern(double value, std::string_view pattern) {
    if (!std::isfinite(value)) {
        throw Failure(FailureKind::Overflow);
    }
    const PatternParts parts = Split(pattern);
    const std::size_t maxFraction = parts.fractionPart.size();
    const std::size_t minFraction = CountZeros(parts.fractionPart);
    const std::size_t minInteger = CountZeros(parts.integerPart);

    std::string integerDigits;
    std::string fractionDigits;
    if (value != 0) {
        Decimal(std::fabs(value), integerDigits, fractionDigits);
    }
    if (fractionDigits.size() > maxFraction) {
        const bool roundUp = fractionDigits[maxFraction] >= '5';
        fractionDigits.resize(maxFraction);
        if (roundUp) {
            CarryOne(integerDigits, fractionDigits);
        }
    }
    fractionDigits.resize(maxFraction, '0');
    while (fractionDigits.size() > minFraction && fractionDigits.back() == '0') {
        fractionDigits.pop_back();
    }
    std::size_t leadingZeros = 0;
    while (leadingZeros < integerDigits.size() && integerDigits[leadingZeros] == '0') {
        ++leadingZeros;
    }
    integerDigits.erase(0, leadingZeros);
    const bool isZero =
        integerDigits.empty() && fractionDigits.find_first_not_of('0') == std::string::npos;
    if (integerDigits.size() < minInteger) {
        integerDigits.insert(0, minInteger - integerDigits.size(), '0');
    }

    std::string text;
    if (value < 0 && !isZero) {
        text.push_back('-');
    }
    text.append(parts.prefix);
    text.append(integerDigits);
    if (parts.hasPoint) {
        text.push_back('.');
        text.append(fractionDigits);
    }
    text.append(parts.suffix);
    return text;
}

}  // namespace brizalog
