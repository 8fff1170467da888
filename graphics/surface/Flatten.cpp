#include "graphics/surface/Flatten.h"

#include <algorithm>
#include <cmath>

namespace qxsvg {

namespace {

constexpr float Huge = 1e30f, Far = QXFarthestPixel;

TPointF Middle(TPointF A, TPointF B) {
  return {A.X * 0.5f + B.X * 0.5f, A.Y * 0.5f + B.Y * 0.5f};
}

float Clamped(double V) {
  if (!(V > -Huge)) return -Huge;
  return V < Huge ? static_cast<float>(V) : Huge;
}

// Leaves out what a box does not show.
class TFigureClipper {
 public:
  TFigureClipper(const TRectF& Clip, float Tolerance, TQXLineBuffer& Target)
      : FClip(Clip), FTolerance(Tolerance), FTarget(Target) {}

  void Line(TPointF A, TPointF B);
  void Curve(TPointF P0, TPointF P1, TPointF P2, TPointF P3);

 private:
  void Put(TPointF A, TPointF B);
  void PutFar(TPointF A, TPointF B);
  bool IsOutside(float Top, float Bottom, float Left) const {
    return Bottom <= FClip.Top || Top >= FClip.Bottom || Left >= FClip.Right;
  }

  const TRectF FClip;
  const float FTolerance;
  TQXLineBuffer& FTarget;
  // Where the polyline in the buffer ends, if one is going on.
  TPointF FEnd;
  bool FIsOpen = false;
};

bool IsNear(TPointF P) {
  return std::abs(P.X) <= QXFarthestPixel && std::abs(P.Y) <= QXFarthestPixel;
}

void TFigureClipper::Put(TPointF A, TPointF B) {
  if (!FIsOpen || !(FEnd == A)) FTarget.MoveTo(A);
  FTarget.LineTo(B);
  FEnd = B;
  FIsOpen = true;
}

void TFigureClipper::Line(TPointF A, TPointF B) {
  if (IsOutside(std::min(A.Y, B.Y), std::max(A.Y, B.Y), std::min(A.X, B.X))) return;
  if (A.Y == B.Y) return;
  if (std::max(A.X, B.X) <= FClip.Left) A.X = B.X = FClip.Left;
  if (IsNear(A) && IsNear(B))
    Put(A, B);
  else
    PutFar(A, B);
}

// Cuts the line at the farthest rows and moves what is beyond the farthest columns onto them.
void TFigureClipper::PutFar(TPointF A, TPointF B) {
  const double DX = double{B.X} - A.X, DY = double{B.Y} - A.Y;
  const auto AtY = [&](float Y) {
    return TPointF{Clamped(A.X + DX * ((double{Y} - A.Y) / DY)), Y};
  };
  const TPointF P = std::abs(A.Y) > Far ? AtY(std::copysign(Far, A.Y)) : A;
  const TPointF Q = std::abs(B.Y) > Far ? AtY(std::copysign(Far, B.Y)) : B;
  const auto AtX = [&](float X) {
    const double Y = A.Y + DY * ((double{X} - A.X) / DX);
    return TPointF{X, std::clamp(Clamped(Y), std::min(P.Y, Q.Y), std::max(P.Y, Q.Y))};
  };
  const auto Near = [](float X) { return std::clamp(X, -Far, Far); };
  TPointF From{Near(P.X), P.Y};
  const TPointF To{Near(Q.X), Q.Y};
  if (From.X != To.X) {
    const auto Through = [&](TPointF Next) {
      Put(From, Next);
      From = Next;
    };
    if (P.X != From.X) Through(AtX(From.X));
    if (Q.X != To.X) Through(AtX(To.X));
  }
  Put(From, To);
}

// A curve of very many steps is halved first, so that the hidden halves cost nothing. Where the
// halves lie does not depend on the box. The stack holds one waiting half a level.
void TFigureClipper::Curve(TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
  constexpr std::uint32_t Levels = 24;
  std::array<std::array<TPointF, 4>, Levels + 2> Stack;
  std::array<std::uint8_t, Levels + 2> Depths;
  std::uint32_t Count = 1;
  Stack[0] = {P0, P1, P2, P3};
  Depths[0] = 0;
  while (Count != 0) {
    const auto [A, B, C, D] = Stack[--Count];
    const std::uint8_t Depth = Depths[Count];
    const auto [Left, Right] = std::minmax({A.X, B.X, C.X, D.X});
    const auto [Top, Bottom] = std::minmax({A.Y, B.Y, C.Y, D.Y});
    if (IsOutside(Top, Bottom, Left)) continue;
    if (Right <= FClip.Left) {
      Line(A, D);
      continue;
    }
    const std::uint32_t Steps = QXCurveSteps(A, B, C, D, FTolerance);
    if (Steps <= TQXLineBuffer::MaxReserve || Depth == Levels) {
      std::array<TPointF, TQXLineBuffer::MaxReserve> Points;
      const TQXCubic Cubic = TQXCubic::FromControls(A, B, C, D);
      TPointF Last = A;
      for (std::uint32_t At = 1; At < Steps;) {
        const std::uint32_t Part = std::min(Steps - At, TQXLineBuffer::MaxReserve);
        Cubic.Sample(At, Part, Steps, Points.data());
        for (std::uint32_t I = 0; I < Part; ++I) {
          Line(Last, Points[I]);
          Last = Points[I];
        }
        At += Part;
      }
      Line(Last, D);
      continue;
    }
    const TPointF AB = Middle(A, B), BC = Middle(B, C), CD = Middle(C, D);
    const TPointF ABC = Middle(AB, BC), BCD = Middle(BC, CD), M = Middle(ABC, BCD);
    Depths[Count] = Depths[Count + 1] = static_cast<std::uint8_t>(Depth + 1);
    Stack[Count++] = {M, BCD, CD, D};
    Stack[Count++] = {A, AB, ABC, M};
  }
}

void AddCurve(TPointF P0, const TPointF* Controls, float Tolerance, TQXLineBuffer& Target) {
  const std::uint32_t Steps = QXCurveSteps(P0, Controls[0], Controls[1], Controls[2], Tolerance);
  if (Steps > 1) {
    const TQXCubic Cubic = TQXCubic::FromControls(P0, Controls[0], Controls[1], Controls[2]);
    for (std::uint32_t At = 1; At < Steps;) {
      const std::uint32_t Part = std::min(Steps - At, TQXLineBuffer::MaxReserve);
      Cubic.Sample(At, Part, Steps, Target.Reserve(Part));
      Target.Commit(Part);
      At += Part;
    }
  }
  Target.LineTo(Controls[2]);
}

void FlattenInside(const TQXPathView& Path, float Tolerance, TQXLineBuffer& Target) {
  TPointF Start;
  bool IsOpen = false;
  const std::size_t Count = Path.Count();
  for (std::size_t I = 0; I < Count; ++I) {
    const TPointF* P = &Path.Points[I];
    switch (Path.Kinds[I]) {
      case TQXPathPointKind::pkMove:
        if (IsOpen) Target.LineTo(Start);
        Start = *P;
        Target.MoveTo(Start);
        IsOpen = true;
        break;
      case TQXPathPointKind::pkLine: Target.LineTo(*P); break;
      case TQXPathPointKind::pkCurve:
        AddCurve(Target.Last(), P, Tolerance, Target);
        I += 2;
        break;
      case TQXPathPointKind::pkClose: Target.LineTo(Start); break;
    }
  }
  if (IsOpen) Target.LineTo(Start);
}

void FlattenClipped(const TQXPathView& Path, const TRectF& Clip, float Tolerance,
                    TQXLineBuffer& Target) {
  TFigureClipper Clipper(Clip, Tolerance, Target);
  TPointF Start, Last;
  const std::size_t Count = Path.Count();
  for (std::size_t I = 0; I < Count; ++I) {
    const TPointF* P = &Path.Points[I];
    switch (Path.Kinds[I]) {
      case TQXPathPointKind::pkMove:
        Clipper.Line(Last, Start);
        Start = Last = *P;
        break;
      case TQXPathPointKind::pkLine:
        Clipper.Line(Last, *P);
        Last = *P;
        break;
      case TQXPathPointKind::pkCurve:
        Clipper.Curve(Last, P[0], P[1], P[2]);
        Last = P[2];
        I += 2;
        break;
      case TQXPathPointKind::pkClose:
        Clipper.Line(Last, Start);
        Last = Start;
        break;
    }
  }
  Clipper.Line(Last, Start);
}

}  // namespace

TQXCubic TQXCubic::FromControls(TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
  const TPointF C = (P1 - P0) * 3.0f;
  const TPointF B = (P2 - P1) * 3.0f - C;
  return {P3 - P0 - C - B, B, C, P0};
}

void TQXCubic::Sample(std::uint32_t First, std::uint32_t Count, std::uint32_t Steps,
                      TPointF* Out) const {
  const float Step = 1.0f / static_cast<float>(Steps);
  const auto Base = static_cast<std::int32_t>(First);
  for (std::int32_t I = 0; I < static_cast<std::int32_t>(Count); ++I)
    Out[I] = At(static_cast<float>(Base + I) * Step);
}

void TQXCubic::SampleTangents(std::uint32_t First, std::uint32_t Count, std::uint32_t Steps,
                              TPointF* Out) const {
  const float Step = 1.0f / static_cast<float>(Steps);
  const auto Base = static_cast<std::int32_t>(First);
  const TPointF A3 = A * 3.0f, B2 = B * 2.0f;
  for (std::int32_t I = 0; I < static_cast<std::int32_t>(Count); ++I) {
    const float T = static_cast<float>(Base + I) * Step;
    Out[I] = {(A3.X * T + B2.X) * T + C.X, (A3.Y * T + B2.Y) * T + C.Y};
  }
}

// Between even steps of 1/N a cubic leaves its chords by at most 6 max(second difference) / (8
// N^2), the second differences being those of its four points.
std::uint32_t QXCurveSteps(TPointF P0, TPointF P1, TPointF P2, TPointF P3, float Tolerance) {
  const float AX = P0.X - 2 * P1.X + P2.X, AY = P0.Y - 2 * P1.Y + P2.Y;
  const float BX = P1.X - 2 * P2.X + P3.X, BY = P1.Y - 2 * P2.Y + P3.Y;
  const float Most = std::max(AX * AX + AY * AY, BX * BX + BY * BY);
  const float Steps = std::sqrt(0.75f / Tolerance * std::sqrt(Most));
  if (!(Steps < static_cast<float>(QXMaxCurveSteps))) return QXMaxCurveSteps;
  return 1 + static_cast<std::uint32_t>(Steps);
}

TRectF QXPointsBox(std::span<const TPointF> Points) {
  // Four boxes side by side, so that the comparisons do not wait for one another.
  constexpr std::size_t Lanes = 4;
  if (Points.size() < Lanes) {
    TRectF Box{Huge, Huge, -Huge, -Huge};
    for (const TPointF P : Points) Box = TRectF::Hull(Box, {P.X, P.Y, P.X, P.Y});
    return Box;
  }
  TPointF Low[Lanes], High[Lanes];
  std::fill_n(Low, Lanes, TPointF{Huge, Huge});
  std::fill_n(High, Lanes, TPointF{-Huge, -Huge});
  const std::size_t Whole = Points.size() - Points.size() % Lanes;
  const auto Widen = [&](std::size_t Lane, TPointF P) {
    Low[Lane] = {std::min(Low[Lane].X, P.X), std::min(Low[Lane].Y, P.Y)};
    High[Lane] = {std::max(High[Lane].X, P.X), std::max(High[Lane].Y, P.Y)};
  };
  for (std::size_t I = 0; I < Whole; I += Lanes)
    for (std::size_t Lane = 0; Lane < Lanes; ++Lane) Widen(Lane, Points[I + Lane]);
  for (std::size_t I = Whole; I < Points.size(); ++I) Widen(0, Points[I]);
  TRectF Box{Low[0].X, Low[0].Y, High[0].X, High[0].Y};
  for (std::size_t Lane = 1; Lane < Lanes; ++Lane)
    Box = TRectF::Hull(Box, {Low[Lane].X, Low[Lane].Y, High[Lane].X, High[Lane].Y});
  return Box;
}

TRectF QXTransformPoints(std::span<const TPointF> Points, const TMatrix& M, TPointF* Out) {
  const double A = M.m11, B = M.m12, C = M.m21, D = M.m22, E = M.m31, F = M.m32;
  TRectF Box{Huge, Huge, -Huge, -Huge};
  for (std::size_t I = 0; I < Points.size(); ++I) {
    const double X = Points[I].X, Y = Points[I].Y;
    const double TX = std::clamp<double>(X * A + Y * C + E, -Huge, Huge);
    const double TY = std::clamp<double>(X * B + Y * D + F, -Huge, Huge);
    const TPointF P{static_cast<float>(TX), static_cast<float>(TY)};
    Out[I] = P;
    Box = TRectF::Hull(Box, {P.X, P.Y, P.X, P.Y});
  }
  return Box;
}

void QXFlattenFigures(const TQXPathView& Path, const TRectF& Clip, bool IsInside, float Tolerance,
                      TQXLineBuffer& Target) {
  if (IsInside)
    FlattenInside(Path, Tolerance, Target);
  else
    FlattenClipped(Path, Clip, Tolerance, Target);
}

}  // namespace qxsvg
