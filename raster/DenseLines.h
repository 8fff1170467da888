// Leaves out points that nobody can see: plots and maps have many of them within a fraction of a
// pixel.
#pragma once

#include <limits>
#include <vector>

#include "graphics/surface/PathView.h"

namespace qxsvg {

// How far a stroked line may move, in pixels: less than a curve does. Filled outlines are drawn as
// they are; their lines cost less than the search for those that could be left out.
inline constexpr float StrokeThinning = 1.0f / 32;

struct TThinning {
  // How far the lines may move, in the units of the path.
  float Distance = StrokeThinning;
  // The most that the slopes of lines that become one may differ: joins other than round ones show
  // every turn, however short the lines are.
  float Turn = std::numeric_limits<float>::infinity();
};

// Works in one pass, with what the whole path holds: the result does not depend on a clip. The
// memory it needs is kept for the next path.
class TLineThinner {
 public:
  // Path itself or, where enough of its points can be left out, a thinner one that is void after
  // the next call. Curves stay as they are, and so do the first and the last line of a row of
  // lines, from which caps have their direction. Lines that lead forth and back along the same way
  // become its whole extent.
  TQXPathView Thin(const TQXPathView& Path, TThinning How);

 private:
  std::vector<TPointF> FPoints;
  std::vector<TQXPathPointKind> FKinds;
};

}  // namespace qxsvg
