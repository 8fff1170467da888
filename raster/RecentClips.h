// Clips that were made lately: many elements of a drawing name the same clip path.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "foundation/Geometry.h"
#include "raster/Clip.h"

namespace qxsvg {

class TQXGPRegion;

class TRecentClips {
 public:
  // A number that stands for the intersection of Clip with Region under Matrix.
  static std::uint64_t KeyOf(const TClip& Clip, const TQXGPRegion& Region, const TMatrix& Matrix,
                             bool IsAliased);

  // Null where it is not there any more; good until the next Put.
  const TClip* Find(std::uint64_t Key) const;
  // In place of the oldest one, whose mask is given back, perhaps null. Leaves out a clip whose
  // mask is too large to be kept.
  std::shared_ptr<const TSpanStore> Put(std::uint64_t Key, const TClip& Clip);

 private:
  struct TRecent {
    std::uint64_t Key = 0;
    TClip Clip;
  };
  static constexpr std::size_t Most = 4;

  std::array<TRecent, Most> FRecent;
  std::size_t FOldest = 0;
};

}  // namespace qxsvg
