// How often the whole program has allocated, for benchmarks that claim to allocate nothing.
#pragma once

#include <cstddef>

namespace qxsvg::bench {

// Calls of the global operator new since the program began, by all threads.
std::size_t AllocationCount() noexcept;

}  // namespace qxsvg::bench
