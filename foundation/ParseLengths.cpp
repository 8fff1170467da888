#include "foundation/ParseLengths.h"

#include <cmath>
#include <limits>

#include "foundation/Lookups.h"
#include "foundation/ParseInherit.h"
#include "foundation/ParseNumbers.h"
#include "foundation/ParseTokens.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

float Scaled(float Number, TSVGUnit Unit, const TSVGUnitFactors& Factors) {
  return ToFiniteFloat(double{Number} * Factors[Ordinal(Unit)]);
}

}  // namespace

TSVGLengthText SplitLength(StringView Text) {
  TSVGLengthText Result{Text};
  if (Text.size() < 2) return Result;
  Result.Unit = GetSVGUnit(Text.substr(Text.size() - 2));
  Result.Number.remove_suffix(SVGUnitStrings[Ordinal(Result.Unit)].size());
  return Result;
}

bool TryParsePercent(StringView Text, float Minimum, float Maximum, float& Value) {
  double Percents;
  if (!TryStrToFloat(Text.substr(0, Text.size() - 1), Percents)) return false;
  const double Result = Minimum + (double{Maximum} - Minimum) * Percents / 100;
  if (!(std::abs(Result) <= std::numeric_limits<float>::max())) return false;
  Value = static_cast<float>(Result);
  return true;
}

float ParseLength(StringView Text, float Default, bool& Inherit, TSVGUnit& Unit,
                  const TSVGUnitFactors& Factors) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  const TSVGLengthText Parts = SplitLength(Text);
  Unit = Parts.Unit;
  float Number = Default;
  TryStrToFloat(Parts.Number, Number);
  return Scaled(Number, Unit, Factors);
}

float ParseLength(StringView Text, float Default, TSVGUnit& Unit, const TSVGUnitFactors& Factors) {
  Text = Trim(Text);
  if (Text.empty()) return Default;
  const TSVGLengthText Parts = SplitLength(Text);
  Unit = Parts.Unit;
  float Number = Default;
  TryParseNumber(Parts.Number, Number);
  return Scaled(Number, Unit, Factors);
}

float ParsePercent(StringView Text, float Default, bool& Inherit, TSVGUnit& Unit,
                   const TSVGUnitFactors& Factors, float Minimum, float Maximum) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  return ParsePercent(Text, Default, Unit, Factors, Minimum, Maximum);
}

float ParsePercent(StringView Text, float Default, TSVGUnit& Unit, const TSVGUnitFactors& Factors,
                   float Minimum, float Maximum) {
  Text = Trim(Text);
  if (Text.empty()) return Default;
  const float Length = ParseLength(Text, Default, Unit, Factors);
  if (Unit != TSVGUnit::suPercent) return Length;
  float Result = Default;
  TryParsePercent(Text, Minimum, Maximum, Result);
  return Result;
}

float ParsePercent(StringView Text, float Default, TSVGUnit& Unit, const TSVGUnitFactors& Factors) {
  return ParsePercent(Text, Default, Unit, Factors, 0, 1);
}

std::vector<float> ParseDashes(StringView Text, std::vector<bool>& IsPercent, TSVGUnits& Units,
                               const TSVGUnitFactors& Factors, float Minimum, float Maximum) {
  std::vector<float> Result;
  IsPercent.clear();
  Units.clear();
  TNumberTokens Tokens(Text);
  for (StringView Token; Tokens.NextClean(Token);) {
    TSVGUnit Unit = TSVGUnit::suNone;
    Result.push_back(ParsePercent(Token, 0, Unit, Factors, Minimum, Maximum));
    Units.push_back(Unit);
    IsPercent.push_back(Unit == TSVGUnit::suPercent);
  }
  const std::size_t Count = Result.size();
  if (Count % 2 != 0)
    for (std::size_t I = 0; I < Count; ++I) Result.push_back(Result[I]);
  return Result;
}

float ParseFontSize(StringView Text, float Default, float ParentSize, bool& Inherit,
                    const TSVGUnitFactors& Factors) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  const TSVGLengthText Parts = SplitLength(Text);
  double Size = Default;
  if (const auto Word = GetSVGFontAbsSize(Parts.Number); Word != TSVGFontAbsSize::fabNone)
    Size = SVGFontSizes[Ordinal(Word)];
  else if (Parts.Number == u"larger")
    Size = ParentSize * 1.2;
  else if (Parts.Number == u"smaller")
    Size = ParentSize / 1.2;
  else if (float Number; TryStrToFloat(Parts.Number, Number))
    Size = Number;
  const bool IsFontSize = Parts.Unit == TSVGUnit::suFontSize;
  return ToFiniteFloat(Size * (IsFontSize ? ParentSize : Factors[Ordinal(Parts.Unit)]));
}

}  // namespace qxsvg
