#include "graphics/surface/Stroker.h"

#include <algorithm>
#include <cmath>

#include "graphics/surface/FigureStroker.h"
#include "graphics/surface/Pen.h"

namespace qxsvg {

namespace {

// Miters that reach farther than this many widths are not looked for outside the clip.
constexpr float FarthestMiter = 100;
// Keeps boxes finite.
constexpr float FarthestReach = 1e30f;

// What Clip shows of the pen's space, with room for rounding; false where that is nothing.
bool ShownBox(const TMatrix& ToDevice, const TRectF& Clip, float Tolerance, TRectF& Shown) {
  Shown = Clip;
  if (!IsIdentityMatrix(ToDevice)) {
    TMatrix Inverse;
    if (!QXMatrixInvert(ToDevice, Inverse)) return false;
    Shown = QXMatrixTransform(Inverse, Clip);
  }
  QXInflateRect(Shown, Tolerance + 1e-4f * std::abs(Shown.Width()),
                Tolerance + 1e-4f * std::abs(Shown.Height()));
  return true;
}

}  // namespace

TQXStrokeStyle TQXStrokeStyle::FromPen(const TQXGPPen& Pen) {
  TQXStrokeStyle Style;
  Style.Width = Pen.Thickness();
  Style.MiterLimit = Pen.MiterLimit();
  Style.Join = Pen.Join();
  Style.StartCap = Pen.StartCap();
  Style.EndCap = Pen.EndCap();
  Style.DashCap = Pen.DashCap();
  Style.Dashes = Pen.DashPattern();
  Style.DashOffset = Pen.DashOffset();
  return Style;
}

float TQXStrokeStyle::Reach() const {
  const float Miter = Join == TQXGPStrokeJoin::sjMiter ? std::min(MiterLimit, FarthestMiter) : 1;
  return std::min(Width / 2 * std::max(Miter, 1.5f), FarthestReach);
}

void TQXStroker::Stroke(const TQXPathView& Path, const TQXStrokeStyle& Style,
                        const TMatrix& ToDevice, const TRectF& Clip, float Tolerance,
                        TQXLineBuffer& Left, TQXLineBuffer& Right) {
  if (!(Style.Width > 0) || !std::isfinite(Style.Width)) return;
  const double Scale =
      std::max(std::hypot(ToDevice.m11, ToDevice.m12), std::hypot(ToDevice.m21, ToDevice.m22));
  TRectF Shown;
  const auto Allowed = static_cast<float>(Tolerance / Scale);
  if (!(Scale > 0) || !ShownBox(ToDevice, Clip, Allowed, Shown)) return;
  TStrokeOutline Outline(Style, ToDevice, Allowed, Shown, Left, Right);
  TFigureStroker::TDashes Dashes;
  const bool IsDashed = Dashes.Make(Style, Scale, Outline.IsWide(), FEdges);
  TFigureStroker Figures(Style, Outline, Shown, static_cast<float>(QXFarthestPixel / 4 / Scale),
                         IsDashed ? &Dashes : nullptr);

  TFigureStroker::TFigure Figure;
  const std::size_t Count = Path.Count();
  for (std::size_t I = 0; I < Count;) {
    if (Path.Kinds[I] == TQXPathPointKind::pkMove) Figure.Start = Path.Points[I++];
    Figure.First = I;
    while (I < Count && Path.Kinds[I] != TQXPathPointKind::pkMove &&
           Path.Kinds[I] != TQXPathPointKind::pkClose)
      ++I;
    Figure.Last = I;
    Figure.IsClosed = I < Count && Path.Kinds[I] == TQXPathPointKind::pkClose;
    if (Figure.IsClosed) ++I;
    Figures.Draw(Path, Figure);
  }
}

}  // namespace qxsvg
