#include "raster/StampSink.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "graphics/surface/Flatten.h"
#include "raster/Kernels.h"
#include "raster/Paint.h"

namespace qxsvg {

namespace {

// Farther away a shift has no room left for parts of a pixel.
constexpr float MostShift = 32768;

bool IsNear(const TMatrix& M) {
  return std::abs(M.m31) < MostShift && std::abs(M.m32) < MostShift;
}

}  // namespace

TMatrix TStampPlace::Rounded(const TMatrix& M) {
  if (!IsNear(M)) return M;
  TMatrix Result = M;
  Result.m31 = std::nearbyint(M.m31 * StampPhases) / StampPhases;
  Result.m32 = std::nearbyint(M.m32 * StampPhases) / StampPhases;
  return Result;
}

bool TStampPlace::Put(TPointF Shift) {
  if (!(std::abs(Shift.X) < MostShift && std::abs(Shift.Y) < MostShift)) return false;
  const auto Phases = [](float V) {
    return static_cast<std::int32_t>(std::lrint(V * StampPhases));
  };
  const std::int32_t PX = Phases(Shift.X), PY = Phases(Shift.Y);
  X = PX >> StampPhaseBits;
  Y = PY >> StampPhaseBits;
  Key.PhaseX = static_cast<std::uint16_t>(PX & (StampPhases - 1));
  Key.PhaseY = static_cast<std::uint16_t>(PY & (StampPhases - 1));
  return true;
}

bool TStampPlace::Begin(const TMatrix& M) {
  if (!IsNear(M)) return false;
  X = static_cast<std::int32_t>(std::floor(M.m31));
  Y = static_cast<std::int32_t>(std::floor(M.m32));
  Local = M;
  Local.m31 -= static_cast<float>(X);
  Local.m32 -= static_cast<float>(Y);
  Key.m11 = M.m11;
  Key.m12 = M.m12;
  Key.m21 = M.m21;
  Key.m22 = M.m22;
  Key.PhaseX = static_cast<std::uint16_t>(Local.m31 * StampPhases);
  Key.PhaseY = static_cast<std::uint16_t>(Local.m32 * StampPhases);
  return true;
}

bool TStampPlace::Enclose(const TQXPathView& Path, float Reach, TQXStamp& Box) {
  // Points are rounded to subpixels.
  const float Margin = Reach + 1.0f / StampPhases;
  const TRectF Area = QXMatrixTransform(Local, QXPointsBox(Path.Points));
  const float Left = std::floor(Area.Left - Margin), Top = std::floor(Area.Top - Margin);
  const float Width = std::ceil(Area.Right + Margin) - Left;
  const float Height = std::ceil(Area.Bottom + Margin) - Top;
  constexpr float Most = TQXCoverageStamps::MostSide;
  // What is no number fails, too.
  const bool Fits = Width <= Most && Height <= Most && std::abs(Left) < MostShift / 2 &&
                    std::abs(Top) < MostShift / 2;
  if (!Fits) return false;
  Local.m31 -= Left;
  Local.m32 -= Top;
  Box.Left = static_cast<std::int16_t>(Left);
  Box.Top = static_cast<std::int16_t>(Top);
  Box.Width = static_cast<std::uint16_t>(Width);
  Box.Height = static_cast<std::uint16_t>(Height);
  return true;
}

void TStampSink::Begin(const TQXStamp& Box) {
  FBox = Box;
  FLeft = Box.Width;
  FTop = Box.Height;
  FRight = FBottom = 0;
  std::memset(FBytes.data(), 0, std::size_t{Side} * Box.Height);
}

void TStampSink::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  std::uint8_t* const Out = FBytes.data() + std::ptrdiff_t{Y} * Side;
  for (const TCoverSpan& Span : Spans) {
    const auto Length = static_cast<std::size_t>(Span.Length);
    if (Span.IsEven())
      std::memset(Out + Span.X, static_cast<int>(Span.Cover), Length);
    else
      std::memcpy(Out + Span.X, Span.Covers(Covers), Length);
  }
  FLeft = std::min(FLeft, Spans.front().X);
  FRight = std::max(FRight, Spans.back().End());
  FTop = std::min(FTop, Y);
  FBottom = Y + 1;
}

TQXStamp TStampSink::Result() const {
  TQXStamp Part = FBox;
  if (FLeft >= FRight) {
    Part.Width = Part.Height = 0;
    return Part;
  }
  Part.Left = static_cast<std::int16_t>(FBox.Left + FLeft);
  Part.Top = static_cast<std::int16_t>(FBox.Top + FTop);
  Part.Width = static_cast<std::uint16_t>(FRight - FLeft);
  Part.Height = static_cast<std::uint16_t>(FBottom - FTop);
  return Part;
}

void TStampSink::CopyTo(const TQXStamp& Part, std::uint8_t* Bytes) const {
  for (std::int32_t Y = 0; Y < Part.Height; ++Y)
    std::memcpy(Bytes + std::ptrdiff_t{Y} * Part.Width,
                FBytes.data() + std::ptrdiff_t{FTop + Y} * Side + FLeft, Part.Width);
}

void TStampSink::Replay(const TQXStamp& Stamp, const std::uint8_t* Bytes, std::int32_t Left,
                        std::int32_t Top, const TRect& Clip, ISpanSink& Into) {
  const std::int32_t From = std::max(Left, Clip.Left);
  const std::int32_t To = std::min(Left + Stamp.Width, Clip.Right);
  const std::int32_t Begin = std::max(Top, Clip.Top);
  const std::int32_t End = std::min(Top + Stamp.Height, Clip.Bottom);
  if (From >= To || Begin >= End) return;
  ISpanSink& Sink = Into.Within({From, Begin, To, End});
  const std::uint8_t* Covers = Bytes + std::ptrdiff_t{Begin - Top} * Stamp.Width + (From - Left);
  if (const TColorTarget* const Target = Sink.Target()) {
    const TQXPixels& Pixels = Target->Pixels;
    return Kernels().BlendBlock(
        {Pixels.Row(Begin) + From, Pixels.Stride, Covers, Stamp.Width, To - From, End - Begin},
        Target->Color);
  }
  const TCoverSpan Span{From, To - From, TCoverSpan::CoversBase};
  for (std::int32_t Line = Begin; Line < End; ++Line, Covers += Stamp.Width)
    Sink.Row(Line, {&Span, 1}, Covers);
}

}  // namespace qxsvg
