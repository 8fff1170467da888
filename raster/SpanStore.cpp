#include "raster/SpanStore.h"

#include <algorithm>
#include <cstring>

#include "raster/Kernels.h"
#include "raster/Paint.h"

namespace qxsvg {

namespace {

struct TPackedHead {
  std::uint32_t Rows = 0, Spans = 0, Covers = 0, Unused = 0;
};

void Mix(std::uint64_t& Hash, std::uint64_t Value) {
  Hash = (Hash ^ Value) * 0x9e3779b97f4a7c15u;
  Hash ^= Hash >> 29;
}

}  // namespace

void TSpanStore::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  if (FNext) FNext->Row(Y, Spans, Covers);
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

void TSpanStore::Replay(std::span<const TRow> Rows, const TCoverSpan* Spans,
                        const std::uint8_t* Covers, ISpanSink& Sink) {
  if (const TColorTarget* const Target = Sink.Target()) {
    const auto Blend = Kernels().BlendColor;
    for (const TRow& Row : Rows)
      Blend(Target->Pixels.Row(Row.Y), {Spans + Row.First, Row.Count}, Covers, Target->Color);
    return;
  }
  for (const TRow& Row : Rows) Sink.Row(Row.Y, {Spans + Row.First, Row.Count}, Covers);
}

void TSpanStore::Replay(ISpanSink& Sink) const {
  Replay(FRows, FSpans.data(), FCovers.data(), Sink);
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

void TSpanStore::Pack(std::vector<std::uint64_t>& Words) const {
  const TPackedHead Head{static_cast<std::uint32_t>(FRows.size()),
                         static_cast<std::uint32_t>(FSpans.size()),
                         static_cast<std::uint32_t>(FCovers.size()), 0};
  const std::size_t Rows = FRows.size() * sizeof(TRow), Spans = FSpans.size() * sizeof(TCoverSpan);
  const std::size_t Bytes = sizeof Head + Rows + Spans + FCovers.size() + CoversPadding;
  Words.assign((Bytes + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t), 0);
  auto* Out = reinterpret_cast<std::uint8_t*>(Words.data());
  std::memcpy(Out, &Head, sizeof Head);
  Out += sizeof Head;
  if (Rows) std::memcpy(Out, FRows.data(), Rows);
  if (Spans) std::memcpy(Out + Rows, FSpans.data(), Spans);
  if (!FCovers.empty()) std::memcpy(Out + Rows + Spans, FCovers.data(), FCovers.size());
}

void TSpanStore::Replay(const std::uint64_t* Words, ISpanSink& Sink) {
  TPackedHead Head;
  std::memcpy(static_cast<void*>(&Head), Words, sizeof Head);
  const auto* Bytes = reinterpret_cast<const std::uint8_t*>(Words) + sizeof Head;
  // Both are made of 32-bit numbers, and the words are aligned for more.
  const auto* Rows = reinterpret_cast<const TRow*>(Bytes);
  const auto* Spans =
      reinterpret_cast<const TCoverSpan*>(Bytes + std::size_t{Head.Rows} * sizeof(TRow));
  const auto* Covers = reinterpret_cast<const std::uint8_t*>(Spans + Head.Spans);
  Replay({Rows, Head.Rows}, Spans, Covers, Sink);
}

}  // namespace qxsvg
