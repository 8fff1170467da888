#include "paint/Gradients.h"

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

constexpr TProperty LinearProperties[] = {
    ObjectProperty<TSVGLinearGradient, TSVGLength, &TSVGLinearGradient::X1>(u"X1"),
    ObjectProperty<TSVGLinearGradient, TSVGLength, &TSVGLinearGradient::Y1>(u"Y1"),
    ObjectProperty<TSVGLinearGradient, TSVGLength, &TSVGLinearGradient::X2>(u"X2"),
    ObjectProperty<TSVGLinearGradient, TSVGLength, &TSVGLinearGradient::Y2>(u"Y2"),
};

using TRadial = TSVGRadialGradient;
constexpr TProperty RadialProperties[] = {
    ObjectProperty<TRadial, TSVGLength, &TRadial::CenterX>(u"CenterX"),
    ObjectProperty<TRadial, TSVGLength, &TRadial::CenterY>(u"CenterY"),
    ObjectProperty<TRadial, TSVGLength, &TRadial::Radius>(u"Radius"),
    ObjectProperty<TRadial, TSVGLength, &TRadial::FocalX>(u"FocalX"),
    ObjectProperty<TRadial, TSVGLength, &TRadial::FocalY>(u"FocalY"),
    Property<&TRadial::FocalXSpecified, &TRadial::SetFocalXSpecified>(
        u"FocalXSpecified", StoredUnless<&TRadial::FocalXSpecified, false>),
    Property<&TRadial::FocalYSpecified, &TRadial::SetFocalYSpecified>(
        u"FocalYSpecified", StoredUnless<&TRadial::FocalYSpecified, false>),
};

// A point as fractions of a box; a side without extent gives 1.
TPointF FractionOf(TPointF P, const TRectF& Box) {
  const auto Fraction = [](float Value, float Start, float Extent) {
    return Extent == 0 ? 1.0f : static_cast<float>((double{Value} - Start) / Extent);
  };
  return QXPoint(Fraction(P.X, Box.Left, Box.Width()), Fraction(P.Y, Box.Top, Box.Height()));
}

// Whether a number counts as a fraction of the box and not as user units.
bool IsFraction(float Value, bool IsPercent) {
  return IsPercent || (Value > 0 && Value <= 1);
}

float Ratio(double Part, double Whole) {
  return Whole == 0 ? 1 : static_cast<float>(Part / Whole);
}

}  // namespace

// --- linearGradient

constinit const TSVGElementClass TSVGLinearGradient::Class{
    {u"TSVGLinearGradient", &TSVGCustomGradient::Class, LinearProperties, nullptr},
    TSVGElementType::etLinearGradient,
    &CreateElement<TSVGLinearGradient>};

TSVGLinearGradient::TSVGLinearGradient(TSVGDocument* Document) : TSVGCustomGradient(Document) {
  FX2.SetRaw(1);
  for (TSVGLength* Length : {&FX1, &FY1, &FX2, &FY2}) Length->Wire(this, PlainLength);
}

TSVGLinearGradient::~TSVGLinearGradient() = default;

void TSVGLinearGradient::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGLinearGradient*>(Source)) {
    FX1.Assign(&Other->FX1);
    FY1.Assign(&Other->FY1);
    FX2.Assign(&Other->FX2);
    FY2.Assign(&Other->FY2);
  }
  TSVGCustomGradient::AssignProperties(Source);
}

void TSVGLinearGradient::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomGradient::Clear();
  for (TSVGLength* Length : {&FX1, &FY1, &FX2, &FY2}) Length->Clear();
  FX2.SetRaw(1);
}

void TSVGLinearGradient::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomGradient::DoLoadFromXML(Node);
  ParsePercent(Node, u"x1", FX1, 0, 1);
  ParsePercent(Node, u"y1", FY1, 0, 1);
  ParsePercent(Node, u"x2", FX2, 0, 1);
  ParsePercent(Node, u"y2", FY2, 0, 1);
}

void TSVGLinearGradient::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomGradient::DoSaveToXML(Node);
  const TFloatFormat Format(GetFormatStr());
  SaveLength(Node, u"x1", FX1, Format, 1, false);
  SaveLength(Node, u"y1", FY1, Format, 1, false);
  SaveLength(Node, u"x2", FX2, Format, 1, false);
  SaveLength(Node, u"y2", FY2, Format, 1, false);
}

std::unique_ptr<TQXGPGradient> TSVGLinearGradient::GetGradient(const TMatrix& Matrix,
                                                               const TRectF& Bounds,
                                                               const TRectF& Viewport) {
  std::unique_ptr<TQXGPGradient> Result = TSVGCustomGradient::GetGradient(Matrix, Bounds, Viewport);
  TPointF Start = QXPoint(FX1.GetValue(), FY1.GetValue());
  TPointF Stop = QXPoint(FX2.GetValue(), FY2.GetValue());
  if (Bounds.Width() != 0 && Bounds.Height() != 0) {
    Start = QXMatrixTransform(this->Matrix(), Start);
    Stop = QXMatrixTransform(this->Matrix(), Stop);
    if (Units() == TSVGCoordinateSystemUnit::csuUserSpaceOnUse) {
      const TRectF Box = QXRect(QXMatrixTransform(Matrix, Bounds.TopLeft()),
                                QXMatrixTransform(Matrix, Bounds.BottomRight()));
      Start = FractionOf(QXMatrixTransform(Matrix, Start), Box);
      Stop = FractionOf(QXMatrixTransform(Matrix, Stop), Box);
    }
  }
  Result->StartPosition().SetPoint(Start);
  Result->StopPosition().SetPoint(Stop);
  return Result;
}

// --- radialGradient

constinit const TSVGElementClass TSVGRadialGradient::Class{
    {u"TSVGRadialGradient", &TSVGCustomGradient::Class, RadialProperties, nullptr},
    TSVGElementType::etRadialGradient,
    &CreateElement<TSVGRadialGradient>};

TSVGRadialGradient::TSVGRadialGradient(TSVGDocument* Document) : TSVGCustomGradient(Document) {
  CenterAtMiddle();
  HeightU().Initialize(0.5f, true, TSVGUnit::suNone);
  FFocalX.Wire(this, PlainLength);
  FFocalY.Wire(this, PlainLength);
}

TSVGRadialGradient::~TSVGRadialGradient() = default;

void TSVGRadialGradient::CenterAtMiddle() {
  for (TSVGLength* Length : {&CenterX(), &CenterY(), &Radius()})
    Length->Initialize(0.5f, true, TSVGUnit::suNone);
}

void TSVGRadialGradient::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGRadialGradient*>(Source)) {
    FFocalX.Assign(&Other->FFocalX);
    FFocalY.Assign(&Other->FFocalY);
    FFocalXSpecified = Other->FFocalXSpecified;
    FFocalYSpecified = Other->FFocalYSpecified;
  }
  TSVGCustomGradient::AssignProperties(Source);
}

void TSVGRadialGradient::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomGradient::Clear();
  CenterAtMiddle();
  HeightU().Initialize(0.5f, true, TSVGUnit::suNone);
  FFocalX.Clear();
  FFocalY.Clear();
  FFocalXSpecified = FFocalYSpecified = false;
}

void TSVGRadialGradient::SetFocalXSpecified(bool Value) {
  if (Value == FFocalXSpecified) return;
  FFocalXSpecified = Value;
  Change(this);
}

void TSVGRadialGradient::SetFocalYSpecified(bool Value) {
  if (Value == FFocalYSpecified) return;
  FFocalYSpecified = Value;
  Change(this);
}

void TSVGRadialGradient::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomGradient::DoLoadFromXML(Node);
  CenterAtMiddle();
  ParsePercent(Node, u"cx", CenterX(), 0, 1);
  ParsePercent(Node, u"cy", CenterY(), 0, 1);
  ParsePercent(Node, u"r", Radius(), 0, 1);
  HeightU().Assign(&Radius());
  FFocalXSpecified = Node.HasAttribute(u"fx");
  LoadLength(Node, u"fx", FFocalX);
  FFocalYSpecified = Node.HasAttribute(u"fy");
  LoadLength(Node, u"fy", FFocalY);
}

void TSVGRadialGradient::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomGradient::DoSaveToXML(Node);
  const TFloatFormat Format(GetFormatStr());
  SaveLength(Node, u"cx", CenterX(), Format, 1, false);
  SaveLength(Node, u"cy", CenterY(), Format, 1, false);
  SaveLength(Node, u"r", Radius(), Format, 1, false);
  if (FFocalXSpecified) SaveLength(Node, u"fx", FFocalX, Format, 1, false);
  if (FFocalYSpecified) SaveLength(Node, u"fy", FFocalY, Format, 1, false);
}

TPointF TSVGRadialGradient::RadiusPosition(const TRectF& Bounds) {
  const double Width = Bounds.Width(), Height = Bounds.Height();
  const bool IsUserSpace = Units() == TSVGCoordinateSystemUnit::csuUserSpaceOnUse;
  const double R = Radius().GetPixels();
  const bool IsShare =
      IsUserSpace ? Radius().IsPercent() : IsFraction(Radius().GetPixels(), Radius().IsPercent());
  // The extent of a vector of user space under the gradient's transformation.
  const auto Extent = [this](double X, double Y) {
    const TPointF Origin = QXMatrixTransform(Matrix(), QXPoint(0, 0));
    const TPointF End =
        QXMatrixTransform(Matrix(), QXPoint(static_cast<float>(X), static_cast<float>(Y)));
    return QXPoint(std::abs(End.X - Origin.X), std::abs(End.Y - Origin.Y));
  };
  if (!IsShare) {
    const TPointF Reach = Extent(R, 0);
    const double Distance = std::hypot(Reach.X, Reach.Y);
    return QXPoint(Ratio(Distance, Width / 2), Ratio(Distance, Height / 2));
  }
  const TPointF Reach = Extent(R * Width, R * Height);
  const TPointF Whole =
      IsUserSpace ? Extent(Width, Height) : QXPoint(Bounds.Width(), Bounds.Height());
  return QXPoint(Ratio(Reach.X, Whole.X / 2.0), Ratio(Reach.Y, Whole.Y / 2.0));
}

std::unique_ptr<TQXGPGradient> TSVGRadialGradient::GetGradient(const TMatrix& Matrix,
                                                               const TRectF& Bounds,
                                                               const TRectF& Viewport) {
  std::unique_ptr<TQXGPGradient> Result = TSVGCustomGradient::GetGradient(Matrix, Bounds, Viewport);
  const auto Place = [](float Value, bool IsPercent, float Start, float Extent) {
    return IsFraction(Value, IsPercent) ? static_cast<float>(Start + double{Extent} * Value)
                                        : Value;
  };
  const auto PlaceX = [&](float Value, bool IsPercent) {
    return Place(Value, IsPercent, Bounds.Left, Bounds.Width());
  };
  const auto PlaceY = [&](float Value, bool IsPercent) {
    return Place(Value, IsPercent, Bounds.Top, Bounds.Height());
  };
  const auto Fraction = [&](float X, float Y) {
    return FractionOf(QXMatrixTransform(this->Matrix(), QXPoint(X, Y)), Bounds);
  };
  const TPointF Center = Fraction(PlaceX(CenterX().GetPixels(), CenterX().IsPercent()),
                                  PlaceY(CenterY().GetPixels(), CenterY().IsPercent()));
  Result->CenterPosition().SetPoint(Center);
  if (FFocalXSpecified || FFocalYSpecified) {
    const float X =
        FFocalXSpecified ? PlaceX(FFocalX.GetPixels(), FFocalX.IsPercent()) : PlaceX(0.5f, true);
    const float Y =
        FFocalYSpecified ? PlaceY(FFocalY.GetPixels(), FFocalY.IsPercent()) : PlaceY(0.5f, true);
    Result->FocusOffsetPosition().SetPoint(Fraction(X, Y) - Center);
  }
  if (std::abs(Bounds.Width()) > 0 && std::abs(Bounds.Height()) > 0)
    Result->RadiusPosition().SetPoint(RadiusPosition(Bounds));
  return Result;
}

}  // namespace qxsvg
