#include "tools/SurfaceDemoSheet.h"

#include <array>
#include <cmath>

namespace qxsvg::tools {

namespace {

constexpr float Cell = 120, RowHeight = 100;
constexpr TQXGPColor Ink = 0xff24425c, Thin = 0xffffa028, Paper = 0xffffffff;

TQXPathSource SourceOf(const TQXPathGeometry& Path, TQXGPFillMode Mode = TQXGPFillMode::fmWinding) {
  return {Path.View(), Mode, {}, nullptr};
}

TPointF CellAt(int Column, int Row) {
  return {static_cast<float>(Column) * Cell, static_cast<float>(Row) * RowHeight};
}

// The path with a wide pen, and its course in a thin line above.
void StrokeWithCourse(TQXGPCanvas& Canvas, const TQXPathGeometry& Path) {
  Canvas.Pen().SetColor(Ink);
  Canvas.DrawPath(SourceOf(Path), 1);
  TQXGPPen Course(&Canvas, TQXGPBrushKind::bkSolid, Thin);
  const TQXGPPen& Wide = Canvas.Pen();
  TQXGPPen Kept(&Canvas);
  Kept.Assign(&Wide);
  Canvas.SetPen(Course);
  Canvas.DrawPath(SourceOf(Path), 1);
  Canvas.SetPen(Kept);
}

void DrawCaps(TQXGPCanvas& Canvas) {
  for (int I = 0; I < 4; ++I) {
    const TPointF At = CellAt(I, 0);
    TQXPathGeometry Line, Dot;
    Line.MoveTo(At + TPointF{30, 30});
    Line.LineTo(At + TPointF{90, 55});
    Dot.MoveTo(At + TPointF{60, 82});
    Dot.LineTo(At + TPointF{60, 82});
    Canvas.Pen().SetThickness(22);
    Canvas.Pen().SetStartCap(static_cast<TQXGPLineCap>(I));
    Canvas.Pen().SetEndCap(static_cast<TQXGPLineCap>(I));
    StrokeWithCourse(Canvas, Line);
    StrokeWithCourse(Canvas, Dot);
  }
}

void DrawJoins(TQXGPCanvas& Canvas) {
  Canvas.Pen().SetThickness(16);
  Canvas.Pen().SetStartCap(TQXGPLineCap::lcFlat);
  Canvas.Pen().SetEndCap(TQXGPLineCap::lcFlat);
  for (int I = 0; I < 3; ++I) {
    const TPointF At = CellAt(I, 1);
    TQXPathGeometry Path;
    Path.MoveTo(At + TPointF{18, 85});
    Path.LineTo(At + TPointF{40, 25});
    Path.LineTo(At + TPointF{60, 75});
    Path.CurveTo(At + TPointF{65, 20}, At + TPointF{70, 20}, At + TPointF{105, 30});
    Path.LineTo(At + TPointF{95, 85});
    Canvas.Pen().SetJoin(static_cast<TQXGPStrokeJoin>(I));
    StrokeWithCourse(Canvas, Path);
  }
  // Curves tighter than the pen, a cusp, and a closed figure.
  TQXPathGeometry Tight, Closed;
  const TPointF At = CellAt(3, 1), Next = CellAt(4, 1);
  Tight.MoveTo(At + TPointF{20, 80});
  Tight.CurveTo(At + TPointF{50, -20}, At + TPointF{52, 160}, At + TPointF{60, 30});
  Tight.CurveTo(At + TPointF{140, 90}, At + TPointF{40, 90}, At + TPointF{105, 30});
  Closed.MoveTo(Next + TPointF{30, 25});
  Closed.LineTo(Next + TPointF{95, 35});
  Closed.CurveTo(Next + TPointF{95, 70}, Next + TPointF{85, 80}, Next + TPointF{40, 80});
  Closed.Close();
  StrokeWithCourse(Canvas, Tight);
  Canvas.Pen().SetJoin(TQXGPStrokeJoin::sjMiter);
  StrokeWithCourse(Canvas, Closed);
}

void DrawDashes(TQXGPCanvas& Canvas) {
  constexpr std::array Dashes = {TQXGPStrokeDash::sdDash, TQXGPStrokeDash::sdDot,
                                 TQXGPStrokeDash::sdDashDot, TQXGPStrokeDash::sdDashDotDot};
  TQXGPPen& Pen = Canvas.Pen();
  Pen.SetThickness(5);
  for (std::size_t I = 0; I < Dashes.size(); ++I) {
    const float Y = 2 * RowHeight + 20 + 20 * static_cast<float>(I);
    Pen.SetDash(Dashes[I]);
    Pen.SetDashCap(I % 2 ? TQXGPDashCap::dcRound : TQXGPDashCap::dcFlat);
    Canvas.DrawLine({20, Y}, {340, Y}, 1);
  }
  const float Own[] = {3, 1.5f, 0, 1.5f};
  Pen.SetCustomDash(Own, 0.5f);
  Pen.SetDashCap(TQXGPDashCap::dcRound);
  TQXPathGeometry Path;
  Path.AddEllipse({380, 215, 470, 285});
  Path.AddRectangle({500, 215, 590, 285}, 20, 20, AllCorners);
  Canvas.DrawPath(SourceOf(Path), 1);
  Pen.SetDashCap(TQXGPDashCap::dcTriangle);
  Canvas.DrawRect({620, 215, 700, 285}, 1);
  Pen.SetDash(TQXGPStrokeDash::sdSolid);
}

TQXPathGeometry Star(TPointF Center, float Radius) {
  TQXPathGeometry Path;
  for (int I = 0; I < 5; ++I) {
    const float Angle = static_cast<float>(I) * 2.5132741f - 1.5707963f;
    const TPointF P{Center.X + Radius * std::cos(Angle), Center.Y + Radius * std::sin(Angle)};
    I == 0 ? Path.MoveTo(P) : Path.LineTo(P);
  }
  Path.Close();
  return Path;
}

void SetStops(TQXGPGradient& Gradient) {
  Gradient.Points().Clear();
  Gradient.Points().Add(0, 0xffd03020);
  Gradient.Points().Add(0.5f, 0xfff0e040);
  Gradient.Points().Add(1, 0x402060c0);
}

void DrawFillsAndGradients(TQXGPCanvas& Canvas) {
  TQXGPBrush& Brush = Canvas.Brush();
  const float Top = 3 * RowHeight;
  Brush.SetKind(TQXGPBrushKind::bkSolid);
  Brush.SetColor(Ink);
  Canvas.FillPath(SourceOf(Star({60, Top + 52}, 45), TQXGPFillMode::fmAlternate), 1);
  Canvas.FillPath(SourceOf(Star({180, Top + 52}, 45), TQXGPFillMode::fmWinding), 1);
  TQXGPGradient& Gradient = Brush.GetGradient();
  SetStops(Gradient);
  Brush.SetKind(TQXGPBrushKind::bkGradient);
  Canvas.FillRect({250, Top + 10, 350, Top + 90}, 1);
  Gradient.StopPosition().SetPoint({1, 1});
  Canvas.FillRect({370, Top + 10, 470, Top + 90}, 12, 12, AllCorners, 1);
  Gradient.SetStyle(TQXGPGradientStyle::gsRadial);
  Canvas.FillRect({490, Top + 10, 590, Top + 90}, 1);
  Gradient.FocusOffsetPosition().SetPoint({-0.2f, -0.2f});
  TQXPathGeometry Round;
  Round.AddEllipse({610, Top + 10, 710, Top + 90});
  Canvas.FillPath(SourceOf(Round), 1);
}

std::shared_ptr<TQXGPBitmap> MakeTile() {
  auto Tile = std::make_shared<TQXGPBitmap>(16, 16);
  const TQXPixels Pixels = Tile->Pixels();
  for (std::int32_t Y = 0; Y < 16; ++Y)
    for (std::int32_t X = 0; X < 16; ++X)
      Pixels.Row(Y)[X] = QXPremultiply(X < 2 || Y < 2                               ? 0xff306090
                                       : (X - 9) * (X - 9) + (Y - 9) * (Y - 9) < 20 ? 0xffe07020
                                                                                    : 0x30306090);
  return Tile;
}

void DrawPatterns(TQXGPCanvas& Canvas) {
  const float Top = 4 * RowHeight;
  const std::shared_ptr<TQXGPBitmap> Tile = MakeTile();
  TQXGPBrush& Brush = Canvas.Brush();
  Brush.SetKind(TQXGPBrushKind::bkBitmap);
  Brush.SetBitmap(Tile, CreateTranslateQXMatrix(10, Top + 10));
  Canvas.FillRect({10, Top + 10, 110, Top + 90}, 1);
  Brush.SetBitmap(Tile, CreateScaleQXMatrix(1.7f, 1.7f));
  Canvas.FillPath(SourceOf(Star({180, Top + 52}, 45)), 1);
  Brush.SetBitmap(Tile, CreateRotationQXMatrix(0.4f));
  Canvas.FillRect({250, Top + 10, 350, Top + 90}, 0.6f);
  // The pen's own brush.
  TQXGPPen& Pen = Canvas.Pen();
  Pen.SetThickness(18);
  SetStops(Pen.GetBrush().GetGradient());
  Pen.GetBrush().SetKind(TQXGPBrushKind::bkGradient);
  Pen.SetKind(TQXGPBrushKind::bkGradient);
  TQXPathGeometry Ring;
  Ring.AddEllipse({385, Top + 20, 455, Top + 80});
  Canvas.DrawPath(SourceOf(Ring), 1);
  Pen.SetKind(TQXGPBrushKind::bkSolid);
  Canvas.DrawImage(*Tile, {490, Top + 10, 570, Top + 90}, 1);
  Canvas.SetInterpolationMode(TQXGPInterpolationMode::imNearestNeighbor);
  Canvas.DrawImage(*Tile, {590, Top + 10, 670, Top + 90}, 1);
  Canvas.SetInterpolationMode(TQXGPInterpolationMode::imDefault);
  Canvas.DrawImage(*Tile, {685, Top + 40, 693, Top + 48}, 1);
}

void DrawStripes(TQXGPCanvas& Canvas, const TRectF& R) {
  for (float X = R.Left; X < R.Right; X += 8) {
    Canvas.Brush().SetColor(static_cast<int>(X / 8) % 2 ? Ink : Thin);
    Canvas.FillRect({X, R.Top, X + 8, R.Bottom}, 1);
  }
}

void DrawClipsAndOpacity(TQXGPCanvas& Canvas) {
  const float Top = 5 * RowHeight;
  Canvas.Brush().SetKind(TQXGPBrushKind::bkSolid);
  const auto Clipped = [&](float Left, const auto& SetClip) {
    const TQXCanvasStateLock Lock(Canvas);
    SetClip(TPointF{Left + 50, Top + 50});
    DrawStripes(Canvas, {Left, Top, Left + 100, Top + 100});
  };
  Clipped(10, [&](TPointF C) {
    Canvas.IntersectClip(QXRect(C.X - 40, C.Y - 30, C.X + 40.5f, C.Y + 30));
  });
  Clipped(130,
          [&](TPointF C) { Canvas.IntersectClip(Star(C, 45).View(), TQXGPFillMode::fmAlternate); });
  Clipped(250, [&](TPointF C) {
    TQXGPRegion Region;
    Region.MakeEmpty();
    TQXPathGeometry Round;
    Round.AddEllipse({C.X - 45, C.Y - 40, C.X + 10, C.Y + 40});
    Region.Combine(Round.View(), TQXGPFillMode::fmWinding, TQXGPCombineMode::cmUnion);
    Region.Combine(Star(C + TPointF{15, 0}, 40).View(), TQXGPFillMode::fmWinding,
                   TQXGPCombineMode::cmUnion);
    Canvas.IntersectClip(Region);
  });
  for (int I = 0; I < 5; ++I) {
    TQXPathGeometry Round;
    const float X = 390 + 50 * static_cast<float>(I);
    Round.AddEllipse({X, Top + 15, X + 70, Top + 85});
    Canvas.Brush().SetColor(I % 2 ? 0xffd03020 : 0xff2060c0);
    Canvas.FillPath(SourceOf(Round), 0.2f + 0.15f * static_cast<float>(I));
  }
  Canvas.TrySmoothingMode(TQXGPSmoothingMode::smHighSpeed);
  Canvas.Brush().SetColor(Ink);
  Canvas.FillPath(SourceOf(Star({680, Top + 52}, 35)), 1);
  Canvas.TrySmoothingMode(TQXGPSmoothingMode::smDefault);
}

}  // namespace

void DrawSurfaceDemo(TQXGPCanvas& Canvas) {
  Canvas.Clear(Paper);
  DrawCaps(Canvas);
  DrawJoins(Canvas);
  DrawDashes(Canvas);
  DrawFillsAndGradients(Canvas);
  DrawPatterns(Canvas);
  DrawClipsAndOpacity(Canvas);
}

}  // namespace qxsvg::tools
