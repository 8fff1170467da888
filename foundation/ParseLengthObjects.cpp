#include "foundation/ParseLengthObjects.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "foundation/Lookups.h"
#include "foundation/ParseInherit.h"
#include "foundation/ParseLengths.h"
#include "foundation/ParseNumbers.h"
#include "foundation/ParseTokens.h"

namespace qxsvg {

namespace {

// Applies the rule of inheritance to the mark that the length itself keeps.
bool TakesOwnValue(StringView Text, TSVGStylePropertyLength& Length) {
  bool Inherit = Length.IsParentValue();
  const bool Result = TakesValue(Text, Inherit);
  Length.SetParentValue(Inherit);
  return Result;
}

void ParseAutoLength(StringView Text, StringView Word, TSVGStylePropertyAutoLength& Length) {
  Text = Trim(Text);
  if (!TakesOwnValue(Text, Length)) return;
  const bool IsAutomatic = Text == Word;
  Length.SetAutomatic(IsAutomatic);
  if (!IsAutomatic) ParseLength(Text, Length);
}

}  // namespace

TSVGLength& ParseLength(StringView Text, TSVGLength& Length) {
  Text = Trim(Text);
  if (Text.empty()) return Length;
  const TSVGLengthText Parts = SplitLength(Text);
  Length.SetUnit(Parts.Unit);
  // No number of em keeps a size where the font has none.
  float Number = std::isfinite(Length.Raw()) ? Length.Raw() : 0;
  TryParseNumber(Parts.Number, Number);
  Length.SetRaw(Number);
  Length.SetIsPercent(Parts.Unit == TSVGUnit::suPercent);
  return Length;
}

TSVGLength& ParsePercent(StringView Text, TSVGLength& Length, bool& Inherit, float Minimum,
                         float Maximum) {
  Text = Trim(Text);
  return TakesValue(Text, Inherit) ? ParsePercent(Text, Length, Minimum, Maximum) : Length;
}

TSVGLength& ParsePercent(StringView Text, TSVGLength& Length, float Minimum, float Maximum) {
  Text = Trim(Text);
  ParseLength(Text, Length);
  float Value;
  if (SplitLength(Text).Unit == TSVGUnit::suPercent &&
      TryParsePercent(Text, Minimum, Maximum, Value))
    Length.SetRaw(Value);
  return Length;
}

TSVGLengths& ParseLengths(StringView Text, TSVGLengths& Lengths,
                          const TSVGLengthCreateEvent& Creator, float Minimum, float Maximum) {
  TNumberTokens Tokens(Text);
  StringView Token;
  std::size_t Count = 0;
  for (; Tokens.NextClean(Token); ++Count) {
    if (Count < Lengths.Count()) {
      ParsePercent(Token, Lengths[Count], Minimum, Maximum);
    } else {
      std::unique_ptr<TSVGLength> Length = Creator(0);
      ParsePercent(Token, *Length, Minimum, Maximum);
      Lengths.Add(std::move(Length));
    }
  }
  while (Lengths.Count() > Count) Lengths.Delete(Lengths.Count() - 1);
  return Lengths;
}

int ParseRect(StringView Text, const std::array<TSVGLength*, 4>& Lengths) {
  const std::vector<StringView> Tokens = SplitClean(Trim(Text), SVGNumberSeparators);
  const std::size_t Count = std::min(Tokens.size(), Lengths.size());
  for (std::size_t I = 0; I < Count; ++I) ParseLength(Tokens[I], *Lengths[I]);
  return static_cast<int>(Count);
}

void ParseKerning(StringView Text, TSVGStylePropertyAutoLength& Length) {
  ParseAutoLength(Text, u"auto", Length);
}

void ParseSpacing(StringView Text, TSVGStylePropertyAutoLength& Length) {
  ParseAutoLength(Text, u"normal", Length);
}

void ParseBaselineShift(StringView Text, TSVGBaselineShiftLength& Length) {
  Text = Trim(Text);
  if (!TakesOwnValue(Text, Length)) return;
  TSVGBaselineShift Shift = GetSVGBaselineShift(Text);
  // The words for a value are the writer's marks and no values themselves.
  if (Shift == TSVGBaselineShift::bsNone || Shift == TSVGBaselineShift::bsPercentage ||
      Shift == TSVGBaselineShift::bsLength) {
    ParsePercent(Text, Length, 0, 1);
    Shift = Length.IsPercent() ? TSVGBaselineShift::bsPercentage : TSVGBaselineShift::bsLength;
  }
  Length.SetShift(Shift);
}

}  // namespace qxsvg
