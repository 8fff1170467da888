#include "adapters/images/PngFilters.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace qxsvg::images {

namespace {

enum TFilter : std::uint8_t { fiNone, fiSub, fiUp, fiAverage, fiPaeth };

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
    if constexpr (Kind == fiAverage) return static_cast<std::uint8_t>((A + B) >> 1);
    if constexpr (Kind == fiPaeth) return Paeth(A, B, C);
    return 0;
  };
  for (std::size_t I = 0; I < PixelSize; ++I)
    Target[I] = static_cast<std::uint8_t>(Row[I] - Predict(0, Prior[I], 0));
  for (std::size_t I = PixelSize; I < Count; ++I)
    Target[I] = static_cast<std::uint8_t>(
        Row[I] - Predict(Row[I - PixelSize], Prior[I], Prior[I - PixelSize]));
}

// The sum of the bytes taken as signed differences, which grows with the cost of coding them.
std::uint64_t Cost(const std::uint8_t* Bytes, std::size_t Count) {
  // In blocks whose sum fits 16 bits, so that a vector holds many.
  constexpr std::size_t Block = 256;
  std::uint64_t Total = 0;
  for (std::size_t First = 0; First < Count; First += Block) {
    const std::size_t Last = std::min(First + Block, Count);
    std::uint16_t Sum = 0;
    for (std::size_t I = First; I < Last; ++I) {
      const std::uint8_t V = Bytes[I];
      const auto Negated = static_cast<std::uint8_t>(-V);
      Sum = static_cast<std::uint16_t>(Sum + std::min(V, Negated));
    }
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
  constexpr std::array<TFunction, 5> Filters{&FilterBytes<fiNone>, &FilterBytes<fiSub>,
                                             &FilterBytes<fiUp>, &FilterBytes<fiAverage>,
                                             &FilterBytes<fiPaeth>};
  // Where two cost the same the simpler one, whose bytes are likelier to repeat, is taken.
  std::uint64_t BestCost = std::numeric_limits<std::uint64_t>::max();
  std::uint8_t* Best = FScratch[0].data();
  std::uint8_t* Other = FScratch[1].data();
  for (std::uint8_t Kind = 0; Kind < Filters.size(); ++Kind) {
    Filters[Kind](Row, Prior, Other, FRowSize, FPixelSize);
    const std::uint64_t OtherCost = Cost(Other, FRowSize);
    if (OtherCost >= BestCost) continue;
    BestCost = OtherCost;
    Target[0] = Kind;
    std::swap(Best, Other);
  }
  std::memcpy(Target + 1, Best, FRowSize);
}

}  // namespace qxsvg::images
