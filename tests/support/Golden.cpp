#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "graphics/surface/ImageCodecs.h"
#include "runtime/Services.h"
#include "runtime/Streams.h"

namespace qxsvg::test {

namespace fs = std::filesystem;

namespace {

std::int32_t PixelDifference(std::uint32_t A, std::uint32_t B) {
  std::int32_t Result = 0;
  for (const int Shift : {0, 8, 16, 24})
    Result = std::max(Result, std::abs(static_cast<std::int32_t>(A >> Shift & 255) -
                                       static_cast<std::int32_t>(B >> Shift & 255)));
  return Result;
}

// Differences, made strong enough to be seen, in white on black.
void Draw(const TQXGPImage& A, const TQXGPImage& B, TQXGPBitmap& Target) {
  constexpr std::int32_t Strength = 8;
  Target.SetSize(std::min(A.GetWidth(), B.GetWidth()), std::min(A.GetHeight(), B.GetHeight()));
  const TQXPixels Pixels = Target.Pixels();
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y)
    for (std::int32_t X = 0; X < Pixels.Width; ++X) {
      const std::int32_t D =
          PixelDifference(A.GetPixels().Row(Y)[X], B.GetPixels().Row(Y)[X]) * Strength;
      Pixels.Row(Y)[X] = 0xFF000000u | static_cast<std::uint32_t>(std::min(D, 255)) * 0x10101u;
    }
}

void Save(const TQXGPImage& Image, const fs::path& Path) {
  fs::create_directories(Path.parent_path());
  TAtomicFile File(Path);
  Image.SaveToStream(File, u"png");
  File.Finish();
}

void LeavePictures(const TQXGPImage& Actual, const TQXGPImage& Expected, std::string_view Name,
                   const TPictureDifference& Difference) {
  const fs::path Base = fs::path(QXSVG_TEST_OUTPUT) / "goldens" / Name;
  const auto With = [&Base](const char* Ending) { return fs::path(Base.string() + Ending); };
  if (!Services().Images.IsSupplied()) {
    ADD_FAILURE() << Name << ": " << Difference.Text();
    return;
  }
  if (Actual.GetWidth() > 0) Save(Actual, With(".actual.png"));
  if (Expected.GetWidth() > 0) Save(Expected, With(".expected.png"));
  TQXGPBitmap Picture;
  Draw(Actual, Expected, Picture);
  if (Picture.GetWidth() > 0) Save(Picture, With(".difference.png"));
  ADD_FAILURE() << Name << ": " << Difference.Text() << "\n  left in " << With(".*.png").string();
}

bool Load(const fs::path& Path, TQXGPBitmap& Bitmap) {
  if (!fs::exists(Path)) return false;
  TFileStream File(Path, TFileMode::fmOpenRead);
  LoadBitmapFromStream(File, Bitmap, u"png");
  return true;
}

}  // namespace

std::string TPictureDifference::Text() const {
  if (!SameSize) return "the sizes differ";
  std::ostringstream Result;
  Result << PixelCount << " pixels differ, by up to " << Largest << ", the first at " << FirstX
         << ", " << FirstY;
  return Result.str();
}

TPictureDifference Compare(const TQXGPImage& A, const TQXGPImage& B, std::int32_t Tolerance) {
  TPictureDifference Result;
  const TQXConstPixels Left = A.GetPixels(), Right = B.GetPixels();
  Result.SameSize = Left.Width == Right.Width && Left.Height == Right.Height;
  for (std::int32_t Y = 0; Result.SameSize && Y < Left.Height; ++Y)
    for (std::int32_t X = 0; X < Left.Width; ++X) {
      const std::int32_t Difference = PixelDifference(Left.Row(Y)[X], Right.Row(Y)[X]);
      if (Difference <= Tolerance) continue;
      if (Result.PixelCount++ == 0) Result.FirstX = X, Result.FirstY = Y;
      Result.Largest = std::max(Result.Largest, Difference);
    }
  return Result;
}

void ExpectGolden(const TQXGPImage& Actual, std::string_view Name, std::int32_t Tolerance) {
  if (!Services().Images.IsSupplied()) GTEST_SKIP() << "no image codecs in this build";
  const fs::path Path =
      fs::path(QXSVG_TEST_ROOT) / "tests" / "goldens" / (std::string(Name) + ".png");
  TQXGPBitmap Expected;
  const bool IsThere = Load(Path, Expected);
  const TPictureDifference Difference = Compare(Actual, Expected, Tolerance);
  if (IsThere && Difference.IsNone()) return;
  if (std::getenv("QXSVG_UPDATE_GOLDENS")) return Save(Actual, Path);
  if (!IsThere) ADD_FAILURE() << "no golden " << Path.string() << ": run scripts/update-goldens";
  LeavePictures(Actual, Expected, Name, Difference);
}

void ExpectSamePicture(const TQXGPImage& Actual, const TQXGPImage& Expected, std::string_view Name,
                       std::int32_t Tolerance) {
  const TPictureDifference Difference = Compare(Actual, Expected, Tolerance);
  if (!Difference.IsNone()) LeavePictures(Actual, Expected, Name, Difference);
}

}  // namespace qxsvg::test
