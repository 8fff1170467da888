// Aspect ratios, view boxes and the viewports that hold them.
#include <tuple>

#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

TEST(AspectRatio, ReadsAndWritesItsText) {
  const std::tuple<StringView, StringView, StringView> Cases[] = {
      {u"xMidYMid slice", u"xMidYMid slice", u"xMidYMid slice"},
      {u"  defer  xMinYMin meet ", u"defer xMinYMin meet", u"defer xMinYMin"},
      {u"none", u"none meet", u"none"},
      {u"bogus slice", u"none slice", u"none slice"},
      {u"defer xMaxYMax slice", u"defer xMaxYMax slice", u"defer xMaxYMax slice"},
      {u"xmidymid Slice", u"none meet", u"none"},
      // A lone word, even this one, is an alignment.
      {u"defer", u"none meet", u"none"},
      {u"", u"xMaxYMin meet", u"xMaxYMin"},
  };
  for (const auto& [Text, Written, Compact] : Cases) {
    TSVGPreserveAspectRatio Ratio(TSVGAlign::saXMaxYMin, false, false);
    ParseAspectRatio(Text, Ratio);
    EXPECT_EQ(ToUtf8(Ratio.ToString(false)), ToUtf8(Written));
    EXPECT_EQ(ToUtf8(Ratio.ToString(true)), ToUtf8(Compact));
  }
}

TEST(ViewBox, EveryChangeMakesItSpecified) {
  int Notices = 0;
  auto Count = [&Notices](TPersistent*) { ++Notices; };
  TSVGViewBox Box;
  Box.OnChange = TNotifyMethod::To(Count);
  EXPECT_FALSE(Box.ViewBoxSpecified());
  Box.X().SetValue(3);
  EXPECT_TRUE(Box.ViewBoxSpecified());
  Box.SetRect(QXRect(1, 2, 11, 22));
  EXPECT_EQ(Notices, 2);
  Box.SetRight(6);
  EXPECT_EQ(Box.Width().GetValue(), 5);
  // Clearing is a change too.
  Box.Clear();
  EXPECT_TRUE(Box.ViewBoxSpecified());
  TSVGViewBox Unspecified;
  Box.Assign(&Unspecified);
  EXPECT_TRUE(Box.ViewBoxSpecified());
  ParseRect(u"1 2,3", Box);
  EXPECT_EQ(Box.GetRect(), QXRect(1, 2, 4, 2));
}

TEST(Viewport, FitsTheViewBox) {
  // Onto 100 by 100 at the origin: moved by, scaled by.
  const std::tuple<std::string, std::string, const char*> Cases[] = {
      {"0 0 50 20", "xMidYMid meet", "0,30,2,2"},
      {"0 0 50 20", "xMinYMin meet", "0,0,2,2"},
      {"0 0 50 20", "none", "0,0,2,5"},
      {"0 0 10 20", "xMaxYMax slice", "0,-100,10,10"},
      {"0 0 10 20", "xMaxYMin meet", "50,0,5,5"},
      // Boxes of unit size and below are scaled by their inverse, whatever the target.
      {"0 0 1 1", "xMinYMin", "0,0,1,1"},
      {"0 0 0.5 0.5", "xMinYMin", "0,0,2,2"},
      {"0 0 0 0", "xMinYMin", "0,0,1,1"},
  };
  for (const auto& [Box, Ratio, View] : Cases) {
    TDrawing D("", "viewBox='" + Box + "' preserveAspectRatio='" + Ratio + "'");
    TRectF V;
    D.Document.DefineView(QXRect(0, 0, 100, 100), D.Document.AspectRatio(), V.Left, V.Top, V.Right,
                          V.Bottom);
    EXPECT_EQ(Describe(V), View) << Box << " " << Ratio;
  }
}

TEST(Viewport, ADocumentWithoutViewBoxIsFittedByItsSize) {
  TDrawing D("<rect width='10' height='10'/>", "width='50' height='25'");
  EXPECT_FALSE(D.Document.ViewBox().ViewBoxSpecified());
  // Scale 2, centred vertically in the 100 by 100 of the canvas.
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 0,25 L 20,25 L 20,45 L 0,45 Z"));
  D.Document.DefaultAspectRatio().SetAlign(TSVGAlign::saXMinYMin);
  EXPECT_THAT(D.Draw(), ElementsAre("fill M 0,0 L 20,0 L 20,20 L 0,20 Z"));
}

TEST(Viewport, AnUnspecifiedBoxWithAlignmentIsOnlyMoved) {
  TDrawing D("<pattern id='p' x='3' y='4' width='10' height='10'/><marker id='m'/>");
  EXPECT_EQ(D.Get(u"p").GetViewMatrix(QXIdentityMatrix, QXRect(1, 1, 51, 51)),
            CreateTranslateQXMatrix(-2, -3));
  // Without an alignment either, the scale of the matrix handed in stands.
  const TMatrix Scale = CreateScaleQXMatrix(2, 3);
  EXPECT_EQ(D.Get(u"m").GetViewMatrix(Scale, QXRect(7, 8, 9, 9)),
            QXMatrixMultiply(Scale, CreateTranslateQXMatrix(7, 8)));
}

TEST(Viewport, WithoutSizeItTakesTheBoundsOfItsContent) {
  TDrawing D("<g id='g'/>");
  TSVGDocument Nested(&D.Document);
  Nested.SetWidth(0);
  Nested.SetHeight(0);
  auto Rect = std::make_unique<TSVGRectangle>(&Nested);
  Rect->SetBoundsRect(QXRect(3, 4, 13, 24));
  Nested.Items().Add(std::move(Rect));
  EXPECT_EQ(Nested.GetBoundsRect(), QXRect(3, 4, 13, 24));
  EXPECT_EQ(Nested.ViewBox().GetRect(), QXRect(3, 4, 13, 24));
  EXPECT_FALSE(Nested.ViewBox().ViewBoxSpecified());
}

TEST(Viewport, HidesOverflowUnlessToldOtherwise) {
  const auto With = [&](const std::string& Attribute) {
    return "<svg id='s' x='10' y='10' width='20' height='20' viewBox='0 0 20 20'" + Attribute +
           "><rect id='r' x='15' width='60' height='20'/></svg>";
  };
  TDrawing Hidden(With(""));
  EXPECT_EQ(Hidden.At(30.5, 20), "r");
  EXPECT_EQ(Hidden.At(60, 20), "r") << "hit tests look at clip paths only";
  // One unit of room is left around the viewport.
  EXPECT_THAT(Hidden.DrawWithStates(), HasSubstr("clip 9,9,31,31"));
  EXPECT_THAT(TDrawing(With(" overflow='visible'")).DrawWithStates(),
              Not(HasSubstr("clip 9,9,31,31")));
  Hidden.Exclude(TSVGOption::soApplyClipping);
  EXPECT_THAT(Hidden.DrawWithStates(), Not(HasSubstr("clip")));
}

TEST(Viewport, SavesItsViewBoxOnlyWhenItWasGiven) {
  TDrawing D(
      "<symbol id='a' viewBox='1 2 3 4' preserveAspectRatio='none'/>"
      "<svg id='b' width='5' height='6' preserveAspectRatio='none'/>");
  EXPECT_THAT(D.Saved(u"a"), HasSubstr("viewBox=\"1 2 3 4\" preserveAspectRatio=\"none\""));
  EXPECT_THAT(D.Saved(u"b"), Not(HasSubstr("preserveAspectRatio")));
}

TEST(Symbol, WithoutSizeItCountsAsHavingAViewBox) {
  TDrawing D("<symbol id='s'><rect x='2' y='3' width='4' height='5'/></symbol>");
  auto& Symbol = D.Get<TSVGSymbol>(u"s");
  EXPECT_FALSE(Symbol.ViewBox().ViewBoxSpecified());
  EXPECT_EQ(Symbol.GetBoundsRect(), QXRect(2, 3, 6, 8));
  EXPECT_TRUE(Symbol.ViewBox().ViewBoxSpecified());
}

}  // namespace
}  // namespace qxsvg::test
