#include "shapes/Line.h"

#include <array>

#include "graphics/SVGPen.h"
#include "graphics/surface/Canvas.h"
#include "shapes/MarkerWalk.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

using TBase = TSVGGraphicElement;

constexpr TProperty Properties[] = {
    ObjectProperty<TSVGLine, TSVGLength, &TSVGLine::StartX>(u"StartX"),
    ObjectProperty<TSVGLine, TSVGLength, &TSVGLine::StartY>(u"StartY"),
    ObjectProperty<TSVGLine, TSVGLength, &TSVGLine::EndX>(u"EndX"),
    ObjectProperty<TSVGLine, TSVGLength, &TSVGLine::EndY>(u"EndY"),
};

constexpr std::array<StringView, 4> Names{u"x1", u"y1", u"x2", u"y2"};

}  // namespace

constinit const TSVGElementClass TSVGLine::Class{
    {u"TSVGLine", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etLine,
    &CreateElement<TSVGLine>};

TSVGLine::~TSVGLine() = default;

TSVGElementTypes TSVGLine::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

// --- Geometry

TPointF TSVGLine::StartPoint() {
  return QXPoint(GetX(), GetY());
}
TPointF TSVGLine::EndPoint() {
  return QXPoint(TBase::GetWidth(), TBase::GetHeight());
}

float TSVGLine::GetWidth() {
  return std::abs(TBase::GetWidth() - GetX());
}
float TSVGLine::GetHeight() {
  return std::abs(TBase::GetHeight() - GetY());
}
void TSVGLine::SetWidth(float Value) {
  TBase::SetWidth(GetX() + Value);
}
void TSVGLine::SetHeight(float Value) {
  TBase::SetHeight(GetY() + Value);
}

TRectF TSVGLine::GetBoundsRect() {
  TRectF Bounds = QXRect(StartPoint(), EndPoint());
  if (Bounds.Width() == 0) Bounds.Right += 1;
  if (Bounds.Height() == 0) Bounds.Bottom += 1;
  return Bounds;
}

TQXGPPath* TSVGLine::GetShape() {
  if (ShapeCacheChanged()) {
    TQXGPPath& Path = Shape();
    const TPointF Start = StartPoint(), End = EndPoint();
    const TQXPathView Old = Path.View();
    const bool HasLength = Start != End;
    const bool IsSame = HasLength
                            ? Old.Count() == 2 && Old.Points[0] == Start && Old.Points[1] == End
                            : Old.IsEmpty();
    if (!IsSame) {
      Path.Clear();
      if (HasLength) {
        Path.MoveTo(Start);
        Path.LineTo(End);
      }
    }
  }
  return TBase::GetShape();
}

bool TSVGLine::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const bool Drew = TBase::DoInternalDraw(Matrix, Canvas, Rect);
  const TPointF Ends[] = {StartPoint(), EndPoint()};
  if (Ends[0] == Ends[1]) return Drew;
  if (!Drew) {
    PaintsOtherwise();
    const auto Device = [&Matrix](TPointF P) {
      return QXPoint(CanvasPoint(QXPoint(QXMatrixTransform(Matrix, QXVector(P)))));
    };
    Canvas.DrawLine(Device(Ends[0]), Device(Ends[1]),
                    static_cast<float>(GetPen().Opacity() * GetAbsoluteOpacity()));
  }
  DrawMarkers(*this, Ends, Matrix, Canvas, Rect);
  return Drew;
}

TSVGElement* TSVGLine::DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                              TPointF Point, const TRectF& Rect,
                                              const TSVGFindOptions& Options) {
  // The box of a line has no area to speak of, so only the stroke decides.
  const TQXGPPath* const Path = GetShape();
  return Path && !Path->IsEmpty() ? PathAtPos(Matrix, Canvas, Point, Rect, *Path, Options)
                                  : nullptr;
}

// --- XML

void TSVGLine::DoLoadFromXML(IXMLNode& Node) {
  TBase::DoLoadFromXML(Node);
  LoadLength(Node, Names[0], Xu());
  LoadLength(Node, Names[1], Yu());
  LoadLength(Node, Names[2], WidthU());
  LoadLength(Node, Names[3], HeightU());
}

void TSVGLine::DoSaveToXML(IXMLNode& Node) {
  TBase::DoSaveToXML(Node);
  SaveLengths(Node, *this, Names, true);
}

}  // namespace qxsvg
