// Loading whole documents from memory, each load with its destruction.
//
// A case is a set of the perf folder, or all files of a folder of the corpus together. The counter
// "peak" is the memory that a load of the largest file adds at its highest, as a multiple of the
// file.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "bench/Drawings.h"
#include "document/Document.h"
#include "runtime/Streams.h"
#ifdef QXSVG_BENCH_LIBRSVG_2_0
#include <librsvg/rsvg.h>
#endif

namespace {

using TFiles = std::vector<std::string>;
using TLoad = bool (*)(const std::string& File);

bool LoadWithQxsvg(const std::string& File) {
  qxsvg::TSVGDocument Document;
  qxsvg::TBytesViewStream Stream{std::string_view(File)};
  Document.LoadFromStream(Stream);
  return Document.Items().Count() > 0;
}

#ifdef QXSVG_BENCH_LIBRSVG_2_0
bool LoadWithRsvg(const std::string& File) {
  RsvgHandle* const Handle =
      rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(File.data()), File.size(), nullptr);
  if (!Handle) return false;
  g_object_unref(Handle);
  return true;
}
#endif

// A line of /proc/self/status, in bytes.
double StatusBytes(std::string_view Name) {
  std::ifstream Status("/proc/self/status");
  for (std::string Line; std::getline(Status, Line);)
    if (Line.starts_with(Name)) return std::strtod(Line.c_str() + Name.size() + 1, nullptr) * 1024;
  return 0;
}

// Bytes that one load takes at its highest, as a multiple of the file's size.
double PeakOfLoad(TLoad Load, const std::string& File) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";  // forgets the highest mark so far
  const double Before = StatusBytes("VmRSS:");
  Load(File);
  return std::max(0.0, StatusBytes("VmHWM:") - Before) / static_cast<double>(File.size());
}

void Measure(benchmark::State& State, TLoad Load, const TFiles& Files) {
  std::int64_t Size = 0;
  for (const std::string& File : Files) {
    Size += static_cast<std::int64_t>(File.size());
    try {
      if (Load(File)) continue;
      State.SkipWithError("A document was refused");
    } catch (const std::exception& Error) {
      State.SkipWithError(Error.what());
    }
    return;
  }
  const auto Largest = std::max_element(
      Files.begin(), Files.end(), [](const auto& A, const auto& B) { return A.size() < B.size(); });
  State.counters["peak"] = PeakOfLoad(Load, *Largest);
  for (auto _ : State)
    for (const std::string& File : Files) benchmark::DoNotOptimize(Load(File));
  State.SetBytesProcessed(State.iterations() * Size);
}

void Register(const std::string& Case, const TFiles& Files) {
  const auto Add = [&](const char* Subject, TLoad Load) {
    benchmark::RegisterBenchmark((Case + "/" + Subject).c_str(), Measure, Load, Files)
        ->Unit(benchmark::kMillisecond);
  };
  Add("qxsvg", LoadWithQxsvg);
#ifdef QXSVG_BENCH_LIBRSVG_2_0
  Add("librsvg", LoadWithRsvg);
#endif
}

const bool IsRegistered = [] {
  Register("made 10000 paths", {qxsvg::bench::MakeSquares(10'000)});
  for (const auto& Set : qxsvg::bench::DrawingsBelow("perf")) Register(Set.Name, Set.Files);
  for (const char* const Folder : {"corpus/maps", "corpus/drawings"}) {
    const auto Set = qxsvg::bench::DrawingsIn(Folder);
    if (!Set.Files.empty()) Register(Set.Name, Set.Files);
  }
  return true;
}();

}  // namespace
