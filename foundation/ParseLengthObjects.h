// Parsers that read into length objects, which keep number and unit as written and tell their
// owners.
//
// Units and percentages are those of ParseLengths.h; the infinity words count everywhere here. A
// blank text changes nothing. Nothing here raises but what an owner's handler raises.
#pragma once

#include <array>

#include "foundation/Length.h"
#include "runtime/String.h"

namespace qxsvg {

// A text that is no number sets the unit and keeps the length's size.
QXSVG_API TSVGLength& ParseLength(StringView Text, TSVGLength& Length);

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

// Reads up to four lengths, the text of a view box, into Lengths in their order: x, y, width,
// height. Those that the text lacks stay as they are. Gives how many there were, no more than four;
// 0 says that the text is blank.
QXSVG_API int ParseRect(StringView Text, const std::array<TSVGLength*, 4>& Lengths);

// "auto" makes the kerning automatic, "normal" the spacing; "inherit" marks the length.
QXSVG_API void ParseKerning(StringView Text, TSVGStylePropertyAutoLength& Length);
QXSVG_API void ParseSpacing(StringView Text, TSVGStylePropertyAutoLength& Length);

// A word of SVGBaselineShifts, or a length or percentage of the range from 0 to 1.
QXSVG_API void ParseBaselineShift(StringView Text, TSVGBaselineShiftLength& Length);

}  // namespace qxsvg
