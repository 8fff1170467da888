// XML text from nodes, and the rules of its indentation.
#pragma once

#include "document/XML.h"

namespace qxsvg {

// The declaration (with Encoding in it unless that is empty), the root and a line end. Root may be
// null, which gives the declaration alone.
//
// Indent puts each element, comment and processing instruction on a line of its own, two blanks
// deeper than its parent, and drops blank text in between. Everything inside an element stays as it
// is where blanks may count: next to text, CDATA or entities, within the text elements of SVG
// (`text`, `tspan`, `tref`, `textPath`), and under xml:space="preserve".
//
// Entity references are written as what they expand to: no document type declaration is written
// that could declare them. A namespace declaration that repeats what holds already is left out.
String WriteXMLDocument(const IXMLNode* Root, bool Indent, StringView Encoding);

// One node as it was read. The declarations of the prefixes that it uses and does not declare are
// added to it.
String WriteXMLNode(const IXMLNode& Node);

}  // namespace qxsvg
