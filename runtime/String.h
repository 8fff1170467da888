// UTF-16 text, which is what the whole system holds, and its conversions at the edges.
//
// Comparisons "without regard to case" fold the 26 ASCII letters only: every word that the format
// compares that way is ASCII, and the answer must not depend on a locale.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runtime/Export.h"

namespace qxsvg {

using String = std::u16string;
using StringView = std::u16string_view;

// Unpaired surrogates become U+FFFD in UTF-8; bytes that are no UTF-8 become U+FFFD in UTF-16.
QXSVG_API std::string ToUtf8(StringView Text);
QXSVG_API String FromUtf8(std::string_view Bytes);
// Appends to Target, which keeps its capacity: for callers that convert many texts in a row.
QXSVG_API void AppendUtf8(String& Target, std::string_view Bytes);

// The text without the characters of U+0020 and below at both ends; a view into Text.
QXSVG_API StringView Trim(StringView Text);

constexpr char16_t AsciiLower(char16_t C) {
  return C >= u'A' && C <= u'Z' ? static_cast<char16_t>(C + 32) : C;
}
QXSVG_API String LowerCase(StringView Text);

QXSVG_API bool SameText(StringView A, StringView B);
// True when Text begins (ends) with Part, ASCII letters folded.
QXSVG_API bool StartsText(StringView Part, StringView Text);
QXSVG_API bool EndsText(StringView Part, StringView Text);

// Splits at every single character of Delimiters; adjacent delimiters give empty items, an empty
// text gives one empty item. The items are views into Text.
QXSVG_API std::vector<StringView> SplitString(StringView Text, StringView Delimiters);

QXSVG_API String Join(const std::vector<String>& Items, StringView Delimiter);

// The message with each "%s" replaced by the next argument, as far as there are arguments.
QXSVG_API String Format(StringView Message, std::initializer_list<StringView> Arguments);

}  // namespace qxsvg
