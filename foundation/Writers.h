// Values as the text of attributes: the inverse of foundation/Parsers.h.
//
// Numbers are written by a pattern (runtime/FloatFormat.h), which is the document's or
// DefaultSVGFormatStr, with the period as decimal separator. A number that is not finite comes out
// as one that can be read back. Raises EConvertError for a pattern that is none, and nothing else.
#pragma once

#include <optional>
#include <span>

#include "foundation/Color.h"
#include "foundation/DrawingEnums.h"
#include "foundation/Geometry.h"
#include "foundation/Keywords.h"
#include "foundation/Units.h"
#include "runtime/FloatFormat.h"

namespace qxsvg {

class TSVGLength;
class TSVGLengths;

// The pattern of a writer: a text, which is read for the call, or a format that the caller holds
// for many of them.
class QXSVG_API TSVGNumberFormat {
 public:
  TSVGNumberFormat(StringView Pattern) : FOwn(std::in_place, Pattern), FFormat(&*FOwn) {}
  TSVGNumberFormat(const String& Pattern) : TSVGNumberFormat(StringView(Pattern)) {}
  TSVGNumberFormat(const char16_t* Pattern) : TSVGNumberFormat(StringView(Pattern)) {}
  // Format is not owned and outlives the call.
  TSVGNumberFormat(const TFloatFormat& Format) : FFormat(&Format) {}
  TSVGNumberFormat(const TSVGNumberFormat&) = delete;
  TSVGNumberFormat& operator=(const TSVGNumberFormat&) = delete;

  void Append(String& Target, float Value) const { FFormat->Append(Target, Value); }

 private:
  std::optional<TFloatFormat> FOwn;
  const TFloatFormat* FFormat;
};

// The number with the name of its unit; suNone and suPixels have none.
QXSVG_API String SVGNumberToString(float Value, TSVGUnit Unit, const TSVGNumberFormat& Format);
QXSVG_API String SVGNumbersToString(std::span<const float> Values, const TSVGNumberFormat& Format,
                                    StringView Delimiter);

// A percentage is a fraction that is scaled to the range from Minimum to Maximum: 0 and 100 write
// 0.5 as 50.
QXSVG_API String SVGLengthToString(float Value, bool IsPercent, TSVGUnit Unit,
                                   const TSVGNumberFormat& Format, float Minimum, float Maximum);
QXSVG_API String SVGLengthToString(const TSVGLength& Length, const TSVGNumberFormat& Format,
                                   float Minimum, float Maximum);
QXSVG_API String SVGLengthsToString(const TSVGLengths& Lengths, const TSVGNumberFormat& Format,
                                    float Minimum, float Maximum, StringView Delimiter);

// "x,y"
QXSVG_API String SVGPointToString(TPointF Point, TSVGUnit Unit, const TSVGNumberFormat& Format);
// "x,y x,y"
QXSVG_API String SVGPointsToString(std::span<const TPointF> Points, TSVGUnit Unit,
                                   const TSVGNumberFormat& Format);
// "left top width height"
QXSVG_API String SVGRectToString(const TRectF& Rect, TSVGUnit Unit, const TSVGNumberFormat& Format);

// The colour's name where it has one, "#rrggbb" otherwise. Alpha is not written: opacities have
// properties of their own. The colour 0, which is no colour, is "#000000".
QXSVG_API String SVGColorToString(TQXGPColor Color);
// "round" for what the format has no word for.
QXSVG_API String SVGStrokeCapToString(TQXGPLineCap Cap);
QXSVG_API String SVGStrokeJoinToString(TQXGPStrokeJoin Join);

// "scale(x y)", "translate(x y)" or "matrix(a b c d e f)"; empty for the identity. Numbers are
// written in full and not by the document's pattern. Rotations and skews come out as matrices.
QXSVG_API String SVGTransformationToString(const TMatrix& Matrix);

QXSVG_API TQXGPColor SVGColorToGrayscale(TQXGPColor Color);

// A size in pixels as a number in Unit. For suPercent a fraction as a percentage.
QXSVG_API float PixelsToSVGUnit(float Pixels, TSVGUnit Unit, const TSVGUnitFactors& Factors);

// The surface's word for an alignment, and the attribute's.
QXSVG_API TQXGPStringAlignment GetTextAlign(TSVGTextAlign Align);
QXSVG_API TSVGTextAnchor GetSVGTextAnchor(TSVGTextAlign Align);

}  // namespace qxsvg
