// Changes the fill of one element and draws again when told of the change:
// recolour IN.svg ID COLOUR OUT.png
#include <iostream>

#include "qxsvg.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"

using namespace qxsvg;

namespace {

constexpr std::int32_t Side = 256;

void DrawTo(TSVGDocument& Drawing, TQXGPBitmap& Picture) {
  Picture.Clear();
  Drawing.Draw(Picture.GetCanvas(), QXRect(0, 0, Side, Side));
}

}  // namespace

int main(int Count, char** Arguments) {
  if (Count < 5) {
    std::cerr << "usage: recolour IN.svg ID COLOUR OUT.png\n";
    return 2;
  }
  try {
    TSVGDocument Drawing;
    Drawing.LoadFromFile(std::string_view(Arguments[1]));
    TQXGPBitmap Picture(Side, Side);
    DrawTo(Drawing, Picture);

    // A window would ask for a repaint here; this program draws at once.
    Drawing.OnChange = [&](TPersistent*) { DrawTo(Drawing, Picture); };

    TSVGElement* Found = Drawing.FindElement(FromUtf8(Arguments[2]));
    TSVGGraphicElement* Element = Found ? Found->AsGraphicElement() : nullptr;
    if (!Element) throw ESVGException(u"There is no such graphic element");
    // A declaration list, applied over what the element has.
    Element->ApplyStyle(TSVGStyle(u"", u"fill:" + FromUtf8(Arguments[3])));

    TAtomicFile File(FromUtf8(Arguments[4]));
    Picture.SaveToStream(File, u"png");
    File.Finish();
  } catch (const std::exception& Error) {
    std::cerr << Arguments[1] << ": " << Error.what() << "\n";
    return 1;
  }
}
