// JPEG decoding.
#include <algorithm>

#include "ImageFuzz.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const TBytesView Bytes(Data, Size);
  // The frame's size stands behind its marker, wherever that is.
  std::uint64_t Area = 0;
  for (std::size_t I = 0; I + 1 < Size; ++I)
    if (Data[I] == 0xFF && Data[I + 1] >= 0xC0 && Data[I + 1] <= 0xCF)
      Area = std::max(
          Area, fuzz::NumberAt(Bytes, I + 5, 2, true) * fuzz::NumberAt(Bytes, I + 7, 2, true));
  fuzz::CheckDecoder(&images::DecodeJpeg, Bytes, Area);
  return 0;
}
