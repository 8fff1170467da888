// An area put together from paths.
#pragma once

#include <span>
#include <vector>

#include "graphics/surface/PathGeometry.h"

namespace qxsvg {

class TQXGPCanvas;
class TQXGPPath;

// One step of a region's making: the figures of Path by FillMode, combined with what the steps
// before it gave.
struct TQXRegionStep {
  TQXPathView Path;
  TQXGPFillMode FillMode = TQXGPFillMode::fmWinding;
  TQXGPCombineMode Mode = TQXGPCombineMode::cmUnion;
};

// Kept as the paths it was made of, exactly; a surface turns it into coverage. A new region is
// everything.
class QXSVG_API TQXGPRegion {
 public:
  explicit TQXGPRegion(TQXGPCanvas* Canvas = nullptr);
  virtual ~TQXGPRegion();

  // The region becomes that rectangle; nothing where a side is not finite.
  virtual void SetBounds(const TRectF& R);
  virtual void MakeEmpty();
  virtual void MakeInfinite();
  // Nothing with area in it: figures whose points all lie on one line are not taken in, and what
  // has no area after an intersection of boxes or a transformation is given up.
  virtual bool IsEmpty() const;
  // A matrix that is not finite changes nothing.
  virtual void Transform(const TMatrix& M);
  virtual void Combine(const TQXGPPath& Path, TQXGPCombineMode Mode);
  // Path is not a step of this region. Raises ESVGException past Limits::PathSegments.
  virtual void Combine(const TQXPathView& Path, TQXGPFillMode FillMode, TQXGPCombineMode Mode);
  virtual void Combine(const TRectF& R, TQXGPCombineMode Mode);

  bool IsInfinite() const { return FInfinite; }
  // The steps, in order, upon nothing, each a union or an intersection; none where IsInfinite. They
  // are valid until the next change.
  std::size_t StepCount() const { return FSteps.size(); }
  TQXRegionStep Step(std::size_t Index) const;
  // Whether the region is one rectangle with sides along the axes, and which.
  bool IsRectangle(TRectF& R) const;
  // A box that holds the region (controls of curves included); the zero rectangle when empty.
  TRectF GetBounds() const;
  bool Contains(TPointF P) const;

 private:
  struct TPart {
    std::size_t First;
    std::size_t Count;
    TQXGPFillMode FillMode;
    TQXGPCombineMode Mode;
  };
  TQXPathGeometry FGeometry;
  std::vector<TPart> FSteps;
  bool FInfinite = true;
};

}  // namespace qxsvg
