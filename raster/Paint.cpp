#include "raster/Paint.h"

#include <algorithm>

#include "raster/Kernels.h"

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

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

// A block of so many bytes throws everything else out of the caches of most machines, its own
// beginning too, and would first be read from memory line by line only to be overwritten. Stores
// past the caches halve the time. What is smaller is drawn over soon more often than not, as the
// grounds of flags are, and is best kept near.
constexpr std::int64_t StreamedBytes = std::int64_t{16} << 20;

// Other threads may look at the pixels as soon as the drawing is over: until then what was stored
// past the caches must have arrived. Only the kernels of these processors store so.
void EndStream() {
#if defined(__SSE2__)
  _mm_sfence();
#endif
}

bool IsStreamed(const TRect& Box) {
  return Box.Width() * Box.Height() * std::int64_t{sizeof(std::uint32_t)} >= StreamedBytes;
}

}  // namespace

void TColorSink::Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) {
  FetchAhead(FTarget.Pixels, Y, Spans);
}
void TPaintSink::Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) {
  FetchAhead(FTarget, Y, Spans);
}

void TColorSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  Kernels().BlendColor(FTarget.Pixels.Row(Y), Spans, Covers, FTarget.Color);
}

void TColorSink::Block(const TRect& Box, std::uint32_t Cover) {
  const TQXPixels& Pixels = FTarget.Pixels;
  if (FTarget.Color >> 24 != 255 || Cover != FullCover || !IsStreamed(Box))
    return ISpanSink::Block(Box, Cover);
  Kernels().StreamFill(Pixels.Row(Box.Top) + Box.Left, Pixels.Stride,
                       static_cast<std::int32_t>(Box.Width()),
                       static_cast<std::int32_t>(Box.Height()), FTarget.Color);
  EndStream();
}

void TPaintSink::Block(const TRect& Box, std::uint32_t Cover) {
  if (!FPaint.IsOpaque() || FOpacity != FullCover || Cover != FullCover || !IsStreamed(Box))
    return ISpanSink::Block(Box, Cover);
  const TKernels& K = Kernels();
  const auto Width = static_cast<std::int32_t>(Box.Width());
  for (std::int32_t Y = Box.Top; Y < Box.Bottom; ++Y) {
    std::uint32_t* Target = FTarget.Row(Y) + Box.Left;
    std::uint32_t Color = 0;
    if (FPaint.IsRowEven(Y, Color)) {
      K.StreamFill(Target, 0, Width, 1, Color);
      continue;
    }
    for (std::int32_t At = 0; At < Width; At += Chunk) {
      const std::int32_t Count = std::min(Width - At, Chunk);
      K.StreamCopy(Target + At, Pixels(Box.Left + At, Y, Count), Count);
    }
  }
  EndStream();
}

const std::uint32_t* TPaintSink::Pixels(std::int32_t X, std::int32_t Y, std::int32_t Count) {
  if (const std::uint32_t* Known = FPaint.Ready(X, Y, Count)) return Known;
  FPaint.Fetch(X, Y, Count, FPixels.data());
  return FPixels.data();
}

void TPaintSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  std::uint32_t Color = 0;
  if (FPaint.IsRowEven(Y, Color))
    return Kernels().BlendColor(FTarget.Row(Y), Spans, Covers, ScalePixel(Color, FOpacity));
  // Spans that touch each other have their pixels made at once: a beginning costs as much as some
  // pixels.
  for (auto First = Spans.begin(); First != Spans.end();) {
    auto Last = First + 1;
    if (PutToTarget(Y, *First)) {
      ++First;
      continue;
    }
    if (First->Length > Chunk) {
      for (std::int32_t At = 0; At < First->Length; At += Chunk) {
        const std::int32_t Count = std::min(First->Length - At, Chunk);
        Blend(FTarget.Row(Y), *First, Covers, At, Count, Pixels(First->X + At, Y, Count));
      }
    } else {
      while (Last != Spans.end() && Last->X == Last[-1].End() && Last->End() - First->X <= Chunk &&
             !GoesToTarget(*Last))
        ++Last;
      const std::uint32_t* Source = Pixels(First->X, Y, Last[-1].End() - First->X);
      for (auto Span = First; Span != Last; Source += Span->Length, ++Span)
        Blend(FTarget.Row(Y), *Span, Covers, 0, Span->Length, Source);
    }
    First = Last;
  }
}

// Whether the paint may make the pixels where they belong.
bool TPaintSink::GoesToTarget(const TCoverSpan& Span) const {
  constexpr std::int32_t FewPixels = 32;
  return Span.Cover == FullCover && Span.Length > FewPixels && FOpacity == FullCover &&
         (FPaint.IsOpaque() || FPaint.PutsOver());
}

bool TPaintSink::PutToTarget(std::int32_t Y, const TCoverSpan& Span) {
  if (!GoesToTarget(Span)) return false;
  std::uint32_t* Target = FTarget.Row(Y) + Span.X;
  if (!FPaint.IsOpaque()) return FPaint.PutOver(Span.X, Y, Span.Length, Target);
  FPaint.Fetch(Span.X, Y, Span.Length, Target);
  return true;
}

// Count pixels of a span, from At on.
void TPaintSink::Blend(std::uint32_t* Row, const TCoverSpan& Span, const std::uint8_t* Covers,
                       std::int32_t At, std::int32_t Count, const std::uint32_t* Source) {
  const TKernels& K = Kernels();
  std::uint32_t* Target = Row + Span.X + At;
  if (Span.IsEven())
    return K.BlendPixels(Target, Source, Count, MultiplyBytes(Span.Cover, FOpacity));
  const std::uint8_t* C = Span.Covers(Covers) + At;
  if (FOpacity != FullCover) {
    // As many as a chunk holds, which no run of pixels exceeds.
    K.ScaleCovers(FScaled.data(), C, FOpacity, Count);
    C = FScaled.data();
  }
  K.BlendCovered(Target, Source, Count, C);
}

}  // namespace qxsvg
