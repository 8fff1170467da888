// The element marker.
#pragma once

#include "shapes/CustomViewBox.h"

namespace qxsvg {

// The element `marker` (SVG 1.1 chapter 11.6): drawn by a shape at its vertices, never in place. A
// fixed orientation is kept and written back but turns nothing.
class QXSVG_API TSVGMarker : public TSVGCustomViewBox {
 public:
  explicit TSVGMarker(TSVGDocument* Document);
  ~TSVGMarker() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  TSVGLength& RefX() { return FRefX; }
  TSVGLength& RefY() { return FRefY; }
  TSVGLength& MarkerHeight() { return FMarkerHeight; }
  TSVGLength& MarkerWidth() { return FMarkerWidth; }
  void SetRefX(const TSVGLength* Value) { FRefX.Assign(Value); }
  void SetRefY(const TSVGLength* Value) { FRefY.Assign(Value); }
  void SetMarkerHeight(const TSVGLength* Value) { FMarkerHeight.Assign(Value); }
  void SetMarkerWidth(const TSVGLength* Value) { FMarkerWidth.Assign(Value); }
  TSVGMarkerUnit Units() const { return FUnits; }
  void SetUnits(TSVGMarkerUnit Value);
  // Radians.
  float Orientation() const { return FOrientation; }
  void SetOrientation(float Value);
  bool AutomaticOrientation() const { return FAutomaticOrientation; }
  void SetAutomaticOrientation(bool Value);

  // Draw the marker for Element, whose pen is on the canvas. Points are vertices of Element in its
  // user space, of which Matrix is the way to the canvas. At a vertex without a direction an
  // automatically turned marker is left out.
  virtual void DrawStartMarker(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                               const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void DrawMidMarker(TSVGGraphicElement& Element, TPointF Previous, TPointF Vertex,
                             TPointF Next, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                             const TRectF& Rect);
  virtual void DrawEndMarker(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                             const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  using TSVGCustomViewBox::Draw;
  // Angle is in radians.
  virtual void Draw(TSVGGraphicElement& Element, TPointF Point, float Angle, const TMatrix& Matrix,
                    TQXGPCanvas& Canvas, const TRectF& Rect);

  // What these markers cover at Position, a point of the canvas; null for nothing.
  virtual TSVGElement* MarkerAtPos(TSVGGraphicElement& Element, TPointF Point, float Angle,
                                   const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Position,
                                   const TRectF& Rect, const TSVGFindOptions& Options);
  virtual TSVGElement* StartMarkerAtPos(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                                        const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                        TPointF Position, const TRectF& Rect,
                                        const TSVGFindOptions& Options);
  virtual TSVGElement* MidMarkerAtPos(TSVGGraphicElement& Element, TPointF Previous, TPointF Vertex,
                                      TPointF Next, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                      TPointF Position, const TRectF& Rect,
                                      const TSVGFindOptions& Options);
  virtual TSVGElement* EndMarkerAtPos(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                                      const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Position,
                                      const TRectF& Rect, const TSVGFindOptions& Options);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoShouldDraw() override { return false; }
  // Leads Matrix from the marker's content to the canvas, and Rect to the marker's box.
  void ConvertToMarkerCoords(TPointF Point, float Angle, TMatrix& Matrix, TQXGPCanvas& Canvas,
                             TRectF& Rect);

 private:
  void SetDefaultSize();
  template <class Action>
  void InPlaceOf(TSVGGraphicElement& Element, Action Do);

  TSVGLength FRefX, FRefY, FMarkerHeight, FMarkerWidth;
  TSVGMarkerUnit FUnits;
  float FOrientation = 0;
  bool FAutomaticOrientation = false;
  bool FIsInUse = false;
};

}  // namespace qxsvg
