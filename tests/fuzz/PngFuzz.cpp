// PNG decoding.
#include "ImageFuzz.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const TBytesView Bytes(Data, Size);
  fuzz::CheckDecoder(&images::DecodePng, Bytes,
                     fuzz::NumberAt(Bytes, 16, 4, true) * fuzz::NumberAt(Bytes, 20, 4, true));
  return 0;
}
