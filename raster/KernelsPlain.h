// What the forms of the kernels share: the exact arithmetic, the writing of spans, and the plain
// loops, which also do the odd pixels at the end of a row.
#pragma once

#include <algorithm>
#include <cstdint>

#include "raster/CellGrid.h"
#include "raster/Kernels.h"

namespace qxsvg {

// The coverage that a cell's running sum stands for.
template <bool EvenOdd>
std::uint32_t CoverOf(std::int32_t Sum) {
  std::uint32_t Area;
  if constexpr (EvenOdd) {
    Area = static_cast<std::uint32_t>(Sum) & (2 * CellFull - 1);
    if (Area > CellFull) Area = 2 * CellFull - Area;
  } else {
    const std::uint32_t Size =
        Sum < 0 ? 0u - static_cast<std::uint32_t>(Sum) : static_cast<std::uint32_t>(Sum);
    Area = std::min<std::uint32_t>(Size, CellFull);
  }
  return (Area * FullCover + CellFull / 2) >> CellFullBits;
}

// Turns runs of groups into spans.
class TSpanWriter {
 public:
  explicit TSpanWriter(const TSweepRow& Row) : FRow(Row), FNext(Row.Spans) {}

  // The groups up to Group were not touched and have one coverage.
  void Skip(std::int32_t Group, std::uint32_t Cover) {
    if (Group != FGroup && Cover != 0) {
      *FNext++ = {FRow.Left + FGroup * GroupCells, (Group - FGroup) * GroupCells, Cover};
      FEnd = -1;
    }
    FGroup = Group;
  }
  // The next Count groups have their coverage in the row's covers.
  void Group(std::int32_t Count = 1) {
    const std::int32_t X = FGroup * GroupCells, Length = Count * GroupCells;
    if (FEnd == FGroup)
      FNext[-1].Length += Length;
    else
      *FNext++ = {FRow.Left + X, Length, TCoverSpan::CoversBase + static_cast<std::uint32_t>(X)};
    FGroup += Count;
    FEnd = FGroup;
  }
  // Fills up to the right side, cuts there, and gives the number of spans.
  std::size_t Finish(std::uint32_t Cover) {
    const std::int32_t X = FGroup * GroupCells;
    if (Cover != 0 && X < FRow.Width) *FNext++ = {FRow.Left + X, FRow.Width - X, Cover};
    const std::int32_t Right = FRow.Left + FRow.Width;
    while (FNext != FRow.Spans && FNext[-1].X >= Right) --FNext;
    if (FNext != FRow.Spans) FNext[-1].Length = std::min(FNext[-1].Length, Right - FNext[-1].X);
    return static_cast<std::size_t>(FNext - FRow.Spans);
  }

 private:
  const TSweepRow& FRow;
  TCoverSpan* FNext;
  // The first group that no span tells of yet, and the end of the last span if that has covers.
  std::int32_t FGroup = 0, FEnd = -1;
};

void PlainBlendColor(std::uint32_t* Target, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers, std::uint32_t Color);
void PlainBlendBlock(const TCoverBlock& Block, std::uint32_t Color);
void PlainBlendGroups(const TCoverGroups& Groups, std::uint32_t Color);
void PlainBlendPixels(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                      std::uint32_t Cover);
void PlainBlendCovered(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                       const std::uint8_t* Covers);
void PlainMultiplyCovers(std::uint8_t* Target, const std::uint8_t* A, const std::uint8_t* B,
                         std::int32_t Count);
void PlainScaleCovers(std::uint8_t* Target, const std::uint8_t* A, std::uint32_t Cover,
                      std::int32_t Count);
void PlainFetchLinear(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                      const TLinearRow& Row);
void PlainFetchRadial(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                      const TRadialRow& Row);
void PlainResampleRow(std::uint32_t* Out, std::int32_t Count, const TResampledRow& Row);
void PlainMixRows(std::uint32_t* Out, const std::uint32_t* A, const std::uint32_t* B,
                  std::uint32_t Weight, std::int32_t Count);
void PlainMixRowsOver(std::uint32_t* Target, const std::uint32_t* A, const std::uint32_t* B,
                      std::uint32_t Weight, std::int32_t Count);
void PlainFetchTurned(std::uint32_t* Out, std::int32_t Count, const TTurnedRow& Row);
void PlainAddSteepRows(const TSteepRows& Rows);
void PlainMeanRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count);
void PlainMeanFewRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count);
void PlainMeanColumns(std::uint32_t* Out, std::int32_t Count, const TMeanColumns& Columns);
#if defined(__x86_64__)
// What AVX2 has no faster form for, since memory bounds it.
void SSE41StreamCopy(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count);
#endif

}  // namespace qxsvg
