// Cuts selectors of style sheets into tokens.
#pragma once

#include "foundation/SelectorTokens.h"
#include "runtime/String.h"

namespace qxsvg {

// A word behind another one is a descendant of it; a combinator's token holds the word that
// follows. Words lose one quote at each end. What stands in round brackets is the argument of a
// pseudo-class. A bracket that is not closed is read to the end of the text. Raises ESVGException
// for an attribute test with an operator that is none.
QXSVG_API TSVGSelectorTokens TokenizeSelector(StringView Selector);

}  // namespace qxsvg
