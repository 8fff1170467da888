#include "text/CustomText.h"

#include "document/AttributeParsers.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Lookups.h"
#include "foundation/Writers.h"
#include "text/TextElements.h"

namespace qxsvg {

namespace {

using T = TSVGCustomText;

constexpr TProperty Properties[] = {
    Property<&T::XStr, &T::SetXStr>(u"XStr", StoredUnlessEmpty<&T::XStr>),
    Property<&T::YStr, &T::SetYStr>(u"YStr", StoredUnlessEmpty<&T::YStr>),
    Property<&T::DXStr, &T::SetDXStr>(u"DXStr", StoredUnlessEmpty<&T::DXStr>),
    Property<&T::DYStr, &T::SetDYStr>(u"DYStr", StoredUnlessEmpty<&T::DYStr>),
    Property<&T::RotateStr, &T::SetRotateStr>(u"RotateStr", StoredUnlessEmpty<&T::RotateStr>),
};

}  // namespace

constinit const TSVGElementClass TSVGCustomText::Class{
    {u"TSVGCustomText", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etNone,
    nullptr};

TSVGCustomText::~TSVGCustomText() = default;

// --- Lists

const TSVGCustomText::TLists& TSVGCustomText::Lists() const {
  static const TLists None;
  return FLists ? *FLists : None;
}

TSVGCustomText::TLists& TSVGCustomText::ListsForWriting() {
  if (!FLists) FLists = std::make_unique<TLists>();
  return *FLists;
}

std::unique_ptr<TSVGLength> TSVGCustomText::CreateXLength(float Value) {
  auto Result = std::make_unique<TSVGLength>(Value, false, TSVGUnit::suNone);
  Result->Wire(this, WidthLength);
  return Result;
}

std::unique_ptr<TSVGLength> TSVGCustomText::CreateYLength(float Value) {
  auto Result = std::make_unique<TSVGLength>(Value, false, TSVGUnit::suNone);
  Result->Wire(this, HeightLength);
  return Result;
}

TSVGLengthCreateEvent TSVGCustomText::Creator(bool IsHorizontal) {
  return IsHorizontal ? TSVGLengthCreateEvent::Bind<&T::CreateXLength>(this)
                      : TSVGLengthCreateEvent::Bind<&T::CreateYLength>(this);
}

String TSVGCustomText::ListText(TSVGLengths TLists::*List) const {
  return SVGLengthsToString(Lists().*List, GetFormatStr(), 0, 1, u" ");
}

void TSVGCustomText::SetListText(TSVGLengths TLists::*List, bool IsHorizontal, StringView Value) {
  ParseLengths(Value, ListsForWriting().*List, Creator(IsHorizontal), 0, 1);
  Change(this);
}

String TSVGCustomText::RotateStr() const {
  return SVGNumbersToString(Rotate(), GetFormatStr(), u" ");
}

void TSVGCustomText::SetRotateStr(StringView Value) {
  ListsForWriting().Rotate = ParseNumbers(Value, Rotate());
  Change(this);
}

void TSVGCustomText::SetRotate(const std::vector<float>& Value) {
  ListsForWriting().Rotate = Value;
  Change(this);
}

// --- Text

void TSVGCustomText::SetText(StringView Value) {
  if (Value == FText) return;
  FText = Value;
  Change(this);
}

String TSVGCustomText::GetLineText() const {
  String Result = GetText();
  for (const TSVGElement* Child : Items())
    if (Child->ClassType().InheritsFrom(TSVGCustomText::Class))
      Result += static_cast<const TSVGCustomText*>(Child)->GetLineText();
  return Result;
}

void TSVGCustomText::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGCustomText*>(Source)) {
    FText = Other->FText;
    if (Other->FLists || FLists) {
      TLists& Own = ListsForWriting();
      const TLists& From = Other->Lists();
      for (const auto List : {&TLists::X, &TLists::DX}) CloneInto(From.*List, Own.*List, true);
      for (const auto List : {&TLists::Y, &TLists::DY}) CloneInto(From.*List, Own.*List, false);
      Own.Rotate = From.Rotate;
    }
  }
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGCustomText::CloneInto(const TSVGLengths& Source, TSVGLengths& Target, bool IsHorizontal) {
  Target.Clear();
  for (std::size_t I = 0; I < Source.Count(); ++I)
    Target.Add(IsHorizontal ? CreateXLength(0) : CreateYLength(0)).Assign(&Source[I]);
}

void TSVGCustomText::Clear() {
  const TElementLock Lock(*this);
  FText.clear();
  FLists.reset();
  TSVGGraphicElement::Clear();
}

// --- XML

void TSVGCustomText::LoadList(const IXMLNode& Node, StringView Name, TSVGLengths TLists::*List,
                              bool IsHorizontal) {
  if (FLists || Node.HasAttribute(Name))
    ParseLengths(Node, Name, ListsForWriting().*List, Creator(IsHorizontal), 0, 1);
}

void TSVGCustomText::DoLoadFromXML(IXMLNode& Node) {
  TSVGGraphicElement::DoLoadFromXML(Node);
  FText.clear();
  if (Node.NodeType() == TXMLNodeType::ntText) FText = CleanText(Node.Value());
  LoadList(Node, u"x", &TLists::X, true);
  LoadList(Node, u"y", &TLists::Y, false);
  LoadList(Node, u"dx", &TLists::DX, true);
  LoadList(Node, u"dy", &TLists::DY, false);
  if (FLists || Node.HasAttribute(u"rotate"))
    ListsForWriting().Rotate = ParseNumbers(Node, u"rotate", Rotate());
}

std::int32_t TSVGCustomText::ReadChild(IXMLNode& Node) {
  const auto AddSpan = [this] {
    const TSVGElementClass* const Span =
        SVGClasses[static_cast<std::size_t>(TSVGElementType::etTSpan)];
    return Span ? Items().Add(Span->Create(Document())) : -1;
  };
  if (GetSVGElementType(Node.LocalName()) == TSVGElementType::etTSpan) return AddSpan();
  if (Node.NodeType() != TXMLNodeType::ntText) return TSVGGraphicElement::ReadChild(Node);
  // Later character data needs a place of its own to keep its order.
  if (!FText.empty()) return AddSpan();
  FText = CleanText(Node.Value());
  return -1;
}

void TSVGCustomText::DoOnParsedNode(TSVGElement* Element) {
  const bool IsOutermost = !Parent() || !Parent()->ClassType().InheritsFrom(TSVGCustomText::Class);
  if (IsOutermost) {
    std::size_t Blanks = 0;
    while (Blanks < FText.size() && FText[Blanks] <= u' ') ++Blanks;
    FText.erase(0, Blanks);
  }
  TSVGGraphicElement::DoOnParsedNode(Element);
}

void TSVGCustomText::DoSaveToXML(IXMLNode& Node) {
  TSVGGraphicElement::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  const auto Save = [&](StringView Name, std::size_t Count, auto First, auto Text) {
    const bool Omit = Compact && (Count == 0 || (Count == 1 && First() == 0));
    SaveAttrString(Node, Name, Omit ? String() : Text(), Omit, true);
  };
  const auto SaveList = [&](StringView Name, TSVGLengths TLists::*List) {
    const TSVGLengths& Values = Lists().*List;
    Save(
        Name, Values.Count(), [&] { return Values[0].Raw(); }, [&] { return ListText(List); });
  };
  SaveList(u"x", &TLists::X);
  SaveList(u"y", &TLists::Y);
  SaveList(u"dx", &TLists::DX);
  SaveList(u"dy", &TLists::DY);
  Save(
      u"rotate", Rotate().size(), [&] { return Rotate()[0]; }, [&] { return RotateStr(); });
  const String Text = GetText();
  if (!Text.empty()) Node.SetText(Text);
}

}  // namespace qxsvg
