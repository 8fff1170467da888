// What each format gives to the table of codecs. All may run on several threads at once.
//
// A decoder is handed bytes that begin like its format, and an empty bitmap. It takes the declared
// size to PrepareBitmap before any memory for pixels, and leaves what follows a failure
// transparent; EInvalidGraphicOperation where nothing could be decoded.
#pragma once

#include "graphics/surface/Bitmap.h"
#include "runtime/Streams.h"

namespace qxsvg::images {

void DecodePng(TBytesView Bytes, TQXGPBitmap& Bitmap);
void DecodeJpeg(TBytesView Bytes, TQXGPBitmap& Bitmap);
void DecodeWebP(TBytesView Bytes, TQXGPBitmap& Bitmap);
void DecodeGif(TBytesView Bytes, TQXGPBitmap& Bitmap);

// Quality from 0 to 100, or -1. Pixels are not empty.
void EncodePng(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target);
void EncodeJpeg(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target);
void EncodeWebP(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target);

// Makes Bitmap transparent and of that size; EInvalidGraphicOperation for no size or one over the
// limits.
void PrepareBitmap(std::uint64_t Width, std::uint64_t Height, TQXGPBitmap& Bitmap);

// Turns Count pixels that are bytes of red, green, blue and alpha in memory into pixels of a
// bitmap, in their place.
void PremultiplyRow(std::uint32_t* Row, std::size_t Count);

[[noreturn]] void RaiseUnreadable(StringView Format);
[[noreturn]] void RaiseUnwritable(StringView Format);

}  // namespace qxsvg::images
