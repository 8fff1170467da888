// The base of every element that holds graphic children and reads them from XML.
#pragma once

#include <utility>

#include "graphics/GraphicElement.h"

namespace qxsvg {

// A container paints nothing itself: drawing it is drawing its children under its transformation,
// clip, opacity and style.
class QXSVG_API TSVGCustomGroup : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGCustomGroup() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }

  using TSVGGraphicElement::GetBoundsRect;
  // The union of the children's bounds in the group's own system; kept until a change of the group
  // or of what it holds.
  TRectF GetBoundsRect() override;
  // The same under the group's transformation and Matrix, computed anew.
  TRectF GetBoundsRect(const TMatrix& Matrix) override;
  void Reset() override;
  void Change(TSVGElement* Element) override;

 protected:
  bool PaintsItself() const override { return false; }
  bool ContentChanged() override {
    FBoundsChanged = true;
    return !std::exchange(FIsChangeTold, true);
  }
  void ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                           TCollectionNotification Action) override;
  TSVGElement* DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                      const TRectF& Rect, const TSVGFindOptions& Options) override;
  TSVGElement* InternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                    const TRectF& Rect, const TSVGFindOptions& Options) override;
  // Makes the child that Node stands for; its index, or -1 where the node makes no element. Raises
  // ESVGException for an element that is unknown or not supported, unless soSkipUnknownXML is set.
  std::int32_t ReadChild(IXMLNode& Node) override;

 private:
  bool FBoundsChanged = true;
  // The groups above know that the content changed, as long as nobody asked for the bounds.
  bool FIsChangeTold = false;
  TRectF FBounds;
};

}  // namespace qxsvg
