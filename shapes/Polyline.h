// Polylines and polygons.
#pragma once

#include <memory>

#include "graphics/GraphicElement.h"

namespace qxsvg {

// The element `polyline` (SVG 1.1 chapter 9.6): an open figure that is filled as if it were closed.
class QXSVG_API TSVGPolyline : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGPolyline() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  const TQXPoints& Points() const { return FPoints; }
  virtual void SetPoints(const TQXPoints& Value);
  // The points as the text of the attribute. Setting raises EConvertError for what is no number.
  String Polygon() const;
  void SetPolygon(StringView Value);

  // The figure in user space. There must be a point.
  std::unique_ptr<TQXPathData> CreatePath(bool Closed) const;
  std::unique_ptr<TQXGPPath> CreatePath(TQXGPCanvas& Canvas, bool Closed) const;

  using TSVGGraphicElement::GetBoundsRect;
  TRectF GetBoundsRect() override;
  TQXGPPath* GetShape() override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  TSVGElement* DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                      const TRectF& Rect, const TSVGFindOptions& Options) override;

 private:
  // Every class below this one makes closed figures.
  bool IsOpen() const { return &ClassType() == &TSVGPolyline::Class; }
  void TakePoints(TQXPoints Value);
  void DrawPoints(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect, bool Closed);

  TQXPoints FPoints;
  // Those of the points, as soon as they were asked for.
  TRectF FBounds;
  bool FHasBounds = false;
  // The points are others than those that the shape was made of.
  bool FIsShapeStale = true;
};

// The element `polygon` (SVG 1.1 chapter 9.7).
class QXSVG_API TSVGPolygon : public TSVGPolyline {
 public:
  using TSVGPolyline::TSVGPolyline;
  ~TSVGPolygon() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  void Clear() override;
  void SetPoints(const TQXPoints& Value) override;
};

}  // namespace qxsvg
