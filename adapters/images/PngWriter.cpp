// PNG pictures, written by ourselves: what the pixels need decides the kind of PNG, the rows are
// filtered by our own choice, and libdeflate makes the stream.
#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "adapters/images/Formats.h"
#include "adapters/images/PngFilters.h"

namespace qxsvg::images {

namespace {

// libdeflate's levels go from 1 to 12. The usual ones write files no larger than other programs do,
// in a fraction of their time; filtered rows have shorter matches and need more of a search.
constexpr int PlainLevel = 5, FilteredLevel = 6;
// What the choice between the two is tried with.
constexpr int TrialLevel = 1;
constexpr int FirstLevel = 1, LastLevel = 12;

enum TColorType : std::uint8_t { ctGray = 0, ctColor = 2, ctPalette = 3, ctColorAlpha = 6 };

// The colours of a picture, as long as a palette can hold them.
class TPalette {
 public:
  // The pixel's index, or nothing when that is a colour too many. Colours get their index in the
  // order of coming.
  std::optional<std::uint8_t> Add(std::uint32_t Pixel) {
    std::size_t Slot = (Pixel * 0x9E3779B1u) >> (32 - SlotBits);
    for (; FIndices[Slot] != NoIndex; Slot = (Slot + 1) % FIndices.size())
      if (FColors[FIndices[Slot]] == Pixel) return static_cast<std::uint8_t>(FIndices[Slot]);
    if (FColors.size() == 256) return std::nullopt;
    FIndices[Slot] = static_cast<std::uint16_t>(FColors.size());
    FColors.push_back(Pixel);
    return static_cast<std::uint8_t>(FIndices[Slot]);
  }
  const std::vector<std::uint32_t>& Colors() const { return FColors; }

  TPalette() { FIndices.fill(NoIndex); }

 private:
  static constexpr int SlotBits = 10;
  static constexpr std::uint16_t NoIndex = 0xFFFF;
  std::array<std::uint16_t, 1 << SlotBits> FIndices;
  std::vector<std::uint32_t> FColors;
};

struct TPicture {
  TQXConstPixels Pixels;
  TColorType Type = ctColorAlpha;
  int Depth = 8;  // bits of a channel or index
  TPalette Palette;

  std::size_t Channels() const { return Type == ctColorAlpha ? 4 : Type == ctColor ? 3 : 1; }
  std::size_t RowSize() const {
    return (static_cast<std::size_t>(Pixels.Width) * Channels() * static_cast<std::size_t>(Depth) +
            7) /
           8;
  }
};

// Finds the smallest kind of PNG that holds every pixel as it is.
void Analyse(TPicture& Picture) {
  std::uint32_t AllAlpha = 0xFF;
  bool IsGray = true, IsIndexed = true;
  for (std::int32_t Y = 0; Y < Picture.Pixels.Height; ++Y) {
    const std::uint32_t* Row = Picture.Pixels.Row(Y);
    std::uint32_t Alphas = 0xFF000000, Differences = 0;
    for (std::int32_t X = 0; X < Picture.Pixels.Width; ++X) {
      Alphas &= Row[X];
      Differences |= (Row[X] ^ Row[X] >> 8) & 0xFFFF;
    }
    AllAlpha &= Alphas >> 24;
    IsGray = IsGray && Differences == 0;
    if (!IsIndexed) {
      if (AllAlpha != 0xFF) break;  // nothing is left to find out
      continue;
    }
    std::uint32_t Last = ~Row[0];
    for (std::int32_t X = 0; X < Picture.Pixels.Width && IsIndexed; ++X) {
      if (Row[X] == Last) continue;
      Last = Row[X];
      IsIndexed = Picture.Palette.Add(Last).has_value();
    }
  }
  const bool IsOpaque = AllAlpha == 0xFF;
  const std::size_t Colors = Picture.Palette.Colors().size();
  if (IsIndexed && Colors <= 16) {
    Picture.Type = ctPalette;
    Picture.Depth = Colors <= 2 ? 1 : Colors <= 4 ? 2 : 4;
  } else if (IsGray && IsOpaque) {
    Picture.Type = ctGray;
  } else if (IsIndexed) {
    Picture.Type = ctPalette;
  } else {
    Picture.Type = IsOpaque ? ctColor : ctColorAlpha;
  }
}

void PackIndices(TPicture& Picture, const std::uint32_t* Row, std::uint8_t* Target) {
  std::fill_n(Target, Picture.RowSize(), std::uint8_t{0});
  const int PerByte = 8 / Picture.Depth;
  std::uint32_t Last = ~Row[0];
  std::uint8_t Index = 0;
  for (std::int32_t X = 0; X < Picture.Pixels.Width; ++X) {
    if (Row[X] != Last) Index = *Picture.Palette.Add(Last = Row[X]);
    const int Shift = 8 - Picture.Depth * (X % PerByte + 1);
    Target[X / PerByte] = static_cast<std::uint8_t>(Target[X / PerByte] | Index << Shift);
  }
}

// Nearly all pixels are opaque or clear and only change the order of their bytes, which is a loop
// that the compiler turns into vectors; the edges come after.
void PackColorAlpha(const std::uint32_t* Row, std::size_t Count, std::uint8_t* Target) {
  const auto Put = [Target](std::size_t X, TQXGPColor Color) {
    Target[X * 4] = static_cast<std::uint8_t>(Color >> 16);
    Target[X * 4 + 1] = static_cast<std::uint8_t>(Color >> 8);
    Target[X * 4 + 2] = static_cast<std::uint8_t>(Color);
    Target[X * 4 + 3] = static_cast<std::uint8_t>(Color >> 24);
  };
  for (std::size_t X = 0; X < Count; ++X) Put(X, Row[X]);
  for (std::size_t X = 0; X < Count; ++X) {
    const std::uint32_t Alpha = Row[X] >> 24;
    if (Alpha != 0 && Alpha != 255) Put(X, QXUnpremultiply(Row[X]));
  }
}

// One row as the file holds it before filtering.
void PackRow(TPicture& Picture, std::int32_t Y, std::uint8_t* Target) {
  const std::uint32_t* Row = Picture.Pixels.Row(Y);
  const std::int32_t Width = Picture.Pixels.Width;
  const auto Byte = [](std::uint32_t Bits) { return static_cast<std::uint8_t>(Bits); };
  switch (Picture.Type) {
    case ctPalette: return PackIndices(Picture, Row, Target);
    case ctGray:
      for (std::int32_t X = 0; X < Width; ++X) Target[X] = Byte(Row[X]);
      return;
    case ctColor:
      for (std::int32_t X = 0; X < Width; ++X, Target += 3) {
        Target[0] = Byte(Row[X] >> 16);
        Target[1] = Byte(Row[X] >> 8);
        Target[2] = Byte(Row[X]);
      }
      return;
    case ctColorAlpha: return PackColorAlpha(Row, static_cast<std::size_t>(Width), Target);
  }
}

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

TRawBytes Rows(TPicture& Picture, const TBands& Bands, bool IsFiltered) {
  const std::size_t RowSize = Picture.RowSize();
  TRawBytes Result((RowSize + 1) * static_cast<std::size_t>(Bands.Count) *
                   static_cast<std::size_t>(Bands.BandSize));
  TPngFilters Filters(RowSize, Picture.Channels());
  TBytes Row(RowSize), Prior(RowSize);
  std::uint8_t* Target = Result.Bytes.get();
  for (std::int32_t Band = 0; Band < Bands.Count; ++Band) {
    const std::int32_t First = Band * Bands.Step;
    if (IsFiltered && First > 0) PackRow(Picture, First - 1, Prior.data());
    for (std::int32_t Y = First; Y < First + Bands.BandSize; ++Y, Target += RowSize + 1) {
      if (!IsFiltered) {
        *Target = 0;
        PackRow(Picture, Y, Target + 1);
        continue;
      }
      PackRow(Picture, Y, Row.data());
      Filters.Filter(Row.data(), Prior.data(), Target);
      Row.swap(Prior);
    }
  }
  return Result;
}

// Whether filtering makes the picture smaller, tried out on a part of it. Drawings of flat colours
// are mostly better off without, those with gradients and photographs with it.
bool NeedsFilters(TPicture& Picture) {
  // Differences of indices mean nothing.
  if (Picture.Type == ctPalette) return false;
  constexpr std::int32_t BandSize = 8, Step = 64;
  const std::int32_t Height = Picture.Pixels.Height;
  const TBands Sample =
      Height < 4 * Step ? TBands{1, Height, Height} : TBands{Height / Step, BandSize, Step};
  return Compress(Rows(Picture, Sample, true), TrialLevel).Size <
         Compress(Rows(Picture, Sample, false), TrialLevel).Size;
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
  TPicture Picture;
  Picture.Pixels = Pixels;
  Analyse(Picture);
  const bool IsFiltered = NeedsFilters(Picture);
  const int UsualLevel = IsFiltered ? FilteredLevel : PlainLevel;
  const int Level =
      Quality < 0 ? UsualLevel : FirstLevel + Quality * (LastLevel - FirstLevel) / 100;
  const TRawBytes Stream =
      Compress(Rows(Picture, {1, Pixels.Height, Pixels.Height}, IsFiltered), Level);

  TBytes Header;
  AppendNumber(Header, static_cast<std::uint32_t>(Pixels.Width));
  AppendNumber(Header, static_cast<std::uint32_t>(Pixels.Height));
  const std::uint8_t Kind[] = {static_cast<std::uint8_t>(Picture.Depth), Picture.Type, 0, 0, 0};
  Header.insert(Header.end(), std::begin(Kind), std::end(Kind));
  Target.WriteBytes(BytesOf("\x89PNG\r\n\x1A\n"));
  WriteChunk(Target, "IHDR", Header);
  if (Picture.Type == ctPalette) WritePalette(Target, Picture.Palette.Colors());
  WriteChunk(Target, "IDAT", {Stream.Bytes.get(), Stream.Size});
  WriteChunk(Target, "IEND", {});
}

}  // namespace qxsvg::images
