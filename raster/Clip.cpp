#include "raster/Clip.h"

#include <algorithm>

#include "raster/HashMix.h"
#include "raster/Kernels.h"

namespace qxsvg {

namespace {

// Both rectangles' pixels, or nothing at the origin.
TRect Common(const TRect& A, const TRect& B) {
  const TRect R{std::max(A.Left, B.Left), std::max(A.Top, B.Top), std::min(A.Right, B.Right),
                std::min(A.Bottom, B.Bottom)};
  return R.IsEmpty() ? TRect{} : R;
}

}  // namespace

std::uint32_t TClip::CoverAt(std::int32_t X, std::int32_t Y) const {
  if (X < FBox.Left || X >= FBox.Right || Y < FBox.Top || Y >= FBox.Bottom) return 0;
  if (!FMask) return FullCover;
  for (const TCoverSpan& Span : FMask->RowAt(Y))
    if (X >= Span.X && X < Span.End())
      return Span.IsEven() ? Span.Cover : Span.Covers(FMask->Covers())[X - Span.X];
  return 0;
}

void TClip::IntersectBox(const TRect& Box) {
  FBox = Common(FBox, Box);
  FInside = Common(FInside, Box);
  Rehash();
}

void TClip::SetMask(std::shared_ptr<const TSpanStore> Mask) {
  FMask = std::move(Mask);
  FInside = FMask->FullBox();
  IntersectBox(FMask->Box());
}

void TClip::Rehash() {
  FHash = FMask ? FMask->Hash() : 1;
  for (const std::int32_t Side : {FBox.Left, FBox.Top, FBox.Right, FBox.Bottom})
    MixHash(FHash, static_cast<std::uint32_t>(Side));
}

void TClipSink::Begin(const TClip& Clip, ISpanSink& Next) {
  FClip = &Clip;
  FNext = &Next;
  const auto Room = static_cast<std::size_t>(Clip.Box().Width()) + CoversPadding;
  if (FCovers.size() < Room) FCovers.resize(Room);
}

// What both spans share, from Left to Right. Covers that follow others become one span with them,
// and so do a few pixels of one cover: short spans cost more than their pixels.
void TClipSink::Add(const TCoverSpan& A, const std::uint8_t* ACovers, const TCoverSpan& B,
                    const std::uint8_t* BCovers, std::int32_t Left, std::int32_t Right) {
  constexpr std::int32_t FewPixels = 16;
  const std::int32_t Length = Right - Left;
  const bool GoesOn = !FSpans.empty() && !FSpans.back().IsEven() && FSpans.back().End() == Left;
  std::uint8_t* Out = FCovers.data() + FUsed;
  if (A.IsEven() && B.IsEven()) {
    const std::uint32_t Cover = MultiplyBytes(A.Cover, B.Cover);
    if (!GoesOn || Length > FewPixels) {
      if (Cover != 0) FSpans.push_back({Left, Length, Cover});
      return;
    }
    std::fill_n(Out, Length, static_cast<std::uint8_t>(Cover));
  } else {
    const TKernels& K = Kernels();
    const std::uint8_t* const X = A.IsEven() ? nullptr : A.Covers(ACovers) + (Left - A.X);
    const std::uint8_t* const Y = B.IsEven() ? nullptr : B.Covers(BCovers) + (Left - B.X);
    if (X && Y)
      K.MultiplyCovers(Out, X, Y, Length);
    else if (const std::uint32_t Even = X ? B.Cover : A.Cover; Even == FullCover)
      std::copy_n(X ? X : Y, Length, Out);
    else
      K.ScaleCovers(Out, X ? X : Y, Even, Length);
  }
  if (GoesOn)
    FSpans.back().Length += Length;
  else
    FSpans.push_back({Left, Length, TCoverSpan::CoversBase + FUsed});
  FUsed += static_cast<std::uint32_t>(Length);
}

// The spans of the mask from the first that reaches beyond X.
std::span<const TCoverSpan> TClipSink::MaskFrom(std::int32_t X, std::int32_t Y) const {
  const std::span<const TCoverSpan> Mask = FClip->Mask()->RowAt(Y);
  const auto Found = std::partition_point(Mask.begin(), Mask.end(),
                                          [X](const TCoverSpan& S) { return S.End() <= X; });
  return {Found, Mask.end()};
}

void TClipSink::Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) {
  // What is hidden left and right needs no memory.
  const std::span<const TCoverSpan> Mask = MaskFrom(Spans.front().X, Y);
  if (Mask.empty()) return;
  while (!Spans.empty() && Spans.front().End() <= Mask.front().X) Spans = Spans.subspan(1);
  while (!Spans.empty() && Spans.back().X >= Mask.back().End())
    Spans = Spans.first(Spans.size() - 1);
  if (!Spans.empty()) FNext->Announce(Y, Spans);
}

// Whether all spans lie where one span of the mask covers wholly, as they do inside most clips.
bool TClipSink::LiesWithin(std::span<const TCoverSpan> Spans,
                           std::span<const TCoverSpan> Mask) const {
  const std::int32_t Left = Spans.front().X, Right = Spans.back().End();
  if (Left < FClip->Box().Left || Right > FClip->Box().Right) return false;
  return !Mask.empty() && Mask.front().Cover == FullCover && Mask.front().X <= Left &&
         Right <= Mask.front().End();
}

ISpanSink& TClipSink::Within(const TRect& Box) {
  return Common(Box, FClip->Inside()) == Box ? FNext->Within(Box) : *this;
}

void TClipSink::Block(const TRect& Box, std::uint32_t Cover) {
  const TRect& In = FClip->Inside();
  const TRect Free = Common(Box, In);
  if (Free.Left != Box.Left || Free.Right != Box.Right) return ISpanSink::Block(Box, Cover);
  if (Free.Top > Box.Top) ISpanSink::Block({Box.Left, Box.Top, Box.Right, Free.Top}, Cover);
  FNext->Block(Free, Cover);
  if (Free.Bottom < Box.Bottom)
    ISpanSink::Block({Box.Left, Free.Bottom, Box.Right, Box.Bottom}, Cover);
}

void TClipSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) {
  const TRect& In = FClip->Inside();
  if (Y >= In.Top && Y < In.Bottom && Spans.front().X >= In.Left && Spans.back().End() <= In.Right)
    return FNext->Row(Y, Spans, Covers);
  const std::span<const TCoverSpan> Mask = MaskFrom(Spans.front().X, Y);
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
