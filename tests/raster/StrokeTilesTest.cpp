// Strokes that reach far beyond the surface, or have more marks than anyone can see.
#include <gtest/gtest.h>

#include <cmath>

#include "RasterTestSupport.h"

namespace qxsvg {
namespace {

void DrawFarStroke(TQXRasterCanvas& Canvas, std::uint32_t Seed) {
  TRandom Random(Seed);
  const float Size = 100 * std::pow(10.0f, Random.Between(0, 5));
  TQXPathGeometry Path = RandomPath(Random, Size, Random.Below(2) != 0);
  Path.Translate(-Random.Between(0, Size * 0.8f), -Random.Between(0, Size * 0.8f));
  TQXGPPen& Pen = Canvas.Pen();
  SetRandomPen(Random, Pen);
  Pen.SetThickness(std::pow(10.0f, Random.Between(-1, 7)));
  Pen.SetMiterLimit(std::pow(10.0f, Random.Between(0, 3)));
  const float Dashes[] = {Random.Between(0, 2), Random.Between(0.1f, 2)};
  if (Random.Below(2)) Pen.SetCustomDash(Dashes, Random.Between(-2, 2));
  if (Random.Below(3) == 0) Canvas.SetMatrix(CreateScaleQXMatrix(1, Random.Between(0.5f, 2)));
  Canvas.DrawPath({Path.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
  Canvas.SetMatrix(QXIdentityMatrix);
}

TEST(StrokeTilesTest, WideAndFarStrokesAreTheSameInTiles) {
  constexpr std::int32_t Side = 100;
  for (std::uint32_t Seed = 1; Seed <= 300; ++Seed) {
    TTestSurface Whole(Side, Side), Tiled(Side, Side);
    DrawFarStroke(Whole.Canvas, Seed);
    const auto Tile = static_cast<std::int32_t>(23 + Seed % 30);
    for (std::int32_t Y = 0; Y < Side; Y += Tile)
      for (std::int32_t X = 0; X < Side; X += Tile) {
        const TQXCanvasStateLock Lock(Tiled.Canvas);
        Tiled.Canvas.IntersectClip(QXRect(TRect{X, Y, X + Tile, Y + Tile}));
        DrawFarStroke(Tiled.Canvas, Seed);
      }
    ASSERT_EQ(Difference(Whole.Bitmap, Tiled.Bitmap), "") << "seed " << Seed;
  }
}

// Over the limit of marks the rest of the path is solid, from one segment to the next.
TEST(StrokeTilesTest, TooManyMarksBecomeASolidLine) {
  constexpr std::int32_t Width = 500, Rows = 120;
  TTestSurface S(Width, 2 * Rows + 4);
  TQXPathGeometry Path;
  Path.MoveTo({0, 0.5f});
  for (int I = 0; I < Rows; ++I) {
    const auto Y = static_cast<float>(2 * I) + 0.5f;
    Path.LineTo({I % 2 ? 0.0f : Width, Y});
    Path.LineTo({I % 2 ? 0.0f : Width, Y + 2});
  }
  for (float X = 100; X <= Width; X += 100) Path.LineTo({X, 2 * Rows + 0.5f});
  const float Fine[] = {0.125f, 0.125f};
  S.Canvas.Pen().SetCustomDash(Fine, 0);
  S.Canvas.DrawPath({Path.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
  EXPECT_NEAR(S.Pixel(250, 0) >> 24, 128, 3);
  for (std::int32_t X = 1; X + 1 < Width; ++X) ASSERT_EQ(S.Pixel(X, 2 * Rows), 0xff000000) << X;
}

}  // namespace
}  // namespace qxsvg
