#include "tools/InkCanvas.h"

#include "foundation/Limits.h"
#include "graphics/surface/Path.h"
#include "graphics/surface/PathMeasure.h"
#include "graphics/surface/Region.h"
#include "runtime/Exceptions.h"

namespace qxsvg::tools {

TRect InkCanvas::GetDeviceBounds() const {
  return {-Limits::BitmapSide, -Limits::BitmapSide, Limits::BitmapSide, Limits::BitmapSide};
}

void InkCanvas::DoIntersectClipRect(const TRectF& R) {
  FClips.back() = TRectF::Intersect(FClips.back(), R);
}

void InkCanvas::DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) {
  DoIntersectClipRect(QXMatrixTransform(Matrix, Region.GetBounds()));
}

void InkCanvas::DoFillPath(const TQXPathSource& Source, const TQXGPBrush&, float) {
  Add(QXPathBounds(Source.Path, QXMatrixMultiply(Source.Matrix, Matrix())));
}

void InkCanvas::DoDrawPath(const TQXPathSource& Source, const TQXGPPen& Pen, float) {
  TQXGPPath Path(this);
  Path.Assign(Source.Path);
  Path.ApplyMatrix(Source.Matrix);
  try {
    TQXGPPath Outline(this);
    Outline.Assign(&Path);
    Outline.Widen(Pen);
    Outline.ApplyMatrix(Matrix());
    Add(Outline.GetBounds());
  } catch (const ESVGException&) {
    // An outline of too many pieces lies within a pen's width all the same, but for its corners.
    TRectF Box = Path.GetBounds();
    QXInflateRect(Box, Pen.Thickness(), Pen.Thickness());
    Add(QXMatrixTransform(Matrix(), Box));
  }
}

void InkCanvas::DoDrawImage(const TQXConstPixels&, const TRectF& Dest, const TRectF&, float) {
  Add(QXMatrixTransform(Matrix(), Dest.Normalized()));
}

void InkCanvas::Add(const TRectF& Box) {
  FInk = TRectF::Union(FInk, TRectF::Intersect(FClips.back(), Box));
}

}  // namespace qxsvg::tools
