// UTF-16 text and its conversions.
#include "runtime/String.h"

#include <gtest/gtest.h>

namespace qxsvg {
namespace {

TEST(String, BrokenUtf8BecomesReplacementCharacters) {
  const std::pair<std::string_view, StringView> Cases[] = {
      {"", u""},
      {"plain ascii, longer than eight bytes", u"plain ascii, longer than eight bytes"},
      {"\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E", u"\u00E4\u20AC\U0001D11E"},
      {"12345678\xC3\xA4"
       "2345678",
       u"12345678\u00E42345678"},
      {"\x80x", u"\uFFFDx"},                  // a following byte alone
      {"\xC3", u"\uFFFD"},                    // cut off
      {"\xC3(", u"\uFFFD("},                  // cut by ASCII, which stays
      {"\xE2\x82\xC3\xA4", u"\uFFFD\u00E4"},  // cut by a new beginning
      {"\xC0\xAF", u"\uFFFD\uFFFD"},          // overlong slash
      {"\xED\xA0\x80"
       "a",
       u"\uFFFD"
       u"a"},  // a surrogate in UTF-8
      {"\xF4\x90\x80\x80"
       "a",
       u"\uFFFD"
       u"a"},  // beyond the last code point
      {"\xFF\xFE", u"\uFFFD\uFFFD"},
  };
  for (const auto& [Bytes, Text] : Cases) EXPECT_EQ(FromUtf8(Bytes), Text);
}

TEST(String, LoneSurrogatesBecomeReplacementCharacters) {
  EXPECT_EQ(ToUtf8(u"\u00E4\U0001D11E"), "\xC3\xA4\xF0\x9D\x84\x9E");
  const char16_t High[] = {u'a', 0xD834, u'b', 0}, Low[] = {0xDD1E, 0xD834, 0};
  EXPECT_EQ(ToUtf8(High),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(ToUtf8(Low), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(String, ConversionRoundTripsWhatIsValid) {
  for (char32_t Code = 0; Code < 0x110000; Code += Code < 0x1000 ? 1 : 61) {
    if (Code >= 0xD800 && Code < 0xE000) continue;
    String Text(Code % 19, u'a');
    if (Code >= 0x10000) Text.push_back(static_cast<char16_t>(0xD7C0 + (Code >> 10)));
    Text.push_back(static_cast<char16_t>(Code < 0x10000 ? Code : 0xDC00 | (Code & 0x3FF)));
    ASSERT_EQ(FromUtf8(ToUtf8(Text)), Text);
  }
}

TEST(String, ComparisonFoldsAsciiOnly) {
  EXPECT_TRUE(SameText(u"currentCOLOR", u"CurrentColor"));
  EXPECT_FALSE(SameText(u"\u00E4", u"\u00C4"));
  EXPECT_FALSE(SameText(u"K", u"\u212A"));  // the Kelvin sign is no letter k here
  EXPECT_TRUE(StartsText(u"URL(#", u"url(#a)"));
  EXPECT_FALSE(StartsText(u"url(#abc", u"url(#"));
  EXPECT_TRUE(EndsText(u"%", u"50%"));
  EXPECT_FALSE(EndsText(u"50%", u"%"));
}

TEST(String, TrimTakesControlCharactersOnly) {
  EXPECT_EQ(Trim(u"\t\r\n a b\x01 "), u"a b");
  EXPECT_EQ(Trim(u" \t"), u"");
  EXPECT_EQ(Trim(u"\u00A0a"), u"\u00A0a");
}

TEST(String, SplitKeepsEmptyItems) {
  using TItems = std::vector<StringView>;
  EXPECT_EQ(SplitString(u"a,,b c", u", "), (TItems{u"a", u"", u"b", u"c"}));
  EXPECT_EQ(SplitString(u"", u","), TItems{u""});
  EXPECT_EQ(SplitString(u",", u","), (TItems{u"", u""}));
}

TEST(String, FormatFillsPlacesInOrder) {
  EXPECT_EQ(Format(u"%s and %s", {u"a", u"%s"}), u"a and %s");
  EXPECT_EQ(Format(u"%s and %s", {u"a"}), u"a and %s");
  EXPECT_EQ(Format(u"100% of it", {u"a"}), u"100% of it");
}

}  // namespace
}  // namespace qxsvg
