// The keyed tables: their slot order is visible in cascades and lists, so it is pinned here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "document/AssignList.h"
#include "document/StringHashTable.h"

namespace qxsvg {
namespace {

using testing::ElementsAre;
using Table = TQXStringHashTable<int>;

std::vector<String> Keys(const Table& T) {
  std::vector<String> Result;
  T.ForEach([&Result](const auto& Entry) { Result.push_back(Entry.FKey); });
  return Result;
}

TEST(HashTable, HashIsFnv1aOverCodeUnits) {
  EXPECT_EQ(StringHash(u""), 2166136261u);
  EXPECT_EQ(StringHash(u"a"), 0xE40C292Cu);
  EXPECT_EQ(StringHash(u"foobar"), 0xBF9CF968u);
  EXPECT_EQ(StringHash(u"\u20AC"), (2166136261u ^ 0x20ACu) * 16777619u);
}

TEST(HashTable, GrowsAtThreeQuarters) {
  Table T;
  EXPECT_EQ(T.Slots(), 0u);
  const std::size_t SlotsAfter[] = {4, 4, 4, 8, 8, 8, 16};
  for (int I = 0; I < 7; ++I) {
    T.Add(String(1, static_cast<char16_t>(u'a' + I)), I);
    EXPECT_EQ(T.Slots(), SlotsAfter[I]) << I;
  }
  T.SetCapacity(33);
  EXPECT_EQ(T.Slots(), 64u);
  EXPECT_THROW(T.SetCapacity(6), EArgumentOutOfRange);
}

TEST(HashTable, OrderOfSlotsIsFixed) {
  Table T;
  for (const StringView Key : {u"rect", u".a", u"#b", u"g", u"path"}) T.Add(String(Key), 0);
  // From FNV-1a, masked, plus one, modulo eight slots, with linear probing.
  std::vector<std::pair<std::uint32_t, String>> Expected;
  std::set<std::uint32_t> Taken;
  std::vector<String> Order(8);
  // The growth from four slots to eight reinserts in slot order, so the model does so too.
  const auto Insert = [](std::vector<String>& Slots, const String& Key) {
    std::size_t At = ((StringHash(Key) & 0x7FFFFFFF) + 1) & 0x7FFFFFFF & (Slots.size() - 1);
    while (!Slots[At].empty()) At = (At + 1) % Slots.size();
    Slots[At] = Key;
  };
  std::vector<String> Four(4);
  for (const StringView Key : {u"rect", u".a", u"#b"}) Insert(Four, String(Key));
  for (const String& Key : Four)
    if (!Key.empty()) Insert(Order, Key);
  for (const StringView Key : {u"g", u"path"}) Insert(Order, String(Key));
  std::erase(Order, String());
  EXPECT_EQ(Keys(T), Order);
  for (int I = 0; I < T.Count(); ++I)
    EXPECT_EQ(T.GetKeyByIndex(I), Order[static_cast<std::size_t>(I)]);
}

TEST(HashTable, AgreesWithAModelUnderRandomUse) {
  const unsigned Seed = std::random_device{}();
  SCOPED_TRACE(Seed);
  std::mt19937 Random(Seed);
  Table T;
  std::map<String, int> Model;
  for (int Step = 0; Step < 20000; ++Step) {
    const String Key(1, static_cast<char16_t>(u'a' + Random() % 40));
    switch (Random() % 4) {
      case 0: T.AddOrSetValue(Key, Step), Model[Key] = Step; break;
      case 1:
        if (!Model.empty()) T.Remove(Key), Model.erase(Key);
        break;
      case 2: {
        int Value = -1;
        const bool IsThere = T.ExtractPair(Key, Value);
        const auto Known = Model.extract(Key);
        ASSERT_EQ(IsThere, !Known.empty());
        if (IsThere) {
          ASSERT_EQ(Value, Known.mapped());
        }
        break;
      }
      default: {
        const int* Found = T.Find(Key);
        const auto Known = Model.find(Key);
        ASSERT_EQ(Found != nullptr, Known != Model.end());
        if (Found) {
          ASSERT_EQ(*Found, Known->second);
        }
      }
    }
    ASSERT_EQ(T.Count(), static_cast<int>(Model.size()));
  }
  std::vector<String> Sorted = Keys(T);
  std::sort(Sorted.begin(), Sorted.end());
  std::size_t At = 0;
  for (const auto& [Key, Value] : Model) EXPECT_EQ(Sorted[At++], Key);
}

TEST(HashTable, ErrorsNameWhatIsWrong) {
  Table T;
  EXPECT_THROW(T.Remove(u"a"), EGHashtableError);
  T.Add(u"a", 1);
  EXPECT_THROW(T.Add(u"a", 2), EListError);
  EXPECT_EQ(T.GetItem(u"a"), 1);
  EXPECT_THROW(T.GetItem(u"b"), EListError);
  T.Remove(u"b");
  int Value = 5;
  EXPECT_FALSE(T.TryGetValue(u"b", Value));
  EXPECT_EQ(Value, 0);
  EXPECT_THROW(T.GetKeyByIndex(1), EListError);
}

struct Listener {
  std::vector<std::pair<int, TCollectionNotification>> Heard;
  int Changes = 0;
  void Value(TPersistent*, const int& V, TCollectionNotification Action) {
    Heard.emplace_back(V, Action);
  }
  void Change(TPersistent*) { ++Changes; }
};

TEST(HashTable, TellsOfValuesUnlessUpdating) {
  Table T;
  Listener L;
  T.OnValueNotify = Table::ValueNotifyMethod::Bind<&Listener::Value>(&L);
  T.OnChange = TNotifyMethod::Bind<&Listener::Change>(&L);
  using enum TCollectionNotification;
  T.Add(u"a", 1);
  T.AddOrSetValue(u"a", 2);
  int Out;
  T.ExtractPair(u"a", Out);
  T.Add(u"b", 3);
  T.Remove(u"b");
  EXPECT_THAT(L.Heard, ElementsAre(std::pair(1, cnAdded), std::pair(1, cnRemoved),
                                   std::pair(2, cnAdded), std::pair(2, cnExtracted),
                                   std::pair(3, cnAdded), std::pair(3, cnRemoved)));
  EXPECT_EQ(L.Changes, 5);
  L.Heard.clear();
  T.BeginUpdate();
  T.Add(u"c", 4);
  T.EndUpdate();
  EXPECT_TRUE(L.Heard.empty());
  EXPECT_EQ(L.Changes, 6);
  T.Clear();
  EXPECT_TRUE(L.Heard.empty()) << "Clear is silent about values";
  EXPECT_EQ(L.Changes, 7);
  EXPECT_EQ(T.Count(), 0);
}

TEST(HashTable, UniqueNamesHaveABlankMoreEachRound) {
  Table T;
  const StringView Rounds[] = {u"a", u"a Copy", u"a  Copy (1)", u"a   Copy (2)", u"a    Copy (3)"};
  for (const StringView Expected : Rounds) {
    const String Name = T.GetUniqueName(u"a", u"Copy");
    EXPECT_EQ(Name, Expected);
    T.Add(Name, 0);
  }
  T.Remove(u"a  Copy (1)");
  EXPECT_EQ(T.GetUniqueName(u"a", u"Copy"), u"a  Copy (1)") << "a name that is free again is found";
  EXPECT_EQ(T.GetUniqueName(u"b", u"Copy"), u"b");
}

// A document of many equal identifiers asks for the same row again and again.
TEST(HashTable, UniqueNamesOfOneRowStayCheap) {
  TQXStringHashTable<int> T;
  for (int I = 0; I < 20000; ++I) {
    const String Name = T.GetUniqueName(u"id", u"Copy");
    ASSERT_FALSE(T.ContainsKey(Name));
    T.Add(Name, I);
  }
  EXPECT_EQ(T.Count(), 20000);
}

// Many pairs of equal identifiers make many rows, and each removal has to leave most of them alone.
TEST(HashTable, UniqueNamesOfManyRowsStayCheap) {
  Table T;
  constexpr int Count = 10000;
  for (int I = 0; I < Count; ++I) {
    const std::string Digits = std::to_string(I);
    const String Name(Digits.begin(), Digits.end());
    T.Add(Name, I);
    const String Second = T.GetUniqueName(Name, u"Copy");
    T.Add(Second, I);
    T.Add(u"passing", I);
    T.Remove(u"passing");
  }
  EXPECT_EQ(T.Count(), 2 * Count);
  T.Remove(u"7 Copy");
  EXPECT_EQ(T.GetUniqueName(u"7", u"Copy"), u"7 Copy");
}

// A table that was emptied gives the order, and so the ties, of a new one.
TEST(HashTable, ClearForgetsTheSlots) {
  Table Used, New;
  for (int I = 0; I < 100; ++I) Used.Add(String(1, static_cast<char16_t>(u'a' + I)), I);
  Used.Clear();
  EXPECT_EQ(Used.Slots(), 0u);
  for (const StringView Key : {u"rect", u".a", u"#b", u"g", u"path"}) {
    Used.Add(String(Key), 0);
    New.Add(String(Key), 0);
  }
  EXPECT_EQ(Keys(Used), Keys(New));
}

TEST(HashTable, PositionsFollowTheSlots) {
  Table T;
  const auto ByPosition = [&T] {
    std::vector<String> Result;
    for (int I = 0; I < T.Count(); ++I) Result.push_back(T.GetKeyByIndex(I));
    return Result;
  };
  for (const StringView Key : {u"rect", u".a", u"#b"}) T.Add(String(Key), 0);
  EXPECT_EQ(ByPosition(), Keys(T));
  T.SetCapacity(64);
  EXPECT_EQ(ByPosition(), Keys(T));
  T.SetCapacity(4);
  EXPECT_EQ(ByPosition(), Keys(T));
  // Three entries of four slots: replacing a value makes room first.
  T.AddOrSetValue(u"rect", 1);
  EXPECT_EQ(T.Slots(), 8u);
  EXPECT_EQ(ByPosition(), Keys(T));
}

TEST(HashTable, ObjectTablesAreAssigned) {
  int One = 1, Two = 2;
  TQXStringObjectHashTable<int> T, Copy;
  T.Assign({{u"one", &One}, {u"two", &Two}, {u"one", &Two}});
  EXPECT_EQ(T.Count(), 2);
  EXPECT_EQ(T.GetItem(u"one"), &Two);
  Copy.Add(u"old", &One);
  Copy.Assign(&T);
  EXPECT_EQ(Copy.Pairs(), T.Pairs());
  TStringList Keys;
  Keys.Assign(&T);
  EXPECT_EQ(Keys.Count(), 2);
  EXPECT_GE(Keys.IndexOf(u"two"), 0);
}

TEST(AssignList, TellsOfEachItemAndTakesTheOrderOfAnother) {
  using enum TCollectionNotification;
  using List = TQXAssignList<int>;
  int Values[] = {1, 2, 3};
  List A, B;
  std::vector<std::pair<int, TCollectionNotification>> Heard;
  const auto Handler = [&Heard](List*, int* Item, TCollectionNotification Action) {
    Heard.emplace_back(*Item, Action);
  };
  for (int& V : Values) A.Add(&V);
  B.Add(&Values[2]);
  B.OnNotify = List::NotifyMethod::To(Handler);
  B.Assign(A);
  EXPECT_THAT(B.Items(), ElementsAre(&Values[0], &Values[1], &Values[2]));
  EXPECT_EQ(B.Remove(&Values[1]), 1);
  EXPECT_EQ(B.Remove(&Values[1]), -1);
  EXPECT_EQ(B.Extract(&Values[0]), &Values[0]);
  EXPECT_THAT(Heard, ElementsAre(std::pair(3, cnRemoved), std::pair(1, cnAdded),
                                 std::pair(2, cnAdded), std::pair(3, cnAdded),
                                 std::pair(2, cnRemoved), std::pair(1, cnExtracted)));
  B.Assign(B);
  EXPECT_EQ(B.Count(), 1);
  EXPECT_THROW(B[1], EListError);
}

TEST(HashTable, AWideTableWithFewEntriesIsSmall) {
  // What an element's style table costs: one byte a slot and no entry before the first.
  Table T(64);
  EXPECT_EQ(T.Slots(), 64u);
  EXPECT_LE(sizeof(Table), 200u);
}

}  // namespace
}  // namespace qxsvg
