// From words to values and back.
//
// A look-up is exact and case-sensitive unless said otherwise, gives the first hit, and gives the
// enumeration's first value where there is none. Nothing here raises or takes memory.
#pragma once

#include "foundation/ElementTypes.h"
#include "foundation/Features.h"
#include "foundation/Keywords.h"
#include "foundation/SelectorTokens.h"
#include "foundation/StyleProperties.h"
#include "foundation/Units.h"

namespace qxsvg {

namespace detail {

template <const auto& Words>
struct TWordsAre {
  static constexpr const auto& Table = Words;
};

}  // namespace detail

// The word table of an enumeration, as TSVGWords<E>::Table.
template <class E>
struct TSVGWords;

// clang-format off
template <> struct TSVGWords<TSVGAlign> : detail::TWordsAre<SVGAlignNames> {};
template <> struct TSVGWords<TSVGAlignmentBaseline> : detail::TWordsAre<SVGAlignmentBaselines> {};
template <> struct TSVGWords<TSVGBaselineShift> : detail::TWordsAre<SVGBaselineShifts> {};
template <> struct TSVGWords<TSVGColorInterpolation> : detail::TWordsAre<SVGColorInterpolationNames> {};
template <> struct TSVGWords<TSVGColorRendering> : detail::TWordsAre<SVGColorRenderingNames> {};
template <> struct TSVGWords<TSVGCoordinateSystemUnit> : detail::TWordsAre<SVGCoordinateSystemUnits> {};
template <> struct TSVGWords<TSVGCursor> : detail::TWordsAre<SVGCursorNames> {};
template <> struct TSVGWords<TSVGDirection> : detail::TWordsAre<SVGDirections> {};
template <> struct TSVGWords<TSVGDominantBaseline> : detail::TWordsAre<SVGDominantBaselines> {};
template <> struct TSVGWords<TSVGElementType> : detail::TWordsAre<SVGElementTypeNames> {};
template <> struct TSVGWords<TSVGFeature> : detail::TWordsAre<SVGFeatures> {};
template <> struct TSVGWords<TSVGFillRule> : detail::TWordsAre<SVGFillRules> {};
template <> struct TSVGWords<TSVGFontAbsSize> : detail::TWordsAre<SVGFontAbsSizes> {};
template <> struct TSVGWords<TSVGFontStyle> : detail::TWordsAre<SVGFontStyles> {};
template <> struct TSVGWords<TSVGFontVariant> : detail::TWordsAre<SVGFontVariants> {};
template <> struct TSVGWords<TSVGFontWeight> : detail::TWordsAre<SVGFontWeights> {};
template <> struct TSVGWords<TSVGGenericFontFamily> : detail::TWordsAre<SVGGenericFontFamily> {};
template <> struct TSVGWords<TSVGGlyphOrientationHorizontal> : detail::TWordsAre<SVGGlyphOrientationHorizontals> {};
template <> struct TSVGWords<TSVGGlyphOrientationVertical> : detail::TWordsAre<SVGGlyphOrientationVerticals> {};
template <> struct TSVGWords<TSVGGradientSpread> : detail::TWordsAre<SVGGradientSpreads> {};
template <> struct TSVGWords<TSVGMarkerUnit> : detail::TWordsAre<SVGMarkerUnitNames> {};
template <> struct TSVGWords<TSVGPointerEvents> : detail::TWordsAre<SVGPointerEvents> {};
template <> struct TSVGWords<TSVGSelectorTokenType> : detail::TWordsAre<SVGSelectorTokenTypes> {};
template <> struct TSVGWords<TSVGShapeRendering> : detail::TWordsAre<SVGShapeRenderingNames> {};
template <> struct TSVGWords<TSVGStyleProperty> : detail::TWordsAre<SVGStylePropertyNames> {};
template <> struct TSVGWords<TSVGTextAlign> : detail::TWordsAre<SVGTextAlignNames> {};
template <> struct TSVGWords<TSVGTextAnchor> : detail::TWordsAre<SVGTextAnchors> {};
template <> struct TSVGWords<TSVGTextDecoration> : detail::TWordsAre<SVGTextDecorations> {};
template <> struct TSVGWords<TSVGTextPathMethod> : detail::TWordsAre<SVGTextPathMethods> {};
template <> struct TSVGWords<TSVGTextPathSpacing> : detail::TWordsAre<SVGTextPathSpacings> {};
template <> struct TSVGWords<TSVGTextRendering> : detail::TWordsAre<SVGTextRenderingNames> {};
template <> struct TSVGWords<TSVGUnit> : detail::TWordsAre<SVGUnitStrings> {};
template <> struct TSVGWords<TSVGVectorEffect> : detail::TWordsAre<SVGVectorEffects> {};
template <> struct TSVGWords<TSVGWritingMode> : detail::TWordsAre<SVGWritingModes> {};
// clang-format on

// The word of a value; empty for one beyond the enumeration.
template <class E>
constexpr StringView SVGWordOf(E Value) {
  constexpr const auto& Table = TSVGWords<E>::Table;
  return Ordinal(Value) < Table.size() ? Table[Ordinal(Value)] : StringView();
}

// Value, or the first value in place of one beyond the enumeration: for what streams hold.
template <class E>
constexpr E KnownSVGValue(E Value) {
  return Ordinal(Value) < TSVGWords<E>::Table.size() ? Value : E{};
}

template <class E>
constexpr E SVGValueOf(StringView Word) {
  return static_cast<E>(IndexOf(TSVGWords<E>::Table, Word));
}

// Every node and every attribute that is read asks these two: they take constant time.
QXSVG_API TSVGElementType GetSVGElementType(StringView Name);
QXSVG_API TSVGStyleProperty GetSVGStyleProperty(StringView Name);
// The property whose enumerator reads so ("ipFill").
QXSVG_API TSVGStyleProperty GetSVGStylePropertyOfIdentifier(StringView Identifier);
constexpr StringView GetSVGStyleName(TSVGStyleProperty Property) {
  return SVGWordOf(Property);
}

QXSVG_API TSVGFeature GetSVGFeature(StringView Identifier);
// Whether the feature of that identifier is supported; an unknown one is not.
QXSVG_API bool GetSVGFeatureSupport(StringView Identifier);

constexpr TSVGAlign GetSVGAlign(StringView Word) {
  return SVGValueOf<TSVGAlign>(Word);
}
constexpr TSVGAlignmentBaseline GetSVGAlignmentBaseline(StringView Word) {
  return SVGValueOf<TSVGAlignmentBaseline>(Word);
}
constexpr TSVGBaselineShift GetSVGBaselineShift(StringView Word) {
  return SVGValueOf<TSVGBaselineShift>(Word);
}
constexpr TSVGDominantBaseline GetSVGDominantBaseline(StringView Word) {
  return SVGValueOf<TSVGDominantBaseline>(Word);
}
constexpr TSVGTextPathMethod GetSVGTextPathMethod(StringView Word) {
  return SVGValueOf<TSVGTextPathMethod>(Word);
}
constexpr TSVGTextPathSpacing GetSVGTextPathSpacing(StringView Word) {
  return SVGValueOf<TSVGTextPathSpacing>(Word);
}
constexpr TSVGColorInterpolation GetSVGColorInterpolation(StringView Word) {
  return SVGValueOf<TSVGColorInterpolation>(Word);
}
constexpr TSVGColorRendering GetSVGColorRendering(StringView Word) {
  return SVGValueOf<TSVGColorRendering>(Word);
}
constexpr TSVGShapeRendering GetSVGShapeRendering(StringView Word) {
  return SVGValueOf<TSVGShapeRendering>(Word);
}
constexpr TSVGTextRendering GetSVGTextRendering(StringView Word) {
  return SVGValueOf<TSVGTextRendering>(Word);
}
constexpr TSVGDirection GetSVGDirection(StringView Word) {
  return SVGValueOf<TSVGDirection>(Word);
}
constexpr TSVGWritingMode GetSVGWritingMode(StringView Word) {
  return SVGValueOf<TSVGWritingMode>(Word);
}
constexpr TSVGPointerEvents GetSVGPointerEvents(StringView Word) {
  return SVGValueOf<TSVGPointerEvents>(Word);
}
constexpr TSVGFillRule GetSVGFillRule(StringView Word) {
  return SVGValueOf<TSVGFillRule>(Word);
}
constexpr TSVGVectorEffect GetSVGVectorEffect(StringView Word) {
  return SVGValueOf<TSVGVectorEffect>(Word);
}
constexpr TSVGMarkerUnit GetSVGMarkerUnit(StringView Word) {
  return SVGValueOf<TSVGMarkerUnit>(Word);
}
constexpr TSVGCoordinateSystemUnit GetSVGGradientUnit(StringView Word) {
  return SVGValueOf<TSVGCoordinateSystemUnit>(Word);
}
constexpr TSVGGradientSpread GetSVGGradientSpread(StringView Word) {
  return SVGValueOf<TSVGGradientSpread>(Word);
}
constexpr TSVGFontWeight GetSVGFontWeight(StringView Word) {
  return SVGValueOf<TSVGFontWeight>(Word);
}
constexpr TSVGFontStyle GetSVGFontStyle(StringView Word) {
  return SVGValueOf<TSVGFontStyle>(Word);
}
constexpr TSVGFontVariant GetSVGFontVariant(StringView Word) {
  return SVGValueOf<TSVGFontVariant>(Word);
}
constexpr TSVGTextAnchor GetSVGTextAnchor(StringView Word) {
  return SVGValueOf<TSVGTextAnchor>(Word);
}
constexpr TSVGTextDecoration GetSVGTextDecoration(StringView Word) {
  return SVGValueOf<TSVGTextDecoration>(Word);
}
constexpr TSVGSelectorTokenType GetSVGSelectorTokenType(StringView Word) {
  return SVGValueOf<TSVGSelectorTokenType>(Word);
}

constexpr TSVGGenericFontFamily GetSVGGenericFontFamily(StringView Word) {
  return SVGValueOf<TSVGGenericFontFamily>(Word);
}
// The installed font for the word of a generic family; empty for any other name.
constexpr StringView GetSVGFontFamily(StringView Word) {
  return SVGGenericFont[Ordinal(GetSVGGenericFontFamily(Word))];
}

constexpr TSVGFontAbsSize GetSVGFontAbsSize(StringView Word) {
  return SVGValueOf<TSVGFontAbsSize>(Word);
}
// The absolute size of exactly so many points. The unset size counts 12 points and stands before
// medium, so that 12 is unset.
constexpr TSVGFontAbsSize GetSVGFontAbsSize(float Points) {
  return static_cast<TSVGFontAbsSize>(IndexOf(SVGFontSizes, Points));
}

constexpr TSVGCursor GetSVGCursor(StringView Word) {
  return SVGValueOf<TSVGCursor>(Word);
}
// The first cursor keyword with that platform cursor.
constexpr TSVGCursor GetSVGCursor(TCursor Platform) {
  return static_cast<TSVGCursor>(IndexOf(SVGCursorMapping, Platform));
}

// The unit that ends Text, which is the name of a unit or the last two characters of a length;
// letters compare without case. "5%" is percent, and "12" has no unit.
QXSVG_API TSVGUnit GetSVGUnit(StringView Text);

// An angle in degrees, with or without "deg" behind the number, rounded to the nearest quarter turn
// (halves to the even one) from 0 to 270 degrees; ohNone and ovNone for others and for text that is
// no number.
QXSVG_API TSVGGlyphOrientationHorizontal GetSVGGlyphOrientationHorizontal(StringView Text);
// The same with "auto" beside the angles.
QXSVG_API TSVGGlyphOrientationVertical GetSVGGlyphOrientationVertical(StringView Text);

}  // namespace qxsvg
