#include "graphics/surface/CoverageCache.h"

#include <cstring>
#include <new>
#include <utility>

#include "foundation/Limits.h"

namespace qxsvg {

bool TQXCoverageBudget::Take(std::size_t Bytes) {
  std::size_t Used = FUsed.load(std::memory_order_relaxed);
  do {
    if (Bytes > FLimit || Used > FLimit - Bytes) return false;
  } while (!FUsed.compare_exchange_weak(Used, Used + Bytes, std::memory_order_relaxed));
  return true;
}

TQXCoverageBudget& QXSharedCoverageBudget() {
  static constinit TQXCoverageBudget Budget(Limits::CoverageBytes);
  return Budget;
}

TQXCoverageCache::TUse TQXCoverageCache::Ask(const TQXCoverageKey& Key) {
  if (FHasKey && FKey == Key) {
    if (FIsKept) return TUse::Replay;
    return FRefused ? TUse::Draw : TUse::Keep;
  }
  Drop();
  FKey = Key;
  FHasKey = true;
  return std::exchange(FWasDrawn, false) ? TUse::Keep : TUse::Draw;
}

void TQXCoverageCache::Keep(const void* Data, std::size_t Bytes) {
  if (!FHasKey || FIsKept) return;
  // A path that did not fit is not tried again until its key changes: computing what cannot be kept
  // would cost at each draw.
  FRefused = true;
  if (!FBudget->Take(Bytes)) return;
  const std::size_t Words = (Bytes + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t);
  FData.reset(new (std::nothrow) std::uint64_t[Words]);
  if (!FData) return FBudget->GiveBack(Bytes);
  if (Bytes) std::memcpy(FData.get(), Data, Bytes);
  FSize = Bytes;
  FIsKept = true;
  FRefused = false;
}

void TQXCoverageCache::Drop() {
  if (FIsKept) FBudget->GiveBack(FSize);
  FData.reset();
  FSize = 0;
  FHasKey = FIsKept = FRefused = false;
}

}  // namespace qxsvg
