#include "foundation/Writers.h"

#include "foundation/Length.h"
#include "foundation/Lookups.h"
#include "runtime/NamedColors.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

void AppendNumber(String& Target, float Value, TSVGUnit Unit, const TSVGNumberFormat& Format) {
  Format.Append(Target, Value);
  if (Unit != TSVGUnit::suPixels) Target += SVGWordOf(Unit);
}

// What Append(Item) appends for each item, with Delimiter between them.
template <class List, class Function>
String JoinItems(const List& Items, std::size_t Count, StringView Delimiter, Function Append) {
  String Result;
  for (std::size_t I = 0; I < Count; ++I) {
    if (I > 0) Result += Delimiter;
    Append(Result, Items[I]);
  }
  return Result;
}

void AppendPoint(String& Target, TPointF Point, TSVGUnit Unit, const TSVGNumberFormat& Format) {
  AppendNumber(Target, Point.X, Unit, Format);
  Target += u',';
  AppendNumber(Target, Point.Y, Unit, Format);
}

String Function(StringView Name, std::span<const float> Arguments) {
  String Result(Name);
  Result += u'(';
  Result += JoinItems(Arguments, Arguments.size(), u" ",
                      [](String& Target, float Value) { AppendFloat(Target, Value); });
  Result += u')';
  return Result;
}

}  // namespace

String SVGNumberToString(float Value, TSVGUnit Unit, const TSVGNumberFormat& Format) {
  String Result;
  AppendNumber(Result, Value, Unit, Format);
  return Result;
}

String SVGNumbersToString(std::span<const float> Values, const TSVGNumberFormat& Format,
                          StringView Delimiter) {
  return JoinItems(Values, Values.size(), Delimiter,
                   [&Format](String& Target, float Value) { Format.Append(Target, Value); });
}

String SVGLengthToString(float Value, bool IsPercent, TSVGUnit Unit, const TSVGNumberFormat& Format,
                         float Minimum, float Maximum) {
  return TSVGLength(Value, IsPercent, Unit).ToString(Format, Minimum, Maximum);
}

String SVGLengthToString(const TSVGLength& Length, const TSVGNumberFormat& Format, float Minimum,
                         float Maximum) {
  return Length.ToString(Format, Minimum, Maximum);
}

String SVGLengthsToString(const TSVGLengths& Lengths, const TSVGNumberFormat& Format, float Minimum,
                          float Maximum, StringView Delimiter) {
  return JoinItems(Lengths, Lengths.Count(), Delimiter,
                   [&](String& Target, const TSVGLength& Length) {
                     Target += Length.ToString(Format, Minimum, Maximum);
                   });
}

String SVGPointToString(TPointF Point, TSVGUnit Unit, const TSVGNumberFormat& Format) {
  String Result;
  AppendPoint(Result, Point, Unit, Format);
  return Result;
}

String SVGPointsToString(std::span<const TPointF> Points, TSVGUnit Unit,
                         const TSVGNumberFormat& Format) {
  return JoinItems(Points, Points.size(), u" ", [&](String& Target, TPointF Point) {
    AppendPoint(Target, Point, Unit, Format);
  });
}

String SVGRectToString(const TRectF& Rect, TSVGUnit Unit, const TSVGNumberFormat& Format) {
  const std::array Sides{Rect.Left, Rect.Top, Rect.Width(), Rect.Height()};
  return JoinItems(Sides, Sides.size(), u" ",
                   [&](String& Target, float Value) { AppendNumber(Target, Value, Unit, Format); });
}

String SVGColorToString(TQXGPColor Color) {
  if (Color == 0) return u"#000000";
  String Result = LowerCase(AlphaColorToString(Color));
  if (Result.starts_with(u'#')) Result.erase(1, 2);
  return Result;
}

String SVGStrokeCapToString(TQXGPLineCap Cap) {
  // Streams may hold the flat and square caps of anchors too, which are 4 up.
  switch (static_cast<int>(Cap)) {
    case 0:
    case 4: return u"butt";
    case 1:
    case 5: return u"square";
    default: return u"round";
  }
}

String SVGStrokeJoinToString(TQXGPStrokeJoin Join) {
  switch (Join) {
    case TQXGPStrokeJoin::sjBevel: return u"bevel";
    case TQXGPStrokeJoin::sjRound: return u"round";
    // Miter, and the clipped miter of other surfaces.
    default: return u"miter";
  }
}

String SVGTransformationToString(const TMatrix& M) {
  if (QXMatrixEquals(M, TMatrix(), MatrixTolerance)) return {};
  const bool IsAffine = M.m33 == 1;
  const bool IsUpright = IsAffine && M.m12 == 0 && M.m21 == 0 && M.m13 == 0 && M.m23 == 0;
  if (IsUpright && M.m31 == 0 && M.m32 == 0) return Function(u"scale", std::array{M.m11, M.m22});
  if (IsUpright && M.m11 == 1 && M.m22 == 1)
    return Function(u"translate", std::array{M.m31, M.m32});
  return Function(u"matrix", std::array{M.m11, M.m12, M.m21, M.m22, M.m31, M.m32});
}

TQXGPColor SVGColorToGrayscale(TQXGPColor Color) {
  return TQXGPColorRec(Color).ToGrayScale();
}

float PixelsToSVGUnit(float Pixels, TSVGUnit Unit, const TSVGUnitFactors& Factors) {
  switch (KnownSVGValue(Unit)) {
    case TSVGUnit::suNone:
    case TSVGUnit::suPixels: return Pixels;
    case TSVGUnit::suPercent: return Pixels * 100;
    default: return static_cast<float>(static_cast<double>(Pixels) / Factors[Ordinal(Unit)]);
  }
}

TQXGPStringAlignment GetTextAlign(TSVGTextAlign Align) {
  switch (Align) {
    case TSVGTextAlign::staCenter: return TQXGPStringAlignment::saCenter;
    case TSVGTextAlign::staTrailing: return TQXGPStringAlignment::saFar;
    default: return TQXGPStringAlignment::saNear;
  }
}

TSVGTextAnchor GetSVGTextAnchor(TSVGTextAlign Align) {
  switch (Align) {
    case TSVGTextAlign::staCenter: return TSVGTextAnchor::taMiddle;
    case TSVGTextAlign::staTrailing: return TSVGTextAnchor::taEnd;
    default: return TSVGTextAnchor::taStart;
  }
}

}  // namespace qxsvg
