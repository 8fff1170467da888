// Which element lies under a point, and where an element is.
#include <gtest/gtest.h>

#include "tests/shapes/Drawing.h"

namespace qxsvg {
namespace {

using test::TDrawing;
using enum TSVGFindOption;

TEST(HitTest, FindsWhatWasPaintedOnTop) {
  TDrawing D(
      "<rect id='a' width='50' height='50'/><rect id='b' x='20' width='50' height='50'/>"
      "<rect id='n' x='20' width='50' height='50' pointer-events='none'/>");
  EXPECT_EQ(D.At(10, 10), "a");
  EXPECT_EQ(D.At(30, 10), "b");
  EXPECT_EQ(D.At(90, 10), "");
  EXPECT_EQ(D.At(NAN, 10), "");
}

TEST(HitTest, PointerEventsDecideWhatCounts) {
  // Whether the middle of the square is hit, and whether its edge is.
  const std::tuple<bool, bool, std::vector<std::string>> Cases[] = {
      {true,
       true,
       {"", "stroke='#000'", "fill='none' pointer-events='fill'",
        "fill='none' pointer-events='visibleFill'", "fill='none' pointer-events='all'",
        "fill='none' pointer-events='visible'", "visibility='hidden' pointer-events='fill'",
        "visibility='hidden' pointer-events='painted'"}},
      {false,
       true,
       {"fill='none' stroke='#000'", "pointer-events='stroke'", "pointer-events='visibleStroke'",
        "fill='none' stroke='#000' pointer-events='painted'"}},
      {false,
       false,
       {"fill='none'", "stroke='#000' pointer-events='none'", "visibility='hidden'",
        "display='none' pointer-events='visible'"}},
  };
  for (const auto& [Inside, Edge, Rows] : Cases)
    for (const std::string& Attributes : Rows) {
      TDrawing D("<rect id='r' x='20' y='20' width='60' height='60' stroke-width='4' " +
                 Attributes + "/>");
      EXPECT_EQ(D.At(50, 50) == "r", Inside) << Attributes;
      EXPECT_EQ(D.At(20.5f, 50) == "r", Edge) << Attributes;
      EXPECT_EQ(D.At(10, 50), "") << Attributes;
    }
}

TEST(HitTest, AHairLineIsThreePixelsWide) {
  const std::tuple<std::string, float, float> Cases[] = {
      {"stroke-width='1'", 51.4f, 51.7f},
      {"stroke-width='.01'", 51.4f, 51.7f},
      {"transform='scale(.5)' stroke-width='2'", 26.4f, 26.7f},
      {"stroke-width='0'", 51.4f, 51.7f},
      {"stroke-width='1' vector-effect='non-scaling-stroke'", 51.4f, 51.7f},
      // A wider one keeps its width.
      {"stroke-width='8'", 53.9f, 54.1f},
      // The box of the element is wide enough for all of it.
      {"stroke-width='8%'", 53.9f, 54.1f},
  };
  for (const auto& [Attributes, Hit, Miss] : Cases) {
    TDrawing D("<path id='p' stroke='#000' fill='none' d='M10 50H180' " + Attributes + "/>");
    EXPECT_EQ(D.At(50, Hit), "p") << Attributes;
    EXPECT_EQ(D.At(50, Miss), "") << Attributes;
  }
  // So it is for the tip of a join.
  TDrawing D("<path id='p' stroke='#000' stroke-width='8' fill='none' d='M20 35L60 50L20 65'/>");
  EXPECT_EQ(D.At(71, 50), "p");
}

TEST(HitTest, Options) {
  TDrawing D(
      "<g id='g'><circle id='c' cx='50' cy='50' r='40'/></g>"
      "<g id='d'><rect id='r' width='5' height='5'/></g>"
      "<rect id='h' x='90' width='5' height='5' visibility='hidden'/>"
      "<rect id='f' y='90' width='5' height='5' fill='none'/>");
  D.Get(u"d").SetEnabled(false);
  const std::tuple<float, float, TSVGFindOptions, const char*> Cases[] = {
      {50, 50, {}, "c"},
      {50, 50, {foFindGroups}, "g"},
      {50, 50, {foFindNoRecursion}, "c"},
      {15, 15, {}, ""},
      {15, 15, {foUseBoundingBox}, "c"},
      {2, 2, {}, ""},
      {2, 2, {foFindDisabled}, "r"},
      {92, 2, {}, ""},
      {92, 2, {foFindHiddenElements}, "h"},
      {2, 92, {}, ""},
      {2, 92, {foFindNonFilled}, "f"},
      {2, 92, {foUseBoundingBox}, "f"},
  };
  for (const auto& [X, Y, Options, ID] : Cases) EXPECT_EQ(D.At(X, Y, Options), ID) << X << "," << Y;
}

TEST(HitTest, TheHostHasTheLastWord) {
  TDrawing D(
      "<rect id='a' width='50' height='50'/><g id='g'><rect id='b' width='50' height='50'/>"
      "</g>");
  std::string Asked;
  TSVGElement* Instead = nullptr;
  bool Refuses = false;
  D.Document.OnElementFound = [&](TPersistent*, TSVGElement*& Element) {
    Asked += ToUtf8(Element->ID()) + " ";
    if (Instead) Element = Instead;
    if (Refuses && Element->ID() == u"b") Element = nullptr;
  };
  EXPECT_EQ(D.At(10, 10, {foFindGroups}), "g");
  EXPECT_EQ(Asked, "b g ");
  Instead = D.Document.FindElement(u"a");
  EXPECT_EQ(D.At(10, 10), "a");
  Instead = nullptr;
  Refuses = true;
  // None at one level: the walk goes on with the sibling below.
  EXPECT_EQ(D.At(10, 10), "a");
}

TEST(HitTest, AViewportWithoutEventsMayHoldElementsThatTakeThem) {
  TDrawing D(
      "<rect id='a' width='50' height='50'/>"
      "<rect id='b' width='20' height='20' pointer-events='all'/>"
      "<marker><rect id='m' width='90' height='90' pointer-events='all'/></marker>",
      "viewBox='0 0 100 100' pointer-events='none'");
  EXPECT_EQ(D.At(10, 10), "b");
  EXPECT_EQ(D.At(40, 40), "");
}

TEST(HitTest, GoesThroughMatricesAndLeavesTheCanvasAsItWas) {
  TDrawing D(
      "<clipPath id='c'><rect width='20' height='100'/></clipPath>"
      "<g transform='translate(50,0) rotate(90)'><rect id='r' width='40' height='10'/></g>"
      "<rect id='k' y='60' width='40' height='40' clip-path='url(#c)'/>");
  EXPECT_EQ(D.At(45, 35), "r");
  EXPECT_EQ(D.At(55, 5), "");
  EXPECT_EQ(D.At(10, 80), "k");
  EXPECT_EQ(D.At(30, 80), "");
  test::TRecordingCanvas Canvas;
  D.Document.ElementAtPos(Canvas, {10, 80}, QXRect(0, 0, 100, 100), {});
  EXPECT_EQ(Canvas.Depth(), 0u);
  EXPECT_EQ(Canvas.GetClipBounds(), QXRect(0, 0, 100, 100));
  EXPECT_TRUE(Canvas.Take().empty());
}

TEST(Bounds, OfATurnedElementAreThoseOfItsBox) {
  TDrawing D("<rect id='r' width='10' height='10' transform='rotate(45)'/>");
  TSVGGraphicElement& Rectangle = D.Get(u"r");
  EXPECT_EQ(Rectangle.GetBoundsRect(), QXRect(0, 0, 10, 10));
  EXPECT_EQ(test::Describe(Rectangle.GetBoundsRect(QXIdentityMatrix)), "-7.071,0,7.071,14.142");
}

TEST(Bounds, FromTheScreenToTheViewBox) {
  TDrawing D("<rect id='r' width='1' height='1'/>");
  EXPECT_EQ(D.Get(u"r").ScreenToLocal({100, 50}, QXRect(0, 0, 200, 200)), (TPointF{50, 25}));
  // The rectangle's origin plays no part.
  EXPECT_EQ(D.Get(u"r").ScreenToLocal({100, 50}, QXRect(70, 70, 270, 270)), (TPointF{50, 25}));
}

}  // namespace
}  // namespace qxsvg
