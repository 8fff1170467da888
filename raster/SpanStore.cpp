#include "raster/SpanStore.h"

#include <algorithm>
#include <cstring>

namespace qxsvg {

namespace {

void Mix(std::uint64_t& Hash, std::uint64_t Value) {
  Hash = (Hash ^ Value) * 0x9e3779b97f4a7c15u;
  Hash ^= Hash >> 29;
}

}  // namespace

void TSpanStore::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  const TRect Box{Spans.front().X, Y, Spans.back().End(), Y + 1};
  FBox = FRows.empty() ? Box
                       : TRect{std::min(FBox.Left, Box.Left), FBox.Top,
                               std::max(FBox.Right, Box.Right), Box.Bottom};
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
  const auto Found =
      std::lower_bound(FRows.begin(), FRows.end(), Y,
                       [](const TRow& Row, std::int32_t Wanted) { return Row.Y < Wanted; });
  if (Found == FRows.end() || Found->Y != Y) return {};
  return {FSpans.data() + Found->First, Found->Count};
}

TRect TSpanStore::FullBox() const {
  const auto IsWider = [](const TCoverSpan& A, const TCoverSpan& B) { return A.Length < B.Length; };
  const auto FullIn = [](std::span<const TCoverSpan> Row, std::int32_t Left, std::int32_t Right) {
    return std::any_of(Row.begin(), Row.end(), [&](const TCoverSpan& S) {
      return S.Cover == FullCover && S.X <= Left && Right <= S.End();
    });
  };
  const std::int32_t Middle = FBox.Top + (FBox.Bottom - FBox.Top) / 2;
  const std::span<const TCoverSpan> Row = RowAt(Middle);
  const auto Widest = std::max_element(Row.begin(), Row.end(), IsWider);
  if (Widest == Row.end() || Widest->Cover != FullCover) return {};
  TRect Box{Widest->X, Middle, Widest->End(), Middle + 1};
  while (FullIn(RowAt(Box.Top - 1), Box.Left, Box.Right)) --Box.Top;
  while (FullIn(RowAt(Box.Bottom), Box.Left, Box.Right)) ++Box.Bottom;
  return Box;
}

std::uint64_t TSpanStore::Hash() const {
  std::uint64_t Hash = 0x51ed270b7a3c6d1fu;
  for (const TRow& Row : FRows) Mix(Hash, static_cast<std::uint64_t>(Row.Y) << 32 | Row.Count);
  for (const TCoverSpan& Span : FSpans) {
    Mix(Hash, static_cast<std::uint64_t>(Span.X) << 32 | static_cast<std::uint32_t>(Span.Length));
    Mix(Hash, Span.Cover);
  }
  std::size_t I = 0;
  for (; I + sizeof(std::uint64_t) <= FCovers.size(); I += sizeof(std::uint64_t)) {
    std::uint64_t Word;
    std::memcpy(&Word, FCovers.data() + I, sizeof Word);
    Mix(Hash, Word);
  }
  for (; I < FCovers.size(); ++I) Mix(Hash, FCovers[I]);
  return Hash;
}

}  // namespace qxsvg
