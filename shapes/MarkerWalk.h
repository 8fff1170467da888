// The vertices of a shape, and the markers that stand on them.
#pragma once

#include "graphics/GraphicElement.h"

namespace qxsvg {

// Draws the markers that Element names at the vertices of Path, which is its own and in its user
// space. Nothing without a document or with fewer than two points.
void DrawMarkers(TSVGGraphicElement& Element, const TQXPathData& Path, const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect);
// The same for the vertices of a polyline, and the ends of a line.
void DrawMarkers(TSVGGraphicElement& Element, const TQXPoints& Points, const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect);
void DrawMarkers(TSVGGraphicElement& Element, const TPointF (&Ends)[2], const TMatrix& Matrix,
                 TQXGPCanvas& Canvas, const TRectF& Rect);

// What a marker of Element covers at a point of the canvas; null for nothing.
TSVGElement* MarkersAtPos(TSVGGraphicElement& Element, const TQXPathData& Path,
                          const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                          const TRectF& Rect, const TSVGFindOptions& Options);
TSVGElement* MarkersAtPos(TSVGGraphicElement& Element, const TQXPoints& Points,
                          const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                          const TRectF& Rect, const TSVGFindOptions& Options);

}  // namespace qxsvg
