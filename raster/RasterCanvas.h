// The built-in canvas: draws on 32-bit premultiplied pixels in memory.
#pragma once

#include <vector>

#include "graphics/surface/Canvas.h"
#include "graphics/surface/CoverageCache.h"
#include "raster/Clip.h"
#include "raster/GradientPaint.h"
#include "raster/ImagePaint.h"
#include "raster/Rasterizer.h"

namespace qxsvg {

// Coverage is exact to 1/256 of a pixel and stored in 8 bits; colours are blended premultiplied in
// their sRGB values. The same drawing gives the same pixels on every machine, whole or in parts.
// Compositing quality has no effect; text is drawn as outlines under every hint.
class QXSVG_API TQXRasterCanvas final : public TQXGPCanvas {
 public:
  // The pixels stay the caller's and must outlive the canvas. Raises EInvalidGraphicOperation for a
  // side over Limits::BitmapSide.
  explicit TQXRasterCanvas(const TQXPixels& Pixels);
  ~TQXRasterCanvas() override;

  TRect GetDeviceBounds() const override;
  TRectF GetClipBounds() const override;
  bool IsVisible(TPointF DevicePoint) const override;
  bool HasStamps() const override { return true; }
  std::optional<TQXStampKey> StampKey(const TQXPathSource& Source, const TQXGPPen* Pen) override;
  bool PlaceStamp(const TQXCoverageStamps& Stamps, const TQXStampKey& Key, TPointF Shift,
                  TQXGPColor Color, float Opacity, TQXPlacedStamp& Placed) override;
  void DrawStamps(std::span<const TQXPlacedStamp> Placed) override;

 protected:
  void DoSaveState() override;
  void DoRestoreState() override;
  void DoIntersectClipRect(const TRectF& R) override;
  void DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) override;
  void DoClear(TQXGPColor Color) override;
  void DoFillPath(const TQXPathSource& Source, const TQXGPBrush& Brush, float Opacity) override;
  void DoDrawPath(const TQXPathSource& Source, const TQXGPPen& Pen, float Opacity) override;
  void DoFillRect(const TRectF& R, const TQXGPBrush& Brush, float Opacity) override;
  void DoDrawImage(const TQXConstPixels& Pixels, const TRectF& Dest, const TRectF& Source,
                   float Opacity) override;

 private:
  struct TScratch;

  bool IsAliased() const { return Quality().Smoothing == TQXGPSmoothingMode::smHighSpeed; }
  // Empty, in the memory of one that is no longer used.
  std::shared_ptr<TSpanStore> NewMask();
  // The memory of a mask that no clip holds any more serves the next clip.
  void Recycle(std::shared_ptr<const TSpanStore> Mask);
  void SetMask(std::shared_ptr<TSpanStore> Mask);
  template <class Drawing>
  void Cover(ISpanSink& Sink, const Drawing& Draw);
  // The matrix of a path, which is moved a little where the path is drawn in many places.
  TMatrix PlaceOf(const TQXPathSource& Source) const;
  // Draw takes the matrix to draw with, the pixels to draw to and a sink. Reach is how much is
  // covered around the path's points.
  template <class Drawing>
  void CoverKept(const TQXPathSource& Source, const TQXCoverageKey& Key, float Reach,
                 ISpanSink& Sink, const Drawing& Draw);
  template <class Drawing>
  bool CoverStamped(const TQXPathSource& Source, const TQXCoverageKey& Key, float Reach,
                    ISpanSink& Sink, const Drawing& Draw);
  template <class Covering>
  void Paint(TQXGPBrushKind Kind, const TQXGPBrush& Brush, const TRectF& Box, float Opacity,
             const Covering& Draw);
  template <class Covering>
  void PaintColor(TQXGPColor Color, float Opacity, const Covering& Draw);

  const TQXPixels FPixels;
  TClip FClip;
  std::vector<TClip> FSavedClips;
  std::unique_ptr<TScratch> FScratch;
};

// The service of this surface.
QXSVG_API std::shared_ptr<ICanvasFactory> CreateRasterCanvasFactory();

}  // namespace qxsvg
