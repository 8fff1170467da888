// Where an image element shows its picture, and what of it can be hit.
#include "shapes/Image.h"

#include <cmath>

#include "document/Document.h"
#include "document/TreeWalk.h"
#include "foundation/Messages.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/Path.h"
#include "shapes/Reference.h"

namespace qxsvg {

namespace {

// A picture that is shown smaller than it is costs all its pixels, and references show it as often
// as they like. A pixel that is only read costs an eighth of one of a tile.
bool PayForReading(const TQXGPBitmap& Picture, const TMatrix& Placed, const TRectF& Part) {
  const double Area = std::abs((double{Placed.m11} * Placed.m22 - double{Placed.m12} * Placed.m21) *
                               Part.Width() * Part.Height());
  const std::int64_t Pixels = std::int64_t{Picture.GetWidth()} * Picture.GetHeight();
  return Area >= static_cast<double>(Pixels) || TReferenceScope::TakePixels(Pixels / 8);
}

}  // namespace

bool TSVGImage::HasPicture() const {
  return FBitmap && FBitmap->GetWidth() > 0 && FBitmap->GetHeight() > 0;
}

TRectF TSVGImage::Align(const TRectF& Rect) const {
  const float A = static_cast<float>(FBitmap->GetWidth()) / FBitmap->GetHeight();
  const float Factor = std::max(A, 1 / A);
  const TSVGAlign How = AspectRatio().Align();
  float Width = Rect.Width(), Height = Rect.Height();
  if (How != TSVGAlign::saNone) {
    // The larger ratio serves for pictures of both directions, so that one may come out larger than
    // its box.
    const bool FollowsWidth = (Width > Height) == AspectRatio().Slice();
    if (FollowsWidth)
      Height = Width * Factor;
    else
      Width = Height * Factor;
  }
  float DX = 0, DY = 0;
  switch (How) {
    case TSVGAlign::saXMaxYMin:
    case TSVGAlign::saXMaxYMid:
    case TSVGAlign::saXMaxYMax: DX = Rect.Width() - Width; break;
    case TSVGAlign::saXMidYMin:
    case TSVGAlign::saXMidYMid:
    case TSVGAlign::saXMidYMax: DX = Rect.Width() / 2 - Width / 2; break;
    default: break;
  }
  switch (How) {
    case TSVGAlign::saXMinYMid:
    case TSVGAlign::saXMidYMid:
    case TSVGAlign::saXMaxYMid: DY = Rect.Height() / 2 - Height / 2; break;
    case TSVGAlign::saXMinYMax:
    case TSVGAlign::saXMidYMax:
    case TSVGAlign::saXMaxYMax: DY = Rect.Height() - Height; break;
    default: break;
  }
  return QXRect(Rect.Left + DX, Rect.Top + DY, Rect.Left + DX + Width, Rect.Top + DY + Height);
}

void TSVGImage::Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TTreeWalk Walk(*this);
  if (!ShouldDraw()) return;
  const TQXCanvasStateLock State(Canvas);
  OverflowClipping(QXMatrixMultiply(this->Matrix(), Matrix), Canvas, Rect);
  InternalDraw(Matrix, Canvas, Rect);
}

bool TSVGImage::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF&) {
  const TRectF Box = GetBoundsRect();
  if (!HasPicture() || Box.IsEmpty()) return false;
  const TMatrix Outer = Canvas.Matrix();
  const TMatrix Placed = QXMatrixMultiply(Matrix, Outer);
  const TRectF Part = Align(Box);
  if (!PayForReading(*FBitmap, Placed, Part)) {
    if (Document()) Document()->Diagnose(TSVGDiagnosticKind::dkLimit, this, STilePixelLimit);
    return false;
  }
  Canvas.SetMatrix(Placed);
  Canvas.DrawImage(*FBitmap, Part, static_cast<float>(GetAbsoluteOpacity()));
  Canvas.SetMatrix(Outer);
  return true;
}

TSVGElement* TSVGImage::ElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                     const TRectF& Rect, const TSVGFindOptions& Options) {
  // A picture is placed by its box and not through a view.
  return TSVGCustomGroup::ElementAtPos(Matrix, Canvas, Point, Rect, Options);
}

TSVGElement* TSVGImage::DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                               TPointF Point, const TRectF&,
                                               const TSVGFindOptions&) {
  TQXGPPath Box;
  Box.AddRectangle(GetBoundsRect());
  Box.ApplyMatrix(Matrix);
  return Box.IsVisiblePathPoint(Point, &Canvas) ? DoOnElementFound(this) : nullptr;
}

}  // namespace qxsvg
