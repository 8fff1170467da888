// The kernels for processors with AVX2 that make pixels: gradients and images.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "raster/KernelsAVX2.h"

#if defined(__x86_64__)

namespace qxsvg::avx2 {

namespace {

QXSVG_AVX2 inline __m256 PlacesFrom(std::int32_t X) {
  return _mm256_cvtepi32_ps(
      _mm256_add_epi32(_mm256_set1_epi32(X), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7)));
}
QXSVG_AVX2 inline __m256i NumbersAt(const std::uint32_t* Table, __m256i Places) {
  return _mm256_i32gather_epi32(reinterpret_cast<const int*>(Table), Places, 4);
}

// A gather takes these processors longer than eight loads whose places come two at a time.
QXSVG_AVX2 inline void PutColors(std::uint32_t* Out, const std::uint32_t* Colors, __m256i Places) {
  const __m128i Low = _mm256_castsi256_si128(Places), High = _mm256_extracti128_si256(Places, 1);
  const auto A = static_cast<std::uint64_t>(_mm_cvtsi128_si64(Low));
  const auto B = static_cast<std::uint64_t>(_mm_extract_epi64(Low, 1));
  const auto C = static_cast<std::uint64_t>(_mm_cvtsi128_si64(High));
  const auto D = static_cast<std::uint64_t>(_mm_extract_epi64(High, 1));
  Out[0] = Colors[static_cast<std::uint32_t>(A)];
  Out[1] = Colors[A >> 32];
  Out[2] = Colors[static_cast<std::uint32_t>(B)];
  Out[3] = Colors[B >> 32];
  Out[4] = Colors[static_cast<std::uint32_t>(C)];
  Out[5] = Colors[C >> 32];
  Out[6] = Colors[static_cast<std::uint32_t>(D)];
  Out[7] = Colors[D >> 32];
}
// The first Count of them.
QXSVG_AVX2 inline void PutColors(std::uint32_t* Out, const std::uint32_t* Colors, __m256i Places,
                                 std::int32_t Count) {
  if (Count >= 8) return PutColors(Out, Colors, Places);
  alignas(32) std::uint32_t Each[8];
  Store(Each, Places);
  for (std::int32_t I = 0; I < Count; ++I) Out[I] = Colors[Each[I]];
}

}  // namespace

// Where eight pixels need no more than eight colours that lie side by side, shuffling those takes a
// fraction of the time of eight loads.
QXSVG_AVX2 void FetchLinear(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                            const TLinearRow& Row) {
  constexpr float SlowStep = 0.85f;
  const std::uint32_t* const Colors = Row.Colors;
  const float From = Row.Start, By = Row.Step, Highest = Row.Last + 0.5f;
  const float LastEight = Row.Last - 7;
  const bool IsSlow = std::abs(By) <= SlowStep;
  const __m256 Start = _mm256_set1_ps(From), Step = _mm256_set1_ps(By);
  const __m256 Most = _mm256_set1_ps(Highest), Eight = _mm256_set1_ps(8),
               Zero = _mm256_setzero_ps();
  __m256 At = PlacesFrom(X);
  auto Least = static_cast<float>(By < 0 ? X + 7 : X);
  for (std::int32_t I = 0; I < Count; I += 8) {
    const __m256 V = _mm256_add_ps(Start, _mm256_mul_ps(At, Step));
    const __m256i Places = _mm256_cvttps_epi32(_mm256_min_ps(_mm256_max_ps(V, Zero), Most));
    if (IsSlow && I + 8 <= Count) {
      const auto First =
          static_cast<std::int32_t>(std::min(std::max(From + Least * By, 0.0f), LastEight));
      Store(Out + I, _mm256_permutevar8x32_epi32(
                         Load(Colors + First), _mm256_sub_epi32(Places, _mm256_set1_epi32(First))));
    } else {
      PutColors(Out + I, Colors, Places, Count - I);
    }
    At = _mm256_add_ps(At, Eight);
    Least += 8;
  }
}

namespace {

// Centered is a row whose focus is the centre and whose pixels all lie as far from it in Y: the
// terms of the others are zero or the same for all, so that the bits are those of the whole sum.
template <bool Centered>
QXSVG_AVX2 inline void FetchRadial(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                                   const TRadialRow& Row) {
  const std::uint32_t* const Colors = Row.Colors;
  const __m256 Most = _mm256_set1_ps(Row.Last + 0.5f), Free = _mm256_set1_ps(Row.Free);
  const __m256 FX = _mm256_set1_ps(Row.FocusX), FY = _mm256_set1_ps(Row.FocusY);
  const __m256 Scale = _mm256_set1_ps(Row.Scale), Zero = _mm256_setzero_ps();
  const __m256 BeginX = _mm256_set1_ps(Row.X), StepX = _mm256_set1_ps(Row.XStep);
  const __m256 BeginY = _mm256_set1_ps(Row.Y), StepY = _mm256_set1_ps(Row.YStep);
  const __m256 SquareY = _mm256_mul_ps(BeginY, BeginY);
  __m256 At = PlacesFrom(X);
  for (std::int32_t I = 0; I < Count; I += 8) {
    const __m256 DX = _mm256_add_ps(BeginX, _mm256_mul_ps(At, StepX));
    __m256 Far;
    if constexpr (Centered) {
      Far = _mm256_sqrt_ps(_mm256_add_ps(_mm256_mul_ps(DX, DX), SquareY));
    } else {
      const __m256 DY = _mm256_add_ps(BeginY, _mm256_mul_ps(At, StepY));
      const __m256 A = _mm256_add_ps(_mm256_mul_ps(DX, FX), _mm256_mul_ps(DY, FY));
      const __m256 Away = _mm256_add_ps(_mm256_mul_ps(DX, DX), _mm256_mul_ps(DY, DY));
      const __m256 Square = _mm256_add_ps(_mm256_mul_ps(A, A), _mm256_mul_ps(Free, Away));
      Far = _mm256_add_ps(A, _mm256_sqrt_ps(Square));
    }
    __m256 V = _mm256_max_ps(_mm256_sub_ps(Most, _mm256_mul_ps(Far, Scale)), Zero);
    // Rounding may leave a place a little before the focus.
    if constexpr (!Centered) V = _mm256_min_ps(V, Most);
    PutColors(Out + I, Colors, _mm256_cvttps_epi32(V), Count - I);
    At = _mm256_add_ps(At, _mm256_set1_ps(8));
  }
}

}  // namespace

QXSVG_AVX2 void FetchRadial(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                            const TRadialRow& Row) {
  if (Row.FocusX == 0 && Row.FocusY == 0 && Row.YStep == 0)
    FetchRadial<true>(Out, X, Count, Row);
  else
    FetchRadial<false>(Out, X, Count, Row);
}

namespace {

// A and B in 16-bit parts, with weights that add up to 256.
QXSVG_AVX2 inline __m256i MixWords(__m256i A, __m256i B, __m256i Rest, __m256i Weight) {
  const __m256i Sum = _mm256_add_epi16(_mm256_mullo_epi16(A, Rest), _mm256_mullo_epi16(B, Weight));
  return _mm256_srli_epi16(_mm256_add_epi16(Sum, _mm256_set1_epi16(128)), 8);
}
QXSVG_AVX2 inline __m256i MixEight(__m256i A, __m256i B, __m256i LowWeight, __m256i HighWeight) {
  const __m256i Zero = _mm256_setzero_si256(), All = _mm256_set1_epi16(256);
  const __m256i Low = MixWords(_mm256_unpacklo_epi8(A, Zero), _mm256_unpacklo_epi8(B, Zero),
                               _mm256_sub_epi16(All, LowWeight), LowWeight);
  const __m256i High = MixWords(_mm256_unpackhi_epi8(A, Zero), _mm256_unpackhi_epi8(B, Zero),
                                _mm256_sub_epi16(All, HighWeight), HighWeight);
  return _mm256_packus_epi16(Low, High);
}

}  // namespace

// The products are those of MixRows, with two weights for each pixel.
QXSVG_AVX2 void ResampleRow(std::uint32_t* Out, std::int32_t Count, const TResampledRow& Row) {
  const __m256i Sign = _mm256_set1_epi8(-128), Half = _mm256_set1_epi16(-0x8000 + 128);
  // Of eight words, those of pixels 0 and 4, 1 and 5 four times each, and those behind.
  const __m256i LowWords = _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 0, 1, 2, 3, 2, 3, 2, 3, 2, 3, 8, 9, 8,
                                            9, 8, 9, 8, 9, 10, 11, 10, 11, 10, 11, 10, 11);
  const __m256i HighWords = _mm256_add_epi8(LowWords, _mm256_set1_epi8(4));
  std::int32_t I = 0;
  for (; I + 8 <= Count; I += 8) {
    const std::int32_t Begin = Row.Begin[I / 8];
    __m256i A, B;
    if (Begin >= 0) {
      const __m256i Eight = _mm256_xor_si256(Load(Row.Pixels + Begin), Sign);
      // Of a place, three bits count.
      const __m256i Near =
          _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(Row.Near + I)));
      A = _mm256_permutevar8x32_epi32(Eight, Near);
      B = _mm256_permutevar8x32_epi32(Eight, _mm256_srli_epi32(Near, 8));
    } else {
      A = _mm256_xor_si256(NumbersAt(Row.Pixels, Load(Row.First + I)), Sign);
      B = _mm256_xor_si256(NumbersAt(Row.Pixels, Load(Row.Second + I)), Sign);
    }
    const __m256i W = _mm256_broadcastsi128_si256(
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(Row.Weight + I)));
    const __m256i Low =
        _mm256_maddubs_epi16(_mm256_shuffle_epi8(W, LowWords), _mm256_unpacklo_epi8(A, B));
    const __m256i High =
        _mm256_maddubs_epi16(_mm256_shuffle_epi8(W, HighWords), _mm256_unpackhi_epi8(A, B));
    Store(Out + I, _mm256_packus_epi16(_mm256_srli_epi16(_mm256_add_epi16(Low, Half), 8),
                                       _mm256_srli_epi16(_mm256_add_epi16(High, Half), 8)));
  }
  PlainResampleRow(Out + I, Count - I,
                   {Row.Pixels, Row.Size, Row.First + I, Row.Second + I, Row.Weight + I});
}

QXSVG_AVX2 void MixRows(std::uint32_t* Out, const std::uint32_t* A, const std::uint32_t* B,
                        std::uint32_t Weight, std::int32_t Count) {
  // The rest of 256 would not fit a byte.
  if (Weight % 256 == 0) {
    std::copy_n(Weight == 0 ? A : B, Count, Out);
    return;
  }
  const __m256i W = _mm256_set1_epi16(static_cast<short>(Weight << 8 | (256 - Weight)));
  std::int32_t I = 0;
  for (; I + 8 <= Count; I += 8) {
    const TPixelWords Words = MixedWords(Load(A + I), Load(B + I), W);
    Store(Out + I, _mm256_packus_epi16(Words.Low, Words.High));
  }
  PlainMixRows(Out + I, A + I, B + I, Weight, Count - I);
}

namespace {

// The sums with those of the words of each pair, times their weights.
QXSVG_AVX2 inline __m256i AddProducts(__m256i Sums, __m256i Words, __m256i Weights) {
  return _mm256_add_epi32(Sums, _mm256_madd_epi16(Words, Weights));
}

// Adds two rows of eight pixels with a byte of weight each to the words of pixels 0, 1, 4, 5 and 2,
// 3, 6, 7. As in MixRows, bytes less 128 have a sign, which the beginning of the sums makes good.
QXSVG_AVX2 inline void AddTwoRows(__m256i& Low, __m256i& High, const std::uint32_t* A,
                                  const std::uint32_t* B, __m256i Weights) {
  const __m256i Sign = _mm256_set1_epi8(-128);
  const __m256i P = _mm256_xor_si256(Load(A), Sign), Q = _mm256_xor_si256(Load(B), Sign);
  Low = _mm256_add_epi16(Low, _mm256_maddubs_epi16(Weights, _mm256_unpacklo_epi8(P, Q)));
  High = _mm256_add_epi16(High, _mm256_maddubs_epi16(Weights, _mm256_unpackhi_epi8(P, Q)));
}
template <int Pairs>
QXSVG_AVX2 inline void MeanPairs(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  const __m256i Begin = _mm256_set1_epi16(-0x8000), Half = _mm256_set1_epi16(2 * MeanHalf);
  // The last row stands for itself and for one that is not there.
  const std::uint32_t* Row[2 * Pairs];
  __m256i Weights[Pairs];
  for (int I = 0; I < 2 * Pairs; ++I)
    Row[I] = Rows.Pixels + Rows.Stride * std::min(I, Rows.Count - 1);
  for (int I = 0; I < Pairs; ++I)
    Weights[I] =
        _mm256_set1_epi16(static_cast<short>(Rows.Weights[2 * I + 1] << 8 | Rows.Weights[2 * I]));
  for (std::int32_t I = 0; I + 8 <= Count; I += 8) {
    __m256i Low = Begin, High = Begin;
    AddTwoRows(Low, High, Row[0] + I, Row[1] + I, Weights[0]);
    if constexpr (Pairs > 1) AddTwoRows(Low, High, Row[2] + I, Row[3] + I, Weights[1]);
    if constexpr (Pairs > 2) AddTwoRows(Low, High, Row[4] + I, Row[5] + I, Weights[2]);
    if constexpr (Pairs > 3) AddTwoRows(Low, High, Row[6] + I, Row[7] + I, Weights[3]);
    Low = _mm256_avg_epu16(Low, Half);
    High = _mm256_avg_epu16(High, Half);
    Store(Out + 4 * I, _mm256_permute2x128_si256(Low, High, 0x20));
    Store(Out + 4 * I + 16, _mm256_permute2x128_si256(Low, High, 0x31));
  }
}

QXSVG_AVX2 inline __m256i LoadBoth(const std::uint16_t* Low, const std::uint16_t* High) {
  return _mm256_inserti128_si256(
      _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(Low))),
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(High)), 1);
}
// The columns side by side in 16-bit parts, as their products are summed.
QXSVG_AVX2 inline __m256i PairParts(__m256i Columns) {
  return _mm256_shuffle_epi8(Columns, _mm256_broadcastsi128_si256(_mm_setr_epi8(
                                          0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15)));
}
// The pixels I and I + 4 of two pairs each, whose weights are those from First on.
template <int First>
QXSVG_AVX2 inline __m256i MeansOfFours(const TMeanColumns& Columns, std::ptrdiff_t I,
                                       __m256i Weights) {
  const std::uint16_t* A = Columns.Row + std::ptrdiff_t{4} * Columns.First[I];
  const std::uint16_t* B = Columns.Row + std::ptrdiff_t{4} * Columns.First[I + 4];
  const __m256i Sums = _mm256_add_epi32(
      _mm256_madd_epi16(PairParts(LoadBoth(A, B)), _mm256_shuffle_epi32(Weights, 0x55 * First)),
      _mm256_madd_epi16(PairParts(LoadBoth(A + 8, B + 8)),
                        _mm256_shuffle_epi32(Weights, 0x55 * (First + 1))));
  return _mm256_srli_epi32(Sums, MeanShift);
}
// The pixels I, I + 1, I + 4 and I + 5.
QXSVG_AVX2 inline __m256i MeansOfFours(const TMeanColumns& Columns, std::ptrdiff_t I) {
  const std::uint16_t* W = Columns.Weights + 4 * I;
  const __m256i Weights = LoadBoth(W, W + 16);
  return _mm256_packus_epi32(MeansOfFours<0>(Columns, I, Weights),
                             MeansOfFours<2>(Columns, I + 1, Weights));
}
QXSVG_AVX2 inline __m256i MeansOfTwo(const TMeanColumns& Columns, std::int32_t I) {
  const std::int32_t Pairs = Columns.Pairs;
  const std::uint16_t* A = Columns.Row + 4 * Columns.First[I];
  const std::uint16_t* B = Columns.Row + 4 * Columns.First[I + 1];
  const std::uint16_t* W = Columns.Weights + std::ptrdiff_t{2} * Pairs * I;
  __m256i Sums = _mm256_setzero_si256();
  for (std::int32_t Pair = 0; Pair < Pairs; ++Pair, A += 8, B += 8, W += 2) {
    std::int32_t OfA, OfB;
    std::memcpy(&OfA, W, sizeof OfA);
    std::memcpy(&OfB, W + 2 * Pairs, sizeof OfB);
    const __m256i Weights =
        _mm256_blend_epi32(_mm256_set1_epi32(OfA), _mm256_set1_epi32(OfB), 0xf0);
    Sums = AddProducts(Sums, PairParts(LoadBoth(A, B)), Weights);
  }
  return _mm256_srli_epi32(Sums, MeanShift);
}

}  // namespace

// Two rows at a time, whose bytes side by side are one product with both weights.
QXSVG_AVX2 void MeanRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  const __m256i Zero = _mm256_setzero_si256(), Begin = _mm256_set1_epi32(MeanRowBegin);
  std::int32_t I = 0;
  for (; I + 8 <= Count; I += 8) {
    __m256i Sum0 = Begin, Sum1 = Begin, Sum2 = Begin, Sum3 = Begin;
    const std::uint32_t* P = Rows.Pixels + I;
    for (std::int32_t Row = 0; Row < Rows.Count; Row += 2, P += 2 * Rows.Stride) {
      std::int32_t Both;
      std::memcpy(&Both, Rows.Weights + Row, sizeof Both);
      const __m256i W = _mm256_set1_epi32(Both);
      const __m256i A = Load(P), B = Load(P + (Row + 1 < Rows.Count ? Rows.Stride : 0));
      const __m256i Low = _mm256_unpacklo_epi8(A, B), High = _mm256_unpackhi_epi8(A, B);
      Sum0 = AddProducts(Sum0, _mm256_unpacklo_epi8(Low, Zero), W);
      Sum1 = AddProducts(Sum1, _mm256_unpackhi_epi8(Low, Zero), W);
      Sum2 = AddProducts(Sum2, _mm256_unpacklo_epi8(High, Zero), W);
      Sum3 = AddProducts(Sum3, _mm256_unpackhi_epi8(High, Zero), W);
    }
    // Pixels 0, 1, 4, 5 and 2, 3, 6, 7.
    const __m256i Left = _mm256_packus_epi32(_mm256_srli_epi32(Sum0, MeanRowShift),
                                             _mm256_srli_epi32(Sum1, MeanRowShift));
    const __m256i Right = _mm256_packus_epi32(_mm256_srli_epi32(Sum2, MeanRowShift),
                                              _mm256_srli_epi32(Sum3, MeanRowShift));
    Store(Out + 4 * I, _mm256_permute2x128_si256(Left, Right, 0x20));
    Store(Out + 4 * I + 16, _mm256_permute2x128_si256(Left, Right, 0x31));
  }
  TMeanRows Rest = Rows;
  Rest.Pixels += I;
  PlainMeanRows(Out + 4 * I, Rest, Count - I);
}

QXSVG_AVX2 void MeanFewRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  static_assert(FewRows == 8);
  switch ((Rows.Count + 1) / 2) {
    case 1: MeanPairs<1>(Out, Rows, Count); break;
    case 2: MeanPairs<2>(Out, Rows, Count); break;
    case 3: MeanPairs<3>(Out, Rows, Count); break;
    default: MeanPairs<4>(Out, Rows, Count);
  }
  const std::int32_t Done = Count & -8;
  TMeanRows Rest = Rows;
  Rest.Pixels += Done;
  PlainMeanFewRows(Out + 4 * Done, Rest, Count - Done);
}

QXSVG_AVX2 void MeanColumns(std::uint32_t* Out, std::int32_t Count, const TMeanColumns& Columns) {
  const std::int32_t Pairs = Columns.Pairs;
  std::int32_t I = 0;
  for (; Pairs == 2 && I + 8 <= Count; I += 8)
    Store(Out + I, _mm256_packus_epi16(MeansOfFours(Columns, I), MeansOfFours(Columns, I + 2)));
  // Two in a vector.
  for (; I + 4 <= Count; I += 4) {
    const __m256i Words = _mm256_packus_epi32(MeansOfTwo(Columns, I), MeansOfTwo(Columns, I + 2));
    const __m256i Bytes = _mm256_packus_epi16(Words, Words);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(Out + I),
        _mm_unpacklo_epi32(_mm256_castsi256_si128(Bytes), _mm256_extracti128_si256(Bytes, 1)));
  }
  PlainMeanColumns(
      Out + I, Count - I,
      {Columns.Row, Columns.First + I, Columns.Weights + std::ptrdiff_t{2} * Pairs * I, Pairs});
}

namespace {

// One axis of eight places.
struct TTurnedAxis {
  __m256i Place, Step, Size;
};
QXSVG_AVX2 inline TTurnedAxis BeginAxis(std::int64_t Place, std::int64_t Step, std::int32_t Size,
                                        bool IsRepeated) {
  std::int64_t All = Step * 8;
  if (IsRepeated) {
    const std::int64_t Whole = std::int64_t{Size} << 16;
    const auto Wrapped = [=](std::int64_t V) {
      const std::int64_t Rest = V % Whole;
      return Rest < 0 ? Rest + Whole : Rest;
    };
    alignas(32) std::uint32_t Places[8];
    for (int I = 0; I < 8; ++I) Places[I] = static_cast<std::uint32_t>(Wrapped(Place + I * Step));
    All = Wrapped(All);
    return {_mm256_load_si256(reinterpret_cast<const __m256i*>(Places)),
            _mm256_set1_epi32(static_cast<int>(All)), _mm256_set1_epi32(Size)};
  }
  const __m256i Steps = _mm256_mullo_epi32(_mm256_set1_epi32(static_cast<int>(Step)),
                                           _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
  return {_mm256_add_epi32(_mm256_set1_epi32(static_cast<int>(Place)), Steps),
          _mm256_set1_epi32(static_cast<int>(All)), _mm256_set1_epi32(Size)};
}
// The two pixels at each place, and how much of the second, in both halves of 32 bits.
struct TTurnedPair {
  __m256i First, Second, Weight;
};
QXSVG_AVX2 inline TTurnedPair NextPair(TTurnedAxis& Axis, bool IsRepeated) {
  const __m256i One = _mm256_set1_epi32(1);
  TTurnedPair Pair;
  Pair.Weight = _mm256_and_si256(_mm256_srli_epi32(Axis.Place, 8), _mm256_set1_epi32(255));
  Pair.Weight = _mm256_or_si256(Pair.Weight, _mm256_slli_epi32(Pair.Weight, 16));
  const __m256i Next = _mm256_add_epi32(Axis.Place, Axis.Step);
  if (IsRepeated) {
    Pair.First = _mm256_srli_epi32(Axis.Place, 16);
    const __m256i After = _mm256_add_epi32(Pair.First, One);
    Pair.Second = _mm256_andnot_si256(_mm256_cmpeq_epi32(After, Axis.Size), After);
    Axis.Place = _mm256_min_epu32(Next, _mm256_sub_epi32(Next, _mm256_slli_epi32(Axis.Size, 16)));
    return Pair;
  }
  const __m256i Zero = _mm256_setzero_si256(), Last = _mm256_sub_epi32(Axis.Size, One);
  const __m256i At = _mm256_srai_epi32(Axis.Place, 16);
  Pair.First = _mm256_min_epi32(_mm256_max_epi32(At, Zero), Last);
  Pair.Second = _mm256_min_epi32(_mm256_max_epi32(_mm256_add_epi32(At, One), Zero), Last);
  Axis.Place = Next;
  return Pair;
}

}  // namespace

QXSVG_AVX2 void FetchTurned(std::uint32_t* Out, std::int32_t Count, const TTurnedRow& Row) {
  // What the 32-bit lanes cannot hold goes the plain way.
  constexpr std::int64_t Far = std::int64_t{30000} << 16;
  const auto IsNear = [=](std::int64_t From, std::int64_t Step) {
    const std::int64_t To = From + Step * (Count + 16);
    return From > -Far && From < Far && To > -Far && To < Far;
  };
  const bool IsSmall =
      Row.Width <= 16384 && Row.Height <= 16384 && Row.Stride * Row.Height < (1 << 30);
  if (!IsSmall || (!Row.IsRepeated && !(IsNear(Row.U, Row.StepU) && IsNear(Row.V, Row.StepV))))
    return PlainFetchTurned(Out, Count, Row);
  TTurnedAxis U = BeginAxis(Row.U, Row.StepU, Row.Width, Row.IsRepeated);
  TTurnedAxis V = BeginAxis(Row.V, Row.StepV, Row.Height, Row.IsRepeated);
  const __m256i Stride = _mm256_set1_epi32(static_cast<int>(Row.Stride));
  const auto* Pixels = reinterpret_cast<const int*>(Row.Pixels);
  std::int32_t I = 0;
  for (; I + 8 <= Count; I += 8) {
    const TTurnedPair X = NextPair(U, Row.IsRepeated), Y = NextPair(V, Row.IsRepeated);
    const __m256i Y0 = _mm256_mullo_epi32(Y.First, Stride);
    const __m256i Y1 = _mm256_mullo_epi32(Y.Second, Stride);
    const __m256i XLow = _mm256_unpacklo_epi32(X.Weight, X.Weight);
    const __m256i XHigh = _mm256_unpackhi_epi32(X.Weight, X.Weight);
    const __m256i Upper =
        MixEight(_mm256_i32gather_epi32(Pixels, _mm256_add_epi32(Y0, X.First), 4),
                 _mm256_i32gather_epi32(Pixels, _mm256_add_epi32(Y0, X.Second), 4), XLow, XHigh);
    const __m256i Lower =
        MixEight(_mm256_i32gather_epi32(Pixels, _mm256_add_epi32(Y1, X.First), 4),
                 _mm256_i32gather_epi32(Pixels, _mm256_add_epi32(Y1, X.Second), 4), XLow, XHigh);
    Store(Out + I, MixEight(Upper, Lower, _mm256_unpacklo_epi32(Y.Weight, Y.Weight),
                            _mm256_unpackhi_epi32(Y.Weight, Y.Weight)));
  }
  TTurnedRow Rest = Row;
  Rest.U += Row.StepU * I;
  Rest.V += Row.StepV * I;
  PlainFetchTurned(Out + I, Count - I, Rest);
}

}  // namespace qxsvg::avx2

#endif
