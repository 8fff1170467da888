#include "foundation/ParseTokens.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

constexpr bool IsDigit(char16_t C) {
  return static_cast<char16_t>(C - u'0') <= 9;
}

// The bit of a character among the first 64, which holds all that separates numbers; 0 for others.
constexpr std::uint64_t BitOf(char16_t C) {
  return C < 64 ? std::uint64_t{1} << C : 0;
}

constexpr std::uint64_t SignBits = BitOf(u'+') | BitOf(u'-');

// The powers of ten that 32 bits hold exactly.
constexpr std::array<float, 11> PowersOfTen{1e0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f,
                                            1e6f, 1e7f, 1e8f, 1e9f, 1e10f};

struct TShortNumber {
  const char16_t* End;  // First where there is none
  float Value;
  bool HasPeriod;
};

// Reads a decimal of few digits, which is what drawings are made of. Digits and power of ten are
// exact in 32 bits then, so that their one division rounds as it should. Others are left to the
// full reader, and so is an exponent, which looks like what ends a number here.
inline TShortNumber ReadShortNumber(const char16_t* First, const char16_t* Last) {
  constexpr std::ptrdiff_t MaxDigits = 9;  // no overflow of 32 bits
  constexpr std::uint32_t MaxExact = std::uint32_t{1} << 24;
  const char16_t* P = First;
  const bool IsNegative = P != Last && *P == u'-';
  if (IsNegative || (P != Last && *P == u'+')) ++P;
  std::uint32_t Digits = 0;
  const auto ReadDigits = [&] {
    const char16_t* const Begin = P;
    for (; P != Last && IsDigit(*P); ++P) Digits = Digits * 10 + (*P - u'0');
    return P - Begin;
  };
  std::ptrdiff_t Count = ReadDigits(), Decimals = 0;
  const bool HasPeriod = P != Last && *P == u'.';
  if (HasPeriod) {
    ++P;
    Decimals = ReadDigits();
    Count += Decimals;
  }
  if (Count == 0 || Count > MaxDigits || Digits > MaxExact) return {First, 0, false};
  const float Value = static_cast<float>(Digits) / PowersOfTen[static_cast<std::size_t>(Decimals)];
  return {P, IsNegative ? -Value : Value, HasPeriod};
}

}  // namespace

TNumberTokens::TNumberTokens(StringView Text, StringView Delimiters)
    : FNext(Text.data()), FLast(Text.data() + Text.size()) {
  for (const char16_t C : Delimiters) {
    FDelimiterBits |= BitOf(C);
    if (C >= 64) FOtherDelimiters = Delimiters;
  }
  SkipDelimiters();
}

inline bool TNumberTokens::IsDelimiter(char16_t C) const {
  if (C < 64) return (FDelimiterBits >> C & 1) != 0;
  return !FOtherDelimiters.empty() && FOtherDelimiters.find(C) != StringView::npos;
}

inline void TNumberTokens::SkipDelimiters() {
  while (FNext != FLast && IsDelimiter(*FNext)) ++FNext;
}

bool TNumberTokens::Next(StringView& Token) {
  if (FNext == FLast || (FLast - FNext == 1 && !IsDigit(*FNext))) return false;
  constexpr std::uint64_t PeriodBit = BitOf(u'.');
  const std::uint64_t Stops = FDelimiterBits | SignBits | PeriodBit;
  bool HasPeriod = *FNext == u'.';
  const char16_t* P = FNext + 1;
  for (; P != FLast; ++P) {
    const char16_t C = *P;
    if ((BitOf(C) & Stops) == 0 && (C < 64 || !IsDelimiter(C))) continue;
    if (IsDelimiter(C)) break;
    const bool FollowsE = AsciiLower(P[-1]) == u'e';
    if (C == u'.') {
      if (HasPeriod && !FollowsE) break;
      HasPeriod = true;
    } else if (!FollowsE) {
      break;
    }
  }
  Token = StringView(FNext, static_cast<std::size_t>(P - FNext));
  FNext = P;
  SkipDelimiters();
  return true;
}

bool TNumberTokens::NextClean(StringView& Token) {
  StringView Whole;
  while (Next(Whole)) {
    Whole = Trim(Whole);
    if (Whole.empty()) continue;
    Token = Whole;
    return true;
  }
  return false;
}

bool TNumberTokens::NextNumber(StringView& Token, float& Value, bool& IsNumber) {
  // Nearly every token is a plain number with a delimiter or a sign behind it: one pass over its
  // characters both reads it and finds its end. What the rules of tokens decide otherwise goes by
  // them.
  const auto Take = [&](const char16_t* End, bool HasPeriod) {
    IsNumber = End != FNext && (End == FLast || (BitOf(*End) & (FDelimiterBits | SignBits)) != 0 ||
                                (*End == u'.' && HasPeriod));
    if (!IsNumber) return false;
    Token = StringView(FNext, static_cast<std::size_t>(End - FNext));
    FNext = End;
    SkipDelimiters();
    return true;
  };
  const TShortNumber Short = ReadShortNumber(FNext, FLast);
  Value = Short.Value;
  if (Take(Short.End, Short.HasPeriod)) return true;
  if (Take(ParseFloatPrefix(FNext, FLast, Value), false)) return true;
  if (!NextClean(Token)) return false;
  IsNumber = TryStrToFloat(Token, Value);
  return true;
}

std::vector<StringView> SplitNumbers(StringView Text, StringView Delimiters) {
  std::vector<StringView> Result;
  TNumberTokens Tokens(Text, Delimiters);
  StringView Token;
  if (!Tokens.Next(Token)) return Result;
  // Tokens shorter than three characters and a delimiter are rare over a whole list.
  Result.reserve(Text.size() / 4 + 2);
  do Result.push_back(Token);
  while (Tokens.Next(Token));
  return Result;
}

void CleanArray(std::vector<StringView>& Texts) {
  for (StringView& Text : Texts) Text = Trim(Text);
  std::erase_if(Texts, [](StringView Text) { return Text.empty(); });
}

std::vector<StringView> SplitClean(StringView Text, StringView Delimiters) {
  std::vector<StringView> Result = SplitString(Text, Delimiters);
  CleanArray(Result);
  return Result;
}

}  // namespace qxsvg
