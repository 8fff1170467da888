// PNG pictures, written by ourselves: what the pixels need decides the kind of PNG, the rows are
// filtered by our own choice, and libdeflate makes the stream.
#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "adapters/images/Formats.h"
#include "adapters/images/PngFilters.h"
#include "adapters/images/PngPicture.h"

namespace qxsvg::images {

namespace {

// libdeflate's levels go from 1 to 12. The usual one writes files no larger than other programs do,
// in a fraction of their time; filtered rows of which little is left repay a longer search.
constexpr int UsualLevel = 6, ThoroughLevel = 7;
// What is little: bytes left of a thousand in the trial.
constexpr std::size_t LittleLeft = 20;
// What the choice between filtered and plain rows is tried with.
constexpr int TrialLevel = 1;
constexpr int FirstLevel = 1, LastLevel = 12;

struct TFreeCompressor {
  void operator()(libdeflate_compressor* Compressor) const {
    libdeflate_free_compressor(Compressor);
  }
};

// Memory whose bytes are written before they are read.
struct TRawBytes {
  std::unique_ptr<std::uint8_t[]> Bytes;
  std::size_t Size;

  explicit TRawBytes(std::size_t Size)
      : Bytes(std::make_unique_for_overwrite<std::uint8_t[]>(Size)), Size(Size) {}
};

TRawBytes Compress(const TRawBytes& Source, int Level) {
  const std::unique_ptr<libdeflate_compressor, TFreeCompressor> Compressor(
      libdeflate_alloc_compressor(Level));
  if (!Compressor) throw std::bad_alloc();
  TRawBytes Result(libdeflate_zlib_compress_bound(Compressor.get(), Source.Size));
  Result.Size = libdeflate_zlib_compress(Compressor.get(), Source.Bytes.get(), Source.Size,
                                         Result.Bytes.get(), Result.Size);
  if (Result.Size == 0) RaiseUnwritable(u"PNG");
  return Result;
}

// The rows as the file holds them, each behind the number of its filter, of Count bands of BandSize
// rows that begin every Step rows.
struct TBands {
  std::int32_t Count, BandSize, Step;
};

TRawBytes Rows(TPngPicture& Picture, const TBands& Bands, bool IsFiltered) {
  const std::size_t RowSize = Picture.RowSize();
  TRawBytes Result((RowSize + 1) * static_cast<std::size_t>(Bands.Count) *
                   static_cast<std::size_t>(Bands.BandSize));
  TPngFilters Filters(RowSize, Picture.Channels());
  std::uint8_t* Target = Result.Bytes.get();
  for (std::int32_t Band = 0; Band < Bands.Count; ++Band) {
    const std::int32_t First = Band * Bands.Step;
    if (IsFiltered && First > 0) {
      Picture.Pack(First - 1, Filters.Row());
      Filters.Skip();
    }
    for (std::int32_t Y = First; Y < First + Bands.BandSize; ++Y, Target += RowSize + 1) {
      const bool IsRepeated = Picture.IsRepeated(Y);
      if (IsFiltered && IsRepeated) {
        Filters.Repeat(Target);
      } else if (IsFiltered) {
        Picture.Pack(Y, Filters.Row());
        Filters.Filter(Target);
      } else if (IsRepeated && Y > First) {
        std::memcpy(Target, Target - (RowSize + 1), RowSize + 1);
      } else {
        *Target = 0;
        Picture.Pack(Y, Target + 1);
      }
    }
  }
  return Result;
}

struct TPlan {
  bool IsFiltered;
  int Level;
};

// Whether filtering makes the picture smaller, tried out on a part of it. Drawings of flat colours
// are mostly better off without, those with gradients and photographs with it.
TPlan PlanFor(TPngPicture& Picture) {
  // Differences of indices mean nothing.
  if (Picture.Type() == ctPalette) return {false, UsualLevel};
  constexpr std::int32_t BandSize = 8, Step = 64;
  const std::int32_t Height = Picture.Height();
  const TBands Sample =
      Height < 4 * Step ? TBands{1, Height, Height} : TBands{Height / Step, BandSize, Step};
  const TRawBytes Filtered = Rows(Picture, Sample, true);
  const std::size_t Size = Compress(Filtered, TrialLevel).Size;
  if (Size >= Compress(Rows(Picture, Sample, false), TrialLevel).Size) return {false, UsualLevel};
  return {true, Size < Filtered.Size * LittleLeft / 1000 ? ThoroughLevel : UsualLevel};
}

void AppendNumber(TBytes& Target, std::uint32_t Value) {
  for (const int Shift : {24, 16, 8, 0})
    Target.push_back(static_cast<std::uint8_t>(Value >> Shift));
}

void WriteChunk(TStream& Target, std::string_view Type, TBytesView Content) {
  constexpr std::size_t LongestChunk = 0x7FFFFFFF;
  if (Content.size() > LongestChunk) RaiseUnwritable(u"PNG");
  TBytes Head;
  AppendNumber(Head, static_cast<std::uint32_t>(Content.size()));
  Head.insert(Head.end(), Type.begin(), Type.end());
  std::uint32_t Check = libdeflate_crc32(0, Type.data(), Type.size());
  if (!Content.empty()) Check = libdeflate_crc32(Check, Content.data(), Content.size());
  TBytes Tail;
  AppendNumber(Tail, Check);
  Target.WriteBytes(Head);
  Target.WriteBytes(Content);
  Target.WriteBytes(Tail);
}

void WritePalette(TStream& Target, const std::vector<std::uint32_t>& Pixels) {
  TBytes Colors, Alphas;
  for (const std::uint32_t Pixel : Pixels) {
    const TQXGPColor Color = QXUnpremultiply(Pixel);
    for (const int Shift : {16, 8, 0}) Colors.push_back(static_cast<std::uint8_t>(Color >> Shift));
    Alphas.push_back(static_cast<std::uint8_t>(Color >> 24));
  }
  WriteChunk(Target, "PLTE", Colors);
  while (!Alphas.empty() && Alphas.back() == 0xFF) Alphas.pop_back();
  if (!Alphas.empty()) WriteChunk(Target, "tRNS", Alphas);
}

}  // namespace

void EncodePng(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target) {
  TPngPicture Picture(Pixels);
  TPlan Plan = PlanFor(Picture);
  if (Quality >= 0) Plan.Level = FirstLevel + Quality * (LastLevel - FirstLevel) / 100;
  const TRawBytes Stream =
      Compress(Rows(Picture, {1, Pixels.Height, Pixels.Height}, Plan.IsFiltered), Plan.Level);

  TBytes Header;
  AppendNumber(Header, static_cast<std::uint32_t>(Pixels.Width));
  AppendNumber(Header, static_cast<std::uint32_t>(Pixels.Height));
  const std::uint8_t Kind[] = {static_cast<std::uint8_t>(Picture.Depth()), Picture.Type(), 0, 0, 0};
  Header.insert(Header.end(), std::begin(Kind), std::end(Kind));
  Target.WriteBytes(BytesOf("\x89PNG\r\n\x1A\n"));
  WriteChunk(Target, "IHDR", Header);
  if (Picture.Type() == ctPalette) WritePalette(Target, Picture.Colors());
  WriteChunk(Target, "IDAT", {Stream.Bytes.get(), Stream.Size});
  WriteChunk(Target, "IEND", {});
}

}  // namespace qxsvg::images
