// The children of an element, in document order.
#pragma once

#include <memory>
#include <vector>

#include "document/HashTable.h"

namespace qxsvg {

class TSVGElement;

// Owns its items. OnNotify is told of each change, with the list as sender; for a removal it gets the
// item while that still exists and destroys it through Destroy, so that the owner decides what comes
// before and after.
class QXSVG_API TSVGElementList {
 public:
  using NotifyMethod = TMethod<void(TSVGElementList*, TSVGElement*, TCollectionNotification)>;
  NotifyMethod OnNotify;

  TSVGElementList() = default;
  TSVGElementList(const TSVGElementList&) = delete;
  TSVGElementList& operator=(const TSVGElementList&) = delete;
  ~TSVGElementList();

  std::int32_t Count() const { return static_cast<std::int32_t>(FItems.size()); }
  // Raises EListError outside 0 to Count - 1.
  TSVGElement* operator[](std::int32_t Index) const;
  std::int32_t IndexOf(const TSVGElement* Item) const;
  bool Contains(const TSVGElement* Item) const { return IndexOf(Item) >= 0; }

  // Gives the index. Takes ownership only when the child is accepted: where the notification refuses
  // it and raises, Item still holds the element.
  template <class T>
  std::int32_t Add(std::unique_ptr<T>&& Item) {
    std::unique_ptr<TSVGElement> Child(Item.release());
    try {
      return AddOwned(Child);
    } catch (...) {
      Item.reset(static_cast<T*>(Child.release()));
      throw;
    }
  }
  // Destroys the item; nothing when it is not in the list.
  void Remove(TSVGElement* Item);
  // Takes the item out alive; empty when it is not in the list.
  std::unique_ptr<TSVGElement> Extract(TSVGElement* Item);
  // Destroys all items, the last first.
  void Clear();

  // Destroys the item whose removal is being told. Only for the handler of OnNotify.
  void Destroy(TSVGElement* Item);
  // Lets go of an item whose destructor is running, and tells that it was extracted unless its
  // removal is being told already. Only for that destructor.
  void Forget(TSVGElement* Dying);

  // Iterates over plain pointers. Handlers that run on the way may change the list: walks that call
  // any use indices and ask for Count anew.
  class Iterator {
   public:
    explicit Iterator(const std::unique_ptr<TSVGElement>* At) : FAt(At) {}
    TSVGElement* operator*() const { return FAt->get(); }
    Iterator& operator++() {
      ++FAt;
      return *this;
    }
    bool operator!=(const Iterator& Other) const { return FAt != Other.FAt; }

   private:
    const std::unique_ptr<TSVGElement>* FAt;
  };
  Iterator begin() const { return Iterator(FItems.data()); }
  Iterator end() const { return Iterator(FItems.data() + FItems.size()); }

 private:
  std::int32_t AddOwned(std::unique_ptr<TSVGElement>& Item);
  std::unique_ptr<TSVGElement> TakeOut(TSVGElement* Item);

  std::vector<std::unique_ptr<TSVGElement>> FItems;
  // The item being removed, until the handler destroys it.
  std::unique_ptr<TSVGElement> FLeaving;
  // The same item, still known while its destructor runs.
  TSVGElement* FDying = nullptr;
  // The item that Extract took out while its own Add was still under way.
  TSVGElement* FAdding = nullptr;
};

}  // namespace qxsvg
