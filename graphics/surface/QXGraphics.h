// The unit QXGraphics: geometry and what is kept without a device.
#pragma once

#include "foundation/Color.h"
#include "foundation/DrawingEnums.h"
#include "foundation/Geometry.h"
#include "graphics/surface/ObjectRect.h"
#include "graphics/surface/PathData.h"
#include "graphics/surface/PathGeometry.h"
#include "graphics/surface/PathMeasure.h"
#include "graphics/surface/PathView.h"
#include "graphics/surface/Transform.h"
#include "runtime/FloatFormat.h"
