#include "raster/Paint.h"

#include <algorithm>

#include "raster/Kernels.h"

namespace qxsvg {

namespace {

void FetchLine(const std::uint32_t* P) {
  __builtin_prefetch(P, 1);
  // Without an effect that the compiler believes in, it drops a loop of nothing but prefetches.
  asm volatile("" : : "r"(P));
}

// Edges lie apart, in lines of memory that no processor foresees; a long span is fetched ahead once
// its beginning is there.
void FetchAhead(const TQXPixels& Target, std::int32_t Y, std::span<const TCoverSpan> Spans) {
  constexpr std::int32_t LinePixels = 16, Most = 8 * LinePixels;
  const std::uint32_t* Row = Target.Row(Y);
  for (const TCoverSpan& Span : Spans) {
    if (Span.Cover == FullCover) continue;
    const std::int32_t End = Span.X + std::min(Span.Length, Most);
    for (std::int32_t X = Span.X & -LinePixels; X < End; X += LinePixels) FetchLine(Row + X);
  }
}

}  // namespace

void TColorSink::Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) {
  FetchAhead(FTarget, Y, Spans);
}
void TPaintSink::Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) {
  FetchAhead(FTarget, Y, Spans);
}

void TColorSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  Kernels().BlendColor(FTarget.Row(Y), Spans, Covers, FColor);
}

void TPaintSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  std::uint32_t Color = 0;
  if (FPaint.IsRowEven(Y, Color))
    return Kernels().BlendColor(FTarget.Row(Y), Spans, Covers, ScalePixel(Color, FOpacity));
  for (const TCoverSpan& Span : Spans) Blend(Y, Span, Covers);
}

void TPaintSink::Blend(std::int32_t Y, const TCoverSpan& Span, const std::uint8_t* Covers) {
  const TKernels& K = Kernels();
  std::uint32_t* Target = FTarget.Row(Y) + Span.X;
  if (Span.Cover == FullCover && FOpacity == FullCover && FPaint.IsOpaque())
    return FPaint.Fetch(Span.X, Y, Span.Length, Target);
  for (std::int32_t At = 0; At < Span.Length; At += Chunk) {
    const std::int32_t Count = std::min(Span.Length - At, Chunk);
    FPaint.Fetch(Span.X + At, Y, Count, FPixels.data());
    if (Span.IsEven()) {
      K.BlendPixels(Target + At, FPixels.data(), Count, MultiplyBytes(Span.Cover, FOpacity));
      continue;
    }
    const std::uint8_t* C = Span.Covers(Covers) + At;
    if (FOpacity != FullCover) {
      K.ScaleCovers(FScaled.data(), C, FOpacity, Count);
      C = FScaled.data();
    }
    K.BlendCovered(Target + At, FPixels.data(), Count, C);
  }
}

}  // namespace qxsvg
