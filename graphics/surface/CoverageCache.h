// What a caller keeps so that drawing the same path again need not compute its coverage anew.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/Geometry.h"
#include "runtime/Export.h"

namespace qxsvg {

// The memory that a group of caches may take together, such as those of one document. It must
// outlive its caches. Any thread may use it.
class QXSVG_API TQXCoverageBudget {
 public:
  constexpr explicit TQXCoverageBudget(std::size_t Bytes) : FLimit(Bytes) {}
  bool Take(std::size_t Bytes);
  void GiveBack(std::size_t Bytes) { FUsed.fetch_sub(Bytes, std::memory_order_relaxed); }
  std::size_t Used() const { return FUsed.load(std::memory_order_relaxed); }
  std::size_t Limit() const { return FLimit; }

 private:
  std::atomic<std::size_t> FUsed{0};
  std::size_t FLimit;
};

// The one that the whole process shares, of Limits::CoverageBytes.
QXSVG_API TQXCoverageBudget& QXSharedCoverageBudget();

// Everything besides the path's points that coverage depends on. The surface fills it in; Stroke is
// a number that stands for the pen's outline (0 for a fill), Clip one that stands for the clip's
// content, Mode for fill rule and smoothing.
struct TQXCoverageKey {
  TMatrix Matrix, PathMatrix;
  std::uint64_t Stroke = 0, Clip = 0;
  std::uint32_t Mode = 0;
  friend bool operator==(const TQXCoverageKey&, const TQXCoverageKey&) = default;
};

// One path, one way of painting it (its fill or its stroke). The caller drops it when the points
// change; a change of anything else the surface sees by the key. What is kept belongs to the
// surface, which alone knows its form.
class QXSVG_API TQXCoverageCache {
 public:
  // WasDrawn tells that the caller has drawn the path before it made this: the first drawing then
  // counts as the second.
  explicit TQXCoverageCache(TQXCoverageBudget& Budget, bool WasDrawn = false)
      : FBudget(&Budget), FWasDrawn(WasDrawn) {}
  TQXCoverageCache(const TQXCoverageCache&) = delete;
  TQXCoverageCache& operator=(const TQXCoverageCache&) = delete;
  ~TQXCoverageCache() { Drop(); }

  enum class TUse : std::uint8_t {
    Draw,   // draw as ever, and keep nothing
    Keep,   // draw, and hand what was computed to Keep
    Replay  // what is kept serves
  };
  // What a surface is to do for a drawing under Key. Only the second drawing in a row under one key
  // keeps anything: what is drawn once, or in motion, must not pay for it.
  TUse Ask(const TQXCoverageKey& Key);
  // Takes a copy of Bytes for the key of the last Ask, as far as the budget allows.
  void Keep(const void* Data, std::size_t Bytes);
  // The kept bytes, aligned for std::uint64_t.
  const std::uint64_t* Data() const { return FData.get(); }
  std::size_t Size() const { return FSize; }
  bool IsKept() const { return FIsKept; }
  // Forgets key and bytes and gives the memory back.
  void Drop();

 private:
  TQXCoverageBudget* FBudget;
  std::unique_ptr<std::uint64_t[]> FData;
  std::size_t FSize = 0;
  TQXCoverageKey FKey;
  bool FHasKey = false, FIsKept = false, FRefused = false, FWasDrawn = false;
};

}  // namespace qxsvg
