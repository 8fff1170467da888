#include "raster/RegionCover.h"

#include <algorithm>

#include "raster/Kernels.h"

namespace qxsvg {

void TRegionCover::Begin(const TRect& Box) {
  FBox = Box;
  FWidth = static_cast<std::size_t>(Box.Width());
  FCovers.assign(FWidth * static_cast<std::size_t>(Box.Height()), std::uint8_t{0});
  FRow.resize(FWidth + CoversPadding);
}

std::uint8_t* TRegionCover::RowOf(std::int32_t Y) {
  return FCovers.data() + static_cast<std::size_t>(Y - FBox.Top) * FWidth;
}

void TRegionCover::BeginStep(TQXGPCombineMode Mode) {
  FMode = Mode;
  FNextRow = FBox.Top;
}

// Rows that a step does not reach are empty in an intersection with it.
void TRegionCover::SkipTo(std::int32_t Y) {
  if (FMode == TQXGPCombineMode::cmIntersect)
    for (; FNextRow < Y; ++FNextRow) std::fill_n(RowOf(FNextRow), FWidth, std::uint8_t{0});
  FNextRow = Y;
}

void TRegionCover::EndStep() {
  SkipTo(FBox.Bottom);
}

void TRegionCover::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                       const std::uint8_t* Covers) {
  SkipTo(Y);
  FNextRow = Y + 1;
  std::fill(FRow.begin(), FRow.end(), std::uint8_t{0});
  for (const TCoverSpan& Span : Spans) {
    std::uint8_t* Out = FRow.data() + (Span.X - FBox.Left);
    if (Span.IsEven())
      std::fill_n(Out, Span.Length, static_cast<std::uint8_t>(Span.Cover));
    else
      std::copy_n(Span.Covers(Covers), Span.Length, Out);
  }
  std::uint8_t* Row = RowOf(Y);
  if (FMode == TQXGPCombineMode::cmIntersect) {
    Kernels().MultiplyCovers(Row, Row, FRow.data(), static_cast<std::int32_t>(FWidth));
    return;
  }
  for (std::size_t I = 0; I < FWidth; ++I)
    Row[I] = static_cast<std::uint8_t>(FullCover -
                                       MultiplyBytes(FullCover - Row[I], FullCover - FRow[I]));
}

void TRegionCover::Emit(ISpanSink& Sink) {
  for (std::int32_t Y = FBox.Top; Y < FBox.Bottom; ++Y) {
    const std::uint8_t* C = FCovers.data() + static_cast<std::size_t>(Y - FBox.Top) * FWidth;
    std::copy_n(C, FWidth, FRow.begin());
    FSpans.clear();
    // Long stretches of one value become even spans, all else is given by the pixel.
    for (std::size_t X = 0; X < FWidth;) {
      std::size_t End = X + 1;
      while (End < FWidth && C[End] == C[X]) ++End;
      const auto From = FBox.Left + static_cast<std::int32_t>(X);
      const auto Length = static_cast<std::int32_t>(End - X);
      const bool JoinsLast =
          !FSpans.empty() && !FSpans.back().IsEven() && FSpans.back().End() == From;
      if (Length >= 16 || C[X] == 0) {
        if (C[X] != 0) FSpans.push_back({From, Length, C[X]});
      } else if (JoinsLast) {
        FSpans.back().Length += Length;
      } else {
        FSpans.push_back({From, Length, TCoverSpan::CoversBase + static_cast<std::uint32_t>(X)});
      }
      X = End;
    }
    if (!FSpans.empty()) Sink.Row(Y, FSpans, FRow.data());
  }
}

}  // namespace qxsvg
