#include "paint/Gradient.h"

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/TreeWalk.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    Property<&TSVGGradientStop::Offset, &TSVGGradientStop::SetOffset>(
        u"Offset",
        [](const TPersistent& Self) {
          return const_cast<TSVGGradientStop&>(static_cast<const TSVGGradientStop&>(Self))
                     .Offset() != 0;
        }),
    ObjectProperty<TSVGGradientStop, TSVGBrush, &TSVGGradientStop::StopBrush,
                   &TSVGGradientStop::SetStopBrush>(u"StopBrush"),
};

}  // namespace

constinit const TSVGElementClass TSVGGradientStop::Class{
    {u"TSVGGradientStop", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etGradientStop,
    &CreateElement<TSVGGradientStop>};

TSVGGradientStop::TSVGGradientStop(TSVGDocument* Document) : TSVGGraphicElement(Document) {
  FStopBrush.SetOnChange(TNotifyMethod::Bind<&TSVGGradientStop::PropagateObjectPropChange>(this));
  FStopBrush.SetOnIsInherited(TSVGIsInheritedEvent::Bind<&TSVGGradientStop::StopInherited>(this));
}

TSVGGradientStop::~TSVGGradientStop() = default;

TSVGElementTypes TSVGGradientStop::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

void TSVGGradientStop::StopInherited(TPersistent*, TSVGStyleProperty Property, bool& IsInherited) {
  // The brush asks about fills, but what it holds are the properties of a stop.
  if (Property == TSVGStyleProperty::ipFill) Property = TSVGStyleProperty::ipStopColor;
  if (Property == TSVGStyleProperty::ipFillOpacity) Property = TSVGStyleProperty::ipStopOpacity;
  IsInherited = Inherits().Has(Property);
}

void TSVGGradientStop::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGGradientStop*>(Source))
    SetStopBrush(&Other->FStopBrush);
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGGradientStop::Clear() {
  const TElementLock Lock(*this);
  TSVGGraphicElement::Clear();
  FStopBrush.Clear();
  FColorChanged = true;
}

void TSVGGradientStop::PropagateObjectPropChange(TPersistent* Sender) {
  if (Sender == &FStopBrush) FColorChanged = true;
  TSVGGraphicElement::PropagateObjectPropChange(Sender);
}

float TSVGGradientStop::Offset() {
  return GetXRaw();
}
void TSVGGradientStop::SetOffset(float Value) {
  Xu().SetRaw(Value);
}
void TSVGGradientStop::SetStopBrush(const TSVGBrush* Value) {
  FStopBrush.Assign(Value);
}

TSVGBrush& TSVGGradientStop::GetStopBrush() {
  // A full opacity leaves the colour's own alpha as it stands.
  if (FColorChanged && FStopBrush.Opacity() < 1) {
    const TQXSilence Silence(FStopBrush);
    FStopBrush.UpdateColorOpacity();
    FColorChanged = false;
  }
  return FStopBrush;
}

void TSVGGradientStop::DoLoadFromXML(IXMLNode& Node) {
  TSVGGraphicElement::DoLoadFromXML(Node);
  bool Inherit = false;
  Xu().Clear();
  ParsePercent(Node, u"offset", Xu(), Inherit, 0, 1);
}

void TSVGGradientStop::DoSaveToXML(IXMLNode& Node) {
  TSVGGraphicElement::DoSaveToXML(Node);
  SaveLength(Node, u"offset", Xu(), GetFormatStr(), 1, false);
}

bool TSVGGradientStop::HasOwnText(const TSVGStylePropertyRow& Row) const {
  if (Row.Home == TSVGStyleHome::shGradientStop) return !Inherits().Has(Row.Property);
  return TSVGGraphicElement::HasOwnText(Row);
}

String TSVGGradientStop::PropertyText(TSVGStyleProperty Property) {
  switch (Property) {
    case TSVGStyleProperty::ipStopColor: return SVGColorToString(FStopBrush.Color());
    case TSVGStyleProperty::ipStopOpacity:
      return SVGNumberToString(FStopBrush.Opacity(), TSVGUnit::suNone, GetFormatStr());
    default: return TSVGGraphicElement::PropertyText(Property);
  }
}

void TSVGGradientStop::ApplyStyle(const TSVGStyle& Style) {
  using enum TSVGStyleProperty;
  const TTreeWalk Walk(*this);
  TSVGGraphicElement::ApplyStyle(Style);
  TSVGStyleProperties Marks = Inherits().Value();
  const bool WasNone = FStopBrush.Kind() == TQXGPBrushKind::bkNone;
  bool IsNone = WasNone;
  bool InheritsColor = Marks.Has(ipStopColor), InheritsOpacity = Marks.Has(ipStopOpacity);
  try {
    FStopBrush.SetColor(ParseColor(Style.GetStyleProp(ipStopColor), FStopBrush.Color(), IsNone,
                                   InheritsColor, GetColor()));
  } catch (const EConvertError& Error) {
    // As for fills: it must not take the document along.
    if (Document()) Document()->Diagnose(TSVGDiagnosticKind::dkValue, this, Error.Message());
    InheritsColor = false;
  }
  FStopBrush.SetKind(WasNone ? TQXGPBrushKind::bkNone : TQXGPBrushKind::bkSolid);
  FStopBrush.SetOpacity(
      ParseNumber(Style.GetStyleProp(ipStopOpacity), FStopBrush.Opacity(), InheritsOpacity));
  Marks.Set(ipStopColor, InheritsColor);
  Marks.Set(ipStopOpacity, InheritsOpacity);
  Inherits().SetValue(Marks);
}

}  // namespace qxsvg
