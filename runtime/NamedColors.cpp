#include "runtime/NamedColors.h"

#include <algorithm>
#include <array>

#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

struct TNamedColor {
  StringView Name;
  std::uint32_t RGB;
};

constexpr std::array<TNamedColor, 147> NamedColors{{
    {u"aliceblue", 0xf0f8ff},
    {u"antiquewhite", 0xfaebd7},
    {u"aqua", 0x00ffff},
    {u"aquamarine", 0x7fffd4},
    {u"azure", 0xf0ffff},
    {u"beige", 0xf5f5dc},
    {u"bisque", 0xffe4c4},
    {u"black", 0x000000},
    {u"blanchedalmond", 0xffebcd},
    {u"blue", 0x0000ff},
    {u"blueviolet", 0x8a2be2},
    {u"brown", 0xa52a2a},
    {u"burlywood", 0xdeb887},
    {u"cadetblue", 0x5f9ea0},
    {u"chartreuse", 0x7fff00},
    {u"chocolate", 0xd2691e},
    {u"coral", 0xff7f50},
    {u"cornflowerblue", 0x6495ed},
    {u"cornsilk", 0xfff8dc},
    {u"crimson", 0xdc143c},
    {u"cyan", 0x00ffff},
    {u"darkblue", 0x00008b},
    {u"darkcyan", 0x008b8b},
    {u"darkgoldenrod", 0xb8860b},
    {u"darkgray", 0xa9a9a9},
    {u"darkgreen", 0x006400},
    {u"darkgrey", 0xa9a9a9},
    {u"darkkhaki", 0xbdb76b},
    {u"darkmagenta", 0x8b008b},
    {u"darkolivegreen", 0x556b2f},
    {u"darkorange", 0xff8c00},
    {u"darkorchid", 0x9932cc},
    {u"darkred", 0x8b0000},
    {u"darksalmon", 0xe9967a},
    {u"darkseagreen", 0x8fbc8f},
    {u"darkslateblue", 0x483d8b},
    {u"darkslategray", 0x2f4f4f},
    {u"darkslategrey", 0x2f4f4f},
    {u"darkturquoise", 0x00ced1},
    {u"darkviolet", 0x9400d3},
    {u"deeppink", 0xff1493},
    {u"deepskyblue", 0x00bfff},
    {u"dimgray", 0x696969},
    {u"dimgrey", 0x696969},
    {u"dodgerblue", 0x1e90ff},
    {u"firebrick", 0xb22222},
    {u"floralwhite", 0xfffaf0},
    {u"forestgreen", 0x228b22},
    {u"fuchsia", 0xff00ff},
    {u"gainsboro", 0xdcdcdc},
    {u"ghostwhite", 0xf8f8ff},
    {u"gold", 0xffd700},
    {u"goldenrod", 0xdaa520},
    {u"gray", 0x808080},
    {u"green", 0x008000},
    {u"greenyellow", 0xadff2f},
    {u"grey", 0x808080},
    {u"honeydew", 0xf0fff0},
    {u"hotpink", 0xff69b4},
    {u"indianred", 0xcd5c5c},
    {u"indigo", 0x4b0082},
    {u"ivory", 0xfffff0},
    {u"khaki", 0xf0e68c},
    {u"lavender", 0xe6e6fa},
    {u"lavenderblush", 0xfff0f5},
    {u"lawngreen", 0x7cfc00},
    {u"lemonchiffon", 0xfffacd},
    {u"lightblue", 0xadd8e6},
    {u"lightcoral", 0xf08080},
    {u"lightcyan", 0xe0ffff},
    {u"lightgoldenrodyellow", 0xfafad2},
    {u"lightgray", 0xd3d3d3},
    {u"lightgreen", 0x90ee90},
    {u"lightgrey", 0xd3d3d3},
    {u"lightpink", 0xffb6c1},
    {u"lightsalmon", 0xffa07a},
    {u"lightseagreen", 0x20b2aa},
    {u"lightskyblue", 0x87cefa},
    {u"lightslategray", 0x778899},
    {u"lightslategrey", 0x778899},
    {u"lightsteelblue", 0xb0c4de},
    {u"lightyellow", 0xffffe0},
    {u"lime", 0x00ff00},
    {u"limegreen", 0x32cd32},
    {u"linen", 0xfaf0e6},
    {u"magenta", 0xff00ff},
    {u"maroon", 0x800000},
    {u"mediumaquamarine", 0x66cdaa},
    {u"mediumblue", 0x0000cd},
    {u"mediumorchid", 0xba55d3},
    {u"mediumpurple", 0x9370db},
    {u"mediumseagreen", 0x3cb371},
    {u"mediumslateblue", 0x7b68ee},
    {u"mediumspringgreen", 0x00fa9a},
    {u"mediumturquoise", 0x48d1cc},
    {u"mediumvioletred", 0xc71585},
    {u"midnightblue", 0x191970},
    {u"mintcream", 0xf5fffa},
    {u"mistyrose", 0xffe4e1},
    {u"moccasin", 0xffe4b5},
    {u"navajowhite", 0xffdead},
    {u"navy", 0x000080},
    {u"oldlace", 0xfdf5e6},
    {u"olive", 0x808000},
    {u"olivedrab", 0x6b8e23},
    {u"orange", 0xffa500},
    {u"orangered", 0xff4500},
    {u"orchid", 0xda70d6},
    {u"palegoldenrod", 0xeee8aa},
    {u"palegreen", 0x98fb98},
    {u"paleturquoise", 0xafeeee},
    {u"palevioletred", 0xdb7093},
    {u"papayawhip", 0xffefd5},
    {u"peachpuff", 0xffdab9},
    {u"peru", 0xcd853f},
    {u"pink", 0xffc0cb},
    {u"plum", 0xdda0dd},
    {u"powderblue", 0xb0e0e6},
    {u"purple", 0x800080},
    {u"red", 0xff0000},
    {u"rosybrown", 0xbc8f8f},
    {u"royalblue", 0x4169e1},
    {u"saddlebrown", 0x8b4513},
    {u"salmon", 0xfa8072},
    {u"sandybrown", 0xf4a460},
    {u"seagreen", 0x2e8b57},
    {u"seashell", 0xfff5ee},
    {u"sienna", 0xa0522d},
    {u"silver", 0xc0c0c0},
    {u"skyblue", 0x87ceeb},
    {u"slateblue", 0x6a5acd},
    {u"slategray", 0x708090},
    {u"slategrey", 0x708090},
    {u"snow", 0xfffafa},
    {u"springgreen", 0x00ff7f},
    {u"steelblue", 0x4682b4},
    {u"tan", 0xd2b48c},
    {u"teal", 0x008080},
    {u"thistle", 0xd8bfd8},
    {u"tomato", 0xff6347},
    {u"turquoise", 0x40e0d0},
    {u"violet", 0xee82ee},
    {u"wheat", 0xf5deb3},
    {u"white", 0xffffff},
    {u"whitesmoke", 0xf5f5f5},
    {u"yellow", 0xffff00},
    {u"yellowgreen", 0x9acd32},
}};

static_assert(std::is_sorted(NamedColors.begin(), NamedColors.end(),
                             [](const TNamedColor& A, const TNamedColor& B) {
                               return A.Name < B.Name;
                             }),
              "the look-up is a binary search");

constexpr std::size_t LongestName = StringView(u"lightgoldenrodyellow").size();
constexpr std::uint32_t Opaque = 0xFF000000;
constexpr StringView IdentPrefix = u"cla";

}  // namespace

std::optional<std::uint32_t> FindNamedColor(StringView Name) {
  if (Name.size() > LongestName) return std::nullopt;
  std::array<char16_t, LongestName> Buffer;
  std::transform(Name.begin(), Name.end(), Buffer.begin(), AsciiLower);
  const StringView Lower(Buffer.data(), Name.size());
  const auto At =
      std::lower_bound(NamedColors.begin(), NamedColors.end(), Lower,
                       [](const TNamedColor& Color, StringView Key) { return Color.Name < Key; });
  if (At == NamedColors.end() || At->Name != Lower) return std::nullopt;
  return Opaque | At->RGB;
}

bool IdentToAlphaColor(StringView Ident, std::uint32_t& Color) {
  if (!StartsText(IdentPrefix, Ident)) return false;
  const auto Found = FindNamedColor(Ident.substr(IdentPrefix.size()));
  if (Found) Color = *Found;
  return Found.has_value();
}

std::uint32_t StringToAlphaColor(StringView Text) {
  std::uint32_t Color = 0;
  if (IdentToAlphaColor(Text, Color)) return Color;
  const auto Raise = [Text] { throw EConvertError(u"'%s' is not a valid color", {Text}); };
  if (Text.size() < 2 || Text[0] != u'$') Raise();
  for (const char16_t C : Text.substr(1)) {
    const char16_t Digit = AsciiLower(C);
    if (Digit >= u'0' && Digit <= u'9')
      Color = Color << 4 | static_cast<std::uint32_t>(Digit - u'0');
    else if (Digit >= u'a' && Digit <= u'f')
      Color = Color << 4 | static_cast<std::uint32_t>(Digit - u'a' + 10);
    else
      Raise();
  }
  return Color;
}

String AlphaColorToString(std::uint32_t Color) {
  if ((Color & Opaque) == Opaque) {
    const std::uint32_t RGB = Color & ~Opaque;
    const auto At = std::find_if(NamedColors.begin(), NamedColors.end(),
                                 [RGB](const TNamedColor& Named) { return Named.RGB == RGB; });
    if (At != NamedColors.end()) return String(At->Name);
  }
  char16_t Digits[] = u"#00000000";
  for (int I = 8; I > 0; --I, Color >>= 4) Digits[I] = u"0123456789ABCDEF"[Color & 15];
  return Digits;
}

}  // namespace qxsvg
