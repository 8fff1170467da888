// The clip of a canvas: a rectangle of pixels and, where that does not say all, coverage.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "raster/SpanStore.h"

namespace qxsvg {

// A value; copies share the coverage.
class TClip {
 public:
  TClip() = default;
  explicit TClip(const TRect& Box) : FBox(Box), FInside(Box) { Rehash(); }

  const TRect& Box() const { return FBox; }
  bool IsEmpty() const { return FBox.IsEmpty(); }
  // Null where every pixel of the box is wholly inside.
  const TSpanStore* Mask() const { return FMask.get(); }
  // Pixels of the box that are wholly inside, perhaps none.
  const TRect& Inside() const { return FInside; }
  // The coverage of a pixel.
  std::uint32_t CoverAt(std::int32_t X, std::int32_t Y) const;
  // A number that stands for the content.
  std::uint64_t Hash() const { return FHash; }

  void IntersectBox(const TRect& Box);
  // The mask is to be what a drawing under this clip gave.
  void SetMask(std::shared_ptr<const TSpanStore> Mask);
  // Leaves the clip without its mask.
  std::shared_ptr<const TSpanStore> TakeMask() { return std::move(FMask); }

 private:
  void Rehash();

  TRect FBox, FInside;
  std::shared_ptr<const TSpanStore> FMask;
  std::uint64_t FHash = 0;
};

// Passes on what lies in a clip's mask.
class TClipSink final : public ISpanSink {
 public:
  // Both must outlive the drawing. The clip has a mask.
  void Begin(const TClip& Clip, ISpanSink& Next);
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  void Block(const TRect& Box, std::uint32_t Cover) override;
  void Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) override;
  ISpanSink& Within(const TRect& Box) override;

 private:
  std::span<const TCoverSpan> MaskFrom(std::int32_t X, std::int32_t Y) const;
  bool LiesWithin(std::span<const TCoverSpan> Spans, std::span<const TCoverSpan> Mask) const;
  void Add(const TCoverSpan& A, const std::uint8_t* ACovers, const TCoverSpan& B,
           const std::uint8_t* BCovers, std::int32_t Left, std::int32_t Right);

  const TClip* FClip = nullptr;
  ISpanSink* FNext = nullptr;
  std::vector<TCoverSpan> FSpans;
  std::vector<std::uint8_t> FCovers;
  std::uint32_t FUsed = 0;
};

}  // namespace qxsvg
