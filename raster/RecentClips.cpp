#include "raster/RecentClips.h"

#include <span>

#include "foundation/Limits.h"
#include "graphics/surface/Region.h"
#include "raster/HashMix.h"

namespace qxsvg {

std::uint64_t TRecentClips::KeyOf(const TClip& Clip, const TQXGPRegion& Region,
                                  const TMatrix& Matrix, bool IsAliased) {
  std::uint64_t Hash = Clip.Hash();
  MixHash(Hash, IsAliased ? 1 : 0);
  MixHash(Hash, std::as_bytes(std::span(&Matrix, 1)));
  for (std::size_t I = 0; I < Region.StepCount(); ++I) {
    const TQXRegionStep Step = Region.Step(I);
    MixHash(Hash,
            static_cast<std::uint64_t>(Step.FillMode) << 8 | static_cast<std::uint64_t>(Step.Mode));
    MixHash(Hash, std::as_bytes(Step.Path.Points));
    MixHash(Hash, std::as_bytes(Step.Path.Kinds));
  }
  return Hash;
}

const TClip* TRecentClips::Find(std::uint64_t Key) const {
  for (const TRecent& Recent : FRecent)
    if (Recent.Key == Key && Recent.Clip.Mask()) return &Recent.Clip;
  return nullptr;
}

std::shared_ptr<const TSpanStore> TRecentClips::Put(std::uint64_t Key, const TClip& Clip) {
  if (!Clip.Mask() || Clip.Mask()->Bytes() > Limits::RecentClipBytes) return nullptr;
  TRecent& Recent = FRecent[FOldest];
  FOldest = (FOldest + 1) % Most;
  std::shared_ptr<const TSpanStore> Mask = Recent.Clip.TakeMask();
  Recent = {Key, Clip};
  return Mask;
}

}  // namespace qxsvg
