#include "graphics/surface/PathMeasure.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "graphics/surface/PathData.h"
#include "graphics/surface/PathWalk.h"
#include "runtime/Exceptions.h"
#include "tests/support/RecordingCanvas.h"
#include "tests/support/Watch.h"

namespace qxsvg {
namespace {

constexpr unsigned Seed = 90210;

TQXPathGeometry Path(StringView Text) {
  TQXPathGeometry Result;
  QXParsePath(Text, Result);
  return Result;
}

TQXPathGeometry RandomCurves(std::mt19937& Random, int Count) {
  std::uniform_real_distribution<float> At(-100, 100);
  const auto P = [&] { return TPointF{At(Random), At(Random)}; };
  TQXPathGeometry Result;
  for (int I = 0; I < Count; ++I) {
    if (I % 4 == 0) Result.MoveTo(P());
    if (I % 3 == 0)
      Result.LineTo(P());
    else
      Result.CurveTo(P(), P(), P());
    if (I % 4 == 3 && I % 8 == 3) Result.Close();
  }
  return Result;
}

// Calls Take with many points of every segment.
template <class Sink>
void Sample(const TQXPathView& View, int Steps, Sink Take) {
  WalkPath(
      View, [](TPointF) {},
      [&](TPointF A, TPointF B) {
        Take(A);
        Take(B);
      },
      [&](TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
        for (int I = 0; I <= Steps; ++I) {
          const double T = static_cast<double>(I) / Steps;
          Take(TPointF{static_cast<float>(CubicAt(P0.X, P1.X, P2.X, P3.X, T)),
                       static_cast<float>(CubicAt(P0.Y, P1.Y, P2.Y, P3.Y, T))});
        }
      },
      [](TPointF, TPointF) {});
}

TEST(PathMeasure, BoundsAreThoseOfDenseSamples) {
  std::mt19937 Random(Seed);
  const TMatrix Turn = CreateRotationQXMatrix({3, 4}, 0.7f);
  for (int Round = 0; Round < 100; ++Round) {
    const TQXPathGeometry Curves = RandomCurves(Random, 6);
    for (const TMatrix& M : {QXIdentityMatrix, Turn}) {
      TRectF Dense{1e9f, 1e9f, -1e9f, -1e9f};
      Sample(Curves.View(), 2000, [&](TPointF P) {
        P = QXMatrixTransform(M, P);
        Dense = TRectF::Hull(Dense, QXRect(P, P));
      });
      const TRectF Box = QXPathBounds(Curves.View(), M);
      test::ExpectNear(Box, Dense, 1e-3f);
    }
  }
}

TEST(PathMeasure, BoundsOfWhatHasNoArea) {
  const std::pair<StringView, TRectF> Cases[] = {
      {u"", {}},
      {u"M5 6", {5, 6, 5, 6}},
      {u"M5 6M7 8", {5, 6, 7, 8}},
      // A move that nothing follows is not part of the geometry.
      {u"M5 6L7 8M100 100", {5, 6, 7, 8}},
      {u"M0 0M5 6L7 8", {5, 6, 7, 8}},
      {u"M5 6z", {5, 6, 5, 6}},
      {u"M1 1C1 1 1 1 1 1", {1, 1, 1, 1}},
      // Controls outside, the curve inside.
      {u"M0 0C0 4 3 4 3 0", {0, 0, 3, 3}},
      {u"M0 0H-1e30", {-1e30f, 0, 0, 0}},
  };
  for (const auto& [Text, Box] : Cases)
    EXPECT_EQ(QXPathBounds(Path(Text).View()), Box) << ToUtf8(Text);
}

TEST(PathMeasure, LengthsAreThoseOfFinePolygons) {
  std::mt19937 Random(Seed + 1);
  for (int Round = 0; Round < 50; ++Round) {
    const TQXPathGeometry Curves = RandomCurves(Random, 8);
    TQXPathGeometry Flat;
    QXFlattenPath(Curves.View(), 1e-3f, Flat);
    for (const bool Jumps : {false, true})
      EXPECT_NEAR(QXPathLength(Curves.View(), Jumps), QXPathLength(Flat.View(), Jumps), 0.05);
  }
}

TEST(PathMeasure, Lengths) {
  const std::tuple<StringView, double, double> Cases[] = {
      {u"", 0, 0},
      {u"M5 5", 0, 0},
      {u"M0 0H10", 10, 10},
      {u"M0 0H10V10H0z", 40, 40},
      {u"M0 0H10M20 0H30", 20, 30},
      {u"M0 0H10zM0 5H10", 30, 35},
      // Moves without a segment are no stations of the way.
      {u"M0 0H10M500 500M20 0H30M9 9", 20, 30},
      {u"M10 0A10 10 0 0 1 0 10", 15.70796, 15.70796},
  };
  for (const auto& [Text, Without, With] : Cases) {
    const TQXPathGeometry P = Path(Text);
    EXPECT_NEAR(QXPathLength(P.View(), false), Without, 3e-3) << ToUtf8(Text);
    EXPECT_NEAR(QXPathLength(P.View(), true), With, 3e-3) << ToUtf8(Text);
  }
}

// The count of crossings on a fine polygon decides the same, away from the edge.
TEST(PathMeasure, ContainsAgreesWithFinePolygons) {
  std::mt19937 Random(Seed + 2);
  std::uniform_real_distribution<float> At(-90, 90);
  int Inside = 0;
  for (int Round = 0; Round < 60; ++Round) {
    const TQXPathGeometry Curves = RandomCurves(Random, 9);
    TQXPathGeometry Flat;
    QXFlattenPath(Curves.View(), 1e-3f, Flat);
    for (int I = 0; I < 50; ++I) {
      const TPointF P{At(Random), At(Random)};
      bool IsNearEdge = false;
      Sample(Curves.View(), 500, [&](TPointF Q) {
        IsNearEdge = IsNearEdge || std::hypot(P.X - Q.X, P.Y - Q.Y) < 0.01;
      });
      if (IsNearEdge) continue;
      for (const auto Mode : {TQXGPFillMode::fmAlternate, TQXGPFillMode::fmWinding}) {
        const bool IsIn = QXPathContains(Curves.View(), Mode, P);
        EXPECT_EQ(IsIn, QXPathContains(Flat.View(), Mode, P))
            << "round " << Round << " seed " << Seed << " at " << P.X << "," << P.Y;
        Inside += IsIn;
      }
    }
  }
  EXPECT_GT(Inside, 500);
}

TEST(PathMeasure, ContainsOnEdgesAndByRule) {
  // Two squares, one in the other, going round the same way.
  const TQXPathGeometry Both = Path(u"M0 0H10V10H0zM2 2H8V8H2z");
  const TQXPathGeometry Open = Path(u"M0 0H10V10");
  // Within both by winding, within both by even-odd, within the open one.
  const std::pair<TPointF, const char*> Cases[] = {
      {{0, 0}, "111"}, {{10, 5}, "000"}, {{5, 10}, "000"}, {{0, 5}, "110"},
      {{5, 0}, "111"}, {{1, 1}, "111"},  {{5, 5}, "101"},  {{2, 5}, "100"},
      {{8, 5}, "111"}, {{-1, 5}, "000"}, {{9, 3}, "111"},  {{3, 9}, "110"},
  };
  using enum TQXGPFillMode;
  for (const auto& [P, Within] : Cases) {
    std::string Found;
    for (const bool Is :
         {QXPathContains(Both.View(), fmWinding, P), QXPathContains(Both.View(), fmAlternate, P),
          QXPathContains(Open.View(), fmWinding, P)})
      Found += Is ? '1' : '0';
    EXPECT_EQ(Found, Within) << P.X << "," << P.Y;
  }
  EXPECT_FALSE(QXPathContains({}, TQXGPFillMode::fmWinding, {0, 0}));
  EXPECT_FALSE(QXPathContains(Both.View(), TQXGPFillMode::fmWinding, {NAN, 0}));
}

TEST(PathData, PolygonsAndDistancesWalkTheFigures) {
  TQXPathData Data;
  Data.SetPathString(u"M0 0H3V4M100 100M3 10H6Z");
  const TQXPolygons Polygons = Data.ToPolygons();
  ASSERT_EQ(Polygons.size(), 2u);
  EXPECT_EQ(Polygons[0], (TQXPoints{{0, 0}, {3, 0}, {3, 4}}));
  EXPECT_EQ(Polygons[1], (TQXPoints{{3, 10}, {6, 10}, {3, 10}}));
  const TQXPathData::TDistances Distances = Data.GetDistances();
  EXPECT_EQ(Distances, (TQXPathData::TDistances{{0, 3, 7}, {13, 16, 19}}));
  EXPECT_DOUBLE_EQ(Data.GetLength(), 19);
  Data.Clear();
  EXPECT_TRUE(Data.GetDistances().empty());
  EXPECT_EQ(Data.GetLength(), 0);
}

TEST(PathData, TellsOfEveryChangeOnceAndItsBoundsFollow) {
  TQXPathData Data;
  test::TWatch Watch(Data);
  Data.SetPathString(u"M0 0L1 1");
  EXPECT_EQ(Watch.Take(), 1);
  EXPECT_EQ(Data.GetBounds(), QXRect(0, 0, 1, 1));
  EXPECT_THROW(Data.GetPoint(2), EArgumentOutOfRange);
  EXPECT_THROW(Data.GetKind(2), EArgumentOutOfRange);
  Data.BeginUpdate();
  Data.BeginUpdate();
  Data.LineTo({5, 5});
  // Bounds do not wait for the end of an update.
  EXPECT_EQ(Data.GetBounds(), QXRect(0, 0, 5, 5));
  Data.ApplyMatrix(CreateScaleQXMatrix(2, 2));
  EXPECT_EQ(Data.GetBounds(), QXRect(0, 0, 10, 10));
  Data.EndUpdate();
  EXPECT_EQ(Watch.Take(), 0);
  Data.EndUpdate();
  EXPECT_EQ(Watch.Take(), 1);
  Data.BeginUpdate();
  Data.EndUpdate();
  Data.ApplyMatrix(CreateScaleQXMatrix(2, 2));
  Data.Flatten();
  Data.Clear();
  EXPECT_EQ(Watch.Take(), 3);
  EXPECT_EQ(Data.GetBounds(), TRectF{});
}

}  // namespace
}  // namespace qxsvg
