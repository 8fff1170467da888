#include "raster/DenseLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "graphics/surface/PathGeometry.h"

namespace qxsvg {
namespace {

constexpr float Distance = StrokeThinning;

// So many points, of which the step is the way to the next.
template <class TStep>
std::vector<TPointF> Walk(std::size_t Count, TStep Step) {
  std::vector<TPointF> Points = {{3, 50}};
  while (Points.size() < Count) Points.push_back(Points.back() + Step(Points.size()));
  return Points;
}

std::vector<TPointF> Thinned(const std::vector<TPointF>& Points, TThinning How = {}) {
  TQXPathGeometry Path;
  Path.MoveTo(Points[0]);
  for (const TPointF P : std::span(Points).subspan(1)) Path.LineTo(P);
  TLineThinner Thinner;
  const TQXPathView Thin = Thinner.Thin(Path.View(), How);
  return {Thin.Points.begin(), Thin.Points.end()};
}

float DistanceTo(TPointF P, const std::vector<TPointF>& Line) {
  float Least = 1e9f;
  for (std::size_t I = 1; I < Line.size(); ++I) {
    const TPointF D = Line[I] - Line[I - 1], V = P - Line[I - 1];
    const float Square = D.X * D.X + D.Y * D.Y;
    const float T = Square > 0 ? std::clamp((V.X * D.X + V.Y * D.Y) / Square, 0.0f, 1.0f) : 0;
    Least = std::min(Least, std::hypot(V.X - T * D.X, V.Y - T * D.Y));
  }
  return Least;
}

// Plots, walks in all directions, smooth curves and points that come twice.
TEST(DenseLines, StayWhereTheyWere) {
  std::mt19937 Random(1);
  std::normal_distribution<float> Normal(0, 1);
  const auto Noise = [&](float Size) { return Size * Normal(Random); };
  const auto Circle = [](std::size_t I) {
    const float A = static_cast<float>(I) * 0.01f;
    return TPointF{0.2f * std::cos(A), 0.2f * std::sin(A)};
  };
  const auto Steps = [&](TPointF Drift, float X, float Y) {
    return Walk(1000, [&, Drift, X, Y](std::size_t) {
      return Drift + TPointF{Noise(X), Noise(Y)};
    });
  };
  const auto Twice = [&](std::size_t I) { return TPointF{I % 3 == 0 ? 0.1f : 0, 0}; };
  const auto Late = [&](std::size_t I) { return TPointF{0, I < 9 ? 0 : Noise(1)}; };
  // What is walked, and which part of the points may be left at most.
  const std::pair<std::vector<TPointF>, float> Cases[] = {
      {Steps({0.0046f, 0}, 0, 2), 0.4f}, {Steps({0, 0.02f}, 2, 0), 0.8f},
      {Steps({}, 0.01f, 0.01f), 0.5f},   {Steps({}, 0.2f, 0.2f), 1},
      {Steps({}, 9e29f, 9e29f), 1},      {Walk(1000, Circle), 0.2f},
      {Walk(1000, Twice), 0.02f},        {Walk(1000, Late), 0.02f},
  };
  for (const auto& [Points, Part] : Cases) {
    const std::vector<TPointF> Thin = Thinned(Points);
    SCOPED_TRACE(&Part - &Cases[0].second);
    EXPECT_LE(static_cast<float>(Thin.size()), Part * static_cast<float>(Points.size()));
    for (const std::size_t I : {0, 1}) {
      EXPECT_EQ(Thin[I], Points[I]);
      EXPECT_EQ(Thin[Thin.size() - 1 - I], Points[Points.size() - 1 - I]);
    }
    if (Thin == Points) continue;
    for (const TPointF P : Points) ASSERT_LE(DistanceTo(P, Thin), Distance * 1.01f);
    for (std::size_t I = 1; I < Thin.size(); ++I)
      ASSERT_LE(DistanceTo((Thin[I - 1] + Thin[I]) * 0.5f, Points), Distance * 1.01f);
  }
}

// Where joins show turns, small stairs stay; what goes nearly straight does not.
TEST(DenseLines, KeepTurnsThatShow) {
  TThinning How;
  How.Turn = 0.05f;
  const auto Stairs = Walk(1000, [](std::size_t I) {
    return I % 2 == 0 ? TPointF{0.01f, 0} : TPointF{0, 0.01f};
  });
  EXPECT_EQ(Thinned(Stairs, How).size(), Stairs.size());
  EXPECT_LT(Thinned(Stairs).size(), Stairs.size() / 5);
  const auto Wave = Walk(1000, [](std::size_t I) {
    return TPointF{0.1f, I % 2 == 0 ? 0.001f : -0.001f};
  });
  EXPECT_LT(Thinned(Wave, How).size(), 10u);
}

TEST(DenseLines, KeepCurvesAndFigures) {
  TQXPathGeometry Path;
  const auto AddDots = [&](TPointF From) {
    for (int I = 1; I <= 300; ++I) Path.LineTo(From + TPointF{static_cast<float>(I) * 0.01f, 0});
  };
  Path.MoveTo({0, 0});
  AddDots({0, 0});
  Path.CurveTo({3, 1}, {4, 2}, {5, 0});
  AddDots({5, 0});
  Path.Close();
  Path.MoveTo({7, 7});
  Path.LineTo({8, 9});
  using enum TQXPathPointKind;
  const std::vector<TQXPathPointKind> Kinds = {pkMove,  pkLine,  pkLine, pkLine, pkCurve,
                                               pkCurve, pkCurve, pkLine, pkLine, pkLine,
                                               pkClose, pkMove,  pkLine};
  TLineThinner Thinner;
  const TQXPathView Thin = Thinner.Thin(Path.View(), {});
  EXPECT_EQ(std::vector(Thin.Kinds.begin(), Thin.Kinds.end()), Kinds);
  EXPECT_EQ(Thin.Points[6], (TPointF{5, 0}));
  EXPECT_EQ(Thin.Points[10], (TPointF{0, 0}));
}

}  // namespace
}  // namespace qxsvg
