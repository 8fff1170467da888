#include "foundation/ParseNumbers.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "foundation/ParseInherit.h"
#include "foundation/ParseTokens.h"
#include "runtime/Numbers.h"

namespace qxsvg {

float ToFiniteFloat(double Value) {
  constexpr float Greatest = std::numeric_limits<float>::max();
  if (std::isnan(Value)) return 0;
  if (Value >= Greatest) return Greatest;
  return Value <= -Greatest ? -Greatest : static_cast<float>(Value);
}

bool TryParseNumber(StringView Text, float& Value) {
  if (TryStrToFloat(Text, Value)) return true;
  if (SameText(Text, u"Infinity")) {
    Value = SVGInfinity;
    return true;
  }
  if (SameText(Text, u"-Infinity")) {
    Value = -SVGInfinity;
    return true;
  }
  return false;
}

float ParseNumber(StringView Text, float Default, bool& Inherit) {
  Text = Trim(Text);
  float Result = Default;
  if (TakesValue(Text, Inherit)) TryParseNumber(Text, Result);
  return Result;
}

std::vector<float> ParseNumbers(StringView Text, std::span<const float> Defaults) {
  std::vector<float> Result;
  TNumberTokens Tokens(Text);
  StringView Token;
  float Value;
  bool IsNumber;
  while (Tokens.NextNumber(Token, Value, IsNumber)) {
    if (Result.empty()) Result.reserve(Text.size() / 4 + 2);
    if (!IsNumber && !TryParseNumber(Token, Value))
      Value = Result.size() < Defaults.size() ? Defaults[Result.size()] : 0.0f;
    Result.push_back(Value);
  }
  return Result;
}

float ParseMiterLimit(StringView Text, float Default, bool& Inherit) {
  const float Value = ParseNumber(Text, Default, Inherit);
  return Value >= 1 ? Value : Default;
}

float ParseAngle(StringView Text, float Default, bool& Auto) {
  Text = Trim(Text);
  if (Text.empty()) return Default;
  Auto = Text == u"auto";
  if (Auto) return Default;
  const std::vector<StringView> Items = SplitClean(Text, u" ");
  double Angle;
  if (!TryStrToFloat(Items[0], Angle)) return Default;
  const StringView Unit = Items.size() > 1 ? Items[1] : StringView();
  if (SameText(Unit, u"grad")) return ToFiniteFloat(Angle * (std::numbers::pi / 200));
  if (SameText(Unit, u"rad")) return ToFiniteFloat(Angle);
  return ToFiniteFloat(Angle * (std::numbers::pi / 180));
}

}  // namespace qxsvg
