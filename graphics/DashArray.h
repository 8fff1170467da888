// The dashes of a pen from the texts of its two properties.
#pragma once

#include "graphics/SVGPen.h"
#include "graphics/StylePropertiesSet.h"

namespace qxsvg {

// Reads stroke-dasharray and stroke-dashoffset into Pen. The marks of both properties in Inherits
// come in and go out (see TakesValue in foundation/ParseInherit.h); a list with a dash of 0 or
// below makes the line solid. Lengths are in pixels, percentages fractions.
QXSVG_API void ParseDashArray(StringView DashText, StringView OffsetText, TSVGPen& Pen,
                              TSVGStylePropertiesSet& Inherits, const TSVGUnitFactors& Factors);

}  // namespace qxsvg
