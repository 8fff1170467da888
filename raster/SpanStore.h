// Rows of coverage spans, kept.
#pragma once

#include <cstdint>
#include <vector>

#include "raster/Spans.h"

namespace qxsvg {

// Copies what comes, for clips to look at.
class TSpanStore final : public ISpanSink {
 public:
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  void Block(const TRect& Box, std::uint32_t Cover) override;
  // Forgets all, but keeps the memory.
  void Clear();

  // Of the content.
  std::size_t Bytes() const;
  bool IsEmpty() const { return FRows.empty(); }
  // The box of all spans.
  const TRect& Box() const { return FBox; }
  // A box in which all coverage is full: all there is of it where one row above the other is full
  // from the same place to the same place, little else.
  TRect FullBox() const;
  // The spans of row Y, empty for a row without any; their covers are those of Covers.
  std::span<const TCoverSpan> RowAt(std::int32_t Y) const;
  const std::uint8_t* Covers() const { return FCovers.data(); }
  // A number that stands for the content.
  std::uint64_t Hash() const;

 private:
  struct TRow {
    std::int32_t Y = 0;
    std::uint32_t First = 0, Count = 0;
  };
  static bool IsAbove(const TRow& Row, std::int32_t Y) { return Row.Y < Y; }
  bool IsSame(const TRow& Row, std::span<const TCoverSpan> Spans) const;

  TRect FBox;
  std::vector<TRow> FRows;
  std::vector<TCoverSpan> FSpans;
  std::vector<std::uint8_t> FCovers;
};

}  // namespace qxsvg
