// The tokens that a selector of a style sheet is cut into.
#pragma once

#include <vector>

#include "foundation/WordTable.h"

namespace qxsvg {

enum class TSVGSelectorTokenType : std::uint8_t {
  sttNone,
  // A bare word: an element name, or the name or value of an attribute in brackets.
  sttString,
  // An attribute test; the value is the attribute's name.
  sttHasAttribute,
  // Tests of an attribute's value: it begins with, ends with, contains or equals the token's.
  sttPrefixMatch,
  sttSuffixMatch,
  sttSubstringMatch,
  sttExactMatch,
  // Begins with the value.
  sttDashMatch,
  // Equals the value.
  sttContainsWord,
  sttIDHashChar,
  sttUniversalChar,
  // A pseudo-class.
  sttColonChar,
  sttClassChar,
  // Combinators.
  sttHasDescendant,
  sttHasChild,
  sttHasFollower,
  // The language argument of a pseudo-class.
  sttLanguage,
};
inline constexpr auto SVGSelectorTokenTypes = WordTable<TSVGSelectorTokenType::sttLanguage>(
    u"", u"", u"[", u"^=", u"$=", u"*=", u"=", u"|=", u"~=", u"#", u"*", u":", u".", u" ", u">",
    u"+", u"lang");

struct TSVGSelectorToken {
  TSVGSelectorTokenType Type = TSVGSelectorTokenType::sttNone;
  String Value;
  friend bool operator==(const TSVGSelectorToken&, const TSVGSelectorToken&) = default;
};
using TSVGSelectorTokens = std::vector<TSVGSelectorToken>;

}  // namespace qxsvg
