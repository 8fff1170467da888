// The children of an element, in document order.
#pragma once

#include <memory>
#include <vector>

#include "document/HashTable.h"

namespace qxsvg {

class TSVGElement;

// Owns its items. The element whose children they are is told of each change
// (TSVGElement::ElementNotification): of an addition with the item in the list, of the others with
// the item out of it and still in memory.
class QXSVG_API TSVGElementList {
 public:
  explicit TSVGElementList(TSVGElement& Owner) : FOwner(Owner) {}
  TSVGElementList(const TSVGElementList&) = delete;
  TSVGElementList& operator=(const TSVGElementList&) = delete;
  ~TSVGElementList();

  std::int32_t Count() const { return static_cast<std::int32_t>(FItems.size()); }
  // Raises EListError outside 0 to Count - 1.
  TSVGElement* operator[](std::int32_t Index) const;
  std::int32_t IndexOf(const TSVGElement* Item) const;
  bool Contains(const TSVGElement* Item) const { return IndexOf(Item) >= 0; }

  // Gives the index, or -1 where a handler took the child away again. Takes ownership only when the
  // child is accepted: where it is refused (ESVGException for its type or for the depth of the
  // tree, EInvalidOperation for no child and for one that has the list within it), Item still holds
  // it. What a handler of the host raises passes out, with the child in the list.
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
  // Takes the item out alive; empty when it is not in the list. Where a handler of the host raises,
  // the item ends.
  std::unique_ptr<TSVGElement> Extract(TSVGElement* Item);
  // Destroys all items, the last first.
  void Clear();

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
  friend class TSVGElement;

  std::int32_t AddOwned(std::unique_ptr<TSVGElement>& Item);
  std::unique_ptr<TSVGElement> TakeOut(TSVGElement* Item);
  void Notify(TSVGElement* Item, TCollectionNotification Action);
  // Gives an item that is being added back to the caller of Add, who hears of it by an exception.
  void Refuse(TSVGElement* Item);
  // Lets go of an item whose destructor is running.
  void Forget(TSVGElement* Dying);

  TSVGElement& FOwner;
  std::vector<std::unique_ptr<TSVGElement>> FItems;
  // Between Refuse and the end of Add.
  std::unique_ptr<TSVGElement> FRefused;
};

}  // namespace qxsvg
