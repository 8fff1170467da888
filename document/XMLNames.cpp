#include "document/XMLNames.h"

#include <algorithm>

namespace qxsvg {

namespace {

constexpr bool IsSurrogate(char16_t C) {
  return C >= 0xD800 && C <= 0xDFFF;
}

// Above ASCII nearly everything may stand in a name; the few exceptions in XML 1.0 chapter 2.3 that
// matter are punctuation and the multiplication and division signs. Surrogate pairs stand for
// letters of the further planes.
constexpr bool IsNameStart(char16_t C) {
  if (C < 0x80) return (C >= u'A' && C <= u'Z') || (C >= u'a' && C <= u'z') || C == u'_';
  return C >= 0xC0 && C != 0xD7 && C != 0xF7 && !(C >= 0x2000 && C <= 0x206F) &&
         !(C >= 0x2190 && C <= 0x2BFF) && C != 0x3000 && C < 0xFFFE;
}

constexpr bool IsNamePart(char16_t C) {
  return IsNameStart(C) || (C >= u'0' && C <= u'9') || C == u'-' || C == u'.' || C == 0xB7;
}

bool IsPlainName(StringView Name) {
  return !Name.empty() && IsNameStart(Name.front()) && std::ranges::all_of(Name, IsNamePart);
}

}  // namespace

bool IsXMLName(const TXMLName& Name) {
  return IsPlainName(Name.LocalName) && (Name.Prefix.empty() || IsPlainName(Name.Prefix));
}

String XMLCharacters(StringView Text) {
  String Result;
  Result.reserve(Text.size());
  for (std::size_t I = 0; I < Text.size(); ++I) {
    const char16_t C = Text[I];
    if (IsSurrogate(C)) {
      if (C < 0xDC00 && I + 1 < Text.size() && (Text[I + 1] & 0xFC00) == 0xDC00)
        Result.append(Text.substr(I++, 2));
    } else if ((C >= 0x20 || IsXMLBlank(C)) && C < 0xFFFE) {
      Result.push_back(C);
    }
  }
  return Result;
}

}  // namespace qxsvg
