#include "adapters/images/PngPicture.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace qxsvg::images {

namespace {

std::uint8_t ByteOf(std::uint32_t Bits) {
  return static_cast<std::uint8_t>(Bits);
}

// Blue, green, red and alpha, from the lowest byte, as the bytes red, green, blue and alpha.
std::uint32_t InFileOrder(std::uint32_t Color) {
  const std::uint32_t Swapped = (Color & 0xFF00FF00) | (Color & 0xFF) << 16 | (Color >> 16 & 0xFF);
  if constexpr (std::endian::native == std::endian::little) return Swapped;
  return Swapped << 24 | (Swapped & 0xFF00) << 8 | (Swapped >> 8 & 0xFF00) | Swapped >> 24;
}

// Nearly all pixels are opaque or clear and only change the order of their bytes, which is a loop
// that the compiler turns into vectors; the edges come after.
void PackColorAlpha(const std::uint32_t* __restrict Row, std::size_t Count,
                    std::uint8_t* __restrict Target) {
  constexpr std::size_t Block = 16;
  for (std::size_t First = 0; First < Count; First += Block) {
    const std::size_t Size = std::min(Block, Count - First);
    std::array<std::uint32_t, Block> Words{};
    std::memcpy(Words.data(), Row + First, Size * 4);
    std::uint32_t Mixed = 0;
    for (std::uint32_t& Word : Words) {
      // Of the alpha 0 and 255 alone the sum with 1 has none of the upper seven bits.
      Mixed |= ((Word >> 24) + 1) & 0xFE;
      Word = InFileOrder(Word);
    }
    std::memcpy(Target + First * 4, Words.data(), Size * 4);
    if (Mixed == 0) continue;
    for (std::size_t I = First; I < First + Size; ++I) {
      const std::uint32_t Alpha = Row[I] >> 24;
      if (Alpha == 0 || Alpha == 255) continue;
      const std::uint32_t Color = InFileOrder(QXUnpremultiply(Row[I]));
      std::memcpy(Target + I * 4, &Color, 4);
    }
  }
}

// Four pixels are three words, but for the last ones. Those that are clear become Clear.
void PackColor(const std::uint32_t* __restrict Row, std::size_t Count, std::uint32_t Clear,
               std::uint8_t* __restrict Target) {
  const auto Solid = [=](std::size_t I) { return Row[I] >> 24 == 0 ? Clear : Row[I]; };
  std::size_t X = 0;
  if constexpr (std::endian::native == std::endian::little) {
    for (; X + 4 <= Count; X += 4, Target += 12) {
      const auto Color = [&](std::size_t I) { return InFileOrder(Solid(X + I)) & 0xFFFFFF; };
      const std::uint32_t Words[] = {Color(0) | Color(1) << 24, Color(1) >> 8 | Color(2) << 16,
                                     Color(2) >> 16 | Color(3) << 8};
      std::memcpy(Target, Words, sizeof Words);
    }
  }
  for (; X < Count; ++X)
    for (const int Shift : {16, 8, 0}) *Target++ = ByteOf(Solid(X) >> Shift);
}

}  // namespace

std::optional<std::uint8_t> TPngPalette::Add(std::uint32_t Pixel) {
  std::size_t Slot = (Pixel * 0x9E3779B1u) >> (32 - SlotBits);
  for (; FIndices[Slot] != NoIndex; Slot = (Slot + 1) % FIndices.size())
    if (FColors[FIndices[Slot]] == Pixel) return ByteOf(FIndices[Slot]);
  if (FColors.size() == 256) return std::nullopt;
  FIndices[Slot] = static_cast<std::uint16_t>(FColors.size());
  FColors.push_back(Pixel);
  return ByteOf(FIndices[Slot]);
}

TPngPicture::TPngPicture(TQXConstPixels Pixels, TPalette Palette) : FPixels(Pixels) {
  Analyse(Palette);
}

std::size_t TPngPicture::RowSize() const {
  return (static_cast<std::size_t>(Width()) * Channels() * static_cast<std::size_t>(FDepth) + 7) /
         8;
}

bool TPngPicture::IsRepeated(std::int32_t Y) const {
  return Y > 0 && std::memcmp(FPixels.Row(Y), FPixels.Row(Y - 1),
                              static_cast<std::size_t>(Width()) * sizeof(std::uint32_t)) == 0;
}

void TPngPicture::Analyse(TPalette Palette) {
  // Of the alpha 0 and 255 alone the sum with 1 has none of these bits.
  constexpr std::uint32_t Mixed = 0xFE000000, Opaque = 0xFF000000;
  std::uint32_t Alphas = Opaque, Mixtures = 0;
  bool IsGray = true, IsIndexed = Palette == TPalette::Allowed;
  for (std::int32_t Y = 0; Y < Height(); ++Y) {
    if (IsRepeated(Y)) continue;
    const std::uint32_t* Row = FPixels.Row(Y);
    std::uint32_t Differences = 0;
    for (std::int32_t X = 0; X < Width(); ++X) {
      Alphas &= Row[X];
      Mixtures |= ((Row[X] >> 24) + 1) << 24;
      Differences |= (Row[X] ^ Row[X] >> 8) & 0xFFFF;
    }
    IsGray = IsGray && Differences == 0;
    if (!IsIndexed) {
      if ((Mixtures & Mixed) != 0) break;  // nothing is left to find out
      continue;
    }
    std::uint32_t Last = ~Row[0];
    for (std::int32_t X = 0; X < Width() && IsIndexed; ++X) {
      if (Row[X] == Last) continue;
      Last = Row[X];
      IsIndexed = FPalette.Add(Last).has_value();
    }
  }
  const bool IsOpaque = Alphas >= Opaque;
  const std::size_t Count = Colors().size();
  if (IsIndexed && Count <= 16) {
    FType = ctPalette;
    FDepth = Count <= 2 ? 1 : Count <= 4 ? 2 : 4;
  } else if (IsGray && IsOpaque) {
    FType = ctGray;
  } else if (IsIndexed) {
    FType = ctPalette;
  } else {
    if (!IsOpaque && (Mixtures & Mixed) == 0) FKey = UnusedGray();
    FType = IsOpaque || FKey ? ctColor : ctColorAlpha;
  }
}

std::optional<std::uint8_t> TPngPicture::UnusedGray() const {
  std::array<bool, 256> IsUsed{};
  for (std::int32_t Y = 0; Y < Height(); ++Y) {
    if (IsRepeated(Y)) continue;
    const std::uint32_t* Row = FPixels.Row(Y);
    for (std::int32_t X = 0; X < Width(); ++X)
      if (Row[X] >> 24 != 0 && ((Row[X] ^ Row[X] >> 8) & 0xFFFF) == 0) IsUsed[Row[X] & 0xFF] = true;
  }
  const auto Found = std::find(IsUsed.begin(), IsUsed.end(), false);
  if (Found == IsUsed.end()) return std::nullopt;
  return static_cast<std::uint8_t>(Found - IsUsed.begin());
}

void TPngPicture::PackIndices(const std::uint32_t* Row, std::uint8_t* Target) {
  const int PerByte = 8 / FDepth;
  std::uint32_t Last = ~Row[0];
  std::uint8_t Index = 0;
  std::int32_t X = 0;
  const auto NextIndex = [&] {
    if (Row[X] != Last) Index = *FPalette.Add(Last = Row[X]);
    ++X;
    return Index;
  };
  while (X < Width()) {
    unsigned Byte = 0;
    for (int Shift = 8 - FDepth; Shift >= 0 && X < Width(); Shift -= FDepth)
      Byte |= static_cast<unsigned>(NextIndex()) << Shift;
    *Target++ = ByteOf(Byte);
    // The rest of a run of one colour, in whole bytes.
    if (X < Width() && Row[X] == Last) {
      std::int32_t End = X;
      while (End < Width() && Row[End] == Last) ++End;
      const std::int32_t Bytes = (End - X) / PerByte;
      unsigned Even = Index;
      for (int Bits = FDepth; Bits < 8; Bits *= 2) Even |= Even << Bits;
      Target = std::fill_n(Target, Bytes, ByteOf(Even));
      X += Bytes * PerByte;
    }
  }
}

void TPngPicture::Pack(std::int32_t Y, std::uint8_t* Target) {
  const std::uint32_t* Row = FPixels.Row(Y);
  const auto Count = static_cast<std::size_t>(Width());
  switch (FType) {
    case ctPalette: return PackIndices(Row, Target);
    case ctGray:
      for (std::size_t X = 0; X < Count; ++X) Target[X] = ByteOf(Row[X]);
      return;
    case ctColor: PackColor(Row, Count, FKey.value_or(0) * 0x010101u, Target); return;
    case ctColorAlpha: return PackColorAlpha(Row, Count, Target);
  }
}

}  // namespace qxsvg::images
