// Gradients as paints: a table of colours and where on it a pixel lies.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "graphics/surface/Gradient.h"
#include "raster/Kernels.h"
#include "raster/Paint.h"

namespace qxsvg {

// The colours of a gradient in even steps from offset 0 to 1, premultiplied. Between stops the
// colours are mixed before they are premultiplied. A stop whose offset is less than one before it
// counts as having that one's.
class TGradientTable {
 public:
  // Steps is a power of two. Nothing is done where the table holds that already.
  void Build(std::span<const TQXGPGradientPoint> Stops, float Opacity, std::size_t Steps);

  const std::uint32_t* Colors() const { return FColors.data(); }
  std::size_t Count() const { return FColors.size(); }
  bool IsOpaque() const { return FIsOpaque; }

 private:
  struct TStop {
    float Offset;
    TQXGPColor Color;
    friend bool operator==(const TStop&, const TStop&) = default;
  };
  std::vector<std::uint32_t> FColors;
  std::vector<TStop> FStops;
  float FOpacity = -1;
  bool FIsOpaque = false;
};

// The tables that were needed last: a drawing fills many shapes with the same stops.
class TGradientTables {
 public:
  // Valid until the next call.
  const TGradientTable& TableOf(std::span<const TQXGPGradientPoint> Stops, float Opacity,
                                std::size_t Steps);

 private:
  // Four kilobytes each at most. Drawings with some hundred gradients shall seldom lose one to
  // another.
  static constexpr std::size_t Slots = 1024;
  std::array<std::unique_ptr<TGradientTable>, Slots> FTables;
};

class TGradientPaint final : public IPaint {
 public:
  // Box is what the gradient's fractions refer to, in the space that ToDevice leads from. False
  // where nothing can be painted: there is no stop, or ToDevice cannot be inverted.
  bool Begin(const TQXGPGradient& Gradient, const TRectF& Box, const TMatrix& ToDevice,
             float Opacity);

  void Fetch(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) override;
  const std::uint32_t* Ready(std::int32_t X, std::int32_t Y, std::int32_t Count) override;
  bool IsRowEven(std::int32_t Y, std::uint32_t& Color) override;

 private:
  bool BeginLinear(const TQXGPGradient& Gradient, const TRectF& Box, const TMatrix& FromDevice);
  bool BeginRadial(const TQXGPGradient& Gradient, const TRectF& Box, const TMatrix& FromDevice);
  void BeginRadialRow(std::int32_t Y);
  void Compute(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out);
  float LinearStart(std::int32_t Y) const;

  enum class TForm : std::uint8_t { Even, Linear, Radial };
  TGradientTables FTables;
  const TGradientTable* FTable = nullptr;
  TForm FForm = TForm::Even;
  std::uint32_t FColor = 0;
  // Linear: the place on the table at the middle of the pixel (0, 0), and its change along X and Y.
  double FPlace = 0, FPlaceX = 0, FPlaceY = 0;
  // Radial: the distance from the focus in a space where the rim is the unit circle, likewise.
  double FFromX[3] = {}, FFromY[3] = {};
  TRadialRow FRadial = {};
  std::int32_t FRadialY = 0;
  // One row for all, where rows do not differ.
  std::vector<std::uint32_t> FRow;
  std::int32_t FRowLeft = 0, FRowRight = 0;
};

}  // namespace qxsvg
