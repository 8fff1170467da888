#include "foundation/ParseURI.h"

#include <optional>

#include "foundation/ParseColor.h"
#include "foundation/ParseInherit.h"

namespace qxsvg {

namespace {

constexpr StringView ImagePrefix = u"image/";

// Text is trimmed already.
std::optional<StringView> FindFragment(StringView Text) {
  if (Text.starts_with(u'#') && !IsHexColor(Text)) return Text.substr(1);
  for (const StringView Opening : {StringView(u"url(#"), StringView(u"uri(#")})
    if (StartsText(Opening, Text) && Text.ends_with(u')'))
      return Text.substr(Opening.size(), Text.size() - Opening.size() - 1);
  return std::nullopt;
}

template <class Parser>
StringView WithDefault(Parser Parse, StringView Text, StringView Default, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return Default;
  const StringView Result = Parse(Text);
  return Result.empty() ? Default : Result;
}

}  // namespace

StringView ParseURI(StringView Text) {
  Text = Trim(Text);
  return FindFragment(Text).value_or(Text);
}

StringView ParseLocalURI(StringView Text) {
  return FindFragment(Trim(Text)).value_or(StringView());
}

StringView ParseURI(StringView Text, StringView Default, bool& Inherit) {
  return WithDefault([](StringView T) { return ParseURI(T); }, Text, Default, Inherit);
}

StringView ParseLocalURI(StringView Text, StringView Default, bool& Inherit) {
  return WithDefault([](StringView T) { return ParseLocalURI(T); }, Text, Default, Inherit);
}

bool TDataURI::IsImage() const {
  return IsBase64 && StartsText(ImagePrefix, MediaType);
}

StringView TDataURI::ImageType() const {
  return StartsText(ImagePrefix, MediaType) ? MediaType.substr(ImagePrefix.size()) : StringView();
}

bool ParseDataURI(StringView Text, TDataURI& Parts) {
  constexpr StringView Prefix = u"data:";
  if (!StartsText(Prefix, Text)) return false;
  Text.remove_prefix(Prefix.size());
  TDataURI Result;
  const std::size_t Comma = Text.find(u',');
  Result.Data = Comma == StringView::npos ? Text : Text.substr(Comma + 1);
  StringView Head = Comma == StringView::npos ? StringView() : Text.substr(0, Comma);
  for (bool IsFirst = true;; IsFirst = false) {
    const std::size_t End = Head.find(u';');
    const StringView Item = Head.substr(0, End);
    if (IsFirst && Item.find(u'/') != StringView::npos) Result.MediaType = Item;
    Result.IsBase64 = Result.IsBase64 || SameText(Item, u"base64");
    if (End == StringView::npos) break;
    Head.remove_prefix(End + 1);
  }
  Parts = Result;
  return true;
}

}  // namespace qxsvg
