// One library alone in a process, so that neither its memory nor its caches mix with another's:
//
//   compare_subject NAME check FILE              ends with 0 when the file loads and draws
//   compare_subject NAME times ROUNDS SECONDS SIDES FILE...
//   compare_subject NAME memory SIDE FILE...
//
// "times" prints a line for each phase with the milliseconds of every round, summed over the files:
// "load" with the end of the document, "first SIDE" the first draw after a load, "redraw SIDE" the
// third. SIDES are numbers parted by commas. Rounds end early when SECONDS have passed, though
// never before the third. "memory" prints the kilobytes that the process took before the first load
// and at most.
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>
#include <vector>

#include "bench/DrawBenchEngines.h"

namespace qxsvg::bench {
namespace {

constexpr int FewestRounds = 3;

// Of all threads, so that a library is charged for the work that it hands to others.
double Now() {
  timespec Time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &Time);
  return static_cast<double>(Time.tv_sec) * 1e3 + static_cast<double>(Time.tv_nsec) / 1e6;
}

std::unique_ptr<IDrawEngine> EngineOf(std::string_view Name) {
  if (Name == "qxsvg") return CreateOwnDrawEngine();
  if (Name == "librsvg") return CreateRsvgDrawEngine();
  if (Name == "qt") return CreateQtDrawEngine();
  return nullptr;
}

std::vector<std::string> ContentsOf(int Count, char** Names) {
  std::vector<std::string> Result;
  for (int I = 0; I < Count; ++I) {
    std::ifstream File(Names[I], std::ios::binary);
    Result.emplace_back(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
  }
  return Result;
}

std::vector<int> NumbersOf(const std::string& Text) {
  std::vector<int> Result;
  std::istringstream Stream(Text);
  for (std::string Part; std::getline(Stream, Part, ',');) Result.push_back(std::stoi(Part));
  return Result;
}

// Phases in the order of their first mention.
class TTimes {
 public:
  template <class Function>
  void Add(const std::string& Phase, const Function& Work) {
    const double From = Now();
    Work();
    FSums[Phase] += Now() - From;
  }
  void EndRound(bool IsCounted) {
    for (auto& [Phase, Sum] : FSums) {
      if (IsCounted) FRounds[Phase].push_back(Sum);
      Sum = 0;
    }
  }
  void Print() const {
    for (const auto& [Phase, Rounds] : FRounds) {
      std::printf("%s:", Phase.c_str());
      for (const double Time : Rounds) std::printf(" %.6f", Time);
      std::printf("\n");
    }
  }

 private:
  std::map<std::string, double> FSums;
  std::map<std::string, std::vector<double>> FRounds;
};

bool RunFile(IDrawEngine& Engine, const std::string& File, int Side, bool IsLoadTimed,
             TTimes& Times) {
  const std::string At = " " + std::to_string(Side);
  bool IsLoaded = false;
  const auto Load = [&] { IsLoaded = Engine.Load(File); };
  const auto Unload = [&] { Engine.Unload(); };
  const auto Draw = [&] { Engine.Draw(); };
  if (IsLoadTimed)
    Times.Add("load", Load);
  else
    Load();
  if (!IsLoaded) return false;
  Engine.Prepare(Side);
  Times.Add("first" + At, Draw);
  Engine.Prepare(Side);
  Draw();
  Engine.Prepare(Side);
  Times.Add("redraw" + At, Draw);
  if (IsLoadTimed)
    Times.Add("load", Unload);
  else
    Unload();
  return true;
}

// Side after side, so that the bitmap's memory is there and touched when the rounds begin.
int PrintTimes(IDrawEngine& Engine, int Rounds, double Seconds, const std::vector<int>& Sides,
               const std::vector<std::string>& Files) {
  for (const int Side : Sides) {
    TTimes Times;
    const double From = Now();
    // The round before the first warms up and does not count.
    for (int Round = 0; Round <= Rounds; ++Round) {
      const double Passed = (Now() - From) / 1e3 * static_cast<double>(Sides.size());
      if (Round > FewestRounds && Passed > Seconds) break;
      for (const std::string& File : Files)
        if (!RunFile(Engine, File, Side, Side == Sides.front(), Times)) return 1;
      Times.EndRound(Round > 0);
    }
    Times.Print();
  }
  return 0;
}

// Kilobytes by the name that the system gives them: VmRSS is resident now, VmHWM was at most. What
// getrusage tells is inherited from the program that started this one.
long Memory(std::string_view Name) {
  std::ifstream Status("/proc/self/status");
  for (std::string Line; std::getline(Status, Line);)
    if (Line.starts_with(Name)) return std::stol(Line.substr(Name.size() + 1));
  return 0;
}

int PrintMemory(IDrawEngine& Engine, int Side, const std::vector<std::string>& Files) {
  // Forgets the peak of the start.
  std::ofstream("/proc/self/clear_refs") << 5;
  const long Idle = Memory("VmRSS");
  for (const std::string& File : Files) {
    if (!Engine.Load(File)) return 1;
    Engine.Prepare(Side);
    Engine.Draw();
    Engine.Unload();
  }
  std::printf("idle: %ld\npeak: %ld\n", Idle, Memory("VmHWM"));
  return 0;
}

int Check(IDrawEngine& Engine, const std::vector<std::string>& Files) {
  for (const std::string& File : Files) {
    if (!Engine.Load(File)) return 1;
    Engine.Prepare(64);
    Engine.Draw();
  }
  return 0;
}

int Run(int Count, char** Arguments) {
  if (Count < 4) return 2;
  const std::string_view Mode = Arguments[2];
  const std::unique_ptr<IDrawEngine> Engine = EngineOf(Arguments[1]);
  // Not built with this library.
  if (!Engine) return 3;
  if (Mode == "check") return Check(*Engine, ContentsOf(Count - 3, Arguments + 3));
  if (Mode == "times" && Count > 6)
    return PrintTimes(*Engine, std::stoi(Arguments[3]), std::stod(Arguments[4]),
                      NumbersOf(Arguments[5]), ContentsOf(Count - 6, Arguments + 6));
  if (Mode == "memory" && Count > 4)
    return PrintMemory(*Engine, std::stoi(Arguments[3]), ContentsOf(Count - 4, Arguments + 4));
  return 2;
}

}  // namespace
}  // namespace qxsvg::bench

int main(int Count, char** Arguments) {
  try {
    return qxsvg::bench::Run(Count, Arguments);
  } catch (const std::exception& Error) {
    std::fprintf(stderr, "%s\n", Error.what());
    return 1;
  }
}
