// From the bytes of a file to UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace qxsvg {

// The document in UTF-8: the byte order mark, the shape of the first characters or the declaration
// tell what it is in. Bytes that are UTF-8 already are given back as they are; others are converted
// into Buffer. Raises EXMLError for an encoding that nobody knows and for bytes that are none of
// it.
std::string_view DecodeDocument(std::string_view Bytes, std::string& Buffer);

}  // namespace qxsvg
