// Coverage against slow references that share nothing with it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <tuple>

#include "RasterTestSupport.h"
#include "graphics/surface/PathData.h"
#include "raster/Rasterizer.h"

namespace qxsvg {
namespace {

constexpr std::int32_t Side = 40;

// A byte for each pixel.
struct TCoverImage final : ISpanSink {
  std::vector<std::uint8_t> Covers = std::vector<std::uint8_t>(Side * Side);
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* C) override {
    for (const TCoverSpan& Span : Spans)
      for (std::int32_t I = 0; I < Span.Length; ++I)
        Covers.at(static_cast<std::size_t>(Y * Side + Span.X + I)) =
            static_cast<std::uint8_t>(Span.IsEven() ? Span.Cover : Span.Covers(C)[I]);
  }
};

struct TPoint64 {
  double X, Y;
};
using TPolygon64 = std::vector<TPoint64>;

// The part of a polygon where Side times a coordinate is not below Side times At (Sutherland and
// Hodgman).
TPolygon64 Cut(const TPolygon64& In, double TPoint64::*Along, double TPoint64::*Other, double At,
               double Side) {
  TPolygon64 Out;
  for (std::size_t I = 0; I < In.size(); ++I) {
    const TPoint64 A = In[I], B = In[(I + 1) % In.size()];
    const double FromA = (A.*Along - At) * Side, FromB = (B.*Along - At) * Side;
    if (FromA >= 0) Out.push_back(A);
    if ((FromA >= 0) == (FromB >= 0)) continue;
    TPoint64& Crossing = Out.emplace_back();
    Crossing.*Along = At;
    Crossing.*Other = A.*Other + (B.*Other - A.*Other) * FromA / (FromA - FromB);
  }
  return Out;
}

// The area that the polygon winds around within the pixel, signed.
double AreaIn(const TPolygon64& Polygon, int X, int Y) {
  TPolygon64 P = Cut(Polygon, &TPoint64::X, &TPoint64::Y, X, 1);
  P = Cut(P, &TPoint64::X, &TPoint64::Y, X + 1, -1);
  P = Cut(P, &TPoint64::Y, &TPoint64::X, Y, 1);
  P = Cut(P, &TPoint64::Y, &TPoint64::X, Y + 1, -1);
  double Area = 0;
  for (std::size_t I = 0; I < P.size(); ++I) {
    const TPoint64 A = P[I], B = P[(I + 1) % P.size()];
    Area += (A.X * B.Y - B.X * A.Y) / 2;
  }
  return Area;
}

double ByRule(double Area, TQXGPFillMode Mode) {
  Area = std::abs(Area);
  if (Mode == TQXGPFillMode::fmWinding) return std::min(Area, 1.0);
  Area = std::fmod(Area, 2.0);
  return Area > 1 ? 2 - Area : Area;
}

// The figures of a path as the flattener sees them, each closed.
struct TCollector final : ILineConsumer {
  std::vector<TPolygon64> Polygons;
  void Consume(std::span<const TPointF> Points, std::span<const TQXPolyline> Lines) override {
    for (const TQXPolyline& Line : Lines) {
      TPolygon64 P;
      for (const TPointF Q : Points.subspan(Line.First, Line.Count)) P.push_back({Q.X, Q.Y});
      Polygons.push_back(std::move(P));
    }
  }
};

std::vector<TPolygon64> Flattened(const TQXPathView& Path) {
  TCollector Collector;
  auto Buffer = std::make_unique<TQXLineBuffer>(Collector);
  QXFlattenFigures(Path, {}, true, QXFlattenTolerance, *Buffer);
  Buffer->Flush();
  return Collector.Polygons;
}

class TCoverage : public testing::TestWithParam<TSimdLevel> {
 protected:
  void SetUp() override { SetSimdLevel(GetParam()); }
  void TearDown() override { SetSimdLevel(BestSimdLevel()); }
};

TEST_P(TCoverage, DiffersFromTheExactAreaByLittle) {
  TRasterizer Rasterizer;
  for (std::uint32_t Seed = 1; Seed <= 60; ++Seed) {
    TRandom Random(Seed);
    const TQXPathGeometry Path = RandomPath(Random, Side, Seed % 2 == 0);
    const auto Mode = static_cast<TQXGPFillMode>(Seed / 2 % 2);
    TCoverImage Image;
    Rasterizer.Fill(Path.View(), {}, {0, 0, Side, Side}, {Mode, false}, Image);
    const std::vector<TPolygon64> Polygons = Flattened(Path.View());
    for (int Y = 0; Y < Side; ++Y)
      for (int X = 0; X < Side; ++X) {
        double Area = 0;
        for (const TPolygon64& Polygon : Polygons) Area += AreaIn(Polygon, X, Y);
        const double Expected = ByRule(Area, Mode) * 255;
        ASSERT_NEAR(Expected, Image.Covers[static_cast<std::size_t>(Y * Side + X)], 2.0)
            << "seed " << Seed << " at " << X << ", " << Y;
      }
  }
}

double DistanceTo(TPoint64 P, TPoint64 A, TPoint64 B) {
  const double DX = B.X - A.X, DY = B.Y - A.Y, Square = DX * DX + DY * DY;
  const double T =
      Square > 0 ? std::clamp(((P.X - A.X) * DX + (P.Y - A.Y) * DY) / Square, 0.0, 1.0) : 0;
  return std::hypot(P.X - A.X - T * DX, P.Y - A.Y - T * DY);
}

// The area that a stroke covers.
double AreaOf(StringView Data, const TQXStrokeStyle& Style) {
  TQXPathGeometry Path;
  QXParsePath(Data, Path);
  TCoverImage Image;
  TRasterizer().Stroke(Path.View(), {}, Style, {}, {0, 0, Side, Side}, false, Image);
  double Total = 0;
  for (const std::uint8_t C : Image.Covers) Total += C / 255.0;
  return Total;
}

// Areas that geometry gives: a corner of two arms of 20, width 4, and a single line with each cap.
TEST_P(TCoverage, JoinsAndCapsHaveTheirAreas) {
  constexpr StringView Corner = u"M8 30V10H28", Line = u"M10 20H30";
  // Its edges go through the middle of pixels.
  constexpr StringView Back = u"M10 20.5H30z";
  constexpr double Pi = 3.14159265358979, Arms = 20 * 4 * 2 - 4;
  using enum TQXGPStrokeJoin;
  using enum TQXGPLineCap;
  const std::tuple<StringView, TQXGPStrokeJoin, TQXGPLineCap, double> Cases[] = {
      {Corner, sjMiter, lcFlat, Arms + 4},    {Corner, sjBevel, lcFlat, Arms + 2},
      {Corner, sjRound, lcFlat, Arms + Pi},   {Line, sjMiter, lcFlat, 80},
      {Line, sjMiter, lcSquare, 80 + 16},     {Line, sjMiter, lcRound, 80 + 4 * Pi},
      {Line, sjMiter, lcTriangle, 80 + 8},    {Back, sjMiter, lcSquare, 80},
      {Back, sjRound, lcSquare, 80 + 4 * Pi},
  };
  for (const auto& [Path, Join, Cap, Area] : Cases) {
    TQXStrokeStyle Style;
    Style.Width = 4;
    Style.Join = Join;
    Style.StartCap = Style.EndCap = Cap;
    EXPECT_NEAR(AreaOf(Path, Style), Area, 0.4) << ToUtf8(Path) << int(Join) << int(Cap);
  }
}

TEST_P(TCoverage, DashesHaveTheirLengths) {
  constexpr StringView Line = u"M0 20H40", Corner = u"M5 30H25V5";
  const std::tuple<StringView, std::vector<float>, float, double, double> Cases[] = {
      // In multiples of the width: marks of 4 and gaps of 6.
      {Line, {2, 3}, 0, 4 * 4 * 2, 0.1},
      {Line, {2, 3}, 1, 4 * 4 * 2, 0.1},
      {Line, {2, 3}, -1.5f, 4 * 4 * 2, 0.1},
      // An odd number repeats: marks and gaps of 2, 4, 6 in turn.
      {Line, {1, 2, 3}, 0, 2 * (2 + 6 + 4 + 2 + 6 + 2), 0.3},
      // A solid line where the pattern is none.
      {Line, {}, 0, 80, 0.1},
      {Line, {0, 0}, 0, 80, 0.1},
      {Line, {-1, 2}, 0, 80, 0.1},
      {Line, {std::nanf(""), 1}, 0, 80, 0.1},
      {Line, {INFINITY, 1}, 0, 80, 0.1},
      // Far finer than a pixel: half of it.
      {Line, {1e-6f, 1e-6f}, 0, 40, 1},
      // Marks that end and begin half a unit from a corner, whose inner sides do not meet.
      {Corner, {10.25f, 50}, 0, 20 * 2 + 1 + 0.5, 0.1},
      {Corner, {1, 8.75f, 2, 50}, 0, 2 * 2 + 2 + 2 * 3.5 - 0.5, 0.1},
      // A mark across the corner where a closed figure begins and ends: the corner is whole.
      {u"M10 10H30V30H10z", {10, 10}, 5, 2 * 40, 2.5},
  };
  for (const auto& [Path, Dashes, Offset, Area, Tolerance] : Cases) {
    TQXStrokeStyle Style;
    Style.Width = 2;
    Style.Dashes = Dashes;
    Style.DashOffset = Offset;
    EXPECT_NEAR(AreaOf(Path, Style), Area, Tolerance) << testing::PrintToString(Dashes) << Offset;
  }
}

TEST_P(TCoverage, CurvesStayWithinTheTolerance) {
  for (std::uint32_t Seed = 1; Seed <= 200; ++Seed) {
    TRandom Random(Seed);
    const float Size = std::pow(10.0f, Random.Between(0, 4));
    TPointF P[4];
    for (TPointF& Q : P) Q = Random.Point(0, Size);
    TQXPathGeometry Path;
    Path.MoveTo(P[0]);
    Path.CurveTo(P[1], P[2], P[3]);
    const std::vector<TPolygon64> Polygons = Flattened(Path.View());
    ASSERT_EQ(Polygons.size(), 1u);
    const TPolygon64& Polygon = Polygons[0];
    const TQXCubic Cubic = TQXCubic::FromControls(P[0], P[1], P[2], P[3]);
    for (int I = 0; I <= 300; ++I) {
      const float T = static_cast<float>(I) / 300;
      const TPointF At = Cubic.At(T);
      double Least = 1e9;
      for (std::size_t J = 0; J + 2 < Polygon.size(); ++J)
        Least = std::min(Least, DistanceTo({At.X, At.Y}, Polygon[J], Polygon[J + 1]));
      ASSERT_LE(Least, QXFlattenTolerance * 1.02) << "seed " << Seed << " at " << T;
    }
  }
}

struct TFailingSink final : ISpanSink {
  void Row(std::int32_t, std::span<const TCoverSpan>, const std::uint8_t*) override {
    throw std::runtime_error("full");
  }
};

TEST(Rasterizer, ADrawingThatFailsLeavesNothingToTheNext) {
  TRasterizer Rasterizer;
  TQXPathGeometry Large, Thin;
  Large.AddEllipse({0, 0, Side, Side});
  const TRect Clip{0, 0, Side, Side};
  TFailingSink Failing;
  EXPECT_THROW(Rasterizer.Fill(Large.View(), {}, Clip, {}, Failing), std::runtime_error);
  EXPECT_THROW(Rasterizer.Stroke(Large.View(), {}, {}, {}, Clip, false, Failing),
               std::runtime_error);
  // A figure without area that crosses the whole grid finds nothing there.
  Thin.AddPolygon(std::vector<TPointF>{{0, 0}, {Side, Side}, {0, 0}});
  TCoverImage Image;
  Rasterizer.Fill(Thin.View(), {}, Clip, {}, Image);
  EXPECT_THAT(Image.Covers, testing::Each(0));
}

constexpr const char* LevelNames[] = {"Plain", "SSE41", "AVX2"};

INSTANTIATE_TEST_SUITE_P(Levels, TCoverage,
                         testing::Values(TSimdLevel::Plain, TSimdLevel::SSE41, TSimdLevel::AVX2),
                         [](const auto& Info) {
                           return LevelNames[static_cast<std::size_t>(Info.param)];
                         });

}  // namespace
}  // namespace qxsvg
