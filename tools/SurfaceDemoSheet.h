// One sheet with what the drawing surface can do, for a person to look at.
#pragma once

#include "graphics/surface/Canvas.h"

namespace qxsvg::tools {

inline constexpr std::int32_t SurfaceDemoWidth = 720, SurfaceDemoHeight = 600;

// Caps, joins, dashes, fill rules, gradients, patterns, clips and opacity, a row each, on white.
void DrawSurfaceDemo(TQXGPCanvas& Canvas);

}  // namespace qxsvg::tools
