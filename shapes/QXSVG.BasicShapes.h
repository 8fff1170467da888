// The basic shapes.
#pragma once

#include "shapes/Circle.h"
#include "shapes/Line.h"
#include "shapes/Polyline.h"
#include "shapes/Rectangle.h"
