#include "raster/KeptSpans.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/Limits.h"
#include "raster/Paint.h"

namespace qxsvg {

namespace {

static_assert(Limits::BitmapSide <= std::numeric_limits<std::uint16_t>::max());

constexpr std::int32_t GroupPixels = sizeof(std::uint64_t), BandRows = 32;

struct TPackedHead {
  std::uint32_t Places = 0, Groups = 0, Bands = 0, Spans = 0;
};

template <class T>
std::size_t WordsOf(const std::vector<T>& Items) {
  return (Items.size() * sizeof(T) + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t);
}

}  // namespace

// All parts begin at words.
struct TKeptSpans::TPacked {
  const TGroupPlace* Places;
  const std::uint8_t* Covers;
  std::span<const TBand> Bands;
  const TSpan* Spans;
};

void TKeptSpans::Clear(bool IsForColor) {
  FHasGroups = IsForColor;
  FPlaces.clear();
  FCovers.clear();
  FSpans.clear();
  FBands.clear();
  FBandEnd = std::numeric_limits<std::int32_t>::min();
}

void TKeptSpans::Group(std::int32_t X, std::int32_t Y, const std::uint8_t* Covers,
                       std::int32_t Skipped) {
  std::uint64_t Eight = 0;
  auto* const Bytes = reinterpret_cast<std::uint8_t*>(&Eight);
  std::memcpy(Bytes + Skipped, Covers + Skipped, static_cast<std::size_t>(GroupPixels - Skipped));
  FPlaces.push_back({static_cast<std::uint16_t>(X), static_cast<std::uint16_t>(Y)});
  FCovers.push_back(Eight);
}

void TKeptSpans::EndBand() {
  FBands.push_back(
      {static_cast<std::uint32_t>(FCovers.size()), static_cast<std::uint32_t>(FSpans.size())});
}

void TKeptSpans::Row(std::int32_t Y, std::span<const TCoverSpan> Spans,
                     const std::uint8_t* Covers) {
  if (Y >= FBandEnd) {
    if (!FSpans.empty() || !FCovers.empty()) EndBand();
    FBandEnd = Y + BandRows;
  }
  const auto Short = [](std::int32_t V) { return static_cast<std::uint16_t>(V); };
  for (const TCoverSpan& Span : Spans) {
    if (Span.IsEven()) {
      FSpans.push_back(
          {Short(Span.X), Short(Y), Short(Span.Length), static_cast<std::uint16_t>(Span.Cover)});
      continue;
    }
    const std::uint8_t* const C = Span.Covers(Covers);
    if (!FHasGroups || Span.Length < GroupPixels) {
      const TSpan Kept{Short(Span.X), Short(Y), Short(Span.Length),
                       static_cast<std::uint16_t>(TCoverSpan::CoversBase)};
      FSpans.push_back(Kept);
      const std::size_t At = FSpans.size();
      FSpans.resize(At + Kept.CoverSpans());
      std::memcpy(static_cast<void*>(&FSpans[At]), C, static_cast<std::size_t>(Span.Length));
      continue;
    }
    std::int32_t I = 0;
    for (; I + GroupPixels <= Span.Length; I += GroupPixels) Group(Span.X + I, Y, C + I, 0);
    // The rest with pixels that have had their coverage, which get none here.
    const std::int32_t Last = Span.Length - GroupPixels;
    if (I != Span.Length) Group(Span.X + Last, Y, C + Last, I - Last);
  }
}

std::span<const std::uint64_t> TKeptSpans::Pack() {
  EndBand();
  // Places are looked at ahead of their turn.
  FPlaces.insert(FPlaces.end(), GroupsAhead, FPlaces.empty() ? TGroupPlace{} : FPlaces.back());
  const TPackedHead Head{
      static_cast<std::uint32_t>(FPlaces.size()), static_cast<std::uint32_t>(FCovers.size()),
      static_cast<std::uint32_t>(FBands.size()), static_cast<std::uint32_t>(FSpans.size())};
  constexpr std::size_t HeadWords = sizeof Head / sizeof(std::uint64_t);
  constexpr std::size_t PaddingWords = CoversPadding / sizeof(std::uint64_t);
  FWords.resize(HeadWords + WordsOf(FPlaces) + WordsOf(FCovers) + WordsOf(FBands) +
                WordsOf(FSpans) + PaddingWords);
  std::memcpy(FWords.data(), &Head, sizeof Head);
  std::size_t At = HeadWords;
  const auto Put = [&](const auto& Items) {
    if (!Items.empty()) std::memcpy(&FWords[At], Items.data(), Items.size() * sizeof Items[0]);
    At += WordsOf(Items);
  };
  Put(FPlaces);
  Put(FCovers);
  Put(FBands);
  Put(FSpans);
  std::fill(FWords.begin() + static_cast<std::ptrdiff_t>(At), FWords.end(), 0);
  return FWords;
}

// The parts are made of 16-bit and 32-bit numbers and of bytes, and the words are aligned for more.
TKeptSpans::TPacked TKeptSpans::Unpack(const std::uint64_t* Words) {
  TPackedHead Head;
  std::memcpy(static_cast<void*>(&Head), Words, sizeof Head);
  const std::uint64_t* const Places = Words + sizeof Head / sizeof *Words;
  const std::uint64_t* const Covers = Places + (Head.Places + 1) / 2;
  const std::uint64_t* const Bands = Covers + Head.Groups;
  return {reinterpret_cast<const TGroupPlace*>(Places),
          reinterpret_cast<const std::uint8_t*>(Covers),
          {reinterpret_cast<const TBand*>(Bands), Head.Bands},
          reinterpret_cast<const TSpan*>(Bands + Head.Bands)};
}

void TKeptSpans::Blend(const TPacked& Kept, const TColorTarget& Target) {
  const TKernels& K = Kernels();
  const bool IsOpaque = Target.Color >> 24 == 255;
  TBand From = {};
  for (const TBand& Band : Kept.Bands) {
    K.BlendGroups({Target.Pixels.Row(0), Target.Pixels.Stride, Kept.Places + From.Groups,
                   Kept.Covers + std::size_t{From.Groups} * GroupPixels,
                   static_cast<std::int32_t>(Band.Groups - From.Groups)},
                  Target.Color);
    for (std::size_t I = From.Spans; I < Band.Spans;) {
      const TSpan& Span = Kept.Spans[I++];
      std::uint32_t* const Row = Target.Pixels.Row(Span.Y);
      if (Span.Cover == FullCover && IsOpaque) {
        K.Fill(Row + Span.X, Span.Length, Target.Color);
        continue;
      }
      const TCoverSpan Part{Span.X, Span.Length, Span.Cover};
      K.BlendColor(Row, {&Part, 1}, reinterpret_cast<const std::uint8_t*>(Kept.Spans + I),
                   Target.Color);
      I += Span.CoverSpans();
    }
    From = Band;
  }
}

// Rows that were kept as they are.
void TKeptSpans::ReplaySpans(const TPacked& Kept, const TBand& From, const TBand& To,
                             ISpanSink& Sink) {
  for (std::size_t S = From.Spans; S < To.Spans;) {
    const std::uint16_t Y = Kept.Spans[S].Y;
    FRow.clear();
    do {
      const TSpan Span = Kept.Spans[S++];
      const auto* const Covers = reinterpret_cast<const std::uint8_t*>(Kept.Spans + S);
      FRow.push_back(
          {Span.X, Span.Length,
           Span.Cover < TCoverSpan::CoversBase
               ? std::uint32_t{Span.Cover}
               : TCoverSpan::CoversBase + static_cast<std::uint32_t>(Covers - Kept.Covers)});
      S += Span.CoverSpans();
    } while (S < To.Spans && Kept.Spans[S].Y == Y);
    Sink.Row(Y, FRow, Kept.Covers);
  }
}

// Puts groups and spans together to rows again.
void TKeptSpans::ReplayRows(const TPacked& Kept, const TBand& From, const TBand& To,
                            ISpanSink& Sink) {
  constexpr std::uint32_t None = ~0u;
  const auto PlaceOf = [](bool Has, const auto& Item) {
    return Has ? std::uint32_t{Item.Y} << 16 | Item.X : None;
  };
  std::size_t G = From.Groups, S = From.Spans;
  std::uint32_t Group = PlaceOf(G < To.Groups, Kept.Places[G]);
  std::uint32_t Span = PlaceOf(S < To.Spans, Kept.Spans[S]);
  std::uint32_t Row = 0;
  bool WasGroup = false;
  const auto Put = [&](std::int32_t X, std::int32_t Length, const std::uint8_t* Covers) {
    FRow.push_back(
        {X, Length, TCoverSpan::CoversBase + static_cast<std::uint32_t>(Covers - Kept.Covers)});
  };
  for (FRow.clear();;) {
    const std::uint32_t Next = std::min(Group, Span);
    if (Next >> 16 != Row || Next == None) {
      if (!FRow.empty()) Sink.Row(static_cast<std::int32_t>(Row), FRow, Kept.Covers);
      if (Next == None) return;
      FRow.clear();
      Row = Next >> 16;
      WasGroup = false;
    }
    const auto X = static_cast<std::int32_t>(Next & 0xffff);
    if (Group < Span) {
      const std::int32_t Skipped = WasGroup ? std::max(FRow.back().End() - X, 0) : 0;
      if (WasGroup && FRow.back().End() == X)
        FRow.back().Length += GroupPixels;
      else
        Put(X + Skipped, GroupPixels - Skipped, Kept.Covers + G * GroupPixels + Skipped);
      ++G;
      Group = PlaceOf(G < To.Groups, Kept.Places[G]);
      WasGroup = true;
      continue;
    }
    const TSpan& Part = Kept.Spans[S++];
    WasGroup = false;
    if (Part.Cover < TCoverSpan::CoversBase)
      FRow.push_back({X, Part.Length, Part.Cover});
    else
      Put(X, Part.Length, reinterpret_cast<const std::uint8_t*>(Kept.Spans + S));
    S += Part.CoverSpans();
    Span = PlaceOf(S < To.Spans, Kept.Spans[S]);
  }
}

void TKeptSpans::Replay(const std::uint64_t* Words, ISpanSink& Sink) {
  const TPacked Kept = Unpack(Words);
  if (const TColorTarget* const Target = Sink.Target()) return Blend(Kept, *Target);
  TBand From = {};
  for (const TBand& Band : Kept.Bands) {
    if (From.Groups == Band.Groups)
      ReplaySpans(Kept, From, Band, Sink);
    else
      ReplayRows(Kept, From, Band, Sink);
    From = Band;
  }
}

}  // namespace qxsvg
