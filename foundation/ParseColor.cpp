#include "foundation/ParseColor.h"

#include <algorithm>
#include <cmath>

#include "foundation/ParseInherit.h"
#include "runtime/NamedColors.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

constexpr bool IsHexDigit(char16_t C) {
  const char16_t Lower = AsciiLower(C);
  return (C >= u'0' && C <= u'9') || (Lower >= u'a' && Lower <= u'f');
}

// Letters beyond ASCII count as such so that they are no hexadecimal digits; the spaces and
// punctuation up there drop out like those of ASCII.
constexpr bool IsLetterOrDigit(char16_t C) {
  const char16_t Lower = AsciiLower(C);
  if (C < 0x80) return (C >= u'0' && C <= u'9') || (Lower >= u'a' && Lower <= u'z');
  return C > 0xBF && !(C >= 0x2000 && C <= 0x206F) && C != 0x3000 && C != 0xFEFF;
}

TQXGPColor ParseHex(StringView Text) {
  String Digits = u"$FF";
  const std::size_t Prefix = Digits.size();
  for (const char16_t C : Text)
    if (IsLetterOrDigit(C)) Digits.push_back(C);
  if (Digits.size() == Prefix + 3) {
    const char16_t R = Digits[Prefix], G = Digits[Prefix + 1], B = Digits[Prefix + 2];
    Digits.resize(Prefix);
    Digits.insert(Digits.end(), {R, R, G, G, B, B});
  }
  return TQXGPColorRec(StringToAlphaColor(Digits));
}

std::uint8_t ParseComponent(StringView Text) {
  Text = Trim(Text);
  if (!EndsText(u"%", Text)) return static_cast<std::uint8_t>(StrToInt(Text));
  Text.remove_suffix(1);
  // The remainder keeps the low bits of what no integer type holds. So far out they are nothing but
  // zeros, and 255 times as much is still a number.
  constexpr double Farthest = 1e305;
  const double Percent = std::clamp(StrToDouble(Text), -Farthest, Farthest);
  return static_cast<std::uint8_t>(
      static_cast<int>(std::fmod(std::trunc(Percent * 255 / 100), 256)));
}

TQXGPColor ParseRGB(StringView Inside) {
  TQXGPColorRec Color(0, 0, 0);
  for (std::uint8_t* const Component : {&Color.R, &Color.G, &Color.B}) {
    const std::size_t Comma = Inside.find(u',');
    *Component = ParseComponent(Inside.substr(0, Comma));
    if (Comma == StringView::npos) break;
    Inside.remove_prefix(Comma + 1);
  }
  return Color;
}

}  // namespace

TQXGPColor ParseColor(StringView Text, TQXGPColor Default, bool& IsNone, bool& Inherit,
                      TQXGPColor CurrentColor) {
  const StringView S = Trim(Text);
  IsNone = IsNone || S == u"none";
  // A text of blanks only is no empty one here: unless it is inherited, it is an unknown name.
  TakesValue(S, Inherit);
  if (S == u"currentColor") return CurrentColor;
  if (Text.empty() || S == u"none" || Inherit) return Default;
  IsNone = false;
  if (S.starts_with(u'#')) return ParseHex(S);
  constexpr StringView Prefix = u"rgb(";
  if (StartsText(Prefix, S) && S.ends_with(u')'))
    return ParseRGB(S.substr(Prefix.size(), S.size() - Prefix.size() - 1));
  const auto Named = FindNamedColor(S);
  return Named ? *Named : Default;
}

bool IsHexColor(StringView Text) {
  return (Text.size() == 4 || Text.size() == 7) && Text[0] == u'#' &&
         std::all_of(Text.begin() + 1, Text.end(), IsHexDigit);
}

TQXGPColor SetColorOpacity(TQXGPColor Color, double Opacity) {
  // Written so that what is no number becomes 0.
  const double Clamped = Opacity > 0 ? std::min(Opacity, 1.0) : 0.0;
  // The rounding mode of every thread is the one that rounds ties to the even number.
  const auto Alpha = static_cast<TQXGPColor>(std::nearbyint(Clamped * 255));
  return (Color & 0x00FFFFFF) | Alpha << 24;
}

}  // namespace qxsvg
