// Pictures compared pixel by pixel, with each other and with those under tests/goldens.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "graphics/surface/Bitmap.h"

namespace qxsvg::test {

// How two pictures differ. The largest difference is that of one channel, of 255.
struct TPictureDifference {
  std::int64_t PixelCount = 0;
  std::int32_t Largest = 0;
  std::int32_t FirstX = -1, FirstY = -1;
  bool SameSize = true;

  bool IsNone() const { return SameSize && PixelCount == 0; }
  std::string Text() const;
};

// Counts the pixels of which a channel differs by more than Tolerance.
TPictureDifference Compare(const TQXGPImage& A, const TQXGPImage& B, std::int32_t Tolerance = 0);

// Fails the running test unless the picture equals tests/goldens/NAME.png. A failing test leaves
// NAME.actual.png, NAME.expected.png and NAME.difference.png in the folder "goldens" of the test
// output. With QXSVG_UPDATE_GOLDENS set in the environment the golden is written instead, where it
// differs. Skips the test in a build without image codecs.
void ExpectGolden(const TQXGPImage& Actual, std::string_view Name, std::int32_t Tolerance = 0);

// Fails the running test unless the two pictures are equal, and leaves them and their difference as
// above.
void ExpectSamePicture(const TQXGPImage& Actual, const TQXGPImage& Expected, std::string_view Name,
                       std::int32_t Tolerance = 0);

}  // namespace qxsvg::test
