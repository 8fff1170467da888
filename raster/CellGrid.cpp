#include "raster/CellGrid.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qxsvg {

namespace {

constexpr std::int32_t FractionMask = SubpixelScale - 1;
// Positions along a line have this many bits below a subpixel.
constexpr int SlopeBits = 24;
constexpr std::int32_t Double = 2 * SubpixelScale;

// The callers see to it that the value, where it is used, fits.
std::int32_t Truncate(float V) {
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
  std::int32_t Full() const { return Cover * Double; }
  std::int32_t Within() const {
    return Cover * (Double - (Left & FractionMask) - (Right & FractionMask));
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
    return Truncate(Rate * static_cast<float>(Double) * static_cast<float>(Distance));
  }
};

// A pixel that is wound around more often than the sum can hold shows a wrong coverage, and no
// more.
inline void Add(std::int32_t& Cell, std::int32_t Change) {
  Cell = static_cast<std::int32_t>(static_cast<std::uint32_t>(Cell) +
                                   static_cast<std::uint32_t>(Change));
}

void AddWide(std::int32_t* Cells, std::uint8_t* Marks, const TRowPiece& Piece) {
  const std::int32_t First = Piece.LeftCell(), Last = Piece.RightCell();
  std::int32_t Before = Piece.First();
  Add(Cells[First], Before);
  const float Rate = Piece.Rate * static_cast<float>(Double);
  std::int32_t Distance = (First + 1) * SubpixelScale + SubpixelScale / 2 - Piece.Left;
  for (std::int32_t I = First + 1; I < Last; ++I, Distance += SubpixelScale) {
    const std::int32_t Now = Truncate(Rate * static_cast<float>(Distance));
    Add(Cells[I], Now - Before);
    Before = Now;
  }
  const std::int32_t Now = Piece.Last();
  Add(Cells[Last], Now - Before);
  Add(Cells[Last + 1], Piece.Full() - Now);
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
  Add(Cells[First], A);
  Add(Cells[First + 1], B - A);
  Add(Cells[First + 2], Full - B);
  Marks[First / GroupCells] = 1;
  Marks[(First + 2) / GroupCells] = 1;
}

TRowPiece MakePiece(std::int32_t XA, std::int32_t XB, std::int32_t Cover, float Rate) {
  return {std::min(XA, XB), std::max(XA, XB), Cover, Rate};
}

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
  constexpr double Unit = std::int64_t{1} << SlopeBits;
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
  Grow(FStride * FHeight, FMarkStride * FHeight);
}

void TCellGrid::Abandon() {
  std::memset(FCells.get(), 0, static_cast<std::size_t>(FStride * FHeight) * sizeof(std::int32_t));
  std::memset(FMarks.get(), 0, static_cast<std::size_t>(FMarkStride * FHeight));
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
      if (FIsInside)
        Line(A, B);
      else
        ClippedLine(A, B);
    }
  }
}

void TCellGrid::Line(TFixedPoint A, TFixedPoint B) {
  std::int32_t Sign = 1;
  if (A.Y > B.Y) {
    std::swap(A, B);
    Sign = -1;
  }
  const std::int32_t First = A.Y >> SubpixelBits, Last = (B.Y - 1) >> SubpixelBits;
  const std::int32_t DX = B.X - A.X, DY = B.Y - A.Y;
  std::int32_t* Cells = FCells.get() + First * FStride;
  std::uint8_t* Marks = FMarks.get() + First * FMarkStride;
  const float Rate = RateOf(Sign * DY, DX);
  if (First == Last) return AddPiece(Cells, Marks, MakePiece(A.X, B.X, Sign * DY, Rate));

  auto [At, Step] = SlopeOf(A.X, A.Y, DX, DY);
  auto X = static_cast<std::int32_t>(At >> SlopeBits);
  AddPiece(Cells, Marks, MakePiece(A.X, X, Sign * (SubpixelScale - (A.Y & FractionMask)), Rate));
  const std::int32_t Cover = Sign * SubpixelScale;
  for (std::int32_t Row = First + 1; Row < Last; ++Row) {
    Cells += FStride;
    Marks += FMarkStride;
    At += Step;
    const auto Next = static_cast<std::int32_t>(At >> SlopeBits);
    AddPiece(Cells, Marks, MakePiece(X, Next, Cover, Rate));
    X = Next;
  }
  AddPiece(Cells + FStride, Marks + FMarkStride,
           MakePiece(X, B.X, Sign * (B.Y - Last * SubpixelScale), Rate));
}

// The same line, seen through the box.
void TCellGrid::ClippedLine(TFixedPoint A, TFixedPoint B) {
  std::int32_t Sign = 1;
  if (A.Y > B.Y) {
    std::swap(A, B);
    Sign = -1;
  }
  if (B.Y <= 0 || A.Y >= FHeight * SubpixelScale) return;
  const std::int32_t Right = FWidth * SubpixelScale;
  if (A.Y >= 0 && B.Y <= FHeight * SubpixelScale && std::min(A.X, B.X) >= 0 &&
      std::max(A.X, B.X) <= Right)
    return Sign > 0 ? Line(A, B) : Line(B, A);
  if (std::min(A.X, B.X) >= Right) return;
  const std::int32_t First = A.Y >> SubpixelBits, Last = (B.Y - 1) >> SubpixelBits;
  const std::int64_t DX = std::int64_t{B.X} - A.X, DY = std::int64_t{B.Y} - A.Y;
  const float Rate = RateOf(Sign * static_cast<std::int32_t>(DY), DX);
  if (First == Last) return ClippedRow(First, A.X, B.X, Sign * static_cast<std::int32_t>(DY), Rate);

  const TSlope Slope = SlopeOf(A.X, A.Y, DX, DY);
  for (std::int32_t Row = std::max(First, 0); Row <= std::min(Last, FHeight - 1); ++Row) {
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
    Add(Cells[0], Piece.Full());
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
    Add(Cells[I], Now - Before);
    Before = Now;
    Marks[I / GroupCells] = 1;
  }
  if (Last < FWidth) {
    Add(Cells[Last + 1], Piece.Full() - Before);
    Marks[(Last + 1) / GroupCells] = 1;
  }
}

}  // namespace qxsvg
