#include "raster/Rasterizer.h"

#include <algorithm>
#include <cmath>

#include "raster/CellPiece.h"
#include "raster/Kernels.h"
#include "raster/Paint.h"

namespace qxsvg {

namespace {

// The pixels that a box touches, within Clip.
TRect PixelsOf(const TRectF& Box, const TRect& Clip) {
  // What is no number counts as far left and up.
  const auto Within = [](float V, std::int32_t Least, std::int32_t Most) {
    const double D = V;
    if (!(D > Least)) return Least;
    return D < Most ? static_cast<std::int32_t>(D) : Most;
  };
  // Half a subpixel more, since points are rounded to those.
  constexpr float Half = 0.5f / SubpixelScale;
  return {Within(std::floor(Box.Left - Half), Clip.Left, Clip.Right),
          Within(std::floor(Box.Top - Half), Clip.Top, Clip.Bottom),
          Within(std::ceil(Box.Right + Half), Clip.Left, Clip.Right),
          Within(std::ceil(Box.Bottom + Half), Clip.Top, Clip.Bottom)};
}

bool Holds(const TRect& Outer, const TRectF& Inner) {
  return Inner.Left >= static_cast<float>(Outer.Left) &&
         Inner.Top >= static_cast<float>(Outer.Top) &&
         Inner.Right <= static_cast<float>(Outer.Right) &&
         Inner.Bottom <= static_cast<float>(Outer.Bottom);
}

// Scales evenly, perhaps with a turn or a reflection.
bool IsSimilarity(const TMatrix& M) {
  const double A = double{M.m11} * M.m11 + double{M.m12} * M.m12;
  const double D = double{M.m21} * M.m21 + double{M.m22} * M.m22;
  const double Skew = double{M.m11} * M.m21 + double{M.m12} * M.m22;
  constexpr double Close = 1e-5;
  return std::abs(A - D) <= Close * std::max(A, D) && std::abs(Skew) <= Close * std::max(A, D);
}

// What may be left out of a line that is drawn with that pen.
TThinning ThinningOf(const TQXStrokeStyle& Pen, const TMatrix& ToDevice) {
  const float Scale =
      std::hypot(std::hypot(ToDevice.m11, ToDevice.m12), std::hypot(ToDevice.m21, ToDevice.m22));
  TThinning How;
  How.Distance = StrokeThinning / (IsIdentityMatrix(ToDevice) ? 1 : Scale);
  // The corners of other joins move with the sides, and the tips of miters move more. Where a line
  // turns right back the slopes are so close that there is no miter.
  if (Pen.Join != TQXGPStrokeJoin::sjRound) How.Turn = std::min(How.Distance * 2 / Pen.Width, 1.0f);
  if (Pen.Join == TQXGPStrokeJoin::sjMiter) How.Turn /= std::max(Pen.MiterLimit, 1.0f);
  return How;
}

// Leaves only pixels that are covered wholly.
void Harden(std::span<TCoverSpan> Spans, std::uint8_t* Covers) {
  for (TCoverSpan& Span : Spans) {
    if (Span.IsEven()) {
      Span.Cover = Span.Cover < 128 ? 0 : FullCover;
      continue;
    }
    std::uint8_t* C = Covers + (Span.Cover - TCoverSpan::CoversBase);
    for (std::int32_t X = 0; X < Span.Length; ++X)
      C[X] = static_cast<std::uint8_t>(C[X] < 128 ? 0 : FullCover);
  }
}

}  // namespace

TRasterizer::TRasterizer() : FLines(FGrid), FReversed(FGrid, true) {}
TRasterizer::~TRasterizer() = default;

TQXPathView TRasterizer::Transformed(const TQXPathView& Path, const TMatrix& M, TRectF& Box) {
  if (IsIdentityMatrix(M)) {
    Box = QXPointsBox(Path.Points);
    return Path;
  }
  if (FPoints.size() < Path.Count()) FPoints.resize(Path.Count());
  Box = QXTransformPoints(Path.Points, M, FPoints.data());
  return {{FPoints.data(), Path.Count()}, Path.Kinds};
}

// The lines are made anew for each band of rows that the grid can hold at once.
template <class Emitter>
void TRasterizer::Sweep(const TRect& Box, bool IsInside, TCoverageMode Mode, ISpanSink& Sink,
                        const Emitter& Emit) {
  const std::int32_t Rows = TCellGrid::MaxRows(static_cast<std::int32_t>(Box.Width()));
  ISpanSink& To = Sink.Within(Box);
  TRect Band = Box;
  for (std::int32_t Top = Box.Top; Top < Box.Bottom; Top = Band.Bottom) {
    Band.Top = Top;
    Band.Bottom = std::min(Box.Bottom - Top, Rows) + Top;
    const bool IsWhole = Band == Box;
    FGrid.Begin(Band, IsInside && IsWhole);
    try {
      Emit(Band, IsInside && IsWhole);
      while (FGrid.NextBand()) SweepRows(Mode, To);
    } catch (...) {
      // What lines have left would show in the next drawing.
      FGrid.Abandon();
      throw;
    }
  }
}

std::size_t TRasterizer::SpansOfRow() const {
  return static_cast<std::size_t>(FGrid.MarkStride()) + 2;
}
std::size_t TRasterizer::CoversOfRow() const {
  return static_cast<std::size_t>(FGrid.MarkStride()) * GroupCells + CoversPadding;
}

// The first of so many rows that there is room for.
TSweepRow TRasterizer::NewRow(std::size_t Rows) {
  const std::size_t Spans = Rows * SpansOfRow(), Covers = Rows * CoversOfRow();
  if (FCovers.size() < Covers) FCovers.resize(Covers);
  if (FSpans.size() < Spans) FSpans.resize(Spans);
  TSweepRow Row;
  Row.MarkCount = FGrid.MarkStride();
  Row.Left = FGrid.Box().Left;
  Row.Width = static_cast<std::int32_t>(FGrid.Box().Width());
  Row.Covers = FCovers.data();
  Row.Spans = FSpans.data();
  return Row;
}

// In one colour, so that no spans are needed.
void TRasterizer::SweepColor(TQXGPFillMode FillMode, const TColorTarget& Target) {
  const TRect& Box = FGrid.Box();
  const TKernels& K = Kernels();
  const auto SweepRows =
      FillMode == TQXGPFillMode::fmWinding ? K.SweepColorNonZero : K.SweepColorEvenOdd;
  const std::int32_t Top = FGrid.TouchedTop(), Bottom = FGrid.TouchedBottom();
  if (Top >= Bottom) return;
  TSweepRow Row = NewRow(1);
  Row.Cells = FGrid.Cells(Top);
  Row.Marks = FGrid.Marks(Top);
  SweepRows(Row, {Target.Pixels.Row(Box.Top + Top), Target.Pixels.Stride, FGrid.Stride(),
                  FGrid.MarkStride(), Bottom - Top, Target.Color});
}

// Rows are summed up some at a time before any of them is blended: meanwhile the pixels they need
// come from memory.
void TRasterizer::SweepRows(TCoverageMode Mode, ISpanSink& Sink) {
  if (!Mode.IsAliased)
    if (const TColorTarget* const Target = Sink.Target()) return SweepColor(Mode.FillMode, *Target);
  constexpr std::size_t Batch = 8;
  struct TSwept {
    std::int32_t Y;
    std::size_t Count;
  };
  const TRect& Box = FGrid.Box();
  TSweepRow Row = NewRow(Batch);
  const std::size_t RowSpans = SpansOfRow(), RowCovers = CoversOfRow();
  const TKernels& K = Kernels();
  const auto SweepRow = Mode.FillMode == TQXGPFillMode::fmWinding ? K.SweepNonZero : K.SweepEvenOdd;
  const std::int32_t Bottom = FGrid.TouchedBottom();
  for (std::int32_t Y = FGrid.TouchedTop(); Y < Bottom;) {
    std::array<TSwept, Batch> Swept;
    std::size_t Used = 0;
    for (; Y < Bottom && Used < Batch; ++Y) {
      Row.Cells = FGrid.Cells(Y);
      Row.Marks = FGrid.Marks(Y);
      Row.Covers = FCovers.data() + Used * RowCovers;
      Row.Spans = FSpans.data() + Used * RowSpans;
      const std::size_t Count = SweepRow(Row);
      if (Count == 0) continue;
      if (Mode.IsAliased) Harden({Row.Spans, Count}, Row.Covers);
      Sink.Announce(Box.Top + Y, {Row.Spans, Count});
      Swept[Used++] = {Box.Top + Y, Count};
    }
    for (std::size_t I = 0; I < Used; ++I)
      Sink.Row(Swept[I].Y, {FSpans.data() + I * RowSpans, Swept[I].Count},
               FCovers.data() + I * RowCovers);
  }
}

void TRasterizer::Fill(const TQXPathView& Path, const TMatrix& M, const TRect& Clip,
                       TCoverageMode Mode, ISpanSink& Sink) {
  TRectF Bounds;
  const TQXPathView Device = Transformed(Path, M, Bounds);
  const TRect Box = PixelsOf(Bounds, Clip);
  if (Box.IsEmpty()) return;
  Sweep(Box, Holds(Clip, Bounds), Mode, Sink, [&](const TRect& Band, bool IsInside) {
    QXFlattenFigures(Device, QXRect(Band), IsInside, QXFlattenTolerance, FLines);
    FLines.Flush();
  });
}

void TRasterizer::Stroke(const TQXPathView& Path, const TMatrix& ToPen, const TQXStrokeStyle& Style,
                         const TMatrix& ToDevice, const TRect& Clip, bool IsAliased,
                         ISpanSink& Sink) {
  TRectF Bounds;
  TQXPathView Points;
  TQXStrokeStyle Pen = Style;
  TMatrix Rest = ToDevice;
  if (IsSimilarity(ToDevice)) {
    Pen.Width = QXMatrixMultiply(Style.Width, ToDevice);
    Points = Transformed(
        Path, IsIdentityMatrix(ToDevice) ? ToPen : QXMatrixMultiply(ToPen, ToDevice), Bounds);
    Rest = QXIdentityMatrix;
  } else {
    Points = Transformed(Path, ToPen, Bounds);
  }
  if (!(Pen.Width > 0) || !std::isfinite(Pen.Width)) return;
  const float Reach = Pen.Reach();
  QXInflateRect(Bounds, Reach, Reach);
  if (!IsIdentityMatrix(Rest)) Bounds = QXMatrixTransform(Rest, Bounds);
  const TRect Box = PixelsOf(Bounds, Clip);
  if (Box.IsEmpty()) return;
  // The lengths of dashes are those of the whole way.
  if (Pen.Dashes.empty()) Points = FThinner.Thin(Points, ThinningOf(Pen, Rest));
  Sweep(Box, Holds(Clip, Bounds), {TQXGPFillMode::fmWinding, IsAliased}, Sink,
        [&](const TRect& Band, bool) {
          FStroker.Stroke(Points, Pen, Rest, QXRect(Band), QXFlattenTolerance, FLines, FReversed);
          FLines.Flush();
          FReversed.Flush();
        });
}

void TRasterizer::Rectangle(const TRectF& R, const TRect& Clip, bool IsAliased, ISpanSink& Into) {
  const auto Fixed = [](float V, std::int32_t Least, std::int32_t Most) {
    const double N = std::nearbyint(double{V} * SubpixelScale);
    return static_cast<std::int32_t>(
        std::clamp(N, double{SubpixelScale} * Least, double{SubpixelScale} * Most));
  };
  const std::int32_t Left = Fixed(R.Left, Clip.Left, Clip.Right);
  const std::int32_t Right = Fixed(R.Right, Clip.Left, Clip.Right);
  const std::int32_t Top = Fixed(R.Top, Clip.Top, Clip.Bottom);
  const std::int32_t Bottom = Fixed(R.Bottom, Clip.Top, Clip.Bottom);
  const TRect Box{Left >> SubpixelBits, Top >> SubpixelBits,
                  (Right + SubpixelScale - 1) >> SubpixelBits,
                  (Bottom + SubpixelScale - 1) >> SubpixelBits};
  if (Box.IsEmpty()) return;
  ISpanSink& Sink = Into.Within(Box);
  // How much of the pixel at I lies between both ends.
  const auto Part = [](std::int64_t From, std::int64_t To, std::int64_t I) {
    return static_cast<std::uint32_t>(std::max<std::int64_t>(
        0, std::min(To, (I + 1) * SubpixelScale) - std::max(From, I * SubpixelScale)));
  };
  // Whole pixels across may go as one block, from the first to the last row that is whole too.
  const bool IsWhole = ((Left | Right) & FractionMask) == 0;
  const std::int32_t BlockTop = (Top + SubpixelScale - 1) >> SubpixelBits;
  const std::int32_t BlockBottom = Bottom >> SubpixelBits;
  const std::int32_t LastX = Box.Right - 1;
  for (std::int32_t Y = Box.Top; Y < Box.Bottom; ++Y) {
    if (IsWhole && Y == BlockTop && BlockTop < BlockBottom) {
      Sink.Block({Box.Left, BlockTop, Box.Right, BlockBottom}, FullCover);
      Y = BlockBottom - 1;
      continue;
    }
    const std::uint32_t Height = Part(Top, Bottom, Y);
    std::array<TCoverSpan, 3> Spans;
    std::size_t Count = 0;
    const auto Add = [&](std::int32_t X, std::int32_t Length, std::uint32_t Width) {
      std::uint32_t Cover = (Width * Height * 2 * FullCover + CellFull / 2) >> CellFullBits;
      if (IsAliased) Cover = Cover < 128 ? 0 : FullCover;
      if (Length > 0 && Cover != 0) Spans[Count++] = {X, Length, Cover};
    };
    const std::uint32_t LeftPart = Part(Left, Right, Box.Left);
    const std::uint32_t RightPart = Part(Left, Right, LastX);
    const bool HasLeft = LeftPart != SubpixelScale,
               HasRight = RightPart != SubpixelScale && Box.Left != LastX;
    if (HasLeft) Add(Box.Left, 1, LeftPart);
    Add(Box.Left + HasLeft, static_cast<std::int32_t>(Box.Width()) - HasLeft - HasRight,
        SubpixelScale);
    if (HasRight) Add(LastX, 1, RightPart);
    if (Count != 0) Sink.Row(Y, {Spans.data(), Count}, nullptr);
  }
}

}  // namespace qxsvg
