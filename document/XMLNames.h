// Names and characters as XML 1.0 has them.
#pragma once

#include "document/XML.h"

namespace qxsvg {

inline constexpr StringView XMLNamespace = u"http://www.w3.org/XML/1998/namespace";
inline constexpr StringView XMLNamespacePrefix = u"xmlns";

// The halves of a name as written, parted at the first colon.
constexpr TXMLName SplitXMLName(StringView Name) {
  const std::size_t Colon = Name.find(u':');
  if (Colon == StringView::npos) return {Name, {}};
  return {Name.substr(Colon + 1), Name.substr(0, Colon)};
}

// Whether the halves are names without colon; the prefix may be missing.
QXSVG_API bool IsXMLName(const TXMLName& Name);

// The name of the attribute that declares a prefix, or the default namespace for none.
constexpr TXMLName NamespaceAttribute(StringView Prefix) {
  return Prefix.empty() ? TXMLName{XMLNamespacePrefix, {}} : TXMLName{Prefix, XMLNamespacePrefix};
}

// The text without what no XML document can hold: control characters, U+FFFE, U+FFFF and surrogates
// without their other half.
QXSVG_API String XMLCharacters(StringView Text);

constexpr bool IsXMLBlank(char16_t C) {
  return C == u' ' || C == u'\t' || C == u'\n' || C == u'\r';
}

}  // namespace qxsvg
