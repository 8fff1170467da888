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

TEST(Rectangle, DrawsItsPathAndNothingWithoutArea) {
  TDrawing D(
      "<rect x='10' y='20' width='30' height='40' stroke='red'/>"
      "<rect width='0' height='9' stroke='red'/><rect width='9' height='-1' stroke='red'/>");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 10,20 L 40,20 L 40,60 L 10,60 Z",
                                    "draw M 10,20 L 40,20 L 40,60 L 10,60 Z"));
}

TEST(Circle, ANegativeRadiusIsDrawnByTheFallback) {
  TDrawing D("<circle cx='50' cy='50' r='-5'/>");
  const Lines Drawn = D.Draw();
  ASSERT_EQ(Drawn.size(), 1u);
  // The inverted box begins at the left.
  EXPECT_THAT(Drawn[0], HasSubstr("M 45,50"));
  EXPECT_THAT(TDrawing("<circle cx='50' cy='50' r='0' stroke='red'/>").Draw(), IsEmpty());
}

TEST(Circle, AShareOfTheViewBoxIsTakenAlongEachAxis) {
  TDrawing D("<circle id='c' r='10%'/>", "viewBox='0 0 200 100'");
  EXPECT_EQ(D.Get(u"c").GetBoundsRect(), QXRect(-20, -10, 20, 10));
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

TEST(Ellipse, AttributesOfOtherShapesDoNotCount) {
  TDrawing D("<ellipse id='e' x='90' width='70' cx='50' cy='40' rx='10' ry='5'/>");
  EXPECT_EQ(D.Get(u"e").GetBoundsRect(), QXRect(40, 35, 60, 45));
  TDrawing Without("<circle id='c' x='90' y='90' width='70' height='7'/>");
  EXPECT_EQ(Without.Get(u"c").GetBoundsRect(), TRectF());
}

TEST(Line, BoundsHaveTwoSidesAndKeepTheirDirection) {
  TDrawing D(
      "<line id='h' x1='10' y1='20' x2='40' y2='20'/><line id='v' x1='5' y1='0' x2='5' y2='9'/>"
      "<line id='b' x1='9' y1='9' x2='1' y2='2'/>");
  EXPECT_EQ(D.Get(u"h").GetBoundsRect(), QXRect(10, 20, 40, 21));
  EXPECT_EQ(D.Get(u"v").GetBoundsRect(), QXRect(5, 0, 6, 9));
  EXPECT_EQ(D.Get(u"b").GetBoundsRect(), QXRect(9, 9, 1, 2));
  EXPECT_EQ(D.Get(u"b").GetWidth(), 8);
  D.Get(u"b").SetWidth(4);
  EXPECT_EQ(D.Get(u"b").WidthU().GetValue(), 13);
}

TEST(Line, WithoutLengthItHasNoCapsAndNoMarkers) {
  TDrawing D(
      "<marker id='m'><rect width='1' height='1'/></marker>"
      "<line x1='5' y1='5' x2='5' y2='5' stroke='red' stroke-width='4' stroke-linecap='round' "
      "marker-start='url(#m)'/>");
  EXPECT_THAT(D.Draw(), IsEmpty());
}

TEST(Polyline, PointsAndBounds) {
  TDrawing D(
      "<polyline id='a' points='1 2 3'/><polyline id='n' points=''/>"
      "<polygon id='p' points='5,1 9,7 1,4'/>");
  EXPECT_EQ(D.Get<TSVGPolyline>(u"a").Points(), (TQXPoints{{1, 2}}));
  EXPECT_EQ(D.Get(u"n").GetBoundsRect(), TRectF());
  EXPECT_EQ(D.Get(u"p").GetBoundsRect(), QXRect(1, 1, 9, 7));
  EXPECT_THROW(D.Get<TSVGPolyline>(u"a").SetPolygon(u"1 2 x 4"), EConvertError);
  EXPECT_THROW(TDrawing("<polygon points='1 2 3 four'/>"), EConvertError);
}

TEST(Polyline, OnlyAPolygonClosesItsStroke) {
  TDrawing D(
      "<polyline points='0 0 9 0 9 9' stroke='red'/><polygon points='0 0 9 0 9 9' "
      "stroke='red'/>");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 0,0 L 9,0 L 9,9", "draw M 0,0 L 9,0 L 9,9",
                                    "fill M 0,0 L 9,0 L 9,9 Z", "draw M 0,0 L 9,0 L 9,9 Z"));
}

TEST(Polyline, NewPointsAreDrawn) {
  TDrawing D("<polyline id='p' points='0 0 9 0 9 9'/><polygon id='q' points='0 0 9 0 9 9'/>");
  D.Draw();
  D.Get<TSVGPolyline>(u"p").SetPoints({{1, 1}, {2, 2}, {3, 1}});
  D.Get<TSVGPolyline>(u"q").SetPolygon(u"4 4 5 5 6 4");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 1,1 L 2,2 L 3,1", "fill M 4,4 L 5,5 L 6,4 Z"));
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

TEST(Path, NewDataIsDrawn) {
  TDrawing D("<path id='p' d='M0 0H10V10'/>");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 0,0 L 10,0 L 10,10"));
  D.Get<TSVGPath>(u"p").Data().SetPathString(u"M1 1H2V3Z");
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 1,1 L 2,1 L 2,3 Z"));
}

TEST(Shapes, SaveTheirAttributes) {
  struct Case {
    const char* Element;
    const char* Saved;
  };
  const Case Cases[] = {
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
  for (const Case& C : Cases) {
    TDrawing D(C.Element);
    std::string Saved = D.Saved(u"x");
    const std::string Namespace = " xmlns=\"http://www.w3.org/2000/svg\"";
    if (const auto At = Saved.find(Namespace); At != std::string::npos)
      Saved.erase(At, Namespace.size());
    EXPECT_EQ(Saved, C.Saved);
  }
}

TEST(Shapes, AreHitByAreaOrStroke) {
  TDrawing D(
      "<circle id='c' cx='20' cy='20' r='10'/><line id='l' x1='50' y1='10' x2='90' y2='10' "
      "stroke='red'/><polyline id='p' points='50 50 90 50 90 90' fill='none' stroke='red'/>");
  EXPECT_EQ(D.At(20, 20), "c");
  // Within the box, but outside the circle.
  EXPECT_EQ(D.At(11.5, 11.5), "");
  EXPECT_EQ(D.At(11.5, 11.5, {TSVGFindOption::foUseBoundingBox}), "c");
  // A thin line is within reach from a pixel and a half away.
  EXPECT_EQ(D.At(70, 11), "l");
  EXPECT_EQ(D.At(70, 12), "");
  EXPECT_EQ(D.At(70, 50), "p");
  EXPECT_EQ(D.At(80, 60), "");
  EXPECT_EQ(D.At(80, 60, {TSVGFindOption::foFindNonFilled}), "p");
}

}  // namespace
}  // namespace qxsvg::test
