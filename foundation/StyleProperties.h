// The style properties: one table says all that is known of each; names, defaults and sets come
// from it.
#pragma once

#include "foundation/WordTable.h"
#include "runtime/EnumSet.h"

namespace qxsvg {

enum class TSVGStyleProperty : std::uint8_t {
  ipNone,
  ipAlignmentBaseline,
  ipBaselineShift,
  ipClip,
  ipClipPath,
  ipClipRule,
  ipColor,
  ipColorInterpolation,
  ipColorRendering,
  ipCursor,
  ipDirection,
  ipDisplay,
  ipDominantBaseline,
  ipEnableBackground,
  ipFill,
  ipFillOpacity,
  ipFillRule,
  ipFilter,
  ipFloodColor,
  ipFloodOpacity,
  ipFont,
  ipFontFamily,
  ipFontSize,
  ipFontStyle,
  ipFontVariant,
  ipFontWeight,
  ipGlyphOrientationHorizontal,
  ipGlyphOrientationVertical,
  ipKerning,
  ipLetterSpacing,
  ipMarker,
  ipMarkerEnd,
  ipMarkerMid,
  ipMarkerStart,
  ipOpacity,
  ipOverflow,
  ipPointerEvents,
  ipShapeRendering,
  ipStopColor,
  ipStopOpacity,
  ipStroke,
  ipStrokeDasharray,
  ipStrokeDashOffset,
  ipStrokeLinecap,
  ipStrokeLineJoin,
  ipStrokeMiterLimit,
  ipStrokeOpacity,
  ipStrokeWidth,
  ipTextAnchor,
  ipTextDecoration,
  ipTextRendering,
  ipVectorEffect,
  ipVisibility,
  ipWordSpacing,
  ipWritingMode,
};

inline constexpr std::size_t SVGStylePropertyCount = CountUpTo(TSVGStyleProperty::ipWritingMode);

using TSVGStyleProperties = TEnumSet<TSVGStyleProperty>;

inline constexpr TSVGStyleProperties SVGAllStyleProperties = TSVGStyleProperties::Range(
    TSVGStyleProperty::ipAlignmentBaseline, TSVGStyleProperty::ipWritingMode);

// The groups that a property counts among: the marks of SVGStylePropertyRows.
namespace StyleGroup {
enum : std::uint8_t {
  None = 0,
  Font = 1 << 0,
  Media = 1 << 1,
  Text = 1 << 2,
  ClipMask = 1 << 3,
  Filter = 1 << 4,
  Gradient = 1 << 5,
  Painting = 1 << 6,
};
}

// Where an element keeps the value of a property.
enum class TSVGStyleHome : std::uint8_t {
  shNone,
  // A field of the element itself.
  shElement,
  // A length object of the element.
  shLength,
  // Part of one of the element's paint objects.
  shBrush,
  shPen,
  shFont,
  // The three marker references: the property is a shorthand for them.
  shMarkers,
  // Gradient stops only.
  shGradientStop,
  // Nowhere but in the strings of the element's style.
  shStrings,
};

struct TSVGStylePropertyRow {
  TSVGStyleProperty Property;
  // The enumerator as text, which streams hold; without its first two letters it is the name of the
  // published mark.
  StringView Identifier;
  // The name in CSS and XML.
  StringView Name;
  // The text of the initial value. Empty for color, and a placeholder for the font shorthand, which
  // has no initial value of its own.
  StringView Default;
  bool IsInherited;
  TSVGStyleHome Home;
  std::uint8_t Groups;
};

inline constexpr auto SVGStylePropertyRows = [] {
  using enum TSVGStyleProperty;
  using enum TSVGStyleHome;
  using namespace StyleGroup;
  return std::array<TSVGStylePropertyRow, SVGStylePropertyCount>{{
      {ipNone, u"ipNone", u"", u"", true, shNone, None},
      {ipAlignmentBaseline, u"ipAlignmentBaseline", u"alignment-baseline", u"auto", false,
       shElement, None},
      {ipBaselineShift, u"ipBaselineShift", u"baseline-shift", u"baseline", false, shLength, None},
      {ipClip, u"ipClip", u"clip", u"auto", false, shElement, ClipMask},
      {ipClipPath, u"ipClipPath", u"clip-path", u"none", false, shElement, ClipMask},
      {ipClipRule, u"ipClipRule", u"clip-rule", u"nonzero", true, shElement, ClipMask},
      {ipColor, u"ipColor", u"color", u"", true, shElement, Painting},
      {ipColorInterpolation, u"ipColorInterpolation", u"color-interpolation", u"sRGB", true,
       shElement, Painting},
      {ipColorRendering, u"ipColorRendering", u"color-rendering", u"auto", true, shElement,
       Painting},
      {ipCursor, u"ipCursor", u"cursor", u"auto", true, shElement, Media},
      {ipDirection, u"ipDirection", u"direction", u"ltr", true, shElement, None},
      {ipDisplay, u"ipDisplay", u"display", u"inline", false, shElement, Media},
      {ipDominantBaseline, u"ipDominantBaseline", u"dominant-baseline", u"auto", false, shElement,
       None},
      {ipEnableBackground, u"ipEnableBackground", u"enable-background", u"accumulate", false,
       shElement, None},
      {ipFill, u"ipFill", u"fill", u"black", true, shBrush, Painting},
      {ipFillOpacity, u"ipFillOpacity", u"fill-opacity", u"1", true, shBrush, Painting},
      {ipFillRule, u"ipFillRule", u"fill-rule", u"nonzero", true, shElement, Painting},
      {ipFilter, u"ipFilter", u"filter", u"none", false, shElement, None},
      {ipFloodColor, u"ipFloodColor", u"flood-color", u"black", false, shStrings, Filter},
      {ipFloodOpacity, u"ipFloodOpacity", u"flood-opacity", u"1", false, shStrings, Filter},
      {ipFont, u"ipFont", u"font", u"???", true, shStrings, Font},
      {ipFontFamily, u"ipFontFamily", u"font-family", u"Tahoma", true, shFont, Font},
      {ipFontSize, u"ipFontSize", u"font-size", u"medium", true, shFont, Font},
      {ipFontStyle, u"ipFontStyle", u"font-style", u"normal", true, shFont, Font},
      {ipFontVariant, u"ipFontVariant", u"font-variant", u"normal", true, shFont, Font},
      {ipFontWeight, u"ipFontWeight", u"font-weight", u"normal", true, shFont, Font},
      {ipGlyphOrientationHorizontal, u"ipGlyphOrientationHorizontal",
       u"glyph-orientation-horizontal", u"0deg", true, shElement, None},
      {ipGlyphOrientationVertical, u"ipGlyphOrientationVertical", u"glyph-orientation-vertical",
       u"auto", true, shElement, None},
      {ipKerning, u"ipKerning", u"kerning", u"auto", true, shLength, None},
      {ipLetterSpacing, u"ipLetterSpacing", u"letter-spacing", u"normal", true, shLength, None},
      {ipMarker, u"ipMarker", u"marker", u"none", true, shMarkers, Painting},
      {ipMarkerEnd, u"ipMarkerEnd", u"marker-end", u"none", true, shElement, Painting},
      {ipMarkerMid, u"ipMarkerMid", u"marker-mid", u"none", true, shElement, Painting},
      {ipMarkerStart, u"ipMarkerStart", u"marker-start", u"none", true, shElement, Painting},
      {ipOpacity, u"ipOpacity", u"opacity", u"1", false, shElement, ClipMask},
      {ipOverflow, u"ipOverflow", u"overflow", u"visible", false, shElement, None},
      {ipPointerEvents, u"ipPointerEvents", u"pointer-events", u"visiblePainted", true, shElement,
       None},
      {ipShapeRendering, u"ipShapeRendering", u"shape-rendering", u"auto", true, shElement, None},
      {ipStopColor, u"ipStopColor", u"stop-color", u"black", false, shGradientStop, Gradient},
      {ipStopOpacity, u"ipStopOpacity", u"stop-opacity", u"1", false, shGradientStop, Gradient},
      {ipStroke, u"ipStroke", u"stroke", u"none", true, shPen, Painting},
      {ipStrokeDasharray, u"ipStrokeDasharray", u"stroke-dasharray", u"none", true, shPen,
       Painting},
      {ipStrokeDashOffset, u"ipStrokeDashOffset", u"stroke-dashoffset", u"0", true, shPen,
       Painting},
      {ipStrokeLinecap, u"ipStrokeLinecap", u"stroke-linecap", u"butt", true, shPen, Painting},
      {ipStrokeLineJoin, u"ipStrokeLineJoin", u"stroke-linejoin", u"miter", true, shPen, Painting},
      {ipStrokeMiterLimit, u"ipStrokeMiterLimit", u"stroke-miterlimit", u"4", true, shPen,
       Painting},
      {ipStrokeOpacity, u"ipStrokeOpacity", u"stroke-opacity", u"1", true, shPen, Painting},
      {ipStrokeWidth, u"ipStrokeWidth", u"stroke-width", u"1", true, shPen, Painting},
      {ipTextAnchor, u"ipTextAnchor", u"text-anchor", u"start", true, shElement, Text},
      {ipTextDecoration, u"ipTextDecoration", u"text-decoration", u"none", true, shFont,
       Font | Text},
      {ipTextRendering, u"ipTextRendering", u"text-rendering", u"auto", true, shElement, None},
      {ipVectorEffect, u"ipVectorEffect", u"vector-effect", u"none", false, shElement, Painting},
      {ipVisibility, u"ipVisibility", u"visibility", u"visible", true, shElement, Media},
      {ipWordSpacing, u"ipWordSpacing", u"word-spacing", u"normal", true, shLength, None},
      {ipWritingMode, u"ipWritingMode", u"writing-mode", u"lr-tb", true, shElement, None},
  }};
}();
static_assert(IsInOrder(SVGStylePropertyRows, &TSVGStylePropertyRow::Property,
                        TSVGStyleProperty::ipWritingMode));

// The row of ipNone for what is no property.
constexpr const TSVGStylePropertyRow& SVGStylePropertyRowOf(TSVGStyleProperty Property) {
  const std::size_t Index = Ordinal(Property);
  return SVGStylePropertyRows[Index < SVGStylePropertyCount ? Index : 0];
}

inline constexpr auto SVGStylePropertyNames =
    Column(SVGStylePropertyRows, &TSVGStylePropertyRow::Name);
static_assert(HasNoDuplicates(SVGStylePropertyNames));
inline constexpr auto SVGStylePropertyIdentifiers =
    Column(SVGStylePropertyRows, &TSVGStylePropertyRow::Identifier);
static_assert(HasNoDuplicates(SVGStylePropertyIdentifiers));
inline constexpr auto DefaultSVGStylePropertyValues =
    Column(SVGStylePropertyRows, &TSVGStylePropertyRow::Default);

// The properties that inherit unless an element says otherwise: SVG 1.1 appendix N. ipNone counts
// among them.
inline constexpr TSVGStyleProperties SVGInheritedProperties = [] {
  TSVGStyleProperties Result;
  for (const TSVGStylePropertyRow& Row : SVGStylePropertyRows)
    Result.Set(Row.Property, Row.IsInherited);
  return Result;
}();

consteval TSVGStyleProperties SVGStylePropertiesOfGroup(std::uint8_t Groups) {
  return SetOfRows<TSVGStyleProperties>(SVGStylePropertyRows, &TSVGStylePropertyRow::Property,
                                        &TSVGStylePropertyRow::Groups, Groups);
}

inline constexpr TSVGStyleProperties SVGFontStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::Font);
inline constexpr TSVGStyleProperties SVGMediaStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::Media);
inline constexpr TSVGStyleProperties SVGTextStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::Text);
inline constexpr TSVGStyleProperties SVGClipMaskStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::ClipMask);
inline constexpr TSVGStyleProperties SVGFilterStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::Filter);
inline constexpr TSVGStyleProperties SVGGradientStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::Gradient);
inline constexpr TSVGStyleProperties SVGPaintingStyleProperties =
    SVGStylePropertiesOfGroup(StyleGroup::Painting);

}  // namespace qxsvg
