// Drawing a document, and what the host is asked and told on the way.
#include "document/Document.h"
#include "document/DocumentDrawWrapper.h"
#include "document/TreeWalk.h"

namespace qxsvg {

namespace {

void DrawUpTo(TDrawEvent Event, TSVGDocument& Document, TSVGElement& Element, const TMatrix& Matrix,
              TQXGPCanvas& Canvas, const TRectF& Rect, bool IncludeElement) {
  const TTreeWalk Walk(Document);
  if (!Document.ShouldDraw()) return;
  if (&Element == &Document && !IncludeElement) return;
  const TSVGDrawEventWrapper Wrapper(Document, Element, Event, IncludeElement);
  Document.Draw(Matrix, Canvas, Rect);
}

}  // namespace

TMatrix TSVGDocument::GetViewMatrix(const TMatrix& Matrix, const TRectF& Rect) {
  const bool IsSpecified = ViewBox().ViewBoxSpecified();
  const bool FitsNowhere = AspectRatio().Align() == TSVGAlign::saNone &&
                           FDefaultAspectRatio.Align() == TSVGAlign::saNone;
  if (!IsSpecified && FitsNowhere) return TSVGCustomViewBox::GetViewMatrix(Matrix, Rect);
  return ViewMatrix(IsSpecified ? AspectRatio() : FDefaultAspectRatio, Rect, true);
}

void TSVGDocument::Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TTreeWalk Walk(*this);
  if (ShouldDraw()) TSVGCustomViewBox::Draw(Matrix, Canvas, Rect);
}

void TSVGDocument::DrawElement(TSVGGraphicElement& Element, const TMatrix& Matrix,
                               TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TTreeWalk Walk(*this);
  if (ShouldDraw() && Element.GetVisible()) Element.DrawElement(Matrix, Canvas, Rect);
}

void TSVGDocument::DrawElement(TSVGGraphicElement& Element, TQXGPCanvas& Canvas,
                               const TRectF& Rect) {
  DrawElement(Element, GetViewMatrix(Rect), Canvas, Rect);
}

void TSVGDocument::DrawBeforeElement(TSVGElement& Element, const TMatrix& Matrix,
                                     TQXGPCanvas& Canvas, const TRectF& Rect, bool IncludeElement) {
  DrawUpTo(TDrawEvent::deDrawBefore, *this, Element, Matrix, Canvas, Rect, IncludeElement);
}

void TSVGDocument::DrawBeforeElement(TSVGElement& Element, TQXGPCanvas& Canvas, const TRectF& Rect,
                                     bool IncludeElement) {
  DrawBeforeElement(Element, GetViewMatrix(Rect), Canvas, Rect, IncludeElement);
}

void TSVGDocument::DrawAfterElement(TSVGElement& Element, const TMatrix& Matrix,
                                    TQXGPCanvas& Canvas, const TRectF& Rect, bool IncludeElement) {
  DrawUpTo(TDrawEvent::deDrawAfter, *this, Element, Matrix, Canvas, Rect, IncludeElement);
}

void TSVGDocument::DrawAfterElement(TSVGElement& Element, TQXGPCanvas& Canvas, const TRectF& Rect,
                                    bool IncludeElement) {
  DrawAfterElement(Element, GetViewMatrix(Rect), Canvas, Rect, IncludeElement);
}

// --- The host

bool TSVGDocument::DoDrawing(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                             const TRectF& Rect) {
  bool DoDraw = true;
  if (OnDrawing) OnDrawing(Sender, Matrix, Canvas, Rect, DoDraw);
  return DoDraw;
}

void TSVGDocument::DoDrawn(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                           const TRectF& Rect) {
  if (OnDrawn) OnDrawn(Sender, Matrix, Canvas, Rect);
}

bool TSVGDocument::DoDisableAppearance(TSVGElement* Sender, TMatrix& Matrix, TQXGPCanvas& Canvas,
                                       TRectF& Rect) {
  bool DoDefault = true;
  if (OnDisableAppearance) OnDisableAppearance(Sender, Matrix, Canvas, Rect, DoDefault);
  return DoDefault;
}

TSVGElement* TSVGDocument::DoOnElementFound(TSVGElement* Element) {
  if (OnElementFound) OnElementFound(this, Element);
  return Element;
}

}  // namespace qxsvg
