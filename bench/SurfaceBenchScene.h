// Drawings that the surface suite measures on, read straight into paths.
#pragma once

#include <string>
#include <vector>

#include "foundation/Color.h"
#include "foundation/DrawingEnums.h"
#include "graphics/surface/PathGeometry.h"

namespace qxsvg::bench {

struct TBenchShape {
  TQXPathGeometry Path;
  // Alpha 0 is no paint.
  TQXGPColor Fill = 0, Stroke = 0;
  TQXGPFillMode FillMode = TQXGPFillMode::fmWinding;
  float Width = 1, MiterLimit = 4;
  TQXGPStrokeJoin Join = TQXGPStrokeJoin::sjMiter;
  TQXGPLineCap Cap = TQXGPLineCap::lcFlat;
  // In user units.
  std::vector<float> Dashes;
};

struct TBenchScene {
  float Width = 1, Height = 1;
  std::vector<TBenchShape> Shapes;

  // Shapes in the middle of a square of Size pixels.
  TMatrix FitInto(float Size) const;
};

// Paths, rectangles, circles and groups of a drawing with their presentation attributes; all else
// is passed over. Empty where there is no such file.
TBenchScene LoadScene(const std::string& Path);
// Number of paths of 24 pixels from the icons of a folder, in rows over a square of Size pixels.
TBenchScene LoadIcons(const std::string& Folder, std::size_t Number, float Size);

TBenchScene BigPolygon(std::size_t Points, float Size);
TBenchScene LongStrokes(std::size_t Number, float Size, bool IsDashed);
// A star with many rays, with a hole.
TQXPathGeometry ClipStar(float Size);

}  // namespace qxsvg::bench
