// Numbers, number lists and angles.
//
// A text that cannot be read gives the default that the caller passes; nothing here raises. The
// words "Infinity" and "-Infinity", in any case, stand for 1e8 and -1e8. Every result is finite as
// long as the defaults are.
#pragma once

#include <span>
#include <vector>

#include "runtime/String.h"

namespace qxsvg {

// What the word "Infinity" stands for.
inline constexpr float SVGInfinity = 100000000.0f;

// Rounds to 32 bits; what lies beyond their range becomes the greatest number of that sign, and
// what is no number becomes 0.
QXSVG_API float ToFiniteFloat(double Value);

// Reads a number or an infinity word. False, with Value as it was, for anything else.
QXSVG_API bool TryParseNumber(StringView Text, float& Value);

// Inherit: see TakesValue.
QXSVG_API float ParseNumber(StringView Text, float Default, bool& Inherit);

// One entry a token. A token that is no number gives the entry of Defaults at its place, or 0 where
// Defaults is shorter.
QXSVG_API std::vector<float> ParseNumbers(StringView Text, std::span<const float> Defaults);

// A number below 1 is no miter limit (SVG 1.1 chapter 11.4) and gives the default.
QXSVG_API float ParseMiterLimit(StringView Text, float Default, bool& Inherit);

// Radians. The unit stands apart from the number: "100 grad", "1 rad"; without a unit and with any
// other the number is degrees. "45deg" written together is no number. Auto becomes whether the text
// is exactly "auto", and stays as it was for a blank text.
QXSVG_API float ParseAngle(StringView Text, float Default, bool& Auto);

}  // namespace qxsvg
