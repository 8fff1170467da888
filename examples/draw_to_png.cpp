// Draws an SVG file into a PNG file: draw_to_png IN.svg OUT.png [WIDTH]
#include <cmath>
#include <cstdlib>
#include <iostream>

#include "qxsvg.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"

using namespace qxsvg;

int main(int Count, char** Arguments) {
  if (Count < 3) {
    std::cerr << "usage: draw_to_png IN.svg OUT.png [WIDTH]\n";
    return 2;
  }
  try {
    TSVGDocument Drawing;
    Drawing.LoadFromFile(std::string_view(Arguments[1]));

    // The size of the root element, in pixels, gives the proportions of the picture; many drawings
    // have a view box alone.
    const TRectF Shown = Drawing.GetBoundsRect();
    const double OwnWidth = Drawing.GetWidth() > 0 ? Drawing.GetWidth() : Shown.Width();
    const double OwnHeight = Drawing.GetHeight() > 0 ? Drawing.GetHeight() : Shown.Height();
    const double Width = Count > 3 ? std::strtod(Arguments[3], nullptr) : OwnWidth;
    const double Height = Width * OwnHeight / OwnWidth;
    constexpr double Most = 32767;
    if (!(Width > 0 && Width <= Most && Height > 0 && Height <= Most))
      throw ESVGException(u"There is no picture of that size");
    TQXGPBitmap Picture(static_cast<std::int32_t>(std::ceil(Width)),
                        static_cast<std::int32_t>(std::ceil(Height)));
    Drawing.Draw(Picture.GetCanvas(), QXRect(0, 0, static_cast<float>(Picture.GetWidth()),
                                             static_cast<float>(Picture.GetHeight())));

    // The file appears under its name only when it is whole.
    TAtomicFile File(FromUtf8(Arguments[2]));
    Picture.SaveToStream(File, u"png");
    File.Finish();
  } catch (const std::exception& Error) {
    std::cerr << Arguments[1] << ": " << Error.what() << "\n";
    return 1;
  }
}
