// Keyed tables whose keys are texts, and the unique names made from their keys.
#pragma once

#include <unordered_map>

#include "document/HashTable.h"
#include "runtime/StringList.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

// Finds the first free name of the row Name, "Name Word", "Name  Word (1)", "Name   Word (2)"...
// Remembers how far a row is taken, since the loader asks for the same row once for each duplicate.
class QXSVG_API UniqueNameRows {
 public:
  // IsTaken answers for the table that the name has to be new in.
  template <class IsTakenTest>
  String Find(StringView Name, StringView Word, IsTakenTest IsTaken) {
    if (!IsTaken(Name)) return String(Name);
    std::int32_t& Round = RoundOf(Name, Word);
    String Result = NameOfRound(Name, Word, Round);
    while (IsTaken(Result)) Result = NameOfRound(Name, Word, ++Round);
    return Result;
  }
  // Forgets what it knew when a name goes that may belong to a row.
  void NoteRemoved(StringView Key);

 private:
  // What a name has in common with all names of its row: the text before Word, without the blanks
  // at its end.
  static StringView Stem(StringView Name, StringView Word);
  static String NameOfRound(StringView Name, StringView Word, std::int32_t Round);
  std::int32_t& RoundOf(StringView Name, StringView Word);

  // By stem, then by name and word, because a removed name tells of its stem alone.
  std::unordered_map<String, std::unordered_map<String, std::int32_t>> FRounds;
  // The words asked for so far; hardly ever more than one.
  std::vector<String> FWords;
};

template <class Value>
class TQXStringHashTable : public TQXHashTable<String, Value, TStringComparer> {
  using Base = TQXHashTable<String, Value, TStringComparer>;

 public:
  using Base::Base;

  // A key that the table does not hold: Name itself when free, otherwise Name, a blank and Word,
  // otherwise the text before Word with one blank more for each round, Word, and a counter in
  // parentheses. Past Limits' UniqueNameBlanks rounds the blanks stop growing.
  String GetUniqueName(StringView Name, StringView Word) {
    if (!FRows) FRows = std::make_unique<UniqueNameRows>();
    return FRows->Find(Name, Word, [this](StringView Key) { return this->ContainsKey(Key); });
  }
  void Clear() override {
    FRows.reset();
    Base::Clear();
  }

 protected:
  void DoRemove(std::int32_t Slot, typename Base::Notification Action) override {
    if (FRows) FRows->NoteRemoved(this->EntryAtSlot(static_cast<std::size_t>(Slot)).FKey);
    Base::DoRemove(Slot, Action);
  }

 private:
  std::unique_ptr<UniqueNameRows> FRows;
};

// Values are objects that the table does not own: its owner destroys them through OnValueNotify, or
// leaves them to whoever made them.
template <class Object>
class TQXStringObjectHashTable : public TQXStringHashTable<Object*> {
 public:
  using TQXStringHashTable<Object*>::TQXStringHashTable;

  // The values in slot order.
  std::vector<Object*> Elements() const {
    std::vector<Object*> Result;
    Result.reserve(static_cast<std::size_t>(this->Count()));
    this->ForEach([&Result](const auto& Entry) { Result.push_back(Entry.FValue); });
    return Result;
  }
  // Each key with its object, in slot order; what a list of texts with objects holds.
  using TPairs = std::vector<std::pair<String, Object*>>;
  TPairs Pairs() const {
    TPairs Result;
    Result.reserve(static_cast<std::size_t>(this->Count()));
    this->ForEach([&Result](const auto& Entry) { Result.emplace_back(Entry.FKey, Entry.FValue); });
    return Result;
  }
  // Takes the pairs in the place of what the table holds; of equal keys the last one counts.
  void Assign(const TPairs& Source) {
    this->Clear();
    for (const auto& [Key, Value] : Source) this->AddOrSetValue(Key, Value);
  }
  // From a table of the same kind.
  void Assign(const TPersistent* Source) override {
    if (const auto* Table = dynamic_cast<const TQXStringObjectHashTable*>(Source)) {
      if (Table != this) Assign(Table->Pairs());
    } else {
      TPersistent::Assign(Source);
    }
  }

 protected:
  // To a list of texts: the keys.
  void AssignTo(TPersistent* Dest) const override {
    auto* const List = dynamic_cast<TStrings*>(Dest);
    if (!List) return TPersistent::AssignTo(Dest);
    const TUpdateLock Lock(*List);
    List->Clear();
    this->ForEach([List](const auto& Entry) { List->Add(Entry.FKey); });
  }
};

}  // namespace qxsvg
