// Bytes as base64 text.
#pragma once

#include "runtime/Streams.h"

namespace qxsvg {

// Characters outside the alphabet are passed over, as MIME asks (RFC 2045), and the first "="
// ends the data; what is left over from less than two characters is dropped. Never raises for bad
// text.
QXSVG_API TBytes Base64Decode(StringView Text);
QXSVG_API TBytes Base64Decode(std::string_view Text);

// With padding. A line break (CR LF) follows each LineLength characters; 0 gives one line.
QXSVG_API String Base64Encode(TBytesView Bytes, std::size_t LineLength = 0);

}  // namespace qxsvg
