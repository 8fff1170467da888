// Exact signed area and cover for each pixel of a box.
//
// A cell holds the change of coverage from its left neighbour: the running sum along a row is the
// area that the lines wind around in that pixel, times CellFull. Lines may come in any order. All
// arithmetic is in integers, so that the sum over a closed outline is exactly zero and what a line
// leaves in a pixel does not depend on the box it was asked for.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "graphics/surface/Flatten.h"

namespace qxsvg {

// Coordinates have 8 bits of fraction; a pixel that is wound around once sums up to CellFull.
inline constexpr std::int32_t SubpixelBits = 8, SubpixelScale = 1 << SubpixelBits;
inline constexpr std::int32_t CellFullBits = 2 * SubpixelBits + 1, CellFull = 1 << CellFullBits;
// Positions along a line have so many bits below a subpixel.
inline constexpr std::int32_t SlopeBits = 16;
// Cells are swept in groups; a byte for each group says whether a line touched it.
inline constexpr std::int32_t GroupCells = 8, MarkBlock = 32;

class TCellGrid final : public ILineConsumer {
 public:
  // The largest box that one grid takes, which bounds the memory: what is bigger is drawn in bands.
  static constexpr std::int64_t MaxCells = std::int64_t{1} << 22;

  // The most rows that a box of this width may have.
  static std::int32_t MaxRows(std::int32_t Width);

  // All cells are zero, as they are before and after a sweep. Box is not empty and within the
  // bounds above. IsInside says that every line lies in it.
  void Begin(const TRect& Box, bool IsInside);
  void Consume(std::span<const TPointF> Points, std::span<const TQXPolyline> Lines) override;

  const TRect& Box() const { return FBox; }
  // After the last line the rows of the box are ready band by band, each to be swept before the
  // next. False when there are no more.
  bool NextBand();
  // The rows of the band that lines may have touched, counted from the box's.
  std::int32_t TouchedTop() const { return std::max(FLowest >> SubpixelBits, FBandTop); }
  std::int32_t TouchedBottom() const {
    return std::min((FHighest + SubpixelScale - 1) >> SubpixelBits, FBandBottom);
  }
  std::int32_t* Cells(std::int32_t Row) { return FCells.get() + (Row - FBandTop) * FStride; }
  std::uint8_t* Marks(std::int32_t Row) { return FMarks.get() + (Row - FBandTop) * FMarkStride; }
  std::ptrdiff_t Stride() const { return FStride; }
  std::ptrdiff_t MarkStride() const { return FMarkStride; }
  // Zeroes what lines have left, for a drawing that is given up.
  void Abandon();

 private:
  struct TFixedPoint {
    std::int32_t X, Y;
  };
  // A line that waits for its band, in the list of that.
  struct TWaiting {
    TFixedPoint A, B;
    std::uint32_t Next;
  };
  void Wait(TFixedPoint A, TFixedPoint B);
  void DrawWaiting();
  void Grow(std::int64_t Cells, std::int64_t Marks);
  void Convert(std::span<const TPointF> Points);
  bool IsSeen(TFixedPoint A, TFixedPoint B) const;
  void AnyLine(TFixedPoint A, TFixedPoint B);
  void Line(TFixedPoint A, TFixedPoint B);
  void VerticalLine(std::int32_t X, std::int32_t Top, std::int32_t Bottom, std::int32_t Sign);
  void ClippedLine(TFixedPoint A, TFixedPoint B);
  void ClippedRow(std::int32_t Row, std::int64_t XA, std::int64_t XB, std::int32_t Cover,
                  float Rate);

  TRect FBox;
  std::ptrdiff_t FStride = 0, FMarkStride = 0;
  std::int32_t FWidth = 0, FHeight = 0;
  std::int32_t FLowest = 0, FHighest = 0;
  bool FIsInside = false, FIsBanded = false, FWasSwept = false;
  // The rows that cells stand for.
  std::int32_t FBandTop = 0, FBandBottom = 0, FBandRows = 0, FBand = -1;
  std::vector<TWaiting> FWaiting;
  std::vector<std::uint32_t> FBandLists;
  std::int64_t FCellRoom = 0, FMarkRoom = 0;
  std::unique_ptr<std::int32_t[]> FCells;
  std::unique_ptr<std::uint8_t[]> FMarks;
  std::array<TFixedPoint, TQXLineBuffer::Capacity> FFixed;
};

}  // namespace qxsvg
