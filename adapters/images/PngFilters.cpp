#include "adapters/images/PngFilters.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace qxsvg::images {

namespace {

// The average filter is missing: on drawings it hardly ever wins, and trying it costs a fifth of
// all.
enum TFilter : std::uint8_t { fiNone = 0, fiSub = 1, fiUp = 2, fiPaeth = 4 };

// Rows are filtered in blocks of a fixed size, which the compiler turns into vectors.
constexpr std::size_t Block = 96;
using TBlock = std::array<std::uint8_t, Block>;

// A is the byte one pixel to the left, B the one above, C the one above A.
inline std::uint8_t Paeth(std::uint8_t A, std::uint8_t B, std::uint8_t C) {
  const auto Distance = [](int X, int Y) {
    return static_cast<std::int16_t>(X < Y ? Y - X : X - Y);
  };
  const std::int16_t ToA = Distance(B, C), ToB = Distance(A, C), ToC = Distance(A + B, 2 * C);
  const std::uint8_t Upper = ToB <= ToC ? B : C;
  return ToA <= ToB && ToA <= ToC ? A : Upper;
}

template <TFilter Kind>
void FilterBlock(const std::uint8_t* Row, const std::uint8_t* Prior, std::size_t PixelSize,
                 TBlock& Out) {
  TBlock X, A, B, C;
  std::memcpy(X.data(), Row, Block);
  std::memcpy(A.data(), Row - PixelSize, Block);
  std::memcpy(B.data(), Prior, Block);
  std::memcpy(C.data(), Prior - PixelSize, Block);
  for (std::size_t I = 0; I < Block; ++I) {
    std::uint8_t Guess = 0;
    if constexpr (Kind == fiSub) Guess = A[I];
    if constexpr (Kind == fiUp) Guess = B[I];
    if constexpr (Kind == fiPaeth) Guess = Paeth(A[I], B[I], C[I]);
    Out[I] = static_cast<std::uint8_t>(X[I] - Guess);
  }
}

// The sum of the differences, each between -128 and 127, without its sign, and some more for each
// that is not zero: what little there is to code is likely to be found again, and zeros most of
// all.
std::uint32_t Cost(const std::uint8_t* Bytes) {
  static constexpr std::uint8_t OfAny = 64, Least = 255 - 128 - OfAny;
  TBlock Each;
  for (std::size_t I = 0; I < Block; ++I) {
    const auto Negative = static_cast<std::uint8_t>(-Bytes[I]);
    const std::uint8_t Size = std::min(Bytes[I], Negative);
    Each[I] = static_cast<std::uint8_t>(Size + (Size == 0 ? Least : Least + OfAny));
  }
  // Written as a distance between bytes, which processors sum up at once.
  constexpr TBlock None = [] {
    TBlock Result{};
    Result.fill(Least);
    return Result;
  }();
  int Sum = 0;
  for (std::size_t I = 0; I < Block; ++I) Sum += std::abs(Each[I] - None[I]);
  return static_cast<std::uint32_t>(Sum);
}

struct TCandidate {
  TFilter Kind;
  void (*Filter)(const std::uint8_t* Row, const std::uint8_t* Prior, std::size_t PixelSize,
                 TBlock& Out);
};
// In the order in which they are taken where they cost the same.
constexpr TCandidate Candidates[] = {{fiNone, &FilterBlock<fiNone>},
                                     {fiUp, &FilterBlock<fiUp>},
                                     {fiPaeth, &FilterBlock<fiPaeth>},
                                     {fiSub, &FilterBlock<fiSub>}};

}  // namespace

TPngFilters::TPngFilters(std::size_t RowSize, std::size_t PixelSize)
    : FRowSize(RowSize), FPixelSize(PixelSize) {
  FRow.resize(Lead + (RowSize + Block - 1) / Block * Block);
  FPrior.resize(FRow.size());
}

void TPngFilters::Repeat(std::uint8_t* Target) const {
  // Rows of zeros go on in those below them, without another filter's number in between.
  const std::uint8_t* Prior = FPrior.data() + Lead;
  const bool IsBlank = *Prior == 0 && std::memcmp(Prior, Prior + 1, FRowSize - 1) == 0;
  Target[0] = IsBlank ? fiNone : fiUp;
  std::memset(Target + 1, 0, FRowSize);
}

void TPngFilters::Filter(std::uint8_t* Target) {
  const std::uint8_t* Row = FRow.data() + Lead;
  const std::uint8_t* Prior = FPrior.data() + Lead;
  std::array<std::uint32_t, std::size(Candidates)> Costs{};
  TBlock Out;
  for (std::size_t At = 0; At < FRowSize; At += Block) {
    // Where nothing changes, as in most of a drawing, differences cost nothing.
    const bool IsQuiet = std::memcmp(Row + At, Prior + At, Block) == 0 &&
                         std::memcmp(Row + At, Row + At - FPixelSize, Block) == 0;
    Costs[0] += Cost(Row + At);
    for (std::size_t I = 1; !IsQuiet && I < Costs.size(); ++I) {
      Candidates[I].Filter(Row + At, Prior + At, FPixelSize, Out);
      Costs[I] += Cost(Out.data());
    }
  }
  // Of two that cost the same, the bytes of the one that looks at the row above are likelier to
  // repeat.
  const TCandidate& Best = Candidates[std::min_element(Costs.begin(), Costs.end()) - Costs.begin()];
  *Target++ = Best.Kind;
  for (std::size_t At = 0; At < FRowSize; At += Block) {
    Best.Filter(Row + At, Prior + At, FPixelSize, Out);
    std::memcpy(Target + At, Out.data(), std::min(Block, FRowSize - At));
  }
  Skip();
}

}  // namespace qxsvg::images
