// Readers and writers of the plain properties: a row a property, and one rule for all of them.
#include "document/Document.h"
#include "document/TreeWalk.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/GraphicElementScope.h"

namespace qxsvg {

// Which property a field holds, and the reader that answers with the value in force.
template <class FieldPointer, class Reader>
struct TFieldRow {
  TSVGStyleProperty Property;
  FieldPointer Field;
  Reader Get;
};
template <class FieldPointer, class Reader>
TFieldRow(TSVGStyleProperty, FieldPointer, Reader) -> TFieldRow<FieldPointer, Reader>;

struct TSVGGraphicElement::Rows {
  using E = TSVGGraphicElement;
  using P = TSVGStyleProperty;
  static constexpr TFieldRow AlignmentBaseline{P::ipAlignmentBaseline, &E::FAlignmentBaseline,
                                               &E::GetAlignmentBaseline};
  static constexpr TFieldRow ClipRule{P::ipClipRule, &E::FClipRule, &E::GetClipRule};
  static constexpr TFieldRow Color{P::ipColor, &E::FColor, &E::GetColor};
  static constexpr TFieldRow ColorInterpolation{P::ipColorInterpolation, &E::FColorInterpolation,
                                                &E::GetColorInterpolation};
  static constexpr TFieldRow ColorRendering{P::ipColorRendering, &E::FColorRendering,
                                            &E::GetColorRendering};
  static constexpr TFieldRow Cursor{P::ipCursor, &E::FCursor, &E::GetCursor};
  static constexpr TFieldRow Direction{P::ipDirection, &E::FDirection, &E::GetDirection};
  static constexpr TFieldRow DominantBaseline{P::ipDominantBaseline, &E::FDominantBaseline,
                                              &E::GetDominantBaseline};
  static constexpr TFieldRow EnableBackground{P::ipEnableBackground, &E::FEnableBackground,
                                              &E::IsEnableBackground};
  static constexpr TFieldRow FillRule{P::ipFillRule, &E::FFillRule, &E::GetFillRule};
  static constexpr TFieldRow GlyphOrientationHorizontal{P::ipGlyphOrientationHorizontal,
                                                        &E::FGlyphOrientationHorizontal,
                                                        &E::GetGlyphOrientationHorizontal};
  static constexpr TFieldRow GlyphOrientationVertical{P::ipGlyphOrientationVertical,
                                                      &E::FGlyphOrientationVertical,
                                                      &E::GetGlyphOrientationVertical};
  static constexpr TFieldRow Opacity{P::ipOpacity, &E::FOpacity, &E::GetOpacity};
  static constexpr TFieldRow Overflow{P::ipOverflow, &E::FOverflow, &E::IsOverflow};
  static constexpr TFieldRow PointerEvents{P::ipPointerEvents, &E::FPointerEvents,
                                           &E::GetPointerEvents};
  static constexpr TFieldRow ShapeRendering{P::ipShapeRendering, &E::FShapeRendering,
                                            &E::GetShapeRendering};
  static constexpr TFieldRow TextAlign{P::ipTextAnchor, &E::FTextAlign, &E::GetTextAlign};
  static constexpr TFieldRow TextRendering{P::ipTextRendering, &E::FTextRendering,
                                           &E::GetTextRendering};
  static constexpr TFieldRow VectorEffect{P::ipVectorEffect, &E::FVectorEffect,
                                          &E::GetVectorEffect};
  static constexpr TFieldRow Visible{P::ipVisibility, &E::FVisible, &E::GetVisible};
  static constexpr TFieldRow WritingMode{P::ipWritingMode, &E::FWritingMode, &E::GetWritingMode};
};

// The own field, unless the property is marked and there is a graphic parent to ask.
template <class Row>
auto TSVGGraphicElement::Effective(const Row& Property) const {
  if (IsMarked(Property.Property)) {
    if (const Scope* const Own = ScopeInForce())
      if (const TSVGGraphicElement* const Source = Own->SourceOf(Property.Property))
        return Source->*Property.Field;
    if (const TSVGGraphicElement* Ancestor = GetGraphicParent()) return (Ancestor->*Property.Get)();
  }
  return this->*Property.Field;
}

// A write that changes neither the field nor the value in force does nothing. Every other one is
// told of, and ends the inheritance unless it keeps the mark.
template <class Row, class Value>
void TSVGGraphicElement::Store(const Row& Property, const Value& NewValue, TStoring How) {
  if (this->*Property.Field == NewValue &&
      (!IsMarked(Property.Property) || (this->*Property.Get)() == NewValue))
    return;
  this->*Property.Field = NewValue;
  EndStoring(Property.Property, How);
}

void TSVGGraphicElement::EndStoring(TSVGStyleProperty Property, TStoring How) {
  // The mark tells of its change by itself, and a handler may then remove the element.
  const TTreeWalk Walk(*this);
  if (How != TStoring::KeepsMark) FInherits.Set(Property, false);
  if (How == TStoring::Clips) FClippingChanged = true;
  Change(this);
}

// --- The common form

TSVGAlignmentBaseline TSVGGraphicElement::GetAlignmentBaseline() const {
  return Effective(Rows::AlignmentBaseline);
}
void TSVGGraphicElement::SetAlignmentBaseline(TSVGAlignmentBaseline Value) {
  Store(Rows::AlignmentBaseline, Value);
}

TQXGPColor TSVGGraphicElement::GetColor() const {
  return Effective(Rows::Color);
}
void TSVGGraphicElement::SetColor(TQXGPColor Value) {
  Store(Rows::Color, Value);
}

TSVGColorInterpolation TSVGGraphicElement::GetColorInterpolation() const {
  return Effective(Rows::ColorInterpolation);
}
void TSVGGraphicElement::SetColorInterpolation(TSVGColorInterpolation Value) {
  Store(Rows::ColorInterpolation, Value);
}

TSVGColorRendering TSVGGraphicElement::GetColorRendering() const {
  return Effective(Rows::ColorRendering);
}
void TSVGGraphicElement::SetColorRendering(TSVGColorRendering Value) {
  Store(Rows::ColorRendering, Value);
}

TCursor TSVGGraphicElement::GetCursor() const {
  return Effective(Rows::Cursor);
}
void TSVGGraphicElement::SetCursor(TCursor Value) {
  Store(Rows::Cursor, Value);
}

TSVGDirection TSVGGraphicElement::GetDirection() const {
  return Effective(Rows::Direction);
}
void TSVGGraphicElement::SetDirection(TSVGDirection Value) {
  Store(Rows::Direction, Value);
}

TSVGDominantBaseline TSVGGraphicElement::GetDominantBaseline() const {
  return Effective(Rows::DominantBaseline);
}
void TSVGGraphicElement::SetDominantBaseline(TSVGDominantBaseline Value) {
  Store(Rows::DominantBaseline, Value);
}

bool TSVGGraphicElement::IsEnableBackground() const {
  return Effective(Rows::EnableBackground);
}
void TSVGGraphicElement::SetEnableBackground(bool Value) {
  Store(Rows::EnableBackground, Value);
}

TSVGGlyphOrientationHorizontal TSVGGraphicElement::GetGlyphOrientationHorizontal() const {
  return Effective(Rows::GlyphOrientationHorizontal);
}
void TSVGGraphicElement::SetGlyphOrientationHorizontal(TSVGGlyphOrientationHorizontal Value) {
  Store(Rows::GlyphOrientationHorizontal, Value);
}

TSVGGlyphOrientationVertical TSVGGraphicElement::GetGlyphOrientationVertical() const {
  return Effective(Rows::GlyphOrientationVertical);
}
void TSVGGraphicElement::SetGlyphOrientationVertical(TSVGGlyphOrientationVertical Value) {
  Store(Rows::GlyphOrientationVertical, Value);
}

TSVGPointerEvents TSVGGraphicElement::GetPointerEvents() const {
  return Effective(Rows::PointerEvents);
}
void TSVGGraphicElement::SetPointerEvents(TSVGPointerEvents Value) {
  Store(Rows::PointerEvents, Value);
}

TSVGShapeRendering TSVGGraphicElement::GetShapeRendering() const {
  return Effective(Rows::ShapeRendering);
}
void TSVGGraphicElement::SetShapeRendering(TSVGShapeRendering Value) {
  Store(Rows::ShapeRendering, Value);
}

TSVGTextAlign TSVGGraphicElement::GetTextAlign() const {
  return Effective(Rows::TextAlign);
}
void TSVGGraphicElement::SetTextAlign(TSVGTextAlign Value) {
  Store(Rows::TextAlign, Value);
}

TSVGTextRendering TSVGGraphicElement::GetTextRendering() const {
  return Effective(Rows::TextRendering);
}
void TSVGGraphicElement::SetTextRendering(TSVGTextRendering Value) {
  Store(Rows::TextRendering, Value);
}

TSVGWritingMode TSVGGraphicElement::GetWritingMode() const {
  return Effective(Rows::WritingMode);
}
void TSVGGraphicElement::SetWritingMode(TSVGWritingMode Value) {
  Store(Rows::WritingMode, Value);
}

// --- Departures from it

TSVGFillRule TSVGGraphicElement::GetClipRule() const {
  return Effective(Rows::ClipRule);
}
void TSVGGraphicElement::SetClipRule(TSVGFillRule Value) {
  Store(Rows::ClipRule, Value, TStoring::Clips);
}

bool TSVGGraphicElement::IsOverflow() const {
  return Effective(Rows::Overflow);
}
void TSVGGraphicElement::SetOverflow(bool Value) {
  Store(Rows::Overflow, Value, TStoring::Clips);
}

bool TSVGGraphicElement::GetVisible() const {
  return SourceOfVisible().FVisible;
}
void TSVGGraphicElement::SetVisible(bool Value) {
  Store(Rows::Visible, Value);
}

// Of the next three the marks stay as they are.

TSVGFillRule TSVGGraphicElement::GetFillRule() const {
  return Effective(Rows::FillRule);
}
void TSVGGraphicElement::SetFillRule(TSVGFillRule Value) {
  Store(Rows::FillRule, Value, TStoring::KeepsMark);
}

TSVGVectorEffect TSVGGraphicElement::GetVectorEffect() const {
  return Effective(Rows::VectorEffect);
}
void TSVGGraphicElement::SetVectorEffect(TSVGVectorEffect Value) {
  Store(Rows::VectorEffect, Value, TStoring::KeepsMark);
}

float TSVGGraphicElement::GetOpacity() const {
  return Effective(Rows::Opacity);
}
void TSVGGraphicElement::SetOpacity(float Value) {
  Store(Rows::Opacity, detail::ClampOpacity(Value), TStoring::KeepsMark);
}

double TSVGGraphicElement::GetAbsoluteOpacity() const {
  if (const Scope* const Own = ScopeInForce()) return Own->AbsoluteOpacity();
  double Result = GetOpacity();
  for (const TSVGGraphicElement* E = GetGraphicParent(); E; E = E->GetGraphicParent())
    Result *= E->GetOpacity();
  return Result;
}

bool TSVGGraphicElement::IsStored(TSVGStyleProperty Property, StringView Value) const {
  return Value != SVGStylePropertyRowOf(Property).Default;
}

bool TSVGGraphicElement::IsOpacityStored() const {
  return !(GetOpacity() == 1);
}

bool TSVGGraphicElement::IsShapeRenderingStored() const {
  return GetShapeRendering() !=
         (Document() ? Document()->DefaultShapeRendering() : TSVGShapeRendering::srnAuto);
}

// --- References

namespace {

constexpr std::array<TSVGStyleProperty, SVGReferenceCount> ReferenceProperties{
    TSVGStyleProperty::ipClipPath, TSVGStyleProperty::ipFilter, TSVGStyleProperty::ipMarkerStart,
    TSVGStyleProperty::ipMarkerMid, TSVGStyleProperty::ipMarkerEnd};

}  // namespace

const String& TSVGGraphicElement::EffectiveReference(TSVGReference Which) const {
  return SourceOf(ReferenceProperties[Ordinal(Which)]).ReadReferences().URI(Which);
}

void TSVGGraphicElement::StoreReference(TSVGReference Which, StringView Value) {
  const TSVGStyleProperty Property = ReferenceProperties[Ordinal(Which)];
  if (ReadReferences().URI(Which) == Value &&
      (!IsMarked(Property) || EffectiveReference(Which) == Value))
    return;
  if (FReferences || !Value.empty()) WriteReferences().URI(Which) = String(Value);
  EndStoring(Property);
}

const String& TSVGGraphicElement::GetFilterURI() const {
  return EffectiveReference(TSVGReference::rfFilter);
}
void TSVGGraphicElement::SetFilterURI(StringView Value) {
  StoreReference(TSVGReference::rfFilter, Value);
}
const String& TSVGGraphicElement::GetMarkerStartURI() const {
  return EffectiveReference(TSVGReference::rfMarkerStart);
}
void TSVGGraphicElement::SetMarkerStartURI(StringView Value) {
  StoreReference(TSVGReference::rfMarkerStart, Value);
}
const String& TSVGGraphicElement::GetMarkerMidURI() const {
  return EffectiveReference(TSVGReference::rfMarkerMid);
}
void TSVGGraphicElement::SetMarkerMidURI(StringView Value) {
  StoreReference(TSVGReference::rfMarkerMid, Value);
}
const String& TSVGGraphicElement::GetMarkerEndURI() const {
  return EffectiveReference(TSVGReference::rfMarkerEnd);
}
void TSVGGraphicElement::SetMarkerEndURI(StringView Value) {
  StoreReference(TSVGReference::rfMarkerEnd, Value);
}

const String& TSVGGraphicElement::ClipURI() const {
  return ReadReferences().URI(TSVGReference::rfClip);
}
void TSVGGraphicElement::SetClipURI(StringView Value) {
  // An equal text is no write here, whether or not it is in force.
  if (ClipURI() == Value) return;
  WriteReferences().URI(TSVGReference::rfClip) = String(Value);
  EndStoring(TSVGStyleProperty::ipClipPath, TStoring::Clips);
}

TSVGElement* TSVGGraphicElement::FindByID(StringView ID) const {
  return Document() && !ID.empty() ? Document()->FindElement(ID) : nullptr;
}

TSVGGraphicElement* TSVGGraphicElement::GetClipURIElement() const {
  if (IsMarked(TSVGStyleProperty::ipClipPath))
    if (const TSVGGraphicElement* Ancestor = GetGraphicParent())
      return Ancestor->GetClipURIElement();
  TSVGElement* Found = FindByID(ClipURI());
  return Found && Found->SVGType() == TSVGElementType::etClipPath ? Found->AsGraphicElement()
                                                                  : nullptr;
}

// --- Rectangles

const TRectF& TSVGGraphicElement::BackgroundRect() const {
  return ReadReferences().BackgroundRect;
}
void TSVGGraphicElement::SetBackgroundRect(const TRectF& Value) {
  if (Value == BackgroundRect()) return;
  WriteReferences().BackgroundRect = Value;
  Change(this);
}

const TRectF& TSVGGraphicElement::ClipRect() const {
  return ReadReferences().ClipRect;
}
void TSVGGraphicElement::SetClipRect(const TRectF& Value) {
  if (Value == ClipRect() && !IsMarked(TSVGStyleProperty::ipClip)) return;
  WriteReferences().ClipRect = Value;
  EndStoring(TSVGStyleProperty::ipClip);
}

}  // namespace qxsvg
