// Splits the text of number lists into tokens, in place.
#pragma once

#include <cstdint>
#include <vector>

#include "runtime/String.h"

namespace qxsvg {

// What separates the numbers of every list.
inline constexpr StringView SVGNumberSeparators = u", \n\r";

// Cuts a number list into its tokens without taking memory. A token ends at a delimiter; at a sign
// that is neither its first character nor stands behind an E; and at a second period: "1-2.5.5" has
// the tokens "1", "-2.5" and ".5", while "1e-2" and "10px" are one each. A last token of one
// character counts only when it is a digit.
class QXSVG_API TNumberTokens {
 public:
  // The token views point into Text, which must outlive them.
  explicit TNumberTokens(StringView Text, StringView Delimiters = SVGNumberSeparators);

  // False when there are no more tokens; Token is then as it was.
  bool Next(StringView& Token);
  // The same, passing over tokens of nothing but characters of U+0020 and below, and without these
  // at a token's ends.
  bool NextClean(StringView& Token);
  // The same, reading the token as a number on the way: IsNumber says whether it is one, and Value
  // is of no meaning otherwise. The fastest way through a number list.
  bool NextNumber(StringView& Token, float& Value, bool& IsNumber);

 private:
  bool IsDelimiter(char16_t C) const;
  void SkipDelimiters();

  const char16_t* FNext;
  const char16_t* FLast;
  // The delimiters below U+0040, a bit each; all of them where there are others.
  std::uint64_t FDelimiterBits = 0;
  StringView FOtherDelimiters;
};

// All tokens of Text as views into it.
QXSVG_API std::vector<StringView> SplitNumbers(StringView Text, StringView Delimiters);

// Trims every text and drops the empty ones; the others keep their order.
QXSVG_API void CleanArray(std::vector<StringView>& Texts);

// Splits at every character of Delimiters, trims the parts and drops the empty ones.
QXSVG_API std::vector<StringView> SplitClean(StringView Text, StringView Delimiters);

}  // namespace qxsvg
