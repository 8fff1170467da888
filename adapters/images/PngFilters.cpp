#include "adapters/images/PngFilters.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace qxsvg::images {

namespace {

// The average filter is missing: on drawings it hardly ever wins, and trying it costs a fifth of
// all.
enum TFilter : std::uint8_t { fiNone = 0, fiSub = 1, fiUp = 2, fiPaeth = 4 };

// Each filter is a loop over independent bytes, which the compiler turns into vectors. A is the
// byte one pixel to the left, B the one above, C the one above A.

inline std::uint8_t Paeth(std::uint8_t A, std::uint8_t B, std::uint8_t C) {
  const auto Distance = [](int X, int Y) {
    return static_cast<std::int16_t>(X < Y ? Y - X : X - Y);
  };
  const std::int16_t ToA = Distance(B, C), ToB = Distance(A, C), ToC = Distance(A + B, 2 * C);
  const std::uint8_t Upper = ToB <= ToC ? B : C;
  return ToA <= ToB && ToA <= ToC ? A : Upper;
}

template <TFilter Kind>
void FilterBytes(const std::uint8_t* __restrict Row, const std::uint8_t* __restrict Prior,
                 std::uint8_t* __restrict Target, std::size_t Count, std::size_t PixelSize) {
  const auto Predict = [](std::uint8_t A, std::uint8_t B, std::uint8_t C) -> std::uint8_t {
    if constexpr (Kind == fiSub) return A;
    if constexpr (Kind == fiUp) return B;
    if constexpr (Kind == fiPaeth) return Paeth(A, B, C);
    return 0;
  };
  for (std::size_t I = 0; I < PixelSize; ++I)
    Target[I] = static_cast<std::uint8_t>(Row[I] - Predict(0, Prior[I], 0));
  for (std::size_t I = PixelSize; I < Count; ++I)
    Target[I] = static_cast<std::uint8_t>(
        Row[I] - Predict(Row[I - PixelSize], Prior[I], Prior[I - PixelSize]));
}

// How much there is to code: bytes that are not zero, and bytes that differ from those of the pixel
// before. Drawings are made of repetition, which this finds better than the sum of the differences
// that is usual for photographs.
std::size_t Cost(const std::uint8_t* Bytes, std::size_t Count, std::size_t PixelSize) {
  // In blocks whose count fits a byte, so that a vector holds many.
  constexpr std::size_t Block = 127;
  std::size_t Total = 0;
  for (std::size_t I = 0; I < PixelSize; ++I) Total += Bytes[I] != 0;
  for (std::size_t First = PixelSize; First < Count; First += Block) {
    const std::size_t Last = std::min(First + Block, Count);
    std::uint8_t Sum = 0;
    for (std::size_t I = First; I < Last; ++I)
      Sum = static_cast<std::uint8_t>(Sum + (Bytes[I] != 0) + (Bytes[I] != Bytes[I - PixelSize]));
    Total += Sum;
  }
  return Total;
}

}  // namespace

TPngFilters::TPngFilters(std::size_t RowSize, std::size_t PixelSize)
    : FRowSize(RowSize), FPixelSize(PixelSize) {
  for (auto& Scratch : FScratch) Scratch.resize(RowSize);
}

void TPngFilters::Filter(const std::uint8_t* Row, const std::uint8_t* Prior, std::uint8_t* Target) {
  // Rows that repeat are most of a drawing.
  if (std::memcmp(Row, Prior, FRowSize) == 0) {
    Target[0] = fiUp;
    std::memset(Target + 1, 0, FRowSize);
    return;
  }
  using TFunction =
      void (*)(const std::uint8_t*, const std::uint8_t*, std::uint8_t*, std::size_t, std::size_t);
  struct TCandidate {
    TFilter Kind;
    TFunction Filter;
  };
  constexpr TCandidate Candidates[] = {{fiNone, &FilterBytes<fiNone>},
                                       {fiSub, &FilterBytes<fiSub>},
                                       {fiUp, &FilterBytes<fiUp>},
                                       {fiPaeth, &FilterBytes<fiPaeth>}};
  // Where two cost the same the simpler one, whose bytes are likelier to repeat, is taken.
  std::size_t BestCost = std::numeric_limits<std::size_t>::max();
  std::uint8_t* Best = FScratch[0].data();
  std::uint8_t* Other = FScratch[1].data();
  for (const TCandidate& Candidate : Candidates) {
    Candidate.Filter(Row, Prior, Other, FRowSize, FPixelSize);
    const std::size_t OtherCost = Cost(Other, FRowSize, FPixelSize);
    if (OtherCost >= BestCost) continue;
    BestCost = OtherCost;
    Target[0] = Candidate.Kind;
    std::swap(Best, Other);
  }
  std::memcpy(Target + 1, Best, FRowSize);
}

}  // namespace qxsvg::images
