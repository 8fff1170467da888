// The picture formats over libpng, libjpeg-turbo, libwebp and giflib; PNG is written by ourselves
// over libdeflate.
#pragma once

#include "graphics/surface/ImageCodecs.h"

namespace qxsvg {

class TImageCodecs : public IImageCodecs {
 public:
  ~TImageCodecs() override;
  std::span<const TImageCodec> Codecs() const override;
  void Decode(TBytesView Bytes, TQXGPBitmap& Bitmap, StringView Extension) const override;
  void Encode(TQXConstPixels Pixels, StringView Codec, std::int32_t Quality,
              TStream& Target) const override;
};

}  // namespace qxsvg
