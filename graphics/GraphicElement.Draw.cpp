// The walk that draws an element and its children.
//
// The matrix goes down the tree by argument and into the paths; the canvas itself stays at the
// identity, so that pens and gradients are chosen here.
#include <cmath>
#include <vector>

#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/TreeWalk.h"
#include "foundation/Writers.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/GraphicElementScope.h"
#include "graphics/Repeats.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/PathData.h"
#include "shapes/CustomViewBox.h"

namespace qxsvg {

namespace {

// A surface never gets a pen without a width.
constexpr float LeastThickness = 1e-12f;

void ToGrayscale(TQXGPGradient& Gradient) {
  for (std::size_t I = 0; I < Gradient.Points().Count(); ++I) {
    TQXGPGradientPoint& Point = Gradient.Points().GetPoint(I);
    Point.SetColor(SVGColorToGrayscale(Point.Color()));
  }
}

// Whether a handler of the host may look at what the canvas would paint with.
bool IsWatched(TSVGElement& Element) {
  // A document is asked about itself, too.
  const TSVGDocument* Own = Element.AsDocument();
  const TSVGDocument* Asked = Own ? Own : Element.Document();
  return Asked && (Asked->OnDrawing || Asked->OnDrawn || Asked->OnDisableAppearance);
}

// Takes a paint that is none, or automatic, to be the document's.
template <class Value>
Value OrDefault(Value Own, Value None, Value Automatic, Value Default) {
  return Own == None || Own == Automatic ? Default : Own;
}

}  // namespace

// --- Entry points

void TSVGGraphicElement::Draw(TQXGPCanvas& Canvas, const TRectF& Rect) {
  Draw(GetViewMatrix(Rect), Canvas, Rect);
}

void TSVGGraphicElement::Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TTreeWalk Walk(*this);
  if (ShouldDraw()) InternalDraw(Matrix, Canvas, Rect);
}

void TSVGGraphicElement::DrawElement(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                     const TRectF& Rect) {
  const TTreeWalk Walk(*this);
  if (!ShouldDraw() || !GetVisible()) return;
  const TQXCanvasStateLock State(Canvas);
  TMatrix M = Matrix;
  TRectF R = Rect;
  if (TSVGGraphicElement* Ancestor = GetGraphicParent()) Ancestor->DrawElementParent(M, Canvas, R);
  Draw(M, Canvas, R);
}

void TSVGGraphicElement::DrawElementParent(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect) {
  if (TSVGGraphicElement* Ancestor = GetGraphicParent())
    Ancestor->DrawElementParent(Matrix, Canvas, Rect);
  if (!ShouldDraw()) return;
  Matrix = QXMatrixMultiply(FMatrix, Matrix);
  PerformClipping(Matrix, Canvas, Rect);
}

bool TSVGGraphicElement::DoShouldDraw() {
  return GetVisible() && TSVGElement::DoShouldDraw();
}

// --- The walk

void TSVGGraphicElement::InternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                      const TRectF& Rect) {
  const TMatrix M = IsIdentityMatrix(FMatrix) ? Matrix : QXMatrixMultiply(FMatrix, Matrix);
  const Scope InForce(*this);
  TSVGRecording* const Recording = InForce.RecordingHere();
  if (Recording) {
    Recording->Visit(*this);
    Recording->Enter(FMatrix, M);
  }
  const bool Drawing = BeginDraw(M, Canvas, Rect);
  // A reference may bring the walk to this element again below itself.
  const TQXGPCanvasSaveState State = FCanvasState;
  if (Drawing) DoInternalDraw(M, Canvas, Rect);
  DrawChildren(M, Canvas, Rect);
  FCanvasState = State;
  EndDraw(M, Canvas, Rect);
  if (Recording) Recording->Leave();
}

void TSVGGraphicElement::DrawChildren(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                      const TRectF& Rect) {
  TSVGRecording* const Recording = FScope ? FScope->RecordingHere() : nullptr;
  for (std::int32_t I = 0; I < Items().Count(); ++I)
    if (TSVGGraphicElement* Child = Items()[I]->AsGraphicElement()) {
      if (Recording) Recording->Visit(*Child);
      Child->Draw(Matrix, Canvas, Rect);
    }
}

bool TSVGGraphicElement::BeginDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  FCanvasState = Canvas.SaveState();
  TMatrix M = Matrix;
  TRectF R = Rect;
  if (PaintsItself() || IsWatched(*this)) SetCanvasPaints(M, Canvas, R);
  PerformClipping(M, Canvas, R);
  return DoDrawing(this, M, Canvas, R);
}

void TSVGGraphicElement::SetCanvasPaints(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect) {
  // The box matters to paint servers alone, and finding it may take longer than drawing.
  const bool NeedsBox = FBrushChanged && !EffectiveFillURI().empty();
  const TSVGBrush& Brush = BrushInForce(Matrix, NeedsBox ? GetBoundsRect() : TRectF(),
                                        NeedsBox ? GetNearestViewport(Rect) : TRectF());
  Canvas.SetBrush(Brush);
  // A tile lies in user space.
  if (Brush.Kind() == TQXGPBrushKind::bkBitmap)
    Canvas.Brush().SetBitmapMatrix(QXMatrixMultiply(Brush.BitmapMatrix(), Matrix));
  SetCanvasPen(Canvas, Matrix, GetVectorEffect() == TSVGVectorEffect::veNone);
  // Only text looks at the font, or a handler, and getting at one may start the font engine.
  const bool NeedsFont = SVGTextContentElements.Has(SVGType()) || IsWatched(*this);
  if (NeedsFont) {
    GetFont().ResolveName();
    Canvas.Font().Assign(&GetFont());
  }
  if (!IsEnabled()) DisableAppearance(Matrix, Canvas, Rect);
  if (NeedsFont) Canvas.Font().SetBrush(Canvas.Brush());
  SetCanvasQuality(Canvas);
}

void TSVGGraphicElement::EndDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  DoDrawn(this, Matrix, Canvas, Rect);
  Canvas.RestoreState(FCanvasState);
}

bool TSVGGraphicElement::DoDrawing(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                   const TRectF& Rect) {
  return !Document() || Document()->DoDrawing(Sender, Matrix, Canvas, Rect);
}

void TSVGGraphicElement::DoDrawn(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                 const TRectF& Rect) {
  if (Document()) Document()->DoDrawn(Sender, Matrix, Canvas, Rect);
}

// --- Quality

void TSVGGraphicElement::SetCanvasQuality(TQXGPCanvas& Canvas) const {
  TSVGColorRendering Rendering = GetColorRendering();
  TSVGColorInterpolation Interpolation = GetColorInterpolation();
  TSVGShapeRendering Shapes = GetShapeRendering();
  TSVGTextRendering Texts = GetTextRendering();
  if (const TSVGDocument* Owner = Document()) {
    if (Rendering == TSVGColorRendering::clrnNone || Rendering == TSVGColorRendering::clrnAuto) {
      Rendering = Owner->DefaultColorRendering();
      Interpolation =
          OrDefault(Interpolation, TSVGColorInterpolation::sciNone, TSVGColorInterpolation::sciAuto,
                    Owner->DefaultColorInterpolation());
    }
    Shapes = OrDefault(Shapes, TSVGShapeRendering::srnNone, TSVGShapeRendering::srnAuto,
                       Owner->DefaultShapeRendering());
    Texts = OrDefault(Texts, TSVGTextRendering::txrnNone, TSVGTextRendering::txrnAuto,
                      Owner->DefaultTextRendering());
  }
  Canvas.SetCompositingQuality(GetCompositingQuality(Rendering, Interpolation));
  Canvas.TrySmoothingMode(GetSmoothingMode(Shapes));
  Canvas.SetTextRenderingHint(GetTextRenderingHint(Texts));
}

TQXGPCompositingQuality TSVGGraphicElement::GetCompositingQuality(
    TSVGColorRendering Rendering, TSVGColorInterpolation Interpolation) const {
  switch (Rendering) {
    case TSVGColorRendering::clrnOptimizeSpeed: return TQXGPCompositingQuality::cqHighSpeed;
    case TSVGColorRendering::clrnOptimizeQuality: return TQXGPCompositingQuality::cqHighQuality;
    default: break;
  }
  switch (Interpolation) {
    case TSVGColorInterpolation::sciSRGB: return TQXGPCompositingQuality::cqGammaCorrected;
    case TSVGColorInterpolation::sciLinearRGB: return TQXGPCompositingQuality::cqAssumeLinear;
    default: return TQXGPCompositingQuality::cqDefault;
  }
}

TQXGPSmoothingMode TSVGGraphicElement::GetSmoothingMode(TSVGShapeRendering Value) const {
  switch (Value) {
    case TSVGShapeRendering::srnAuto: return TQXGPSmoothingMode::smDefault;
    case TSVGShapeRendering::srnOptimizeSpeed: return TQXGPSmoothingMode::smHighSpeed;
    case TSVGShapeRendering::srnCrispEdges: return TQXGPSmoothingMode::smHighQuality;
    default: return TQXGPSmoothingMode::smAntiAlias8x8;
  }
}

TQXGPTextRenderingHint TSVGGraphicElement::GetTextRenderingHint(TSVGTextRendering Value) const {
  switch (Value) {
    case TSVGTextRendering::txrnAuto: return TQXGPTextRenderingHint::thSystemDefault;
    case TSVGTextRendering::txrnOptimizeSpeed: return TQXGPTextRenderingHint::thSingleBitPerPixel;
    case TSVGTextRendering::txrnOptimizeLegibility: return TQXGPTextRenderingHint::thAntiAlias;
    default: return TQXGPTextRenderingHint::thAntiAliasGridFit;
  }
}

// --- Paints

// Here "scaled" means that the stroke goes through the matrix with the shape; otherwise its width
// is one in device pixels whatever the transformations.
void TSVGGraphicElement::SetCanvasPen(TQXGPCanvas& Canvas, const TMatrix& Matrix, bool Scale) {
  const bool NeedsBox = FPenChanged && !EffectiveStrokeURI().empty();
  const TSVGPen& Pen = PenInForce(QXIdentityMatrix, NeedsBox ? GetBoundsRect() : TRectF());
  Canvas.SetPen(Pen);
  if (Pen.Kind() == TQXGPBrushKind::bkBitmap) {
    TQXGPBrush& Tile = Canvas.Pen().GetBrush();
    Tile.SetBitmapMatrix(QXMatrixMultiply(Tile.BitmapMatrix(), Matrix));
  }
  float Width = Canvas.Pen().Thickness();
  if (Pen.ThicknessIsPercent())
    if (TSVGCustomViewBox* Nearest = GetNearestViewBox())
      Width = NormalizedDiagonalShare(Width, Nearest->ViewBox());
  // Not a number counts as a width, and comes out as the least one.
  float Factor = 1;
  if (Scale && Width != 0) Factor = QXMatrixMultiply(Width, Matrix) / Width;
  Width *= Factor;
  if (!(Width >= LeastThickness)) Width = LeastThickness;
  Canvas.Pen().SetThickness(Width);

  const bool HasDashes = Canvas.Pen().Kind() != TQXGPBrushKind::bkNone &&
                         Canvas.Pen().Dash() == TQXGPStrokeDash::sdCustom;
  if (!Scale || !HasDashes) return;
  // The surface counts dashes in widths of the pen.
  const auto Declared = Canvas.Pen().CustomDash();
  // Its memory stays, so that a redraw takes none.
  thread_local std::vector<float> Dashes;
  Dashes.assign(Declared.begin(), Declared.end());
  for (std::size_t I = Dashes.size(); I-- > 0;) {
    const float Dash = Dashes[I] * Factor / Width;
    // One that is no length shortens the list from its end.
    if (!(Dash > 0))
      Dashes.pop_back();
    else
      Dashes[I] = Dash;
  }
  if (!Dashes.empty())
    Canvas.Pen().SetCustomDash(Dashes, Pen.GetDashOffsetValue() * Factor / Width);
}

float TSVGGraphicElement::NormalizedDiagonalShare(float Fraction, const TSVGViewBox& ViewBox) {
  const double Width = ViewBox.Width().GetValue(), Height = ViewBox.Height().GetValue();
  return static_cast<float>(Fraction * std::sqrt(Width * Width + Height * Height) / std::sqrt(2.0));
}

void TSVGGraphicElement::DisableAppearance(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect) {
  if (!DoDisableAppearance(this, Matrix, Canvas, Rect)) return;
  TQXGPBrush& Brush = Canvas.Brush();
  Brush.SetColor(SVGColorToGrayscale(Brush.Color()));
  if (Brush.Kind() == TQXGPBrushKind::bkGradient) ToGrayscale(Brush.GetGradient());
  TQXGPPen& Pen = Canvas.Pen();
  Pen.SetColor(SVGColorToGrayscale(Pen.Color()));
  if (Pen.Kind() == TQXGPBrushKind::bkGradient) ToGrayscale(Pen.GetBrush().GetGradient());
}

bool TSVGGraphicElement::DoDisableAppearance(TSVGElement* Sender, TMatrix& Matrix,
                                             TQXGPCanvas& Canvas, TRectF& Rect) {
  return !Document() || Document()->DoDisableAppearance(Sender, Matrix, Canvas, Rect);
}

// --- The element itself

TQXGPPath* TSVGGraphicElement::GetShape() {
  FShapeCacheChanged = false;
  return FShape.get();
}

bool TSVGGraphicElement::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                        const TRectF& Rect) {
  const TQXGPPath* Shape = GetShape();
  if (!Shape || Shape->Count() == 0) return false;
  DrawPath(*Shape, Matrix, Canvas, Rect);
  return true;
}

TQXGPFillMode TSVGGraphicElement::FillModeOf(TSVGFillRule Rule, TQXGPFillMode Otherwise) {
  switch (Rule) {
    case TSVGFillRule::frNonZero: return TQXGPFillMode::fmWinding;
    case TSVGFillRule::frEvenOdd: return TQXGPFillMode::fmAlternate;
    default: return Otherwise;
  }
}

// What is drawn once must not pay for being drawn again: coverage is kept from the second time on.
TSVGGraphicElement::Coverage* TSVGGraphicElement::KeptCoverage() {
  if (FWasShapeDrawn && !FCoverage) FCoverage = std::make_unique<Coverage>();
  FWasShapeDrawn = true;
  return FCoverage.get();
}

void TSVGGraphicElement::DrawPath(const TQXGPPath& Path, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                  const TRectF&) {
  // The element's own shape tells when it changes.
  Coverage* const Kept = &Path == FShape.get() ? KeptCoverage() : nullptr;
  DrawView(Path.View(), Path.FillMode(), Kept, Matrix, Canvas);
}

void TSVGGraphicElement::DrawPath(const TQXPathData& Data, const TMatrix& Matrix,
                                  TQXGPCanvas& Canvas, const TRectF&) {
  DrawView(Data.View(), Data.FillMode(), KeptCoverage(), Matrix, Canvas);
}

void TSVGGraphicElement::DrawView(const TQXPathView& View, TQXGPFillMode Mode, Coverage* Kept,
                                  const TMatrix& Matrix, TQXGPCanvas& Canvas) {
  TQXPathSource Source{View, FillModeOf(GetFillRule(), Mode), Matrix};
  if (Kept) Source.Coverage = &Kept->Fill;
  const bool Fills = Canvas.Brush().Kind() != TQXGPBrushKind::bkNone;
  const bool Strokes = Canvas.Pen().Kind() != TQXGPBrushKind::bkNone;
  if (!Fills && !Strokes) return;
  const Scope* const InForce = ScopeInForce();
  if (InForce && InForce->IsBorrowed()) {
    Source.IsRepeated = true;
    if (Kept) Source.Stamps = &Kept->StampsForWriting();
  }
  const double Opacity = GetAbsoluteOpacity();
  const auto OfFill = static_cast<float>(Fills ? FillOpacity() * Opacity : 0);
  const auto OfStroke = static_cast<float>(Strokes ? StrokeOpacity() * Opacity : 0);
  if (Fills) Canvas.FillPath(Source, OfFill);
  if (Kept) Source.Coverage = &Kept->Stroke;
  if (Strokes) Canvas.DrawPath(Source, OfStroke);
  if (TSVGRecording* const Recording = InForce ? InForce->RecordingHere() : nullptr)
    Recording->Draw(*this, Source, Canvas, OfFill, OfStroke);
}

void TSVGGraphicElement::PaintsOtherwise() {
  TSVGRecording::Spoil();
}

void TSVGGraphicElement::FillPolygons(const TMatrix&, TQXGPCanvas&) {}

// --- Clipping

void TSVGGraphicElement::PerformClipping(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                         const TRectF& Rect) {
  if (!GetOptions().Has(TSVGOption::soApplyClipping)) return;
  TSVGGraphicElement* Clip = GetClipURIElement();
  if (!Clip) return;
  TSVGRecording::Spoil();
  TQXGPRegion Region(&Canvas);
  Region.MakeEmpty();
  Clip->BuildClipRegion(Region, QXIdentityMatrix, Rect);
  // A clip path without geometry does not clip.
  if (Region.IsEmpty()) return;
  Region.Transform(Matrix);
  Canvas.IntersectClip(Region);
}

void TSVGGraphicElement::BuildClipRegion(TQXGPRegion& Region, const TMatrix& Matrix,
                                         const TRectF& Rect) {
  if (!ShouldDraw()) return;
  const TMatrix M = QXMatrixMultiply(FMatrix, Matrix);
  if (const TQXGPPath* Shape = GetShape(); Shape && Shape->Count() > 0) {
    const TQXGPFillMode Mode = FillModeOf(GetClipRule(), Shape->FillMode());
    if (IsIdentityMatrix(M)) {
      Region.Combine(Shape->View(), Mode, TQXGPCombineMode::cmUnion);
    } else {
      // Its memory stays, so that a redraw takes none.
      thread_local TQXPathGeometry Moved;
      Moved.Clear();
      Moved.Append(Shape->View(), M);
      Region.Combine(Moved.View(), Mode, TQXGPCombineMode::cmUnion);
    }
  }
  for (std::int32_t I = 0; I < Items().Count(); ++I)
    if (TSVGGraphicElement* Child = Items()[I]->AsGraphicElement(); Child && Child->GetVisible())
      Child->BuildClipRegion(Region, M, Rect);
}

// Looked up anew each time: the clip path, which owns the region, may be gone by now.
TQXGPRegion* TSVGGraphicElement::GetClipPath(TQXGPCanvas& Canvas) {
  FClippingChanged = false;
  TSVGGraphicElement* Clip = GetClipURIElement();
  return Clip ? Clip->GetClipPath(Canvas) : nullptr;
}

// --- Baking

void TSVGGraphicElement::BakeTransformation(const TMatrix& Matrix) {
  const TElementLock Lock(*this);
  InternalBakeTransformation(Matrix);
}

void TSVGGraphicElement::InternalBakeTransformation(const TMatrix& Matrix) {
  DoBakeTransformation(QXMatrixMultiply(FMatrix, Matrix));
}

// Without geometry that could take the matrix up, the element keeps it.
void TSVGGraphicElement::DoBakeTransformation(const TMatrix& Matrix) {
  SetMatrix(Matrix);
}

void TSVGGraphicElement::BakeTransformationChildren(const TMatrix& Matrix) {
  for (std::int32_t I = 0; I < Items().Count(); ++I)
    if (TSVGGraphicElement* Child = Items()[I]->AsGraphicElement())
      Child->BakeTransformation(Matrix);
}

}  // namespace qxsvg
