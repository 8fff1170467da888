// What a document answers besides its tree: settings, classes, features, rules, and the host's word
// on what is drawn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/QXSVG.h"
#include "foundation/Lookups.h"
#include "runtime/Exceptions.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "tests/support/LoadedDocument.h"
#include "text/QXSVG.Text.h"

namespace qxsvg {
namespace {

using test::TLoaded;

using testing::ElementsAre;

float FactorOf(const TSVGUnitFactors& Factors, TSVGUnit Unit) {
  return Factors[static_cast<std::size_t>(Unit)];
}

TEST(DocumentClasses, AreFoundByNameAndType) {
  EXPECT_EQ(GetSVGClass(u"TSVGRectangle"), &TSVGRectangle::Class);
  EXPECT_EQ(&FindSVGClass(u"TSVGTextRef"), &TSVGTextRef::Class);
  EXPECT_EQ(GetSVGClass(u"rect"), nullptr);
  EXPECT_THROW(FindSVGClass(u"TSVGGraphicElement"), EClassNotFound) << "no element is made of it";
  EXPECT_EQ(GetElementType(TSVGDocument::Class), TSVGElementType::etDoc);
  EXPECT_EQ(GetElementType(TSVGElement::Class), TSVGElementType::etNone);
  EXPECT_EQ(GetElementType(TSVGPlaceholder::Class), TSVGElementType::etView)
      << "the first of the types that placeholders stand for";
  TSVGPlaceholder Placeholder(nullptr);
  EXPECT_EQ(Placeholder.SVGTypeName(), u"TSVGPlaceholder");
  Placeholder.SetName(u"feFlood");
  EXPECT_EQ(Placeholder.SVGTypeName(), u"feFlood");
}

TEST(DocumentSettings, UnitFactorsFollowTheResolutionAndTheFont) {
  TLoaded Doc("<svg font-size='20'><g id='g'/></svg>");
  int Changes = 0;
  Doc.OnChange = [&](TPersistent*) { ++Changes; };
  Doc.SetDPI(254);
  EXPECT_EQ(Changes, 0);
  using enum TSVGUnit;
  EXPECT_FLOAT_EQ(FactorOf(Doc.CalcUnitFactors(), suMillimeters), 10);
  EXPECT_FLOAT_EQ(FactorOf(Doc.CalcUnitFactors(), suPicas), 254.0f / 6);
  EXPECT_FLOAT_EQ(FactorOf(Doc.CalcUnitFactors(), suFontSize), 1);
  EXPECT_FLOAT_EQ(FactorOf(Doc.GetUnitFactors(), suFontSize), 20);
  EXPECT_FLOAT_EQ(FactorOf(Doc.GetUnitFactors(), suFontXHeight), 10);
  Doc.SetDPI(-5);
  EXPECT_EQ(Doc.DPI(), 10);
}

TEST(DocumentSettings, EachRenderingDefaultIsSetAlone) {
  TLoaded Doc("<svg shape-rendering='crispEdges'/>");
  int Changes = 0;
  Doc.OnChange = [&](TPersistent* Sender) { Changes += Sender == &Doc; };
  Doc.SetDefaultTextRendering(TSVGTextRendering::txrnOptimizeSpeed);
  Doc.SetDefaultTextRendering(TSVGTextRendering::txrnOptimizeSpeed);
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(Doc.GetTextRendering(), TSVGTextRendering::txrnOptimizeSpeed);
  EXPECT_EQ(Doc.GetShapeRendering(), TSVGShapeRendering::srnCrispEdges)
      << "what the document says itself stays";
  Doc.SetDefaultShapeRendering(TSVGShapeRendering::srnOptimizeSpeed);
  EXPECT_EQ(Doc.GetShapeRendering(), TSVGShapeRendering::srnOptimizeSpeed);
  Doc.OnChange = nullptr;
  Doc.Clear();
  EXPECT_EQ(Doc.GetTextRendering(), TSVGTextRendering::txrnOptimizeSpeed)
      << "the defaults survive a clear";
}

TEST(DocumentSettings, TheTransformIsReadOnly) {
  TLoaded Doc("<svg transform='translate(1 2)'/>");
  const TProperty* Property = FindProperty(TSVGDocument::Class, u"TransformMatrix");
  ASSERT_TRUE(Property);
  EXPECT_EQ(std::get<String>(Property->Read(Doc)), u"translate(1 2)");
  Property->Write(Doc, String(u"scale(2 2)"));
  EXPECT_EQ(Doc.TransformMatrix(), u"translate(1 2)");
}

TEST(DocumentConditions, TheHostHasTheLastWord) {
  TLoaded Doc(
      "<svg><g id='plain'/><g id='feature' requiredFeatures='http://www.w3.org/TR/SVG11/feature#"
      "BasicStructure'/><g id='unknown' requiredFeatures='urn:x'/><g id='empty' "
      "requiredFeatures=''/><g id='extension' requiredExtensions='urn:x'/><g id='hidden' "
      "visibility='hidden'/><g id='disabled'/></svg>");
  Doc.FindElement(u"disabled")->SetEnabled(false);
  const auto Drawn = [&] {
    std::vector<String> Result;
    for (TSVGElement* Item : Doc.Items())
      if (Item->ShouldDraw()) Result.push_back(Item->ID());
    return Result;
  };
  EXPECT_THAT(Drawn(), ElementsAre(u"plain", u"feature", u"disabled"));
  Doc.OnShouldDraw = [](TPersistent*, bool& DoDraw) { DoDraw = !DoDraw; };
  EXPECT_THAT(Drawn(), ElementsAre(u"unknown", u"empty", u"extension", u"hidden"));
  TSVGGroup Alone(nullptr);
  Alone.RequiredFeatures().Add(u"urn:x");
  EXPECT_TRUE(Alone.ShouldDraw()) << "without a document every feature passes";
}

TEST(StyleSheets, AreRulesAndNothingElse) {
  const std::pair<StringView, std::vector<String>> Rows[] = {
      {u"a{} b , c{}", {u"a", u"b", u"c"}},
      {u"", {}},
      {u"a", {}},
      {u"a {", {}},
      {u"a } b {}", {u"a } b"}},
      {u",, {}", {}},
      {u"{}", {}},
      {u"a /* { } */ b {}", {u"a  b"}},
      {u"/* open a {}", {u"/* open a"}},
      // The word of an at-rule is a selector, its first closing brace the end of the body.
      {u"@media print { a { fill: red } } b {}", {u"@media print", u"} b"}},
  };
  for (const auto& [Text, Selectors] : Rows) {
    TSVGDocument Doc;
    Doc.ReadStyles(Text);
    std::vector<String> Found;
    Doc.Styles().ForEach([&](const auto& Entry) { Found.push_back(Entry.FKey); });
    EXPECT_THAT(Found, testing::UnorderedElementsAreArray(Selectors)) << ToUtf8(Text);
  }
}

TEST(StyleSheets, TellOfEachRuleOnce) {
  TSVGDocument Doc;
  std::vector<String> Added;
  int Changes = 0;
  Doc.OnAddStyle = [&](TPersistent*, TSVGStyle* Style) { Added.push_back(Style->Name()); };
  Doc.OnChange = [&](TPersistent*) { ++Changes; };
  Doc.ReadStyles(StringView(u"a { fill: red } b { fill: red } a { fill: blue; stroke: red }"));
  EXPECT_THAT(Added, ElementsAre(u"a", u"b"));
  EXPECT_EQ(Changes, 2);
  EXPECT_EQ(Doc.Styles().GetItem(u"a")->GetStyleProp(TSVGStyleProperty::ipFill), u"blue");
}

// Ties go by the order of the table, which must not remember what stood there before.
TEST(StyleSheets, AReloadedDocumentIsStyledLikeANewOne) {
  std::string Many = "<svg><style>";
  for (int I = 0; I < 300; ++I) Many += ".c" + std::to_string(I) + " { fill: red }";
  Many += "</style></svg>";
  for (int Pair = 0; Pair < 20; ++Pair) {
    const std::string A = ".a" + std::to_string(Pair), B = ".b" + std::to_string(Pair);
    const std::string Text = "<svg><style>" + A + " { opacity: 0.25 } " + B +
                             " { opacity: 0.75 }</style><rect id='r' class='" + A.substr(1) + " " +
                             B.substr(1) + "'/></svg>";
    TSVGDocument New, Used;
    Used.LoadFromText(std::string_view(Many));
    for (TSVGDocument* Doc : {&New, &Used}) Doc->LoadFromText(std::string_view(Text));
    const auto Opacity = [](TSVGDocument& Doc) {
      return Doc.FindElement(u"r")->AsGraphicElement()->GetOpacity();
    };
    EXPECT_EQ(Opacity(Used), Opacity(New)) << Pair;
  }
}

}  // namespace
}  // namespace qxsvg
