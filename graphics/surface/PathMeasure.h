// What can be asked of a path without changing it.
#pragma once

#include <vector>

#include "foundation/DrawingEnums.h"
#include "graphics/surface/PathView.h"
#include "runtime/Export.h"

namespace qxsvg {

class TQXPathGeometry;

// The exact box of the geometry, the extremes of curves included, after M; the zero rectangle for
// an empty path. A move without a segment counts only where the path has nothing else.
QXSVG_API TRectF QXPathBounds(const TQXPathView& Path);
QXSVG_API TRectF QXPathBounds(const TQXPathView& Path, const TMatrix& M);
// The box of all points, controls included: cheaper, and never smaller than the exact one.
QXSVG_API TRectF QXPathControlBounds(const TQXPathView& Path);

// The path with every curve replaced by lines that differ by at most Tolerance (clamped to at least
// 1e-3 of the unit), appended to Target.
QXSVG_API void QXFlattenPath(const TQXPathView& Path, float Tolerance, TQXPathGeometry& Target);

// The length of the geometry along its figures, closing lines included; with Jumps also the
// straight ways from the end of a figure to the start of the next. Curves are measured to about
// 1e-6 of their length.
QXSVG_API double QXPathLength(const TQXPathView& Path, bool Jumps);

// Whether P lies inside the figures, all taken as closed; the edge itself counts as inside on the
// left and top sides. Exact on the curves, not on a flattened form.
QXSVG_API bool QXPathContains(const TQXPathView& Path, TQXGPFillMode FillMode, TPointF P);

}  // namespace qxsvg
