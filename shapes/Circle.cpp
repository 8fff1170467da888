#include "shapes/Circle.h"

#include "document/TreeWalk.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/Canvas.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

using TBase = TSVGGraphicElement;

constexpr TProperty CircleProperties[] = {
    ObjectProperty<TSVGCircle, TSVGLength, &TSVGCircle::CenterX>(u"CenterX"),
    ObjectProperty<TSVGCircle, TSVGLength, &TSVGCircle::CenterY>(u"CenterY"),
    ObjectProperty<TSVGCircle, TSVGLength, &TSVGCircle::Radius, &TSVGCircle::SetRadius>(u"Radius"),
};

constexpr TProperty EllipseProperties[] = {
    ObjectProperty<TSVGEllipse, TSVGLength, &TSVGEllipse::CenterX>(u"CenterX"),
    ObjectProperty<TSVGEllipse, TSVGLength, &TSVGEllipse::CenterY>(u"CenterY"),
    ObjectProperty<TSVGEllipse, TSVGLength, &TSVGEllipse::RadiusX>(u"RadiusX"),
    ObjectProperty<TSVGEllipse, TSVGLength, &TSVGEllipse::RadiusY>(u"RadiusY"),
};

}  // namespace

constinit const TSVGElementClass TSVGCircle::Class{
    {u"TSVGCircle", &TSVGGraphicElement::Class, CircleProperties, nullptr},
    TSVGElementType::etCircle,
    &CreateElement<TSVGCircle>};

constinit const TSVGElementClass TSVGEllipse::Class{
    {u"TSVGEllipse", &TSVGGraphicElement::Class, EllipseProperties, nullptr},
    TSVGElementType::etEllipse,
    &CreateElement<TSVGEllipse>};

TSVGCustomEllipse::~TSVGCustomEllipse() = default;
TSVGCircle::~TSVGCircle() = default;
TSVGEllipse::~TSVGEllipse() = default;

// --- Geometry

TSVGElementTypes TSVGCustomEllipse::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

TRectF TSVGCustomEllipse::GetBoundsRect() {
  const double X = GetX(), Y = GetY(), W = GetWidth(), H = GetHeight();
  return QXRect(static_cast<float>(X - W), static_cast<float>(Y - H), static_cast<float>(X + W),
                static_cast<float>(Y + H));
}

TQXGPPath* TSVGCustomEllipse::GetShape() {
  if (ShapeCacheChanged()) {
    TQXGPPath& Path = Shape();
    const TRectF Bounds = GetBoundsRect();
    const bool HasArea = Bounds.Width() > 0 && Bounds.Height() > 0;
    if (Path.IsEmpty() == HasArea || Bounds != FShapeBounds) {
      Path.Clear();
      if (HasArea) Path.AddEllipse(Bounds);
      FShapeBounds = Bounds;
    }
  }
  return TSVGGraphicElement::GetShape();
}

bool TSVGCustomEllipse::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                       const TRectF& Rect) {
  if (TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect)) return true;
  const TRectF Bounds = GetBoundsRect();
  if (Bounds.Width() == 0 || Bounds.Height() == 0) return false;
  PaintsOtherwise();
  TQXGPPath Path;
  Path.AddEllipse(Bounds);
  Path.ApplyMatrix(Matrix);
  const double Opacity = GetAbsoluteOpacity();
  if (Canvas.Brush().Kind() != TQXGPBrushKind::bkNone)
    Canvas.FillPath(Path, static_cast<float>(GetBrush().Opacity() * Opacity));
  if (Canvas.Pen().Kind() != TQXGPBrushKind::bkNone)
    Canvas.DrawPath(Path, static_cast<float>(GetPen().Opacity() * Opacity));
  return false;
}

// --- circle

void TSVGCircle::SetCenterX(const TSVGLength* Value) {
  CenterX().Assign(Value);
}
void TSVGCircle::SetCenterY(const TSVGLength* Value) {
  CenterY().Assign(Value);
}

void TSVGCircle::SetRadius(const TSVGLength* Value) {
  const TTreeWalk Walk(*this);
  WidthU().Assign(Value);
  HeightU().Assign(Value);
}

void TSVGCircle::SetWidth(float Value) {
  const TTreeWalk Walk(*this);
  TBase::SetWidth(Value);
  HeightU().SetPixels(Value);
}

void TSVGCircle::SetHeight(float Value) {
  const TTreeWalk Walk(*this);
  TBase::SetHeight(Value);
  WidthU().SetPixels(Value);
}

void TSVGCircle::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomEllipse::DoLoadFromXML(Node);
  LoadLength(Node, u"cx", Xu());
  LoadLength(Node, u"cy", Yu());
  LoadLength(Node, u"r", WidthU());
  HeightU().Assign(&WidthU());
}

void TSVGCircle::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomEllipse::DoSaveToXML(Node);
  SaveLengths(Node, *this, {u"cx", u"cy", u"r", {}}, IsCompactXML());
}

// --- ellipse

void TSVGEllipse::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomEllipse::DoLoadFromXML(Node);
  LoadLength(Node, u"cx", Xu());
  LoadLength(Node, u"cy", Yu());
  LoadLength(Node, u"rx", WidthU());
  LoadLength(Node, u"ry", HeightU());
}

void TSVGEllipse::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomEllipse::DoSaveToXML(Node);
  SaveLengths(Node, *this, {u"cx", u"cy", u"rx", u"ry"}, IsCompactXML());
}

}  // namespace qxsvg
