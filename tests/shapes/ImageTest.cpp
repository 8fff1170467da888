// Images: where the picture comes from and where it is shown.
#include <tuple>

#include "graphics/surface/Bitmap.h"
#include "runtime/Exceptions.h"
#include "tests/shapes/Drawing.h"
#include "tests/support/ScratchFolder.h"

namespace qxsvg::test {
namespace {

// One red pixel.
constexpr char Pixel[] =
    "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAA"
    "AADElEQVR4nGP4z8AAAAMBAQDJ/pLvAAAAAElFTkSuQmCC";

struct Image : testing::Test {
  TScratchFolder Folder;
};

TEST_F(Image, APictureTakesItsPartOfTheBox) {
  // In a box of 200 by 100.
  const std::tuple<std::string, std::string, TRectF> Cases[] = {
      {"10 10", "xMidYMid meet", {50, 0, 150, 100}},
      {"10 10", "xMinYMin", {0, 0, 100, 100}},
      {"10 10", "none", {0, 0, 200, 100}},
      {"10 10", "xMaxYMax slice", {0, -100, 200, 100}},
      // Pictures of both directions count with their larger ratio.
      {"10 20", "xMaxYMid", {0, 0, 200, 100}},
      {"20 10", "xMaxYMid", {0, 0, 200, 100}},
  };
  for (const auto& [Size, Ratio, Taken] : Cases) {
    const std::string File = Folder.Add("a.svg", Wrapped("", "viewBox='0 0 " + Size + "'"));
    TDrawing D("<image id='i' width='200' height='100' preserveAspectRatio='" + Ratio +
               "' xlink:href='" + File + "'/>");
    EXPECT_EQ(D.Get<TSVGImage>(u"i").Align(QXRect(0, 0, 200, 100)), Taken) << Size << " " << Ratio;
  }
}

TEST_F(Image, IsDrawnAtItsPlaceAndHitByItsBox) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  TDrawing D(std::string("<image id='i' x='10' y='20' width='30' height='30' opacity='0.5' "
                         "transform='translate(5 0)' xlink:href='") +
             Pixel + "'/>");
  EXPECT_THAT(D.DrawInFull(), ElementsAre("image 1x1 0.5: 0,0,1,1 to 15,20,45,50"));
  EXPECT_EQ(D.At(44, 49), "i");
  EXPECT_EQ(D.At(12, 25), "");
}

TEST_F(Image, WhatIsNoPictureLeavesNothing) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  for (const char* Reference :
       {"", "no/such/file.png", "data:image/png;base64,AAAA", "data:text/plain,x", "data:"}) {
    TDrawing D(std::string("<image width='9' height='9' xlink:href='") + Reference +
               "'/><rect width='1' height='1'/>");
    EXPECT_THAT(D.Draw(), ElementsAre(HasSubstr("M 0,0"))) << Reference;
  }
  const std::string Broken = Folder.Add("broken.png", "no picture");
  EXPECT_THROW(TDrawing("<image xlink:href='" + Broken + "'/>"), EInvalidGraphicOperation);
}

TEST_F(Image, ADrawingIsMadeIntoAPictureOnce) {
  const std::string File = Folder.Add(
      "inner.svg", Wrapped("<rect width='2' height='4' fill='red'/>", "viewBox='0 0 4 4'"));
  TDrawing D("<image id='i' width='90' height='90' xlink:href='" + File + "'/>");
  const TQXGPBitmap* const Picture = D.Get<TSVGImage>(u"i").Bitmap();
  ASSERT_TRUE(Picture);
  EXPECT_EQ(Picture->GetWidth(), 4);
  EXPECT_EQ(Picture->GetPixels().Row(1)[1], 0xffff0000u);
  EXPECT_EQ(Picture->GetPixels().Row(1)[3], 0u);
}

TEST_F(Image, DrawingsThatShowEachOtherEnd) {
  const std::string Show = "<image id='i' width='9' height='9' xlink:href='" +
                           (Folder.Path() / "loop.svg").string() + "'/>";
  Folder.Add("loop.svg", Wrapped(Show + Show, "viewBox='0 0 9 9'"));
  TDrawing D(Show);
  EXPECT_TRUE(D.Get<TSVGImage>(u"i").Bitmap());
}

TEST_F(Image, PicturesBeyondTheBudgetAreLeftOut) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  const std::string Shown = std::string("' width='9' height='9' xlink:href='") + Pixel + "'/>";
  const TPictureScope Budget(5);
  // A nested drawing has no budget of its own.
  TDrawing D("<image id='a" + Shown + "<svg><image" + Shown.substr(1) + "</svg><image id='c" +
             Shown);
  EXPECT_TRUE(D.Get<TSVGImage>(u"a").Bitmap());
  EXPECT_FALSE(D.Get<TSVGImage>(u"c").Bitmap());
}

TEST_F(Image, SavesItsReferenceAsItWasWritten) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  TDrawing D(std::string("<image id='i' width='9' xlink:href='") + Pixel + "'/>");
  EXPECT_THAT(D.Saved(u"i"), HasSubstr(std::string("xlink:href=\"") + Pixel));
  EXPECT_THAT(D.Saved(u"i"), HasSubstr("preserveAspectRatio=\"xMidYMid\""));
}

}  // namespace
}  // namespace qxsvg::test
