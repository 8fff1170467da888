// Coverage of a small path that is drawn in many places, kept once for each way it meets the
// pixels.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "foundation/Geometry.h"
#include "graphics/surface/CoverageCache.h"

namespace qxsvg {

// What the coverage of a path depends on when it is moved by whole pixels: the matrix without its
// shift, the part of the shift that is no whole pixel, in steps of 1 / StampPhases, and numbers
// that stand for the pen's outline (0 for a fill), fill rule and smoothing.
struct TQXStampKey {
  float m11 = 1, m12 = 0, m21 = 0, m22 = 1;
  std::uint16_t PhaseX = 0, PhaseY = 0;
  std::uint32_t Mode = 0;
  std::uint64_t Stroke = 0;
  friend bool operator==(const TQXStampKey&, const TQXStampKey&) = default;
};
inline constexpr int StampPhaseBits = 8;
inline constexpr std::int32_t StampPhases = 1 << StampPhaseBits;

// A rectangle of pixels, its left top seen from the whole pixels of the shift.
struct TQXStamp {
  std::int16_t Left = 0, Top = 0;
  std::uint16_t Width = 0, Height = 0;
  std::uint32_t First = 0;
};

// For one path, fills and strokes alike. The caller drops it when the points change.
class QXSVG_API TQXCoverageStamps {
 public:
  explicit TQXCoverageStamps(TQXCoverageBudget& Budget) : FBudget(&Budget) {}
  TQXCoverageStamps(const TQXCoverageStamps&) = delete;
  TQXCoverageStamps& operator=(const TQXCoverageStamps&) = delete;
  ~TQXCoverageStamps() { Clear(); }

  // What is wider or higher is not kept: there the pixels cost more than their coverage.
  static constexpr std::int32_t MostSide = 64;
  // Behind the last byte of a stamp as many may be read.
  static constexpr std::size_t Padding = 32;

  // Null where there is none.
  const TQXStamp* Find(const TQXStampKey& Key) const;
  // Its rows, each Width bytes; void after the next Add.
  const std::uint8_t* Bytes(const TQXStamp& Stamp) const { return FBytes.data() + Stamp.First; }
  // Keeps a stamp that is not there yet and gives its bytes, all 0, to be filled in. Null where the
  // memory allows no more; what is kept already is given up once too much else was asked for.
  std::uint8_t* Add(const TQXStampKey& Key, TQXStamp Stamp);
  // Another number when stamps that were found before are void.
  std::uint32_t Serial() const { return FSerial; }

 private:
  struct TEntry {
    TQXStampKey Key;
    TQXStamp Stamp;
  };
  bool Reserve(std::size_t Bytes);
  void Rehash(std::size_t Slots);
  void Clear();

  TQXCoverageBudget* FBudget;
  // At least half of them are empty (0); the others hold the number of an entry, plus 1.
  std::vector<std::uint32_t> FSlots;
  std::vector<TEntry> FEntries;
  std::vector<std::uint8_t> FBytes;
  std::size_t FTaken = 0;
  std::uint32_t FRefused = 0, FSerial = 0;
};

// A stamp of Stamps with its left top at a pixel, and the premultiplied colour that it gets there.
struct TQXPlacedStamp {
  const TQXCoverageStamps* Stamps;
  TQXStamp Stamp;
  std::int32_t X, Y;
  std::uint32_t Color;
};

}  // namespace qxsvg
