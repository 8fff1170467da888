// The keyed tables: their slot order is visible in cascades and lists, so it is pinned here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

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

std::vector<String> ByPosition(const Table& T) {
  std::vector<String> Result;
  for (int I = 0; I < T.Count(); ++I) Result.push_back(T.GetKeyByIndex(I));
  return Result;
}

TEST(HashTable, OrderOfSlotsIsFixedAndPositionsFollowIt) {
  // Beyond ASCII, by code units.
  EXPECT_EQ(StringHash(u"\u20AC"), (2166136261u ^ 0x20ACu) * 16777619u);
  Table T;
  for (const StringView Key : {u"rect", u".a", u"#b", u"g", u"path"}) T.Add(String(Key), 0);
  // The hash, plus one, modulo eight slots, with linear probing; the growth from four slots put the
  // first three in anew in the order of those.
  EXPECT_THAT(Keys(T), ElementsAre(u"rect", u".a", u"#b", u"path", u"g"));
  EXPECT_EQ(ByPosition(T), Keys(T));
  T.SetCapacity(64);
  EXPECT_EQ(ByPosition(T), Keys(T));
  T.Remove(u"g");
  T.Remove(u"path");
  T.SetCapacity(4);
  EXPECT_EQ(ByPosition(T), Keys(T));
  // Three entries of four slots: replacing a value makes room first.
  T.AddOrSetValue(u"rect", 1);
  EXPECT_EQ(T.Slots(), 8u);
  EXPECT_EQ(ByPosition(T), Keys(T));
}

TEST(HashTable, AgreesWithAModelUnderRandomUse) {
  const unsigned Seed = std::random_device{}();
  SCOPED_TRACE(Seed);
  std::mt19937 Random(Seed);
  Table T;
  std::map<String, int> Model;
  for (int Step = 0; Step < 20000; ++Step) {
    const String Key(1, static_cast<char16_t>(u'a' + Random() % 40));
    const auto Known = Model.find(Key);
    const int Value = Known == Model.end() ? 0 : Known->second;
    int Found = 0;
    switch (Random() % 4) {
      case 0: T.AddOrSetValue(Key, Step), Model[Key] = Step; break;
      case 1:
        if (!Model.empty()) T.Remove(Key), Model.erase(Key);
        break;
      case 2:
        ASSERT_EQ(T.ExtractPair(Key, Found), Model.erase(Key) > 0);
        ASSERT_EQ(Found, Value);
        break;
      default: ASSERT_EQ(T.TryGetValue(Key, Found), Known != Model.end()); ASSERT_EQ(Found, Value);
    }
    ASSERT_EQ(T.Count(), static_cast<int>(Model.size()));
  }
  for (const String& Key : Keys(T)) EXPECT_TRUE(Model.contains(Key));
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

// A document of many equal identifiers asks for the same row again and again; many pairs of them
// make many rows, and each removal has to leave most of those alone.
TEST(HashTable, UniqueNamesStayCheap) {
  constexpr int Count = 20000;
  Table T;
  for (int I = 0; I < Count; ++I) T.Add(T.GetUniqueName(u"id", u"Copy"), I);
  for (int I = 0; I < Count / 2; ++I) {
    const String Name = FromUtf8(std::to_string(I));
    T.Add(Name, I);
    T.Add(T.GetUniqueName(Name, u"Copy"), I);
    T.Add(u"passing", I);
    T.Remove(u"passing");
  }
  EXPECT_EQ(T.Count(), 2 * Count);
  T.Remove(u"7 Copy");
  EXPECT_EQ(T.GetUniqueName(u"7", u"Copy"), u"7 Copy");
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
  EXPECT_THAT(std::vector<String>(Keys.begin(), Keys.end()),
              testing::UnorderedElementsAre(u"one", u"two"));
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

}  // namespace
}  // namespace qxsvg
