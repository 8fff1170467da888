#include "graphics/surface/Pen.h"

#include <algorithm>
#include <functional>

namespace qxsvg {
namespace {

// The marks and gaps of the kinds that are not custom; one table, of which each kind takes a start.
constexpr std::array<float, 6> DashLengths{3, 1, 1, 1, 1, 1};
constexpr std::array<float, 2> DotLengths{1, 1};

std::unique_ptr<TPersistent> NewPen() {
  return std::make_unique<TQXGPPen>();
}

}  // namespace

const TClass TQXGPPen::Class{u"TQXGPPen", &TQXGPGraphicsObject::Class, {}, &NewPen};

TQXGPPen::TQXGPPen(TQXGPCanvas*, TQXGPBrushKind Kind, TQXGPColor Color)
    : FColor(Color), FDefaultColor(Color), FKind(Kind), FDefaultKind(Kind) {}

TQXGPPen::~TQXGPPen() = default;

void TQXGPPen::Assign(const TPersistent* Source) {
  const auto* Pen = dynamic_cast<const TQXGPPen*>(Source);
  if (!Pen) return TPersistent::Assign(Source);
  Take(*Pen);
}

void TQXGPPen::Take(const TQXGPPen& Pen) {
  if (&Pen == this) return;
  FCustomDash = Pen.FCustomDash;
  if (Pen.FBrush) {
    const TQXSilence Silence(GetBrush());
    FBrush->Take(*Pen.FBrush);
  } else if (FBrush) {
    const TQXSilence Silence(*FBrush);
    FBrush->SetKind(TQXGPBrushKind::bkNone);
    FBrush->SetBitmap(nullptr);
  }
  FColor = Pen.FColor;
  FThickness = Pen.FThickness;
  FDashOffset = Pen.FDashOffset;
  FMiterLimit = Pen.FMiterLimit;
  FKind = Pen.FKind;
  FDash = Pen.FDash;
  FDashCap = Pen.FDashCap;
  FStartCap = Pen.FStartCap;
  FEndCap = Pen.FEndCap;
  FJoin = Pen.FJoin;
  Update();
}

std::unique_ptr<TQXGPGraphicsObject> TQXGPPen::Clone() const {
  auto Copy = std::make_unique<TQXGPPen>(nullptr, FDefaultKind, FDefaultColor);
  Copy->Assign(this);
  return Copy;
}

template <class T>
void TQXGPPen::Set(T& Field, T Value) {
  if (Field == Value) return;
  Field = Value;
  Update();
}

void TQXGPPen::SetKind(TQXGPBrushKind Kind) {
  Set(FKind, Kind);
}
void TQXGPPen::SetColor(TQXGPColor Color) {
  Set(FColor, Color);
}
void TQXGPPen::SetThickness(float Thickness) {
  if (!std::isnan(Thickness)) Set(FThickness, Thickness);
}
void TQXGPPen::SetDash(TQXGPStrokeDash Dash) {
  Set(FDash, Dash);
}
void TQXGPPen::SetDashOffset(float Offset) {
  if (std::isfinite(Offset)) Set(FDashOffset, Offset);
}

void TQXGPPen::SetCustomDash(std::span<const float> Values, std::ptrdiff_t High, float Offset) {
  const std::size_t Count = High < 0 ? 0 : static_cast<std::size_t>(High) + 1;
  SetCustomDash(Values.first(std::min(Count, Values.size())), Offset);
}

void TQXGPPen::SetCustomDash(std::span<const float> Values, float Offset) {
  // The values may be some of this pen's own.
  const float* const Own = FCustomDash.data();
  const std::less_equal<const float*> IsUpTo;
  if (!FCustomDash.empty() && IsUpTo(Own, Values.data()) &&
      IsUpTo(Values.data(), Own + FCustomDash.size())) {
    std::copy(Values.begin(), Values.end(), FCustomDash.begin());
    FCustomDash.resize(Values.size());
  } else {
    FCustomDash.assign(Values.begin(), Values.end());
  }
  FDashOffset = std::isfinite(Offset) ? Offset : 0;
  FDash = TQXGPStrokeDash::sdCustom;
  Update();
}

std::span<const float> TQXGPPen::DashPattern() const {
  const std::span<const float> Lengths(DashLengths);
  switch (FDash) {
    case TQXGPStrokeDash::sdSolid: return {};
    case TQXGPStrokeDash::sdDash: return Lengths.first(2);
    case TQXGPStrokeDash::sdDot: return DotLengths;
    case TQXGPStrokeDash::sdDashDot: return Lengths.first(4);
    case TQXGPStrokeDash::sdDashDotDot: return Lengths;
    case TQXGPStrokeDash::sdCustom: return FCustomDash;
  }
  return {};
}

void TQXGPPen::SetDashCap(TQXGPDashCap Cap) {
  Set(FDashCap, Cap);
}
void TQXGPPen::SetStartCap(TQXGPLineCap Cap) {
  Set(FStartCap, Cap);
}
void TQXGPPen::SetEndCap(TQXGPLineCap Cap) {
  Set(FEndCap, Cap);
}
void TQXGPPen::SetJoin(TQXGPStrokeJoin Join) {
  Set(FJoin, Join);
}
void TQXGPPen::SetMiterLimit(float Limit) {
  if (std::isfinite(Limit)) Set(FMiterLimit, Limit);
}

TQXGPBrush& TQXGPPen::GetBrush() {
  if (!FBrush) {
    FBrush = std::make_unique<TQXGPBrush>(nullptr, TQXGPBrushKind::bkNone);
    FBrush->SetOnChange(TNotifyMethod::Bind<&TQXGPPen::BrushChanged>(this));
  }
  return *FBrush;
}

bool TQXGPPen::SameStroke(const TQXGPPen& Other) const {
  return FThickness == Other.FThickness && FJoin == Other.FJoin &&
         FMiterLimit == Other.FMiterLimit && FStartCap == Other.FStartCap &&
         FEndCap == Other.FEndCap && FDashCap == Other.FDashCap &&
         std::ranges::equal(DashPattern(), Other.DashPattern()) &&
         (DashPattern().empty() || FDashOffset == Other.FDashOffset);
}

void TQXGPPen::BrushChanged(TPersistent*) {
  Update();
}

}  // namespace qxsvg
