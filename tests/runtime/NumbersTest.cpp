// Numbers as text and back.
#include "runtime/Numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "runtime/Exceptions.h"
#include "runtime/FloatFormat.h"

namespace qxsvg {
namespace {

TEST(Numbers, EveryFloatReadsBackAsItself) {
  std::mt19937 Random(20240612);
  for (int Round = 0; Round < 200'000; ++Round) {
    const float Value = std::bit_cast<float>(static_cast<std::uint32_t>(Random()));
    if (!std::isfinite(Value)) continue;
    const String Text = FloatToStr(Value);
    ASSERT_EQ(StrToFloat(Text), Value) << ToUtf8(Text);
  }
}

TEST(Numbers, ReadingRoundsAsTheStandardLibraryDoes) {
  std::mt19937 Random(20240613);
  for (int Round = 0; Round < 50'000; ++Round) {
    std::string Text;
    if (Random() % 3 == 0) Text += Random() % 2 ? '-' : '+';
    for (unsigned I = Random() % 22; I > 0; --I) Text += static_cast<char>('0' + Random() % 10);
    Text += '.';
    for (unsigned I = 1 + Random() % 22; I > 0; --I) Text += static_cast<char>('0' + Random() % 10);
    if (Random() % 2) Text += "e" + std::to_string(static_cast<int>(Random() % 50) - 40);
    double Value = 0;
    ASSERT_TRUE(TryStrToFloat(FromUtf8(Text), Value)) << Text;
    ASSERT_EQ(Value, std::strtod(Text.c_str(), nullptr)) << Text;
    float Single = 0;
    if (TryStrToFloat(FromUtf8(Text), Single)) {
      ASSERT_EQ(Single, std::strtof(Text.c_str(), nullptr)) << Text;
    }
  }
}

TEST(Numbers, GrammarOfNumbers) {
  const std::pair<StringView, double> Numbers[] = {
      {u"1", 1},       {u" +.5 ", 0.5}, {u"5.", 5},     {u"-0", 0},
      {u"1e-2", 0.01}, {u"1E+2", 100},  {u"1e-400", 0}, {u"0e99999999999", 0},
  };
  for (const auto& [Text, Expected] : Numbers) {
    double Value = -77;
    EXPECT_TRUE(TryStrToFloat(Text, Value)) << ToUtf8(Text);
    EXPECT_EQ(Value, Expected) << ToUtf8(Text);
  }
  double Value = -77;
  for (const StringView Text : {u"", u".", u"-", u"e5", u"1e", u"1e+", u"1 2", u"0x10", u"inf",
                                u"nan", u"1,5", u"1e400", u"\uFF11", u"+-1"})
    EXPECT_FALSE(TryStrToFloat(Text, Value)) << ToUtf8(Text);
  EXPECT_EQ(Value, -77);
  EXPECT_THROW(StrToFloat(u"1e39"), EConvertError);
  EXPECT_THROW(StrToFloat(u"red"), EConvertError);
}

TEST(Numbers, PrefixEndsWhereTheNumberEnds) {
  const std::pair<StringView, std::ptrdiff_t> Cases[] = {{u"10px", 2}, {u"1.5.5", 3}, {u"1-2", 1},
                                                         {u"2em", 1},  {u"2e3m", 3},  {u"px", 0}};
  for (const auto& [Text, Length] : Cases) {
    float Value = 0;
    const char16_t* const End = ParseFloatPrefix(Text.data(), Text.data() + Text.size(), Value);
    EXPECT_EQ(End - Text.data(), Length) << ToUtf8(Text);
  }
}

TEST(Numbers, IntegersStopAtTheirRange) {
  std::int32_t Value = -7;
  EXPECT_TRUE(TryStrToInt(u" -2147483648 ", Value));
  EXPECT_EQ(Value, std::numeric_limits<std::int32_t>::min());
  for (const StringView Text : {u"2147483648", u"", u"-", u"1.0", u"0x1", u"99999999999999999999"})
    EXPECT_FALSE(TryStrToInt(Text, Value)) << ToUtf8(Text);
  EXPECT_EQ(Value, std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(IntToStr(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

TEST(Numbers, WrittenFormsCanAlwaysBeReadBack) {
  EXPECT_EQ(FloatToStr(0.1), u"0.1");
  EXPECT_EQ(FloatToStr(-0.0), u"0");
  EXPECT_EQ(FloatToStr(1e15), u"1E15");
  EXPECT_EQ(FloatToStr(0.00001), u"1E-5");
  EXPECT_EQ(FloatToStr(0.1f), u"0.1");
  EXPECT_EQ(StrToFloat(FloatToStr(std::numeric_limits<double>::infinity())),
            std::numeric_limits<float>::max());
  EXPECT_EQ(FloatToStr(std::nan("")), u"0");
}

TEST(FloatFormat, Patterns) {
  const std::pair<StringView, std::vector<std::pair<double, StringView>>> Cases[] = {
      {u"0.###",
       {{1.5, u"1.5"},
        {2, u"2"},
        {0.0004, u"0"},
        {-0.0004, u"0"},
        {0.0005, u"0.001"},
        {-1.2345, u"-1.235"},
        {2.5e-5, u"0"},
        {123456789.25, u"123456789.25"},
        {1e300, u"1E300"}}},
      // The digits of the decimal number count, not those of the binary one.
      {u"0.00", {{1.005, u"1.01"}}},
      {u"#.##", {{0.5, u".5"}, {0, u"0"}}},
      {u"000.0", {{7.25, u"007.3"}}},
      {u"#,##0.0", {{1234567.89, u"1,234,567.9"}}},
      {u"0.0E+00", {{12345, u"1.2E+04"}}},
      {u"0.#e-0", {{0.00012, u"1.2e-4"}}},
      {u"0'px'", {{12, u"12px"}}},
      {u"0;(0);'none'", {{-5, u"(5)"}, {0, u"none"}, {5, u"5"}}},
      {u"", {{0.25, u"0.25"}}},
  };
  for (const auto& [Pattern, Numbers] : Cases)
    for (const auto& [Value, Text] : Numbers)
      EXPECT_EQ(FormatFloat(Pattern, Value), Text) << ToUtf8(Pattern);
}

TEST(FloatFormat, RefusesWhatIsNoPattern) {
  for (const StringView Pattern : {u"0.0.0", u"0'px", u"0;0;0;0", u"px", u"0E+0E+0"})
    EXPECT_THROW(TFloatFormat{Pattern}, EConvertError) << ToUtf8(Pattern);
  EXPECT_THROW(TFloatFormat(String(TFloatFormat::MaxPatternLength + 1, u'0')), EConvertError);
}

// The way through integers that most numbers take must write what the general way writes.
TEST(FloatFormat, ThreePlacesAgreeWithIntegers) {
  const TFloatFormat Format(u"0.###");
  std::mt19937 Random(20240614);
  for (int Round = 0; Round < 100'000; ++Round) {
    const auto Thousandths = static_cast<std::int64_t>(Random() % 2'000'000'000) - 1'000'000'000;
    const String Text = Format.Format(static_cast<double>(Thousandths) / 1000);
    double Value = 0;
    ASSERT_TRUE(TryStrToFloat(Text, Value));
    ASSERT_EQ(std::llround(Value * 1000), Thousandths) << ToUtf8(Text);
    ASSERT_FALSE(Text.find(u'.') != String::npos && Text.back() == u'0') << ToUtf8(Text);
  }
}

}  // namespace
}  // namespace qxsvg
