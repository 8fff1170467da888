// A picture as PNG holds it: what kind the pixels need, and their rows in bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "graphics/surface/Bitmap.h"

namespace qxsvg::images {

enum TColorType : std::uint8_t { ctGray = 0, ctColor = 2, ctPalette = 3, ctColorAlpha = 6 };

// The colours of a picture, as long as a palette can hold them.
class TPngPalette {
 public:
  TPngPalette() { FIndices.fill(NoIndex); }

  // The pixel's index, or nothing when that is a colour too many. Colours get their index in the
  // order of coming.
  std::optional<std::uint8_t> Add(std::uint32_t Pixel);
  const std::vector<std::uint32_t>& Colors() const { return FColors; }

 private:
  static constexpr int SlotBits = 10;
  static constexpr std::uint16_t NoIndex = 0xFFFF;
  std::array<std::uint16_t, 1 << SlotBits> FIndices;
  std::vector<std::uint32_t> FColors;
};

// Refers to the pixels, which are premultiplied.
class TPngPicture {
 public:
  enum class TPalette { Allowed, None };

  // Finds the kind of PNG with the fewest bytes a row that holds every pixel as it is.
  explicit TPngPicture(TQXConstPixels Pixels, TPalette Palette = TPalette::Allowed);

  TColorType Type() const { return FType; }
  // Bits of a channel or index.
  int Depth() const { return FDepth; }
  std::int32_t Width() const { return FPixels.Width; }
  std::int32_t Height() const { return FPixels.Height; }
  std::size_t Channels() const { return FType == ctColorAlpha ? 4 : FType == ctColor ? 3 : 1; }
  // In bytes.
  std::size_t RowSize() const;
  const std::vector<std::uint32_t>& Colors() const { return FPalette.Colors(); }
  // The gray that stands for clear pixels among colours without alpha, where there are such.
  std::optional<std::uint8_t> Key() const { return FKey; }

  // Whether the row is the same as the one above it.
  bool IsRepeated(std::int32_t Y) const;
  // The row's RowSize bytes, before filtering.
  void Pack(std::int32_t Y, std::uint8_t* Target);

 private:
  void Analyse(TPalette Palette);
  std::optional<std::uint8_t> UnusedGray() const;
  void PackIndices(const std::uint32_t* Row, std::uint8_t* Target);

  TQXConstPixels FPixels;
  TColorType FType = ctColorAlpha;
  int FDepth = 8;
  std::optional<std::uint8_t> FKey;
  TPngPalette FPalette;
};

}  // namespace qxsvg::images
