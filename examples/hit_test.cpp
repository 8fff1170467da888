// Says which elements lie under the points of a grid: hit_test IN.svg [SIDE]
#include <cstdlib>
#include <iostream>
#include <map>

#include "qxsvg.h"
#include "runtime/Exceptions.h"

using namespace qxsvg;

int main(int Count, char** Arguments) {
  if (Count < 2) {
    std::cerr << "usage: hit_test IN.svg [SIDE]\n";
    return 2;
  }
  try {
    TSVGDocument Drawing;
    Drawing.LoadFromFile(std::string_view(Arguments[1]));
    const int Side = Count > 2 ? std::atoi(Arguments[2]) : 24;

    // The grid lies over the drawing fitted into a square of that many pixels. The canvas only says
    // what clip and matrix are in force.
    TQXGPBitmap Surface(Side, Side);
    const TRectF Area = QXRect(0, 0, static_cast<float>(Side), static_cast<float>(Side));
    std::map<TSVGElement*, char> Letters;
    for (int Y = 0; Y < Side; ++Y) {
      for (int X = 0; X < Side; ++X) {
        const TPointF Point{static_cast<float>(X) + 0.5f, static_cast<float>(Y) + 0.5f};
        TSVGElement* Hit = Drawing.ElementAtPos(Surface.GetCanvas(), Point, Area, {});
        if (!Hit) {
          std::cout << '.';
          continue;
        }
        const auto Letter = static_cast<char>('a' + static_cast<int>(Letters.size()) % 26);
        std::cout << Letters.try_emplace(Hit, Letter).first->second;
      }
      std::cout << '\n';
    }
    for (const auto& [Element, Letter] : Letters)
      std::cout << Letter << "  " << ToUtf8(Element->SVGTypeName()) << "  " << ToUtf8(Element->ID())
                << '\n';
  } catch (const std::exception& Error) {
    std::cerr << Arguments[1] << ": " << Error.what() << "\n";
    return 1;
  }
}
