// Compressed documents (.svgz).
#pragma once

#include <string>
#include <string_view>

namespace qxsvg {

bool IsGzip(std::string_view Bytes);

// All members of a gzip file, one behind the other. Raises EXMLError for damaged data and
// ESVGException over Limits::DecompressedBytes.
std::string Decompress(std::string_view Bytes);

}  // namespace qxsvg
