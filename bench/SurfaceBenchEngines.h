// The same drawing operations on each surface that is compared.
#pragma once

#include <memory>
#include <vector>

#include "bench/SurfaceBenchScene.h"
#include "graphics/surface/Bitmap.h"

namespace qxsvg::bench {

enum class TBenchGradient { Linear, Diagonal, Radial };

// Draws on its own square of premultiplied pixels, single-threaded, anti-aliased as well as it can.
class IBenchEngine {
 public:
  virtual ~IBenchEngine() = default;

  // A new white surface.
  virtual void Begin(int Size) = 0;
  // Takes paths and images into the engine's own form; not measured.
  virtual void Prepare(const TBenchScene& Scene) = 0;
  virtual void Prepare(const TQXPathGeometry& Clip, const TQXGPBitmap& Image) = 0;

  virtual void DrawScene(const TBenchScene& Scene, const TMatrix& M) = 0;
  virtual void FillAll(TQXGPColor Color) = 0;
  virtual void FillGradient(TBenchGradient Kind) = 0;
  // The prepared image, repeated all over, under that matrix.
  virtual void FillTiled(const TMatrix& M) = 0;
  virtual void DrawImage(const TRectF& Dest) = 0;
  // Between the two all is clipped by the prepared path.
  virtual void BeginClip() = 0;
  virtual void EndClip() = 0;
  virtual TQXConstPixels Pixels() const = 0;
};

std::unique_ptr<IBenchEngine> CreateOwnEngine();
// Null where the peer was not there when this was built.
std::unique_ptr<IBenchEngine> CreateCairoEngine();
std::unique_ptr<IBenchEngine> CreateQtEngine();

}  // namespace qxsvg::bench
