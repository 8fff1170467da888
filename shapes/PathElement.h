// The element path.
#pragma once

#include "graphics/GraphicElement.h"
#include "graphics/surface/PathData.h"

namespace qxsvg {

// The element `path` (SVG 1.1 chapter 8).
class QXSVG_API TSVGPath : public TSVGGraphicElement {
 public:
  // What PathLength holds when nothing was given or measured.
  static constexpr double NoPathLength = -1;

  explicit TSVGPath(TSVGDocument* Document);
  ~TSVGPath() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  TQXPathData& Data() { return FData; }
  const TQXPathData& Data() const { return FData; }
  void SetData(const TQXPathData* Value);

  // The author's length of the path or, from the first call on, the length measured then: a later
  // change of the data does not renew it, and it is saved.
  double GetPathLength();
  // The author's units in one unit of length along the path; 0 for a path of no length.
  double GetLengthRatio();

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
  void DataChanged(TPersistent* Sender);

  TQXPathData FData;
  // Those of the data, as soon as they were asked for: a long path takes its time for them.
  TRectF FBounds;
  bool FHasBounds = false;
  double FPathLength = NoPathLength;
  // The data is another than that which the shape was made of.
  bool FIsShapeStale = true;
};

}  // namespace qxsvg
