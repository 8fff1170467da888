#include "bench/Drawings.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace qxsvg::bench {

namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& Path) {
  std::ifstream File(Path, std::ios::binary);
  return {std::istreambuf_iterator<char>(File), {}};
}

std::vector<fs::path> EntriesOf(const fs::path& Folder) {
  std::vector<fs::path> Result;
  std::error_code Error;
  for (const auto& Entry : fs::directory_iterator(Folder, Error)) Result.push_back(Entry.path());
  std::sort(Result.begin(), Result.end());
  return Result;
}

fs::path DataFolder() {
  const char* const Named = std::getenv("QXSVG_BENCH_DATA");
  return Named ? Named : QXSVG_BENCH_DATA_DEFAULT;
}

bool IsDrawing(const fs::path& Path) {
  return Path.extension() == ".svg" && fs::is_regular_file(Path);
}

}  // namespace

TDrawings DrawingsIn(const std::string& Folder) {
  const fs::path Path = DataFolder() / Folder;
  TDrawings Result{Path.filename().string(), {}};
  for (const fs::path& File : EntriesOf(Path))
    if (IsDrawing(File)) Result.Files.push_back(ReadAll(File));
  return Result;
}

TDrawings DrawingsUnder(const std::string& Folder) {
  TDrawings Result = DrawingsIn(Folder);
  for (const fs::path& Entry : EntriesOf(DataFolder() / Folder))
    if (fs::is_directory(Entry))
      for (std::string& File : DrawingsUnder(Folder + "/" + Entry.filename().string()).Files)
        Result.Files.push_back(std::move(File));
  return Result;
}

std::vector<TDrawings> DrawingsBelow(const std::string& Folder) {
  std::vector<TDrawings> Result;
  for (const fs::path& Entry : EntriesOf(DataFolder() / Folder)) {
    if (IsDrawing(Entry)) Result.push_back({Entry.stem().string(), {ReadAll(Entry)}});
    if (!fs::is_directory(Entry)) continue;
    TDrawings Set = DrawingsIn(Folder + "/" + Entry.filename().string());
    if (!Set.Files.empty()) Result.push_back(std::move(Set));
  }
  return Result;
}

std::string MakeSquares(int Count) {
  std::ostringstream Text;
  Text << R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 1000 1000"><g>)";
  for (int I = 0; I < Count; ++I)
    Text << R"(<path fill="#1f77b4" stroke="black" stroke-width="0.5" d="M)" << I % 1000 << ' '
         << I / 1000 << R"~(h10v10h-10z" transform="translate(1,2)"/>)~";
  Text << "</g></svg>";
  return Text.str();
}

}  // namespace qxsvg::bench
