// Points and rectangles.
#pragma once

#include <optional>

#include "foundation/Geometry.h"
#include "foundation/Keywords.h"
#include "foundation/Units.h"
#include "runtime/String.h"

namespace qxsvg {

// The points of a polyline, in user space. An odd last number is ignored. Raises EConvertError for
// a token that is no number.
QXSVG_API TQXPoints ParsePoints(StringView Text);

// "left top width height" as lengths, in pixels; the zero rectangle unless there are four.
QXSVG_API TRectF ParseRect(StringView Text, const TSVGUnitFactors& Factors);

// "auto" is the zero rectangle; "rect(top right bottom left)" gives these lengths in pixels, which
// only blanks separate. Any other text gives the default. Inherit: see TakesValue.
QXSVG_API TRectF ParseClipRect(StringView Text, const TRectF& Default, bool& Inherit,
                               const TSVGUnitFactors& Factors);

// Whether the element opens a new background: anything but "accumulate". Rect takes the four
// lengths behind "new ", and stays as it was without them.
QXSVG_API bool ParseEnableBackground(StringView Text, bool Default, TRectF& Rect, bool& Inherit,
                                     const TSVGUnitFactors& Factors);

// The value of preserveAspectRatio (SVG 1.1 chapter 7.8). An unknown word of alignment is saNone.
struct TSVGAspectRatioValue {
  TSVGAlign Align = TSVGAlign::saNone;
  bool Defer = false;
  bool Slice = false;
};
// Nothing for a blank text.
QXSVG_API std::optional<TSVGAspectRatioValue> ParseAspectRatioValue(StringView Text);

}  // namespace qxsvg
