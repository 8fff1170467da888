// Attributes whose value is a word.
//
// Words are compared exactly. Texts are trimmed first. Inherit: see TakesValue; a text that holds
// no value of its own gives the default. Nothing here raises.
#pragma once

#include <optional>

#include "foundation/DrawingEnums.h"
#include "foundation/Keywords.h"
#include "foundation/Lookups.h"
#include "foundation/ParseInherit.h"
#include "runtime/String.h"

namespace qxsvg {

// A property whose value is what LookUp gives for the text; an unknown word is the enumeration's
// zero member and not the default.
template <auto LookUp>
struct TInheritedWordParser {
  using E = decltype(LookUp(StringView()));
  E operator()(StringView Text, E Default, bool& Inherit) const {
    Text = Trim(Text);
    return TakesValue(Text, Inherit) ? LookUp(Text) : Default;
  }
};

inline constexpr TInheritedWordParser<&GetSVGAlignmentBaseline> ParseAlignmentBaseline;
inline constexpr TInheritedWordParser<&GetSVGDominantBaseline> ParseDominantBaseline;
inline constexpr TInheritedWordParser<&GetSVGColorInterpolation> ParseColorInterpolation;
inline constexpr TInheritedWordParser<&GetSVGColorRendering> ParseColorRendering;
inline constexpr TInheritedWordParser<&GetSVGShapeRendering> ParseShapeRendering;
inline constexpr TInheritedWordParser<&GetSVGTextRendering> ParseTextRendering;
inline constexpr TInheritedWordParser<&GetSVGDirection> ParseDirection;
inline constexpr TInheritedWordParser<&GetSVGGlyphOrientationHorizontal>
    ParseGlyphOrientationHorizontal;
inline constexpr TInheritedWordParser<&GetSVGGlyphOrientationVertical>
    ParseGlyphOrientationVertical;
inline constexpr TInheritedWordParser<&GetSVGWritingMode> ParseWritingMode;
inline constexpr TInheritedWordParser<&GetSVGPointerEvents> ParsePointerEvents;
inline constexpr TInheritedWordParser<&GetSVGFillRule> ParseFillRule;
inline constexpr TInheritedWordParser<&GetSVGVectorEffect> ParseVectorEffect;
inline constexpr TInheritedWordParser<&GetSVGFontVariant> ParseFontVariant;
inline constexpr TInheritedWordParser<&GetSVGFontWeight> ParseFontWeight;

enum class TSVGUnknownWord : std::uint8_t { uwZero, uwDefault };

// An attribute without inheritance. What an unknown word gives differs: the zero member or the
// default.
template <auto LookUp, TSVGUnknownWord Unknown>
struct TWordParser {
  using E = decltype(LookUp(StringView()));
  E operator()(StringView Text, E Default) const {
    Text = Trim(Text);
    if (Text.empty()) return Default;
    const E Value = LookUp(Text);
    return Unknown == TSVGUnknownWord::uwDefault && Value == E{} ? Default : Value;
  }
};

inline constexpr TWordParser<&GetSVGTextPathMethod, TSVGUnknownWord::uwZero> ParseTextPathMethod;
inline constexpr TWordParser<&GetSVGTextPathSpacing, TSVGUnknownWord::uwZero> ParseTextPathSpacing;
inline constexpr TWordParser<&GetSVGMarkerUnit, TSVGUnknownWord::uwDefault> ParseMarkerUnit;
inline constexpr TWordParser<&GetSVGGradientUnit, TSVGUnknownWord::uwDefault>
    ParseCoordinateSystemUnit;
inline constexpr TWordParser<&GetSVGGradientSpread, TSVGUnknownWord::uwDefault> ParseGradientSpread;

// False for "none" alone.
QXSVG_API bool ParseDisplay(StringView Text, bool Default, bool& Inherit);
// True for "visible" alone.
QXSVG_API bool ParseVisible(StringView Text, bool Default, bool& Inherit);
// Whether content shows beyond the viewport: true for "visible" and "auto".
QXSVG_API bool ParseOverflow(StringView Text, bool Default, bool& Inherit);

// Flat and miter for unknown words.
QXSVG_API TQXGPLineCap ParseLineCap(StringView Text, TQXGPLineCap Default, bool& Inherit);
QXSVG_API TQXGPStrokeJoin ParseLineJoin(StringView Text, TQXGPStrokeJoin Default, bool& Inherit);

// The start for an unknown word.
QXSVG_API TSVGTextAlign ParseTextAnchor(StringView Text, TSVGTextAlign Default, bool& Inherit);

// Default with italic added or removed; its other members stay.
QXSVG_API TFontStyles ParseFontStyle(StringView Text, TFontStyles Default, bool& Inherit);

// A word of SVGCursorNames, which may stand last in a list that begins with url("...").
QXSVG_API TCursor ParseCursor(StringView Text, TCursor Default, bool& Inherit);

// How text-decoration shows in a font. Blink is drawn as underlined text.
struct TSVGTextDecorationStyles {
  bool Underline = false;
  bool StrikeOut = false;
  TExtendedFontStyles ExtendStyles;
};
// Nothing where the text holds no value of its own. A list of several words is an unknown word, and
// that is no decoration.
QXSVG_API std::optional<TSVGTextDecorationStyles> ParseTextDecoration(StringView Text,
                                                                      bool& Inherit);

}  // namespace qxsvg
