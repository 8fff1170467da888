// What the targets of the image decoders share.
#pragma once

#include "FuzzInput.h"
#include "adapters/images/Formats.h"
#include "runtime/Exceptions.h"

namespace qxsvg::fuzz {

// Decodes, and looks at every pixel: they are premultiplied. Area is that of the declared size;
// large pictures only cost time here and are passed over.
inline void CheckDecoder(void (*Decode)(TBytesView, TQXGPBitmap&), TBytesView Bytes,
                         std::uint64_t Area) {
  constexpr std::uint64_t LargestArea = 1 << 20;
  if (Area > LargestArea) return;
  TQXGPBitmap Bitmap;
  try {
    Decode(Bytes, Bitmap);
  } catch (const EInvalidGraphicOperation&) {
    return;
  }
  Check(Bitmap.GetWidth() > 0 && Bitmap.GetHeight() > 0, "a decoded picture has a size");
  const TQXConstPixels Pixels = Bitmap.GetPixels();
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y)
    for (std::int32_t X = 0; X < Pixels.Width; ++X) {
      const std::uint32_t Pixel = Pixels.Row(Y)[X], Alpha = Pixel >> 24;
      for (const int Shift : {0, 8, 16})
        Check((Pixel >> Shift & 255) <= Alpha, "pixels are premultiplied");
    }
}

// A number of Count bytes in the input, 0 where the input is shorter.
inline std::uint64_t NumberAt(TBytesView Bytes, std::size_t At, std::size_t Count, bool BigEndian) {
  std::uint64_t Result = 0;
  if (At + Count > Bytes.size()) return 0;
  for (std::size_t I = 0; I < Count; ++I)
    Result = Result << 8 | Bytes[At + (BigEndian ? I : Count - 1 - I)];
  return Result;
}

}  // namespace qxsvg::fuzz
