// Paths to pixels: whatever the path, pen and matrix, drawing comes to an end within the bitmap,
// and gives the same with and without SIMD. The first eight bytes choose pen and matrix, the rest
// is path data.
#include <cmath>
#include <cstring>

#include "FuzzInput.h"
#include "graphics/surface/PathData.h"
#include "raster/Kernels.h"
#include "raster/RasterCanvas.h"

using namespace qxsvg;

namespace {

constexpr std::int32_t Side = 48;

// From 1e-8 to 1e7, finest in the middle.
float Magnitude(std::uint8_t Byte) {
  return std::pow(10.0f, (static_cast<float>(Byte) - 136) / 17);
}

void Draw(TQXGPBitmap& Bitmap, const std::uint8_t* Choice, const TQXPathData& Path) {
  Bitmap.Clear();
  TQXRasterCanvas Canvas(Bitmap.Pixels());
  TMatrix M = CreateRotationQXMatrix(static_cast<float>(Choice[0] & 15));
  M.m11 *= Choice[0] & 16 ? Magnitude(Choice[1]) : 1;
  M.m31 = static_cast<float>(Choice[2]) - 100;
  Canvas.SetMatrix(M);
  const TQXPathSource Source{Path.View(), static_cast<TQXGPFillMode>(Choice[3] & 1), {}, nullptr};
  Canvas.Brush().SetColor(0x80ff8040);
  Canvas.FillPath(Source, 1);
  TQXGPPen& Pen = Canvas.Pen();
  Pen.SetColor(0xc04080ff);
  Pen.SetThickness(Magnitude(Choice[4]));
  Pen.SetJoin(static_cast<TQXGPStrokeJoin>((Choice[3] >> 1) % 3));
  Pen.SetStartCap(static_cast<TQXGPLineCap>(Choice[3] >> 3 & 3));
  Pen.SetEndCap(static_cast<TQXGPLineCap>(Choice[3] >> 5 & 3));
  Pen.SetMiterLimit(Magnitude(Choice[5]));
  if (Choice[3] & 128) {
    const float Dashes[] = {Magnitude(Choice[6]), Magnitude(Choice[7]), 0.5f};
    Pen.SetCustomDash(Dashes, static_cast<float>(Choice[6]) - 100);
  }
  Canvas.DrawPath(Source, 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  constexpr std::size_t Choices = 8, MostPoints = 2000;
  if (Size <= Choices) return 0;
  TQXPathData Path;
  Path.SetPathString(fuzz::TextOf(Data + Choices, Size - Choices));
  if (Path.GetCount() > MostPoints) return 0;
  TQXGPBitmap Plain(Side, Side);
  SetSimdLevel(TSimdLevel::Plain);
  Draw(Plain, Data, Path);
  for (const TSimdLevel Level : {TSimdLevel::SSE41, TSimdLevel::AVX2}) {
    TQXGPBitmap Wide(Side, Side);
    SetSimdLevel(Level);
    Draw(Wide, Data, Path);
    fuzz::Check(std::memcmp(Wide.GetPixels().Data, Plain.GetPixels().Data,
                            sizeof(std::uint32_t) * Side * Side) == 0,
                "plain and SIMD give the same bits");
  }
  return 0;
}
