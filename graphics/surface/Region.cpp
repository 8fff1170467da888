#include "graphics/surface/Region.h"

#include "graphics/surface/Path.h"
#include "graphics/surface/PathMeasure.h"

namespace qxsvg {
namespace {

using enum TQXGPCombineMode;

// Whether any figure has area: its points do not all lie on one line.
bool HasArea(const TQXPathView& Path) {
  TPointF Origin{};
  TPointF Way{};
  for (std::size_t I = 0; I < Path.Count(); ++I) {
    const TPointF P = Path.Points[I];
    if (Path.Kinds[I] == TQXPathPointKind::pkMove) {
      Origin = P;
      Way = {};
      continue;
    }
    const TPointF ToP = P - Origin;
    if (Way == TPointF{})
      Way = ToP;
    else if (double{Way.X} * ToP.Y != double{Way.Y} * ToP.X)
      return true;
  }
  return false;
}

}  // namespace

TQXGPRegion::TQXGPRegion(TQXGPCanvas*) {}

TQXGPRegion::~TQXGPRegion() = default;

void TQXGPRegion::SetBounds(const TRectF& R) {
  MakeEmpty();
  Combine(R, cmReplace);
}

void TQXGPRegion::MakeEmpty() {
  FGeometry.Clear();
  FSteps.clear();
  FInfinite = false;
}

void TQXGPRegion::MakeInfinite() {
  MakeEmpty();
  FInfinite = true;
}

bool TQXGPRegion::IsEmpty() const {
  return !FInfinite && FSteps.empty();
}

void TQXGPRegion::Transform(const TMatrix& M) {
  if (!FInfinite && QXMatrixDeterminant(M) == 0) return MakeEmpty();
  FGeometry.Transform(M);
}

void TQXGPRegion::Combine(const TQXGPPath& Path, TQXGPCombineMode Mode) {
  Combine(Path.View(), Path.FillMode(), Mode);
}

void TQXGPRegion::Combine(const TRectF& R, TQXGPCombineMode Mode) {
  TQXPathGeometry Rectangle;
  Rectangle.AddRectangle(R);
  Combine(Rectangle.View(), TQXGPFillMode::fmWinding, Mode);
}

void TQXGPRegion::Combine(const TQXPathView& Path, TQXGPFillMode FillMode, TQXGPCombineMode Mode) {
  // What everything shares with an area is that area, and what it is united with adds nothing.
  if (Mode == cmUnion && FInfinite) return;
  if (Mode == cmReplace || FInfinite) {
    MakeEmpty();
    Mode = cmUnion;
  }
  if (!HasArea(Path)) {
    if (Mode == cmIntersect) MakeEmpty();
    return;
  }
  if (Mode == cmIntersect && TRectF::Intersect(GetBounds(), QXPathControlBounds(Path)).IsEmpty())
    return MakeEmpty();
  const std::size_t First = FGeometry.Count();
  FGeometry.Append(Path, false);
  FSteps.push_back({First, Path.Count(), FillMode, Mode});
}

TQXRegionStep TQXGPRegion::Step(std::size_t Index) const {
  const TPart& Part = FSteps[Index];
  const TQXPathView All = FGeometry.View();
  return {{All.Points.subspan(Part.First, Part.Count), All.Kinds.subspan(Part.First, Part.Count)},
          Part.FillMode,
          Part.Mode};
}

bool TQXGPRegion::IsRectangle(TRectF& R) const {
  using enum TQXPathPointKind;
  static constexpr std::array<TQXPathPointKind, 5> Shape{pkMove, pkLine, pkLine, pkLine, pkClose};
  if (FSteps.size() != 1) return false;
  const TQXPathView Path = Step(0).Path;
  if (!std::ranges::equal(Path.Kinds, Shape)) return false;
  const auto P = Path.Points.first(4);
  const bool IsUpright =
      P[0].Y == P[1].Y && P[1].X == P[2].X && P[2].Y == P[3].Y && P[3].X == P[0].X;
  const bool IsTurned =
      P[0].X == P[1].X && P[1].Y == P[2].Y && P[2].X == P[3].X && P[3].Y == P[0].Y;
  if (!IsUpright && !IsTurned) return false;
  R = QXRect(P[0], P[2]).Normalized();
  return true;
}

TRectF TQXGPRegion::GetBounds() const {
  if (FInfinite) return {-1e30f, -1e30f, 1e30f, 1e30f};
  TRectF Box;
  for (std::size_t I = 0; I < FSteps.size(); ++I) {
    const TQXRegionStep Part = Step(I);
    const TRectF Own = QXPathControlBounds(Part.Path);
    Box = Part.Mode == cmIntersect ? TRectF::Intersect(Box, Own) : TRectF::Union(Box, Own);
  }
  return Box;
}

bool TQXGPRegion::Contains(TPointF P) const {
  bool IsInside = FInfinite;
  for (std::size_t I = 0; I < FSteps.size(); ++I) {
    const TQXRegionStep Part = Step(I);
    // Only where the step can change the answer.
    if (IsInside == (Part.Mode == cmIntersect))
      IsInside = QXPathContains(Part.Path, Part.FillMode, P);
  }
  return IsInside;
}

}  // namespace qxsvg
