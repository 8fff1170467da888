// Small trees for tests of graphic elements.
#pragma once

#include "graphics/SVGBrush.h"
#include "graphics/SVGFont.h"
#include "graphics/SVGPen.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {

// A document of the elements in Body, whose root has a view box of 200 by 100.
struct TTree : TDrawing {
  explicit TTree(std::string_view Body, const std::string& RootAttributes = "")
      : TDrawing(Body, "viewBox='0 0 200 100' " + RootAttributes) {}
  TSVGGraphicElement& operator[](std::string_view ID) { return Get(FromUtf8(ID)); }
};

}  // namespace qxsvg::test
