// The element use.
#pragma once

#include "graphics/GraphicElement.h"

namespace qxsvg {

// The element `use` (SVG 1.1 chapter 5.6). It holds no copy of what it shows: the target is looked
// up by its identifier each time and has the use as its parent for the length of one operation, so
// that styles flow from the use into it.
class QXSVG_API TSVGUse : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGUse() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;
  void NotifyListener(TSVGElement* Source) override;

  // The identifier of the target, without "#".
  const String& Reference() const { return FReference; }
  // Makes this element a listener of the target. A use that was read from a file is none.
  void SetReference(StringView Value);
  // Null where the identifier leads to no graphic element.
  TSVGGraphicElement* Target() const;

  // The use's rectangle, with the size of a viewport target in the place of a missing one; for
  // other targets their bounds, moved to the position of the use.
  TRectF GetBoundsRect() override;
  TRectF GetBoundsRect(const TMatrix& Matrix) override;
  // The target's shape.
  TQXGPPath* GetShape() override;
  // The target counts as a child, and so do its children.
  bool HasChild(const TSVGElement* Element) const override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoShouldDraw() override;
  bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  // A hit in the target reports the use.
  TSVGElement* DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                      const TRectF& Rect, const TSVGFindOptions& Options) override;

 private:
  String FReference;
};

// Whether the target of a use at or below Top is Wanted or has it below, by way of further uses
// too.
bool IsShownBelow(const TSVGElement& Top, const TSVGElement& Wanted);

}  // namespace qxsvg
