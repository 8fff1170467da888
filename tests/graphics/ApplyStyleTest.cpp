// From texts to values: what each way of giving a property leads to, and in which order styles win.
#include <gtest/gtest.h>

#include <tuple>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "tests/graphics/ElementFixture.h"

namespace qxsvg {
namespace {

using test::TTree;
using enum TSVGStyleProperty;

constexpr TQXGPColor Black = 0xff000000, Red = 0xffff0000, Blue = 0xff0000ff, Lime = 0xff00ff00;

TEST(ApplyStyle, Fill) {
  using enum TQXGPBrushKind;
  const std::tuple<const char*, const char*, const char*, TQXGPBrushKind, TQXGPColor, bool>
      Cases[] = {
          {"nothing given", "", "", bkSolid, Black, true},
          {"inherited", "fill='red'", "", bkSolid, Red, true},
          {"none ends it", "fill='red'", "fill='none'", bkNone, Black, false},
          {"inherit restores it", "fill='red'", "fill='none' style='fill:inherit'", bkSolid, Red,
           true},
          {"style beats attribute", "", "fill='blue' style='fill:red'", bkSolid, Red, false},
          {"an empty text says nothing", "fill='red'", "fill=''", bkSolid, Red, true},
          {"an unknown colour keeps the value and ends inheritance", "fill='red'", "fill='nocolor'",
           bkSolid, Black, false},
          {"so does one that cannot be read", "fill='red'", "fill='#ggg'", bkSolid, Black, false},
          {"currentColor is the colour given here", "color='red'",
           "color='lime' fill='currentColor'", bkSolid, Lime, false},
          {"or above", "color='red'", "fill='currentColor'", bkSolid, Red, false},
          {"a server that is not there", "", "fill='url(#nosuch)'", bkSolid, Black, false},
          {"a server's colour is not split off", "", "fill='url(#x) red'", bkSolid, Black, false},
      };
  for (const auto& [What, Parent, Attributes, Kind, Color, IsMarked] : Cases) {
    TTree Tree("<g " + std::string(Parent) + "><rect id='r' " + Attributes + "/></g>");
    EXPECT_EQ(Tree["r"].GetBrush().Kind(), Kind) << What;
    EXPECT_EQ(Tree["r"].GetBrush().Color(), Color) << What;
    EXPECT_EQ(Tree["r"].Inherits().Has(ipFill), IsMarked) << What;
  }
}

TEST(ApplyStyle, AServerStaysBehindAPlainColor) {
  // What names a server is taken before colours are read, and a text that names none keeps it.
  TTree Tree(
      "<linearGradient id='a'><stop stop-color='red'/></linearGradient>"
      "<rect id='r' class='c' fill='red'/><rect id='s' color='url(#a)' stroke='blue'/>");
  Tree.Document.ReadStyles(u".c { fill: url(#a) }");
  Tree.Document.ApplyStyles();
  EXPECT_EQ(Tree["r"].GetBrush().URI(), u"a");
  EXPECT_EQ(Tree["r"].GetBrush().Kind(), TQXGPBrushKind::bkGradient);
  // A colour that names a server names it for both paints.
  EXPECT_EQ(Tree["s"].GetBrush().URI(), u"a");
  EXPECT_EQ(Tree["s"].GetPen().URI(), u"a");
}

TEST(ApplyStyle, Pens) {
  TTree Tree(
      "<rect id='r' stroke='red' stroke-width='10%' stroke-linecap='round' "
      "stroke-linejoin='bevel' stroke-miterlimit='0.5' stroke-dasharray='5,3,2' "
      "stroke-dashoffset='1em' font-size='6'/>"
      "<rect id='zero' stroke='red' stroke-dasharray='5,0'/>"
      "<rect id='unit' stroke-width='1in'/>");
  const TSVGPen& Pen = Tree["r"].GetPen();
  EXPECT_EQ(Pen.Thickness(), 0.1f);
  EXPECT_TRUE(Pen.ThicknessIsPercent());
  EXPECT_EQ(Pen.StartCap(), TQXGPLineCap::lcRound);
  EXPECT_EQ(Pen.EndCap(), TQXGPLineCap::lcRound);
  EXPECT_EQ(Pen.DashCap(), TQXGPDashCap::dcRound);
  EXPECT_EQ(Pen.MiterLimit(), 4) << "below 1 there is no limit";
  EXPECT_EQ(std::vector<float>(Pen.CustomDash().begin(), Pen.CustomDash().end()),
            (std::vector<float>{5, 3, 2, 5, 3, 2}));
  EXPECT_EQ(Pen.DashArrayPreferredUnits().size(), 3u);
  EXPECT_EQ(Pen.GetDashOffsetValue(), 6);
  EXPECT_EQ(Tree["zero"].GetPen().Dash(), TQXGPStrokeDash::sdSolid);
  EXPECT_EQ(Tree["unit"].GetPen().Thickness(), 96);
}

TEST(ApplyStyle, FontSizes) {
  const std::pair<std::string, float> Cases[] = {{"2em", 20},     {"20", 20},     {"15pt", 20},
                                                 {"larger", 12},  {"medium", 12}, {"inherit", 10},
                                                 {"garbage", 11}, {"", 10}};
  for (const auto& [Size, Expected] : Cases) {
    TTree Tree("<g font-size='10'><g><text id='t' font-size='" + Size + "'/></g></g>");
    EXPECT_NEAR(Tree["t"].GetFont().Size(), Expected, 1e-4) << Size;
  }
  // The size is there before the lengths are read, and one of nothing leaves them finite.
  TTree Tree("<rect id='r' width='2em' font-size='10'/><rect id='z' font-size='0' x='oneem'/>");
  EXPECT_EQ(Tree["r"].GetWidth(), 20);
  EXPECT_EQ(Tree["z"].Xu().Raw(), 0);
}

TEST(ApplyStyle, Fonts) {
  TTree Tree(
      "<g font-weight='bold' font-style='italic' text-decoration='underline' "
      "font-variant='small-caps'><text id='t'/><text id='u' font-weight='300' "
      "text-decoration='overline' font-style='normal'/></g>");
  const TSVGFont& Inherited = Tree["t"].GetFont();
  EXPECT_TRUE(Inherited.Style().Has(TFontStyle::fsBold) &&
              Inherited.Style().Has(TFontStyle::fsItalic) && Inherited.IsDecorated());
  EXPECT_EQ(Inherited.FontVariant(), TSVGFontVariant::fvSmallCaps);
  const TSVGFont& Own = Tree["u"].GetFont();
  EXPECT_TRUE(Own.Style().IsEmpty());
  EXPECT_TRUE(Own.ExtendStyles().Has(TExtendedFontStyle::fsOverline));
}

TEST(ApplyStyle, AppliesSeveralStylesOneOverTheOther) {
  TTree Tree("<rect id='r'/>");
  TSVGGraphicElement& Rect = Tree["r"];
  Rect.ApplyStyle(TSVGStyle(u"", u"fill:red;clip:rect(1 2 3 4);opacity:.5"));
  Rect.ApplyStyle(TSVGStyle(u"", u"fill:;clip:other;enable-background:new 1 2 3 4"));
  EXPECT_EQ(Rect.GetBrush().Color(), Red);
  EXPECT_EQ(Rect.ClipRect(), QXRect(4, 1, 2, 3));
  EXPECT_EQ(Rect.BackgroundRect().Left, 1);
  EXPECT_EQ(Rect.GetOpacity(), 0.5f);
  Rect.ApplyStyle(TSVGStyle(u"", u"clip:auto;fill:inherit"));
  EXPECT_EQ(Rect.ClipRect(), TRectF());
  EXPECT_TRUE(Rect.Inherits().Has(ipFill));
}

TEST(ApplyStyle, TellsTheDocumentOnceAndTheChildrenWhatTheyInherit) {
  TTree Tree("<g id='g'><g><rect id='r'/></g></g>");
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Black);
  int Changes = 0;
  Tree.Document.OnChange = [&](TPersistent*) { ++Changes; };
  Tree.Document.BeginUpdate();
  Tree["g"].ApplyStyle(TSVGStyle(u"", u"fill:red;stroke:lime;font-size:20"));
  Tree.Document.EndUpdate();
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Red);
  EXPECT_EQ(Tree["r"].GetPen().Color(), Lime);
  EXPECT_EQ(Tree["r"].GetFont().Size(), 20);
}

// --- Cascade

TEST(Cascade, SelectorsMatchWithTheirSpecificity) {
  TTree Tree(
      "<g id='g' lang='en-US, de' class='big Wide'><rect id='r' class='c' fill='red'>"
      "<title/></rect><circle id='s'/></g><g id='h'><rect id='x'/></g>");
  TSVGGraphicElement& Group = Tree["g"];
  TSVGGraphicElement& Rect = Tree["r"];
  const std::tuple<TSVGGraphicElement&, std::int32_t, std::vector<StringView>> Cases[] = {
      {Rect,
       -1,
       {u"", u"Rect", u"#R", u"[x]", u"[id=q]", u"[fill~=re]", u"[foo=bar]", u"g r",
        u"[stroke=none]"}},
      // One that begins with "*" matches even where it fails.
      {Rect, 0, {u"*", u"*.x"}},
      {Rect, 1, {u"rect", u"rect:hover"}},
      {Rect, 10, {u".c", u".C", u"*.c", u"[fill]", u"[stroke]", u"[class]"}},
      {Rect, 20, {u"[id=r]", u"[id^=r]", u"[fill=red]", u"[fill$=d]", u"[fill*=e]"}},
      {Rect, 100, {u"#r", u".c.c.c.c.c.c.c.c.c.c"}},
      {Rect, 111, {u"rect#r.c"}},
      {Rect, 1120, {u"#r.c.c.c.c.c.c.c.c.c.c.c.c"}},
      {Group, 20, {u"[class=big]", u"[class|=Wi]", u"[lang^=en]"}},
      {Group, 10, {u":lang(EN)"}},
      // The word of a combinator is an identifier, and the left end gets the style.
      {Group, 11, {u"g r", u"g > r"}},
      {Group, -1, {u":lang(fr)", u"g rect", u"a >"}},
      {Tree["h"], -1, {u"g r"}},
  };
  for (const auto& [Element, Specificity, Selectors] : Cases)
    for (const StringView Selector : Selectors)
      EXPECT_EQ(Element.Matches(Selector), Specificity) << ToUtf8(Selector);
  EXPECT_THROW(Rect.Matches(u"[a!b]"), ESVGException);
  Tree.Document.ReadStyles(u"[a^] { fill: red }");
  EXPECT_THROW(Tree.Document.ApplyStyles(), ESVGException);
}

TEST(Cascade, AnElementWithoutDocumentFailsEveryCombinator) {
  TSVGGroup Group(nullptr);
  EXPECT_EQ(Group.Matches(u"g r"), -1);
  EXPECT_EQ(Group.Matches(u"g"), 1);
  Group.Style().SetStyle(u"opacity:.5");
  Group.ApplyStyles();
  EXPECT_EQ(Group.GetOpacity(), 0.5f);
}

TEST(Cascade, RisingSpecificityThenTheElementItself) {
  const std::tuple<const char*, const char*, TQXGPColor> Cases[] = {
      {".c { fill: red } rect { fill: lime }", "class='c'", Red},
      {"#r { fill: red } .c { fill: lime }", "class='c'", Red},
      {".c { fill: red }", "class='c' fill='blue'", Blue},
      {"#r { fill: red }", "style='fill:blue'", Blue},
      {"rect, g { fill: red }", "", Red},
      {"rect { fill: red } rect { stroke: blue }", "", Red},
      {"/* c */rect {fill: /* x */red}", "", Red},
      {"rect { fill: red } .c { fill: inherit }", "class='c'", Black},
      // Ten identifiers weigh more than the element's own style.
      {"#r#r#r#r#r#r#r#r#r#r { fill: red }", "fill='blue'", Red},
      {"rect { fill: red", "", Black},
      // No rule of the at kind and no importance is known.
      {"@media print { rect { fill: red } } rect { fill: lime }", "", Black},
      {"@media all {} rect { fill: red }", "", Red},
      {"rect { fill: red !important }", "", Black},
      {"[class=c] { fill: red } #r { fill: red !important }", "class='c'", Red},
  };
  for (const auto& [Sheet, Attributes, Expected] : Cases) {
    TTree Tree("<style>" + std::string(Sheet) + "</style><rect id='r' " + Attributes + "/>");
    EXPECT_EQ(Tree["r"].GetBrush().Color(), Expected) << Sheet;
  }
}

TEST(Cascade, ANestedDocumentIsStyledByItsOwnSheetAndThenByTheOuterOne) {
  TTree Tree(
      "<style>svg { fill: red }</style><svg id='i'><style>svg { fill: blue; opacity: .5 }</style>"
      "</svg>");
  EXPECT_EQ(Tree["i"].GetBrush().Color(), Red);
  EXPECT_EQ(Tree["i"].GetOpacity(), 0.5f);
}

TEST(Cascade, ARuleThatIsNotEnabledIsLeftOut) {
  TTree Tree("<style>rect { fill: red }</style><rect id='r'/>");
  TSVGStyle* Rule = *Tree.Document.Styles().Find(u"rect");
  Rule->SetEnabled(false);
  Tree["r"].GetBrush().SetColor(Blue);
  Tree.Document.ApplyStyles();
  EXPECT_EQ(Tree["r"].GetBrush().Color(), Blue);
}

TEST(Cascade, RefusesStyleSheetsThatMultiply) {
  const auto SheetOf = [](int Selectors, std::size_t BodySize) {
    String Result = u"a";
    for (int I = 1; I < Selectors; ++I) Result += u",a" + FromUtf8(std::to_string(I));
    return Result + u"{x:" + String(BodySize, u'1') + u"}";
  };
  const auto Refusal = [](TSVGDocument& Document, StringView Sheet) {
    try {
      Document.ReadStyles(Sheet);
      Document.ApplyStyles();
    } catch (const ESVGException& Error) {
      return String(Error.Message());
    }
    return String();
  };
  TSVGDocument Document;
  EXPECT_EQ(Refusal(Document, SheetOf(1, Limits::StyleCopies + 1)), u"");
  EXPECT_EQ(Refusal(Document, SheetOf(1000, 10000)), SStyleCopyLimit);
  // What one sheet has used up, the next one lacks.
  EXPECT_EQ(Refusal(Document, SheetOf(2, 1)), SStyleCopyLimit);
  Document.Clear();
  EXPECT_EQ(Refusal(Document, SheetOf(2, 1)), u"");
  EXPECT_EQ(Refusal(Document, SheetOf(Limits::StyleRules + 1, 1)), SStyleRuleLimit);

  // A rule of many tests, and many elements to make them at.
  std::string Crowd;
  for (int I = 0; I < 2000; ++I) Crowd += "<g/>";
  TTree Tree(Crowd);
  String Tests;
  for (int I = 0; I < 600000; ++I) Tests += u":a";
  EXPECT_EQ(Refusal(Tree.Document, Tests + u"{x:1}"), SStyleMatchLimit);

  // Many rules, and one element whose classes are many.
  std::string Classes, Rules;
  for (int I = 0; I < 300000; ++I) Classes += "c ";
  for (int I = 0; I < 60000; ++I) Rules += ".r" + std::to_string(I) + "{}";
  TTree Single("<g class='" + Classes + "'/>");
  EXPECT_EQ(Refusal(Single.Document, FromUtf8(Rules)), SStyleMatchLimit);
}

TEST(Cascade, TheLastElementReadDecidesWhatIsPreferredAsStyle) {
  TTree Tree("<rect id='a' style='fill:red'/><rect id='b' style='stroke:blue'/>");
  EXPECT_EQ(&Tree["a"].GetPreferredStyles(), &Tree.Document.GetPreferredStyles());
  EXPECT_EQ(Tree["a"].GetPreferredStyles().Value(), TSVGStyleProperties{ipStroke});
}

}  // namespace
}  // namespace qxsvg
