#include "graphics/surface/Stroker.h"

#include <algorithm>
#include <cmath>

#include "foundation/Limits.h"
#include "graphics/surface/Pen.h"
#include "graphics/surface/StrokeOutline.h"

namespace qxsvg {

namespace {

// A pattern that repeats within this many pixels is drawn with so many repetitions taken as one
// that it does not: nobody sees the difference, and the number of marks stays within what is
// visible.
constexpr double LeastPeriod = 0.25;
// So many repetitions away the places of marks can no longer be told.
constexpr double MostCycles = 1e12;
// Gaps up to this many pixels are not seen between the round or pointed marks of a wide pen.
constexpr double LeastGap = 0.5;
// A mark of a wide pen goes through the whole surface and counts for so many.
constexpr std::size_t WideMarkCost = 16;
// Miters that reach farther than this many widths are not looked for outside the clip.
constexpr float FarthestMiter = 100;
// Keeps boxes finite.
constexpr float FarthestReach = 1e30f;

struct TFigure {
  std::size_t First = 0, Last = 0;
  TPointF Start;
  bool IsClosed = false;
};

struct TDashes {
  std::span<const double> Edges;
  double Offset = 0;
  double Period() const { return Edges.back(); }
};

struct TCurvePoints {
  std::array<TPointF, TQXLineBuffer::MaxReserve> Points, Tangents;
  std::uint32_t Count = 0;
};

float LengthOf(TPointF V) {
  return std::sqrt(V.X * V.X + V.Y * V.Y);
}
TPointF Middle(TPointF A, TPointF B) {
  return {A.X * 0.5f + B.X * 0.5f, A.Y * 0.5f + B.Y * 0.5f};
}

// The unit vector and length from A to B; a length of 0 where they are the same point.
struct TWay {
  TPointF Direction;
  double Length = 0;
  TWay(TPointF A, TPointF B) {
    const double DX = double{B.X} - A.X, DY = double{B.Y} - A.Y;
    Length = std::sqrt(DX * DX + DY * DY);
    if (Length > 0) Direction = {static_cast<float>(DX / Length), static_cast<float>(DY / Length)};
  }
  TPointF At(TPointF A, double Distance) const {
    return {static_cast<float>(A.X + Distance * Direction.X),
            static_cast<float>(A.Y + Distance * Direction.Y)};
  }
};

TRectF Inflated(TRectF R, float By) {
  QXInflateRect(R, By, By);
  return R;
}

bool HasCaps(const TQXStrokeStyle& Style) {
  return Style.DashCap != TQXGPDashCap::dcFlat || Style.StartCap != TQXGPLineCap::lcFlat ||
         Style.EndCap != TQXGPLineCap::lcFlat;
}

// Steps that keep both the curve and its sides within the tolerance: the sides of a chord that
// turns by A leave the curve's by about HalfWidth A^2 / 8 more. The sides of wide pens are arcs.
std::uint32_t StrokedSteps(const std::array<TPointF, 4>& P, const TStrokeOutline& Outline) {
  const float Tolerance = Outline.Tolerance();
  const std::uint32_t Least = QXCurveSteps(P[0], P[1], P[2], P[3], Tolerance);
  if (Outline.IsWide()) return Least;
  const auto Base = static_cast<float>(Least);
  float Turn = 0;
  TPointF Before;
  bool HasBefore = false;
  for (int I = 0; I < 3; ++I) {
    const TPointF Leg = P[I + 1] - P[I];
    const float Length = LengthOf(Leg);
    if (!(Length > 0)) continue;
    const TPointF Now = Leg * (1 / Length);
    if (HasBefore) Turn += LengthOf(Now - Before);
    Before = Now;
    HasBefore = true;
  }
  const float Turns = 1.3f * Turn * std::sqrt(Outline.HalfWidth() / Tolerance / 8);
  const float Steps = std::sqrt(Base * Base + Turns * Turns);
  // Legs too long for a float give no number.
  return Steps < static_cast<float>(QXMaxCurveSteps) ? 1 + static_cast<std::uint32_t>(Steps)
                                                     : QXMaxCurveSteps;
}

TPointF FirstWay(TPointF From, TPointF A, TPointF B, TPointF C) {
  for (const TPointF To : {A, B, C})
    if (const TWay Way(From, To); Way.Length > 0) return Way.Direction;
  return {1, 0};
}

void SampleCurve(const std::array<TPointF, 4>& P, std::uint32_t Steps, TCurvePoints& Out) {
  const TQXCubic Cubic = TQXCubic::FromControls(P[0], P[1], P[2], P[3]);
  Out.Count = Steps + 1;
  Cubic.Sample(0, Out.Count, Steps, Out.Points.data());
  Cubic.SampleTangents(0, Out.Count, Steps, Out.Tangents.data());
  Out.Points[0] = P[0];
  Out.Points[Steps] = P[3];
  for (std::uint32_t I = 0; I < Out.Count; ++I) {
    TPointF& T = Out.Tangents[I];
    const float Square = std::max(T.X * T.X + T.Y * T.Y, 1e-30f);
    T = T * (1 / std::sqrt(Square));
  }
  // Where the curve stands still its tangent is that of what follows or what came before.
  Out.Tangents[0] = FirstWay(P[0], P[1], P[2], P[3]);
  Out.Tangents[Steps] = FirstWay(P[3], P[2], P[1], P[0]) * -1.0f;
  for (std::uint32_t I = 1; I < Steps; ++I)
    if (const TPointF T = Out.Tangents[I]; !(T.X * T.X + T.Y * T.Y > 0.5f))
      Out.Tangents[I] = Out.Tangents[I - 1];
}

class TFigureStroker {
 public:
  TFigureStroker(const TQXStrokeStyle& Style, TStrokeOutline& Outline, const TRectF& Shown,
                 float Far, const TDashes* Dashes)
      : FStyle(Style),
        FOutline(Outline),
        FShown(Shown),
        FVisible(Inflated(Shown, Style.Reach())),
        FFar(Far),
        FCapReach(HasCaps(Style) ? Outline.HalfWidth() : 0),
        FMarkCost(Outline.IsWide() ? WideMarkCost : 1),
        FDashes(Dashes) {}

  void Draw(const TQXPathView& Path, const TFigure& Figure);

 private:
  void Line(TPointF P);
  void Curve(TPointF C1, TPointF C2, TPointF P);
  void CurvePart(const std::array<TPointF, 4>& P, std::uint32_t Steps);
  void Close();
  void Finish();
  void Dot();
  void Pass(TPointF Direction, float Length);
  void TurnTo(TPointF Direction, float Length);
  bool IsVisible(std::initializer_list<TPointF> Points) const;

  void BeginDashes();
  void DashLine(TPointF P, bool IsWithin);
  void BeginMark(const TWay& Way, double To, TPointF P);
  void PassDashes(const std::array<TPointF, 4>& P);
  void JumpTo(double Distance);
  void NextEdge();
  double EdgeAt(std::size_t Index) const {
    return static_cast<double>(FCycle) * FDashes->Period() + FDashes->Edges[Index] -
           FDashes->Offset;
  }
  void FinishDashes();
  TQXGPLineCap DashCap() const { return static_cast<TQXGPLineCap>(FStyle.DashCap); }

  const TQXStrokeStyle& FStyle;
  TStrokeOutline& FOutline;
  // What the surface shows, and what the path must touch for its stroke to be seen.
  const TRectF FShown, FVisible;
  const float FFar, FCapReach;
  const std::size_t FMarkCost;
  const TDashes* FDashes;

  bool FIsClosed = false, FHasSegment = false, FWasCut = false;
  TPointF FAt, FStart, FStartDirection, FDirection;
  float FStartLength = 0, FLength = 0;

  // Along the figure; the mark or gap FIndex of repetition FCycle is the one that holds it.
  double FDistance = 0, FStartMark = 0;
  std::int64_t FCycle = 0;
  std::size_t FIndex = 0, FMarks = 0;
  bool FStartsOn = false;
  TCurvePoints FCurve;
};

bool TFigureStroker::IsVisible(std::initializer_list<TPointF> Points) const {
  const TRectF Box = QXPointsBox({Points.begin(), Points.size()});
  return Box.Left <= FVisible.Right && Box.Right >= FVisible.Left && Box.Top <= FVisible.Bottom &&
         Box.Bottom >= FVisible.Top;
}

void TFigureStroker::Draw(const TQXPathView& Path, const TFigure& Figure) {
  FIsClosed = Figure.IsClosed;
  FHasSegment = FWasCut = false;
  FAt = FStart = Figure.Start;
  if (FDashes) BeginDashes();
  for (std::size_t I = Figure.First; I < Figure.Last; ++I) {
    const TPointF* P = &Path.Points[I];
    if (Path.Kinds[I] == TQXPathPointKind::pkCurve) {
      Curve(P[0], P[1], P[2]);
      I += 2;
    } else if (Path.Kinds[I] == TQXPathPointKind::pkLine) {
      Line(*P);
    }
  }
  if (FIsClosed) Line(FStart);
  if (!FHasSegment)
    // A figure that only moves has no stroke; one whose segments have no length has its caps.
    return Figure.First < Figure.Last || Figure.IsClosed ? Dot() : void();
  if (FDashes)
    FinishDashes();
  else
    Finish();
}

void TFigureStroker::Dot() {
  if (FStyle.StartCap == TQXGPLineCap::lcFlat || FStyle.EndCap == TQXGPLineCap::lcFlat) return;
  if ((FDashes && !FStartsOn) || !IsVisible({FAt})) return;
  FOutline.Begin(FAt, {1, 0}, FStyle.StartCap);
  FOutline.End(FStyle.EndCap);
}

// Makes the outline go on from here in that direction. Where the segments before were left out, it
// begins with the last of them, so that the turn is the same as if they had not been.
void TFigureStroker::TurnTo(TPointF Direction, float Length) {
  if (!FHasSegment) {
    if (FIsClosed)
      FOutline.BeginRing(FAt, Direction);
    else
      FOutline.Begin(FAt, Direction, FStyle.StartCap);
    return;
  }
  if (!FOutline.IsOpen()) {
    FOutline.Begin(FAt, FDirection, TQXGPLineCap::lcFlat);
    FOutline.Advance(FAt, FLength);
  }
  FOutline.Turn(Direction, Length);
}

// Leaves a segment out that begins in Direction: no more than the turn into it is drawn.
void TFigureStroker::Pass(TPointF Direction, float Length) {
  FWasCut = true;
  if (!FOutline.IsOpen()) return;
  FOutline.Turn(Direction, Length);
  FOutline.End(TQXGPLineCap::lcFlat);
}

void TFigureStroker::Line(TPointF P) {
  if (FDashes) return DashLine(P, false);
  const TWay Way(FAt, P);
  if (!(Way.Length > 0)) return;
  const auto Length = static_cast<float>(Way.Length);
  const bool Shows = IsVisible({FAt, P});
  if (!Shows) {
    Pass(Way.Direction, Length);
  } else {
    const auto IsFar = [&](TPointF Q) { return std::abs(Q.X) > FFar || std::abs(Q.Y) > FFar; };
    // What is far away is left out by the length, so that the outline stays within numbers that
    // tell one pixel from the next.
    const auto Along = [&](double Distance) { return Way.At(FAt, Distance); };
    if (!IsFar(FAt) && !IsFar(P)) {
      TurnTo(Way.Direction, Length);
      FOutline.Advance(P, Length);
    } else {
      const double ToMiddle = -(double{FAt.X} * Way.Direction.X + double{FAt.Y} * Way.Direction.Y);
      const double From = std::clamp(ToMiddle - FFar, 0.0, Way.Length);
      const double To = std::clamp(ToMiddle + FFar, 0.0, Way.Length);
      if (IsFar(FAt)) {
        Pass(Way.Direction, Length);
        FOutline.Begin(Along(From), Way.Direction, TQXGPLineCap::lcFlat);
      } else {
        TurnTo(Way.Direction, Length);
      }
      FOutline.Advance(Along(To), Length);
      if (IsFar(P)) {
        FOutline.End(TQXGPLineCap::lcFlat);
        FWasCut = true;
      }
    }
  }
  if (!FHasSegment) {
    FStartDirection = Way.Direction;
    FStartLength = Length;
    FHasSegment = true;
  }
  FAt = P;
  FDirection = Way.Direction;
  FLength = Length;
}

// A long curve is halved, so that hidden halves cost little; see QXFlattenFigures.
void TFigureStroker::Curve(TPointF C1, TPointF C2, TPointF P) {
  // Sixty thousand steps in all, enough for curves of a hundred million pixels. A wide pen, which
  // shows everywhere, gets one part's share.
  constexpr std::uint32_t MostLevels = 7;
  const std::uint32_t Levels = FOutline.IsWide() ? 0 : MostLevels;
  std::array<std::array<TPointF, 4>, MostLevels + 2> Stack;
  std::array<std::uint32_t, MostLevels + 2> Depths;
  if (FAt == C1 && C1 == C2 && C2 == P) return;
  std::uint32_t Count = 1;
  Stack[0] = {FAt, C1, C2, P};
  Depths[0] = 0;
  while (Count != 0) {
    const std::array<TPointF, 4> Part = Stack[--Count];
    const std::uint32_t Depth = Depths[Count];
    const std::uint32_t Steps = StrokedSteps(Part, FOutline);
    const bool Shows = (FDashes && Depth == 0 && Steps < TQXLineBuffer::MaxReserve) ||
                       IsVisible({Part[0], Part[1], Part[2], Part[3]});
    if (!Shows || Steps < TQXLineBuffer::MaxReserve || Depth == Levels) {
      CurvePart(Part, Shows ? std::min(Steps, TQXLineBuffer::MaxReserve - 1) : 0);
      continue;
    }
    const TPointF AB = Middle(Part[0], Part[1]), BC = Middle(Part[1], Part[2]),
                  CD = Middle(Part[2], Part[3]);
    const TPointF ABC = Middle(AB, BC), BCD = Middle(BC, CD), M = Middle(ABC, BCD);
    Depths[Count] = Depths[Count + 1] = Depth + 1;
    Stack[Count++] = {M, BCD, CD, Part[3]};
    Stack[Count++] = {Part[0], AB, ABC, M};
  }
}

// No steps: the part is not seen.
void TFigureStroker::CurvePart(const std::array<TPointF, 4>& P, std::uint32_t Steps) {
  if (P[0] == P[1] && P[1] == P[2] && P[2] == P[3]) return;
  if (FDashes && Steps == 0) return PassDashes(P);
  const TPointF First = FirstWay(P[0], P[1], P[2], P[3]);
  const TPointF Last = FirstWay(P[3], P[2], P[1], P[0]) * -1.0f;
  if (FDashes) {
    // Corners are between the curves, not between their chords.
    if (FOutline.IsOpen()) {
      FOutline.Turn(First, 0);
      FOutline.Advance(P[0], 0);
    }
    SampleCurve(P, Steps, FCurve);
    for (std::uint32_t I = 1; I <= Steps; ++I) DashLine(FCurve.Points[I], true);
    if (FOutline.IsOpen()) {
      FOutline.TurnWithin(Last, 0);
      FOutline.Advance(P[3], 0);
    }
    return;
  }
  if (Steps == 0) {
    Pass(First, 0);
  } else {
    SampleCurve(P, Steps, FCurve);
    TurnTo(First, 0);
    FOutline.Curve(FCurve.Points.data(), FCurve.Tangents.data(), FCurve.Count);
  }
  if (!FHasSegment) {
    FStartDirection = First;
    FStartLength = 0;
    FHasSegment = true;
  }
  FAt = P[3];
  FDirection = Last;
  FLength = 0;
}

void TFigureStroker::Finish() {
  if (!FIsClosed) {
    if (FOutline.IsOpen()) FOutline.End(FStyle.EndCap);
    return;
  }
  TurnTo(FStartDirection, FStartLength);
  if (FWasCut)
    FOutline.End(TQXGPLineCap::lcFlat);
  else
    FOutline.EndRing();
}

void TFigureStroker::BeginDashes() {
  FDistance = 0;
  JumpTo(0);
  FStartsOn = FIndex % 2 == 0;
  FStartMark = EdgeAt(FIndex + 1);
}

// Finds the mark or gap that holds the place; a mark of no length does not hold its own.
void TFigureStroker::JumpTo(double Distance) {
  const double Along = Distance + FDashes->Offset, Period = FDashes->Period();
  const double Cycle = std::floor(Along / Period);
  FCycle = static_cast<std::int64_t>(std::clamp(Cycle, -MostCycles, MostCycles));
  if (std::abs(Cycle) > MostCycles) FMarks = Limits::DashCount;
  const double Rest = std::clamp(Along - Cycle * Period, 0.0, Period);
  const auto Found = std::upper_bound(FDashes->Edges.begin(), FDashes->Edges.end() - 1, Rest);
  FIndex = static_cast<std::size_t>(Found - FDashes->Edges.begin()) - 1;
  // A mark of no length right here is the first to be met.
  while (FIndex > 0 && FDashes->Edges[FIndex - 1] == Rest) --FIndex;
}

void TFigureStroker::NextEdge() {
  if (++FIndex + 1 == FDashes->Edges.size()) {
    FIndex = 0;
    ++FCycle;
  }
}

void TFigureStroker::DashLine(TPointF P, bool IsWithin) {
  const TWay Way(FAt, P);
  if (!(Way.Length > 0)) return;
  const double From = FDistance, To = From + Way.Length;
  // The part whose marks can be seen.
  double Low = From, High = To;
  const auto Cut = [&](double Origin, double Rate, double Least, double Most) {
    if (Rate == 0) {
      if (Origin < Least || Origin > Most) Low = High + 1;
      return;
    }
    const double A = From + (Least - Origin) / Rate, B = From + (Most - Origin) / Rate;
    Low = std::max(Low, std::min(A, B));
    High = std::min(High, std::max(A, B));
  };
  Cut(FAt.X, Way.Direction.X, FVisible.Left, FVisible.Right);
  Cut(FAt.Y, Way.Direction.Y, FVisible.Top, FVisible.Bottom);

  if (FOutline.IsOpen()) {
    // What counts for the corner is how far the mark goes on, not the segment. After too many marks
    // the last goes on to the end.
    const double End = FMarks > Limits::DashCount ? To : EdgeAt(FIndex + 1);
    const auto Rest = static_cast<float>(std::min(End, To) - From);
    if (IsWithin)
      FOutline.TurnWithin(Way.Direction, Rest);
    else
      FOutline.Turn(Way.Direction, Rest);
    FOutline.Advance(End < To ? Way.At(FAt, End - From) : P, Rest);
    if (End < To) {
      FOutline.End(DashCap());
      NextEdge();
    }
  }
  // Along the line a mark reaches no farther than its caps, however wide the pen.
  const double Middle = From +
                        ((double{FShown.Left} + FShown.Right) / 2 - FAt.X) * Way.Direction.X +
                        ((double{FShown.Top} + FShown.Bottom) / 2 - FAt.Y) * Way.Direction.Y;
  const double Reach = (double{FShown.Width()} * std::abs(Way.Direction.X) +
                        double{FShown.Height()} * std::abs(Way.Direction.Y)) /
                           2 +
                       FCapReach;
  const double First = std::max(Low, Middle - Reach), Last = std::min(High, Middle + Reach);
  if (!FOutline.IsOpen() && First <= Last) {
    if (EdgeAt(FIndex + 1) < First) JumpTo(First);
    for (; EdgeAt(FIndex) < std::min(Last, To); NextEdge()) {
      if (FIndex % 2 != 0) continue;
      BeginMark(Way, To, P);
      if (FOutline.IsOpen()) break;
    }
  }
  if (!FOutline.IsOpen() && EdgeAt(FIndex + 1) < To) JumpTo(To);
  // The mark at the end of the line belongs to the join there, which reaches farther.
  const bool EndsOn = FIndex % 2 == 0 && EdgeAt(FIndex) < To;
  if (!FOutline.IsOpen() && Low <= High && High >= To && EndsOn) BeginMark(Way, To, P);
  if (!FHasSegment) {
    FStartDirection = Way.Direction;
    FStartLength = static_cast<float>(std::min(FStartMark, Way.Length));
    FHasSegment = true;
  }
  FDistance = To;
  FAt = P;
}

// Draws the present mark on the line that leads on to P, up to the distance To. A mark that does
// not end before stays open.
void TFigureStroker::BeginMark(const TWay& Way, double To, TPointF P) {
  const double From = FDistance, Begin = EdgeAt(FIndex), End = EdgeAt(FIndex + 1);
  const auto At = [&](double Distance) { return Way.At(FAt, Distance - From); };
  const bool IsFirst = !FHasSegment && Begin <= From;
  const auto Kind = Begin >= From && !IsFirst ? DashCap()
                    : IsFirst && !FIsClosed   ? FStyle.StartCap
                                              : TQXGPLineCap::lcFlat;
  const double First = std::max(Begin, From);
  FOutline.Begin(At(First), Way.Direction, Kind);
  const bool GoesOn = End >= To || (FMarks += FMarkCost) > Limits::DashCount;
  FOutline.Advance(GoesOn ? P : At(End), static_cast<float>((GoesOn ? To : End) - First));
  if (!GoesOn) FOutline.End(DashCap());
}

// A hidden part of a very long curve is not measured: its length is taken to be midway between
// those of its chord and of its control polygon.
void TFigureStroker::PassDashes(const std::array<TPointF, 4>& P) {
  const double Chord = TWay(P[0], P[3]).Length;
  const double Legs = TWay(P[0], P[1]).Length + TWay(P[1], P[2]).Length + TWay(P[2], P[3]).Length;
  if (FOutline.IsOpen()) FOutline.End(TQXGPLineCap::lcFlat);
  if (!FHasSegment) {
    FStartDirection = FirstWay(P[0], P[1], P[2], P[3]);
    FHasSegment = true;
  }
  FDistance += (Chord + Legs) / 2;
  JumpTo(FDistance);
  FAt = P[3];
}

void TFigureStroker::FinishDashes() {
  if (FOutline.IsOpen()) {
    if (FIsClosed && FStartsOn) {
      FOutline.Turn(FStartDirection, FStartLength);
      FOutline.End(TQXGPLineCap::lcFlat);
    } else {
      FOutline.End(FIsClosed ? DashCap() : FStyle.EndCap);
    }
  } else if (FIsClosed && FStartsOn) {
    FOutline.StartCapAlone(FStart, FStartDirection, DashCap());
  }
}

// False for a pattern that is a solid line. Scale leads to pixels.
bool MakeDashes(const TQXStrokeStyle& Style, double Scale, bool IsWide, std::vector<double>& Edges,
                double& Offset) {
  Edges.clear();
  if (Style.Dashes.empty() || Style.Dashes.size() > Limits::DashCount) return false;
  const std::size_t Count = Style.Dashes.size() * (Style.Dashes.size() % 2 + 1);
  double Sum = 0;
  Edges.push_back(0);
  for (std::size_t I = 0; I < Count; ++I) {
    const double Length = double{Style.Dashes[I % Style.Dashes.size()]} * Style.Width;
    if (!(Length >= 0) || !std::isfinite(Length)) return false;
    Edges.push_back(Sum += Length);
  }
  if (!(Sum > 0) || !std::isfinite(Sum)) return false;
  const double Factor = std::max(1.0, LeastPeriod / (Sum * Scale));
  for (double& Edge : Edges) Edge *= Factor;
  double LargestGap = 0;
  for (std::size_t I = 2; I < Edges.size(); I += 2)
    LargestGap = std::max(LargestGap, Edges[I] - Edges[I - 1]);
  if (IsWide && Style.DashCap != TQXGPDashCap::dcFlat && LargestGap * Scale <= LeastGap)
    return false;
  const double Period = Edges.back();
  Offset = double{Style.DashOffset} * Style.Width * Factor;
  Offset = std::isfinite(Offset) ? Offset - std::floor(Offset / Period) * Period : 0;
  return true;
}

// What Clip shows of the pen's space, with room for rounding; false where that is nothing.
bool ShownBox(const TMatrix& ToDevice, const TRectF& Clip, float Tolerance, TRectF& Shown) {
  Shown = Clip;
  if (!IsIdentityMatrix(ToDevice)) {
    TMatrix Inverse;
    if (!QXMatrixInvert(ToDevice, Inverse)) return false;
    Shown = QXMatrixTransform(Inverse, Clip);
  }
  QXInflateRect(Shown, Tolerance + 1e-4f * std::abs(Shown.Width()),
                Tolerance + 1e-4f * std::abs(Shown.Height()));
  return true;
}

}  // namespace

TQXStrokeStyle TQXStrokeStyle::FromPen(const TQXGPPen& Pen) {
  TQXStrokeStyle Style;
  Style.Width = Pen.Thickness();
  Style.MiterLimit = Pen.MiterLimit();
  Style.Join = Pen.Join();
  Style.StartCap = Pen.StartCap();
  Style.EndCap = Pen.EndCap();
  Style.DashCap = Pen.DashCap();
  Style.Dashes = Pen.DashPattern();
  Style.DashOffset = Pen.DashOffset();
  return Style;
}

float TQXStrokeStyle::Reach() const {
  const float Miter = Join == TQXGPStrokeJoin::sjMiter ? std::min(MiterLimit, FarthestMiter) : 1;
  return std::min(Width / 2 * std::max(Miter, 1.5f), FarthestReach);
}

void TQXStroker::Stroke(const TQXPathView& Path, const TQXStrokeStyle& Style,
                        const TMatrix& ToDevice, const TRectF& Clip, float Tolerance,
                        TQXLineBuffer& Left, TQXLineBuffer& Right) {
  if (!(Style.Width > 0) || !std::isfinite(Style.Width)) return;
  const double Scale =
      std::max(std::hypot(ToDevice.m11, ToDevice.m12), std::hypot(ToDevice.m21, ToDevice.m22));
  TRectF Shown;
  const auto Allowed = static_cast<float>(Tolerance / Scale);
  if (!(Scale > 0) || !ShownBox(ToDevice, Clip, Allowed, Shown)) return;
  TStrokeOutline Outline(Style, ToDevice, Allowed, Shown, Left, Right);
  TDashes Dashes;
  const bool IsDashed = MakeDashes(Style, Scale, Outline.IsWide(), FEdges, Dashes.Offset);
  Dashes.Edges = FEdges;
  TFigureStroker Figures(Style, Outline, Shown, static_cast<float>(QXFarthestPixel / 4 / Scale),
                         IsDashed ? &Dashes : nullptr);

  TFigure Figure;
  const std::size_t Count = Path.Count();
  for (std::size_t I = 0; I < Count;) {
    if (Path.Kinds[I] == TQXPathPointKind::pkMove) Figure.Start = Path.Points[I++];
    Figure.First = I;
    while (I < Count && Path.Kinds[I] != TQXPathPointKind::pkMove &&
           Path.Kinds[I] != TQXPathPointKind::pkClose)
      ++I;
    Figure.Last = I;
    Figure.IsClosed = I < Count && Path.Kinds[I] == TQXPathPointKind::pkClose;
    if (Figure.IsClosed) ++I;
    Figures.Draw(Path, Figure);
  }
}

}  // namespace qxsvg
