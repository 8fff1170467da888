#include "graphics/surface/DataURI.h"

#include "foundation/ParseURI.h"
#include "graphics/surface/ImageCodecs.h"
#include "runtime/Base64.h"
#include "runtime/Services.h"

namespace qxsvg {

namespace {

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
  TDataURI Parts;
  if (!ParseDataURI(Text, Parts) || !Parts.IsImage()) return;
  // Line breaks are passed over by the decoder.
  const TBytes Bytes = Parts.Data.find(u'%') == StringView::npos
                           ? Base64Decode(Parts.Data)
                           : Base64Decode(Unescape(Parts.Data));
  Services().Images.Get()->Decode(Bytes, *Bitmap, Parts.ImageType());
}

}  // namespace qxsvg
