// What a stream knows of a graphic element: the published properties, and the two sets that are
// written beside them.
#include "document/Document.h"
#include "foundation/Options.h"
#include "foundation/ParseNumbers.h"
#include "graphics/GraphicElementParts.h"
#include "runtime/Exceptions.h"
#include "runtime/Filer.h"
#include "runtime/Numbers.h"

namespace qxsvg {

// One published plain property. It is stored when the element has a value of its own that is not
// the initial one: writing a property ends its inheritance, so that an inherited one must not be
// read.
template <TSVGStyleProperty Mark, auto Field, auto Reader, auto Writer, auto Initial>
constexpr TProperty PlainProperty(StringView Name) {
  return Property<Reader, Writer>(Name, [](const TPersistent& Self) {
    const auto& Element = static_cast<const TSVGGraphicElement&>(Self);
    return !Element.Inherits().Has(Mark) && Element.*Field != Initial;
  });
}

// One whose mark stays when it is written.
template <auto Reader, auto Writer, auto Initial>
constexpr TProperty OwnProperty(StringView Name) {
  return Property<Reader, Writer>(Name, StoredUnless<Reader, Initial>);
}

namespace {

// A rectangle as its four sides.
String SidesText(const TRectF& Rect) {
  String Result;
  for (const float Side : {Rect.Left, Rect.Top, Rect.Right, Rect.Bottom}) {
    if (!Result.empty()) Result += u' ';
    Result += FloatToStr(Side);
  }
  return Result;
}

TRectF SidesOf(const TPropertyValue& Value) {
  const String Text = detail::FromPropertyValue<String>(Value);
  const std::vector<float> Sides = ParseNumbers(Text, {});
  constexpr std::size_t Count = 4;
  if (Sides.size() != Count) throw EConvertError(u"\"%s\" is no rectangle", {Text});
  return QXRect(Sides[0], Sides[1], Sides[2], Sides[3]);
}

// Where a set of properties is no more than its default, a stream leaves it out.
void DefineStyleProperties(TFiler& Filer, StringView Name, TSVGStylePropertiesSet& Set,
                           bool AsOrdinals, bool HasData) {
  const auto Read = [&Set](TReader& Reader) {
    if (!Reader.IsNextList()) return Set.FromString(Reader.ReadString());
    TSVGStyleProperties Members;
    Reader.ReadListBegin();
    while (!Reader.EndOfList()) {
      const std::int64_t Index = Reader.ReadInteger();
      if (Index >= 0 && Index < static_cast<std::int64_t>(SVGStylePropertyCount))
        Members.Include(static_cast<TSVGStyleProperty>(Index));
    }
    Reader.ReadListEnd();
    Set.SetValue(Members);
  };
  const auto Write = [&Set, AsOrdinals](TWriter& Writer) {
    if (!AsOrdinals) return Writer.WriteString(Set.ToString());
    Writer.WriteListBegin();
    for (const TSVGStyleProperty Member : Set.Value())
      Writer.WriteInteger(static_cast<std::int64_t>(Member));
    Writer.WriteListEnd();
  };
  Filer.DefineProperty(Name, Read, Write, HasData);
}

}  // namespace

struct TSVGGraphicElement::PublishedRow {
  using E = TSVGGraphicElement;
  using P = TSVGStyleProperty;

  template <auto Part>
  static bool Has(const TPersistent& Self) {
    return (static_cast<const E&>(Self).*Part) != nullptr;
  }
  template <P Mark, auto Reader>
  static constexpr bool HasReference(const TPersistent& Self) {
    const auto& Element = static_cast<const E&>(Self);
    return !Element.IsMarked(Mark) && !(Element.*Reader)().empty();
  }

  template <auto Reader, auto Writer>
  static constexpr TProperty RectProperty(StringView Name) {
    return {Name, TPropertyKind::Text,
            [](const TPersistent& Self) -> TPropertyValue {
              return SidesText((static_cast<const E&>(Self).*Reader)());
            },
            [](TPersistent& Self, const TPropertyValue& Value) {
              (static_cast<E&>(Self).*Writer)(SidesOf(Value));
            },
            [](const TPersistent& Self) {
              return (static_cast<const E&>(Self).*Reader)() != TRectF();
            }};
  }
};

struct TSVGGraphicElement::Published : PublishedRow {
  static constexpr TProperty Rows[] = {
      Property<&E::TransformMatrix, &E::SetTransformMatrix>(
          u"TransformMatrix",
          [](const TPersistent& Self) {
            return static_cast<const E&>(Self).FMatrix != QXIdentityMatrix;
          }),
      ObjectProperty<E, TSVGBrush, &E::OwnBrush>(u"Brush", &Has<&E::FBrush>),
      ObjectProperty<E, TSVGPen, &E::OwnPen>(u"Pen", &Has<&E::FPen>),
      ObjectProperty<E, TSVGFont, &E::OwnFont>(u"Font", &Has<&E::FFont>),
      PlainProperty<P::ipAlignmentBaseline, &E::FAlignmentBaseline, &E::GetAlignmentBaseline,
                    &E::SetAlignmentBaseline, TSVGAlignmentBaseline::abAuto>(u"AlignmentBaseline"),
      RectProperty<&E::BackgroundRect, &E::SetBackgroundRect>(u"BackgroundRect"),
      ObjectProperty<E, TSVGBaselineShiftLength, &E::BaselineShift>(u"BaselineShift",
                                                                    &Has<&E::FSpacings>),
      RectProperty<&E::ClipRect, &E::SetClipRect>(u"ClipRect"),
      PlainProperty<P::ipClipRule, &E::FClipRule, &E::GetClipRule, &E::SetClipRule,
                    TSVGFillRule::frNonZero>(u"ClipRule"),
      Property<&E::ClipURI, &E::SetClipURI>(u"ClipURI", StoredUnlessEmpty<&E::ClipURI>),
      PlainProperty<P::ipColor, &E::FColor, &E::GetColor, &E::SetColor, TQXGPColor{0}>(u"Color"),
      PlainProperty<P::ipColorInterpolation, &E::FColorInterpolation, &E::GetColorInterpolation,
                    &E::SetColorInterpolation, TSVGColorInterpolation::sciSRGB>(
          u"ColorInterpolation"),
      PlainProperty<P::ipColorRendering, &E::FColorRendering, &E::GetColorRendering,
                    &E::SetColorRendering, TSVGColorRendering::clrnAuto>(u"ColorRendering"),
      PlainProperty<P::ipCursor, &E::FCursor, &E::GetCursor, &E::SetCursor, TCursor{0}>(u"Cursor"),
      PlainProperty<P::ipDirection, &E::FDirection, &E::GetDirection, &E::SetDirection,
                    TSVGDirection::dirLeftToRight>(u"Direction"),
      PlainProperty<P::ipDominantBaseline, &E::FDominantBaseline, &E::GetDominantBaseline,
                    &E::SetDominantBaseline, TSVGDominantBaseline::dbAuto>(u"DominantBaseline"),
      PlainProperty<P::ipEnableBackground, &E::FEnableBackground, &E::IsEnableBackground,
                    &E::SetEnableBackground, false>(u"EnableBackground"),
      OwnProperty<&E::OwnFillRule, &E::SetFillRule, TSVGFillRule::frNonZero>(u"FillRule"),
      Property<&E::GetFilterURI, &E::SetFilterURI>(u"FilterURI",
                                                   &HasReference<P::ipFilter, &E::GetFilterURI>),
      PlainProperty<P::ipGlyphOrientationHorizontal, &E::FGlyphOrientationHorizontal,
                    &E::GetGlyphOrientationHorizontal, &E::SetGlyphOrientationHorizontal,
                    TSVGGlyphOrientationHorizontal::oh0Deg>(u"GlyphOrientationHorizontal"),
      PlainProperty<P::ipGlyphOrientationVertical, &E::FGlyphOrientationVertical,
                    &E::GetGlyphOrientationVertical, &E::SetGlyphOrientationVertical,
                    TSVGGlyphOrientationVertical::ovAuto>(u"GlyphOrientationVertical"),
      ObjectProperty<E, TSVGStylePropertyAutoLength, &E::Kerning>(u"Kerning", &Has<&E::FSpacings>),
      ObjectProperty<E, TSVGStylePropertyAutoLength, &E::LetterSpacing>(u"LetterSpacing",
                                                                        &Has<&E::FSpacings>),
      Property<&E::GetMarkerStartURI, &E::SetMarkerStartURI>(
          u"MarkerStartURI", &HasReference<P::ipMarkerStart, &E::GetMarkerStartURI>),
      Property<&E::GetMarkerMidURI, &E::SetMarkerMidURI>(
          u"MarkerMidURI", &HasReference<P::ipMarkerMid, &E::GetMarkerMidURI>),
      Property<&E::GetMarkerEndURI, &E::SetMarkerEndURI>(
          u"MarkerEndURI", &HasReference<P::ipMarkerEnd, &E::GetMarkerEndURI>),
      Property<&E::OwnOpacity, &E::SetOpacity>(
          u"Opacity",
          [](const TPersistent& Self) { return static_cast<const E&>(Self).FOpacity != 1; }),
      OwnProperty<&E::OpacityPreferredUnit, &E::SetOpacityPreferredUnit, TSVGUnit::suNone>(
          u"OpacityPreferredUnit"),
      Property<&E::OwnOverflow, &E::SetOverflow>(
          u"Overflow",
          [](const TPersistent& Self) {
            const auto& Element = static_cast<const E&>(Self);
            return !Element.IsMarked(P::ipOverflow) &&
                   Element.IsStored(P::ipOverflow, Element.FOverflow ? u"visible" : u"hidden");
          }),
      OwnProperty<&E::ParentPreferredStyles, &E::SetParentPreferredStyles, true>(
          u"ParentPreferredStyles"),
      PlainProperty<P::ipPointerEvents, &E::FPointerEvents, &E::GetPointerEvents,
                    &E::SetPointerEvents, TSVGPointerEvents::peVisiblePainted>(u"PointerEvents"),
      PlainProperty<P::ipShapeRendering, &E::FShapeRendering, &E::GetShapeRendering,
                    &E::SetShapeRendering, TSVGShapeRendering::srnAuto>(u"ShapeRendering"),
      PlainProperty<P::ipTextAnchor, &E::FTextAlign, &E::GetTextAlign, &E::SetTextAlign,
                    TSVGTextAlign::staLeading>(u"TextAlign"),
      PlainProperty<P::ipTextRendering, &E::FTextRendering, &E::GetTextRendering,
                    &E::SetTextRendering, TSVGTextRendering::txrnAuto>(u"TextRendering"),
      OwnProperty<&E::OwnVectorEffect, &E::SetVectorEffect, TSVGVectorEffect::veNone>(
          u"VectorEffect"),
      OwnProperty<&E::OwnVisible, &E::SetVisible, true>(u"Visible"),
      ObjectProperty<E, TSVGStylePropertyAutoLength, &E::WordSpacing>(u"WordSpacing",
                                                                      &Has<&E::FSpacings>),
      PlainProperty<P::ipWritingMode, &E::FWritingMode, &E::GetWritingMode, &E::SetWritingMode,
                    TSVGWritingMode::wmLeftRight_TopBottom>(u"WritingMode"),
  };
};

constinit const TSVGElementClass TSVGGraphicElement::Class{
    {u"TSVGGraphicElement", &TSVGElement::Class, Published::Rows, nullptr},
    TSVGElementType::etNone,
    nullptr};

void TSVGGraphicElement::DefineProperties(TFiler& Filer) {
  const bool AsOrdinals = GetOptions().Has(TSVGOption::soExportOptimizedBinaryStyleProperties);
  // Writing visibility takes its mark away, also where display alone has hidden the element.
  const bool LosesMark = !FVisible && IsMarked(TSVGStyleProperty::ipVisibility);
  DefineStyleProperties(Filer, u"InheritedProperties", FInherits, AsOrdinals,
                        LosesMark || FInherits.Value() != SVGInheritedProperties);
  DefineStyleProperties(Filer, u"PreferredStyleProperties", WritePreferredStyles(), AsOrdinals,
                        FPreferredStyles && !FPreferredStyles->Value().IsEmpty());
  TSVGElement::DefineProperties(Filer);
}

}  // namespace qxsvg
