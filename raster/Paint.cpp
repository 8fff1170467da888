#include "raster/Paint.h"

#include <algorithm>

#include "raster/Kernels.h"

namespace qxsvg {

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
