// What the tests of the raster surface share: a bitmap with its canvas, and seeded random scenes.
#pragma once

#include <cstring>
#include <random>

#include "graphics/surface/Bitmap.h"
#include "raster/Kernels.h"
#include "raster/RasterCanvas.h"

namespace qxsvg {

struct TTestSurface {
  TQXGPBitmap Bitmap;
  TQXRasterCanvas Canvas;

  TTestSurface(std::int32_t Width, std::int32_t Height, TQXGPColor Background = 0)
      : Bitmap(Width, Height), Canvas(Bitmap.Pixels()) {
    Bitmap.Clear(Background);
  }
  std::uint32_t Pixel(std::int32_t X, std::int32_t Y) const { return Bitmap.GetPixels().Row(Y)[X]; }
};

// The first pixel that differs, as text; empty where both are the same.
inline std::string Difference(const TQXGPBitmap& A, const TQXGPBitmap& B) {
  for (std::int32_t Y = 0; Y < A.GetHeight(); ++Y)
    for (std::int32_t X = 0; X < A.GetWidth(); ++X) {
      const std::uint32_t P = A.GetPixels().Row(Y)[X], Q = B.GetPixels().Row(Y)[X];
      if (P != Q) {
        char Text[96];
        std::snprintf(Text, sizeof Text, "at %d, %d: %08x and %08x", X, Y, P, Q);
        return Text;
      }
    }
  return {};
}

// How what Draw makes of a surface at once differs from what it makes of it part by part, through
// clips; empty where both are the same.
template <class TDraw>
std::string PartsDifference(std::int32_t Side, std::int32_t Width, std::int32_t Height,
                            TDraw Draw) {
  TTestSurface Whole(Side, Side), Parts(Side, Side);
  Draw(Whole.Canvas);
  for (std::int32_t Y = 0; Y < Side; Y += Height)
    for (std::int32_t X = 0; X < Side; X += Width) {
      const TQXCanvasStateLock Lock(Parts.Canvas);
      Parts.Canvas.IntersectClip(QXRect(TRect{X, Y, X + Width, Y + Height}));
      Draw(Parts.Canvas);
    }
  return Difference(Whole.Bitmap, Parts.Bitmap);
}

class TRandom {
 public:
  explicit TRandom(std::uint32_t Seed) : FEngine(Seed) {}
  float Between(float Low, float High) {
    return Low + (High - Low) * static_cast<float>(FEngine() >> 8) / 16777216.0f;
  }
  std::uint32_t Below(std::uint32_t N) { return FEngine() % N; }
  TPointF Point(float Low, float High) {
    const float X = Between(Low, High);
    return {X, Between(Low, High)};
  }
  TQXGPColor Color() { return FEngine() | 0x40000000; }

 private:
  std::mt19937 FEngine;
};

// A figure of lines and curves, some points outside the square of Size.
inline TQXPathGeometry RandomPath(TRandom& Random, float Size, bool HasCurves) {
  TQXPathGeometry Path;
  const float Low = -0.3f * Size, High = 1.3f * Size;
  for (std::uint32_t Figure = 0; Figure <= Random.Below(3); ++Figure) {
    Path.MoveTo(Random.Point(Low, High));
    for (std::uint32_t I = 0; I < 2 + Random.Below(8); ++I) {
      const TPointF A = Random.Point(Low, High), B = Random.Point(Low, High),
                    C = Random.Point(Low, High);
      if (HasCurves && Random.Below(2))
        Path.CurveTo(A, B, C);
      else
        Path.LineTo(A);
    }
    if (Random.Below(2)) Path.Close();
  }
  return Path;
}

inline void SetRandomPen(TRandom& Random, TQXGPPen& Pen) {
  Pen.SetColor(Random.Color());
  Pen.SetThickness(Random.Between(0.2f, 14));
  Pen.SetJoin(static_cast<TQXGPStrokeJoin>(Random.Below(3)));
  Pen.SetStartCap(static_cast<TQXGPLineCap>(Random.Below(4)));
  Pen.SetEndCap(static_cast<TQXGPLineCap>(Random.Below(4)));
  Pen.SetDash(TQXGPStrokeDash::sdSolid);
  if (Random.Below(3) == 0) {
    const float Dashes[] = {Random.Between(0, 4), Random.Between(0.3f, 3), Random.Between(0, 5)};
    Pen.SetCustomDash(Dashes, Random.Between(-3, 3));
    Pen.SetDashCap(Random.Below(2) ? TQXGPDashCap::dcRound : TQXGPDashCap::dcFlat);
  }
}

// Fills, strokes, gradients, images and clips.
inline void DrawRandomScene(TQXGPCanvas& Canvas, std::uint32_t Seed, float Size) {
  TRandom Random(Seed);
  auto Image = std::make_shared<TQXGPBitmap>(13, 9);
  for (int Y = 0; Y < 9; ++Y)
    for (int X = 0; X < 13; ++X) Image->Pixels().Row(Y)[X] = QXPremultiply(Random.Color());
  for (int I = 0; I < 14; ++I) {
    const TQXGPCanvasSaveState State = Canvas.SaveState();
    if (Random.Below(3) == 0) {
      TMatrix M = CreateRotationQXMatrix(Random.Between(0, 6));
      M.m11 *= Random.Between(0.5f, 1.5f);
      M.m31 = Random.Between(0, Size);
      M.m32 = Random.Between(0, Size / 2);
      Canvas.SetMatrix(M);
    }
    if (Random.Below(4) == 0)
      Canvas.IntersectClip(RandomPath(Random, Size, true).View(), TQXGPFillMode::fmWinding);
    TQXGPBrush& Brush = Canvas.Brush();
    Brush.SetColor(Random.Color());
    TQXGPGradient& G = Brush.GetGradient();
    G.Points().Clear();
    for (int J = 0; J < 3; ++J) G.Points().Add(static_cast<float>(J) / 2, Random.Color());
    G.SetStyle(static_cast<TQXGPGradientStyle>(Random.Below(2)));
    G.StartPosition().SetPoint(Random.Point(0, 1));
    G.StopPosition().SetPoint(Random.Point(0, 1));
    G.FocusOffsetPosition().SetPoint(Random.Point(-0.4f, 0.4f));
    Brush.SetBitmap(Image, CreateScaleQXMatrix(Random.Between(0.4f, 3), Random.Between(0.4f, 3)));
    Brush.SetKind(static_cast<TQXGPBrushKind>(1 + Random.Below(3)));
    SetRandomPen(Random, Canvas.Pen());
    const TQXPathGeometry Path = RandomPath(Random, Size, true);
    const TQXPathSource Source{
        Path.View(), static_cast<TQXGPFillMode>(Random.Below(2)), {}, nullptr};
    const float Opacity = Random.Between(0.3f, 1);
    const TPointF A = Random.Point(0, Size), B = Random.Point(0, Size);
    switch (Random.Below(4)) {
      case 0: Canvas.FillPath(Source, Opacity); break;
      case 1: Canvas.DrawPath(Source, Opacity); break;
      case 2: Canvas.DrawImage(*Image, QXRect(A, B), Opacity); break;
      case 3: Canvas.FillRect(QXRect(A, B), Opacity); break;
    }
    Canvas.RestoreState(State);
    Canvas.SetMatrix(QXIdentityMatrix);
  }
}

}  // namespace qxsvg
