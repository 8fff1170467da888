// What has to be bounded before libxml2 sees it.
#pragma once

#include <string_view>

namespace qxsvg {

// libxml2 compares each attribute of an element with all others, and each word of an enumeration in
// the document type declaration with all others, before any of its hooks is called. Raises
// ESVGException for markup that would make that take long. Bytes are in an encoding that holds
// ASCII as it is.
void CheckMarkup(std::string_view Bytes);

}  // namespace qxsvg
