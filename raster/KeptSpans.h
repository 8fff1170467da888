// Coverage that was drawn, kept so that drawing it again takes little more than its pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "raster/Kernels.h"
#include "raster/Spans.h"

namespace qxsvg {

// Gathers rows, gives them as one block of words, and replays such blocks. Rows of different
// numbers of spans of different lengths are full of branches that no processor foresees; kept are
// groups of eight pixels with a coverage each, one like the other, and apart from them the spans of
// one coverage.
class TKeptSpans final : public ISpanSink {
 public:
  // Forgets all, but keeps the memory. Groups serve one colour alone; for anything else rows stay
  // as they are.
  void Clear(bool IsForColor);
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  // What came since Clear, good until the next call.
  std::span<const std::uint64_t> Pack();
  // Gives the rows of what Pack gave to Sink.
  void Replay(const std::uint64_t* Words, ISpanSink& Sink);

 private:
  // A span of one coverage; or, where Cover is CoversBase, one that is no group, whose coverages
  // take the places of as many spans behind it as they fill.
  struct TSpan {
    std::uint16_t X, Y, Length, Cover;
    std::size_t CoverSpans() const {
      return Cover < TCoverSpan::CoversBase ? 0 : (Length + sizeof(TSpan) - 1) / sizeof(TSpan);
    }
  };
  // Some rows, whose pixels stay near while first their groups and then their spans are drawn; the
  // numbers of groups and of spans up to the last of them.
  struct TBand {
    std::uint32_t Groups, Spans;
  };
  struct TPacked;
  static TPacked Unpack(const std::uint64_t* Words);
  void Group(std::int32_t X, std::int32_t Y, const std::uint8_t* Covers, std::int32_t Skipped);
  void EndBand();
  static void Blend(const TPacked& Kept, const TColorTarget& Target);
  void ReplaySpans(const TPacked& Kept, const TBand& From, const TBand& To, ISpanSink& Sink);
  void ReplayRows(const TPacked& Kept, const TBand& From, const TBand& To, ISpanSink& Sink);

  std::vector<TGroupPlace> FPlaces;
  std::vector<std::uint64_t> FCovers;
  std::vector<TSpan> FSpans;
  std::vector<TBand> FBands;
  std::int32_t FBandEnd = 0;
  bool FHasGroups = true;
  std::vector<std::uint64_t> FWords;
  std::vector<TCoverSpan> FRow;
};

}  // namespace qxsvg
