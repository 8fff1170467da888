// PNG pictures, written by ourselves: what the pixels need decides the kind of PNG, the rows are
// filtered by our own choice, and libdeflate makes the stream.
#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "adapters/images/Formats.h"
#include "adapters/images/PngFilters.h"
#include "adapters/images/PngPicture.h"
#include "runtime/ZeroedArray.h"

namespace qxsvg::images {

namespace {

// libdeflate's levels go from 1 to 12. The usual one writes files no larger than other programs do,
// in a fraction of their time, but for filtered rows: there it is not thorough enough, unless an
// alpha that could be left out has saved more. Where little is left to code it costs nothing to be
// thorough.
constexpr int UsualLevel = 6, ThoroughLevel = 7;
// What is little: bytes left of a thousand in the trial.
constexpr std::size_t LittleLeft = 20;
// What the choice between filtered and plain rows is tried with.
constexpr int TrialLevel = 2;
// One of both has to be ahead by this part of the other to be taken for the better one.
constexpr std::size_t LeastGain = 20;
constexpr int FirstLevel = 1, LastLevel = 12;

struct TFreeCompressor {
  void operator()(libdeflate_compressor* Compressor) const {
    libdeflate_free_compressor(Compressor);
  }
};

// A stream as libdeflate makes it, of rows that may be gone by then.
class TDeflated {
 public:
  TDeflated(TBytesView Source, int Level) {
    const std::unique_ptr<libdeflate_compressor, TFreeCompressor> Compressor(
        libdeflate_alloc_compressor(Level));
    if (!Compressor) throw std::bad_alloc();
    // Only what is written of it becomes memory in earnest.
    const std::size_t Bound = libdeflate_zlib_compress_bound(Compressor.get(), Source.size());
    FBytes = std::make_unique_for_overwrite<std::uint8_t[]>(Bound);
    FSize = libdeflate_zlib_compress(Compressor.get(), Source.data(), Source.size(), FBytes.get(),
                                     Bound);
    if (FSize == 0) RaiseUnwritable(u"PNG");
  }
  TBytesView Bytes() const { return {FBytes.get(), FSize}; }

 private:
  std::unique_ptr<std::uint8_t[]> FBytes;
  std::size_t FSize;
};

// Count bands of BandSize rows that begin every Step rows from First on.
struct TBands {
  std::int32_t Count, BandSize, Step, First;
};

// The rows of a picture as the file holds them, each behind the number of its filter.
class TRows {
 public:
  TRows(TPngPicture& Picture, const TBands& Bands, bool IsFiltered)
      : FBytes((Picture.RowSize() + 1) * static_cast<std::size_t>(Bands.Count) *
               static_cast<std::size_t>(Bands.BandSize)) {
    std::uint8_t* Target = FBytes.data();
    for (std::int32_t Band = 0; Band < Bands.Count; ++Band) {
      const std::int32_t First = Bands.First + Band * Bands.Step;
      Target = IsFiltered ? PutFiltered(Picture, First, Bands.BandSize, Target)
                          : PutPlain(Picture, First, Bands.BandSize, Target);
    }
  }
  // All of them.
  TRows(TPngPicture& Picture, bool IsFiltered)
      : TRows(Picture, {1, Picture.Height(), Picture.Height(), 0}, IsFiltered) {}

  TBytesView Bytes() const { return {FBytes.data(), FBytes.size()}; }

 private:
  static std::uint8_t* PutPlain(TPngPicture& Picture, std::int32_t First, std::int32_t Count,
                                std::uint8_t* Target) {
    const std::size_t Size = Picture.RowSize() + 1;
    for (std::int32_t Y = First; Y < First + Count; ++Y, Target += Size) {
      // The filter's number is 0, as is the memory.
      if (Y > First && Picture.IsRepeated(Y))
        std::memcpy(Target, Target - Size, Size);
      else
        Picture.Pack(Y, Target + 1);
    }
    return Target;
  }

  static std::uint8_t* PutFiltered(TPngPicture& Picture, std::int32_t First, std::int32_t Count,
                                   std::uint8_t* Target) {
    const std::size_t Size = Picture.RowSize() + 1;
    TPngFilters Filters(Size - 1, Picture.Channels());
    if (First > 0) {
      Picture.Pack(First - 1, Filters.Row());
      Filters.Skip();
    }
    for (std::int32_t Y = First; Y < First + Count; ++Y, Target += Size) {
      if (Picture.IsRepeated(Y)) {
        Filters.Repeat(Target);
      } else {
        Picture.Pack(Y, Filters.Row());
        Filters.Filter(Target);
      }
    }
    return Target;
  }

  TZeroedArray<std::uint8_t> FBytes;
};

struct TPlan {
  bool IsFiltered;
  int Level;
};
constexpr TPlan PlainPlan{false, UsualLevel}, ThoroughPlan{true, ThoroughLevel};

// Whether filtering makes the picture smaller, tried out on a part of it; nothing where that is no
// guide to the whole. Drawings of flat colours are mostly better off without, those with gradients
// and photographs with it.
std::optional<TPlan> PlanFor(TPngPicture& Picture) {
  constexpr std::int32_t BandSize = 8, FarthestStep = 128, FewestBands = 8;
  const std::int32_t Step = std::clamp(Picture.Height() / FewestBands, 1, FarthestStep);
  const std::int32_t Size = std::min(BandSize, Step);
  const TBands Sample{Picture.Height() / Step, Size, Step, (Step - Size) / 2};
  const TRows Filtered(Picture, Sample, true);
  const std::size_t Left = TDeflated(Filtered.Bytes(), TrialLevel).Bytes().size();
  const TRows Plain(Picture, Sample, false);
  const std::size_t LeftPlain = TDeflated(Plain.Bytes(), TrialLevel).Bytes().size();
  if (std::max(Left, LeftPlain) - std::min(Left, LeftPlain) < Left / LeastGain) return {};
  if (Left > LeftPlain) return PlainPlan;
  const bool IsThorough =
      Picture.Type() == ctColorAlpha || Left < Filtered.Bytes().size() * LittleLeft / 1000;
  return TPlan{true, IsThorough ? ThoroughLevel : UsualLevel};
}

// Up to so many bytes of rows it costs no more to make all that may be the smallest and to know.
constexpr std::size_t SmallPicture = 1 << 17;

TDeflated StreamOf(TPngPicture& Picture, std::int32_t Quality) {
  const auto Deflated = [&](TPlan Plan) {
    if (Quality >= 0) Plan.Level = FirstLevel + Quality * (LastLevel - FirstLevel) / 100;
    return TDeflated(TRows(Picture, Plan.IsFiltered).Bytes(), Plan.Level);
  };
  // Differences of indices mean nothing.
  if (Picture.Type() == ctPalette) return Deflated(PlainPlan);
  if (Picture.RowSize() * static_cast<std::size_t>(Picture.Height()) > SmallPicture)
    if (const std::optional<TPlan> Plan = PlanFor(Picture)) return Deflated(*Plan);
  TDeflated Plain = Deflated(PlainPlan), Filtered = Deflated(ThoroughPlan);
  return Filtered.Bytes().size() < Plain.Bytes().size() ? std::move(Filtered) : std::move(Plain);
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

void Write(TPngPicture& Picture, std::int32_t Quality, TStream& Target) {
  const TDeflated Stream = StreamOf(Picture, Quality);

  TBytes Header;
  AppendNumber(Header, static_cast<std::uint32_t>(Picture.Width()));
  AppendNumber(Header, static_cast<std::uint32_t>(Picture.Height()));
  const std::uint8_t Kind[] = {static_cast<std::uint8_t>(Picture.Depth()), Picture.Type(), 0, 0, 0};
  Header.insert(Header.end(), std::begin(Kind), std::end(Kind));
  Target.WriteBytes(BytesOf("\x89PNG\r\n\x1A\n"));
  WriteChunk(Target, "IHDR", Header);
  if (Picture.Type() == ctPalette) WritePalette(Target, Picture.Colors());
  if (const auto Key = Picture.Key()) {
    const std::uint8_t Channels[] = {0, *Key, 0, *Key, 0, *Key};
    WriteChunk(Target, "tRNS", Channels);
  }
  WriteChunk(Target, "IDAT", Stream.Bytes());
  WriteChunk(Target, "IEND", {});
}

}  // namespace

void EncodePng(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target) {
  TPngPicture Picture(Pixels);
  const std::size_t Size = static_cast<std::size_t>(Pixels.Width) *
                           static_cast<std::size_t>(Pixels.Height) * sizeof(std::uint32_t);
  if (Picture.Type() != ctPalette || Size > SmallPicture) return Write(Picture, Quality, Target);
  // In icons a palette may take more than it saves.
  TMemoryStream Indexed, Direct;
  Write(Picture, Quality, Indexed);
  TPngPicture Colors(Pixels, TPngPicture::TPalette::None);
  Write(Colors, Quality, Direct);
  const bool IsShorter = Direct.Bytes().size() < Indexed.Bytes().size();
  Target.WriteBytes(IsShorter ? Direct.Bytes() : Indexed.Bytes());
}

}  // namespace qxsvg::images
