// The patterns by which numbers are written.
#pragma once

#include <array>
#include <cstdint>

#include "runtime/String.h"

namespace qxsvg {

// How numbers look in text, whatever the locale: the one way that SVG knows.
struct TFormatSettings {
  char16_t DecimalSeparator = u'.';
};
inline constexpr TFormatSettings USFormatSettings;

// A pattern, read once and used for many numbers.
//
//   0      a digit that is always written
//   #      a digit that is written where the number has one
//   .      the decimal point, written where a digit follows it; one a section
//   ,      anywhere: groups of three integer digits are separated by commas
//   E+ E- e+ e-  an exponent, its sign always or only where negative, with at least as many digits
//          as zeros follow (up to four)
//   'x' "x"  literal text; any other character stands for itself too
//   ;      separates sections: for positive, negative and zero numbers; a missing or empty section
//          gives its numbers to the first, which puts the minus sign before all else
//
// The number is first brought to 15 significant digits and then rounded to the places of the
// pattern, halves away from zero. What rounds to zero has no sign, and a number always has a digit
// ("#.##" of 0 is "0"), so that lists of numbers stay lists. An empty pattern, and a number of 1E18
// and more without an exponent in the pattern, give the form of FloatToStr.
class QXSVG_API TFloatFormat {
 public:
  // A longer pattern is refused: none that people write comes near it, and the pattern's length
  // bounds the length of every number written.
  static constexpr std::size_t MaxPatternLength = 255;

  // Raises EConvertError for a quote without its end, a second decimal point or exponent in a
  // section, more than three sections, a first section without a digit, and a pattern too long.
  explicit TFloatFormat(StringView Pattern);

  const String& Pattern() const { return FPattern; }
  void Append(String& Target, double Value) const;
  String Format(double Value) const;

 private:
  struct TSection {
    std::uint8_t First = 0, Last = 0;  // the place in the pattern
    std::uint8_t IntegerPlaces = 0, FractionPlaces = 0;
    std::uint8_t MinInteger = 0, MinFraction = 0;
    bool HasPoint = false, HasGroups = false, HasExponent = false;
    // No literal, group or exponent: the digits and the point are all there is.
    bool IsPlain = true;
    bool IsEmpty() const { return First == Last; }
  };
  struct TDigits;

  std::size_t ReadSection(std::size_t At, TSection& Section) const;
  std::size_t ReadExponent(std::size_t At, TSection& Section) const;
  bool AppendFast(String& Target, double Value) const;
  void AppendSection(String& Target, const TSection& Section, const TDigits& Digits) const;
  std::size_t AppendExponent(String& Target, std::size_t At, int Exponent) const;
  [[noreturn]] void RaiseInvalid() const;

  String FPattern;
  std::array<TSection, 3> FSections;
  std::uint8_t FSectionCount = 0;
};

}  // namespace qxsvg
