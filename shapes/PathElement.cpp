#include "shapes/PathElement.h"

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "graphics/surface/Canvas.h"
#include "runtime/Numbers.h"
#include "shapes/MarkerWalk.h"

namespace qxsvg {

namespace {

using TBase = TSVGGraphicElement;

constexpr TProperty Properties[] = {
    ObjectProperty<TSVGPath, TQXPathData, &TSVGPath::Data>(
        u"Data",
        [](const TPersistent& Self) {
          return !static_cast<const TSVGPath&>(Self).Data().IsEmpty();
        }),
};

}  // namespace

constinit const TSVGElementClass TSVGPath::Class{
    {u"TSVGPath", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etPath,
    &CreateElement<TSVGPath>};

TSVGPath::TSVGPath(TSVGDocument* Document) : TSVGGraphicElement(Document) {
  FData.SetOnChange(TNotifyMethod::Bind<&TSVGPath::DataChanged>(this));
}

TSVGPath::~TSVGPath() = default;

TSVGElementTypes TSVGPath::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

void TSVGPath::DataChanged(TPersistent* Sender) {
  FIsShapeStale = true;
  FHasBounds = false;
  OutlineChanged();
  PropagateObjectPropChange(Sender);
}

void TSVGPath::SetData(const TQXPathData* Value) {
  FData.Assign(Value);
}

void TSVGPath::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGPath*>(Source)) SetData(&Other->FData);
  TBase::AssignProperties(Source);
}

void TSVGPath::Clear() {
  const TElementLock Lock(*this);
  TBase::Clear();
  FPathLength = NoPathLength;
  FData.Clear();
}

// --- Geometry

double TSVGPath::GetPathLength() {
  if (FPathLength == NoPathLength) FPathLength = FData.GetLength();
  return FPathLength;
}

double TSVGPath::GetLengthRatio() {
  const double Length = FData.GetLength();
  return Length == 0 ? 0 : GetPathLength() / Length;
}

TRectF TSVGPath::GetBoundsRect() {
  if (!FHasBounds) {
    FBounds = FData.GetBounds();
    FHasBounds = true;
  }
  return FBounds;
}

TQXGPPath* TSVGPath::GetShape() {
  if (ShapeCacheChanged() && (FIsShapeStale || Shape().IsEmpty())) {
    TQXGPPath& Path = Shape();
    Path.Clear();
    Path.Assign(&FData);
    FIsShapeStale = false;
  }
  return TBase::GetShape();
}

// --- XML

void TSVGPath::DoLoadFromXML(IXMLNode& Node) {
  TBase::DoLoadFromXML(Node);
  FData.SetPathString(Node.GetAttribute(u"d"));
  bool Inherit = false;
  FPathLength = ParseNumber(Node.GetAttribute(u"pathLength"), NoPathLength, Inherit);
}

void TSVGPath::DoSaveToXML(IXMLNode& Node) {
  TBase::DoSaveToXML(Node);
  const String Format = GetFormatStr();
  if (FData.GetCount() > 0) {
    if (Document()) FData.SetFormatStr(Format);
    SaveAttrString(Node, u"d", FData.GetPathString(), false, false);
  }
  if (FPathLength != NoPathLength)
    SaveAttrString(Node, u"pathLength", FormatFloat(Format, FPathLength), false, false);
}

// --- Drawing and hit testing

bool TSVGPath::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  if (FData.GetCount() == 0) return false;
  // The data serves as well as a copy of it, until somebody asks for the shape.
  if (!HasShape() || !TBase::DoInternalDraw(Matrix, Canvas, Rect))
    DrawPath(FData, Matrix, Canvas, Rect);
  DrawMarkers(*this, FData, Matrix, Canvas, Rect);
  return true;
}

TSVGElement* TSVGPath::DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                              TPointF Point, const TRectF& Rect,
                                              const TSVGFindOptions& Options) {
  if (TSVGElement* const Found =
          TBase::DoInternalElementAtPos(Matrix, Canvas, Point, Rect, Options))
    return Found;
  const TQXGPPath* const Path = GetShape();
  if (!Path || Path->IsEmpty()) return nullptr;
  const bool Hit = MarkersAtPos(*this, FData, Matrix, Canvas, Point, Rect, Options) != nullptr;
  return Hit ? DoOnElementFound(this) : nullptr;
}

}  // namespace qxsvg
