// The element symbol.
#pragma once

#include "shapes/CustomViewBox.h"

namespace qxsvg {

// The element `symbol` (SVG 1.1 chapter 5.5). One that stands as the child of a group is drawn
// there; within `defs` it is reached through `use`.
class QXSVG_API TSVGSymbol : public TSVGCustomViewBox {
 public:
  using TSVGCustomViewBox::TSVGCustomViewBox;
  ~TSVGSymbol() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;

  using TSVGCustomViewBox::GetBoundsRect;
  // As any viewport; one that took the bounds of its content counts as having a view box from then
  // on.
  TRectF GetBoundsRect() override;

 protected:
  // The element's size is read from its view box, and crosswise: the width is the height of the
  // box.
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
};

}  // namespace qxsvg
