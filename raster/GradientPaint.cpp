#include "raster/GradientPaint.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "raster/HashMix.h"

namespace qxsvg {

namespace {

// As fine as eyes can tell on the largest surfaces; short gradients need less.
constexpr std::size_t FineSteps = 1024, CoarseSteps = 256;
constexpr double CoarseLength = 256;
// Farther stops are as good as there; keeps the differences of offsets finite.
constexpr float FarthestOffset = 1e6f;
// A focus on the rim or outside would leave parts of the plane without a colour.
constexpr float FarthestFocus = 0.999f;

// Blue, green, red and alpha. The compilers make vector arithmetic of it for any processor.
using TParts [[gnu::vector_size(16)]] = float;

TParts PartsOf(TQXGPColor Color) {
  return TParts{static_cast<float>(Color & 255), static_cast<float>(Color >> 8 & 255),
                static_cast<float>(Color >> 16 & 255), static_cast<float>(Color >> 24)};
}

std::uint32_t Mix(TParts From, TParts Change, float Part, float Opacity) {
  const TParts Parts = From + Change * Part;
  const float Alpha = Parts[3] * Opacity, Scale = Alpha / 255;
  const TParts Scaled = Parts * Scale + 0.5f;
  const auto Put = [](float Value, int Shift) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(Value)) << Shift;
  };
  return Put(Alpha + 0.5f, 24) | Put(Scaled[2], 16) | Put(Scaled[1], 8) | Put(Scaled[0], 0);
}

}  // namespace

void TGradientTable::Build(std::span<const TQXGPGradientPoint> Stops, float Opacity,
                           std::size_t Steps) {
  const auto IsSame = [&] {
    if (FOpacity != Opacity || FColors.size() != Steps || FStops.size() != Stops.size())
      return false;
    for (std::size_t I = 0; I < Stops.size(); ++I)
      if (!(FStops[I] == TStop{Stops[I].Offset(), Stops[I].Color()})) return false;
    return true;
  };
  if (IsSame()) return;
  FStops.clear();
  for (const TQXGPGradientPoint& Stop : Stops) FStops.push_back({Stop.Offset(), Stop.Color()});
  FOpacity = Opacity;
  FColors.resize(Steps);
  FIsOpaque = Opacity >= 1 && std::all_of(FStops.begin(), FStops.end(),
                                          [](const TStop& S) { return S.Color >> 24 == 255; });
  const auto Last = static_cast<float>(Steps - 1);
  std::size_t At = 0;
  float Before = 0;
  TParts Color = PartsOf(FStops.front().Color);
  const auto IndexOf = [&](float Offset) {
    return static_cast<std::size_t>(std::clamp(std::ceil(Offset * Last), 0.0f, Last + 1));
  };
  for (std::size_t I = 0; I < FStops.size(); ++I) {
    const float Offset = std::clamp(FStops[I].Offset, -FarthestOffset, FarthestOffset);
    const float Now =
        I == 0 ? (Offset == Offset ? Offset : 0) : (Offset > Before ? Offset : Before);
    const std::size_t End = I + 1 == FStops.size() && Now >= 1 ? Steps : IndexOf(Now);
    const float Scale = Now > Before ? 1 / (Now - Before) : 0;
    const TParts Next = PartsOf(FStops[I].Color), Change = Next - Color;
    for (; At < End; ++At) {
      const float Part =
          I == 0 ? 1 : std::clamp((static_cast<float>(At) / Last - Before) * Scale, 0.0f, 1.0f);
      FColors[At] = Mix(Color, Change, Part, Opacity);
    }
    Before = Now;
    Color = Next;
  }
  std::fill(FColors.begin() + static_cast<std::ptrdiff_t>(At), FColors.end(),
            Mix(Color, TParts{}, 0, Opacity));
}

const TGradientTable& TGradientTables::TableOf(std::span<const TQXGPGradientPoint> Stops,
                                               float Opacity, std::size_t Steps) {
  std::uint64_t Hash = std::bit_cast<std::uint32_t>(Opacity) ^ Steps << 32;
  for (const TQXGPGradientPoint& Stop : Stops)
    MixHash(Hash, std::uint64_t{std::bit_cast<std::uint32_t>(Stop.Offset())} << 32 | Stop.Color());
  std::unique_ptr<TGradientTable>& Table = FTables[Hash % Slots];
  if (!Table) Table = std::make_unique<TGradientTable>();
  Table->Build(Stops, Opacity, Steps);
  return *Table;
}

bool TGradientPaint::Begin(const TQXGPGradient& Gradient, const TRectF& Box,
                           const TMatrix& ToDevice, float Opacity) {
  const std::span<const TQXGPGradientPoint> Stops = Gradient.Points().Items();
  TMatrix FromDevice;
  if (Stops.empty() || !QXMatrixInvert(ToDevice, FromDevice)) return false;
  const double Length =
      QXMatrixMultiply(1.0f, ToDevice) * std::max(double{Box.Width()}, double{Box.Height()});
  const bool IsFine = Length > CoarseLength || Stops.size() > 8;
  FTable = &FTables.TableOf(Stops, Opacity, IsFine ? FineSteps : CoarseSteps);
  FIsOpaque = FTable->IsOpaque();
  FRowLeft = FRowRight = 0;
  FForm = TForm::Even;
  const bool IsLinear = Gradient.Style() == TQXGPGradientStyle::gsLinear;
  FColor = IsLinear ? FTable->Colors()[FTable->Count() - 1] : FTable->Colors()[0];
  if (Stops.size() == 1) return true;
  return IsLinear ? BeginLinear(Gradient, Box, FromDevice) : BeginRadial(Gradient, Box, FromDevice);
}

bool TGradientPaint::BeginLinear(const TQXGPGradient& Gradient, const TRectF& Box,
                                 const TMatrix& M) {
  const TPointF Start = Gradient.StartPosition().GetPoint(),
                Stop = Gradient.StopPosition().GetPoint();
  if (!IsFinite(Start) || !IsFinite(Stop)) return true;
  const double X = Box.Left + double{Start.X} * Box.Width();
  const double Y = Box.Top + double{Start.Y} * Box.Height();
  double DX = (double{Stop.X} - Start.X) * Box.Width();
  double DY = (double{Stop.Y} - Start.Y) * Box.Height();
  const double Square = DX * DX + DY * DY;
  // Without a length the colour behind the last stop fills all.
  if (!(Square > 0)) return true;
  const double Last = static_cast<double>(FTable->Count() - 1);
  DX *= Last / Square;
  DY *= Last / Square;
  FPlaceX = M.m11 * DX + M.m12 * DY;
  FPlaceY = M.m21 * DX + M.m22 * DY;
  FPlace = (M.m31 - X) * DX + (M.m32 - Y) * DY + (FPlaceX + FPlaceY) / 2 + 0.5;
  if (!std::isfinite(FPlaceX) || !std::isfinite(FPlaceY) || !std::isfinite(FPlace)) return true;
  // A change that does not reach half a step over the widest surface is none.
  constexpr double Flat = 1e-6;
  if (std::abs(FPlaceX) < Flat) FPlaceX = 0;
  if (std::abs(FPlaceY) < Flat) FPlaceY = 0;
  FForm = TForm::Linear;
  return true;
}

bool TGradientPaint::BeginRadial(const TQXGPGradient& Gradient, const TRectF& Box,
                                 const TMatrix& M) {
  const TPointF Center = Gradient.CenterPosition().GetPoint(),
                Focus = Gradient.FocusOffsetPosition().GetPoint(),
                Radius = Gradient.RadiusPosition().GetPoint();
  const double RX = std::abs(double{Radius.X}) * Box.Width() / 2;
  const double RY = std::abs(double{Radius.Y}) * Box.Height() / 2;
  if (!(RX > 0 && RY > 0)) return true;
  double FX = Focus.X * double{Box.Width()} / RX, FY = Focus.Y * double{Box.Height()} / RY;
  if (const double Far = std::hypot(FX, FY); Far > FarthestFocus) {
    FX *= FarthestFocus / Far;
    FY *= FarthestFocus / Far;
  }
  const double X = Box.Left + double{Center.X} * Box.Width() + FX * RX;
  const double Y = Box.Top + double{Center.Y} * Box.Height() + FY * RY;
  const auto Set = [](double* From, double A, double B, double C) {
    From[0] = C + (A + B) / 2;
    From[1] = A;
    From[2] = B;
    return std::isfinite(From[0]) && std::isfinite(A) && std::isfinite(B);
  };
  if (!Set(FFromX, M.m11 / RX, M.m21 / RX, (M.m31 - X) / RX) ||
      !Set(FFromY, M.m12 / RY, M.m22 / RY, (M.m32 - Y) / RY) || !std::isfinite(FX) ||
      !std::isfinite(FY))
    return true;
  const auto FocusX = static_cast<float>(FX), FocusY = static_cast<float>(FY);
  const double Free = 1 - (double{FocusX} * FocusX + double{FocusY} * FocusY);
  const auto Last = static_cast<float>(FTable->Count() - 1);
  FRadial = {FTable->Colors(),
             Last,
             0,
             static_cast<float>(FFromX[1]),
             0,
             static_cast<float>(FFromY[1]),
             FocusX,
             FocusY,
             static_cast<float>(Free),
             static_cast<float>(Last / Free)};
  BeginRadialRow(0);
  FForm = TForm::Radial;
  return true;
}

void TGradientPaint::BeginRadialRow(std::int32_t Y) {
  FRadial.X = static_cast<float>(FFromX[0] + FFromX[2] * Y);
  FRadial.Y = static_cast<float>(FFromY[0] + FFromY[2] * Y);
  FRadialY = Y;
}

float TGradientPaint::LinearStart(std::int32_t Y) const {
  return static_cast<float>(FPlace + FPlaceY * Y);
}

bool TGradientPaint::IsRowEven(std::int32_t Y, std::uint32_t& Color) {
  if (FForm == TForm::Even) {
    Color = FColor;
    return true;
  }
  if (FForm != TForm::Linear || FPlaceX != 0) return false;
  Compute(0, Y, 1, &Color);
  return true;
}

void TGradientPaint::Compute(std::int32_t X, std::int32_t Y, std::int32_t Count,
                             std::uint32_t* Out) {
  if (FForm == TForm::Linear) {
    const auto Last = static_cast<float>(FTable->Count() - 1);
    Kernels().FetchLinear(Out, X, Count,
                          {FTable->Colors(), Last, LinearStart(Y), static_cast<float>(FPlaceX)});
    return;
  }
  if (FRadialY != Y) BeginRadialRow(Y);
  Kernels().FetchRadial(Out, X, Count, FRadial);
}

void TGradientPaint::Fetch(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) {
  if (FForm == TForm::Even) return Kernels().Fill(Out, Count, FColor);
  if (const std::uint32_t* Known = Ready(X, Y, Count))
    std::copy_n(Known, Count, Out);
  else
    Compute(X, Y, Count, Out);
}

const std::uint32_t* TGradientPaint::Ready(std::int32_t X, std::int32_t Y, std::int32_t Count) {
  if (FForm != TForm::Linear || FPlaceY != 0) return nullptr;
  // All rows are alike: the part that was needed so far is kept.
  if (FRowLeft == FRowRight) FRowLeft = FRowRight = X;
  const std::int32_t Left = std::min(FRowLeft, X), Right = std::max(FRowRight, X + Count);
  if (static_cast<std::size_t>(Right) > FRow.size()) FRow.resize(static_cast<std::size_t>(Right));
  if (Left < FRowLeft) Compute(Left, Y, FRowLeft - Left, FRow.data() + Left);
  if (Right > FRowRight) Compute(FRowRight, Y, Right - FRowRight, FRow.data() + FRowRight);
  FRowLeft = Left;
  FRowRight = Right;
  return FRow.data() + X;
}

}  // namespace qxsvg
