#include "graphics/surface/Gradient.h"

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "runtime/Numbers.h"

namespace qxsvg {
namespace {

template <class T>
std::unique_ptr<TPersistent> New() {
  return std::make_unique<T>();
}

// A coordinate that is no number would go through all the surface's sums.
float FiniteOr(float Value, float Fallback) {
  return std::isfinite(Value) ? Value : Fallback;
}

}  // namespace

const TClass TQXPosition::Class{u"TQXPosition", &TPersistent::Class, {}, &New<TQXPosition>};
const TClass TQXGPGradient::Class{u"TQXGPGradient", &TPersistent::Class, {}, &New<TQXGPGradient>};

void TQXPosition::Assign(const TPersistent* Source) {
  if (const auto* Position = dynamic_cast<const TQXPosition*>(Source))
    SetPoint(Position->FPoint);
  else
    TPersistent::Assign(Source);
}

void TQXPosition::SetPoint(TPointF P) {
  P = {FiniteOr(P.X, FPoint.X), FiniteOr(P.Y, FPoint.Y)};
  if (FPoint == P) return;
  FPoint = P;
  if (FOnChange) FOnChange(this);
}

void TQXGPGradientPoint::SetOffset(float Offset) {
  Offset = FiniteOr(Offset, FOffset);
  if (FOffset == Offset) return;
  FOffset = Offset;
  FOwner->Changed();
}

void TQXGPGradientPoint::SetColor(TQXGPColor Color) {
  if (FColor == Color) return;
  FColor = Color;
  FOwner->Changed();
}

void TQXGPGradientPoints::Assign(const TQXGPGradientPoints& Source) {
  if (&Source == this) return;
  FPoints = Source.FPoints;
  for (TQXGPGradientPoint& Point : FPoints) Point.FOwner = this;
  Changed();
}

void TQXGPGradientPoints::Clear() {
  if (FPoints.empty()) return;
  FPoints.clear();
  Changed();
}

TQXGPGradientPoint& TQXGPGradientPoints::Add() {
  return Add(0, 0xff000000);
}

TQXGPGradientPoint& TQXGPGradientPoints::Add(float Offset, TQXGPColor Color) {
  if (FPoints.size() >= Limits::GradientPoints) throw EListError(SGradientPointLimit);
  TQXGPGradientPoint& Point = FPoints.emplace_back();
  Point.FOwner = this;
  Point.FOffset = FiniteOr(Offset, 0);
  Point.FColor = Color;
  Changed();
  return Point;
}

const TQXGPGradientPoint& TQXGPGradientPoints::GetPoint(std::size_t Index) const {
  if (Index >= FPoints.size())
    throw EListError(u"A gradient has no point %s", {IntToStr(static_cast<std::int64_t>(Index))});
  return FPoints[Index];
}

TQXGPGradientPoint& TQXGPGradientPoints::GetPoint(std::size_t Index) {
  return const_cast<TQXGPGradientPoint&>(std::as_const(*this).GetPoint(Index));
}

void TQXGPGradientPoints::EndUpdate() {
  if (FUpdates == 0 || --FUpdates != 0 || !FChanged) return;
  FChanged = false;
  FOwner.Changed();
}

void TQXGPGradientPoints::Changed() {
  if (FUpdates)
    FChanged = true;
  else
    FOwner.Changed();
}

TQXGPGradient::TQXGPGradient()
    : FPoints(*this), FStop({1, 0}), FCenter({0.5f, 0.5f}), FRadius({1, 1}) {
  const auto Notice = TNotifyMethod::Bind<&TQXGPGradient::PositionChanged>(this);
  for (TQXPosition* Position : {&FStart, &FStop, &FCenter, &FFocusOffset, &FRadius})
    Position->SetOnChange(Notice);
}

void TQXGPGradient::Assign(const TPersistent* Source) {
  const auto* Gradient = dynamic_cast<const TQXGPGradient*>(Source);
  if (!Gradient) return TPersistent::Assign(Source);
  if (Gradient == this) return;
  // One notice for everything, at the end.
  const TNotifyMethod Notice = std::exchange(FOnChange, {});
  try {
    FPoints.Assign(Gradient->FPoints);
  } catch (...) {
    FOnChange = Notice;
    throw;
  }
  FStart.SetPoint(Gradient->FStart.GetPoint());
  FStop.SetPoint(Gradient->FStop.GetPoint());
  FCenter.SetPoint(Gradient->FCenter.GetPoint());
  FFocusOffset.SetPoint(Gradient->FFocusOffset.GetPoint());
  FRadius.SetPoint(Gradient->FRadius.GetPoint());
  FStyle = Gradient->FStyle;
  FOnChange = Notice;
  Changed();
}

void TQXGPGradient::SetStyle(TQXGPGradientStyle Style) {
  if (FStyle == Style) return;
  FStyle = Style;
  Changed();
}

void TQXGPGradient::Changed() {
  if (FOnChange) FOnChange(this);
}

void TQXGPGradient::PositionChanged(TPersistent*) {
  Changed();
}

}  // namespace qxsvg
