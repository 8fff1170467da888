// Colours, and the words of other properties.
#include "FuzzInput.h"
#include "foundation/Parsers.h"
#include "foundation/Writers.h"
#include "runtime/Exceptions.h"

using namespace qxsvg;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  const String Text = fuzz::TextOf(Data, Size);
  bool IsNone = false, Inherit = false;
  try {
    const TQXGPColor Color = ParseColor(Text, 0xFF000000, IsNone, Inherit, 0xFF123456);
    if (!IsNone && !Inherit) {
      // What is written of a colour reads back as it, opaque.
      const String Written = SVGColorToString(Color | 0xFF000000);
      bool No = false;
      fuzz::Check(ParseColor(Written, 0, No, No, 0) == (Color | 0xFF000000), "colours round trip");
    }
  } catch (const EConvertError&) {
  }
  ParseCursor(Text, 0, Inherit);
  ParseTextDecoration(Text, Inherit);
  ParseGlyphOrientationHorizontal(Text, {}, Inherit);
  ParseGlyphOrientationVertical(Text, {}, Inherit);
  ParseFontStyle(Text, {}, Inherit);
  return 0;
}
