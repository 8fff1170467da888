#include "paint/ClipPath.h"

#include "document/XML.h"
#include "foundation/Lookups.h"
#include "graphics/surface/Region.h"

namespace qxsvg {

using enum TSVGElementType;

constinit const TSVGElementClass TSVGClipPath::Class{
    {u"TSVGClipPath", &TSVGGraphicElement::Class, {}, nullptr},
    etClipPath,
    &CreateElement<TSVGClipPath>};

TSVGClipPath::~TSVGClipPath() = default;

TSVGElementTypes TSVGClipPath::ChildSVGTypes() const {
  return SVGDescriptiveElements + SVGShapeElements + TSVGElementTypes{etUse, etText};
}

std::int32_t TSVGClipPath::ReadChild(IXMLNode& Node) {
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  const bool IsOutline = Type >= etUse && Type <= etText;
  const TSVGElementClass* const ChildClass =
      IsOutline ? SVGClasses[static_cast<std::size_t>(Type)] : nullptr;
  if (!ChildClass) return TSVGGraphicElement::ReadChild(Node);
  return Items().Add(ChildClass->Create(Document()));
}

void TSVGClipPath::BuildClipRegion(TQXGPRegion& Region, const TMatrix& Matrix, const TRectF& Rect) {
  const TMatrix Own = QXMatrixMultiply(this->Matrix(), Matrix);
  for (std::int32_t I = 0; I < Items().Count(); ++I) {
    TSVGGraphicElement* const Child = Items()[I]->AsGraphicElement();
    if (Child && Child->GetVisible()) Child->BuildClipRegion(Region, Own, Rect);
  }
}

TQXGPRegion* TSVGClipPath::GetClipPath(TQXGPCanvas& Canvas) {
  std::unique_ptr<TQXGPRegion>& Region = ClipRegion();
  if (!Region) Region = std::make_unique<TQXGPRegion>(&Canvas);
  Region->MakeEmpty();
  // The area that a clip path is asked for never mattered to what its children cover.
  BuildClipRegion(*Region, Matrix(), QXRect(0, 0, 100, 100));
  return Region.get();
}

}  // namespace qxsvg
