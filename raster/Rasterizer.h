// From a path to rows of coverage spans.
#pragma once

#include <vector>

#include "graphics/surface/Stroker.h"
#include "raster/CellGrid.h"
#include "raster/DenseLines.h"
#include "raster/Kernels.h"
#include "raster/Spans.h"

namespace qxsvg {

struct TCoverageMode {
  TQXGPFillMode FillMode = TQXGPFillMode::fmWinding;
  // Every pixel that is covered by half or more counts as a whole, the others not at all.
  bool IsAliased = false;
};

// Holds the memory that takes part, for use again and again: once it has grown, nothing is
// allocated.
class TRasterizer {
 public:
  TRasterizer();
  ~TRasterizer();

  // The area of Path through M within Clip, in pixels. M is finite, Clip within the bounds of a
  // bitmap.
  void Fill(const TQXPathView& Path, const TMatrix& M, const TRect& Clip, TCoverageMode Mode,
            ISpanSink& Sink);
  // The stroke of Path: ToPen leads to the space that the pen is round in, ToDevice from there.
  void Stroke(const TQXPathView& Path, const TMatrix& ToPen, const TQXStrokeStyle& Style,
              const TMatrix& ToDevice, const TRect& Clip, bool IsAliased, ISpanSink& Sink);
  // The rectangle R in device coordinates.
  void Rectangle(const TRectF& R, const TRect& Clip, bool IsAliased, ISpanSink& Sink);

 private:
  TQXPathView Transformed(const TQXPathView& Path, const TMatrix& M, TRectF& Box);
  template <class Emitter>
  void Sweep(const TRect& Box, bool IsInside, TCoverageMode Mode, ISpanSink& Sink,
             const Emitter& Emit);
  void SweepRows(TCoverageMode Mode, ISpanSink& Sink);
  void SweepColor(TQXGPFillMode FillMode, const TColorTarget& Target);
  TSweepRow NewRow(std::size_t Rows);
  std::size_t SpansOfRow() const;
  std::size_t CoversOfRow() const;

  TCellGrid FGrid;
  TQXLineBuffer FLines, FReversed;
  TQXStroker FStroker;
  TLineThinner FThinner;
  std::vector<TPointF> FPoints;
  std::vector<std::uint8_t> FCovers;
  std::vector<TCoverSpan> FSpans;
};

}  // namespace qxsvg
