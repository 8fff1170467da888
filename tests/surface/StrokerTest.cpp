// The outlines of strokes: how much is drawn, and where the edges of the widest lie.
#include "graphics/surface/Stroker.h"

#include <gtest/gtest.h>

#include <cmath>

#include "graphics/surface/Path.h"
#include "graphics/surface/PathData.h"
#include "graphics/surface/Pen.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

struct TPointCounter final : ILineConsumer {
  std::size_t Count = 0;
  void Consume(std::span<const TPointF> Points, std::span<const TQXPolyline>) override {
    Count += Points.size();
  }
};

// Points of the outline for a surface of 500 by 500 pixels.
std::size_t PointsOf(const TQXPathView& Path, const TQXStrokeStyle& Style, const TMatrix& M = {}) {
  TPointCounter Counter;
  auto Left = std::make_unique<TQXLineBuffer>(Counter);
  auto Right = std::make_unique<TQXLineBuffer>(Counter, true);
  TQXStroker().Stroke(Path, Style, M, {0, 0, 500, 500}, QXFlattenTolerance, *Left, *Right);
  Left->Flush();
  Right->Flush();
  return Counter.Count;
}

// A pen far wider than the surface reaches it from everywhere, and marks far finer than a pixel
// come in millions; neither may cost more than what is seen.
TEST(Stroker, DrawsNoMoreThanIsSeen) {
  const StringView Paths[] = {u"M-1e6 250L1e6 251L250 1e6z", u"M0 0C1e6 250 -1e6 300 500 500",
                              u"M0 0C3e38 250 -3e38 300 500 3e38",
                              u"M9 9A250 250 0 0 1 400 400T90 80"};
  const std::vector<float> Patterns[] = {{}, {1e-6f, 1e-6f}, {1, 2}, {0, 1e-3f}};
  const TMatrix Matrices[] = {{}, CreateScaleQXMatrix(1e30f, 1e-30f)};
  using enum TQXGPDashCap;
  for (const StringView Text : Paths)
    for (const float Width : {1e-12f, 1e4f, 1e9f, 3e38f})
      for (const std::vector<float>& Pattern : Patterns)
        for (const TQXGPDashCap Cap : {dcFlat, dcRound, dcTriangle})
          for (const TMatrix& M : Matrices) {
            TQXPathGeometry Path;
            QXParsePath(Text, Path);
            TQXStrokeStyle Style;
            Style.Width = Width;
            Style.Join = TQXGPStrokeJoin::sjRound;
            Style.StartCap = Style.EndCap = static_cast<TQXGPLineCap>(Cap);
            Style.DashCap = Cap;
            Style.Dashes = Pattern;
            EXPECT_LT(PointsOf(Path.View(), Style, M), 1'000'000u)
                << ToUtf8(Text) << " width " << Width << " cap " << int(Cap) << " pattern of "
                << Pattern.size() << " from " << (Pattern.empty() ? 0 : Pattern[0]) << " scale "
                << M.m11;
          }
}

// A dot of eight million pixels whose rim passes the origin.
TEST(Stroker, KeepsTheRimOfTheWidestPens) {
  constexpr float Radius = 4e6f;
  TQXGPPen Pen;
  Pen.SetThickness(2 * Radius);
  Pen.SetStartCap(TQXGPLineCap::lcRound);
  Pen.SetEndCap(TQXGPLineCap::lcRound);
  for (int I = 0; I < 40; ++I) {
    const double Angle = 0.157 * I;
    const TPointF Out{static_cast<float>(std::cos(Angle)), static_cast<float>(std::sin(Angle))};
    TQXGPPath Path;
    Path.MoveTo(Out * -Radius);
    Path.LineTo(Out * -Radius);
    EXPECT_TRUE(Path.IsOutlineVisiblePathPoint(Out * -1.5f, Pen)) << Angle;
    EXPECT_FALSE(Path.IsOutlineVisiblePathPoint(Out * 1.5f, Pen)) << Angle;
  }
}

TEST(Stroker, HitsStrokesFarFromTheOrigin) {
  TQXGPPath Path;
  Path.MoveTo({0, 5e6f});
  Path.LineTo({1e7f, 5e6f});
  TQXGPPen Pen;
  Pen.SetThickness(10);
  EXPECT_TRUE(Path.IsOutlineVisiblePathPoint({3e6f, 5e6f + 4}, Pen));
  EXPECT_FALSE(Path.IsOutlineVisiblePathPoint({3e6f, 5e6f + 6}, Pen));
}

// Dashes that would come to more points than a path may have.
TEST(Stroker, WideningIsBounded) {
  TQXGPPath Path;
  Path.MoveTo({0, 0});
  Path.LineTo({1e6f, 1});
  TQXGPPen Pen;
  Pen.SetThickness(7000);
  Pen.SetDashCap(TQXGPDashCap::dcRound);
  const float Fine[] = {1e-5f, 1e-5f};
  Pen.SetCustomDash(Fine, 0);
  EXPECT_THROW(Path.Widen(Pen), ESVGException);
  EXPECT_EQ(Path.Count(), 2u);
}

}  // namespace
}  // namespace qxsvg
