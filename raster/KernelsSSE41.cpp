// The kernels for processors with SSE4.1 and no AVX2: the same steps over vectors half as wide,
// with single loads where those have gathers. The functions carry the instruction set themselves,
// so that nothing else of this file is compiled for it.
#include "raster/CellPiece.h"
#include "raster/KernelsPlain.h"

#if defined(__x86_64__)

#include <smmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace qxsvg {

namespace {

#define QXSVG_SSE41 [[gnu::target("sse4.1")]]

QXSVG_SSE41 inline __m128i Load(const void* P) {
  return _mm_loadu_si128(static_cast<const __m128i*>(P));
}
QXSVG_SSE41 inline void Store(void* P, __m128i V) {
  _mm_storeu_si128(static_cast<__m128i*>(P), V);
}

// The running sums of four cells that follow on Before, whose parts are all the same.
QXSVG_SSE41 inline __m128i RunningSums(__m128i V, __m128i Before) {
  V = _mm_add_epi32(V, _mm_slli_si128(V, 4));
  return _mm_add_epi32(_mm_add_epi32(V, _mm_slli_si128(V, 8)), Before);
}
QXSVG_SSE41 inline __m128i LastOf(__m128i V) {
  return _mm_shuffle_epi32(V, 0xff);
}

template <bool EvenOdd>
QXSVG_SSE41 inline __m128i CoversOf(__m128i Sum) {
  __m128i Area;
  if constexpr (EvenOdd) {
    Area = _mm_and_si128(Sum, _mm_set1_epi32(2 * CellFull - 1));
    Area = _mm_min_epi32(Area, _mm_sub_epi32(_mm_set1_epi32(2 * CellFull), Area));
  } else {
    Area = _mm_min_epu32(_mm_abs_epi32(Sum), _mm_set1_epi32(CellFull));
  }
  const __m128i Scaled = _mm_sub_epi32(_mm_slli_epi32(Area, 8), Area);
  return _mm_srli_epi32(_mm_add_epi32(Scaled, _mm_set1_epi32(CellFull / 2)), CellFullBits);
}

template <bool EvenOdd>
QXSVG_SSE41 std::size_t Sweep(const TSweepRow& Row) {
  TSpanWriter Spans(Row);
  const __m128i Zero = _mm_setzero_si128();
  __m128i Sum = Zero;
  for (std::ptrdiff_t Block = 0; Block < Row.MarkCount; Block += 16) {
    auto Bits = static_cast<std::uint32_t>(
        _mm_movemask_epi8(_mm_cmpgt_epi8(Load(Row.Marks + Block), Zero)));
    if (Bits == 0) continue;
    Store(Row.Marks + Block, Zero);
    do {
      const std::int32_t First = std::countr_zero(Bits);
      const std::int32_t Count = std::countr_one(Bits >> First);
      Bits &= ~(((1u << Count) - 1) << First);
      const std::int32_t Group = static_cast<std::int32_t>(Block) + First;
      Spans.Skip(Group, CoverOf<EvenOdd>(_mm_cvtsi128_si32(Sum)));
      std::int32_t* Cells = Row.Cells + Group * GroupCells;
      std::uint8_t* Covers = Row.Covers + Group * GroupCells;
      for (std::int32_t I = 0; I < Count; ++I, Cells += GroupCells, Covers += GroupCells) {
        const __m128i A = RunningSums(Load(Cells), Sum);
        const __m128i B = RunningSums(Load(Cells + 4), LastOf(A));
        Store(Cells, Zero);
        Store(Cells + 4, Zero);
        Sum = LastOf(B);
        const __m128i Words = _mm_packs_epi32(CoversOf<EvenOdd>(A), CoversOf<EvenOdd>(B));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(Covers), _mm_packus_epi16(Words, Words));
      }
      Spans.Group(Count);
    } while (Bits != 0);
  }
  return Spans.Finish(CoverOf<EvenOdd>(_mm_cvtsi128_si32(Sum)));
}

QXSVG_SSE41 void Fill(std::uint32_t* Target, std::int32_t Count, std::uint32_t Color) {
  const __m128i V = _mm_set1_epi32(static_cast<int>(Color));
  if (Count < 4) {
    for (std::int32_t I = 0; I < Count; ++I) Target[I] = Color;
    return;
  }
  // Stores that cross cache lines cost twice.
  Store(Target, V);
  std::int32_t I = 4 - static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(Target) / 4 % 4);
  for (; I + 16 <= Count; I += 16)
    for (std::int32_t J = 0; J < 16; J += 4) Store(Target + I + J, V);
  for (; I + 4 <= Count; I += 4) Store(Target + I, V);
  Store(Target + Count - 4, V);
}

// Four rows of a steep line at a time; see TSteepRows. Each lane is the arithmetic of AddPiece.
QXSVG_SSE41 void AddSteepRows(const TSteepRows& Rows) {
  const __m128i Step = _mm_set1_epi32(static_cast<int>(Rows.Step));
  const __m128i Steps = _mm_mullo_epi32(Step, _mm_setr_epi32(0, 1, 2, 3));
  const __m128i Mask = _mm_set1_epi32(SubpixelScale - 1), Whole = _mm_set1_epi32(SubpixelScale);
  const __m128i Full = _mm_set1_epi32(Rows.Cover * 2 * SubpixelScale);
  const __m128i Cover = _mm_set1_epi32(Rows.Cover);
  const __m128 Rate = _mm_set1_ps(Rows.Rate);
  TSteepRows Left = Rows;
  alignas(16) std::int32_t First[4], A[4], B[4], C[4];
  for (; Left.Count >= 4; Left.Count -= 4) {
    const __m128i Base = _mm_set1_epi32(static_cast<int>(Left.At >> SlopeBits));
    const __m128i Rest =
        _mm_add_epi32(_mm_set1_epi32(static_cast<int>(Left.At & ((1 << SlopeBits) - 1))), Steps);
    const __m128i From = _mm_add_epi32(Base, _mm_srai_epi32(Rest, SlopeBits));
    const __m128i To = _mm_add_epi32(Base, _mm_srai_epi32(_mm_add_epi32(Rest, Step), SlopeBits));
    const __m128i Least = _mm_min_epi32(From, To), Most = _mm_max_epi32(From, To);
    const __m128i LeftCell = _mm_srai_epi32(Least, SubpixelBits);
    const __m128i IsOne = _mm_cmpeq_epi32(LeftCell, _mm_srai_epi32(Most, SubpixelBits));
    const __m128i LeftPart = _mm_sub_epi32(Whole, _mm_and_si128(Least, Mask));
    const __m128i RightPart = _mm_and_si128(Most, Mask);
    const __m128i Within =
        _mm_mullo_epi32(Cover, _mm_add_epi32(LeftPart, _mm_sub_epi32(Whole, RightPart)));
    const __m128i Start =
        _mm_cvttps_epi32(_mm_mul_ps(Rate, _mm_cvtepi32_ps(_mm_mullo_epi32(LeftPart, LeftPart))));
    const __m128i End = _mm_sub_epi32(
        Full,
        _mm_cvttps_epi32(_mm_mul_ps(Rate, _mm_cvtepi32_ps(_mm_mullo_epi32(RightPart, RightPart)))));
    const __m128i Now = _mm_blendv_epi8(Start, Within, IsOne);
    const __m128i Then = _mm_blendv_epi8(End, Full, IsOne);
    _mm_store_si128(reinterpret_cast<__m128i*>(First), LeftCell);
    _mm_store_si128(reinterpret_cast<__m128i*>(A), Now);
    _mm_store_si128(reinterpret_cast<__m128i*>(B), _mm_sub_epi32(Then, Now));
    _mm_store_si128(reinterpret_cast<__m128i*>(C), _mm_sub_epi32(Full, Then));
    for (int I = 0; I < 4; ++I, Left.Cells += Rows.Stride, Left.Marks += Rows.MarkStride) {
      const std::int32_t X = First[I];
      AddToCell(Left.Cells[X], A[I]);
      AddToCell(Left.Cells[X + 1], B[I]);
      AddToCell(Left.Cells[X + 2], C[I]);
      Left.Marks[X / GroupCells] = 1;
      Left.Marks[(X + 2) / GroupCells] = 1;
    }
    Left.At += 4 * Rows.Step;
  }
  PlainAddSteepRows(Left);
}

// Eight bytes, one in each 16-bit part, times others over 255.
QXSVG_SSE41 inline __m128i MultiplyWords(__m128i A, __m128i B) {
  const __m128i P = _mm_add_epi16(_mm_mullo_epi16(A, B), _mm_set1_epi16(128));
  return _mm_srli_epi16(_mm_add_epi16(P, _mm_srli_epi16(P, 8)), 8);
}
QXSVG_SSE41 inline __m128i LowWords(__m128i V) {
  return _mm_unpacklo_epi8(V, _mm_setzero_si128());
}
QXSVG_SSE41 inline __m128i HighWords(__m128i V) {
  return _mm_unpackhi_epi8(V, _mm_setzero_si128());
}
// What is left of the target under these source words.
QXSVG_SSE41 inline __m128i RestWords(__m128i Words) {
  const __m128i Alpha = _mm_shufflehi_epi16(_mm_shufflelo_epi16(Words, 0xff), 0xff);
  return _mm_xor_si128(Alpha, _mm_set1_epi16(255));
}
// Source words over four target pixels.
QXSVG_SSE41 inline __m128i OverWords(__m128i Target, __m128i Low, __m128i High) {
  const __m128i Left = _mm_packus_epi16(MultiplyWords(LowWords(Target), RestWords(Low)),
                                        MultiplyWords(HighWords(Target), RestWords(High)));
  return _mm_adds_epu8(_mm_packus_epi16(Low, High), Left);
}
// Four covers, each four times.
struct TCoverWords {
  __m128i Low, High;
};
QXSVG_SSE41 inline TCoverWords CoverWords(const std::uint8_t* Covers) {
  std::int32_t Four;
  std::memcpy(&Four, Covers, sizeof Four);
  const __m128i Each = _mm_cvtsi32_si128(Four);
  const __m128i Low = _mm_setr_epi8(0, -1, 0, -1, 0, -1, 0, -1, 1, -1, 1, -1, 1, -1, 1, -1);
  const __m128i High = _mm_setr_epi8(2, -1, 2, -1, 2, -1, 2, -1, 3, -1, 3, -1, 3, -1, 3, -1);
  return {_mm_shuffle_epi8(Each, Low), _mm_shuffle_epi8(Each, High)};
}

QXSVG_SSE41 inline void BlendEven(std::uint32_t* P, std::int32_t Length, std::uint32_t Source) {
  const __m128i S = _mm_set1_epi32(static_cast<int>(Source));
  const __m128i R = _mm_set1_epi16(static_cast<short>(255 - (Source >> 24)));
  std::int32_t I = 0;
  for (; I + 4 <= Length; I += 4) {
    const __m128i T = Load(P + I);
    const __m128i Left =
        _mm_packus_epi16(MultiplyWords(LowWords(T), R), MultiplyWords(HighWords(T), R));
    Store(P + I, _mm_adds_epu8(S, Left));
  }
  for (; I < Length; ++I) P[I] = OverPixel(P[I], Source);
}

QXSVG_SSE41 inline void BlendCovers(std::uint32_t* P, std::int32_t Length,
                                    const std::uint8_t* Covers, std::uint32_t Color) {
  const __m128i C = LowWords(_mm_set1_epi32(static_cast<int>(Color)));
  std::int32_t I = 0;
  for (; I + 4 <= Length; I += 4) {
    const TCoverWords Words = CoverWords(Covers + I);
    Store(P + I, OverWords(Load(P + I), MultiplyWords(C, Words.Low), MultiplyWords(C, Words.High)));
  }
  for (; I < Length; ++I) P[I] = OverPixel(P[I], ScalePixel(Color, Covers[I]));
}

QXSVG_SSE41 void BlendColor(std::uint32_t* Target, std::span<const TCoverSpan> Spans,
                            const std::uint8_t* Covers, std::uint32_t Color) {
  const bool IsOpaque = Color >> 24 == 255;
  for (const TCoverSpan& Span : Spans) {
    std::uint32_t* P = Target + Span.X;
    if (!Span.IsEven())
      BlendCovers(P, Span.Length, Span.Covers(Covers), Color);
    else if (IsOpaque && Span.Cover == FullCover)
      Fill(P, Span.Length, Color);
    else
      BlendEven(P, Span.Length, ScalePixel(Color, Span.Cover));
  }
}

QXSVG_SSE41 void BlendBlock(const TCoverBlock& Block, std::uint32_t Color) {
  std::uint32_t* P = Block.Pixels;
  const std::uint8_t* Covers = Block.Covers;
  for (std::int32_t Row = 0; Row < Block.Rows; ++Row) {
    BlendCovers(P, Block.Width, Covers, Color);
    P += Block.Stride;
    Covers += Block.CoverStride;
  }
}

QXSVG_SSE41 void BlendGroups(const TCoverGroups& Groups, std::uint32_t Color) {
  for (std::ptrdiff_t I = 0; I < Groups.Count; ++I) {
    const TGroupPlace Place = Groups.Places[I];
    BlendCovers(Groups.Pixels + Place.Y * Groups.Stride + Place.X, 8, Groups.Covers + 8 * I, Color);
  }
}

QXSVG_SSE41 void BlendPixels(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                             std::uint32_t Cover) {
  const __m128i C = _mm_set1_epi16(static_cast<short>(Cover));
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const __m128i S = Load(Source + I);
    Store(Target + I, OverWords(Load(Target + I), MultiplyWords(LowWords(S), C),
                                MultiplyWords(HighWords(S), C)));
  }
  PlainBlendPixels(Target + I, Source + I, Count - I, Cover);
}

QXSVG_SSE41 void BlendCovered(std::uint32_t* Target, const std::uint32_t* Source,
                              std::int32_t Count, const std::uint8_t* Covers) {
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const __m128i S = Load(Source + I);
    const TCoverWords Words = CoverWords(Covers + I);
    Store(Target + I, OverWords(Load(Target + I), MultiplyWords(LowWords(S), Words.Low),
                                MultiplyWords(HighWords(S), Words.High)));
  }
  PlainBlendCovered(Target + I, Source + I, Count - I, Covers + I);
}

QXSVG_SSE41 void MultiplyCovers(std::uint8_t* Target, const std::uint8_t* A, const std::uint8_t* B,
                                std::int32_t Count) {
  std::int32_t I = 0;
  for (; I + 16 <= Count; I += 16) {
    const __m128i X = Load(A + I), Y = Load(B + I);
    Store(Target + I, _mm_packus_epi16(MultiplyWords(LowWords(X), LowWords(Y)),
                                       MultiplyWords(HighWords(X), HighWords(Y))));
  }
  PlainMultiplyCovers(Target + I, A + I, B + I, Count - I);
}

QXSVG_SSE41 void ScaleCovers(std::uint8_t* Target, const std::uint8_t* A, std::uint32_t Cover,
                             std::int32_t Count) {
  const __m128i C = _mm_set1_epi16(static_cast<short>(Cover));
  std::int32_t I = 0;
  for (; I + 16 <= Count; I += 16) {
    const __m128i X = Load(A + I);
    Store(Target + I,
          _mm_packus_epi16(MultiplyWords(LowWords(X), C), MultiplyWords(HighWords(X), C)));
  }
  PlainScaleCovers(Target + I, A + I, Cover, Count - I);
}

QXSVG_SSE41 inline __m128i PixelsAt(const std::uint32_t* Pixels, __m128i Places) {
  const auto At = [&](int Place) { return static_cast<int>(Pixels[Place]); };
  return _mm_setr_epi32(At(_mm_cvtsi128_si32(Places)), At(_mm_extract_epi32(Places, 1)),
                        At(_mm_extract_epi32(Places, 2)), At(_mm_extract_epi32(Places, 3)));
}
QXSVG_SSE41 inline __m128i PixelsAt(const std::uint32_t* Pixels, __m128i Rows, __m128i Places) {
  return PixelsAt(Pixels, _mm_add_epi32(Rows, Places));
}
QXSVG_SSE41 inline __m128 PlacesFrom(std::int32_t X) {
  return _mm_cvtepi32_ps(_mm_add_epi32(_mm_set1_epi32(X), _mm_setr_epi32(0, 1, 2, 3)));
}
QXSVG_SSE41 inline __m128i ColorsAt(const std::uint32_t* Colors, __m128 Places, __m128 Most) {
  Places = _mm_min_ps(_mm_max_ps(Places, _mm_setzero_ps()), Most);
  return PixelsAt(Colors, _mm_cvttps_epi32(Places));
}

QXSVG_SSE41 void FetchLinear(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                             const TLinearRow& Row) {
  const __m128 Start = _mm_set1_ps(Row.Start), Step = _mm_set1_ps(Row.Step);
  const __m128 Most = _mm_set1_ps(Row.Last + 0.5f);
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const __m128 V = _mm_add_ps(Start, _mm_mul_ps(PlacesFrom(X + I), Step));
    Store(Out + I, ColorsAt(Row.Colors, V, Most));
  }
  PlainFetchLinear(Out + I, X + I, Count - I, Row);
}

QXSVG_SSE41 void FetchRadial(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                             const TRadialRow& Row) {
  const __m128 Most = _mm_set1_ps(Row.Last + 0.5f), Free = _mm_set1_ps(Row.Free);
  const __m128 FX = _mm_set1_ps(Row.FocusX), FY = _mm_set1_ps(Row.FocusY);
  const __m128 Scale = _mm_set1_ps(Row.Scale);
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const __m128 At = PlacesFrom(X + I);
    const __m128 DX = _mm_add_ps(_mm_set1_ps(Row.X), _mm_mul_ps(At, _mm_set1_ps(Row.XStep)));
    const __m128 DY = _mm_add_ps(_mm_set1_ps(Row.Y), _mm_mul_ps(At, _mm_set1_ps(Row.YStep)));
    const __m128 A = _mm_add_ps(_mm_mul_ps(DX, FX), _mm_mul_ps(DY, FY));
    const __m128 Away = _mm_add_ps(_mm_mul_ps(DX, DX), _mm_mul_ps(DY, DY));
    const __m128 Square = _mm_add_ps(_mm_mul_ps(A, A), _mm_mul_ps(Free, Away));
    const __m128 Far = _mm_mul_ps(_mm_add_ps(A, _mm_sqrt_ps(Square)), Scale);
    Store(Out + I, ColorsAt(Row.Colors, _mm_sub_ps(Most, Far), Most));
  }
  PlainFetchRadial(Out + I, X + I, Count - I, Row);
}

// A and B in 16-bit parts, with weights that add up to 256.
QXSVG_SSE41 inline __m128i MixWords(__m128i A, __m128i B, __m128i Weight) {
  const __m128i Rest = _mm_sub_epi16(_mm_set1_epi16(256), Weight);
  const __m128i Sum = _mm_add_epi16(_mm_mullo_epi16(A, Rest), _mm_mullo_epi16(B, Weight));
  return _mm_srli_epi16(_mm_add_epi16(Sum, _mm_set1_epi16(128)), 8);
}
QXSVG_SSE41 inline __m128i MixFour(__m128i A, __m128i B, __m128i LowWeight, __m128i HighWeight) {
  return _mm_packus_epi16(MixWords(LowWords(A), LowWords(B), LowWeight),
                          MixWords(HighWords(A), HighWords(B), HighWeight));
}
// With a weight for each pixel, which is in both halves of 32 bits.
QXSVG_SSE41 inline __m128i MixEach(__m128i A, __m128i B, __m128i Weight) {
  return MixFour(A, B, _mm_unpacklo_epi32(Weight, Weight), _mm_unpackhi_epi32(Weight, Weight));
}

QXSVG_SSE41 void ResampleRow(std::uint32_t* Out, std::int32_t Count, const TResampledRow& Row) {
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const __m128i A = PixelsAt(Row.Pixels, Load(Row.First + I));
    const __m128i B = PixelsAt(Row.Pixels, Load(Row.Second + I));
    const __m128i W = _mm_srli_epi32(
        _mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(Row.Weight + I))), 8);
    Store(Out + I, MixEach(A, B, _mm_or_si128(W, _mm_slli_epi32(W, 16))));
  }
  PlainResampleRow(Out + I, Count - I,
                   {Row.Pixels, Row.Size, Row.First + I, Row.Second + I, Row.Weight + I});
}

QXSVG_SSE41 void MixRows(std::uint32_t* Out, const std::uint32_t* A, const std::uint32_t* B,
                         std::uint32_t Weight, std::int32_t Count) {
  const __m128i W = _mm_set1_epi16(static_cast<short>(Weight));
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) Store(Out + I, MixFour(Load(A + I), Load(B + I), W, W));
  PlainMixRows(Out + I, A + I, B + I, Weight, Count - I);
}

QXSVG_SSE41 void MixRowsOver(std::uint32_t* Target, const std::uint32_t* A, const std::uint32_t* B,
                             std::uint32_t Weight, std::int32_t Count) {
  const __m128i W = _mm_set1_epi16(static_cast<short>(Weight));
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const __m128i P = Load(A + I), Q = Load(B + I);
    Store(Target + I, OverWords(Load(Target + I), MixWords(LowWords(P), LowWords(Q), W),
                                MixWords(HighWords(P), HighWords(Q), W)));
  }
  PlainMixRowsOver(Target + I, A + I, B + I, Weight, Count - I);
}

// The sums with those of the words of each pair, times their weights.
QXSVG_SSE41 inline __m128i AddProducts(__m128i Sums, __m128i Words, __m128i Weights) {
  return _mm_add_epi32(Sums, _mm_madd_epi16(Words, Weights));
}

// Two rows at a time, whose bytes side by side are one product with both weights.
QXSVG_SSE41 void MeanRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  const __m128i Zero = _mm_setzero_si128(), Begin = _mm_set1_epi32(MeanRowBegin);
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    __m128i Sum0 = Begin, Sum1 = Begin, Sum2 = Begin, Sum3 = Begin;
    const std::uint32_t* P = Rows.Pixels + I;
    for (std::int32_t Row = 0; Row < Rows.Count; Row += 2, P += 2 * Rows.Stride) {
      std::int32_t Both;
      std::memcpy(&Both, Rows.Weights + Row, sizeof Both);
      const __m128i W = _mm_set1_epi32(Both);
      const __m128i A = Load(P), B = Load(P + (Row + 1 < Rows.Count ? Rows.Stride : 0));
      const __m128i Low = _mm_unpacklo_epi8(A, B), High = _mm_unpackhi_epi8(A, B);
      Sum0 = AddProducts(Sum0, _mm_unpacklo_epi8(Low, Zero), W);
      Sum1 = AddProducts(Sum1, _mm_unpackhi_epi8(Low, Zero), W);
      Sum2 = AddProducts(Sum2, _mm_unpacklo_epi8(High, Zero), W);
      Sum3 = AddProducts(Sum3, _mm_unpackhi_epi8(High, Zero), W);
    }
    Store(Out + 4 * I,
          _mm_packus_epi32(_mm_srli_epi32(Sum0, MeanRowShift), _mm_srli_epi32(Sum1, MeanRowShift)));
    Store(Out + 4 * I + 8,
          _mm_packus_epi32(_mm_srli_epi32(Sum2, MeanRowShift), _mm_srli_epi32(Sum3, MeanRowShift)));
  }
  TMeanRows Rest = Rows;
  Rest.Pixels += I;
  PlainMeanRows(Out + 4 * I, Rest, Count - I);
}

// Bytes less 128 have a sign, as the product's second factor must; the sums begin with what that
// takes off.
QXSVG_SSE41 void MeanFewRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  const __m128i Sign = _mm_set1_epi8(-128), Begin = _mm_set1_epi16(-0x8000);
  const __m128i Half = _mm_set1_epi16(2 * MeanHalf);
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    __m128i Low = Begin, High = Begin;
    const std::uint32_t* P = Rows.Pixels + I;
    for (std::int32_t Row = 0; Row < Rows.Count; Row += 2, P += 2 * Rows.Stride) {
      const __m128i W =
          _mm_set1_epi16(static_cast<short>(Rows.Weights[Row + 1] << 8 | Rows.Weights[Row]));
      const __m128i A = _mm_xor_si128(Load(P), Sign);
      const __m128i B = _mm_xor_si128(Load(P + (Row + 1 < Rows.Count ? Rows.Stride : 0)), Sign);
      Low = _mm_add_epi16(Low, _mm_maddubs_epi16(W, _mm_unpacklo_epi8(A, B)));
      High = _mm_add_epi16(High, _mm_maddubs_epi16(W, _mm_unpackhi_epi8(A, B)));
    }
    Store(Out + 4 * I, _mm_avg_epu16(Low, Half));
    Store(Out + 4 * I + 8, _mm_avg_epu16(High, Half));
  }
  TMeanRows Rest = Rows;
  Rest.Pixels += I;
  PlainMeanFewRows(Out + 4 * I, Rest, Count - I);
}

QXSVG_SSE41 void MeanColumns(std::uint32_t* Out, std::int32_t Count, const TMeanColumns& Columns) {
  const __m128i Parts = _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
  const std::uint16_t* W = Columns.Weights;
  for (std::int32_t I = 0; I < Count; ++I) {
    const std::uint16_t* P = Columns.Row + 4 * Columns.First[I];
    __m128i Sum = _mm_setzero_si128();
    for (std::int32_t Pair = 0; Pair < Columns.Pairs; ++Pair, P += 8, W += 2) {
      std::int32_t Both;
      std::memcpy(&Both, W, sizeof Both);
      Sum = AddProducts(Sum, _mm_shuffle_epi8(Load(P), Parts), _mm_set1_epi32(Both));
    }
    Sum = _mm_srli_epi32(Sum, MeanShift);
    Sum = _mm_packus_epi16(_mm_packus_epi32(Sum, Sum), Sum);
    Out[I] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(Sum));
  }
}

// One axis of four places.
struct TTurnedAxis {
  __m128i Place, Step, Size;
};
QXSVG_SSE41 inline TTurnedAxis BeginAxis(std::int64_t Place, std::int64_t Step, std::int32_t Size,
                                         bool IsRepeated) {
  const std::int64_t Whole = std::int64_t{Size} << 16;
  const auto Wrapped = [=](std::int64_t V) {
    if (!IsRepeated) return static_cast<int>(V);
    const std::int64_t Rest = V % Whole;
    return static_cast<int>(Rest < 0 ? Rest + Whole : Rest);
  };
  return {_mm_setr_epi32(Wrapped(Place), Wrapped(Place + Step), Wrapped(Place + 2 * Step),
                         Wrapped(Place + 3 * Step)),
          _mm_set1_epi32(Wrapped(4 * Step)), _mm_set1_epi32(Size)};
}
// The two pixels at each place, and how much of the second, in both halves of 32 bits.
struct TTurnedPair {
  __m128i First, Second, Weight;
};
QXSVG_SSE41 inline TTurnedPair NextPair(TTurnedAxis& Axis, bool IsRepeated) {
  const __m128i One = _mm_set1_epi32(1);
  TTurnedPair Pair;
  Pair.Weight = _mm_and_si128(_mm_srli_epi32(Axis.Place, 8), _mm_set1_epi32(255));
  Pair.Weight = _mm_or_si128(Pair.Weight, _mm_slli_epi32(Pair.Weight, 16));
  const __m128i Next = _mm_add_epi32(Axis.Place, Axis.Step);
  if (IsRepeated) {
    Pair.First = _mm_srli_epi32(Axis.Place, 16);
    const __m128i After = _mm_add_epi32(Pair.First, One);
    Pair.Second = _mm_andnot_si128(_mm_cmpeq_epi32(After, Axis.Size), After);
    Axis.Place = _mm_min_epu32(Next, _mm_sub_epi32(Next, _mm_slli_epi32(Axis.Size, 16)));
    return Pair;
  }
  const __m128i Zero = _mm_setzero_si128(), Last = _mm_sub_epi32(Axis.Size, One);
  const __m128i At = _mm_srai_epi32(Axis.Place, 16);
  Pair.First = _mm_min_epi32(_mm_max_epi32(At, Zero), Last);
  Pair.Second = _mm_min_epi32(_mm_max_epi32(_mm_add_epi32(At, One), Zero), Last);
  Axis.Place = Next;
  return Pair;
}

QXSVG_SSE41 void FetchTurned(std::uint32_t* Out, std::int32_t Count, const TTurnedRow& Row) {
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
  const __m128i Stride = _mm_set1_epi32(static_cast<int>(Row.Stride));
  std::int32_t I = 0;
  for (; I + 4 <= Count; I += 4) {
    const TTurnedPair X = NextPair(U, Row.IsRepeated), Y = NextPair(V, Row.IsRepeated);
    const __m128i Y0 = _mm_mullo_epi32(Y.First, Stride), Y1 = _mm_mullo_epi32(Y.Second, Stride);
    const __m128i Upper =
        MixEach(PixelsAt(Row.Pixels, Y0, X.First), PixelsAt(Row.Pixels, Y0, X.Second), X.Weight);
    const __m128i Lower =
        MixEach(PixelsAt(Row.Pixels, Y1, X.First), PixelsAt(Row.Pixels, Y1, X.Second), X.Weight);
    Store(Out + I, MixEach(Upper, Lower, Y.Weight));
  }
  TTurnedRow Rest = Row;
  Rest.U += Row.StepU * I;
  Rest.V += Row.StepV * I;
  PlainFetchTurned(Out + I, Count - I, Rest);
}

// Stores past the caches, whole lines of them: the memory need not be read first.
constexpr std::int32_t LinePixels = 16;
inline std::int32_t UpToLine(const std::uint32_t* P, std::int32_t Count) {
  const auto Into = static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(P) / 4 % LinePixels);
  return std::min(Into == 0 ? 0 : LinePixels - Into, Count);
}
inline void Stream(std::uint32_t* P, __m128i V) {
  _mm_stream_si128(reinterpret_cast<__m128i*>(P), V);
}

void StreamFill(std::uint32_t* Target, std::ptrdiff_t Stride, std::int32_t Width, std::int32_t Rows,
                std::uint32_t Color) {
  const __m128i V = _mm_set1_epi32(static_cast<int>(Color));
  for (std::int32_t Row = 0; Row < Rows; ++Row, Target += Stride) {
    std::int32_t I = UpToLine(Target, Width);
    std::fill_n(Target, I, Color);
    for (; I + LinePixels <= Width; I += LinePixels)
      for (int K = 0; K < LinePixels; K += 4) Stream(Target + I + K, V);
    std::fill_n(Target + I, Width - I, Color);
  }
}

template <bool EvenOdd>
QXSVG_SSE41 void SweepColor(const TSweepRow& First, const TColorRows& Rows) {
  TSweepRow Row = First;
  for (std::int32_t I = 0; I < Rows.Count; ++I) {
    const std::size_t Count = Sweep<EvenOdd>(Row);
    BlendColor(Rows.Pixels + I * Rows.Stride, {Row.Spans, Count}, Row.Covers, Rows.Color);
    Row.Cells += Rows.CellStride;
    Row.Marks += Rows.MarkStride;
  }
}

}  // namespace

QXSVG_SSE41 void SSE41StreamCopy(std::uint32_t* Target, const std::uint32_t* Source,
                                 std::int32_t Count) {
  std::int32_t I = UpToLine(Target, Count);
  std::copy_n(Source, I, Target);
  for (; I + LinePixels <= Count; I += LinePixels)
    for (int K = 0; K < LinePixels; K += 4) Stream(Target + I + K, Load(Source + I + K));
  std::copy_n(Source + I, Count - I, Target + I);
}

const TKernels SSE41Kernels = {
    Sweep<false>,    Sweep<true>, SweepColor<false>, SweepColor<true>, Fill,        StreamFill,
    SSE41StreamCopy, BlendColor,  BlendBlock,        BlendGroups,      BlendPixels, BlendCovered,
    MultiplyCovers,  ScaleCovers, FetchLinear,       FetchRadial,      ResampleRow, MixRows,
    MixRowsOver,     MeanRows,    MeanFewRows,       MeanColumns,      FetchTurned, AddSteepRows};

#undef QXSVG_SSE41

}  // namespace qxsvg

#endif
