// Rows of coverage spans, kept.
#pragma once

#include <cstdint>
#include <vector>

#include "raster/Spans.h"

namespace qxsvg {

// Copies what passes; rows come from top to bottom. The copy can be taken out as one block of bytes
// and read from there.
class TSpanStore final : public ISpanSink {
 public:
  // Passes every row on to Next too, which may be null.
  explicit TSpanStore(ISpanSink* Next = nullptr) : FNext(Next) {}

  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  // Forgets all, but keeps the memory.
  void Clear();
  void SetNext(ISpanSink* Next) { FNext = Next; }

  bool IsEmpty() const { return FRows.empty(); }
  // The box of all spans.
  const TRect& Box() const { return FBox; }
  // A box in which all coverage is full: all there is of it where one row above the other is full
  // from the same place to the same place, little else.
  TRect FullBox() const;
  // The spans of row Y, empty for a row without any; their covers are those of Covers.
  std::span<const TCoverSpan> RowAt(std::int32_t Y) const;
  const std::uint8_t* Covers() const { return FCovers.data(); }
  void Replay(ISpanSink& Sink) const;
  // A number that stands for the content.
  std::uint64_t Hash() const;

  // Appends everything to Bytes; padded to words.
  void Pack(std::vector<std::uint64_t>& Words) const;
  // Replays what Pack gave.
  static void Replay(const std::uint64_t* Words, ISpanSink& Sink);

 private:
  struct TRow {
    std::int32_t Y = 0;
    std::uint32_t First = 0, Count = 0;
  };
  static void Replay(std::span<const TRow> Rows, const TCoverSpan* Spans,
                     const std::uint8_t* Covers, ISpanSink& Sink);

  ISpanSink* FNext;
  TRect FBox;
  std::vector<TRow> FRows;
  std::vector<TCoverSpan> FSpans;
  std::vector<std::uint8_t> FCovers;
};

}  // namespace qxsvg
