// Coverage of small shapes that are drawn in many places.
#pragma once

#include <array>

#include "graphics/surface/Canvas.h"
#include "graphics/surface/CoverageStamps.h"
#include "raster/Spans.h"

namespace qxsvg {

// Where a shape meets the pixels: its shift in whole pixels, and the matrix without those.
struct TStampPlace {
  TQXStampKey Key;
  std::int32_t X = 0, Y = 0;
  TMatrix Local;

  // M, or M with its shift rounded to what stamps tell apart.
  static TMatrix Rounded(const TMatrix& M);
  // Takes the rest of Key as it is. False for what is too far away.
  bool Put(TPointF Shift);
  // M is a rounded one. False for what is too far away.
  bool Begin(const TMatrix& M);
  // The pixels that the path may touch, in a box that Local is made to lead to the left top of.
  // False for what is too large. Reach is how much is covered around the path's points.
  bool Enclose(const TQXPathView& Path, float Reach, TQXStamp& Box);
};

// Gathers the rows of one box as bytes.
class TStampSink final : public ISpanSink {
 public:
  void Begin(const TQXStamp& Box);
  void Row(std::int32_t Y, std::span<const TCoverSpan> Spans, const std::uint8_t* Covers) override;
  // The part of the box that is covered.
  TQXStamp Result() const;
  // Copies that part, row by row without gaps.
  void CopyTo(const TQXStamp& Part, std::uint8_t* Bytes) const;

  // Gives the rows of a stamp, as far as they lie in Clip; Left and Top are its pixel.
  static void Replay(const TQXStamp& Stamp, const std::uint8_t* Bytes, std::int32_t Left,
                     std::int32_t Top, const TRect& Clip, ISpanSink& Into);

 private:
  static constexpr std::int32_t Side = TQXCoverageStamps::MostSide;

  std::array<std::uint8_t, std::size_t{Side} * Side> FBytes;
  TQXStamp FBox;
  std::int32_t FLeft = 0, FTop = 0, FRight = 0, FBottom = 0;
};

}  // namespace qxsvg
