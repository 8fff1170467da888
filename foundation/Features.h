// The feature strings of SVG 1.1 (appendix O) and which of them the system says it supports.
#pragma once

#include "foundation/WordTable.h"

namespace qxsvg {

enum class TSVGFeature : std::uint8_t {
  sfUnknown,
  sfSVG,
  sfSVGDOM,
  sfSVGstatic,
  sfSVGDOMstatic,
  sfSVGanimation,
  sfSVGDOManimation,
  sfSVGdynamic,
  sfSVGDOMdynamic,
  sfCoreAttribute,
  sfStructure,
  sfBasicStructure,
  sfContainerAttribute,
  sfConditionalProcessing,
  sfImage,
  sfStyle,
  sfViewportAttribute,
  sfShape,
  sfText,
  sfBasicText,
  sfPaintAttribute,
  sfBasicPaintAttribute,
  sfOpacityAttribute,
  sfGraphicsAttribute,
  sfBasicGraphicsAttribute,
  sfMarker,
  sfColorProfile,
  sfGradient,
  sfPattern,
  sfClip,
  sfMask,
  sfFilter,
  sfXlinkAttribute,
  sfFont,
  sfBasicFont,
  sfExtensibility,
  sfHyperlinking,
  sfScripting,
  sfView,
  sfCursor,
  sfAnimation,
  sfGraphicalEventsAttribute,
  sfDocumentEventsAttribute,
  sfAnimationEventsAttribute,
};

struct TSVGFeatureRow {
  TSVGFeature Feature;
  StringView Identifier;
  bool IsSupported;
};

// The answers are a promise to documents rather than a list of what is drawn: filters are kept and
// not drawn and yet count as supported, images and patterns are drawn and do not.
inline constexpr std::array<TSVGFeatureRow, CountUpTo(TSVGFeature::sfAnimationEventsAttribute)>
    SVGFeatureRows{{
        {TSVGFeature::sfUnknown, u"Unknown", false},
        {TSVGFeature::sfSVG, u"http://www.w3.org/TR/SVG11/feature#SVG", false},
        {TSVGFeature::sfSVGDOM, u"http://www.w3.org/TR/SVG11/feature#SVGDOM", false},
        {TSVGFeature::sfSVGstatic, u"http://www.w3.org/TR/SVG11/feature#SVG-static", false},
        {TSVGFeature::sfSVGDOMstatic, u"http://www.w3.org/TR/SVG11/feature#SVGDOM-static", false},
        {TSVGFeature::sfSVGanimation, u"http://www.w3.org/TR/SVG11/feature#SVG-animation", false},
        {TSVGFeature::sfSVGDOManimation, u"http://www.w3.org/TR/SVG11/feature#SVGDOM-animation",
         false},
        {TSVGFeature::sfSVGdynamic, u"http://www.w3.org/TR/SVG11/feature#SVG-dynamic", false},
        {TSVGFeature::sfSVGDOMdynamic, u"http://www.w3.org/TR/SVG11/feature#SVGDOM-dynamic", false},
        {TSVGFeature::sfCoreAttribute, u"http://www.w3.org/TR/SVG11/feature#CoreAttribute", true},
        {TSVGFeature::sfStructure, u"http://www.w3.org/TR/SVG11/feature#Structure", true},
        {TSVGFeature::sfBasicStructure, u"http://www.w3.org/TR/SVG11/feature#BasicStructure", true},
        {TSVGFeature::sfContainerAttribute,
         u"http://www.w3.org/TR/SVG11/feature#ContainerAttribute", false},
        {TSVGFeature::sfConditionalProcessing,
         u"http://www.w3.org/TR/SVG11/feature#ConditionalProcessing", true},
        {TSVGFeature::sfImage, u"http://www.w3.org/TR/SVG11/feature#Image", false},
        {TSVGFeature::sfStyle, u"http://www.w3.org/TR/SVG11/feature#Style", true},
        {TSVGFeature::sfViewportAttribute, u"http://www.w3.org/TR/SVG11/feature#ViewportAttribute",
         true},
        {TSVGFeature::sfShape, u"http://www.w3.org/TR/SVG11/feature#Shape", true},
        {TSVGFeature::sfText, u"http://www.w3.org/TR/SVG11/feature#Text", false},
        {TSVGFeature::sfBasicText, u"http://www.w3.org/TR/SVG11/feature#BasicText", true},
        {TSVGFeature::sfPaintAttribute, u"http://www.w3.org/TR/SVG11/feature#PaintAttribute",
         false},
        {TSVGFeature::sfBasicPaintAttribute,
         u"http://www.w3.org/TR/SVG11/feature#BasicPaintAttribute", true},
        {TSVGFeature::sfOpacityAttribute, u"http://www.w3.org/TR/SVG11/feature#OpacityAttribute",
         true},
        {TSVGFeature::sfGraphicsAttribute, u"http://www.w3.org/TR/SVG11/feature#GraphicsAttribute",
         false},
        {TSVGFeature::sfBasicGraphicsAttribute,
         u"http://www.w3.org/TR/SVG11/feature#BasicGraphicsAttribute", true},
        {TSVGFeature::sfMarker, u"http://www.w3.org/TR/SVG11/feature#Marker", true},
        {TSVGFeature::sfColorProfile, u"http://www.w3.org/TR/SVG11/feature#ColorProfile", false},
        {TSVGFeature::sfGradient, u"http://www.w3.org/TR/SVG11/feature#Gradient", true},
        {TSVGFeature::sfPattern, u"http://www.w3.org/TR/SVG11/feature#Pattern", false},
        {TSVGFeature::sfClip, u"http://www.w3.org/TR/SVG11/feature#Clip", true},
        {TSVGFeature::sfMask, u"http://www.w3.org/TR/SVG11/feature#Mask", false},
        {TSVGFeature::sfFilter, u"http://www.w3.org/TR/SVG11/feature#Filter", true},
        {TSVGFeature::sfXlinkAttribute, u"http://www.w3.org/TR/SVG11/feature#XlinkAttribute",
         false},
        {TSVGFeature::sfFont, u"http://www.w3.org/TR/SVG11/feature#Font", false},
        {TSVGFeature::sfBasicFont, u"http://www.w3.org/TR/SVG11/feature#BasicFont", false},
        {TSVGFeature::sfExtensibility, u"http://www.w3.org/TR/SVG11/feature#Extensibility", false},
        {TSVGFeature::sfHyperlinking, u"http://www.w3.org/TR/SVG11/feature#Hyperlinking", false},
        {TSVGFeature::sfScripting, u"http://www.w3.org/TR/SVG11/feature#Scripting", false},
        {TSVGFeature::sfView, u"http://www.w3.org/TR/SVG11/feature#View", false},
        {TSVGFeature::sfCursor, u"http://www.w3.org/TR/SVG11/feature#Cursor", false},
        {TSVGFeature::sfAnimation, u"http://www.w3.org/TR/SVG11/feature#Animation", false},
        {TSVGFeature::sfGraphicalEventsAttribute,
         u"http://www.w3.org/TR/SVG11/feature#GraphicalEventsAttribute", false},
        {TSVGFeature::sfDocumentEventsAttribute,
         u"http://www.w3.org/TR/SVG11/feature#DocumentEventsAttribute", false},
        {TSVGFeature::sfAnimationEventsAttribute,
         u"http://www.w3.org/TR/SVG11/feature#AnimationEventsAttribute", false},
    }};
static_assert(IsInOrder(SVGFeatureRows, &TSVGFeatureRow::Feature,
                        TSVGFeature::sfAnimationEventsAttribute));

inline constexpr auto SVGFeatures = Column(SVGFeatureRows, &TSVGFeatureRow::Identifier);
static_assert(HasNoDuplicates(SVGFeatures));
inline constexpr auto SVGFeatureSupport = Column(SVGFeatureRows, &TSVGFeatureRow::IsSupported);

}  // namespace qxsvg
