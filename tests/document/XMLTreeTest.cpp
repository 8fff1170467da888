// The tree of XML nodes as callers build and write it.
#include <gtest/gtest.h>

#include "document/XMLTree.h"
#include "document/XMLWriter.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"
#include "tests/support/XMLDump.h"

namespace qxsvg {
namespace {

using test::DumpXML;

TEST(XMLTree, KeepsAttributesInTheOrderOfTheirMaking) {
  const auto Document = CreateXMLDocument();
  IXMLNode& Root = *Document->CreateRoot(u"svg");
  for (int I = 0; I < 40; ++I) Root.SetAttribute(u"a" + FromUtf8(std::to_string(I)), u"1");
  Root.SetAttribute(u"a0", u"2");
  Root.SetAttribute(u"p:a0", u"3");
  Root.RemoveAttribute(u"a1");
  Root.RemoveAttribute(u"never");
  ASSERT_EQ(Root.Attributes().size(), 40u);
  EXPECT_EQ(Root.Attributes()[0].Value, u"2");
  EXPECT_EQ(Root.Attributes()[1].LocalName(), u"a2");
  EXPECT_EQ(Root.GetAttribute(u"p:a0"), u"3");
  StringView Value = u"kept";
  EXPECT_FALSE(Root.FindAttribute(u"a1", Value));
  EXPECT_EQ(Value, u"kept");
}

TEST(XMLTree, FindsAttributesByNameOrByNamespace) {
  const auto Document = CreateXMLDocument();
  IXMLNode& Root = *Document->CreateRoot(u"svg", u"urn:svg");
  Root.DeclareNamespace(u"l", u"urn:link");
  IXMLNode& Use = *Root.AddChild(u"use");
  Use.SetAttribute(u"xml:lang", u"de");
  Use.SetAttribute(u"l:href", u"#a");
  Use.SetAttribute(u"href", u"#b");
  EXPECT_EQ(Use.NamespaceURI(), u"urn:svg");
  EXPECT_FALSE(Use.HasAttribute(u"lang"));
  EXPECT_EQ(Use.GetAttributeNS(u"href", u"urn:link"), u"#a");
  // An attribute without prefix is in no namespace, and not in the default one.
  EXPECT_EQ(Use.GetAttributeNS(u"href", u""), u"#b");
  EXPECT_FALSE(Use.HasAttribute(u"href", u"urn:svg"));
  EXPECT_TRUE(Use.HasAttribute(u"lang", u"http://www.w3.org/XML/1998/namespace"));
}

TEST(XMLTree, RefusesWhatIsNoXml) {
  const auto Document = CreateXMLDocument();
  IXMLNode& Root = *Document->CreateRoot(u"svg");
  for (const StringView Name : {u"", u"a b", u"1", u"a:b:c", u":a", u"a:", u"<", u"\x0001"})
    EXPECT_THROW(Root.AddChild(Name), EXMLError) << ToUtf8(Name);
  EXPECT_THROW(Root.SetAttribute(u"a=", u""), EXMLError);
  EXPECT_THROW(Root.AddText(u"t")->AddChild(u"g"), EXMLError);
  Root.SetAttribute(u"a", u"\x0001x\xD800y\xD83D\xDE00\xFFFF");
  EXPECT_EQ(Root.GetAttribute(u"a"), u"xy\xD83D\xDE00");
  EXPECT_NO_THROW(Root.AddChild(u"\u00E4-\u4E2D.1"));
}

TEST(XMLTree, RemovesChildrenWhereverTheyStand) {
  for (const std::size_t Removed : {0u, 1u, 2u}) {
    const auto Document = CreateXMLDocument();
    IXMLNode& Root = *Document->CreateRoot(u"svg");
    IXMLNode* Children[] = {Root.AddChild(u"a"), Root.AddChild(u"b"), Root.AddChild(u"c")};
    Root.RemoveChild(Children[Removed]);
    Root.RemoveChild(Children[Removed]);
    EXPECT_EQ(Children[Removed]->Parent(), nullptr);
    Root.AddChild(u"d");
    std::string Expected = "svg{a b c d}";
    Expected.erase(4 + Removed * 2, 2);
    EXPECT_EQ(DumpXML(*Document), Expected);
  }
}

TEST(XMLTree, CopiesAWholeTreeFromAnotherDocument) {
  const auto Target = CreateXMLDocument();
  IXMLNode& Root = *Target->CreateRoot(u"svg");
  {
    const auto Source = CreateXMLDocument();
    IXMLNode& Group = *Source->CreateRoot(u"p:g", u"urn:p");
    Group.AddText(u"text");
    IXMLNode* Deep = &Group;
    for (int I = 0; I < 20'000; ++I) Deep = Deep->AddChild(u"g");
    Deep->AddCData(u"deep");
    Group.AddComment(u"end");
    Root.AddCopy(Group);
  }
  const IXMLNode* Copy = Root.FirstChild();
  EXPECT_EQ(Copy->NamespaceURI(), u"urn:p");
  EXPECT_EQ(Copy->ChildCount(), 3u);
  EXPECT_EQ(Root.Text(), u"textdeep");
  EXPECT_GT(Target->ToUtf8().size(), 20'000u * 7);
}

TEST(XMLWriter, IndentsWhereBlanksDoNotCount) {
  const auto Document = CreateXMLDocument();
  Document->SetNodeAutoIndent(true);
  IXMLNode& Root = *Document->CreateRoot(u"svg", u"urn:svg");
  Root.AddText(u"\n\t ");
  Root.AddChild(u"title")->SetText(u"a & b");
  IXMLNode& Group = *Root.AddChild(u"g");
  Group.AddComment(u"c--d-");
  Group.AddChild(u"path")->SetAttribute(u"d", u"<\"\n\t>");
  Group.AddText(u" ");
  IXMLNode& Text = *Group.AddChild(u"text");
  Text.AddChild(u"tspan")->SetText(u"x");
  Text.AddText(u" ");
  Text.AddChild(u"tspan")->AddChild(u"tspan");
  IXMLNode& Mixed = *Root.AddChild(u"metadata");
  Mixed.AddText(u"mixed");
  Mixed.AddChild(u"b")->AddChild(u"i");
  Root.AddChild(u"style")->AddCData(u"a]]>b");
  IXMLNode& Kept = *Root.AddChild(u"g");
  Kept.SetAttribute(u"xml:space", u"preserve");
  Kept.AddChild(u"g");
  // Declared again with the same meaning, which goes without saying, and with another.
  Root.AddChild(u"g")->DeclareNamespace(u"", u"urn:svg");
  Root.AddChild(u"g")->DeclareNamespace(u"", u"urn:other");
  EXPECT_EQ(Document->ToUtf8(), R"(<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="urn:svg">
  <title>a &amp; b</title>
  <g>
    <!--c- -d- -->
    <path d="&lt;&quot;&#10;&#9;&gt;"/>
    <text><tspan>x</tspan> <tspan><tspan/></tspan></text>
  </g>
  <metadata>mixed<b><i/></b></metadata>
  <style><![CDATA[a]]]]><![CDATA[>b]]></style>
  <g xml:space="preserve"><g/></g>
  <g/>
  <g xmlns="urn:other"/>
</svg>
)");
  EXPECT_EQ(CreateXMLDocument()->ToText(), u"<?xml version=\"1.0\"?>\n");
}

TEST(XMLWriter, GivesANodeTheDeclarationsThatItLeansOn) {
  const auto Document = CreateXMLDocument();
  IXMLNode& Root = *Document->CreateRoot(u"svg", u"urn:svg");
  Root.DeclareNamespace(u"a", u"urn:a");
  Root.DeclareNamespace(u"b", u"urn:b");
  Root.DeclareNamespace(u"unused", u"urn:unused");
  IXMLNode& Kept = *Root.AddChild(u"metadata");
  Kept.SetAttribute(u"b:k", u"1");
  Kept.DeclareNamespace(u"own", u"urn:own");
  Kept.AddChild(u"a:x")->SetAttribute(u"own:y", u"2");
  Kept.AddChild(u"nobody:z");
  EXPECT_EQ(Kept.XML(),
            u"<metadata xmlns=\"urn:svg\" xmlns:b=\"urn:b\" xmlns:a=\"urn:a\" b:k=\"1\" "
            u"xmlns:own=\"urn:own\"><a:x own:y=\"2\"/><nobody:z/></metadata>");
}

TEST(XMLWriter, WritesWhatReadsAsTheSame) {
  if (!QXSVG_TEST_HAS_ADAPTERS) GTEST_SKIP() << "needs what an adapter brings";
  if (!Services().XML.IsSupplied()) GTEST_SKIP() << "no XML vendor in this build";
  constexpr StringView Texts[] = {
      u"<svg a='&lt;&#10;&#13;&#9;\"&apos;&amp;amp;'>a&amp;b]]&gt;<g/> <![CDATA[<&]]><!-- x --><?y "
      u"z?>"
      u"</svg>",
      u"<!DOCTYPE svg [<!ENTITY e 'x<g>&#38;lt;</g>'>]><svg>&e;<g k='&#x10FFFF;'/>\n &e;</svg>",
      u"<a:svg xmlns:a='1' xmlns='2'><g xmlns:a='3'><a:g xmlns:a='1'/><a:g/></g><g "
      u"xmlns=''/></a:svg>",
      u"<svg><text> a <tspan> b </tspan>&#13;&#10; </text></svg>",
  };
  // Entities are written as what they hold, so that the comparison is of the nodes below them.
  const auto Expanded = [](const IXMLDocument& Document) {
    return Document.DocumentElement()->XML();
  };
  for (const StringView Text : Texts) {
    const auto Read = Services().XML.Get()->LoadFromText(Text);
    const auto Again = Services().XML.Get()->LoadFromBytes(Read->ToUtf8());
    EXPECT_EQ(Expanded(*Again), Expanded(*Read)) << ToUtf8(Text);
    const auto FromText = Services().XML.Get()->LoadFromText(Read->ToText());
    EXPECT_EQ(DumpXML(*FromText), DumpXML(*Again)) << ToUtf8(Text);
    // Indenting once is enough: what was indented comes back the same.
    Again->SetNodeAutoIndent(true);
    const std::string Indented = Again->ToUtf8();
    const auto Third = Services().XML.Get()->LoadFromBytes(Indented);
    Third->SetNodeAutoIndent(true);
    EXPECT_EQ(Third->ToUtf8(), Indented) << ToUtf8(Text);
  }
}

}  // namespace
}  // namespace qxsvg
