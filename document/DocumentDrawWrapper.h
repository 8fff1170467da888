// Makes a drawing of a document stop or start at one of its elements.
#pragma once

#include "document/DocumentEvents.h"

namespace qxsvg {

class TSVGDocument;

enum class TDrawEvent : std::uint8_t {
  // The document's own events.
  deReset,
  // Paints until Element is reached and then aborts the drawing.
  deDrawBefore,
  // Paints from Element on until it is done, and then aborts the drawing.
  deDraw,
  // Paints only what comes after Element.
  deDrawAfter
};

// Takes the place of the document's OnDrawing, OnDrawn and OnShouldDraw as long as it lives, and
// passes on to those that were there. To abort is to raise EAbort. Where the element turns out to
// be hidden, its place in the walk serves instead.
class QXSVG_API TSVGDrawEventWrapper {
 public:
  // Neither is owned; both have to outlive the wrapper.
  TSVGDrawEventWrapper(TSVGDocument& Document, TSVGElement& Element, TDrawEvent Event,
                       bool IncludeElement);
  ~TSVGDrawEventWrapper();
  TSVGDrawEventWrapper(const TSVGDrawEventWrapper&) = delete;
  TSVGDrawEventWrapper& operator=(const TSVGDrawEventWrapper&) = delete;

  TDrawEvent DrawEvent() const { return FDrawEvent; }
  void SetDrawEvent(TDrawEvent Value);

 private:
  void ShouldDrawElement(TPersistent* Sender, bool& DoDraw);
  bool IsElement(const TPersistent* Sender) const;
  void BeforeDrawing(TPersistent* Sender) const;
  void BeforeDrawn(TPersistent* Sender) const;
  void ElementDrawing(TPersistent* Sender, bool& DoDraw);
  void AfterDrawing(TPersistent* Sender, bool& DoDraw);
  void AfterDrawn(TPersistent* Sender);

  TSVGDrawingQEvent FOldDrawing;
  TSVGDrawingEvent FOldDrawn;
  TSVGShouldDrawQEvent FOldShouldDraw;
  TSVGDocument& FDocument;
  TSVGElement* FElement;
  TDrawEvent FDrawEvent = TDrawEvent::deReset;
  bool FIncludeElement;
  bool FDoDrawAfter = false;
  bool FFoundElement = false;
};

}  // namespace qxsvg
