// Documents from text to pixels beside the peers: each case is done by all of them in turn, in the
// same run, and the row gives the median of the processor's times in milliseconds.
//
// A case of a set is the sum over its files: "load" with the end of the document, "first" the first
// draw after a load, "whole" load and first draw together, "redraw" the same document again,
// unchanged, on the same bitmap, after it was drawn twice.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string_view>
#include <tuple>

#include "bench/DrawBenchEngines.h"
#include "bench/Drawings.h"
#include "bench/GeneratedDrawings.h"
#include "document/Document.h"
#include "graphics/surface/Bitmap.h"
#include "runtime/Streams.h"

namespace qxsvg::bench {
namespace {

// Of all threads: what other programs take meanwhile does not count, and a library that spreads
// its work over threads of its own is charged for all of them.
double Now() {
  timespec Time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &Time);
  return static_cast<double>(Time.tv_sec) * 1e3 + static_cast<double>(Time.tv_nsec) / 1e6;
}

double MedianOf(std::vector<double> Times) {
  const auto Middle = Times.begin() + static_cast<std::ptrdiff_t>(Times.size() / 2);
  std::nth_element(Times.begin(), Middle, Times.end());
  return *Middle;
}

enum class TPhase { Load, First, Whole, Redraw };

// What a case may take of one library, in milliseconds, before its rounds end: some sets take a
// peer a hundred times as long as another, and all of them shall be through within minutes.
constexpr double MostCaseTime = 300;

struct TSide {
  const char* Name;
  std::unique_ptr<IDrawEngine> Engine;
  std::vector<double> Times;
};

// Milliseconds that a phase takes for all files; below 0 when one is refused.
double TimeOf(TPhase Phase, IDrawEngine& Engine, const TDrawings& Set, int Size) {
  double Sum = 0;
  const auto Timed = [&Sum](const auto& Work) {
    const double From = Now();
    Work();
    Sum += Now() - From;
  };
  for (const std::string& File : Set.Files) {
    bool IsLoaded = false;
    const auto Load = [&] { IsLoaded = Engine.Load(File); };
    const auto Draw = [&] { Engine.Draw(); };
    if (Phase == TPhase::Load || Phase == TPhase::Whole)
      Timed(Load);
    else
      Load();
    if (!IsLoaded) return -1;
    if (Phase != TPhase::Load) {
      Engine.Prepare(Size);
      if (Phase == TPhase::Redraw) {
        for (int I = 0; I < 2; ++I) Draw(), Engine.Prepare(Size);
      }
      Timed(Draw);
    }
    if (Phase == TPhase::Load)
      Timed([&] { Engine.Unload(); });
    else
      Engine.Unload();
  }
  return Sum;
}

// A file of many that a peer cannot read is measured for nobody.
TDrawings WithoutRefused(const TDrawings& Set, std::vector<TSide>& Sides) {
  if (Set.Files.size() == 1) return Set;
  TDrawings Result{Set.Name, {}};
  for (std::size_t I = 0; I < Set.Files.size(); ++I) {
    const auto Refuses = [&](TSide& Side) { return !Side.Engine->Load(Set.Files[I]); };
    const auto Who = std::find_if(Sides.begin(), Sides.end(), Refuses);
    if (Who == Sides.end())
      Result.Files.push_back(Set.Files[I]);
    else
      std::fprintf(stderr, "%s: file %zu is left out, %s refuses it\n", Set.Name.c_str(), I + 1,
                   Who->Name);
  }
  for (TSide& Side : Sides) Side.Engine->Unload();
  return Result;
}

std::vector<TSide> MakeSides() {
  std::vector<TSide> Sides;
  Sides.push_back({"own", CreateOwnDrawEngine(), {}});
  // For profiles of our own part alone.
  if (!std::getenv("QXSVG_BENCH_NO_PEERS")) {
    Sides.push_back({"librsvg", CreateRsvgDrawEngine(), {}});
    Sides.push_back({"qt", CreateQtDrawEngine(), {}});
  }
  std::erase_if(Sides, [](const TSide& Side) { return !Side.Engine; });
  return Sides;
}

// The first round warms caches and fonts up, and weeds out who cannot do it. It counts where more
// would take too long.
void RunRounds(TPhase Phase, const TDrawings& Set, int Size, int Rounds,
               std::vector<TSide>& Sides) {
  std::map<const char*, double> Taken;
  for (int Round = 0; Round <= Rounds; ++Round)
    for (TSide& Side : Sides) {
      double& Sum = Taken[Side.Name];
      if (Sum < 0 || (!Side.Times.empty() && Sum > MostCaseTime)) continue;
      const double From = Now();
      const double Time = TimeOf(Phase, *Side.Engine, Set, Size);
      Sum = Time < 0 ? Time : Sum + Now() - From;
      if (Time >= 0 && (Round > 0 || Sum > MostCaseTime)) Side.Times.push_back(Time);
    }
  std::erase_if(Sides, [](const TSide& Side) { return Side.Times.empty(); });
}

// A peer that is too slow for rounds is measured once in the process, whatever the repetitions.
void RunCase(benchmark::State& State, TPhase Phase, const TDrawings& All, int Size, int Rounds) {
  static std::map<std::tuple<std::string, TPhase, int>, std::map<std::string, double>> Slow;
  auto& Known = Slow[{All.Name, Phase, Size}];
  std::vector<TSide> Sides = MakeSides();
  const TDrawings Set = WithoutRefused(All, Sides);
  std::erase_if(Sides, [&](const TSide& Side) { return Known.contains(Side.Name); });
  RunRounds(Phase, Set, Size, Rounds, Sides);
  if (Sides.empty() || Sides[0].Name != std::string_view("own"))
    return State.SkipWithError("A document was refused");
  const double Own = MedianOf(Sides[0].Times);
  for (auto _ : State) State.SetIterationTime(Own / 1000);
  for (const TSide& Side : Sides) {
    const double Median = MedianOf(Side.Times);
    State.counters[std::string(Side.Name) + "_ms"] = Median;
    if (&Side != Sides.data() && Side.Times.size() < static_cast<std::size_t>(Rounds))
      Known[Side.Name] = Median;
    if (&Side != Sides.data()) State.counters[std::string("x_") + Side.Name] = Median / Own;
  }
  for (const auto& [Name, Median] : Known) {
    State.counters[Name + "_ms"] = Median;
    State.counters["x_" + Name] = Median / Own;
  }
}

// --- Questions to a tree

std::unique_ptr<TSVGDocument> DocumentOf(const std::string& File) {
  auto Document = std::make_unique<TSVGDocument>();
  TBytesViewStream Stream{std::string_view(File)};
  Document->LoadFromStream(Stream);
  return Document;
}

// One point of a grid over the drawing after the other; the first is answered after a load.
void HitCase(benchmark::State& State, const TDrawings& Set) {
  constexpr int Side = 1024, Steps = 16;
  const auto Document = DocumentOf(Set.Files.front());
  TQXGPBitmap Bitmap(Side, Side);
  int At = 0, Hits = 0;
  std::vector<double> Times;
  const auto Ask = [&] {
    const TPointF Point{static_cast<float>(At % Steps * Side / Steps),
                        static_cast<float>(At / Steps % Steps * Side / Steps)};
    ++At;
    const double From = Now();
    if (Document->ElementAtPos(Bitmap.GetCanvas(), Point, QXRect(0, 0, Side, Side), {})) ++Hits;
    Times.push_back(Now() - From);
  };
  Ask();
  State.counters["cold"] = Times.front();
  for (auto _ : State) {
    Ask();
    State.SetIterationTime(Times.back() / 1000);
  }
  State.counters["own_ms"] = MedianOf(Times);
  State.counters["worst"] = *std::max_element(Times.begin() + 1, Times.end());
  State.counters["share_hit"] = static_cast<double>(Hits) / At;
}

void BoundsCase(benchmark::State& State, int Count) {
  const std::string File = MakeSquares(Count);
  std::vector<double> Cold, Warm;
  for (auto _ : State) {
    const auto Document = DocumentOf(File);
    TSVGElement& Group = *Document->Items()[0];
    for (std::vector<double>* Times : {&Cold, &Warm}) {
      const double From = Now();
      benchmark::DoNotOptimize(Group.GetBoundsRect(QXIdentityMatrix));
      Times->push_back(Now() - From);
    }
    State.SetIterationTime(Cold.back() / 1000);
  }
  State.counters["own_ms"] = MedianOf(Cold);
  State.counters["warm"] = MedianOf(Warm);
}

// Rounds are counted: where one library takes a hundred times as long as another, a time to reach
// would never end.
template <class Function, class... Arguments>
void Register(const std::string& Name, int Rounds, Function Run, Arguments... Args) {
  benchmark::RegisterBenchmark(Name.c_str(), [=](benchmark::State& State) { Run(State, Args...); })
      ->UseManualTime()
      ->Iterations(Rounds)
      ->Unit(benchmark::kMillisecond);
}

constexpr int SetRounds = 3, HitRounds = 255;

const bool IsRegistered = [] {
  std::vector<TDrawings> Sets = DrawingsBelow("perf");
  if (Sets.empty()) Sets.push_back({"squares10000", {MakeSquares(10'000)}});
  if (TDrawings Features = DrawingsUnder("corpus/features"); !Features.Files.empty())
    Sets.push_back(std::move(Features));
  for (TDrawings& Set : GeneratedDrawings()) Sets.push_back(std::move(Set));
  for (const TDrawings& Set : Sets) {
    const auto RegisterCase = [&Set](const std::string& What, TPhase Phase, int Size) {
      Register(Set.Name + What, 1, RunCase, Phase, Set, Size, SetRounds);
    };
    RegisterCase("/load", TPhase::Load, 0);
    for (const int Size : {512, 2048}) {
      const std::string At = "/" + std::to_string(Size);
      RegisterCase("/first" + At, TPhase::First, Size);
      RegisterCase("/whole" + At, TPhase::Whole, Size);
      RegisterCase("/redraw" + At, TPhase::Redraw, Size);
    }
    if (Set.Name == "mapworld") Register("mapworld/hit", HitRounds, HitCase, Set);
  }
  Register("bounds100000", SetRounds, BoundsCase, 100'000);
  return true;
}();

}  // namespace
}  // namespace qxsvg::bench
