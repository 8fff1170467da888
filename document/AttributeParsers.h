// The attributes and child nodes of an XML node as values. Each form takes the text of the
// attribute to the parser of that text; without the attribute it gives the default back and touches
// nothing.
#pragma once

#include <span>
#include <vector>

#include "document/XML.h"
#include "foundation/Parsers.h"

namespace qxsvg {

class TStrings;

// The text of an attribute by its name as written, prefix included, or the empty text.
QXSVG_API String ParseAttrString(const IXMLNode& Node, StringView Name);
// The attribute in the namespace that Prefix stands for at this node (an empty prefix: in none).
QXSVG_API String ParseAttrString(const IXMLNode& Node, StringView Name, StringView Prefix,
                                 StringView Default);
// The text of the first child node of that name.
QXSVG_API String ParseString(const IXMLNode& Node, StringView ChildName, StringView Default);

// The parts of an attribute replace what List holds. An attribute that is there and empty leaves
// one empty item, which no conditional test passes; an absent one leaves the list empty.
QXSVG_API void ParseRequiredStringList(const IXMLNode& Node, StringView Name, TStrings& List,
                                       StringView Delimiters);

QXSVG_API std::vector<float> ParseNumbers(const IXMLNode& Node, StringView Name,
                                          std::span<const float> Defaults);
QXSVG_API TQXPoints ParsePoints(const IXMLNode& Node, StringView Name);
// The target of an IRI in the namespace that Prefix stands for at this node.
QXSVG_API String ParseURI(const IXMLNode& Node, StringView Name, StringView Default,
                          StringView Prefix);

QXSVG_API float ParseLength(const IXMLNode& Node, StringView Name, float Default, TSVGUnit& Unit,
                            const TSVGUnitFactors& Factors);
QXSVG_API float ParseLength(const IXMLNode& Node, StringView Name, float Default, bool& Inherit,
                            TSVGUnit& Unit, const TSVGUnitFactors& Factors);
// Without the attribute the list becomes empty.
QXSVG_API TSVGLengths& ParseLengths(const IXMLNode& Node, StringView Name, TSVGLengths& Lengths,
                                    const TSVGLengthCreateEvent& Creator, float Minimum,
                                    float Maximum);

// Minimum and Maximum are what 0% and 100% stand for.
QXSVG_API float ParsePercent(const IXMLNode& Node, StringView Name, float Default, bool& Inherit,
                             TSVGUnit& Unit, const TSVGUnitFactors& Factors, float Minimum,
                             float Maximum);
QXSVG_API float ParsePercent(const IXMLNode& Node, StringView Name, float Default, TSVGUnit& Unit,
                             const TSVGUnitFactors& Factors, float Minimum, float Maximum);
QXSVG_API TSVGLength& ParsePercent(const IXMLNode& Node, StringView Name, TSVGLength& Length,
                                   bool& Inherit, float Minimum, float Maximum);
QXSVG_API TSVGLength& ParsePercent(const IXMLNode& Node, StringView Name, TSVGLength& Length,
                                   float Minimum, float Maximum);

}  // namespace qxsvg
