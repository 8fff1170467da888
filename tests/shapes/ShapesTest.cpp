// The basic shapes and the path: values, bounds, what is drawn and what is saved.
#include <tuple>

#include "runtime/Exceptions.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

TEST(Rectangle, RadiiFollowEachOtherAndTheSides) {
  const std::tuple<const char*, float, float> Cases[] = {
      {"width='10' height='10' rx='20'", 5, 5},
      {"width='10' height='10' ry='2'", 2, 2},
      {"width='40' height='10' rx='20' ry='20'", 20, 5},
      {"width='10' height='10' rx='-3' ry='4'", 0, 4},
      // A negative radius becomes 0 before the other one takes it over.
      {"width='10' height='10' rx='-3'", 0, 0},
      {"width='10' height='10'", 0, 0},
  };
  for (const auto& [Attributes, RX, RY] : Cases) {
    TDrawing D(std::string("<rect id='r' ") + Attributes + "/>");
    EXPECT_EQ(D.Get<TSVGRectangle>(u"r").RXValue(), RX) << Attributes;
    EXPECT_EQ(D.Get<TSVGRectangle>(u"r").RYValue(), RY) << Attributes;
  }
}

TEST(Rectangle, ALaterWidthLeavesTheRadiusAlone) {
  TDrawing D("<rect id='r' width='40' height='40' rx='10'/>");
  auto& Rect = D.Get<TSVGRectangle>(u"r");
  Rect.SetWidth(8);
  EXPECT_EQ(Rect.RXValue(), 10);
  const TSVGLength Big(30, false, TSVGUnit::suNone);
  Rect.SetRX(&Big);
  EXPECT_EQ(Rect.RXValue(), 4);
  // Each setter keeps to its own radius.
  EXPECT_EQ(Rect.RYValue(), 10);
}

TEST(Rectangle, ItsRadiiStayTheSameObjects) {
  TDrawing D("<rect id='r' width='9' height='9' rx='2'/><rect id='s' width='9' height='9'/>");
  auto& Rect = D.Get<TSVGRectangle>(u"r");
  const TSVGLength* const RX = &Rect.RX();
  Rect.Assign(D.Document.FindElement(u"s"));
  EXPECT_EQ(&Rect.RX(), RX);
  EXPECT_EQ(RX->GetValue(), 0);
  Rect.Clear();
  EXPECT_EQ(&Rect.RX(), RX);
}

TEST(Circle, EitherSizeIsTheRadius) {
  TDrawing D("<circle id='c' cx='50' cy='40' r='5'/>");
  auto& Circle = D.Get<TSVGCircle>(u"c");
  EXPECT_EQ(Circle.GetBoundsRect(), QXRect(45, 35, 55, 45));
  Circle.SetWidth(7);
  EXPECT_EQ(Circle.GetHeight(), 7);
  Circle.SetHeight(3);
  EXPECT_EQ(Circle.GetWidth(), 3);
  // A negative one parts them: the first is lifted to 0, the other is not.
  Circle.SetWidth(-1);
  EXPECT_EQ(Circle.GetWidth(), 0);
  EXPECT_EQ(Circle.GetHeight(), -1);
}

TEST(Path, LengthIsTheAuthorsOrTheFirstOneMeasured) {
  TDrawing D(
      "<path id='a' d='M0 0H10' pathLength='20'/><path id='m' d='M0 0H10'/>"
      "<path id='z' d='M5 5'/><path id='e' d=''/>");
  EXPECT_EQ(D.Get<TSVGPath>(u"a").GetPathLength(), 20);
  EXPECT_EQ(D.Get<TSVGPath>(u"a").GetLengthRatio(), 2);
  EXPECT_EQ(D.Get<TSVGPath>(u"z").GetLengthRatio(), 0);
  EXPECT_EQ(D.Get(u"e").GetBoundsRect(), TRectF());

  auto& Measured = D.Get<TSVGPath>(u"m");
  EXPECT_THAT(D.Saved(u"m"), Not(HasSubstr("pathLength")));
  EXPECT_EQ(Measured.GetPathLength(), 10);
  // Once measured it stays, whatever becomes of the data, and is written.
  Measured.Data().SetPathString(u"M0 0H50");
  EXPECT_EQ(Measured.GetPathLength(), 10);
  EXPECT_THAT(D.Saved(u"m"), HasSubstr("pathLength=\"10\""));
}

TEST(Shapes, NewGeometryIsDrawn) {
  TDrawing D(
      "<path id='d' d='M0 0H10V10'/><polyline id='p' points='0 0 9 0 9 9'/>"
      "<polygon id='q' points='0 0 9 0 9 9'/>");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 0,0 L 10,0 L 10,10", "fill M 0,0 L 9,0 L 9,9",
                                    "fill M 0,0 L 9,0 L 9,9 Z"));
  D.Get<TSVGPath>(u"d").Data().SetPathString(u"M1 1H2V3Z");
  D.Get<TSVGPolyline>(u"p").SetPoints({{1, 1}, {2, 2}, {3, 1}});
  D.Get<TSVGPolyline>(u"q").SetPolygon(u"4 4 5 5 6 4");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 1,1 L 2,1 L 2,3 Z", "fill M 1,1 L 2,2 L 3,1",
                                    "fill M 4,4 L 5,5 L 6,4 Z"));
  D.Get<TSVGPolyline>(u"p").SetPolygon(u"1 2 3");
  EXPECT_EQ(D.Get<TSVGPolyline>(u"p").Points(), (TQXPoints{{1, 2}}));
  EXPECT_THROW(D.Get<TSVGPolyline>(u"p").SetPolygon(u"1 2 x 4"), EConvertError);
  EXPECT_THROW(TDrawing("<polygon points='1 2 3 four'/>"), EConvertError);
}

// What every kind of element paints, where it is on its own.
TEST(Shapes, AreDrawn) {
  const std::string Square = "fill M 0,0 L 1,0 L 1,1 L 0,1 Z";
  const std::string Rect = "<rect width='1' height='1'/>";
  const std::pair<std::string, Lines> Cases[] = {
      {"<rect x='1' y='2' width='3' height='4' stroke='red'/>",
       {"fill M 1,2 L 4,2 L 4,6 L 1,6 Z", "draw M 1,2 L 4,2 L 4,6 L 1,6 Z"}},
      {"<rect width='0' height='9' stroke='red'/><rect width='9' height='-1' stroke='red'/>", {}},
      {"<circle cx='50' cy='50' r='0' stroke='red'/>", {}},
      {"<polyline points='0 0 9 0 9 9' stroke='red'/>",
       {"fill M 0,0 L 9,0 L 9,9", "draw M 0,0 L 9,0 L 9,9"}},
      {"<polygon points='0 0 9 0 9 9' stroke='red'/>",
       {"fill M 0,0 L 9,0 L 9,9 Z", "draw M 0,0 L 9,0 L 9,9 Z"}},
      // A line without length has neither caps nor markers.
      {"<marker id='m'>" + Rect +
           "</marker><line x1='5' y1='5' x2='5' y2='5' stroke='red' "
           "stroke-linecap='round' marker-start='url(#m)'/>",
       {}},
      {"<use x='10' y='20' width='50' xlink:href='#r'/><defs><rect id='r' x='1' y='1' width='5' "
       "height='5'/></defs>",
       {"fill M 11,21 L 16,21 L 16,26 L 11,26 Z"}},
      // A symbol outside of defs is drawn too, and fitted into each use.
      {"<symbol id='s' viewBox='0 0 2 2'>" + Rect + "</symbol>" +
           "<use width='50' height='50' xlink:href='#s'/>",
       {Square, "fill M 0,0 L 25,0 L 25,25 L 0,25 Z"}},
      // It is fitted twice: into the use, and before that into its own crossed size.
      {"<defs><symbol id='s' viewBox='0 0 10 20'><rect width='10' height='20'/></symbol></defs>"
       "<use width='50' height='100' xlink:href='#s'/>",
       {"fill M 37.5,0 L 62.5,0 L 62.5,50 L 37.5,50 Z"}},
      // A use is as visible as its target, unless that inherits.
      {"<defs><rect id='r' display='none' width='1' height='1'/></defs><use xlink:href='#r'/>", {}},
      {"<defs><rect id='r' visibility='hidden' width='1' height='1'/></defs>"
       "<use xlink:href='#r' visibility='visible'/>",
       {}},
      {"<defs><rect id='r' visibility='visible' width='1' height='1'/></defs>"
       "<use xlink:href='#r' visibility='hidden'/>",
       {Square}},
      {"<defs><rect id='r' width='1' height='1'/></defs><use xlink:href='#r' "
       "visibility='hidden'/>",
       {}},
      {"<switch><rect systemLanguage='xx' width='9' height='9'/>" + Rect + Rect + "</switch>",
       {Square}},
      {"<switch><title>t</title>" + Rect + "</switch>", {Square}},
      {"<switch><rect requiredExtensions='any'/>" + Rect + "</switch>", {Square}},
      {"<switch><rect requiredFeatures='no-such-feature' width='9' height='9'/></switch>", {}},
      // The chosen child is hidden, and the next one does not get its turn.
      {"<switch><rect display='none' width='9' height='9'/>" + Rect + "</switch>", {}},
      // Its own display does not hide a switch, nor show a defs.
      {"<switch display='none'><rect visibility='visible' width='1' height='1'/></switch>",
       {Square}},
      {"<defs display='inline'>" + Rect + "</defs>", {}},
      {"<g><pattern>" + Rect + "</pattern><marker>" + Rect + "</marker></g>", {}},
      // A nested document's own x and y stand in for the missing box, and cancel its position out.
      {"<svg x='30' y='40' width='20' height='20'>" + Rect + "</svg>", {Square}},
      {"<svg x='30' y='40' width='20' height='20' viewBox='0 0 20 20'>" + Rect + "</svg>",
       {"fill M 30,40 L 31,40 L 31,41 L 30,41 Z"}},
      // A marker within itself is left out.
      {"<marker id='m'><path d='M0 0L1 1L2 0' fill='none' stroke='red' marker-mid='url(#m)'/>"
       "</marker><path d='M0 0L9 9L18 0' fill='none' stroke='red' marker-mid='url(#m)'/>",
       {"draw M 0,0 L 9,9 L 18,0", "draw M 9,9 L 10,10 L 11,9"}},
  };
  for (const auto& [Body, Drawn] : Cases) EXPECT_EQ(TDrawing(Body).Draw(), Drawn) << Body;
  // The inverted box of a negative radius begins at the left.
  EXPECT_THAT(TDrawing("<circle cx='50' cy='50' r='-5'/>").Draw(),
              ElementsAre(HasSubstr("M 45,50")));
}

TEST(Shapes, HaveTheirBounds) {
  const std::pair<const char*, TRectF> Cases[] = {
      // A share of the view box is taken along each axis.
      {"<circle id='x' r='10%'/>", {-20, -10, 20, 10}},
      // Attributes of other shapes do not count.
      {"<ellipse id='x' x='90' width='70' cx='50' cy='40' rx='10' ry='5'/>", {40, 35, 60, 45}},
      {"<circle id='x' x='90' y='90' width='70' height='7'/>", {}},
      // Lines have two sides and keep their direction.
      {"<line id='x' x1='10' y1='20' x2='40' y2='20'/>", {10, 20, 40, 21}},
      {"<line id='x' x1='5' y1='0' x2='5' y2='9'/>", {5, 0, 6, 9}},
      {"<line id='x' x1='9' y1='9' x2='1' y2='2'/>", {9, 9, 1, 2}},
      {"<polyline id='x' points=''/>", {}},
      {"<polygon id='x' points='5,1 9,7 1,4'/>", {1, 1, 9, 7}},
      // A use moves a shape, whatever its own size; that of a viewport is its own, and the target
      // fills the gaps; one of nothing has its size.
      {"<rect id='r' x='1' y='1' width='5' height='6'/><use id='x' x='10' y='20' width='50' "
       "height='50' xlink:href='#r'/>",
       {11, 21, 16, 27}},
      {"<symbol id='s' viewBox='1 2 10 10'/><use id='x' x='3' width='7' xlink:href='#s'/>",
       {4, 2, 11, 12}},
      {"<use id='x' width='7' height='8' xlink:href='#nothing'/>", {0, 0, 7, 8}},
      // The size of a symbol is read crosswise.
      {"<symbol id='x' viewBox='1 2 30 40'/>", {1, 2, 41, 32}},
  };
  for (const auto& [Body, Bounds] : Cases) {
    TDrawing D(Body, "viewBox='0 0 200 100'");
    EXPECT_EQ(D.Get(u"x").GetBoundsRect(), Bounds) << Body;
  }
  TDrawing D("<line id='l' x1='9' x2='1'/><svg id='s' width='9' height='9' clip='rect(1 2 3 4)'/>");
  EXPECT_EQ(D.Get(u"l").GetWidth(), 8);
  D.Get(u"l").SetWidth(4);
  EXPECT_EQ(D.Get(u"l").WidthU().GetValue(), 13);
  // Offsets of a clip come as top, right, bottom and left, and all are subtracted.
  EXPECT_EQ(D.Get(u"s").GetClipRect(), QXRect(-5, -2, 8, 7));
}

TEST(Shapes, SaveTheirAttributes) {
  const std::pair<const char*, const char*> Cases[] = {
      {"<circle id='x' cx='5' r='3'/>", "<circle id=\"x\" cx=\"5\" r=\"3\"/>"},
      {"<ellipse id='x' cy='5' rx='3' ry='1mm'/>",
       "<ellipse id=\"x\" cy=\"5\" rx=\"3\" ry=\"1mm\"/>"},
      {"<line id='x' x2='4' y1='1'/>", "<line id=\"x\" y1=\"1\" x2=\"4\"/>"},
      {"<rect id='x' y='4' width='9' height='8' rx='1'/>",
       "<rect id=\"x\" y=\"4\" width=\"9\" height=\"8\" rx=\"1\" ry=\"1\"/>"},
      {"<polyline id='x' points='1 2 3 4'/>", "<polyline id=\"x\" points=\"1,2 3,4\"/>"},
      // Percentages are written as the fractions that they are kept as.
      {"<circle id='x' cx='50%' r='3'/>", "<circle id=\"x\" cx=\"0.5%\" r=\"3\"/>"},
  };
  for (const auto& [Element, Written] : Cases) {
    std::string Saved = TDrawing(Element).Saved(u"x");
    const std::string Namespace = " xmlns=\"http://www.w3.org/2000/svg\"";
    if (const auto At = Saved.find(Namespace); At != std::string::npos)
      Saved.erase(At, Namespace.size());
    EXPECT_EQ(Saved, Written);
  }
}

TEST(Shapes, AreHitByAreaOrStroke) {
  TDrawing D(
      "<clipPath id='k'><rect width='40' height='80'/></clipPath><rect id='r' y='70' width='90' "
      "height='20' clip-path='url(#k)'/><circle id='c' cx='20' cy='20' r='10'/>"
      "<line id='l' x1='50' y1='10' x2='90' y2='10' stroke='red'/>"
      "<polyline id='p' points='50 50 90 50 90 90' fill='none' stroke='red'/>"
      "<defs><g id='g'><rect width='5' height='5'/></g></defs><use id='u' x='95' xlink:href='#g'/>"
      "<marker id='m' overflow='visible' viewBox='0 0 9 9' markerUnits='userSpaceOnUse' "
      "markerWidth='9' markerHeight='9'><rect width='9' height='9'/></marker>"
      "<polyline id='q' points='1 40 9 40' fill='none' stroke='red' marker-end='url(#m)'/>");
  using enum TSVGFindOption;
  const std::tuple<float, float, TSVGFindOptions, std::string> Cases[] = {
      {20, 20, {}, "c"},
      // Within the box, but outside the circle.
      {11.5f, 11.5f, {}, ""},
      {11.5f, 11.5f, {foUseBoundingBox}, "c"},
      // A thin line is within reach from a pixel and a half away.
      {70, 11, {}, "l"},
      {70, 12, {}, ""},
      {70, 50, {}, "p"},
      {80, 60, {}, ""},
      {80, 60, {foFindNonFilled}, "p"},
      // Clips cut, a use stands for what it shows, and markers are part of their shape.
      {20, 75, {}, "r"},
      {20, 85, {}, ""},
      {97, 2, {}, "u"},
      {2, 2, {}, ""},
      {15, 46, {}, "q"},
      {19, 46, {}, ""},
  };
  for (const auto& [X, Y, Options, ID] : Cases) EXPECT_EQ(D.At(X, Y, Options), ID) << X << "," << Y;
  D.Exclude(TSVGOption::soApplyClipping);
  EXPECT_EQ(D.At(20, 85), "r");
}

}  // namespace
}  // namespace qxsvg::test
