// XML that is kept as text, on its way back into a document.
#pragma once

#include "runtime/String.h"

namespace qxsvg {

class IXMLNode;

// Adds the root element of Text as the last child of Node's parent and takes Node out of there, so
// that what was read stands in the place of Node. A root node keeps its place and gets the copy as
// a child. Raises EXMLError where Text is no XML.
void PutKeptXML(IXMLNode& Node, StringView Text);

}  // namespace qxsvg
