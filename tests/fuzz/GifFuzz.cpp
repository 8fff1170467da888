// GIF decoding.
#include "ImageFuzz.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const TBytesView Bytes(Data, Size);
  fuzz::CheckDecoder(&images::DecodeGif, Bytes,
                     fuzz::NumberAt(Bytes, 6, 2, false) * fuzz::NumberAt(Bytes, 8, 2, false));
  return 0;
}
