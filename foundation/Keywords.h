// The keywords of attributes and style properties: enumerations and their words.
//
// A word table is indexed by its enumeration. The empty word stands for a value that is not set: it
// is never written, and no text of an attribute gives it.
#pragma once

#include "foundation/Cursors.h"
#include "foundation/WordTable.h"
#include "runtime/EnumSet.h"

namespace qxsvg {

enum class TSVGAlign : std::uint8_t {
  saNone,
  saXMinYMin,
  saXMidYMin,
  saXMaxYMin,
  saXMinYMid,
  saXMidYMid,
  saXMaxYMid,
  saXMinYMax,
  saXMidYMax,
  saXMaxYMax,
};
inline constexpr auto SVGAlignNames = WordTable<TSVGAlign::saXMaxYMax>(
    u"none", u"xMinYMin", u"xMidYMin", u"xMaxYMin", u"xMinYMid", u"xMidYMid", u"xMaxYMid",
    u"xMinYMax", u"xMidYMax", u"xMaxYMax");

enum class TSVGAlignmentBaseline : std::uint8_t {
  abNone,
  abAuto,
  abBaseline,
  abBeforeEdge,
  abTextBeforeEdge,
  abMiddle,
  abCentral,
  abAfterEdge,
  abTextAfterEdge,
  abIdeographic,
  abAlphabetic,
  abHanging,
  abMathematical,
};
// The last word is one letter short of the standard's. Documents that the system wrote hold it, so
// it is what is read and written here.
inline constexpr auto SVGAlignmentBaselines = WordTable<TSVGAlignmentBaseline::abMathematical>(
    u"", u"auto", u"baseline", u"before-edge", u"text-before-edge", u"middle", u"central",
    u"after-edge", u"text-after-edge", u"ideographic", u"alphabetic", u"hanging", u"mathematica");

enum class TSVGBaselineShift : std::uint8_t {
  bsNone,
  bsBaseline,
  bsSubscript,
  bsSuperscript,
  bsPercentage,
  bsLength,
};
inline constexpr auto SVGBaselineShifts = WordTable<TSVGBaselineShift::bsLength>(
    u"", u"baseline", u"sub", u"super", u"percentage", u"length");

enum class TSVGDominantBaseline : std::uint8_t {
  dbNone,
  dbAuto,
  dbUseScript,
  dbNoChange,
  dbResetSize,
  dbIdeographic,
  dbAlphabetic,
  dbHanging,
  dbMathematical,
  dbCentral,
  dbMiddle,
  dbTextAfterEdge,
  dbTextBeforeEdge,
};
inline constexpr auto SVGDominantBaselines = WordTable<TSVGDominantBaseline::dbTextBeforeEdge>(
    u"", u"auto", u"use-script", u"no-change", u"reset-size", u"ideographic", u"alphabetic",
    u"hanging", u"mathematical", u"central", u"middle", u"text-after-edge", u"text-before-edge");

enum class TSVGTextPathMethod : std::uint8_t {
  tpmNone,
  tpmAlign,
  tpmStretch,
};
inline constexpr auto SVGTextPathMethods =
    WordTable<TSVGTextPathMethod::tpmStretch>(u"", u"align", u"stretch");

enum class TSVGTextPathSpacing : std::uint8_t {
  tpsNone,
  tpsExact,
  tpsAuto,
};
inline constexpr auto SVGTextPathSpacings =
    WordTable<TSVGTextPathSpacing::tpsAuto>(u"", u"exact", u"auto");

enum class TSVGColorInterpolation : std::uint8_t {
  sciNone,
  sciAuto,
  sciSRGB,
  sciLinearRGB,
};
inline constexpr auto SVGColorInterpolationNames =
    WordTable<TSVGColorInterpolation::sciLinearRGB>(u"", u"auto", u"sRGB", u"linearRGB");

enum class TSVGColorRendering : std::uint8_t {
  clrnNone,
  clrnAuto,
  clrnOptimizeSpeed,
  clrnOptimizeQuality,
};
inline constexpr auto SVGColorRenderingNames = WordTable<TSVGColorRendering::clrnOptimizeQuality>(
    u"", u"auto", u"optimizeSpeed", u"optimizeQuality");

enum class TSVGShapeRendering : std::uint8_t {
  srnNone,
  srnAuto,
  srnOptimizeSpeed,
  srnCrispEdges,
  srnGeometricPrecision,
};
inline constexpr auto SVGShapeRenderingNames = WordTable<TSVGShapeRendering::srnGeometricPrecision>(
    u"", u"auto", u"optimizeSpeed", u"crispEdges", u"geometricPrecision");

enum class TSVGTextRendering : std::uint8_t {
  txrnNone,
  txrnAuto,
  txrnOptimizeSpeed,
  txrnOptimizeLegibility,
  txrnGeometricPrecision,
};
inline constexpr auto SVGTextRenderingNames = WordTable<TSVGTextRendering::txrnGeometricPrecision>(
    u"", u"auto", u"optimizeSpeed", u"optimizeLegibility", u"geometricPrecision");

enum class TSVGDirection : std::uint8_t {
  dirNone,
  dirLeftToRight,
  dirRightToLeft,
};
inline constexpr auto SVGDirections = WordTable<TSVGDirection::dirRightToLeft>(u"", u"ltr", u"rtl");

enum class TSVGWritingMode : std::uint8_t {
  wmNone,
  wmLeftRight_TopBottom,
  wmRightLeft_TopBottom,
  wmTopBottom_RightLeft,
  wmLeftRight,
  wmRightLeft,
  wmTopBottom,
};
inline constexpr auto SVGWritingModes =
    WordTable<TSVGWritingMode::wmTopBottom>(u"", u"lr-tb", u"rl-tb", u"tb-rl", u"lr", u"rl", u"tb");

enum class TSVGGlyphOrientationVertical : std::uint8_t {
  ovNone,
  ovAuto,
  ov0Deg,
  ov90Deg,
  ov180Deg,
  ov270Deg,
};
inline constexpr auto SVGGlyphOrientationVerticals =
    WordTable<TSVGGlyphOrientationVertical::ov270Deg>(u"", u"auto", u"0deg", u"90deg", u"180deg",
                                                      u"270deg");

enum class TSVGGlyphOrientationHorizontal : std::uint8_t {
  ohNone,
  oh0Deg,
  oh90Deg,
  oh180Deg,
  oh270Deg,
};
inline constexpr auto SVGGlyphOrientationHorizontals =
    WordTable<TSVGGlyphOrientationHorizontal::oh270Deg>(u"", u"0deg", u"90deg", u"180deg",
                                                        u"270deg");

enum class TSVGPointerEvents : std::uint8_t {
  peNone,
  peVisiblePainted,
  peVisibleFill,
  peVisibleStroke,
  peVisible,
  pePainted,
  peFill,
  peStroke,
  peAll,
};
inline constexpr auto SVGPointerEvents = WordTable<TSVGPointerEvents::peAll>(
    u"none", u"visiblePainted", u"visibleFill", u"visibleStroke", u"visible", u"painted", u"fill",
    u"stroke", u"all");

enum class TSVGGenericFontFamily : std::uint8_t {
  gffNone,
  gffSerif,
  gffSansSerif,
  gffCursive,
  gffFantasy,
  gffMonospace,
};
inline constexpr auto SVGGenericFontFamily = WordTable<TSVGGenericFontFamily::gffMonospace>(
    u"", u"serif", u"sans-serif", u"cursive", u"fantasy", u"monospace");

enum class TSVGFontAbsSize : std::uint8_t {
  fabNone,
  fabXXSmall,
  fabXSmall,
  fabSmall,
  fabMedium,
  fabLarge,
  fabXLarge,
  FabXXLarge,
};
inline constexpr auto SVGFontAbsSizes = WordTable<TSVGFontAbsSize::FabXXLarge>(
    u"", u"xx-small", u"x-small", u"small", u"medium", u"large", u"x-large", u"xx-large");

enum class TSVGFontWeight : std::uint8_t {
  fwNone,
  fwNormal,
  fwBold,
  fwBolder,
  fwLighter,
  fw100,
  fw200,
  fw300,
  fw400,
  fw500,
  fw600,
  fw700,
  fw800,
  fw900,
};
inline constexpr auto SVGFontWeights =
    WordTable<TSVGFontWeight::fw900>(u"", u"normal", u"bold", u"bolder", u"lighter", u"100", u"200",
                                     u"300", u"400", u"500", u"600", u"700", u"800", u"900");

enum class TSVGFontVariant : std::uint8_t {
  fvNone,
  fvNormal,
  fvSmallCaps,
  fvUpperCase,
  fvLowerCase,
  fvTitleCase,
};
inline constexpr auto SVGFontVariants = WordTable<TSVGFontVariant::fvTitleCase>(
    u"", u"normal", u"small-caps", u"uppercase", u"lowercase", u"titlecase");

enum class TSVGFontStyle : std::uint8_t {
  sfsNone,
  sfsNormal,
  sfsItalic,
  sfsOblique,
};
inline constexpr auto SVGFontStyles =
    WordTable<TSVGFontStyle::sfsOblique>(u"", u"normal", u"italic", u"oblique");

enum class TSVGTextAnchor : std::uint8_t {
  taNone,
  taStart,
  taMiddle,
  taEnd,
};
inline constexpr auto SVGTextAnchors =
    WordTable<TSVGTextAnchor::taEnd>(u"", u"start", u"middle", u"end");

enum class TSVGTextAlign : std::uint8_t {
  staCenter,
  staLeading,
  staTrailing,
};
inline constexpr auto SVGTextAlignNames =
    WordTable<TSVGTextAlign::staTrailing>(u"middle", u"start", u"end");

enum class TSVGTextDecoration : std::uint8_t {
  tdNone,
  tdUnderline,
  tdOverline,
  tdLineThrough,
  tdBlink,
};
inline constexpr auto SVGTextDecorations = WordTable<TSVGTextDecoration::tdBlink>(
    u"", u"underline", u"overline", u"line-through", u"blink");

enum class TSVGCoordinateSystemUnit : std::uint8_t {
  csuNone,
  csuObjectBoundingBox,
  csuUserSpaceOnUse,
};
inline constexpr auto SVGCoordinateSystemUnits =
    WordTable<TSVGCoordinateSystemUnit::csuUserSpaceOnUse>(u"", u"objectBoundingBox",
                                                           u"userSpaceOnUse");

enum class TSVGGradientSpread : std::uint8_t {
  gsNone,
  gsPad,
  gsReflect,
  gsRepeat,
};
inline constexpr auto SVGGradientSpreads =
    WordTable<TSVGGradientSpread::gsRepeat>(u"", u"pad", u"reflect", u"repeat");

enum class TSVGFillRule : std::uint8_t {
  frNone,
  frNonZero,
  frEvenOdd,
};
inline constexpr auto SVGFillRules =
    WordTable<TSVGFillRule::frEvenOdd>(u"", u"nonzero", u"evenodd");

enum class TSVGVectorEffect : std::uint8_t {
  veNone,
  veNonScalingStroke,
};
inline constexpr auto SVGVectorEffects =
    WordTable<TSVGVectorEffect::veNonScalingStroke>(u"", u"non-scaling-stroke");

enum class TSVGMarkerUnit : std::uint8_t {
  muNone,
  muStrokeWidth,
  muUserSpaceOnUse,
};
inline constexpr auto SVGMarkerUnitNames =
    WordTable<TSVGMarkerUnit::muUserSpaceOnUse>(u"", u"strokeWidth", u"userSpaceOnUse");

// Words of a Boolean: False, then True.
using TSVGBooleanNames = std::array<StringView, 2>;
inline constexpr TSVGBooleanNames SVGVisibility{u"hidden", u"visible"};
inline constexpr TSVGBooleanNames SVGEnableBackgrounds{u"accumulate", u"new"};

// The size in points of each absolute font size: a scale of ratio 1.2 about medium.
inline constexpr std::array<float, SVGFontAbsSizes.size()> SVGFontSizes{
    12.0f,
    static_cast<float>(12.0 / (1.2 * 1.2 * 1.2)),
    static_cast<float>(12.0 / (1.2 * 1.2)),
    static_cast<float>(12.0 / 1.2),
    12.0f,
    static_cast<float>(12.0 * 1.2),
    static_cast<float>(12.0 * 1.2 * 1.2),
    static_cast<float>(12.0 * 1.2 * 1.2 * 1.2),
};

// The installed font that stands for each generic family.
inline constexpr std::array<StringView, SVGGenericFontFamily.size()> SVGGenericFont{
    u"", u"Garamond", u"Tahoma", u"Brush Script", u"Alpha Geometrique", u"Courier New"};

// Styles of a font that the drawing surface does not have.
enum class TExtendedFontStyle : std::uint8_t { fsOverline, fsBlink };
using TExtendedFontStyles = TEnumSet<TExtendedFontStyle, 8>;

// How a document fills the rectangle that it is drawn into.
enum class TSVGImageWrapMode : std::uint8_t { iwOriginal, iwFit, iwStretch, iwTile, iwCenter };

}  // namespace qxsvg
