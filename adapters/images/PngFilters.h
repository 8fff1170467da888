// The row filters of PNG and the choice between them.
#pragma once

#include <cstdint>
#include <vector>

namespace qxsvg::images {

// Filters rows of one size, one after the other.
class TPngFilters {
 public:
  // RowSize and PixelSize in bytes.
  TPngFilters(std::size_t RowSize, std::size_t PixelSize);

  // Where the next row is to be put before Filter; RowSize bytes.
  std::uint8_t* Row() { return FRow.data() + Lead; }
  // Writes the filter's number and the filtered row to Target, which has RowSize + 1 bytes. The row
  // becomes the one above the next; the first lies below zeros.
  void Filter(std::uint8_t* Target);
  // The same for a row that equals the one above it, without having it.
  void Repeat(std::uint8_t* Target) const;
  // Makes the row that was put to Row the one above the next.
  void Skip() { FRow.swap(FPrior); }

 private:
  // Zeros before each row, for the pixel left of the first, and behind it, so that blocks are
  // whole.
  static constexpr std::size_t Lead = 8;

  std::size_t FRowSize, FPixelSize;
  std::vector<std::uint8_t> FRow, FPrior;
};

}  // namespace qxsvg::images
