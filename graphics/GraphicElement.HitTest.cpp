// Which element lies under a point: the walk goes against the order of painting.
#include <algorithm>
#include <numbers>

#include "document/Document.h"
#include "document/TreeWalk.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/PathMeasure.h"
#include "shapes/CustomViewBox.h"

namespace qxsvg {

namespace {

using enum TSVGPointerEvents;
using TPointerEventSet = TEnumSet<TSVGPointerEvents, 16>;

// What counts whatever it is painted with.
constexpr TPointerEventSet StrokeGroup{peVisibleStroke, peVisible, peStroke, peAll};
constexpr TPointerEventSet FillGroup{peVisibleFill, peVisible, peFill, peAll};
// What counts where it is painted.
constexpr TPointerEventSet PaintedGroup{peVisiblePainted, pePainted};
// What needs the element to be drawn.
constexpr TPointerEventSet VisibleGroup{peVisiblePainted, peVisibleFill, peVisibleStroke,
                                        peVisible};

// A hair line has to be within reach of a pointer: device pixels.
constexpr float LeastHitThickness = 3;
// Below three points there is no area.
constexpr std::size_t LeastFillPoints = 3;

bool Counts(TSVGPointerEvents Events, const TPointerEventSet& Group, TQXGPBrushKind Kind) {
  return Group.Has(Events) || (Kind != TQXGPBrushKind::bkNone && PaintedGroup.Has(Events));
}

// How far beside a path its stroke of that width may lie: at the corners of square caps, and the
// tips of joins.
float StrokeReach(const TSVGPen& Pen, float Width) {
  return Width / 2 * std::max(std::numbers::sqrt2_v<float>, Pen.MiterLimit());
}

// The way of one point back to the path is shorter than that of the path to the device.
bool CoversPoint(const TQXGPPath& Path, TQXGPFillMode Mode, const TMatrix& Matrix,
                 const TQXGPCanvas& Canvas, TPointF Point) {
  TMatrix ToPath;
  return Canvas.IsVisible(Point) &&
         QXMatrixInvert(QXMatrixMultiply(Matrix, Canvas.Matrix()), ToPath) &&
         QXPathContains(Path.View(), Mode, QXMatrixTransform(ToPath, Point));
}

}  // namespace

TSVGElement* TSVGGraphicElement::ElementAtPos(TQXGPCanvas& Canvas, TPointF Point,
                                              const TRectF& Rect, const TSVGFindOptions& Options) {
  return ElementAtPos(GetViewMatrix(Rect), Canvas, Point, Rect, Options);
}

TSVGElement* TSVGGraphicElement::ElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                              TPointF Point, const TRectF& Rect,
                                              const TSVGFindOptions& Options) {
  const TTreeWalk Walk(*this);
  const TSVGPointerEvents Events = GetPointerEvents();
  if (Events == peNone) return nullptr;
  if (VisibleGroup.Has(Events) && !ShouldDraw() &&
      !Options.Has(TSVGFindOption::foFindHiddenElements))
    return nullptr;
  if (!Options.Has(TSVGFindOption::foFindDisabled) && !IsEnabled()) return nullptr;
  return InternalElementAtPos(Matrix, Canvas, Point, Rect, Options);
}

TSVGElement* TSVGGraphicElement::InternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                                      TPointF Point, const TRectF& Rect,
                                                      const TSVGFindOptions& Options) {
  const TMatrix M = QXMatrixMultiply(FMatrix, Matrix);
  for (std::int32_t I = Items().Count(); I-- > 0;) {
    // A handler of the host may take children away on the way.
    if (I >= Items().Count()) continue;
    TSVGGraphicElement* Child = Items()[I]->AsGraphicElement();
    if (!Child) continue;
    if (TSVGElement* Found = Child->ElementAtPos(M, Canvas, Point, Rect, Options)) return Found;
  }
  return DoInternalElementAtPos(M, Canvas, Point, Rect, Options);
}

TSVGElement* TSVGGraphicElement::DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                                        TPointF Point, const TRectF& Rect,
                                                        const TSVGFindOptions& Options) {
  TRectF Box = GetBoundsRect();
  const TQXGPPath* const Shape =
      Options.Has(TSVGFindOption::foUseBoundingBox) ? nullptr : GetShape();
  const bool ShapeDecides = Shape && Shape->Count() != 0;
  const bool NeedsBox = FPenChanged && !EffectiveStrokeURI().empty();
  const TSVGPen& Pen = PenInForce(QXIdentityMatrix, NeedsBox ? Box : TRectF());
  if (Counts(GetPointerEvents(), StrokeGroup, Pen.Kind())) {
    float Margin = Pen.Thickness();
    // Where the shape decides, the box must not be narrower than what is hit of its stroke.
    if (const float Scale = QXMatrixMultiply(1.0f, Matrix); ShapeDecides && Scale > 0) {
      float Width = Margin;
      TSVGCustomViewBox* const Nearest = Pen.ThicknessIsPercent() ? GetNearestViewBox() : nullptr;
      if (Nearest) Width = NormalizedDiagonalShare(Width, Nearest->ViewBox());
      if (GetVectorEffect() != TSVGVectorEffect::veNone) Width /= Scale;
      Margin = std::max(Margin, StrokeReach(Pen, std::max(Width, LeastHitThickness / Scale)));
    }
    QXInflateRect(Box, Margin, Margin);
  }
  TQXGPPath Outline(&Canvas);
  Outline.AddRectangle(Box);
  Outline.ApplyMatrix(Matrix);
  if (!Outline.IsVisiblePathPoint(Point, &Canvas)) return nullptr;
  return ShapeDecides ? PathAtPos(Matrix, Canvas, Point, Rect, *Shape, Options)
                      : DoOnElementFound(this);
}

TSVGElement* TSVGGraphicElement::PathAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                           TPointF Point, const TRectF& Rect, const TQXGPPath& Path,
                                           const TSVGFindOptions& Options) {
  const TSVGPointerEvents Events = GetPointerEvents();
  const TQXGPBrushKind Kind =
      BrushInForce(Matrix, GetBoundsRect(), GetNearestViewport(Rect)).Kind();
  const bool FillCounts =
      Options.Has(TSVGFindOption::foFindNonFilled) || Counts(Events, FillGroup, Kind);

  const TQXCanvasStateLock State(Canvas);
  SetCanvasPen(Canvas, Matrix, GetVectorEffect() == TSVGVectorEffect::veNone);
  if (Canvas.Pen().Thickness() < LeastHitThickness) Canvas.Pen().SetThickness(LeastHitThickness);
  PerformClipping(Matrix, Canvas, Rect);
  if (FillCounts && Path.Count() >= LeastFillPoints &&
      CoversPoint(Path, FillModeOf(GetFillRule(), Path.FillMode()), Matrix, Canvas, Point))
    return DoOnElementFound(this);
  if (!Counts(Events, StrokeGroup, Canvas.Pen().Kind()) || !Canvas.IsVisible(Point)) return nullptr;
  // The pen's width does not pass through the matrix, so the points have to.
  const auto P = Path.Clone(&Canvas);
  P->ApplyMatrix(Matrix);
  return P->IsOutlineVisiblePathPoint(Point, Canvas.Pen(), &Canvas) ? DoOnElementFound(this)
                                                                    : nullptr;
}

TSVGElement* TSVGGraphicElement::DoOnElementFound(TSVGElement* Element) {
  return Document() ? Document()->DoOnElementFound(Element) : Element;
}

}  // namespace qxsvg
