// How a viewport fits what it shows, and the walks that draw it and look into it.
#include "shapes/CustomViewBox.h"
#include "document/TreeWalk.h"
#include "graphics/surface/Canvas.h"
#include "shapes/Reference.h"

namespace qxsvg {

namespace {

// A box of unit size or smaller is scaled by its inverse alone, whatever the target's size.
double ScaleOf(float Box, float Target) {
  if (Box == 0) return 1;
  return Box <= 1 ? 1 / double{Box} : double{Target} / Box;
}

enum class TSide { Near, Middle, Far };

TSide HorizontalSide(TSVGAlign Align) {
  switch (Align) {
    case TSVGAlign::saXMidYMin:
    case TSVGAlign::saXMidYMid:
    case TSVGAlign::saXMidYMax: return TSide::Middle;
    case TSVGAlign::saXMaxYMin:
    case TSVGAlign::saXMaxYMid:
    case TSVGAlign::saXMaxYMax: return TSide::Far;
    default: return TSide::Near;
  }
}

TSide VerticalSide(TSVGAlign Align) {
  switch (Align) {
    case TSVGAlign::saXMinYMid:
    case TSVGAlign::saXMidYMid:
    case TSVGAlign::saXMaxYMid: return TSide::Middle;
    case TSVGAlign::saXMinYMax:
    case TSVGAlign::saXMidYMax:
    case TSVGAlign::saXMaxYMax: return TSide::Far;
    default: return TSide::Near;
  }
}

// Where a box of Size begins between Near and Far; a box on the near side stays where it is.
void Place(TSide Side, double Near, double Far, double Size, float& Start) {
  if (Side == TSide::Middle) Start = static_cast<float>(Near + ((Far - Near) / 2 - Size / 2));
  if (Side == TSide::Far) Start = static_cast<float>(Far - Size);
}

}  // namespace

void TSVGCustomViewBox::DefineView(const TRectF& Rect, const TSVGPreserveAspectRatio& Ratio,
                                   float& TX, float& TY, float& ScaleX, float& ScaleY) const {
  const float Width = FViewBox.Width().GetValue(), Height = FViewBox.Height().GetValue();
  double SX = ScaleOf(Width, Rect.Width()), SY = ScaleOf(Height, Rect.Height());
  if (Ratio.Align() != TSVGAlign::saNone)
    SX = SY = Ratio.Slice() ? std::max(SX, SY) : std::min(SX, SY);
  ScaleX = static_cast<float>(SX);
  ScaleY = static_cast<float>(SY);
  Place(HorizontalSide(Ratio.Align()), Rect.Left, Rect.Right, Width * SX, TX);
  Place(VerticalSide(Ratio.Align()), Rect.Top, Rect.Bottom, Height * SY, TY);
}

TMatrix TSVGCustomViewBox::ViewMatrix(const TSVGPreserveAspectRatio& Ratio, const TRectF& Rect,
                                      bool DoFit) const {
  float TX = Rect.Left, TY = Rect.Top, ScaleX = 1, ScaleY = 1;
  if (DoFit) DefineView(Rect, Ratio, TX, TY, ScaleX, ScaleY);
  const TMatrix Move = CreateTranslateQXMatrix(-FViewBox.X().GetValue(), -FViewBox.Y().GetValue());
  return QXMatrixMultiply(QXMatrixMultiply(Move, CreateScaleQXMatrix(ScaleX, ScaleY)),
                          CreateTranslateQXMatrix(TX, TY));
}

TMatrix TSVGCustomViewBox::GetViewMatrix(const TMatrix& Matrix, const TRectF& Rect) {
  const bool IsSpecified = FViewBox.ViewBoxSpecified();
  if (!IsSpecified && FAspectRatio.Align() == TSVGAlign::saNone)
    return QXMatrixMultiply(CreateScaleQXMatrix(Matrix.m11, Matrix.m22),
                            CreateTranslateQXMatrix(Rect.Left, Rect.Top));
  return ViewMatrix(FAspectRatio, Rect, IsSpecified);
}

TRectF TSVGCustomViewBox::ViewTarget() {
  const bool IsRoot = !Document();
  return IsRoot && FViewBox.ViewBoxSpecified() ? FViewBox.GetRect() : GetBoundsRect();
}

void TSVGCustomViewBox::OverflowClipping(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                         const TRectF&) {
  if (IsOverflow() || !GetOptions().Has(TSVGOption::soApplyClipping)) return;
  const TRectF Clip = GetClipRect();
  if (Clip.IsEmpty()) return;
  const TMatrix Outer = Canvas.Matrix();
  Canvas.SetMatrix(QXMatrixMultiply(Matrix, Outer));
  Canvas.IntersectClip(Clip);
  Canvas.SetMatrix(Outer);
}

void TSVGCustomViewBox::Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TTreeWalk Walk(*this);
  if (!ShouldDraw()) return;
  const TReferenceScope Scope;
  const TQXCanvasStateLock State(Canvas);
  OverflowClipping(Matrix, Canvas, Rect);
  InternalDraw(QXMatrixMultiply(GetViewMatrix(QXIdentityMatrix, ViewTarget()), Matrix), Canvas,
               Rect);
}

TSVGElement* TSVGCustomViewBox::ElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                             TPointF Point, const TRectF& Rect,
                                             const TSVGFindOptions& Options) {
  const TTreeWalk Walk(*this);
  const TReferenceScope Scope;
  const TMatrix View = QXMatrixMultiply(GetViewMatrix(QXIdentityMatrix, ViewTarget()), Matrix);
  if (GetPointerEvents() != TSVGPointerEvents::peNone)
    return TSVGCustomGroup::ElementAtPos(View, Canvas, Point, Rect, Options);
  // A viewport that takes no events itself may hold elements that do.
  const bool IsSeen = Options.Has(TSVGFindOption::foFindHiddenElements) || ShouldDraw();
  return IsSeen ? InternalElementAtPos(View, Canvas, Point, Rect, Options) : nullptr;
}

void TSVGCustomViewBox::DrawElementParent(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect) {
  if (TSVGGraphicElement* const Outer = GetGraphicParent())
    Outer->DrawElementParent(Matrix, Canvas, Rect);
  if (!ShouldDraw()) return;
  OverflowClipping(Matrix, Canvas, Rect);
  Matrix = QXMatrixMultiply(GetViewMatrix(QXIdentityMatrix, ViewTarget()), Matrix);
  PerformClipping(Matrix, Canvas, Rect);
}

}  // namespace qxsvg
