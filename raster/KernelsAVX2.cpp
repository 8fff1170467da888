// The kernels for processors with AVX2 that make coverage and blend it.
#include "raster/KernelsAVX2.h"

#if defined(__x86_64__)

#include "raster/CellPiece.h"

namespace qxsvg {

namespace {

using namespace avx2;

// The running sums of eight cells.
QXSVG_AVX2 inline __m256i RunningSums(__m256i V) {
  V = _mm256_add_epi32(V, _mm256_slli_si256(V, 4));
  V = _mm256_add_epi32(V, _mm256_slli_si256(V, 8));
  const __m256i Low = _mm256_permute2x128_si256(V, V, 0x08);
  return _mm256_add_epi32(V, _mm256_shuffle_epi32(Low, 0xff));
}

template <bool EvenOdd>
QXSVG_AVX2 inline __m256i CoversOf(__m256i Sum) {
  __m256i Area;
  const __m256i Full = _mm256_set1_epi32(CellFull);
  if constexpr (EvenOdd) {
    Area = _mm256_and_si256(Sum, _mm256_set1_epi32(2 * CellFull - 1));
    Area = _mm256_min_epi32(Area, _mm256_sub_epi32(_mm256_set1_epi32(2 * CellFull), Area));
  } else {
    Area = _mm256_min_epu32(_mm256_abs_epi32(Sum), Full);
  }
  const __m256i Scaled = _mm256_sub_epi32(_mm256_slli_epi32(Area, 8), Area);
  return _mm256_srli_epi32(_mm256_add_epi32(Scaled, _mm256_set1_epi32(CellFull / 2)), CellFullBits);
}

template <bool EvenOdd>
QXSVG_AVX2 std::size_t Sweep(const TSweepRow& Row) {
  TSpanWriter Spans(Row);
  const __m256i Zero = _mm256_setzero_si256(), Last = _mm256_set1_epi32(7);
  const __m256i Gather = _mm256_setr_epi32(0, 4, 1, 1, 1, 1, 1, 1);
  const __m256i LowBytes = _mm256_set1_epi64x(0x0c080400);
  __m256i Sum = Zero;
  for (std::ptrdiff_t Block = 0; Block < Row.MarkCount; Block += MarkBlock) {
    const __m256i Marks = Load(Row.Marks + Block);
    auto Bits = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(Marks, Zero)));
    if (Bits == 0) continue;
    Store(Row.Marks + Block, Zero);
    do {
      const auto First = static_cast<std::int32_t>(_tzcnt_u32(Bits));
      const auto Count = static_cast<std::int32_t>(_tzcnt_u64(~(std::uint64_t{Bits} >> First)));
      Bits &= static_cast<std::uint32_t>(~(((std::uint64_t{1} << Count) - 1) << First));
      const std::int32_t Group = static_cast<std::int32_t>(Block) + First;
      Spans.Skip(Group, CoverOf<EvenOdd>(_mm256_cvtsi256_si32(Sum)));
      std::int32_t* Cells = Row.Cells + Group * GroupCells;
      std::uint8_t* Covers = Row.Covers + Group * GroupCells;
      for (std::int32_t I = 0; I < Count; ++I, Cells += GroupCells, Covers += GroupCells) {
        const __m256i Sums = _mm256_add_epi32(RunningSums(Load(Cells)), Sum);
        Store(Cells, Zero);
        Sum = _mm256_permutevar8x32_epi32(Sums, Last);
        const __m256i Wide = _mm256_shuffle_epi8(CoversOf<EvenOdd>(Sums), LowBytes);
        const __m256i Packed = _mm256_permutevar8x32_epi32(Wide, Gather);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(Covers), _mm256_castsi256_si128(Packed));
      }
      Spans.Group(Count);
    } while (Bits != 0);
  }
  return Spans.Finish(CoverOf<EvenOdd>(_mm256_cvtsi256_si32(Sum)));
}

QXSVG_AVX2 void Fill(std::uint32_t* Target, std::int32_t Count, std::uint32_t Color) {
  const __m256i V = _mm256_set1_epi32(static_cast<int>(Color));
  // Lengths are hard to foresee: the end is stored over what is there, without more branches.
  std::uint32_t* const End = Target + Count;
  if (Count >= 32) {
    // Stores that cross cache lines cost twice.
    Store(Target, V);
    Target += 8 - static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(Target) / 4 % 8);
    for (; End - Target >= 32; Target += 32) {
      Store(Target, V);
      Store(Target + 8, V);
      Store(Target + 16, V);
      Store(Target + 24, V);
    }
    Store(End - 32, V);
    Store(End - 24, V);
    Store(End - 16, V);
    Store(End - 8, V);
  } else if (Count >= 16) {
    Store(Target, V);
    Store(Target + 8, V);
    Store(End - 16, V);
    Store(End - 8, V);
  } else if (Count >= 8) {
    Store(Target, V);
    Store(End - 8, V);
  } else {
    for (; Target != End; ++Target) *Target = Color;
  }
}

// Whole lines of memory, which need not be read first then.
QXSVG_AVX2 void StreamFill(std::uint32_t* Target, std::ptrdiff_t Stride, std::int32_t Width,
                           std::int32_t Rows, std::uint32_t Color) {
  constexpr std::int32_t LinePixels = 16;
  const __m256i V = _mm256_set1_epi32(static_cast<int>(Color));
  for (std::int32_t Row = 0; Row < Rows; ++Row, Target += Stride) {
    const auto Into =
        static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(Target) / 4 % LinePixels);
    std::int32_t I = std::min((LinePixels - Into) % LinePixels, Width);
    Fill(Target, I, Color);
    for (; I + LinePixels <= Width; I += LinePixels) {
      _mm256_stream_si256(reinterpret_cast<__m256i*>(Target + I), V);
      _mm256_stream_si256(reinterpret_cast<__m256i*>(Target + I + 8), V);
    }
    Fill(Target + I, Width - I, Color);
  }
}

// Eight rows of a steep line at a time; see TSteepRows. Each lane is the arithmetic of AddPiece.
QXSVG_AVX2 void AddSteepRows(const TSteepRows& Rows) {
  const __m256i Step = _mm256_set1_epi32(static_cast<int>(Rows.Step));
  const __m256i Steps = _mm256_mullo_epi32(Step, _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
  const __m256i Mask = _mm256_set1_epi32(SubpixelScale - 1);
  const __m256i Whole = _mm256_set1_epi32(SubpixelScale);
  const __m256i Full = _mm256_set1_epi32(Rows.Cover * 2 * SubpixelScale);
  const __m256i Cover = _mm256_set1_epi32(Rows.Cover);
  const __m256 Rate = _mm256_set1_ps(Rows.Rate);
  std::int64_t At = Rows.At;
  std::int32_t* Cells = Rows.Cells;
  std::uint8_t* Marks = Rows.Marks;
  alignas(32) std::int32_t First[8], A[8], B[8], C[8];
  for (std::int32_t Row = 0; Row < Rows.Count; Row += 8) {
    const __m256i Base = _mm256_set1_epi32(static_cast<int>(At >> SlopeBits));
    const __m256i Rest =
        _mm256_add_epi32(_mm256_set1_epi32(static_cast<int>(At & ((1 << SlopeBits) - 1))), Steps);
    const __m256i From = _mm256_add_epi32(Base, _mm256_srai_epi32(Rest, SlopeBits));
    const __m256i To =
        _mm256_add_epi32(Base, _mm256_srai_epi32(_mm256_add_epi32(Rest, Step), SlopeBits));
    const __m256i Left = _mm256_min_epi32(From, To), Right = _mm256_max_epi32(From, To);
    const __m256i LeftCell = _mm256_srai_epi32(Left, SubpixelBits);
    const __m256i IsOne = _mm256_cmpeq_epi32(LeftCell, _mm256_srai_epi32(Right, SubpixelBits));
    const __m256i LeftPart = _mm256_sub_epi32(Whole, _mm256_and_si256(Left, Mask));
    const __m256i RightPart = _mm256_and_si256(Right, Mask);
    const __m256i Within =
        _mm256_mullo_epi32(Cover, _mm256_add_epi32(LeftPart, _mm256_sub_epi32(Whole, RightPart)));
    const __m256i Start = _mm256_cvttps_epi32(
        _mm256_mul_ps(Rate, _mm256_cvtepi32_ps(_mm256_mullo_epi32(LeftPart, LeftPart))));
    const __m256i End = _mm256_sub_epi32(
        Full, _mm256_cvttps_epi32(_mm256_mul_ps(
                  Rate, _mm256_cvtepi32_ps(_mm256_mullo_epi32(RightPart, RightPart)))));
    const __m256i Now = _mm256_blendv_epi8(Start, Within, IsOne);
    const __m256i Then = _mm256_blendv_epi8(End, Full, IsOne);
    _mm256_store_si256(reinterpret_cast<__m256i*>(First), LeftCell);
    _mm256_store_si256(reinterpret_cast<__m256i*>(A), Now);
    _mm256_store_si256(reinterpret_cast<__m256i*>(B), _mm256_sub_epi32(Then, Now));
    _mm256_store_si256(reinterpret_cast<__m256i*>(C), _mm256_sub_epi32(Full, Then));
    const std::int32_t Count = std::min(Rows.Count - Row, 8);
    for (std::int32_t I = 0; I < Count; ++I, Cells += Rows.Stride, Marks += Rows.MarkStride) {
      const std::int32_t X = First[I];
      AddToCell(Cells[X], A[I]);
      AddToCell(Cells[X + 1], B[I]);
      AddToCell(Cells[X + 2], C[I]);
      Marks[X / GroupCells] = 1;
      Marks[(X + 2) / GroupCells] = 1;
    }
    At += 8 * Rows.Step;
  }
}

// Sixteen bytes, one in each 16-bit part, times others over 255.
QXSVG_AVX2 inline __m256i MultiplyWords(__m256i A, __m256i B) {
  const __m256i P = _mm256_add_epi16(_mm256_mullo_epi16(A, B), _mm256_set1_epi16(128));
  // The upper half of 257 P is P + P / 256, over 256.
  return _mm256_mulhi_epu16(P, _mm256_set1_epi16(257));
}
QXSVG_AVX2 inline __m256i AlphaWords(__m256i Words) {
  return _mm256_shuffle_epi8(
      Words, _mm256_setr_epi8(6, 7, 6, 7, 6, 7, 6, 7, 14, 15, 14, 15, 14, 15, 14, 15, 6, 7, 6, 7, 6,
                              7, 6, 7, 14, 15, 14, 15, 14, 15, 14, 15));
}
// Source words over eight target pixels.
QXSVG_AVX2 inline __m256i OverWords(__m256i Target, __m256i Low, __m256i High) {
  const __m256i Zero = _mm256_setzero_si256(), Most = _mm256_set1_epi16(255);
  const __m256i TLow =
      MultiplyWords(_mm256_unpacklo_epi8(Target, Zero), _mm256_xor_si256(AlphaWords(Low), Most));
  const __m256i THigh =
      MultiplyWords(_mm256_unpackhi_epi8(Target, Zero), _mm256_xor_si256(AlphaWords(High), Most));
  return _mm256_adds_epu8(_mm256_packus_epi16(Low, High), _mm256_packus_epi16(TLow, THigh));
}
QXSVG_AVX2 inline __m256i OverPixels(__m256i Target, __m256i Source) {
  const __m256i Zero = _mm256_setzero_si256();
  const __m256i Low = _mm256_setr_epi8(3, -1, 3, -1, 3, -1, 3, -1, 7, -1, 7, -1, 7, -1, 7, -1, 3,
                                       -1, 3, -1, 3, -1, 3, -1, 7, -1, 7, -1, 7, -1, 7, -1);
  const __m256i High =
      _mm256_setr_epi8(11, -1, 11, -1, 11, -1, 11, -1, 15, -1, 15, -1, 15, -1, 15, -1, 11, -1, 11,
                       -1, 11, -1, 11, -1, 15, -1, 15, -1, 15, -1, 15, -1);
  const __m256i Rest = _mm256_xor_si256(Source, _mm256_set1_epi8(-1));
  const __m256i TLow =
      MultiplyWords(_mm256_unpacklo_epi8(Target, Zero), _mm256_shuffle_epi8(Rest, Low));
  const __m256i THigh =
      MultiplyWords(_mm256_unpackhi_epi8(Target, Zero), _mm256_shuffle_epi8(Rest, High));
  return _mm256_adds_epu8(Source, _mm256_packus_epi16(TLow, THigh));
}
// Eight covers, each four times: for the pixels 0, 1, 4, 5 in the low and 2, 3, 6, 7 in the high.
struct TCoverWords {
  __m256i Low, High;
};
QXSVG_AVX2 inline TCoverWords CoverWords(__m256i Each) {
  const __m256i Low = _mm256_setr_epi8(0, -1, 0, -1, 0, -1, 0, -1, 4, -1, 4, -1, 4, -1, 4, -1, 0,
                                       -1, 0, -1, 0, -1, 0, -1, 4, -1, 4, -1, 4, -1, 4, -1);
  const __m256i High = _mm256_setr_epi8(8, -1, 8, -1, 8, -1, 8, -1, 12, -1, 12, -1, 12, -1, 12, -1,
                                        8, -1, 8, -1, 8, -1, 8, -1, 12, -1, 12, -1, 12, -1, 12, -1);
  return {_mm256_shuffle_epi8(Each, Low), _mm256_shuffle_epi8(Each, High)};
}
QXSVG_AVX2 inline TCoverWords CoverWords(const std::uint8_t* Covers) {
  return CoverWords(
      _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(Covers))));
}

QXSVG_AVX2 inline void BlendEven(std::uint32_t* P, std::int32_t Length, std::uint32_t Source) {
  const std::uint32_t Rest = 255 - (Source >> 24);
  const __m256i S = _mm256_set1_epi32(static_cast<int>(Source));
  const __m256i R = _mm256_set1_epi16(static_cast<short>(Rest));
  const __m256i Zero = _mm256_setzero_si256();
  std::int32_t I = 0;
  for (; I + 8 <= Length; I += 8) {
    const __m256i T = Load(P + I);
    const __m256i Low = MultiplyWords(_mm256_unpacklo_epi8(T, Zero), R);
    const __m256i High = MultiplyWords(_mm256_unpackhi_epi8(T, Zero), R);
    Store(P + I, _mm256_adds_epu8(S, _mm256_packus_epi16(Low, High)));
  }
  for (; I < Length; ++I) P[I] = OverPixel(P[I], Source);
}

// One coverage for all pixels. Not inline: the loops around need all registers.
[[gnu::noinline]] QXSVG_AVX2 void BlendOne(std::uint32_t* P, std::int32_t Length,
                                           std::uint32_t Color, std::uint32_t Cover) {
  if (Cover == FullCover && Color >> 24 == 255)
    Fill(P, Length, Color);
  else
    BlendEven(P, Length, ScalePixel(Color, Cover));
}

// A mask of the first Count of eight pixels.
QXSVG_AVX2 inline __m256i FirstOf(std::int32_t Count) {
  return _mm256_cmpgt_epi32(_mm256_set1_epi32(Count), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}

// Fewer than eight pixels, without touching what lies behind them, which may be another thread's.
QXSVG_AVX2 inline void BlendFew(std::uint32_t* P, std::int32_t Count, TCoverWords Words,
                                __m256i Color) {
  const __m256i IsFew = FirstOf(Count);
  auto* Few = reinterpret_cast<int*>(P);
  _mm256_maskstore_epi32(
      Few, IsFew,
      OverWords(_mm256_maskload_epi32(Few, IsFew), MultiplyWords(Color, Words.Low),
                MultiplyWords(Color, Words.High)));
}

// Eight pixels; Color is in words. The alpha of an opaque colour's product is the coverage itself.
template <bool IsOpaque>
QXSVG_AVX2 inline void BlendEight(std::uint32_t* P, TCoverWords Words, __m256i Color) {
  const __m256i T = Load(P);
  const __m256i Low = MultiplyWords(Color, Words.Low), High = MultiplyWords(Color, Words.High);
  if constexpr (!IsOpaque) return Store(P, OverWords(T, Low, High));
  const __m256i Zero = _mm256_setzero_si256(), Most = _mm256_set1_epi16(255);
  const __m256i TLow =
      MultiplyWords(_mm256_unpacklo_epi8(T, Zero), _mm256_xor_si256(Words.Low, Most));
  const __m256i THigh =
      MultiplyWords(_mm256_unpackhi_epi8(T, Zero), _mm256_xor_si256(Words.High, Most));
  Store(P, _mm256_adds_epu8(_mm256_packus_epi16(Low, High), _mm256_packus_epi16(TLow, THigh)));
}

// Color is in words.
template <bool IsOpaque>
QXSVG_AVX2 inline void BlendCovers(std::uint32_t* P, std::int32_t Length,
                                   const std::uint8_t* Covers, __m256i Color) {
  std::int32_t I = 0;
  for (; I + 8 <= Length; I += 8) BlendEight<IsOpaque>(P + I, CoverWords(Covers + I), Color);
  if (I != Length) BlendFew(P + I, Length - I, CoverWords(Covers + I), Color);
}

template <bool IsOpaque>
QXSVG_AVX2 inline void BlendColor(std::uint32_t* Target, std::span<const TCoverSpan> Spans,
                                  const std::uint8_t* Covers, std::uint32_t Color) {
  const __m256i C =
      _mm256_unpacklo_epi8(_mm256_set1_epi32(static_cast<int>(Color)), _mm256_setzero_si256());
  for (const TCoverSpan& Span : Spans) {
    std::uint32_t* P = Target + Span.X;
    if (!Span.IsEven())
      BlendCovers<IsOpaque>(P, Span.Length, Span.Covers(Covers), C);
    else
      BlendOne(P, Span.Length, Color, Span.Cover);
  }
}

QXSVG_AVX2 void BlendColor(std::uint32_t* Target, std::span<const TCoverSpan> Spans,
                           const std::uint8_t* Covers, std::uint32_t Color) {
  if (Color >> 24 == 255)
    BlendColor<true>(Target, Spans, Covers, Color);
  else
    BlendColor<false>(Target, Spans, Covers, Color);
}

// The marks of a block as bits; they are taken back.
QXSVG_AVX2 inline std::uint32_t TakeMarks(std::uint8_t* Marks) {
  const __m256i Zero = _mm256_setzero_si256();
  const int Bits = _mm256_movemask_epi8(_mm256_cmpgt_epi8(Load(Marks), Zero));
  Store(Marks, Zero);
  return static_cast<std::uint32_t>(Bits);
}

// Edges of neighbouring rows lie near each other: memory for a row to come is asked for below
// those of this one.
template <bool EvenOdd, bool IsOpaque>
QXSVG_AVX2 inline void SweepColor(const TSweepRow& Row, const TColorRows& Rows) {
  constexpr std::ptrdiff_t Ahead = 4 * sizeof(std::uint32_t);
  const __m256i Zero = _mm256_setzero_si256(), Last = _mm256_set1_epi32(7);
  const std::uint32_t Color = Rows.Color;
  const __m256i C = _mm256_unpacklo_epi8(_mm256_set1_epi32(static_cast<int>(Color)), Zero);
  const std::int32_t Width = Row.Width;
  const std::ptrdiff_t MarkCount = Row.MarkCount;
  std::uint32_t* P = Rows.Pixels + Row.Left;
  std::int32_t* Cells = Row.Cells;
  std::uint8_t* Marks = Row.Marks;
  for (std::int32_t I = 0; I < Rows.Count; ++I) {
    const auto Soon =
        reinterpret_cast<std::uintptr_t>(P) + static_cast<std::uintptr_t>(Rows.Stride * Ahead);
    // The pixels from Done on have this coverage, up to the next group.
    std::uint32_t Cover = 0;
    std::int32_t Done = 0;
    __m256i Sum = Zero;
    for (std::ptrdiff_t Block = 0; Block < MarkCount; Block += 2 * MarkBlock) {
      std::uint64_t Bits = TakeMarks(Marks + Block);
      if (Block + MarkBlock < MarkCount)
        Bits |= std::uint64_t{TakeMarks(Marks + Block + MarkBlock)} << MarkBlock;
      for (; Bits != 0; Bits &= Bits - 1) {
        const std::int32_t Group =
            static_cast<std::int32_t>(Block) + static_cast<std::int32_t>(_tzcnt_u64(Bits));
        const std::int32_t X = Group * GroupCells;
        const __m256i Sums = _mm256_add_epi32(RunningSums(Load(Cells + X)), Sum);
        Store(Cells + X, Zero);
        Sum = _mm256_permutevar8x32_epi32(Sums, Last);
        const __m256i Covers = CoversOf<EvenOdd>(Sums);
        if (Cover != 0 && X != Done) BlendOne(P + Done, std::min(X, Width) - Done, Color, Cover);
        Cover = static_cast<std::uint32_t>(_mm256_extract_epi32(Covers, 7));
        Done = X + GroupCells;
        if (Done <= Width) {
          const auto Below = Soon + static_cast<std::size_t>(X) * sizeof(std::uint32_t);
          __builtin_prefetch(reinterpret_cast<const void*>(Below), 1);
          BlendEight<IsOpaque>(P + X, CoverWords(Covers), C);
        } else {
          BlendFew(P + X, Width - X, CoverWords(Covers), C);
        }
      }
    }
    if (Cover != 0 && Done < Width) BlendOne(P + Done, Width - Done, Color, Cover);
    P += Rows.Stride;
    Cells += Rows.CellStride;
    Marks += Rows.MarkStride;
  }
}

template <bool EvenOdd>
QXSVG_AVX2 void SweepColor(const TSweepRow& Row, const TColorRows& Rows) {
  if (Rows.Color >> 24 == 255)
    SweepColor<EvenOdd, true>(Row, Rows);
  else
    SweepColor<EvenOdd, false>(Row, Rows);
}

QXSVG_AVX2 void BlendBlock(const TCoverBlock& Block, std::uint32_t Color) {
  const __m256i C =
      _mm256_unpacklo_epi8(_mm256_set1_epi32(static_cast<int>(Color)), _mm256_setzero_si256());
  std::uint32_t* P = Block.Pixels;
  const std::uint8_t* Covers = Block.Covers;
  // Most stamps are as small as this.
  const bool IsFew = Block.Width <= 8;
  for (std::int32_t Row = 0; Row < Block.Rows; ++Row) {
    if (IsFew)
      BlendFew(P, Block.Width, CoverWords(Covers), C);
    else
      BlendCovers<false>(P, Block.Width, Covers, C);
    P += Block.Stride;
    Covers += Block.CoverStride;
  }
}

// One group like the other, so that the memory of those to come can be asked for.
template <bool IsOpaque>
QXSVG_AVX2 inline void BlendGroups(const TCoverGroups& Groups, __m256i Color) {
  // Values, since stores might change what Groups refers to.
  std::uint32_t* const Pixels = Groups.Pixels;
  const std::ptrdiff_t Stride = Groups.Stride;
  const auto Base = reinterpret_cast<std::uintptr_t>(Pixels);
  const TGroupPlace* Place = Groups.Places;
  const TGroupPlace* const End = Place + Groups.Count;
  const std::uint8_t* Covers = Groups.Covers;
  for (; Place != End; ++Place, Covers += 8) {
    const TGroupPlace Soon = Place[GroupsAhead];
    const std::ptrdiff_t At = Soon.Y * Stride + Soon.X;
    __builtin_prefetch(reinterpret_cast<const void*>(Base + static_cast<std::uintptr_t>(At) *
                                                                sizeof(std::uint32_t)),
                       1);
    BlendEight<IsOpaque>(Pixels + Place->Y * Stride + Place->X, CoverWords(Covers), Color);
  }
}

QXSVG_AVX2 void BlendGroups(const TCoverGroups& Groups, std::uint32_t Color) {
  const __m256i C =
      _mm256_unpacklo_epi8(_mm256_set1_epi32(static_cast<int>(Color)), _mm256_setzero_si256());
  if (Color >> 24 == 255)
    BlendGroups<true>(Groups, C);
  else
    BlendGroups<false>(Groups, C);
}

QXSVG_AVX2 void BlendPixels(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                            std::uint32_t Cover) {
  const __m256i Zero = _mm256_setzero_si256();
  const __m256i C = _mm256_set1_epi16(static_cast<short>(Cover));
  std::int32_t I = 0;
  // The product with a full cover is the pixel itself, and nothing shows through opaque ones.
  const __m256i Alphas = _mm256_set1_epi32(static_cast<int>(0xff000000));
  for (; Cover == FullCover && I + 8 <= Count; I += 8) {
    const __m256i S = Load(Source + I);
    Store(Target + I, _mm256_testc_si256(S, Alphas) ? S : OverPixels(Load(Target + I), S));
  }
  for (; I + 8 <= Count; I += 8) {
    const __m256i S = Load(Source + I);
    const __m256i Low = MultiplyWords(_mm256_unpacklo_epi8(S, Zero), C);
    const __m256i High = MultiplyWords(_mm256_unpackhi_epi8(S, Zero), C);
    Store(Target + I, OverWords(Load(Target + I), Low, High));
  }
  PlainBlendPixels(Target + I, Source + I, Count - I, Cover);
}

QXSVG_AVX2 void MixRowsOver(std::uint32_t* Target, const std::uint32_t* A, const std::uint32_t* B,
                            std::uint32_t Weight, std::int32_t Count) {
  if (Weight % 256 == 0) return BlendPixels(Target, Weight == 0 ? A : B, Count, FullCover);
  const __m256i W = _mm256_set1_epi16(static_cast<short>(Weight << 8 | (256 - Weight)));
  const __m256i Alphas = _mm256_set1_epi32(static_cast<int>(0xff000000));
  std::int32_t I = 0;
  for (; I + 8 <= Count; I += 8) {
    const TPixelWords S = MixedWords(Load(A + I), Load(B + I), W);
    const __m256i Bytes = _mm256_packus_epi16(S.Low, S.High);
    Store(Target + I,
          _mm256_testc_si256(Bytes, Alphas) ? Bytes : OverWords(Load(Target + I), S.Low, S.High));
  }
  if (I == Count) return;
  const __m256i IsRest = FirstOf(Count - I);
  auto* Rest = reinterpret_cast<int*>(Target + I);
  const TPixelWords S =
      MixedWords(_mm256_maskload_epi32(reinterpret_cast<const int*>(A + I), IsRest),
                 _mm256_maskload_epi32(reinterpret_cast<const int*>(B + I), IsRest), W);
  _mm256_maskstore_epi32(Rest, IsRest,
                         OverWords(_mm256_maskload_epi32(Rest, IsRest), S.Low, S.High));
}

QXSVG_AVX2 void BlendCovered(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                             const std::uint8_t* Covers) {
  const __m256i Zero = _mm256_setzero_si256();
  std::int32_t I = 0;
  for (; I + 8 <= Count; I += 8) {
    const __m256i S = Load(Source + I);
    const TCoverWords Words = CoverWords(Covers + I);
    const __m256i Low = MultiplyWords(_mm256_unpacklo_epi8(S, Zero), Words.Low);
    const __m256i High = MultiplyWords(_mm256_unpackhi_epi8(S, Zero), Words.High);
    Store(Target + I, OverWords(Load(Target + I), Low, High));
  }
  if (I == Count) return;
  const __m256i IsRest = FirstOf(Count - I);
  auto* Rest = reinterpret_cast<int*>(Target + I);
  const __m256i S = _mm256_maskload_epi32(reinterpret_cast<const int*>(Source + I), IsRest);
  const TCoverWords Words = CoverWords(Covers + I);
  const __m256i Low = MultiplyWords(_mm256_unpacklo_epi8(S, Zero), Words.Low);
  const __m256i High = MultiplyWords(_mm256_unpackhi_epi8(S, Zero), Words.High);
  _mm256_maskstore_epi32(Rest, IsRest, OverWords(_mm256_maskload_epi32(Rest, IsRest), Low, High));
}

QXSVG_AVX2 void MultiplyCovers(std::uint8_t* Target, const std::uint8_t* A, const std::uint8_t* B,
                               std::int32_t Count) {
  std::int32_t I = 0;
  for (; I + 16 <= Count; I += 16) {
    const __m256i X =
        _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(A + I)));
    const __m256i Y =
        _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(B + I)));
    const __m256i P = MultiplyWords(X, Y);
    const __m128i Bytes =
        _mm_packus_epi16(_mm256_castsi256_si128(P), _mm256_extracti128_si256(P, 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(Target + I), Bytes);
  }
  PlainMultiplyCovers(Target + I, A + I, B + I, Count - I);
}

QXSVG_AVX2 void ScaleCovers(std::uint8_t* Target, const std::uint8_t* A, std::uint32_t Cover,
                            std::int32_t Count) {
  const __m256i C = _mm256_set1_epi16(static_cast<short>(Cover));
  std::int32_t I = 0;
  for (; I + 16 <= Count; I += 16) {
    const __m256i P = MultiplyWords(
        _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(A + I))), C);
    const __m128i Bytes =
        _mm_packus_epi16(_mm256_castsi256_si128(P), _mm256_extracti128_si256(P, 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(Target + I), Bytes);
  }
  PlainScaleCovers(Target + I, A + I, Cover, Count - I);
}

}  // namespace

const TKernels AVX2Kernels = {
    Sweep<false>,    Sweep<true>, SweepColor<false>, SweepColor<true>, Fill,        StreamFill,
    SSE41StreamCopy, BlendColor,  BlendBlock,        BlendGroups,      BlendPixels, BlendCovered,
    MultiplyCovers,  ScaleCovers, FetchLinear,       FetchRadial,      ResampleRow, MixRows,
    MixRowsOver,     MeanRows,    MeanFewRows,       MeanColumns,      FetchTurned, AddSteepRows};

}  // namespace qxsvg

#endif
