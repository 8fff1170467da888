#include "shapes/Containers.h"

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "foundation/Cursors.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

using enum TSVGElementType;

constexpr TCursor HandPointCursor = SVGCursorMapping[Ordinal(TSVGCursor::scrPointer)];

constexpr TProperty LinkProperties[] = {
    Property<&TSVGALinkElement::GetCursor, &TSVGALinkElement::SetCursor>(
        u"Cursor", StoredUnless<&TSVGALinkElement::GetCursor, HandPointCursor>),
    Property<&TSVGALinkElement::Reference, &TSVGALinkElement::SetReference>(
        u"Reference", StoredUnlessEmpty<&TSVGALinkElement::Reference>),
};

}  // namespace

constinit const TSVGElementTypes SVGStructureChildren =
    SVGDescriptiveElements + SVGShapeElements + SVGStructuralElements + SVGGradientElements +
    TSVGElementTypes{etImage, etText, etSwitch, etStyle, etClipPath, etMarker, etScript, etPattern};

// --- g

constinit const TSVGElementClass TSVGGroup::Class{
    {u"TSVGGroup", &TSVGCustomGroup::Class, SVGBoxProperties, nullptr},
    etGroup,
    &CreateElement<TSVGGroup>};

TSVGGroup::~TSVGGroup() = default;

TSVGElementTypes TSVGGroup::ChildSVGTypes() const {
  return SVGStructureChildren;
}

void TSVGGroup::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomGroup::DoSaveToXML(Node);
  SaveBox(Node, *this);
}

// --- a

constinit const TSVGElementClass TSVGALinkElement::Class{
    {u"TSVGALinkElement", &TSVGCustomGroup::Class, LinkProperties, nullptr},
    etALink,
    &CreateElement<TSVGALinkElement>};

TSVGALinkElement::TSVGALinkElement(TSVGDocument* Document) : TSVGCustomGroup(Document) {
  SetCursor(HandPointCursor);
}

TSVGALinkElement::~TSVGALinkElement() = default;

TSVGElementTypes TSVGALinkElement::ChildSVGTypes() const {
  return SVGStructureChildren;
}

void TSVGALinkElement::AssignProperties(const TSVGElement* Source) {
  TSVGCustomGroup::AssignProperties(Source);
  if (const auto* const Other = dynamic_cast<const TSVGALinkElement*>(Source))
    FReference = Other->FReference;
}

void TSVGALinkElement::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomGroup::Clear();
  FReference.clear();
  SetCursor(HandPointCursor);
}

void TSVGALinkElement::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomGroup::DoLoadFromXML(Node);
  FReference = ParseURI(Node, u"href", {}, u"xlink");
}

void TSVGALinkElement::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomGroup::DoSaveToXML(Node);
  SaveReference(Node, FReference);
}

// --- switch

constinit const TSVGElementClass TSVGSwitch::Class{
    {u"TSVGSwitch", &TSVGCustomGroup::Class, {}, nullptr}, etSwitch, &CreateElement<TSVGSwitch>};

TSVGSwitch::~TSVGSwitch() = default;

TSVGElementTypes TSVGSwitch::ChildSVGTypes() const {
  return SVGDescriptiveElements + SVGShapeElements +
         TSVGElementTypes{etDoc, etGroup, etImage, etUse, etText, etSwitch};
}

bool TSVGSwitch::DoShouldDraw() {
  return TSVGElement::DoShouldDraw();
}

TSVGGraphicElement* TSVGSwitch::ChosenChild() {
  for (TSVGElement* Item : Items()) {
    TSVGGraphicElement* const Child = Item->AsGraphicElement();
    if (Child && Child->HasFeatures() && Child->HasExtensions() && Child->HasLanguages())
      return Child;
  }
  return nullptr;
}

void TSVGSwitch::DrawChildren(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  if (TSVGGraphicElement* const Child = ChosenChild()) Child->Draw(Matrix, Canvas, Rect);
}

// --- defs

constinit const TSVGElementClass TSVGDefs::Class{
    {u"TSVGDefs", &TSVGCustomGroup::Class, {}, nullptr}, etDefs, &CreateElement<TSVGDefs>};

TSVGDefs::~TSVGDefs() = default;

TSVGElementTypes TSVGDefs::ChildSVGTypes() const {
  return SVGStructureChildren + TSVGElementTypes{etNone};
}

}  // namespace qxsvg
