// From the tree back to XML: the writers of nodes, what the base and the document write, and what a
// host may do about it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "document/NodeWriters.h"
#include "document/QXSVG.h"
#include "document/XML.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "tests/support/LoadedDocument.h"
#include "tests/support/ScratchFolder.h"

namespace qxsvg {
namespace {

using test::TLoaded;

using testing::ElementsAre;

std::string SavedText(TSVGDocument& Doc, std::int32_t Width = 0) {
  TMemoryStream Stream;
  Doc.SaveToStream(Stream, Width);
  return std::string(CharsOf(Stream.Bytes()));
}

// The document's XML without the root's own tag.
std::string SavedContent(TSVGDocument& Doc) {
  const std::string Text = SavedText(Doc);
  const std::size_t From = Text.find('>', Text.find("<svg")) + 1, To = Text.rfind("</svg>");
  std::string Result;
  for (const char C : Text.substr(From, To - From))
    if (C != '\n' && C != '\r') Result += C;
  while (Result.find("  ") != std::string::npos) Result.erase(Result.find("  "), 2);
  return Result;
}

// --- Node writers

TEST(NodeWriters, AttributesAndChildNodesComeAndGo) {
  // Whether to leave out and to remove, and what is left of "old" then; an empty text is nothing.
  const std::tuple<bool, bool, StringView> Rows[] = {
      {false, false, u"new"}, {false, true, u"new"}, {true, false, u"old"}, {true, true, u""}};
  for (const auto& [Omit, Remove, Left] : Rows) {
    const auto XML = CreateXMLDocument();
    IXMLNode& Node = *XML->CreateRoot(u"x");
    Node.SetAttribute(u"a", u"old");
    EXPECT_EQ(SaveAttrString(Node, u"a", u"new", Omit, Remove), !Omit);
    EXPECT_EQ(Node.GetAttribute(u"a"), Left);
    EXPECT_EQ(Node.HasAttribute(u"a"), !Left.empty());
    Node.AddChild(u"c")->SetText(u"old");
    EXPECT_EQ(SaveNodeString(Node, u"c", u"new", Omit, Remove), !Omit);
    EXPECT_EQ(Node.Text(), Left);
  }
}

TEST(NodeWriters, StylePropertiesAreWrittenWhereTheTreeDoesNotSayThem) {
  using enum TSVGStyleProperty;
  const std::tuple<TSVGStyleProperty, StringView, StringView, bool, bool, StringView> Rows[] = {
      {ipFill, u"red", u"black", true, true, u""},
      {ipFill, u"red", u"black", false, true, u"red"},
      {ipFill, u"black", u"black", false, true, u"black"},
      {ipOpacity, u"0.5", u"1", true, true, u"inherit"},
      {ipOpacity, u"1", u"1", false, true, u""},
      {ipOpacity, u"1", u"1", false, false, u"1"},
      {ipClipPath, u"", u"none", false, false, u"none"},
      {ipClipPath, u"", u"none", false, true, u""},
  };
  for (const auto& [Property, Value, Default, Inherited, Compact, Attribute] : Rows) {
    const auto XML = CreateXMLDocument();
    IXMLNode& Node = *XML->CreateRoot(u"x");
    const StringView Name = SVGStylePropertyRowOf(Property).Name;
    const bool IsWritten = !Attribute.empty();
    EXPECT_EQ(SaveStyleProperty(Node, Property, Value, Default, false, Inherited, Compact),
              IsWritten);
    EXPECT_EQ(Node.GetAttribute(Name), Attribute) << ToUtf8(Name);
    Node.SetAttribute(u"style", u"x:y");
    SaveStyleProperty(Node, Property, Value, Default, true, Inherited, Compact);
    const String Entry =
        IsWritten ? String(u"; ").append(Name).append(u":").append(Attribute) : String();
    EXPECT_EQ(Node.GetAttribute(u"style"), u"x:y" + Entry);
  }
  // Entries that are gathered have the place of the first of them.
  const auto XML = CreateXMLDocument();
  TStyleEntries Entries(*XML->CreateRoot(u"x"));
  SaveStyleProperty(Entries, ipFill, u"red", u"black", false, true);
  XML->DocumentElement()->SetAttribute(u"z", u"1");
  SaveStyleProperty(Entries, ipOpacity, u"0.5", u"1", true, true);
  Entries.Write();
  EXPECT_EQ(XML->DocumentElement()->XML(), u"<x style=\"fill:red; opacity:inherit\" z=\"1\"/>");
}

// --- Documents

TEST(Save, ADocumentSaysItsNamespacesSizeAndVersion) {
  TLoaded Doc("<svg width='30' height='20'/>");
  EXPECT_EQ(SavedText(Doc),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" "
            "xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
            "width=\"30\" height=\"20\" version=\"1.1\"/>\n");
  Doc.SetOptions(Doc.GetOptions() - TSVGOptions{TSVGOption::soCompactExport});
  EXPECT_NE(SavedText(Doc).find(" x=\"0\""), std::string::npos)
      << "zeros are written where the export is not compact";
}

TEST(Save, TheBaseWritesItsPartInOrder) {
  // Identifiers that were made up are left out.
  TLoaded Ids("<svg><g/><g id='ID#5x'/><g id='own'/></svg>");
  EXPECT_EQ(SavedContent(Ids), "<g/><g/><g id=\"own\"/>");
  TLoaded Doc(
      "<svg><g systemLanguage='de, en' requiredFeatures='f g' lang='de' id='g' "
      "requiredExtensions='' class='a  b,c' title='t'><desc>d</desc></g></svg>");
  EXPECT_EQ(SavedContent(Doc),
            "<g id=\"g\" lang=\"de\" class=\"a b c\" requiredFeatures=\"f g\" "
            "requiredExtensions=\"\" systemLanguage=\"de en\"><title>t</title><desc>d</desc></g>");
}

TEST(Save, DisabledElementsLeaveAnEmptyNode) {
  TLoaded Doc("<svg><g id='g'><circle r='2'/></g></svg>");
  Doc.FindElement(u"g")->SetEnabled(false);
  EXPECT_EQ(SavedContent(Doc), "<g/>");
  Doc.SetOptions(Doc.GetOptions() + TSVGOptions{TSVGOption::soExportDisabled});
  EXPECT_EQ(SavedContent(Doc), "<g id=\"g\"><circle r=\"2\"/></g>");
  Doc.SetEnabled(false);
  Doc.SetOptions(Doc.GetOptions() - TSVGOptions{TSVGOption::soExportDisabled});
  EXPECT_EQ(SavedContent(Doc), "<g/>") << "the root itself is always written";
}

TEST(Save, TheHostMayLeaveElementsOut) {
  TLoaded Doc("<svg><g id='a'/><g id='b'><g id='c'/></g></svg>");
  std::vector<String> Saved;
  Doc.OnSavingElement = [&](TPersistent*, TSVGElement* Element, IXMLNode&, bool& DoSave) {
    EXPECT_FALSE(Element->ElementState().Has(TSVGElementStateFlag::esWriting));
    DoSave = Element->ID() != u"b";
  };
  Doc.OnSavedElement = [&](TPersistent*, TSVGElement* Element, IXMLNode& Node) {
    Saved.push_back(Element->ID());
    EXPECT_TRUE(Element == &Doc || Element->ElementState().Has(TSVGElementStateFlag::esWriting));
    Node.SetAttribute(u"seen", u"1");
  };
  EXPECT_EQ(SavedContent(Doc), "<g id=\"a\" seen=\"1\"/><g/>");
  EXPECT_THAT(Saved, ElementsAre(u"a", u""));
  EXPECT_FALSE(Doc.FindElement(u"a")->ElementState().Has(TSVGElementStateFlag::esWriting));
}

TEST(Save, KeptXMLStandsWhereItStood) {
  TSVGDocument Doc;
  const std::string Content =
      "<g id=\"a\"/><metadata><x:y xmlns:x=\"urn:x\">t</x:y></metadata><filter id=\"f\">"
      "<feFlood/></filter><g id=\"b\"/><script>1 &lt; 2</script>";
  Doc.LoadFromText("<svg xmlns=\"http://www.w3.org/2000/svg\">" + Content + "</svg>");
  const std::string Once = SavedContent(Doc);
  std::string Plain = Once;
  const std::string_view Declared = " xmlns=\"http://www.w3.org/2000/svg\"";
  while (Plain.find(Declared) != std::string::npos)
    Plain.erase(Plain.find(Declared), Declared.size());
  EXPECT_EQ(Plain, Content);
  TLoaded Again(SavedText(Doc));
  EXPECT_EQ(SavedContent(Again), Once);
  EXPECT_EQ(Again.FindElement(u"f")->GetSVGType(), TSVGElementType::etFilter);

  auto& Metadata = static_cast<TSVGMetadata&>(*Doc.Items()[1]);
  Metadata.SetXML(u"<open>");
  EXPECT_THROW(SavedText(Doc), EXMLError);
}

// Each is replaced where it stands, without a search among its siblings.
TEST(Save, ManyPlaceholdersStayCheap) {
  std::string Text = "<svg>";
  for (int I = 0; I < 20000; ++I) Text += "<filter/>";
  TLoaded Doc(Text + "</svg>");
  EXPECT_GT(SavedText(Doc).size(), 20000u * 9);
}

TEST(Save, APlaceholderWithoutANameIsNoObstacle) {
  TSVGDocument Doc;
  auto Item = std::make_unique<TSVGPlaceholder>(&Doc);
  Item->SetName(u"strange");
  Item->SetXML(u"<strange/>");
  Doc.Items().Add(std::move(Item));
  Doc.Items().Add(std::make_unique<TSVGPlaceholder>(&Doc));
  Doc.Items().Add(std::make_unique<TSVGMetadata>(&Doc));
  EXPECT_EQ(SavedContent(Doc), "<strange/><TSVGPlaceholder/><metadata/>");
}

TEST(Save, WrapsTheDataOfPathsAboveThirtyTwo) {
  TSVGDocument Doc;
  std::string Data = "M0 0";
  for (int I = 1; I < 40; ++I) Data += " L" + std::to_string(I) + " " + std::to_string(I * I);
  Doc.LoadFromText("<svg><path d=\"" + Data + "\"/></svg>");
  const auto LongestLine = [](const std::string& Text) {
    std::size_t Longest = 0;
    std::istringstream Lines(Text);
    for (std::string Line; std::getline(Lines, Line);) Longest = std::max(Longest, Line.size());
    return Longest;
  };
  const std::string Whole = SavedText(Doc);
  EXPECT_EQ(SavedText(Doc, 32), Whole);
  const std::string Wrapped = SavedText(Doc, 200);
  EXPECT_LT(LongestLine(Wrapped), 210u);
  EXPECT_GT(LongestLine(Whole), 210u);
  TLoaded Again(Wrapped);
  EXPECT_EQ(SavedText(Again), Whole);
}

TEST(Save, AFileIsWholeOrAsItWas) {
  const test::TScratchFolder Folder;
  const std::string Name = (Folder.Path() / "a.svg").string();
  TLoaded Doc("<svg><g id='a'/></svg>");
  Doc.SaveToFile(std::string_view(Name));
  const auto Read = [&] {
    TSVGDocument Saved;
    Saved.LoadFromFile(std::string_view(Name));
    return SavedText(Saved);
  };
  const std::string Before = Read();
  EXPECT_EQ(Before, SavedText(Doc));
  Doc.OnSavedElement = [](TPersistent*, TSVGElement*, IXMLNode&) { throw EAbort(u"no"); };
  EXPECT_THROW(Doc.SaveToFile(std::string_view(Name)), EAbort);
  EXPECT_EQ(Read(), Before);
  EXPECT_THROW(Doc.SaveToFile(std::string_view("/nowhere/at/all.svg")), EStreamError);
}

TEST(Save, AnElementIsADocumentOfItsOwnAsText) {
  TLoaded Doc("<svg><g id='g'><circle r='2'/></g><metadata>m</metadata></svg>");
  EXPECT_EQ(Doc.FindElement(u"g")->ToString(),
            u"<?xml version=\"1.0\"?>\n<g xmlns=\"http://www.w3.org/2000/svg\" id=\"g\">\n"
            u"  <circle r=\"2\"/>\n</g>\n");
  EXPECT_NE(Doc.Items()[1]->ToString().find(u"<metadata>m</metadata>"), String::npos);
}

}  // namespace
}  // namespace qxsvg
