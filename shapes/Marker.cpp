#include "shapes/Marker.h"

#include <numbers>

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Writers.h"
#include "graphics/surface/Canvas.h"
#include "shapes/Containers.h"
#include "shapes/NodeLengths.h"
#include "shapes/Reference.h"

namespace qxsvg {

namespace {

constexpr float DefaultSize = 3;

constexpr TProperty Properties[] = {
    ObjectProperty<TSVGMarker, TSVGLength, &TSVGMarker::RefX>(u"RefX"),
    ObjectProperty<TSVGMarker, TSVGLength, &TSVGMarker::RefY>(u"RefY"),
    ObjectProperty<TSVGMarker, TSVGLength, &TSVGMarker::MarkerHeight>(u"MarkerHeight"),
    ObjectProperty<TSVGMarker, TSVGLength, &TSVGMarker::MarkerWidth>(u"MarkerWidth"),
    Property<&TSVGMarker::Units, &TSVGMarker::SetUnits>(
        u"Units", StoredUnless<&TSVGMarker::Units, TSVGMarkerUnit::muStrokeWidth>),
    Property<&TSVGMarker::Orientation, &TSVGMarker::SetOrientation>(
        u"Orientation", StoredUnless<&TSVGMarker::Orientation, 0>),
    Property<&TSVGMarker::AutomaticOrientation, &TSVGMarker::SetAutomaticOrientation>(
        u"AutomaticOrientation", StoredUnless<&TSVGMarker::AutomaticOrientation, false>),
};

// A turn about C, as the left factor of what follows it.
TMatrix CreateAngleTransformation(TPointF C, float Angle) {
  TMatrix Result = CreateTranslateQXMatrix(-C.X, -C.Y);
  Result = QXMatrixMultiply(CreateRotationQXMatrix(Angle), Result);
  return QXMatrixMultiply(CreateTranslateQXMatrix(C.X, C.Y), Result);
}

// The direction from P to Q; false for none.
bool DirectionOf(TPointF P, TPointF Q, float& Angle) {
  const double DX = double{Q.X} - P.X, DY = double{Q.Y} - P.Y;
  if (DX == 0 && DY == 0) return false;
  Angle = static_cast<float>(std::atan2(DY, DX));
  return true;
}

bool UnitVector(TPointF From, TPointF To, TVector& Result) {
  Result = QXVector(To.X - From.X, To.Y - From.Y);
  const double Norm = QXVectorNorm(Result);
  if (!(Norm > 0)) return false;
  const double Length = std::sqrt(Norm);
  Result = QXVector(static_cast<float>(Result.X / Length), static_cast<float>(Result.Y / Length));
  return true;
}

// The bisector of the two directions at a vertex; false where one of them is none.
bool BisectorOf(TPointF Previous, TPointF Vertex, TPointF Next, float& Angle) {
  TVector A, B;
  if (!UnitVector(Previous, Vertex, A) || !UnitVector(Vertex, Next, B)) return false;
  Angle = static_cast<float>(std::atan2(double{A.Y} + B.Y, double{A.X} + B.X));
  return true;
}

}  // namespace

constinit const TSVGElementClass TSVGMarker::Class{
    {u"TSVGMarker", &TSVGCustomViewBox::Class, Properties, nullptr},
    TSVGElementType::etMarker,
    &CreateElement<TSVGMarker>};

TSVGMarker::TSVGMarker(TSVGDocument* Document)
    : TSVGCustomViewBox(Document, TSVGAlign::saNone), FUnits(TSVGMarkerUnit::muStrokeWidth) {
  SetDefaultSize();
  FRefX.Wire(this, WidthLength);
  FRefY.Wire(this, HeightLength);
  FMarkerWidth.Wire(this, WidthLength);
  FMarkerHeight.Wire(this, HeightLength);
}

TSVGMarker::~TSVGMarker() = default;

TSVGElementTypes TSVGMarker::ChildSVGTypes() const {
  return SVGStructureChildren;
}

void TSVGMarker::SetDefaultSize() {
  for (TSVGLength* Size : {&FMarkerWidth, &FMarkerHeight})
    Size->Initialize(DefaultSize, false, TSVGUnit::suPixels);
}

void TSVGMarker::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGMarker*>(Source)) {
    FRefX.Assign(&Other->FRefX);
    FRefY.Assign(&Other->FRefY);
    FMarkerHeight.Assign(&Other->FMarkerHeight);
    FMarkerWidth.Assign(&Other->FMarkerWidth);
    FUnits = Other->FUnits;
    FOrientation = Other->FOrientation;
    FAutomaticOrientation = Other->FAutomaticOrientation;
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGMarker::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomViewBox::Clear();
  FRefX.Clear();
  FRefY.Clear();
  SetDefaultSize();
  FUnits = TSVGMarkerUnit::muStrokeWidth;
  FOrientation = 0;
  FAutomaticOrientation = false;
}

void TSVGMarker::SetUnits(TSVGMarkerUnit Value) {
  if (Value == FUnits) return;
  FUnits = Value;
  Change(this);
}

void TSVGMarker::SetOrientation(float Value) {
  if (Value == FOrientation) return;
  FOrientation = Value;
  Change(this);
}

void TSVGMarker::SetAutomaticOrientation(bool Value) {
  if (Value == FAutomaticOrientation) return;
  FAutomaticOrientation = Value;
  Change(this);
}

// --- XML

void TSVGMarker::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoLoadFromXML(Node);
  ParsePercent(Node, u"refX", FRefX, 0, 1);
  ParsePercent(Node, u"refY", FRefY, 0, 1);
  ParsePercent(Node, u"markerHeight", FMarkerHeight, 0, 1);
  ParsePercent(Node, u"markerWidth", FMarkerWidth, 0, 1);
  FUnits = ParseMarkerUnit(Node.GetAttribute(u"markerUnits"), FUnits);
  FOrientation = ParseAngle(Node.GetAttribute(u"orient"), FOrientation, FAutomaticOrientation);
  const TSVGViewBox& Box = ViewBox();
  Xu().SetPixels(Box.X().GetValue());
  Yu().SetPixels(Box.Y().GetValue());
  HeightU().SetPixels(Box.Height().GetValue());
  WidthU().SetPixels(Box.Width().GetValue());
}

void TSVGMarker::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoSaveToXML(Node);
  const TFloatFormat Format(GetFormatStr());
  const bool Compact = IsCompactXML();
  SaveLength(Node, u"refX", FRefX, Format, 1, Compact);
  SaveLength(Node, u"refY", FRefY, Format, 1, Compact);
  const auto SaveSize = [&](StringView Name, const TSVGLength& Size) {
    const bool IsDefault = Size.Raw() == DefaultSize && !Size.IsUnitStored() && !Size.IsPercent();
    const bool Omit = Compact && IsDefault;
    SaveAttrString(Node, Name, Omit ? String() : SVGLengthToString(Size, Format, 0, 1), Omit, true);
  };
  SaveSize(u"markerWidth", FMarkerWidth);
  SaveSize(u"markerHeight", FMarkerHeight);
  const StringView Units = SVGMarkerUnitNames[static_cast<std::size_t>(FUnits)];
  SaveAttrString(Node, u"markerUnits", Units, Units.empty(), true);
  const double Degrees = FOrientation * 180.0 / std::numbers::pi;
  SaveAttrString(Node, u"orient", FAutomaticOrientation ? String(u"auto") : Format.Format(Degrees),
                 false, false);
}

// --- Drawing

void TSVGMarker::ConvertToMarkerCoords(TPointF Point, float Angle, TMatrix& Matrix,
                                       TQXGPCanvas& Canvas, TRectF& Rect) {
  double Width = FMarkerWidth.GetValue(), Height = FMarkerHeight.GetValue();
  if (FUnits == TSVGMarkerUnit::muStrokeWidth) {
    Width *= Canvas.Pen().Thickness();
    Height *= Canvas.Pen().Thickness();
  }
  Rect = QXRect(Point.X, Point.Y, static_cast<float>(Point.X + Width),
                static_cast<float>(Point.Y + Height));
  const float RefX = FRefX.GetValue(), RefY = FRefY.GetValue();
  Matrix = QXMatrixMultiply(GetViewMatrix(QXIdentityMatrix, Rect), Matrix);
  Matrix = QXMatrixMultiply(CreateTranslateQXMatrix(-RefX, -RefY), Matrix);
  Matrix = QXMatrixMultiply(CreateAngleTransformation(QXPoint(-RefX, -RefY), Angle), Matrix);
}

// What a marker does in the place of another element: with that element's enabled state, and never
// within itself.
template <class Action>
void TSVGMarker::InPlaceOf(TSVGGraphicElement& Element, Action Do) {
  if (FIsInUse) return;
  const TReferenceStep Step(Element, *this);
  if (!Step) return;
  struct TRestore {
    TSVGMarker& Marker;
    bool WasEnabled;
    ~TRestore() {
      Marker.InitEnabled(WasEnabled);
      Marker.FIsInUse = false;
    }
  };
  const TRestore Restore{*this, Enabled()};
  FIsInUse = true;
  InitEnabled(Element.IsEnabled());
  Do();
}

void TSVGMarker::Draw(TSVGGraphicElement& Element, TPointF Point, float Angle,
                      const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  InPlaceOf(Element, [&] {
    TMatrix Own = Matrix;
    TRectF Box = Rect;
    ConvertToMarkerCoords(Point, Angle, Own, Canvas, Box);
    const TQXCanvasStateLock State(Canvas);
    OverflowClipping(Own, Canvas, Box);
    InternalDraw(Own, Canvas, Box);
  });
}

TSVGElement* TSVGMarker::MarkerAtPos(TSVGGraphicElement& Element, TPointF Point, float Angle,
                                     const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Position,
                                     const TRectF& Rect, const TSVGFindOptions& Options) {
  TSVGElement* Found = nullptr;
  InPlaceOf(Element, [&] {
    TMatrix Own = Matrix;
    TRectF Box = Rect;
    ConvertToMarkerCoords(Point, Angle, Own, Canvas, Box);
    const TQXCanvasStateLock State(Canvas);
    OverflowClipping(Own, Canvas, Box);
    // A marker is not drawn by itself, so the question whether it would be must not be asked.
    Found = InternalElementAtPos(Own, Canvas, Position, Box, Options);
  });
  return Found;
}

void TSVGMarker::DrawStartMarker(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                                 const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  if (float Angle = 0; !FAutomaticOrientation || DirectionOf(P, Q, Angle))
    Draw(Element, P, Angle, Matrix, Canvas, Rect);
}

void TSVGMarker::DrawMidMarker(TSVGGraphicElement& Element, TPointF Previous, TPointF Vertex,
                               TPointF Next, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                               const TRectF& Rect) {
  if (float Angle = 0; !FAutomaticOrientation || BisectorOf(Previous, Vertex, Next, Angle))
    Draw(Element, Vertex, Angle, Matrix, Canvas, Rect);
}

void TSVGMarker::DrawEndMarker(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                               const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  if (float Angle = 0; !FAutomaticOrientation || DirectionOf(P, Q, Angle))
    Draw(Element, Q, Angle, Matrix, Canvas, Rect);
}

TSVGElement* TSVGMarker::StartMarkerAtPos(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                                          const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                          TPointF Position, const TRectF& Rect,
                                          const TSVGFindOptions& Options) {
  float Angle = 0;
  if (FAutomaticOrientation && !DirectionOf(P, Q, Angle)) return nullptr;
  return MarkerAtPos(Element, P, Angle, Matrix, Canvas, Position, Rect, Options);
}

TSVGElement* TSVGMarker::MidMarkerAtPos(TSVGGraphicElement& Element, TPointF Previous,
                                        TPointF Vertex, TPointF Next, const TMatrix& Matrix,
                                        TQXGPCanvas& Canvas, TPointF Position, const TRectF& Rect,
                                        const TSVGFindOptions& Options) {
  float Angle = 0;
  if (FAutomaticOrientation && !BisectorOf(Previous, Vertex, Next, Angle)) return nullptr;
  return MarkerAtPos(Element, Vertex, Angle, Matrix, Canvas, Position, Rect, Options);
}

TSVGElement* TSVGMarker::EndMarkerAtPos(TSVGGraphicElement& Element, TPointF P, TPointF Q,
                                        const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                        TPointF Position, const TRectF& Rect,
                                        const TSVGFindOptions& Options) {
  float Angle = 0;
  if (FAutomaticOrientation && !DirectionOf(P, Q, Angle)) return nullptr;
  return MarkerAtPos(Element, Q, Angle, Matrix, Canvas, Position, Rect, Options);
}

}  // namespace qxsvg
