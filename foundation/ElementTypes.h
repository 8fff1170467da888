// The element types: one table says all that is known of each; names, sets and look-ups come from
// it.
#pragma once

#include "foundation/WordTable.h"
#include "runtime/EnumSet.h"

namespace qxsvg {

enum class TSVGElementType : std::uint8_t {
  etNone,
  etDoc,
  etGroup,
  etImage,
  etDefs,
  etUse,
  etCircle,
  etEllipse,
  etRectangle,
  etLine,
  etPolyline,
  etPolygon,
  etPath,
  etText,
  etSwitch,
  etDesc,
  etTitle,
  etStyle,
  etTSpan,
  etTextPath,
  etTRef,
  etClipPath,
  etLinearGradient,
  etRadialGradient,
  etGradientStop,
  etMarker,
  etMetadata,
  etScript,
  etComment,
  etSymbol,
  etPattern,
  etALink,
  etView,
  etFont,
  etGlyph,
  etMissingGlyph,
  etHKern,
  etVKern,
  etFontFace,
  etFontFaceSrc,
  etFontFaceURI,
  etFontFaceFormat,
  etFontFaceName,
  etAltGlyph,
  etAltGlyphDef,
  etAltGlyphItem,
  etGlyphRef,
  etAnimate,
  etAnimateSet,
  etAnimateMotion,
  etAnimateColor,
  etAnimateTransform,
  etFilter,
  etFEDistantLight,
  etFEPointLight,
  etFESpotLight,
  etFEBlend,
  etFEColorMatrix,
  etFEComponentTransfer,
  etFEComposite,
  etFEConvolveMatrix,
  etFEDiffuseLighting,
  etFEDisplacementMap,
  etFEFlood,
  etFEGaussianBlur,
  etFEImage,
  etFEMerge,
  etFEMorphology,
  etFEOffset,
  etFESpecularLighting,
  etFETile,
  etFETurbulence,
  etForeignObject,
};

inline constexpr std::size_t SVGElementTypeCount = CountUpTo(TSVGElementType::etForeignObject);

using TSVGElementTypes = TEnumSet<TSVGElementType, 80>;

// The kinds that an element type counts among: the marks of SVGElementTypeRows.
namespace ElementKind {
enum : std::uint16_t {
  None = 0,
  Container = 1 << 0,
  Descriptive = 1 << 1,
  Shape = 1 << 2,
  Structural = 1 << 3,
  Gradient = 1 << 4,
  TextContent = 1 << 5,
  TextContentChild = 1 << 6,
  FilterPrimitive = 1 << 7,
  // Kept as XML and not drawn.
  Unsupported = 1 << 8,
};
}

struct TSVGElementTypeRow {
  TSVGElementType Type;
  // The local name in XML; empty for etNone.
  StringView Name;
  std::uint16_t Kinds;
};

// The link element is no container here and keeps its place among the structural elements; view,
// metadata, script and comment are neither structural nor unsupported.
inline constexpr auto SVGElementTypeRows = [] {
  using enum TSVGElementType;
  using namespace ElementKind;
  return std::array<TSVGElementTypeRow, SVGElementTypeCount>{{
      {etNone, u"", None},
      {etDoc, u"svg", Container | Structural},
      {etGroup, u"g", Container | Structural},
      {etImage, u"image", None},
      {etDefs, u"defs", Container | Structural},
      {etUse, u"use", Structural},
      {etCircle, u"circle", Shape},
      {etEllipse, u"ellipse", Shape},
      {etRectangle, u"rect", Shape},
      {etLine, u"line", Shape},
      {etPolyline, u"polyline", Shape},
      {etPolygon, u"polygon", Shape},
      {etPath, u"path", Shape},
      {etText, u"text", TextContent},
      {etSwitch, u"switch", Container},
      {etDesc, u"desc", Descriptive},
      {etTitle, u"title", Descriptive},
      {etStyle, u"style", None},
      {etTSpan, u"tspan", TextContent | TextContentChild},
      {etTextPath, u"textPath", TextContent | TextContentChild},
      {etTRef, u"tref", TextContent | TextContentChild},
      {etClipPath, u"clipPath", None},
      {etLinearGradient, u"linearGradient", Gradient},
      {etRadialGradient, u"radialGradient", Gradient},
      {etGradientStop, u"stop", None},
      {etMarker, u"marker", Container},
      {etMetadata, u"metadata", Descriptive},
      {etScript, u"script", None},
      {etComment, u"comment", None},
      {etSymbol, u"symbol", Container | Structural},
      {etPattern, u"pattern", Container},
      {etALink, u"a", Structural},
      {etView, u"view", None},
      {etFont, u"font", Unsupported},
      {etGlyph, u"glyph", Unsupported},
      {etMissingGlyph, u"missing-glyph", Unsupported},
      {etHKern, u"hkern", Unsupported},
      {etVKern, u"vkern", Unsupported},
      {etFontFace, u"font-face", Unsupported},
      {etFontFaceSrc, u"font-face-src", Unsupported},
      {etFontFaceURI, u"font-face-uri", Unsupported},
      {etFontFaceFormat, u"font-face-format", Unsupported},
      {etFontFaceName, u"font-face-name", Unsupported},
      {etAltGlyph, u"altGlyph", Unsupported},
      {etAltGlyphDef, u"altGlyphDef", Unsupported},
      {etAltGlyphItem, u"altGlyphItem", Unsupported},
      {etGlyphRef, u"glyphRef", Unsupported},
      {etAnimate, u"animate", Unsupported},
      {etAnimateSet, u"set", Unsupported},
      {etAnimateMotion, u"animateMotion", Unsupported},
      {etAnimateColor, u"animateColor", Unsupported},
      {etAnimateTransform, u"animateTransform", Unsupported},
      {etFilter, u"filter", Unsupported},
      {etFEDistantLight, u"feDistantLight", FilterPrimitive | Unsupported},
      {etFEPointLight, u"fePointLight", FilterPrimitive | Unsupported},
      {etFESpotLight, u"feSpotLight", FilterPrimitive | Unsupported},
      {etFEBlend, u"feBlend", FilterPrimitive | Unsupported},
      {etFEColorMatrix, u"feColorMatrix", FilterPrimitive | Unsupported},
      {etFEComponentTransfer, u"feComponentTransfer", FilterPrimitive | Unsupported},
      {etFEComposite, u"feComposite", FilterPrimitive | Unsupported},
      {etFEConvolveMatrix, u"feConvolveMatrix", FilterPrimitive | Unsupported},
      {etFEDiffuseLighting, u"feDiffuseLighting", FilterPrimitive | Unsupported},
      {etFEDisplacementMap, u"feDisplacementMap", FilterPrimitive | Unsupported},
      {etFEFlood, u"feFlood", FilterPrimitive | Unsupported},
      {etFEGaussianBlur, u"feGaussianBlur", FilterPrimitive | Unsupported},
      {etFEImage, u"feImage", FilterPrimitive | Unsupported},
      {etFEMerge, u"feMerge", FilterPrimitive | Unsupported},
      {etFEMorphology, u"feMorphology", FilterPrimitive | Unsupported},
      {etFEOffset, u"feOffset", FilterPrimitive | Unsupported},
      {etFESpecularLighting, u"feSpecularLighting", FilterPrimitive | Unsupported},
      {etFETile, u"feTile", FilterPrimitive | Unsupported},
      {etFETurbulence, u"feTurbulence", FilterPrimitive | Unsupported},
      {etForeignObject, u"foreignObject", Unsupported},
  }};
}();
static_assert(IsInOrder(SVGElementTypeRows, &TSVGElementTypeRow::Type,
                        TSVGElementType::etForeignObject));

inline constexpr auto SVGElementTypeNames = Column(SVGElementTypeRows, &TSVGElementTypeRow::Name);
static_assert(HasNoDuplicates(SVGElementTypeNames));

// Element types by kind.
consteval TSVGElementTypes SVGElementsOfKind(std::uint16_t Kinds) {
  return SetOfRows<TSVGElementTypes>(SVGElementTypeRows, &TSVGElementTypeRow::Type,
                                     &TSVGElementTypeRow::Kinds, Kinds);
}

inline constexpr TSVGElementTypes SVGAllElements =
    TSVGElementTypes::Range(TSVGElementType::etDoc, TSVGElementType::etForeignObject);
inline constexpr TSVGElementTypes SVGContainerElements = SVGElementsOfKind(ElementKind::Container);
inline constexpr TSVGElementTypes SVGDescriptiveElements =
    SVGElementsOfKind(ElementKind::Descriptive);
inline constexpr TSVGElementTypes SVGShapeElements = SVGElementsOfKind(ElementKind::Shape);
inline constexpr TSVGElementTypes SVGStructuralElements =
    SVGElementsOfKind(ElementKind::Structural);
inline constexpr TSVGElementTypes SVGGradientElements = SVGElementsOfKind(ElementKind::Gradient);
inline constexpr TSVGElementTypes SVGTextContentElements =
    SVGElementsOfKind(ElementKind::TextContent);
inline constexpr TSVGElementTypes SVGTextContentChildElements =
    SVGElementsOfKind(ElementKind::TextContentChild);
inline constexpr TSVGElementTypes SVGFilterPrimitiveElements =
    SVGElementsOfKind(ElementKind::FilterPrimitive);
inline constexpr TSVGElementTypes SVGUnsupportedElements =
    SVGElementsOfKind(ElementKind::Unsupported);

}  // namespace qxsvg
