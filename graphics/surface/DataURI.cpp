#include "graphics/surface/DataURI.h"

#include "graphics/surface/ImageCodecs.h"
#include "runtime/Base64.h"
#include "runtime/Services.h"

namespace qxsvg {

namespace {

constexpr StringView DataPrefix = u"data:";
constexpr StringView ImagePrefix = u"image/";

int HexDigit(char16_t C) {
  const char16_t L = AsciiLower(C);
  if (L >= u'0' && L <= u'9') return L - u'0';
  return L >= u'a' && L <= u'f' ? L - u'a' + 10 : -1;
}

// Escapes stand for characters in any URI; line breaks within base64 are often written that way.
String Unescape(StringView Text) {
  String Result;
  Result.reserve(Text.size());
  for (std::size_t I = 0; I < Text.size(); ++I) {
    const bool IsEscape = Text[I] == u'%' && I + 2 < Text.size() && HexDigit(Text[I + 1]) >= 0 &&
                          HexDigit(Text[I + 2]) >= 0;
    if (IsEscape) {
      Result.push_back(static_cast<char16_t>(HexDigit(Text[I + 1]) * 16 + HexDigit(Text[I + 2])));
      I += 2;
    } else {
      Result.push_back(Text[I]);
    }
  }
  return Result;
}

}  // namespace

void LoadBitmapFromDataURI(StringView Text, std::unique_ptr<TQXGPBitmap>& Bitmap) {
  if (!Bitmap) Bitmap = std::make_unique<TQXGPBitmap>();
  if (!StartsText(DataPrefix, Text)) return;
  Text.remove_prefix(DataPrefix.size());
  const std::size_t Comma = Text.find(u',');
  if (Comma == StringView::npos) return;
  const StringView Data = Text.substr(Comma + 1);

  StringView MediaType = u"text/plain";
  bool IsBase64 = false;
  const std::vector<StringView> Items = SplitString(Text.substr(0, Comma), u";");
  if (Items[0].find(u'/') != StringView::npos) MediaType = Items[0];
  for (const StringView Item : Items) IsBase64 |= SameText(Item, u"base64");
  if (!IsBase64 || !StartsText(ImagePrefix, MediaType)) return;

  // Line breaks are passed over by the decoder.
  const TBytes Bytes =
      Data.find(u'%') == StringView::npos ? Base64Decode(Data) : Base64Decode(Unescape(Data));
  Services().Images.Get()->Decode(Bytes, *Bitmap, MediaType.substr(ImagePrefix.size()));
}

}  // namespace qxsvg
