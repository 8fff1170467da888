// JPEG pictures through libjpeg-turbo, read.
//
// The library reports errors by a call that must not return: ours jumps back into this file, over
// frames that have nothing to destroy.
#include <csetjmp>
#include <cstdio>
// After <cstdio>, which it needs.
#include <jpeglib.h>

#include "adapters/images/Formats.h"
#include "foundation/Limits.h"

namespace qxsvg::images {

namespace {

// A progressive picture may have any number of scans over all its pixels; encoders write about ten.
constexpr int MaxScans = 200;
// Rows that may come out after the data has ended: those that the decoder still holds.
constexpr int RowsAfterEnd = 32;

struct TJpegReader {
  jpeg_error_mgr Errors{};
  std::jmp_buf Return;
  jpeg_source_mgr Source{};
  jpeg_decompress_struct Jpeg{};
  jpeg_progress_mgr Progress{};
  bool IsMade = false;
  bool HasEnded = false;
  int RowsSinceEnd = 0;

  ~TJpegReader() {
    if (IsMade) jpeg_destroy_decompress(&Jpeg);
  }
};

TJpegReader& ReaderOf(j_common_ptr Jpeg) {
  return *static_cast<TJpegReader*>(Jpeg->client_data);
}

boolean EndOfData(j_decompress_ptr Jpeg) {
  static constexpr JOCTET EndMarker[] = {0xFF, JPEG_EOI};
  ReaderOf(reinterpret_cast<j_common_ptr>(Jpeg)).HasEnded = true;
  Jpeg->src->next_input_byte = EndMarker;
  Jpeg->src->bytes_in_buffer = sizeof EndMarker;
  return TRUE;
}

void Skip(j_decompress_ptr Jpeg, long Count) {
  if (Count <= 0) return;
  const std::size_t Left = Jpeg->src->bytes_in_buffer;
  if (static_cast<unsigned long>(Count) > Left) {
    EndOfData(Jpeg);
    return;
  }
  Jpeg->src->next_input_byte += Count;
  Jpeg->src->bytes_in_buffer -= static_cast<std::size_t>(Count);
}

void InstallCallbacks(TJpegReader& Reader, TBytesView Bytes) {
  Reader.Jpeg.err = jpeg_std_error(&Reader.Errors);
  Reader.Errors.error_exit = [](j_common_ptr Jpeg) { std::longjmp(ReaderOf(Jpeg).Return, 1); };
  Reader.Errors.emit_message = [](j_common_ptr, int) {};
  Reader.Errors.output_message = [](j_common_ptr) {};
  Reader.Source.init_source = [](j_decompress_ptr) {};
  Reader.Source.term_source = [](j_decompress_ptr) {};
  Reader.Source.fill_input_buffer = EndOfData;
  Reader.Source.skip_input_data = Skip;
  Reader.Source.resync_to_restart = jpeg_resync_to_restart;
  Reader.Source.next_input_byte = Bytes.data();
  Reader.Source.bytes_in_buffer = Bytes.size();
  Reader.Progress.progress_monitor = [](j_common_ptr Jpeg) {
    const auto* Decoder = reinterpret_cast<j_decompress_ptr>(Jpeg);
    if (Decoder->input_scan_number > MaxScans) std::longjmp(ReaderOf(Jpeg).Return, 1);
  };
}

bool ReadHeader(TJpegReader& Reader) {
  if (setjmp(Reader.Return)) return false;
  Reader.Jpeg.client_data = &Reader;
  jpeg_create_decompress(&Reader.Jpeg);
  Reader.IsMade = true;
  // A progressive picture is kept as coefficients until it is complete.
  Reader.Jpeg.mem->max_memory_to_use = static_cast<long>(Limits::ImageBytes);
  Reader.Jpeg.src = &Reader.Source;
  Reader.Jpeg.progress = &Reader.Progress;
  jpeg_read_header(&Reader.Jpeg, TRUE);
  const bool HasInks =
      Reader.Jpeg.jpeg_color_space == JCS_CMYK || Reader.Jpeg.jpeg_color_space == JCS_YCCK;
  Reader.Jpeg.out_color_space = HasInks ? JCS_CMYK : JCS_EXT_RGBA;
  return true;
}

// Four inks, as bytes in memory, to pixels. Programs that write them mostly store them inverted and
// say so by a marker of their own.
void InksToRow(std::uint32_t* Row, std::size_t Count, bool IsInverted) {
  const auto* Inks = reinterpret_cast<const unsigned char*>(Row);
  for (std::size_t X = 0; X < Count; ++X, Inks += 4) {
    const auto Light = [&](int I) -> std::uint32_t {
      return IsInverted ? Inks[I] : 255u - Inks[I];
    };
    const auto Part = [&](int I) { return (Light(I) * Light(3) + 127) / 255; };
    Row[X] = 0xFF000000u | Part(0) << 16 | Part(1) << 8 | Part(2);
  }
}

// Gives the number of rows that were read before the data ended or went wrong.
void ReadRows(TJpegReader& Reader, const TQXPixels& Pixels, volatile std::int32_t& Rows) {
  if (setjmp(Reader.Return)) return;
  jpeg_start_decompress(&Reader.Jpeg);
  // The scans of a progressive picture have all been read before the first row comes.
  const bool EndsLate = jpeg_has_multiple_scans(&Reader.Jpeg);
  while (Reader.Jpeg.output_scanline < Reader.Jpeg.output_height) {
    if (Reader.HasEnded && !EndsLate && ++Reader.RowsSinceEnd > RowsAfterEnd) return;
    auto* Row = reinterpret_cast<JSAMPROW>(
        Pixels.Row(static_cast<std::int32_t>(Reader.Jpeg.output_scanline)));
    if (jpeg_read_scanlines(&Reader.Jpeg, &Row, 1) != 1) return;
    Rows = static_cast<std::int32_t>(Reader.Jpeg.output_scanline);
  }
}

}  // namespace

void DecodeJpeg(TBytesView Bytes, TQXGPBitmap& Bitmap) {
  TJpegReader Reader;
  InstallCallbacks(Reader, Bytes);
  if (!ReadHeader(Reader)) RaiseUnreadable(u"JPEG");
  PrepareBitmap(Reader.Jpeg.image_width, Reader.Jpeg.image_height, Bitmap);
  const TQXPixels Pixels = Bitmap.Pixels();
  volatile std::int32_t Rows = 0;
  ReadRows(Reader, Pixels, Rows);
  if (Rows == 0) {
    Bitmap.SetSize(0, 0);
    RaiseUnreadable(u"JPEG");
  }
  const bool HasInks = Reader.Jpeg.out_color_space == JCS_CMYK;
  for (std::int32_t Y = 0; Y < Rows; ++Y)
    if (HasInks)
      InksToRow(Pixels.Row(Y), static_cast<std::size_t>(Pixels.Width),
                Reader.Jpeg.saw_Adobe_marker);
    else
      PremultiplyRow(Pixels.Row(Y), static_cast<std::size_t>(Pixels.Width));
}

}  // namespace qxsvg::images
