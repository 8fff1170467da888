// Keywords, string lists, text content, declarations, and the breaking of long lines.
#include "foundation/ParseText.h"

#include <gtest/gtest.h>

#include <tuple>

#include "foundation/ParseKeywords.h"
#include "foundation/SplitLines.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

std::vector<String> ItemsOf(const TStrings& List) {
  return {List.begin(), List.end()};
}

TEST(ParseKeywords, UnknownWordsAndDefaults) {
  bool Inherit = false;
  constexpr auto Hanging = TSVGDominantBaseline::dbHanging;
  EXPECT_EQ(ParseDominantBaseline(u" central ", Hanging, Inherit), TSVGDominantBaseline::dbCentral);
  // The zero member, never the default.
  EXPECT_EQ(ParseDominantBaseline(u"Central", Hanging, Inherit), TSVGDominantBaseline::dbNone);
  EXPECT_EQ(ParseDominantBaseline(u"", Hanging, Inherit), Hanging);
  EXPECT_EQ(ParseDominantBaseline(u"inherit", Hanging, Inherit), Hanging);
  EXPECT_TRUE(Inherit);
  EXPECT_EQ(ParsePointerEvents(u"bogus", TSVGPointerEvents::peAll, Inherit),
            TSVGPointerEvents::peNone);
  EXPECT_FALSE(Inherit);

  // Without inheritance, two kinds: these go to zero ...
  EXPECT_EQ(ParseTextPathMethod(u"bogus", TSVGTextPathMethod::tpmAlign),
            TSVGTextPathMethod::tpmNone);
  EXPECT_EQ(ParseTextPathSpacing(u"", TSVGTextPathSpacing::tpsAuto), TSVGTextPathSpacing::tpsAuto);
  // ... and these back to the default.
  EXPECT_EQ(ParseGradientSpread(u"bogus", TSVGGradientSpread::gsPad), TSVGGradientSpread::gsPad);
  EXPECT_EQ(ParseCoordinateSystemUnit(u" userSpaceOnUse", TSVGCoordinateSystemUnit::csuNone),
            TSVGCoordinateSystemUnit::csuUserSpaceOnUse);
}

TEST(ParseKeywords, Switches) {
  const std::tuple<bool (*)(StringView, bool, bool&), StringView, bool> Cases[] = {
      {ParseDisplay, u"none", false},    {ParseDisplay, u"None", true},
      {ParseDisplay, u"bogus", true},    {ParseVisible, u"visible", true},
      {ParseVisible, u"bogus", false},   {ParseOverflow, u"auto", true},
      {ParseOverflow, u"scroll", false}, {ParseOverflow, u"visible", true},
  };
  for (const auto& [Parse, Text, Value] : Cases) {
    bool Inherit = false;
    EXPECT_EQ(Parse(Text, !Value, Inherit), Value) << ToUtf8(Text);
    EXPECT_EQ(Parse(u"inherit", Value, Inherit), Value);
    EXPECT_TRUE(Inherit);
  }
}

TEST(ParseKeywords, NumbersOfTheSurface) {
  bool Inherit = false;
  EXPECT_EQ(ParseLineCap(u"square", TQXGPLineCap::lcFlat, Inherit), TQXGPLineCap::lcSquare);
  EXPECT_EQ(ParseLineCap(u"bogus", TQXGPLineCap::lcRound, Inherit), TQXGPLineCap::lcFlat);
  EXPECT_EQ(ParseLineJoin(u"bogus", TQXGPStrokeJoin::sjRound, Inherit), TQXGPStrokeJoin::sjMiter);
  EXPECT_EQ(ParseTextAnchor(u"end", TSVGTextAlign::staCenter, Inherit), TSVGTextAlign::staTrailing);
  EXPECT_EQ(ParseTextAnchor(u"bogus", TSVGTextAlign::staCenter, Inherit),
            TSVGTextAlign::staLeading);
}

TEST(ParseKeywords, FontStyleChangesItalicAlone) {
  constexpr TFontStyles Bold{TFontStyle::fsBold};
  constexpr TFontStyles Both{TFontStyle::fsBold, TFontStyle::fsItalic};
  bool Inherit = false;
  EXPECT_EQ(ParseFontStyle(u"oblique", Bold, Inherit), Both);
  EXPECT_EQ(ParseFontStyle(u"bogus", Both, Inherit), Bold);
  EXPECT_EQ(ParseFontStyle(u"", Both, Inherit), Both);
}

TEST(ParseKeywords, DecorationsAndCursors) {
  const std::tuple<StringView, bool, bool, TExtendedFontStyles> Cases[] = {
      {u"underline", true, false, {}},
      {u"overline", false, false, {TExtendedFontStyle::fsOverline}},
      {u"line-through", false, true, {}},
      {u"blink", true, false, {TExtendedFontStyle::fsBlink}},
      {u"none", false, false, {}},
      {u"underline overline", false, false, {}},
  };
  bool Inherit = false;
  for (const auto& [Text, Underline, StrikeOut, Extended] : Cases) {
    const auto Styles = ParseTextDecoration(Text, Inherit);
    ASSERT_TRUE(Styles) << ToUtf8(Text);
    EXPECT_EQ(Styles->Underline, Underline) << ToUtf8(Text);
    EXPECT_EQ(Styles->StrikeOut, StrikeOut) << ToUtf8(Text);
    EXPECT_EQ(Styles->ExtendStyles, Extended) << ToUtf8(Text);
  }
  EXPECT_FALSE(ParseTextDecoration(u"inherit", Inherit));
  EXPECT_FALSE(ParseTextDecoration(u"", Inherit));

  EXPECT_EQ(ParseCursor(u"pointer", 0, Inherit), -21);
  EXPECT_EQ(ParseCursor(u"bogus", 0, Inherit), -1);
  EXPECT_EQ(ParseCursor(u"URL(\"a.cur\"), url(b.cur) , wait,", 0, Inherit), -11);
  EXPECT_EQ(ParseCursor(u"url(a.cur), wait", 0, Inherit), -1);
}

TEST(ParseText, StringLists) {
  TStringList List;
  ParseStringList(List, u" a, b ,,c", u",");
  ParseStringList(List, u"d", u",");
  EXPECT_EQ(ItemsOf(List), (std::vector<String>{u"a", u"b", u"c", u"d"}));
  ParseRequiredStringList(List, u"x y", u", ");
  EXPECT_EQ(ItemsOf(List), (std::vector<String>{u"x", u"y"}));
  ParseRequiredStringList(List, u"  ", u", ");
  EXPECT_EQ(ItemsOf(List), std::vector<String>{u""});
  ParseStringList(List, u" ", u",");
  EXPECT_TRUE(List.IsEmpty());

  bool Inherit = false;
  ParseFontFamily(u" \"Times, New\" , Gill Sans,serif", List, Inherit);
  EXPECT_EQ(ItemsOf(List), (std::vector<String>{u"Times, New", u"Gill Sans", u"serif"}));
  ParseFontFamily(u"inherit", List, Inherit);
  EXPECT_TRUE(Inherit);
  EXPECT_EQ(List.Count(), 3);
}

TEST(ParseText, SpaceOfTextContent) {
  const std::pair<StringView, StringView> Cases[] = {
      {u"", u""},           {u"  a   b  ", u" a b "}, {u"\n  a \n", u" a "},
      {u"\r\na\r\n", u"a"}, {u"a\nb", u"a\nb"},       {u"a\n b", u"a b"},
      {u"\ta", u" a"},      {u"   ", u"  "},          {u"\r\n", u""},
  };
  for (const auto& [Text, Clean] : Cases) EXPECT_EQ(CleanText(Text), Clean) << ToUtf8(Text);
}

TEST(ParseText, Comments) {
  const std::pair<StringView, StringView> Cases[] = {
      {u"a/*b*/c/**/d", u"acd"},
      {u"a/*/b*/c", u"ac"},
      {u"a/*b", u"a/*b"},
      {u"a*/b/*c*/", u"a*/b"},
      // What closes up around a comment can open the next one.
      {u"//*x*/*y*/z", u"z"},
      {u"//*x*/*y", u"/*y"},
  };
  for (const auto& [Text, Rest] : Cases) EXPECT_EQ(RemoveComments(Text), Rest) << ToUtf8(Text);
}

TEST(ParseText, Declarations) {
  TSVGDeclarations Declarations(u" fill : url(a:b) ;; :x; stroke;\n d:1");
  std::vector<String> Got;
  for (TSVGDeclaration D; Declarations.Next(D);)
    Got.push_back(String(D.Name) + u"=" + String(D.Value));
  EXPECT_EQ(Got, (std::vector<String>{u"fill=url(a:b)", u"stroke=", u"d=1"}));
}

String Split(StringView Line, int MaxLength) {
  TStringList Lines;
  Lines.Add(u"<svg>");
  Lines.Add(Line);
  Lines.Add(u"</svg>");
  SVGSplitLines(Lines, MaxLength);
  String Result;
  for (int I = 1; I + 1 < Lines.Count(); ++I) Result += Lines[I] + u"|";
  return Result;
}

TEST(SplitLines, PathsBreakInsideTheirData) {
  const std::tuple<int, StringView, StringView> Cases[] = {
      {20, u"<path d=\"M1 2 L3 4\"/>", u"<path d=\"M1 2 L3 4\"/>|<path d=\"M1 2 L3 4\"/>|"},
      {14, u"<path d=\"M1 2 L3 4 L5 6\"/>", u"<path d=\"M1 2 L3| 4 L5 6\"/>|"},
      {10, u"<path d=\"M1 2,L3 4 L5 67 L8 9\"/>", u"<path d=\"M1| 2,L3 4 L5| 67 L8 9\"/>|"},
      // The closing quote does not stand alone.
      {14, u"<path d=\"M1 2345678\"/>", u"<path d=\"M1 234567|8\"/>|"},
      // The attribute itself begins a line where it stands too far to the right; other attributes
      // with its letter or in quotes are not it.
      {16, u"<path dx=\"1\" id=\" d=\" d = \"M1 2 L3 4 5 6 7 8 9\"/>",
       u"<path dx=\"1\" id=\" d=\"| d = \"M1 2 L3 4 5| 6 7 8 9\"/>|"},
      // No path, no data, another quote: left alone.
      {10, u"<rect d=\"M1 2 L3 4 L5 67 L8 9\"/>", u"<rect d=\"M1 2 L3 4 L5 67 L8 9\"/>|"},
      {10, u"<path x=\"M1 2 L3 4 L5 67 L8 9\"/>", u"<path x=\"M1 2 L3 4 L5 67 L8 9\"/>|"},
      {10, u"<path d='M1 2 L3 4 L5 67 L8 9'/>", u"<path d='M1 2 L3 4 L5 67 L8 9'/>|"},
  };
  for (const auto& [MaxLength, Line, Pieces] : Cases)
    EXPECT_EQ(ToUtf8(Split(Line, MaxLength)), ToUtf8(Pieces)) << ToUtf8(Line);
  EXPECT_THROW(Split(u"<path d=\"M1 2 L3 4 L5 6", 22), EAssertionFailed);
  EXPECT_THROW(Split(u"<path d=\"M1 2 L3 4 L5 6", 14), EAssertionFailed);
}

TEST(SplitLines, FindingOutsideQuotes) {
  constexpr StringView Text = u"a \" b\" b";
  EXPECT_EQ(PosOutsideQuotes(u" b", Text, 0), 6u);
  EXPECT_EQ(PosOutsideQuotes(u"", Text, 0), StringView::npos);
  EXPECT_EQ(PosOutsideQuotes(u"b", Text, 7), StringView::npos);
  EXPECT_EQ(PosOutsideQuotes(u"b", u"", 0), StringView::npos);
}

}  // namespace
}  // namespace qxsvg
