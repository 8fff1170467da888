// Breaks the long lines that the paths of a document make.
#pragma once

#include "runtime/StringList.h"

namespace qxsvg {

// Breaks `path` lines of more than MaxLength characters inside the value of "d", at blanks and
// commas, so that the pieces put together are the line again. A line whose "d" ends before that
// length is reached stands twice afterwards. Raises EAssertionFailed where pieces and line differ.
QXSVG_API void SVGSplitLines(TStrings& Lines, int MaxLength);

// The index of the first Part at or behind Start that is outside double quotes; npos where there is
// none, where Part is empty, and where Start is at the last character or behind it.
QXSVG_API std::size_t PosOutsideQuotes(StringView Part, StringView Text, std::size_t Start);

}  // namespace qxsvg
