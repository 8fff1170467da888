// The contract with the libraries that read and write pictures.
#pragma once

#include <span>

#include "graphics/surface/Bitmap.h"
#include "runtime/Streams.h"

namespace qxsvg {

// One picture format.
struct TImageCodec {
  StringView Name;                         // "png"
  StringView MediaType;                    // "image/png"
  std::span<const StringView> Extensions;  // without period, in small letters, the usual one first
  bool CanDecode = false, CanEncode = false;
};

// Installed as Services().Images. May be called from any thread, also at the same time.
class QXSVG_API IImageCodecs {
 public:
  virtual ~IImageCodecs();

  // The formats, in an order that does not change; what is returned lives as long as the codecs.
  virtual std::span<const TImageCodec> Codecs() const = 0;

  // Makes Bitmap the picture that Bytes hold, in its own size. The content tells the format;
  // Extension (without period, may be empty) decides only where the content does not. A picture
  // that breaks off or goes wrong after its beginning gives what was decoded, the rest
  // transparent. EInvalidGraphicOperation, with Bitmap empty, for a format that is not known, a
  // picture without a beginning, and one whose declared size is over Limits::BitmapSide,
  // BitmapPixels or ImageBytes; the size is looked at before memory is taken for it.
  virtual void Decode(TBytesView Bytes, TQXGPBitmap& Bitmap, StringView Extension = {}) const = 0;

  // Writes the picture with the codec of that name. Quality goes from 0 (smallest or fastest) to
  // 100; -1 is the codec's own choice. EInvalidGraphicOperation for a codec that cannot write and
  // for a picture that is empty or too large for the format.
  virtual void Encode(TQXConstPixels Pixels, StringView Codec, std::int32_t Quality,
                      TStream& Target) const = 0;

  // The codec of that name, file extension (with or without period) or media type, without regard
  // to case; null without one.
  const TImageCodec* Find(StringView NameOrExtensionOrMediaType) const;
};

// Decodes a picture out of a stream, from its position to its end, through the service. Extension
// as above. Also raises EStreamError for more than Limits::ImageFileBytes bytes.
QXSVG_API void LoadBitmapFromStream(TStream& Stream, TQXGPBitmap& Bitmap,
                                    StringView Extension = {});

// Decodes the picture file that a document names, opened through Services().Files. False, with
// Bitmap as it was, where there is no such file.
QXSVG_API bool LoadBitmapFromFile(StringView Name, TQXGPBitmap& Bitmap);

}  // namespace qxsvg
