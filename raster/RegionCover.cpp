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
  if (FMode == TQXGPCombineMode::cmIntersect)
    Intersect(RowOf(Y), Spans, Covers);
  else
    Unite(RowOf(Y), Spans, Covers);
}

// A clip of thousands of shapes comes here with thousands of steps, each of which covers a little:
// what lies beside its spans is not touched.
void TRegionCover::Unite(std::uint8_t* Row, std::span<const TCoverSpan> Spans,
                         const std::uint8_t* Covers) {
  const auto United = [](std::uint32_t A, std::uint32_t B) {
    return static_cast<std::uint8_t>(FullCover - MultiplyBytes(FullCover - A, FullCover - B));
  };
  for (const TCoverSpan& Span : Spans) {
    std::uint8_t* const Out = Row + (Span.X - FBox.Left);
    if (!Span.IsEven())
      std::transform(Out, Out + Span.Length, Span.Covers(Covers), Out, United);
    else if (Span.Cover == FullCover)
      std::fill_n(Out, Span.Length, static_cast<std::uint8_t>(FullCover));
    else
      std::for_each(Out, Out + Span.Length,
                    [&](std::uint8_t& Cover) { Cover = United(Cover, Span.Cover); });
  }
}

void TRegionCover::Intersect(std::uint8_t* Row, std::span<const TCoverSpan> Spans,
                             const std::uint8_t* Covers) {
  std::fill(FRow.begin(), FRow.end(), std::uint8_t{0});
  for (const TCoverSpan& Span : Spans) {
    std::uint8_t* const Out = FRow.data() + (Span.X - FBox.Left);
    if (Span.IsEven())
      std::fill_n(Out, Span.Length, static_cast<std::uint8_t>(Span.Cover));
    else
      std::copy_n(Span.Covers(Covers), Span.Length, Out);
  }
  Kernels().MultiplyCovers(Row, Row, FRow.data(), static_cast<std::int32_t>(FWidth));
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
