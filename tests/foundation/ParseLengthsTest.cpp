// Lengths, percentages, lists of them, font sizes, rectangles.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "foundation/ParseGeometry.h"
#include "foundation/ParseLengthObjects.h"
#include "foundation/ParseLengths.h"

namespace qxsvg {
namespace {

constexpr TSVGUnit NoUnit = TSVGUnit::suNone, Pixels = TSVGUnit::suPixels,
                   Millimetres = TSVGUnit::suMillimeters, Percent = TSVGUnit::suPercent;

using TRead = std::pair<float, TSVGUnit>;

TRead ReadLength(StringView Text) {
  TSVGUnit Unit = TSVGUnit::suInches;
  const float Value = ParseLength(Text, 2, Unit, SVGUnitFactors);
  return {Value, Unit};
}

TRead ReadInherited(StringView Text, bool& Inherit) {
  TSVGUnit Unit = TSVGUnit::suInches;
  const float Value = ParseLength(Text, 2, Inherit, Unit, SVGUnitFactors);
  return {Value, Unit};
}

TEST(ParseLengths, UnitsAndWhatFails) {
  const std::pair<StringView, TRead> Cases[] = {
      {u" 10PX ", {10, Pixels}},
      {u"5", {5, NoUnit}},
      {u"10 mm", {37.8f, Millimetres}},
      {u"1e1", {10, NoUnit}},
      {u"5%", {5, Percent}},
      // One character has no unit, so that the sign alone is no percentage.
      {u"%", {2, NoUnit}},
      {u"5%x", {2, Percent}},
      // What fails still takes the factor of the unit behind it.
      {u"abcpx", {2, Pixels}},
      {u"abcmm", {7.56f, Millimetres}},
      {u"Infinity", {1e8f, NoUnit}},
      {u"-infinitypx", {-1e8f, Pixels}},
      {u"", {2, TSVGUnit::suInches}},
      {u"3e38in", {std::numeric_limits<float>::max(), TSVGUnit::suInches}},
  };
  for (const auto& [Text, Expected] : Cases) EXPECT_EQ(ReadLength(Text), Expected) << ToUtf8(Text);
}

TEST(ParseLengths, TheInheritingFormKnowsNoInfinity) {
  bool Inherit = true;
  EXPECT_EQ(ReadInherited(u"", Inherit), (TRead{2, TSVGUnit::suInches}));
  EXPECT_TRUE(Inherit);
  EXPECT_EQ(ReadInherited(u"10mm", Inherit), (TRead{37.8f, Millimetres}));
  EXPECT_FALSE(Inherit);
  EXPECT_EQ(ReadInherited(u"infinitypx", Inherit), (TRead{2, Pixels}));
  EXPECT_EQ(ReadInherited(u"inherit", Inherit), (TRead{2, TSVGUnit::suInches}));
  EXPECT_TRUE(Inherit);
}

TEST(ParseLengths, ObjectsKeepWhatIsWritten) {
  TSVGLength Length(5, false, Pixels);
  // One after the other. A failure takes the unit and keeps the size.
  const std::tuple<StringView, float, TSVGUnit> Cases[] = {
      {u"2in", 2, TSVGUnit::suInches}, {u"xpx", 192, Pixels}, {u" ", 192, Pixels},
      {u"-INFINITY", -1e8f, NoUnit},   {u"30%", 30, Percent}, {u"30", 30, NoUnit},
  };
  for (const auto& [Text, Raw, Unit] : Cases) {
    ParseLength(Text, Length);
    EXPECT_EQ(Length.Raw(), Raw) << ToUtf8(Text);
    EXPECT_EQ(Length.Unit(), Unit) << ToUtf8(Text);
    EXPECT_EQ(Length.IsPercent(), Unit == Percent) << ToUtf8(Text);
  }
}

TEST(ParsePercent, FloatForms) {
  const std::tuple<StringView, float, float, float, TSVGUnit> Cases[] = {
      {u"50%", 0, 1, 0.5f, Percent},     {u"0.5", 0, 1, 0.5f, NoUnit},
      {u"50%", 0, 200, 100, Percent},    {u"50%", 100, 200, 150, Percent},
      {u"x%", 0, 200, 2, Percent},       {u"10mm", 0, 200, 37.8f, Millimetres},
      {u"33.3%", 0, 1, 0.333f, Percent}, {u"1e300%", 0, 1, 2, Percent},
      {u"1e38%", 0, 1e38f, 2, Percent},
  };
  for (const auto& [Text, Minimum, Maximum, Value, Its] : Cases) {
    TSVGUnit Unit = TSVGUnit::suInches;
    EXPECT_EQ(ParsePercent(Text, 2, Unit, SVGUnitFactors, Minimum, Maximum), Value) << ToUtf8(Text);
    EXPECT_EQ(Unit, Its) << ToUtf8(Text);
  }
  // A unit left over from elsewhere must not make an empty text a percentage.
  TSVGUnit Unit = Percent;
  EXPECT_EQ(ParsePercent(u"", 2, Unit, SVGUnitFactors), 2);
  EXPECT_EQ(ParsePercent(u"25%", 2, Unit, SVGUnitFactors), 0.25f);
  bool Inherit = false;
  EXPECT_EQ(ParsePercent(u" inherit ", 2, Inherit, Unit, SVGUnitFactors, 0, 1), 2);
  EXPECT_TRUE(Inherit);
}

TEST(ParsePercent, LengthForms) {
  TSVGLength Length;
  ParsePercent(u"50%", Length, 0, 1);
  EXPECT_EQ(Length.Raw(), 0.5f);
  EXPECT_TRUE(Length.IsPercent());
  bool Inherit = false;
  ParsePercent(u"inherit", Length, Inherit, 0, 1);
  EXPECT_TRUE(Inherit);
  EXPECT_EQ(Length.Raw(), 0.5f);
}

TEST(ParseLengths, ListsFollowTheTokens) {
  int Made = 0;
  const auto Make = [&Made](float Value) {
    ++Made;
    return std::make_unique<TSVGLength>(Value, false, NoUnit);
  };
  const auto Creator = TSVGLengthCreateEvent::To(Make);
  TSVGLengths Lengths;
  ParseLengths(u"1 2px,50%-4", Lengths, Creator, 0, 1);
  ASSERT_EQ(Lengths.Count(), 4u);
  EXPECT_EQ(Lengths[2].Raw(), 0.5f);
  EXPECT_EQ(Lengths[3].Raw(), -4);
  const TSVGLength* const First = &Lengths[0];
  ParseLengths(u"9 8", Lengths, Creator, 0, 1);
  ASSERT_EQ(Lengths.Count(), 2u);
  EXPECT_EQ(&Lengths[0], First);
  EXPECT_EQ(Lengths[0].Raw(), 9);
  EXPECT_EQ(Made, 4);
  ParseLengths(u"", Lengths, Creator, 0, 1);
  EXPECT_TRUE(Lengths.IsEmpty());
}

TEST(ParseDashes, OnlyTheDashesAreDoubled) {
  std::vector<bool> IsPercent{true};
  TSVGUnits Units{Pixels};
  EXPECT_EQ(ParseDashes(u"5", IsPercent, Units, SVGUnitFactors, 0, 1), (std::vector<float>{5, 5}));
  EXPECT_EQ(IsPercent, std::vector<bool>{false});
  EXPECT_EQ(Units, TSVGUnits{NoUnit});
  EXPECT_EQ(ParseDashes(u"10% 1mm x1", IsPercent, Units, SVGUnitFactors, 0, 1),
            (std::vector<float>{0.1f, 3.78f, 0, 0.1f, 3.78f, 0}));
  EXPECT_EQ(IsPercent, (std::vector<bool>{true, false, false}));
  EXPECT_EQ(Units, (TSVGUnits{Percent, Millimetres, NoUnit}));
  EXPECT_TRUE(ParseDashes(u"", IsPercent, Units, SVGUnitFactors, 0, 1).empty());
}

TEST(ParseFontSize, WordsUnitsAndTheParent) {
  const std::pair<StringView, float> Cases[] = {
      {u"medium", 12},
      {u"larger", 24},
      {u"smaller", 20 / 1.2f},
      {u"2em", 40},
      {u"2ex", 2},
      {u"150%", 150},
      {u"10mm", 37.8f},
      {u"Medium", 5},
      {u"inherit", 5},
      {u"xem", 100},
      {u"xx-large", 20.736f},
      {u"3e38em", std::numeric_limits<float>::max()},
  };
  for (const auto& [Text, Size] : Cases) {
    bool Inherit = false;
    EXPECT_FLOAT_EQ(ParseFontSize(Text, 5, 20, Inherit, SVGUnitFactors), Size) << ToUtf8(Text);
    EXPECT_EQ(Inherit, Text == u"inherit");
  }
}

TEST(ParseStyleLengths, KeywordsNumbersAndTheMark) {
  TSVGStylePropertyAutoLength Kerning(TSVGStyleProperty::ipKerning);
  ParseKerning(u"3px", Kerning);
  EXPECT_FALSE(Kerning.IsAutomatic());
  EXPECT_EQ(Kerning.Raw(), 3);
  ParseKerning(u"inherit", Kerning);
  EXPECT_TRUE(Kerning.IsParentValue());
  EXPECT_FALSE(Kerning.IsAutomatic());
  ParseKerning(u"", Kerning);
  EXPECT_TRUE(Kerning.IsParentValue());
  // The word of the spacing is none of the kerning.
  ParseKerning(u"normal", Kerning);
  EXPECT_FALSE(Kerning.IsParentValue());
  EXPECT_FALSE(Kerning.IsAutomatic());
  ParseSpacing(u"normal", Kerning);
  EXPECT_TRUE(Kerning.IsAutomatic());
  EXPECT_EQ(Kerning.Raw(), 3);
}

TEST(ParseStyleLengths, BaselineShift) {
  const std::tuple<StringView, TSVGBaselineShift, float> Cases[] = {
      {u"sub", TSVGBaselineShift::bsSubscript, 1},
      {u"25%", TSVGBaselineShift::bsPercentage, 0.25f},
      {u"3px", TSVGBaselineShift::bsLength, 3},
      // The writer's own words for values are no values.
      {u"percentage", TSVGBaselineShift::bsLength, 1},
  };
  for (const auto& [Text, Shift, Raw] : Cases) {
    TSVGBaselineShiftLength Length(TSVGStyleProperty::ipBaselineShift);
    Length.SetRaw(1);
    ParseBaselineShift(Text, Length);
    EXPECT_EQ(Length.GetShift(), Shift) << ToUtf8(Text);
    EXPECT_EQ(Length.Raw(), Raw) << ToUtf8(Text);
    ParseBaselineShift(u"inherit", Length);
    ParseBaselineShift(u" ", Length);
    EXPECT_TRUE(Length.IsParentValue());
  }
}

TEST(ParseRect, FourLengthsOrNothing) {
  EXPECT_EQ(ParseRect(u" 1, 2 10px\n20 ", SVGUnitFactors), TRectF({1, 2, 11, 22}));
  EXPECT_EQ(ParseRect(u"1 2 3", SVGUnitFactors), TRectF());
  EXPECT_EQ(ParseRect(u"1 2 3 4 5", SVGUnitFactors), TRectF());
  // Signs separate nothing here.
  EXPECT_EQ(ParseRect(u"1-2 3 4", SVGUnitFactors), TRectF());

  TSVGLength X(1, false, NoUnit), Y(2, false, NoUnit), Width(3, false, NoUnit),
      Height(4, false, NoUnit);
  const std::array<TSVGLength*, 4> Box{&X, &Y, &Width, &Height};
  EXPECT_EQ(ParseRect(u"10,20", Box), 2);
  EXPECT_EQ(Y.Raw(), 20);
  EXPECT_EQ(Width.Raw(), 3);
  EXPECT_EQ(ParseRect(u"1 2 3 5 6", Box), 4);
  EXPECT_EQ(Height.Raw(), 5);
  EXPECT_EQ(ParseRect(u" , ", Box), 0);
}

TEST(ParseRect, ClipAndEnableBackground) {
  const TRectF Default{9, 9, 9, 9};
  const std::pair<StringView, TRectF> Clips[] = {
      {u"auto", {}},
      {u"RECT(1 2 3px 4)", {4, 1, 2, 3}},
      {u"rect(1 2)", {0, 1, 2, 0}},
      // Commas do not separate: tokens with one are no numbers.
      {u"rect(1, 2, 3, 4)", {4, 0, 0, 0}},
      {u"rect(1,2,3,4)", {}},
      {u"rect(1 2 3 4", Default},
      {u"", Default},
  };
  bool Inherit = false;
  for (const auto& [Text, Rect] : Clips)
    EXPECT_EQ(ParseClipRect(Text, Default, Inherit, SVGUnitFactors), Rect) << ToUtf8(Text);
  TRectF Rect = Default;
  EXPECT_FALSE(ParseEnableBackground(u"accumulate", true, Rect, Inherit, SVGUnitFactors));
  EXPECT_TRUE(ParseEnableBackground(u"new", false, Rect, Inherit, SVGUnitFactors));
  EXPECT_EQ(Rect, Default);
  EXPECT_TRUE(ParseEnableBackground(u"NEW 1 2 3 4", false, Rect, Inherit, SVGUnitFactors));
  EXPECT_EQ(Rect, TRectF({1, 2, 4, 6}));
}

}  // namespace
}  // namespace qxsvg
