// From values back to texts: what is written, what is left out, copies, and the published
// properties.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "document/XML.h"
#include "tests/graphics/ElementFixture.h"

namespace qxsvg {
namespace {

using test::TTree;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using enum TSVGStyleProperty;

// The attributes that an element writes, other than its identifier and geometry.
std::vector<std::string> Saved(TSVGGraphicElement& Element) {
  const auto XML = CreateXMLDocument();
  IXMLNode* Root = XML->CreateRoot(u"x");
  Element.SaveToXML(*Root);
  std::vector<std::string> Result;
  for (const TXMLAttribute& Attribute : Root->Attributes()) {
    const std::string Name = ToUtf8(Attribute.LocalName());
    if (Name != "id" && Name != "x" && Name != "y" && Name != "width" && Name != "height")
      Result.push_back(Name + "=" + ToUtf8(Attribute.Value));
  }
  return Result;
}

TEST(SaveElement, WritesEachPropertyAsItWasGiven) {
  std::istringstream Texts(
      "alignment-baseline=middle|baseline-shift=super|baseline-shift=20%|clip=rect(1 2 3 4)|"
      "clip-path=url(#c)|clip-path=url(#c/1:2)|clip-rule=evenodd|color=red|"
      "color-interpolation=linearRGB|color-rendering=optimizeSpeed|cursor=pointer|"
      "direction=rtl|display=none|dominant-baseline=central|enable-background=new 1 2 3 4|"
      "fill=none|fill=url(#c)|fill=url(#c/1:2)|fill=#123456|fill-opacity=0.5|"
      "fill-rule=evenodd|filter=url(#c)|filter=url(files/f.svg#f)|flood-color=red|"
      "flood-opacity=0.5|font=12px serif|font-family=Nosuch|font-size=20|font-style=italic|"
      "font-variant=small-caps|font-weight=600|glyph-orientation-horizontal=90deg|"
      "glyph-orientation-vertical=180deg|kerning=3|kerning=auto|letter-spacing=2em|"
      "letter-spacing=normal|marker-end=url(#c)|marker-mid=none|opacity=0.5|overflow=hidden|"
      "pointer-events=all|shape-rendering=crispEdges|stop-color=red|stroke=blue|"
      "stroke-dasharray=4 2|stroke-dashoffset=3|stroke-dashoffset=50%|stroke-linecap=round|"
      "stroke-linejoin=bevel|stroke-miterlimit=7|stroke-opacity=0.25|stroke-width=2|"
      "stroke-width=10%|stroke-width=2mm|text-anchor=middle|text-decoration=blink|"
      "text-rendering=optimizeSpeed|transform=translate(3 4)|"
      "vector-effect=non-scaling-stroke|visibility=hidden|word-spacing=3|writing-mode=tb|");
  for (std::string Text; std::getline(Texts, Text, '|');) {
    SCOPED_TRACE(Text);
    const std::size_t Equals = Text.find('=');
    const std::string Name = Text.substr(0, Equals);
    const std::string Attribute = Name + "='" + Text.substr(Equals + 1) + "'";
    const std::string Named = "<g id='c'/><g id='c/1:2'/>";
    TTree Tree(Named + "<g id='g' " + Attribute + "/>");
    EXPECT_THAT(Saved(Tree["g"]), testing::Contains(Text));

    // Given as style it goes back as style.
    if (Name == "transform") continue;
    TTree Styled(Named + "<g id='g' style='" + Name + ":" + Text.substr(Equals + 1) + "'/>");
    EXPECT_THAT(Saved(Styled["g"]),
                testing::Contains("style=" + Name + ":" + Text.substr(Equals + 1)));
  }
}

TEST(SaveElement, LeavesOutWhatTheTreeSaysAnyway) {
  TTree Tree(
      "<style>.s { stop-color: red; stop-opacity: .5 }</style><g id='c'/>"
      "<path id='p' style='marker:url(#c)'/><symbol id='v' overflow='visible'/>"
      "<symbol id='h' overflow='hidden'/><linearGradient><stop id='s' class='s'/>"
      "</linearGradient>");
  EXPECT_THAT(Saved(Tree["c"]), ElementsAre());
  Tree["c"].Inherits().Set(ipOpacity, true);
  EXPECT_THAT(Saved(Tree["c"]), ElementsAre("opacity=inherit"));
  EXPECT_THAT(Saved(Tree["p"]), UnorderedElementsAre("marker-start=url(#c)", "marker-mid=url(#c)",
                                                     "marker-end=url(#c)"));
  // A stop writes what a style sheet gave it; a viewport has a default of its own.
  EXPECT_THAT(Saved(Tree["s"]), testing::IsSupersetOf({"stop-color=red", "stop-opacity=0.5"}));
  EXPECT_THAT(Saved(Tree["v"]), testing::Contains("overflow=visible"));
  EXPECT_THAT(Saved(Tree["h"]), testing::Not(testing::Contains("overflow=hidden")));
}

// --- Clear and copies

constexpr const char* Everything =
    "fill='url(#c)' stroke='blue' stroke-width='3' opacity='.5' font-size='20' kerning='3' "
    "clip-path='url(#c)' clip='rect(1 2 3 4)' visibility='hidden' color='red' overflow='hidden' "
    "marker-end='url(#c)' cursor='help' writing-mode='tb' fill-rule='evenodd' "
    "transform='scale(2 2)' x='1' y='2' width='3' height='4' style='fill-opacity:.25'";

TEST(CopyElement, ACloneLooksTheSame) {
  TTree Tree("<g id='c'/><g id='g' " + std::string(Everything) + "><rect id='r'/></g>");
  auto Copy = Tree["g"].Clone(&Tree.Document);
  auto& Group = *Copy->AsGraphicElement();
  Tree.Document.Items().Add(std::move(Copy));
  const auto Before = Saved(Tree["g"]);
  EXPECT_EQ(Saved(Group), Before);
  EXPECT_EQ(Group.GetWidth(), 3);
  EXPECT_EQ(Group.Items().Count(), 1);
  Tree.Document.ApplyStyles();
  EXPECT_EQ(Saved(Group), Before) << "the copy's own texts say the same";
}

TEST(CopyElement, TextsOfOwnValuesGoIntoAStyle) {
  TTree Tree("<g fill='red'><rect id='r' stroke='blue' font='12px serif'/></g>");
  TSVGStyle Style;
  Style.Assign(&Tree["r"]);
  EXPECT_EQ(Style.GetStyleProp(ipStroke), u"blue");
  EXPECT_EQ(Style.GetStyleProp(ipFill), u"");
  EXPECT_EQ(Style.GetStyleProp(ipFont), u"12px serif");
  EXPECT_EQ(Style.GetStyleProp(ipOverflow), u"visible");
  EXPECT_EQ(Tree["r"].EffectivePropertyText(ipFill), u"red");
}

// --- Published

// What a stream would carry from one element to another.
void Transfer(const TSVGGraphicElement& From, TSVGGraphicElement& To) {
  for (const TProperty& Row : TSVGGraphicElement::Class.Properties)
    if (Row.Write && (!Row.IsStored || Row.IsStored(From))) Row.Write(To, Row.Read(From));
  To.Inherits().Assign(&From.Inherits());
}

TEST(PublishedProperties, CarryAnElement) {
  TTree Tree("<g id='c'/><g id='g' " + std::string(Everything) + "/><g id='other'/>");
  Transfer(Tree["g"], Tree["other"]);
  EXPECT_EQ(Saved(Tree["other"]), Saved(Tree["g"]));
  EXPECT_EQ(Tree["other"].ClipRect(), Tree["g"].ClipRect());
}

}  // namespace
}  // namespace qxsvg
