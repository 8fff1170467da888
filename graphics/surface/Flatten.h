// From paths to straight lines in device space: the stream of polylines that coverage is made of.
//
// A filled area is described by directed lines alone, in any order: what matters is that they
// close. Flattening and stroking therefore write polylines into a small buffer that is handed on
// whenever it is full, and never hold a whole outline.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "graphics/surface/PathView.h"
#include "runtime/Export.h"

namespace qxsvg {

// The greatest distance between a curve and the lines that stand for it, in pixels.
inline constexpr float QXFlattenTolerance = 0.1f;

// Points First to First + Count - 1 of a batch, joined by lines; the last point is not joined with
// the first. A reversed polyline is to be walked backwards.
struct TQXPolyline {
  std::uint32_t First = 0, Count = 0;
  bool IsReversed = false;
};

// Takes polylines batch by batch.
class ILineConsumer {
 public:
  virtual void Consume(std::span<const TPointF> Points, std::span<const TQXPolyline> Lines) = 0;

 protected:
  ~ILineConsumer() = default;
};

// Gathers polylines of any length. Nothing is consumed twice and no line gets lost between batches;
// what is left goes out with Flush, which the maker of the buffer calls at the end.
class TQXLineBuffer {
 public:
  static constexpr std::uint32_t Capacity = 2048, MaxLines = 256;
  // The most points that one Reserve may ask for.
  static constexpr std::uint32_t MaxReserve = 512;

  explicit TQXLineBuffer(ILineConsumer& Consumer, bool IsReversed = false)
      : FConsumer(Consumer), FReversed(IsReversed) {}

  void MoveTo(TPointF P) {
    EndLine();
    if (FLineCount == MaxLines || FCount + MaxReserve > Capacity) Emit();
    FFirst = FCount;
    FPoints[FCount++] = P;
  }
  // MoveTo came before.
  void LineTo(TPointF P) {
    if (FCount == Capacity) Continue();
    FPoints[FCount++] = P;
  }
  // Room for N points that continue the polyline; Commit says how many were written.
  TPointF* Reserve(std::uint32_t N) {
    if (FCount + N > Capacity) Continue();
    return FPoints.data() + FCount;
  }
  void Commit(std::uint32_t N) { FCount += N; }
  TPointF Last() const { return FPoints[FCount - 1]; }
  void Flush() {
    EndLine();
    Emit();
  }

 private:
  void EndLine() {
    if (FCount > FFirst + 1)
      FLines[FLineCount++] = {FFirst, FCount - FFirst, FReversed};
    else
      FCount = FFirst;
    FFirst = FCount;
  }
  void Emit() {
    if (FLineCount != 0) FConsumer.Consume({FPoints.data(), FCount}, {FLines.data(), FLineCount});
    FLineCount = FCount = FFirst = 0;
  }
  // Hands on what is there and goes on with the polyline from its last point.
  void Continue() {
    const TPointF Last = FPoints[FCount - 1];
    EndLine();
    Emit();
    FPoints[FCount++] = Last;
  }

  ILineConsumer& FConsumer;
  std::uint32_t FCount = 0, FFirst = 0, FLineCount = 0;
  bool FReversed;
  // Left as they are until written: clearing them would cost more than many a path.
  std::array<TPointF, Capacity> FPoints;
  std::array<TQXPolyline, MaxLines> FLines;
};

// A cubic curve as the polynomial ((A t + B) t + C) t + D.
struct TQXCubic {
  TPointF A, B, C, D;

  static TQXCubic FromControls(TPointF P0, TPointF P1, TPointF P2, TPointF P3);
  TPointF At(float T) const {
    return {((A.X * T + B.X) * T + C.X) * T + D.X, ((A.Y * T + B.Y) * T + C.Y) * T + D.Y};
  }
  // Writes the points at (First + I) / Steps for I from 0 to Count - 1.
  void Sample(std::uint32_t First, std::uint32_t Count, std::uint32_t Steps, TPointF* Out) const;
  // The derivative likewise.
  void SampleTangents(std::uint32_t First, std::uint32_t Count, std::uint32_t Steps,
                      TPointF* Out) const;
};

// How many lines of even parameter steps stand for the curve within Tolerance: at least 1, at most
// MaxCurveSteps.
inline constexpr std::uint32_t QXMaxCurveSteps = 4096;
QXSVG_API std::uint32_t QXCurveSteps(TPointF P0, TPointF P1, TPointF P2, TPointF P3,
                                     float Tolerance);

// Writes Points through M to Out, which may be the same memory, and gives their box. Products that
// no float holds are clamped to +-1e30. Without points the box is inside out.
QXSVG_API TRectF QXTransformPoints(std::span<const TPointF> Points, const TMatrix& M, TPointF* Out);
QXSVG_API TRectF QXPointsBox(std::span<const TPointF> Points);

// Coordinates beyond this many pixels are cut off before they become fixed-point numbers.
inline constexpr float QXFarthestPixel = 2097152.0f;

// Writes the lines of all figures, each closed, to Target. Lines and curves that lie wholly above,
// below or right of Clip are left out and those wholly left of it moved to its left side, which
// changes no winding inside; what is partly inside keeps its exact place, so that a picture does
// not depend on the clip it is drawn with. IsInside says that Clip is known to hold every point;
// then nothing is tested. Every point that comes out is within QXFarthestPixel, and the work is
// bounded by what Clip shows, however far a curve reaches.
QXSVG_API void QXFlattenFigures(const TQXPathView& Path, const TRectF& Clip, bool IsInside,
                                float Tolerance, TQXLineBuffer& Target);

}  // namespace qxsvg
