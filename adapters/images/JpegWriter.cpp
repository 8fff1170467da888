// JPEG pictures through libjpeg-turbo, written.
#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <vector>
// After <cstdio>, which it needs.
#include <jpeglib.h>

#include "adapters/images/Formats.h"

namespace qxsvg::images {

namespace {

constexpr std::int32_t UsualQuality = 90;

constexpr std::size_t FirstRoom = std::size_t{1} << 16;

// The library has a target in memory of its own, but leaves unsaid who owns its bytes once it has
// run out of memory.
struct TJpegWriter {
  jpeg_error_mgr Errors{};
  std::jmp_buf Return;
  jpeg_destination_mgr Target{};
  jpeg_compress_struct Jpeg{};
  TBytes Bytes = TBytes(FirstRoom);
  bool IsMade = false;

  TJpegWriter();
  ~TJpegWriter() {
    if (IsMade) jpeg_destroy_compress(&Jpeg);
  }

  void PutBehind(std::size_t Used) {
    Target.next_output_byte = Bytes.data() + Used;
    Target.free_in_buffer = Bytes.size() - Used;
  }
  // False without memory.
  bool Grow() noexcept {
    const std::size_t Used = Bytes.size();
    try {
      Bytes.resize(2 * Used);
    } catch (const std::exception&) {
      return false;
    }
    PutBehind(Used);
    return true;
  }
};

TJpegWriter& WriterOf(void* ClientData) {
  return *static_cast<TJpegWriter*>(ClientData);
}

TJpegWriter::TJpegWriter() {
  Jpeg.err = jpeg_std_error(&Errors);
  Errors.error_exit = [](j_common_ptr Jpeg) {
    std::longjmp(WriterOf(Jpeg->client_data).Return, 1);
  };
  Errors.emit_message = [](j_common_ptr, int) {};
  Target.init_destination = [](j_compress_ptr Jpeg) { WriterOf(Jpeg->client_data).PutBehind(0); };
  Target.empty_output_buffer = [](j_compress_ptr Jpeg) -> boolean {
    TJpegWriter& Writer = WriterOf(Jpeg->client_data);
    if (!Writer.Grow()) std::longjmp(Writer.Return, 1);
    return TRUE;
  };
  Target.term_destination = [](j_compress_ptr Jpeg) {
    TJpegWriter& Writer = WriterOf(Jpeg->client_data);
    Writer.Bytes.resize(Writer.Bytes.size() - Writer.Target.free_in_buffer);
  };
}

// The format has no transparency; paper is white.
void RowOverWhite(const std::uint32_t* Row, std::vector<unsigned char>& RGB) {
  auto* Target = RGB.data();
  for (std::size_t X = 0; X * 3 < RGB.size(); ++X) {
    const std::uint32_t White = 255 - (Row[X] >> 24);
    for (const int Shift : {16, 8, 0})
      *Target++ = static_cast<unsigned char>(std::min((Row[X] >> Shift & 255) + White, 255u));
  }
}

bool Write(TJpegWriter& Writer, const TQXConstPixels& Pixels, std::int32_t Quality,
           std::vector<unsigned char>& RGB) {
  if (setjmp(Writer.Return)) return false;
  Writer.Jpeg.client_data = &Writer;
  jpeg_create_compress(&Writer.Jpeg);
  Writer.IsMade = true;
  Writer.Jpeg.dest = &Writer.Target;
  Writer.Jpeg.image_width = static_cast<JDIMENSION>(Pixels.Width);
  Writer.Jpeg.image_height = static_cast<JDIMENSION>(Pixels.Height);
  Writer.Jpeg.input_components = 3;
  Writer.Jpeg.in_color_space = JCS_RGB;
  jpeg_set_defaults(&Writer.Jpeg);
  jpeg_set_quality(&Writer.Jpeg, Quality < 0 ? UsualQuality : Quality, TRUE);
  jpeg_start_compress(&Writer.Jpeg, TRUE);
  for (std::int32_t Y = 0; Y < Pixels.Height; ++Y) {
    RowOverWhite(Pixels.Row(Y), RGB);
    JSAMPROW Row = RGB.data();
    jpeg_write_scanlines(&Writer.Jpeg, &Row, 1);
  }
  jpeg_finish_compress(&Writer.Jpeg);
  return true;
}

}  // namespace

void EncodeJpeg(TQXConstPixels Pixels, std::int32_t Quality, TStream& Target) {
  TJpegWriter Writer;
  std::vector<unsigned char> RGB(static_cast<std::size_t>(Pixels.Width) * 3);
  if (!Write(Writer, Pixels, Quality, RGB)) RaiseUnwritable(u"JPEG");
  Target.WriteBytes(Writer.Bytes);
}

}  // namespace qxsvg::images
