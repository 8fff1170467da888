// Base64, named colours and languages: small readers over tables.
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "runtime/Base64.h"
#include "runtime/Exceptions.h"
#include "runtime/Languages.h"
#include "runtime/NamedColors.h"

namespace qxsvg {
namespace {

TEST(Base64, DecodesWhatPeopleWrite) {
  const std::pair<StringView, std::string_view> Cases[] = {
      {u"", ""},
      {u"Zm9vYmFy", "foobar"},
      {u"Zm9vYg==", "foob"},
      {u"Zm9vYg", "foob"},
      {u"Zm 9v\r\n\tYg=\n=", "foob"},
      {u"Zm9vYg==Zm9v", "foob"},
      {u"Zm-9v\u0161\U0001F600", "foo"},
      {u"Z", ""},
      {u"====", ""},
  };
  for (const auto& [Text, Bytes] : Cases)
    EXPECT_EQ(CharsOf(TBytes(Base64Decode(Text))), Bytes) << ToUtf8(Text);
  const TBytes Narrow = Base64Decode(std::string_view("Zm9v\xC3\xA4"));
  EXPECT_EQ(CharsOf(Narrow), "foo");
}

TEST(Base64, ReadsBackWhatItWrites) {
  std::mt19937 Random(20240616);
  for (std::size_t Size = 0; Size < 70; ++Size) {
    TBytes Bytes(Size);
    for (auto& Byte : Bytes) Byte = static_cast<std::uint8_t>(Random());
    const String Text = Base64Encode(Bytes);
    EXPECT_EQ(Text.size(), (Size + 2) / 3 * 4);
    EXPECT_EQ(Base64Decode(Text), Bytes);
  }
  EXPECT_EQ(Base64Encode(BytesOf("foob"), 4), u"Zm9v\r\nYg==");
}

TEST(NamedColors, AreFoundWithoutRegardToCase) {
  EXPECT_EQ(FindNamedColor(u"red"), 0xFFFF0000u);
  EXPECT_EQ(FindNamedColor(u"LightGoldenRodYellow"), 0xFFFAFAD2u);
  EXPECT_EQ(FindNamedColor(u"DarkGrey"), FindNamedColor(u"darkgray"));
  EXPECT_EQ(FindNamedColor(u"aliceblue"), 0xFFF0F8FFu);
  EXPECT_EQ(FindNamedColor(u"yellowgreen"), 0xFF9ACD32u);
  for (const StringView Name : {u"", u"re", u"redd", u"transparent", u"currentColor", u" red",
                                u"lightgoldenrodyellowlightgoldenrodyellow"})
    EXPECT_FALSE(FindNamedColor(Name)) << ToUtf8(Name);
  std::uint32_t Color = 1;
  EXPECT_TRUE(IdentToAlphaColor(u"CLANavy", Color));
  EXPECT_EQ(Color, 0xFF000080u);
  EXPECT_FALSE(IdentToAlphaColor(u"navy", Color));
  EXPECT_EQ(Color, 0xFF000080u);
}

TEST(NamedColors, HexadecimalDigitsCountFromTheRight) {
  EXPECT_EQ(StringToAlphaColor(u"$FF12aBcD"), 0xFF12ABCDu);
  EXPECT_EQ(StringToAlphaColor(u"$FF12345678"), 0x12345678u);
  EXPECT_EQ(StringToAlphaColor(u"$FF"), 0xFFu);
  EXPECT_EQ(StringToAlphaColor(u"claTeal"), 0xFF008080u);
  for (const StringView Text : {u"", u"$", u"FF", u"$FFxy", u"$FF 00", u"teal", u"$-1"})
    EXPECT_THROW(StringToAlphaColor(Text), EConvertError) << ToUtf8(Text);
}

TEST(Languages, ComeFromTheEnvironment) {
  using View = std::string_view;
  const std::tuple<View, View, View, View, std::vector<String>> Cases[] = {
      {"", "", "", "de_DE.UTF-8", {u"de-DE"}},
      {"", "", "fr_CH@euro", "de_DE.UTF-8", {u"fr-CH"}},
      {"", "it", "fr_CH", "de_DE.UTF-8", {u"it"}},
      {"de_AT:de:en", "", "", "de_AT.UTF-8", {u"de-AT", u"de", u"en"}},
      {"de", "C", "", "", {u"en-US"}},
      {"de", "C.UTF-8", "", "fr_FR", {u"en-US"}},
      {"", "", "", "", {u"en-US"}},
      {"::", "", "", "POSIX", {u"en-US"}},
      {"../etc:pt_BR", "", "", "en_GB", {u"pt-BR", u"en-GB"}},
  };
  for (const auto& [Language, All, Messages, Lang, Tags] : Cases)
    EXPECT_EQ(PreferredUILanguages(Language, All, Messages, Lang), Tags);
  EXPECT_FALSE(PreferredUILanguages().empty());
}

}  // namespace
}  // namespace qxsvg
