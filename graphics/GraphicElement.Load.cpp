// Reading an element from XML and writing it back.
#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/NodeWriters.h"
#include "foundation/Messages.h"
#include "foundation/ParseTransform.h"
#include "graphics/GraphicElementParts.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

void TSVGGraphicElement::DoLoadFromXML(IXMLNode& Node) {
  const StylingLock Lock(*this);
  TSVGElement::DoLoadFromXML(Node);
  FStyle.LoadFromXML(Node);
  StringView Text;
  if (Node.FindAttribute(u"style", Text)) {
    // With an ancestor's set in force, the last element read decides for the whole chain.
    GetPreferredStyles().SetValue(FStyle.AddStyle(Text));
  } else {
    GetPreferredStyles().SetValue({});
  }
  // Ahead of the other properties, so that em and ex are right in the lengths that follow.
  ReadFontSize(FStyle.GetStyleProp(TSVGStyleProperty::ipFontSize));
  const auto ReadLength = [&](StringView Name, TSVGLength& (TSVGGraphicElement::*Length)()) {
    if (StringView Value; Node.FindAttribute(Name, Value))
      ParsePercent(Value, (this->*Length)(), 0, 1);
  };
  ReadLength(u"x", &TSVGGraphicElement::Xu);
  ReadLength(u"y", &TSVGGraphicElement::Yu);
  ReadLength(u"width", &TSVGGraphicElement::WidthU);
  ReadLength(u"height", &TSVGGraphicElement::HeightU);
  FMatrix = Node.FindAttribute(u"transform", Text) ? ParseTransformation(Text) : QXIdentityMatrix;
  if (Lock.IsOutermost()) TellStaleParts();
}

void TSVGGraphicElement::ReadChildren(IXMLNode& Node) {
  for (IXMLNode* Child = Node.FirstChild(); Child; Child = Child->NextSibling()) {
    const std::int32_t Index = ReadChild(*Child);
    if (Index > -1 && Index < Items().Count()) Items()[Index]->LoadFromXML(*Child);
  }
}

// Makes no child: this is where the nodes go that make none, and those that nobody knows.
std::int32_t TSVGGraphicElement::ReadChild(IXMLNode& Node) {
  constexpr std::int32_t NoChild = -1;
  const StringView Name = Node.LocalName();
  if (Name.empty()) return NoChild;
  if (Name == u"desc") {
    Description().SetText(Node.Text());
    return NoChild;
  }
  if (Name == u"title") {
    SetTitle(Node.Text());
    return NoChild;
  }
  // What drawing programs leave in their files.
  if (Name == u"namedview" || Name == u"perspective") return NoChild;
  if (!GetOptions().Has(TSVGOption::soSkipUnknownXML))
    throw ESVGException(SUnknownSVGElement, {XMLNodeTypeName(Node.NodeType()), Name});
  return NoChild;
}

// --- Writing

void TSVGGraphicElement::WriteChildren(IXMLNode& Node) {
  for (std::int32_t I = 0; I < Items().Count(); ++I) {
    TSVGElement* Child = Items()[I];
    Child->SaveToXML(*Node.AddChild(Child->SVGTypeName(), SVGNamespace));
  }
}

namespace {

// Whether the value is kept in a form of its own, and not in the strings of the style alone.
bool IsKept(TSVGStyleHome Home) {
  using enum TSVGStyleHome;
  return Home != shStrings && Home != shGradientStop && Home != shMarkers && Home != shNone;
}

}  // namespace

bool TSVGGraphicElement::HasOwnText(const TSVGStylePropertyRow& Row) const {
  // The shorthand of the markers is written as its parts.
  if (Row.Home == TSVGStyleHome::shMarkers) return false;
  return IsKept(Row.Home) ? !IsMarked(Row.Property) : !FStyle.GetStyleProp(Row.Property).empty();
}

void TSVGGraphicElement::DoSaveToXML(IXMLNode& Node) {
  TSVGElement::DoSaveToXML(Node);
  const bool IsCompact = IsCompactXML();
  const String Transform = TransformMatrix();
  SaveAttrString(Node, u"transform", Transform, Transform.empty(), IsCompact);
  const TSVGStyleProperties AsStyle = GetPreferredStyles().Value();
  TStyleEntries Entries(Node);
  for (const TSVGStylePropertyRow& Row : SVGStylePropertyRows) {
    const bool IsInherited = !HasOwnText(Row);
    if (IsInherited && (Row.IsInherited || !IsKept(Row.Home))) continue;
    const String Text = IsInherited ? String() : PropertyText(Row.Property);
    // The class may have a default of its own.
    StringView Default = Row.Default;
    if (!IsStored(Row.Property, Text))
      Default = Text;
    else if (Text == Default)
      Default = {};
    if (AsStyle.Has(Row.Property))
      SaveStyleProperty(Entries, Row.Property, Text, Default, IsInherited, IsCompact);
    else
      SaveStyleProperty(Node, Row.Property, Text, Default, false, IsInherited, IsCompact);
  }
  Entries.Write();
}

}  // namespace qxsvg
