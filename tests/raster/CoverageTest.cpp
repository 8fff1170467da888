// Coverage against slow references that share nothing with it.
#include <gtest/gtest.h>

#include <cmath>

#include "RasterTestSupport.h"
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

// The part of a polygon on one side of an upright or level line (Sutherland and Hodgman).
template <class Inside, class Cross>
TPolygon64 Cut(const TPolygon64& In, Inside IsInside, Cross CrossAt) {
  TPolygon64 Out;
  for (std::size_t I = 0; I < In.size(); ++I) {
    const TPoint64 A = In[I], B = In[(I + 1) % In.size()];
    if (IsInside(A)) Out.push_back(A);
    if (IsInside(A) != IsInside(B)) Out.push_back(CrossAt(A, B));
  }
  return Out;
}

// The area that the polygon winds around within the pixel, signed.
double AreaIn(const TPolygon64& Polygon, int X, int Y) {
  const auto AtX = [](double V) {
    return [V](TPoint64 A, TPoint64 B) {
      return TPoint64{V, A.Y + (B.Y - A.Y) * (V - A.X) / (B.X - A.X)};
    };
  };
  const auto AtY = [](double V) {
    return [V](TPoint64 A, TPoint64 B) {
      return TPoint64{A.X + (B.X - A.X) * (V - A.Y) / (B.Y - A.Y), V};
    };
  };
  TPolygon64 P = Cut(
      Polygon, [=](TPoint64 Q) { return Q.X >= X; }, AtX(X));
  P = Cut(
      P, [=](TPoint64 Q) { return Q.X <= X + 1; }, AtX(X + 1));
  P = Cut(
      P, [=](TPoint64 Q) { return Q.Y >= Y; }, AtY(Y));
  P = Cut(
      P, [=](TPoint64 Q) { return Q.Y <= Y + 1; }, AtY(Y + 1));
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

double DistanceTo(TPoint64 P, TPointF A, TPointF B) {
  const double DX = double{B.X} - A.X, DY = double{B.Y} - A.Y, Square = DX * DX + DY * DY;
  const double T =
      Square > 0 ? std::clamp(((P.X - A.X) * DX + (P.Y - A.Y) * DY) / Square, 0.0, 1.0) : 0;
  return std::hypot(P.X - A.X - T * DX, P.Y - A.Y - T * DY);
}

// With round joins and caps a stroke is all that lies within half its width of the path.
TEST_P(TCoverage, RoundStrokesCoverAllWithinHalfTheirWidth) {
  TRasterizer Rasterizer;
  constexpr int Samples = 8;
  for (std::uint32_t Seed = 1; Seed <= 12; ++Seed) {
    TRandom Random(Seed);
    const TQXPathGeometry Path = RandomPath(Random, Side, false);
    TQXStrokeStyle Style;
    Style.Width = Random.Between(0.7f, 9);
    Style.Join = TQXGPStrokeJoin::sjRound;
    Style.StartCap = Style.EndCap = TQXGPLineCap::lcRound;
    TCoverImage Image;
    Rasterizer.Stroke(Path.View(), {}, Style, {}, {0, 0, Side, Side}, false, Image);
    const TQXPathView V = Path.View();
    for (int Y = 0; Y < Side; ++Y)
      for (int X = 0; X < Side; ++X) {
        int Hits = 0;
        for (int S = 0; S < Samples * Samples; ++S) {
          const TPoint64 P{X + (S % Samples + 0.5) / Samples, Y + (S / Samples + 0.5) / Samples};
          bool IsHit = false;
          for (std::size_t I = 1; I < V.Count() && !IsHit; ++I)
            IsHit = V.Kinds[I] != TQXPathPointKind::pkMove &&
                    DistanceTo(P, V.Points[I - 1], V.Points[I]) <= Style.Width / 2;
          Hits += IsHit;
        }
        const double Expected = Hits * 255.0 / (Samples * Samples);
        const int Got = Image.Covers[static_cast<std::size_t>(Y * Side + X)];
        // Where edges overlap within one pixel their areas add up: there a pixel is covered by more
        // than its share, never by less.
        ASSERT_GE(Got, Expected - 28) << "seed " << Seed << " at " << X << ", " << Y;
        ASSERT_TRUE(Expected > 0 || Got <= 28) << "seed " << Seed << " at " << X << ", " << Y;
      }
  }
}

double TotalOf(const TCoverImage& Image) {
  double Total = 0;
  for (const std::uint8_t C : Image.Covers) Total += C / 255.0;
  return Total;
}

// Areas that geometry gives: a corner of two arms of 20, width 4, and a single line with each cap.
TEST_P(TCoverage, JoinsAndCapsHaveTheirAreas) {
  TRasterizer Rasterizer;
  TQXPathGeometry Corner, Line, Back;
  Corner.MoveTo({8, 30});
  Corner.LineTo({8, 10});
  Corner.LineTo({28, 10});
  Line.MoveTo({10, 20});
  Line.LineTo({30, 20});
  // Its edges go through the middle of pixels.
  Back.MoveTo({10, 20.5f});
  Back.LineTo({30, 20.5f});
  Back.Close();
  const auto AreaOf = [&](const TQXPathGeometry& Path, TQXGPStrokeJoin Join, TQXGPLineCap Cap) {
    TQXStrokeStyle Style;
    Style.Width = 4;
    Style.Join = Join;
    Style.StartCap = Style.EndCap = Cap;
    TCoverImage Image;
    Rasterizer.Stroke(Path.View(), {}, Style, {}, {0, 0, Side, Side}, false, Image);
    return TotalOf(Image);
  };
  constexpr double Pi = 3.14159265358979, Arms = 20 * 4 * 2 - 4;
  using enum TQXGPStrokeJoin;
  using enum TQXGPLineCap;
  EXPECT_NEAR(AreaOf(Corner, sjMiter, lcFlat), Arms + 4, 0.1);
  EXPECT_NEAR(AreaOf(Corner, sjBevel, lcFlat), Arms + 2, 0.1);
  EXPECT_NEAR(AreaOf(Corner, sjRound, lcFlat), Arms + Pi, 0.2);
  EXPECT_NEAR(AreaOf(Line, sjMiter, lcFlat), 80, 0.1);
  EXPECT_NEAR(AreaOf(Line, sjMiter, lcSquare), 80 + 16, 0.1);
  EXPECT_NEAR(AreaOf(Line, sjMiter, lcRound), 80 + 4 * Pi, 0.4);
  EXPECT_NEAR(AreaOf(Line, sjMiter, lcTriangle), 80 + 8, 0.1);
  EXPECT_NEAR(AreaOf(Back, sjMiter, lcSquare), 80, 0.2);
  EXPECT_NEAR(AreaOf(Back, sjRound, lcSquare), 80 + 4 * Pi, 0.4);
}

TEST_P(TCoverage, DashesHaveTheirLengths) {
  TRasterizer Rasterizer;
  TQXPathGeometry Line, Square, Corner;
  Line.MoveTo({0, 20});
  Line.LineTo({40, 20});
  Square.AddRectangle({10, 10, 30, 30});
  Corner.MoveTo({5, 30});
  Corner.LineTo({25, 30});
  Corner.LineTo({25, 5});
  const auto AreaOf = [&](const TQXPathGeometry& Path, std::vector<float> Dashes, float Offset) {
    TQXStrokeStyle Style;
    Style.Width = 2;
    Style.Dashes = Dashes;
    Style.DashOffset = Offset;
    TCoverImage Image;
    Rasterizer.Stroke(Path.View(), {}, Style, {}, {0, 0, Side, Side}, false, Image);
    return TotalOf(Image);
  };
  // In multiples of the width: marks of 4 and gaps of 6.
  EXPECT_NEAR(AreaOf(Line, {2, 3}, 0), 4 * 4 * 2, 0.1);
  EXPECT_NEAR(AreaOf(Line, {2, 3}, 1), 4 * 4 * 2, 0.1);
  EXPECT_NEAR(AreaOf(Line, {2, 3}, -1.5f), 4 * 4 * 2, 0.1);
  // An odd number repeats: marks and gaps of 2, 4, 6 in turn.
  EXPECT_NEAR(AreaOf(Line, {1, 2, 3}, 0), 2 * (2 + 6 + 4 + 2 + 6 + 2), 0.3);
  // A solid line where the pattern is none.
  for (const std::vector<float>& None :
       {std::vector<float>{}, {0, 0}, {-1, 2}, {std::nanf(""), 1}, {INFINITY, 1}})
    EXPECT_NEAR(AreaOf(Line, None, 0), 80, 0.1);
  // Far finer than a pixel: half of it.
  EXPECT_NEAR(AreaOf(Line, {1e-6f, 1e-6f}, 0), 40, 1);
  // Marks that end and begin half a unit from a corner, whose inner sides do not meet.
  EXPECT_NEAR(AreaOf(Corner, {10.25f, 50}, 0), 20 * 2 + 1 + 0.5, 0.1);
  EXPECT_NEAR(AreaOf(Corner, {1, 8.75f, 2, 50}, 0), 2 * 2 + 2 + 2 * 3.5 - 0.5, 0.1);
  // A mark across the corner where a closed figure begins and ends: the corner is whole.
  EXPECT_NEAR(AreaOf(Square, {10, 10}, 5), 2 * 40, 2.5);
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
    const std::size_t Steps = Polygon.size() - 2;
    for (int I = 0; I <= 1000; ++I) {
      const float T = static_cast<float>(I) / 1000;
      const TPointF At = Cubic.At(T);
      const auto Near = static_cast<std::size_t>(T * static_cast<float>(Steps));
      double Least = 1e9;
      for (std::size_t J = Near > 1 ? Near - 2 : 0; J < std::min(Near + 3, Steps); ++J)
        Least = std::min(
            Least,
            DistanceTo(
                {At.X, At.Y}, {static_cast<float>(Polygon[J].X), static_cast<float>(Polygon[J].Y)},
                {static_cast<float>(Polygon[J + 1].X), static_cast<float>(Polygon[J + 1].Y)}));
      ASSERT_LE(Least, QXFlattenTolerance * 1.02) << "seed " << Seed << " at " << T;
    }
  }
}

constexpr const char* LevelNames[] = {"Plain", "SSE41", "AVX2"};

INSTANTIATE_TEST_SUITE_P(Levels, TCoverage,
                         testing::Values(TSimdLevel::Plain, TSimdLevel::SSE41, TSimdLevel::AVX2),
                         [](const auto& Info) {
                           return LevelNames[static_cast<std::size_t>(Info.param)];
                         });

}  // namespace
}  // namespace qxsvg
