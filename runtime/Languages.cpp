#include "runtime/Languages.h"

#include <algorithm>
#include <cstdlib>

namespace qxsvg {

namespace {

// The tag of a locale name such as "pt_BR.UTF-8@latin"; empty for the locales without a language.
String TagOf(StringView Locale) {
  Locale = Locale.substr(0, Locale.find_first_of(u".@"));
  if (Locale == u"C" || Locale == u"POSIX") return {};
  String Tag(Locale);
  std::replace(Tag.begin(), Tag.end(), u'_', u'-');
  const auto IsTagChar = [](char16_t C) {
    const char16_t L = AsciiLower(C);
    return (L >= u'a' && L <= u'z') || (L >= u'0' && L <= u'9') || L == u'-';
  };
  return std::all_of(Tag.begin(), Tag.end(), IsTagChar) ? Tag : String();
}

std::string_view Variable(const char* Name) {
  const char* Value = std::getenv(Name);
  return Value ? Value : std::string_view();
}

}  // namespace

std::vector<String> PreferredUILanguages(std::string_view Language, std::string_view All,
                                         std::string_view Messages, std::string_view Lang) {
  std::vector<String> Tags;
  const auto Add = [&Tags](StringView Locale) {
    String Tag = TagOf(Locale);
    if (!Tag.empty() && std::find(Tags.begin(), Tags.end(), Tag) == Tags.end())
      Tags.push_back(std::move(Tag));
  };
  const String List = FromUtf8(Language);
  const String Locale = TagOf(FromUtf8(!All.empty() ? All : !Messages.empty() ? Messages : Lang));
  // The list counts only for those who chose a language at all.
  if (!Locale.empty())
    for (const StringView Item : SplitString(List, u":")) Add(Item);
  Add(Locale);
  if (Tags.empty()) Tags.emplace_back(u"en-US");
  return Tags;
}

std::vector<String> PreferredUILanguages() {
  return PreferredUILanguages(Variable("LANGUAGE"), Variable("LC_ALL"), Variable("LC_MESSAGES"),
                              Variable("LANG"));
}

}  // namespace qxsvg
