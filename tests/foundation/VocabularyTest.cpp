// The tables of the vocabulary and the look-ups over them.
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "foundation/Limits.h"
#include "foundation/Lookups.h"
#include "foundation/Options.h"

namespace qxsvg {

namespace {

using enum TSVGElementType;
using enum TSVGStyleProperty;

TEST(Vocabulary, TablesKeepTheOrdinalsThatStreamsHold) {
  EXPECT_EQ(Ordinal(etRectangle), 8u);
  EXPECT_EQ(Ordinal(etALink), 31u);
  EXPECT_EQ(SVGElementTypeNames[72], u"foreignObject");
  EXPECT_EQ(Ordinal(ipFill), 14u);
  EXPECT_EQ(Ordinal(ipOpacity), 34u);
  EXPECT_EQ(SVGStylePropertyNames[54], u"writing-mode");
}

TEST(Vocabulary, SetsHaveTheMembersThatTheRowsMark) {
  const std::tuple<TSVGElementTypes, std::size_t, TSVGElementType, TSVGElementType> Cases[] = {
      {SVGAllElements, 72, etForeignObject, etNone},
      {SVGContainerElements, 7, etPattern, etALink},
      {SVGDescriptiveElements, 3, etMetadata, etComment},
      {SVGShapeElements, 7, etPath, etText},
      {SVGStructuralElements, 6, etALink, etSwitch},
      {SVGGradientElements, 2, etRadialGradient, etGradientStop},
      {SVGTextContentElements, 4, etText, etAltGlyph},
      {SVGTextContentChildElements, 3, etTRef, etText},
      {SVGFilterPrimitiveElements, 19, etFETurbulence, etFilter},
      {SVGUnsupportedElements, 40, etFont, etView},
  };
  for (const auto& [Set, Count, Member, Stranger] : Cases) {
    EXPECT_EQ(Set.Count(), Count) << "with " << Ordinal(Member);
    EXPECT_TRUE(Set.Has(Member) && !Set.Has(Stranger)) << Ordinal(Member);
  }
  for (const int Beyond : {80, 255})
    EXPECT_FALSE(SVGAllElements.Has(static_cast<TSVGElementType>(Beyond)));
  EXPECT_EQ(SVGFontStyleProperties.Count(), 7u);
  EXPECT_EQ(SVGPaintingStyleProperties.Count(), 19u);
  EXPECT_EQ(SVGTextStyleProperties, (TSVGStyleProperties{ipTextAnchor, ipTextDecoration}));
  EXPECT_EQ(SVGClipMaskStyleProperties,
            (TSVGStyleProperties{ipClip, ipClipPath, ipClipRule, ipOpacity}));
  EXPECT_EQ(SVGInheritedProperties.Count(), 40u);
  EXPECT_TRUE(SVGInheritedProperties.Has(ipNone));
  EXPECT_FALSE(SVGInheritedProperties.Has(ipOpacity));
}

TEST(Vocabulary, OddDefaultsStay) {
  EXPECT_EQ(DefaultSVGStylePropertyValues[Ordinal(ipFont)], u"???");
  EXPECT_EQ(DefaultSVGStylePropertyValues[Ordinal(ipColor)], u"");
  EXPECT_EQ(DefaultSVGStylePropertyValues[Ordinal(ipFontFamily)], u"Tahoma");
  // What the standard calls "mathematical" is one letter short for one of two properties.
  EXPECT_EQ(GetSVGAlignmentBaseline(u"mathematica"), TSVGAlignmentBaseline::abMathematical);
  EXPECT_EQ(GetSVGAlignmentBaseline(u"mathematical"), TSVGAlignmentBaseline::abNone);
  EXPECT_EQ(GetSVGDominantBaseline(u"mathematical"), TSVGDominantBaseline::dbMathematical);
  EXPECT_EQ(GetSVGDominantBaseline(u"mathematica"), TSVGDominantBaseline::dbNone);
  EXPECT_EQ(SVGTextAlignNames[0], u"middle");
  EXPECT_EQ(SVGPointerEvents[0], u"none");
}

template <class E, class... Others>
void ExpectWordsGoThereAndBack() {
  const auto& Table = TSVGWords<E>::Table;
  for (std::size_t I = 0; I < Table.size(); ++I) {
    const auto Value = static_cast<E>(I);
    if (Table[I].empty()) continue;
    EXPECT_EQ(SVGValueOf<E>(SVGWordOf(Value)), Value) << ToUtf8(Table[I]);
  }
  EXPECT_EQ(SVGValueOf<E>(u""), E{});
  EXPECT_EQ(SVGValueOf<E>(u"no such word"), E{});
  EXPECT_EQ(SVGWordOf(static_cast<E>(250)), u"");
  EXPECT_EQ(KnownSVGValue(static_cast<E>(250)), E{});
  if constexpr (sizeof...(Others) > 0) ExpectWordsGoThereAndBack<Others...>();
}

TEST(Vocabulary, WordsGoThereAndBack) {
  ExpectWordsGoThereAndBack<TSVGAlign, TSVGCursor, TSVGElementType, TSVGFontWeight,
                            TSVGPointerEvents, TSVGSelectorTokenType, TSVGStyleProperty, TSVGUnit,
                            TSVGWritingMode>();
}

// The hashed look-ups against a plain search, on names, near misses and noise.
TEST(Vocabulary, HashedLookUpsAnswerAsASearchDoes) {
  std::mt19937 Random(20250117);
  std::vector<StringView> Names(SVGElementTypeNames.begin(), SVGElementTypeNames.end());
  Names.insert(Names.end(), SVGStylePropertyNames.begin(), SVGStylePropertyNames.end());
  for (int Round = 0; Round < 20'000; ++Round) {
    String Name(Names[Random() % Names.size()]);
    switch (Random() % 5) {
      case 0: break;
      case 1: Name += static_cast<char16_t>(Random()); break;
      case 2:
        if (!Name.empty())
          Name[Random() % Name.size()] ^= static_cast<char16_t>(1u << Random() % 16);
        break;
      case 3: Name.resize(Name.size() / 2); break;
      default: Name.insert(0, 1, u's'); break;
    }
    ASSERT_EQ(Ordinal(GetSVGElementType(Name)), IndexOf(SVGElementTypeNames, StringView(Name), 1))
        << ToUtf8(Name);
    ASSERT_EQ(Ordinal(GetSVGStyleProperty(Name)), IndexOf(SVGStylePropertyNames, StringView(Name)))
        << ToUtf8(Name);
  }
  EXPECT_EQ(GetSVGElementType(u"SVG"), etNone);
  EXPECT_EQ(GetSVGElementType(u""), etNone);
  EXPECT_EQ(GetSVGStylePropertyOfIdentifier(u"ipStrokeLineJoin"), ipStrokeLineJoin);
  EXPECT_EQ(GetSVGStylePropertyOfIdentifier(u"ipstroke"), ipNone);
}

TEST(Vocabulary, FeaturesAreFoundByTheFullIdentifierOnly) {
  const String Base = u"http://www.w3.org/TR/SVG11/feature#";
  for (const StringView Name : {u"Shape", u"Filter"}) {
    EXPECT_TRUE(GetSVGFeatureSupport(Base + String(Name)));
    EXPECT_FALSE(GetSVGFeatureSupport(Name));
  }
  for (const StringView Name : {u"Image", u"Pattern", u"shape", u""})
    EXPECT_FALSE(GetSVGFeatureSupport(Base + String(Name))) << ToUtf8(Name);
}

TEST(Vocabulary, CursorsOfTheWindowSystemGiveTheFirstWord) {
  using enum TSVGCursor;
  const std::pair<int, TSVGCursor> Cases[] = {
      {0, scrAuto},      {-9, scrE_resize}, {-6, scrNE_resize}, {-8, scrNW_resize},
      {-7, scrN_resize}, {-1, scrNone},     {-21, scrPointer},  {5, scrNone},
  };
  for (const auto& [Platform, Cursor] : Cases)
    EXPECT_EQ(GetSVGCursor(static_cast<TCursor>(Platform)), Cursor) << Platform;
}

TEST(Vocabulary, FontSizesAreTheScaleAboutMedium) {
  EXPECT_EQ(GetSVGFontAbsSize(17.28f), TSVGFontAbsSize::fabXLarge);
  // The unset row stands first and has the same size as medium.
  EXPECT_EQ(GetSVGFontAbsSize(12.0f), TSVGFontAbsSize::fabNone);
  EXPECT_EQ(GetSVGFontAbsSize(13.0f), TSVGFontAbsSize::fabNone);
  EXPECT_EQ(GetSVGFontFamily(u"monospace"), u"Courier New");
  EXPECT_EQ(GetSVGFontFamily(u"Monospace"), u"");
}

TEST(Vocabulary, UnitsAreReadFromTheEndOfALength) {
  using enum TSVGUnit;
  const std::pair<StringView, TSVGUnit> Cases[] = {
      {u"", suNone},     {u"px", suPixels},  {u"PX", suPixels},  {u"eM", suFontSize},
      {u"%", suPercent}, {u"5%", suPercent}, {u"%x", suPercent}, {u"12", suNone},
      {u"p", suNone},    {u"q", suNone},     {u"inch", suNone},
  };
  for (const auto& [Text, Unit] : Cases) EXPECT_EQ(GetSVGUnit(Text), Unit) << ToUtf8(Text);
}

TEST(Vocabulary, OrientationsAreRoundedToQuarterTurns) {
  using H = TSVGGlyphOrientationHorizontal;
  using V = TSVGGlyphOrientationVertical;
  const std::tuple<H, V, std::vector<StringView>> Cases[] = {
      // Halves go to the even quarter.
      {H::oh0Deg, V::ov0Deg, {u"0", u"45", u"-45"}},
      {H::oh90Deg, V::ov90Deg, {u"90deg"}},
      {H::oh180Deg, V::ov180Deg, {u"180DEG", u"135"}},
      {H::oh270Deg, V::ov270Deg, {u"270", u"314.9"}},
      {H::ohNone, V::ovNone, {u"315", u"360", u"-90", u"1e300", u"Auto", u"deg", u""}},
      {H::ohNone, V::ovAuto, {u"auto"}},
  };
  for (const auto& [Horizontal, Vertical, Texts] : Cases)
    for (const StringView Text : Texts) {
      EXPECT_EQ(GetSVGGlyphOrientationHorizontal(Text), Horizontal) << ToUtf8(Text);
      EXPECT_EQ(GetSVGGlyphOrientationVertical(Text), Vertical) << ToUtf8(Text);
    }
}

}  // namespace
}  // namespace qxsvg
