// Path data: what is read keeps its promises through every measure, and comes back as it was
// written.
#include "FuzzInput.h"
#include "graphics/surface/PathData.h"
#include "graphics/surface/PathMeasure.h"
#include "runtime/Exceptions.h"

using namespace qxsvg;

namespace {

using enum TQXPathPointKind;

void CheckView(const TQXPathView& Path) {
  fuzz::Check(Path.Points.size() == Path.Kinds.size(), "every point has a kind");
  fuzz::Check(Path.IsEmpty() || Path.Kinds[0] == pkMove, "a path begins with a move");
  std::size_t Curve = 0;
  TPointF Start{};
  for (std::size_t I = 0; I < Path.Count(); ++I) {
    fuzz::Check(IsFinite(Path.Points[I]), "points are finite");
    if (Path.Kinds[I] == pkCurve) {
      ++Curve;
      continue;
    }
    fuzz::Check(Curve % 3 == 0, "a curve has three points");
    Curve = 0;
    if (Path.Kinds[I] == pkMove) Start = Path.Points[I];
    if (Path.Kinds[I] == pkClose)
      fuzz::Check(Path.Points[I] == Start, "a close lies at the start of its figure");
    if (I != 0 && Path.Kinds[I - 1] == pkClose)
      fuzz::Check(Path.Kinds[I] == pkMove, "a figure follows a close with a move");
  }
  fuzz::Check(Curve % 3 == 0, "the last curve has three points");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  TQXPathData Path;
  Path.SetPathString(fuzz::TextOf(Data, Size));
  CheckView(Path.View());

  TQXPathData Copy;
  Copy.SetPathString(Path.GetPathString());
  fuzz::Check(Copy.Geometry() == Path.Geometry(), "paths round trip");

  const TRectF Box = Path.GetBounds(), Controls = QXPathControlBounds(Path.View());
  fuzz::Check(Path.IsEmpty() || (Box.Left >= Controls.Left && Box.Right <= Controls.Right &&
                                 Box.Top >= Controls.Top && Box.Bottom <= Controls.Bottom),
              "the box lies in that of the controls");
  fuzz::Check(Path.GetLength() >= 0, "lengths are not negative");
  QXPathContains(Path.View(), TQXGPFillMode::fmWinding, {Box.Left, Box.Top});
  Copy.ApplyMatrix({1e20f, -3, 0, 1e30f, 0.5f, 0, 1e38f, -1e38f, 1});
  CheckView(Copy.View());
  // Each curve becomes up to some thousand lines, which takes memory but proves nothing more.
  if (Path.GetCount() < 500) {
    Path.Flatten(0.25f);
    CheckView(Path.View());
    fuzz::Check(Path.GetDistances().size() == Path.ToPolygons().size(), "a distance a polygon");
  }
  return 0;
}
