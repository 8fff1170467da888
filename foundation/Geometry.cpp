#include "foundation/Geometry.h"

#include <limits>

namespace qxsvg {
namespace {

std::int32_t ClampToInteger(double Value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(Value)) return 0;
  return static_cast<std::int32_t>(std::clamp(Value, double{Limits::min()}, double{Limits::max()}));
}

}  // namespace

void RectCenter(TRectF& R, const TRectF& Bounds) {
  const double Left = Bounds.Left + (double{Bounds.Width()} - R.Width()) / 2;
  const double Top = Bounds.Top + (double{Bounds.Height()} - R.Height()) / 2;
  R = {static_cast<float>(Left), static_cast<float>(Top), static_cast<float>(Left + R.Width()),
       static_cast<float>(Top + R.Height())};
}

void FitRect(TRectF& R, const TRectF& Bounds, bool AllowEnlarge) {
  const double Width = R.Width(), Height = R.Height();
  if (Width > 0 && Height > 0) {
    double Factor = std::min(Bounds.Width() / Width, Bounds.Height() / Height);
    if (!AllowEnlarge) Factor = std::min(Factor, 1.0);
    R.Right = static_cast<float>(R.Left + Width * Factor);
    R.Bottom = static_cast<float>(R.Top + Height * Factor);
  }
  RectCenter(R, Bounds);
}

std::int32_t CanvasRound(float Value) {
  return ClampToInteger(std::round(double{Value}));
}
std::int32_t CanvasTrunc(float Value) {
  return ClampToInteger(std::trunc(double{Value}));
}

bool PointsEqual(TPointF P, TPointF Q) {
  constexpr float Epsilon = 1e-5f;
  return std::abs(P.X - Q.X) <= Epsilon && std::abs(P.Y - Q.Y) <= Epsilon;
}

bool IsFinite(const TMatrix& M) {
  // A sum of finite doubles this small cannot overflow, so one test finds any infinity or NaN.
  return std::isfinite(double{M.m11} * 0 + double{M.m12} * 0 + double{M.m13} * 0 +
                       double{M.m21} * 0 + double{M.m22} * 0 + double{M.m23} * 0 +
                       double{M.m31} * 0 + double{M.m32} * 0 + double{M.m33} * 0);
}

TMatrix QXMatrixMultiply(const TMatrix& A, const TMatrix& B) {
  const auto Row = [&B](double X, double Y, double W, float& R1, float& R2, float& R3) {
    R1 = static_cast<float>(X * B.m11 + Y * B.m21 + W * B.m31);
    R2 = static_cast<float>(X * B.m12 + Y * B.m22 + W * B.m32);
    R3 = static_cast<float>(X * B.m13 + Y * B.m23 + W * B.m33);
  };
  TMatrix R;
  Row(A.m11, A.m12, A.m13, R.m11, R.m12, R.m13);
  Row(A.m21, A.m22, A.m23, R.m21, R.m22, R.m23);
  Row(A.m31, A.m32, A.m33, R.m31, R.m32, R.m33);
  return R;
}

float QXMatrixMultiply(float Scalar, const TMatrix& M) {
  return static_cast<float>(Scalar * std::sqrt(std::abs(QXMatrixDeterminant(M))));
}

TRectF QXMatrixTransform(const TMatrix& M, const TRectF& R) {
  // Each side of the box takes the extreme of every term by itself, which is the box of the four
  // corners without visiting them.
  const auto Side = [](double A, double Low, double High, double B, double Low2, double High2,
                       double C, float& Min, float& Max) {
    Min = static_cast<float>(std::min(A * Low, A * High) + std::min(B * Low2, B * High2) + C);
    Max = static_cast<float>(std::max(A * Low, A * High) + std::max(B * Low2, B * High2) + C);
  };
  TRectF Box;
  Side(M.m11, R.Left, R.Right, M.m21, R.Top, R.Bottom, M.m31, Box.Left, Box.Right);
  Side(M.m12, R.Left, R.Right, M.m22, R.Top, R.Bottom, M.m32, Box.Top, Box.Bottom);
  return Box;
}

bool QXMatrixEquals(const TMatrix& A, const TMatrix& B, float Epsilon) {
  const auto Near = [Epsilon](float X, float Y) { return std::abs(X - Y) <= Epsilon; };
  return Near(A.m11, B.m11) && Near(A.m12, B.m12) && Near(A.m13, B.m13) && Near(A.m21, B.m21) &&
         Near(A.m22, B.m22) && Near(A.m23, B.m23) && Near(A.m31, B.m31) && Near(A.m32, B.m32) &&
         Near(A.m33, B.m33);
}

bool QXMatrixInvert(const TMatrix& M, TMatrix& Inverse) {
  const double Det = QXMatrixDeterminant(M);
  if (!std::isfinite(Det) || Det == 0) return false;
  const double I11 = M.m22 / Det, I12 = -M.m12 / Det, I21 = -M.m21 / Det, I22 = M.m11 / Det;
  const TMatrix R{static_cast<float>(I11),
                  static_cast<float>(I12),
                  0,
                  static_cast<float>(I21),
                  static_cast<float>(I22),
                  0,
                  static_cast<float>(-(M.m31 * I11 + M.m32 * I21)),
                  static_cast<float>(-(M.m31 * I12 + M.m32 * I22)),
                  1};
  if (!IsFinite(R)) return false;
  Inverse = R;
  return true;
}

TMatrix CreateRotationQXMatrix(float Angle) {
  const auto Sine = static_cast<float>(std::sin(double{Angle}));
  const auto Cosine = static_cast<float>(std::cos(double{Angle}));
  return {Cosine, Sine, 0, -Sine, Cosine, 0, 0, 0, 1};
}

TMatrix CreateRotationQXMatrix(TPointF Center, float Angle) {
  const double Sine = std::sin(double{Angle}), Cosine = std::cos(double{Angle});
  const double X = Center.X, Y = Center.Y;
  TMatrix R = CreateRotationQXMatrix(Angle);
  R.m31 = static_cast<float>(X - X * Cosine + Y * Sine);
  R.m32 = static_cast<float>(Y - X * Sine - Y * Cosine);
  return R;
}

}  // namespace qxsvg
