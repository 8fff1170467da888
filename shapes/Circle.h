// Circles and ellipses.
#pragma once

#include "graphics/GraphicElement.h"

namespace qxsvg {

// What circle and ellipse share: the centre in the lengths X and Y, the radii in Width and Height.
class QXSVG_API TSVGCustomEllipse : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGCustomEllipse() override;

  TSVGElementTypes ChildSVGTypes() const override;
  using TSVGGraphicElement::GetBoundsRect;
  // Inverted where a radius is negative.
  TRectF GetBoundsRect() override;
  TQXGPPath* GetShape() override;

 protected:
  // A shape of a negative radius has no cached path and is drawn by its own box. The answer is then
  // that nothing was drawn.
  bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;

 private:
  // The box that the shape was made for: it is made anew only for another one.
  TRectF FShapeBounds;
};

// The element `circle` (SVG 1.1 chapter 9.3). The radius is kept twice, as width and as height.
class QXSVG_API TSVGCircle : public TSVGCustomEllipse {
 public:
  using TSVGCustomEllipse::TSVGCustomEllipse;
  ~TSVGCircle() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }

  TSVGLength& CenterX() { return Xu(); }
  void SetCenterX(const TSVGLength* Value);
  TSVGLength& CenterY() { return Yu(); }
  void SetCenterY(const TSVGLength* Value);
  TSVGLength& Radius() { return WidthU(); }
  void SetRadius(const TSVGLength* Value);

  // Either sets the radius; the other length takes a negative value as it comes.
  void SetWidth(float Value) override;
  void SetHeight(float Value) override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
};

// The element `ellipse` (SVG 1.1 chapter 9.4).
class QXSVG_API TSVGEllipse : public TSVGCustomEllipse {
 public:
  using TSVGCustomEllipse::TSVGCustomEllipse;
  ~TSVGEllipse() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }

  TSVGLength& CenterX() { return Xu(); }
  TSVGLength& CenterY() { return Yu(); }
  TSVGLength& RadiusX() { return WidthU(); }
  TSVGLength& RadiusY() { return HeightU(); }

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
};

}  // namespace qxsvg
