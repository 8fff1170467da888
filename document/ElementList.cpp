#include "document/ElementList.h"

#include <algorithm>

#include "document/Element.h"

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

std::int32_t TSVGElementList::AddOwned(std::unique_ptr<TSVGElement>& Item) {
  TSVGElement* const Raw = Item.get();
  const std::int32_t Index = Count();
  FItems.push_back(std::move(Item));
  if (!OnNotify) return Index;
  TSVGElement* const Outer = std::exchange(FAdding, Raw);
  try {
    OnNotify(this, Raw, TCollectionNotification::cnAdded);
  } catch (...) {
    const bool WasRefused = FAdding != Raw;
    FAdding = Outer;
    if (WasRefused) Item.reset(Raw);
    throw;
  }
  FAdding = Outer;
  return Index;
}

std::unique_ptr<TSVGElement> TSVGElementList::TakeOut(TSVGElement* Item) {
  const std::int32_t Index = IndexOf(Item);
  if (Index < 0) return nullptr;
  std::unique_ptr<TSVGElement> Result = std::move(FItems[static_cast<std::size_t>(Index)]);
  FItems.erase(FItems.begin() + Index);
  return Result;
}

void TSVGElementList::Remove(TSVGElement* Item) {
  std::unique_ptr<TSVGElement> Outer = TakeOut(Item);
  if (!Outer) return;
  std::swap(FLeaving, Outer);
  TSVGElement* const OuterDying = std::exchange(FDying, Item);
  const auto Restore = [&] {
    FLeaving = std::move(Outer);
    FDying = OuterDying;
  };
  try {
    if (OnNotify) OnNotify(this, Item, TCollectionNotification::cnRemoved);
  } catch (...) {
    Restore();
    throw;
  }
  Restore();
}

void TSVGElementList::Destroy(TSVGElement* Item) {
  if (FLeaving.get() == Item) FLeaving.reset();
}

void TSVGElementList::Forget(TSVGElement* Dying) {
  if (Dying == FDying) return;
  (void)TakeOut(Dying).release();
  if (OnNotify) OnNotify(this, Dying, TCollectionNotification::cnExtracted);
}

std::unique_ptr<TSVGElement> TSVGElementList::Extract(TSVGElement* Item) {
  std::unique_ptr<TSVGElement> Result = TakeOut(Item);
  if (!Result) return nullptr;
  if (OnNotify) OnNotify(this, Item, TCollectionNotification::cnExtracted);
  if (FAdding == Item) {
    // The child is being refused: the caller of Add gets it back, so nobody else may own it.
    FAdding = nullptr;
    (void)Result.release();
  }
  return Result;
}

void TSVGElementList::Clear() {
  while (!FItems.empty()) Remove(FItems.back().get());
}

}  // namespace qxsvg
