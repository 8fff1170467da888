// What fills the spans: one colour, or a paint that makes its pixels row by row.
#pragma once

#include <array>
#include <cstdint>

#include "graphics/surface/Bitmap.h"
#include "raster/Spans.h"

namespace qxsvg {

// Premultiplied pixels at places of the device. A pixel's colour depends on its place alone.
class IPaint {
 public:
  // The pixels of row Y from X on. Rows come from top to bottom within a drawing.
  virtual void Fetch(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) = 0;
  // The same, where that needs no copying; null where it does. Good until the next call.
  virtual const std::uint32_t* Ready(std::int32_t X, std::int32_t Y, std::int32_t Count) {
    static_cast<void>(X), static_cast<void>(Y), static_cast<void>(Count);
    return nullptr;
  }
  // Puts the pixels over those of Target. False where it was not done; asked for only of paints
  // that take less for it than for making the pixels first.
  virtual bool PutOver(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Target) {
    static_cast<void>(X), static_cast<void>(Y), static_cast<void>(Count), static_cast<void>(Target);
    return false;
  }
  bool PutsOver() const { return FPutsOver; }
  // Whether all pixels of the row have one colour.
  virtual bool IsRowEven(std::int32_t Y, std::uint32_t& Color) {
    static_cast<void>(Y), static_cast<void>(Color);
    return false;
  }
  // Whether every pixel is opaque.
  bool IsOpaque() const { return FIsOpaque; }

 protected:
  ~IPaint() = default;
  bool FIsOpaque = false, FPutsOver = false;
};

// One premultiplied colour and the pixels that it is blended over.
struct TColorTarget {
  TQXPixels Pixels;
  std::uint32_t Color;
};

// Blends one premultiplied colour.
class TColorSink final : public ISpanSink {
 public:
  TColorSink(const TQXPixels& Pixels, std::uint32_t Color) : FTarget{Pixels, Color} {}
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  void Block(const TRect& Box, std::uint32_t Cover) override;
  void Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) override;
  const TColorTarget* Target() const override { return &FTarget; }

 private:
  const TColorTarget FTarget;
};

// Blends a paint, its alpha multiplied by Opacity (0 to 255).
class TPaintSink final : public ISpanSink {
 public:
  TPaintSink(const TQXPixels& Target, IPaint& Paint, std::uint32_t Opacity = FullCover)
      : FTarget(Target), FPaint(Paint), FOpacity(Opacity) {}
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  void Block(const TRect& Box, std::uint32_t Cover) override;
  void Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) override;

 private:
  static constexpr std::int32_t Chunk = 1024;
  const std::uint32_t* Pixels(std::int32_t X, std::int32_t Y, std::int32_t Count);
  bool GoesToTarget(const TCoverSpan& Span) const;
  bool PutToTarget(std::int32_t Y, const TCoverSpan& Span);
  void Blend(std::uint32_t* Row, const TCoverSpan& Span, const std::uint8_t* Covers,
             std::int32_t At, std::int32_t Count, const std::uint32_t* Source);

  const TQXPixels FTarget;
  IPaint& FPaint;
  const std::uint32_t FOpacity;
  std::array<std::uint32_t, Chunk> FPixels;
  std::array<std::uint8_t, Chunk + CoversPadding> FScaled;
};

}  // namespace qxsvg
