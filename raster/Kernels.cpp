#include "raster/Kernels.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

#include "raster/CellPiece.h"
#include "raster/KernelsPlain.h"

namespace qxsvg {

namespace {

std::atomic<const TKernels*> Chosen{nullptr};

const TKernels& KernelsOf(TSimdLevel Level) {
#if defined(__x86_64__)
  Level = std::min(Level, BestSimdLevel());
  if (Level == TSimdLevel::AVX2) return AVX2Kernels;
  if (Level == TSimdLevel::SSE41) return SSE41Kernels;
#endif
  static_cast<void>(Level);
  return PlainKernels;
}

template <bool EvenOdd>
std::size_t Sweep(const TSweepRow& Row) {
  TSpanWriter Spans(Row);
  std::int32_t Sum = 0;
  for (std::ptrdiff_t Block = 0; Block < Row.MarkCount; Block += 8) {
    std::uint64_t Marked;
    std::memcpy(&Marked, Row.Marks + Block, sizeof Marked);
    if (Marked == 0) continue;
    std::memset(Row.Marks + Block, 0, sizeof Marked);
    for (std::int32_t I = 0; I < 8; ++I) {
      if ((Marked >> (8 * I) & 1) == 0) continue;
      const auto Group = static_cast<std::int32_t>(Block) + I;
      Spans.Skip(Group, CoverOf<EvenOdd>(Sum));
      std::int32_t* Cells = Row.Cells + Group * GroupCells;
      std::uint8_t* Covers = Row.Covers + Group * GroupCells;
      for (std::int32_t J = 0; J < GroupCells; ++J) {
        Sum = static_cast<std::int32_t>(static_cast<std::uint32_t>(Sum) +
                                        static_cast<std::uint32_t>(Cells[J]));
        Covers[J] = static_cast<std::uint8_t>(CoverOf<EvenOdd>(Sum));
        Cells[J] = 0;
      }
      Spans.Group();
    }
  }
  return Spans.Finish(CoverOf<EvenOdd>(Sum));
}

void Fill(std::uint32_t* Target, std::int32_t Count, std::uint32_t Color) {
  std::fill_n(Target, Count, Color);
}

void StreamFill(std::uint32_t* Target, std::ptrdiff_t Stride, std::int32_t Width, std::int32_t Rows,
                std::uint32_t Color) {
  for (std::int32_t Row = 0; Row < Rows; ++Row) Fill(Target + Row * Stride, Width, Color);
}

void StreamCopy(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count) {
  std::copy_n(Source, Count, Target);
}

}  // namespace

void PlainBlendColor(std::uint32_t* Target, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers, std::uint32_t Color) {
  for (const TCoverSpan& Span : Spans) {
    std::uint32_t* P = Target + Span.X;
    if (Span.IsEven()) {
      const std::uint32_t Source = ScalePixel(Color, Span.Cover);
      for (std::int32_t I = 0; I < Span.Length; ++I) P[I] = OverPixel(P[I], Source);
    } else {
      const std::uint8_t* C = Span.Covers(Covers);
      for (std::int32_t I = 0; I < Span.Length; ++I)
        P[I] = OverPixel(P[I], ScalePixel(Color, C[I]));
    }
  }
}

void PlainBlendBlock(const TCoverBlock& Block, std::uint32_t Color) {
  const TCoverSpan Span{0, Block.Width, TCoverSpan::CoversBase};
  for (std::int32_t Row = 0; Row < Block.Rows; ++Row)
    PlainBlendColor(Block.Pixels + Row * Block.Stride, {&Span, 1},
                    Block.Covers + Row * Block.CoverStride, Color);
}

void PlainBlendGroups(const TCoverGroups& Groups, std::uint32_t Color) {
  for (std::ptrdiff_t I = 0; I < Groups.Count; ++I) {
    const TGroupPlace Place = Groups.Places[I];
    const TCoverSpan Span{Place.X, 8, TCoverSpan::CoversBase};
    PlainBlendColor(Groups.Pixels + Place.Y * Groups.Stride, {&Span, 1}, Groups.Covers + 8 * I,
                    Color);
  }
}

void PlainBlendPixels(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                      std::uint32_t Cover) {
  for (std::int32_t I = 0; I < Count; ++I)
    Target[I] = OverPixel(Target[I], ScalePixel(Source[I], Cover));
}

void PlainBlendCovered(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                       const std::uint8_t* Covers) {
  for (std::int32_t I = 0; I < Count; ++I)
    Target[I] = OverPixel(Target[I], ScalePixel(Source[I], Covers[I]));
}

void PlainMultiplyCovers(std::uint8_t* Target, const std::uint8_t* A, const std::uint8_t* B,
                         std::int32_t Count) {
  for (std::int32_t I = 0; I < Count; ++I)
    Target[I] = static_cast<std::uint8_t>(MultiplyBytes(A[I], B[I]));
}

void PlainScaleCovers(std::uint8_t* Target, const std::uint8_t* A, std::uint32_t Cover,
                      std::int32_t Count) {
  for (std::int32_t I = 0; I < Count; ++I)
    Target[I] = static_cast<std::uint8_t>(MultiplyBytes(A[I], Cover));
}

void PlainFetchLinear(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                      const TLinearRow& Row) {
  const float Most = Row.Last + 0.5f;
  for (std::int32_t I = 0; I < Count; ++I) {
    float V = Row.Start + static_cast<float>(X + I) * Row.Step;
    V = V > 0 ? V : 0;
    V = V < Most ? V : Most;
    Out[I] = Row.Colors[static_cast<std::int32_t>(V)];
  }
}

void PlainFetchRadial(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                      const TRadialRow& Row) {
  const float Most = Row.Last + 0.5f;
  for (std::int32_t I = 0; I < Count; ++I) {
    const auto At = static_cast<float>(X + I);
    const float DX = Row.X + At * Row.XStep, DY = Row.Y + At * Row.YStep;
    const float A = DX * Row.FocusX + DY * Row.FocusY;
    const float Square = A * A + Row.Free * (DX * DX + DY * DY);
    float V = Most - (A + std::sqrt(Square)) * Row.Scale;
    V = V > 0 ? V : 0;
    V = V < Most ? V : Most;
    Out[I] = Row.Colors[static_cast<std::int32_t>(V)];
  }
}

void PlainResampleRow(std::uint32_t* Out, std::int32_t Count, const TResampledRow& Row) {
  for (std::int32_t I = 0; I < Count; ++I)
    Out[I] = MixPixels(Row.Pixels[Row.First[I]], Row.Pixels[Row.Second[I]], Row.Weight[I] >> 8);
}

void PlainMixRows(std::uint32_t* Out, const std::uint32_t* A, const std::uint32_t* B,
                  std::uint32_t Weight, std::int32_t Count) {
  for (std::int32_t I = 0; I < Count; ++I) Out[I] = MixPixels(A[I], B[I], Weight);
}

void PlainMixRowsOver(std::uint32_t* Target, const std::uint32_t* A, const std::uint32_t* B,
                      std::uint32_t Weight, std::int32_t Count) {
  for (std::int32_t I = 0; I < Count; ++I)
    Target[I] = OverPixel(Target[I], MixPixels(A[I], B[I], Weight));
}

namespace {

// Rounds what the weights give above a whole of MeanBits off.
void MeanOfRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count, int Shift) {
  for (std::int32_t I = 0; I < Count; ++I) {
    std::uint32_t Sums[4] = {};
    for (std::int32_t Row = 0; Row < Rows.Count; ++Row)
      for (int C = 0; C < 4; ++C)
        Sums[C] += (Rows.Pixels[Row * Rows.Stride + I] >> (8 * C) & 255) * Rows.Weights[Row];
    for (int C = 0; C < 4; ++C)
      Out[4 * I + C] =
          static_cast<std::uint16_t>(((Sums[C] + (1u << (Shift - 1))) >> Shift) + MeanHalf);
  }
}

}  // namespace

void PlainMeanRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  MeanOfRows(Out, Rows, Count, MeanRowShift);
}

void PlainMeanFewRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count) {
  static_assert(FewRowsOne == 2 << MeanBits);
  MeanOfRows(Out, Rows, Count, 1);
}

void PlainMeanColumns(std::uint32_t* Out, std::int32_t Count, const TMeanColumns& Columns) {
  const std::uint16_t* W = Columns.Weights;
  for (std::int32_t I = 0; I < Count; ++I, W += 2 * Columns.Pairs) {
    const std::uint16_t* P = Columns.Row + 4 * Columns.First[I];
    std::uint32_t Sums[4] = {};
    for (std::int32_t J = 0; J < 2 * Columns.Pairs; ++J)
      for (int C = 0; C < 4; ++C) Sums[C] += std::uint32_t{P[4 * J + C]} * W[J];
    Out[I] = 0;
    for (int C = 0; C < 4; ++C) Out[I] |= Sums[C] >> MeanShift << (8 * C);
  }
}

void PlainFetchTurned(std::uint32_t* Out, std::int32_t Count, const TTurnedRow& Row) {
  const auto Held = [&](std::int64_t At, std::int64_t Size) {
    if (!Row.IsRepeated) return std::clamp<std::int64_t>(At, 0, Size - 1);
    const std::int64_t Rest = At % Size;
    return Rest < 0 ? Rest + Size : Rest;
  };
  std::int64_t U = Row.U, V = Row.V;
  for (std::int32_t I = 0; I < Count; ++I, U += Row.StepU, V += Row.StepV) {
    const std::int64_t X0 = Held(U >> 16, Row.Width), X1 = Held((U >> 16) + 1, Row.Width);
    const std::uint32_t* Y0 = Row.Pixels + Held(V >> 16, Row.Height) * Row.Stride;
    const std::uint32_t* Y1 = Row.Pixels + Held((V >> 16) + 1, Row.Height) * Row.Stride;
    const auto WX = static_cast<std::uint32_t>(U >> 8 & 255);
    const auto WY = static_cast<std::uint32_t>(V >> 8 & 255);
    Out[I] = MixPixels(MixPixels(Y0[X0], Y0[X1], WX), MixPixels(Y1[X0], Y1[X1], WX), WY);
  }
}

void PlainAddSteepRows(const TSteepRows& Rows) {
  std::int64_t At = Rows.At;
  auto X = static_cast<std::int32_t>(At >> SlopeBits);
  std::int32_t* Cells = Rows.Cells;
  std::uint8_t* Marks = Rows.Marks;
  for (std::int32_t Row = 0; Row < Rows.Count; ++Row) {
    At += Rows.Step;
    const auto Next = static_cast<std::int32_t>(At >> SlopeBits);
    AddPiece(Cells, Marks, MakePiece(X, Next, Rows.Cover, Rows.Rate));
    X = Next;
    Cells += Rows.Stride;
    Marks += Rows.MarkStride;
  }
}

namespace {

template <bool EvenOdd>
void SweepColor(const TSweepRow& First, const TColorRows& Rows) {
  TSweepRow Row = First;
  for (std::int32_t I = 0; I < Rows.Count; ++I) {
    const std::size_t Count = Sweep<EvenOdd>(Row);
    PlainBlendColor(Rows.Pixels + I * Rows.Stride, {Row.Spans, Count}, Row.Covers, Rows.Color);
    Row.Cells += Rows.CellStride;
    Row.Marks += Rows.MarkStride;
  }
}

}  // namespace

const TKernels PlainKernels = {
    Sweep<false>,     Sweep<true>,       SweepColor<false>,   SweepColor<true>, Fill,
    StreamFill,       StreamCopy,        PlainBlendColor,     PlainBlendBlock,  PlainBlendGroups,
    PlainBlendPixels, PlainBlendCovered, PlainMultiplyCovers, PlainScaleCovers, PlainFetchLinear,
    PlainFetchRadial, PlainResampleRow,  PlainMixRows,        PlainMixRowsOver, PlainMeanRows,
    PlainMeanFewRows, PlainMeanColumns,  PlainFetchTurned,    PlainAddSteepRows};

TSimdLevel BestSimdLevel() {
#if defined(__x86_64__)
  static const TSimdLevel Best = [] {
    if (__builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0)
      return TSimdLevel::AVX2;
    return __builtin_cpu_supports("sse4.1") != 0 ? TSimdLevel::SSE41 : TSimdLevel::Plain;
  }();
  return Best;
#else
  return TSimdLevel::Plain;
#endif
}

TSimdLevel SimdLevel() {
#if defined(__x86_64__)
  if (&Kernels() == &AVX2Kernels) return TSimdLevel::AVX2;
  if (&Kernels() == &SSE41Kernels) return TSimdLevel::SSE41;
#endif
  return TSimdLevel::Plain;
}

void SetSimdLevel(TSimdLevel Level) {
  Chosen.store(&KernelsOf(Level), std::memory_order_relaxed);
}

const TKernels& Kernels() {
  const TKernels* Known = Chosen.load(std::memory_order_relaxed);
  if (!Known) {
    Known = &KernelsOf(BestSimdLevel());
    Chosen.store(Known, std::memory_order_relaxed);
  }
  return *Known;
}

}  // namespace qxsvg
