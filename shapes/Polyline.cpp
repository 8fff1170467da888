#include "shapes/Polyline.h"

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Writers.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/PathData.h"
#include "shapes/MarkerWalk.h"

namespace qxsvg {

namespace {

using TBase = TSVGGraphicElement;

constexpr TProperty Properties[] = {
    Property<&TSVGPolyline::Polygon, &TSVGPolyline::SetPolygon>(
        u"Polygon", StoredUnlessEmpty<&TSVGPolyline::Points>),
};

template <class Path>
void AddFigure(Path& Target, const TQXPoints& Points, bool Closed) {
  Target.BeginUpdate();
  Target.MoveTo(Points.front());
  for (std::size_t I = 1; I < Points.size(); ++I) Target.LineTo(Points[I]);
  if (Closed) Target.ClosePath();
  Target.EndUpdate();
}

TRectF BoundsOf(const TQXPoints& Points) {
  if (Points.empty()) return TRectF();
  TRectF Bounds = QXRect(Points.front(), Points.front());
  for (const TPointF P : Points) {
    if (P.X < Bounds.Left)
      Bounds.Left = P.X;
    else if (P.X > Bounds.Right)
      Bounds.Right = P.X;
    if (P.Y < Bounds.Top)
      Bounds.Top = P.Y;
    else if (P.Y > Bounds.Bottom)
      Bounds.Bottom = P.Y;
  }
  return Bounds;
}

}  // namespace

constinit const TSVGElementClass TSVGPolyline::Class{
    {u"TSVGPolyline", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etPolyline,
    &CreateElement<TSVGPolyline>};

constinit const TSVGElementClass TSVGPolygon::Class{
    {u"TSVGPolygon", &TSVGPolyline::Class, {}, nullptr},
    TSVGElementType::etPolygon,
    &CreateElement<TSVGPolygon>};

TSVGPolyline::~TSVGPolyline() = default;
TSVGPolygon::~TSVGPolygon() = default;

TSVGElementTypes TSVGPolyline::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

void TSVGPolyline::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGPolyline*>(Source))
    TakePoints(Other->FPoints);
  TBase::AssignProperties(Source);
}

void TSVGPolyline::Clear() {
  const TElementLock Lock(*this);
  TakePoints({});
  TBase::Clear();
}

void TSVGPolygon::Clear() {
  const TElementLock Lock(*this);
  TSVGPolyline::Clear();
  Shape().Clear();
}

// --- Points

void TSVGPolyline::TakePoints(TQXPoints Value) {
  FPoints = std::move(Value);
  FHasBounds = false;
  FIsShapeStale = true;
}

void TSVGPolyline::SetPoints(const TQXPoints& Value) {
  TakePoints(Value);
  Change(this);
}

void TSVGPolygon::SetPoints(const TQXPoints& Value) {
  Shape().Clear();
  TSVGPolyline::SetPoints(Value);
}

String TSVGPolyline::Polygon() const {
  return SVGPointsToString(FPoints, TSVGUnit::suNone, GetFormatStr());
}

void TSVGPolyline::SetPolygon(StringView Value) {
  SetPoints(ParsePoints(Value));
}

void TSVGPolyline::DoLoadFromXML(IXMLNode& Node) {
  TBase::DoLoadFromXML(Node);
  TakePoints(ParsePoints(Node, u"points"));
}

void TSVGPolyline::DoSaveToXML(IXMLNode& Node) {
  TBase::DoSaveToXML(Node);
  const String Text = Polygon();
  SaveAttrString(Node, u"points", Text, Text.empty(), false);
}

// --- Geometry

TRectF TSVGPolyline::GetBoundsRect() {
  if (!FHasBounds) {
    FBounds = BoundsOf(FPoints);
    FHasBounds = true;
  }
  return FBounds;
}

std::unique_ptr<TQXPathData> TSVGPolyline::CreatePath(bool Closed) const {
  auto Result = std::make_unique<TQXPathData>();
  AddFigure(*Result, FPoints, Closed);
  return Result;
}

std::unique_ptr<TQXGPPath> TSVGPolyline::CreatePath(TQXGPCanvas& Canvas, bool Closed) const {
  auto Result = std::make_unique<TQXGPPath>(&Canvas);
  AddFigure(*Result, FPoints, Closed);
  return Result;
}

TQXGPPath* TSVGPolyline::GetShape() {
  if (ShapeCacheChanged() && (FIsShapeStale || Shape().IsEmpty())) {
    TQXGPPath& Path = Shape();
    Path.Clear();
    if (!FPoints.empty()) {
      if (IsOpen())
        AddFigure(Path, FPoints, false);
      else
        Path.AddPolygon(FPoints);
    }
    FIsShapeStale = false;
  }
  return TBase::GetShape();
}

// --- Drawing and hit testing

bool TSVGPolyline::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const bool Drew = TBase::DoInternalDraw(Matrix, Canvas, Rect);
  if (!Drew) DrawPoints(Matrix, Canvas, Rect, !IsOpen());
  DrawMarkers(*this, FPoints, Matrix, Canvas, Rect);
  return Drew;
}

void TSVGPolyline::DrawPoints(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF&,
                              bool Closed) {
  if (FPoints.empty()) return;
  PaintsOtherwise();
  const std::unique_ptr<TQXGPPath> Path = CreatePath(Canvas, Closed);
  const TSVGFillRule Rule = GetFillRule();
  if (Rule == TSVGFillRule::frNonZero) Path->SetFillMode(TQXGPFillMode::fmWinding);
  if (Rule == TSVGFillRule::frEvenOdd) Path->SetFillMode(TQXGPFillMode::fmAlternate);
  Path->ApplyMatrix(Matrix);
  const double Opacity = GetAbsoluteOpacity();
  if (GetBrush().Kind() != TQXGPBrushKind::bkNone)
    Canvas.FillPath(*Path, static_cast<float>(GetBrush().Opacity() * Opacity));
  Canvas.DrawPath(*Path, static_cast<float>(GetPen().Opacity() * Opacity));
}

TSVGElement* TSVGPolyline::DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                                  TPointF Point, const TRectF& Rect,
                                                  const TSVGFindOptions& Options) {
  if (TSVGElement* const Found =
          TBase::DoInternalElementAtPos(Matrix, Canvas, Point, Rect, Options))
    return Found;
  const TQXGPPath* const Path = GetShape();
  if (!Path || Path->IsEmpty()) return nullptr;
  const bool Hit = MarkersAtPos(*this, FPoints, Matrix, Canvas, Point, Rect, Options) != nullptr;
  return Hit ? DoOnElementFound(this) : nullptr;
}

}  // namespace qxsvg
