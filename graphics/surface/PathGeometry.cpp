#include "graphics/surface/PathGeometry.h"

#include <functional>
#include <utility>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/surface/PathArc.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

using enum TQXPathPointKind;

// The distance of a quarter ellipse's controls from its ends, as a part of the half-axis: the
// choice whose largest error is smallest for a curve through the middle of the arc.
constexpr double QuarterArc = 0.55228474983079339840;

float ClampCoordinate(double Value) {
  constexpr double Largest = 1e30;
  return static_cast<float>(std::isnan(Value) ? 0.0 : std::clamp(Value, -Largest, Largest));
}

// Points of a corner, from where the side before it ends to where the side after it begins.
struct TCorner {
  TPointF From, Control1, Control2, To;
};

TCorner RoundCorner(TPointF Corner, TPointF ToPrevious, TPointF ToNext) {
  const auto At = [Corner](TPointF Way, double Part) {
    return TPointF{static_cast<float>(Corner.X + Way.X * Part),
                   static_cast<float>(Corner.Y + Way.Y * Part)};
  };
  return {At(ToPrevious, 1), At(ToPrevious, 1 - QuarterArc), At(ToNext, 1 - QuarterArc),
          At(ToNext, 1)};
}

}  // namespace

void TQXPathGeometry::Clear() {
  FPoints.clear();
  FKinds.clear();
  FFigure = 0;
}

void TQXPathGeometry::Release() {
  *this = TQXPathGeometry();
}

void TQXPathGeometry::Reserve(std::size_t Points) {
  FPoints.reserve(Points);
  FKinds.reserve(Points);
}

void TQXPathGeometry::Trim() {
  if (FPoints.capacity() - FPoints.size() > FPoints.size() / 8) {
    FPoints.shrink_to_fit();
    FKinds.shrink_to_fit();
  }
}

void TQXPathGeometry::Put(TPointF P, TQXPathPointKind Kind) {
  FPoints.push_back(P);
  try {
    FKinds.push_back(Kind);
  } catch (...) {
    FPoints.pop_back();
    throw;
  }
}

void TQXPathGeometry::FindFigure() {
  FFigure = FKinds.size();
  while (FFigure > 0 && FKinds[--FFigure] != pkMove) {
  }
}

bool TQXPathGeometry::Holds(const TQXPathView& Entries) const {
  const std::less<const TPointF*> IsBefore;
  const TPointF* const First = Entries.Points.data();
  return !IsBefore(First, FPoints.data()) && IsBefore(First, FPoints.data() + FPoints.size());
}

void TQXPathGeometry::CheckGrowth(std::size_t Points) const {
  constexpr std::size_t MaxCount = 3 * Limits::PathSegments;
  if (Points > MaxCount || FPoints.size() > MaxCount - Points)
    throw ESVGException(SPathSegmentLimit);
}

void TQXPathGeometry::AppendRaw(const TQXPathView& Entries) {
  CheckGrowth(Entries.Count());
  const std::size_t Old = FPoints.size();
  FPoints.insert(FPoints.end(), Entries.Points.begin(), Entries.Points.end());
  try {
    FKinds.insert(FKinds.end(), Entries.Kinds.begin(), Entries.Kinds.end());
  } catch (...) {
    FPoints.resize(Old);
    throw;
  }
}

void TQXPathGeometry::Grow(std::size_t Points) {
  CheckGrowth(Points);
  const std::size_t Needed = FPoints.size() + Points;
  if (Needed > FPoints.capacity()) Reserve(std::max(Needed, 2 * FPoints.capacity()));
}

// Makes room for that many entries, so that what follows cannot fail, and opens a figure where none
// is open.
void TQXPathGeometry::Open(std::size_t Points) {
  Grow(Points + 1);
  if (!FKinds.empty() && FKinds.back() == pkClose) {
    const TPointF Start = FPoints.back();
    FFigure = FPoints.size();
    Put(Start, pkMove);
  }
}

TPointF TQXPathGeometry::CurrentPoint() const {
  return FPoints.empty() ? TPointF{} : FPoints.back();
}

void TQXPathGeometry::MoveTo(TPointF P) {
  if (!IsFinite(P)) return;
  Grow(1);
  FFigure = FPoints.size();
  Put(P, pkMove);
}

void TQXPathGeometry::LineTo(TPointF P) {
  if (!IsFinite(P)) return;
  if (IsEmpty()) return MoveTo(P);
  Open(1);
  Put(P, pkLine);
}

void TQXPathGeometry::CurveTo(TPointF Control1, TPointF Control2, TPointF P) {
  if (!IsFinite(Control1) || !IsFinite(Control2) || !IsFinite(P)) return;
  if (IsEmpty()) MoveTo(Control1);
  Open(3);
  Put(Control1, pkCurve);
  Put(Control2, pkCurve);
  Put(P, pkCurve);
}

void TQXPathGeometry::QuadTo(TPointF Control, TPointF P) {
  if (!IsFinite(Control) || !IsFinite(P)) return;
  if (IsEmpty()) MoveTo(Control);
  const TPointF Start = CurrentPoint();
  CurveTo(QXCenterPoint(Start, Control, 2.0f / 3), QXCenterPoint(P, Control, 2.0f / 3), P);
}

void TQXPathGeometry::ArcTo(float RX, float RY, float Rotation, bool LargeArc, bool Sweep,
                            TPointF P) {
  if (!IsFinite(P) || !IsFinite(TPointF{RX, RY}) || !std::isfinite(Rotation)) return;
  const TPointF Start = CurrentPoint();
  const TQXArc Arc({Start.X, Start.Y}, RX, RY, Rotation, LargeArc, Sweep, {P.X, P.Y});
  if (Arc.IsLine()) return LineTo(P);
  if (IsEmpty()) MoveTo(Start);
  Open(12);
  Arc.ForEachCurve([this](TPointF C1, TPointF C2, TPointF End) { CurveTo(C1, C2, End); });
}

void TQXPathGeometry::Close() {
  if (IsEmpty() || FKinds.back() == pkClose) return;
  Open(1);
  Put(FPoints[FFigure], pkClose);
}

void TQXPathGeometry::AddRectangle(const TRectF& R) {
  if (!IsFinite(R)) return;
  Grow(6);
  MoveTo({R.Left, R.Top});
  LineTo({R.Right, R.Top});
  LineTo({R.Right, R.Bottom});
  LineTo({R.Left, R.Bottom});
  Close();
}

void TQXPathGeometry::AddRectangle(const TRectF& R, float RX, float RY, TQXCorners Corners) {
  if (!IsFinite(R)) return;
  RX = std::min(RX, std::abs(R.Width()) / 2);
  RY = std::min(RY, std::abs(R.Height()) / 2);
  if (!(RX > 0 && RY > 0) || Corners.IsEmpty()) return AddRectangle(R);
  const float DX = R.Width() < 0 ? -RX : RX, DY = R.Height() < 0 ? -RY : RY;
  struct TRow {
    TQXCorner Name;
    TPointF At, ToPrevious, ToNext;
  };
  using enum TQXCorner;
  const std::array<TRow, 4> Rows{{{crTopLeft, {R.Left, R.Top}, {0, DY}, {DX, 0}},
                                  {crTopRight, {R.Right, R.Top}, {-DX, 0}, {0, DY}},
                                  {crBottomRight, {R.Right, R.Bottom}, {0, -DY}, {-DX, 0}},
                                  {crBottomLeft, {R.Left, R.Bottom}, {DX, 0}, {0, -DY}}}};
  Grow(18);
  bool IsFirst = true;
  // The figure begins on the top side, so that the left top corner comes last.
  for (std::size_t I = 0; I < Rows.size(); ++I) {
    const TRow& Row = Rows[(I + 1) % Rows.size()];
    if (IsFirst) {
      const TRow& LeftTop = Rows[0];
      MoveTo(Corners.Has(LeftTop.Name) ? LeftTop.At + LeftTop.ToNext : LeftTop.At);
      IsFirst = false;
    }
    if (!Corners.Has(Row.Name)) {
      if (I + 1 < Rows.size()) LineTo(Row.At);
      continue;
    }
    const TCorner C = RoundCorner(Row.At, Row.ToPrevious, Row.ToNext);
    LineTo(C.From);
    CurveTo(C.Control1, C.Control2, C.To);
  }
  Close();
}

void TQXPathGeometry::AddEllipse(const TRectF& Box) {
  if (!IsFinite(Box)) return;
  const double RX = (double{Box.Right} - Box.Left) / 2, RY = (double{Box.Bottom} - Box.Top) / 2;
  const double CX = Box.Left + RX, CY = Box.Top + RY;
  const auto At = [&](double X, double Y) {
    return TPointF{static_cast<float>(CX + RX * X), static_cast<float>(CY + RY * Y)};
  };
  Grow(15);
  MoveTo(At(1, 0));
  CurveTo(At(1, QuarterArc), At(QuarterArc, 1), At(0, 1));
  CurveTo(At(-QuarterArc, 1), At(-1, QuarterArc), At(-1, 0));
  CurveTo(At(-1, -QuarterArc), At(-QuarterArc, -1), At(0, -1));
  CurveTo(At(QuarterArc, -1), At(1, -QuarterArc), At(1, 0));
  Close();
}

void TQXPathGeometry::AddPolygon(std::span<const TPointF> Points) {
  if (Points.empty()) return;
  Grow(Points.size() + 1);
  bool IsFirst = true;
  for (const TPointF P : Points) {
    if (!IsFinite(P)) continue;
    IsFirst ? MoveTo(P) : LineTo(P);
    IsFirst = false;
  }
  if (!IsFirst) Close();
}

void TQXPathGeometry::Append(const TQXPathView& Other, bool Connect) {
  if (Other.IsEmpty()) return;
  // The other may be a part of this path, whose points move when room is made.
  const bool IsOwn = Holds(Other);
  const std::size_t Place =
      IsOwn ? static_cast<std::size_t>(Other.Points.data() - FPoints.data()) : 0;
  const std::size_t Count = Other.Count(), Offset = FPoints.size();
  Connect = Connect && Offset != 0;
  Grow(Count + 1);
  if (Connect) Open(Count);
  const TQXPathView Source =
      IsOwn ? TQXPathView{View().Points.subspan(Place, Count), View().Kinds.subspan(Place, Count)}
            : Other;
  const std::size_t Base = FPoints.size();
  FPoints.insert(FPoints.end(), Source.Points.begin(), Source.Points.end());
  FKinds.insert(FKinds.end(), Source.Kinds.begin(), Source.Kinds.end());
  if (Connect) {
    // The figure that the line joins is closed at its own start.
    const TPointF Start = FPoints[FFigure];
    FKinds[Base] = pkLine;
    for (std::size_t I = Base + 1; I < FKinds.size() && FKinds[I] != pkMove; ++I)
      if (FKinds[I] == pkClose) FPoints[I] = Start;
  }
  FindFigure();
}

void TQXPathGeometry::Assign(const TQXPathView& Other) {
  if (Holds(Other)) {
    if (Other.Count() == Count()) return;
    TQXPathGeometry Part;
    Part.Assign(Other);
    *this = std::move(Part);
    return;
  }
  // With room for both, neither list can come out longer than the other.
  Clear();
  Reserve(Other.Count());
  FPoints.assign(Other.Points.begin(), Other.Points.end());
  FKinds.assign(Other.Kinds.begin(), Other.Kinds.end());
  FindFigure();
}

void TQXPathGeometry::Append(const TQXPathView& Other, const TMatrix& M) {
  if (!IsFinite(M)) return;
  const std::size_t First = Count();
  Append(Other, false);
  TransformFrom(First, M);
}

void TQXPathGeometry::Transform(const TMatrix& M) {
  TransformFrom(0, M);
}

void TQXPathGeometry::TransformFrom(std::size_t First, const TMatrix& M) {
  if (IsIdentityMatrix(M) || !IsFinite(M)) return;
  const std::span<TPointF> Points = std::span(FPoints).subspan(First);
  float Sum = 0;
  for (TPointF& P : Points) {
    P = QXMatrixTransform(M, P);
    Sum += P.X * 0 + P.Y * 0;
  }
  // Rarely anything overflows, so one sum decides whether each point needs a look.
  if (std::isfinite(Sum)) return;
  for (TPointF& P : Points) P = {ClampCoordinate(P.X), ClampCoordinate(P.Y)};
}

void TQXPathGeometry::Translate(float DX, float DY) {
  Transform(CreateTranslateQXMatrix(DX, DY));
}

void TQXPathGeometry::Truncate(std::size_t Count) {
  if (Count >= FPoints.size()) return;
  FPoints.resize(Count);
  FKinds.resize(Count);
  FindFigure();
}

}  // namespace qxsvg
