// The unit QXGdiPlusGraphics: the canvas and everything that draws on it.
#pragma once

#include "graphics/surface/Bitmap.h"
#include "graphics/surface/Brush.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/CoverageCache.h"
#include "graphics/surface/Font.h"
#include "graphics/surface/FontEngine.h"
#include "graphics/surface/Gradient.h"
#include "graphics/surface/GraphicsObject.h"
#include "graphics/surface/Path.h"
#include "graphics/surface/Pen.h"
#include "graphics/surface/Region.h"
#include "graphics/surface/StringFormat.h"
