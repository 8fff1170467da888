#include "adapters/images/Codecs.h"

#include <algorithm>
#include <array>
#include <bit>

#include "adapters/images/Formats.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

constexpr StringView PngExtensions[] = {u"png"};
constexpr StringView JpegExtensions[] = {u"jpg", u"jpeg", u"jpe", u"jfif"};
constexpr StringView WebPExtensions[] = {u"webp"};
constexpr StringView GifExtensions[] = {u"gif"};

constexpr std::array<TImageCodec, 4> Table{{
    {u"png", u"image/png", PngExtensions, true, true},
    {u"jpeg", u"image/jpeg", JpegExtensions, true, true},
    {u"webp", u"image/webp", WebPExtensions, true, true},
    {u"gif", u"image/gif", GifExtensions, true, false},
}};

// How a format is done; the rows go along with those of Table.
struct TFormat {
  bool (*Begins)(std::string_view Bytes);
  void (*Decode)(TBytesView Bytes, TQXGPBitmap& Bitmap);
  void (*Encode)(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target);
};

constexpr std::array<TFormat, Table.size()> Formats{{
    {[](std::string_view B) { return B.starts_with("\x89PNG"); }, &images::DecodePng,
     &images::EncodePng},
    {[](std::string_view B) { return B.starts_with("\xFF\xD8"); }, &images::DecodeJpeg,
     &images::EncodeJpeg},
    {[](std::string_view B) { return B.starts_with("RIFF") && B.substr(8).starts_with("WEBP"); },
     &images::DecodeWebP, &images::EncodeWebP},
    {[](std::string_view B) { return B.starts_with("GIF8"); }, &images::DecodeGif, nullptr},
}};

}  // namespace

TImageCodecs::~TImageCodecs() = default;

std::span<const TImageCodec> TImageCodecs::Codecs() const {
  return Table;
}

void TImageCodecs::Decode(TBytesView Bytes, TQXGPBitmap& Bitmap, StringView Extension) const {
  Bitmap.SetSize(0, 0);
  // Long enough for every beginning; nothing shorter is a picture.
  constexpr std::size_t LongestBeginning = 12;
  const std::string_view Beginning = CharsOf(Bytes.first(std::min(Bytes.size(), LongestBeginning)));
  if (Beginning.size() == LongestBeginning)
    for (const TFormat& Format : Formats)
      if (Format.Begins(Beginning)) return Format.Decode(Bytes, Bitmap);
  if (const TImageCodec* Codec = Find(Extension)) images::RaiseUnreadable(Codec->Name);
  throw EInvalidGraphicOperation(u"This is no picture of a known format");
}

void TImageCodecs::Encode(TQXConstPixels Pixels, StringView Codec, std::int32_t Quality,
                          TStream& Target) const {
  const TImageCodec* Found = Find(Codec);
  if (!Found || !Found->CanEncode)
    throw EInvalidGraphicOperation(u"There is no codec that writes \"%s\"", {Codec});
  if (Pixels.IsEmpty()) throw EInvalidGraphicOperation(u"An empty picture cannot be written");
  Formats[static_cast<std::size_t>(Found - Table.data())].Encode(Pixels, Quality, Target);
}

namespace images {

void PrepareBitmap(std::uint64_t Width, std::uint64_t Height, TQXGPBitmap& Bitmap) {
  if (Width == 0 || Height == 0) throw EInvalidGraphicOperation(u"The picture has no size");
  constexpr auto Side = static_cast<std::uint64_t>(Limits::BitmapSide);
  if (Width > Side || Height > Side || Width * Height > Limits::ImageBytes / 4)
    throw EInvalidGraphicOperation(SBitmapSizeLimit);
  Bitmap.SetSize(static_cast<std::int32_t>(Width), static_cast<std::int32_t>(Height));
}

void PremultiplyRow(std::uint32_t* Row, std::size_t Count) {
  for (std::size_t X = 0; X < Count; ++X) {
    std::uint32_t Pixel = Row[X];
    if constexpr (std::endian::native == std::endian::big)
      Pixel = Pixel >> 24 | (Pixel >> 8 & 0xFF00) | (Pixel << 8 & 0xFF0000) | Pixel << 24;
    const std::uint32_t Color = (Pixel & 0xFF00FF00) | (Pixel & 0xFF) << 16 | (Pixel >> 16 & 0xFF);
    Row[X] = QXPremultiply(Color);
  }
}

void RaiseUnreadable(StringView Format) {
  throw EInvalidGraphicOperation(u"The %s picture cannot be read", {Format});
}

void RaiseUnwritable(StringView Format) {
  throw EInvalidGraphicOperation(u"The picture cannot be written as %s", {Format});
}

}  // namespace images

}  // namespace qxsvg
