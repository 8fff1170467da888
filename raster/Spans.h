// Coverage as it leaves the cells: rows of spans, from left to right, without overlap.
#pragma once

#include <cstdint>
#include <span>

#include "foundation/Geometry.h"

namespace qxsvg {

// Coverage goes from 0 to 255.
inline constexpr std::uint32_t FullCover = 255;

// Pixels from X on that share one coverage, or that have one each.
struct TCoverSpan {
  // Cover from here on is CoversBase plus the place of the first pixel among the row's covers.
  static constexpr std::uint32_t CoversBase = 256;

  std::int32_t X = 0, Length = 0;
  std::uint32_t Cover = 0;

  bool IsEven() const { return Cover < CoversBase; }
  const std::uint8_t* Covers(const std::uint8_t* Row) const { return Row + (Cover - CoversBase); }
  std::int32_t End() const { return X + Length; }
};

// Behind the covers of a row this many bytes may be read.
inline constexpr std::size_t CoversPadding = 32;

struct TColorTarget;

// Takes rows from top to bottom. No row is empty.
class ISpanSink {
 public:
  virtual void Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                   const std::uint8_t* Covers) = 0;
  // All rows of Box, each one span of one coverage.
  virtual void Block(const TRect& Box, std::uint32_t Cover) {
    const TCoverSpan Span{Box.Left, static_cast<std::int32_t>(Box.Width()), Cover};
    for (std::int32_t Y = Box.Top; Y < Box.Bottom; ++Y) Row(Y, {&Span, 1}, nullptr);
  }
  // Says that such a row will come soon, so that memory it needs can be on its way.
  virtual void Announce(std::int32_t Y, std::span<const TCoverSpan> Spans) {
    static_cast<void>(Y), static_cast<void>(Spans);
  }

  // What may take the rows in this one's place where all of them lie in Box.
  virtual ISpanSink& Within(const TRect& Box) {
    static_cast<void>(Box);
    return *this;
  }
  // Where this does nothing but blend one colour: what makes the rows may blend them there itself.
  // Null elsewhere.
  virtual const TColorTarget* Target() const { return nullptr; }

 protected:
  ~ISpanSink() = default;
};

}  // namespace qxsvg
