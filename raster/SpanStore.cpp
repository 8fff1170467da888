#include "raster/SpanStore.h"

#include <algorithm>
#include <span>

#include "raster/HashMix.h"

namespace qxsvg {

void TSpanStore::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  const TRect Box{Spans.front().X, Y, Spans.back().End(), Y + 1};
  FBox = FRows.empty() ? Box
                       : TRect{std::min(FBox.Left, Box.Left), FBox.Top,
                               std::max(FBox.Right, Box.Right), Box.Bottom};
  // Rectangles are one row many times.
  if (!FRows.empty() && IsSame(FRows.back(), Spans)) {
    FRows.push_back({Y, FRows.back().First, FRows.back().Count});
    return;
  }
  const std::size_t First = FSpans.size();
  for (const TCoverSpan& Span : Spans) {
    if (Span.IsEven()) {
      FSpans.push_back(Span);
      continue;
    }
    const std::uint8_t* C = Span.Covers(Covers);
    const auto At = static_cast<std::uint32_t>(FCovers.size());
    FSpans.push_back({Span.X, Span.Length, TCoverSpan::CoversBase + At});
    FCovers.insert(FCovers.end(), C, C + Span.Length);
  }
  FRows.push_back(
      {Y, static_cast<std::uint32_t>(First), static_cast<std::uint32_t>(FSpans.size() - First)});
}

void TSpanStore::Block(const TRect& Box, std::uint32_t Cover) {
  const TCoverSpan Span{Box.Left, static_cast<std::int32_t>(Box.Width()), Cover};
  Row(Box.Top, {&Span, 1}, nullptr);
  TRow Same = FRows.back();
  while (++Same.Y < Box.Bottom) FRows.push_back(Same);
  FBox.Bottom = Box.Bottom;
}

// Covers are not looked at: rows with some are seldom the same.
bool TSpanStore::IsSame(const TRow& Row, std::span<const TCoverSpan> Spans) const {
  const auto IsSameSpan = [](const TCoverSpan& A, const TCoverSpan& B) {
    return A.IsEven() && A.Cover == B.Cover && A.X == B.X && A.Length == B.Length;
  };
  const auto First = FSpans.begin() + Row.First;
  return Row.Count == Spans.size() && std::equal(Spans.begin(), Spans.end(), First, IsSameSpan);
}

std::size_t TSpanStore::Bytes() const {
  return FRows.size() * sizeof(TRow) + FSpans.size() * sizeof(TCoverSpan) + FCovers.size();
}

void TSpanStore::Clear() {
  FRows.clear();
  FSpans.clear();
  FCovers.clear();
  FBox = {};
}

std::span<const TCoverSpan> TSpanStore::RowAt(std::int32_t Y) const {
  if (FRows.empty() || Y < FRows.front().Y) return {};
  // Most often there is no gap.
  const auto Place = static_cast<std::size_t>(Y - FRows.front().Y);
  if (Place < FRows.size() && FRows[Place].Y == Y)
    return {FSpans.data() + FRows[Place].First, FRows[Place].Count};
  const auto Found = std::lower_bound(FRows.begin(), FRows.end(), Y, IsAbove);
  if (Found == FRows.end() || Found->Y != Y) return {};
  return {FSpans.data() + Found->First, Found->Count};
}

TRect TSpanStore::FullBox() const {
  const auto IsWider = [](const TCoverSpan& A, const TCoverSpan& B) { return A.Length < B.Length; };
  const std::int32_t Middle = FBox.Top + (FBox.Bottom - FBox.Top) / 2;
  const std::span<const TCoverSpan> Row = RowAt(Middle);
  const auto Widest = std::max_element(Row.begin(), Row.end(), IsWider);
  if (Widest == Row.end() || Widest->Cover != FullCover) return {};
  TRect Box{Widest->X, Middle, Widest->End(), Middle + 1};
  const auto IsFull = [&](const TRow& Other) {
    const std::span<const TCoverSpan> Spans{FSpans.data() + Other.First, Other.Count};
    return Spans.data() == Row.data() ||
           std::any_of(Spans.begin(), Spans.end(), [&](const TCoverSpan& S) {
             return S.Cover == FullCover && S.X <= Box.Left && Box.Right <= S.End();
           });
  };
  const auto Found = std::lower_bound(FRows.begin(), FRows.end(), Middle, IsAbove);
  for (auto Above = Found; Above != FRows.begin() && Above[-1].Y == Box.Top - 1; --Box.Top)
    if (!IsFull(*--Above)) break;
  for (auto Below = Found + 1; Below != FRows.end() && Below->Y == Box.Bottom; ++Box.Bottom)
    if (!IsFull(*Below++)) break;
  return Box;
}

std::uint64_t TSpanStore::Hash() const {
  std::uint64_t Hash = 0x51ed270b7a3c6d1fu;
  for (auto Row = FRows.begin(); Row != FRows.end();) {
    const TRow First = *Row;
    MixHash(Hash, static_cast<std::uint64_t>(First.Y) << 32 | First.Count);
    std::uint32_t Count = 1;
    while (++Row != FRows.end() && Row->First == First.First && Row->Y == Row[-1].Y + 1) ++Count;
    // Rows may share their spans across a gap, too.
    MixHash(Hash, std::uint64_t{First.First} << 32 | Count);
  }
  for (const TCoverSpan& Span : FSpans) {
    MixHash(Hash,
            static_cast<std::uint64_t>(Span.X) << 32 | static_cast<std::uint32_t>(Span.Length));
    MixHash(Hash, Span.Cover);
  }
  MixHash(Hash, std::as_bytes(std::span(FCovers)));
  return Hash;
}

}  // namespace qxsvg
