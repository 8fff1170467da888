// The quick way from text to tree for plain documents, which nearly all drawings are.
#pragma once

#include <memory>
#include <string_view>

#include "document/XMLTree.h"

namespace qxsvg {

// Reads a well-formed document in UTF-8, without byte order mark, that makes do with elements,
// attributes, texts, comments, CDATA and references to characters; names are ASCII and a document
// type has no declarations of its own. Gives null for everything else: malformed text, a document
// over a limit, and whatever needs a whole XML processor. A processor then has to judge; where this
// reader gives a tree, it is the one that the processor would give.
QXSVG_API std::unique_ptr<TXMLDocument> ReadPlainXML(std::string_view Utf8);

}  // namespace qxsvg
