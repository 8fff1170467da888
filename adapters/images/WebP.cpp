// WebP pictures through libwebp.
#include <webp/decode.h>
#include <webp/demux.h>
#include <webp/encode.h>

#include <memory>
#include <vector>

#include "adapters/images/Formats.h"
#include "runtime/Exceptions.h"
#include "runtime/Numbers.h"

namespace qxsvg::images {

namespace {

constexpr float UsualQuality = 85;
// Quality 100 keeps every pixel as it is.
constexpr std::int32_t LosslessQuality = 100;

template <auto Delete>
struct TDeleter {
  template <class T>
  void operator()(T* Object) const {
    Delete(Object);
  }
};
using TDemuxer = std::unique_ptr<WebPDemuxer, TDeleter<&WebPDemuxDelete>>;
using TIncremental = std::unique_ptr<WebPIDecoder, TDeleter<&WebPIDelete>>;

// Decodes one still picture into Pixels, which have its size; false where not a row came out.
bool DecodeInto(TBytesView Bytes, const TQXPixels& Pixels) {
  WebPDecoderConfig Config;
  if (!WebPInitDecoderConfig(&Config)) return false;
  Config.output.colorspace = MODE_RGBA;
  Config.output.is_external_memory = 1;
  Config.output.u.RGBA.rgba = reinterpret_cast<std::uint8_t*>(Pixels.Data);
  Config.output.u.RGBA.stride = static_cast<int>(Pixels.Stride * 4);
  Config.output.u.RGBA.size =
      static_cast<std::size_t>(Pixels.Stride) * static_cast<std::size_t>(Pixels.Height) * 4;
  // The incremental decoder keeps the rows that came before the data broke off.
  const TIncremental Decoder(WebPIDecode(nullptr, 0, &Config));
  if (!Decoder) return false;
  const VP8StatusCode Status = WebPIUpdate(Decoder.get(), Bytes.data(), Bytes.size());
  int LastRow = 0;
  WebPIDecGetRGB(Decoder.get(), &LastRow, nullptr, nullptr, nullptr);
  return Status == VP8_STATUS_OK || LastRow > 0;
}

// The first picture of an animation, in its place on the canvas.
bool DecodeFirstFrame(TBytesView Bytes, TQXGPBitmap& Bitmap) {
  const WebPData Data{Bytes.data(), Bytes.size()};
  WebPDemuxState State;
  const TDemuxer Demuxer(WebPDemuxPartial(&Data, &State));
  if (!Demuxer) return false;
  WebPIterator Frame;
  if (!WebPDemuxGetFrame(Demuxer.get(), 1, &Frame)) return false;
  const TBytesView Content(Frame.fragment.bytes, Frame.fragment.size);
  const std::int32_t X = Frame.x_offset, Y = Frame.y_offset;
  const std::int32_t Width = Frame.width, Height = Frame.height;
  WebPDemuxReleaseIterator(&Frame);
  PrepareBitmap(WebPDemuxGetI(Demuxer.get(), WEBP_FF_CANVAS_WIDTH),
                WebPDemuxGetI(Demuxer.get(), WEBP_FF_CANVAS_HEIGHT), Bitmap);
  TQXPixels Pixels = Bitmap.Pixels();
  if (X < 0 || Y < 0 || Width <= 0 || Height <= 0 || Width > Pixels.Width - X ||
      Height > Pixels.Height - Y)
    return false;
  // The part of the canvas that the frame covers, whose last row ends with the frame.
  Pixels.Data = Pixels.Row(Y) + X;
  Pixels.Width = Width;
  Pixels.Height = Height;
  WebPBitstreamFeatures Features;
  if (WebPGetFeatures(Content.data(), Content.size(), &Features) != VP8_STATUS_OK ||
      Features.width != Width || Features.height != Height)
    return false;
  TQXGPBitmap Still(Width, Height);
  if (!DecodeInto(Content, Still.Pixels())) return false;
  for (std::int32_t Row = 0; Row < Height; ++Row)
    std::copy_n(Still.Pixels().Row(Row), Width, Pixels.Row(Row));
  return true;
}

bool DecodeStill(TBytesView Bytes, const WebPBitstreamFeatures& Features, TQXGPBitmap& Bitmap) {
  PrepareBitmap(static_cast<std::uint64_t>(Features.width),
                static_cast<std::uint64_t>(Features.height), Bitmap);
  return DecodeInto(Bytes, Bitmap.Pixels());
}

struct TWebPWriter {
  // Without anything to give back, should the library not be of the headers' version.
  WebPPicture Picture{};
  WebPMemoryWriter Memory;

  TWebPWriter() { WebPMemoryWriterInit(&Memory); }
  ~TWebPWriter() {
    WebPPictureFree(&Picture);
    WebPMemoryWriterClear(&Memory);
  }
};

}  // namespace

void DecodeWebP(TBytesView Bytes, TQXGPBitmap& Bitmap) {
  WebPBitstreamFeatures Features;
  const bool IsReadable = WebPGetFeatures(Bytes.data(), Bytes.size(), &Features) == VP8_STATUS_OK &&
                          (Features.has_animation ? DecodeFirstFrame(Bytes, Bitmap)
                                                  : DecodeStill(Bytes, Features, Bitmap));
  if (!IsReadable) {
    Bitmap.SetSize(0, 0);
    RaiseUnreadable(u"WebP");
  }
  const TQXPixels Pixels = Bitmap.Pixels();
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y)
    PremultiplyRow(Pixels.Row(Y), static_cast<std::size_t>(Pixels.Width));
}

void EncodeWebP(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target) {
  WebPConfig Config;
  TWebPWriter Writer;
  if (!WebPPictureInit(&Writer.Picture) || !WebPConfigInit(&Config)) RaiseUnwritable(u"WebP");
  Config.quality = Quality < 0 ? UsualQuality : static_cast<float>(Quality);
  if (Quality == LosslessQuality) {
    Config.lossless = 1;
    Config.exact = 1;
    Config.quality = 50;  // of the search for a smaller file
  }
  if (Pixels.Width > WEBP_MAX_DIMENSION || Pixels.Height > WEBP_MAX_DIMENSION)
    throw EInvalidGraphicOperation(u"A WebP picture has no more than %s pixels a side",
                                   {IntToStr(WEBP_MAX_DIMENSION)});
  std::vector<std::uint32_t> Straight;
  Straight.reserve(static_cast<std::size_t>(Pixels.Width) *
                   static_cast<std::size_t>(Pixels.Height));
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y)
    for (std::int32_t X = 0; X < Pixels.Width; ++X)
      Straight.push_back(QXUnpremultiply(Pixels.Row(Y)[X]));
  Writer.Picture.width = Pixels.Width;
  Writer.Picture.height = Pixels.Height;
  Writer.Picture.use_argb = 1;
  Writer.Picture.argb = Straight.data();
  Writer.Picture.argb_stride = Pixels.Width;
  Writer.Picture.writer = WebPMemoryWrite;
  Writer.Picture.custom_ptr = &Writer.Memory;
  if (!WebPEncode(&Config, &Writer.Picture)) RaiseUnwritable(u"WebP");
  Target.WriteBuffer(Writer.Memory.mem, Writer.Memory.size);
}

}  // namespace qxsvg::images
