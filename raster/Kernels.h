// The inner loops that have a form for each instruction set, all giving the same bits.
#pragma once

#include <cstdint>
#include <span>

#include "raster/Spans.h"

namespace qxsvg {

// From the least to the most that a processor may have.
enum class TSimdLevel : std::uint8_t { Plain, SSE41, AVX2 };

// What a swept row is written to.
struct TSweepRow {
  std::int32_t* Cells = nullptr;
  std::uint8_t* Marks = nullptr;
  // Bytes of Marks, a multiple of MarkBlock.
  std::ptrdiff_t MarkCount = 0;
  // Where the row begins, and its pixels.
  std::int32_t Left = 0, Width = 0;
  // One byte a cell, and room for as many spans as there are groups and one more.
  std::uint8_t* Covers = nullptr;
  TCoverSpan* Spans = nullptr;
};

// Rows of pixels, the first from pixel 0 on, and what is blended over them; the ways from row to
// row of pixels, cells and marks.
struct TColorRows {
  std::uint32_t* Pixels;
  std::ptrdiff_t Stride, CellStride, MarkStride;
  std::int32_t Count;
  std::uint32_t Color;
};

// A block of pixels and the coverage of each; strides are in pixels and bytes. Behind the last one
// CoversPadding may be read.
struct TCoverBlock {
  std::uint32_t* Pixels;
  std::ptrdiff_t Stride;
  const std::uint8_t* Covers;
  std::ptrdiff_t CoverStride;
  std::int32_t Width, Rows;
};

// Groups of eight pixels with a coverage each, every group at a place of its own. As many places as
// GroupsAhead behind the last one may be looked at.
struct TGroupPlace {
  std::uint16_t X, Y;
};
inline constexpr std::size_t GroupsAhead = 12;
struct TCoverGroups {
  // The pixel at 0, 0.
  std::uint32_t* Pixels;
  std::ptrdiff_t Stride;
  const TGroupPlace* Places;
  const std::uint8_t* Covers;
  std::int32_t Count;
};

// A row of a linear gradient: the pixel X has the colour at Start + X * Step, held to 0 to Last.
struct TLinearRow {
  const std::uint32_t* Colors;
  float Last, Start, Step;
};
// A row of a radial gradient. The pixel's distance from the focus is (X, Y) plus its place times
// the steps, in a space whose unit circle is the rim; Free is 1 less the square of the focus, Scale
// is Last / Free. Colour 0 is that of the rim and of all beyond it.
struct TRadialRow {
  const std::uint32_t* Colors;
  float Last, X, XStep, Y, YStep, FocusX, FocusY, Free, Scale;
};
// A row of pixels put together from two of another row each, which has Size pixels. A weight has
// how many 256ths of the second in its higher byte and the rest of 256 in its lower: neither may be
// 0, for which one pixel twice is to stand.
struct TResampledRow {
  const std::uint32_t* Pixels;
  std::int32_t Size;
  const std::int32_t *First, *Second;
  const std::uint16_t* Weight;
  // Where each eight of First and Second are among eight pixels side by side, the first of those,
  // and else a negative number; and, from there on, First in the lower byte and Second in the
  // higher.
  const std::int32_t* Begin = nullptr;
  const std::uint16_t* Near = nullptr;
};

// Means of pixels are taken of Count rows first, then of columns. The weights of either add up to
// MeanOne; in between the parts of a pixel have MeanBits of fraction, and a sign bit to spare.
inline constexpr int MeanBits = 7, MeanOneBits = 14, MeanOne = 1 << MeanOneBits;
inline constexpr int MeanRowShift = MeanOneBits - MeanBits, MeanShift = MeanOneBits + MeanBits;
// The sums of rows have in them the half that rounds those of columns, which any weights that add
// up to one make the same of.
inline constexpr int MeanHalf = 1 << (MeanBits - 1);
inline constexpr int MeanRowBegin = (1 << (MeanRowShift - 1)) + (MeanHalf << MeanRowShift);
struct TMeanRows {
  const std::uint32_t* Pixels;
  std::ptrdiff_t Stride;
  // A 0 more where their number is odd.
  const std::uint16_t* Weights;
  std::int32_t Count;
};
// The same for as few rows that weights of FewRowsOne in all tell them well enough; none is all of
// it, so that they are bytes.
inline constexpr std::int32_t FewRows = 8;
inline constexpr int FewRowsOne = 256;
// Pixel I is the mean of as many Pairs of columns as every other, from First[I] on; the weights of
// the pixels follow one another. Those of columns that do not belong to it are 0.
struct TMeanColumns {
  const std::uint16_t* Row;
  const std::int32_t* First;
  const std::uint16_t* Weights;
  std::int32_t Pairs;
};

// A row of an image that is turned or stretched, mixed from the four pixels around each place.
// Places are in 48.16 fixed point, counted from the middle of the left top pixel of a part of Width
// and Height pixels, beyond which the image repeats or goes on with its nearest pixel.
struct TTurnedRow {
  const std::uint32_t* Pixels;
  std::ptrdiff_t Stride;
  std::int32_t Width, Height;
  std::int64_t U, V, StepU, StepV;
  bool IsRepeated;
};

// Whole rows of a line that moves by no more than one pixel from row to row.
struct TSteepRows {
  std::int32_t* Cells;
  std::uint8_t* Marks;
  std::ptrdiff_t Stride, MarkStride;
  // The line's place at the top of the first row, in subpixels with SlopeBits of fraction, and the
  // change by row.
  std::int64_t At, Step;
  std::int32_t Count;
  // Plus or minus SubpixelScale, and that by subpixel of width.
  std::int32_t Cover;
  float Rate;
};

struct TKernels {
  // Sums the marked cells up to coverage, zeroes them and their marks, and gives the number of
  // spans.
  std::size_t (*SweepNonZero)(const TSweepRow& Row);
  std::size_t (*SweepEvenOdd)(const TSweepRow& Row);

  // The same for some rows, of which Row is the first, and blends one premultiplied colour with
  // that coverage: what both kernels do without the spans between them. The row's covers and spans
  // may be written to.
  void (*SweepColorNonZero)(const TSweepRow& Row, const TColorRows& Rows);
  void (*SweepColorEvenOdd)(const TSweepRow& Row, const TColorRows& Rows);
  // Every pixel becomes Color.
  void (*Fill)(std::uint32_t* Target, std::int32_t Count, std::uint32_t Color);
  // The same for a block of rows, and for a copy, past the caches: for what is so large that it
  // would throw everything else out of them.
  void (*StreamFill)(std::uint32_t* Target, std::ptrdiff_t Stride, std::int32_t Width,
                     std::int32_t Rows, std::uint32_t Color);
  void (*StreamCopy)(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count);
  // One row of spans in one premultiplied colour over Target, the row's pixel 0.
  void (*BlendColor)(std::uint32_t* Target, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers, std::uint32_t Color);
  // A block of pixels with a coverage each, in one premultiplied colour.
  void (*BlendBlock)(const TCoverBlock& Block, std::uint32_t Color);
  void (*BlendGroups)(const TCoverGroups& Groups, std::uint32_t Color);
  // Premultiplied pixels over the target with one coverage, or with one each.
  void (*BlendPixels)(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                      std::uint32_t Cover);
  void (*BlendCovered)(std::uint32_t* Target, const std::uint32_t* Source, std::int32_t Count,
                       const std::uint8_t* Covers);
  // Target becomes the product of both coverages.
  void (*MultiplyCovers)(std::uint8_t* Target, const std::uint8_t* A, const std::uint8_t* B,
                         std::int32_t Count);
  void (*ScaleCovers)(std::uint8_t* Target, const std::uint8_t* A, std::uint32_t Cover,
                      std::int32_t Count);

  void (*FetchLinear)(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                      const TLinearRow& Row);
  void (*FetchRadial)(std::uint32_t* Out, std::int32_t X, std::int32_t Count,
                      const TRadialRow& Row);
  void (*ResampleRow)(std::uint32_t* Out, std::int32_t Count, const TResampledRow& Row);
  // Out is A with Weight 256ths of B.
  void (*MixRows)(std::uint32_t* Out, const std::uint32_t* A, const std::uint32_t* B,
                  std::uint32_t Weight, std::int32_t Count);
  // The same, over the target's pixels.
  void (*MixRowsOver)(std::uint32_t* Target, const std::uint32_t* A, const std::uint32_t* B,
                      std::uint32_t Weight, std::int32_t Count);
  // Out gets four numbers a pixel.
  void (*MeanRows)(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count);
  void (*MeanFewRows)(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count);
  void (*MeanColumns)(std::uint32_t* Out, std::int32_t Count, const TMeanColumns& Columns);
  void (*FetchTurned)(std::uint32_t* Out, std::int32_t Count, const TTurnedRow& Row);
  void (*AddSteepRows)(const TSteepRows& Rows);
};

extern const TKernels PlainKernels;
#if defined(__x86_64__)
extern const TKernels SSE41Kernels, AVX2Kernels;
#endif

// The best that this machine has, unless a test chose another.
const TKernels& Kernels();
TSimdLevel BestSimdLevel();
TSimdLevel SimdLevel();
// For tests: takes effect for all drawing that begins afterwards. Levels that the machine does not
// have become the best it has.
void SetSimdLevel(TSimdLevel Level);

// A * B / 255, rounded to the nearest. Exact for products up to 255 * 255.
constexpr std::uint32_t MultiplyBytes(std::uint32_t A, std::uint32_t B) {
  const std::uint32_t Product = A * B + 128;
  return (Product + (Product >> 8)) >> 8;
}
// All four parts of a pixel by one byte.
constexpr std::uint32_t ScalePixel(std::uint32_t Pixel, std::uint32_t By) {
  constexpr std::uint32_t Even = 0x00ff00ff;
  std::uint32_t Low = (Pixel & Even) * By + 0x00800080;
  std::uint32_t High = (Pixel >> 8 & Even) * By + 0x00800080;
  Low = (Low + (Low >> 8 & Even)) >> 8 & Even;
  High = (High + (High >> 8 & Even)) & ~Even;
  return Low | High;
}
constexpr std::uint32_t AddPixels(std::uint32_t A, std::uint32_t B) {
  // Saturates by part, for sources whose colours exceed their alpha.
  std::uint32_t Result = 0;
  for (int Shift = 0; Shift < 32; Shift += 8) {
    const std::uint32_t Sum = (A >> Shift & 255) + (B >> Shift & 255);
    Result |= (Sum > 255 ? 255 : Sum) << Shift;
  }
  return Result;
}
constexpr std::uint32_t OverPixel(std::uint32_t Target, std::uint32_t Source) {
  return AddPixels(Source, ScalePixel(Target, 255 - (Source >> 24)));
}

// A with Weight 256ths of B, each part rounded to the nearest.
constexpr std::uint32_t MixPixels(std::uint32_t A, std::uint32_t B, std::uint32_t Weight) {
  constexpr std::uint32_t Even = 0x00ff00ff, Half = 0x00800080;
  const std::uint32_t Rest = 256 - Weight;
  const std::uint32_t Low = ((A & Even) * Rest + (B & Even) * Weight + Half) >> 8 & Even;
  const std::uint32_t High = ((A >> 8 & Even) * Rest + (B >> 8 & Even) * Weight + Half) & ~Even;
  return Low | High;
}

}  // namespace qxsvg
