#include "shapes/Rectangle.h"

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "document/TreeWalk.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/Canvas.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

using TBase = TSVGGraphicElement;

// A radius is written through its setter, which keeps it within the side.
template <TSVGLength& (TSVGRectangle::*Reader)(), void (TSVGRectangle::*Writer)(const TSVGLength*)>
constexpr TProperty RadiusRow(StringView Name) {
  return ObjectProperty<TSVGRectangle, TSVGLength, Reader, Writer>(
      Name, StoredIf<&TSVGRectangle::HasRadii>);
}

constexpr auto Properties = JoinRows(
    SVGBoxProperties, std::array{RadiusRow<&TSVGRectangle::RX, &TSVGRectangle::SetRX>(u"RX"),
                                 RadiusRow<&TSVGRectangle::RY, &TSVGRectangle::SetRY>(u"RY")});

void LiftNegative(TSVGLength& Radius) {
  if (Radius.GetPixels() < 0) Radius.SetPixels(0);
}

void CutToHalf(TSVGLength& Radius, float Side) {
  if (Radius.GetPixels() > Side / 2) Radius.SetPixels(Side / 2);
}

}  // namespace

constinit const TSVGElementClass TSVGRectangle::Class{
    {u"TSVGRectangle", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etRectangle,
    &CreateElement<TSVGRectangle>};

TSVGRectangle::~TSVGRectangle() = default;

TSVGElementTypes TSVGRectangle::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

void TSVGRectangle::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGRectangle*>(Source)) {
    if (Other->FRadii) {
      TRadii& Own = RadiiForWriting();
      Own.X.Assign(&Other->FRadii->X);
      Own.Y.Assign(&Other->FRadii->Y);
    } else {
      ClearRadii();
    }
  }
  TBase::AssignProperties(Source);
}

void TSVGRectangle::Clear() {
  const TElementLock Lock(*this);
  ClearRadii();
  TBase::Clear();
}

// --- Radii

TSVGRectangle::TRadii& TSVGRectangle::RadiiForWriting() {
  if (!FRadii) {
    FRadii = std::make_unique<TRadii>();
    FRadii->X.Wire(this, WidthLength);
    FRadii->Y.Wire(this, HeightLength);
  }
  return *FRadii;
}

// The objects stay, because somebody may hold them.
void TSVGRectangle::ClearRadii() {
  if (!FRadii) return;
  FRadii->X.Clear();
  FRadii->Y.Clear();
}

float TSVGRectangle::RXValue() const {
  return FRadii ? FRadii->X.GetValue() : 0;
}
float TSVGRectangle::RYValue() const {
  return FRadii ? FRadii->Y.GetValue() : 0;
}

void TSVGRectangle::SetRX(const TSVGLength* Value) {
  const TTreeWalk Walk(*this);
  RX().Assign(Value);
  LiftNegative(RX());
  CutToHalf(RX(), GetWidth());
}

void TSVGRectangle::SetRY(const TSVGLength* Value) {
  const TTreeWalk Walk(*this);
  RY().Assign(Value);
  LiftNegative(RY());
  CutToHalf(RY(), GetHeight());
}

// --- XML

void TSVGRectangle::DoLoadFromXML(IXMLNode& Node) {
  TBase::DoLoadFromXML(Node);
  const bool HasX = Node.HasAttribute(u"rx"), HasY = Node.HasAttribute(u"ry");
  if (!HasX && !HasY) return;
  if (HasX) ParsePercent(Node, u"rx", RX(), 0, 1);
  if (HasY) ParsePercent(Node, u"ry", RY(), 0, 1);
  LiftNegative(RX());
  LiftNegative(RY());
  if (!HasY) RY().Assign(&RX());
  if (!HasX) RX().Assign(&RY());
  CutToHalf(RX(), GetWidth());
  CutToHalf(RY(), GetHeight());
}

void TSVGRectangle::DoSaveToXML(IXMLNode& Node) {
  TBase::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  SaveLengths(Node, *this, {u"x", u"y", u"width", u"height"}, Compact);
  static const TSVGLength None;
  const String Format = GetFormatStr();
  SaveLength(Node, u"rx", FRadii ? FRadii->X : None, Format, 1, Compact);
  SaveLength(Node, u"ry", FRadii ? FRadii->Y : None, Format, 1, Compact);
}

// --- Drawing

TQXGPPath* TSVGRectangle::GetShape() {
  if (ShapeCacheChanged()) {
    TQXGPPath& Path = Shape();
    const TFigure Figure{GetBoundsRect(), RXValue(), RYValue()};
    if (Path.IsEmpty() || Figure != FFigure) {
      Path.Clear();
      Path.AddRectangle(Figure.Bounds, Figure.RX, Figure.RY, AllCorners, false);
      FFigure = Figure;
    }
  }
  return TBase::GetShape();
}

bool TSVGRectangle::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TRectF Bounds = GetBoundsRect();
  if (!(Bounds.Width() > 0 && Bounds.Height() > 0)) return false;
  if (TBase::DoInternalDraw(Matrix, Canvas, Rect)) return true;
  DrawUncached(Matrix, Canvas, Bounds);
  return false;
}

void TSVGRectangle::DrawUncached(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Bounds) {
  const TMatrix Saved = Canvas.Matrix();
  const TMatrix Whole = QXMatrixMultiply(Matrix, Saved);
  const bool Scales = GetVectorEffect() == TSVGVectorEffect::veNone;
  if (Scales) SetCanvasPen(Canvas, Whole, false);
  Canvas.SetMatrix(Whole);
  if (!Scales) SetCanvasPen(Canvas, Whole, false);
  const double Opacity = GetAbsoluteOpacity();
  if (GetBrush().Kind() != TQXGPBrushKind::bkNone)
    Canvas.FillRect(Bounds, RXValue(), RYValue(), AllCorners,
                    static_cast<float>(GetBrush().Opacity() * Opacity), false);
  if (GetPen().Kind() != TQXGPBrushKind::bkNone)
    Canvas.DrawRect(Bounds, RXValue(), RYValue(), AllCorners,
                    static_cast<float>(GetPen().Opacity() * Opacity), false);
  Canvas.SetMatrix(Saved);
}

}  // namespace qxsvg
