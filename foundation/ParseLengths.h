// Lengths and percentages as numbers.
//
// A length is a number with a unit of SVGUnitStrings behind it, compared without regard to case;
// what comes out is multiplied by the unit's factor (pixels a unit). Inherit: see TakesValue.
// Nothing here raises, and every float that comes out is finite as long as defaults and ranges are.
#pragma once

#include <vector>

#include "foundation/Units.h"
#include "runtime/String.h"

namespace qxsvg {

// A length as written: the number's text and the unit behind it.
struct TSVGLengthText {
  StringView Number;
  TSVGUnit Unit = TSVGUnit::suNone;
};
// Text is trimmed already. A single character has no unit, so that "%" alone is a number's text.
QXSVG_API TSVGLengthText SplitLength(StringView Text);

// Reads the number before the last character of Text, the sign of a percentage, and scales it into
// the range. False, with Value as it was, for what is no number or leaves the range of 32 bits.
QXSVG_API bool TryParsePercent(StringView Text, float Minimum, float Maximum, float& Value);

// Unit is written only where the text holds a value of its own. No infinity words. A text that is
// no number gives the default multiplied by the factor of the unit behind it.
QXSVG_API float ParseLength(StringView Text, float Default, bool& Inherit, TSVGUnit& Unit,
                            const TSVGUnitFactors& Factors);
// The same without inheritance, but with the infinity words. A blank text gives the default and
// leaves Unit as it was.
QXSVG_API float ParseLength(StringView Text, float Default, TSVGUnit& Unit,
                            const TSVGUnitFactors& Factors);
// A length, or a percentage of the range from Minimum to Maximum. Unit is suPercent for the latter.
// A text without "%" is not scaled by the range.
QXSVG_API float ParsePercent(StringView Text, float Default, bool& Inherit, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors, float Minimum, float Maximum);
QXSVG_API float ParsePercent(StringView Text, float Default, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors, float Minimum, float Maximum);
// 100% is 1.
QXSVG_API float ParsePercent(StringView Text, float Default, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors);
// Dash lengths: one entry a token in each of the three arrays. An odd number of dashes repeats
// once, in the result alone: the flags and units stay at the count of the tokens.
QXSVG_API std::vector<float> ParseDashes(StringView Text, std::vector<bool>& IsPercent,
                                         TSVGUnits& Units, const TSVGUnitFactors& Factors,
                                         float Minimum, float Maximum);

// Pixels. Takes the words of absolute sizes, "larger" and "smaller" (a fifth up or down from
// ParentSize), and lengths; an em is ParentSize. A percentage is the number times its factor and no
// share of the parent.
QXSVG_API float ParseFontSize(StringView Text, float Default, float ParentSize, bool& Inherit,
                              const TSVGUnitFactors& Factors);

}  // namespace qxsvg
