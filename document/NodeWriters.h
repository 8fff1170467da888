// Values onto an XML node: attributes, child nodes and entries of its style attribute.
#pragma once

#include "document/XML.h"
#include "foundation/StyleProperties.h"

namespace qxsvg {

class TStrings;

inline constexpr StringView SVGNamespace = u"http://www.w3.org/2000/svg";
inline constexpr StringView XLinkNamespace = u"http://www.w3.org/1999/xlink";

// Sets the attribute and gives true; with Omit it gives false instead and, with Remove, takes an
// attribute of that name off the node.
QXSVG_API bool SaveAttrString(IXMLNode& Node, StringView Name, StringView Value, bool Omit,
                              bool Remove);
// The same with the texts of a list, joined with Delimiter.
QXSVG_API bool SaveAttrString(IXMLNode& Node, StringView Name, const TStrings& List, bool Omit,
                              bool Remove, char16_t Delimiter);
// The same for a child node of that name, made in the SVG namespace when missing.
QXSVG_API bool SaveNodeString(IXMLNode& Node, StringView Name, StringView Value, bool Omit,
                              bool Remove);
// Writes a presentation property as an attribute, or as an entry of the style attribute, unless the
// tree says the same without it: an inherited value of a property that inherits by itself, or with
// Compact a value that is the default of one that does not.
QXSVG_API bool SaveStyleProperty(IXMLNode& Node, TSVGStyleProperty Property, StringView Value,
                                 StringView Default, bool AsStyle, bool Inherited, bool Compact);

// Entries of a node's style attribute, behind those that it has. They are gathered and written at
// once, as a node keeps every text that an attribute ever had.
class QXSVG_API TStyleEntries {
 public:
  // Node has to outlive the entries.
  explicit TStyleEntries(IXMLNode& Node) : FNode(Node) {}
  void Add(StringView Name, StringView Value);
  // To be called when all are added.
  void Write();

 private:
  IXMLNode& FNode;
  String FText;
  bool FIsBegun = false;
};
// As an entry of the style attribute, which is still to be written.
QXSVG_API bool SaveStyleProperty(TStyleEntries& Entries, TSVGStyleProperty Property,
                                 StringView Value, StringView Default, bool Inherited,
                                 bool Compact);

}  // namespace qxsvg
