#include "graphics/surface/PathArc.h"

#include <numbers>

namespace qxsvg {

TQXArc::TQXArc(TQXPointD Start, double RX, double RY, double Rotation, bool LargeArc, bool Sweep,
               TQXPointD End)
    : FEnd{static_cast<float>(End.X), static_cast<float>(End.Y)} {
  constexpr double Pi = std::numbers::pi;
  RX = std::abs(RX);
  RY = std::abs(RY);
  if (RX == 0 || RY == 0 || (Start.X == End.X && Start.Y == End.Y)) return;
  const double Phi = std::fmod(Rotation, 360.0) * (Pi / 180);
  const double Sine = std::sin(Phi), Cosine = std::cos(Phi);
  const double HalfX = (Start.X - End.X) / 2, HalfY = (Start.Y - End.Y) / 2;
  // In the system of the ellipse whose half-axes are 1, with the middle of the two ends as origin.
  double X = (Cosine * HalfX + Sine * HalfY) / RX, Y = (Cosine * HalfY - Sine * HalfX) / RY;
  const double Square = X * X + Y * Y;
  if (!std::isfinite(Square) || Square == 0) return;
  double CX = 0, CY = 0;
  if (Square > 1) {
    const double Scale = std::sqrt(Square);
    RX *= Scale;
    RY *= Scale;
    X /= Scale;
    Y /= Scale;
  } else {
    const double Factor = std::sqrt(1 / Square - 1) * (LargeArc == Sweep ? -1 : 1);
    CX = Factor * Y;
    CY = -Factor * X;
  }
  FXX = RX * Cosine;
  FXY = RX * Sine;
  FYX = -RY * Sine;
  FYY = RY * Cosine;
  FCenter = {(Start.X + End.X) / 2 + FXX * CX + FYX * CY,
             (Start.Y + End.Y) / 2 + FXY * CX + FYY * CY};
  FTheta = std::atan2(Y - CY, X - CX);
  FDelta = std::atan2(-Y - CY, -X - CX) - FTheta;
  if (Sweep && FDelta < 0) FDelta += 2 * Pi;
  if (!Sweep && FDelta > 0) FDelta -= 2 * Pi;
  // Half-axes near the largest float overflow here; a line is what can still be drawn.
  const double Reach = std::abs(FCenter.X) + std::abs(FCenter.Y) + RX + RY;
  if (!(Reach < 1e37)) return;
  // A quarter a curve keeps the error below 3e-4 of the half-axis; the slack keeps an exact quarter
  // from becoming two.
  FCurves = std::clamp(static_cast<int>(std::ceil(std::abs(FDelta) / (Pi / 2) - 1e-6)), 1, 4);
}

}  // namespace qxsvg
