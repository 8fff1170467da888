// The drawing surface beside its peers: each case is drawn by all of them in turn, in the same run,
// and the row gives the times in milliseconds and how many times as long the peers take.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <map>

#include "bench/AllocationCount.h"
#include "bench/SurfaceBenchEngines.h"
#include "graphics/surface/CoverageCache.h"
#include "raster/RasterCanvas.h"

namespace qxsvg::bench {
namespace {

// The processor's time of all threads: what other programs take meanwhile does not count, and a
// peer that spreads its work over threads of its own is charged for all of them.
struct TClock {
  using time_point = double;
  static time_point now() {
    timespec Now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &Now);
    return static_cast<double>(Now.tv_sec) * 1e3 + static_cast<double>(Now.tv_nsec) / 1e6;
  }
};

double Milliseconds(TClock::time_point From) {
  return TClock::now() - From;
}

std::string DataRoot() {
  const char* Given = std::getenv("QXSVG_BENCH_DATA");
  return std::string(Given ? Given : QXSVG_BENCH_DATA_DEFAULT) + "/perf/";
}

// One drawing, set up on an engine and then drawn again and again.
struct TCase {
  int Size;
  std::function<void(IBenchEngine&)> SetUp, Draw;
  // How many of the peers, Cairo and then Qt, take part: some take minutes where others take
  // moments.
  int PeerCount = 2;
};

// A peer that takes seconds for a drawing is not asked again and again.
constexpr double MostPeerTime = 1500;

struct TSide {
  std::unique_ptr<IBenchEngine> Engine;
  std::vector<double> Times;
  double Spent = 0;
};

// What the work takes where nothing else disturbs the machine.
double BestOf(const std::vector<double>& Times) {
  return *std::min_element(Times.begin(), Times.end());
}

// The engines take turns, so that a machine that slows down slows all of them.
void RunCase(benchmark::State& State, const TCase& Case) {
  TSide Sides[] = {
      {CreateOwnEngine(), {}, 0}, {CreateCairoEngine(), {}, 0}, {CreateQtEngine(), {}, 0}};
  // For profiles of the surface alone.
  const int PeerCount = std::getenv("QXSVG_BENCH_NO_PEERS") ? 0 : Case.PeerCount;
  for (int I = 1 + PeerCount; I <= 2; ++I) Sides[I].Engine.reset();
  for (TSide& Side : Sides) {
    if (!Side.Engine) continue;
    Side.Engine->Begin(Case.Size);
    Case.SetUp(*Side.Engine);
    const TClock::time_point From = TClock::now();
    Case.Draw(*Side.Engine);
    Side.Spent = Milliseconds(From);
    if (Side.Spent > MostPeerTime) Side.Times.push_back(Side.Spent);
  }
  std::size_t Allocated = 0;
  for (auto _ : State) {
    // How long the measuring goes on hangs on the peers too, or slow ones would make it last
    // minutes.
    double Whole = 0;
    for (TSide& Side : Sides) {
      if (!Side.Engine || (&Side != Sides && Side.Spent > MostPeerTime)) continue;
      const std::size_t Before = AllocationCount();
      const TClock::time_point From = TClock::now();
      Case.Draw(*Side.Engine);
      const double Taken = Milliseconds(From);
      if (&Side == Sides) Allocated += AllocationCount() - Before;
      Side.Times.push_back(Taken);
      Side.Spent += Side.Times.back();
      Whole += &Side == Sides ? Taken : Taken / 4;
    }
    State.SetIterationTime(Whole / 1000);
  }
  const double Own = BestOf(Sides[0].Times);
  State.counters["own_ms"] = Own;
  const char* const Names[] = {"", "cairo", "qt"};
  for (int I = 1; I <= 2; ++I) {
    if (!Sides[I].Engine) continue;
    const double Peer = BestOf(Sides[I].Times);
    State.counters[std::string(Names[I]) + "_ms"] = Peer;
    State.counters[std::string("x_") + Names[I]] = Peer / Own;
  }
  State.counters["allocs"] =
      static_cast<double>(Allocated) / static_cast<double>(State.iterations());
}

const TBenchScene& Scene(const std::string& Name) {
  static std::map<std::string, TBenchScene> Known;
  const auto Found = Known.find(Name);
  if (Found != Known.end()) return Found->second;
  TBenchScene Made;
  if (Name == "icons10000")
    Made = LoadIcons(DataRoot() + "icons200", 10000, 1024);
  else if (Name == "polygon500k")
    Made = BigPolygon(500'000, 1024);
  else if (Name == "roundjoins1000")
    Made = LongStrokes(1000, 1024, false);
  else if (Name == "dashes1000")
    Made = LongStrokes(1000, 1024, true);
  else
    Made = LoadScene(DataRoot() + Name + "/" + Name + ".svg");
  return Known.emplace(Name, std::move(Made)).first->second;
}

void DrawSceneCase(benchmark::State& State, const std::string& Name, int Size) {
  const TBenchScene& S = Scene(Name);
  if (S.Shapes.empty()) return State.SkipWithError("the drawing was not found");
  const TMatrix M = S.FitInto(static_cast<float>(Size));
  RunCase(State, {Size, [&](IBenchEngine& E) { E.Prepare(S); },
                  [&](IBenchEngine& E) { E.DrawScene(S, M); }});
}

// Growth with the number of points, filled and stroked.
void PointsCase(benchmark::State& State, std::size_t Points, bool IsStroked) {
  constexpr std::size_t MostForQt = 100'000, MostForCairo = 1'000'000;
  constexpr int Size = 1024;
  TBenchScene S = BigPolygon(Points, Size);
  if (IsStroked) {
    std::swap(S.Shapes[0].Fill, S.Shapes[0].Stroke);
    S.Shapes[0].Width = 1.5f;
  }
  const int PeerCount = Points <= MostForQt ? 2 : Points <= MostForCairo ? 1 : 0;
  RunCase(State, {Size, [&](IBenchEngine& E) { E.Prepare(S); },
                  [&](IBenchEngine& E) { E.DrawScene(S, QXIdentityMatrix); }, PeerCount});
}

// A picture with soft and hard parts, half of it transparent.
std::unique_ptr<TQXGPBitmap> MakeImage(int Side) {
  auto Image = std::make_unique<TQXGPBitmap>(Side, Side);
  const TQXPixels P = Image->Pixels();
  for (int Y = 0; Y < Side; ++Y)
    for (int X = 0; X < Side; ++X) {
      const auto Red = static_cast<std::uint32_t>(X * 255 / Side);
      const auto Alpha = static_cast<std::uint32_t>((X / 8 + Y / 8) % 2 ? 255 : Y * 255 / Side);
      P.Row(Y)[X] = QXPremultiply(Alpha << 24 | Red << 16 | 0x4020);
    }
  return Image;
}

void DrawImageCase(benchmark::State& State, int Side, int Size, const TRectF& Dest) {
  const auto Image = MakeImage(Side);
  RunCase(State, {Size, [&](IBenchEngine& E) { E.Prepare(ClipStar(100), *Image); },
                  [&](IBenchEngine& E) { E.DrawImage(Dest); }});
}

void TiledCase(benchmark::State& State, const TMatrix& M) {
  const auto Image = MakeImage(64);
  RunCase(State, {2048, [&](IBenchEngine& E) { E.Prepare(ClipStar(100), *Image); },
                  [&](IBenchEngine& E) { E.FillTiled(M); }});
}

void ClippedTigerCase(benchmark::State& State, int Size) {
  const TBenchScene& S = Scene("tiger");
  if (S.Shapes.empty()) return State.SkipWithError("the drawing was not found");
  const TMatrix M = S.FitInto(static_cast<float>(Size));
  const auto Image = MakeImage(8);
  RunCase(State, {Size,
                  [&](IBenchEngine& E) {
                    E.Prepare(S);
                    E.Prepare(ClipStar(static_cast<float>(Size)), *Image);
                  },
                  [&](IBenchEngine& E) {
                    E.BeginClip();
                    E.FillAll(0xff8090a0);
                    E.DrawScene(S, M);
                    E.EndClip();
                  }});
}

void FillCase(benchmark::State& State, TQXGPColor Color) {
  constexpr int Size = 2048;
  RunCase(State, {Size, [](IBenchEngine&) {}, [&](IBenchEngine& E) { E.FillAll(Color); }});
  // What memory itself allows.
  std::vector<std::uint32_t> Plain(std::size_t{Size} * Size, 1);
  std::vector<double> Times;
  for (int I = 0; I < 21; ++I) {
    const TClock::time_point From = TClock::now();
    if (Color >> 24 == 255)
      std::memset(Plain.data(), I, Plain.size() * 4);
    else
      for (std::uint32_t& P : Plain) P = P * 3 + 1;
    benchmark::DoNotOptimize(Plain.data());
    benchmark::ClobberMemory();
    Times.push_back(Milliseconds(From));
  }
  const double Memory = BestOf(Times);
  State.counters["memory_ms"] = Memory;
  State.counters["of_memory"] = Memory / State.counters["own_ms"];
}

// Drawing from kept coverage against drawing anew.
void KeptCase(benchmark::State& State, const std::string& Name, int Size) {
  const TBenchScene& S = Scene(Name);
  TQXGPBitmap Bitmap(Size, Size);
  TQXRasterCanvas Canvas(Bitmap.Pixels());
  Canvas.SetMatrix(S.FitInto(static_cast<float>(Size)));
  TQXCoverageBudget Budget(std::size_t{256} << 20);
  std::vector<std::unique_ptr<TQXCoverageCache>> Caches;
  for (std::size_t I = 0; I < 2 * S.Shapes.size(); ++I)
    Caches.push_back(std::make_unique<TQXCoverageCache>(Budget));
  const auto Draw = [&](bool IsKept) {
    std::size_t At = 0;
    for (const TBenchShape& Shape : S.Shapes) {
      TQXPathSource Source{Shape.Path.View(), Shape.FillMode, {}, nullptr};
      Source.Coverage = IsKept ? Caches[At].get() : nullptr;
      Canvas.Brush().SetColor(Shape.Fill);
      Canvas.FillPath(Source, 1);
      Source.Coverage = IsKept ? Caches[At + 1].get() : nullptr;
      Canvas.Pen().SetColor(Shape.Stroke);
      Canvas.Pen().SetThickness(Shape.Width);
      Canvas.DrawPath(Source, 1);
      At += 2;
    }
  };
  Draw(true);
  Draw(true);
  std::vector<double> Fresh, Kept;
  for (auto _ : State) {
    TClock::time_point From = TClock::now();
    Draw(false);
    Fresh.push_back(Milliseconds(From));
    From = TClock::now();
    Draw(true);
    Kept.push_back(Milliseconds(From));
    State.SetIterationTime((Fresh.back() + Kept.back()) / 1000);
  }
  State.counters["own_ms"] = BestOf(Kept);
  State.counters["fresh_ms"] = BestOf(Fresh);
  State.counters["x_fresh"] = BestOf(Fresh) / BestOf(Kept);
  State.counters["kept_kb"] = static_cast<double>(Budget.Used()) / 1024;
}

template <class Function, class... Arguments>
void Register(const std::string& Name, Function Run, Arguments... Args) {
  benchmark::RegisterBenchmark(("surface/" + Name).c_str(),
                               [=](benchmark::State& State) { Run(State, Args...); })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

const bool IsRegistered = [] {
  for (const char* Name : {"tiger", "mapworld", "strokes", "plot100k"})
    for (const int Size : {512, 2048})
      Register(std::string(Name) + "/" + std::to_string(Size), DrawSceneCase, std::string(Name),
               Size);
  for (const char* Name : {"icons10000", "polygon500k", "roundjoins1000", "dashes1000"})
    Register(Name, DrawSceneCase, std::string(Name), 1024);
  const auto Gradient = [](benchmark::State& State, TBenchGradient Kind) {
    RunCase(State, {2048, [](IBenchEngine&) {}, [&](IBenchEngine& E) { E.FillGradient(Kind); }});
  };
  Register("gradient/linear", Gradient, TBenchGradient::Linear);
  Register("gradient/diagonal", Gradient, TBenchGradient::Diagonal);
  Register("gradient/radial", Gradient, TBenchGradient::Radial);
  Register("tiles/shifted", TiledCase, CreateTranslateQXMatrix(5, 9));
  Register("tiles/scaled", TiledCase, CreateScaleQXMatrix(1.7f, 1.7f));
  Register("tiles/turned", TiledCase, CreateRotationQXMatrix(0.3f));
  Register("image/enlarged", DrawImageCase, 512, 2048, TRectF{10, 10, 2030, 2030});
  Register("image/shrunk", DrawImageCase, 2048, 1024, TRectF{10, 10, 710, 710});
  Register("clip/tiger/512", ClippedTigerCase, 512);
  Register("clip/tiger/2048", ClippedTigerCase, 2048);
  Register("fill/opaque", FillCase, TQXGPColor{0xff224466});
  Register("fill/translucent", FillCase, TQXGPColor{0x80224466});
  Register("kept/tiger/512", KeptCase, std::string("tiger"), 512);
  Register("kept/tiger/2048", KeptCase, std::string("tiger"), 2048);
  Register("kept/mapworld/512", KeptCase, std::string("mapworld"), 512);
  for (int Size = 64; Size <= 8192; Size *= 2)
    Register("size/tiger/" + std::to_string(Size), DrawSceneCase, std::string("tiger"), Size);
  for (const std::size_t Points :
       {1'000, 3'000, 10'000, 30'000, 100'000, 300'000, 1'000'000, 2'000'000, 5'000'000}) {
    Register("points/fill/" + std::to_string(Points), PointsCase, Points, false);
    Register("points/stroke/" + std::to_string(Points), PointsCase, Points, true);
  }
  return true;
}();

}  // namespace
}  // namespace qxsvg::bench
