// The loop over a path's segments, and the algebra of cubic curves.
#pragma once

#include "graphics/surface/PathView.h"

namespace qxsvg {

// Calls Move(P), Line(From, To), Curve(From, Control1, Control2, To) and Close(From, Start) in the
// order of the entries.
template <class TMove, class TLine, class TCurve, class TClose>
void WalkPath(const TQXPathView& Path, TMove Move, TLine Line, TCurve Curve, TClose Close) {
  const TPointF* const Points = Path.Points.data();
  const TQXPathPointKind* const Kinds = Path.Kinds.data();
  const std::size_t Count = Path.Count();
  for (std::size_t I = 0; I < Count; ++I) {
    switch (Kinds[I]) {
      case TQXPathPointKind::pkMove: Move(Points[I]); break;
      case TQXPathPointKind::pkLine: Line(Points[I - 1], Points[I]); break;
      case TQXPathPointKind::pkCurve:
        Curve(Points[I - 1], Points[I], Points[I + 1], Points[I + 2]);
        I += 2;
        break;
      case TQXPathPointKind::pkClose: Close(Points[I - 1], Points[I]); break;
    }
  }
}

inline double PointDistance(TPointF A, TPointF B) {
  const double X = double{B.X} - A.X, Y = double{B.Y} - A.Y;
  return std::sqrt(X * X + Y * Y);
}

// One coordinate of the curve with controls A to D at T.
constexpr double CubicAt(double A, double B, double C, double D, double T) {
  const double U = 1 - T;
  return U * U * (U * A + 3 * T * B) + T * T * (3 * U * C + T * D);
}

// Where within (0, 1) the coordinate turns, in rising order; how many there are.
inline int CubicExtremes(double A, double B, double C, double D, double* Roots) {
  // The derivative, a third of it: P T^2 + Q T + R.
  const double P = D - A + 3 * (B - C), Q = 2 * (A - 2 * B + C), R = B - A;
  int Count = 0;
  const auto Take = [&](double T) {
    if (T > 0 && T < 1) Roots[Count++] = T;
  };
  const double Discriminant = Q * Q - 4 * P * R;
  if (Discriminant < 0) return 0;
  // The form that does not subtract what is nearly equal; it holds for P near 0 too.
  const double S = -(Q + std::copysign(std::sqrt(Discriminant), Q)) / 2;
  if (P != 0) Take(S / P);
  if (S != 0) Take(R / S);
  if (Count == 2 && Roots[0] > Roots[1]) std::swap(Roots[0], Roots[1]);
  if (Count == 2 && Roots[0] == Roots[1]) Count = 1;
  return Count;
}

// How many lines of equal steps of T stay within Tolerance of the curve. Bounded, because a curve
// with controls at the ends of the number range would ask for more lines than anyone can see.
inline int CurveLines(TPointF P0, TPointF P1, TPointF P2, TPointF P3, double Tolerance) {
  constexpr double MaxLines = 4096;
  const auto Bend = [](double A, double B, double C) { return A - 2 * B + C; };
  const double X1 = Bend(P0.X, P1.X, P2.X), Y1 = Bend(P0.Y, P1.Y, P2.Y);
  const double X2 = Bend(P1.X, P2.X, P3.X), Y2 = Bend(P1.Y, P2.Y, P3.Y);
  const double Largest = std::sqrt(std::max(X1 * X1 + Y1 * Y1, X2 * X2 + Y2 * Y2));
  const double Lines = std::ceil(std::sqrt(0.75 * Largest / Tolerance));
  return static_cast<int>(std::clamp(Lines, 1.0, MaxLines));
}

}  // namespace qxsvg
