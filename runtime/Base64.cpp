#include "runtime/Base64.h"

#include <algorithm>
#include <array>

namespace qxsvg {

namespace {

constexpr std::string_view Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t NoDigit = 0xFF;

constexpr std::array<std::uint8_t, 128> Digits = [] {
  std::array<std::uint8_t, 128> Table{};
  Table.fill(NoDigit);
  for (std::size_t I = 0; I < Alphabet.size(); ++I)
    Table[static_cast<std::size_t>(Alphabet[I])] = static_cast<std::uint8_t>(I);
  return Table;
}();

template <class Char>
std::uint8_t DigitOf(Char C) {
  const auto Code = static_cast<std::make_unsigned_t<Char>>(C);
  return Code < Digits.size() ? Digits[Code] : NoDigit;
}

template <class Char>
TBytes Decode(std::basic_string_view<Char> Text) {
  TBytes Result;
  Result.reserve(Text.size() / 4 * 3 + 3);
  std::uint32_t Bits = 0;
  int BitCount = 0;
  for (const Char C : Text) {
    if (C == Char('=')) break;
    const std::uint8_t Digit = DigitOf(C);
    if (Digit == NoDigit) continue;
    Bits = Bits << 6 | Digit;
    BitCount += 6;
    if (BitCount == 24) {
      const std::uint8_t Three[] = {static_cast<std::uint8_t>(Bits >> 16),
                                    static_cast<std::uint8_t>(Bits >> 8),
                                    static_cast<std::uint8_t>(Bits)};
      Result.insert(Result.end(), std::begin(Three), std::end(Three));
      BitCount = 0;
    }
  }
  for (; BitCount >= 8; BitCount -= 8)
    Result.push_back(static_cast<std::uint8_t>(Bits >> (BitCount - 8)));
  return Result;
}

}  // namespace

TBytes Base64Decode(StringView Text) {
  return Decode(Text);
}
TBytes Base64Decode(std::string_view Text) {
  return Decode(Text);
}

String Base64Encode(TBytesView Bytes, std::size_t LineLength) {
  String Result;
  Result.reserve((Bytes.size() + 2) / 3 * 4);
  std::size_t Column = 0;
  const auto Put = [&](char16_t C) {
    if (LineLength > 0 && Column == LineLength) {
      Result += u"\r\n";
      Column = 0;
    }
    Result.push_back(C);
    ++Column;
  };
  for (std::size_t I = 0; I < Bytes.size(); I += 3) {
    const std::size_t Count = std::min<std::size_t>(3, Bytes.size() - I);
    std::uint32_t Bits = 0;
    for (std::size_t J = 0; J < 3; ++J) Bits = Bits << 8 | (J < Count ? Bytes[I + J] : 0u);
    for (std::size_t J = 0; J < 4; ++J)
      Put(J <= Count ? static_cast<char16_t>(Alphabet[Bits >> (18 - 6 * J) & 63]) : u'=');
  }
  return Result;
}

}  // namespace qxsvg
