// The replaced operators stand in a file of their own: inlined beside their callers the compiler
// takes the pair of malloc and delete for a mistake.
#include "bench/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> Allocations{0};

}  // namespace

std::size_t qxsvg::bench::AllocationCount() noexcept {
  return Allocations.load(std::memory_order_relaxed);
}

void* operator new(std::size_t Size) {
  Allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* P = std::malloc(Size ? Size : 1)) return P;
  throw std::bad_alloc();
}
void operator delete(void* P) noexcept {
  std::free(P);
}
void operator delete(void* P, std::size_t) noexcept {
  std::free(P);
}
