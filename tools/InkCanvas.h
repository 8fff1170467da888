// Where a drawing leaves ink.
#pragma once

#include <vector>

#include "graphics/surface/Canvas.h"

namespace qxsvg::tools {

// A canvas that draws nothing and gathers the box of what it is asked for, strokes with their
// width.
class InkCanvas final : public TQXGPCanvas {
 public:
  InkCanvas() : FClips{QXRect(GetDeviceBounds())} {}

  // In device coordinates; empty where nothing was drawn.
  const TRectF& Ink() const { return FInk; }

  // As large as pictures may be, on all sides: what lies outside the drawing is no less there.
  TRect GetDeviceBounds() const override;
  TRectF GetClipBounds() const override { return FClips.back(); }
  bool IsVisible(TPointF Point) const override { return FClips.back().Contains(Point); }

 protected:
  void DoSaveState() override { FClips.push_back(FClips.back()); }
  void DoRestoreState() override { FClips.pop_back(); }
  void DoIntersectClipRect(const TRectF& R) override;
  void DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) override;
  void DoClear(TQXGPColor) override {}
  void DoFillPath(const TQXPathSource& Source, const TQXGPBrush& Brush, float Opacity) override;
  void DoDrawPath(const TQXPathSource& Source, const TQXGPPen& Pen, float Opacity) override;
  void DoDrawImage(const TQXConstPixels& Pixels, const TRectF& Dest, const TRectF& Source,
                   float Opacity) override;

 private:
  void Add(const TRectF& Box);

  std::vector<TRectF> FClips;
  TRectF FInk;
};

}  // namespace qxsvg::tools
