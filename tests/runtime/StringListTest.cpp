// Lists of texts.
#include "runtime/StringList.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "runtime/Exceptions.h"
#include "runtime/UpdateLock.h"
#include "tests/support/Watch.h"

namespace qxsvg {
namespace {

std::vector<String> Items(const TStrings& List) {
  return {List.begin(), List.end()};
}

TEST(StringList, DelimitedTextIsReadByBothRules) {
  const std::tuple<StringView, bool, std::vector<String>> Cases[] = {
      {u"a,b,c", true, {u"a", u"b", u"c"}},
      {u"a, b c", true, {u"a", u" b c"}},
      {u"a, b c", false, {u"a", u"b", u"c"}},
      {u"a,,b", false, {u"a", u"", u"b"}},
      {u"a,", true, {u"a", u""}},
      {u",", true, {u"", u""}},
      {u"", true, {}},
      {u"\"a,b\",c", true, {u"a,b", u"c"}},
      {u"\"say \"\"hi\"\"\",c", false, {u"say \"hi\"", u"c"}},
      {u"\"open, end", true, {u"open, end"}},
  };
  for (const auto& [Text, IsStrict, Expected] : Cases) {
    TStrings List;
    List.SetStrictDelimiter(IsStrict);
    List.SetDelimitedText(Text);
    EXPECT_EQ(Items(List), Expected) << ToUtf8(Text);
  }
}

TEST(StringList, DelimitedTextReadsBackAsItWas) {
  std::mt19937 Random(20240615);
  constexpr StringView Characters = u"ab\",; \t\n=";
  for (int Round = 0; Round < 2000; ++Round) {
    TStrings List, Copy;
    for (TStrings* Each : {&List, &Copy}) {
      Each->SetDelimiter(Round % 2 ? u',' : u';');
      Each->SetStrictDelimiter(Round % 3 == 0);
    }
    for (unsigned I = 1 + Random() % 4; I > 0; --I) {
      String Item;
      for (unsigned J = Random() % 5; J > 0; --J) Item += Characters[Random() % Characters.size()];
      List.Add(Item);
    }
    Copy.SetDelimitedText(List.DelimitedText());
    // One empty item and no item are the same text.
    if (List.Count() == 1 && List[0].empty() && Copy.IsEmpty()) continue;
    ASSERT_TRUE(Copy.Equals(List)) << ToUtf8(List.DelimitedText());
  }
}

TEST(StringList, TextSplitsAtEveryKindOfLineEnd) {
  TStrings List;
  List.SetText(u"one\r\ntwo\nthree\r\rfive\n");
  EXPECT_EQ(Items(List), (std::vector<String>{u"one", u"two", u"three", u"", u"five"}));
  List.SetText(List[4]);  // a text that dies while it is set
  EXPECT_EQ(Items(List), std::vector<String>{u"five"});
}

TEST(StringList, NamesAndValues) {
  TStrings List;
  List.SetValue(u"fill", u"red");
  List.Add(u"no value");
  List.SetValue(u"FILL", u"a=b");
  EXPECT_EQ(Items(List), (std::vector<String>{u"FILL=a=b", u"no value"}));
  EXPECT_EQ(List.Values(u"fill"), u"a=b");
  EXPECT_EQ(List.Names(1), u"");
  List.SetValue(u"fill", u"");
  EXPECT_EQ(List.IndexOfName(u"fill"), -1);
}

TEST(StringList, OneNoticeForALockedChange) {
  TStrings List;
  test::TWatch Watch(List);
  List.Add(u"a");
  EXPECT_EQ(Watch.Take(), 1);
  {
    const TUpdateLock Lock(List);
    List.Add(u"b");
    List.Delete(0);
    EXPECT_EQ(Watch.Take(), 0);
  }
  EXPECT_EQ(Watch.Take(), 1);
  { const TUpdateLock Nothing(List); }
  TStrings Source;
  Source.SetCommaText(u"x,y,z");
  List.Assign(&Source);
  EXPECT_EQ(Watch.Take(), 1);
  EXPECT_THROW(List.EndUpdate(), EInvalidOperation);
}

TEST(StringList, AHandlerThatThrowsLeavesTheListUsable) {
  TStrings List;
  auto Throw = [](TPersistent*) { throw EAbort(u"enough"); };
  List.SetOnChange(TNotifyMethod::To(Throw));
  const auto AddTwo = [&List] {
    const TUpdateLock Lock(List);
    List.Add(u"a");
    List.Add(u"b");
  };
  EXPECT_THROW(AddTwo(), EAbort);
  EXPECT_EQ(List.UpdateCount(), 0);
  EXPECT_EQ(List.Count(), 2);
  // An exception of the block wins over the one of the handler that the unwinding calls.
  const auto Fail = [&List] {
    const TUpdateLock Lock(List);
    List.Clear();
    throw EInvalidOperation(u"first");
  };
  EXPECT_THROW(Fail(), EInvalidOperation);
}

TEST(StringList, RefusesIndicesOutOfRange) {
  TStrings List;
  EXPECT_THROW(List.Get(0), EListError);
  EXPECT_THROW(List.Delete(-1), EListError);
  EXPECT_THROW(List.Insert(1, u"a"), EListError);
  List.Add(u"Ab");
  EXPECT_EQ(List.IndexOf(u"aB"), 0);
  EXPECT_THROW(List.Set(1, u"a"), EListError);
}

}  // namespace
}  // namespace qxsvg
