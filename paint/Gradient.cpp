#include "paint/Gradient.h"

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "foundation/Writers.h"
#include "runtime/UpdateLock.h"
#include "shapes/NodeLengths.h"
#include "shapes/Reference.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    Property<&TSVGCustomGradient::Units, &TSVGCustomGradient::SetUnits>(
        u"Units",
        StoredUnless<&TSVGCustomGradient::Units, TSVGCoordinateSystemUnit::csuObjectBoundingBox>),
    Property<&TSVGCustomGradient::Spread, &TSVGCustomGradient::SetSpread>(
        u"Spread", StoredUnless<&TSVGCustomGradient::Spread, TSVGGradientSpread::gsPad>),
    Property<&TSVGCustomGradient::Reference, &TSVGCustomGradient::SetReference>(
        u"Reference", StoredUnlessEmpty<&TSVGCustomGradient::Reference>),
};

TSVGGradientStop* AsStop(TSVGElement* Element) {
  return Element->ClassType().InheritsFrom(TSVGGradientStop::Class)
             ? static_cast<TSVGGradientStop*>(Element)
             : nullptr;
}

TSVGCustomGradient* AsGradient(TSVGElement* Element) {
  return Element && Element->ClassType().InheritsFrom(TSVGCustomGradient::Class)
             ? static_cast<TSVGCustomGradient*>(Element)
             : nullptr;
}

}  // namespace

constinit const TSVGElementClass TSVGCustomGradient::Class{
    {u"TSVGCustomGradient", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etNone,
    nullptr};

TSVGCustomGradient::TSVGCustomGradient(TSVGDocument* Document)
    : TSVGGraphicElement(Document),
      FSpread(TSVGGradientSpread::gsPad),
      FUnits(TSVGCoordinateSystemUnit::csuObjectBoundingBox) {}

TSVGCustomGradient::~TSVGCustomGradient() = default;

TSVGElementTypes TSVGCustomGradient::ChildSVGTypes() const {
  return SVGDescriptiveElements + TSVGElementTypes{TSVGElementType::etGradientStop};
}

void TSVGCustomGradient::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGCustomGradient*>(Source)) {
    FSpread = Other->FSpread;
    FUnits = Other->FUnits;
    SetReference(Other->FReference);
  }
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGCustomGradient::Clear() {
  const TElementLock Lock(*this);
  TSVGGraphicElement::Clear();
  SetReference({});
  FSpread = TSVGGradientSpread::gsPad;
  FUnits = TSVGCoordinateSystemUnit::csuObjectBoundingBox;
}

void TSVGCustomGradient::SetReference(StringView Value) {
  ChangeReference(*this, FReference, Value);
}

void TSVGCustomGradient::NotifyListener(TSVGElement* Source) {
  TSVGGraphicElement::NotifyListener(Source);
  if (Source->ElementState().Has(TSVGElementStateFlag::esDestroying)) FReference.clear();
}

void TSVGCustomGradient::SetSpread(TSVGGradientSpread Value) {
  if (Value == FSpread) return;
  FSpread = Value;
  Change(this);
}

void TSVGCustomGradient::SetUnits(TSVGCoordinateSystemUnit Value) {
  if (Value == FUnits) return;
  FUnits = Value;
  Change(this);
}

void TSVGCustomGradient::ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                                             TCollectionNotification Action) {
  TSVGGraphicElement::ElementNotification(Sender, Item, Action);
  // Not for stops alone: any child decides whether stops are borrowed.
  MarkPaintsChanged();
}

// --- XML

std::int32_t TSVGCustomGradient::ReadChild(IXMLNode& Node) {
  if (Node.LocalName() != u"stop") return TSVGGraphicElement::ReadChild(Node);
  return Items().Add(std::make_unique<TSVGGradientStop>(Document()));
}

void TSVGCustomGradient::DoLoadFromXML(IXMLNode& Node) {
  TSVGGraphicElement::DoLoadFromXML(Node);
  SetMatrix(ParseTransformation(Node.GetAttribute(u"gradientTransform")));
  FReference = ParseURI(Node, u"href", {}, u"xlink");
  FUnits = ParseCoordinateSystemUnit(Node.GetAttribute(u"gradientUnits"), FUnits);
  FSpread = ParseGradientSpread(Node.GetAttribute(u"spreadMethod"), FSpread);
}

void TSVGCustomGradient::DoSaveToXML(IXMLNode& Node) {
  TSVGGraphicElement::DoSaveToXML(Node);
  const StringView Units = SVGCoordinateSystemUnits[static_cast<std::size_t>(FUnits)];
  const StringView Spread = SVGGradientSpreads[static_cast<std::size_t>(FSpread)];
  SaveAttrString(Node, u"gradientUnits", Units, Units.empty(), true);
  SaveAttrString(Node, u"spreadMethod", Spread, Spread.empty(), true);
  Node.RemoveAttribute(u"transform");
  const String Transform = SVGTransformationToString(Matrix());
  SaveAttrString(Node, u"gradientTransform", Transform, Transform.empty(), true);
  SaveReference(Node, FReference);
}

// --- Stops

void TSVGCustomGradient::SetGradientPoints(TQXGPGradientPoints& Points, std::int32_t Step) {
  // Any child at all, also one that is no stop, keeps the gradient from borrowing stops.
  if (Items().Count() == 0 && !FReference.empty() && Document()) {
    if (TSVGCustomGradient* const Lender = AsGradient(Document()->FindElement(FReference))) {
      const TReferenceStep Reference(*this, *Lender, TReferenceCost::rcNothing);
      if (Reference) return Lender->SetGradientPoints(Points, Step);
    }
  }
  const TUpdateLock Lock(Points);
  Points.Clear();
  if (Items().Count() == 0) return;
  std::int32_t Direction = Step;
  float Last = AddStops(Points, false, Direction);
  if (Points.Count() == 0) return;
  if (FSpread != TSVGGradientSpread::gsReflect && FSpread != TSVGGradientSpread::gsRepeat) return;
  const auto IsOpen = [&] { return Step == 1 ? Last < 1 : Last > 0; };
  // Passes from the last stop grow away from 0, so that nothing but the limit ends them.
  while (IsOpen()) {
    if (FSpread == TSVGGradientSpread::gsReflect) Direction = -Direction;
    const std::size_t Count = Points.Count();
    Last = AddStops(Points, true, Direction);
    if (Points.Count() == Count) return;
    if (Points.Count() >= Limits::GradientPoints) {
      if (Document()) Document()->Diagnose(TSVGDiagnosticKind::dkLimit, this, SGradientPointLimit);
      return;
    }
  }
}

float TSVGCustomGradient::AddStops(TQXGPGradientPoints& Points, bool Repeating,
                                   std::int32_t Direction) {
  constexpr float Gap = 0.0001f;
  float Last = 0;
  // The stop before in this pass, null at its start.
  TSVGGradientStop* Before = nullptr;
  const std::int32_t Count = Items().Count();
  for (std::int32_t I = Direction == 1 ? 0 : Count - 1; I >= 0 && I < Count; I += Direction) {
    TSVGGradientStop* const Stop = AsStop(Items()[I]);
    if (!Stop) continue;
    if (Points.Count() >= Limits::GradientPoints) break;
    float Offset = Stop->Offset();
    if (Repeating) {
      const float Previous = Points.GetPoint(Points.Count() - 1).Offset();
      Offset = Previous + (Before ? std::abs(Offset - Before->Offset()) : Gap);
    }
    Before = Stop;
    Points.Add(Offset, Stop->GetStopBrush().Color());
    Last = Offset;
    if (Repeating && Last >= 1) break;
  }
  return Last;
}

// --- Brush

TSVGBrush& TSVGCustomGradient::GetBrush(const TMatrix& Matrix, const TRectF& Bounds,
                                        const TRectF& Viewport) {
  if (!BrushChanged()) return TSVGGraphicElement::GetBrush(Matrix, Bounds, Viewport);
  TSVGBrush& Brush = TSVGGraphicElement::GetBrush(Matrix, Bounds, Viewport);
  const TQXSilence Silence(Brush);
  TQXGPGradient& Gradient = Brush.GetGradient();
  const bool IsLinear = GradientStyle() == TQXGPGradientStyle::gsLinear;
  Gradient.SetStyle(GradientStyle());
  SetGradientPoints(Gradient.Points(), IsLinear ? 1 : -1);
  // A radial gradient counts from its rim inwards.
  if (!IsLinear)
    for (std::size_t I = 0; I < Gradient.Points().Count(); ++I) {
      TQXGPGradientPoint& Point = Gradient.Points().GetPoint(I);
      Point.SetOffset(1 - Point.Offset());
    }
  return Brush;
}

std::unique_ptr<TQXGPGradient> TSVGCustomGradient::GetGradient(const TMatrix& Matrix,
                                                               const TRectF& Bounds,
                                                               const TRectF& Viewport) {
  auto Result = std::make_unique<TQXGPGradient>();
  Result->Assign(&GetBrush(Matrix, Bounds, Viewport).GetGradient());
  return Result;
}

}  // namespace qxsvg
