#include "graphics/surface/Bitmap.h"

#include <algorithm>
#include <array>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/ImageCodecs.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"

namespace qxsvg {
namespace {

std::unique_ptr<TPersistent> NewBitmap() {
  return std::make_unique<TQXGPBitmap>();
}

}  // namespace

const TClass TQXGPImage::Class{u"TQXGPImage", &TPersistent::Class, {}, nullptr};
const TClass TQXGPBitmap::Class{u"TQXGPBitmap", &TQXGPImage::Class, {}, &NewBitmap};

void TQXGPImage::SaveToStream(TStream& Stream, StringView Codec, std::int32_t Params) const {
  const auto Codecs = Services().Images.Get();
  const TImageCodec* Found = Codecs->Find(Codec);
  if (!Found) throw EInvalidGraphicOperation(u"There is no image codec for \"%s\"", {Codec});
  Codecs->Encode(GetPixels(), Found->Name, std::clamp(Params, -1, 100), Stream);
}

String TQXGPImage::GetCodec(std::size_t Index) {
  for (const TImageCodec& Codec : Services().Images.Get()->Codecs())
    if (Codec.CanEncode && Index-- == 0) return String(Codec.Name);
  return {};
}

TQXGPBitmap::TQXGPBitmap(std::int32_t Width, std::int32_t Height) {
  SetSize(Width, Height);
}

TQXGPBitmap::~TQXGPBitmap() = default;

void TQXGPBitmap::Assign(const TPersistent* Source) {
  const auto* Image = dynamic_cast<const TQXGPImage*>(Source);
  if (!Image) return TPersistent::Assign(Source);
  if (Image == this) return;
  const TQXConstPixels From = Image->GetPixels();
  SetSize(From.Width, From.Height);
  FIsUntouched = false;
  for (std::int32_t Y = 0; Y < FHeight; ++Y)
    std::copy_n(From.Row(Y), FWidth, FPixels.data() + std::size_t(Y) * std::size_t(FWidth));
}

TQXConstPixels TQXGPBitmap::GetPixels() const {
  return {FPixels.data(), FWidth, FHeight, FWidth};
}

TQXPixels TQXGPBitmap::Pixels() {
  FIsUntouched = false;
  return {FPixels.data(), FWidth, FHeight, FWidth};
}

void TQXGPBitmap::SetSize(std::int32_t Width, std::int32_t Height) {
  Width = std::max(Width, 0);
  Height = std::max(Height, 0);
  if (Width == FWidth && Height == FHeight) return;
  if (Width > Limits::BitmapSide || Height > Limits::BitmapSide ||
      std::int64_t{Width} * Height > Limits::BitmapPixels)
    throw EInvalidGraphicOperation(SBitmapSizeLimit);
  TZeroedArray<std::uint32_t> Pixels(static_cast<std::size_t>(Width) *
                                     static_cast<std::size_t>(Height));
  const std::int32_t Columns = std::min(Width, FWidth), Rows = std::min(Height, FHeight);
  for (std::int32_t Y = 0; Y < Rows; ++Y)
    std::copy_n(FPixels.data() + std::ptrdiff_t{Y} * FWidth, Columns,
                Pixels.data() + std::ptrdiff_t{Y} * Width);
  FIsUntouched = FIsUntouched || Columns == 0 || Rows == 0;
  FCanvas.reset();
  FPixels = std::move(Pixels);
  FWidth = Width;
  FHeight = Height;
}

void TQXGPBitmap::Clear(TQXGPColor Color) {
  const std::uint32_t Pixel = QXPremultiply(Color);
  // The system gives pages of zeroes when they are first written to: those that a drawing leaves
  // out shall take no memory.
  if (FIsUntouched && Pixel == 0) return;
  FIsUntouched = false;
  // Copies of a piece that stays in the first cache go as fast as memory takes them.
  constexpr std::size_t Piece = 1024;
  const std::size_t First = std::min(FPixels.size(), Piece);
  std::fill_n(FPixels.data(), First, Pixel);
  for (std::size_t At = First; At < FPixels.size(); At += Piece)
    std::copy_n(FPixels.data(), std::min(Piece, FPixels.size() - At), FPixels.data() + At);
}

TQXGPCanvas& TQXGPBitmap::GetCanvas() {
  if (!FCanvas) FCanvas = Services().Canvas.Get()->CreateCanvas(Pixels());
  return *FCanvas;
}

std::uint32_t QXPremultiply(TQXGPColor Color) {
  const std::uint32_t A = Color >> 24;
  if (A == 255) return Color;
  const auto Part = [A](std::uint32_t C) { return ((C & 255) * A + 127) / 255; };
  return A << 24 | Part(Color >> 16) << 16 | Part(Color >> 8) << 8 | Part(Color);
}

TQXGPColor QXUnpremultiply(std::uint32_t Pixel) {
  // Divisions by A as products: 2 to the 24th over A, rounded up, is exact for what is divided
  // here, which stays below 2 to the 16th.
  static constexpr auto Inverses = [] {
    std::array<std::uint32_t, 256> Result{};
    for (std::uint32_t A = 1; A < 256; ++A) Result[A] = ((1u << 24) + A - 1) / A;
    return Result;
  }();
  const std::uint32_t A = Pixel >> 24;
  if (A == 255) return Pixel;
  if (A == 0) return 0;
  const auto Part = [A](std::uint32_t C) {
    return (std::min(C & 255, A) * 255 + A / 2) * Inverses[A] >> 24;
  };
  return A << 24 | Part(Pixel >> 16) << 16 | Part(Pixel >> 8) << 8 | Part(Pixel);
}

}  // namespace qxsvg
