// The rule by which the text of a style property says that the parent's value stands.
#pragma once

#include "runtime/String.h"

namespace qxsvg {

// Text is trimmed already. The mark becomes true for exactly "inherit", stays as it was for an
// empty text, and becomes false for any other. Gives whether Text holds a value of its own; where
// it does not, a parser's default stands.
inline bool TakesValue(StringView Text, bool& Inherit) {
  Inherit = Text == u"inherit" || (Inherit && Text.empty());
  return !Text.empty() && !Inherit;
}

}  // namespace qxsvg
