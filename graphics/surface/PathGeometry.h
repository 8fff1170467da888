// The points of a path with the operations that build and change them. TQXPathData, TQXGPPath and
// TQXGPRegion keep one each.
#pragma once

#include <span>
#include <vector>

#include "foundation/DrawingEnums.h"
#include "graphics/surface/PathView.h"
#include "runtime/Export.h"

namespace qxsvg {

// Every operation keeps what TQXPathView promises: a segment with a coordinate that is not finite
// is left out, a line or curve without a figure begins one at its own first point, and a segment
// after a close begins a figure at the start of the closed one. Growing past three
// entries for each of Limits::PathSegments raises ESVGException and leaves the path as it was.
class QXSVG_API TQXPathGeometry {
 public:
  TQXPathView View() const { return {FPoints, FKinds}; }
  std::size_t Count() const { return FPoints.size(); }
  bool IsEmpty() const { return FPoints.empty(); }

  // Keeps the memory for the next path.
  void Clear();
  // Gives the memory back too.
  void Release();
  void Reserve(std::size_t Points);
  // Gives back memory where the points leave a good part of it unused.
  void Trim();

  void MoveTo(TPointF P);
  void LineTo(TPointF P);
  void CurveTo(TPointF Control1, TPointF Control2, TPointF P);
  // Raised to a cubic curve.
  void QuadTo(TPointF Control, TPointF P);
  // The elliptical arc of SVG 1.1 chapter 8.3.8 as cubic curves: half-axes, rotation of their X
  // axis in degrees, flags and end. Half-axes that are too small are scaled up; a zero one gives a
  // line.
  void ArcTo(float RX, float RY, float Rotation, bool LargeArc, bool Sweep, TPointF P);
  // Does nothing where no figure is open.
  void Close();
  // Where the next segment begins; the origin for an empty path.
  TPointF CurrentPoint() const;

  // Four lines clockwise from the left top (in a system whose Y axis points down), closed.
  void AddRectangle(const TRectF& R);
  // With elliptic corners, RX and RY cut to half the sides; only those in Corners are round.
  void AddRectangle(const TRectF& R, float RX, float RY, TQXCorners Corners);
  // Clockwise from the rightmost point, as four curves, closed.
  void AddEllipse(const TRectF& Box);
  // A closed figure; nothing without points.
  void AddPolygon(std::span<const TPointF> Points);
  // Copies the other's figures; with Connect a line joins this path's last point with the first of
  // the other, whose first move becomes that line.
  void Append(const TQXPathView& Other, bool Connect);
  // The other's figures after M, nothing where M is not finite; the other is not this path.
  void Append(const TQXPathView& Other, const TMatrix& M);
  void Assign(const TQXPathView& Other);

  // Products that no float holds are clamped to +-1e30; a matrix that is not finite changes
  // nothing.
  void Transform(const TMatrix& M);
  void Translate(float DX, float DY);
  // Gives up all entries from Count on.
  void Truncate(std::size_t Count);

  friend bool operator==(const TQXPathGeometry&, const TQXPathGeometry&) = default;

 private:
  friend class TQXPathParser;
  void Open(std::size_t Points);
  void Put(TPointF P, TQXPathPointKind Kind);
  // Entries that go on from the last, which the caller made right; the last move stays with it too.
  void AppendRaw(const TQXPathView& Entries);
  void FindFigure();
  // Whether these are entries of this path.
  bool Holds(const TQXPathView& Entries) const;
  void TransformFrom(std::size_t First, const TMatrix& M);
  // Raises where that many more entries are over the limit.
  void CheckGrowth(std::size_t Points) const;
  void Grow(std::size_t Points);

  std::vector<TPointF> FPoints;
  std::vector<TQXPathPointKind> FKinds;
  // The entry of the open or last figure's move.
  std::size_t FFigure = 0;
};

}  // namespace qxsvg
