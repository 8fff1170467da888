#include "runtime/FloatFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "runtime/Exceptions.h"
#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

constexpr int SignificantDigits = 15;

// 0.d1d2d3... times ten to the power of Point.
struct TDecimalForm {
  std::array<char, 24> Digits;
  int Count = 0;
  int Point = 0;
  bool IsNegative = false;

  void DropTrailingZeros() {
    while (Count > 0 && Digits[Count - 1] == '0') --Count;
    if (Count == 0) Point = 0, IsNegative = false;
  }
  // Keeps the first Places digits, rounding halves away from zero.
  void RoundTo(int Places) {
    if (Places >= Count) return;
    const bool IsUp = Places >= 0 && Digits[Places] >= '5';
    Count = std::max(Places, 0);
    if (IsUp) {
      while (Count > 0 && Digits[Count - 1] == '9') --Count;
      if (Count == 0) {
        Digits[Count++] = '1';
        ++Point;
      } else {
        ++Digits[Count - 1];
      }
    }
    DropTrailingZeros();
  }
};

// Reads "d.ddde-xx", as the standard library writes it.
TDecimalForm FromScientific(const char* First, const char* Last) {
  TDecimalForm Form;
  Form.IsNegative = *First == '-';
  if (Form.IsNegative) ++First;
  for (; First != Last && *First != 'e'; ++First)
    if (*First != '.') Form.Digits[Form.Count++] = *First;
  ++First;
  if (First != Last && *First == '+') ++First;
  std::from_chars(First, Last, Form.Point);
  ++Form.Point;
  Form.DropTrailingZeros();
  return Form;
}

double Finite(double Value) {
  constexpr double Largest = std::numeric_limits<float>::max();
  if (std::isnan(Value)) return 0;
  return std::isinf(Value) ? std::copysign(Largest, Value) : Value;
}

TDecimalForm ToDecimal(double Value) {
  std::array<char, 48> Buffer;
  const auto End = std::to_chars(Buffer.data(), Buffer.data() + Buffer.size(), Finite(Value),
                                 std::chars_format::scientific, SignificantDigits - 1)
                       .ptr;
  return FromScientific(Buffer.data(), End);
}

TDecimalForm ToShortestDecimal(float Value) {
  std::array<char, 48> Buffer;
  const auto End = std::to_chars(Buffer.data(), Buffer.data() + Buffer.size(),
                                 static_cast<float>(Finite(Value)), std::chars_format::scientific)
                       .ptr;
  return FromScientific(Buffer.data(), End);
}

void AppendInt(String& Target, int Value) {
  std::array<char, 16> Buffer;
  const auto End = std::to_chars(Buffer.data(), Buffer.data() + Buffer.size(), Value).ptr;
  Target.append(Buffer.data(), End);
}

void AppendGeneral(String& Target, const TDecimalForm& Form) {
  const char* const Digits = Form.Digits.data();
  if (Form.IsNegative) Target.push_back(u'-');
  if (Form.Count == 0) {
    Target.push_back(u'0');
  } else if (Form.Point > SignificantDigits || Form.Point < -3) {
    Target.push_back(static_cast<char16_t>(Digits[0]));
    if (Form.Count > 1) Target.push_back(USFormatSettings.DecimalSeparator);
    Target.append(Digits + 1, Digits + Form.Count);
    Target.push_back(u'E');
    AppendInt(Target, Form.Point - 1);
  } else if (Form.Point <= 0) {
    Target.append(u"0.").append(static_cast<std::size_t>(-Form.Point), u'0');
    Target.append(Digits, Digits + Form.Count);
  } else if (Form.Count <= Form.Point) {
    Target.append(Digits, Digits + Form.Count);
    Target.append(static_cast<std::size_t>(Form.Point - Form.Count), u'0');
  } else {
    Target.append(Digits, Digits + Form.Point).push_back(USFormatSettings.DecimalSeparator);
    Target.append(Digits + Form.Point, Digits + Form.Count);
  }
}

}  // namespace

void AppendFloat(String& Target, double Value) {
  AppendGeneral(Target, ToDecimal(Value));
}
void AppendFloat(String& Target, float Value) {
  AppendGeneral(Target, ToShortestDecimal(Value));
}

String FloatToStr(double Value) {
  String Result;
  AppendFloat(Result, Value);
  return Result;
}
String FloatToStr(float Value) {
  String Result;
  AppendFloat(Result, Value);
  return Result;
}

String FormatFloat(StringView Pattern, double Value) {
  return TFloatFormat(Pattern).Format(Value);
}

// The digits as one section writes them: Form has been rounded to the section's places.
struct TFloatFormat::TDigits {
  const TDecimalForm& Form;
  bool HasSign;
  int Exponent;
  int IntegerLength;   // digits to write before the point, zeros filled in
  int FractionLength;  // and behind it

  // The digit of weight ten to the power of Place.
  char16_t At(int Place) const {
    const int Index = Form.Point - 1 - Place;
    return Index >= 0 && Index < Form.Count ? static_cast<char16_t>(Form.Digits[Index]) : u'0';
  }
};

TFloatFormat::TFloatFormat(StringView Pattern) : FPattern(Pattern.substr(0, MaxPatternLength)) {
  if (Pattern.size() > MaxPatternLength) RaiseInvalid();
  for (std::size_t At = 0;; ++At) {
    if (FSectionCount == FSections.size()) RaiseInvalid();
    At = ReadSection(At, FSections[FSectionCount++]);
    if (At == FPattern.size()) break;
  }
  const TSection& First = FSections[0];
  if (!First.IsEmpty() && First.IntegerPlaces + First.FractionPlaces == 0) RaiseInvalid();
}

void TFloatFormat::RaiseInvalid() const {
  throw EConvertError(u"'%s' is not a valid number format", {FPattern});
}

// Gives the place of the semicolon behind the section, or the end of the pattern.
std::size_t TFloatFormat::ReadSection(std::size_t At, TSection& Section) const {
  Section.First = static_cast<std::uint8_t>(At);
  bool HasZero = false;
  while (At < FPattern.size() && FPattern[At] != u';') {
    const char16_t C = FPattern[At];
    const bool IsPlace = C == u'0' || C == u'#';
    if (IsPlace && Section.HasExponent) RaiseInvalid();
    if (IsPlace && Section.HasPoint) {
      ++Section.FractionPlaces;
      if (C == u'0') Section.MinFraction = Section.FractionPlaces;
    } else if (IsPlace) {
      ++Section.IntegerPlaces;
      HasZero = HasZero || C == u'0';
      if (HasZero) ++Section.MinInteger;
    } else if (C == u'.') {
      if (Section.HasPoint || Section.HasExponent) RaiseInvalid();
      Section.HasPoint = true;
    } else {
      Section.IsPlain = false;
      if (C == u',') {
        Section.HasGroups = true;
      } else if (C == u'"' || C == u'\'') {
        At = FPattern.find(C, At + 1);
        if (At == String::npos) RaiseInvalid();
      } else if (C == u'E' || C == u'e') {
        At = ReadExponent(At, Section);
      }
    }
    ++At;
  }
  Section.Last = static_cast<std::uint8_t>(At);
  return At;
}

// Gives the place of the exponent's last character; a letter without a sign stands for itself.
std::size_t TFloatFormat::ReadExponent(std::size_t At, TSection& Section) const {
  const char16_t Sign = At + 1 < FPattern.size() ? FPattern[At + 1] : u'\0';
  if (Sign != u'+' && Sign != u'-') return At;
  if (Section.HasExponent) RaiseInvalid();
  Section.HasExponent = true;
  At += 1;
  for (int I = 0; I < 4 && At + 1 < FPattern.size() && FPattern[At + 1] == u'0'; ++I) ++At;
  return At;
}

// Most numbers of a drawing: no more than nine places, and not so near to a half that the 15
// significant digits decide.
bool TFloatFormat::AppendFast(String& Target, double Value) const {
  static constexpr std::array<double, 10> Powers{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const TSection& Section = FSections[0];
  if (FSectionCount != 1 || !Section.IsPlain || Section.IsEmpty() || Section.MinInteger > 1 ||
      Section.FractionPlaces >= Powers.size())
    return false;
  const double Scaled = std::abs(Value) * Powers[Section.FractionPlaces];
  if (!(Scaled < 1e13)) return false;
  const auto Floor = static_cast<std::uint64_t>(Scaled);
  const double Rest = Scaled - static_cast<double>(Floor);
  if (std::abs(Rest - 0.5) <= Scaled * 1e-14 + 1e-12) return false;
  const std::uint64_t Rounded = Floor + (Rest > 0.5 ? 1 : 0);
  const auto Power = static_cast<std::uint64_t>(Powers[Section.FractionPlaces]);
  const std::uint64_t Integer = Rounded / Power;
  std::uint64_t Fraction = Rounded % Power;
  int Length = Section.FractionPlaces;
  for (; Length > Section.MinFraction && Fraction % 10 == 0; --Length) Fraction /= 10;

  std::array<char16_t, 32> Buffer;
  std::size_t At = Buffer.size();
  for (int I = 0; I < Length; ++I, Fraction /= 10)
    Buffer[--At] = static_cast<char16_t>(u'0' + Fraction % 10);
  if (Length > 0) Buffer[--At] = USFormatSettings.DecimalSeparator;
  if (Integer == 0 && (Section.MinInteger > 0 || Length == 0)) Buffer[--At] = u'0';
  for (std::uint64_t Left = Integer; Left > 0; Left /= 10)
    Buffer[--At] = static_cast<char16_t>(u'0' + Left % 10);
  if (Value < 0 && Rounded > 0) Buffer[--At] = u'-';
  Target.append(Buffer.data() + At, Buffer.size() - At);
  return true;
}

void TFloatFormat::Append(String& Target, double Value) const {
  if (AppendFast(Target, Value)) return;
  TDecimalForm Form = ToDecimal(Value);
  const auto Usable = [this](std::size_t Index) {
    return Index < FSectionCount && !FSections[Index].IsEmpty();
  };
  const bool IsOwnNegative = Form.IsNegative && Usable(1);
  const TSection* Section = &FSections[IsOwnNegative ? 1 : 0];
  if (Section->IsEmpty() || (!Section->HasExponent && Form.Point > 18))
    return AppendGeneral(Target, Form);
  Form.RoundTo(Section->HasExponent ? Section->IntegerPlaces + Section->FractionPlaces
                                    : Form.Point + Section->FractionPlaces);
  if (Form.Count == 0) Section = &FSections[Usable(2) ? 2 : 0];

  TDigits Digits{Form, Form.IsNegative && !IsOwnNegative, 0, 0, 0};
  if (Section->HasExponent && Form.Count > 0) {
    Digits.Exponent = Form.Point - Section->IntegerPlaces;
    Form.Point = Section->IntegerPlaces;
  }
  Digits.IntegerLength = std::max<int>(Form.Point, Section->MinInteger);
  Digits.FractionLength = std::max<int>(Form.Count - Form.Point, Section->MinFraction);
  if (Form.Count == 0) Digits.FractionLength = Section->MinFraction;
  if (Digits.IntegerLength + Digits.FractionLength == 0) Digits.IntegerLength = 1;
  AppendSection(Target, *Section, Digits);
}

void TFloatFormat::AppendSection(String& Target, const TSection& Section,
                                 const TDigits& Digits) const {
  if (Digits.HasSign) Target.push_back(u'-');
  // The first place takes the digits that have no place of their own.
  int Next = std::max<int>(Digits.IntegerLength, Section.IntegerPlaces) - 1;
  const auto WriteInteger = [&](int LastPlace) {
    for (; Next >= LastPlace; --Next) {
      if (Next >= Digits.IntegerLength) continue;
      Target.push_back(Digits.At(Next));
      if (Section.HasGroups && Next > 0 && Next % 3 == 0) Target.push_back(u',');
    }
  };
  int IntegerLeft = Section.IntegerPlaces, Fraction = 0;
  bool IsBehindPoint = false;
  for (std::size_t At = Section.First; At < Section.Last; ++At) {
    const char16_t C = FPattern[At];
    const bool IsPlace = C == u'0' || C == u'#';
    if (IsPlace && !IsBehindPoint) {
      WriteInteger(--IntegerLeft);
    } else if (IsPlace) {
      ++Fraction;
      if (Fraction <= Digits.FractionLength) Target.push_back(Digits.At(-Fraction));
    } else if (C == u'.') {
      WriteInteger(0);
      IsBehindPoint = true;
      if (Digits.FractionLength > 0) Target.push_back(USFormatSettings.DecimalSeparator);
    } else if (C == u'"' || C == u'\'') {
      const std::size_t End = FPattern.find(C, At + 1);
      Target.append(FPattern, At + 1, End - At - 1);
      At = End;
    } else if (C == u'E' || C == u'e') {
      At = AppendExponent(Target, At, Digits.Exponent);
    } else if (C != u',') {
      Target.push_back(C);
    }
  }
}

std::size_t TFloatFormat::AppendExponent(String& Target, std::size_t At, int Exponent) const {
  Target.push_back(FPattern[At]);
  const char16_t Sign = At + 1 < FPattern.size() ? FPattern[At + 1] : u'\0';
  if (Sign != u'+' && Sign != u'-') return At;
  ++At;
  if (Exponent < 0)
    Target.push_back(u'-');
  else if (Sign == u'+')
    Target.push_back(u'+');
  String Digits;
  AppendInt(Digits, std::abs(Exponent));
  std::size_t Zeros = 0;
  while (Zeros < 4 && At + 1 < FPattern.size() && FPattern[At + 1] == u'0') ++At, ++Zeros;
  if (Zeros > Digits.size()) Target.append(Zeros - Digits.size(), u'0');
  Target += Digits;
  return At;
}

String TFloatFormat::Format(double Value) const {
  String Result;
  Append(Result, Value);
  return Result;
}

}  // namespace qxsvg
