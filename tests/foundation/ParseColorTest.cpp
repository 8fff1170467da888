// Colours, references and data URIs.
#include "foundation/ParseColor.h"

#include <gtest/gtest.h>

#include <tuple>

#include "foundation/ParseURI.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

constexpr TQXGPColor Default = 0x11223344, Current = 0x55667788;

// The colour, whether it is none, whether it is inherited.
using TRead = std::tuple<TQXGPColor, bool, bool>;

TRead Read(StringView Text, bool IsNone = false, bool Inherit = false) {
  const TQXGPColor Color = ParseColor(Text, Default, IsNone, Inherit, Current);
  return {Color, IsNone, Inherit};
}

TEST(ParseColor, Forms) {
  const std::pair<StringView, TQXGPColor> Cases[] = {
      {u"#F00", 0xFFFF0000},
      {u" # f 0 0 ", 0xFFFF0000},
      {u"#1f77b4", 0xFF1F77B4},
      // Other counts of digits are read as they are.
      {u"#80ff0000", 0x80FF0000},
      {u"#abcd", 0x00FFABCD},
      {u"#", 0x000000FF},
      {u"RGB( 100%, 50%,0%)", 0xFFFF7F00},
      {u"rgb(1,2,3,4)", 0xFF010203},
      // Components wrap, they are not clamped.
      {u"rgb(256,300,-1)", 0xFF002CFF},
      {u"rgb(200%,-1%,9e306%)", 0xFFFEFE00},
      {u"rgb(7)", 0xFF070000},
      {u"SteelBlue", 0xFF4682B4},
      {u"nosuchcolor", Default},
      {u"rgb(1,2,3", Default},
  };
  for (const auto& [Text, Color] : Cases)
    EXPECT_EQ(Read(Text, true, true), (TRead{Color, false, false})) << ToUtf8(Text);
  for (const StringView Bad : {u"#ggg", u"#12\u00E9", u"rgb(1.5,0,0)", u"rgb(x%,0,0)", u"rgb(1,,2)",
                               u"rgb(99999999999,0,0)"})
    EXPECT_THROW(Read(Bad), EConvertError) << ToUtf8(Bad);
}

TEST(ParseColor, NoneSticksUntilAColourIsRead) {
  EXPECT_EQ(Read(u" none "), (TRead{Default, true, false}));
  EXPECT_EQ(Read(u"currentColor", true), (TRead{Current, true, false}));
  EXPECT_EQ(Read(u"inherit", true), (TRead{Default, true, true}));
  EXPECT_EQ(Read(u"", true, true), (TRead{Default, true, true}));
  EXPECT_EQ(Read(u"", true, false), (TRead{Default, true, false}));
  // Blanks are an unknown name unless the colour is inherited.
  EXPECT_EQ(Read(u"  ", true, false), (TRead{Default, false, false}));
  EXPECT_EQ(Read(u"  ", true, true), (TRead{Default, true, true}));
  EXPECT_EQ(Read(u"red", true, true), (TRead{0xFFFF0000, false, false}));
}

TEST(ParseColor, OpacityRoundsAndClamps) {
  EXPECT_EQ(SetColorOpacity(0xFF123456, 0.5), 0x80123456u);
  EXPECT_EQ(SetColorOpacity(0xFF123456, 0.1), 0x1A123456u);
  EXPECT_EQ(SetColorOpacity(0x00123456, 7), 0xFF123456u);
  EXPECT_EQ(SetColorOpacity(0xFF123456, std::numeric_limits<double>::quiet_NaN()), 0x00123456u);
}

TEST(ParseURI, FragmentsColoursAndNames) {
  const std::tuple<StringView, StringView, StringView> Cases[] = {
      {u"#abcd", u"abcd", u"abcd"},
      {u" #gradient ", u"gradient", u"gradient"},
      // Colours are no fragments.
      {u"#abc", u"#abc", u""},
      {u"#ABCDEF", u"#ABCDEF", u""},
      {u"#abg", u"abg", u"abg"},
      {u"url(#x)", u"x", u"x"},
      {u"URI(#abc)", u"abc", u"abc"},
      {u"url(#x", u"url(#x", u""},
      {u"url('#x')", u"url('#x')", u""},
      {u"url(a.svg#x)", u"url(a.svg#x)", u""},
      {u"picture.png", u"picture.png", u""},
      {u"#", u"", u""},
      {u"", u"", u""},
  };
  for (const auto& [Text, URI, Local] : Cases) {
    EXPECT_EQ(ParseURI(Text), URI) << ToUtf8(Text);
    EXPECT_EQ(ParseLocalURI(Text), Local) << ToUtf8(Text);
  }
  bool Inherit = true;
  EXPECT_EQ(ParseLocalURI(u"#abc", u"old", Inherit), u"old");
  EXPECT_FALSE(Inherit);
  EXPECT_EQ(ParseURI(u"inherit", u"old", Inherit), u"old");
  EXPECT_TRUE(Inherit);
}

TEST(ParseURI, DataURIs) {
  const std::tuple<StringView, StringView, StringView, bool> Cases[] = {
      {u"data:image/png;base64,AAAA", u"image/png", u"AAAA", true},
      {u"DATA:image/jpeg;charset=utf-8;BASE64,A,B", u"image/jpeg", u"A,B", true},
      {u"data:;base64,AAAA", u"text/plain", u"AAAA", false},
      {u"data:image/png,AAAA", u"image/png", u"AAAA", false},
      // Only the first item is a media type.
      {u"data:base64;image/png,AAAA", u"text/plain", u"AAAA", false},
      {u"data:image/png;base64", u"text/plain", u"image/png;base64", false},
      {u"data:", u"text/plain", u"", false},
  };
  for (const auto& [Text, MediaType, Data, IsImage] : Cases) {
    TDataURI Parts;
    ASSERT_TRUE(ParseDataURI(Text, Parts)) << ToUtf8(Text);
    EXPECT_EQ(Parts.MediaType, MediaType) << ToUtf8(Text);
    EXPECT_EQ(Parts.Data, Data) << ToUtf8(Text);
    EXPECT_EQ(Parts.IsImage(), IsImage) << ToUtf8(Text);
  }
  TDataURI Parts;
  EXPECT_FALSE(ParseDataURI(u" data:image/png;base64,AAAA", Parts));
  ASSERT_TRUE(ParseDataURI(u"data:image/svg+xml;base64,AAAA", Parts));
  EXPECT_EQ(Parts.ImageType(), u"svg+xml");
}

}  // namespace
}  // namespace qxsvg
