#include "shapes/Symbol.h"

#include "shapes/Containers.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

constinit const TSVGElementClass TSVGSymbol::Class{
    {u"TSVGSymbol", &TSVGCustomViewBox::Class, SVGBoxProperties, nullptr},
    TSVGElementType::etSymbol,
    &CreateElement<TSVGSymbol>};

TSVGSymbol::~TSVGSymbol() = default;

TSVGElementTypes TSVGSymbol::ChildSVGTypes() const {
  return SVGStructureChildren;
}

TRectF TSVGSymbol::GetBoundsRect() {
  if (ViewBox().ViewBoxSpecified() && !Document()) return ViewBox().GetRect();
  const TRectF Own = TSVGGraphicElement::GetBoundsRect();
  if (!Own.IsEmpty()) return Own;
  const TRectF Content = TSVGCustomViewBox::GetBoundsRect();
  // The flag alone changes nothing that anybody listens to.
  ViewBox().SetViewBoxSpecified(true);
  return Content;
}

void TSVGSymbol::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoLoadFromXML(Node);
  const TSVGViewBox& Box = ViewBox();
  Xu().SetPixels(Box.X().GetValue());
  Yu().SetPixels(Box.Y().GetValue());
  // Documents are laid out by these two being crossed.
  HeightU().SetPixels(Box.Width().GetValue());
  WidthU().SetPixels(Box.Height().GetValue());
}

void TSVGSymbol::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBox(Node, *this);
}

}  // namespace qxsvg
