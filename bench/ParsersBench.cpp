// Number lists: a megabyte of characters, as long paths and polylines bring them.
#include <benchmark/benchmark.h>

#include <random>

#include "foundation/Parsers.h"

namespace {

using namespace std::literals;
using qxsvg::String;
using qxsvg::StringView;

constexpr std::size_t TextSize = 1'000'000;

// Coordinates as drawing programs write them: up to four digits, up to three decimals, pairs with a
// comma between.
String MakeCoordinates() {
  std::mt19937 Random(1);
  String Text;
  Text.reserve(TextSize + 32);
  for (bool IsX = true; Text.size() < TextSize; IsX = !IsX) {
    const int Decimals = static_cast<int>(Random() % 4);
    std::string Number = std::to_string(static_cast<int>(Random() % 4000) - 1000);
    if (Decimals > 0) Number += '.';
    for (int I = 0; I < Decimals; ++I) Number += static_cast<char>('0' + Random() % 10);
    Text.append(Number.begin(), Number.end());
    Text += IsX ? u',' : u' ';
  }
  return Text;
}

// The same shortened as far as the grammar allows: no zero before a period, no separator where a
// sign or a second period does its work.
String MakePackedCoordinates() {
  std::mt19937 Random(2);
  String Text;
  while (Text.size() < TextSize) {
    const bool IsNegative = Random() % 2 == 0, IsFraction = Random() % 2 == 0;
    std::string Number;
    if (IsNegative)
      Number = "-";
    else if (!IsFraction && !Text.empty())
      Number = " ";
    if (!IsFraction) Number += std::to_string(Random() % 100);
    Number += "." + std::to_string(1 + Random() % 99);
    Text.append(Number.begin(), Number.end());
  }
  return Text;
}

const String& Coordinates() {
  static const String Text = MakeCoordinates();
  return Text;
}
const String& PackedCoordinates() {
  static const String Text = MakePackedCoordinates();
  return Text;
}

template <class Parser>
void Measure(const char* Case, const String& (*Text)(), Parser Parse) {
  benchmark::RegisterBenchmark((Case + "/qxsvg"s).c_str(), [=](benchmark::State& State) {
    const String& Characters = Text();
    for (auto _ : State) benchmark::DoNotOptimize(Parse(Characters));
    // A character counts as one byte: that is what it has in a file.
    State.SetBytesProcessed(State.iterations() * static_cast<std::int64_t>(Characters.size()));
  });
}

const bool IsRegistered = [] {
  const auto Split = [](StringView T) {
    return qxsvg::SplitNumbers(T, qxsvg::SVGNumberSeparators);
  };
  const auto SplitAndClean = [](StringView T) {
    auto Tokens = qxsvg::SplitNumbers(T, qxsvg::SVGNumberSeparators);
    qxsvg::CleanArray(Tokens);
    return Tokens;
  };
  const auto Points = [](StringView T) { return qxsvg::ParsePoints(T); };
  const auto Numbers = [](StringView T) { return qxsvg::ParseNumbers(T, {}); };
  Measure("SplitNumbers", Coordinates, Split);
  Measure("SplitNumbers packed", PackedCoordinates, Split);
  Measure("SplitNumbers and CleanArray", Coordinates, SplitAndClean);
  Measure("ParsePoints", Coordinates, Points);
  Measure("ParsePoints packed", PackedCoordinates, Points);
  Measure("ParseNumbers", Coordinates, Numbers);
  return true;
}();

// One value of each kind, as an element of a drawing has them.
void Attributes(benchmark::State& State) {
  std::int64_t Size = 0;
  for (auto _ : State) {
    bool IsNone = false, Inherit = false;
    qxsvg::TSVGUnit Unit{};
    const StringView Color = u"#1f77b4", Named = u"steelblue", Length = u"12.5px",
                     Transform = u"translate(12.5,7) rotate(30)", Reference = u"url(#gradient12)";
    benchmark::DoNotOptimize(qxsvg::ParseColor(Color, 0, IsNone, Inherit, 0));
    benchmark::DoNotOptimize(qxsvg::ParseColor(Named, 0, IsNone, Inherit, 0));
    benchmark::DoNotOptimize(qxsvg::ParsePercent(Length, 0, Unit, qxsvg::SVGUnitFactors));
    benchmark::DoNotOptimize(qxsvg::ParseTransformation(Transform));
    benchmark::DoNotOptimize(qxsvg::ParseLocalURI(Reference));
    Size += static_cast<std::int64_t>(Color.size() + Named.size() + Length.size() +
                                      Transform.size() + Reference.size());
  }
  State.SetBytesProcessed(Size);
}
BENCHMARK(Attributes)->Name("one of each attribute/qxsvg");

}  // namespace
