#include "raster/CellGrid.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "raster/CellPiece.h"
#include "raster/Kernels.h"

namespace qxsvg {

namespace {

// From so many whole rows on a steep line is worth the wide form.
constexpr std::int32_t SteepRowsFrom = 4;

// The cells of a band, so that they and their marks stay in the second cache between the lines that
// touch them and the sweep; boxes of some bands are worth the sorting of their lines.
constexpr std::ptrdiff_t BandCells = 1 << 16, BandedFrom = 3 * BandCells;
// More lines than this would push the cells out themselves.
constexpr std::size_t MostWaiting = 1 << 16;
constexpr std::uint32_t NoLine = ~0u;

// Cover by subpixel of width. A line that is steeper than one subpixel a row crosses into another
// cell, as the grid sees it, within one subpixel.
float RateOf(std::int32_t Cover, std::int64_t DX) {
  const float Rate =
      static_cast<float>(Cover) / static_cast<float>(std::max<std::int64_t>(DX < 0 ? -DX : DX, 1));
  return std::clamp(Rate, -static_cast<float>(SubpixelScale), static_cast<float>(SubpixelScale));
}

struct TSlope {
  // The position at the first row boundary below the start, and the step from row to row.
  std::int64_t At, Step;
};
TSlope SlopeOf(std::int32_t X, std::int32_t Y, std::int64_t DX, std::int64_t DY) {
  constexpr double Unit = 1 << SlopeBits;
  const auto Slope =
      static_cast<std::int64_t>(static_cast<double>(DX) * Unit / static_cast<double>(DY));
  return {(std::int64_t{X} << SlopeBits) + (std::int64_t{1} << (SlopeBits - 1)) +
              Slope * (SubpixelScale - (Y & FractionMask)),
          Slope * SubpixelScale};
}

}  // namespace

std::int32_t TCellGrid::MaxRows(std::int32_t Width) {
  return static_cast<std::int32_t>(std::max<std::int64_t>(1, MaxCells / (Width + GroupCells)));
}

void TCellGrid::Grow(std::int64_t Cells, std::int64_t Marks) {
  if (Cells > FCellRoom) {
    FCells.reset();
    FCellRoom = 0;
    FCells = std::make_unique<std::int32_t[]>(static_cast<std::size_t>(Cells));
    FCellRoom = Cells;
  }
  if (Marks > FMarkRoom) {
    FMarks.reset();
    FMarkRoom = 0;
    FMarks = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(Marks));
    FMarkRoom = Marks;
  }
}

void TCellGrid::Begin(const TRect& Box, bool IsInside) {
  FBox = Box;
  FIsInside = IsInside;
  FLowest = std::numeric_limits<std::int32_t>::max() / 2;
  FHighest = -FLowest;
  FWidth = static_cast<std::int32_t>(Box.Width());
  FHeight = static_cast<std::int32_t>(Box.Height());
  // A line at the right side touches two cells more.
  const std::ptrdiff_t Groups = (FWidth + 2) / GroupCells + 1;
  FStride = Groups * GroupCells;
  FMarkStride = (Groups + MarkBlock - 1) / MarkBlock * MarkBlock;
  FIsBanded = FStride * FHeight >= BandedFrom;
  FWasSwept = false;
  FBandTop = 0;
  FBandRows = FHeight;
  if (FIsBanded) {
    FBandRows = static_cast<std::int32_t>(std::max<std::ptrdiff_t>(BandCells / FStride, 8));
    FBand = -1;
    FWaiting.clear();
    FBandLists.assign(static_cast<std::size_t>((FHeight - 1) / FBandRows + 1), NoLine);
  }
  FBandBottom = std::min(FBandRows, FHeight);
  Grow(FStride * FBandRows, FMarkStride * FBandRows);
}

void TCellGrid::Wait(TFixedPoint A, TFixedPoint B) {
  if (FWaiting.size() == MostWaiting) {
    DrawWaiting();
    return AnyLine(A, B);
  }
  const std::int32_t Row = std::max(std::min(A.Y, B.Y), 0) >> SubpixelBits;
  std::uint32_t& List = FBandLists[static_cast<std::size_t>(Row / FBandRows)];
  FWaiting.push_back({A, B, List});
  List = static_cast<std::uint32_t>(FWaiting.size() - 1);
}

// Gives bands up.
void TCellGrid::DrawWaiting() {
  Grow(FStride * FHeight, FMarkStride * FHeight);
  FIsBanded = false;
  FBandRows = FBandBottom = FHeight;
  for (const TWaiting& W : FWaiting) AnyLine(W.A, W.B);
}

bool TCellGrid::NextBand() {
  if (!FIsBanded) return !std::exchange(FWasSwept, true);
  const auto Count = static_cast<std::int32_t>(FBandLists.size());
  while (++FBand < Count && FBandLists[static_cast<std::size_t>(FBand)] == NoLine) continue;
  if (FBand >= Count) return false;
  FBandTop = FBand * FBandRows;
  FBandBottom = std::min(FBandTop + FBandRows, FHeight);
  for (std::uint32_t I = FBandLists[static_cast<std::size_t>(FBand)]; I != NoLine;) {
    TWaiting& W = FWaiting[I];
    AnyLine(W.A, W.B);
    const std::uint32_t Next = W.Next;
    if (FBand + 1 < Count && std::max(W.A.Y, W.B.Y) > FBandBottom * SubpixelScale) {
      std::uint32_t& List = FBandLists[static_cast<std::size_t>(FBand) + 1];
      W.Next = List;
      List = I;
    }
    I = Next;
  }
  return true;
}

void TCellGrid::Abandon() {
  if (FCellRoom != 0)
    std::memset(FCells.get(), 0, static_cast<std::size_t>(FCellRoom) * sizeof(std::int32_t));
  if (FMarkRoom != 0) std::memset(FMarks.get(), 0, static_cast<std::size_t>(FMarkRoom));
}

// Rounds to the nearest subpixel, halves to even, and takes the box's corner away. Within the box
// the result is held to its sides: whatever the caller promised, no cell outside is touched.
void TCellGrid::Convert(std::span<const TPointF> Points) {
  const std::int32_t OX = FBox.Left * SubpixelScale, OY = FBox.Top * SubpixelScale;
  constexpr float Far = QXFarthestPixel * SubpixelScale;
  const std::int32_t MaxX = FWidth * SubpixelScale, MaxY = FHeight * SubpixelScale;
  const std::size_t Count = Points.size();
  std::size_t I = 0;
#if defined(__SSE2__)
  const __m128 Scale = _mm_set1_ps(SubpixelScale), Low = _mm_set1_ps(-Far), High = _mm_set1_ps(Far);
  const __m128i Origin = _mm_set_epi32(OY, OX, OY, OX);
  const __m128i Most = _mm_set_epi32(MaxY, MaxX, MaxY, MaxX);
  const __m128i All = _mm_set1_epi32(FIsInside ? -1 : 0);
  __m128i Lowest = _mm_set1_epi32(FLowest), Highest = _mm_set1_epi32(FHighest);
  for (; I + 2 <= Count; I += 2) {
    __m128 V = _mm_mul_ps(_mm_loadu_ps(&Points[I].X), Scale);
    V = _mm_min_ps(_mm_max_ps(V, Low), High);
    __m128i N = _mm_sub_epi32(_mm_cvtps_epi32(V), Origin);
    const __m128i Over = _mm_and_si128(_mm_cmpgt_epi32(N, Most), All);
    N = _mm_or_si128(_mm_and_si128(Over, Most), _mm_andnot_si128(Over, N));
    N = _mm_andnot_si128(_mm_and_si128(_mm_srai_epi32(N, 31), All), N);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(&FFixed[I]), N);
    const __m128i Lower = _mm_cmpgt_epi32(Lowest, N), Higher = _mm_cmpgt_epi32(N, Highest);
    Lowest = _mm_or_si128(_mm_and_si128(Lower, N), _mm_andnot_si128(Lower, Lowest));
    Highest = _mm_or_si128(_mm_and_si128(Higher, N), _mm_andnot_si128(Higher, Highest));
  }
  alignas(16) std::int32_t Ends[8];
  _mm_store_si128(reinterpret_cast<__m128i*>(Ends), Lowest);
  _mm_store_si128(reinterpret_cast<__m128i*>(Ends + 4), Highest);
  FLowest = std::min(Ends[1], Ends[3]);
  FHighest = std::max(Ends[5], Ends[7]);
#endif
  for (; I < Count; ++I) {
    const auto Fixed = [&](float V, std::int32_t From, std::int32_t Most) {
      V *= SubpixelScale;
      V = V > -Far ? std::min(V, Far) : -Far;
      const auto N = static_cast<std::int32_t>(std::nearbyint(V)) - From;
      return FIsInside ? std::clamp(N, 0, Most) : N;
    };
    FFixed[I] = {Fixed(Points[I].X, OX, MaxX), Fixed(Points[I].Y, OY, MaxY)};
    FLowest = std::min(FLowest, FFixed[I].Y);
    FHighest = std::max(FHighest, FFixed[I].Y);
  }
}

void TCellGrid::Consume(std::span<const TPointF> Points, std::span<const TQXPolyline> Lines) {
  Convert(Points);
  for (const TQXPolyline& Polyline : Lines) {
    const TFixedPoint* P = &FFixed[Polyline.First];
    const TFixedPoint* const End = P + Polyline.Count - 1;
    for (; P != End; ++P) {
      if (P[0].Y == P[1].Y) continue;
      const TFixedPoint A = Polyline.IsReversed ? P[1] : P[0];
      const TFixedPoint B = Polyline.IsReversed ? P[0] : P[1];
      if (!FIsInside && !IsSeen(A, B)) continue;
      if (FIsBanded)
        Wait(A, B);
      else
        AnyLine(A, B);
    }
  }
}

// Whether the line leaves anything in the box. What lies left of it does.
bool TCellGrid::IsSeen(TFixedPoint A, TFixedPoint B) const {
  return std::max(A.Y, B.Y) > 0 && std::min(A.Y, B.Y) < FHeight * SubpixelScale &&
         std::min(A.X, B.X) < FWidth * SubpixelScale;
}

void TCellGrid::AnyLine(TFixedPoint A, TFixedPoint B) {
  if (FIsInside)
    Line(A, B);
  else
    ClippedLine(A, B);
}

// As much of the line as the band holds; what it leaves in a row does not depend on the band.
void TCellGrid::Line(TFixedPoint A, TFixedPoint B) {
  std::int32_t Sign = 1;
  if (A.Y > B.Y) {
    std::swap(A, B);
    Sign = -1;
  }
  const std::int32_t First = A.Y >> SubpixelBits, Last = (B.Y - 1) >> SubpixelBits;
  const std::int32_t DX = B.X - A.X, DY = B.Y - A.Y;
  const std::int32_t Top = std::max(First, FBandTop);
  std::int32_t* Cells = this->Cells(Top);
  std::uint8_t* Marks = this->Marks(Top);
  if (First == Last) {
    const std::int32_t Cover = Sign * DY, Cell = A.X >> SubpixelBits;
    if (Cell != B.X >> SubpixelBits)
      return AddPiece(Cells, Marks, MakePiece(A.X, B.X, Cover, RateOf(Cover, DX)));
    // Joins and fine curves are mostly lines within one pixel.
    const std::int32_t Right = Cover * ((A.X & FractionMask) + (B.X & FractionMask));
    AddToCell(Cells[Cell], Cover * DoubleScale - Right);
    AddToCell(Cells[Cell + 1], Right);
    Marks[Cell / GroupCells] = 1;
    Marks[(Cell + 1) / GroupCells] = 1;
    return;
  }

  if (DX == 0) return VerticalLine(A.X, A.Y, B.Y, Sign);
  const float Rate = RateOf(Sign * DY, DX);
  auto [At, Step] = SlopeOf(A.X, A.Y, DX, DY);
  std::int32_t Row = First + 1;
  const std::int32_t End = std::min(Last, FBandBottom);
  if (First == Top) {
    const auto X = static_cast<std::int32_t>(At >> SlopeBits);
    AddPiece(Cells, Marks, MakePiece(A.X, X, Sign * (SubpixelScale - (A.Y & FractionMask)), Rate));
    Cells += FStride;
    Marks += FMarkStride;
  } else {
    At += (Top - Row) * Step;
    Row = Top;
  }
  const std::int32_t Cover = Sign * SubpixelScale;
  if (End - Row >= SteepRowsFrom && std::abs(DX) <= DY) {
    Kernels().AddSteepRows({Cells, Marks, FStride, FMarkStride, At, Step, End - Row, Cover, Rate});
    At += (End - Row) * Step;
    Cells += (End - Row) * FStride;
    Marks += (End - Row) * FMarkStride;
    Row = End;
  }
  auto X = static_cast<std::int32_t>(At >> SlopeBits);
  for (; Row < End; ++Row) {
    At += Step;
    const auto Next = static_cast<std::int32_t>(At >> SlopeBits);
    AddPiece(Cells, Marks, MakePiece(X, Next, Cover, Rate));
    X = Next;
    Cells += FStride;
    Marks += FMarkStride;
  }
  if (Last < FBandBottom)
    AddPiece(Cells, Marks, MakePiece(X, B.X, Sign * (B.Y - Last * SubpixelScale), Rate));
}

// What Line leaves of a line that stays at X.
void TCellGrid::VerticalLine(std::int32_t X, std::int32_t Top, std::int32_t Bottom,
                             std::int32_t Sign) {
  const std::int32_t First = std::max(Top, FBandTop * SubpixelScale);
  const std::int32_t Last = std::min(Bottom, FBandBottom * SubpixelScale);
  const std::int32_t Cell = X >> SubpixelBits, Part = X & FractionMask;
  std::int32_t Row = First >> SubpixelBits;
  std::int32_t* Cells = this->Cells(Row) + Cell;
  std::uint8_t* Marks = this->Marks(Row) + Cell / GroupCells;
  const std::ptrdiff_t Next = (Cell + 1) / GroupCells - Cell / GroupCells;
  const auto Add = [&](std::int32_t Cover) {
    const std::int32_t Right = Cover * 2 * Part;
    AddToCell(Cells[0], Cover * DoubleScale - Right);
    AddToCell(Cells[1], Right);
    Marks[0] = 1;
    Marks[Next] = 1;
    Cells += FStride;
    Marks += FMarkStride;
  };
  const std::int32_t End = Last >> SubpixelBits;
  if ((First & FractionMask) != 0) {
    Add(Sign * (std::min((Row + 1) * SubpixelScale, Last) - First));
    ++Row;
  }
  for (; Row < End; ++Row) Add(Sign * SubpixelScale);
  if (Row == End && Last > End * SubpixelScale) Add(Sign * (Last - End * SubpixelScale));
}

// The same line, seen through the box, in which it leaves something.
void TCellGrid::ClippedLine(TFixedPoint A, TFixedPoint B) {
  std::int32_t Sign = 1;
  if (A.Y > B.Y) {
    std::swap(A, B);
    Sign = -1;
  }
  const std::int32_t Right = FWidth * SubpixelScale;
  if (A.Y >= 0 && B.Y <= FHeight * SubpixelScale && std::min(A.X, B.X) >= 0 &&
      std::max(A.X, B.X) <= Right)
    return Sign > 0 ? Line(A, B) : Line(B, A);
  const std::int32_t First = A.Y >> SubpixelBits, Last = (B.Y - 1) >> SubpixelBits;
  const std::int64_t DX = std::int64_t{B.X} - A.X, DY = std::int64_t{B.Y} - A.Y;
  const float Rate = RateOf(Sign * static_cast<std::int32_t>(DY), DX);
  if (First == Last) return ClippedRow(First, A.X, B.X, Sign * static_cast<std::int32_t>(DY), Rate);

  const TSlope Slope = SlopeOf(A.X, A.Y, DX, DY);
  const std::int32_t End = std::min(Last + 1, FBandBottom);
  for (std::int32_t Row = std::max(First, FBandTop); Row < End; ++Row) {
    const std::int64_t Rows = std::int64_t{Row} - First;
    const std::int64_t From =
        Row == First ? A.X : (Slope.At + (Rows - 1) * Slope.Step) >> SlopeBits;
    const std::int64_t To = Row == Last ? B.X : (Slope.At + Rows * Slope.Step) >> SlopeBits;
    const std::int32_t Top = Row == First ? A.Y & FractionMask : 0;
    const std::int32_t Bottom = Row == Last ? B.Y - Last * SubpixelScale : SubpixelScale;
    ClippedRow(Row, From, To, Sign * (Bottom - Top), Rate);
  }
}

void TCellGrid::ClippedRow(std::int32_t Row, std::int64_t XA, std::int64_t XB, std::int32_t Cover,
                           float Rate) {
  std::int32_t* Cells = this->Cells(Row);
  std::uint8_t* Marks = this->Marks(Row);
  const TRowPiece Piece =
      MakePiece(static_cast<std::int32_t>(XA), static_cast<std::int32_t>(XB), Cover, Rate);
  const std::int32_t Right = FWidth * SubpixelScale;
  if (Piece.Left >= Right) return;
  if (Piece.Left >= 0 && Piece.Right <= Right) return AddPiece(Cells, Marks, Piece);
  if (Piece.Right <= 0) {
    AddToCell(Cells[0], Piece.Full());
    Marks[0] = 1;
    return;
  }
  const std::int32_t First = Piece.LeftCell(), Last = Piece.RightCell();
  std::int32_t Before = 0;
  for (std::int32_t I = std::max(First, 0); I <= std::min(Last, FWidth - 1); ++I) {
    const std::int32_t Now = First == Last ? Piece.Within()
                             : I == First  ? Piece.First()
                             : I == Last   ? Piece.Last()
                                           : Piece.Between(I);
    AddToCell(Cells[I], Now - Before);
    Before = Now;
    Marks[I / GroupCells] = 1;
  }
  if (Last < FWidth) {
    AddToCell(Cells[Last + 1], Piece.Full() - Before);
    Marks[(Last + 1) / GroupCells] = 1;
  }
}

}  // namespace qxsvg
