// XML that is kept as text, on its way back into a document.
#pragma once

#include "runtime/String.h"

namespace qxsvg {

class IXMLNode;

// Puts the root element of Text in the place of Node. A root node keeps its place and gets the copy
// as a child. An empty Text leaves Node as it is. Raises EXMLError where Text is no XML.
void PutKeptXML(IXMLNode& Node, StringView Text);

}  // namespace qxsvg
