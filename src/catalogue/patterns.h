#pragma once

#include <string>
#include <string_view>

namespace brizalog {

// Formats `value` by a number pattern such as "##0.00", "#0.0 A", "###0 W" or "00000".
// "#" is an optional digit and "0" a required one; digits before the point are never cut; the
// point stays where the pattern has one (so "#####.0" prints zero as ".0"); characters around the
// digit run are written as they stand. Rounding is half away from zero on the value's 15
// significant digits, and a negative value that does not round to zero gets a "-" in front.
// An infinite or undefined value is the failure "Overflow".
std::string FormatPattern(double value, std::string_view pattern);

}  // namespace brizalog
