// The element clipPath.
#pragma once

#include "graphics/GraphicElement.h"

namespace qxsvg {

// The element `clipPath` (SVG 1.1 chapter 14.3.5): the union of its children's outlines, always in
// user space. It is never drawn in place.
class QXSVG_API TSVGClipPath : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGClipPath() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;

  // What the children cover, although the clip path itself is never drawn.
  void BuildClipRegion(TQXGPRegion& Region, const TMatrix& Matrix, const TRectF& Rect) override;
  // The region of the children under the element's own transformation, made anew. The element keeps
  // it.
  TQXGPRegion* GetClipPath(TQXGPCanvas& Canvas) override;

 protected:
  bool DoShouldDraw() override { return false; }
  std::int32_t ReadChild(IXMLNode& Node) override;
};

}  // namespace qxsvg
