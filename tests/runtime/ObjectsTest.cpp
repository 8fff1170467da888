// Sets, priority lists and persistent objects with their property tables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "runtime/EnumSet.h"
#include "runtime/Exceptions.h"
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

class TThing : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  float Size() const { return FSize; }
  void SetSize(float Value) { FSize = Value; }
  const String& Title() const { return FTitle; }
  void SetTitle(StringView Value) { FTitle = Value; }
  const TStrings& Notes() const { return FNotes; }
  TStrings& Notes() { return FNotes; }

  void Assign(const TPersistent* Source) override {
    const auto* Other = dynamic_cast<const TThing*>(Source);
    if (!Other) return TPersistent::Assign(Source);
    FSize = Other->FSize;
  }

 private:
  float FSize = 1;
  String FTitle;
  TStrings FNotes;
};

constexpr TProperty ThingProperties[] = {
    Property<&TThing::Size, &TThing::SetSize>(u"Size"),
    Property<&TThing::Title, &TThing::SetTitle>(u"Title"),
    StringListProperty<TThing, &TThing::Notes, &TThing::Notes>(u"Notes"),
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
  EXPECT_THAT([&] { Thing.Assign(&List); }, testing::ThrowsMessage<EConvertError>(testing::StrEq(
                                                "Cannot assign a TStrings to a TThing")));
  EXPECT_THROW(Thing.Assign(nullptr), EConvertError);
}

}  // namespace
}  // namespace qxsvg
