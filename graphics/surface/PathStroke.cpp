// What a path has to do with pens: its widened outline, and the tests of points.
#include <map>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/Path.h"
#include "graphics/surface/PathMeasure.h"
#include "graphics/surface/Stroker.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

// No curve or pen is worth more lines than this asks for.
constexpr float FinestTolerance = 1e-6f;

constexpr TRectF Everywhere{-QXFarthestPixel, -QXFarthestPixel, QXFarthestPixel, QXFarthestPixel};

// Counts how often the lines wind about a point.
class TWindingCounter final : public ILineConsumer {
 public:
  explicit TWindingCounter(TPointF P) : FPoint(P) {}

  void Consume(std::span<const TPointF> Points, std::span<const TQXPolyline> Lines) override {
    for (const TQXPolyline& Line : Lines) {
      int Sum = 0;
      for (std::uint32_t I = 1; I < Line.Count; ++I)
        Sum += Crossing(Points[Line.First + I - 1], Points[Line.First + I]);
      FCount += Line.IsReversed ? -Sum : Sum;
    }
  }
  int Count() const { return FCount; }

 private:
  // Of the ray from the point to the left; a line holds its upper end and not its lower one.
  int Crossing(TPointF A, TPointF B) const {
    const bool IsDown = A.Y <= FPoint.Y && FPoint.Y < B.Y;
    if (!IsDown && !(B.Y <= FPoint.Y && FPoint.Y < A.Y)) return 0;
    const double X = A.X + (double{B.X} - A.X) * ((double{FPoint.Y} - A.Y) / (double{B.Y} - A.Y));
    return X > FPoint.X ? 0 : IsDown ? 1 : -1;
  }

  TPointF FPoint;
  int FCount = 0;
};

// Gathers the polylines and joins them into closed figures, end to start: together they close, but
// not each by itself.
class TOutlineBuilder final : public ILineConsumer {
 public:
  void Consume(std::span<const TPointF> Points, std::span<const TQXPolyline> Lines) override {
    for (const TQXPolyline& Line : Lines) {
      FCount += Line.Count;
      if (FCount > 3 * Limits::PathSegments) throw ESVGException(SPathSegmentLimit);
      TQXPoints Piece(Points.begin() + Line.First, Points.begin() + Line.First + Line.Count);
      if (Line.IsReversed) std::ranges::reverse(Piece);
      FPieces.push_back(std::move(Piece));
    }
  }

  TQXPathGeometry Build() {
    std::multimap<std::pair<float, float>, std::size_t> ByStart;
    for (std::size_t I = 0; I < FPieces.size(); ++I) ByStart.emplace(Key(FPieces[I].front()), I);
    TQXPathGeometry Outline;
    while (!ByStart.empty()) {
      auto Next = ByStart.begin();
      const TPointF Start = FPieces[Next->second].front();
      Outline.MoveTo(Start);
      while (Next != ByStart.end()) {
        const TQXPoints& Piece = FPieces[Next->second];
        ByStart.erase(Next);
        for (const TPointF P : std::span(Piece).subspan(1)) Outline.LineTo(P);
        if (Piece.back() == Start) break;
        Next = ByStart.find(Key(Piece.back()));
      }
      Outline.Close();
    }
    return Outline;
  }

 private:
  static std::pair<float, float> Key(TPointF P) { return {P.X, P.Y}; }

  std::vector<TQXPoints> FPieces;
  std::size_t FCount = 0;
};

void StrokeInto(ILineConsumer& Target, const TQXPathView& Path, const TQXGPPen& Pen,
                const TMatrix& ToDevice, const TRectF& Clip, float Tolerance) {
  // The memory of strokers is worth keeping: hit tests come with every movement of the mouse.
  thread_local TQXStroker Stroker;
  TQXLineBuffer Left(Target), Right(Target, true);
  Stroker.Stroke(Path, TQXStrokeStyle::FromPen(Pen), ToDevice, Clip, Tolerance, Left, Right);
  Left.Flush();
  Right.Flush();
}

}  // namespace

void TQXGPPath::Widen(float Width) {
  TQXGPPen Pen;
  Pen.SetThickness(Width);
  Widen(Pen);
}

void TQXGPPath::Widen(const TQXGPPen& Pen) {
  // No device is known: the outline is made fine enough to be enlarged to the size of a screen.
  const TRectF Box = FGeometry.IsEmpty() ? TRectF{} : GetBounds();
  const float Size = std::max({Box.Width(), Box.Height(), Pen.Thickness()});
  const float Tolerance = std::clamp(Size * 1e-4f, FinestTolerance, 0.1f);
  TOutlineBuilder Builder;
  StrokeInto(Builder, View(), Pen, QXIdentityMatrix, Everywhere, Tolerance);
  FGeometry = Builder.Build();
  FFillMode = TQXGPFillMode::fmWinding;
  Changed();
}

bool TQXGPPath::IsVisiblePathPoint(TPointF P, const TQXGPCanvas* Canvas) const {
  if (!Canvas) return QXPathContains(View(), FFillMode, P);
  // The way back through the matrix is cheaper than the way of all points to the device.
  TMatrix ToPath;
  return QXMatrixInvert(Canvas->Matrix(), ToPath) && Canvas->IsVisible(P) &&
         QXPathContains(View(), FFillMode, QXMatrixTransform(ToPath, P));
}

bool TQXGPPath::IsOutlineVisiblePathPoint(TPointF P, const TQXGPPen& Pen,
                                          const TQXGPCanvas* Canvas) const {
  if (!IsFinite(P) || (Canvas && !Canvas->IsVisible(P))) return false;
  // Strokes are drawn around the origin; what lies far from it is brought there.
  constexpr float Far = QXFarthestPixel / 8;
  if (!Canvas && std::max(std::abs(P.X), std::abs(P.Y)) > Far) {
    TQXGPPath Near;
    Near.Assign(View());
    Near.Translate(-P.X, -P.Y);
    return Near.IsOutlineVisiblePathPoint({}, Pen);
  }
  // Fine enough for thin pens in small units too.
  const TMatrix& ToDevice = Canvas ? Canvas->Matrix() : QXIdentityMatrix;
  const float Width = QXMatrixMultiply(Pen.Thickness(), ToDevice);
  const float Tolerance = std::clamp(Width / 100, FinestTolerance, 0.01f);
  constexpr float Reach = 2;
  TWindingCounter Winding(P);
  StrokeInto(Winding, View(), Pen, ToDevice, {P.X - Reach, P.Y - Reach, P.X + Reach, P.Y + Reach},
             Tolerance);
  return Winding.Count() != 0;
}

}  // namespace qxsvg
