// Everything that an application needs of the library.
#pragma once

#include "document/QXSVG.h"
#include "foundation/QXSVGTypes.h"
#include "foundation/QXSVGUtils.h"
#include "graphics/surface/QXGdiPlusGraphics.h"
#include "graphics/surface/QXGraphics.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "text/QXSVG.Text.h"
