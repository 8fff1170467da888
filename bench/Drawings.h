// The drawings that benchmarks are run on.
#pragma once

#include <string>
#include <vector>

namespace qxsvg::bench {

// Files that are measured together, as texts.
struct TDrawings {
  std::string Name;
  std::vector<std::string> Files;
};

// The sets below Folder of the data directory (QXSVG_BENCH_DATA, or shared/ beside the project),
// in the order of their names: each directory with all drawings in it, and each drawing that lies
// in Folder itself. Empty where there are none.
std::vector<TDrawings> DrawingsBelow(const std::string& Folder);
// All drawings that lie in that folder of the data directory, as one set.
TDrawings DrawingsIn(const std::string& Folder);
// The same with the folders in it.
TDrawings DrawingsUnder(const std::string& Folder);

// A drawing of a group with many small squares, with the attributes that real drawings have, for
// machines without the data, and to measure trees of a given size on.
std::string MakeSquares(int Count);

}  // namespace qxsvg::bench
