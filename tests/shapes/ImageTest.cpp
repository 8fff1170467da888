// Images: where the picture comes from and where it is shown.
#include <filesystem>
#include <fstream>

#include "graphics/surface/Bitmap.h"
#include "runtime/Exceptions.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

// One red pixel.
constexpr char Pixel[] =
    "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAA"
    "AADElEQVR4nGP4z8AAAAMBAQDJ/pLvAAAAAElFTkSuQmCC";

// A file in the tests' own folder, gone at the end.
class TTemporaryFile {
 public:
  TTemporaryFile(const std::string& Name, const std::string& Content)
      : FPath(std::filesystem::path(QXSVG_TEST_OUTPUT) / Name) {
    std::filesystem::create_directories(FPath.parent_path());
    std::ofstream(FPath, std::ios::binary) << Content;
  }
  ~TTemporaryFile() { std::filesystem::remove(FPath); }
  std::string Path() const { return FPath.string(); }

 private:
  std::filesystem::path FPath;
};

TEST(Image, APictureTakesItsPartOfTheBox) {
  struct Case {
    std::int32_t Width, Height;
    const char* Ratio;
    TRectF Taken;
  };
  // In a box of 200 by 100.
  const Case Cases[] = {
      {10, 10, "xMidYMid meet", {50, 0, 150, 100}},
      {10, 10, "xMinYMin", {0, 0, 100, 100}},
      {10, 10, "none", {0, 0, 200, 100}},
      {10, 10, "xMaxYMax slice", {0, -100, 200, 100}},
      // Pictures of both directions count with their larger ratio.
      {10, 20, "xMaxYMid", {0, 0, 200, 100}},
      {20, 10, "xMaxYMid", {0, 0, 200, 100}},
  };
  for (const Case& C : Cases) {
    TTemporaryFile File("picture.svg", Wrapped("", "viewBox='0 0 " + std::to_string(C.Width) + " " +
                                                       std::to_string(C.Height) + "'"));
    TDrawing D("<image id='i' width='200' height='100' preserveAspectRatio='" +
               std::string(C.Ratio) + "' xlink:href='" + File.Path() + "'/>");
    EXPECT_EQ(D.Get<TSVGImage>(u"i").Align(QXRect(0, 0, 200, 100)), C.Taken)
        << C.Width << " " << C.Ratio;
  }
}

TEST(Image, IsDrawnAtItsPlaceAndHitByItsBox) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  TDrawing D(std::string("<image id='i' x='10' y='20' width='30' height='30' opacity='0.5' "
                         "transform='translate(5 0)' xlink:href='") +
             Pixel + "'/>");
  EXPECT_THAT(D.DrawInFull(), ElementsAre("image 1x1 0.5: 0,0,1,1 to 15,20,45,50"));
  EXPECT_EQ(D.At(44, 49), "i");
  EXPECT_EQ(D.At(12, 25), "");
}

TEST(Image, WhatIsNoPictureLeavesNothing) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  for (const char* Reference :
       {"", "no/such/file.png", "data:image/png;base64,AAAA", "data:text/plain,x", "data:"}) {
    TDrawing D(std::string("<image width='9' height='9' xlink:href='") + Reference +
               "'/><rect width='1' height='1'/>");
    EXPECT_THAT(D.Draw(), ElementsAre(HasSubstr("M 0,0"))) << Reference;
  }
  TTemporaryFile Broken("broken.png", "no picture");
  EXPECT_THROW(TDrawing("<image xlink:href='" + Broken.Path() + "'/>"), EInvalidGraphicOperation);
}

TEST(Image, ADrawingIsMadeIntoAPictureOnce) {
  TTemporaryFile File("inner.svg",
                      Wrapped("<rect width='2' height='4' fill='red'/>", "viewBox='0 0 4 4'"));
  TDrawing D("<image id='i' width='90' height='90' xlink:href='" + File.Path() + "'/>");
  const TQXGPBitmap* const Picture = D.Get<TSVGImage>(u"i").Bitmap();
  ASSERT_TRUE(Picture);
  EXPECT_EQ(Picture->GetWidth(), 4);
  EXPECT_EQ(Picture->GetPixels().Row(1)[1], 0xffff0000u);
  EXPECT_EQ(Picture->GetPixels().Row(1)[3], 0u);
}

TEST(Image, DrawingsThatShowEachOtherEnd) {
  TTemporaryFile Inner("loop.svg", "");
  std::ofstream(Inner.Path()) << Wrapped("<image width='9' height='9' xlink:href='" + Inner.Path() +
                                             "'/><image width='9' height='9' xlink:href='" +
                                             Inner.Path() + "'/>",
                                         "viewBox='0 0 9 9'");
  TDrawing D("<image id='i' width='9' height='9' xlink:href='" + Inner.Path() + "'/>");
  EXPECT_TRUE(D.Get<TSVGImage>(u"i").Bitmap());
}

TEST(Image, SavesItsReferenceAsItWasWritten) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  TDrawing D(std::string("<image id='i' width='9' xlink:href='") + Pixel + "'/>");
  EXPECT_THAT(D.Saved(u"i"), HasSubstr(std::string("xlink:href=\"") + Pixel));
  EXPECT_THAT(D.Saved(u"i"), HasSubstr("preserveAspectRatio=\"xMidYMid\""));
}

}  // namespace
}  // namespace qxsvg::test
