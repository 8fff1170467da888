// The sheet of the surface against the picture of it that was looked at and frozen.
#include <gtest/gtest.h>

#include "graphics/surface/Bitmap.h"
#include "graphics/surface/ImageCodecs.h"
#include "tests/support/Golden.h"
#include "tests/support/RunCommand.h"

namespace qxsvg {
namespace {

TEST(SurfaceDemo, LooksAsItDid) {
  const test::TScratchFolder Folder;
  const std::string File = (Folder.Path() / "sheet.png").string();
  const test::TRunResult Run = test::RunQxsvg("surface-demo " + test::Quoted(File));
  ASSERT_EQ(Run.Status, 0) << Run.Errors;
  TQXGPBitmap Sheet;
  ASSERT_TRUE(LoadBitmapFromFile(FromUtf8(File), Sheet));
  test::ExpectGolden(Sheet, "surface-demo");
}

}  // namespace
}  // namespace qxsvg
