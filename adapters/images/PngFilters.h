// The row filters of PNG and the choice between them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace qxsvg::images {

// Filters rows of one size, one after the other.
class TPngFilters {
 public:
  // RowSize and PixelSize in bytes.
  TPngFilters(std::size_t RowSize, std::size_t PixelSize);

  // Writes the filter's number and the filtered Row to Target, which has RowSize + 1 bytes. Prior
  // is the row above, all zeros for the first.
  void Filter(const std::uint8_t* Row, const std::uint8_t* Prior, std::uint8_t* Target);

 private:
  std::size_t FRowSize, FPixelSize;
  std::array<std::vector<std::uint8_t>, 2> FScratch;
};

}  // namespace qxsvg::images
