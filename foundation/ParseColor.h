// Colours (SVG 1.1 chapter 4.2).
#pragma once

#include "foundation/Color.h"
#include "runtime/String.h"

namespace qxsvg {

// "#rgb", "#rrggbb", "rgb(r, g, b)" with numbers or percentages, a colour keyword in any case,
// "currentColor", "none" or "inherit" (see TakesValue).
//
// IsNone becomes true for "none" and false where the text is read as a colour; "currentColor", a
// text without any character and "inherit" leave it as it was. An unknown keyword gives the
// default. Components of rgb() are not clamped: their low 8 bits count. Raises EConvertError for
// digits that are not hexadecimal and for a component that is no number.
QXSVG_API TQXGPColor ParseColor(StringView Text, TQXGPColor Default, bool& IsNone, bool& Inherit,
                                TQXGPColor CurrentColor);

// "#" with exactly three or six hexadecimal digits.
QXSVG_API bool IsHexColor(StringView Text);

// The colour with its alpha replaced by Opacity, 0 to 1, clamped to that range.
QXSVG_API TQXGPColor SetColorOpacity(TQXGPColor Color, double Opacity);

}  // namespace qxsvg
