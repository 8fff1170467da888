#include "runtime/Numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <limits>

#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

// As many decimal digits as always fit into 64 bits.
constexpr std::ptrdiff_t MaxExactDigits = 19;
// The powers of ten that a double holds exactly.
constexpr std::array<double, 23> PowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t MaxExactPower = 22;
constexpr std::uint64_t MaxExactMantissa = std::uint64_t{1} << 53;

// A number as it is written: the digits times ten to the exponent.
struct TDecimal {
  const char16_t* Digits;  // the first digit or the period before it
  const char16_t* DigitsEnd;
  std::uint64_t Mantissa;  // all digits, while they are no more than MaxExactDigits
  std::ptrdiff_t DigitCount;
  std::int64_t Exponent;
  bool IsNegative;
};

constexpr bool IsDigit(char16_t C) {
  return static_cast<char16_t>(C - u'0') <= 9;
}

const char16_t* ScanDigits(const char16_t* P, const char16_t* Last, std::uint64_t& Mantissa) {
  for (; P != Last && IsDigit(*P); ++P) Mantissa = Mantissa * 10 + (*P - u'0');
  return P;
}

// Gives the end of an exponent at P, or P where there is none.
const char16_t* ScanExponent(const char16_t* P, const char16_t* Last, std::int64_t& Exponent) {
  // Beyond this no count of digits that fits into memory brings the number back into range, and
  // the sums stay within 64 bits.
  constexpr std::int64_t Enough = 1'000'000'000'000'000;
  if (P == Last || (*P != u'e' && *P != u'E')) return P;
  const char16_t* Q = P + 1;
  const bool IsNegative = Q != Last && *Q == u'-';
  if (Q != Last && (*Q == u'-' || *Q == u'+')) ++Q;
  if (Q == Last || !IsDigit(*Q)) return P;
  std::int64_t Written = 0;
  for (; Q != Last && IsDigit(*Q); ++Q)
    if (Written < Enough) Written = Written * 10 + (*Q - u'0');
  Exponent += IsNegative ? -Written : Written;
  return Q;
}

// Gives the end of the number, or null where none begins.
inline const char16_t* Scan(const char16_t* P, const char16_t* Last, TDecimal& Number) {
  Number.IsNegative = P != Last && *P == u'-';
  if (P != Last && (*P == u'-' || *P == u'+')) ++P;
  Number.Digits = P;
  Number.Mantissa = 0;
  Number.Exponent = 0;
  P = ScanDigits(P, Last, Number.Mantissa);
  Number.DigitCount = P - Number.Digits;
  if (P != Last && *P == u'.') {
    const char16_t* const Fraction = ++P;
    P = ScanDigits(P, Last, Number.Mantissa);
    Number.DigitCount += P - Fraction;
    Number.Exponent = Fraction - P;
  }
  if (Number.DigitCount == 0) return nullptr;
  Number.DigitsEnd = P;
  return ScanExponent(P, Last, Number.Exponent);
}

// The nearest value of any number, its sign left out; infinite beyond the range of T.
template <class T>
T NearestSlow(const TDecimal& Number) {
  // No more digits than these decide how a double is rounded; of those behind them it only counts
  // whether one is not zero.
  constexpr int MaxDecidingDigits = 770;
  std::array<char, MaxDecidingDigits + 16> Buffer;
  int Count = 0;
  std::int64_t Exponent = Number.Exponent;
  bool IsCut = false;
  for (const char16_t* P = Number.Digits; P != Number.DigitsEnd; ++P) {
    if (*P == u'.' || (Count == 0 && *P == u'0')) continue;
    if (Count < MaxDecidingDigits) {
      Buffer[Count++] = static_cast<char>(*P);
    } else {
      IsCut = IsCut || *P != u'0';
      ++Exponent;
    }
  }
  if (Count == 0) return 0;
  if (IsCut) {
    Buffer[Count++] = '1';
    --Exponent;
  }
  constexpr T Infinity = std::numeric_limits<T>::infinity();
  if (Count + Exponent > 400) return Infinity;
  if (Count + Exponent < -400) return 0;
  Buffer[Count] = 'e';
  const auto End = std::to_chars(&Buffer[Count + 1], Buffer.data() + Buffer.size(), Exponent).ptr;
  T Value = 0;
  const auto Result = std::from_chars(Buffer.data(), End, Value);
  if (Result.ec == std::errc::result_out_of_range) return Count + Exponent > 0 ? Infinity : T{0};
  return Value;
}

double Scale(double Mantissa, std::int64_t Exponent) {
  return Exponent < 0 ? Mantissa / PowersOfTen[-Exponent] : Mantissa * PowersOfTen[Exponent];
}

bool IsShort(const TDecimal& Number) {
  return Number.DigitCount <= MaxExactDigits && Number.Exponent >= -MaxExactPower &&
         Number.Exponent <= MaxExactPower;
}

inline void Nearest(const TDecimal& Number, double& Value) {
  // Both factors are exact, so that the one rounding of their product is the right one.
  if (IsShort(Number) && Number.Mantissa <= MaxExactMantissa)
    Value = Scale(static_cast<double>(Number.Mantissa), Number.Exponent);
  else
    Value = NearestSlow<double>(Number);
}

inline void Nearest(const TDecimal& Number, float& Value) {
  if (IsShort(Number)) {
    // Two roundings of a double lie behind this value at most. They can only matter where it is
    // next to the middle between two floats, or where floats have fewer bits than usual.
    constexpr std::uint64_t BelowFloat = 0x1FFFFFFF, Middle = 0x10000000;
    const double Wide = Scale(static_cast<double>(Number.Mantissa), Number.Exponent);
    const std::uint64_t Rest = std::bit_cast<std::uint64_t>(Wide) & BelowFloat;
    const bool IsSure = Rest - (Middle - 4) > 8 && Wide >= std::numeric_limits<float>::min() &&
                        Wide <= std::numeric_limits<float>::max();
    if (IsSure || Wide == 0) {
      Value = static_cast<float>(Wide);
      return;
    }
  }
  Value = NearestSlow<float>(Number);
}

template <class T>
const char16_t* ParsePrefix(const char16_t* First, const char16_t* Last, T& Value) {
  TDecimal Number;
  const char16_t* const End = Scan(First, Last, Number);
  if (!End) return First;
  T Magnitude;
  Nearest(Number, Magnitude);
  if (Magnitude > std::numeric_limits<T>::max()) return First;
  Value = Number.IsNegative ? -Magnitude : Magnitude;
  return End;
}

template <class T>
bool TryParse(StringView Text, T& Value) {
  const char16_t* First = Text.data();
  const char16_t* Last = First + Text.size();
  while (First != Last && *First <= u' ') ++First;
  while (First != Last && Last[-1] <= u' ') --Last;
  T Parsed;
  const char16_t* const End = ParsePrefix(First, Last, Parsed);
  if (End != Last || First == Last) return false;
  Value = Parsed;
  return true;
}

[[noreturn]] void RaiseConversion(StringView Message, StringView Text) {
  // A message is for reading; the text may be a whole attribute.
  constexpr std::size_t MaxQuoted = 100;
  if (Text.size() <= MaxQuoted) throw EConvertError(Message, {Text});
  throw EConvertError(Message, {String(Text.substr(0, MaxQuoted)) + u"..."});
}

template <class T>
T ParseOrRaise(StringView Text) {
  T Value;
  if (!TryParse(Text, Value)) RaiseConversion(u"'%s' is not a valid floating point value", Text);
  return Value;
}

template <class T>
bool TryParseInt(StringView Text, T& Value) {
  Text = Trim(Text);
  const bool IsNegative = !Text.empty() && Text[0] == u'-';
  if (IsNegative || (!Text.empty() && Text[0] == u'+')) Text.remove_prefix(1);
  if (Text.empty()) return false;
  const std::uint64_t Limit =
      static_cast<std::uint64_t>(std::numeric_limits<T>::max()) + (IsNegative ? 1 : 0);
  std::uint64_t Magnitude = 0;
  for (const char16_t C : Text) {
    if (!IsDigit(C)) return false;
    const std::uint64_t Digit = C - u'0';
    if (Magnitude > (Limit - Digit) / 10) return false;
    Magnitude = Magnitude * 10 + Digit;
  }
  Value = static_cast<T>(IsNegative ? std::uint64_t{0} - Magnitude : Magnitude);
  return true;
}

}  // namespace

const char16_t* ParseFloatPrefix(const char16_t* First, const char16_t* Last, double& Value) {
  return ParsePrefix(First, Last, Value);
}
const char16_t* ParseFloatPrefix(const char16_t* First, const char16_t* Last, float& Value) {
  return ParsePrefix(First, Last, Value);
}

bool TryStrToFloat(StringView Text, float& Value) {
  return TryParse(Text, Value);
}
bool TryStrToFloat(StringView Text, double& Value) {
  return TryParse(Text, Value);
}
float StrToFloat(StringView Text) {
  return ParseOrRaise<float>(Text);
}
double StrToDouble(StringView Text) {
  return ParseOrRaise<double>(Text);
}

bool TryStrToInt(StringView Text, std::int32_t& Value) {
  return TryParseInt(Text, Value);
}
bool TryStrToInt(StringView Text, std::int64_t& Value) {
  return TryParseInt(Text, Value);
}
std::int32_t StrToInt(StringView Text) {
  std::int32_t Value;
  if (!TryStrToInt(Text, Value)) RaiseConversion(u"'%s' is not a valid integer value", Text);
  return Value;
}

String IntToStr(std::int64_t Value) {
  std::array<char, 24> Buffer;
  const auto End = std::to_chars(Buffer.data(), Buffer.data() + Buffer.size(), Value).ptr;
  return String(Buffer.data(), End);
}

}  // namespace qxsvg
