// Images as paints: laid out by a matrix, repeated or held at their sides.
#pragma once

#include <vector>

#include "raster/Kernels.h"
#include "raster/Paint.h"

namespace qxsvg {

enum class TImageFilter : std::uint8_t {
  Nearest,
  // Between the four nearest pixels; shrinking by more than half takes the mean of what a pixel
  // covers.
  Smooth
};

struct TImagePlace {
  // From the image's pixels to the device.
  TMatrix ToDevice;
  // The part of the image that is used; what lies outside it is its nearest pixel. Ignored where
  // the image repeats.
  TRect Part;
  bool IsRepeated = false;
  TImageFilter Filter = TImageFilter::Smooth;
};

// Keeps the memory that rows need.
class TImagePaint final : public IPaint {
 public:
  // Paints within Device; what lies outside is painted too, but slower and, where the image is made
  // smaller, less exactly. The pixels must outlive the painting. False where nothing can be
  // painted: the matrix cannot be inverted, or there are no pixels.
  bool Begin(const TQXConstPixels& Pixels, const TImagePlace& Place, const TRect& Device);
  void Fetch(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) override;
  const std::uint32_t* Ready(std::int32_t X, std::int32_t Y, std::int32_t Count) override;
  bool PutOver(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Target) override;

 private:
  // One axis of an upright image: for each place of the device from First on, the two pixels of the
  // image and their weights, as TResampledRow has them.
  struct TAxis {
    std::vector<std::int32_t> A, B;
    std::vector<std::uint16_t> Weight;
    // Made for columns alone.
    std::vector<std::uint16_t> Near;
    std::vector<std::int32_t> Begin;
    std::int32_t First = 0;
  };
  // Two stretched rows, to be mixed with so many 256ths of the second.
  struct TRowPair {
    const std::uint32_t *A, *B;
    std::uint32_t Weight;
  };
  enum class TForm : std::uint8_t { Shifted, Upright, Shrunk, Turned };

  void Shrink(double ScaleX, double ScaleY);
  void MakeAxis(TAxis& Axis, double Scale, double Offset, std::int32_t From, std::int32_t To,
                std::int32_t Low, std::int32_t High) const;
  std::int64_t Held(std::int64_t At, std::int32_t Low, std::int32_t High) const;
  void FindNear(TAxis& Axis, std::size_t Count) const;
  void BeginUpright();
  TRowPair RowsAt(std::size_t Row);
  const std::uint32_t* SmoothRow(std::int32_t Source, std::int32_t Avoid);
  const std::uint32_t* ReadyShifted(std::int32_t X, std::int32_t Y, std::int32_t Count);
  bool IsPrepared(std::int32_t X, std::int32_t Y, std::int32_t Count) const;
  void FetchShifted(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) const;
  void FetchUpright(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out);
  void FetchTurned(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) const;
  void BeginMeans();
  std::int32_t AddMean(double Scale, double Offset, std::int32_t At, std::int32_t Low,
                       std::int32_t High, int One);
  void ShrinkRow(std::int32_t Y);

  TQXConstPixels FPixels;
  TRect FPart, FDevice;
  bool FIsRepeated = false;
  TImageFilter FFilter = TImageFilter::Smooth;
  TForm FForm = TForm::Shifted;
  std::int32_t FShiftX = 0, FShiftY = 0;
  // From the device to the image, pixel middles to pixel middles.
  double FScaleX = 1, FScaleY = 1, FOffsetX = 0, FOffsetY = 0, FSkewX = 0, FSkewY = 0;
  TAxis FColumns, FRows;
  // Rows of the image stretched to the device, and which row of the image each is.
  std::vector<std::uint32_t> FSmooth;
  std::vector<std::int32_t> FSmoothRows;
  // A row of tiles side by side, made for this row of the device, and how much of it.
  std::vector<std::uint32_t> FTiled;
  std::size_t FTiledSize = 0;
  std::int32_t FTiledY = -1;
  // A smaller copy, or one row of the shrunk image and what it is the mean of.
  std::vector<std::uint32_t> FSmaller, FShrunk;
  std::vector<std::uint16_t> FMeans, FWeights;
  std::vector<std::int32_t> FMeanFirst;
  std::int32_t FMeanPairs = 0;
  std::int32_t FShrunkY = -1;
};

}  // namespace qxsvg
