// What one line leaves in one row of cells.
#pragma once

#include <algorithm>
#include <cstdint>

#include "raster/CellGrid.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qxsvg {

inline constexpr std::int32_t FractionMask = SubpixelScale - 1;
inline constexpr std::int32_t DoubleScale = 2 * SubpixelScale;

// The callers see to it that the value, where it is used, fits.
inline std::int32_t Truncate(float V) {
#if defined(__SSE2__)
  return _mm_cvttss_si32(_mm_set_ss(V));
#else
  return static_cast<std::int32_t>(std::clamp(V, -2e9f, 2e9f));
#endif
}

struct TRowPiece {
  // Left and right end, in subpixels from the box.
  std::int32_t Left, Right;
  // What the piece covers of the row, with the line's sign, and that by subpixel of width.
  std::int32_t Cover;
  float Rate;

  std::int32_t LeftCell() const { return Left >> SubpixelBits; }
  std::int32_t RightCell() const { return Right >> SubpixelBits; }
  // The coverage of one pixel by the area right of the piece. The first and the last pixel hold a
  // triangle less or more than a whole one, those between a trapezium.
  std::int32_t Full() const { return Cover * DoubleScale; }
  std::int32_t Within() const {
    return Cover * (DoubleScale - (Left & FractionMask) - (Right & FractionMask));
  }
  std::int32_t First() const {
    const std::int32_t Width = SubpixelScale - (Left & FractionMask);
    return Truncate(Rate * static_cast<float>(Width * Width));
  }
  std::int32_t Last() const {
    const std::int32_t Width = Right & FractionMask;
    return Full() - Truncate(Rate * static_cast<float>(Width * Width));
  }
  std::int32_t Between(std::int64_t Cell) const {
    const std::int64_t Distance = Cell * SubpixelScale + SubpixelScale / 2 - Left;
    return Truncate(Rate * static_cast<float>(DoubleScale) * static_cast<float>(Distance));
  }
};

// A pixel that is wound around more often than the sum can hold shows a wrong coverage, and no
// more.
inline void AddToCell(std::int32_t& Cell, std::int32_t Change) {
  Cell = static_cast<std::int32_t>(static_cast<std::uint32_t>(Cell) +
                                   static_cast<std::uint32_t>(Change));
}

inline void AddWide(std::int32_t* Cells, std::uint8_t* Marks, const TRowPiece& Piece) {
  const std::int32_t First = Piece.LeftCell(), Last = Piece.RightCell();
  std::int32_t Before = Piece.First();
  AddToCell(Cells[First], Before);
  const float Rate = Piece.Rate * static_cast<float>(DoubleScale);
  std::int32_t Distance = (First + 1) * SubpixelScale + SubpixelScale / 2 - Piece.Left;
  for (std::int32_t I = First + 1; I < Last; ++I, Distance += SubpixelScale) {
    const std::int32_t Now = Truncate(Rate * static_cast<float>(Distance));
    AddToCell(Cells[I], Now - Before);
    Before = Now;
  }
  const std::int32_t Now = Piece.Last();
  AddToCell(Cells[Last], Now - Before);
  AddToCell(Cells[Last + 1], Piece.Full() - Now);
  for (std::int32_t Group = First / GroupCells; Group <= (Last + 1) / GroupCells; ++Group)
    Marks[Group] = 1;
}

// One and two cells are told apart without a branch, which could not be foreseen.
inline void AddPiece(std::int32_t* Cells, std::uint8_t* Marks, const TRowPiece& Piece) {
  const std::int32_t First = Piece.LeftCell(), Last = Piece.RightCell();
  if (Last - First > 1) return AddWide(Cells, Marks, Piece);
  const bool IsOne = First == Last;
  const std::int32_t Full = Piece.Full(), Within = Piece.Within(), Start = Piece.First(),
                     End = Piece.Last();
  const std::int32_t A = IsOne ? Within : Start, B = IsOne ? Full : End;
  AddToCell(Cells[First], A);
  AddToCell(Cells[First + 1], B - A);
  AddToCell(Cells[First + 2], Full - B);
  Marks[First / GroupCells] = 1;
  Marks[(First + 2) / GroupCells] = 1;
}

inline TRowPiece MakePiece(std::int32_t XA, std::int32_t XB, std::int32_t Cover, float Rate) {
  return {std::min(XA, XB), std::max(XA, XB), Cover, Rate};
}

}  // namespace qxsvg
