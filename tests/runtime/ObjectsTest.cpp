// Sets, priority lists, bound methods and persistent objects with their property tables.
#include <gtest/gtest.h>

#include "runtime/EnumSet.h"
#include "runtime/Exceptions.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"
#include "runtime/PriorityList.h"
#include "runtime/StringList.h"

namespace qxsvg {
namespace {

enum class TLetter : std::uint8_t { A, B, C, Last = 69 };
using TLetters = TEnumSet<TLetter, 70>;

TEST(EnumSet, AlgebraAndOrderAcrossWords) {
  const TLetters Set{TLetter::Last, TLetter::B};
  std::vector<TLetter> Seen;
  for (const TLetter Letter : Set + TLetters{TLetter::A}) Seen.push_back(Letter);
  EXPECT_EQ(Seen, (std::vector{TLetter::A, TLetter::B, TLetter::Last}));
  EXPECT_EQ(Set - TLetters{TLetter::Last}, TLetters{TLetter::B});
  EXPECT_EQ(Set * (TLetters{TLetter::Last, TLetter::C}), TLetters{TLetter::Last});
  EXPECT_EQ(TLetters::Range(TLetter::A, TLetter::Last).Count(), 70u);
  EXPECT_EQ(TLetters::FromMask(6), (TLetters{TLetter::B, TLetter::C}));
  TLetters Beyond;
  Beyond.Include(static_cast<TLetter>(70));
  EXPECT_TRUE(Beyond.IsEmpty());
  EXPECT_FALSE(Set.Has(static_cast<TLetter>(200)));
}

TEST(PriorityList, EqualPrioritiesKeepTheirOrder) {
  TPriorityList<char> List;
  List.Add('c', 5);
  List.Add('a', -1);
  List.Add('d', 5);
  List.Add('b', 0);
  String Order;
  for (std::size_t I = 0; I < List.Count(); ++I) Order += static_cast<char16_t>(List[I]);
  EXPECT_EQ(Order, u"abcd");
  EXPECT_EQ(List.Priority(3), 5);
}

enum class TKind : std::uint8_t { Round, Square };

class TThing : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  bool Visible() const { return FVisible; }
  void SetVisible(bool Value) { FVisible = Value; }
  float Size() const { return FSize; }
  void SetSize(float Value) { FSize = Value; }
  bool IsSizeStored() const { return FSize != 1; }
  const String& Title() const { return FTitle; }
  void SetTitle(StringView Value) { FTitle = Value; }
  TKind Kind() const { return FKind; }
  void SetKind(TKind Value) { FKind = Value; }
  TLetters Letters() const { return FLetters; }
  void SetLetters(TLetters Value) { FLetters = Value; }
  const TStrings& Notes() const { return FNotes; }
  TStrings& Notes() { return FNotes; }

  void Assign(const TPersistent* Source) override {
    const auto* Other = dynamic_cast<const TThing*>(Source);
    if (!Other) return TPersistent::Assign(Source);
    FSize = Other->FSize;
  }

 private:
  bool FVisible = true;
  float FSize = 1;
  String FTitle;
  TKind FKind = TKind::Round;
  TLetters FLetters;
  TStrings FNotes;
};

constexpr TProperty ThingProperties[] = {
    Property<&TThing::Visible, &TThing::SetVisible>(u"Visible",
                                                    StoredUnless<&TThing::Visible, true>),
    Property<&TThing::Size, &TThing::SetSize>(u"Size", StoredIf<&TThing::IsSizeStored>),
    Property<&TThing::Title, &TThing::SetTitle>(u"Title"),
    Property<&TThing::Kind, &TThing::SetKind>(u"Kind", StoredUnless<&TThing::Kind, TKind::Round>),
    Property<&TThing::Letters, &TThing::SetLetters>(u"Letters"),
    StringListProperty<TThing, &TThing::Notes, &TThing::Notes>(u"Notes"),
    Property<&TThing::Visible, nullptr>(u"Shown", NeverStored),
};
const TClass TThing::Class{u"TThing", &TPersistent::Class, ThingProperties,
                           [] { return std::unique_ptr<TPersistent>(std::make_unique<TThing>()); }};

class TBigThing : public TThing {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }
  float Double() const { return Size() * 2; }
  void SetDouble(float Value) { SetSize(Value / 2); }
};
constexpr TProperty BigThingProperties[] = {
    Property<&TBigThing::Double, &TBigThing::SetDouble>(u"Size"),
};
const TClass TBigThing::Class{u"TBigThing", &TThing::Class, BigThingProperties, nullptr};

TEST(Persistent, EachKindOfPropertyTravels) {
  TThing Source;
  Source.SetVisible(false);
  Source.SetSize(2.5f);
  Source.SetTitle(u"t");
  Source.SetKind(TKind::Square);
  Source.SetLetters({TLetter::B, TLetter::C});
  Source.Notes().SetCommaText(u"a,b");
  const auto Made = TThing::Class.New();
  auto& Target = dynamic_cast<TThing&>(*Made);
  for (const TProperty& Row : TThing::Class.Properties)
    if (Row.Write) Row.Write(Target, Row.Read(Source));
  EXPECT_FALSE(Target.Visible());
  EXPECT_EQ(Target.Size(), 2.5f);
  EXPECT_EQ(Target.Title(), u"t");
  EXPECT_EQ(Target.Kind(), TKind::Square);
  EXPECT_EQ(Target.Letters(), Source.Letters());
  EXPECT_TRUE(Target.Notes().Equals(Source.Notes()));
}

TEST(Persistent, StoredTestsFollowTheDefaults) {
  TThing Thing;
  const auto Stored = [&Thing](StringView Name) {
    return FindProperty(TThing::Class, Name)->IsStored(Thing);
  };
  for (const StringView Name : {u"Visible", u"Size", u"Kind", u"Notes", u"Shown"})
    EXPECT_FALSE(Stored(Name)) << ToUtf8(Name);
  Thing.SetSize(1.5f);
  Thing.Notes().Add(u"x");
  EXPECT_TRUE(Stored(u"Size"));
  EXPECT_TRUE(Stored(u"Notes"));
}

TEST(Persistent, AClassFindsItsOwnRowsBeforeThoseOfItsBase) {
  TBigThing Thing;
  EXPECT_EQ(std::get<float>(FindProperty(TBigThing::Class, u"Size")->Read(Thing)), 2.0f);
  EXPECT_NE(FindProperty(TBigThing::Class, u"Title"), nullptr);
  EXPECT_EQ(FindProperty(TBigThing::Class, u"title"), nullptr);
  EXPECT_TRUE(TBigThing::Class.InheritsFrom(TThing::Class));
  EXPECT_FALSE(TThing::Class.InheritsFrom(TBigThing::Class));
}

TEST(Persistent, AWrongKindRaisesAndChangesNothing) {
  TThing Thing;
  const auto Write = [&Thing](StringView Name, TPropertyValue Value) {
    FindProperty(TThing::Class, Name)->Write(Thing, Value);
  };
  EXPECT_THROW(Write(u"Size", String(u"2")), EConvertError);
  EXPECT_THROW(Write(u"Title", 2.0f), EConvertError);
  EXPECT_THROW(Write(u"Notes", static_cast<TPersistent*>(&Thing)), EConvertError);
  EXPECT_EQ(Thing.Size(), 1.0f);
}

TEST(Persistent, AssignOfAStrangerNamesBothClasses) {
  TThing Thing;
  TStrings List;
  try {
    Thing.Assign(&List);
    FAIL();
  } catch (const EConvertError& Error) {
    EXPECT_EQ(Error.Message(), u"Cannot assign a TStrings to a TThing");
  }
  EXPECT_THROW(Thing.Assign(nullptr), EConvertError);
}

TEST(Method, IsBoundToItsObject) {
  TThing Thing;
  const auto Reader = TMethod<float()>::Bind<&TThing::Size>(&Thing);
  Thing.SetSize(3);
  EXPECT_EQ(Reader(), 3.0f);
  EXPECT_TRUE(Reader == TMethod<float()>::Bind<&TThing::Size>(&Thing));
  EXPECT_FALSE(TNotifyMethod());
}

}  // namespace
}  // namespace qxsvg
