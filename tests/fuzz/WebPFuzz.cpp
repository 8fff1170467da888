// WebP decoding, animations included.
#include <webp/decode.h>

#include "ImageFuzz.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  int Width = 0, Height = 0;
  WebPGetInfo(Data, Size, &Width, &Height);
  fuzz::CheckDecoder(&images::DecodeWebP, {Data, Size},
                     static_cast<std::uint64_t>(Width) * static_cast<std::uint64_t>(Height));
  return 0;
}
