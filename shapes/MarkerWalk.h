// The vertices of a shape, and the markers that stand on them.
#pragma once

#include <span>

#include "graphics/GraphicElement.h"
#include "graphics/surface/PathView.h"

namespace qxsvg {

// Draws the markers that Element names at the vertices of Path, which is in its user space. Nothing
// without a document or with fewer than two points.
void DrawMarkers(TSVGGraphicElement& Element, const TQXPathView& Path, const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect);
// The same for the vertices of a polyline.
void DrawMarkers(TSVGGraphicElement& Element, std::span<const TPointF> Points,
                 const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);

// What a marker of Element covers at a point of the canvas; null for nothing.
TSVGElement* MarkersAtPos(TSVGGraphicElement& Element, const TQXPathView& Path,
                          const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                          const TRectF& Rect, const TSVGFindOptions& Options);
TSVGElement* MarkersAtPos(TSVGGraphicElement& Element, std::span<const TPointF> Points,
                          const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                          const TRectF& Rect, const TSVGFindOptions& Options);

}  // namespace qxsvg
