// Lengths: what they read as, what writing does to them, and who is told.
#include "foundation/Length.h"

#include <gtest/gtest.h>

#include <limits>

#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

using enum TSVGUnit;

// An owner that counts what its length calls, with a font of 10 pixels and a range of 0 to 200.
struct TOwner {
  void Changed(TPersistent*) { ++Changes; }
  void Factors(TPersistent*, TSVGUnitFactors& Factors) {
    ++FactorCalls;
    Factors[Ordinal(suFontSize)] = FontSize;
    Factors[Ordinal(suFontXHeight)] = FontSize / 2;
  }
  float Factor(TSVGUnit Unit) { return SVGUnitFactors[Ordinal(Unit)] * 2; }
  void Range(TSVGLength*, float& Min, float& Max, bool& IsRange) {
    EXPECT_EQ(Min, 0);
    EXPECT_EQ(Max, 1);
    EXPECT_TRUE(IsRange);
    Max = 200;
    IsRange = DoRange;
  }

  int Changes = 0, FactorCalls = 0;
  float FontSize = 10;
  bool DoRange = true;

  static const TSVGLengthEventsOf<TOwner> Events, FactorEvents;
};
constinit const TSVGLengthEventsOf<TOwner> TOwner::Events = TSVGLengthEventsOf<TOwner>()
                                                                .Change<&TOwner::Changed>()
                                                                .Range<&TOwner::Range>()
                                                                .UnitFactors<&TOwner::Factors>();
constinit const TSVGLengthEventsOf<TOwner> TOwner::FactorEvents =
    TSVGLengthEventsOf<TOwner>().UnitFactor<&TOwner::Factor>();

struct LengthTest : testing::Test {
  LengthTest() { Length.Wire(&Owner, TOwner::Events); }
  TOwner Owner;
  TSVGLength Length;
};

TEST_F(LengthTest, ReadsByTheFactorsOfTheMoment) {
  Length.SetAsUnit(suFontSize, 2);
  EXPECT_EQ(Length.GetValue(), 20);
  Owner.FontSize = 16;
  EXPECT_EQ(Length.GetValue(), 32);
  Owner.FontSize = 10;
  Length.SetAsUnit(suFontXHeight, 2);
  EXPECT_EQ(Length.GetValue(), 10);
  Length.Wire(&Owner, TOwner::FactorEvents);
  EXPECT_EQ(Length.GetValue(), 4);
  Length.Unwire();
  EXPECT_EQ(Length.GetValue(), 2);
}

TEST_F(LengthTest, APercentageTakesTheRangeOfItsOwner) {
  Length.Initialize(0.5f, true, suPercent);
  EXPECT_EQ(Length.GetValue(), 100);
  EXPECT_EQ(Length.GetPixels(), 0.5f);
  Owner.DoRange = false;
  EXPECT_EQ(Length.GetValue(), 0.5f);
  Length.Unwire();
  EXPECT_EQ(Length.GetValue(), 0.5f);
  // Written values do not go back through the range.
  Length.SetValue(0.25f);
  EXPECT_EQ(Length.Raw(), 0.25f);
}

TEST_F(LengthTest, AChangeOfUnitKeepsThePixels) {
  Length.SetRaw(96);
  Length.SetUnit(suInches);
  EXPECT_EQ(Length.Raw(), 1);
  EXPECT_EQ(Length.GetPixels(), 96);
  Length.SetUnit(suPercent);
  EXPECT_TRUE(Length.IsPercent());
  Length.SetRaw(3);
  EXPECT_TRUE(Length.IsPercent());
  Length.SetUnit(suMillimeters);
  EXPECT_FALSE(Length.IsPercent());
}

// A write compares the present pixels with the new number, not with the new pixels.
TEST_F(LengthTest, AWriteIsDroppedByItsNumber) {
  Length.SetAsUnit(suFontSize, 2);
  Length.SetValue(2);
  EXPECT_FLOAT_EQ(Length.Raw(), 0.2f);
  Owner.Changes = 0;
  // The same size again is written and told.
  Length.SetValue(2);
  EXPECT_EQ(Owner.Changes, 1);
  // 2 pixels now; a number of 2 would be 20 pixels, and is dropped.
  Length.SetValue(20);
  EXPECT_FLOAT_EQ(Length.Raw(), 0.2f);
  EXPECT_EQ(Owner.Changes, 1);
}

TEST_F(LengthTest, TellsItsOwnerOfChangesOnly) {
  for (int I = 0; I < 2; ++I) Length.SetRaw(5);
  EXPECT_EQ(Owner.Changes, 1);
  for (int I = 0; I < 2; ++I) Length.SetIsPercent(true);
  EXPECT_EQ(Owner.Changes, 2);
  Length.SetUnit(suNone);
  EXPECT_EQ(Owner.Changes, 2) << "the same unit";
  for (int I = 0; I < 2; ++I) Length.Clear();
  Length.Initialize(1, false, suPixels);
  Length.Assign(&Length);
  EXPECT_EQ(Owner.Changes, 6) << "these always tell";
}

TEST_F(LengthTest, ClonesAreWiredToNobody) {
  Length.Initialize(0.5f, true, suPercent);
  const auto Clone = Length.Clone();
  Owner.Changes = 0;
  EXPECT_EQ(Clone->GetValue(), 0.5f);
  Clone->Clear();
  EXPECT_TRUE(Clone->IsPercent());
  EXPECT_EQ(Owner.Changes, 0);
  TSVGLength Other(3, false, suInches);
  Length.Assign(&Other);
  EXPECT_EQ(Length.GetValue(), 288);
  EXPECT_EQ(Owner.Changes, 1);
  Length.Clear();
  EXPECT_FALSE(Length.IsPercent());
}

TEST_F(LengthTest, StoresWhatDiffersFromTheDefaults) {
  Length.SetUnit(suPixels);
  EXPECT_FALSE(Length.IsUnitStored() || Length.IsRawStored() || Length.IsPercentStored());
  Length.SetRaw(std::numeric_limits<float>::quiet_NaN());
  EXPECT_TRUE(Length.IsRawStored());
  const TSVGLength Percent(0, true, suPercent);
  EXPECT_FALSE(Percent.IsPercentStored());
  // A stream may hold any number for a unit.
  FindProperty(Length.ClassType(), u"aUnit")->Write(Length, std::int64_t{77});
  EXPECT_EQ(Length.Unit(), suNone);
}

// A chain of owners, each of which inherits from the one before.
struct TStyleOwner {
  explicit TStyleOwner(TStyleOwner* Parent = nullptr) : Parent(Parent) {
    Spacing.Wire(this, Events);
    Shift.Wire(this, Events);
  }
  void Changed(TPersistent*) { ++Changes; }
  void GetInherited(TSVGStylePropertyLength* Sender, bool& IsInherited) {
    IsInherited = Marks.Has(Sender->StyleProperty());
  }
  void SetInherited(TSVGStylePropertyLength* Sender, bool IsInherited) {
    Marks.Set(Sender->StyleProperty(), IsInherited);
  }
  void GetParent(TSVGStylePropertyLength* Sender, TSVGStylePropertyLength*& Length) {
    if (!Parent) return;
    Length = &Parent->Shift;
    if (Sender == &Spacing && !IsMiswired) Length = &Parent->Spacing;
  }

  TStyleOwner* Parent;
  TSVGStyleProperties Marks;
  int Changes = 0;
  bool IsMiswired = false;
  TSVGStylePropertyAutoLength Spacing{TSVGStyleProperty::ipLetterSpacing};
  TSVGBaselineShiftLength Shift{TSVGStyleProperty::ipBaselineShift};

  static const TSVGLengthEventsOf<TStyleOwner> Events;
};
constinit const TSVGLengthEventsOf<TStyleOwner> TStyleOwner::Events =
    TSVGLengthEventsOf<TStyleOwner>()
        .Change<&TStyleOwner::Changed>()
        .GetInherited<&TStyleOwner::GetInherited>()
        .SetInherited<&TStyleOwner::SetInherited>()
        .GetParent<&TStyleOwner::GetParent>();

struct StyleLengthTest : testing::Test {
  TStyleOwner Top, Middle{&Top}, Leaf{&Middle};
};

TEST_F(StyleLengthTest, InheritanceClimbsToTheFirstOwnValue) {
  Top.Spacing.SetValue(3);
  Top.Spacing.SetAutomatic(false);
  Top.Shift.SetShift(TSVGBaselineShift::bsSuperscript);
  for (TStyleOwner* Owner : {&Top, &Middle, &Leaf}) {
    Owner->Spacing.SetParentValue(true);
    Owner->Shift.SetParentValue(true);
  }
  // There is no one above the top.
  EXPECT_EQ(Leaf.Spacing.GetValue(), 3);
  EXPECT_FALSE(Leaf.Spacing.IsAutomatic());
  EXPECT_EQ(Leaf.Shift.GetShift(), TSVGBaselineShift::bsSuperscript);
  Middle.Spacing.SetValue(7);
  EXPECT_EQ(Leaf.Spacing.GetValue(), 7);
  // The owner's record is what counts.
  Leaf.Marks.Exclude(TSVGStyleProperty::ipLetterSpacing);
  EXPECT_EQ(Leaf.Spacing.GetValue(), 0);
}

TEST_F(StyleLengthTest, WritingEndsInheritance) {
  Middle.Spacing.SetValue(5);
  Leaf.Spacing.SetParentValue(true);
  // 0 is the number that stands, but 5 is in force.
  Leaf.Spacing.SetValue(0);
  EXPECT_FALSE(Leaf.Spacing.IsParentValue());
  EXPECT_EQ(Leaf.Spacing.GetValue(), 0);

  Middle.Spacing.SetValue(0);
  Leaf.Spacing.SetParentValue(true);
  Leaf.Spacing.SetValue(0);
  EXPECT_TRUE(Leaf.Spacing.IsParentValue()) << "nothing would change";

  Leaf.Spacing.SetAutomatic(true);
  EXPECT_TRUE(Leaf.Spacing.IsParentValue()) << "nothing would change";
  Leaf.Spacing.SetAutomatic(false);
  EXPECT_FALSE(Leaf.Spacing.IsParentValue() || Leaf.Spacing.IsAutomatic());

  Leaf.Shift.SetParentValue(true);
  Leaf.Shift.SetShift(TSVGBaselineShift::bsSubscript);
  EXPECT_FALSE(Leaf.Shift.IsParentValue());
}

TEST_F(StyleLengthTest, AParentOfAnotherClassIsRefused) {
  Leaf.IsMiswired = true;
  Leaf.Spacing.SetParentValue(true);
  EXPECT_THROW((void)Leaf.Spacing.IsAutomatic(), EInvalidCast);
}

TEST(Lengths, CloneReplacesWhatIsThere) {
  TSVGLengths List, Dest;
  for (int I = 1; I < 4; ++I) List.Add(std::make_unique<TSVGLength>(I, false, suPoints));
  Dest.Add(std::make_unique<TSVGLength>());
  List.Clone(Dest);
  List.Delete(0);
  ASSERT_EQ(Dest.Count(), 3u);
  EXPECT_EQ(Dest[0].Raw(), 1);
  EXPECT_EQ(Dest[2].Unit(), suPoints);
  List.Clone(List);
  EXPECT_EQ(List.Count(), 2u);
  EXPECT_EQ(List.Clone()->Count(), 2u);
}

TEST_F(StyleLengthTest, ClonesKeepClassPropertyAndMark) {
  Leaf.Spacing.SetAutomatic(false);
  Leaf.Spacing.SetValue(4);
  Leaf.Spacing.SetParentValue(true);
  const auto Clone = Leaf.Spacing.Clone();
  const auto* Auto = dynamic_cast<const TSVGStylePropertyAutoLength*>(Clone.get());
  ASSERT_NE(Auto, nullptr);
  EXPECT_EQ(Auto->StyleProperty(), TSVGStyleProperty::ipLetterSpacing);
  EXPECT_TRUE(Auto->IsParentValue());
  EXPECT_FALSE(Auto->IsAutomatic());
  // Inherited without a parent: the own value stands.
  EXPECT_EQ(Auto->GetValue(), 4);

  TSVGLength Plain(9, false, suPixels);
  Leaf.Spacing.Assign(&Plain);
  EXPECT_EQ(Leaf.Spacing.Raw(), 9);
  EXPECT_TRUE(Leaf.Spacing.IsParentValue()) << "a plain length says nothing of inheritance";
}

}  // namespace
}  // namespace qxsvg
