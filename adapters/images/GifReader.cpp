// GIF pictures through giflib: the first picture of the file, on its canvas.
#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "adapters/images/Formats.h"
#include "foundation/Limits.h"

namespace qxsvg::images {

namespace {

struct TCloser {
  void operator()(GifFileType* Gif) const { DGifCloseFile(Gif, nullptr); }
};
using TGif = std::unique_ptr<GifFileType, TCloser>;

int ReadBytes(GifFileType* Gif, GifByteType* Target, int Count) {
  TBytesView& Rest = *static_cast<TBytesView*>(Gif->UserData);
  const std::size_t Taken = std::min(static_cast<std::size_t>(std::max(Count, 0)), Rest.size());
  if (Taken > 0) std::memcpy(Target, Rest.data(), Taken);
  Rest = Rest.subspan(Taken);
  return static_cast<int>(Taken);
}

// Goes on to the first picture, noting the transparent index on the way.
bool FindPicture(GifFileType* Gif, int& Transparent) {
  for (;;) {
    GifRecordType Kind;
    if (DGifGetRecordType(Gif, &Kind) != GIF_OK) return false;
    if (Kind == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(Gif) == GIF_OK;
    if (Kind != EXTENSION_RECORD_TYPE) return false;
    int Code = 0;
    GifByteType* Block = nullptr;
    if (DGifGetExtension(Gif, &Code, &Block) != GIF_OK) return false;
    while (Block) {
      GraphicsControlBlock Control;
      if (Code == GRAPHICS_EXT_FUNC_CODE &&
          DGifExtensionToGCB(Block[0], Block + 1, &Control) == GIF_OK)
        Transparent = Control.TransparentColor;
      if (DGifGetExtensionNext(Gif, &Block) != GIF_OK) return false;
    }
  }
}

std::vector<std::uint32_t> Palette(const ColorMapObject& Map, int Transparent) {
  // Indices past the colours of a broken file are transparent.
  std::vector<std::uint32_t> Result(256);
  for (int I = 0; I < std::min(Map.ColorCount, 256); ++I) {
    const GifColorType& C = Map.Colors[I];
    Result[static_cast<std::size_t>(I)] =
        0xFF000000u | static_cast<std::uint32_t>(C.Red << 16 | C.Green << 8 | C.Blue);
  }
  if (Transparent >= 0 && Transparent < 256) Result[static_cast<std::size_t>(Transparent)] = 0;
  return Result;
}

// The rows of a picture in the order in which the file holds them.
std::vector<std::int32_t> RowOrder(std::int32_t Height, bool IsInterlaced) {
  struct TPass {
    std::int32_t First, Step;
  };
  constexpr TPass Plain[] = {{0, 1}}, Interlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
  std::vector<std::int32_t> Result;
  Result.reserve(static_cast<std::size_t>(Height));
  for (const TPass& Pass : IsInterlaced ? std::span<const TPass>(Interlaced) : Plain)
    for (std::int32_t Y = Pass.First; Y < Height; Y += Pass.Step) Result.push_back(Y);
  return Result;
}

}  // namespace

void DecodeGif(TBytesView Bytes, TQXGPBitmap& Bitmap) {
  const TGif Gif(DGifOpen(&Bytes, ReadBytes, nullptr));
  int Transparent = NO_TRANSPARENT_COLOR;
  if (!Gif || !FindPicture(Gif.get(), Transparent)) RaiseUnreadable(u"GIF");
  const GifImageDesc& Image = Gif->Image;
  const ColorMapObject* Map = Image.ColorMap ? Image.ColorMap : Gif->SColorMap;
  const std::int64_t Area = std::int64_t{Image.Width} * Image.Height;
  if (!Map || Area <= 0 || Area > std::int64_t{Limits::ImageBytes / 4}) RaiseUnreadable(u"GIF");
  PrepareBitmap(static_cast<std::uint64_t>(std::max(Gif->SWidth, 0)),
                static_cast<std::uint64_t>(std::max(Gif->SHeight, 0)), Bitmap);

  const std::vector<std::uint32_t> Colors = Palette(*Map, Transparent);
  std::vector<GifPixelType> Line(static_cast<std::size_t>(Image.Width));
  const TQXPixels Pixels = Bitmap.Pixels();
  bool HasRow = false;
  for (const std::int32_t Y : RowOrder(Image.Height, Image.Interlace)) {
    if (DGifGetLine(Gif.get(), Line.data(), Image.Width) != GIF_OK) break;
    HasRow = true;
    if (Image.Top + Y >= Pixels.Height) continue;
    std::uint32_t* Row = Pixels.Row(Image.Top + Y);
    for (std::int32_t X = 0; X < std::min(Image.Width, Pixels.Width - Image.Left); ++X)
      Row[Image.Left + X] = Colors[Line[static_cast<std::size_t>(X)]];
  }
  if (HasRow) return;
  Bitmap.SetSize(0, 0);
  RaiseUnreadable(u"GIF");
}

}  // namespace qxsvg::images
