#include <gtest/gtest.h>

#include <tuple>

#include "graphics/surface/Path.h"
#include "graphics/surface/PathData.h"
#include "graphics/surface/PathMeasure.h"
#include "graphics/surface/Pen.h"
#include "tests/support/RecordingCanvas.h"

namespace qxsvg {
namespace {

using test::TRecordingCanvas;

void Read(TQXGPPath& Path, StringView Text) {
  TQXPathData Data;
  Data.SetPathString(Text);
  Path.Assign(&Data);
}

TEST(PathPoints, InsideGoesThroughMatrixAndClip) {
  TQXGPPath Path;
  Read(Path, u"M0 0H10V10H0z");
  TRecordingCanvas Canvas(100, 100);
  EXPECT_TRUE(Path.IsVisiblePathPoint({5, 5}) && Path.IsVisiblePathPoint({5, 5}, &Canvas));
  // The point is one of the device, the path passes through the canvas's matrix.
  Canvas.SetMatrix(QXMatrixMultiply(CreateScaleQXMatrix(2, 2), CreateTranslateQXMatrix(50, 0)));
  EXPECT_FALSE(Path.IsVisiblePathPoint({5, 5}, &Canvas));
  EXPECT_TRUE(Path.IsVisiblePathPoint({65, 15}, &Canvas));
  const auto State = Canvas.SaveState();
  Canvas.IntersectClip(QXRect(0, 0, 5, 10));
  EXPECT_FALSE(Path.IsVisiblePathPoint({65, 15}, &Canvas));
  EXPECT_TRUE(Path.IsVisiblePathPoint({55, 15}, &Canvas));
  Canvas.RestoreState(State);
  // Outside of the device there is nothing to be seen.
  EXPECT_TRUE(Path.IsVisiblePathPoint({65, 15}, &Canvas));
  Canvas.SetMatrix(CreateTranslateQXMatrix(95, 0));
  EXPECT_FALSE(Path.IsVisiblePathPoint({101, 5}, &Canvas));
  // A matrix that flattens the plane leaves no inside.
  Canvas.SetMatrix(CreateScaleQXMatrix(0, 1));
  EXPECT_FALSE(Path.IsVisiblePathPoint({0, 5}, &Canvas));
  EXPECT_FALSE(Path.IsVisiblePathPoint({NAN, 5}));
}

TEST(PathPoints, OutlineByWidthCapsJoinsAndDashes) {
  using enum TQXGPLineCap;
  using enum TQXGPStrokeJoin;
  const std::tuple<StringView, float, TQXGPLineCap, TQXGPStrokeJoin, std::vector<TPointF>,
                   std::vector<TPointF>>
      Cases[] = {
          {u"M0 0H10", 4, lcFlat, sjMiter, {{5, 1.9f}}, {{5, 2.1f}, {-1, 0.5f}}},
          {u"M0 0H10", 4, lcSquare, sjMiter, {{-1.9f, 1.9f}}, {}},
          {u"M0 0H10", 4, lcRound, sjMiter, {{-1.9f, 0.1f}}, {{-1.9f, 1.9f}}},
          {u"M0 0H10", 4, lcTriangle, sjMiter, {{-1, 0.9f}}, {{-1, 1.2f}}},
          {u"M0 0H10V10", 4, lcFlat, sjMiter, {{11.9f, -1.9f}}, {}},
          {u"M0 0H10V10", 4, lcFlat, sjBevel, {}, {{11.9f, -1.9f}}},
          {u"M0 0H10V10", 4, lcFlat, sjRound, {{11.3f, -1.3f}}, {{11.9f, -1.9f}}},
          {u"M0 0H10V10H0z", 2, lcFlat, sjMiter, {{-0.9f, -0.9f}, {0.1f, 5}}, {{5, 5}}},
          {u"M0 0H10V10H0", 2, lcFlat, sjMiter, {}, {{0, 5}}},
          {u"M0 0H10", 1e-12f, lcFlat, sjMiter, {}, {{5, 0.01f}}},
          {u"M0 0H10", 0, lcFlat, sjMiter, {}, {{5, 0}}},
          {u"M0 0C0 10 10 10 10 0", 1, lcFlat, sjMiter, {{5, 7.5f}}, {{5, 6.9f}}},
          // Small units take as fine a test.
          {u"M.1 0C.1 .0552 .0552 .1 0 .1",
           0.002f,
           lcFlat,
           sjMiter,
           {{0.09285f, 0.03846f}},
           {{0.09377f, 0.03884f}}},
          {u"", 4, lcFlat, sjMiter, {}, {{0, 0}}},
          {u"M0 0", 4, lcFlat, sjMiter, {}, {{0, 0}}},
      };
  TQXGPPath Path;
  for (const auto& [Data, Width, Cap, Join, Hits, Misses] : Cases) {
    SCOPED_TRACE(testing::Message()
                 << ToUtf8(Data) << " cap " << int(Cap) << " join " << int(Join));
    Read(Path, Data);
    TQXGPPen Pen(nullptr, TQXGPBrushKind::bkNone);
    Pen.SetThickness(Width);
    Pen.SetStartCap(Cap);
    Pen.SetEndCap(Cap);
    Pen.SetJoin(Join);
    for (const TPointF P : Hits)
      EXPECT_TRUE(Path.IsOutlineVisiblePathPoint(P, Pen)) << P.X << "," << P.Y;
    for (const TPointF P : Misses)
      EXPECT_FALSE(Path.IsOutlineVisiblePathPoint(P, Pen)) << P.X << "," << P.Y;
  }
  // Dashes are counted in widths.
  Read(Path, u"M0 0H20");
  TQXGPPen Pen;
  Pen.SetThickness(2);
  Pen.SetCustomDash(std::vector<float>{2, 1}, 0);
  for (const float X : {3.0f, 5.0f, 7.0f})
    EXPECT_EQ(Path.IsOutlineVisiblePathPoint({X, 0}, Pen), X != 5);
}

TEST(PathPoints, OutlineGoesThroughMatrixAndClip) {
  TQXGPPath Path;
  Read(Path, u"M0 0H10");
  TQXGPPen Pen;
  Pen.SetThickness(2);
  TRecordingCanvas Canvas(100, 100);
  Canvas.SetMatrix(QXMatrixMultiply(CreateScaleQXMatrix(5, 5), CreateTranslateQXMatrix(20, 20)));
  // The pen's width passes through the matrix too: five on each side.
  EXPECT_TRUE(Path.IsOutlineVisiblePathPoint({40, 24.5f}, Pen, &Canvas));
  EXPECT_FALSE(Path.IsOutlineVisiblePathPoint({40, 25.5f}, Pen, &Canvas));
  EXPECT_FALSE(Path.IsOutlineVisiblePathPoint({5, 0}, Pen, &Canvas));
  Canvas.IntersectClip(QXRect(0, -1, 2, 1));
  EXPECT_FALSE(Path.IsOutlineVisiblePathPoint({40, 24.5f}, Pen, &Canvas));
  EXPECT_TRUE(Path.IsOutlineVisiblePathPoint({25, 24.5f}, Pen, &Canvas));
}

// The outline that Widen gives covers what the stroke covers.
TEST(PathPoints, WidenedPathsCoverTheStroke) {
  for (const StringView Text :
       {u"M0 0H30V30", u"M0 0H30V30z", u"M0 0C50 0 -20 30 30 30", u"M0 0H10M20 5V25M5 5L25 25z"}) {
    TQXGPPath Path, Wide;
    Read(Path, Text);
    Wide.Assign(&Path);
    TQXGPPen Pen;
    Pen.SetThickness(4);
    Wide.Widen(4);
    EXPECT_EQ(Wide.FillMode(), TQXGPFillMode::fmWinding);
    int Inside = 0, Different = 0;
    for (float Y = -5; Y < 36; Y += 0.7f)
      for (float X = -5; X < 36; X += 0.7f) {
        const bool IsIn = Path.IsOutlineVisiblePathPoint({X, Y}, Pen);
        Inside += IsIn;
        Different += IsIn != Wide.IsVisiblePathPoint({X, Y});
      }
    EXPECT_GT(Inside, 100) << ToUtf8(Text);
    EXPECT_LE(Different, 2) << ToUtf8(Text);
  }
  TQXGPPath Empty;
  Empty.Widen(4);
  EXPECT_TRUE(Empty.IsEmpty());
}

TEST(PathPoints, FillModesComeAlongWithAssignment) {
  TQXPathData Data;
  Data.SetPathString(u"M0 0H10V10H0zM2 2H8V8H2z");
  Data.SetFillMode(TQXGPFillMode::fmAlternate);
  TQXGPPath Path;
  Path.Assign(&Data);
  EXPECT_FALSE(Path.IsVisiblePathPoint({5, 5}));
  const auto Copy = Path.Clone(nullptr);
  EXPECT_FALSE(Copy->IsVisiblePathPoint({5, 5}));
  // The copy owns its geometry.
  Path.Clear();
  EXPECT_EQ(Copy->Count(), 10u);
}

}  // namespace
}  // namespace qxsvg
