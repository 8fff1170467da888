#include "document/DocumentDrawWrapper.h"

#include <utility>

#include "document/Document.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

void AbortIf(bool Condition) {
  if (Condition) throw EAbort(u"The drawing ends at an element");
}

}  // namespace

TSVGDrawEventWrapper::TSVGDrawEventWrapper(TSVGDocument& Document, TSVGElement& Element,
                                           TDrawEvent Event, bool IncludeElement)
    : FDocument(Document), FElement(&Element), FIncludeElement(IncludeElement) {
  SetDrawEvent(Event);
}

TSVGDrawEventWrapper::~TSVGDrawEventWrapper() {
  SetDrawEvent(TDrawEvent::deReset);
}

void TSVGDrawEventWrapper::SetDrawEvent(TDrawEvent Value) {
  if (Value == FDrawEvent) return;
  if (FDrawEvent == TDrawEvent::deReset) {
    FOldDrawing = std::move(FDocument.OnDrawing);
    FOldDrawn = std::move(FDocument.OnDrawn);
    FOldShouldDraw = std::move(FDocument.OnShouldDraw);
    FDocument.OnShouldDraw = [this](TPersistent* Sender, bool& DoDraw) {
      ShouldDrawElement(Sender, DoDraw);
    };
  }
  FDrawEvent = Value;
  if (Value == TDrawEvent::deReset) {
    FDocument.OnDrawing = std::exchange(FOldDrawing, nullptr);
    FDocument.OnDrawn = std::exchange(FOldDrawn, nullptr);
    FDocument.OnShouldDraw = std::exchange(FOldShouldDraw, nullptr);
    return;
  }
  FDocument.OnDrawing = [this](TPersistent* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                               const TRectF& Rect, bool& DoDraw) {
    switch (FDrawEvent) {
      case TDrawEvent::deDrawBefore: BeforeDrawing(Sender); break;
      case TDrawEvent::deDraw: ElementDrawing(Sender, DoDraw); break;
      case TDrawEvent::deDrawAfter: AfterDrawing(Sender, DoDraw); break;
      case TDrawEvent::deReset: break;
    }
    if (FOldDrawing) FOldDrawing(Sender, Matrix, Canvas, Rect, DoDraw);
  };
  FDocument.OnDrawn = [this](TPersistent* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                             const TRectF& Rect) {
    switch (FDrawEvent) {
      case TDrawEvent::deDrawBefore: BeforeDrawn(Sender); break;
      case TDrawEvent::deDraw: AbortIf(IsElement(Sender)); break;
      case TDrawEvent::deDrawAfter: AfterDrawn(Sender); break;
      case TDrawEvent::deReset: break;
    }
    if (FOldDrawn) FOldDrawn(Sender, Matrix, Canvas, Rect);
  };
}

bool TSVGDrawEventWrapper::IsElement(const TPersistent* Sender) const {
  return Sender == FElement;
}

void TSVGDrawEventWrapper::ShouldDrawElement(TPersistent* Sender, bool& DoDraw) {
  if (IsElement(Sender)) {
    const TSVGGraphicElement* const Graphic = FElement->AsGraphicElement();
    FFoundElement = Graphic && !Graphic->GetVisible();
  }
  if (FOldShouldDraw) FOldShouldDraw(Sender, DoDraw);
}

void TSVGDrawEventWrapper::BeforeDrawing(TPersistent* Sender) const {
  AbortIf(FFoundElement || (IsElement(Sender) && !FIncludeElement));
}

void TSVGDrawEventWrapper::BeforeDrawn(TPersistent* Sender) const {
  AbortIf(FFoundElement || (IsElement(Sender) && FIncludeElement));
}

void TSVGDrawEventWrapper::ElementDrawing(TPersistent* Sender, bool& DoDraw) {
  if (IsElement(Sender))
    FDoDrawAfter = true;
  else
    AbortIf(FFoundElement);
  DoDraw = FDoDrawAfter;
}

void TSVGDrawEventWrapper::AfterDrawing(TPersistent* Sender, bool& DoDraw) {
  DoDraw = FDoDrawAfter || FFoundElement;
  if (IsElement(Sender) && FIncludeElement) FDoDrawAfter = DoDraw = true;
}

void TSVGDrawEventWrapper::AfterDrawn(TPersistent* Sender) {
  if (IsElement(Sender) || FFoundElement) FDoDrawAfter = true;
}

}  // namespace qxsvg
