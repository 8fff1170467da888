// The properties of an element as the texts of the format.
#include "document/Document.h"
#include "foundation/Lookups.h"
#include "foundation/Writers.h"
#include "graphics/GraphicElementParts.h"

namespace qxsvg {

namespace {

constexpr StringView NoneText = u"none";

String FragmentText(StringView ID) {
  return u"url(#" + String(ID) + u")";
}

template <class Paint>
String PaintText(const Paint* Target, TQXGPBrushKind DefaultKind) {
  if (!Target)
    return DefaultKind == TQXGPBrushKind::bkNone ? String(NoneText) : SVGColorToString(0xff000000);
  if (!Target->URI().empty()) return FragmentText(Target->URI());
  return Target->Kind() == TQXGPBrushKind::bkNone ? String(NoneText)
                                                  : SVGColorToString(Target->Color());
}

template <class Words, class Value>
String WordText(const Words& Table, Value Word) {
  return String(Table[Ordinal(Word)]);
}

StringView DecorationText(const TSVGFont& Font) {
  const auto Word = [](TSVGTextDecoration Value) { return SVGTextDecorations[Ordinal(Value)]; };
  // Blink shows as an underline, so it is asked for first.
  if (Font.ExtendStyles().Has(TExtendedFontStyle::fsBlink))
    return Word(TSVGTextDecoration::tdBlink);
  if (Font.Style().Has(TFontStyle::fsUnderline)) return Word(TSVGTextDecoration::tdUnderline);
  if (Font.ExtendStyles().Has(TExtendedFontStyle::fsOverline))
    return Word(TSVGTextDecoration::tdOverline);
  if (Font.Style().Has(TFontStyle::fsStrikeOut)) return Word(TSVGTextDecoration::tdLineThrough);
  return NoneText;
}

}  // namespace

// One property's text from the element's own values.
class PropertyWriter {
 public:
  using E = TSVGGraphicElement;
  explicit PropertyWriter(E& Element) : FElement(Element), FFormat(Element.GetFormatStr()) {}

  String Text(TSVGStyleProperty Property) const;

 private:
  static constexpr float PercentBase = 100;

  String Number(float Value) const { return SVGNumberToString(Value, TSVGUnit::suNone, FFormat); }
  String Length(const TSVGLength& Value) const {
    return SVGLengthToString(Value, FFormat, 0, PercentBase);
  }
  String Spacing(const TSVGStylePropertyAutoLength& Value, StringView Automatic) const {
    return Value.IsAutomatic() ? String(Automatic) : Length(Value);
  }
  // A size in pixels, in the unit that it was given in.
  String Size(float Pixels, TSVGUnit Unit) const {
    return SVGNumberToString(PixelsToSVGUnit(Pixels, Unit, FElement.GetUnitFactors()), Unit,
                             FFormat);
  }
  String PenText(TSVGStyleProperty Property) const;
  String FontText(TSVGStyleProperty Property) const;
  String LengthText(TSVGStyleProperty Property) const;
  String PlainText(TSVGStyleProperty Property) const;
  String ReferenceText(StringView URI) const;
  String BaselineShift() const;
  String Background() const;
  String Clip() const;
  StringView VisibleWord(StringView Visible, StringView Hidden) const {
    return FElement.FVisible ? Visible : Hidden;
  }
  StringView Default(TSVGStyleProperty Property) const {
    return SVGStylePropertyRowOf(Property).Default;
  }

  E& FElement;
  TFloatFormat FFormat;
};

String PropertyWriter::Text(TSVGStyleProperty Property) const {
  switch (SVGStylePropertyRowOf(Property).Home) {
    case TSVGStyleHome::shBrush:
      return Property == TSVGStyleProperty::ipFill
                 ? PaintText(FElement.FBrush.get(), TQXGPBrushKind::bkSolid)
                 : Number(FElement.FBrush ? FElement.FBrush->Opacity() : 1);
    case TSVGStyleHome::shPen: return PenText(Property);
    case TSVGStyleHome::shFont: return FontText(Property);
    case TSVGStyleHome::shLength: return LengthText(Property);
    case TSVGStyleHome::shElement: return PlainText(Property);
    case TSVGStyleHome::shStrings:
    case TSVGStyleHome::shGradientStop: return String(FElement.FStyle.GetStyleProp(Property));
    // The shorthand is written as its parts.
    case TSVGStyleHome::shMarkers:
    case TSVGStyleHome::shNone: break;
  }
  return {};
}

String PropertyWriter::PenText(TSVGStyleProperty Property) const {
  const TSVGPen* Pen = FElement.FPen.get();
  if (!Pen) return String(Default(Property));
  switch (Property) {
    case TSVGStyleProperty::ipStroke: return PaintText(Pen, TQXGPBrushKind::bkNone);
    case TSVGStyleProperty::ipStrokeDasharray: return Pen->GetDashArray();
    case TSVGStyleProperty::ipStrokeDashOffset: return Length(Pen->SVGDashOffset());
    case TSVGStyleProperty::ipStrokeLinecap: return SVGStrokeCapToString(Pen->EndCap());
    case TSVGStyleProperty::ipStrokeLineJoin: return SVGStrokeJoinToString(Pen->Join());
    case TSVGStyleProperty::ipStrokeMiterLimit: return Number(Pen->MiterLimit());
    case TSVGStyleProperty::ipStrokeOpacity: return Number(Pen->Opacity());
    case TSVGStyleProperty::ipStrokeWidth:
      return Pen->ThicknessIsPercent()
                 ? SVGLengthToString(Pen->Thickness(), true, TSVGUnit::suPercent, FFormat, 0,
                                     PercentBase)
                 : Size(Pen->Thickness(), Pen->ThicknessPreferredUnit());
    default: return {};
  }
}

String PropertyWriter::FontText(TSVGStyleProperty Property) const {
  const TSVGFont* Font = FElement.FFont.get();
  if (!Font) return String(Default(Property));
  switch (Property) {
    case TSVGStyleProperty::ipFontFamily:
      return Font->Families().IsEmpty() ? Font->Name() : Font->FamiliesToString();
    case TSVGStyleProperty::ipFontSize: return Size(Font->Size(), Font->SizePreferredUnit());
    case TSVGStyleProperty::ipFontStyle:
      return WordText(SVGFontStyles, Font->Style().Has(TFontStyle::fsItalic)
                                         ? TSVGFontStyle::sfsItalic
                                         : TSVGFontStyle::sfsNormal);
    case TSVGStyleProperty::ipFontVariant: return WordText(SVGFontVariants, Font->FontVariant());
    case TSVGStyleProperty::ipFontWeight: return WordText(SVGFontWeights, Font->Weight());
    case TSVGStyleProperty::ipTextDecoration: return String(DecorationText(*Font));
    default: return {};
  }
}

String PropertyWriter::BaselineShift() const {
  const TSVGBaselineShiftLength& Shift = FElement.BaselineShift();
  switch (Shift.GetShift()) {
    case TSVGBaselineShift::bsNone:
    case TSVGBaselineShift::bsPercentage:
    case TSVGBaselineShift::bsLength: return Length(Shift);
    default: return WordText(SVGBaselineShifts, Shift.GetShift());
  }
}

String PropertyWriter::LengthText(TSVGStyleProperty Property) const {
  if (!FElement.FSpacings) return String(Default(Property));
  switch (Property) {
    case TSVGStyleProperty::ipBaselineShift: return BaselineShift();
    case TSVGStyleProperty::ipKerning: return Spacing(FElement.Kerning(), u"auto");
    case TSVGStyleProperty::ipLetterSpacing: return Spacing(FElement.LetterSpacing(), u"normal");
    case TSVGStyleProperty::ipWordSpacing: return Spacing(FElement.WordSpacing(), u"normal");
    default: return {};
  }
}

String PropertyWriter::Background() const {
  if (!FElement.FEnableBackground) return String(SVGEnableBackgrounds[false]);
  String Result(SVGEnableBackgrounds[true]);
  const TRectF& Rect = FElement.BackgroundRect();
  if (Rect != TRectF())
    Result.append(u" ").append(SVGRectToString(Rect, TSVGUnit::suNone, FFormat));
  return Result;
}

String PropertyWriter::Clip() const {
  const TRectF& Rect = FElement.ClipRect();
  if (Rect == TRectF()) return u"auto";
  const float Sides[] = {Rect.Top, Rect.Right, Rect.Bottom, Rect.Left};
  return u"rect(" + SVGNumbersToString(Sides, FFormat, u" ") + u")";
}

// What is no fragment, such as a file's name, is written back as it was read.
String PropertyWriter::ReferenceText(StringView URI) const {
  if (URI.empty() || URI == NoneText) return String(NoneText);
  // Identifiers of drawing programs hold colons and slashes too.
  const bool IsFragment = FElement.FindByID(URI) ||
                          (URI.front() != u'#' && URI.find_first_of(u"()/:") == StringView::npos);
  return IsFragment ? FragmentText(URI) : String(URI);
}

String PropertyWriter::PlainText(TSVGStyleProperty Property) const {
  using enum TSVGStyleProperty;
  const auto Reference = [&](TSVGReference Which) {
    return ReferenceText(FElement.ReadReferences().URI(Which));
  };
  switch (Property) {
    case ipAlignmentBaseline: return WordText(SVGAlignmentBaselines, FElement.FAlignmentBaseline);
    case ipClip: return Clip();
    case ipClipPath: return Reference(TSVGReference::rfClip);
    case ipClipRule: return WordText(SVGFillRules, FElement.FClipRule);
    case ipColor:
      return FElement.FColor == 0 ? String(NoneText) : SVGColorToString(FElement.FColor);
    case ipColorInterpolation:
      return WordText(SVGColorInterpolationNames, FElement.FColorInterpolation);
    case ipColorRendering: return WordText(SVGColorRenderingNames, FElement.FColorRendering);
    case ipCursor: return WordText(SVGCursorNames, GetSVGCursor(FElement.FCursor));
    case ipDirection: return WordText(SVGDirections, FElement.FDirection);
    case ipDisplay: return String(VisibleWord(u"inline", NoneText));
    case ipDominantBaseline: return WordText(SVGDominantBaselines, FElement.FDominantBaseline);
    case ipEnableBackground: return Background();
    case ipFillRule: return WordText(SVGFillRules, FElement.FFillRule);
    case ipFilter: return Reference(TSVGReference::rfFilter);
    case ipGlyphOrientationHorizontal:
      return WordText(SVGGlyphOrientationHorizontals, FElement.FGlyphOrientationHorizontal);
    case ipGlyphOrientationVertical:
      return WordText(SVGGlyphOrientationVerticals, FElement.FGlyphOrientationVertical);
    case ipMarkerEnd: return Reference(TSVGReference::rfMarkerEnd);
    case ipMarkerMid: return Reference(TSVGReference::rfMarkerMid);
    case ipMarkerStart: return Reference(TSVGReference::rfMarkerStart);
    case ipOpacity:
      return SVGLengthToString(FElement.FOpacity,
                               FElement.FOpacityPreferredUnit == TSVGUnit::suPercent,
                               FElement.FOpacityPreferredUnit, FFormat, 0, PercentBase);
    case ipOverflow: return FElement.FOverflow ? u"visible" : u"hidden";
    case ipPointerEvents: return WordText(SVGPointerEvents, FElement.FPointerEvents);
    case ipShapeRendering: return WordText(SVGShapeRenderingNames, FElement.FShapeRendering);
    case ipTextAnchor: return WordText(SVGTextAlignNames, FElement.FTextAlign);
    case ipTextRendering: return WordText(SVGTextRenderingNames, FElement.FTextRendering);
    case ipVectorEffect: return WordText(SVGVectorEffects, FElement.FVectorEffect);
    case ipVisibility: return String(SVGVisibility[FElement.FVisible]);
    case ipWritingMode: return WordText(SVGWritingModes, FElement.FWritingMode);
    default: return {};
  }
}

// --- The element

String TSVGGraphicElement::PropertyText(TSVGStyleProperty Property) {
  return PropertyWriter(*this).Text(Property);
}

String TSVGGraphicElement::EffectivePropertyText(TSVGStyleProperty Property) {
  TSVGGraphicElement* E = this;
  while (E->IsMarked(Property) && E->GetGraphicParent()) E = E->GetGraphicParent();
  return E->PropertyText(Property);
}

}  // namespace qxsvg
