#include "raster/Clip.h"

#include <algorithm>
#include <cstring>

#include "raster/Kernels.h"

namespace qxsvg {

std::uint32_t TClip::CoverAt(std::int32_t X, std::int32_t Y) const {
  if (X < FBox.Left || X >= FBox.Right || Y < FBox.Top || Y >= FBox.Bottom) return 0;
  if (!FMask) return FullCover;
  for (const TCoverSpan& Span : FMask->RowAt(Y))
    if (X >= Span.X && X < Span.End())
      return Span.IsEven() ? Span.Cover : Span.Covers(FMask->Covers())[X - Span.X];
  return 0;
}

void TClip::IntersectBox(const TRect& Box) {
  FBox = {std::max(FBox.Left, Box.Left), std::max(FBox.Top, Box.Top),
          std::min(FBox.Right, Box.Right), std::min(FBox.Bottom, Box.Bottom)};
  if (FBox.IsEmpty()) FBox = {};
  Rehash();
}

void TClip::SetMask(std::shared_ptr<const TSpanStore> Mask) {
  FMask = std::move(Mask);
  IntersectBox(FMask->Box());
}

void TClip::Rehash() {
  FHash = FMask ? FMask->Hash() : 1;
  for (const std::int32_t Side : {FBox.Left, FBox.Top, FBox.Right, FBox.Bottom})
    FHash = (FHash ^ static_cast<std::uint32_t>(Side)) * 0x9e3779b97f4a7c15u;
}

void TClipSink::Begin(const TClip& Clip, ISpanSink& Next) {
  FClip = &Clip;
  FNext = &Next;
  const auto Room = static_cast<std::size_t>(Clip.Box().Width()) + CoversPadding;
  if (FCovers.size() < Room) FCovers.resize(Room);
}

// What both spans share, from Left to Right.
void TClipSink::Add(const TCoverSpan& A, const std::uint8_t* ACovers, const TCoverSpan& B,
                    const std::uint8_t* BCovers, std::int32_t Left, std::int32_t Right) {
  const std::int32_t Length = Right - Left;
  if (A.IsEven() && B.IsEven()) {
    const std::uint32_t Cover = MultiplyBytes(A.Cover, B.Cover);
    if (Cover != 0) FSpans.push_back({Left, Length, Cover});
    return;
  }
  std::uint8_t* Out = FCovers.data() + FUsed;
  const TKernels& K = Kernels();
  if (A.IsEven())
    K.ScaleCovers(Out, B.Covers(BCovers) + (Left - B.X), A.Cover, Length);
  else if (B.IsEven())
    K.ScaleCovers(Out, A.Covers(ACovers) + (Left - A.X), B.Cover, Length);
  else
    K.MultiplyCovers(Out, A.Covers(ACovers) + (Left - A.X), B.Covers(BCovers) + (Left - B.X),
                     Length);
  FSpans.push_back({Left, Length, TCoverSpan::CoversBase + FUsed});
  FUsed += static_cast<std::uint32_t>(Length);
}

// Whether all spans lie where one span of the mask covers wholly, as they do inside most clips.
bool TClipSink::LiesWithin(std::span<const TCoverSpan> Spans,
                           std::span<const TCoverSpan> Mask) const {
  if (Spans.empty()) return false;
  const std::int32_t Left = Spans.front().X, Right = Spans.back().End();
  if (Left < FClip->Box().Left || Right > FClip->Box().Right) return false;
  for (const TCoverSpan& Span : Mask)
    if (Span.End() > Left) return Span.X <= Left && Right <= Span.End() && Span.Cover == FullCover;
  return false;
}

void TClipSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) {
  const std::span<const TCoverSpan> Mask = FClip->Mask()->RowAt(Y);
  if (LiesWithin(Spans, Mask)) return FNext->Row(Y, Spans, Covers);
  const std::uint8_t* MaskCovers = FClip->Mask()->Covers();
  FSpans.clear();
  FUsed = 0;
  auto A = Spans.begin();
  auto B = Mask.begin();
  while (A != Spans.end() && B != Mask.end()) {
    const std::int32_t Left = std::max({A->X, B->X, FClip->Box().Left});
    const std::int32_t Right = std::min({A->End(), B->End(), FClip->Box().Right});
    if (Left < Right) Add(*A, Covers, *B, MaskCovers, Left, Right);
    if (A->End() <= B->End())
      ++A;
    else
      ++B;
  }
  if (!FSpans.empty()) FNext->Row(Y, FSpans, FCovers.data());
}

}  // namespace qxsvg
