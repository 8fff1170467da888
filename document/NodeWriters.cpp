#include "document/NodeWriters.h"

#include "runtime/StringList.h"

namespace qxsvg {

namespace {

constexpr StringView StyleAttribute = u"style";

void AddStyleEntry(IXMLNode& Node, StringView Name, StringView Value) {
  String Style;
  StringView Held;
  if (Node.FindAttribute(StyleAttribute, Held)) Style.append(Held).append(u"; ");
  Style.append(Name).append(u":").append(Value);
  Node.SetAttribute(StyleAttribute, Style);
}

}  // namespace

bool SaveAttrString(IXMLNode& Node, StringView Name, StringView Value, bool Omit, bool Remove) {
  if (!Omit)
    Node.SetAttribute(Name, Value);
  else if (Remove)
    Node.RemoveAttribute(Name);
  return !Omit;
}

bool SaveAttrString(IXMLNode& Node, StringView Name, const TStrings& List, bool Omit, bool Remove,
                    char16_t Delimiter) {
  String Joined;
  for (std::int32_t I = 0; I < List.Count(); ++I) {
    if (I > 0) Joined.push_back(Delimiter);
    Joined.append(List[I]);
  }
  return SaveAttrString(Node, Name, Joined, Omit, Remove);
}

bool SaveNodeString(IXMLNode& Node, StringView Name, StringView Value, bool Omit, bool Remove) {
  IXMLNode* Child = Node.FindChild(Name);
  if (!Omit) {
    if (!Child) Child = Node.AddChild(Name, SVGNamespace);
    Child->SetText(Value);
  } else if (Remove && Child) {
    Node.RemoveChild(Child);
  }
  return !Omit;
}

bool SaveStyleProperty(IXMLNode& Node, TSVGStyleProperty Property, StringView Value,
                       StringView Default, bool AsStyle, bool Inherited, bool Compact) {
  constexpr StringView None = u"none", Inherit = u"inherit";
  if (Default == None && Value.empty()) Value = None;
  const bool InheritsByItself = SVGInheritedProperties.Has(Property);
  if (Inherited && InheritsByItself) return false;
  if (!Inherited && Compact && Value == Default && !InheritsByItself) return false;
  if (Inherited) Value = Inherit;
  const StringView Name = SVGStylePropertyRowOf(Property).Name;
  if (AsStyle)
    AddStyleEntry(Node, Name, Value);
  else
    Node.SetAttribute(Name, Value);
  return true;
}

}  // namespace qxsvg
