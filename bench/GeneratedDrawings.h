// Drawings that are written for the benchmarks, each with much of one thing.
#pragma once

#include <vector>

#include "bench/Drawings.h"

namespace qxsvg::bench {

// The same text each time, a thousand units wide and high:
//   use10000: 10,000 uses of one symbol of four shapes, as a map has trees.
//   gradients2000: 2,000 shapes that are filled with 500 gradients, which borrow the stops of 40.
//   clips500: 500 groups of five shapes, each clipped by a path of its own.
std::vector<TDrawings> GeneratedDrawings();

}  // namespace qxsvg::bench
