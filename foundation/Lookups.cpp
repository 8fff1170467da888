#include "foundation/Lookups.h"

#include <cmath>

#include "runtime/Numbers.h"

namespace qxsvg {

namespace {

constexpr TWordIndex ElementTypeIndex(SVGElementTypeNames);
constexpr TWordIndex StylePropertyIndex(SVGStylePropertyNames);
// A poor hash would show here first.
static_assert(ElementTypeIndex.LongestProbe() <= 8 && StylePropertyIndex.LongestProbe() <= 8);

// The value as many quarter turns behind Upright as the text says, or None.
template <class E>
E OrientationOf(StringView Text, E None, E Upright) {
  constexpr StringView Degrees = u"deg";
  if (EndsText(Degrees, Text)) Text.remove_suffix(Degrees.size());
  double Angle = 0;
  if (!TryStrToFloat(Text, Angle)) return None;
  const double Turns = std::nearbyint(Angle / 90);
  if (!(Turns >= 0 && Turns <= 3)) return None;
  return static_cast<E>(Ordinal(Upright) + static_cast<std::size_t>(Turns));
}

}  // namespace

TSVGElementType GetSVGElementType(StringView Name) {
  return static_cast<TSVGElementType>(ElementTypeIndex.IndexOf(Name));
}

TSVGStyleProperty GetSVGStyleProperty(StringView Name) {
  return static_cast<TSVGStyleProperty>(StylePropertyIndex.IndexOf(Name));
}

TSVGStyleProperty GetSVGStylePropertyOfIdentifier(StringView Identifier) {
  return static_cast<TSVGStyleProperty>(IndexOf(SVGStylePropertyIdentifiers, Identifier));
}

TSVGFeature GetSVGFeature(StringView Identifier) {
  // The word of the unknown feature is a name for messages and no feature string.
  return static_cast<TSVGFeature>(IndexOf(SVGFeatures, Identifier, 1));
}

bool GetSVGFeatureSupport(StringView Identifier) {
  return SVGFeatureSupport[Ordinal(GetSVGFeature(Identifier))];
}

TSVGUnit GetSVGUnit(StringView Text) {
  if (Text.empty()) return TSVGUnit::suNone;
  // Most lengths have no unit, and no unit ends in a digit.
  const bool MayBeUnit = Text.back() < u'0' || Text.back() > u'9';
  for (std::size_t I = Ordinal(TSVGUnit::suPixels); MayBeUnit && I < SVGUnitStrings.size(); ++I)
    if (SameText(Text, SVGUnitStrings[I])) return static_cast<TSVGUnit>(I);
  const bool EndsInPercent =
      Text.back() == u'%' || (Text.size() >= 2 && Text[Text.size() - 2] == u'%');
  return EndsInPercent ? TSVGUnit::suPercent : TSVGUnit::suNone;
}

TSVGGlyphOrientationHorizontal GetSVGGlyphOrientationHorizontal(StringView Text) {
  using enum TSVGGlyphOrientationHorizontal;
  return OrientationOf(Text, ohNone, oh0Deg);
}

TSVGGlyphOrientationVertical GetSVGGlyphOrientationVertical(StringView Text) {
  using enum TSVGGlyphOrientationVertical;
  return Text == SVGWordOf(ovAuto) ? ovAuto : OrientationOf(Text, ovNone, ov0Deg);
}

}  // namespace qxsvg
