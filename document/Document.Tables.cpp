// What the document is told by its tables and its tree, and what it tells the host.
#include <optional>

#include "document/Document.h"
#include "document/Style.h"
#include "document/TreeWalk.h"

namespace qxsvg {

void TSVGDocument::Change(TSVGElement* Element) {
  // One that is nested passes the change on, and may be removed by a handler that hears of it
  // there.
  std::optional<TTreeWalk> Walk;
  if (Document())
    Walk.emplace(*this);
  else
    DropRepeats(*this);
  TSVGCustomViewBox::Change(Element);
  if (IsUpdating() || FElementState.Has(TSVGElementStateFlag::esDestroying)) return;
  if (OnChange) OnChange(Element);
}

void TSVGDocument::ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                                       TCollectionNotification Action) {
  const bool IsOwnList = Sender == nullptr;
  if (IsOwnList) Sender = this;
  const bool MayFire = !IsUpdating() && !FElementState.Has(TSVGElementStateFlag::esDestroying);
  const bool IsRemoved = Action == TCollectionNotification::cnRemoved;
  if (MayFire && IsRemoved && OnRemoveElement) OnRemoveElement(Sender, Item);
  if (IsOwnList) TSVGCustomViewBox::ElementNotification(nullptr, Item, Action);
  // Fires for removals too, and only for these: handlers count on hearing of an element last here.
  // For a direct child Item is gone by now and may only be compared.
  if (MayFire && IsRemoved && OnAddElement) OnAddElement(Sender, Item);
  Change(Sender);
}

TSVGElement* TSVGDocument::FindElement(StringView ID) const {
  TSVGElement* const* Found = FAllItems.Find(ID);
  return Found ? *Found : nullptr;
}

bool TSVGDocument::IsStray(const TSVGElement* Element) const {
  return FStrays.contains(const_cast<TSVGElement*>(Element));
}

void TSVGDocument::Unregister(TSVGElement& Element) {
  FStrays.erase(&Element);
  TSVGElement* const* const Found = FAllItems.Find(Element.ID());
  if (!Found) return;
  // After the table was cleared the name may have gone to another, who then stands without it.
  TSVGElement* const Holder = *Found;
  FAllItems.Remove(Element.ID());
  if (Holder != &Element) FStrays.insert(Holder);
}

void TSVGDocument::AllItemsNotify(TPersistent*, TSVGElement* const&, TCollectionNotification) {
  FAllItemsModified = true;
  DropRepeats(*this);
}

const std::vector<TSVGElement*>& TSVGDocument::CurrentList(const std::vector<TSVGElement*>& List) {
  if (FAllItemsModified) UpdateElementLists();
  return List;
}

const std::vector<TSVGElement*>& TSVGDocument::Gradients() {
  return CurrentList(FGradients);
}
const std::vector<TSVGElement*>& TSVGDocument::Markers() {
  return CurrentList(FMarkers);
}
const std::vector<TSVGElement*>& TSVGDocument::Patterns() {
  return CurrentList(FPatterns);
}

void TSVGDocument::UpdateElementLists() {
  FAllItemsModified = false;
  FGradients.clear();
  FMarkers.clear();
  FPatterns.clear();
  FAllItems.ForEach([this](const auto& Entry) {
    switch (Entry.FValue->SVGType()) {
      case TSVGElementType::etLinearGradient:
      case TSVGElementType::etRadialGradient: FGradients.push_back(Entry.FValue); break;
      case TSVGElementType::etMarker: FMarkers.push_back(Entry.FValue); break;
      case TSVGElementType::etPattern: FPatterns.push_back(Entry.FValue); break;
      default: break;
    }
  });
}

void TSVGDocument::StyleNotify(TPersistent*, TSVGStyle* const& Style,
                               TCollectionNotification Action) {
  if (Action == TCollectionNotification::cnAdded) {
    if (OnAddStyle) OnAddStyle(this, Style);
  } else {
    if (OnRemoveStyle) OnRemoveStyle(this, Style);
    if (Action == TCollectionNotification::cnRemoved)
      TTreeWalk(*this).Bury(std::unique_ptr<TSVGStyle>(Style));
  }
  Change(this);
}

void TSVGDocument::DoLoading() {
  if (OnLoading) OnLoading(this);
}

void TSVGDocument::DoLoaded() {
  if (OnLoaded) OnLoaded(this);
}

void TSVGDocument::DoOnParsingNode(TSVGElement* Element, IXMLNode& Node) {
  if (OnParsingNode) OnParsingNode(Element, Node);
}

void TSVGDocument::DoOnParsedNode(TSVGElement* Element) {
  if (OnParsedNode) OnParsedNode(this, Element);
}

bool TSVGDocument::DoShouldDraw(TSVGElement* Element, bool Value) {
  if (OnShouldDraw) OnShouldDraw(Element, Value);
  return Value;
}

}  // namespace qxsvg
