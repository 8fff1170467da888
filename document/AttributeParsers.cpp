#include "document/AttributeParsers.h"

#include "runtime/StringList.h"

namespace qxsvg {

namespace {

bool FindInNamespace(const IXMLNode& Node, StringView Name, StringView Prefix, StringView& Value) {
  return Node.FindAttributeNS(Name, Node.FindNamespaceURI(Prefix), Value);
}

// What Parse makes of the attribute, or Default without it.
template <class Result, class Parser>
Result FromAttribute(const IXMLNode& Node, StringView Name, Result Default, Parser Parse) {
  StringView Value;
  return Node.FindAttribute(Name, Value) ? Parse(Value) : Default;
}

}  // namespace

String ParseAttrString(const IXMLNode& Node, StringView Name) {
  StringView Value;
  return Node.FindAttribute(Name, Value) ? String(Value) : String();
}

String ParseAttrString(const IXMLNode& Node, StringView Name, StringView Prefix,
                       StringView Default) {
  StringView Value;
  return String(FindInNamespace(Node, Name, Prefix, Value) ? Value : Default);
}

String ParseString(const IXMLNode& Node, StringView ChildName, StringView Default) {
  const IXMLNode* Child = Node.FindChild(ChildName);
  return Child ? Child->Text() : String(Default);
}

void ParseRequiredStringList(const IXMLNode& Node, StringView Name, TStrings& List,
                             StringView Delimiters) {
  StringView Value;
  if (Node.FindAttribute(Name, Value))
    ParseRequiredStringList(List, Value, Delimiters);
  else
    List.Clear();
}

std::vector<float> ParseNumbers(const IXMLNode& Node, StringView Name,
                                std::span<const float> Defaults) {
  return FromAttribute(Node, Name, std::vector<float>(),
                       [&](StringView Text) { return ParseNumbers(Text, Defaults); });
}

TQXPoints ParsePoints(const IXMLNode& Node, StringView Name) {
  return FromAttribute(Node, Name, TQXPoints(), [](StringView Text) { return ParsePoints(Text); });
}

String ParseURI(const IXMLNode& Node, StringView Name, StringView Default, StringView Prefix) {
  StringView Value;
  const bool IsThere =
      Prefix.empty() ? Node.FindAttribute(Name, Value) : FindInNamespace(Node, Name, Prefix, Value);
  return IsThere ? String(ParseURI(Value)) : String(Default);
}

float ParseLength(const IXMLNode& Node, StringView Name, float Default, TSVGUnit& Unit,
                  const TSVGUnitFactors& Factors) {
  return FromAttribute(Node, Name, Default,
                       [&](StringView Text) { return ParseLength(Text, Default, Unit, Factors); });
}

float ParseLength(const IXMLNode& Node, StringView Name, float Default, bool& Inherit,
                  TSVGUnit& Unit, const TSVGUnitFactors& Factors) {
  return FromAttribute(Node, Name, Default, [&](StringView Text) {
    return ParseLength(Text, Default, Inherit, Unit, Factors);
  });
}

TSVGLengths& ParseLengths(const IXMLNode& Node, StringView Name, TSVGLengths& Lengths,
                          const TSVGLengthCreateEvent& Creator, float Minimum, float Maximum) {
  StringView Value;
  if (Node.FindAttribute(Name, Value))
    return ParseLengths(Value, Lengths, Creator, Minimum, Maximum);
  Lengths.Clear();
  return Lengths;
}

float ParsePercent(const IXMLNode& Node, StringView Name, float Default, bool& Inherit,
                   TSVGUnit& Unit, const TSVGUnitFactors& Factors, float Minimum, float Maximum) {
  return FromAttribute(Node, Name, Default, [&](StringView Text) {
    return ParsePercent(Text, Default, Inherit, Unit, Factors, Minimum, Maximum);
  });
}

float ParsePercent(const IXMLNode& Node, StringView Name, float Default, TSVGUnit& Unit,
                   const TSVGUnitFactors& Factors, float Minimum, float Maximum) {
  return FromAttribute(Node, Name, Default, [&](StringView Text) {
    return ParsePercent(Text, Default, Unit, Factors, Minimum, Maximum);
  });
}

TSVGLength& ParsePercent(const IXMLNode& Node, StringView Name, TSVGLength& Length, bool& Inherit,
                         float Minimum, float Maximum) {
  StringView Value;
  return Node.FindAttribute(Name, Value) ? ParsePercent(Value, Length, Inherit, Minimum, Maximum)
                                         : Length;
}

TSVGLength& ParsePercent(const IXMLNode& Node, StringView Name, TSVGLength& Length, float Minimum,
                         float Maximum) {
  StringView Value;
  return Node.FindAttribute(Name, Value) ? ParsePercent(Value, Length, Minimum, Maximum) : Length;
}

}  // namespace qxsvg
