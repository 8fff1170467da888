#include "runtime/ZeroedArray.h"

#include <cstdint>
#include <cstdlib>
#include <new>

// The address sanitizer watches the ends of what the allocator gave, and no others.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QXSVG_SANITIZED
#endif
#endif
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(QXSVG_SANITIZED)
#define QXSVG_LARGE_PAGES
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace qxsvg {

namespace {

#if defined(QXSVG_LARGE_PAGES)

constexpr std::size_t LargePage = std::size_t{2} << 20;

bool IsMapped(std::size_t Bytes) {
  return Bytes >= LargePage;
}

void* Map(std::size_t Bytes) {
  if (Bytes > SIZE_MAX - LargePage) return nullptr;
  void* const Mapped =
      mmap(nullptr, Bytes + LargePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (Mapped == MAP_FAILED) return nullptr;
  // A large page begins at a multiple of its size: what lies before the first goes back, and so
  // does what is left behind the last small one.
  auto* const First = static_cast<std::byte*>(Mapped);
  const std::size_t Before = -reinterpret_cast<std::uintptr_t>(First) % LargePage;
  const auto Page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t Used = (Bytes + Page - 1) / Page * Page;
  if (Before != 0) munmap(First, Before);
  if (Before + Used < Bytes + LargePage)
    munmap(First + Before + Used, Bytes + LargePage - Before - Used);
  // The rest at the end would be a large page that is used in part only. A refusal is no error.
  madvise(First + Before, Bytes / LargePage * LargePage, MADV_HUGEPAGE);
  return First + Before;
}

void Unmap(void* Memory, std::size_t Bytes) {
  munmap(Memory, Bytes);
}

#else

bool IsMapped(std::size_t) {
  return false;
}
void* Map(std::size_t) {
  return nullptr;
}
void Unmap(void*, std::size_t) {}

#endif

}  // namespace

void* QXAllocateZeroed(std::size_t Bytes) {
  void* const Memory = IsMapped(Bytes) ? Map(Bytes) : std::calloc(Bytes, 1);
  if (!Memory) throw std::bad_alloc();
  return Memory;
}

void QXFreeZeroed(void* Memory, std::size_t Bytes) noexcept {
  if (!Memory) return;
  if (IsMapped(Bytes))
    Unmap(Memory, Bytes);
  else
    std::free(Memory);
}

}  // namespace qxsvg
