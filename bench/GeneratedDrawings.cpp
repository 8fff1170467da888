#include "bench/GeneratedDrawings.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace qxsvg::bench {

namespace {

constexpr int Side = 1000;

// The text of a drawing that is being written, and the numbers in it.
class TSketch {
 public:
  TSketch() {
    Put(R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )"
        R"(viewBox="0 0 1000 1000">)");
  }

  void Put(const char* Text) { FText += Text; }
  // As printf.
  [[gnu::format(printf, 2, 3)]] void Add(const char* Format, ...) {
    char Buffer[512];
    std::va_list Values;
    va_start(Values, Format);
    std::vsnprintf(Buffer, sizeof Buffer, Format, Values);
    va_end(Values);
    FText += Buffer;
  }
  // From 0 below Most. The standard's distributions differ from library to library.
  int Number(int Most) {
    FState = FState * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int>((FState >> 33) % static_cast<std::uint64_t>(Most));
  }
  unsigned Color() { return static_cast<unsigned>(Number(0x1000000)); }
  // A rectangle, a circle or a leaf of curves, with Paint as its last attributes.
  void Shape(int X, int Y, int Size, const char* Paint) {
    switch (Number(3)) {
      case 0:
        Add(R"(<rect x="%d" y="%d" width="%d" height="%d" rx="3" %s/>)", X, Y, Size, Size, Paint);
        break;
      case 1:
        Add(R"(<circle cx="%d" cy="%d" r="%d" %s/>)", X + Size / 2, Y + Size / 2, Size / 2, Paint);
        break;
      default:
        Add(R"(<path d="M%d %dc%d 0 %d %d %d %dc%d 0 %d %d %d %dz" %s/>)", X, Y, Size / 2, Size,
            Size / 2, Size, Size, -Size / 2, -Size, -Size / 2, -Size, -Size, Paint);
    }
  }
  std::string End() {
    Put("</svg>");
    return std::move(FText);
  }

 private:
  std::string FText;
  std::uint64_t FState = 1;
};

std::string MakeUses(int Count) {
  TSketch Sketch;
  Sketch.Put(R"(<defs><symbol id="tree" viewBox="0 0 20 30">)"
             R"(<path d="M9 20h2v10h-2z" fill="#795548"/>)"
             R"(<path d="M10 0c6 6 8 12 8 16a8 6 0 0 1-16 0c0-4 2-10 8-16z" fill="#2e7d32"/>)"
             R"(<circle cx="7" cy="14" r="2" fill="#66bb6a"/>)"
             R"(<path d="M10 6l0 14M10 12l4-3" fill="none" stroke="#1b5e20"/>)"
             R"(</symbol></defs>)");
  for (int I = 0; I < Count; ++I)
    Sketch.Add(R"(<use xlink:href="#tree" x="%d" y="%d" width="14" height="21"/>)",
               Sketch.Number(Side), Sketch.Number(Side));
  return Sketch.End();
}

std::string MakeGradients(int Count) {
  constexpr int StopLists = 40, Gradients = 500;
  constexpr const char* Spreads[] = {"pad", "reflect", "repeat"};
  TSketch Sketch;
  Sketch.Put("<defs>");
  for (int I = 0; I < StopLists; ++I) {
    Sketch.Add(R"(<linearGradient id="s%d">)", I);
    const int Stops = 2 + Sketch.Number(4);
    for (int Stop = 0; Stop < Stops; ++Stop)
      Sketch.Add(R"(<stop offset="%.2f" stop-color="#%06x" stop-opacity="%.1f"/>)",
                 static_cast<double>(Stop) / (Stops - 1), Sketch.Color(),
                 0.5 + Sketch.Number(6) / 10.0);
    Sketch.Put("</linearGradient>");
  }
  for (int I = 0; I < Gradients; ++I) {
    const int Stops = Sketch.Number(StopLists);
    const char* const Spread = Spreads[Sketch.Number(8) < 6 ? 0 : 1 + Sketch.Number(2)];
    if (I % 2 == 0)
      Sketch.Add(
          R"(<linearGradient id="g%d" x2="%.1f" y2="%.1f" spreadMethod="%s" xlink:href="#s%d"/>)",
          I, Sketch.Number(11) / 10.0, 0.2 + Sketch.Number(8) / 10.0, Spread, Stops);
    else
      Sketch.Add(R"(<radialGradient id="g%d" cx=".4" cy=".6" r=".%d" xlink:href="#s%d"/>)", I,
                 3 + Sketch.Number(5), Stops);
  }
  Sketch.Put("</defs>");
  for (int I = 0; I < Count; ++I) {
    char Paint[64];
    std::snprintf(Paint, sizeof Paint, R"~(fill="url(#g%d)")~", Sketch.Number(Gradients));
    const int X = Sketch.Number(Side - 40), Y = Sketch.Number(Side - 40);
    Sketch.Shape(X, Y, 20 + Sketch.Number(60), Paint);
  }
  return Sketch.End();
}

std::string MakeClips(int Count) {
  constexpr int Shapes = 5;
  TSketch Sketch;
  for (int I = 0; I < Count; ++I) {
    const int X = Sketch.Number(Side - 60), Y = Sketch.Number(Side - 60);
    Sketch.Add(R"(<clipPath id="c%d">)", I);
    Sketch.Shape(X, Y, 60, "");
    Sketch.Add(R"~(</clipPath><g clip-path="url(#c%d)">)~", I);
    for (int Shape = 0; Shape < Shapes; ++Shape) {
      char Paint[32];
      std::snprintf(Paint, sizeof Paint, R"(fill="#%06x")", Sketch.Color());
      Sketch.Shape(X - 10 + Sketch.Number(50), Y - 10 + Sketch.Number(50), 40, Paint);
    }
    Sketch.Put("</g>");
  }
  return Sketch.End();
}

}  // namespace

std::vector<TDrawings> GeneratedDrawings() {
  return {{"use10000", {MakeUses(10'000)}},
          {"gradients2000", {MakeGradients(2'000)}},
          {"clips500", {MakeClips(500)}}};
}

}  // namespace qxsvg::bench
