#include "graphics/surface/PathMeasure.h"

#include <limits>

#include "graphics/surface/PathGeometry.h"
#include "graphics/surface/PathWalk.h"

namespace qxsvg {
namespace {

class TBoxBuilder {
 public:
  void Add(TPointF P) {
    FBox.Left = std::min(FBox.Left, P.X);
    FBox.Top = std::min(FBox.Top, P.Y);
    FBox.Right = std::max(FBox.Right, P.X);
    FBox.Bottom = std::max(FBox.Bottom, P.Y);
  }
  void AddCurve(TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
    Add(P0);
    Add(P3);
    // A curve stays in the box of its controls, so that most need no roots.
    if (!Holds(P1) || !Holds(P2)) {
      AddExtremes(P0.X, P1.X, P2.X, P3.X, FBox.Left, FBox.Right);
      AddExtremes(P0.Y, P1.Y, P2.Y, P3.Y, FBox.Top, FBox.Bottom);
    }
  }
  TRectF Box() const { return FBox.Left <= FBox.Right ? FBox : TRectF{}; }

 private:
  bool Holds(TPointF P) const {
    return P.X >= FBox.Left && P.X <= FBox.Right && P.Y >= FBox.Top && P.Y <= FBox.Bottom;
  }
  static void AddExtremes(double A, double B, double C, double D, float& Low, float& High) {
    if (std::min(B, C) >= double{Low} && std::max(B, C) <= double{High}) return;
    double Roots[2];
    const int Count = CubicExtremes(A, B, C, D, Roots);
    for (int I = 0; I < Count; ++I) {
      const auto V = static_cast<float>(CubicAt(A, B, C, D, Roots[I]));
      Low = std::min(Low, V);
      High = std::max(High, V);
    }
  }

  static constexpr float Infinity = std::numeric_limits<float>::infinity();
  TRectF FBox{Infinity, Infinity, -Infinity, -Infinity};
};

TPointF Map(const TMatrix* M, TPointF P) {
  return M ? QXMatrixTransform(*M, P) : P;
}

TRectF BoundsOf(const TQXPathView& Path, const TMatrix* M) {
  TBoxBuilder Box;
  TPointF Last{};
  bool HasSegment = false;
  WalkPath(
      Path, [&](TPointF P) { Last = Map(M, P); },
      [&](TPointF, TPointF P) {
        Box.Add(Last);
        Box.Add(Last = Map(M, P));
        HasSegment = true;
      },
      [&](TPointF, TPointF C1, TPointF C2, TPointF P) {
        const TPointF End = Map(M, P);
        Box.AddCurve(Last, Map(M, C1), Map(M, C2), End);
        Last = End;
        HasSegment = true;
      },
      [&](TPointF, TPointF Start) {
        Box.Add(Last);
        Last = Map(M, Start);
        HasSegment = true;
      });
  if (!HasSegment)
    for (const TPointF P : Path.Points) Box.Add(Map(M, P));
  return Box.Box();
}

// The integral of a curve's speed by the five-point rule of Gauss and Legendre.
class TCurveLength {
 public:
  TCurveLength(TPointF P0, TPointF P1, TPointF P2, TPointF P3)
      : FX{3 * (double{P1.X} - P0.X), 3 * (double{P2.X} - P1.X), 3 * (double{P3.X} - P2.X)},
        FY{3 * (double{P1.Y} - P0.Y), 3 * (double{P2.Y} - P1.Y), 3 * (double{P3.Y} - P2.Y)} {}

  double Length() const { return Refine(0, 1, Rule(0, 1), 0); }

 private:
  double Speed(double T) const {
    const double U = 1 - T;
    const double X = FX[0] * U * U + 2 * FX[1] * U * T + FX[2] * T * T;
    const double Y = FY[0] * U * U + 2 * FY[1] * U * T + FY[2] * T * T;
    return std::sqrt(X * X + Y * Y);
  }
  double Rule(double From, double To) const {
    constexpr double Near = 0.5384693101056831, Far = 0.9061798459386640;
    const double Half = (To - From) / 2, Middle = (From + To) / 2;
    return Half *
           (0.5688888888888889 * Speed(Middle) +
            0.4786286704993665 * (Speed(Middle - Near * Half) + Speed(Middle + Near * Half)) +
            0.2369268850561891 * (Speed(Middle - Far * Half) + Speed(Middle + Far * Half)));
  }
  double Refine(double From, double To, double Whole, int Depth) const {
    const double Middle = (From + To) / 2;
    const double Left = Rule(From, Middle), Right = Rule(Middle, To);
    // The halves are about a thousand times as exact as the whole they are compared with. A cusp
    // halves its error with each level, so that the depth bounds the work and the error.
    if (!(std::abs(Left + Right - Whole) > 1e-7 * (Left + Right)) || Depth == 14)
      return Left + Right;
    return Refine(From, Middle, Left, Depth + 1) + Refine(Middle, To, Right, Depth + 1);
  }

  double FX[3], FY[3];
};

// Counts signed crossings of the ray from P to the left. A crossing at P itself counts, and a
// segment holds its upper end but not its lower one, so that shared points count once.
class TWinding {
 public:
  explicit TWinding(TPointF P) : FX(P.X), FY(P.Y) {}

  void AddLine(TPointF A, TPointF B) {
    const int Sign = SignOf(A.Y, B.Y);
    if (Sign == 0 || (A.X > FX && B.X > FX)) return;
    if (A.X <= FX && B.X <= FX) {
      FCount += Sign;
      return;
    }
    const double X = A.X + (double{B.X} - A.X) * ((FY - A.Y) / (double{B.Y} - A.Y));
    if (X <= FX) FCount += Sign;
  }

  void AddCurve(TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
    const auto [Top, Bottom] = std::minmax({P0.Y, P1.Y, P2.Y, P3.Y});
    if (FY < Top || FY > Bottom || std::min({P0.X, P1.X, P2.X, P3.X}) > FX) return;
    if (std::max({P0.X, P1.X, P2.X, P3.X}) <= FX) {
      // All crossings count, and their sum is that of the chord.
      FCount += SignOf(P0.Y, P3.Y);
      return;
    }
    double Cuts[4] = {0};
    int Count = 1 + CubicExtremes(P0.Y, P1.Y, P2.Y, P3.Y, Cuts + 1);
    Cuts[Count] = 1;
    double From = P0.Y;
    for (int I = 0; I < Count; ++I) {
      const double To =
          I + 1 == Count ? double{P3.Y} : CubicAt(P0.Y, P1.Y, P2.Y, P3.Y, Cuts[I + 1]);
      const int Sign = SignOf(From, To);
      if (Sign != 0) {
        const double T = Solve(P0, P1, P2, P3, Cuts[I], Cuts[I + 1], Sign > 0);
        if (CubicAt(P0.X, P1.X, P2.X, P3.X, T) <= FX) FCount += Sign;
      }
      From = To;
    }
  }

  int Count() const { return FCount; }

 private:
  int SignOf(double From, double To) const {
    if (From <= FY && FY < To) return 1;
    if (To <= FY && FY < From) return -1;
    return 0;
  }
  // Where a piece that goes one way meets the ray: bisection, to the last bit that matters.
  double Solve(TPointF P0, TPointF P1, TPointF P2, TPointF P3, double Low, double High,
               bool IsRising) const {
    for (int I = 0; I < 50; ++I) {
      const double Middle = (Low + High) / 2;
      const bool IsBelow = CubicAt(P0.Y, P1.Y, P2.Y, P3.Y, Middle) <= FY;
      (IsBelow == IsRising ? Low : High) = Middle;
    }
    return (Low + High) / 2;
  }

  double FX, FY;
  int FCount = 0;
};

}  // namespace

TRectF QXPathBounds(const TQXPathView& Path) {
  return BoundsOf(Path, nullptr);
}

TRectF QXPathBounds(const TQXPathView& Path, const TMatrix& M) {
  return BoundsOf(Path, IsIdentityMatrix(M) ? nullptr : &M);
}

TRectF QXPathControlBounds(const TQXPathView& Path) {
  TBoxBuilder Box;
  for (const TPointF P : Path.Points) Box.Add(P);
  return Box.Box();
}

void QXFlattenPath(const TQXPathView& Path, float Tolerance, TQXPathGeometry& Target) {
  const double Allowed = std::isfinite(Tolerance) ? std::max(Tolerance, 1e-3f) : 0.25f;
  WalkPath(
      Path, [&](TPointF P) { Target.MoveTo(P); }, [&](TPointF, TPointF P) { Target.LineTo(P); },
      [&](TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
        const int Count = CurveLines(P0, P1, P2, P3, Allowed);
        for (int I = 1; I < Count; ++I) {
          const double T = static_cast<double>(I) / Count;
          Target.LineTo({static_cast<float>(CubicAt(P0.X, P1.X, P2.X, P3.X, T)),
                         static_cast<float>(CubicAt(P0.Y, P1.Y, P2.Y, P3.Y, T))});
        }
        Target.LineTo(P3);
      },
      [&](TPointF, TPointF) { Target.Close(); });
}

double QXPathLength(const TQXPathView& Path, bool Jumps) {
  double Sum = 0;
  TPointF Last{};
  bool HasLast = false, IsFigureNew = false;
  const auto Begin = [&](TPointF First) {
    if (Jumps && IsFigureNew && HasLast) Sum += PointDistance(Last, First);
    IsFigureNew = false;
    HasLast = true;
  };
  WalkPath(
      Path, [&](TPointF) { IsFigureNew = true; },
      [&](TPointF A, TPointF B) {
        Begin(A);
        Sum += PointDistance(A, B);
        Last = B;
      },
      [&](TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
        Begin(P0);
        Sum += TCurveLength(P0, P1, P2, P3).Length();
        Last = P3;
      },
      [&](TPointF A, TPointF Start) {
        Begin(A);
        Sum += PointDistance(A, Start);
        Last = Start;
      });
  return Sum;
}

bool QXPathContains(const TQXPathView& Path, TQXGPFillMode FillMode, TPointF P) {
  if (!IsFinite(P)) return false;
  TWinding Winding(P);
  TPointF Start{}, Last{};
  WalkPath(
      Path,
      [&](TPointF M) {
        Winding.AddLine(Last, Start);
        Start = Last = M;
      },
      [&](TPointF A, TPointF B) { Winding.AddLine(A, Last = B); },
      [&](TPointF P0, TPointF P1, TPointF P2, TPointF P3) {
        Winding.AddCurve(P0, P1, P2, Last = P3);
      },
      [&](TPointF A, TPointF First) { Winding.AddLine(A, Last = First); });
  Winding.AddLine(Last, Start);
  return FillMode == TQXGPFillMode::fmWinding ? Winding.Count() != 0 : (Winding.Count() & 1) != 0;
}

}  // namespace qxsvg
