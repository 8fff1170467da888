// Values as text.
#include "foundation/Writers.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "foundation/Length.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

using enum TSVGUnit;
constexpr StringView Default = u"0.###";

TEST(Writers, NumbersCarryTheirUnit) {
  const std::tuple<float, TSVGUnit, StringView> Cases[] = {
      {1.5f, suPixels, u"1.5"}, {1.5f, suMillimeters, u"1.5mm"}, {1.5f, suPercent, u"1.5%"},
      {1.5f, suNone, u"1.5"},   {-0.0001f, suFontSize, u"0em"},  {0.12345f, suInches, u"0.123in"},
      {2, TSVGUnit{99}, u"2"},
  };
  for (const auto& [Value, Unit, Text] : Cases)
    EXPECT_EQ(SVGNumberToString(Value, Unit, Default), Text);
  EXPECT_EQ(SVGNumberToString(1.25f, suPixels, TFloatFormat(u"0.0")), u"1.3");
  EXPECT_THROW(SVGNumberToString(1, suNone, u"'"), EConvertError);
}

TEST(Writers, ListsArePutTogether) {
  const std::array Values{1.0f, 2.5f, -3.0f};
  EXPECT_EQ(SVGNumbersToString(Values, Default, u", "), u"1, 2.5, -3");
  EXPECT_EQ(SVGNumbersToString({}, Default, u","), u"");
  const std::array Points{TPointF{1, 2}, TPointF{3.5f, 4}};
  EXPECT_EQ(SVGPointToString(Points[1], suMillimeters, Default), u"3.5mm,4mm");
  EXPECT_EQ(SVGPointsToString(Points, suNone, Default), u"1,2 3.5,4");
  EXPECT_EQ(SVGRectToString({1, 2, 11, 22}, suNone, Default), u"1 2 10 20");
  TSVGLengths Lengths;
  Lengths.Add(std::make_unique<TSVGLength>(0.5f, true, suPercent));
  Lengths.Add(std::make_unique<TSVGLength>(3.0f, false, suPoints));
  EXPECT_EQ(SVGLengthsToString(Lengths, Default, 0, 100, u" "), u"50% 3pt");
}

TEST(Writers, PercentagesAreScaledToTheirRange) {
  EXPECT_EQ(SVGLengthToString(0.5f, true, suPercent, Default, 0, 100), u"50%");
  EXPECT_EQ(SVGLengthToString(0.5f, true, suPercent, Default, 50, 100), u"75%");
  EXPECT_EQ(SVGLengthToString(0.5f, false, suNone, Default, 0, 100), u"0.5");
  EXPECT_EQ(SVGLengthToString(TSVGLength(0.125f, true, suPercent), Default, 0, 100), u"12.5%");
}

TEST(Writers, ColoursGoByNameOrWithoutTheirAlpha) {
  const std::pair<TQXGPColor, StringView> Cases[] = {
      {0, u"#000000"},          {0xff000000, u"black"},   {0xffff0000, u"red"},
      {0xff00ffff, u"aqua"},    {0xff123abc, u"#123abc"}, {0x80ff0000, u"#ff0000"},
      {0x00ffffff, u"#ffffff"}, {0xff808080, u"gray"},
  };
  for (const auto& [Color, Text] : Cases) EXPECT_EQ(SVGColorToString(Color), Text);
  EXPECT_EQ(SVGColorToGrayscale(0x40ff0000), 0x404c4c4cu);
}

TEST(Writers, StrokesHaveTheirWords) {
  const StringView Caps[] = {u"butt", u"square", u"round", u"round", u"butt", u"square", u"round"};
  for (std::size_t I = 0; I < std::size(Caps); ++I)
    EXPECT_EQ(SVGStrokeCapToString(static_cast<TQXGPLineCap>(I)), Caps[I]) << I;
  const StringView Joins[] = {u"miter", u"bevel", u"round", u"miter"};
  for (std::size_t I = 0; I < std::size(Joins); ++I)
    EXPECT_EQ(SVGStrokeJoinToString(static_cast<TQXGPStrokeJoin>(I)), Joins[I]) << I;
}

TEST(Writers, TransformsTakeTheShortestForm) {
  const std::pair<TMatrix, StringView> Cases[] = {
      {{1, 0, 0, 0, 1, 0, 0, 0, 1}, u""},
      {{1, 1e-6f, 0, 0, 1, 0, 0, 0, 1}, u""},
      {{1, 0, 0, 0, 1, 0, 1, 2, 1}, u"translate(1 2)"},
      {{2, 0, 0, 0, 0.25f, 0, 0, 0, 1}, u"scale(2 0.25)"},
      {{1, 0, 0, 0, 2, 0, 5, 0, 1}, u"matrix(1 0 0 2 5 0)"},
      {{0, 1, 0, -1, 0, 0, 0, 0, 1}, u"matrix(0 1 -1 0 0 0)"},
      {{2, 1e-7f, 0, 0, 2, 0, 0, 0, 1}, u"matrix(2 1E-7 0 2 0 0)"},
      {{2, 0, 0, 0, 2, 0, 0, 0, 3}, u"matrix(2 0 0 2 0 0)"},
  };
  for (const auto& [Matrix, Text] : Cases) EXPECT_EQ(SVGTransformationToString(Matrix), Text);
}

TEST(Writers, PixelsComeBackFromUnits) {
  EXPECT_EQ(PixelsToSVGUnit(96, suInches, SVGUnitFactors), 1);
  EXPECT_EQ(PixelsToSVGUnit(0.5f, suPercent, SVGUnitFactors), 50);
  EXPECT_EQ(PixelsToSVGUnit(7, suPixels, TSVGUnitFactors{}), 7);
  EXPECT_EQ(PixelsToSVGUnit(7, TSVGUnit{200}, SVGUnitFactors), 7);
}

TEST(Writers, NumbersThatAreNotFiniteStayReadable) {
  constexpr float Infinity = std::numeric_limits<float>::infinity();
  for (const float Value : {Infinity, -Infinity, std::numeric_limits<float>::quiet_NaN()}) {
    const String Text = SVGNumberToString(Value, suNone, Default);
    EXPECT_EQ(Text.find_first_not_of(u"-+.0123456789E"), String::npos) << ToUtf8(Text);
    TMatrix M;
    M.m31 = Value;
    const String Transform = SVGTransformationToString(M);
    EXPECT_EQ(Transform.find(u"inf"), String::npos) << ToUtf8(Transform);
    EXPECT_EQ(Transform.find(u"nan"), String::npos) << ToUtf8(Transform);
  }
}

TEST(Writers, AlignmentsTurnIntoAnchors) {
  EXPECT_EQ(GetTextAlign(TSVGTextAlign::staCenter), TQXGPStringAlignment::saCenter);
  EXPECT_EQ(GetTextAlign(TSVGTextAlign::staTrailing), TQXGPStringAlignment::saFar);
  EXPECT_EQ(GetSVGTextAnchor(TSVGTextAlign::staCenter), TSVGTextAnchor::taMiddle);
  EXPECT_EQ(GetSVGTextAnchor(TSVGTextAlign::staTrailing), TSVGTextAnchor::taEnd);
}

}  // namespace
}  // namespace qxsvg
