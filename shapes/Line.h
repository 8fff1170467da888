// The element line.
#pragma once

#include "graphics/GraphicElement.h"

namespace qxsvg {

// The element `line` (SVG 1.1 chapter 9.5): its start is in the lengths X and Y, its end in Width
// and Height.
class QXSVG_API TSVGLine : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGLine() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;

  TSVGLength& StartX() { return Xu(); }
  TSVGLength& StartY() { return Yu(); }
  TSVGLength& EndX() { return WidthU(); }
  TSVGLength& EndY() { return HeightU(); }

  // The distance of the ends along the axis, never negative.
  float GetWidth() override;
  float GetHeight() override;
  // These move the end.
  void SetWidth(float Value) override;
  void SetHeight(float Value) override;

  using TSVGGraphicElement::GetBoundsRect;
  // From start to end, not put in order; a side of no extent is one unit long, so that paints of
  // the bounding box and hit tests have something to work with.
  TRectF GetBoundsRect() override;
  TQXGPPath* GetShape() override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  TSVGElement* DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                      const TRectF& Rect, const TSVGFindOptions& Options) override;

 private:
  TPointF StartPoint();
  TPointF EndPoint();
};

}  // namespace qxsvg
