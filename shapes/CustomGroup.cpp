#include "shapes/CustomGroup.h"

#include "document/Document.h"
#include "document/XML.h"
#include "foundation/Lookups.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

constinit const TSVGElementClass TSVGCustomGroup::Class{
    {u"TSVGCustomGroup", &TSVGGraphicElement::Class, {}, nullptr},
    TSVGElementType::etGroup,
    nullptr};

TSVGCustomGroup::~TSVGCustomGroup() = default;

// --- Bounds

namespace {

// Grows Bounds by the box of one child. A box without area takes part only while nothing else does.
void AddBounds(TRectF& Bounds, TRectF Child) {
  // That of a line runs from its start to its end.
  Child = Child.Normalized();
  Bounds = Bounds.IsEmpty() ? Child : TRectF::Union(Bounds, Child);
}

}  // namespace

TRectF TSVGCustomGroup::GetBoundsRect() {
  if (FBoundsChanged) {
    TRectF Bounds = TSVGGraphicElement::GetBoundsRect();
    for (std::int32_t I = 0; I < Items().Count(); ++I)
      AddBounds(Bounds, Items()[I]->GetBoundsRect());
    FBounds = Bounds;
    FBoundsChanged = false;
    FIsChangeTold = false;
  }
  return FBounds;
}

TRectF TSVGCustomGroup::GetBoundsRect(const TMatrix& Matrix) {
  const TMatrix Own = QXMatrixMultiply(this->Matrix(), Matrix);
  // The own rectangle alone: that of the content knows nothing of the children's transformations.
  TRectF Bounds = QXMatrixTransform(Own, TSVGGraphicElement::GetBoundsRect());
  for (std::int32_t I = 0; I < Items().Count(); ++I)
    AddBounds(Bounds, Items()[I]->GetBoundsRect(Own));
  FBounds = Bounds;
  // What is kept now is in another space.
  FBoundsChanged = true;
  return Bounds;
}

void TSVGCustomGroup::Change(TSVGElement* Element) {
  FBoundsChanged = true;
  TSVGGraphicElement::Change(Element);
}

void TSVGCustomGroup::Reset() {
  TSVGGraphicElement::Reset();
  FBoundsChanged = true;
  // The groups above may be others now.
  FIsChangeTold = false;
}

void TSVGCustomGroup::ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                                          TCollectionNotification Action) {
  ContentChanged();
  TellContentChanged();
  TSVGGraphicElement::ElementNotification(Sender, Item, Action);
}

// --- Hit testing

TSVGElement* TSVGCustomGroup::DoInternalElementAtPos(const TMatrix&, TQXGPCanvas&, TPointF,
                                                     const TRectF&, const TSVGFindOptions&) {
  return nullptr;
}

TSVGElement* TSVGCustomGroup::InternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                                   TPointF Point, const TRectF& Rect,
                                                   const TSVGFindOptions& Options) {
  TSVGElement* const Found =
      TSVGGraphicElement::InternalElementAtPos(Matrix, Canvas, Point, Rect, Options);
  const bool ReportsItself =
      Found && Options.Has(TSVGFindOption::foFindGroups) && Document() != nullptr;
  return ReportsItself ? DoOnElementFound(this) : Found;
}

// --- Reading

std::int32_t TSVGCustomGroup::ReadChild(IXMLNode& Node) {
  const StringView Name = Node.LocalName();
  TSVGElementType Type = GetSVGElementType(Name);
  if (Type == TSVGElementType::etNone) {
    if (Node.NodeType() != TXMLNodeType::ntEntityRef) return TSVGGraphicElement::ReadChild(Node);
    // What the entity expands to is read as the content of a group.
    Type = TSVGElementType::etGroup;
  }
  TSVGDocument* const Owner = DocumentOfChildren();
  if (Type == TSVGElementType::etStyle) {
    if (Owner) Owner->ReadStyles(Node);
    return -1;
  }
  if (!GetOptions().Has(TSVGOption::soSkipUnknownXML) && SVGUnsupportedElements.Has(Type))
    throw ESVGException(SUnknownSVGElement, {XMLNodeTypeName(Node.NodeType()), Name});
  const TSVGElementClass* const ChildClass = SVGClasses[static_cast<std::size_t>(Type)];
  if (!ChildClass) return -1;
  std::unique_ptr<TSVGElement> Child = ChildClass->Create(Owner);
  return Items().Add(std::move(Child));
}

}  // namespace qxsvg
