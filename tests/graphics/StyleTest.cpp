// Declarations: what is stored under which name, in which order it is seen, and who is told.
#include "document/Style.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "document/Selectors.h"
#include "document/StringHashTable.h"
#include "document/XML.h"
#include "runtime/Exceptions.h"
#include "runtime/StringList.h"
#include "tests/support/Watch.h"

namespace qxsvg {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using enum TSVGStyleProperty;

std::vector<std::string> EntriesOf(const TSVGStyle& Style) {
  std::vector<std::string> Result;
  Style.ForEach([&](StringView Name, StringView Value) {
    Result.push_back(ToUtf8(Name) + "=" + ToUtf8(Value));
  });
  return Result;
}

TEST(Style, ReadsDeclarationLists) {
  const std::tuple<StringView, std::vector<std::string>, TSVGStyleProperties> Cases[] = {
      {u"", {}, {}},
      {u" \t\n", {}, {}},
      {u"fill:red", {"fill=red"}, {ipFill}},
      {u" fill : red ; stroke:blue;", {"fill=red", "stroke=blue"}, {ipFill, ipStroke}},
      // The first colon parts; the others belong to the value.
      {u"filter:url(a:b)", {"filter=url(a:b)"}, {ipFilter}},
      // A piece without a colon is a name without a value, one without a name is nothing.
      {u"fill", {"fill="}, {ipFill}},
      {u":red;;", {}, {}},
      {u"fill:red;fill:blue", {"fill=blue"}, {ipFill}},
      {u"fill:red !important", {"fill=red !important"}, {ipFill}},
      {u"odd:1;FILL:red", {"odd=1", "FILL=red"}, {ipNone}},
      {u"/* a */fill/* b */:red/* ; stroke:x */", {"fill=red"}, {ipFill}},
      {u"fill:red;/* open", {"fill=red", "/* open="}, {ipFill, ipNone}},
      {u"/*/fill:red", {"/*/fill=red"}, {ipNone}},
  };
  for (const auto& [Text, Entries, Named] : Cases) {
    TSVGStyle Style;
    EXPECT_EQ(Style.AddStyle(Text).Mask(), Named.Mask()) << ToUtf8(Text);
    EXPECT_THAT(EntriesOf(Style), testing::UnorderedElementsAreArray(Entries)) << ToUtf8(Text);
  }
}

TEST(Style, TakesEveryAttributeButTheMarkerShorthand) {
  const auto XML = CreateXMLDocument();
  IXMLNode* Node = XML->CreateRoot(u"path");
  Node->SetAttribute(u"d", u"M0 0");
  Node->SetAttribute(u"fill", u"red");
  Node->SetAttribute(u"marker", u"url(#m)");
  Node->SetAttribute(u"marker-end", u"url(#e)");
  TSVGStyle Style;
  Style.SetText(u"stroke", u"gone");
  Style.LoadFromXML(*Node);
  EXPECT_THAT(EntriesOf(Style), UnorderedElementsAre("d=M0 0", "fill=red", "marker-end=url(#e)"));
  // In a declaration list the shorthand counts.
  EXPECT_EQ(Style.AddStyle(u"marker:url(#m)"), TSVGStyleProperties{ipMarker});
  EXPECT_EQ(Style.GetStyleProp(ipMarker), u"url(#m)");
  EXPECT_EQ(Style.GetText(u"d"), u"M0 0");
}

// The order of a table for 64 names that took the same writes.
std::vector<std::string> TableOrder(const std::vector<String>& Names) {
  TQXStringHashTable<String> Table(64);
  for (const String& Name : Names) Table.AddOrSetValue(Name, u"v");
  std::vector<std::string> Result;
  Table.ForEach([&](const auto& Entry) { Result.push_back(ToUtf8(Entry.FKey) + "=v"); });
  return Result;
}

TEST(Style, ShowsItsEntriesInTheOrderOfATable) {
  std::vector<String> Names;
  TSVGStyle Style;
  for (int I = 0; I < 200; ++I) {
    // Known and other names in turn, some written twice, and growth on the way.
    const String Name = I % 3 == 0 && I / 3 + 1 < static_cast<int>(SVGStylePropertyCount)
                            ? String(SVGStylePropertyNames[static_cast<std::size_t>(I / 3 + 1)])
                            : u"n" + FromUtf8(std::to_string(I % 150));
    Names.push_back(Name);
    Style.SetText(Name, u"v");
    if (I == 5 || I == 47 || I == 48 || I == 199) {
      EXPECT_EQ(EntriesOf(Style), TableOrder(Names)) << I;
    }
  }
}

TEST(Style, WritesTexts) {
  TSVGStyle Style(u"rect", u"");
  EXPECT_EQ(Style.ToString(), u"rect {  }");
  Style.SetStyle(u"fill:red");
  EXPECT_EQ(Style.ToString(), u"rect { fill=red }");
  Style.AddStyle(u"stroke: ");
  const String Text = Style.StylesToString();
  EXPECT_NE(Text.find(u"\r\n"), String::npos);
  EXPECT_GT(Text.back(), u' ') << "no white space at the end";

  TStrings List;
  List.Assign(&Style);
  EXPECT_EQ(List.Count(), 2);
  EXPECT_EQ(List.Values(u"fill"), u"red");

  TSVGStyle Copy;
  Copy.SetText(u"opacity", u"1");
  Copy.Assign(&List);
  EXPECT_EQ(Copy.Count(), 3) << "a string list is added to what is there";
  Copy.Assign(&Style);
  EXPECT_EQ(Copy.Name(), u"rect");
  EXPECT_EQ(Copy.Count(), 2);
  EXPECT_THROW(Copy.Assign(nullptr), EConvertError);
}

TEST(Style, TellsOncePerOperation) {
  TSVGStyle Style;
  test::TWatch Watch(Style);
  Style.AddStyle(u"fill:red;stroke:blue;opacity:1");
  Style.AddStyle(u"  ");
  EXPECT_EQ(Watch.Take(), 1);
  Style.SetStyle(u"fill:red");
  Style.SetStyleProp(ipFill, u"red");
  EXPECT_EQ(Watch.Take(), 2);
  Style.SetEnabled(true);
  Style.SetEnabled(false);
  EXPECT_EQ(Watch.Take(), 1);
  Style.SetName(u"x");
  Style.SetName(u"x");
  EXPECT_EQ(Watch.Take(), 1);
}

TEST(Style, KeepsManyNamesInLinearTime) {
  // A declaration list of a hostile file: quadratic work would take minutes.
  String Text;
  for (int I = 0; I < 100000; ++I) Text += u"n" + FromUtf8(std::to_string(I)) + u":1;";
  TSVGStyle Style;
  Style.AddStyle(Text);
  EXPECT_EQ(Style.Count(), 100000);
  EXPECT_EQ(Style.GetText(u"n99999"), u"1");
}

TEST(Style, KeepsLongTextsAsTheyWereWritten) {
  for (const char16_t Last : {u'z', u'\u00E9', u'\u20AC'}) {
    const String Long = String(TLongText::LeastSize + 5, u'1') + Last;
    TSVGStyle Style;
    Style.SetText(u"d", Long);
    Style.SetText(u"e", Long + u'!');
    // Enough replaced texts to have the others moved together.
    for (int I = 0; I < 40; ++I) Style.SetText(u"f", String(100, u'a') + Last);
    Style.SetText(u"g", Style.GetText(u"d"));
    Style.SetText(u"d", Style.GetText(u"d").substr(1));
    Style.SetText(u"e", u"short");
    TSVGStyle Copy;
    Copy.Assign(&Style);
    for (const TSVGStyle* S : {&Style, &Copy}) {
      EXPECT_EQ(S->GetText(u"g"), Long);
      EXPECT_EQ(S->GetText(u"d"), StringView(Long).substr(1));
      EXPECT_EQ(S->GetText(u"e"), u"short");
      EXPECT_EQ(S->Count(), 4);
    }
    Style.SetStyle(u"x:1");
    EXPECT_EQ(EntriesOf(Style), std::vector<std::string>{"x=1"});
  }
}

// --- Selectors

std::string TokensOf(StringView Selector) {
  std::string Result;
  for (const TSVGSelectorToken& Token : TokenizeSelector(Selector)) {
    constexpr const char* Names[] = {"none",  "name", "has",   "prefix", "suffix", "part",
                                     "exact", "dash", "word",  "id",     "any",    "colon",
                                     "class", "desc", "child", "next",   "lang"};
    if (!Result.empty()) Result += ' ';
    Result += Names[static_cast<std::size_t>(Token.Type)] + ("(" + ToUtf8(Token.Value) + ")");
  }
  return Result;
}

TEST(Selectors, AreCutIntoTokens) {
  const std::pair<StringView, const char*> Cases[] = {
      {u"g  r  s", "name(g) desc(r) desc(s)"},
      {u"a>b c", "name(a) child(b) desc(c)"},
      {u"a + b", "name(a) next(b)"},
      {u"a >", "name(a) child()"},
      {u":lang(en)", "colon(lang) lang(en)"},
      {u"a:lang(en", "name(a) colon(lang) lang(en)"},
      {u"*.x", "any() class(x)"},
      {u"*abc", "any(abc)"},
      {u"[ fill ]", "has(fill)"},
      {u"[fill", "has(fill)"},
      {u"[id=\"a\"]", "has(id) exact(a)"},
      {u"[id='a", "has(id) exact(a)"},
      {u"[a$=1][b*=2][c|=3][d~=4]",
       "has(a) suffix(1) has(b) part(2) has(c) dash(3) has(d) word(4)"},
  };
  for (const auto& [Selector, Tokens] : Cases) EXPECT_EQ(TokensOf(Selector), Tokens);
  for (const StringView Bad : {u"[a!b]", u"[a*b]", u"[a^", u"x[a~]"})
    EXPECT_THROW(TokenizeSelector(Bad), ESVGException) << ToUtf8(Bad);
}

}  // namespace
}  // namespace qxsvg
