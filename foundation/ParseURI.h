// References and data URIs.
#pragma once

#include "runtime/String.h"

namespace qxsvg {

// The fragment of "#name", "url(#name)" or "uri(#name)"; any other text comes back whole, trimmed.
// "#abc" and "#abcdef" are colours and no fragments. Quotes within the brackets are not known. The
// result is a view into Text.
QXSVG_API StringView ParseURI(StringView Text);
// The same, but empty for what is no fragment.
QXSVG_API StringView ParseLocalURI(StringView Text);

// With a default where the text holds no value (see TakesValue) or the value comes out empty. The
// result is a view into Text or into Default.
QXSVG_API StringView ParseURI(StringView Text, StringView Default, bool& Inherit);
QXSVG_API StringView ParseLocalURI(StringView Text, StringView Default, bool& Inherit);

// The parts of a "data:" URI; views into its text.
struct TDataURI {
  StringView MediaType = u"text/plain";
  bool IsBase64 = false;
  // What stands behind the first comma, as written.
  StringView Data;

  // Whether Data is a picture in base64, which is what can be loaded.
  bool IsImage() const;
  // What stands behind "image/", such as "png"; empty for another type.
  StringView ImageType() const;
};
// False, with Parts as they were, where Text does not begin with "data:" in any case.
QXSVG_API bool ParseDataURI(StringView Text, TDataURI& Parts);

}  // namespace qxsvg
