#include "graphics/surface/Region.h"

#include <gtest/gtest.h>

#include "graphics/surface/Path.h"
#include "graphics/surface/PathData.h"

namespace qxsvg {
namespace {

using enum TQXGPCombineMode;

// Which of the points are within, '1' or '0' each.
std::string Within(const TQXGPRegion& Region, std::initializer_list<TPointF> Points) {
  std::string Result;
  for (const TPointF P : Points) Result += Region.Contains(P) ? '1' : '0';
  return Result;
}

void Add(TQXGPRegion& Region, StringView Text, TQXGPFillMode Mode, TQXGPCombineMode How = cmUnion) {
  TQXGPPath Path;
  TQXPathGeometry Geometry;
  QXParsePath(Text, Geometry);
  Path.Assign(Geometry.View());
  Path.SetFillMode(Mode);
  Region.Combine(Path, How);
}

TEST(Region, UnitesPathsEachByItsOwnRule) {
  TQXGPRegion Region;
  EXPECT_TRUE(Region.IsInfinite());
  EXPECT_TRUE(Region.Contains({1e6f, 1}));
  Region.MakeEmpty();
  EXPECT_TRUE(Region.IsEmpty());
  Add(Region, u"M0 0H10V10H0zM2 2H8V8H2z", TQXGPFillMode::fmAlternate);
  EXPECT_EQ(Within(Region, {{5, 5}, {1, 5}}), "01");
  // Two shapes that overlap come as a union, though each is filled by even-odd.
  Add(Region, u"M0 0H6V6H0z", TQXGPFillMode::fmAlternate);
  EXPECT_EQ(Within(Region, {{5, 5}, {1, 5}, {7, 7}}), "110");
  EXPECT_EQ(Region.GetBounds(), QXRect(0, 0, 10, 10));
  Region.Transform(CreateTranslateQXMatrix(100, 0));
  EXPECT_EQ(Within(Region, {{105, 5}, {5, 5}}), "10");
}

TEST(Region, IsEmptyWithoutArea) {
  TQXGPRegion Region;
  Region.MakeEmpty();
  for (const StringView Text :
       {u"", u"M1 1", u"M0 0L10 10", u"M0 0L10 10L5 5z", u"M3 3h5h-2z", u"M1 1L1 1L1 1z"}) {
    Add(Region, Text, TQXGPFillMode::fmWinding);
    EXPECT_TRUE(Region.IsEmpty()) << ToUtf8(Text);
  }
  Region.Combine(QXRect(0, 0, 5, 0), cmUnion);
  EXPECT_TRUE(Region.IsEmpty());
  Add(Region, u"M0 0L10 10M0 0L1 0L1 1", TQXGPFillMode::fmWinding);
  EXPECT_FALSE(Region.IsEmpty());
  TQXGPRegion Flat = Region;
  Flat.Transform(CreateScaleQXMatrix(1, 0));
  EXPECT_TRUE(Flat.IsEmpty());
  Region.Combine(QXRect(10, 0, 20, 10), cmIntersect);
  EXPECT_TRUE(Region.IsEmpty());
}

TEST(Region, CombinesInOrder) {
  TQXGPRegion Region;
  Region.Combine(QXRect(0, 0, 10, 10), cmIntersect);
  EXPECT_FALSE(Region.IsInfinite());
  Region.Combine(QXRect(5, 0, 15, 10), cmIntersect);
  EXPECT_EQ(Within(Region, {{7, 5}, {2, 5}, {12, 5}}), "100");
  EXPECT_EQ(Region.GetBounds(), QXRect(5, 0, 10, 10));
  Region.Combine(QXRect(20, 0, 30, 10), cmUnion);
  EXPECT_EQ(Within(Region, {{25, 5}, {7, 5}}), "11");
  Region.Combine(QXRect(0, 0, 1, 1), cmReplace);
  EXPECT_EQ(Region.StepCount(), 1u);
  Region.Combine(QXRect(0, 0, 0, 1), cmIntersect);
  EXPECT_TRUE(Region.IsEmpty());
  // Nothing stays nothing, and everything stays everything.
  Region.Combine(QXRect(0, 0, 1, 1), cmIntersect);
  EXPECT_TRUE(Region.IsEmpty());
  Region.MakeInfinite();
  Region.Combine(QXRect(0, 0, 1, 1), cmUnion);
  EXPECT_TRUE(Region.IsInfinite());
}

TEST(Region, KnowsRectangles) {
  TQXGPRegion Region;
  TRectF R;
  EXPECT_FALSE(Region.IsRectangle(R));
  Region.SetBounds(QXRect(10, 20, 0, 40));
  EXPECT_TRUE(Region.IsRectangle(R));
  EXPECT_EQ(R, QXRect(0, 20, 10, 40));
  Region.Transform({0, 1, 0, -1, 0, 0, 0, 0, 1});
  EXPECT_TRUE(Region.IsRectangle(R));
  EXPECT_EQ(R, QXRect(-40, 0, -20, 10));
  Region.Transform(CreateRotationQXMatrix(0.5f));
  EXPECT_FALSE(Region.IsRectangle(R));
  Region.SetBounds(QXRect(0, 0, 1, 1));
  Region.Combine(QXRect(5, 5, 6, 6), cmUnion);
  EXPECT_FALSE(Region.IsRectangle(R));
}

}  // namespace
}  // namespace qxsvg
