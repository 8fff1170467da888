#include "graphics/surface/CoverageStamps.h"

#include <algorithm>
#include <bit>

#include "foundation/Limits.h"

namespace qxsvg {

namespace {

// Memory is asked for in portions of this size, so that the budget is seldom asked; they are small,
// as there may be thousands of paths with a stamp or two. The first one pays for the first slots.
constexpr std::size_t Portion = 1024;
constexpr std::size_t FirstSlots = 64;

std::size_t HashOf(const TQXStampKey& Key) {
  const auto Mix = [](std::uint64_t Hash, std::uint64_t Value) {
    Hash = (Hash ^ Value) * 0x9e3779b97f4a7c15u;
    return Hash ^ Hash >> 32;
  };
  const auto Pair = [](std::uint32_t High, std::uint32_t Low) {
    return std::uint64_t{High} << 32 | Low;
  };
  const auto Bits = [](float V) { return std::bit_cast<std::uint32_t>(V); };
  std::uint64_t Hash = Mix(Key.Stroke, Pair(Bits(Key.m11), Bits(Key.m12)));
  Hash = Mix(Hash, Pair(Bits(Key.m21), Bits(Key.m22)));
  return Mix(Hash, Pair(Key.Mode, std::uint32_t{Key.PhaseX} << 16 | Key.PhaseY));
}

}  // namespace

const TQXStamp* TQXCoverageStamps::Find(const TQXStampKey& Key) const {
  if (FSlots.empty()) return nullptr;
  for (std::size_t At = HashOf(Key);; ++At) {
    const std::uint32_t Entry = FSlots[At & (FSlots.size() - 1)];
    if (Entry == 0) return nullptr;
    if (FEntries[Entry - 1].Key == Key) return &FEntries[Entry - 1].Stamp;
  }
}

std::uint8_t* TQXCoverageStamps::Add(const TQXStampKey& Key, TQXStamp Stamp) {
  const std::size_t Size = std::size_t{Stamp.Width} * Stamp.Height;
  if (FEntries.size() >= Limits::StampsOfPath || !Reserve(Size)) {
    // The ways it was drawn before have gone out of use, as when a view is zoomed.
    if (++FRefused >= Limits::StampsOfPath) Clear();
    return nullptr;
  }
  if (2 * (FEntries.size() + 1) > FSlots.size()) Rehash(std::max(FirstSlots, 2 * FSlots.size()));
  // Behind the bytes of all stamps lies the padding.
  Stamp.First = static_cast<std::uint32_t>(FBytes.empty() ? 0 : FBytes.size() - Padding);
  FBytes.resize(Stamp.First + Size + Padding);
  FEntries.push_back({Key, Stamp});
  std::size_t At = HashOf(Key);
  while (FSlots[At & (FSlots.size() - 1)] != 0) ++At;
  FSlots[At & (FSlots.size() - 1)] = static_cast<std::uint32_t>(FEntries.size());
  return FBytes.data() + Stamp.First;
}

bool TQXCoverageStamps::Reserve(std::size_t Bytes) {
  // Vectors grow by doubling, and slots are never more than four times the entries.
  const std::size_t Needed =
      2 * (FBytes.size() + Bytes + Padding) +
      (FEntries.size() + 1) * (2 * sizeof(TEntry) + 4 * sizeof(std::uint32_t));
  if (Needed <= FTaken) return true;
  const std::size_t More = (Needed - FTaken + Portion - 1) / Portion * Portion;
  if (FTaken + More > Limits::StampBytesOfPath || !FBudget->Take(More)) return false;
  FTaken += More;
  return true;
}

void TQXCoverageStamps::Rehash(std::size_t Slots) {
  FSlots.assign(Slots, 0);
  for (std::size_t I = 0; I < FEntries.size(); ++I) {
    std::size_t At = HashOf(FEntries[I].Key);
    while (FSlots[At & (Slots - 1)] != 0) ++At;
    FSlots[At & (Slots - 1)] = static_cast<std::uint32_t>(I + 1);
  }
}

void TQXCoverageStamps::Clear() {
  FSlots = {};
  FEntries = {};
  FBytes = {};
  FBudget->GiveBack(FTaken);
  FTaken = 0;
  FRefused = 0;
  ++FSerial;
}

}  // namespace qxsvg
