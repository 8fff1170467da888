#include "foundation/Color.h"

namespace qxsvg {

String CanvasColorToString(TQXGPColor Color) {
  String Text = u"#";
  for (int Shift = 28; Shift >= 0; Shift -= 4) Text += u"0123456789ABCDEF"[Color >> Shift & 15];
  return Text;
}

}  // namespace qxsvg
