#include "document/NodeWriters.h"

#include "runtime/StringList.h"

namespace qxsvg {

namespace {

constexpr StringView StyleAttribute = u"style";

// Whether the property has to be written, with what stands for it in Value.
bool NeedsText(TSVGStyleProperty Property, StringView& Value, StringView Default, bool Inherited,
               bool Compact) {
  constexpr StringView None = u"none", Inherit = u"inherit";
  if (Default == None && Value.empty()) Value = None;
  const bool InheritsByItself = SVGInheritedProperties.Has(Property);
  if (Inherited && InheritsByItself) return false;
  if (!Inherited && Compact && Value == Default && !InheritsByItself) return false;
  if (Inherited) Value = Inherit;
  return true;
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

void TStyleEntries::Add(StringView Name, StringView Value) {
  if (!FIsBegun) {
    // The first entry decides which place among the attributes they have.
    if (StringView Held; FNode.FindAttribute(StyleAttribute, Held))
      FText.append(Held).append(u"; ");
    else
      FNode.SetAttribute(StyleAttribute, StringView());
    FIsBegun = true;
  } else {
    FText.append(u"; ");
  }
  FText.append(Name).append(u":").append(Value);
}

void TStyleEntries::Write() {
  if (FIsBegun) FNode.SetAttribute(StyleAttribute, FText);
}

bool SaveStyleProperty(TStyleEntries& Entries, TSVGStyleProperty Property, StringView Value,
                       StringView Default, bool Inherited, bool Compact) {
  if (!NeedsText(Property, Value, Default, Inherited, Compact)) return false;
  Entries.Add(SVGStylePropertyRowOf(Property).Name, Value);
  return true;
}

bool SaveStyleProperty(IXMLNode& Node, TSVGStyleProperty Property, StringView Value,
                       StringView Default, bool AsStyle, bool Inherited, bool Compact) {
  if (AsStyle) {
    TStyleEntries Entries(Node);
    const bool IsSaved = SaveStyleProperty(Entries, Property, Value, Default, Inherited, Compact);
    Entries.Write();
    return IsSaved;
  }
  if (!NeedsText(Property, Value, Default, Inherited, Compact)) return false;
  Node.SetAttribute(SVGStylePropertyRowOf(Property).Name, Value);
  return true;
}

}  // namespace qxsvg
