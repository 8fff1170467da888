// Lengths, percentages and lists of them.
//
// A length is a number with a unit of SVGUnitStrings behind it, compared without regard to case.
// Forms that give a float multiply by the unit's factor (pixels a unit); forms that take a
// TSVGLength store number and unit as written. Inherit: see TakesValue. Nothing here raises, and
// every float that comes out is finite as long as defaults and ranges are.
#pragma once

#include <vector>

#include "foundation/Length.h"
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

// Unit is written only where the text holds a value of its own. No infinity words. A text that is
// no number gives the default multiplied by the factor of the unit behind it.
QXSVG_API float ParseLength(StringView Text, float Default, bool& Inherit, TSVGUnit& Unit,
                            const TSVGUnitFactors& Factors);
// The same without inheritance, but with the infinity words. A blank text gives the default and
// leaves Unit as it was.
QXSVG_API float ParseLength(StringView Text, float Default, TSVGUnit& Unit,
                            const TSVGUnitFactors& Factors);
// A blank text changes nothing; a text that is no number sets the unit and keeps the length's size.
QXSVG_API TSVGLength& ParseLength(StringView Text, TSVGLength& Length);

// A length, or a percentage of the range from Minimum to Maximum. Unit is suPercent for the latter.
// A text without "%" is not scaled by the range.
QXSVG_API float ParsePercent(StringView Text, float Default, bool& Inherit, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors, float Minimum, float Maximum);
QXSVG_API float ParsePercent(StringView Text, float Default, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors, float Minimum, float Maximum);
// 100% is 1.
QXSVG_API float ParsePercent(StringView Text, float Default, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors);
// A percentage becomes the length's raw number, scaled into the range.
QXSVG_API TSVGLength& ParsePercent(StringView Text, TSVGLength& Length, bool& Inherit,
                                   float Minimum, float Maximum);
QXSVG_API TSVGLength& ParsePercent(StringView Text, TSVGLength& Length, float Minimum,
                                   float Maximum);

// Brings the list to one length a token: those that are there take the new text, those that are
// missing come from Creator, which is called with 0, and surplus ones go.
QXSVG_API TSVGLengths& ParseLengths(StringView Text, TSVGLengths& Lengths,
                                    const TSVGLengthCreateEvent& Creator, float Minimum,
                                    float Maximum);

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

// "auto" makes the kerning automatic, "normal" the spacing; "inherit" marks the length.
QXSVG_API void ParseKerning(StringView Text, TSVGStylePropertyAutoLength& Length);
QXSVG_API void ParseSpacing(StringView Text, TSVGStylePropertyAutoLength& Length);

// A word of SVGBaselineShifts, or a length or percentage of the range from 0 to 1.
QXSVG_API void ParseBaselineShift(StringView Text, TSVGBaselineShiftLength& Length);

}  // namespace qxsvg
