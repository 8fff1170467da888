// Small trees for tests of graphic elements.
#pragma once

#include <stdexcept>
#include <string>

#include "document/QXSVG.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGFont.h"
#include "graphics/SVGPen.h"
#include "shapes/QXSVG.BasicShapes.h"

namespace qxsvg::test {

// A document of the elements in Body, whose root has a view box of 200 by 100.
class TTree {
 public:
  explicit TTree(std::string_view Body, std::string_view RootAttributes = "") {
    Document.LoadFromText(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "xmlns:xlink=\"http://www.w3.org/1999/xlink\" viewBox=\"0 0 200 100\" " +
        std::string(RootAttributes) + ">" + std::string(Body) + "</svg>");
  }
  // The graphic element of that identifier; the test fails where there is none.
  TSVGGraphicElement& operator[](std::string_view ID) {
    TSVGElement* Found = Document.FindElement(FromUtf8(ID));
    if (!Found || !Found->AsGraphicElement())
      throw std::runtime_error("no element " + std::string(ID));
    return *Found->AsGraphicElement();
  }

  TSVGDocument Document;
};

}  // namespace qxsvg::test
