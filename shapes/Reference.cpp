#include "shapes/Reference.h"

#include <atomic>

#include "document/Document.h"
#include "foundation/Messages.h"
#include "shapes/PathElement.h"
#include "shapes/Polyline.h"

namespace qxsvg {

namespace {

struct TWork {
  std::int32_t Scopes = 0;
  std::int32_t Depth = 0;
  // Levels of the tree that the references followed so far lie upon one another.
  std::int32_t Levels = 0;
  std::int64_t Left = 0;
  std::int64_t TilePixels = 0;
  std::uint64_t Serial = 0;
};

// A document belongs to one thread at a time, and so does a walk over it.
thread_local TWork Work;

struct TSearch {
  std::int32_t Scopes = 0;
  std::int64_t Left = 0;
  std::uint64_t Serial = 0;
};

thread_local TSearch Search;

std::int64_t PointsOf(const TSVGElement& Element) {
  switch (Element.SVGType()) {
    case TSVGElementType::etPath:
      if (const auto* const Path = dynamic_cast<const TSVGPath*>(&Element))
        return static_cast<std::int64_t>(Path->Data().GetCount());
      break;
    case TSVGElementType::etPolyline:
    case TSVGElementType::etPolygon:
      if (const auto* const Line = dynamic_cast<const TSVGPolyline*>(&Element))
        return static_cast<std::int64_t>(Line->Points().size());
      break;
    default: break;
  }
  return 0;
}

std::int64_t PointsOfClip(const TSVGGraphicElement& Element) {
  if (Element.ClipURI().empty() && !Element.Inherits().Value().Has(TSVGStyleProperty::ipClipPath))
    return 0;
  // Any shape takes a step of its own.
  constexpr std::int64_t LeastOfShape = 4;
  std::int64_t Points = 0;
  if (const TSVGGraphicElement* const Clip = Element.GetClipURIElement())
    for (const TSVGElement* Child : Clip->Items())
      Points += std::max(PointsOf(*Child), LeastOfShape);
  return Points;
}

// Elements and levels of a subtree; Elements no further than Most. Long outlines count for many
// elements, or a few hundred points would be drawn hundreds of thousands of times.
void Measure(const TSVGElement& Element, std::int32_t Level, std::int64_t Most,
             TSVGRepeatedExtent& Extent) {
  constexpr std::int64_t PointsOfOne = 32;
  std::int64_t Points = PointsOf(Element);
  if (Element.IsGraphic()) Points += PointsOfClip(static_cast<const TSVGGraphicElement&>(Element));
  Extent.Elements += 1 + Points / PointsOfOne;
  Extent.Levels = std::max(Extent.Levels, Level);
  for (const TSVGElement* Child : Element.Items()) {
    if (Extent.Elements > Most) return;
    Measure(*Child, Level + 1, Most, Extent);
  }
}

std::int32_t LevelsAbove(const TSVGElement& Element) {
  std::int32_t Levels = 0;
  // Adoption makes no loops, but a host might.
  for (const TSVGElement* E = &Element; E && Levels < Limits::NestingDepth; E = E->Parent())
    ++Levels;
  return Levels;
}

void Tell(const TSVGElement& User, StringView Text) {
  // At another place there may be room for it.
  TSVGRecording::Spoil();
  if (User.Document())
    User.Document()->Diagnose(TSVGDiagnosticKind::dkLimit, const_cast<TSVGElement*>(&User), Text);
}

// Whether Element, which had that identifier, still lives.
bool IsAlive(TSVGDocument& Document, StringView ID, const TSVGElement* Element) {
  if (Document.FindElement(ID) == Element || Document.IsStray(Element)) return true;
  bool Found = false;
  Document.AllItems().ForEach([&](const auto& Entry) { Found |= Entry.FValue == Element; });
  return Found;
}

}  // namespace

TSVGGraphicElement* FindGraphicElement(const TSVGElement& Self, StringView ID) {
  if (ID.empty() || !Self.Document()) return nullptr;
  TSVGElement* const Found = Self.Document()->FindElement(ID);
  return Found ? Found->AsGraphicElement() : nullptr;
}

void ChangeReference(TSVGElement& Self, String& Reference, StringView Value) {
  if (Value == Reference) return;
  if (TSVGGraphicElement* const Old = FindGraphicElement(Self, Reference))
    Old->RemoveChangeNotification(&Self);
  if (TSVGGraphicElement* const New = FindGraphicElement(Self, Value))
    New->ChangeNotification(&Self);
  Reference = Value;
  Self.Change(&Self);
}

TReferenceScope::TReferenceScope(std::int64_t Budget, std::int64_t TilePixels) {
  static std::atomic<std::uint64_t> Last = 0;
  if (Work.Scopes++ > 0) return;
  Work.Left = Budget;
  Work.TilePixels = TilePixels;
  Work.Serial = Last.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint64_t TReferenceScope::Serial() {
  return Work.Scopes > 0 ? Work.Serial : 0;
}

bool TReferenceScope::TakePixels(std::int64_t Count) {
  if (Work.Scopes == 0) return true;
  if (Count > Work.TilePixels) return false;
  Work.TilePixels -= Count;
  return true;
}

TReferenceScope::~TReferenceScope() {
  --Work.Scopes;
}

TSearchScope::TSearchScope() {
  if (Search.Scopes++ == 0) Search.Left = Limits::SearchedReferences;
}

TSearchScope::~TSearchScope() {
  --Search.Scopes;
}

bool TSearchScope::Step() const {
  return Search.Left-- > 0;
}

TReferenceStep::TReferenceStep(const TSVGElement& User, const TSVGElement& Target,
                               TReferenceCost Cost) {
  if (Work.Depth >= Limits::ReferenceDepth) {
    Tell(User, SReferenceDepthLimit);
    return;
  }
  TSVGRepeatedExtent& Extent = FExtent;
  Extent.Depth = 1;
  const bool Counts = Cost == TReferenceCost::rcElements;
  Measure(Target, 1, Counts ? Work.Left : Limits::Elements, Extent);
  if (!Counts) Extent.Elements = 0;
  if (Extent.Elements > Work.Left) {
    // Whatever comes after this is left out as well, so that the walk ends soon.
    Work.Left = 0;
    Tell(User, SDrawnReferenceLimit);
    return;
  }
  FLevels = Extent.Levels + (Work.Depth == 0 ? LevelsAbove(User) : 0);
  // The walk through references may go as deep as a tree may be, since that is what stacks hold;
  // the levels above the first user come on top.
  if (Work.Depth > 0 && Work.Levels + FLevels > 2 * Limits::NestingDepth) {
    Tell(User, SReferenceDepthLimit);
    return;
  }
  Work.Left -= Extent.Elements;
  Work.Levels += FLevels;
  ++Work.Depth;
  FIsAllowed = true;
}

bool TReferenceStep::TakeAtOnce(const TSVGElement& User, const TSVGRepeatedExtent& Extent) {
  const std::int32_t Levels = Extent.Levels + (Work.Depth == 0 ? LevelsAbove(User) : 0);
  if (Extent.Elements > Work.Left || Work.Depth + Extent.Depth > Limits::ReferenceDepth ||
      Work.Levels + Levels > 2 * Limits::NestingDepth)
    return false;
  Work.Left -= Extent.Elements;
  return true;
}

TReferenceStep::~TReferenceStep() {
  if (!FIsAllowed) return;
  --Work.Depth;
  Work.Levels -= FLevels;
}

TAdoption::TAdoption(TSVGElement& Child, TSVGElement& Parent)
    : FStep(Parent, Child), FChild(&Child), FParent(&Parent), FDocument(Parent.Document()) {
  if (!FStep) return;
  // Within a larger walk an element that names itself is left out like any other loop; asked for by
  // itself it is refused by SetParent.
  const bool NamesItself = &Child == &Parent && Work.Scopes > 1;
  if (NamesItself || (&Child != &Parent && TSVGGraphicElement::IsAbove(Child, Parent))) {
    // The child would come to stand above itself, and every question to a parent would never end.
    TSVGRecording::Spoil();
    if (FDocument)
      FDocument->Diagnose(TSVGDiagnosticKind::dkReference, &Parent, SCircularReference);
    return;
  }
  FID = Child.ID();
  FOldParent = Child.Parent();
  TSVGGraphicElement::Lend(Child, &Parent, Parent);
  FIsLent = true;
}

TAdoption::~TAdoption() {
  // A handler of the host may have destroyed the child meanwhile, or put it elsewhere.
  if (!FIsLent || !FDocument || !IsAlive(*FDocument, FID, FChild)) return;
  if (FChild->Parent() == FParent) TSVGGraphicElement::Lend(*FChild, FOldParent, *FParent);
}

}  // namespace qxsvg
