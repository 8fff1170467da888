// Number lists, numbers, points and angles.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <tuple>

#include "foundation/ParseGeometry.h"
#include "foundation/ParseNumbers.h"
#include "foundation/ParseTokens.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

using TTexts = std::vector<StringView>;

std::string Quoted(StringView Text) {
  return "\"" + ToUtf8(Text) + "\"";
}

TEST(ParseTokens, WhereNumbersEnd) {
  const std::pair<StringView, TTexts> Cases[] = {
      {u"1,,2", {u"1", u"2"}},
      {u", 1\r\n2 ,", {u"1", u"2"}},
      {u"1-2+3", {u"1", u"-2", u"+3"}},
      {u"1e-2-3E+4", {u"1e-2", u"-3E+4"}},
      {u".5.5", {u".5", u".5"}},
      {u"1.2.3", {u"1.2", u".3"}},
      {u"-.5-.5", {u"-.5", u"-.5"}},
      // A period behind an E belongs to the token even when there was one before.
      {u"1.5e.5.5", {u"1.5e.5", u".5"}},
      {u"1e5.3", {u"1e5.3"}},
      {u"10px 50%", {u"10px", u"50%"}},
      // A tab separates nothing.
      {u"1\t2", {u"1\t2"}},
      // The last character alone counts only when it is a digit.
      {u"7", {u"7"}},
      {u"x", {}},
      {u"1 2 x", {u"1", u"2"}},
      {u"1 2-", {u"1", u"2"}},
      {u"1 2 -3", {u"1", u"2", u"-3"}},
      {u"", {}},
      {u" ,\n", {}},
  };
  for (const auto& [Text, Tokens] : Cases)
    EXPECT_EQ(SplitNumbers(Text, SVGNumberSeparators), Tokens) << Quoted(Text);
  EXPECT_EQ(SplitNumbers(u"1;2 3Z4", u";Z"), (TTexts{u"1", u"2 3", u"4"}));
}

TEST(ParseTokens, CleaningKeepsTheOrder) {
  TTexts Texts{u" b ", u"", u"\t\r", u"a", u"\u00A0"};
  CleanArray(Texts);
  EXPECT_EQ(Texts, (TTexts{u"b", u"a", u"\u00A0"}));
}

// Reading a list in one pass must find the same tokens and the same numbers as cutting it first.
TEST(ParseTokens, OnePassReadsWhatCuttingFinds) {
  std::mt19937 Random(4711);
  constexpr StringView Alphabet = u"0123456789..--+eE, \n\tx%";
  for (int Round = 0; Round < 20'000; ++Round) {
    String Text;
    for (unsigned I = Random() % 16; I > 0; --I) Text += Alphabet[Random() % Alphabet.size()];
    TTexts Tokens = SplitNumbers(Text, SVGNumberSeparators);
    CleanArray(Tokens);
    const std::vector<float> Values = ParseNumbers(Text, {});
    ASSERT_EQ(Values.size(), Tokens.size()) << Quoted(Text);
    for (std::size_t I = 0; I < Tokens.size(); ++I) {
      bool Inherit = false;
      ASSERT_EQ(Values[I], ParseNumber(Tokens[I], 0, Inherit)) << Quoted(Text) << " at " << I;
    }
  }
}

TEST(ParseNumbers, WordsFailuresAndInheritance) {
  const std::pair<float, TTexts> Cases[] = {
      {1.5f, {u" 1.5 "}},
      {1e8f, {u"INFINITY"}},
      {-1e8f, {u"-Infinity"}},
      {7, {u"+Infinity", u"nan", u"1e39", u"0x10", u"", u"  ", u"inherit", u"Inherit"}},
  };
  for (const auto& [Value, Texts] : Cases)
    for (const StringView Text : Texts)
      for (const bool Before : {false, true}) {
        bool Inherit = Before;
        EXPECT_EQ(ParseNumber(Text, 7, Inherit), Value) << Quoted(Text);
        // An empty text leaves the mark, any other decides it.
        EXPECT_EQ(Inherit, Trim(Text).empty() ? Before : Text == u"inherit") << Quoted(Text);
      }
}

TEST(ParseNumbers, BadTokensTakeTheDefaultAtTheirPlace) {
  const float Defaults[] = {10, 20};
  EXPECT_EQ(ParseNumbers(u"x1 2 x3 infinity", Defaults), (std::vector<float>{10, 2, 0, 1e8f}));
  EXPECT_EQ(ParseNumbers(u"1,,2", Defaults), (std::vector<float>{1, 2}));
  EXPECT_TRUE(ParseNumbers(u"", Defaults).empty());
}

TEST(ParseNumbers, AnglesAreRadians) {
  constexpr float Quarter = static_cast<float>(std::numbers::pi / 2);
  const std::tuple<StringView, float, bool> Cases[] = {
      {u"90", Quarter, false},       {u"100 grad", Quarter, false},
      {u"1 RAD", 1, false},          {u"90  deg", Quarter, false},
      {u"90 turns", Quarter, false}, {u"90deg", 7, false},
      {u"1.57rad", 7, false},        {u"auto", 7, true},
      {u"Auto", 7, false},           {u"-1e308", -3.4028235e38f, false},
  };
  for (const auto& [Text, Radians, IsAuto] : Cases) {
    bool Auto = !IsAuto;
    EXPECT_FLOAT_EQ(ParseAngle(Text, 7, Auto), Radians) << Quoted(Text);
    EXPECT_EQ(Auto, IsAuto) << Quoted(Text);
  }
  bool Auto = true;
  EXPECT_EQ(ParseAngle(u" ", 7, Auto), 7);
  EXPECT_TRUE(Auto);
}

TEST(ParsePoints, PairsAndFailures) {
  EXPECT_EQ(ParsePoints(u" 10,20 30-40 "), (TQXPoints{{10, 20}, {30, -40}}));
  EXPECT_TRUE(ParsePoints(u"").empty());
  // An odd last token is not even read.
  EXPECT_EQ(ParsePoints(u"1,2 x3"), (TQXPoints{{1, 2}}));
  for (const StringView Bad : {u"1,x2", u"x1,2", u"1e39 0", u"1px,2", u"infinity,1", u"1\t2 3"})
    EXPECT_THROW(ParsePoints(Bad), EConvertError) << Quoted(Bad);
}

}  // namespace
}  // namespace qxsvg
