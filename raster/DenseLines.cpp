#include "raster/DenseLines.h"

#include <algorithm>
#include <cmath>

namespace qxsvg {

namespace {

// Shorter paths and rows of lines are not worth a look.
constexpr std::size_t LeastPoints = 256, LeastRow = 8;
// About so many points of a path are tried; it is thinned if one in so many could be left out.
constexpr std::size_t Samples = 32, OneIn = 4;

constexpr float Infinite = std::numeric_limits<float>::infinity();

// So far, in half widths, the middle of a strip may lie beside its anchor.
constexpr float MostOffset = 0.7f;

// Points in a row that lie on one line through the first of them, its anchor, within half the
// distance.
class TStrip {
 public:
  explicit TStrip(TThinning How) : FHalf(How.Distance / 2), FMostTurn(How.Turn) {}

  // P, another point than the anchor, is to be added first.
  void Begin(const TPointF* Anchor, const TPointF* P) {
    FAnchor = FLowAt = FHighAt = FLast = Anchor;
    FLowest = FHighest = 0;
    const TPointF D = *P - *Anchor;
    FIsTall = std::abs(D.Y) > std::abs(D.X);
    // Plots lead on to one side while they go up and down.
    FOffset = std::copysign(FHalf * MostOffset, Across(D));
    FThrough = {-Infinite, Infinite};
    FSlopes = {Infinite, -Infinite};
  }
  // False where the point would leave the strip, which then stays what it was. The first never
  // does.
  bool Add(const TPointF* P);
  // Writes what stands for the points after the anchor: the ends of the strip, in the order in
  // which they came, and the last point.
  TPointF* Finish(TPointF* Out) const {
    for (const TPointF* const P : {std::min(FLowAt, FHighAt), std::max(FLowAt, FHighAt)})
      if (P != FAnchor && P != FLast) *Out++ = *P;
    *Out++ = *FLast;
    return Out;
  }
  const TPointF* Last() const { return FLast; }

 private:
  struct TRange {
    float Low, High;
  };
  float Along(TPointF D) const { return FIsTall ? D.Y : D.X; }
  float Across(TPointF D) const { return FIsTall ? D.X : D.Y; }

  const float FHalf, FMostTurn;
  const TPointF *FAnchor = nullptr, *FLowAt = nullptr, *FHighAt = nullptr, *FLast = nullptr;
  float FOffset = 0, FLowest = 0, FHighest = 0;
  // The slopes of lines beside the anchor that pass all points closely enough, and those of the
  // lines from point to point.
  TRange FThrough, FSlopes;
  bool FIsTall = false;
};

inline bool TStrip::Add(const TPointF* P) {
  const TPointF D = *P - *FAnchor;
  const float Way = Along(D), Beside = Across(D) - FOffset, Inverse = 1 / Way;
  const float A = (Beside - FHalf) * Inverse, B = (Beside + FHalf) * Inverse;
  const TRange Through{std::max(FThrough.Low, std::min(A, B)),
                       std::min(FThrough.High, std::max(A, B))};
  if (!(Through.Low <= Through.High)) return false;
  if (FMostTurn < Infinite) {
    const TPointF Step = *P - *FLast;
    const float Slope = Across(Step) / Along(Step);
    const TRange Slopes{std::min(FSlopes.Low, Slope), std::max(FSlopes.High, Slope)};
    if (Slopes.High - Slopes.Low > FMostTurn) return false;
    FSlopes = Slopes;
  }
  FThrough = Through;
  FHighAt = Way > FHighest ? P : FHighAt;
  FLowAt = Way < FLowest ? P : FLowAt;
  FHighest = std::max(FHighest, Way);
  FLowest = std::min(FLowest, Way);
  FLast = P;
  return true;
}

// Writes what stands for the lines from Points[0] on after it.
TPointF* ThinRow(std::span<const TPointF> Points, TThinning How, TPointF* Out) {
  TStrip Strip(How);
  const TPointF* const Last = Points.data() + Points.size() - 1;
  const TPointF* P = Points.data() + 1;
  const TPointF* const Anchor = P;
  *Out++ = *Anchor;
  while (P != Last && *P == *Anchor) ++P;
  Strip.Begin(Anchor, P);
  while (P != Last) {
    if (*P == *Strip.Last() || Strip.Add(P)) {
      ++P;
    } else {
      Out = Strip.Finish(Out);
      Strip.Begin(Strip.Last(), P);
    }
  }
  Out = Strip.Finish(Out);
  *Out++ = *Last;
  return Out;
}

// Whether a look at some of the points promises that many can be left out.
bool IsDense(const TQXPathView& Path, TThinning How) {
  const std::size_t Step = std::max<std::size_t>(Path.Count() / Samples, 1);
  std::size_t Tried = 0, Found = 0;
  for (std::size_t I = 1; I + 1 < Path.Count(); I += Step, ++Tried) {
    if (Path.Kinds[I] != TQXPathPointKind::pkLine || Path.Kinds[I + 1] != TQXPathPointKind::pkLine)
      continue;
    const TPointF A = Path.Points[I] - Path.Points[I - 1], B = Path.Points[I + 1] - Path.Points[I];
    const float Cross = std::abs(A.X * B.Y - A.Y * B.X), Dot = std::abs(A.X * B.X + A.Y * B.Y);
    const float Longest = std::max({std::abs(A.X), std::abs(A.Y), std::abs(B.X), std::abs(B.Y)});
    // Where the turn is not limited the product may be no number.
    Found += Cross <= How.Distance * Longest && !(Cross > How.Turn * Dot);
  }
  return Found * OneIn >= Tried;
}

}  // namespace

TQXPathView TLineThinner::Thin(const TQXPathView& Path, TThinning How) {
  const std::size_t Count = Path.Count();
  if (Count < LeastPoints || !IsDense(Path, How)) return Path;
  if (FPoints.size() < Count) {
    FPoints.resize(Count);
    FKinds.resize(Count);
  }
  TPointF* Out = FPoints.data();
  const auto Kinds = [&] { return FKinds.data() + (Out - FPoints.data()); };
  for (std::size_t I = 0; I < Count;) {
    std::size_t End = I;
    while (End < Count && Path.Kinds[End] == TQXPathPointKind::pkLine) ++End;
    if (End - I < LeastRow) {
      End = std::max(End, I + 1);
      std::copy(Path.Kinds.begin() + I, Path.Kinds.begin() + End, Kinds());
      Out = std::copy(Path.Points.begin() + I, Path.Points.begin() + End, Out);
    } else {
      TQXPathPointKind* const First = Kinds();
      Out = ThinRow(Path.Points.subspan(I - 1, End - I + 1), How, Out);
      std::fill(First, Kinds(), TQXPathPointKind::pkLine);
    }
    I = End;
  }
  const auto Used = static_cast<std::size_t>(Out - FPoints.data());
  return {{FPoints.data(), Used}, {FKinds.data(), Used}};
}

}  // namespace qxsvg
