// The element rect.
#pragma once

#include <memory>

#include "graphics/GraphicElement.h"

namespace qxsvg {

// The element `rect` (SVG 1.1 chapter 9.2).
class QXSVG_API TSVGRectangle : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGRectangle() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The radii of the corners. They are made when they are first asked for on an element that can
  // change.
  TSVGLength& RX() { return RadiiForWriting().X; }
  TSVGLength& RY() { return RadiiForWriting().Y; }
  // In user units; 0 without a radius.
  float RXValue() const;
  float RYValue() const;
  bool HasRadii() const { return FRadii != nullptr; }
  // Take the length, then make it no less than 0 and no more than half of the side. A later change
  // of the side leaves the radius as it is.
  void SetRX(const TSVGLength* Value);
  void SetRY(const TSVGLength* Value);

  TQXGPPath* GetShape() override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;

 private:
  // Most rectangles have square corners.
  struct TRadii {
    TSVGLength X, Y;
  };
  // What the shape was made of: it is made anew only for another one.
  struct TFigure {
    TRectF Bounds;
    float RX = 0, RY = 0;
    friend bool operator==(const TFigure&, const TFigure&) = default;
  };
  TRadii& RadiiForWriting();
  void ClearRadii();
  void DrawUncached(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Bounds);

  std::unique_ptr<TRadii> FRadii;
  TFigure FFigure;
};

}  // namespace qxsvg
