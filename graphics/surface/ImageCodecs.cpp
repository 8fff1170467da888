#include "graphics/surface/ImageCodecs.h"

#include <algorithm>

#include "foundation/Limits.h"
#include "runtime/FileResolver.h"
#include "runtime/Services.h"

namespace qxsvg {

IImageCodecs::~IImageCodecs() = default;

const TImageCodec* IImageCodecs::Find(StringView Key) const {
  const StringView Extension = !Key.empty() && Key[0] == u'.' ? Key.substr(1) : Key;
  for (const TImageCodec& Codec : Codecs()) {
    const bool HasExtension =
        std::any_of(Codec.Extensions.begin(), Codec.Extensions.end(),
                    [Extension](StringView Own) { return SameText(Own, Extension); });
    if (HasExtension || SameText(Codec.Name, Key) || SameText(Codec.MediaType, Key)) return &Codec;
  }
  return nullptr;
}

void LoadBitmapFromStream(TStream& Stream, TQXGPBitmap& Bitmap, StringView Extension) {
  const auto Codecs = Services().Images.Get();
  if (const TBytesView Bytes = Stream.Rest(); !Bytes.empty())
    Codecs->Decode(Bytes, Bitmap, Extension);
  else
    Codecs->Decode(ReadAll(Stream, Limits::ImageFileBytes), Bitmap, Extension);
}

bool LoadBitmapFromFile(StringView Name, TQXGPBitmap& Bitmap) {
  const std::unique_ptr<TStream> File = Services().Files.Get()->Open(Name);
  if (!File) return false;
  const std::size_t Period = Name.find_last_of(u"./\\");
  const bool HasExtension = Period != StringView::npos && Name[Period] == u'.';
  LoadBitmapFromStream(*File, Bitmap, HasExtension ? Name.substr(Period + 1) : StringView());
  return true;
}

}  // namespace qxsvg
