// Restyling a whole tree: what a load does at its end, and what a program does after it changed a
// style sheet.
#include <benchmark/benchmark.h>

#include <string>

#include "document/Document.h"
#include "graphics/SVGBrush.h"

namespace {

using namespace qxsvg;

constexpr int Groups = 1000;
constexpr int ElementsOfGroup = 100;
constexpr int Elements = Groups * ElementsOfGroup;

// Which ten attributes the elements have.
constexpr const char* Painted =
    R"(<rect x="1" y="2" width="30" height="40" fill="#ff8000" stroke="black" stroke-width="1.5" )"
    R"(stroke-linecap="round" fill-rule="evenodd" opacity=".5"/>)";
constexpr const char* Plain =
    R"(<rect id="r" class="c" x="1" y="2" width="30" height="40" rx="1" ry="1" lang="en" )"
    R"(fill="#ff8000"/>)";
constexpr const char* Styled =
    R"(<rect x="1" y="2" width="30" height="40" style="fill:#ff8000;stroke:black;stroke-width:1.5;)"
    R"(stroke-linejoin:round;fill-opacity:.5;display:inline"/>)";

std::string Drawing(const char* Element, const char* Sheet) {
  std::string Text = "<svg xmlns=\"http://www.w3.org/2000/svg\"><style>";
  Text += Sheet;
  Text += "</style>";
  for (int Group = 0; Group < Groups; ++Group) {
    Text += "<g>";
    for (int I = 0; I < ElementsOfGroup; ++I) Text += Element;
    Text += "</g>";
  }
  return Text + "</svg>";
}

void ApplyStyles(benchmark::State& State, const char* Element, const char* Sheet) {
  TSVGDocument Document;
  Document.LoadFromText(Drawing(Element, Sheet));
  for (auto _ : State) Document.ApplyStyles();
  State.SetItemsProcessed(State.iterations() * Elements);
  State.counters["element"] =
      benchmark::Counter(static_cast<double>(State.iterations()) * Elements,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK_CAPTURE(ApplyStyles, TenPaintAttributes, Painted, "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ApplyStyles, TenOtherAttributes, Plain, "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ApplyStyles, StyleAttribute, Styled, "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ApplyStyles, FourRules, Plain,
                  "rect { stroke: blue } .c { stroke-width: 2 } #r { opacity: .5 } g { fill: red }")
    ->Unit(benchmark::kMillisecond);

// Three hundred rules of all kinds over twenty thousand elements of two hundred groups, each with a
// class and an identifier.
std::string SheetDrawing() {
  constexpr int SheetGroups = 200, SheetElements = 100, Classes = 60;
  std::string Text = "<svg xmlns=\"http://www.w3.org/2000/svg\"><style>";
  const auto Rules = [&Text](int Count, const auto& Selector, const char* Body) {
    for (int I = 0; I < Count; ++I) Text += Selector(std::to_string(I)) + Body;
  };
  using std::string;
  Rules(
      Classes, [](const string& I) { return ".c" + I; }, "{fill:#336699}");
  Rules(
      60, [](const string& I) { return "rect.c" + I; }, "{stroke:#202020;stroke-width:2}");
  Rules(
      60, [](const string& I) { return "#e" + I + "00"; }, "{opacity:.5}");
  Rules(
      40, [](const string& I) { return "g e" + I + "07"; }, "{fill-rule:evenodd}");
  Rules(
      20, [](const string& I) { return "g > e" + I + "09"; }, "{stroke-linecap:round}");
  Rules(
      30, [](const string& I) { return "[class=c" + I + "]"; }, "{fill-opacity:.8}");
  Rules(
      20, [](const string& I) { return "circle[id^=e" + I + "]"; }, "{stroke:red}");
  Rules(
      10, [](const string& I) { return "path[fill=\"#00000" + I + "\"]"; }, "{display:inline}");
  Text += "</style>";
  int At = 0;
  for (int Group = 0; Group < SheetGroups; ++Group) {
    Text += "<g class=\"layer\">";
    for (int I = 0; I < SheetElements; ++I, ++At) {
      constexpr const char* Shapes[] = {"<rect width=\"3\" height=\"4\"", "<circle r=\"3\"",
                                        "<path d=\"M1 2h3v4z\""};
      Text += Shapes[At % 3];
      Text +=
          " id=\"e" + std::to_string(At) + "\" class=\"c" + std::to_string(At % Classes) + "\"/>";
    }
    Text += "</g>";
  }
  return Text + "</svg>";
}

void Sheet300(benchmark::State& State) {
  TSVGDocument Document;
  Document.LoadFromText(SheetDrawing());
  for (auto _ : State) Document.ApplyStyles();
  State.counters["rules"] = static_cast<double>(Document.Styles().Count());
}
BENCHMARK(Sheet300)->Name("sheet300")->Unit(benchmark::kMillisecond);

// One inherited property after a change at the root, asked of every leaf.
void InheritBrush(benchmark::State& State) {
  TSVGDocument Document;
  Document.LoadFromText(Drawing("<rect width=\"3\" height=\"4\"/>", ""));
  std::uint32_t Color = 0xff000000;
  for (auto _ : State) {
    Document.GetBrush().SetColor(++Color);
    for (TSVGElement* Group : Document.Items())
      for (TSVGElement* Leaf : Group->Items())
        benchmark::DoNotOptimize(Leaf->AsGraphicElement()->GetBrush().Color());
  }
  State.SetItemsProcessed(State.iterations() * Elements);
}
BENCHMARK(InheritBrush)->Unit(benchmark::kMillisecond);

}  // namespace
