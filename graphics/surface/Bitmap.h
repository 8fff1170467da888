// Images in memory.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/Color.h"
#include "foundation/Geometry.h"
#include "runtime/Persistent.h"
#include "runtime/ZeroedArray.h"

namespace qxsvg {

class TQXGPCanvas;
class TStream;

// Pixels of 32 bits, premultiplied: blue in the lowest byte, then green, red and alpha, as the
// host's 32-bit integers 0xAARRGGBB. Rows go from top to bottom. Not owned.
struct TQXPixels {
  std::uint32_t* Data = nullptr;
  std::int32_t Width = 0, Height = 0;
  // From one row to the next, in pixels.
  std::ptrdiff_t Stride = 0;

  bool IsEmpty() const { return Width <= 0 || Height <= 0; }
  std::uint32_t* Row(std::int32_t Y) const { return Data + Y * Stride; }
};
struct TQXConstPixels {
  const std::uint32_t* Data = nullptr;
  std::int32_t Width = 0, Height = 0;
  std::ptrdiff_t Stride = 0;

  TQXConstPixels() = default;
  TQXConstPixels(const std::uint32_t* Data, std::int32_t Width, std::int32_t Height,
                 std::ptrdiff_t Stride)
      : Data(Data), Width(Width), Height(Height), Stride(Stride) {}
  TQXConstPixels(const TQXPixels& P)
      : Data(P.Data), Width(P.Width), Height(P.Height), Stride(P.Stride) {}
  bool IsEmpty() const { return Width <= 0 || Height <= 0; }
  const std::uint32_t* Row(std::int32_t Y) const { return Data + Y * Stride; }
};

// What a canvas can paint as an image.
class QXSVG_API TQXGPImage : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  virtual std::int32_t GetWidth() const = 0;
  virtual std::int32_t GetHeight() const = 0;
  // The pixels, valid until the image changes.
  virtual TQXConstPixels GetPixels() const = 0;
  // A canvas that draws on this image, made at the first call through the canvas service and owned
  // by the image. Raises EInvalidOperation where no surface is supplied.
  virtual TQXGPCanvas& GetCanvas() = 0;

  // Encodes the image for the codec of that name or file extension ("png", ".jpeg") or media type
  // ("image/png"), through the image codecs service. Params is the codec's quality from 0 to 100,
  // or -1 for its own choice. Raises EInvalidGraphicOperation for a codec that is not known.
  void SaveToStream(TStream& Stream, StringView Codec, std::int32_t Params = -1) const;
  // The names of the codecs that can write, in their order; empty past the last.
  static String GetCodec(std::size_t Index);
};

class QXSVG_API TQXGPBitmap : public TQXGPImage {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // A new bitmap is transparent. Sides below 0 count as 0; a size over Limits::BitmapPixels raises
  // EInvalidGraphicOperation before memory is taken.
  explicit TQXGPBitmap(std::int32_t Width = 0, std::int32_t Height = 0);
  ~TQXGPBitmap() override;

  // Takes size and pixels of another image.
  void Assign(const TPersistent* Source) override;

  std::int32_t GetWidth() const override { return FWidth; }
  std::int32_t GetHeight() const override { return FHeight; }
  TQXConstPixels GetPixels() const override;
  TQXPixels Pixels();

  // The pixels that the old and the new size share keep their places; new ones are transparent. A
  // canvas that was taken before is void after a change.
  void SetSize(std::int32_t Width, std::int32_t Height);
  void SetWidth(std::int32_t Width) { SetSize(Width, FHeight); }
  void SetHeight(std::int32_t Height) { SetSize(FWidth, Height); }
  // Every pixel becomes that colour, which is not premultiplied.
  void Clear(TQXGPColor Color = 0);

  TQXGPCanvas& GetCanvas() override;

 private:
  TZeroedArray<std::uint32_t> FPixels;
  std::int32_t FWidth = 0, FHeight = 0;
  // All pixels are zero, and nobody has a way to change them.
  bool FIsUntouched = true;
  std::unique_ptr<TQXGPCanvas> FCanvas;
};

// A colour as a pixel and back; the way back of a transparent pixel is 0.
QXSVG_API std::uint32_t QXPremultiply(TQXGPColor Color);
QXSVG_API TQXGPColor QXUnpremultiply(std::uint32_t Pixel);

}  // namespace qxsvg
