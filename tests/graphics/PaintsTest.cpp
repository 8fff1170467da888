// Brush, pen and font: their own rules, and how an element resolves what it inherits.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "graphics/surface/FontEngine.h"
#include "runtime/Services.h"
#include "tests/graphics/ElementFixture.h"
#include "tests/support/Watch.h"

namespace qxsvg {
namespace {

using test::TTree;
using enum TSVGStyleProperty;
using enum TQXGPBrushKind;

constexpr TQXGPColor Black = 0xff000000, Red = 0xffff0000, Blue = 0xff0000ff;

// --- The objects

TEST(SVGBrush, KindOpacityAndURI) {
  TSVGBrush Brush;
  test::TWatch Watch(Brush);
  Brush.SetURI(u"a");
  Brush.SetURI(u"a");
  EXPECT_EQ(Watch.Take(), 1);
  Brush.SetKind(bkGradient);
  EXPECT_EQ(Brush.URI(), u"a");
  Brush.SetKind(bkSolid);
  EXPECT_EQ(Brush.URI(), u"");
  Brush.SetOpacity(2);
  EXPECT_EQ(Brush.Opacity(), 1);
  Brush.SetOpacity(0.5f);
  Brush.SetColor(0xffabcdef);
  Brush.UpdateColorOpacity();
  EXPECT_EQ(Brush.Color(), 0x80abcdefu);
  Brush.SetDefaultOpacity(0.25f);
  Brush.Clear();
  EXPECT_EQ(Brush.Opacity(), 0.25f);
  EXPECT_FALSE(Brush.IsOpacityStored());
}

TEST(SVGPen, WritesItsDashes) {
  TSVGPen Pen;
  Pen.SetThickness(1.5f);
  const std::pair<TQXGPStrokeDash, StringView> Cases[] = {
      {TQXGPStrokeDash::sdSolid, u"none"},
      {TQXGPStrokeDash::sdDash, u"4.5 1.5"},
      {TQXGPStrokeDash::sdDot, u"1.5 1.5"},
      {TQXGPStrokeDash::sdDashDot, u"4.5 1.5 1.5 1.5"},
      {TQXGPStrokeDash::sdDashDotDot, u"4.5 1.5 1.5 1.5 1.5 1.5"},
  };
  for (const auto& [Dash, Text] : Cases) {
    Pen.SetDash(Dash);
    EXPECT_EQ(Pen.GetDashArray(), Text);
    EXPECT_EQ(Pen.CustomDashArray(), u"none");
  }
}

TEST(SVGPen, TakesCustomDashes) {
  TSVGPen Pen;
  Pen.SetCustomDashArray(u"5mm 50% 2");
  EXPECT_EQ(Pen.CustomDash().size(), 6u);
  // The repeated half has neither units nor percent signs.
  EXPECT_EQ(Pen.DashArrayPreferredUnits().size(), 3u);
  EXPECT_EQ(Pen.GetDashArray(), Pen.CustomDashArray());
  EXPECT_TRUE(Pen.CustomDashArray().ends_with(u" 0.5 2")) << ToUtf8(Pen.CustomDashArray());
  // A dash that is no length leaves the pen as it is.
  const String Before = Pen.CustomDashArray();
  Pen.SetCustomDashArray(u"4 0");
  EXPECT_EQ(Pen.CustomDashArray(), Before);
  for (const StringView Text : {u"none", u"", u"  "}) {
    Pen.SetCustomDashArray(u"1 2");
    Pen.SetCustomDashArray(Text);
    EXPECT_EQ(Pen.Dash(), TQXGPStrokeDash::sdSolid);
  }
}

TEST(SVGPen, AnOffsetIsAChange) {
  TSVGPen Pen;
  test::TWatch Watch(Pen);
  Pen.SVGDashOffset().SetValue(3);
  EXPECT_EQ(Watch.Take(), 1);
}

// Knows the families it was made with.
class TFakeFonts : public IFontEngine {
 public:
  explicit TFakeFonts(std::vector<String> Families) : FFamilies(std::move(Families)) {}
  bool IsFontFamilyAvailable(StringView Name) override {
    ++Asked;
    return std::find(FFamilies.begin(), FFamilies.end(), Name) != FFamilies.end();
  }
  std::shared_ptr<const IFontFace> GetFace(StringView, bool, bool) override { return nullptr; }
  int Asked = 0;

 private:
  std::vector<String> FFamilies;
};

class SVGFont : public testing::Test {
 protected:
  void SetUp() override {
    FFonts = std::make_shared<TFakeFonts>(std::vector<String>{u"Arial", u"Verdana", u"Tahoma"});
    Services().Fonts.Install([Fonts = FFonts] { return Fonts; });
  }
  void TearDown() override { Services().Fonts.Install(nullptr); }
  std::shared_ptr<TFakeFonts> FFonts;
};

TEST_F(SVGFont, ChoosesTheLastAvailableFamily) {
  const std::pair<StringView, StringView> Cases[] = {
      {u"Nosuch, Arial, Verdana", u"Verdana"},
      {u"Arial, Nosuch", u"Arial"},
      // The first generic name ends the search; cursive is none of those that do.
      {u"Arial, SERIF, Verdana", u"Arial"},
      {u"Arial, cursive, Verdana", u"Verdana"},
      {u"Nosuch", u"Tahoma"},
      {u"\"Arial\"", u"Arial"},
  };
  for (const auto& [Families, Name] : Cases) {
    TTree Tree("<text id='t' font-family='" + ToUtf8(Families) + "'/>");
    EXPECT_EQ(Tree["t"].GetFont().Name(), Name) << ToUtf8(Families);
  }
  TSVGFont Font;
  Font.Families().SetCommaText(u"Arial");
  Font.Families().SetCommaText(u"Nosuch");
  EXPECT_EQ(Font.Name(), u"Arial") << "without an available family the name stays";
  EXPECT_EQ(Font.FamiliesToString(), u"Nosuch");
  Font.Families().Add(u"Two Words");
  EXPECT_EQ(Font.FamiliesToString(), u"Nosuch, 'Two Words'");
}

TEST_F(SVGFont, TheEngineRestsUntilATextAsks) {
  TTree Tree(
      "<g font-family='Arial' style='font-family:Verdana'><rect id='r' width='1em'/>"
      "<g><text id='t'/></g></g>");
  Tree.Document.ApplyStyles();
  EXPECT_GT(Tree["r"].GetWidth(), 0);
  Tree["r"].GetFont();
  EXPECT_EQ(FFonts->Asked, 0);
  EXPECT_EQ(Tree["t"].GetFont().Name(), u"Verdana");
  EXPECT_GT(FFonts->Asked, 0);
}

TEST_F(SVGFont, WeightIsTheBoldBit) {
  TSVGFont Font;
  Font.SetWeight(TSVGFontWeight::fw600);
  EXPECT_TRUE(Font.Style().Has(TFontStyle::fsBold));
  Font.SetWeight(TSVGFontWeight::fwNone);
  EXPECT_TRUE(Font.Style().Has(TFontStyle::fsBold)) << "left alone";
  Font.SetWeight(TSVGFontWeight::fw500);
  EXPECT_FALSE(Font.Style().Has(TFontStyle::fsBold));
  Font.SetWeight(TSVGFontWeight::fwBold);
  Font.Clear();
  EXPECT_FALSE(Font.Style().Has(TFontStyle::fsBold));
  EXPECT_EQ(Font.Weight(), TSVGFontWeight::fwBold) << "Clear keeps it";
  EXPECT_FALSE(Font.IsDecorated());
  Font.SetExtendStyles({TExtendedFontStyle::fsBlink});
  EXPECT_FALSE(Font.IsDecorated());
  Font.SetExtendStyles({TExtendedFontStyle::fsOverline});
  EXPECT_TRUE(Font.IsDecorated());
}

// --- Resolution

TEST(Paints, AParentsChangeReachesTheChildren) {
  TTree Tree("<g id='g' fill='red'><g><rect id='r'/></g></g>");
  int Changes = 0;
  Tree.Document.OnChange = [&](TPersistent*) { ++Changes; };
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Red);
  Tree["r"].GetPen(), Tree["r"].GetFont();
  EXPECT_EQ(Changes, 0) << "resolving is no change";
  Tree["g"].GetBrush().SetColor(Blue);
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Blue);
  Tree["g"].Inherits().Set(ipStroke, false);
  Tree["g"].GetPen().SetKind(bkSolid);
  EXPECT_EQ(Tree["r"].GetPen().Kind(), bkSolid);

  // A parent's marks are not recognised below it; what was resolved stays until something else
  // drops it.
  Tree["g"].Inherits().Set(ipFill, true);
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Blue);
  Tree["g"].Reset();
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Black);
}

TEST(Paints, AnInheritedServerPaintsForTheElementsOwnBox) {
  TTree Tree(
      "<linearGradient id='a'><stop offset='0' stop-color='red'/>"
      "<stop offset='1' stop-color='blue'/></linearGradient>"
      "<g fill='url(#a)' stroke='url(#a)' fill-opacity='.5'><g><rect id='r' x='10' "
      "width='20' height='20'/></g></g>");
  const TSVGBrush& Brush = Tree["r"].GetBrush();
  EXPECT_EQ(Brush.Kind(), bkGradient);
  EXPECT_EQ(Brush.Gradient()->Points().Count(), 2u);
  EXPECT_EQ(Brush.Opacity(), 0.5f);
  TSVGPen& Pen = Tree["r"].GetPen();
  EXPECT_EQ(Pen.Kind(), bkGradient);
  EXPECT_EQ(Pen.InnerBrush()->Gradient()->Points().Count(), 2u);
}

TEST(Paints, AServerThatIsMissingLeavesThePaint) {
  TTree Tree("<rect id='r' fill='url(#none)' stroke='url(#none)'/><rect id='w' fill='url(#r)'/>");
  EXPECT_EQ(Tree["r"].GetBrush().Kind(), bkSolid);
  // A line is drawn: the pen was black before.
  EXPECT_EQ(Tree["r"].GetPen().Kind(), bkSolid);
  EXPECT_EQ(Tree["r"].GetPen().Color(), Black);
  EXPECT_EQ(Tree["w"].GetBrush().Kind(), bkSolid) << "an element that is no server";
}

TEST(Paints, NothingIsInheritedAsNothing) {
  // The name of the server outlives the later paint.
  TTree Tree(
      "<g fill='url(#none)' stroke='url(#none)' style='fill:none;stroke:none'><rect id='r'/></g>");
  EXPECT_EQ(Tree["r"].GetBrush().Kind(), bkNone);
  EXPECT_EQ(Tree["r"].GetPen().Kind(), bkNone);
}

TEST(Paints, CurrentColorIsTakenWhenStylesAreApplied) {
  TTree Tree("<g id='g' color='red' fill='currentColor'/>");
  Tree["g"].SetColor(Blue);
  EXPECT_EQ(Tree["g"].GetBrush().Color(), Red);
}

TEST(Paints, PenPartsInheritOneByOne) {
  TTree Tree(
      "<g stroke='red' stroke-width='3' stroke-linecap='square' stroke-dasharray='1 2' "
      "stroke-dashoffset='4' stroke-opacity='.5'><rect id='r' stroke-width='7'/>"
      "<rect id='d' stroke-dasharray='none'/></g>");
  const TSVGPen& Pen = Tree["r"].GetPen();
  EXPECT_EQ(Pen.Color(), Red);
  EXPECT_EQ(Pen.Thickness(), 7);
  EXPECT_EQ(Pen.EndCap(), TQXGPLineCap::lcSquare);
  EXPECT_EQ(Pen.Opacity(), 0.5f);
  EXPECT_EQ(Pen.GetDashOffsetValue(), 4);
  EXPECT_EQ(Pen.Dash(), TQXGPStrokeDash::sdCustom);
  EXPECT_EQ(Tree["d"].GetPen().Dash(), TQXGPStrokeDash::sdSolid);
}

TEST(Paints, ASolidParentLeavesTheChildsDashes) {
  TTree Tree("<g id='g' stroke='red'><rect id='r' stroke-dasharray='5 5'/></g>");
  Tree["r"].Inherits().Set(ipStrokeDasharray, true);
  EXPECT_EQ(Tree["r"].GetPen().Dash(), TQXGPStrokeDash::sdCustom);
  EXPECT_EQ(Tree["r"].GetPen().CustomDash().size(), 2u);
  Tree["g"].Pen().SetDash(TQXGPStrokeDash::sdDashDot);
  EXPECT_EQ(Tree["r"].GetPen().Dash(), TQXGPStrokeDash::sdDashDot);
  // Dashes that came from above do not become the child's own, but those of a copy of its pen.
  TSVGPen Copy(nullptr, TQXGPBrushKind::bkSolid, 0);
  Copy.Assign(&Tree["r"].GetPen());
  EXPECT_TRUE(Copy.HasOwnDashes());
  Tree["g"].Pen().SetDash(TQXGPStrokeDash::sdSolid);
  EXPECT_EQ(Tree["r"].GetPen().Dash(), TQXGPStrokeDash::sdSolid);
}

TEST(Paints, AServerThatGoesTakesItsPaintAlong) {
  TTree Tree("<linearGradient id='l'/><rect id='r' fill='url(#l)' stroke='url(#l)'/>");
  TSVGElement& Server = Tree["l"];
  for (const auto& [ID, Kind] :
       {std::pair(u"l", bkGradient), {u"x", bkSolid}, {u"l", bkGradient}}) {
    Server.SetID(ID);
    Tree["r"].Reset();
    EXPECT_EQ(Tree["r"].GetBrush().Kind(), Kind);
    EXPECT_EQ(Tree["r"].GetPen().Kind(), Kind);
  }
}

TEST(Paints, AFontWithoutParentStaysAsItIs) {
  TSVGGroup Group(nullptr);
  Group.GetFont().SetSize(30);
  EXPECT_EQ(Group.GetFont().Size(), 30);
  EXPECT_EQ(Group.GetUnitFactors()[static_cast<std::size_t>(TSVGUnit::suFontSize)], 30);
  EXPECT_EQ(Group.GetUnitFactors()[static_cast<std::size_t>(TSVGUnit::suFontXHeight)], 15);
}

TEST(Paints, AChainOfPatternsEnds) {
  // Each pattern is filled with the next, and the last with the first.
  std::string Body;
  for (int I = 0; I < 100; ++I)
    Body += "<pattern id='p" + std::to_string(I) +
            "' patternUnits='userSpaceOnUse' width='4' height='4'><rect width='4' height='4' "
            "fill='url(#p" +
            std::to_string((I + 1) % 100) + ")'/></pattern>";
  TTree Tree(Body + "<rect id='r' width='9' height='9' fill='url(#p0)'/>");
  EXPECT_EQ(Tree["r"].GetBrush().Kind(), bkBitmap);
}

}  // namespace
}  // namespace qxsvg
