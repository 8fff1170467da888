#include "document/ElementList.h"

#include "document/Element.h"
#include "document/TreeWalk.h"

namespace qxsvg {

TSVGElementList::~TSVGElementList() = default;

TSVGElement* TSVGElementList::operator[](std::int32_t Index) const {
  if (Index < 0 || Index >= Count()) RaiseIndexOutOfRange();
  return FItems[static_cast<std::size_t>(Index)].get();
}

std::int32_t TSVGElementList::IndexOf(const TSVGElement* Item) const {
  // From the end, because what was added last is asked for most while a tree is built or torn down.
  for (std::size_t I = FItems.size(); I-- > 0;)
    if (FItems[I].get() == Item) return static_cast<std::int32_t>(I);
  return -1;
}

void TSVGElementList::Notify(TSVGElement* Item, TCollectionNotification Action) {
  FOwner.ElementNotification(nullptr, Item, Action);
}

std::int32_t TSVGElementList::AddOwned(std::unique_ptr<TSVGElement>& Item) {
  if (!Item) throw EInvalidOperation(u"There is no element to add");
  const TTreeWalk Walk(FOwner);
  TSVGElement* const Raw = Item.get();
  FItems.push_back(std::move(Item));
  try {
    Notify(Raw, TCollectionNotification::cnAdded);
  } catch (...) {
    if (FRefused.get() == Raw) Item = std::move(FRefused);
    throw;
  }
  return IndexOf(Raw);
}

void TSVGElementList::Refuse(TSVGElement* Item) {
  FRefused = TakeOut(Item);
  Notify(Item, TCollectionNotification::cnExtracted);
}

std::unique_ptr<TSVGElement> TSVGElementList::TakeOut(TSVGElement* Item) {
  const std::int32_t Index = IndexOf(Item);
  if (Index < 0) return nullptr;
  std::unique_ptr<TSVGElement> Result = std::move(FItems[static_cast<std::size_t>(Index)]);
  FItems.erase(FItems.begin() + Index);
  return Result;
}

void TSVGElementList::Remove(TSVGElement* Item) {
  const TTreeWalk Walk(FOwner);
  std::unique_ptr<TSVGElement> Held = TakeOut(Item);
  if (!Held) return;
  // What came from another document may be drawn there at this moment.
  const TTreeWalk WalkOfItem(*Item);
  try {
    Notify(Item, TCollectionNotification::cnRemoved);
  } catch (...) {
    // The handler of the host stands before the end of the item, which comes all the same.
    Item->Depart(false);
    Walk.Bury(std::move(Held), WalkOfItem);
    throw;
  }
  Walk.Bury(std::move(Held), WalkOfItem);
}

std::unique_ptr<TSVGElement> TSVGElementList::Extract(TSVGElement* Item) {
  const TTreeWalk Walk(FOwner);
  std::unique_ptr<TSVGElement> Result = TakeOut(Item);
  if (!Result) return Result;
  const TTreeWalk WalkOfItem(*Item);
  try {
    Notify(Item, TCollectionNotification::cnExtracted);
  } catch (...) {
    // The caller, who hears of the exception, does not get the item.
    Item->Depart(false);
    Walk.Bury(std::move(Result), WalkOfItem);
    throw;
  }
  return Result;
}

void TSVGElementList::Forget(TSVGElement* Dying) {
  if (std::unique_ptr<TSVGElement> Held = TakeOut(Dying)) {
    (void)Held.release();
    Notify(Dying, TCollectionNotification::cnExtracted);
  }
}

void TSVGElementList::Clear() {
  const TTreeWalk Walk(FOwner);
  // A handler may add children meanwhile; this ends all the same.
  for (std::int32_t Left = Count(); Left > 0 && !FItems.empty(); --Left)
    Remove(FItems.back().get());
}

}  // namespace qxsvg
