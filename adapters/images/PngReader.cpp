// PNG pictures through libpng.
//
// libpng reports errors by a jump out of its functions. Whatever it may jump over therefore has
// nothing to destroy, and the jump lands in the functions of this file that call it.
#include <png.h>

#include <csetjmp>
#include <cstring>

#include "adapters/images/Formats.h"
#include "foundation/Limits.h"

namespace qxsvg::images {

namespace {

// Texts and profiles are of no use here and could only cost memory.
constexpr png_byte IgnoredChunks[] =
    "cHRM\0eXIf\0gAMA\0hIST\0iCCP\0iTXt\0pCAL\0pHYs\0sBIT\0sCAL\0"
    "sPLT\0sRGB\0tEXt\0tIME\0zTXt";
constexpr int IgnoredCount = sizeof(IgnoredChunks) / 5;

struct TPngReader {
  TBytesView Rest;
  png_structp Png = nullptr;
  png_infop Info = nullptr;
  png_uint_32 Width = 0, Height = 0;
  int Passes = 1;
  bool HasRow = false;

  ~TPngReader() { png_destroy_read_struct(&Png, &Info, nullptr); }
};

void Quiet(png_structp, png_const_charp) {}

[[noreturn]] void Jump(png_structp Png, png_const_charp) {
  png_longjmp(Png, 1);
}

void ReadBytes(png_structp Png, png_bytep Target, std::size_t Count) {
  TBytesView& Rest = static_cast<TPngReader*>(png_get_io_ptr(Png))->Rest;
  if (Count > Rest.size()) png_error(Png, "end of data");
  std::memcpy(Target, Rest.data(), Count);
  Rest = Rest.subspan(Count);
}

// Reads up to the first pixel and asks for four bytes a pixel.
bool ReadHeader(TPngReader& Reader) {
  if (setjmp(png_jmpbuf(Reader.Png))) return false;
  png_set_user_limits(Reader.Png, Limits::BitmapSide, Limits::BitmapSide);
  // One palette is the most that a chunk which is kept needs.
  png_set_chunk_malloc_max(Reader.Png, 1 << 20);
  png_set_keep_unknown_chunks(Reader.Png, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
  png_set_keep_unknown_chunks(Reader.Png, PNG_HANDLE_CHUNK_NEVER, IgnoredChunks, IgnoredCount);
  // What is wrong with the checks is no reason to lose the picture.
  png_set_crc_action(Reader.Png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
  png_set_benign_errors(Reader.Png, 1);
  png_set_read_fn(Reader.Png, &Reader, ReadBytes);
  png_read_info(Reader.Png, Reader.Info);
  png_set_expand(Reader.Png);
  png_set_scale_16(Reader.Png);
  png_set_gray_to_rgb(Reader.Png);
  png_set_add_alpha(Reader.Png, 0xFF, PNG_FILLER_AFTER);
  Reader.Passes = png_set_interlace_handling(Reader.Png);
  png_read_update_info(Reader.Png, Reader.Info);
  Reader.Width = png_get_image_width(Reader.Png, Reader.Info);
  Reader.Height = png_get_image_height(Reader.Png, Reader.Info);
  return png_get_rowbytes(Reader.Png, Reader.Info) == std::size_t{4} * Reader.Width;
}

// Reads until the data ends or goes wrong; a pass of an interlaced picture fills in around what the
// passes before it left in the row.
void ReadRows(TPngReader& Reader, const TQXPixels& Pixels) {
  if (setjmp(png_jmpbuf(Reader.Png))) return;
  for (int Pass = 0; Pass < Reader.Passes; ++Pass)
    for (std::int32_t Y = 0; Y < Pixels.Height; ++Y) {
      png_read_row(Reader.Png, reinterpret_cast<png_bytep>(Pixels.Row(Y)), nullptr);
      Reader.HasRow = true;
    }
}

}  // namespace

void DecodePng(TBytesView Bytes, TQXGPBitmap& Bitmap) {
  TPngReader Reader;
  Reader.Rest = Bytes;
  Reader.Png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Jump, Quiet);
  Reader.Info = Reader.Png ? png_create_info_struct(Reader.Png) : nullptr;
  if (!Reader.Info || !ReadHeader(Reader)) RaiseUnreadable(u"PNG");
  PrepareBitmap(Reader.Width, Reader.Height, Bitmap);
  const TQXPixels Pixels = Bitmap.Pixels();
  ReadRows(Reader, Pixels);
  if (!Reader.HasRow) {
    Bitmap.SetSize(0, 0);
    RaiseUnreadable(u"PNG");
  }
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y)
    PremultiplyRow(Pixels.Row(Y), static_cast<std::size_t>(Pixels.Width));
}

}  // namespace qxsvg::images
