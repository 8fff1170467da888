// The outline of a stroke, as lines to be filled non-zero.
//
// Every piece of the outline winds the same way round, so that pieces that overlap add up and never
// cancel. Directions come from square roots and rotations by a fixed small angle; there is no
// trigonometry for points.
#pragma once

#include <span>
#include <vector>

#include "foundation/DrawingEnums.h"
#include "graphics/surface/Flatten.h"

namespace qxsvg {

class TQXGPPen;

// A pen's geometry in the space that the pen is round in.
struct TQXStrokeStyle {
  float Width = 1;
  float MiterLimit = 10;
  TQXGPStrokeJoin Join = TQXGPStrokeJoin::sjMiter;
  TQXGPLineCap StartCap = TQXGPLineCap::lcFlat, EndCap = TQXGPLineCap::lcFlat;
  TQXGPDashCap DashCap = TQXGPDashCap::dcFlat;
  // Lengths of marks and gaps in turn, and where the pattern starts, in multiples of Width. An odd
  // number of values repeats with the roles exchanged; empty, or a sum that is not above 0, is a
  // solid line.
  std::span<const float> Dashes;
  float DashOffset = 0;

  // Refers to the pen's dash values.
  QXSVG_API static TQXStrokeStyle FromPen(const TQXGPPen& Pen);
  // How far the outline reaches from the path at most.
  float Reach() const;
};

// Makes outlines; the memory it needs is kept for the next one.
class QXSVG_API TQXStroker {
 public:
  // Left gets the polylines that are walked forwards, Right (which is to be a buffer of reversed
  // polylines) those that are walked backwards: together they close. An open piece begins with a
  // polyline in each of them, both from the same point to the same point; a closed figure gives one
  // ring in each.
  //
  // Path is in the pen's space; ToDevice leads from there to the pixels of Clip and of Tolerance.
  // The matrix must be finite. Segments whose stroke misses Clip are left out, dashes on them are
  // passed over without being counted out. Points must be finite; a stroke width that is not above
  // 0 or not finite makes nothing.
  void Stroke(const TQXPathView& Path, const TQXStrokeStyle& Style, const TMatrix& ToDevice,
              const TRectF& Clip, float Tolerance, TQXLineBuffer& Left, TQXLineBuffer& Right);

 private:
  // Where the marks and gaps begin, counted along the path, and where the pattern ends.
  std::vector<double> FEdges;
};

}  // namespace qxsvg
