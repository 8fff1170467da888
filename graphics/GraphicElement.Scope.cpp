// Finding out what is in force for an element that is drawn.
#include <utility>

#include "document/Document.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/GraphicElementScope.h"

namespace qxsvg {

namespace {

class TLending {
 public:
  explicit TLending(bool& Flag) : FFlag(Flag), FWas(Flag) { FFlag = true; }
  TLending(const TLending&) = delete;
  TLending& operator=(const TLending&) = delete;
  ~TLending() { FFlag = FWas; }

 private:
  bool& FFlag;
  bool FWas;
};

}  // namespace

TSVGGraphicElement::Scope::Scope(TSVGGraphicElement& Element)
    : FThread(Thread()), FElement(Element), FPrevious(FThread.Top), FOuter(Element.FScope) {
  FIsStraight =
      !FPrevious || (FPrevious->FIsStraight && &FPrevious->FElement == Element.GetGraphicParent());
  FIsBorrowed = Element.SVGType() == TSVGElementType::etMarker ||
                (FPrevious && (FPrevious->FIsBorrowed || FPrevious->FIsUse));
  FIsRooted = FIsStraight && (FPrevious ? FPrevious->FIsRooted && FPrevious->HasOwnerOf(Element)
                                        : !Element.Parent());
  FMoves = FPrevious ? FPrevious->FMoves : FThread.Moves;
  FIsUse = Element.SVGType() == TSVGElementType::etUse;
  Build();
  FThread.Top = this;
  Element.FScope = this;
}

TSVGGraphicElement::Scope::~Scope() {
  FElement.FScope = FOuter;
  FThread.Top = FPrevious;
}

// What was made for another document, or for none, tells this one of no change.
bool TSVGGraphicElement::Scope::HasOwnerOf(const TSVGElement& Child) const {
  const TSVGDocument* const Owner = Child.Document();
  return Owner && (Owner == FElement.Document() || Owner == &FElement);
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
  const TSVGStyleProperties Marks = E.FInherits.Value();
  if (Above) {
    // Without a loop: each property then has a constant for its mark.
    [&]<std::size_t... I>(std::index_sequence<I...>) {
      ((FSources[I] = Marks.Has(Looked[I]) ? Above->FSources[I] : &E), ...);
    }
    (std::make_index_sequence<Looked.size()>());
  } else {
    for (std::size_t I = 0; I < Looked.size(); ++I)
      FSources[I] = Marks.Has(Looked[I]) ? &Parent.SourceOf(Looked[I]) : &E;
  }
  FAbsoluteOpacity = SourceOf(TSVGStyleProperty::ipOpacity)->FOpacity * Parent.GetAbsoluteOpacity();
  if (E.IsMarked(TSVGStyleProperty::ipDisplay) && E.IsMarked(TSVGStyleProperty::ipVisibility))
    FVisible = &Parent.SourceOfVisible();
  if (!E.FBrush && E.AreMarked(FillParts)) FBrushHolder = &Parent.BrushHolder();
  if (!E.FPen && E.AreMarked(StrokeParts)) FPenHolder = &Parent.PenHolder();
  if (!E.IsMarked(TSVGStyleProperty::ipStrokeDasharray)) return;
  FDashed = Parent.DashedAbove();
  if (!FDashed && Parent.ReadPen().HasOwnDashes()) FDashed = &Parent;
}

void TSVGGraphicElement::Scope::Lend(TSVGElement& Child, TSVGElement* To,
                                     const TSVGElement& Borrower) {
  TThread& State = Thread();
  const Scope* const Top = State.Top;
  const bool Keeps = Top && Top->FIsStraight && Top->IsFor(Borrower);
  const std::uint64_t Generation = State.Generation, Moves = State.Moves;
  {
    const TLending Lending(State.IsLending);
    Child.SetParent(To);
  }
  // Anything else that changed on the way counts.
  if (State.Moves == Moves + 1) State.Moves = Moves;
  if (Keeps && State.Generation == Generation + 1) State.Generation = Generation;
}

void TSVGGraphicElement::Scope::ResetLent(TSVGGraphicElement& Element) {
  const TLending Lending(Thread().IsLending);
  Element.Reset();
}

bool TSVGGraphicElement::IsAbove(TSVGElement& Candidate, const TSVGElement& Element) {
  // Where the drawing came straight down from the root, those above are those that are drawn.
  if (const Scope* const Top = Scope::Innermost(); Top && Top->IsRooted() && Top->IsFor(Element)) {
    const TSVGGraphicElement* const Graphic = Candidate.AsGraphicElement();
    return Graphic && Graphic->FScope;
  }
  for (const TSVGElement* E = &Element; E; E = E->Parent())
    if (E == &Candidate) return true;
  return false;
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
    if (E->ReadPen().HasOwnDashes()) Dashed = E;
  }
  return Dashed;
}

bool TSVGGraphicElement::IsEnabled() const {
  if (const Scope* const Own = ScopeInForce()) return Own->IsEnabled();
  return TSVGElement::IsEnabled();
}

}  // namespace qxsvg
