#include "foundation/ParseKeywords.h"

#include "foundation/ParseTokens.h"

namespace qxsvg {

bool ParseDisplay(StringView Text, bool Default, bool& Inherit) {
  Text = Trim(Text);
  return TakesValue(Text, Inherit) ? Text != u"none" : Default;
}

bool ParseVisible(StringView Text, bool Default, bool& Inherit) {
  Text = Trim(Text);
  return TakesValue(Text, Inherit) ? Text == u"visible" : Default;
}

bool ParseOverflow(StringView Text, bool Default, bool& Inherit) {
  Text = Trim(Text);
  return TakesValue(Text, Inherit) ? Text == u"visible" || Text == u"auto" : Default;
}

TQXGPLineCap ParseLineCap(StringView Text, TQXGPLineCap Default, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  if (Text == u"round") return TQXGPLineCap::lcRound;
  return Text == u"square" ? TQXGPLineCap::lcSquare : TQXGPLineCap::lcFlat;
}

TQXGPStrokeJoin ParseLineJoin(StringView Text, TQXGPStrokeJoin Default, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  if (Text == u"bevel") return TQXGPStrokeJoin::sjBevel;
  return Text == u"round" ? TQXGPStrokeJoin::sjRound : TQXGPStrokeJoin::sjMiter;
}

TSVGTextAlign ParseTextAnchor(StringView Text, TSVGTextAlign Default, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  const TSVGTextAnchor Anchor = GetSVGTextAnchor(Text);
  if (Anchor == TSVGTextAnchor::taMiddle) return TSVGTextAlign::staCenter;
  return Anchor == TSVGTextAnchor::taEnd ? TSVGTextAlign::staTrailing : TSVGTextAlign::staLeading;
}

TFontStyles ParseFontStyle(StringView Text, TFontStyles Default, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  const TSVGFontStyle Style = GetSVGFontStyle(Text);
  Default.Set(TFontStyle::fsItalic,
              Style == TSVGFontStyle::sfsItalic || Style == TSVGFontStyle::sfsOblique);
  return Default;
}

TCursor ParseCursor(StringView Text, TCursor Default, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  if (StartsText(u"url(\"", Text)) Text = SplitClean(Text, u",").back();
  return SVGCursorMapping[Ordinal(GetSVGCursor(Text))];
}

std::optional<TSVGTextDecorationStyles> ParseTextDecoration(StringView Text, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return std::nullopt;
  TSVGTextDecorationStyles Result;
  switch (GetSVGTextDecoration(Text)) {
    case TSVGTextDecoration::tdNone: break;
    case TSVGTextDecoration::tdUnderline: Result.Underline = true; break;
    case TSVGTextDecoration::tdOverline:
      Result.ExtendStyles = {TExtendedFontStyle::fsOverline};
      break;
    case TSVGTextDecoration::tdLineThrough: Result.StrikeOut = true; break;
    case TSVGTextDecoration::tdBlink:
      Result.Underline = true;
      Result.ExtendStyles = {TExtendedFontStyle::fsBlink};
      break;
  }
  return Result;
}

}  // namespace qxsvg
