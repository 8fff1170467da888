#include "raster/ImagePaint.h"

#include <algorithm>
#include <cmath>

#include "raster/Kernels.h"

namespace qxsvg {

namespace {

// Shifts this close to whole pixels are whole.
constexpr double CloseShift = 1.0 / 512;
// A skew of less for each pixel is none: it comes from rounding, as that of a half turn does, and
// moves nothing by a hundredth of a pixel over the widest surface.
constexpr double LeastSkew = CloseShift / 8192;
// Shrinking by more than this takes means, since four pixels would leave out too many.
constexpr double MeanFrom = 1.5;

bool IsUnit(double V) {
  return std::abs(V - 1) < 1e-6;
}
bool IsWhole(double V) {
  return std::abs(V - std::round(V)) < CloseShift;
}

// Halves rows and columns by the mean of what they hold.
std::uint32_t MeanOfFour(std::uint32_t A, std::uint32_t B, std::uint32_t C, std::uint32_t D) {
  constexpr std::uint32_t Even = 0x00ff00ff, Half = 0x00020002;
  const std::uint32_t Low = ((A & Even) + (B & Even) + (C & Even) + (D & Even) + Half) >> 2 & Even;
  const std::uint32_t High =
      ((A >> 8 & Even) + (B >> 8 & Even) + (C >> 8 & Even) + (D >> 8 & Even) + Half) >> 2 & Even;
  return Low | High << 8;
}

}  // namespace

std::int64_t TImagePaint::Held(std::int64_t At, std::int32_t Low, std::int32_t High) const {
  if (!FIsRepeated) return std::clamp<std::int64_t>(At, Low, High - 1);
  const std::int64_t Size = High - Low, Rest = (At - Low) % Size;
  return Low + (Rest < 0 ? Rest + Size : Rest);
}

bool TImagePaint::Begin(const TQXConstPixels& Pixels, const TImagePlace& Place,
                        const TRect& Device) {
  TMatrix M;
  if (Pixels.IsEmpty() || Device.IsEmpty() || !QXMatrixInvert(Place.ToDevice, M)) return false;
  FPixels = Pixels;
  FDevice = Device;
  FIsRepeated = Place.IsRepeated;
  FFilter = Place.Filter;
  FPart = FIsRepeated ? TRect{0, 0, Pixels.Width, Pixels.Height} : Place.Part;
  if (FPart.IsEmpty()) return false;
  FScaleX = M.m11, FSkewX = M.m21, FScaleY = M.m22, FSkewY = M.m12;
  FOffsetX = M.m31 + (double{M.m11} + M.m21) / 2;
  FOffsetY = M.m32 + (double{M.m12} + M.m22) / 2;
  FShrunkY = FTiledY = Device.Top - 1;
  FTiledSize = 0;
  FPutsOver = false;

  const double AcrossX = std::hypot(FScaleX, FSkewY), AcrossY = std::hypot(FSkewX, FScaleY);
  const bool IsUpright = std::abs(FSkewX) < LeastSkew * std::max(1.0, AcrossY) &&
                         std::abs(FSkewY) < LeastSkew * std::max(1.0, AcrossX);
  const bool IsSmooth = FFilter == TImageFilter::Smooth;
  if (IsUpright && IsUnit(FScaleX) && IsUnit(FScaleY) &&
      (!IsSmooth || (IsWhole(FOffsetX - 0.5) && IsWhole(FOffsetY - 0.5))) &&
      std::abs(FOffsetX) < 1e9 && std::abs(FOffsetY) < 1e9) {
    FForm = TForm::Shifted;
    FShiftX = static_cast<std::int32_t>(std::floor(FOffsetX + CloseShift));
    FShiftY = static_cast<std::int32_t>(std::floor(FOffsetY + CloseShift));
    return true;
  }
  if (IsUpright && IsSmooth && !FIsRepeated && std::max(AcrossX, AcrossY) > MeanFrom) {
    FForm = TForm::Shrunk;
    BeginMeans();
    return true;
  }
  if (IsSmooth && std::max(AcrossX, AcrossY) > MeanFrom) Shrink(AcrossX, AcrossY);
  FForm = IsUpright ? TForm::Upright : TForm::Turned;
  FPutsOver = FForm == TForm::Upright && IsSmooth;
  if (FForm == TForm::Upright) BeginUpright();
  return true;
}

// Replaces the pixels by a copy that is halved as often as it takes. Sides that are odd lose their
// last pixel into the one before it.
void TImagePaint::Shrink(double ScaleX, double ScaleY) {
  const auto Width = static_cast<std::int32_t>(FPart.Width());
  const auto Height = static_cast<std::int32_t>(FPart.Height());
  TQXConstPixels From(FPixels.Row(FPart.Top) + FPart.Left, Width, Height, FPixels.Stride);
  FOffsetX -= FPart.Left;
  FOffsetY -= FPart.Top;
  for (double Scale = std::max(ScaleX, ScaleY);
       Scale > MeanFrom && (From.Width > 1 || From.Height > 1); Scale /= 2) {
    const std::int32_t W = (From.Width + 1) / 2, H = (From.Height + 1) / 2;
    // Each half after the first takes its own place: a pixel is written behind all that are still
    // read.
    if (From.Data != FSmaller.data())
      FSmaller.resize(static_cast<std::size_t>(W) * static_cast<std::size_t>(H));
    for (std::int32_t Y = 0; Y < H; ++Y) {
      const std::uint32_t* A = From.Row(2 * Y);
      const std::uint32_t* B = From.Row(std::min(2 * Y + 1, From.Height - 1));
      std::uint32_t* Out = FSmaller.data() + std::ptrdiff_t{Y} * W;
      for (std::int32_t X = 0; X < W; ++X) {
        const std::int32_t L = 2 * X, R = std::min(L + 1, From.Width - 1);
        Out[X] = MeanOfFour(A[L], A[R], B[L], B[R]);
      }
    }
    const double RX = static_cast<double>(W) / From.Width,
                 RY = static_cast<double>(H) / From.Height;
    FScaleX *= RX, FSkewX *= RX, FOffsetX *= RX;
    FScaleY *= RY, FSkewY *= RY, FOffsetY *= RY;
    From = TQXConstPixels(FSmaller.data(), W, H, W);
  }
  FPixels = From;
  FPart = {0, 0, From.Width, From.Height};
}

void TImagePaint::MakeAxis(TAxis& Axis, double Scale, double Offset, std::int32_t From,
                           std::int32_t To, std::int32_t Low, std::int32_t High) const {
  const auto Count = static_cast<std::size_t>(To - From);
  Axis.First = From;
  if (Axis.A.size() < Count) {
    Axis.A.resize(Count);
    Axis.B.resize(Count);
    Axis.Weight.resize(Count);
  }
  const bool IsSmooth = FFilter == TImageFilter::Smooth;
  for (std::size_t I = 0; I < Count; ++I) {
    // Pixel middles lie half a pixel in; nearest pixels are those that hold the place.
    const double At = Offset + Scale * (static_cast<double>(From) + static_cast<double>(I)) -
                      (IsSmooth ? 0.5 : 0.0);
    const double Place = std::clamp(At, -1e15, 1e15), Whole = std::floor(Place);
    const auto First = static_cast<std::int64_t>(Whole);
    Axis.A[I] = static_cast<std::int32_t>(Held(First, Low, High));
    Axis.B[I] = static_cast<std::int32_t>(Held(First + 1, Low, High));
    long Weight = IsSmooth ? std::lround((Place - Whole) * 256) : 0;
    if (Weight % 256 == 0) {
      Axis.A[I] = Axis.B[I] = Weight == 0 ? Axis.A[I] : Axis.B[I];
      Weight = 128;
    }
    Axis.Weight[I] = static_cast<std::uint16_t>(Weight << 8 | (256 - Weight));
  }
}

// Where far coordinates are rounded, a drawing may reach past what its box was taken to be.
bool TImagePaint::IsPrepared(std::int32_t X, std::int32_t Y, std::int32_t Count) const {
  return X >= FDevice.Left && X + Count <= FDevice.Right && Y >= FDevice.Top && Y < FDevice.Bottom;
}

void TImagePaint::Fetch(std::int32_t X, std::int32_t Y, std::int32_t Count, std::uint32_t* Out) {
  const bool IsByTable = FForm == TForm::Upright || FForm == TForm::Shrunk;
  if (IsByTable && !IsPrepared(X, Y, Count)) return FetchTurned(X, Y, Count, Out);
  switch (FForm) {
    case TForm::Shifted: return FetchShifted(X, Y, Count, Out);
    case TForm::Upright: return FetchUpright(X, Y, Count, Out);
    case TForm::Shrunk: std::copy_n(Ready(X, Y, Count), Count, Out); break;
    case TForm::Turned: return FetchTurned(X, Y, Count, Out);
  }
}

void TImagePaint::FetchShifted(std::int32_t X, std::int32_t Y, std::int32_t Count,
                               std::uint32_t* Out) const {
  const auto Row =
      static_cast<std::int32_t>(Held(std::int64_t{Y} + FShiftY, FPart.Top, FPart.Bottom));
  const std::uint32_t* Pixels = FPixels.Row(Row);
  std::int64_t At = std::int64_t{X} + FShiftX;
  while (Count > 0) {
    const auto From = static_cast<std::int32_t>(Held(At, FPart.Left, FPart.Right));
    std::int32_t Part = std::min(FPart.Right - From, Count);
    if (!FIsRepeated && At < FPart.Left)
      Part = static_cast<std::int32_t>(std::min<std::int64_t>(Count, FPart.Left - At));
    else if (!FIsRepeated && At >= FPart.Right)
      Part = Count;
    if (FIsRepeated || At == From)
      std::copy_n(Pixels + From, Part, Out);
    else
      std::fill_n(Out, Part, Pixels[From]);
    Out += Part;
    Count -= Part;
    At += Part;
  }
}

// Tiles side by side, as many as any one call may ask for.
const std::uint32_t* TImagePaint::ReadyShifted(std::int32_t X, std::int32_t Y, std::int32_t Count) {
  const auto Width = static_cast<std::int32_t>(FPart.Width());
  const std::int64_t At = std::int64_t{X} + FShiftX;
  if (!FIsRepeated || At + Count <= FPart.Right) {
    const bool IsInside = At >= FPart.Left && At + Count <= FPart.Right;
    return IsInside ? FPixels.Row(static_cast<std::int32_t>(
                          Held(std::int64_t{Y} + FShiftY, FPart.Top, FPart.Bottom))) +
                          At
                    : nullptr;
  }
  // The copying of a long row would not come back.
  constexpr std::int32_t MostTiled = 4096;
  if (Width > MostTiled) return nullptr;
  const auto Needed = static_cast<std::size_t>(Width) + static_cast<std::size_t>(Count);
  if (FTiledY != Y || FTiledSize < Needed) {
    FTiledSize = std::max(FTiledSize, Needed);
    if (FTiled.size() < FTiledSize) FTiled.resize(FTiledSize);
    const auto Row =
        static_cast<std::int32_t>(Held(std::int64_t{Y} + FShiftY, FPart.Top, FPart.Bottom));
    std::copy_n(FPixels.Row(Row), Width, FTiled.data());
    for (auto Done = static_cast<std::size_t>(Width); Done < FTiledSize;) {
      const std::size_t Part = std::min(Done, FTiledSize - Done);
      std::copy_n(FTiled.data(), Part, FTiled.data() + Done);
      Done += Part;
    }
    FTiledY = Y;
  }
  return FTiled.data() + Held(At, 0, Width);
}

void TImagePaint::FindNear(TAxis& Axis, std::size_t Count) const {
  Count &= ~std::size_t{7};
  Axis.Near.resize(std::max(Axis.Near.size(), Count));
  Axis.Begin.resize(std::max(Axis.Begin.size(), Count / 8));
  for (std::size_t I = 0; I < Count; I += 8) {
    const auto Ends = std::minmax(Axis.A[I], Axis.A[I + 7]);
    const std::int32_t Begin = std::max(std::min(Ends.first, FPixels.Width - 8), 0);
    bool IsNear = FPixels.Width >= 8;
    for (std::size_t J = I; J < I + 8; ++J) {
      const std::int32_t A = Axis.A[J] - Begin, B = Axis.B[J] - Begin;
      IsNear = IsNear && A >= 0 && A < 8 && B >= 0 && B < 8;
      Axis.Near[J] = static_cast<std::uint16_t>(B << 8 | A);
    }
    Axis.Begin[I / 8] = IsNear ? Begin : -1;
  }
}

// Two stretched rows are kept, or, where the image repeats and they are few, all of them.
void TImagePaint::BeginUpright() {
  constexpr std::int64_t MostKept = 1 << 18;
  MakeAxis(FColumns, FScaleX, FOffsetX, FDevice.Left, FDevice.Right, FPart.Left, FPart.Right);
  MakeAxis(FRows, FScaleY, FOffsetY, FDevice.Top, FDevice.Bottom, FPart.Top, FPart.Bottom);
  if (FFilter == TImageFilter::Smooth)
    FindNear(FColumns, static_cast<std::size_t>(FDevice.Width()));
  const bool KeepsAll = FIsRepeated && FPart.Height() * FDevice.Width() <= MostKept;
  FSmoothRows.assign(KeepsAll ? static_cast<std::size_t>(FPart.Height()) : 2, -1);
  const std::size_t Needed = FSmoothRows.size() * static_cast<std::size_t>(FDevice.Width());
  if (FSmooth.size() < Needed) FSmooth.resize(Needed);
}

// A row of the image, stretched to the device; Avoid is still needed.
const std::uint32_t* TImagePaint::SmoothRow(std::int32_t Source, std::int32_t Avoid) {
  const auto Count = static_cast<std::size_t>(FDevice.Width());
  std::size_t Slot = static_cast<std::size_t>(Source - FPart.Top);
  if (FSmoothRows.size() == 2)
    Slot = FSmoothRows[1] == Source || (FSmoothRows[0] != Source && FSmoothRows[0] == Avoid);
  std::uint32_t* Row = FSmooth.data() + Slot * Count;
  if (FSmoothRows[Slot] == Source) return Row;
  FSmoothRows[Slot] = Source;
  Kernels().ResampleRow(Row, static_cast<std::int32_t>(Count),
                        {FPixels.Row(Source), FPixels.Width, FColumns.A.data(), FColumns.B.data(),
                         FColumns.Weight.data(), FColumns.Begin.data(), FColumns.Near.data()});
  return Row;
}

void TImagePaint::FetchUpright(std::int32_t X, std::int32_t Y, std::int32_t Count,
                               std::uint32_t* Out) {
  const auto Row = static_cast<std::size_t>(Y - FRows.First);
  const std::int32_t Column = X - FColumns.First;
  if (FFilter == TImageFilter::Nearest) {
    const std::uint32_t* Pixels = FPixels.Row(FRows.A[Row]);
    for (std::int32_t I = 0; I < Count; ++I)
      Out[I] = Pixels[FColumns.A[static_cast<std::size_t>(Column + I)]];
    return;
  }
  const TRowPair Rows = RowsAt(Row);
  Kernels().MixRows(Out, Rows.A + Column, Rows.B + Column, Rows.Weight, Count);
}

TImagePaint::TRowPair TImagePaint::RowsAt(std::size_t Row) {
  const std::uint32_t* A = SmoothRow(FRows.A[Row], FRows.B[Row]);
  const std::uint32_t* B = SmoothRow(FRows.B[Row], FRows.A[Row]);
  return {A, B, A == B ? 0u : static_cast<std::uint32_t>(FRows.Weight[Row] >> 8)};
}

bool TImagePaint::PutOver(std::int32_t X, std::int32_t Y, std::int32_t Count,
                          std::uint32_t* Target) {
  if (!IsPrepared(X, Y, Count)) return false;
  const TRowPair Rows = RowsAt(static_cast<std::size_t>(Y - FRows.First));
  const std::int32_t Column = X - FColumns.First;
  Kernels().MixRowsOver(Target, Rows.A + Column, Rows.B + Column, Rows.Weight, Count);
  return true;
}

// Appends the weights of what one place of the device covers of an axis and gives the first of it.
// Offset is that of the middle of a pixel.
std::int32_t TImagePaint::AddMean(double Scale, double Offset, std::int32_t At, std::int32_t Low,
                                  std::int32_t High, int One) {
  const double Half = std::max(std::abs(Scale), 1.0) / 2, Middle = Offset + Scale * At;
  double Begin = std::clamp(Middle - Half, double(Low), double(High));
  double End = std::clamp(Middle + Half, double(Low), double(High));
  if (End - Begin < 1.0 / 64) {
    Begin = std::clamp(std::floor(Middle), double(Low), double(High - 1));
    End = Begin + 1;
  }
  const std::int32_t First = std::min(static_cast<std::int32_t>(Begin), High - 1);
  const std::int32_t Last = std::max(static_cast<std::int32_t>(std::ceil(End)) - 1, First);
  // Rounding where each ends keeps the sum exact, however many there are.
  const double Unit = One / (End - Begin);
  std::int32_t Before = 0;
  for (std::int32_t I = First; I <= Last; ++I) {
    const auto Now =
        I == Last ? One : static_cast<std::int32_t>(std::lround((I + 1 - Begin) * Unit));
    FWeights.push_back(static_cast<std::uint16_t>(Now - Before));
    Before = Now;
  }
  return First;
}

void TImagePaint::BeginMeans() {
  FMeanFirst.clear();
  // What there is a fast way for.
  FMeanPairs = 2;
  // Once to see how many columns any pixel takes, then for good.
  const auto Columns = static_cast<std::size_t>(FDevice.Width());
  for (std::int32_t X = FDevice.Left; X < FDevice.Right; ++X) {
    FWeights.clear();
    FMeanFirst.push_back(AddMean(FScaleX, FOffsetX, X, FPart.Left, FPart.Right, MeanOne) -
                         FPart.Left);
    FMeanPairs = std::max(FMeanPairs, static_cast<std::int32_t>((FWeights.size() + 1) / 2));
  }
  FWeights.clear();
  for (std::size_t I = 1; I <= Columns; ++I) {
    const std::int32_t X = FDevice.Left + static_cast<std::int32_t>(I) - 1;
    AddMean(FScaleX, FOffsetX, X, FPart.Left, FPart.Right, MeanOne);
    FWeights.resize(I * static_cast<std::size_t>(FMeanPairs) * 2);
  }
  FShrunk.resize(Columns);
  // Columns of no weight may lie outside.
  FMeans.assign(static_cast<std::size_t>(FPart.Width() + 2 * FMeanPairs) * 4, 0);
}

void TImagePaint::ShrinkRow(std::int32_t Y) {
  const std::size_t Known = FWeights.size();
  // As many rows as are touched where the first is only touched at its end.
  const bool IsFew = std::abs(FScaleY) <= FewRows - 2;
  std::int32_t First =
      AddMean(FScaleY, FOffsetY, Y, FPart.Top, FPart.Bottom, IsFew ? FewRowsOne : MeanOne);
  TMeanRows Rows{nullptr, FPixels.Stride, nullptr,
                 static_cast<std::int32_t>(FWeights.size() - Known)};
  FWeights.push_back(0);
  const auto Weights = FWeights.begin() + static_cast<std::ptrdiff_t>(Known);
  const auto Only = IsFew ? std::find(Weights, FWeights.end(), FewRowsOne) : FWeights.end();
  if (Only != FWeights.end()) {
    // One row alone stands for two.
    First += static_cast<std::int32_t>(Only - Weights);
    Rows.Stride = 0;
    Rows.Count = 2;
    Weights[0] = Weights[1] = FewRowsOne / 2;
  }
  Rows.Pixels = FPixels.Row(First) + FPart.Left;
  Rows.Weights = &*Weights;
  (IsFew ? Kernels().MeanFewRows : Kernels().MeanRows)(FMeans.data(), Rows,
                                                       static_cast<std::int32_t>(FPart.Width()));
  FWeights.resize(Known);
  Kernels().MeanColumns(FShrunk.data(), static_cast<std::int32_t>(FShrunk.size()),
                        {FMeans.data(), FMeanFirst.data(), FWeights.data(), FMeanPairs});
  FShrunkY = Y;
}

const std::uint32_t* TImagePaint::Ready(std::int32_t X, std::int32_t Y, std::int32_t Count) {
  if (FForm == TForm::Shifted) return ReadyShifted(X, Y, Count);
  if (FForm != TForm::Shrunk || !IsPrepared(X, Y, Count)) return nullptr;
  if (FShrunkY != Y) ShrinkRow(Y);
  return FShrunk.data() + (X - FDevice.Left);
}

// In 48.16 fixed point from the row's own start, so that a pixel does not depend on where a row of
// spans begins.
void TImagePaint::FetchTurned(std::int32_t X, std::int32_t Y, std::int32_t Count,
                              std::uint32_t* Out) const {
  constexpr double One = 65536, Most = 1e9;
  const bool IsSmooth = FFilter == TImageFilter::Smooth;
  const double Middle = IsSmooth ? 0.5 : 0;
  const auto Fixed = [&](double V) {
    return static_cast<std::int64_t>(std::floor(std::clamp(V, -Most, Most) * One + 0.5));
  };
  const std::int64_t StepU = Fixed(FScaleX), StepV = Fixed(FSkewY);
  std::int64_t U = Fixed(FOffsetX - Middle + FSkewX * Y) + StepU * X;
  std::int64_t V = Fixed(FOffsetY - Middle + FScaleY * Y) + StepV * X;
  const std::int64_t Left = std::int64_t{FPart.Left} << 16, Top = std::int64_t{FPart.Top} << 16;
  if (IsSmooth)
    return Kernels().FetchTurned(
        Out, Count,
        {FPixels.Row(FPart.Top) + FPart.Left, FPixels.Stride,
         static_cast<std::int32_t>(FPart.Width()), static_cast<std::int32_t>(FPart.Height()),
         U - Left, V - Top, StepU, StepV, FIsRepeated});
  for (std::int32_t I = 0; I < Count; ++I, U += StepU, V += StepV)
    Out[I] = FPixels.Row(static_cast<std::int32_t>(
        Held(V >> 16, FPart.Top, FPart.Bottom)))[Held(U >> 16, FPart.Left, FPart.Right)];
}

}  // namespace qxsvg
