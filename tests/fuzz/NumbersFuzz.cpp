// Number lists, lengths, points, rectangles and angles.
#include "FuzzInput.h"
#include "foundation/Parsers.h"
#include "runtime/Exceptions.h"

namespace {

using namespace qxsvg;
using fuzz::Check;
using fuzz::CheckFinite;

void Lists(StringView Text) {
  std::vector<StringView> Tokens = SplitNumbers(Text, SVGNumberSeparators);
  for (const StringView Token : Tokens)
    Check(fuzz::IsWithin(Token, Text), "tokens are in the text");
  CleanArray(Tokens);
  const std::vector<float> Values = ParseNumbers(Text, {});
  Check(Values.size() == Tokens.size(), "one number a token");
  for (std::size_t I = 0; I < Values.size(); ++I) {
    bool Inherit = false;
    // A token may be the word of inheritance, which means nothing in a list.
    if (Tokens[I] != u"inherit")
      Check(Values[I] == ParseNumber(Tokens[I], 0, Inherit), "numbers are those of the tokens");
    CheckFinite(Values[I], "number");
  }
  try {
    const TQXPoints Points = ParsePoints(Text);
    for (const TPointF Point : Points) Check(IsFinite(Point), "points are finite");
  } catch (const EConvertError&) {
  }
}

void Lengths(StringView Text) {
  bool Inherit = false, Auto = false;
  TSVGUnit Unit = TSVGUnit::suPercent;
  CheckFinite(ParseLength(Text, 1, Unit, SVGUnitFactors), "length");
  CheckFinite(ParseLength(Text, 1, Inherit, Unit, SVGUnitFactors), "inherited length");
  CheckFinite(ParsePercent(Text, 1, Unit, SVGUnitFactors, -1e30f, 3e38f), "percentage");
  CheckFinite(ParseAngle(Text, 0, Auto), "angle");
  CheckFinite(ParseFontSize(Text, 12, 3e38f, Inherit, SVGUnitFactors), "font size");
  Check(ParseMiterLimit(Text, 4, Inherit) >= 1, "miter limit");
  std::vector<bool> IsPercent;
  TSVGUnits Units;
  for (const float Dash : ParseDashes(Text, IsPercent, Units, SVGUnitFactors, 0, 1))
    CheckFinite(Dash, "dash");
  Check(IsPercent.size() == Units.size(), "as many marks as units");
  TSVGLength Length;
  ParsePercent(Text, Length, 0, 1);
  CheckFinite(Length.Raw(), "raw number");
  TSVGBaselineShiftLength Shift(TSVGStyleProperty::ipBaselineShift);
  ParseBaselineShift(Text, Shift);
}

void Rectangles(StringView Text) {
  bool Inherit = false;
  TRectF Rect;
  Check(IsFinite(ParseRect(Text, SVGUnitFactors)), "rectangle");
  Check(IsFinite(ParseClipRect(Text, {}, Inherit, SVGUnitFactors)), "clip rectangle");
  ParseEnableBackground(Text, false, Rect, Inherit, SVGUnitFactors);
  Check(IsFinite(Rect), "background rectangle");
  ParseAspectRatioValue(Text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const String Text = fuzz::TextOf(Data, Size);
  Lists(Text);
  Lengths(Text);
  Rectangles(Text);
  return 0;
}
