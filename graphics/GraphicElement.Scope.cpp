// Finding out what is in force for an element that is drawn.
#include "graphics/GraphicElementParts.h"
#include "graphics/GraphicElementScope.h"

namespace qxsvg {

TSVGGraphicElement::Scope::Scope(TSVGGraphicElement& Element)
    : FThread(Thread()), FElement(Element), FPrevious(FThread.Top), FOuter(Element.FScope) {
  FIsStraight =
      !FPrevious || (FPrevious->FIsStraight && &FPrevious->FElement == Element.GetGraphicParent());
  Build();
  FThread.Top = this;
  Element.FScope = this;
}

TSVGGraphicElement::Scope::~Scope() {
  FElement.FScope = FOuter;
  FThread.Top = FPrevious;
}

void TSVGGraphicElement::Scope::Build() {
  FGeneration = FThread.Generation;
  const TSVGGraphicElement* const Parent = FElement.GetGraphicParent();
  FIsEnabled = FElement.Enabled() && (!FElement.Parent() || FElement.Parent()->IsEnabled());
  FBrushHolder = FPenHolder = &FElement;
  FVisible = &FElement;
  FDashed = nullptr;
  if (!Parent) {
    FSources.fill(&FElement);
    FAbsoluteOpacity = FElement.FOpacity;
  } else {
    BuildBelow(*Parent, Parent->ScopeInForce());
  }
}

void TSVGGraphicElement::Scope::BuildBelow(const TSVGGraphicElement& Parent, const Scope* Above) {
  const TSVGGraphicElement& E = FElement;
  if (Above)
    FSources = Above->FSources;
  else
    for (const TSVGStyleProperty Property : E.FInherits.Value() * LookedSet)
      FSources[Slots[Ordinal(Property)]] = &Parent.SourceOf(Property);
  for (const TSVGStyleProperty Property : LookedSet - E.FInherits.Value())
    FSources[Slots[Ordinal(Property)]] = &E;
  FAbsoluteOpacity = SourceOf(TSVGStyleProperty::ipOpacity)->FOpacity * Parent.GetAbsoluteOpacity();
  if (E.IsMarked(TSVGStyleProperty::ipDisplay) && E.IsMarked(TSVGStyleProperty::ipVisibility))
    FVisible = &Parent.SourceOfVisible();
  if (!E.FBrush && E.AreMarked(FillParts)) FBrushHolder = &Parent.BrushHolder();
  if (!E.FPen && E.AreMarked(StrokeParts)) FPenHolder = &Parent.PenHolder();
  if (!E.IsMarked(TSVGStyleProperty::ipStrokeDasharray)) return;
  FDashed = Parent.DashedAbove();
  if (!FDashed && Parent.ReadPen().Dash() != TQXGPStrokeDash::sdSolid) FDashed = &Parent;
}

void TSVGGraphicElement::Scope::Lend(TSVGElement& Child, TSVGElement* To,
                                     const TSVGElement& Borrower) {
  TThread& State = Thread();
  const Scope* const Top = State.Top;
  const bool Keeps = Top && Top->FIsStraight && &Top->FElement == &Borrower &&
                     Top->FGeneration == State.Generation;
  const std::uint64_t Generation = State.Generation;
  Child.SetParent(To);
  // Anything else that changed on the way counts.
  if (Keeps && State.Generation == Generation + 1) State.Generation = Generation;
}

void TSVGGraphicElement::Lend(TSVGElement& Child, TSVGElement* To, const TSVGElement& Borrower) {
  Scope::Lend(Child, To, Borrower);
}

// --- What scopes and elements without one find alike

const TSVGGraphicElement& TSVGGraphicElement::SourceOf(TSVGStyleProperty Property) const {
  if (const Scope* const Own = ScopeInForce())
    if (const TSVGGraphicElement* const Found = Own->SourceOf(Property)) return *Found;
  const TSVGGraphicElement* E = this;
  while (E->IsMarked(Property)) {
    const TSVGGraphicElement* Ancestor = E->GetGraphicParent();
    if (!Ancestor) break;
    E = Ancestor;
  }
  return *E;
}

// Display and visibility share a field, so that either of them given here decides.
const TSVGGraphicElement& TSVGGraphicElement::SourceOfVisible() const {
  if (const Scope* const Own = ScopeInForce()) return Own->SourceOfVisible();
  if (IsMarked(TSVGStyleProperty::ipDisplay) && IsMarked(TSVGStyleProperty::ipVisibility))
    if (const TSVGGraphicElement* Ancestor = GetGraphicParent()) return Ancestor->SourceOfVisible();
  return *this;
}

TSVGGraphicElement& TSVGGraphicElement::BrushHolder() const {
  if (const Scope* const Own = ScopeInForce()) return Own->BrushHolder();
  if (!FBrush && AreMarked(FillParts))
    if (const TSVGGraphicElement* Ancestor = GetGraphicParent()) return Ancestor->BrushHolder();
  return const_cast<TSVGGraphicElement&>(*this);
}

TSVGGraphicElement& TSVGGraphicElement::PenHolder() const {
  if (const Scope* const Own = ScopeInForce()) return Own->PenHolder();
  if (!FPen && AreMarked(StrokeParts))
    if (const TSVGGraphicElement* Ancestor = GetGraphicParent()) return Ancestor->PenHolder();
  return const_cast<TSVGGraphicElement&>(*this);
}

// A solid line above leaves the own dashes in place, on each level: the topmost dashes win.
const TSVGGraphicElement* TSVGGraphicElement::DashedAbove() const {
  if (const Scope* const Own = ScopeInForce()) return Own->Dashed();
  const TSVGGraphicElement* Dashed = nullptr;
  for (const TSVGGraphicElement* E = this; E->IsMarked(TSVGStyleProperty::ipStrokeDasharray);) {
    E = E->GetGraphicParent();
    if (!E) break;
    if (E->ReadPen().Dash() != TQXGPStrokeDash::sdSolid) Dashed = E;
  }
  return Dashed;
}

bool TSVGGraphicElement::IsEnabled() const {
  if (const Scope* const Own = ScopeInForce()) return Own->IsEnabled();
  return TSVGElement::IsEnabled();
}

}  // namespace qxsvg
