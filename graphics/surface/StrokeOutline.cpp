#include "graphics/surface/StrokeOutline.h"

#include <algorithm>
#include <cmath>

namespace qxsvg {

namespace {

float DotOf(TPointF A, TPointF B) {
  return A.X * B.X + A.Y * B.Y;
}
float CrossOf(TPointF A, TPointF B) {
  return A.X * B.Y - A.Y * B.X;
}

// Sides that turn by less than this many pixels need no join.
constexpr float FlatTurn = 0.02f;
// A full turn has at most so many steps, so that rotating by one comes to an end.
constexpr double FinestCos = 0.999995;
// Half the width of a wide pen, in tolerances: some thousand pixels.
constexpr float WideFrom = 40'000;

}  // namespace

TStrokeOutline::TStrokeOutline(const TQXStrokeStyle& Style, const TMatrix& ToDevice,
                               float Tolerance, const TRectF& Shown, TQXLineBuffer& Left,
                               TQXLineBuffer& Right)
    : FStyle(Style),
      FToDevice(ToDevice),
      FShown(Shown),
      FHalf(Style.Width / 2),
      FTolerance(Tolerance),
      FHasMatrix(!IsIdentityMatrix(ToDevice)),
      FIsWide(FHalf > WideFrom * Tolerance),
      FMiterLimit2(Style.MiterLimit * Style.MiterLimit),
      FLeft(Left),
      FRight(Right) {
  // A chord of a circle of radius R over the angle A leaves it by R (1 - cos(A / 2)).
  const double HalfCos = 1 - std::min(double{Tolerance} / FHalf, 1.0);
  const double Cos = std::clamp(2 * HalfCos * HalfCos - 1, 0.0, FinestCos);
  // Points on the circle would make every arc too small; half of the error goes to either side.
  FBulge = static_cast<float>(1 + (1 - std::sqrt((1 + Cos) / 2)) / 2);
  FStepCos = static_cast<float>(Cos);
  FStepSin = static_cast<float>(std::sqrt(1 - Cos * Cos));
}

void TStrokeOutline::Begin(TPointF P, TPointF Direction, TQXGPLineCap Kind) {
  FP = P;
  FDirection = Direction;
  FLength = FRetraced = 0;
  FIsOpen = true;
  FIsRing = false;
  const TPointF N = Normal(Direction);
  FRight.MoveTo(Map(P - N));
  FLeft.MoveTo(Map(P - N));
  Cap(N * -1.0f, Direction * -1.0f, Kind);
  FLeft.LineTo(Map(P + N));
}

void TStrokeOutline::BeginRing(TPointF P, TPointF Direction) {
  FP = FRingP = P;
  FDirection = FRingDirection = Direction;
  FLength = FRetraced = 0;
  FIsOpen = FIsRing = true;
  const TPointF N = Normal(Direction);
  FRight.MoveTo(Map(P - N));
  FLeft.MoveTo(Map(P + N));
}

void TStrokeOutline::End(TQXGPLineCap Kind) {
  const TPointF N = Normal(FDirection);
  FLeft.LineTo(Map(FP + N));
  Cap(N, FDirection, Kind);
  FLeft.LineTo(Map(FP - N));
  FRight.LineTo(Map(FP - N));
  if (FIsRing) {
    // The ring's two sides were begun apart.
    const TPointF First = Normal(FRingDirection);
    FLeft.MoveTo(Map(FRingP - First));
    FLeft.LineTo(Map(FRingP + First));
  }
  FIsOpen = false;
}

void TStrokeOutline::EndRing() {
  const TPointF N = Normal(FRingDirection);
  FLeft.LineTo(Map(FRingP + N));
  FRight.LineTo(Map(FRingP - N));
  FIsOpen = false;
}

void TStrokeOutline::StartCapAlone(TPointF P, TPointF Direction, TQXGPLineCap Kind) {
  FP = P;
  const TPointF N = Normal(Direction);
  FLeft.MoveTo(Map(P - N));
  Cap(N * -1.0f, Direction * -1.0f, Kind);
  FLeft.LineTo(Map(P + N));
  FLeft.LineTo(Map(P - N));
}

// From P + From around the end that lies in Direction; the two ends themselves are the caller's.
void TStrokeOutline::Cap(TPointF From, TPointF Direction, TQXGPLineCap Kind) {
  const TPointF Out = Direction * FHalf;
  switch (Kind) {
    case TQXGPLineCap::lcFlat: break;
    case TQXGPLineCap::lcSquare:
      FLeft.LineTo(Map(FP + From + Out));
      FLeft.LineTo(Map(FP - From + Out));
      break;
    case TQXGPLineCap::lcRound: Arc(FLeft, From, From * -1.0f, -1); break;
    case TQXGPLineCap::lcTriangle: FLeft.LineTo(Map(FP + Out)); break;
  }
}

// The points strictly between P + From and P + To, at most half a turn away.
void TStrokeOutline::Arc(TQXLineBuffer& Side, TPointF From, TPointF To, float Turn) {
  // Each level takes three quarters of the error away: more than single precision can tell.
  constexpr int Levels = 14;
  if (FIsWide) return WideArc(Side, From, To, Turn, Levels);
  const float Sin = std::copysign(FStepSin, Turn);
  const float Near = FHalf * FHalf * FStepCos;
  for (int Steps = 0; Steps < 4096 && DotOf(From, To) < Near; ++Steps) {
    From = {From.X * FStepCos - From.Y * Sin, From.X * Sin + From.Y * FStepCos};
    Side.LineTo(Map(FP + From * FBulge));
  }
}

// The same by halves. A piece that is not shown stays its chord, which changes no winding where it
// can be seen.
void TStrokeOutline::WideArc(TQXLineBuffer& Side, TPointF From, TPointF To, float Turn,
                             int Levels) {
  const TPointF Chord = To - From;
  const double Part = std::hypot(double{Chord.X}, double{Chord.Y}) / FHalf / 2;
  const auto Height = static_cast<float>(FHalf * (1 - std::sqrt(std::max(1 - Part * Part, 0.0))));
  // Points that far from the path are known to so many places only.
  constexpr float Places = 6e-8f;
  if (Levels == 0 || !(Height > std::max(FTolerance / 2, FHalf * Places))) return;
  TRectF Box = QXRect(FP + From, FP + To).Normalized();
  const float Margin = Height + FHalf * (16 * Places);
  QXInflateRect(Box, Margin, Margin);
  if (Box.Right < FShown.Left || Box.Left > FShown.Right || Box.Bottom < FShown.Top ||
      Box.Top > FShown.Bottom)
    return;
  const TPointF Beside = Turn > 0 ? TPointF{Chord.Y, -Chord.X} : TPointF{-Chord.Y, Chord.X};
  const TPointF Way = Part > 0.5 ? Beside : From + To;
  const double Scale = FHalf / std::hypot(double{Way.X}, double{Way.Y});
  const TPointF Middle{static_cast<float>(Way.X * Scale), static_cast<float>(Way.Y * Scale)};
  WideArc(Side, From, Middle, Turn, Levels - 1);
  Side.LineTo(Map(FP + Middle));
  WideArc(Side, Middle, To, Turn, Levels - 1);
}

void TStrokeOutline::OuterJoin(TQXLineBuffer& Side, TPointF From, TPointF To, float Dot, float Turn,
                               TQXGPStrokeJoin Join) {
  const bool IsSmall = Dot >= FStepCos && !FIsWide;
  const bool IsMiter = Join == TQXGPStrokeJoin::sjMiter && FMiterLimit2 * (1 + Dot) >= 2;
  if (IsMiter || (IsSmall && Join == TQXGPStrokeJoin::sjRound && Dot > 0.5f)) {
    Side.LineTo(Map(FP + (From + To) * (1 / (1 + Dot))));
    return;
  }
  Side.LineTo(Map(FP + From));
  if (Join == TQXGPStrokeJoin::sjRound) Arc(Side, From, To, Turn);
  Side.LineTo(Map(FP + To));
}

void TStrokeOutline::Turn(TPointF Direction, float Length, TQXGPStrokeJoin Join) {
  const float Cross = CrossOf(FDirection, Direction), Dot = DotOf(FDirection, Direction);
  const TPointF From = Normal(FDirection), To = Normal(Direction);
  const float Size = std::abs(Cross);
  const float Flat = FlatTurn * (FTolerance / QXFlattenTolerance);
  FDirection = Direction;
  FLength -= FRetraced;
  FRetraced = 0;
  if (Dot > 0 && Size * FHalf < Flat) {
    FLeft.LineTo(Map(FP + To));
    FRight.LineTo(Map(FP - To));
    return;
  }
  const bool TurnsLeft = Cross > 0;
  TQXLineBuffer& Inner = TurnsLeft ? FLeft : FRight;
  TQXLineBuffer& Outer = TurnsLeft ? FRight : FLeft;
  const float Side = TurnsLeft ? -1.0f : 1.0f;
  const TPointF OuterFrom = From * Side, OuterTo = To * Side;
  // Where the inner sides of both segments meet; they do so only if both are long enough. Otherwise
  // the way leads through the point itself, so that no part of the outline turns over.
  const float Needed = FHalf * Size * std::max(1.0f, 1 / (1 + Dot));
  const float Shorter = std::min(FLength, Length);
  if (Dot > -0.99f && Needed * 2 <= Shorter) {
    Inner.LineTo(Map(FP - (OuterFrom + OuterTo) * (1 / (1 + Dot))));
  } else if (Dot < 0 && Size * std::max(Shorter, FHalf) < Flat) {
    // Right back along the same line: its sides are drawn once, by the outer side, since pixels
    // that the outline winds around twice at its edge would be twice as strong.
    const TPointF Back = Direction * Shorter;
    Inner.LineTo(Map(FP + Back - OuterFrom));
    Inner.LineTo(Map(FP + Back - OuterTo));
    FRetraced = Shorter;
  } else {
    Inner.LineTo(Map(FP - OuterFrom));
    Inner.LineTo(Map(FP));
    Inner.LineTo(Map(FP - OuterTo));
  }
  OuterJoin(Outer, OuterFrom, OuterTo, Dot, -Side, Join);
}

void TStrokeOutline::Put(TQXLineBuffer& Side, std::uint32_t Count, const TPointF* Points) {
  TPointF* Out = Side.Reserve(Count);
  if (FHasMatrix)
    for (std::uint32_t I = 0; I < Count; ++I) Out[I] = QXMatrixTransform(FToDevice, Points[I]);
  else
    std::copy_n(Points, Count, Out);
  Side.Commit(Count);
}

// False where a side goes backwards or turns too far in one step to be drawn as one line.
bool TStrokeOutline::CurveSides(const TPointF* Points, const TPointF* Tangents, std::uint32_t Count,
                                TPointF* Left, TPointF* Right) const {
  for (std::uint32_t I = 0; I < Count; ++I) {
    const TPointF N = Normal(Tangents[I]);
    Left[I] = Points[I] + N;
    Right[I] = Points[I] - N;
  }
  float Least = 1, Closest = 1;
  for (std::uint32_t I = 0; I + 1 < Count; ++I) {
    const TPointF Chord = Points[I + 1] - Points[I];
    Least = std::min(Least, DotOf(Left[I + 1] - Left[I], Chord));
    Least = std::min(Least, DotOf(Right[I + 1] - Right[I], Chord));
    Closest = std::min(Closest, DotOf(Tangents[I], Tangents[I + 1]));
  }
  return Least >= 0 && Closest >= std::min(FStepCos * 0.9f, 0.7f);
}

void TStrokeOutline::Curve(const TPointF* Points, const TPointF* Tangents, std::uint32_t Count) {
  std::array<TPointF, TQXLineBuffer::MaxReserve> Left, Right;
  if (!FIsWide && CurveSides(Points, Tangents, Count, Left.data(), Right.data())) {
    Put(FLeft, Count, Left.data());
    Put(FRight, Count, Right.data());
    FDirection = Tangents[Count - 1];
    Advance(Points[Count - 1], 0);
    return;
  }
  for (std::uint32_t I = 0; I + 1 < Count; ++I) {
    const TPointF Chord = Points[I + 1] - Points[I];
    const float Length = std::sqrt(DotOf(Chord, Chord));
    if (!(Length > 0)) continue;
    TurnWithin(Chord * (1 / Length), Length);
    Advance(Points[I + 1], Length);
  }
  TurnWithin(Tangents[Count - 1], 0);
  Advance(Points[Count - 1], 0);
}

}  // namespace qxsvg
