// Every drawing under tests/goldens/drawings against the picture that was looked at and frozen.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "document/Document.h"
#include "graphics/surface/Canvas.h"
#include "tests/support/Golden.h"

namespace qxsvg {
namespace {

std::vector<std::string> Names() {
  std::vector<std::string> Result;
  const auto Folder = std::filesystem::path(QXSVG_TEST_ROOT) / "tests/goldens/drawings";
  for (const auto& Entry : std::filesystem::directory_iterator(Folder))
    if (Entry.path().extension() == ".svg") Result.push_back(Entry.path().stem().string());
  std::sort(Result.begin(), Result.end());
  return Result;
}

class GoldenDrawing : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    Drawing.LoadFromFile(
        std::string_view(QXSVG_TEST_ROOT "/tests/goldens/drawings/" + GetParam() + ".svg"));
  }
  void DrawOn(TQXGPBitmap& Picture, std::int32_t Side) {
    Picture.Clear(0xFFFFFFFF);
    const auto S = static_cast<float>(Side);
    Drawing.Draw(Picture.GetCanvas(), QXRect(0, 0, S, S));
  }
  TSVGDocument Drawing;
};

TEST_P(GoldenDrawing, LooksAsItDid) {
  TQXGPBitmap Picture(120, 120);
  DrawOn(Picture, 120);
  test::ExpectGolden(Picture, "drawings/" + GetParam());
}

// Drawing leaves the document as it was: again, after a draw at another size and after a reset, the
// picture is the same, whether coverage is computed, kept or dropped.
TEST_P(GoldenDrawing, IsTheSameWhenDrawnAgain) {
  TQXGPBitmap First(120, 120), Again(120, 120), Other(75, 75);
  DrawOn(First, 120);
  for (int I = 0; I < 3; ++I) DrawOn(Again, 120);
  test::ExpectSamePicture(Again, First, GetParam() + "-again");
  DrawOn(Other, 75);
  DrawOn(Again, 120);
  test::ExpectSamePicture(Again, First, GetParam() + "-after-another-size");
  Drawing.Reset();
  DrawOn(Again, 120);
  test::ExpectSamePicture(Again, First, GetParam() + "-after-reset");
}

INSTANTIATE_TEST_SUITE_P(All, GoldenDrawing, testing::ValuesIn(Names()), [](const auto& Info) {
  std::string Name = Info.param;
  std::replace(Name.begin(), Name.end(), '-', '_');
  return Name;
});

}  // namespace
}  // namespace qxsvg
