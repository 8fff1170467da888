#include "raster/RasterCanvas.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/surface/PathMeasure.h"
#include "raster/HashMix.h"
#include "raster/KeptSpans.h"
#include "raster/Kernels.h"
#include "raster/RecentClips.h"
#include "raster/RegionCover.h"
#include "raster/StampSink.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

std::uint32_t OpacityByte(float Opacity) {
  return static_cast<std::uint32_t>(std::lround(Opacity * 255));
}

std::uint32_t PaintedColor(TQXGPColor Color, float Opacity) {
  const auto Alpha =
      static_cast<std::uint32_t>(std::lround(static_cast<float>(Color >> 24) * Opacity));
  return QXPremultiply((Color & 0xffffff) | Alpha << 24);
}

bool IsUpright(const TMatrix& M) {
  return (M.m12 == 0 && M.m21 == 0) || (M.m11 == 0 && M.m22 == 0);
}

// Whether the path is one rectangle with sides along the axes.
bool IsRectangle(const TQXPathView& Path, TRectF& R) {
  std::size_t Count = Path.Count();
  if (Count > 6 || Count < 4) return false;
  if (Path.Kinds[Count - 1] == TQXPathPointKind::pkClose) --Count;
  if (Count == 5 && Path.Points[4] == Path.Points[0]) --Count;
  if (Count != 4) return false;
  for (std::size_t I = 1; I < Count; ++I)
    if (Path.Kinds[I] != TQXPathPointKind::pkLine) return false;
  const TPointF* P = Path.Points.data();
  const bool IsAcross =
      P[0].Y == P[1].Y && P[1].X == P[2].X && P[2].Y == P[3].Y && P[3].X == P[0].X;
  const bool IsDown = P[0].X == P[1].X && P[1].Y == P[2].Y && P[2].X == P[3].X && P[3].Y == P[0].Y;
  R = QXRect(P[0], P[2]).Normalized();
  return IsAcross || IsDown;
}

std::uint64_t HashOf(const TQXStrokeStyle& Style) {
  std::uint64_t Hash = 0x8f1bbcdcbfa53e0bu;
  for (const float Size : {Style.Width, Style.MiterLimit, Style.DashOffset})
    MixHash(Hash, std::bit_cast<std::uint32_t>(Size));
  MixHash(Hash, static_cast<std::uint64_t>(Style.Join) |
                    static_cast<std::uint64_t>(Style.StartCap) << 8 |
                    static_cast<std::uint64_t>(Style.EndCap) << 16 |
                    static_cast<std::uint64_t>(Style.DashCap) << 24);
  MixHash(Hash, std::as_bytes(std::span(Style.Dashes)));
  // That of a fill is 0.
  return Hash | 1;
}

// The pixels of Clip that an area under a matrix may touch, rounding included.
TRect PixelsUnder(const TRectF& Area, const TMatrix& M, const TRect& Clip) {
  const TRectF Box = QXMatrixTransform(M, Area);
  if (!IsFinite(Box)) return Clip;
  const TRectF R =
      TRectF::Intersect({Box.Left - 1, Box.Top - 1, Box.Right + 1, Box.Bottom + 1}, QXRect(Clip));
  return {static_cast<std::int32_t>(std::floor(R.Left)),
          static_cast<std::int32_t>(std::floor(R.Top)),
          static_cast<std::int32_t>(std::ceil(R.Right)),
          static_cast<std::int32_t>(std::ceil(R.Bottom))};
}

// The box that a paint of that kind asks for, in the canvas's coordinates. Reach is how far the
// painted area goes beyond the points.
TRectF PaintedBox(TQXGPBrushKind Kind, const TQXPathSource& Source, float Reach) {
  if (Kind == TQXGPBrushKind::bkGradient) return QXPathBounds(Source.Path, Source.Matrix);
  if (Kind != TQXGPBrushKind::bkBitmap) return {};
  TRectF Box = QXMatrixTransform(Source.Matrix, QXPointsBox(Source.Path.Points));
  QXInflateRect(Box, Reach, Reach);
  return Box;
}

class TRasterCanvasFactory final : public ICanvasFactory {
 public:
  std::unique_ptr<TQXGPCanvas> CreateCanvas(const TQXPixels& Pixels) override {
    return std::make_unique<TQXRasterCanvas>(Pixels);
  }
};

}  // namespace

struct TQXRasterCanvas::TScratch {
  TRasterizer Rasterizer;
  TClipSink ClipSink;
  TKeptSpans Kept;
  TStampSink StampSink;
  std::vector<std::uint8_t> StampBytes;
  // Room is made beforehand, so that a clip cannot fail half way.
  static constexpr std::size_t MostSpares = 4;
  std::vector<std::shared_ptr<TSpanStore>> SpareMasks;
  TGradientPaint Gradient;
  TImagePaint Image;
  TQXPathGeometry Outline;
  TRegionCover Region;
  TRecentClips RecentClips;
};

TQXRasterCanvas::TQXRasterCanvas(const TQXPixels& Pixels)
    : FPixels(Pixels), FScratch(std::make_unique<TScratch>()) {
  if (std::max(Pixels.Width, Pixels.Height) > Limits::BitmapSide)
    throw EInvalidGraphicOperation(SBitmapSizeLimit);
  FScratch->SpareMasks.reserve(TScratch::MostSpares);
  FClip = TClip({0, 0, std::max(Pixels.Width, 0), std::max(Pixels.Height, 0)});
}

TQXRasterCanvas::~TQXRasterCanvas() = default;

TRect TQXRasterCanvas::GetDeviceBounds() const {
  return {0, 0, FPixels.Width, FPixels.Height};
}

TRectF TQXRasterCanvas::GetClipBounds() const {
  return QXRect(FClip.Box());
}

bool TQXRasterCanvas::IsVisible(TPointF P) const {
  const TRectF Box = QXRect(FClip.Box());
  if (!Box.Contains(P)) return false;
  return FClip.CoverAt(static_cast<std::int32_t>(P.X), static_cast<std::int32_t>(P.Y)) >= 128;
}

void TQXRasterCanvas::DoSaveState() {
  FSavedClips.push_back(FClip);
}

void TQXRasterCanvas::DoRestoreState() {
  Recycle(FClip.TakeMask());
  FClip = std::move(FSavedClips.back());
  FSavedClips.pop_back();
}

void TQXRasterCanvas::Recycle(std::shared_ptr<const TSpanStore> Mask) {
  if (Mask && Mask.use_count() == 1 && FScratch->SpareMasks.size() < TScratch::MostSpares)
    FScratch->SpareMasks.push_back(std::const_pointer_cast<TSpanStore>(Mask));
}

void TQXRasterCanvas::SetMask(std::shared_ptr<TSpanStore> Mask) {
  Recycle(FClip.TakeMask());
  FClip.SetMask(std::move(Mask));
}

std::shared_ptr<TSpanStore> TQXRasterCanvas::NewMask() {
  if (FScratch->SpareMasks.empty()) return std::make_shared<TSpanStore>();
  std::shared_ptr<TSpanStore> Mask = std::move(FScratch->SpareMasks.back());
  FScratch->SpareMasks.pop_back();
  Mask->Clear();
  return Mask;
}

// Draws through the clip into Sink.
template <class Drawing>
void TQXRasterCanvas::Cover(ISpanSink& Sink, const Drawing& Draw) {
  if (FClip.IsEmpty()) return;
  if (!FClip.Mask()) return Draw(FClip.Box(), Sink);
  FScratch->ClipSink.Begin(FClip, Sink);
  Draw(FClip.Box(), FScratch->ClipSink);
}

TMatrix TQXRasterCanvas::PlaceOf(const TQXPathSource& Source) const {
  if (!Source.IsRepeated || !IsIdentityMatrix(Matrix())) return Source.Matrix;
  return TStampPlace::Rounded(Source.Matrix);
}

// A small shape is drawn by its stamp in every place, also where none is kept: so it looks the same
// however often it was drawn.
template <class Drawing>
bool TQXRasterCanvas::CoverStamped(const TQXPathSource& Source, const TQXCoverageKey& Key,
                                   float Reach, ISpanSink& Sink, const Drawing& Draw) {
  TStampPlace Place;
  if (!Place.Begin(Key.PathMatrix)) return false;
  Place.Key.Mode = Key.Mode;
  Place.Key.Stroke = Key.Stroke;
  const auto Replay = [&](const TQXStamp& Stamp, const std::uint8_t* Bytes) {
    Cover(Sink, [&](const TRect& Clip, ISpanSink& Next) {
      TStampSink::Replay(Stamp, Bytes, Place.X + Stamp.Left, Place.Y + Stamp.Top, Clip, Next);
    });
  };
  if (Source.Stamps)
    if (const TQXStamp* const Stamp = Source.Stamps->Find(Place.Key)) {
      Replay(*Stamp, Source.Stamps->Bytes(*Stamp));
      return true;
    }
  TQXStamp Box;
  if (!Place.Enclose(Source.Path, Reach, Box)) return false;
  TStampSink& Stamps = FScratch->StampSink;
  Stamps.Begin(Box);
  Draw(Place.Local, TRect{0, 0, Box.Width, Box.Height}, Stamps);
  const TQXStamp Stamp = Stamps.Result();
  std::uint8_t* Bytes = Source.Stamps ? Source.Stamps->Add(Place.Key, Stamp) : nullptr;
  if (!Bytes) {
    FScratch->StampBytes.resize(std::size_t{Stamp.Width} * Stamp.Height +
                                TQXCoverageStamps::Padding);
    Bytes = FScratch->StampBytes.data();
  }
  Stamps.CopyTo(Stamp, Bytes);
  Replay(Stamp, Bytes);
  return true;
}

std::optional<TQXStampKey> TQXRasterCanvas::StampKey(const TQXPathSource& Source,
                                                     const TQXGPPen* Pen) {
  TRectF R;
  const TMatrix& M = Source.Matrix;
  if (!IsIdentityMatrix(Matrix()) || (!Pen && IsUpright(M) && IsRectangle(Source.Path, R)))
    return std::nullopt;
  TQXStampKey Key{M.m11, M.m12, M.m21, M.m22};
  Key.Mode = (Pen ? 0u : static_cast<std::uint32_t>(Source.FillMode)) | (IsAliased() ? 2u : 0u);
  if (Pen) Key.Stroke = HashOf(TQXStrokeStyle::FromPen(*Pen));
  return Key;
}

bool TQXRasterCanvas::PlaceStamp(const TQXCoverageStamps& Stamps, const TQXStampKey& Key,
                                 TPointF Shift, TQXGPColor Color, float Opacity,
                                 TQXPlacedStamp& Placed) {
  TStampPlace Place;
  Place.Key = Key;
  if (!Place.Put(Shift)) return false;
  const TQXStamp* const Stamp = Stamps.Find(Place.Key);
  if (!Stamp) return false;
  const std::uint32_t Pixel = Opacity > 0 ? PaintedColor(Color, std::min(Opacity, 1.0f)) : 0;
  Placed = {&Stamps, *Stamp, Place.X + Stamp->Left, Place.Y + Stamp->Top, Pixel};
  return true;
}

void TQXRasterCanvas::DrawStamps(std::span<const TQXPlacedStamp> Placed) {
  const TRect& Clip = FClip.Inside();
  const TKernels& K = Kernels();
  for (const TQXPlacedStamp& P : Placed) {
    if (P.Color == 0 || P.Stamp.Width == 0) continue;
    const std::uint8_t* const Bytes = P.Stamps->Bytes(P.Stamp);
    const std::int32_t Width = P.Stamp.Width, Height = P.Stamp.Height;
    const bool IsWhole = P.X >= Clip.Left && P.X + Width <= Clip.Right && P.Y >= Clip.Top &&
                         P.Y + Height <= Clip.Bottom;
    if (IsWhole) {
      K.BlendBlock({FPixels.Row(P.Y) + P.X, FPixels.Stride, Bytes, Width, Width, Height}, P.Color);
      continue;
    }
    TColorSink Sink(FPixels, P.Color);
    Cover(Sink, [&](const TRect& Part, ISpanSink& Next) {
      TStampSink::Replay(P.Stamp, Bytes, P.X, P.Y, Part, Next);
    });
  }
}

template <class Drawing>
void TQXRasterCanvas::CoverKept(const TQXPathSource& Source, const TQXCoverageKey& Key, float Reach,
                                ISpanSink& Sink, const Drawing& Drawn) {
  if (Source.IsRepeated && IsIdentityMatrix(Matrix()) &&
      CoverStamped(Source, Key, Reach, Sink, Drawn))
    return;
  TQXCoverageCache* const Cache = Source.Coverage;
  const auto Draw = [&](const TRect& Clip, ISpanSink& Next) { Drawn(Key.PathMatrix, Clip, Next); };
  switch (Cache ? Cache->Ask(Key) : TQXCoverageCache::TUse::Draw) {
    case TQXCoverageCache::TUse::Draw: return Cover(Sink, Draw);
    case TQXCoverageCache::TUse::Replay: return FScratch->Kept.Replay(Cache->Data(), Sink);
    case TQXCoverageCache::TUse::Keep: break;
  }
  TKeptSpans& Kept = FScratch->Kept;
  Kept.Clear(Sink.Target() != nullptr);
  Cover(Kept, Draw);
  const std::span<const std::uint64_t> Words = Kept.Pack();
  Kept.Replay(Words.data(), Sink);
  Cache->Keep(Words.data(), Words.size_bytes());
}

void TQXRasterCanvas::DoIntersectClipRect(const TRectF& Area) {
  // A side beyond the clip cuts nothing off: without it there is less reason to need a mask, which
  // all that is drawn under it would have to pass.
  const TRectF R = TRectF::Intersect(Area, QXRect(FClip.Box()));
  // Sides on pixel boundaries, within what coverage can tell, leave the clip a rectangle.
  const auto IsWhole = [](float V) {
    return std::abs(V - std::nearbyint(V)) < 0.5f / SubpixelScale;
  };
  if (R.IsEmpty()) return FClip.IntersectBox({});
  if (IsWhole(R.Left) && IsWhole(R.Top) && IsWhole(R.Right) && IsWhole(R.Bottom))
    return FClip.IntersectBox(CanvasRect(R));
  auto Mask = NewMask();
  Cover(*Mask, [&](const TRect& Clip, ISpanSink& Sink) {
    FScratch->Rasterizer.Rectangle(R, Clip, IsAliased(), Sink);
  });
  SetMask(std::move(Mask));
}

void TQXRasterCanvas::DoClear(TQXGPColor Color) {
  const TRect Box = FClip.Box();
  if (Box.IsEmpty()) return;
  const std::uint32_t Pixel = QXPremultiply(Color);
  const TKernels& K = Kernels();
  for (std::int32_t Y = Box.Top; Y < Box.Bottom; ++Y) {
    if (!FClip.Mask()) {
      K.Fill(FPixels.Row(Y) + Box.Left, static_cast<std::int32_t>(Box.Width()), Pixel);
      continue;
    }
    // Partly covered pixels become the mean of both.
    for (const TCoverSpan& Span : FClip.Mask()->RowAt(Y))
      for (std::int32_t X = std::max(Span.X, Box.Left); X < std::min(Span.End(), Box.Right); ++X) {
        const std::uint32_t Cover =
            Span.IsEven() ? Span.Cover : Span.Covers(FClip.Mask()->Covers())[X - Span.X];
        std::uint32_t& P = FPixels.Row(Y)[X];
        P = AddPixels(ScalePixel(P, FullCover - Cover), ScalePixel(Pixel, Cover));
      }
  }
}

template <class Covering>
void TQXRasterCanvas::PaintColor(TQXGPColor Color, float Opacity, const Covering& Draw) {
  const std::uint32_t Pixel = PaintedColor(Color, Opacity);
  if (Pixel == 0) return;
  TColorSink Sink(FPixels, Pixel);
  Draw(Sink);
}

// Kind is that of the brush, or of the pen whose brush this is: a pen's own brush only holds
// gradient and bitmap. Box, in the canvas's coordinates, is what gradients refer to, and what
// images are painted within.
template <class Covering>
void TQXRasterCanvas::Paint(TQXGPBrushKind Kind, const TQXGPBrush& Brush, const TRectF& Box,
                            float Opacity, const Covering& Draw) {
  switch (Kind) {
    case TQXGPBrushKind::bkNone: return;
    case TQXGPBrushKind::bkSolid: return PaintColor(Brush.Color(), Opacity, Draw);
    case TQXGPBrushKind::bkGradient: {
      if (!FScratch->Gradient.Begin(*Brush.Gradient(), Box, Matrix(), Opacity)) return;
      TPaintSink Sink(FPixels, FScratch->Gradient);
      return Draw(Sink);
    }
    case TQXGPBrushKind::bkBitmap: {
      TImagePlace Place;
      Place.ToDevice = QXMatrixMultiply(Brush.BitmapMatrix(), Matrix());
      Place.IsRepeated = true;
      if (Quality().Interpolation == TQXGPInterpolationMode::imNearestNeighbor)
        Place.Filter = TImageFilter::Nearest;
      // Only the pixels that are painted are worth preparing.
      const TRect Pixels = PixelsUnder(Box, Matrix(), FClip.Box());
      if (!FScratch->Image.Begin(Brush.Bitmap()->GetPixels(), Place, Pixels)) return;
      TPaintSink Sink(FPixels, FScratch->Image, OpacityByte(Opacity));
      return Draw(Sink);
    }
  }
}

void TQXRasterCanvas::DoFillPath(const TQXPathSource& Source, const TQXGPBrush& Brush,
                                 float Opacity) {
  if (FClip.IsEmpty()) return;
  TRectF R;
  const auto Through = [this](const TMatrix& M) {
    return IsIdentityMatrix(M) ? Matrix() : QXMatrixMultiply(M, Matrix());
  };
  TQXCoverageKey Key;
  Key.PathMatrix = PlaceOf(Source);
  const TMatrix ToDevice = Through(Key.PathMatrix);
  if (!IsFinite(ToDevice)) return;
  const TRectF Box = PaintedBox(Brush.Kind(), Source, 0);
  if (IsUpright(ToDevice) && IsRectangle(Source.Path, R)) {
    R = QXMatrixTransform(ToDevice, R);
    return Paint(Brush.Kind(), Brush, Box, Opacity, [&](ISpanSink& Sink) {
      Cover(Sink, [&](const TRect& Clip, ISpanSink& Next) {
        FScratch->Rasterizer.Rectangle(R, Clip, IsAliased(), Next);
      });
    });
  }
  if (Source.Coverage || Source.Stamps) {
    Key.Matrix = Matrix();
    Key.Clip = FClip.Hash();
    Key.Mode = static_cast<std::uint32_t>(Source.FillMode) | (IsAliased() ? 2u : 0u);
  }
  const auto Draw = [&](const TMatrix& M, const TRect& Clip, ISpanSink& Next) {
    FScratch->Rasterizer.Fill(Source.Path, Through(M), Clip, {Source.FillMode, IsAliased()}, Next);
  };
  Paint(Brush.Kind(), Brush, Box, Opacity,
        [&](ISpanSink& Sink) { CoverKept(Source, Key, 0, Sink, Draw); });
}

void TQXRasterCanvas::DoDrawPath(const TQXPathSource& Source, const TQXGPPen& Pen, float Opacity) {
  if (FClip.IsEmpty() || !IsFinite(QXMatrixMultiply(Source.Matrix, Matrix()))) return;
  const TQXStrokeStyle Style = TQXStrokeStyle::FromPen(Pen);
  TQXCoverageKey Key;
  Key.PathMatrix = PlaceOf(Source);
  if (Source.Coverage || Source.Stamps) {
    Key.Matrix = Matrix();
    Key.Stroke = HashOf(Style);
    Key.Clip = FClip.Hash();
    Key.Mode = IsAliased() ? 2u : 0u;
  }
  const auto Draw = [&](ISpanSink& Sink) {
    CoverKept(Source, Key, Style.Reach(), Sink,
              [&](const TMatrix& M, const TRect& Clip, ISpanSink& Next) {
                FScratch->Rasterizer.Stroke(Source.Path, M, Style, Matrix(), Clip, IsAliased(),
                                            Next);
              });
  };
  if (Pen.Kind() == TQXGPBrushKind::bkSolid) return PaintColor(Pen.Color(), Opacity, Draw);
  if (!Pen.InnerBrush()) return;
  Paint(Pen.Kind(), *Pen.InnerBrush(), PaintedBox(Pen.Kind(), Source, Style.Reach()), Opacity,
        Draw);
}

void TQXRasterCanvas::DoFillRect(const TRectF& R, const TQXGPBrush& Brush, float Opacity) {
  if (!IsUpright(Matrix())) return TQXGPCanvas::DoFillRect(R, Brush, Opacity);
  const TRectF Device = QXMatrixTransform(Matrix(), R);
  Paint(Brush.Kind(), Brush, R, Opacity, [&](ISpanSink& Sink) {
    Cover(Sink, [&](const TRect& Clip, ISpanSink& Next) {
      FScratch->Rasterizer.Rectangle(Device, Clip, IsAliased(), Next);
    });
  });
}

void TQXRasterCanvas::DoDrawImage(const TQXConstPixels& Pixels, const TRectF& Dest,
                                  const TRectF& Source, float Opacity) {
  if (FClip.IsEmpty()) return;
  const double SX = double{Dest.Width()} / Source.Width();
  const double SY = double{Dest.Height()} / Source.Height();
  TMatrix ToCanvas;
  ToCanvas.m11 = static_cast<float>(SX);
  ToCanvas.m22 = static_cast<float>(SY);
  ToCanvas.m31 = static_cast<float>(Dest.Left - Source.Left * SX);
  ToCanvas.m32 = static_cast<float>(Dest.Top - Source.Top * SY);
  TImagePlace Place;
  Place.ToDevice = QXMatrixMultiply(ToCanvas, Matrix());
  if (!IsFinite(Place.ToDevice)) return;
  Place.Part = {static_cast<std::int32_t>(std::floor(Source.Left)),
                static_cast<std::int32_t>(std::floor(Source.Top)),
                std::min(static_cast<std::int32_t>(std::ceil(Source.Right)), Pixels.Width),
                std::min(static_cast<std::int32_t>(std::ceil(Source.Bottom)), Pixels.Height)};
  if (Quality().Interpolation == TQXGPInterpolationMode::imNearestNeighbor)
    Place.Filter = TImageFilter::Nearest;

  const TRectF Area = Dest.Normalized();
  TQXPathGeometry& Outline = FScratch->Outline;
  Outline.Clear();
  const bool IsBox = IsUpright(Matrix());
  const TRectF Device = QXMatrixTransform(Matrix(), Area);
  if (!IsBox) Outline.AddRectangle(Area);
  if (!FScratch->Image.Begin(Pixels, Place, PixelsUnder(Area, Matrix(), FClip.Box()))) return;
  TPaintSink Sink(FPixels, FScratch->Image, OpacityByte(Opacity));
  Cover(Sink, [&](const TRect& Clip, ISpanSink& Next) {
    if (IsBox)
      FScratch->Rasterizer.Rectangle(Device, Clip, IsAliased(), Next);
    else
      FScratch->Rasterizer.Fill(Outline.View(), Matrix(), Clip,
                                {TQXGPFillMode::fmWinding, IsAliased()}, Next);
  });
}

// Every step's coverage is combined with what the steps before it gave, in a byte for each pixel.
void TQXRasterCanvas::DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) {
  if (FClip.IsEmpty()) return;
  if (!IsFinite(Matrix)) return;
  const std::size_t Steps = Region.StepCount();
  const auto DrawStep = [&](std::size_t I, const TRect& Clip, ISpanSink& Sink) {
    const TQXRegionStep Step = Region.Step(I);
    FScratch->Rasterizer.Fill(Step.Path, Matrix, Clip, {Step.FillMode, IsAliased()}, Sink);
  };
  // Most clip paths are rectangles, many of them on pixel boundaries.
  TRectF R;
  if (Steps == 1 && IsUpright(Matrix) && IsRectangle(Region.Step(0).Path, R)) {
    R = QXMatrixTransform(Matrix, R);
    if (IsFinite(R)) return DoIntersectClipRect(R);
  }
  const std::uint64_t Key = TRecentClips::KeyOf(FClip, Region, Matrix, IsAliased());
  if (const TClip* const Recent = FScratch->RecentClips.Find(Key)) {
    Recycle(FClip.TakeMask());
    FClip = *Recent;
    return;
  }
  auto Mask = NewMask();
  Cover(*Mask, [&](const TRect& Clip, ISpanSink& Sink) {
    if (Steps == 1) return DrawStep(0, Clip, Sink);
    const TRect Box = PixelsUnder(Region.GetBounds(), Matrix, Clip);
    TRegionCover& Cover = FScratch->Region;
    Cover.Begin(Box);
    for (std::size_t I = 0; I < Steps; ++I) {
      Cover.BeginStep(Region.Step(I).Mode);
      DrawStep(I, Box, Cover);
      Cover.EndStep();
    }
    Cover.Emit(Sink);
  });
  SetMask(std::move(Mask));
  Recycle(FScratch->RecentClips.Put(Key, FClip));
}

std::shared_ptr<ICanvasFactory> CreateRasterCanvasFactory() {
  return std::make_shared<TRasterCanvasFactory>();
}

}  // namespace qxsvg
