// From the texts of a style to the values of an element.
//
// Some properties share a field, so that the order in which they are read decides. The table Steps
// holds that order; a style says which properties it has, and only the steps that read one of these
// run.
#include <algorithm>
#include <array>
#include <bit>

#include "document/Document.h"
#include "document/TreeWalk.h"
#include "foundation/Parsers.h"
#include "graphics/DashArray.h"
#include "graphics/GraphicElementParts.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

using enum TSVGStyleProperty;

// One pass of one style over one element.
class StyleApplier {
 public:
  using E = TSVGGraphicElement;
  using A = StyleApplier;
  StyleApplier(E& Element, const TSVGStyle& Style) : FElement(Element), FStyle(Style) {}
  void Run();

 private:
  struct TStep {
    void (StyleApplier::*Apply)();
    TSVGStyleProperties Reads;
  };
  static constexpr std::size_t StepCount = 47;
  static const std::array<TStep, StepCount> Steps;
  // For each property the steps that read it, as a mask.
  static const std::array<std::uint64_t, SVGStylePropertyCount> StepsOf;

  StringView Text(TSVGStyleProperty Property) const { return FStyle.GetStyleProp(Property); }

  // Reads a property into a field by the parser of its type: Parse(text, present value, mark).
  template <class Parser, class Value>
  void Read(TSVGStyleProperty Property, Value& Field, const Parser& Parse) {
    ReadInto(Property,
             [&](StringView Text, bool& IsMarked) { Field = Parse(Text, Field, IsMarked); });
  }
  template <class Reader>
  void ReadInto(TSVGStyleProperty Property, const Reader& Into) {
    bool IsMarked = FElement.FInherits.Has(Property);
    Into(Text(Property), IsMarked);
    FElement.FInherits.Set(Property, IsMarked);
  }
  // The step of a property that needs nothing but its field and its parser.
  template <TSVGStyleProperty Property, auto Field, const auto& Parse>
  void Plain() {
    Read(Property, FElement.*Field, Parse);
  }
  template <TSVGStyleProperty Property, TSVGReference Which>
  void Reference() {
    ReadReference(Property, Which, Text(Property));
  }
  void ReadReference(TSVGStyleProperty Property, TSVGReference Which, StringView Text);
  template <class Paint>
  void ReadPaintURI(TSVGStyleProperty Property, Paint& (E::*Own)());
  template <class Paint>
  void ReadPaint(TSVGStyleProperty Property, Paint& Target);
  TQXGPColor ReadColor(StringView Text, TQXGPColor Present, bool& IsNone, bool& IsMarked);

  void FillURI() { ReadPaintURI(ipFill, &E::OwnBrush); }
  void StrokeURI() { ReadPaintURI(ipStroke, &E::OwnPen); }
  void BaselineShift() { ParseBaselineShift(Text(ipBaselineShift), FElement.BaselineShift()); }
  void EnableBackground();
  void Color();
  void Fill() { ReadPaint(ipFill, FElement.OwnBrush()); }
  void Stroke() { ReadPaint(ipStroke, FElement.OwnPen()); }
  void FillOpacity() { ReadPaintOpacity(ipFillOpacity, FElement.OwnBrush()); }
  void StrokeOpacity() { ReadPaintOpacity(ipStrokeOpacity, FElement.OwnPen()); }
  template <class Paint>
  void ReadPaintOpacity(TSVGStyleProperty Property, Paint& Target) {
    ReadInto(Property, [&](StringView Text, bool& IsMarked) {
      Target.SetOpacity(ParseNumber(Text, Target.Opacity(), IsMarked));
    });
  }
  void LineCap();
  void MiterLimit();
  void LineJoin();
  void StrokeWidth();
  void Dashes();
  void Opacity();
  void FontFamily();
  void FontSize();
  void FontStyle();
  void FontVariant();
  void FontWeight();
  void TextDecoration();
  void LetterSpacing() { ParseSpacing(Text(ipLetterSpacing), FElement.LetterSpacing()); }
  void Kerning() { ParseKerning(Text(ipKerning), FElement.Kerning()); }
  void WordSpacing() { ParseSpacing(Text(ipWordSpacing), FElement.WordSpacing()); }
  void Clip();
  void Markers();

  E& FElement;
  const TSVGStyle& FStyle;
};

// --- Order

constexpr std::array<StyleApplier::TStep, StyleApplier::StepCount> StyleApplier::Steps{{
    // References to paint servers first: what is read as a colour later keeps them.
    {&A::FillURI, {ipColor, ipFill}},
    {&A::StrokeURI, {ipColor, ipStroke}},
    // These two share a field.
    {&A::Plain<ipVisibility, &E::FVisible, ParseVisible>, {ipVisibility}},
    {&A::Plain<ipDisplay, &E::FVisible, ParseDisplay>, {ipDisplay}},
    {&A::Plain<ipAlignmentBaseline, &E::FAlignmentBaseline, ParseAlignmentBaseline>,
     {ipAlignmentBaseline}},
    {&A::BaselineShift, {ipBaselineShift}},
    {&A::Plain<ipDominantBaseline, &E::FDominantBaseline, ParseDominantBaseline>,
     {ipDominantBaseline}},
    {&A::EnableBackground, {ipEnableBackground}},
    {&A::Reference<ipFilter, TSVGReference::rfFilter>, {ipFilter}},
    {&A::Plain<ipColorInterpolation, &E::FColorInterpolation, ParseColorInterpolation>,
     {ipColorInterpolation}},
    {&A::Plain<ipColorRendering, &E::FColorRendering, ParseColorRendering>, {ipColorRendering}},
    {&A::Plain<ipShapeRendering, &E::FShapeRendering, ParseShapeRendering>, {ipShapeRendering}},
    {&A::Plain<ipTextRendering, &E::FTextRendering, ParseTextRendering>, {ipTextRendering}},
    // Before the paints, which may take it over.
    {&A::Color, {ipColor}},
    {&A::Fill, {ipFill}},
    {&A::Stroke, {ipStroke}},
    {&A::FillOpacity, {ipFillOpacity}},
    {&A::Plain<ipFillRule, &E::FFillRule, ParseFillRule>, {ipFillRule}},
    {&A::LineCap, {ipStrokeLinecap}},
    {&A::MiterLimit, {ipStrokeMiterLimit}},
    {&A::LineJoin, {ipStrokeLineJoin}},
    {&A::StrokeWidth, {ipStrokeWidth}},
    {&A::Dashes, {ipStrokeDasharray, ipStrokeDashOffset}},
    {&A::StrokeOpacity, {ipStrokeOpacity}},
    {&A::Plain<ipVectorEffect, &E::FVectorEffect, ParseVectorEffect>, {ipVectorEffect}},
    {&A::Opacity, {ipOpacity}},
    {&A::FontFamily, {ipFontFamily}},
    {&A::FontSize, {ipFontSize}},
    {&A::FontStyle, {ipFontStyle}},
    {&A::FontVariant, {ipFontVariant}},
    {&A::FontWeight, {ipFontWeight}},
    {&A::Plain<ipTextAnchor, &E::FTextAlign, ParseTextAnchor>, {ipTextAnchor}},
    {&A::TextDecoration, {ipTextDecoration}},
    {&A::LetterSpacing, {ipLetterSpacing}},
    {&A::Kerning, {ipKerning}},
    {&A::WordSpacing, {ipWordSpacing}},
    {&A::Plain<ipDirection, &E::FDirection, ParseDirection>, {ipDirection}},
    {&A::Plain<ipGlyphOrientationHorizontal, &E::FGlyphOrientationHorizontal,
               ParseGlyphOrientationHorizontal>,
     {ipGlyphOrientationHorizontal}},
    {&A::Plain<ipGlyphOrientationVertical, &E::FGlyphOrientationVertical,
               ParseGlyphOrientationVertical>,
     {ipGlyphOrientationVertical}},
    {&A::Plain<ipWritingMode, &E::FWritingMode, ParseWritingMode>, {ipWritingMode}},
    {&A::Plain<ipCursor, &E::FCursor, ParseCursor>, {ipCursor}},
    {&A::Plain<ipPointerEvents, &E::FPointerEvents, ParsePointerEvents>, {ipPointerEvents}},
    {&A::Reference<ipClipPath, TSVGReference::rfClip>, {ipClipPath}},
    {&A::Plain<ipClipRule, &E::FClipRule, ParseFillRule>, {ipClipRule}},
    {&A::Clip, {ipClip}},
    {&A::Plain<ipOverflow, &E::FOverflow, ParseOverflow>, {ipOverflow}},
    {&A::Markers, {ipMarker, ipMarkerStart, ipMarkerMid, ipMarkerEnd}},
}};

constexpr std::array<std::uint64_t, SVGStylePropertyCount> StyleApplier::StepsOf = [] {
  std::array<std::uint64_t, SVGStylePropertyCount> Result{};
  for (std::size_t Step = 0; Step < StepCount; ++Step)
    for (const TSVGStyleProperty Property : Steps[Step].Reads)
      Result[Ordinal(Property)] |= std::uint64_t{1} << Step;
  return Result;
}();

void StyleApplier::Run() {
  std::uint64_t Wanted = 0;
  for (const TSVGStyleProperty Property : FStyle.Present()) Wanted |= StepsOf[Ordinal(Property)];
  // Start and dash caps follow the end cap in every pass.
  if (FElement.FPen) Wanted |= StepsOf[Ordinal(ipStrokeLinecap)];
  for (; Wanted != 0; Wanted &= Wanted - 1)
    (this->*Steps[static_cast<std::size_t>(std::countr_zero(Wanted))].Apply)();
}

// --- Helpers

TQXGPColor StyleApplier::ReadColor(StringView Text, TQXGPColor Present, bool& IsNone,
                                   bool& IsMarked) {
  try {
    return ParseColor(Text, Present, IsNone, IsMarked, FElement.GetColor());
  } catch (const EConvertError& Error) {
    // A colour that cannot be read must not take the document along.
    if (TSVGDocument* Document = FElement.Document())
      Document->Diagnose(TSVGDiagnosticKind::dkValue, &FElement, Error.Message());
    IsMarked = false;
    return Present;
  }
}

// The name of a server stays when a later text holds none: a plain colour in a later style does not
// take a server away.
template <class Paint>
void StyleApplier::ReadPaintURI(TSVGStyleProperty Property, Paint& (E::*Own)()) {
  for (const TSVGStyleProperty Source : {ipColor, Property})
    if (const StringView URI = ParseLocalURI(Text(Source)); !URI.empty())
      (FElement.*Own)().SetURI(URI);
}

template <class Paint>
void StyleApplier::ReadPaint(TSVGStyleProperty Property, Paint& Target) {
  bool IsNone = Target.Kind() == TQXGPBrushKind::bkNone;
  ReadInto(Property, [&](StringView Text, bool& IsMarked) {
    Target.SetColor(ReadColor(Text, Target.Color(), IsNone, IsMarked));
  });
  const String URI = Target.URI();
  Target.SetKind(IsNone ? TQXGPBrushKind::bkNone : TQXGPBrushKind::bkSolid);
  Target.SetURI(URI);
}

void StyleApplier::ReadReference(TSVGStyleProperty Property, TSVGReference Which, StringView Text) {
  bool IsMarked = FElement.FInherits.Has(Property);
  const StringView Present = FElement.ReadReferences().URI(Which);
  const StringView Value = ParseURI(Text, Present, IsMarked);
  if (Value != Present) FElement.WriteReferences().URI(Which) = String(Value);
  FElement.FInherits.Set(Property, IsMarked);
}

// --- Steps

void StyleApplier::EnableBackground() {
  ReadInto(ipEnableBackground, [&](StringView Text, bool& IsMarked) {
    TRectF Rect = FElement.BackgroundRect();
    FElement.FEnableBackground = ParseEnableBackground(Text, FElement.FEnableBackground, Rect,
                                                       IsMarked, FElement.GetUnitFactors());
    if (Rect != FElement.BackgroundRect()) FElement.WriteReferences().BackgroundRect = Rect;
  });
}

void StyleApplier::Color() {
  ReadInto(ipColor, [&](StringView Text, bool& IsMarked) {
    bool IsNone = false;
    const TQXGPColor Value = ReadColor(Text, FElement.FColor, IsNone, IsMarked);
    FElement.FColor = IsNone ? 0 : Value;
  });
}

void StyleApplier::LineCap() {
  TSVGPen& Pen = FElement.OwnPen();
  ReadInto(ipStrokeLinecap, [&](StringView Text, bool& IsMarked) {
    Pen.SetEndCap(ParseLineCap(Text, Pen.EndCap(), IsMarked));
  });
  Pen.SetStartCap(Pen.EndCap());
  switch (Pen.EndCap()) {
    case TQXGPLineCap::lcRound: Pen.SetDashCap(TQXGPDashCap::dcRound); break;
    case TQXGPLineCap::lcTriangle: Pen.SetDashCap(TQXGPDashCap::dcTriangle); break;
    default: Pen.SetDashCap(TQXGPDashCap::dcFlat);
  }
}

void StyleApplier::MiterLimit() {
  TSVGPen& Pen = FElement.OwnPen();
  ReadInto(ipStrokeMiterLimit, [&](StringView Text, bool& IsMarked) {
    Pen.SetMiterLimit(ParseMiterLimit(Text, Pen.MiterLimit(), IsMarked));
  });
}

void StyleApplier::LineJoin() {
  TSVGPen& Pen = FElement.OwnPen();
  ReadInto(ipStrokeLineJoin, [&](StringView Text, bool& IsMarked) {
    Pen.SetJoin(ParseLineJoin(Text, Pen.Join(), IsMarked));
  });
}

void StyleApplier::StrokeWidth() {
  TSVGPen& Pen = FElement.OwnPen();
  ReadInto(ipStrokeWidth, [&](StringView Text, bool& IsMarked) {
    TSVGUnit Unit = Pen.ThicknessPreferredUnit();
    Pen.SetThickness(
        ParsePercent(Text, Pen.Thickness(), IsMarked, Unit, FElement.FactorsFor(Text), 0, 1));
    Pen.SetThicknessPreferredUnit(Unit);
    Pen.SetThicknessIsPercent(Unit == TSVGUnit::suPercent);
  });
}

void StyleApplier::Dashes() {
  ParseDashArray(Text(ipStrokeDasharray), Text(ipStrokeDashOffset), FElement.OwnPen(),
                 FElement.FInherits, FElement.FactorsFor(Text(ipStrokeDasharray)));
}

void StyleApplier::Opacity() {
  ReadInto(ipOpacity, [&](StringView Text, bool& IsMarked) {
    // Not clamped: only the setter does that.
    FElement.FOpacity = ParsePercent(Text, FElement.FOpacity, IsMarked,
                                     FElement.FOpacityPreferredUnit, SVGUnitFactors, 0, 1);
  });
}

void StyleApplier::FontFamily() {
  ReadInto(ipFontFamily, [&](StringView Text, bool& IsMarked) {
    ParseFontFamily(Text, FElement.OwnFont().Families(), IsMarked);
  });
}

void StyleApplier::FontSize() {
  FElement.ReadFontSize(Text(ipFontSize));
}

void StyleApplier::FontStyle() {
  TSVGFont& Font = FElement.OwnFont();
  ReadInto(ipFontStyle, [&](StringView Text, bool& IsMarked) {
    Font.SetStyle(ParseFontStyle(Text, Font.Style(), IsMarked));
  });
}

void StyleApplier::FontVariant() {
  TSVGFont& Font = FElement.OwnFont();
  ReadInto(ipFontVariant, [&](StringView Text, bool& IsMarked) {
    Font.SetFontVariant(ParseFontVariant(Text, Font.FontVariant(), IsMarked));
  });
}

void StyleApplier::FontWeight() {
  TSVGFont& Font = FElement.OwnFont();
  ReadInto(ipFontWeight, [&](StringView Text, bool& IsMarked) {
    Font.SetWeight(ParseFontWeight(Text, Font.Weight(), IsMarked));
  });
}

void StyleApplier::TextDecoration() {
  TSVGFont& Font = FElement.OwnFont();
  ReadInto(ipTextDecoration, [&](StringView Text, bool& IsMarked) {
    const auto Lines = ParseTextDecoration(Text, IsMarked);
    if (!Lines) return;
    TFontStyles Styles = Font.Style();
    Styles.Set(TFontStyle::fsUnderline, Lines->Underline);
    Styles.Set(TFontStyle::fsStrikeOut, Lines->StrikeOut);
    Font.SetStyle(Styles);
    Font.SetExtendStyles(Lines->ExtendStyles);
  });
}

void StyleApplier::Clip() {
  ReadInto(ipClip, [&](StringView Text, bool& IsMarked) {
    const TRectF Rect =
        ParseClipRect(Text, FElement.ClipRect(), IsMarked, FElement.GetUnitFactors());
    if (Rect != FElement.ClipRect()) FElement.WriteReferences().ClipRect = Rect;
  });
}

void StyleApplier::Markers() {
  struct TEnd {
    TSVGStyleProperty Property;
    TSVGReference Which;
  };
  constexpr std::array<TEnd, 3> Ends{{{ipMarkerStart, TSVGReference::rfMarkerStart},
                                      {ipMarkerMid, TSVGReference::rfMarkerMid},
                                      {ipMarkerEnd, TSVGReference::rfMarkerEnd}}};
  const StringView All = Text(ipMarker);
  for (const TEnd& End : Ends)
    ReadReference(End.Property, End.Which, All.empty() ? Text(End.Property) : All);
}

// --- The element

void TSVGGraphicElement::ReadFontSize(StringView Text) {
  if (Trim(Text).empty()) return;
  TSVGFont& Font = OwnFont();
  TSVGGraphicElement* Ancestor = GetGraphicParent();
  bool IsMarked = FInherits.Has(ipFontSize);
  const float ParentSize = Ancestor ? Ancestor->EffectiveFontSize() : Font.Size();
  Font.SetSize(ParseFontSize(Text, Font.Size(), ParentSize, IsMarked, FactorsFor(Text)));
  FInherits.Set(ipFontSize, IsMarked);
}

TSVGUnitFactors TSVGGraphicElement::FactorsFor(StringView Text) {
  // A number without a unit needs no font, and the size of the font is dear.
  const bool HasUnit =
      std::any_of(Text.begin(), Text.end(), [](char16_t C) { return C > u'9' || C == u'%'; });
  return HasUnit ? GetUnitFactors() : SVGUnitFactors;
}

void TSVGGraphicElement::ApplyStyle(const TSVGStyle& Style) {
  const TTreeWalk Walk(*this);
  const StylingLock Lock(*this);
  StyleApplier(*this, Style).Run();
  FClippingChanged = true;
  if (Lock.IsOutermost()) TellStaleParts();
}

void TSVGGraphicElement::TellStaleParts() {
  const std::uint8_t Stale = std::exchange(FStale, std::uint8_t{0});
  if (Stale & stBrush) TSVGElement::PropagateObjectPropChange(FBrush.get());
  if (Stale & stPen) TSVGElement::PropagateObjectPropChange(FPen.get());
  if (Stale & stFont) TSVGElement::PropagateObjectPropChange(FFont.get());
  Change(this);
}

}  // namespace qxsvg
