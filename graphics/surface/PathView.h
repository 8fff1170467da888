// The raw form of a path: a list of points, each with its kind, seen without owning it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/Geometry.h"

namespace qxsvg {

// A move and a line have one point each, a cubic curve three (two controls and the end, all of kind
// pkCurve). A close is an entry of its own, whose point is the start of the figure it closes.
enum class TQXPathPointKind : std::uint8_t { pkMove, pkLine, pkCurve, pkClose };

// Both spans have the same length and belong to the path they were taken from; they are void after
// its next change. Every figure begins with a move, every curve has its three points, and all
// points are finite: the classes that build paths see to that.
struct TQXPathView {
  std::span<const TPointF> Points;
  std::span<const TQXPathPointKind> Kinds;

  std::size_t Count() const { return Points.size(); }
  bool IsEmpty() const { return Points.empty(); }
};

}  // namespace qxsvg
