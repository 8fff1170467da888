// From text to tree: the order of events, what is kept and what is refused, and what stands after a
// failure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "document/QXSVG.h"
#include "document/XML.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "tests/support/LoadedDocument.h"

namespace qxsvg {
namespace {

using test::TLoaded;

using testing::ElementsAre;

constexpr std::string_view Drawing = R"(<?xml version="1.0"?>
<svg xmlns="http://www.w3.org/2000/svg" width="120" height="80" viewBox="0 0 60 40">
  <title>A title</title><desc>A description</desc>
  <defs><linearGradient id="grad"><stop offset="0"/></linearGradient><marker id="m"/></defs>
  <g id="top" class="a, b" lang="de"><rect id="r" x="1" y="2" width="3" height="4"/></g>
  <filter id="f"><feFlood/></filter>
  <foo/>
</svg>)";

// One line an element: depth, type, identifier.
void Dump(const TSVGElement& Element, std::string Indent, std::string& Out) {
  Out += Indent + ToUtf8(Element.SVGTypeName());
  if (!Element.ID().empty() && !Element.HasMadeUpID()) Out += "#" + ToUtf8(Element.ID());
  Out += "\n";
  for (std::int32_t I = 0; I < Element.Items().Count(); ++I)
    Dump(*Element.Items()[I], Indent + " ", Out);
}
std::string Dump(const TSVGElement& Element) {
  std::string Out;
  Dump(Element, "", Out);
  return Out;
}

TEST(Load, MakesATypedTree) {
  TLoaded Doc(Drawing);
  EXPECT_EQ(Dump(Doc),
            "svg\n"
            " defs\n"
            "  linearGradient#grad\n"
            "   stop\n"
            "  marker#m\n"
            " g#top\n"
            "  rect#r\n"
            " filter#f\n");
  EXPECT_EQ(Doc.Title(), u"A title");
  EXPECT_EQ(Doc.Description().Text(), u"A description");
  TSVGElement* Top = Doc.FindElement(u"top");
  EXPECT_EQ(Top->Language(), u"de");
  EXPECT_EQ(Top->Classes().CommaText(), u"a,b");
  EXPECT_EQ(&Doc.FindElement(u"f")->ClassType(), &TSVGPlaceholder::Class);
  EXPECT_EQ(Doc.Gradients().size(), 1u);
  EXPECT_EQ(Doc.Markers().size(), 1u);
}

TEST(Load, TellsInOrder) {
  TSVGDocument Doc;
  std::vector<String> Heard;
  Doc.OnLoading = [&](TPersistent*) { Heard.push_back(u"loading"); };
  Doc.OnLoaded = [&](TPersistent*) { Heard.push_back(u"loaded"); };
  Doc.OnChange = [&](TPersistent* Sender) { Heard.push_back(Sender ? u"change!" : u"change"); };
  Doc.OnParsingNode = [&](TPersistent*, IXMLNode& Node) {
    Heard.push_back(u"<" + String(Node.LocalName()));
  };
  Doc.OnParsedNode = [&](TPersistent*, TSVGElement* Element) {
    Heard.push_back(Element->SVGTypeName() + u">");
  };
  Doc.LoadFromText(std::string_view("<svg><g><rect/></g></svg>"));
  EXPECT_THAT(Heard, ElementsAre(u"loading", u"<svg", u"<g", u"<rect", u"rect>", u"g>", u"svg>",
                                 u"loaded", u"change"));
}

TEST(Load, FailuresBeforeTheTreeKeepTheOldOne) {
  TLoaded Doc(Drawing);
  const std::string Before = Dump(Doc);
  bool HasHeard = false;
  Doc.OnLoading = [&](TPersistent*) { HasHeard = true; };
  EXPECT_THROW(Doc.LoadFromText(std::string_view("<svg><g></svg>")), EXMLError);
  EXPECT_THROW(Doc.LoadFromText(std::string_view("")), Exception);
  EXPECT_THROW(Doc.LoadFromText(std::string_view("<html/>")), ESVGException);
  EXPECT_THROW(Doc.LoadFromFile(std::string_view("/nowhere/at/all.svg")), EStreamError);
  EXPECT_THROW(Doc.LoadFromFile(std::string_view("/")), EStreamError);
  EXPECT_FALSE(HasHeard);
  EXPECT_EQ(Dump(Doc), Before);
}

TEST(Load, FailuresWithinTheTreeLeaveWhatWasRead) {
  TLoaded Doc(Drawing);
  std::vector<String> Heard;
  Doc.OnLoaded = [&](TPersistent*) { Heard.push_back(u"loaded"); };
  Doc.OnChange = [&](TPersistent*) { Heard.push_back(u"change"); };
  EXPECT_THROW(Doc.LoadFromText(std::string_view("<svg><rect id='a'/><stop/><rect id='b'/></svg>")),
               ESVGException);
  EXPECT_EQ(Dump(Doc), "svg\n rect#a\n");
  EXPECT_FALSE(Doc.FindElement(u"a")->ElementState().Has(TSVGElementStateFlag::esReading));
  EXPECT_FALSE(Doc.IsUpdating());
  EXPECT_THAT(Heard, ElementsAre(u"loaded", u"change"));
}

TEST(Load, FormsOfXmlThatFilesHave) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  const std::tuple<const char*, std::string, std::string> Rows[] = {
      {"entity reference in content",
       "<!DOCTYPE svg [<!ENTITY two '<rect id=\"a\"/><rect id=\"b\"/>'>]><svg>&two;</svg>",
       "svg\n g\n  rect#a\n  rect#b\n"},
      {"entity in an attribute",
       "<!DOCTYPE svg [<!ENTITY name 'r'>]><svg><rect id='&name;1'/></svg>", "svg\n rect#r1\n"},
      {"a nested document", "<svg><svg id='inner'><rect id='r'/></svg></svg>",
       "svg\n svg#inner\n  rect#r\n"},
      {"duplicates", "<svg><g id='a'/><g id='a'/></svg>", "svg\n g#a\n g#a Copy\n"},
  };
  for (const auto& [What, Text, Tree] : Rows) {
    TSVGDocument Doc;
    ASSERT_NO_THROW(Doc.LoadFromText(std::string_view(Text))) << What;
    EXPECT_EQ(Dump(Doc), Tree) << What;
  }
}

TEST(Load, ANestedDocumentHasTablesOfItsOwn) {
  TLoaded Doc("<svg><svg id='inner'><rect id='r'/></svg></svg>");
  auto* Inner = dynamic_cast<TSVGDocument*>(Doc.FindElement(u"inner"));
  ASSERT_TRUE(Inner);
  EXPECT_FALSE(Doc.FindElement(u"r"));
  EXPECT_TRUE(Inner->FindElement(u"r"));
  // The inner document answers with the outer one's options.
  Doc.SetOptions(Doc.GetOptions() + TSVGOptions{TSVGOption::soExportDisabled});
  EXPECT_TRUE(Inner->GetOptions().Has(TSVGOption::soExportDisabled));
}

// Nested documents are styled with the outer one, but for those of a host that sees them before.
struct TOwnDocument final : TSVGDocument {
  using TSVGDocument::TSVGDocument;
  void DoLoaded() override { Seen = FindElement(u"r")->AsGraphicElement()->GetOpacity(); }
  static inline float Seen = 0;
};

TEST(Load, ANestedDocumentOfAnotherClassIsStyledWhenItIsLoaded) {
  TSVGElementClass Own = TSVGDocument::Class;
  Own.Create = &CreateElement<TOwnDocument>;
  const TSVGElementClass*& Held = SVGClasses[static_cast<std::size_t>(TSVGElementType::etDoc)];
  const TSVGElementClass* const Before = std::exchange(Held, &Own);
  TLoaded Doc("<svg><svg><style>rect{opacity:.5}</style><rect id='r'/></svg></svg>");
  Held = Before;
  EXPECT_EQ(TOwnDocument::Seen, 0.5f);
}

TEST(Load, ANodeOfAnotherNameDoesNothing) {
  TLoaded Doc(Drawing);
  const std::string Before = Dump(Doc);
  const auto XML = CreateXMLDocument();
  Doc.LoadFromXML(*XML->CreateRoot(u"g"));
  EXPECT_EQ(Dump(Doc), Before);
}

TEST(Load, StyleSheetsGoIntoTheTable) {
  TLoaded Doc(
      "<svg><style>rect { fill: red } /* c */ rect { stroke: blue } a, b { x: 1 }</style>"
      "<style><![CDATA[ .c { opacity: 1 } open { ]]></style></svg>");
  EXPECT_EQ(Doc.Styles().Count(), 4);
  ASSERT_TRUE(Doc.Styles().Find(u"rect"));
  const TSVGStyle& Rect = **Doc.Styles().Find(u"rect");
  EXPECT_EQ(Rect.GetStyleProp(TSVGStyleProperty::ipFill), u"red");
  EXPECT_EQ(Rect.GetStyleProp(TSVGStyleProperty::ipStroke), u"blue");
  EXPECT_TRUE(Doc.Styles().ContainsKey(u"b"));
  EXPECT_TRUE(Doc.Styles().ContainsKey(u".c"));
  int Removed = 0;
  Doc.OnRemoveStyle = [&](TPersistent*, TSVGStyle*) { ++Removed; };
  Doc.Clear();
  EXPECT_EQ(Doc.Styles().Count(), 0);
  EXPECT_EQ(Removed, 0) << "a clear of the document is silent about its rules";
  Doc.ReadStyles(StringView(u"g { fill: red }"));
  Doc.Styles().Remove(u"g");
  EXPECT_EQ(Removed, 1);
}

TEST(Document, StartsWithItsDefaults) {
  TSVGDocument Doc;
  EXPECT_EQ(Doc.DPI(), 96);
  EXPECT_EQ(Doc.GetWidth(), 100);
  EXPECT_EQ(Doc.GetHeight(), 100);
  EXPECT_EQ(Doc.GetOptions().Mask(), 443u);
  EXPECT_EQ(Doc.ViewBox().GetRect(), QXRect(0, 0, 100, 100));
  EXPECT_THROW(Doc.SetFormatStr(u"0.0.0"), EConvertError);
  EXPECT_EQ(Doc.FormatStr(), u"0.###");
}

TEST(Document, IsValidSVGNeverRaises) {
  const std::tuple<StringView, bool, bool> Rows[] = {{u"", false, false},
                                                     {u"<svg>", false, false},
                                                     {u"<html/>", false, false},
                                                     {u"<svg><filter/></svg>", true, true},
                                                     {u"<svg><stop/></svg>", true, false}};
  for (const auto& [Text, Shallow, Deep] : Rows) {
    EXPECT_EQ(TSVGDocument::IsValidSVG(false, Text), Shallow) << ToUtf8(Text);
    EXPECT_EQ(TSVGDocument::IsValidSVG(true, Text), Deep) << ToUtf8(Text);
  }
  EXPECT_FALSE(TSVGDocument::IsValidSVG(StringView(u"/nowhere.svg"), true));
}

}  // namespace
}  // namespace qxsvg
