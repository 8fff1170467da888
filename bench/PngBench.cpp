// PNG writing, beside libpng with its defaults. The pictures are the first drawings of the measured
// sets and of the kinds of drawings in the corpus at 1024 pixels, alone and on white. The counter
// "bytes" is the size of the file.
#include <benchmark/benchmark.h>
#if defined(QXSVG_BENCH_LIBPNG)
#include <png.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "document/Document.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/ImageCodecs.h"
#include "runtime/Streams.h"

namespace {

using namespace qxsvg;
namespace fs = std::filesystem;

constexpr std::int32_t Side = 1024;

fs::path Data() {
  const char* Given = std::getenv("QXSVG_BENCH_DATA");
  return Given ? Given : QXSVG_BENCH_DATA_DEFAULT;
}

struct TPicture {
  fs::path File;
  TQXGPColor Paper;
};

// Drawn when it is first measured: the library is not ready before the program's own start.
const TQXGPBitmap& Drawn(const TPicture& Picture) {
  static std::map<std::pair<fs::path, TQXGPColor>, TQXGPBitmap> Made;
  const auto [At, IsNew] = Made.try_emplace({Picture.File, Picture.Paper}, Side, Side);
  if (!IsNew) return At->second;
  At->second.Clear(Picture.Paper);
  TSVGDocument Document;
  Document.LoadFromFile(std::string_view(Picture.File.string()));
  const TRectF Rect{0, 0, Side, Side};
  Document.Draw(Document.GetViewMatrix(QXIdentityMatrix, Rect), At->second.GetCanvas(), Rect);
  return At->second;
}

void WriteOurs(benchmark::State& State, const TPicture& Picture) {
  const TQXGPBitmap& Bitmap = Drawn(Picture);
  TMemoryStream Stream;
  for (auto _ : State) {
    Stream.Clear();
    Bitmap.SaveToStream(Stream, u"png");
  }
  State.counters["bytes"] = static_cast<double>(Stream.Size());
}

#if defined(QXSVG_BENCH_LIBPNG)
// What a program that has premultiplied pixels does to write them.
void WriteTheirs(benchmark::State& State, const TPicture& Picture) {
  const TQXGPBitmap& Bitmap = Drawn(Picture);
  std::vector<png_byte> File, Row(Side * 4);
  const auto Append = [](png_structp Png, png_bytep Bytes, std::size_t Count) {
    auto& Target = *static_cast<std::vector<png_byte>*>(png_get_io_ptr(Png));
    Target.insert(Target.end(), Bytes, Bytes + Count);
  };
  for (auto _ : State) {
    File.clear();
    png_structp Png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop Info = png_create_info_struct(Png);
    png_set_write_fn(Png, &File, Append, nullptr);
    png_set_IHDR(Png, Info, Side, Side, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(Png, Info);
    for (std::int32_t Y = 0; Y < Side; ++Y) {
      png_bytep Target = Row.data();
      for (std::int32_t X = 0; X < Side; ++X) {
        const TQXGPColor Color = QXUnpremultiply(Bitmap.GetPixels().Row(Y)[X]);
        for (const int Shift : {16, 8, 0, 24}) *Target++ = static_cast<png_byte>(Color >> Shift);
      }
      png_write_row(Png, Row.data());
    }
    png_write_end(Png, Info);
    png_destroy_write_struct(&Png, &Info);
  }
  State.counters["bytes"] = static_cast<double>(File.size());
}
#endif

struct TSet {
  const char* Folder;
  std::size_t Count;
};
constexpr TSet Sets[] = {{"perf/tiger", 1},      {"perf/mapworld", 1},   {"perf/gradgen", 1},
                         {"perf/icons200", 1},   {"perf/emoji100", 1},   {"perf/flags50", 1},
                         {"corpus/drawings", 8}, {"corpus/emoji", 8},    {"corpus/flags", 4},
                         {"corpus/icons", 4},    {"corpus/features", 4}, {"corpus/maps", 2}};

std::vector<fs::path> Drawings() {
  std::vector<fs::path> Result;
  for (const TSet& Set : Sets) {
    std::vector<fs::path> Files;
    std::error_code Error;
    for (const auto& Entry : fs::recursive_directory_iterator(Data() / Set.Folder, Error))
      if (Entry.path().extension() == ".svg") Files.push_back(Entry.path());
    std::sort(Files.begin(), Files.end());
    Files.resize(std::min(Files.size(), Set.Count));
    Result.insert(Result.end(), Files.begin(), Files.end());
  }
  return Result;
}

const bool IsRegistered = [] {
  for (const fs::path& File : Drawings())
    for (const TQXGPColor Paper : {0x00000000u, 0xFFFFFFFFu}) {
      const TPicture Picture{File, Paper};
      const std::string Case = File.stem().string() + (Paper ? " on white" : "");
      benchmark::RegisterBenchmark((Case + "/qxsvg").c_str(), WriteOurs, Picture)
          ->Unit(benchmark::kMillisecond);
#if defined(QXSVG_BENCH_LIBPNG)
      benchmark::RegisterBenchmark((Case + "/libpng").c_str(), WriteTheirs, Picture)
          ->Unit(benchmark::kMillisecond);
#endif
    }
  return true;
}();

}  // namespace
