// The coverage of a region put together step by step, a byte for each pixel of a box.
#pragma once

#include <vector>

#include "foundation/DrawingEnums.h"
#include "raster/Spans.h"

namespace qxsvg {

// Keeps its memory for the next region.
class TRegionCover final : public ISpanSink {
 public:
  // Begins with nothing.
  void Begin(const TRect& Box);

  // Rows that come between the two are the step's, a union or an intersection. Where both cover a
  // pixel in part, a union takes the sum of the areas less their product, an intersection the
  // product, as if the two were independent.
  void BeginStep(TQXGPCombineMode Mode);
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  void EndStep();

  // The rows of the whole.
  void Emit(ISpanSink& Sink);

 private:
  std::uint8_t* RowOf(std::int32_t Y);
  void SkipTo(std::int32_t Y);
  void Unite(std::uint8_t* Row, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers);
  void Intersect(std::uint8_t* Row, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers);

  TRect FBox;
  std::size_t FWidth = 0;
  std::vector<std::uint8_t> FCovers, FRow;
  std::vector<TCoverSpan> FSpans;
  TQXGPCombineMode FMode = TQXGPCombineMode::cmUnion;
  std::int32_t FNextRow = 0;
};

}  // namespace qxsvg
