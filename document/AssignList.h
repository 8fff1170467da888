// The list of the system that can be assigned from its like.
#pragma once

#include <algorithm>
#include <vector>

#include "document/HashTable.h"

namespace qxsvg {

// A list of objects that it does not own. Every add, removal and extraction is told to OnNotify.
template <class T>
class TQXAssignList {
 public:
  using NotifyMethod = TMethod<void(TQXAssignList*, T*, TCollectionNotification)>;
  NotifyMethod OnNotify;

  std::int32_t Count() const { return static_cast<std::int32_t>(FItems.size()); }
  // Raises EListError outside 0 to Count - 1.
  T* operator[](std::int32_t Index) const {
    if (Index < 0 || Index >= Count()) RaiseIndexOutOfRange();
    return FItems[static_cast<std::size_t>(Index)];
  }
  std::int32_t IndexOf(const T* Item) const {
    const auto At = std::find(FItems.begin(), FItems.end(), Item);
    return At == FItems.end() ? -1 : static_cast<std::int32_t>(At - FItems.begin());
  }
  bool Contains(const T* Item) const { return IndexOf(Item) >= 0; }
  std::int32_t Add(T* Item) {
    FItems.push_back(Item);
    const std::int32_t Index = Count() - 1;
    Notify(Item, TCollectionNotification::cnAdded);
    return Index;
  }
  // Gives the index that the item had, or -1.
  std::int32_t Remove(T* Item) { return Take(Item, TCollectionNotification::cnRemoved); }
  T* Extract(T* Item) {
    return Take(Item, TCollectionNotification::cnExtracted) < 0 ? nullptr : Item;
  }
  // The last item first. A handler may add items meanwhile; this ends all the same.
  void Clear() {
    for (std::int32_t Left = Count(); Left > 0 && !FItems.empty(); --Left) {
      T* const Item = FItems.back();
      FItems.pop_back();
      Notify(Item, TCollectionNotification::cnRemoved);
    }
  }
  void Assign(const TQXAssignList& Other) {
    if (this == &Other) return;
    Clear();
    for (T* Item : std::vector<T*>(Other.FItems)) Add(Item);
  }
  auto begin() const { return FItems.begin(); }
  auto end() const { return FItems.end(); }
  const std::vector<T*>& Items() const { return FItems; }

 private:
  std::int32_t Take(T* Item, TCollectionNotification Action) {
    const std::int32_t Index = IndexOf(Item);
    if (Index >= 0) {
      FItems.erase(FItems.begin() + Index);
      Notify(Item, Action);
    }
    return Index;
  }
  void Notify(T* Item, TCollectionNotification Action) {
    if (OnNotify) OnNotify(this, Item, Action);
  }
  std::vector<T*> FItems;
};

}  // namespace qxsvg
