// A document that is read from a text when it is made.
#pragma once

#include "document/Document.h"

namespace qxsvg::test {

struct TLoaded : TSVGDocument {
  explicit TLoaded(std::string_view Text) { LoadFromText(Text); }
};

}  // namespace qxsvg::test
