// The keyed tables of the system, whose visible order is that of their slots.
//
// Open addressing with linear probing over a power-of-two count of slots. The order of iteration
// decides ties in the cascade and the order of element lists, so everything that the order depends
// on is fixed: the hash (see StringHash), the probing, the growth and the removal. A slot holds
// only a small index into a dense array of entries, which keeps a sparse table cheap.
#pragma once

#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "document/SlotArray.h"
#include "runtime/Exceptions.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

enum class TCollectionNotification : std::uint8_t { cnAdded, cnRemoved, cnExtracted };

[[noreturn]] QXSVG_API void RaiseDuplicateKey();
[[noreturn]] QXSVG_API void RaiseKeyNotFound();
[[noreturn]] QXSVG_API void RaiseIndexOutOfRange();
[[noreturn]] QXSVG_API void RaiseTableEmpty();

// 32-bit FNV-1a with one step for each UTF-16 code unit: the same on every machine.
constexpr std::uint32_t StringHash(StringView Text) {
  std::uint32_t Hash = 2166136261u;
  for (const char16_t Unit : Text) Hash = (Hash ^ Unit) * 16777619u;
  return Hash;
}

// How a table compares keys; LookupKey is what look-ups take without making a key.
struct TStringComparer {
  using LookupKey = StringView;
  static std::uint32_t Hash(StringView Key) { return StringHash(Key); }
  static bool Equal(StringView A, StringView B) { return A == B; }
};

template <class Key, class Value, class Comparer>
class TQXDictionary : public TPersistent {
 public:
  using LookupKey = typename Comparer::LookupKey;
  using Notification = TCollectionNotification;
  struct Entry {
    std::int32_t Hash;
    Key FKey;
    Value FValue;
  };

  explicit TQXDictionary(std::int32_t Capacity = 0) { SetCapacity(Capacity); }

  std::int32_t Count() const { return static_cast<std::int32_t>(FEntries.size()); }
  std::size_t Slots() const { return FSlots.Size(); }

  // Raises EListError when the key exists already.
  void Add(Key NewKey, Value NewValue) {
    GrowIfFull();
    const std::int32_t Hash = HashOf(NewKey);
    const std::int32_t Slot = FindSlot(NewKey, Hash);
    if (Slot >= 0) RaiseDuplicateKey();
    DoAdd(~Slot, Hash, std::move(NewKey), std::move(NewValue));
  }
  // Adds, or replaces the value of a key that exists.
  void AddOrSetValue(Key NewKey, Value NewValue) {
    GrowIfFull();
    const std::int32_t Hash = HashOf(NewKey);
    const std::int32_t Slot = FindSlot(NewKey, Hash);
    if (Slot >= 0)
      DoSetValue(Slot, std::move(NewValue));
    else
      DoAdd(~Slot, Hash, std::move(NewKey), std::move(NewValue));
  }
  // Does nothing when the key is missing.
  void Remove(LookupKey Wanted) { Take(Wanted, Notification::cnRemoved); }
  // Takes the value out; false and an untouched Target when the key is missing.
  bool ExtractPair(LookupKey Wanted, Value& Target) {
    if (!TryGetValue(Wanted, Target)) return false;
    Take(Wanted, Notification::cnExtracted);
    return true;
  }
  bool ContainsKey(LookupKey Wanted) const { return FindSlot(Wanted, HashOf(Wanted)) >= 0; }
  // Target becomes empty when the key is missing.
  bool TryGetValue(LookupKey Wanted, Value& Target) const {
    const Value* Found = Find(Wanted);
    Target = Found ? *Found : Value();
    return Found != nullptr;
  }
  // A view of the value, valid until the table changes; null when the key is missing.
  const Value* Find(LookupKey Wanted) const {
    const std::int32_t Slot = FindSlot(Wanted, HashOf(Wanted));
    return Slot < 0 ? nullptr : &FEntries[FSlots.Get(static_cast<std::size_t>(Slot))].FValue;
  }
  // Raises EListError when the key is missing.
  const Value& GetItem(LookupKey Wanted) const {
    const Value* Found = Find(Wanted);
    if (!Found) RaiseKeyNotFound();
    return *Found;
  }
  // Removes all entries and the slots, so that what is added next stands in the order of a new
  // table.
  virtual void Clear() {
    const std::vector<Entry> Old = std::exchange(FEntries, {});
    const SlotArray OldSlots = std::exchange(FSlots, {});
    SlotsMoved();
    for (std::size_t Slot = 0; Slot < OldSlots.Size(); ++Slot) {
      const std::uint32_t At = OldSlots.Get(Slot);
      if (At == SlotArray::Empty) continue;
      KeyNotify(Old[At].FKey, Notification::cnRemoved);
      ValueNotify(Old[At].FValue, Notification::cnRemoved);
    }
  }
  // Rehashes to the least power of two from 4 up that is at least Capacity, or to no slots for 0.
  // Raises EArgumentOutOfRange for a capacity below the count.
  void SetCapacity(std::int32_t Capacity) {
    if (Capacity < Count()) throw EArgumentOutOfRange(u"Capacity is below the number of entries");
    std::size_t Wanted = Capacity == 0 ? 0 : 4;
    while (Wanted < static_cast<std::size_t>(Capacity)) Wanted *= 2;
    Rehash(Wanted);
  }

  // Walks the entries in the order of their slots; Visit takes a const Entry&.
  template <class Visitor>
  void ForEach(Visitor&& Visit) const {
    for (std::size_t Slot = 0; Slot < FSlots.Size(); ++Slot)
      if (const std::uint32_t At = FSlots.Get(Slot); At != SlotArray::Empty) Visit(FEntries[At]);
  }

  using KeyNotifyMethod = TMethod<void(TPersistent*, const Key&, Notification)>;
  using ValueNotifyMethod = TMethod<void(TPersistent*, const Value&, Notification)>;
  KeyNotifyMethod OnKeyNotify;
  ValueNotifyMethod OnValueNotify;

 protected:
  // Masked, plus one, masked again: 0 to 0x7FFFFFFF.
  static std::int32_t HashOf(LookupKey Wanted) {
    constexpr std::uint32_t Positive = 0x7FFFFFFF;
    return static_cast<std::int32_t>(((Comparer::Hash(Wanted) & Positive) + 1) & Positive);
  }
  // The slot of the key; the complement of the empty slot that ends the search; or the most
  // negative integer in a table without slots.
  std::int32_t FindSlot(LookupKey Wanted, std::int32_t Hash) const {
    if (FSlots.Size() == 0) return std::numeric_limits<std::int32_t>::min();
    const std::size_t Mask = FSlots.Size() - 1;
    for (std::size_t Slot = static_cast<std::size_t>(Hash) & Mask;; Slot = (Slot + 1) & Mask) {
      const std::uint32_t At = FSlots.Get(Slot);
      if (At == SlotArray::Empty) return ~static_cast<std::int32_t>(Slot);
      const Entry& E = FEntries[At];
      if (E.Hash == Hash && Comparer::Equal(E.FKey, Wanted)) return static_cast<std::int32_t>(Slot);
    }
  }
  virtual void DoAdd(std::int32_t Slot, std::int32_t Hash, Key&& NewKey, Value&& NewValue) {
    FEntries.push_back({Hash, std::move(NewKey), std::move(NewValue)});
    FSlots.Set(static_cast<std::size_t>(Slot), static_cast<std::uint32_t>(FEntries.size() - 1));
    // The handlers may change the table, so each notice goes out with a copy where that is
    // possible.
    const std::size_t At = FEntries.size() - 1;
    if (WantsKeyNotice()) KeyNotify(Key(FEntries[At].FKey), Notification::cnAdded);
    if (WantsValueNotice() && At < FEntries.size())
      ValueNotify(Value(FEntries[At].FValue), Notification::cnAdded);
  }
  virtual void DoSetValue(std::int32_t Slot, Value&& NewValue) {
    Value& Held = FEntries[FSlots.Get(static_cast<std::size_t>(Slot))].FValue;
    if (!WantsValueNotice()) {
      Held = std::move(NewValue);
      return;
    }
    const Value Old = std::exchange(Held, NewValue);
    ValueNotify(Old, Notification::cnRemoved);
    ValueNotify(NewValue, Notification::cnAdded);
  }
  virtual void DoRemove(std::int32_t Slot, Notification Action) {
    const std::uint32_t At = FSlots.Get(static_cast<std::size_t>(Slot));
    CloseGap(static_cast<std::size_t>(Slot));
    Entry Removed = std::move(FEntries[At]);
    const auto Last = static_cast<std::uint32_t>(FEntries.size() - 1);
    if (At != Last) {
      FSlots.Set(SlotOfEntry(Last), At);
      FEntries[At] = std::move(FEntries[Last]);
    }
    FEntries.pop_back();
    KeyNotify(Removed.FKey, Action);
    ValueNotify(Removed.FValue, Action);
  }
  virtual void KeyNotify(const Key& Changed, Notification Action) {
    if (OnKeyNotify) OnKeyNotify(this, Changed, Action);
  }
  virtual void ValueNotify(const Value& Changed, Notification Action) {
    if (OnValueNotify) OnValueNotify(this, Changed, Action);
  }
  virtual bool WantsKeyNotice() const { return static_cast<bool>(OnKeyNotify); }
  virtual bool WantsValueNotice() const { return static_cast<bool>(OnValueNotify); }

  const Entry& EntryAtSlot(std::size_t Slot) const { return FEntries[FSlots.Get(Slot)]; }
  const SlotArray& GetSlots() const { return FSlots; }

 private:
  // Three quarters of the slots, in integers.
  std::size_t Threshold() const { return FSlots.Size() / 2 + FSlots.Size() / 4; }
  void GrowIfFull() {
    if (FEntries.size() >= Threshold()) Rehash(FSlots.Size() == 0 ? 4 : FSlots.Size() * 2);
  }
  // The old entries go in by the order of their old slots, which the new order depends on.
  void Rehash(std::size_t NewSlots) {
    // Where there is no memory for the new slots, the old ones stay.
    const SlotArray Old = std::exchange(FSlots, SlotArray(NewSlots));
    SlotsMoved();
    for (std::size_t Slot = 0; Slot < Old.Size(); ++Slot) {
      const std::uint32_t At = Old.Get(Slot);
      if (At == SlotArray::Empty) continue;
      std::size_t Home = static_cast<std::size_t>(FEntries[At].Hash) & (NewSlots - 1);
      while (FSlots.Get(Home) != SlotArray::Empty) Home = (Home + 1) & (NewSlots - 1);
      FSlots.Set(Home, At);
    }
  }
  // Backward-shift deletion: an entry moves into the gap unless its home lies between the gap and
  // it.
  void CloseGap(std::size_t Gap) {
    const std::size_t Mask = FSlots.Size() - 1;
    FSlots.Set(Gap, SlotArray::Empty);
    for (std::size_t Slot = (Gap + 1) & Mask;; Slot = (Slot + 1) & Mask) {
      const std::uint32_t At = FSlots.Get(Slot);
      if (At == SlotArray::Empty) return;
      const std::size_t Home = static_cast<std::size_t>(FEntries[At].Hash) & Mask;
      const bool IsHomeBehindGap =
          Gap <= Slot ? (Gap < Home && Home <= Slot) : (Gap < Home || Home <= Slot);
      if (IsHomeBehindGap) continue;
      FSlots.Set(Gap, At);
      FSlots.Set(Slot, SlotArray::Empty);
      Gap = Slot;
    }
  }
  std::size_t SlotOfEntry(std::uint32_t At) const {
    const std::size_t Mask = FSlots.Size() - 1;
    std::size_t Slot = static_cast<std::size_t>(FEntries[At].Hash) & Mask;
    while (FSlots.Get(Slot) != At) Slot = (Slot + 1) & Mask;
    return Slot;
  }
  void Take(LookupKey Wanted, Notification Action) {
    const std::int32_t Slot = FindSlot(Wanted, HashOf(Wanted));
    if (Slot >= 0)
      DoRemove(Slot, Action);
    else if (Count() == 0)
      OnRemoveFromEmpty();
  }
  virtual void OnRemoveFromEmpty() {}
  // Entries stand in other slots now.
  virtual void SlotsMoved() {}

  SlotArray FSlots;
  std::vector<Entry> FEntries;
};

// Adds a change event, an update lock that silences all notices, and access by position.
template <class Key, class Value, class Comparer>
class TQXHashTable : public TQXDictionary<Key, Value, Comparer> {
  using Base = TQXDictionary<Key, Value, Comparer>;

 public:
  using Base::Base;
  using typename Base::Entry;
  using typename Base::Notification;

  TNotifyMethod OnChange;

  void BeginUpdate() { ++FUpdateCount; }
  // Fires OnChange when the outermost update ends.
  void EndUpdate() {
    if (--FUpdateCount == 0) Change();
  }
  void Clear() override {
    BeginUpdate();
    Base::Clear();
    EndUpdate();
  }
  // Positions count from 0 in slot order. Raises EListError outside 0 to Count - 1.
  const Entry& GetPairByIndex(std::int32_t Index) const {
    if (Index < 0 || Index >= this->Count()) RaiseIndexOutOfRange();
    if (!FByPosition) {
      FByPosition = std::make_unique<std::vector<std::uint32_t>>();
      for (std::size_t Slot = 0; Slot < this->GetSlots().Size(); ++Slot)
        if (this->GetSlots().Get(Slot) != SlotArray::Empty)
          FByPosition->push_back(static_cast<std::uint32_t>(Slot));
    }
    return this->EntryAtSlot((*FByPosition)[static_cast<std::size_t>(Index)]);
  }
  const Key& GetKeyByIndex(std::int32_t Index) const { return GetPairByIndex(Index).FKey; }
  const Value& GetItemByIndex(std::int32_t Index) const { return GetPairByIndex(Index).FValue; }

 protected:
  bool IsUpdating() const { return FUpdateCount > 0; }
  void Change() {
    if (FUpdateCount == 0 && OnChange) OnChange(this);
  }
  void DoAdd(std::int32_t Slot, std::int32_t Hash, Key&& NewKey, Value&& NewValue) override {
    FByPosition.reset();
    Base::DoAdd(Slot, Hash, std::move(NewKey), std::move(NewValue));
    Change();
  }
  void DoSetValue(std::int32_t Slot, Value&& NewValue) override {
    Base::DoSetValue(Slot, std::move(NewValue));
    Change();
  }
  void DoRemove(std::int32_t Slot, Notification Action) override {
    FByPosition.reset();
    Base::DoRemove(Slot, Action);
    Change();
  }
  void KeyNotify(const Key& Changed, Notification Action) override {
    if (FUpdateCount == 0) Base::KeyNotify(Changed, Action);
  }
  void ValueNotify(const Value& Changed, Notification Action) override {
    if (FUpdateCount == 0) Base::ValueNotify(Changed, Action);
  }
  bool WantsKeyNotice() const override { return FUpdateCount == 0 && Base::WantsKeyNotice(); }
  bool WantsValueNotice() const override { return FUpdateCount == 0 && Base::WantsValueNotice(); }
  void OnRemoveFromEmpty() override { RaiseTableEmpty(); }
  void SlotsMoved() override { FByPosition.reset(); }
  void DefineProperties(TFiler& Filer) override;

 private:
  std::int32_t FUpdateCount = 0;
  // Slots of the entries in slot order, made when somebody asks by position.
  mutable std::unique_ptr<std::vector<std::uint32_t>> FByPosition;
};

// Declares the settings that old streams hold; they are read, forgotten and never written.
QXSVG_API void DefineRetiredTableProperties(TFiler& Filer);

template <class Key, class Value, class Comparer>
void TQXHashTable<Key, Value, Comparer>::DefineProperties(TFiler& Filer) {
  Base::DefineProperties(Filer);
  DefineRetiredTableProperties(Filer);
}

}  // namespace qxsvg
