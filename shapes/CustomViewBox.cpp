// A viewport's values, its way in and out of XML, and its bounds.
#include "shapes/CustomViewBox.h"

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "runtime/Filer.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    ObjectProperty<TSVGCustomViewBox, TSVGPreserveAspectRatio, &TSVGCustomViewBox::AspectRatio>(
        u"AspectRatio"),
    ObjectProperty<TSVGCustomViewBox, TSVGViewBox, &TSVGCustomViewBox::ViewBox>(
        u"ViewBox", StoredIf<&TSVGCustomViewBox::IsViewBoxStored>),
};

}  // namespace

constinit const TSVGElementClass TSVGCustomViewBox::Class{
    {u"TSVGCustomViewBox", &TSVGCustomGroup::Class, Properties, nullptr},
    TSVGElementType::etGroup,
    nullptr};

TSVGCustomViewBox::TSVGCustomViewBox(TSVGDocument* Document)
    : TSVGCustomViewBox(Document, TSVGAlign::saXMidYMid) {}

TSVGCustomViewBox::TSVGCustomViewBox(TSVGDocument* Document, TSVGAlign Align)
    : TSVGCustomGroup(Document), FAspectRatio(Align, false, false) {
  const auto Notice = TNotifyMethod::Bind<&TSVGCustomViewBox::ObjectPropChange>(this);
  FAspectRatio.OnChange = Notice;
  FViewBox.OnChange = Notice;
  FViewBox.SetOnUnitFactors(OwnUnitFactors());
  InitOverflow(false);
}

TSVGCustomViewBox::~TSVGCustomViewBox() = default;

void TSVGCustomViewBox::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGCustomViewBox*>(Source)) {
    FViewBox.Assign(&Other->FViewBox);
    SetAspectRatio(&Other->FAspectRatio);
  }
  TSVGCustomGroup::AssignProperties(Source);
}

void TSVGCustomViewBox::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomGroup::Clear();
  FViewBox.Clear();
  FAspectRatio.Clear();
  InitOverflow(false);
}

bool TSVGCustomViewBox::IsStored(TSVGStyleProperty Property, StringView Value) const {
  if (Property == TSVGStyleProperty::ipOverflow) return Value != u"hidden";
  return TSVGCustomGroup::IsStored(Property, Value);
}

void TSVGCustomViewBox::DefineProperties(TFiler& Filer) {
  TSVGCustomGroup::DefineProperties(Filer);
  const auto Read = [this](TReader& Reader) {
    const bool IsSpecified = Reader.ReadBoolean();
    if (!IsSpecified) FViewBox.SetRect(TSVGGraphicElement::GetBoundsRect());
    FViewBox.SetViewBoxSpecified(IsSpecified);
  };
  const auto Write = [this](TWriter& Writer) { Writer.WriteBoolean(FViewBox.ViewBoxSpecified()); };
  Filer.DefineProperty(u"ViewBoxSpecified", Read, Write, true);
}

// --- XML

void TSVGCustomViewBox::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomGroup::DoLoadFromXML(Node);
  FViewBox.X().SetValue(GetX());
  FViewBox.Y().SetValue(GetY());
  FViewBox.Width().SetValue(GetWidth());
  FViewBox.Height().SetValue(GetHeight());
  const StringView Box = Node.GetAttribute(u"viewBox");
  FViewBox.SetViewBoxSpecified(!Box.empty());
  if (!Box.empty()) ParseRect(Box, FViewBox);
  ParseAspectRatio(Node.GetAttribute(u"preserveAspectRatio"), FAspectRatio);
}

void TSVGCustomViewBox::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomGroup::DoSaveToXML(Node);
  if (!FViewBox.ViewBoxSpecified()) return;
  SaveAttrString(Node, u"viewBox", FViewBox.ToString(GetFormatStr(), 0, 1), false, false);
  const String Ratio = FAspectRatio.ToString(IsCompactXML());
  SaveAttrString(Node, u"preserveAspectRatio", Ratio, Ratio.empty(), false);
}

// --- Bounds

TSVGCustomViewBox* TSVGCustomViewBox::GetNearestViewBox() {
  return FViewBox.ViewBoxSpecified() ? this : TSVGCustomGroup::GetNearestViewBox();
}

void TSVGCustomViewBox::SetViewBoxQuietly(const TRectF& Rect, bool IsSpecified) {
  const TNotifyMethod Notice = std::exchange(FViewBox.OnChange, TNotifyMethod());
  FViewBox.SetRect(Rect);
  FViewBox.SetViewBoxSpecified(IsSpecified);
  FViewBox.OnChange = Notice;
}

TRectF TSVGCustomViewBox::GetBoundsRect() {
  if (FViewBox.ViewBoxSpecified() && !Document()) return FViewBox.GetRect();
  const TRectF Own = TSVGGraphicElement::GetBoundsRect();
  if (!Own.IsEmpty()) return Own;
  const TRectF Content = TSVGCustomGroup::GetBoundsRect();
  SetViewBoxQuietly(Content, false);
  return Content;
}

TRectF TSVGCustomViewBox::GetBoundsRect(const TMatrix& Matrix) {
  const TRectF Bounds = GetBoundsRect();
  const TMatrix Own = QXMatrixMultiply(this->Matrix(), Matrix);
  return QXMatrixEquals(Own, QXIdentityMatrix, MatrixTolerance) ? Bounds
                                                                : QXMatrixTransform(Own, Bounds);
}

}  // namespace qxsvg
