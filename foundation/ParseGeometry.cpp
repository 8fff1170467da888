#include "foundation/ParseGeometry.h"

#include <algorithm>
#include <array>

#include "foundation/Lookups.h"
#include "foundation/ParseInherit.h"
#include "foundation/ParseLengths.h"
#include "foundation/ParseNumbers.h"
#include "foundation/ParseTokens.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

float ParsePixels(StringView Text, const TSVGUnitFactors& Factors) {
  TSVGUnit Unit;
  return ParseLength(Text, 0.0f, Unit, Factors);
}

}  // namespace

TQXPoints ParsePoints(StringView Text) {
  TQXPoints Points;
  struct TNumber {
    StringView Token;
    float Value;
    bool IsNumber;
    float Get() const { return IsNumber ? Value : StrToFloat(Token); }
  } X, Y;
  TNumberTokens Tokens(Trim(Text));
  while (Tokens.NextNumber(X.Token, X.Value, X.IsNumber) &&
         Tokens.NextNumber(Y.Token, Y.Value, Y.IsNumber)) {
    if (Points.empty()) Points.reserve(Text.size() / 8 + 1);
    const float GotX = X.Get();
    Points.push_back(QXPoint(GotX, Y.Get()));
  }
  return Points;
}

TRectF ParseRect(StringView Text, const TSVGUnitFactors& Factors) {
  const std::vector<StringView> Tokens = SplitClean(Trim(Text), SVGNumberSeparators);
  if (Tokens.size() != 4) return {};
  const float Left = ParsePixels(Tokens[0], Factors), Top = ParsePixels(Tokens[1], Factors);
  const float Width = ParsePixels(Tokens[2], Factors), Height = ParsePixels(Tokens[3], Factors);
  return {Left, Top, ToFiniteFloat(double{Left} + Width), ToFiniteFloat(double{Top} + Height)};
}

TRectF ParseClipRect(StringView Text, const TRectF& Default, bool& Inherit,
                     const TSVGUnitFactors& Factors) {
  constexpr StringView Prefix = u"rect(";
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  if (Text == u"auto") return {};
  if (!StartsText(Prefix, Text) || !Text.ends_with(u')')) return Default;
  const std::vector<StringView> Tokens =
      SplitClean(Text.substr(Prefix.size(), Text.size() - Prefix.size() - 1), u" ");
  TRectF Result;
  const std::array<float*, 4> Sides{&Result.Top, &Result.Right, &Result.Bottom, &Result.Left};
  for (std::size_t I = 0; I < std::min(Tokens.size(), Sides.size()); ++I)
    *Sides[I] = ParsePixels(Tokens[I], Factors);
  return Result;
}

bool ParseEnableBackground(StringView Text, bool Default, TRectF& Rect, bool& Inherit,
                           const TSVGUnitFactors& Factors) {
  constexpr StringView Prefix = u"new ";
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  if (Text == u"accumulate") return false;
  if (StartsText(Prefix, Text)) Rect = ParseRect(Text.substr(Prefix.size()), Factors);
  return true;
}

std::optional<TSVGAspectRatioValue> ParseAspectRatioValue(StringView Text) {
  const std::vector<StringView> Words = SplitClean(Trim(Text), u" ");
  if (Words.empty()) return std::nullopt;
  TSVGAspectRatioValue Result;
  Result.Defer = Words.size() > 1 && Words[0] == u"defer";
  const std::size_t At = Result.Defer ? 1 : 0;
  Result.Align = GetSVGAlign(Words[At]);
  Result.Slice = Words.size() > At + 1 && Words[At + 1] == u"slice";
  return Result;
}

}  // namespace qxsvg
