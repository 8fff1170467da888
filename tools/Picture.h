// From a loaded drawing to the bytes of a picture.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/Geometry.h"
#include "graphics/surface/Bitmap.h"

namespace qxsvg {
class TSVGDocument;
class TSVGGraphicElement;
}  // namespace qxsvg

namespace qxsvg::tools {

// The size that a picture is asked to have, in pixels.
struct PictureSize {
  std::optional<double> Width, Height;
  double Zoom = 1;
  // With both sides given: the largest picture of the drawing's proportions that fits in.
  bool KeepAspectRatio = false;
};

// What the root says about its size, in pixels: its width and height, or the view box where they
// are missing or percentages. Where there is none either, it is that of the content, and the root
// is made to show all of this.
TSizeF NaturalSize(TSVGDocument& Drawing);

// The pixels of a picture of something of that natural size; broken pixels count as whole. Raises
// ESVGException for a size that is none or over the limit of bitmaps.
TPoint PixelSize(TSizeF Natural, const PictureSize& Wanted);

// The element of that identifier, in nested drawings too; raises ESVGException when there is none
// that can be drawn.
TSVGGraphicElement& GraphicElementByID(TSVGDocument& Drawing, const std::string& ID);

// The box of an element in the user space of the root's content.
TRectF BoxOfElement(TSVGDocument& Drawing, TSVGGraphicElement& Element);

// The colour that a text stands for; raises ESVGException for one that is none.
std::uint32_t ParseBackground(const std::string& Text);

// The codec of a format's name or, where that is empty, of a file's extension; PNG without either.
// Raises ESVGException for one that cannot be written.
String CodecFor(const std::string& Format, const std::string& File);

// Writes the picture into a file, which is replaced once it is whole, or to standard output for
// "-". Quality is that of the codec, or -1. Raises EStreamError.
void WritePicture(const TQXGPImage& Picture, StringView Codec, int Quality,
                  const std::string& File);

}  // namespace qxsvg::tools
