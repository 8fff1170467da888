// The containers without a viewport.
#pragma once

#include "shapes/CustomGroup.h"

namespace qxsvg {

// The children of every container that takes whatever can be drawn or referred to.
QXSVG_API extern const TSVGElementTypes SVGStructureChildren;

// The element `g` (SVG 1.1 chapter 5.2).
class QXSVG_API TSVGGroup : public TSVGCustomGroup {
 public:
  using TSVGCustomGroup::TSVGCustomGroup;
  ~TSVGGroup() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;

 protected:
  void DoSaveToXML(IXMLNode& Node) override;
};

// The element `a` (SVG 1.1 chapter 17.1). Following the link is left to the host.
class QXSVG_API TSVGALinkElement : public TSVGCustomGroup {
 public:
  explicit TSVGALinkElement(TSVGDocument* Document);
  ~TSVGALinkElement() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  // The cursor is the pointing hand afterwards.
  void Clear() override;

  // The target, without a leading "#".
  const String& Reference() const { return FReference; }
  void SetReference(StringView Value) { FReference = Value; }

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  // The target is written behind a "#", whatever it was when it was read.
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  String FReference;
};

// The element `switch` (SVG 1.1 chapter 5.8.2): draws the first graphic child whose features,
// extensions and languages all pass. A child so chosen that is hidden leaves the place empty.
class QXSVG_API TSVGSwitch : public TSVGCustomGroup {
 public:
  using TSVGCustomGroup::TSVGCustomGroup;
  ~TSVGSwitch() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  // The child that is drawn; null when none passes.
  TSVGGraphicElement* ChosenChild();

 protected:
  // Visibility and display do not count.
  bool DoShouldDraw() override;
  void DrawChildren(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
};

// The element `defs` (SVG 1.1 chapter 5.3.2); its content is reached by reference only.
class QXSVG_API TSVGDefs : public TSVGCustomGroup {
 public:
  using TSVGCustomGroup::TSVGCustomGroup;
  ~TSVGDefs() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;

 protected:
  bool DoShouldDraw() override { return false; }
};

}  // namespace qxsvg
