#include "graphics/surface/PathGeometry.h"

#include <gtest/gtest.h>

#include <tuple>

#include "graphics/surface/PathData.h"
#include "graphics/surface/PathMeasure.h"
#include "tests/support/RecordingCanvas.h"

namespace qxsvg {
namespace {

using test::Describe;

constexpr float Inf = std::numeric_limits<float>::infinity();

std::string Text(const TQXPathGeometry& Path) {
  return Describe(Path.View());
}

TEST(PathGeometry, EveryFigureBeginsWithAMove) {
  TQXPathGeometry Path;
  Path.Close();
  EXPECT_EQ(Text(Path), "");
  Path.LineTo({1, 1});
  Path.LineTo({2, 2});
  Path.Close();
  Path.Close();
  Path.CurveTo({3, 3}, {4, 4}, {5, 5});
  EXPECT_EQ(Text(Path), "M 1,1 L 2,2 Z M 1,1 C 3,3 4,4 5,5");
  Path.Clear();
  Path.CurveTo({3, 3}, {4, 4}, {5, 5});
  EXPECT_EQ(Text(Path), "M 3,3 C 3,3 4,4 5,5");
  Path.Truncate(1);
  Path.LineTo({9, 9});
  EXPECT_EQ(Text(Path), "M 3,3 L 9,9");
}

TEST(PathGeometry, LeavesOutWhatIsNotFinite) {
  TQXPathGeometry Path;
  Path.MoveTo({Inf, 0});
  Path.MoveTo({1, 1});
  Path.LineTo({NAN, 0});
  Path.CurveTo({2, 2}, {0, -Inf}, {3, 3});
  Path.QuadTo({NAN, 0}, {3, 3});
  TQXPathGeometry New;
  New.QuadTo({1, 1}, {NAN, 0});
  EXPECT_TRUE(New.IsEmpty());
  Path.ArcTo(Inf, 1, 0, false, true, {3, 3});
  Path.AddEllipse({0, 0, Inf, 1});
  Path.AddRectangle({NAN, 0, 1, 1});
  Path.AddPolygon(std::vector<TPointF>{{0, 0}, {NAN, 1}, {2, 2}});
  Path.Transform({NAN, 0, 0, 0, 1, 0, 0, 0, 1});
  Path.Append(TQXPathGeometry(Path).View(), CreateTranslateQXMatrix(Inf, 0));
  EXPECT_EQ(Text(Path), "M 1,1 M 0,0 L 2,2 Z");
  Path.Transform(CreateScaleQXMatrix(3e38f, 1));
  Path.Transform(CreateScaleQXMatrix(1e10f, 1));
  for (const TPointF P : Path.View().Points) EXPECT_TRUE(IsFinite(P));
}

TEST(PathGeometry, CornersOfRectangles) {
  const auto Of = [](float RX, float RY, TQXCorners Corners) {
    TQXPathGeometry Path;
    Path.AddRectangle({0, 0, 8, 4}, RX, RY, Corners);
    return Text(Path);
  };
  EXPECT_EQ(Of(0, 5, AllCorners), "M 0,0 L 8,0 L 8,4 L 0,4 Z");
  EXPECT_EQ(Of(1, 1, TQXCorners{TQXCorner::crTopRight}),
            "M 0,0 L 7,0 C 7.552,0 8,0.448 8,1 L 8,4 L 0,4 Z");
  // Radii are cut to half the sides.
  EXPECT_EQ(Of(99, 99, AllCorners),
            "M 4,0 L 4,0 C 6.209,0 8,0.895 8,2 L 8,2 C 8,3.105 6.209,4 4,4 L 4,4 C 1.791,4 0,3.105 "
            "0,2 L 0,2 C 0,0.895 1.791,0 4,0 Z");
}

TEST(PathGeometry, EllipsesAndArcsKeepTheirRadius) {
  TQXPathGeometry Path;
  Path.AddEllipse({-10, -10, 10, 10});
  Path.MoveTo({10, 0});
  Path.ArcTo(10, 10, 30, true, true, {0, -10});
  TQXPathGeometry Flat;
  QXFlattenPath(Path.View(), 1e-3f, Flat);
  for (const TPointF P : Flat.View().Points) EXPECT_NEAR(std::hypot(P.X, P.Y), 10, 4e-3);
  // Three quarters of the circle.
  EXPECT_NEAR(QXPathLength(Path.View(), false), 62.83185 * 1.75, 0.03);
}

TEST(PathGeometry, ArcsTakeTheWayThatTheFlagsTell) {
  // From (0, 0) to (10, 10) with half-axes 10: four ways about two centres.
  const std::tuple<bool, bool, TRectF> Cases[] = {{false, false, {0, 0, 10, 10}},
                                                  {false, true, {0, 0, 10, 10}},
                                                  {true, false, {-10, 0, 10, 20}},
                                                  {true, true, {0, -10, 20, 10}}};
  for (const auto& [LargeArc, Sweep, Box] : Cases) {
    TQXPathGeometry Path;
    Path.MoveTo({0, 0});
    Path.ArcTo(10, 10, 0, LargeArc, Sweep, {10, 10});
    test::ExpectNear(QXPathBounds(Path.View()), Box, 0.01f);
    EXPECT_EQ(Path.CurrentPoint(), (TPointF{10, 10}));
  }
}

TEST(PathGeometry, AppendsWithAndWithoutConnection) {
  TQXPathGeometry A, B;
  QXParsePath(u"M0 0L1 0", A);
  QXParsePath(u"M5 5L6 5zM7 7L8 8", B);
  TQXPathGeometry Apart = A, Joined = A;
  Apart.Append(B.View(), false);
  EXPECT_EQ(Text(Apart), "M 0,0 L 1,0 M 5,5 L 6,5 Z M 7,7 L 8,8");
  Joined.Append(B.View(), true);
  EXPECT_EQ(Text(Joined), "M 0,0 L 1,0 L 5,5 L 6,5 Z M 7,7 L 8,8");
  // The close of the joined figure goes back to that figure's start.
  EXPECT_EQ(Joined.View().Points[4], (TPointF{0, 0}));
  Joined.Close();
  EXPECT_EQ(Joined.CurrentPoint(), (TPointF{7, 7}));
  A.Append(A.View(), false);
  EXPECT_EQ(Text(A), "M 0,0 L 1,0 M 0,0 L 1,0");
  TQXPathGeometry Empty;
  Empty.Append(B.View(), true);
  EXPECT_EQ(Text(Empty), Text(B));
  Empty.Append(TQXPathView{}, true);
  EXPECT_EQ(Text(Empty), Text(B));
  // A part of the path itself.
  TQXPathGeometry Own;
  for (float X = 0; X < 4; ++X) Own.AddPolygon(std::vector<TPointF>{{X, 0}, {X, 1}});
  const auto Part = [&](std::size_t First) {
    return TQXPathView{Own.View().Points.subspan(First, 3), Own.View().Kinds.subspan(First, 3)};
  };
  Own.Append(Part(3), false);
  EXPECT_EQ(Text(Own), "M 0,0 L 0,1 Z M 1,0 L 1,1 Z M 2,0 L 2,1 Z M 3,0 L 3,1 Z M 1,0 L 1,1 Z");
  Own.Assign(Part(6));
  EXPECT_EQ(Text(Own), "M 2,0 L 2,1 Z");
}

}  // namespace
}  // namespace qxsvg
